// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What is said of the range picked in a chart.
#pragma once

#include "chart/Curve.h"

#include <cstddef>
#include <optional>

namespace chart
{

/// Values in the curve's unit but where said. Nothing where a missing sample leaves it open.
struct RangeStatistics {
    double duration = 0.0;          ///< Δt, s
    std::optional<double> path{};   ///< Δs, m: the area under the line through the samples; of speeds only
    std::optional<double> mean{};   ///< area / Δt: of a speed Δs/Δt, not the mean of the samples
    std::optional<double> lowest{}; ///< of the samples that are there
    std::optional<double> highest{};
    std::optional<double> acceleration{}; ///< (v_last − v_first)/Δt, m/s²; of speeds only
};

/// Of the samples first..last, both included. `metresPerSecond` is one unit of a speed in m/s, 0 for what is no speed.
RangeStatistics StatisticsOf(const Curve& curve, std::size_t first, std::size_t last, double metresPerSecond);

} // namespace chart
