// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DrawingGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace drawing
{
namespace
{
/// Cuts off what lies beyond `limit` on one axis: above it for side = 1, below it for side = -1.
Contour ClipSide(const Contour& outline, double CDPoint::*axis, double limit, double side)
{
    double CDPoint::*other = axis == &CDPoint::x ? &CDPoint::y : &CDPoint::x;
    const auto inside = [&](const CDPoint& p) { return side * (p.*axis - limit) <= 0.0; };

    Contour result;
    result.reserve(outline.size() + 4);
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const CDPoint& a = outline[i == 0 ? outline.size() - 1 : i - 1];
        const CDPoint& b = outline[i];
        if (inside(a) != inside(b)) {
            const double t = (limit - a.*axis) / (b.*axis - a.*axis);
            CDPoint cut;
            cut.*axis = limit;
            cut.*other = a.*other + t * (b.*other - a.*other);
            result.push_back(cut);
        }
        if (inside(b))
            result.push_back(b);
    }
    return result;
}
} // namespace

std::optional<SegmentPart> ClipSegment(CDPoint a, CDPoint b, const Box& box)
{
    // Liang and Barsky: each side of the box is a bound p·t <= q on the segment's parameter.
    SegmentPart part{0.0, 1.0};
    const CDPoint d = b - a;
    const auto bound = [&](double p, double q) {
        if (p == 0.0)
            return q >= 0.0;
        if (p < 0.0)
            part.from = std::max(part.from, q / p);
        else
            part.to = std::min(part.to, q / p);
        return part.from <= part.to;
    };
    const bool visible = bound(-d.x, a.x - box.left) && bound(d.x, box.right - a.x) && bound(-d.y, a.y - box.top) &&
                         bound(d.y, box.bottom - a.y);
    return visible ? std::optional(part) : std::nullopt;
}

Contour ClipPolygon(Contour outline, const Box& box)
{
    const bool inside = std::all_of(outline.begin(), outline.end(), [&](const CDPoint& p) {
        return p.x >= box.left && p.x <= box.right && p.y >= box.top && p.y <= box.bottom;
    });
    if (inside)
        return outline;
    outline = ClipSide(outline, &CDPoint::x, box.left, -1.0);
    outline = ClipSide(outline, &CDPoint::x, box.right, 1.0);
    outline = ClipSide(outline, &CDPoint::y, box.top, -1.0);
    return ClipSide(outline, &CDPoint::y, box.bottom, 1.0);
}

std::vector<QuarterArc> ArcsOf(const drawing::Ellipse& ellipse)
{
    const double c = std::cos(ellipse.angle);
    const double s = std::sin(ellipse.angle);
    const CDPoint u{c * ellipse.rx, -s * ellipse.rx};
    const CDPoint v{-s * ellipse.ry, -c * ellipse.ry};
    const CDPoint& m = ellipse.centre;
    return {{m, u, v}, {m, v, u * -1.0}, {m, u * -1.0, v * -1.0}, {m, v * -1.0, u}};
}

std::vector<QuarterArc> ArcsOf(const drawing::Rectangle& r)
{
    const CDPoint right{r.radiusX, 0.0};
    const CDPoint left{-r.radiusX, 0.0};
    const CDPoint down{0.0, r.radiusY};
    const CDPoint up{0.0, -r.radiusY};
    return {{CDPoint{r.left, r.top} + right + down, left, up},
            {CDPoint{r.right, r.top} + left + down, up, right},
            {CDPoint{r.right, r.bottom} + left + up, right, down},
            {CDPoint{r.left, r.bottom} + right + up, down, left}};
}

Contour Flatten(const std::vector<QuarterArc>& arcs, double tolerance)
{
    Contour points;
    for (const QuarterArc& arc : arcs) {
        if (arc.IsCorner()) {
            points.push_back(arc.centre);
            continue;
        }
        // A chord over the angle w of a circle of radius r stays within r·(1 - cos(w/2)) <= r·w²/8 of it.
        const double radius = std::max(std::hypot(arc.from.x, arc.from.y), std::hypot(arc.to.x, arc.to.y));
        const double quarter = std::numbers::pi / 2.0;
        const int steps = static_cast<int>(std::ceil(quarter / std::sqrt(8.0 * tolerance / radius))) + 1;
        for (int i = 0; i <= steps; ++i) {
            const double w = quarter * i / steps;
            points.push_back(arc.centre + arc.from * std::cos(w) + arc.to * std::sin(w));
        }
    }
    return points;
}
} // namespace drawing
