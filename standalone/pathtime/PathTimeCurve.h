// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The motion of a vehicle before the collision as a curve over time.
#pragma once

#include "host/CWegZeitDat.h"

#include <optional>
#include <vector>

namespace pathtime
{

/// A vehicle at one moment. Time and position are 0 at the collision and negative before it.
struct MotionState {
    double time = 0.0;         ///< s
    double position = 0.0;     ///< m along the vehicle's own way, forward positive
    double speed = 0.0;        ///< m/s, negative in reverse
    double deceleration = 0.0; ///< m/s², positive brakes in the direction of travel
};

class PathTimeCurve
{
  public:
    struct Phase {
        std::size_t column;
        PhasenArt art;
        MotionState start;
        MotionState end;

        /// State at a time within the phase. At start and end it is theirs, bit for bit. Between them position follows
        /// from the speeds, the path and the duration alone: the one cubic that meets them all, which is the motion
        /// itself for a deceleration that is constant or changes linearly.
        MotionState At(double time) const;
    };

    /// Takes the used columns before the collision as they stand; quantities that are not numbers count as 0.
    explicit PathTimeCurve(const CWegZeitDat& columns);

    /// Earliest first. A phase without duration is a jump of speed, of position or of both.
    const std::vector<Phase>& Phases() const { return m_phases; }
    bool IsEmpty() const { return m_phases.empty(); }
    /// s, 0 or negative.
    double StartTime() const { return IsEmpty() ? 0.0 : m_phases.front().start.time; }

    /// Nothing outside [StartTime(), 0]. Where two phases meet, the state the later one starts with.
    std::optional<MotionState> At(double time) const;

    /// Earliest first: start and end of every phase, and in phases that bend states in between, at most `step` > 0
    /// seconds apart (but no more than 1,000 per phase).
    std::vector<MotionState> Sample(double step) const;

  private:
    std::vector<Phase> m_phases;
};

} // namespace pathtime
