// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneSymbols.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace scene
{
namespace
{

using Type = CKfzDaten::Type;

constexpr double kDetailLength = 16.0; // pixels, shorter ones are outlines
constexpr double kDashedLength = 40.0; // shorter ones would be dashes without a shape
constexpr int kArcSteps = 5;

class SymbolPainter
{
  public:
    SymbolPainter(CDC& dc, const SymbolPlace& place, const SymbolColors& colors)
        : m_dc(dc), m_place(place), m_colors(colors), m_cos(std::cos(place.heading)),
          m_sin(std::sin(place.heading)), m_pen{colors.filled || place.length < kDashedLength ? PenStyle::solid
                                                                                              : PenStyle::dash,
                                                place.length < kDetailLength ? 1.0 : 1.5, colors.line}
    {
    }

    void Draw(Type type)
    {
        const bool detail = m_place.length >= kDetailLength;
        switch (type) {
        case Type::truck:
            DrawTruck(detail);
            break;
        case Type::motorcycle:
        case Type::bicycle:
            DrawTwoWheeler(type == Type::motorcycle);
            break;
        case Type::pedestrian:
            // Who stands is wider than long.
            if (m_place.length > 1.4 * m_place.width)
                DrawLying();
            else
                DrawStanding();
            break;
        default:
            DrawCar(detail);
            break;
        }
    }

  private:
    /// x forward from -1 to 1, y to the left from -1 to 1.
    CDPoint At(double x, double y) const
    {
        const double forward = x * m_place.length / 2.0;
        const double left = y * m_place.width / 2.0;
        return {m_place.centre.x + forward * m_cos - left * m_sin, m_place.centre.y - forward * m_sin - left * m_cos};
    }

    void Select(COLORREF fill)
    {
        m_dc.SelectPen(m_pen);
        m_dc.SelectBrush({m_colors.filled, fill});
    }

    void Shape(const std::vector<CDPoint>& outline)
    {
        std::vector<CDPoint> points;
        points.reserve(outline.size());
        for (const CDPoint& point : outline)
            points.push_back(At(point.x, point.y));
        m_dc.Polygon(std::move(points));
    }

    /// A box with rounded corners; radii as parts of half the length at the rear and the front.
    void Box(double rear, double front, double half, double rearRadius, double frontRadius)
    {
        const double across = m_place.length / std::max(m_place.width, 1e-9);
        std::vector<CDPoint> points;
        const auto arc = [&](double x, double y, double radius, double from) {
            const double high = std::min(radius * across, half);
            for (int i = 0; i <= kArcSteps; ++i) {
                const double angle = from + kPi / 2.0 * i / kArcSteps;
                points.push_back({x + radius * std::cos(angle) - std::copysign(radius, x),
                                  y + high * std::sin(angle) - std::copysign(high, y)});
            }
        };
        arc(front, half, frontRadius, 0.0);
        arc(rear, half, rearRadius, kPi / 2.0);
        arc(rear, -half, rearRadius, kPi);
        arc(front, -half, frontRadius, 1.5 * kPi);
        // The corners of a box that does not reach over the middle.
        Shape(points);
    }

    void Round(double x, double y, double rx, double ry)
    {
        m_dc.Ellipse(At(x, y), rx * m_place.length / 2.0, ry * m_place.width / 2.0, m_place.heading);
    }

    void DrawCar(bool detail)
    {
        Select(m_colors.body);
        Box(-1.0, 1.0, 1.0, 0.1, 0.2);
        if (!detail)
            return;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.line});
        m_dc.SelectBrush({true, m_colors.glass});
        Shape({{0.4, 0.8}, {0.46, 0.4}, {0.48, 0.0}, {0.46, -0.4}, {0.4, -0.8}, {0.14, -0.66}, {0.14, 0.66}});
        Shape({{-0.72, 0.74}, {-0.78, 0.0}, {-0.72, -0.74}, {-0.52, -0.62}, {-0.52, 0.62}});
        m_dc.Line(At(0.94, 0.42), At(0.98, 0.0));
        m_dc.Line(At(0.98, 0.0), At(0.94, -0.42));
    }

    void DrawTruck(bool detail)
    {
        Select(m_colors.body);
        Shape({{-1.0, 1.0}, {0.66, 1.0}, {0.66, -1.0}, {-1.0, -1.0}});
        Shape({{0.7, 0.96}, {0.96, 0.96}, {1.0, 0.8}, {1.0, -0.8}, {0.96, -0.96}, {0.7, -0.96}});
        if (!detail)
            return;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.line});
        m_dc.SelectBrush({true, m_colors.glass});
        Shape({{0.9, 0.84}, {0.98, 0.76}, {0.98, -0.76}, {0.9, -0.84}});
    }

    void DrawTwoWheeler(bool motorcycle)
    {
        const double wheel = motorcycle ? 0.26 : 0.12;
        Select(m_colors.glass);
        Round(0.68, 0.0, 0.32, wheel);
        Round(-0.68, 0.0, 0.32, wheel);
        Select(m_colors.body);
        if (motorcycle)
            Shape({{0.42, 0.2}, {0.42, -0.2}, {0.1, -0.42}, {-0.66, -0.26}, {-0.66, 0.26}, {0.1, 0.42}});
        else
            Shape({{0.62, 0.07}, {0.62, -0.07}, {-0.62, -0.07}, {-0.62, 0.07}});
        m_dc.SelectPen({PenStyle::solid, std::max(1.5, 0.035 * m_place.length), m_colors.line});
        m_dc.Polyline({At(0.3, 1.0), At(0.46, 0.6), At(0.52, 0.0), At(0.46, -0.6), At(0.3, -1.0)});
        Select(m_colors.glass);
        Round(-0.2, 0.0, 0.2, motorcycle ? 0.28 : 0.2);
    }

    void DrawStanding()
    {
        Select(m_colors.body);
        Round(0.0, 0.0, 0.62, 1.0);
        m_dc.SelectBrush({true, m_colors.glass});
        Round(0.08, 0.0, 0.58, 0.4);
        m_dc.SelectPen({PenStyle::solid, 1.5, m_colors.line});
        m_dc.Polyline({At(0.75, 0.3), At(1.1, 0.0), At(0.75, -0.3)}); // looks this way
    }

    void DrawLying()
    {
        Select(m_colors.body);
        Shape({{0.66, 0.3},
               {0.6, 0.95},
               {0.05, 1.0},
               {0.02, 0.72},
               {0.45, 0.62},
               {-0.02, 0.55},
               {-1.0, 0.62},
               {-1.0, 0.14},
               {-0.1, 0.04},
               {-0.1, -0.04},
               {-1.0, -0.14},
               {-1.0, -0.62},
               {-0.02, -0.55},
               {0.45, -0.62},
               {0.02, -0.72},
               {0.05, -1.0},
               {0.6, -0.95},
               {0.66, -0.3}});
        m_dc.SelectBrush({true, m_colors.glass});
        const double radius = std::min(0.17 * m_place.length / 2.0, 0.5 * m_place.width);
        m_dc.Ellipse(At(0.83, 0.0), radius, radius);
    }

    CDC& m_dc;
    const SymbolPlace& m_place;
    const SymbolColors& m_colors;
    const double m_cos;
    const double m_sin;
    const CPen m_pen;
};

} // namespace

void DrawParticipant(CDC& dc, CKfzDaten::Type type, const SymbolPlace& place, const SymbolColors& colors)
{
    SymbolPainter(dc, place, colors).Draw(type);
}

} // namespace scene
