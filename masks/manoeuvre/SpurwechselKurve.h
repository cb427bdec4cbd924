// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The curve of a lane change: one full sine wave along the chord from the start to the end, turned so that it begins
// and ends in the road's direction. The vehicle's rear axle runs on it. It is the wave that Wegintegral measures and
// AusEinScheren dimensions. Lengths in m, angles in rad.
#pragma once

#include "host/CDPoint.h"

#include <optional>

class SpurwechselKurve
{
  public:
    /// Step along the chord in which an offset is searched.
    static constexpr double kSchritt = 0.001;
    /// Chords of the arc length of the whole wave.
    static constexpr int kBogenSchritte = 800;

    /// `laenge` along the road, above 0; `versatz` across it, 0 or above.
    SpurwechselKurve(double laenge, double versatz);

    double Sehne() const { return m_sehne; }
    /// Place on the curve at the distance `u` from the start along the chord; x along the road, y across.
    CDPoint Punkt(double u) const;
    /// Direction there, against the road's.
    double Gierwinkel(double u) const;
    /// The direction in the middle of the chord, the greatest one.
    double GroessterGierwinkel() const;
    /// Radius of curvature at the quarter points, the smallest one of the curve.
    double RadiusAmViertelpunkt() const { return 1.0 / (m_steigung * m_omega); }
    double Bogenlaenge(double u) const;
    /// Distance along the chord where the arc length is `weg`.
    double StelleBei(double weg) const;
    /// Offset across the road of the point `abstand` ahead of the rear axle.
    double VersatzVor(double u, double abstand) const;
    /// The first multiple of kSchritt along the chord where the point `abstand` ahead of the rear axle has reached the
    /// offset; nothing when it never does.
    std::optional<double> ErsteStelle(double versatz, double abstand) const;

  private:
    double Ausschlag(double u) const;

    double m_sehne;
    double m_steigung; // of the chord
    double m_omega;    // 1/m
    double m_winkel;   // of the chord
    double m_cos;
    double m_sin;
};
