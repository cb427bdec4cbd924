// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The shape of four points of the road from the distances between them.
#pragma once

#include "host/vision/CPerspectiveRectifier.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace vision
{

/// Which points each distance lies between, in the order of RoadDistances.
inline constexpr std::array<std::pair<std::size_t, std::size_t>, 6> kDistancePairs{
    {{0, 1}, {1, 3}, {3, 2}, {2, 0}, {0, 3}, {1, 2}}};

struct PlaneShape {
    RoadFault fault = RoadFault::none;
    RoadPoints corners{};                             ///< m; P3 is the origin, x along P3 P4, y away from the camera
    std::vector<double> parameters{};                 ///< a start for distances that differ a little
    std::array<std::optional<double>, 6> residuals{}; ///< measured minus that of the shape, m
};

/// Least squares of the distances given, each with the same weight. `start` is empty or the parameters of a shape near
/// by with the same pattern.
PlaneShape SolveShape(const RoadDistances& distances, RectifyPattern pattern, bool strict,
                      const std::vector<double>& start = {});

} // namespace vision
