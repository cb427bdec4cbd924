// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The picture of a chart: axes, curves, range, cross-hair and what stands around them.
#pragma once

#include "chart/Axis.h"
#include "chart/Curve.h"
#include "host/CDC.h"

#include <optional>
#include <string>
#include <vector>

namespace chart
{

struct DrawnCurve {
    std::string name{};
    COLORREF color = 0;
    double width = 1.5;
    const Curve* curve = nullptr;    ///< what is drawn
    const Curve* readings = nullptr; ///< what the cross-hair reads off
};

/// A stretch of the bottom axis over which nothing was recorded.
struct Gap {
    double from = 0.0;
    double to = 0.0;
};

struct View {
    double from = 0.0; ///< bottom axis
    double to = 1.0;
    double low = 0.0; ///< left axis, in the unit shown
    double high = 1.0;
};

/// Two opposite corners, in pixels.
struct Box {
    CDPoint a{};
    CDPoint b{};
};

struct Look {
    const Axis* bottom = nullptr;
    const Axis* left = nullptr;
    std::vector<DrawnCurve> curves{};
    View view{};
    std::vector<Gap> gaps{};          ///< shaded
    std::string gapName{};            ///< in the legend, when there are some
    std::vector<double> cursors{};    ///< the ends of the range, or its start alone
    std::size_t activeCursor = 0;     ///< the one the arrow keys move
    std::vector<std::string> items{}; ///< what stands under the plot, flowing into lines
    std::string note{};
    std::string message{};             ///< in place of the curves
    std::optional<CDPoint> pointer{};  ///< cross-hair
    std::optional<double> pointedAt{}; ///< place on the bottom axis that another view points at
    std::optional<Box> rubber{};       ///< box that will be zoomed into
    bool report = false;
};

/// Where the plot lies in a drawing.
struct Plot {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double footer = 0.0; ///< top of what stands under the axis
    double fontSize = 12.0;

    bool IsUsable() const { return right - left >= 8.0 && bottom - top >= 8.0; }
    bool Holds(const CDPoint& p) const { return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom; }
};

/// Depends on the size of the drawing and on what stands around the plot, on nothing drawn before.
Plot PlotOf(CDC& dc, const Look& look);

/// Fills the whole drawing.
void DrawChart(CDC& dc, const Look& look);

/// The parts of a line that lie in the box left..right, top..bottom.
std::vector<std::vector<CDPoint>> ClippedTo(const std::vector<CDPoint>& line, const Plot& box);

} // namespace chart
