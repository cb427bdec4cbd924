// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CGPStoXYZ.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kKeineHoehe = -1.0;

} // namespace

void CGPStoXYZ::KonvertiereGPS(std::span<const GPSPunkt> punkte, std::vector<LocalPoint>& lokal) const
{
    lokal.clear();
    if (punkte.size() < 2)
        return;
    const bool mitHoehe =
        std::none_of(punkte.begin(), punkte.end(), [](const GPSPunkt& p) { return p.hoehe == kKeineHoehe; });
    lokal.resize(punkte.size());
    for (std::size_t i = 1; i < punkte.size(); ++i) {
        const GPSPunkt& vor = punkte[i - 1];
        const GPSPunkt& hier = punkte[i];
        const LocalPoint& von = lokal[i - 1];
        LocalPoint& nach = lokal[i];
        // Equirectangular projection at the mean latitude of the two points.
        const double phi = (vor.breite + hier.breite) / 2.0 * kRadProGrad;
        nach.x = von.x - (vor.laenge - hier.laenge) * std::cos(phi) * kMeterProGrad;
        nach.y = von.y - (vor.breite - hier.breite) * kMeterProGrad;
        nach.z = mitHoehe ? hier.hoehe - punkte.front().hoehe : 0.0;
        const double dx = nach.x - von.x;
        const double dy = nach.y - von.y;
        const double dz = nach.z - von.z;
        nach.abstand = std::sqrt(dx * dx + dy * dy + dz * dz);
        nach.abstandHorizontal = std::sqrt(dx * dx + dy * dy);
    }
}

void CGPStoXYZ::KonvertiereKopplung(std::span<const Koppelschritt> schritte, std::vector<LocalPoint>& lokal) const
{
    lokal.clear();
    if (schritte.size() < 2)
        return;
    lokal.resize(schritte.size());
    for (std::size_t i = 1; i < schritte.size(); ++i) {
        const Koppelschritt& schritt = schritte[i];
        const LocalPoint& von = lokal[i - 1];
        LocalPoint& nach = lokal[i];
        nach.x = von.x;
        nach.y = von.y;
        if (schritt.geschwindigkeit != 0.0) {
            // From clockwise from north to counter-clockwise from east.
            const double alpha = -(schritt.richtung * kRadProGrad - kPi / 2.0);
            nach.x = von.x + std::cos(alpha) * schritt.geschwindigkeit * schritt.zeitschritt;
            nach.y = von.y + std::sin(alpha) * schritt.geschwindigkeit * schritt.zeitschritt;
        }
        const double dx = nach.x - von.x;
        const double dy = nach.y - von.y;
        nach.abstand = std::sqrt(dx * dx + dy * dy);
    }
}
