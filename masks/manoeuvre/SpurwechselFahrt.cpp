// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/SpurwechselFahrt.h"

#include <algorithm>
#include <cmath>

namespace
{

/// A place within a part.
struct Stelle {
    double zeitDavor; // of the parts before it
    const Fahrabschnitt* abschnitt;
    double weg; // within the part
};

Stelle Suche(const std::array<Fahrabschnitt, 3>& abschnitte, double weg)
{
    Stelle stelle{0.0, &abschnitte.front(), weg};
    while (stelle.weg > stelle.abschnitt->weg && stelle.abschnitt != &abschnitte.back()) {
        stelle.zeitDavor += stelle.abschnitt->zeit;
        stelle.weg -= stelle.abschnitt->weg;
        ++stelle.abschnitt;
    }
    stelle.weg = std::min(stelle.weg, stelle.abschnitt->weg);
    return stelle;
}

// v² = v0² + 2·a·s with 2·a = (v1² - v0²)/s over the whole part.
double Geschwindigkeit(const Stelle& stelle)
{
    const Fahrabschnitt& a = *stelle.abschnitt;
    if (a.weg == 0.0)
        return a.vAnf;
    const double quadrat = a.vAnf * a.vAnf + (a.vEnd * a.vEnd - a.vAnf * a.vAnf) * (stelle.weg / a.weg);
    return std::sqrt(std::max(quadrat, 0.0));
}

} // namespace

double SpurwechselFahrt::Zeit() const
{
    return abschnitte[0].zeit + abschnitte[1].zeit + abschnitte[2].zeit;
}

double SpurwechselFahrt::Weg() const
{
    return abschnitte[0].weg + abschnitte[1].weg + abschnitte[2].weg;
}

double SpurwechselFahrt::ZeitBei(double weg) const
{
    const Stelle stelle = Suche(abschnitte, weg);
    // At a constant acceleration the mean of the speeds at both ends is that of the way between them.
    const double mittel = (stelle.abschnitt->vAnf + Geschwindigkeit(stelle)) / 2.0;
    return stelle.zeitDavor + (mittel > 0.0 ? stelle.weg / mittel : 0.0);
}

double SpurwechselFahrt::GeschwindigkeitBei(double weg) const
{
    return Geschwindigkeit(Suche(abschnitte, weg));
}

SpurwechselFahrt SpurwechselFahrt::Umgekehrt() const
{
    return {{abschnitte[2].Umgekehrt(), abschnitte[1].Umgekehrt(), abschnitte[0].Umgekehrt()}};
}
