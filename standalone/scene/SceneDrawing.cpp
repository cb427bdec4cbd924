// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneDrawing.h"

#include "base/NumberText.h"
#include "drawing/DiagramColor.h"
#include "host/Physics.h"
#include "host/Units.h"
#include "scene/SceneEditing.h"
#include "scene/SceneGeometry.h"
#include "scene/SceneGround.h"
#include "scene/SceneSymbols.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace scene
{
namespace
{

// Pixels.
constexpr CFont kNameFont{12.0, true};
constexpr CFont kPlaceFont{12.0, false};
constexpr CFont kMarkFont{11.0, false};
constexpr CFont kTitleFont{16.0, true};
constexpr double kPad = 14.0;
constexpr double kHandle = 4.0; // half a side
constexpr double kPoint = 4.0;  // radius
constexpr double kRecordedLine = 2.0;
constexpr double kMark = 6.0;    // half a length
constexpr double kHalo = 1.6;    // beside a line over a picture
constexpr double kEndMark = 9.0; // of a measured line, half its length
constexpr double kEndDot = 3.0;  // radius
constexpr double kLabelGap = 6.0;
constexpr double kFarAway = 1e5;

constexpr double kLineContrast = 3.0;
constexpr double kTextContrast = 4.5;

struct Box {
    double left, top, right, bottom;
    bool Meets(const Box& other) const
    {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

struct Label {
    std::string name;
    std::string place; ///< second line, empty for none
    COLORREF color;
    Box around;         ///< what it names
    bool always = true; ///< also where there is no room
};

class ScenePainter
{
  public:
    ScenePainter(CDC& dc, const SceneCamera& camera, const Scene& scene, const SceneDrawingOptions& options)
        : m_dc(dc), m_camera(camera), m_scene(scene), m_options(options), m_palette(options.palette),
          m_accent(drawing::Legible(options.accent, options.palette.plot, kLineContrast))
    {
    }

    void Draw()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.plot});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        if (m_options.grid)
            DrawSceneGrid(m_dc, m_camera, m_palette);
        for (const SceneLayer& layer : m_options.layers)
            DrawLayer(layer);
        for (const SceneTrack& track : m_scene.tracks)
            DrawTrack(track);
        for (const SceneItem& item : m_scene.items)
            if (!m_options.hanging || !(item.id == m_options.hanging->id))
                DrawItem(item, m_options.selected == item.id);
        if (m_options.hanging)
            DrawItem(*m_options.hanging, true);
        DrawLabels();
        if (m_options.measured)
            DrawMeasure(m_options.measured->first, m_options.measured->second);
        DrawScaleBar(m_dc, m_camera, m_palette);
        DrawTitle();
    }

  private:
    COLORREF Line(COLORREF color) const { return drawing::Legible(color, m_palette.plot, kLineContrast); }

    std::vector<CDPoint> Pixels(const std::vector<CDPoint>& points) const
    {
        std::vector<CDPoint> pixels;
        pixels.reserve(points.size());
        for (const CDPoint& point : points)
            pixels.push_back(m_camera.ToPixel(point));
        return pixels;
    }

    bool IsNear(CDPoint pixel) const { return std::abs(pixel.x) < kFarAway && std::abs(pixel.y) < kFarAway; }

    void DrawLine(const std::vector<CDPoint>& points, const CPen& pen)
    {
        if (points.size() < 2)
            return;
        const std::vector<CDPoint> pixels = Pixels(points);
        Stroke(pen, [&] { m_dc.Polyline(pixels); });
    }

    /// Draws a line; over a picture on a lighter or darker band, so that it is seen on any ground.
    template <class Draw> void Stroke(const CPen& pen, const Draw& draw)
    {
        if (!m_options.layers.empty()) {
            m_dc.SelectPen({PenStyle::solid, pen.width + 2.0 * kHalo, m_palette.plot});
            draw();
        }
        m_dc.SelectPen(pen);
        draw();
    }

    void DrawLayer(const SceneLayer& layer)
    {
        const CSzenenBild& picture = layer.picture;
        const CDPoint across = CDPoint{std::cos(picture.winkel), -std::sin(picture.winkel)} *
                               m_camera.Pixels(static_cast<double>(picture.breite) * picture.meterProPixel * kCmProM);
        const CDPoint down = CDPoint{std::sin(picture.winkel), std::cos(picture.winkel)} *
                             m_camera.Pixels(static_cast<double>(picture.hoehe) * picture.meterProPixel * kCmProM);
        const CDPoint centre = m_camera.ToPixel(picture.mitte);
        const CDPoint corner = centre - (across + down) * 0.5;
        if (layer.bitmap != nullptr)
            m_dc.Picture(corner, across, down, picture.deckkraft, layer.bitmap);
        if (layer.trouble.empty())
            return;
        m_dc.SelectPen({PenStyle::dash, 1.5, m_palette.quietText});
        m_dc.SelectBrush({false});
        m_dc.Polygon({corner, corner + across, corner + across + down, corner + down});
        const std::string file = picture.datei.substr(picture.datei.find_last_of('/') + 1);
        const auto [left, right] =
            std::minmax({corner.x, corner.x + across.x, corner.x + down.x, corner.x + across.x + down.x});
        const auto [top, bottom] =
            std::minmax({corner.y, corner.y + across.y, corner.y + down.y, corner.y + across.y + down.y});
        m_labels.push_back({file, layer.trouble, m_palette.text, {left, top, right, bottom}});
    }

    void DrawTrack(const SceneTrack& track)
    {
        const COLORREF color = Line(track.color);
        for (const std::vector<CDPoint>& trajectory : track.trajectories)
            DrawLine(trajectory, {PenStyle::dashDot, 1.5, color});
        DrawLine(track.runOut, {PenStyle::dot, 1.5, color});
        DrawLine(track.extension, {PenStyle::dash, 1.2, color});
        DrawLine(track.line, {PenStyle::solid, 2.0, color});
        for (const SceneTrack::Mark& mark : track.phases)
            DrawPhaseMark(mark, color);
    }

    void DrawPhaseMark(const SceneTrack::Mark& mark, COLORREF color)
    {
        const CDPoint at = m_camera.ToPixel(mark.at);
        if (!IsNear(at))
            return;
        const CDPoint across{-std::sin(mark.direction), -std::cos(mark.direction)};
        Stroke({PenStyle::solid, 2.0, color}, [&] { m_dc.Line(at - across * kMark, at + across * kMark); });
        m_labels.push_back({{}, mark.text, color, {at.x - kMark, at.y - kMark, at.x + kMark, at.y + kMark}, false});
    }

    void DrawItem(const SceneItem& item, bool chosen)
    {
        const CDPoint centre = m_camera.ToPixel(CentreOf(item.pose));
        if (!IsNear(centre))
            return;
        const COLORREF line = Line(item.color);
        if (item.IsPoint()) {
            m_dc.SelectPen({PenStyle::solid, chosen ? 2.5 : 1.5, chosen ? m_accent : line});
            m_dc.SelectBrush({true, m_palette.plot});
            m_dc.Ellipse(centre, kPoint, kPoint);
        } else {
            DrawBody(item, centre, line);
        }
        if (chosen)
            DrawChosen(item);
        const Box box = BoxOf(item, chosen);
        if (chosen)
            m_labels.push_back({item.FullName(), PlaceText(item), line, box});
        else if (m_options.names && !item.IsPoint() && item.id.kind != SceneKind::picture &&
                 !IsCovered(item, item.pose.length / 2.0))
            m_labels.push_back({item.pose.name, item.what, line, box, false});
        if (item.type != CKfzDaten::Type::none)
            m_taken.push_back(box);
    }

    /// A mask's own object for the participant stands in the same place.
    bool IsCovered(const SceneItem& item, double within) const
    {
        const CDPoint centre = CentreOf(item.pose);
        return item.id.kind == SceneKind::restPose &&
               std::any_of(m_scene.items.begin(), m_scene.items.end(), [&](const SceneItem& other) {
                   const CDPoint away = CentreOf(other.pose) - centre;
                   return other.id.kind == SceneKind::maskObject && other.pose.participant == item.pose.participant &&
                          std::hypot(away.x, away.y) < within;
               });
    }

    void DrawBody(const SceneItem& item, CDPoint centre, COLORREF line)
    {
        if (item.recorded != nullptr) {
            DrawRecorded(item, line);
            return;
        }
        if (item.id.kind == SceneKind::picture)
            return;                        // lies under the grid
        constexpr double kSamePlace = 5.0; // cm
        if (IsCovered(item, kSamePlace))
            return;
        const bool bare = item.type == CKfzDaten::Type::none;
        if (!item.pose.centred) {
            const auto corners = CornersOf(item.pose);
            m_dc.SelectPen({bare ? PenStyle::solid : PenStyle::dot, bare ? 1.6 : 1.0, line});
            m_dc.SelectBrush({false});
            m_dc.Polygon(Pixels({corners.begin(), corners.end()}));
            // The corner that the position names.
            const CDPoint corner = m_camera.ToPixel(corners.front());
            m_dc.SelectPen({PenStyle::none});
            m_dc.SelectBrush({true, line});
            m_dc.Ellipse(corner, 2.5, 2.5);
        }
        if (bare)
            return;
        const bool solid = item.id.kind != SceneKind::collision;
        const SymbolPlace place{centre, HeadingOf(item.pose), m_camera.Pixels(item.pose.length),
                                m_camera.Pixels(item.pose.width)};
        const COLORREF body =
            drawing::Blend(m_palette.plot, drawing::Legible(item.color, m_palette.plot, 1.5), solid ? 0.42 : 0.12);
        DrawParticipant(m_dc, item.type, place, {body, line, drawing::Blend(m_palette.plot, line, 0.2), solid});
    }

    Box BoxOf(const SceneItem& item, bool chosen) const
    {
        SceneBounds bounds;
        for (const CDPoint& corner : CornersOf(item.pose))
            bounds.Add(m_camera.ToPixel(corner));
        if (chosen && item.canTurn)
            bounds.Add(TurnHandle(m_camera, item.pose));
        const double margin = item.IsPoint() || chosen ? kPoint + 2.0 : 0.0;
        return {bounds.low.x - margin, bounds.low.y - margin, bounds.high.x + margin, bounds.high.y + margin};
    }

    void DrawRecorded(const SceneItem& item, COLORREF line)
    {
        const CDPoint along = Direction(item.pose.angle * kRadProGrad);
        const auto placed = [&](const CDPoint& point) {
            return item.pose.position + along * point.x + CDPoint{-along.y, along.x} * point.y;
        };
        const std::vector<CDPoint>& recorded = *item.recorded;
        std::vector<CDPoint> points;
        for (std::size_t i = 0; i < recorded.size(); ++i) {
            if (i > 0 && recorded[i] == recorded[i - 1]) {
                // A stretch ends: the way to what follows was not recorded.
                DrawLine(points, {PenStyle::solid, kRecordedLine, line});
                points.clear();
                continue;
            }
            points.push_back(placed(recorded[i]));
        }
        DrawLine(points, {PenStyle::solid, kRecordedLine, line});
        // The one it begins with.
        m_dc.SelectPen({PenStyle::solid, 1.0, line});
        m_dc.SelectBrush({true, m_palette.plot});
        m_dc.Ellipse(m_camera.ToPixel(placed(recorded.front())), kPoint, kPoint);
        m_dc.SelectBrush({});
    }

    void DrawChosen(const SceneItem& item)
    {
        const auto corners = CornersOf(item.pose);
        m_dc.SelectPen({PenStyle::solid, 1.5, m_accent});
        m_dc.SelectBrush({false});
        if (!item.IsPoint())
            m_dc.Polygon(Pixels({corners.begin(), corners.end()}));
        if (item.canTurn) {
            const CDPoint handle = TurnHandle(m_camera, item.pose);
            const double heading = HeadingOf(item.pose);
            const CDPoint forward{std::cos(heading), -std::sin(heading)};
            const CDPoint front =
                m_camera.ToPixel(CentreOf(item.pose)) + forward * m_camera.Pixels(item.pose.length / 2.0);
            m_dc.Line(front, handle - forward * 5.0);
            m_dc.SelectBrush({true, m_palette.plot});
            m_dc.Ellipse(handle, 5.0, 5.0);
        }
        if (!HasCornerHandles(m_camera, item))
            return;
        m_dc.SelectBrush({true, m_palette.plot});
        for (const CDPoint& corner : Pixels({corners.begin(), corners.end()}))
            m_dc.Rectangle(corner.x - kHandle, corner.y - kHandle, corner.x + kHandle, corner.y + kHandle, 1.0, 1.0);
    }

    /// Names keep clear of each other where there is room.
    void DrawLabels()
    {
        std::vector<Box> taken = std::move(m_taken);
        for (auto label = m_labels.rbegin(); label != m_labels.rend(); ++label) {
            const Box& around = label->around;
            if (around.right < 0.0 || around.left > m_dc.Width() || around.bottom < 0.0 || around.top > m_dc.Height())
                continue;
            const auto [width, height] = SizeOf(*label);
            const double middle = (around.left + around.right - width) / 2.0;
            const double centre = (around.top + around.bottom - height) / 2.0;
            const std::array<CDPoint, 6> places{{{middle, around.top - kLabelGap - height},
                                                 {middle, around.bottom + kLabelGap},
                                                 {around.right + kLabelGap, centre},
                                                 {around.left - kLabelGap - width, centre},
                                                 {around.right + kLabelGap, around.bottom + kLabelGap},
                                                 {around.left - kLabelGap - width, around.top - kLabelGap - height}}};
            const CDPoint inside{std::clamp(middle, kPad, std::max(m_dc.Width() - width - kPad, kPad)),
                                 std::clamp(around.top, kPad, std::max(m_dc.Height() - height - kPad, kPad))};
            const auto boxAt = [w = width, h = height](CDPoint at) { return Box{at.x, at.y, at.x + w, at.y + h}; };
            const auto isFree = [&](CDPoint at) {
                const Box box = boxAt(at);
                return box.left >= 0.0 && box.top >= 0.0 && box.right <= m_dc.Width() && box.bottom <= m_dc.Height() &&
                       std::none_of(taken.begin(), taken.end(), [&](const Box& other) { return other.Meets(box); });
            };
            const auto* const free = std::find_if(places.begin(), places.end(), isFree);
            if (free == places.end() && !label->always)
                continue;
            const CDPoint at = free == places.end() ? inside : *free;
            taken.push_back(boxAt(at));
            DrawLabel(*label, at, width, height);
        }
    }

    std::pair<double, double> SizeOf(const Label& label)
    {
        double width = 0.0;
        double height = 0.0;
        const auto add = [&](const std::string& text, const CFont& font) {
            if (text.empty())
                return;
            m_dc.SelectFont(font);
            width = std::max(width, m_dc.TextWidth(text));
            height += m_dc.TextHeight();
        };
        add(label.name, kNameFont);
        add(label.place, label.name.empty() ? kMarkFont : kPlaceFont);
        return {width + 8.0, height + 2.0};
    }

    void DrawLabel(const Label& label, CDPoint at, double width, double height)
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.plot});
        m_dc.Rectangle(at.x, at.y, at.x + width, at.y + height, 3.0, 3.0);
        double y = at.y + 1.0;
        const auto add = [&](const std::string& text, const CFont& font, COLORREF color) {
            if (text.empty())
                return;
            m_dc.SelectFont(font);
            m_dc.SetTextColor(color);
            m_dc.TextOut({at.x + width / 2.0, y + m_dc.TextAscent()}, text, TextAlign::center);
            y += m_dc.TextHeight();
        };
        add(label.name, kNameFont, drawing::Legible(label.color, m_palette.plot, kTextContrast));
        add(label.place, label.name.empty() ? kMarkFont : kPlaceFont,
            label.always ? m_palette.text : m_palette.quietText);
    }

    void DrawMeasure(CDPoint from, CDPoint to)
    {
        const CDPoint a = m_camera.ToPixel(from);
        const CDPoint b = m_camera.ToPixel(to);
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        const CPen pen{PenStyle::solid, 1.8, m_accent};
        Stroke(pen, [&] { m_dc.Line(a, b); });
        if (length > 0.0) {
            const CDPoint across = CDPoint{-(b.y - a.y), b.x - a.x} * (kEndMark / length);
            Stroke(
                pen, [&] { m_dc.Line(a - across, a + across); });
            Stroke(pen, [&] { m_dc.Line(b - across, b + across); });
        }
        m_dc.SelectBrush({true, m_palette.plot});
        for (const CDPoint& end : {a, b})
            Stroke(pen, [&] { m_dc.Ellipse(end, kEndDot, kEndDot); });
        const Label label{LengthText(std::hypot(to.x - from.x, to.y - from.y)), {}, m_options.accent, {}};
        const auto [width, height] = SizeOf(label);
        DrawLabel(label, (a + b) * 0.5 - CDPoint{width / 2.0, height + kLabelGap}, width, height);
    }

    void DrawTitle()
    {
        if (m_options.title.empty())
            return;
        m_dc.SelectFont(kTitleFont);
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.plot});
        m_dc.Rectangle(kPad - 6.0, kPad - 4.0, kPad + m_dc.TextWidth(m_options.title) + 6.0,
                       kPad + m_dc.TextHeight() + 4.0, 3.0, 3.0);
        m_dc.SetTextColor(m_palette.text);
        m_dc.TextOut({kPad, kPad + m_dc.TextAscent()}, m_options.title);
    }

    CDC& m_dc;
    const SceneCamera& m_camera;
    const Scene& m_scene;
    const SceneDrawingOptions& m_options;
    const drawing::DiagramPalette& m_palette;
    COLORREF m_accent;
    std::vector<Label> m_labels;
    std::vector<Box> m_taken; ///< by participants
};

} // namespace

void DrawScene(CDC& dc, const SceneCamera& camera, const Scene& scene, const SceneDrawingOptions& options)
{
    ScenePainter(dc, camera, scene, options).Draw();
}

std::string LengthText(double length)
{
    const auto& units = UnitsSystemConfiguration::GetInstance();
    const UnitType unit(unitType::length);
    return base::FormatNumber(units.ToShown(length / kCmProM, unit), 2) + " " + units.UnitString(unit);
}

std::string PlaceText(const SceneItem& item)
{
    std::string text = "x " + LengthText(item.pose.position.x) + ",  y " + LengthText(item.pose.position.y);
    if (item.canTurn)
        text += ",  " + base::FormatNumber(item.pose.angle, 1) + "°";
    if (item.canSize) {
        const std::string width = LengthText(item.pose.width);
        text += ",  " + width.substr(0, width.find(' ')) + " × " + LengthText(item.pose.length);
    }
    return text;
}

} // namespace scene
