// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Speed that belongs to a distance on a barrier's curve, found by stepping the speed.
#pragma once

#include <span>

namespace schranken
{

/// Distance s (m) as a function of the collision speed v (km/h), in one of the forms the barriers have.
///
///   braking:     f(v) = (v/3.6)² / (2·p)
///   deceleration f(w) = 0.0271·w²/p + 0.0178·w·p + d,    w = v + shift
///   polynomial:  f(w) = c3·w³ + c2·w² + c1·w + c0 + d,   w = v + shift
///
/// The terms are added from left to right.
struct Kurve {
    enum class Form { braking, deceleration, polynomial };
    Form form = Form::polynomial;
    double shift = 0.0; ///< km/h
    double p = 0.0;     ///< deceleration, m/s²
    double c3 = 0.0;
    double c2 = 0.0;
    double c1 = 0.0;
    double c0 = 0.0;
    double d = 0.0; ///< m

    static Kurve Bremsung(double verzoegerung)
    {
        Kurve kurve;
        kurve.form = Form::braking;
        kurve.p = verzoegerung;
        return kurve;
    }
    static Kurve Verzoegerung(double verzoegerung, double d, double shift)
    {
        Kurve kurve;
        kurve.form = Form::deceleration;
        kurve.p = verzoegerung;
        kurve.d = d;
        kurve.shift = shift;
        return kurve;
    }
    static Kurve Polynom(double c3, double c2, double c1, double c0, double d, double shift = 0.0)
    {
        Kurve kurve;
        kurve.c3 = c3;
        kurve.c2 = c2;
        kurve.c1 = c1;
        kurve.c0 = c0;
        kurve.d = d;
        kurve.shift = shift;
        return kurve;
    }

    double operator()(double v) const;
    /// f'(v), m per km/h.
    double Ableitung(double v) const;
};

/// Largest speed that is looked at, km/h.
inline constexpr double kHoechstgeschwindigkeit = 200.0;
/// A speed belongs to the distance s when (f(v) - s)² lies below this, m².
inline constexpr double kFenster = 0.001;

/// The definition: v runs from 0 in steps of 0.001 km/h (v += 0.001); the first v with (f(v) - s)² < 0.001 counts, and
/// 0 stands for "none up to 200 km/h".
double SucheGeschwindigkeit(const Kurve& kurve, double s);

/// The same doubles for all distances, by bisection on the monotone pieces of the curve.
void SucheGeschwindigkeiten(const Kurve& kurve, std::span<const double> s, std::span<double> v);

} // namespace schranken
