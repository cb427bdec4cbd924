// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// One drive through a turn in fixed time steps. Its frame has x along the travel and y to the inside of the turn;
// speeds, path and yaw count along the travel, so that left and right, forward and reverse are one and the same run.
#pragma once

#include "host/CDPoint.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace abbiegen
{

/// Radius that stands for straight driving, m.
inline constexpr double kGerade = 1e20;
/// Time step, s.
inline constexpr double kZeitschritt = 0.0005;
/// What may be missing of the yaw (rad) or of the path (m) when a run has reached its aim.
inline constexpr double kZielgenauigkeit = 0.0005;
/// The longest run: 1000 s.
inline constexpr std::size_t kMaxSchritte = 2'000'000;

/// Lengths of the vehicle, m.
struct Fahrzeug {
    double radstand = 0.0;
    double spurweite = 0.0;
    double bisFront = 0.0; ///< rear axle to front
    double laenge = 0.0;
    double breite = 0.0;

    double HalbeSpur() const { return spurweite / 2.0; }
};

/// What a run is given; SI units.
struct Vorgabe {
    Fahrzeug fahrzeug;
    bool vorwaerts = true;
    // Radii are those of the inner rear wheel; they are greater than 0.
    double anfangsradius = kGerade;
    double endradius = kGerade;
    double stellzeit = 0.0;  ///< 0: the whole run at the end radius
    double lenkbeginn = 0.0; ///< when the steering starts
    double anfangsgeschw = 0.0;
    double beschleunigung = 0.0;
    double grenze = std::numeric_limits<double>::infinity(); ///< speed that the acceleration leads to
    double verzug = 0.0;                                     ///< when the change of speed starts
    bool bisWeg = false;                                     ///< the aim is a path (m), not a yaw (rad)
    double ziel = 0.0;
    double zwischenversatz = 0.0; ///< lateral offset of the front that defines the intermediate position
    double punktteiler = 1.0;     ///< spacing of the stored points; the larger, the farther apart

    /// Time and path from the start of the change of speed until the limit is reached; infinite when it never is.
    double ZeitBisGrenze() const;
    double WegBisGrenze() const;
};

/// Where the vehicle is at a moment.
struct Lage {
    double t = 0.0;   ///< s
    double s = 0.0;   ///< path of the centre, m
    double psi = 0.0; ///< yaw, rad
    CDPoint rad{};    ///< inner rear wheel, m
};

enum class Ende {
    ziel,
    stillstand, ///< the speed is 0 before
    gerade,     ///< the steering has come to straight driving before
    zuLang,     ///< kMaxSchritte were not enough
};

struct Fahrt {
    Ende ende = Ende::ziel;
    Lage lage;      ///< at the end
    Lage zwischen;  ///< the last one before the front's offset first exceeds the intermediate one
    double v = 0.0; ///< m/s
    double radius = kGerade;
    double querMax = 0.0; ///< greatest lateral acceleration, m/s²
    double frontversatz = 0.0;
    double frontversatzZwischen = 0.0;
    bool zwischenIstEnde = false; ///< the offset never exceeds the intermediate one
    bool grenzeErreicht = false;
    std::size_t schritte = 0;
    std::size_t gespeichert = 1; ///< points stored for good; the last of `punkte` is the end besides
    std::vector<CDPoint> punkte; ///< way of the centre, cm
    std::vector<Lage> verlauf;   ///< a few hundred moments from start to end
};

/// Radius on which the centre between the axles moves, m.
double Mittenradius(const Fahrzeug& fahrzeug, double radius);
/// Angle of the inner steered wheel's equivalent on the radius, rad; 0 when straight.
double Lenkwinkel(const Fahrzeug& fahrzeug, double radius);
/// Centre between the axles at a moment.
CDPoint Mitte(const Vorgabe& vorgabe, const Lage& lage);

Fahrt Fahre(const Vorgabe& vorgabe);
/// The same drive without place, offsets and lateral acceleration; faster.
Fahrt FahreSuchend(const Vorgabe& vorgabe);
/// Moves the end of a drive by a moment dt and a short way ds, on its last radius; both may be negative.
void FahreWeiter(const Vorgabe& vorgabe, Fahrt& fahrt, double dt, double ds);

} // namespace abbiegen
