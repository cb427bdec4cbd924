// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Turns GPS coordinates, or heading and speed, into positions in a local plane.
#pragma once

#include "host/CDlgData.h"

#include <span>
#include <vector>

/// A degree of latitude on the earth's mean circumference.
inline constexpr double kMeterProGrad = 111320.0;

/// A position relative to the first one, m.
struct LocalPoint {
    double x = 0.0;                 ///< east
    double y = 0.0;                 ///< north
    double z = 0.0;                 ///< up
    double abstand = 0.0;           ///< to the point before, in space
    double abstandHorizontal = 0.0; ///< to the point before, in the plane
};

struct GPSPunkt {
    double breite = 0.0; ///< °
    double laenge = 0.0; ///< °
    double hoehe = -1.0; ///< m, -1 = none
};

struct Koppelschritt {
    double richtung = 0.0;        ///< °, clockwise from north
    double geschwindigkeit = 0.0; ///< m/s
    double zeitschritt = 0.0;     ///< s since the point before
};

class CGPStoXYZ final : public CDlgData
{
  public:
    explicit CGPStoXYZ(CRuvData& data) : CDlgData(data) {}

    // Both clear the output first and leave it empty for fewer than two points.
    /// Flat earth of 111320 m per degree, chained from point to point: exact enough for some kilometres away from the
    /// poles. Heights count only when every point has one.
    void KonvertiereGPS(std::span<const GPSPunkt> punkte, std::vector<LocalPoint>& lokal) const;
    /// Dead reckoning: each step goes in the direction and at the speed of its end. The plane distance stays 0.
    void KonvertiereKopplung(std::span<const Koppelschritt> schritte, std::vector<LocalPoint>& lokal) const;
};
