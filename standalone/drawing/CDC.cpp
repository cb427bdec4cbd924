// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The recorder keeps what can be shown: every primitive has finite coordinates within a guard box far outside any
// picture, a usable pen, and an area or a length. Whoever replays a drawing relies on that.
#include "host/CDC.h"

#include "drawing/DrawingGeometry.h"
#include "drawing/FontMetrics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
constexpr double kGuard = 1e6;         // px; what lies beyond is cut off
constexpr double kMeaningless = 1e15;  // px; larger numbers are treated as not-a-number
constexpr double kThinnestPen = 0.01;  // px
constexpr double kWidestPen = 1e4;     // px
constexpr double kSmallestFont = 0.01; // px
constexpr double kSmallestArea = 0.01; // px²
constexpr drawing::Box kGuardBox{-kGuard, -kGuard, kGuard, kGuard};

/// False for not-a-number too.
bool Within(double value, double limit)
{
    return std::abs(value) <= limit;
}

bool IsPoint(const CDPoint& p)
{
    return Within(p.x, kMeaningless) && Within(p.y, kMeaningless);
}

bool InGuard(const CDPoint& p)
{
    return Within(p.x, kGuard) && Within(p.y, kGuard);
}

/// A pen without a width draws lines of one pixel.
CPen Usable(CPen pen)
{
    pen.width = pen.width > 0.0 ? std::clamp(pen.width, kThinnestPen, kWidestPen) : 1.0;
    return pen;
}
} // namespace

void CDC::Line(CDPoint from, CDPoint to)
{
    Polyline({from, to});
}

/// A point that is not a number interrupts the line.
void CDC::Polyline(std::vector<CDPoint> points)
{
    std::vector<CDPoint> run;
    const auto finish = [&] {
        if (run.size() > 1)
            m_primitives.emplace_back(drawing::Polyline{std::move(run), Usable(m_pen)});
        run.clear();
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
        const CDPoint& a = points[i - 1];
        const CDPoint& b = points[i];
        const auto part = IsPoint(a) && IsPoint(b) ? drawing::ClipSegment(a, b, kGuardBox) : std::nullopt;
        if (!part) {
            finish();
            continue;
        }
        if (run.empty())
            run.push_back(part->from > 0.0 ? a + (b - a) * part->from : a);
        run.push_back(part->to < 1.0 ? a + (b - a) * part->to : b);
        if (part->to < 1.0)
            finish();
    }
    finish();
}

/// A point that is not a number is left out.
void CDC::Polygon(std::vector<CDPoint> points)
{
    std::erase_if(points, [](const CDPoint& p) { return !IsPoint(p); });
    points = drawing::ClipPolygon(std::move(points), kGuardBox);
    if (points.size() > 2)
        m_primitives.emplace_back(drawing::Polygon{std::move(points), Usable(m_pen), m_brush});
}

void CDC::Rectangle(double left, double top, double right, double bottom, double radiusX, double radiusY)
{
    if (!IsPoint({left, top}) || !IsPoint({right, bottom}))
        return;
    const auto [x0, x1] = std::minmax({std::clamp(left, -kGuard, kGuard), std::clamp(right, -kGuard, kGuard)});
    const auto [y0, y1] = std::minmax({std::clamp(top, -kGuard, kGuard), std::clamp(bottom, -kGuard, kGuard)});
    if (x0 == x1 || y0 == y1)
        return;
    const bool rounded = radiusX > 0.0 && radiusY > 0.0;
    const double rx = rounded ? std::min(radiusX, (x1 - x0) / 2.0) : 0.0;
    const double ry = rounded ? std::min(radiusY, (y1 - y0) / 2.0) : 0.0;
    m_primitives.emplace_back(drawing::Rectangle{x0, y0, x1, y1, rx, ry, Usable(m_pen), m_brush});
}

void CDC::Ellipse(CDPoint centre, double rx, double ry, double angle)
{
    const bool sized = Within(rx, kGuard) && Within(ry, kGuard) && rx != 0.0 && ry != 0.0;
    if (InGuard(centre) && sized && Within(angle, kMeaningless))
        m_primitives.emplace_back(drawing::Ellipse{centre, std::abs(rx), std::abs(ry), angle, Usable(m_pen), m_brush});
}

void CDC::TextOut(CDPoint baseline, const std::string& utf8, TextAlign align, double angle)
{
    const bool sized = m_font.size >= kSmallestFont && m_font.size <= kGuard;
    if (InGuard(baseline) && sized && Within(angle, kMeaningless) && !utf8.empty())
        m_primitives.emplace_back(drawing::Text{baseline, utf8, align, angle, m_font, m_textColor});
}

void CDC::Picture(CDPoint corner, CDPoint across, CDPoint down, double opacity,
                  std::shared_ptr<const drawing::Bitmap> bitmap)
{
    const bool inGuard = InGuard(corner) && InGuard(corner + across) && InGuard(corner + down);
    const bool flat = std::abs(across.x * down.y - across.y * down.x) < kSmallestArea;
    const bool whole =
        bitmap != nullptr && bitmap->width > 0 && bitmap->height > 0 &&
        bitmap->pixels.size() == static_cast<std::size_t>(bitmap->width) * static_cast<std::size_t>(bitmap->height);
    if (inGuard && !flat && whole && opacity > 0.0)
        m_primitives.emplace_back(drawing::Picture{corner, across, down, std::min(opacity, 1.0), std::move(bitmap)});
}

double CDC::TextWidth(const std::string& utf8) const
{
    return drawing::TextWidth(utf8, m_font);
}

double CDC::TextHeight() const
{
    return drawing::FontAscent(m_font) + drawing::FontDescent(m_font);
}

double CDC::TextAscent() const
{
    return drawing::FontAscent(m_font);
}
