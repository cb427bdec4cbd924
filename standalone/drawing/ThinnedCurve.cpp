// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/ThinnedCurve.h"

#include <algorithm>
#include <limits>

namespace drawing
{

std::vector<CDPoint> ThinnedCurve(const std::vector<CDPoint>& points, double tolerance)
{
    constexpr double kAny = std::numeric_limits<double>::infinity();
    std::vector<CDPoint> kept;
    // Slopes of lines from the last point kept that pass near enough by all points since.
    double lowest = -kAny;
    double highest = kAny;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto keep = [&](const CDPoint& point) {
            if (kept.empty() || !(kept.back() == point))
                kept.push_back(point);
            lowest = -kAny;
            highest = kAny;
        };
        if (i == 0) {
            keep(points[i]);
            continue;
        }
        const auto slopeTo = [&](double up) {
            return (points[i].y + up - kept.back().y) / (points[i].x - kept.back().x);
        };
        if (!(points[i].x > points[i - 1].x)) {
            keep(points[i - 1]);
            keep(points[i]);
            continue;
        }
        if (const double slope = slopeTo(0.0); slope < lowest || slope > highest)
            keep(points[i - 1]);
        lowest = std::max(lowest, slopeTo(-tolerance));
        highest = std::min(highest, slopeTo(tolerance));
        if (i + 1 == points.size())
            keep(points[i]);
    }
    return kept;
}

} // namespace drawing
