// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Plane geometry that the recorder of drawings and its exporters share. Coordinates are pixels, y down.
#pragma once

#include "host/CDC.h"

#include <optional>
#include <vector>

namespace drawing
{
/// The points of a line, or of a closed outline (the last point is not the first one again).
using Contour = std::vector<CDPoint>;

struct Box {
    double left;
    double top;
    double right;
    double bottom;
};

/// Part of the segment from a to b: a + (b - a)·t for t in [from, to].
struct SegmentPart {
    double from;
    double to;
};

/// The part of the segment inside the box, if any.
std::optional<SegmentPart> ClipSegment(CDPoint a, CDPoint b, const Box& box);

/// The part of a closed outline inside the box; sides along the box's border may run back over themselves.
Contour ClipPolygon(Contour outline, const Box& box);

/// A quarter of an ellipse from centre + from to centre + to, `from` and `to` being conjugate half axes. Both zero:
/// a corner.
struct QuarterArc {
    CDPoint centre;
    CDPoint from;
    CDPoint to;
    bool IsCorner() const { return from == CDPoint{} && to == CDPoint{}; }
};

/// The outline as quarter arcs, joined by straight lines where one does not start at the other's end.
std::vector<QuarterArc> ArcsOf(const drawing::Ellipse& ellipse);
std::vector<QuarterArc> ArcsOf(const drawing::Rectangle& rectangle);

/// The arcs as points that stay within `tolerance` of the curve.
Contour Flatten(const std::vector<QuarterArc>& arcs, double tolerance);
} // namespace drawing
