// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/VehicleDrawing.h"

#include "drawing/DiagramColor.h"
#include "host/Physics.h"
#include "krn/VehicleFields.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace scene
{
namespace
{

using Type = CKfzDaten::Type;

// Pixels of the drawing.
constexpr double kPad = 10.0;
constexpr double kDimension = 16.0; // from one dimension line to the next
constexpr double kArrow = 5.0;
constexpr double kBetween = 14.0; // from the side view to the view from above
constexpr CFont kFont{11.5, true};

/// Side view with the front at 1 and the height at 1, the road at 0.
const std::vector<CDPoint>& Outline(Type type)
{
    static const std::vector<CDPoint> car{{0.0, 0.2},  {0.0, 0.52}, {0.03, 0.63}, {0.13, 0.68}, {0.27, 0.95},
                                          {0.33, 1.0}, {0.56, 1.0}, {0.62, 0.96}, {0.74, 0.66}, {0.95, 0.57},
                                          {1.0, 0.46}, {1.0, 0.2},  {0.97, 0.14}, {0.03, 0.14}};
    static const std::vector<CDPoint> truck{{0.0, 0.2},  {0.0, 1.0},   {0.76, 1.0},  {0.76, 0.3},
                                            {0.78, 0.3}, {0.78, 0.84}, {0.96, 0.84}, {1.0, 0.52},
                                            {1.0, 0.14}, {0.78, 0.14}, {0.76, 0.2}};
    static const std::vector<CDPoint> motorcycle{{0.02, 0.62}, {0.1, 0.72}, {0.42, 0.7}, {0.55, 0.84},
                                                 {0.68, 0.8},  {0.7, 1.0},  {0.75, 1.0}, {0.76, 0.74},
                                                 {0.72, 0.62}, {0.62, 0.3}, {0.38, 0.3}, {0.3, 0.55}};
    static const std::vector<CDPoint> pedestrian{{0.25, 0.0}, {0.2, 0.45}, {0.0, 0.55}, {0.1, 0.8},  {0.3, 0.85},
                                                 {0.22, 0.9}, {0.3, 1.0},  {0.7, 1.0},  {0.78, 0.9}, {0.7, 0.85},
                                                 {0.9, 0.8},  {1.0, 0.55}, {0.8, 0.45}, {0.75, 0.0}, {0.55, 0.0},
                                                 {0.5, 0.4},  {0.45, 0.0}};
    switch (type) {
    case Type::truck:
        return truck;
    case Type::motorcycle:
        return motorcycle;
    case Type::pedestrian:
        return pedestrian;
    default:
        return car;
    }
}

bool HasTwoWheels(Type type)
{
    return type == Type::motorcycle || type == Type::bicycle;
}

double WheelRadius(const CKfzDaten& vehicle)
{
    switch (vehicle.type) {
    case Type::truck:
        return 0.14 * vehicle.height;
    case Type::motorcycle:
    case Type::bicycle:
        return std::min(0.29 * vehicle.height, 0.45 * vehicle.wheelbase);
    default:
        return 0.22 * vehicle.height;
    }
}

/// The dimensions a drawing needs are there.
CKfzDaten Drawable(const CKfzDaten& vehicle)
{
    constexpr double kLongest = 100.0;
    CKfzDaten drawn = vehicle;
    const CKfzDaten typical = krn::TypicalVehicle(vehicle.type == Type::none ? Type::car : vehicle.type);
    for (double CKfzDaten::*field : {&CKfzDaten::length, &CKfzDaten::width, &CKfzDaten::height})
        if (!(drawn.*field > 0.0 && drawn.*field < kLongest))
            drawn.*field = typical.*field;
    for (double CKfzDaten::*field : {&CKfzDaten::wheelbase, &CKfzDaten::track, &CKfzDaten::frontOverhang})
        if (!(std::abs(drawn.*field) < kLongest))
            drawn.*field = 0.0;
    return drawn;
}

class VehiclePainter
{
  public:
    VehiclePainter(CDC& dc, const CKfzDaten& vehicle, double CKfzDaten::*chosen, const drawing::DiagramPalette& palette,
                   COLORREF accent)
        : m_dc(dc), m_values(vehicle), m_vehicle(Drawable(vehicle)), m_chosen(chosen), m_palette(palette),
          m_accent(drawing::Legible(accent, palette.background, 3.0)),
          m_body(drawing::Blend(palette.plot, drawing::Legible(vehicle.color, palette.plot, 1.5), 0.35)),
          m_line(drawing::Legible(vehicle.color, palette.plot, 3.0))
    {
    }

    void Draw()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.background});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        if (m_chosen == &CKfzDaten::turningCircle || m_chosen == &CKfzDaten::turningCircleExtra)
            DrawTurningCircle();
        else
            DrawViews();
    }

  private:
    double X(double fromRear) const { return m_left + fromRear * m_scale; }

    void DrawViews()
    {
        const CKfzDaten& v = m_vehicle;
        m_dc.SelectFont(kFont);
        const double text = m_dc.TextHeight();
        const double side = kPad + 2.0 * kDimension;
        const double fixed = 2.0 * kPad + text + 2.0 * kDimension + kBetween + text;
        m_scale = std::min((m_dc.Width() - 2.0 * side) / v.length, (m_dc.Height() - fixed) / (v.height + v.width));
        if (!(m_scale > 0.0))
            return;
        m_left = (m_dc.Width() - v.length * m_scale) / 2.0;
        const double used = fixed + (v.height + v.width) * m_scale;
        const double road = std::max((m_dc.Height() - used) / 2.0, 0.0) + kPad + text + v.height * m_scale;
        DrawSide(road);
        const double top = road + 2.0 * kDimension + kBetween + text;
        DrawAbove(top, top + v.width * m_scale);
    }

    void DrawSide(double road)
    {
        const CKfzDaten& v = m_vehicle;
        m_road = road;
        std::vector<CDPoint> outline;
        for (const CDPoint& point : Outline(v.type))
            outline.push_back({X(point.x * v.length), road - point.y * v.height * m_scale});
        m_dc.SelectPen({PenStyle::solid, 1.0, m_palette.axis});
        m_dc.Line({m_left - kPad, road}, {X(v.length) + kPad, road});
        const double front = X(v.length - v.frontOverhang);
        const double rear = front - v.wheelbase * m_scale;
        const double radius = WheelRadius(v) * m_scale;
        const bool wheels = v.wheelbase > 0.0;
        if (wheels && HasTwoWheels(v.type))
            DrawWheels(rear, front, road, radius);
        m_dc.SelectPen({PenStyle::solid, 1.4, m_line});
        m_dc.SelectBrush({true, m_body});
        if (v.type == Type::bicycle)
            DrawBicycleFrame({rear, road - radius}, {front, road - radius}, v.height * m_scale);
        else
            m_dc.Polygon(std::move(outline));
        if (wheels && !HasTwoWheels(v.type))
            DrawWheels(rear, front, road, radius);

        Vertical(&CKfzDaten::height, m_left - kDimension, road - v.height * m_scale, road, m_left);
        if (wheels) {
            Horizontal(&CKfzDaten::rearOverhang, m_left, rear, road + kDimension, road);
            Horizontal(&CKfzDaten::wheelbase, rear, front, road + kDimension, road);
            Horizontal(&CKfzDaten::frontOverhang, front, X(v.length), road + kDimension, road);
        }
        Horizontal(&CKfzDaten::length, m_left, X(v.length), road + 2.0 * kDimension, road);
    }

    void DrawBicycleFrame(CDPoint rearHub, CDPoint frontHub, double height)
    {
        const double base = frontHub.x - rearHub.x;
        const auto at = [&](double part, double high) {
            return CDPoint{rearHub.x + part * base, m_road - high * height};
        };
        const CDPoint pedals = at(0.42, 0.27);
        const CDPoint saddle = at(0.28, 0.84);
        const CDPoint head = at(0.8, 0.76);
        m_dc.SelectPen({PenStyle::solid, 2.6, m_line});
        m_dc.Polyline({rearHub, at(0.31, 0.72), head, pedals, rearHub});
        m_dc.Polyline({pedals, saddle});
        m_dc.Polyline({at(0.2, 0.85), at(0.38, 0.85)});
        m_dc.Polyline({frontHub, head, at(0.76, 0.98), at(0.9, 0.99)});
    }

    void DrawWheels(double rear, double front, double road, double radius)
    {
        const bool open = HasTwoWheels(m_vehicle.type);
        for (const double x : {rear, front}) {
            m_dc.SelectPen({PenStyle::solid, open ? 2.5 : 1.2, m_palette.text});
            m_dc.SelectBrush({!open, drawing::Blend(m_palette.plot, m_palette.text, 0.75)});
            m_dc.Ellipse({x, road - radius}, radius, radius);
            if (open)
                continue;
            m_dc.SelectBrush({true, m_palette.plot});
            m_dc.Ellipse({x, road - radius}, radius * 0.5, radius * 0.5);
        }
    }

    void DrawAbove(double top, double bottom)
    {
        const CKfzDaten& v = m_vehicle;
        const double middle = (top + bottom) / 2.0;
        const double front = X(v.length - v.frontOverhang);
        const double rear = front - v.wheelbase * m_scale;
        const double track = v.track * m_scale;
        if (track > 0.0 && v.wheelbase > 0.0)
            for (const double axle : {rear, front})
                DrawWheelsAbove(axle, middle, track);
        m_dc.SelectPen({PenStyle::solid, 1.4, m_line});
        m_dc.SelectBrush({true, m_body});
        const double round = v.type == Type::truck ? 0.05 : 0.25;
        const double corner = std::min(0.12 * v.length, round * v.width) * m_scale;
        if (v.type == Type::pedestrian)
            m_dc.Ellipse({X(v.length / 2.0), middle}, v.length * m_scale / 2.0, v.width * m_scale / 2.0);
        else if (HasTwoWheels(v.type))
            DrawTwoWheelerAbove(top, bottom);
        else
            m_dc.Rectangle(m_left, top, X(v.length), bottom, corner, corner);
        if (v.type == Type::car || v.type == Type::none) {
            m_dc.SelectBrush({true, drawing::Blend(m_palette.plot, m_line, 0.15)});
            const double inset = 0.1 * v.width * m_scale;
            m_dc.Polygon({{X(0.66 * v.length), top + inset},
                          {X(0.57 * v.length), top + 1.7 * inset},
                          {X(0.57 * v.length), bottom - 1.7 * inset},
                          {X(0.66 * v.length), bottom - inset}});
            m_dc.Polygon({{X(0.16 * v.length), top + inset},
                          {X(0.24 * v.length), top + 1.7 * inset},
                          {X(0.24 * v.length), bottom - 1.7 * inset},
                          {X(0.16 * v.length), bottom - inset}});
        } else if (v.type == Type::truck) {
            m_dc.Line({X(0.77 * v.length), top}, {X(0.77 * v.length), bottom});
        }
        Vertical(&CKfzDaten::width, X(v.length) + kDimension, top, bottom, X(v.length));
        if (track > 0.0)
            Vertical(&CKfzDaten::track, m_left - kDimension, middle - track / 2.0, middle + track / 2.0, rear);
    }

    void DrawTwoWheelerAbove(double top, double bottom)
    {
        const CKfzDaten& v = m_vehicle;
        const double middle = (top + bottom) / 2.0;
        const double half = 0.12 * (bottom - top);
        m_dc.Rectangle(m_left, middle - half, X(v.length), middle + half, half, half);
        m_dc.Ellipse({X(0.42 * v.length), middle}, 0.22 * v.length * m_scale, 2.0 * half);
        m_dc.SelectPen({PenStyle::solid, 3.0, m_line});
        m_dc.Polyline({{X(0.68 * v.length), top}, {X(0.74 * v.length), middle}, {X(0.68 * v.length), bottom}});
    }

    void DrawWheelsAbove(double axle, double middle, double track)
    {
        const double length = WheelRadius(m_vehicle) * m_scale;
        const double width = 0.35 * length;
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, drawing::Blend(m_palette.plot, m_palette.text, 0.75)});
        for (const double side : {-1.0, 1.0}) {
            const double y = middle + side * track / 2.0;
            m_dc.Rectangle(axle - length, y - width, axle + length, y + width, 2.0, 2.0);
        }
    }

    /// The circle between kerbs about its centre, and the wider one between walls.
    void DrawTurningCircle()
    {
        m_dc.SelectFont(kFont);
        const double text = m_dc.TextHeight();
        const double kerb = std::max(m_values.turningCircle, 0.1);
        const double extra = std::clamp(m_values.turningCircleExtra, -0.4 * kerb, kerb);
        const double widest = kerb + 2.0 * std::max(extra, 0.0);
        m_scale = std::min(m_dc.Width() - 2.0 * kPad, m_dc.Height() - 2.0 * kPad - 2.0 * text) / widest;
        if (!(m_scale > 0.0))
            return;
        const CDPoint centre{m_dc.Width() / 2.0, m_dc.Height() / 2.0};
        const double inner = kerb / 2.0 * m_scale;
        const double outer = (kerb / 2.0 + extra) * m_scale;
        m_dc.SelectBrush({});
        m_dc.SelectPen({PenStyle::dash, 1.2, m_palette.axis});
        m_dc.Ellipse(centre, outer, outer);
        m_dc.SelectPen({PenStyle::solid, 1.6, m_palette.axis});
        m_dc.Ellipse(centre, inner, inner);
        DrawTurningVehicle(centre, inner);
        if (m_chosen == &CKfzDaten::turningCircle)
            Horizontal(m_chosen, centre.x - inner, centre.x + inner, centre.y, centre.y);
        else
            Horizontal(m_chosen, centre.x + inner, centre.x + outer, centre.y, centre.y);
    }

    /// On the upper left of the circle, its outer front corner on it.
    void DrawTurningVehicle(CDPoint centre, double radius)
    {
        const double length = m_vehicle.length * m_scale;
        const double width = std::min(m_vehicle.width * m_scale, 0.9 * radius);
        const double across = std::sqrt(std::max(radius * radius - length * length, 0.0));
        // Rear axle on the radius that points up; turned to the upper left.
        std::vector<CDPoint> corners{
            {-length, -across}, {0.0, -across}, {0.0, -across + width}, {-length, -across + width}};
        for (CDPoint& corner : corners) {
            corner.Rotate(-kPi / 5.0, {});
            corner += centre;
        }
        m_dc.SelectPen({PenStyle::solid, 1.4, m_line});
        m_dc.SelectBrush({true, m_body});
        m_dc.Polygon(std::move(corners));
    }

    COLORREF DimensionColor(double CKfzDaten::*field) const
    {
        return field == m_chosen ? m_accent : drawing::Blend(m_palette.background, m_palette.axis, 0.55);
    }

    std::string Label(double CKfzDaten::*field) const
    {
        const krn::NumberFormat& format = krn::FieldOf(field).format;
        return format.label + "  " + krn::ShowNumber(m_values.*field, format) + " " + krn::UnitOf(format);
    }

    void ArrowHead(CDPoint tip, double dx, double dy)
    {
        m_dc.Polygon({tip,
                      {tip.x + dx * kArrow - dy * kArrow * 0.4, tip.y + dy * kArrow + dx * kArrow * 0.4},
                      {tip.x + dx * kArrow + dy * kArrow * 0.4, tip.y + dy * kArrow - dx * kArrow * 0.4}});
    }

    void SelectDimension(double CKfzDaten::*field)
    {
        const COLORREF color = DimensionColor(field);
        m_dc.SelectPen({PenStyle::solid, field == m_chosen ? 1.8 : 1.0, color});
        m_dc.SelectBrush({true, color});
    }

    void Horizontal(double CKfzDaten::*field, double from, double to, double y, double edge)
    {
        SelectDimension(field);
        m_dc.Line({from, edge}, {from, y + 3.0});
        m_dc.Line({to, edge}, {to, y + 3.0});
        m_dc.Line({from, y}, {to, y});
        if (std::abs(to - from) > 2.5 * kArrow) {
            const double direction = to > from ? 1.0 : -1.0;
            ArrowHead({from, y}, direction, 0.0);
            ArrowHead({to, y}, -direction, 0.0);
        }
        if (field == m_chosen)
            Name(field, {(from + to) / 2.0, std::max(y, edge) + kDimension - 2.0});
    }

    void Vertical(double CKfzDaten::*field, double x, double from, double to, double edge)
    {
        SelectDimension(field);
        const double beyond = x < edge ? -3.0 : 3.0;
        m_dc.Line({edge, from}, {x + beyond, from});
        m_dc.Line({edge, to}, {x + beyond, to});
        m_dc.Line({x, from}, {x, to});
        if (std::abs(to - from) > 2.5 * kArrow) {
            ArrowHead({x, from}, 0.0, 1.0);
            ArrowHead({x, to}, 0.0, -1.0);
        }
        if (field == m_chosen)
            Name(field, {x, from - 5.0});
    }

    /// Under or over the middle of a dimension line, moved inside the drawing.
    void Name(double CKfzDaten::*field, CDPoint at)
    {
        m_dc.SelectFont(kFont);
        const std::string label = Label(field);
        const double half = m_dc.TextWidth(label) / 2.0;
        at.x = std::clamp(at.x, kPad / 2.0 + half, std::max(m_dc.Width() - kPad / 2.0 - half, kPad / 2.0 + half));
        // The text stands on ground of its own, over whatever lines run there.
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.background});
        m_dc.Rectangle(at.x - half - 3.0, at.y - m_dc.TextAscent() * 0.95, at.x + half + 3.0, at.y + 3.0);
        m_dc.SetTextColor(drawing::Legible(m_accent, m_palette.background, 4.5));
        m_dc.TextOut(at, label, TextAlign::center);
    }

    CDC& m_dc;
    const CKfzDaten& m_values;
    const CKfzDaten m_vehicle;
    double CKfzDaten::*m_chosen;
    const drawing::DiagramPalette& m_palette;
    COLORREF m_accent;
    COLORREF m_body;
    COLORREF m_line;
    double m_scale = 1.0;
    double m_left = 0.0;
    double m_road = 0.0;
};

} // namespace

void DrawVehicle(CDC& dc, const CKfzDaten& vehicle, double CKfzDaten::*chosen, const drawing::DiagramPalette& palette,
                 COLORREF accent)
{
    VehiclePainter(dc, vehicle, chosen, palette, accent).Draw();
}

} // namespace scene
