// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What follows from the common area: ranges and the throw-and-slide check.
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>

namespace
{

using Dat = CSchrankenverfahrenDat;

/// Calls visit(s, lower, upper) for every position that carries speeds.
template <class Visit> void FuerJedePosition(const Dat::Kurvenfeld& flaeche, Visit visit)
{
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        if (flaeche[i + Dat::kProben].y > 0.0)
            visit(flaeche[i].x, flaeche[i].y, flaeche[i + Dat::kProben].y);
}

struct Wurf {
    double geschwindigkeit; ///< m/s
    double weite;           ///< m
    double hoehe;           ///< m
};

/// Take-off speed of a body that flies from `drop` metres above the ground at the angle (rad) and slides with the
/// deceleration (m/s², 0 = no slide) until it has come `weg` metres far. All zero when nothing carries it so far.
Wurf WurfAusWeg(double weg, double winkel, double drop, double rutsch)
{
    const double g = kErdbeschleunigung;
    const double cosA = std::cos(winkel);
    const double sinA = std::sin(winkel);
    if (!(weg > 0.0) || !(cosA > 1e-12))
        return {0.0, 0.0, 0.0};
    // weg = x_w + slide with u = v²:
    //   x_w   = v·cosα·(v·sinα + √(v²·sin²α + 2·g·H))/g
    //   slide = (v·cosα)²/(2·a_R)
    // gives (A² - B²)·u² - 2·M·u + weg² = 0 with A = B + C; its smaller root in the form without cancellation.
    const double b = cosA * sinA / g;
    const double c = rutsch > 0.0 ? cosA * cosA / (2.0 * rutsch) : 0.0;
    const double m = (b + c) * weg + drop * cosA * cosA / g;
    const double root = m * m - c * (2.0 * b + c) * weg * weg;
    const double denominator = m + std::sqrt(std::max(root, 0.0));
    if (!(denominator > 0.0))
        return {0.0, 0.0, 0.0};
    const double v = weg / std::sqrt(denominator);
    const double weite = v * cosA * (v * sinA + std::sqrt(v * v * sinA * sinA + 2.0 * g * drop)) / g;
    return {v, weite, v * v * sinA * sinA / (2.0 * g)};
}

} // namespace

bool CSchrankenverfahrenDat::HatFlaeche() const
{
    bool any = false;
    FuerJedePosition(flaeche, [&](double, double, double) { any = true; });
    return any;
}

Dat::Bereich CSchrankenverfahrenDat::FlaecheWeg() const
{
    Bereich bereich;
    bool first = true;
    FuerJedePosition(flaeche, [&](double s, double, double) {
        bereich.von = first ? s : std::min(bereich.von, s);
        bereich.bis = first ? s : std::max(bereich.bis, s);
        first = false;
    });
    return bereich;
}

Dat::Bereich CSchrankenverfahrenDat::FlaecheGeschwindigkeit() const
{
    Bereich bereich;
    bool first = true;
    FuerJedePosition(flaeche, [&](double, double unten, double oben) {
        bereich.von = first ? unten : std::min(bereich.von, unten);
        bereich.bis = first ? oben : std::max(bereich.bis, oben);
        first = false;
    });
    return bereich;
}

bool CSchrankenverfahrenDat::IstNachUntenOffen() const
{
    bool offen = false;
    FuerJedePosition(flaeche, [&](double, double unten, double) { offen = offen || !(unten > 0.0); });
    return offen;
}

Dat::OhneFlaeche CSchrankenverfahrenDat::WarumOhneFlaeche() const
{
    if (HatFlaeche())
        return OhneFlaeche::keine;
    if (kollision.bis < 0.0)
        return OhneFlaeche::vorn;
    const bool trifft = std::any_of(flaeche.begin(), flaeche.begin() + kProben, [&](const CDPoint& stelle) {
        return stelle.x >= kollision.von && stelle.x <= kollision.bis;
    });
    return trifft ? OhneFlaeche::schranken : OhneFlaeche::zuSchmal;
}

double CSchrankenverfahrenDat::FlaecheWegZu(std::int64_t wahl) const
{
    if (wahl < 0 || wahl > 2)
        return 0.0;
    const double v = exportGeschwindigkeit[static_cast<std::size_t>(wahl)];
    // The middle of the positions whose band holds the speed; without one, the position that comes nearest.
    double sum = 0.0;
    int count = 0;
    double nearest = 0.0;
    double gap = INFINITY;
    FuerJedePosition(flaeche, [&](double s, double unten, double oben) {
        if (unten <= v && v <= oben) {
            sum += s;
            ++count;
        }
        const double distance = std::max({unten - v, v - oben, 0.0});
        if (distance < gap) {
            gap = distance;
            nearest = s;
        }
    });
    return count > 0 ? sum / count : nearest;
}

void CSchrankenverfahrenDat::Kontrolle()
{
    double smallest = INFINITY;
    double largest = -INFINITY;
    double sum = 0.0;
    int count = 0;
    FuerJedePosition(flaeche, [&](double s, double, double) {
        smallest = std::min(smallest, s);
        largest = std::max(largest, s);
        sum += s;
        ++count;
    });
    if (count == 0)
        wurfRutschWeg = {};
    else
        wurfRutschWeg = {smallest - personLaengs, sum / count - personLaengs, largest - personLaengs};

    weg = FlaecheWeg();
    tempo = FlaecheGeschwindigkeit();
    // An area that is open below has no smallest speed, and so no mean.
    exportGeschwindigkeit = {tempo.von, IstNachUntenOffen() ? 0.0 : (tempo.von + tempo.bis) / 2.0, tempo.bis};

    const auto wahl = static_cast<std::size_t>(std::clamp<std::int64_t>(wegWahl, 0, 2));
    const Wurf wurf = WurfAusWeg(wurfRutschWeg[wahl], abflugwinkel * kPi / 180.0, std::max(0.0, -hoehenunterschied),
                                 rutschverzoegerung);
    abfluggeschwindigkeit = wurf.geschwindigkeit * kKmhProMs;
    wurfweite = wurf.weite;
    wurfhoehe = wurf.hoehe;
    kollisionsgeschwindigkeit = anstossfaktor == 0.0 ? 0.0 : abfluggeschwindigkeit / anstossfaktor;
}
