// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Flight of a thrown body against air drag and head wind, in fixed time steps. x points forward, z up, the throw starts
// at (0, 0).
#pragma once

#include "host/CDPoint.h"

#include <array>
#include <cstddef>
#include <vector>

namespace flug
{

constexpr double kZeitschritt = 0.0001; ///< s
/// A flight that lasts longer counts as not landed, s. Without drag none lasts a tenth of it.
constexpr double kLaengsterFlug = 600.0;

/// What a flight depends on beside its initial speed.
struct Bedingung {
    double winkel = 0.0;         ///< of the throw above the horizontal, rad
    double luftwiderstand = 0.0; ///< k of the drag deceleration k·u², 1/m
    double gegenwind = 0.0;      ///< m/s
    double hoehe = 0.0;          ///< of the impact, m
};

struct Flug {
    double vx = 0.0; ///< at the end, m/s
    double vz = 0.0;
    double weite = 0.0; ///< last x at or above the impact height, m
    double weiteZeit = 0.0;
    double groessteWeite = 0.0; ///< largest x at or above the start, m
    double groessteWeiteZeit = 0.0;
    double wurfhoehe = 0.0; ///< m
    double wurfhoeheZeit = 0.0;
    double verlust = 0.0;      ///< vertical speed that the drag took in the fall, m/s
    double daempfung = 0.0;    ///< largest share of the speed against the air that one time step took
    bool gelandet = true;      ///< false: still in the air after the longest flight
    std::vector<CDPoint> bahn; ///< some hundred points of the path, m
};

/// Flies with `v0` in m/s.
Flug Fliege(const Bedingung& bedingung, double v0);

/// What a search for the speed needs of a flight: the very numbers of `Fliege`.
struct Landung {
    double vx = 0.0;
    double weite = 0.0;
    bool erreicht = false; ///< some step was at or above the impact height
    bool gelandet = true;
};

/// Flights that are worked side by side, which a processor does in little more time than one.
constexpr std::size_t kNebeneinander = 4;
using Geschwindigkeiten = std::array<double, kNebeneinander>;

/// Lands every flight. `dauer` grows by the time they were in the air, s, the longest one counting for all.
std::array<Landung, kNebeneinander> Lande(const Bedingung& bedingung, const Geschwindigkeiten& v0, double& dauer);

} // namespace flug
