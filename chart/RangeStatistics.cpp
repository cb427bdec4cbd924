// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/RangeStatistics.h"

#include "host/Assert.h"

namespace chart
{

RangeStatistics StatisticsOf(const Curve& curve, std::size_t first, std::size_t last, double metresPerSecond)
{
    RUV_ASSERT(first <= last && last < curve.Size());
    RangeStatistics found;
    found.duration = curve.X(last) - curve.X(first);
    const Extremes extremes = curve.Between(first, last + 1);
    if (!extremes.IsEmpty()) {
        found.lowest = extremes.lowest;
        found.highest = extremes.highest;
    }
    // Trapezia: exact for the straight lines that are drawn. A missing sample makes the sum not-a-number.
    double area = 0.0;
    for (std::size_t i = first; i < last; ++i)
        area += (curve.X(i + 1) - curve.X(i)) * (curve.Y(i) + curve.Y(i + 1)) / 2.0;
    const bool complete = area == area && !curve.IsMissing(first);
    if (complete && metresPerSecond > 0.0)
        found.path = area * metresPerSecond;
    if (complete && found.duration > 0.0)
        found.mean = area / found.duration;
    if (metresPerSecond > 0.0 && found.duration > 0.0 && !curve.IsMissing(first) && !curve.IsMissing(last))
        found.acceleration = (curve.Y(last) - curve.Y(first)) * metresPerSecond / found.duration;
    return found;
}

} // namespace chart
