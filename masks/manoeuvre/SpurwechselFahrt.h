// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How fast a lane change is driven: up to three parts of constant speed or constant acceleration, in driving order.
// SI units.
#pragma once

#include <array>

struct Fahrabschnitt {
    double zeit = 0.0;
    double weg = 0.0;
    double vAnf = 0.0;
    double vEnd = 0.0;

    /// The same part driven the other way round.
    Fahrabschnitt Umgekehrt() const { return {zeit, weg, vEnd, vAnf}; }
};

struct SpurwechselFahrt {
    std::array<Fahrabschnitt, 3> abschnitte{};

    double Zeit() const;
    double Weg() const;
    double Anfangsgeschw() const { return abschnitte.front().vAnf; }
    double Endgeschw() const { return abschnitte.back().vEnd; }
    /// Time from the start to this path, and the speed there.
    double ZeitBei(double weg) const;
    double GeschwindigkeitBei(double weg) const;
    SpurwechselFahrt Umgekehrt() const;
};
