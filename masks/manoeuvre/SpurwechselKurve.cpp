// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/SpurwechselKurve.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Halvings that find a place on the curve.
constexpr int kHalbierungen = 50;
/// Share of the steps that cannot reach the offset which the search leaves out; the rest covers rounding.
constexpr double kSicher = 0.999;

} // namespace

SpurwechselKurve::SpurwechselKurve(double laenge, double versatz)
    : m_sehne(std::sqrt(laenge * laenge + versatz * versatz)), m_steigung(versatz / laenge),
      m_omega(2.0 * kPi / m_sehne), m_winkel(std::atan(m_steigung)), m_cos(laenge / m_sehne), m_sin(versatz / m_sehne)
{
}

// w(u) = -(k/ω)·sin(ωu), with the slope -k at both ends, which takes back that of the chord.
double SpurwechselKurve::Ausschlag(double u) const
{
    return -(m_steigung / m_omega) * std::sin(m_omega * u);
}

CDPoint SpurwechselKurve::Punkt(double u) const
{
    const double w = Ausschlag(u);
    return {u * m_cos - w * m_sin, u * m_sin + w * m_cos};
}

double SpurwechselKurve::Gierwinkel(double u) const
{
    return m_winkel + std::atan(-m_steigung * std::cos(m_omega * u));
}

double SpurwechselKurve::GroessterGierwinkel() const
{
    return 2.0 * m_winkel;
}

double SpurwechselKurve::Bogenlaenge(double u) const
{
    const double h = m_sehne / kBogenSchritte;
    const int ganze = std::min(static_cast<int>(u / h), kBogenSchritte);
    double sum = 0.0;
    double before = 0.0;
    const auto addTo = [&](double end, double width) {
        const double w = Ausschlag(end);
        sum += std::sqrt((w - before) * (w - before) + width * width);
        before = w;
    };
    for (int i = 1; i <= ganze; ++i)
        addTo(i * h, h);
    addTo(u, u - ganze * h);
    return sum;
}

double SpurwechselKurve::StelleBei(double weg) const
{
    double low = 0.0;
    double high = m_sehne;
    if (!(Bogenlaenge(high) > weg))
        return high;
    for (int i = 0; i < kHalbierungen; ++i) {
        const double mitte = (low + high) / 2.0;
        if (Bogenlaenge(mitte) <= weg)
            low = mitte;
        else
            high = mitte;
    }
    return low;
}

double SpurwechselKurve::VersatzVor(double u, double abstand) const
{
    return u * m_sin + Ausschlag(u) * m_cos + std::sin(Gierwinkel(u)) * abstand;
}

std::optional<double> SpurwechselKurve::ErsteStelle(double versatz, double abstand) const
{
    // No point gains more offset per metre of chord: the rear axle sin φ·(1 - cos ωu), the turn of the body k·ω·sin ωu.
    const double steilste = 2.0 * m_sin + m_steigung * m_omega * std::abs(abstand);
    const double letzter = std::floor(m_sehne / kSchritt);
    for (double n = 0.0; n <= letzter;) {
        const double fehlt = versatz - VersatzVor(n * kSchritt, abstand);
        if (!(fehlt > 0.0))
            return n * kSchritt;
        n += std::max(1.0, std::floor(kSicher * fehlt / (steilste * kSchritt)));
    }
    return std::nullopt;
}
