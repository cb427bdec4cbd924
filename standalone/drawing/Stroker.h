// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "drawing/DrawingGeometry.h"

#include <vector>

namespace drawing
{
enum class StrokeJoin { round, miter };

/// How a line becomes an area; lengths in the unit of the points.
struct StrokeStyle {
    double width = 1.0;
    StrokeJoin join = StrokeJoin::round;
    std::vector<double> dashes{}; ///< dash, gap, dash, ...; empty for a solid line
};

/// Outlines of the drawn line, to be filled together by the non-zero rule. `closed` joins the last point to the first.
/// Dashes outside `visible`, by more than the width of the line, are left out.
std::vector<Contour> StrokeOutlines(const Contour& points, bool closed, const StrokeStyle& style, const Box& visible);
} // namespace drawing
