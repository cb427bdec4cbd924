// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PathTimeDiagram.h"

#include "base/NumberText.h"
#include "drawing/DiagramColor.h"
#include "drawing/DiagramLabels.h"
#include "drawing/ThinnedCurve.h"
#include "host/CRuvData.h"
#include "host/Charts.h"
#include "host/Physics.h"
#include "host/Units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace pathtime
{
namespace
{

// Lengths in pixels of the drawing.
constexpr double kPad = 14.0;
constexpr double kGap = 12.0;        // between a plot and what belongs to it
constexpr double kPanelGap = 16.0;   // between plots
constexpr double kTickPitchX = 64.0; // least distance of ticks
constexpr double kTickPitchY = 28.0;
constexpr double kTickLabelGap = 6.0;
constexpr double kBarPitch = 24.0; // of the phase bars of two vehicles
constexpr double kBarPart = 0.82;  // of the pitch that the bar fills
constexpr double kBarsPart = 0.3;  // of the drawing that the bars of many vehicles may fill
constexpr double kLegendLine = 34.0;
constexpr double kLegendSpace = 22.0;
constexpr double kDot = 3.0;   // radius
constexpr double kCurve = 2.2; // width
constexpr double kChosenCurve = 3.8;
constexpr double kInvisible = 0.05; // that a curve may be off
constexpr double kSampleDistance = 1.5;
constexpr double kSmallestPlot = 60.0; // high enough to be read
constexpr double kNarrowestPlot = 20.0;
constexpr double kLeastBarPitch = 9.0;
constexpr double kPathShare = 0.56; // of the plots' height: several vehicles cross each other there

constexpr CFont kTitleFont{16.0, true};
constexpr CFont kLabelFont{12.5, false};
constexpr CFont kNameFont{12.5, true};
constexpr CFont kTickFont{11.5, false};
constexpr CFont kBarFont{10.5, false};

constexpr double kCurveContrast = 3.0; // what graphics need to be seen
constexpr double kTextContrast = 4.5;  // what text needs to be read

struct Frame {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
};

/// A vehicle as it is drawn.
struct Track {
    const DiagramVehicle* vehicle;
    COLORREF color;
    PenStyle style;
    std::vector<MotionState> samples;
};

/// One of the two diagrams: a quantity over time.
struct Panel {
    std::string title;
    double (*quantity)(const MotionState&); ///< in the metric unit shown
    UnitType unit;
    drawing::AxisTicks ticks{};
    Frame frame{};

    double Shown(const MotionState& state) const
    {
        return UnitsSystemConfiguration::GetInstance().ToShown(quantity(state), unit);
    }
};

double Position(const MotionState& state)
{
    return state.position;
}

double SpeedKmh(const MotionState& state)
{
    return state.speed * kKmhProMs;
}

/// A line of one pixel is sharp when it runs through the middle of pixels.
double Sharp(double coordinate)
{
    return std::floor(coordinate) + 0.5;
}

double ShadeOf(PhasenArt art)
{
    switch (art) {
    case PhasenArt::braking:
        return 0.62;
    case PhasenArt::threshold:
        return 0.46;
    case PhasenArt::reaction:
        return 0.22;
    case PhasenArt::accelerating:
    case PhasenArt::turning:
        return 0.34;
    default:
        return 0.12;
    }
}

std::vector<Track> MakeTracks(std::span<const DiagramVehicle> vehicles, const drawing::DiagramPalette& palette)
{
    constexpr std::array kStyles{PenStyle::solid, PenStyle::dash, PenStyle::dashDot, PenStyle::dot};
    std::vector<Track> tracks;
    for (const DiagramVehicle& vehicle : vehicles) {
        const COLORREF color = drawing::Legible(vehicle.color, palette.plot, kCurveContrast);
        const auto alike = std::count_if(tracks.begin(), tracks.end(),
                                         [&](const Track& track) { return drawing::LookAlike(track.color, color); });
        tracks.push_back({&vehicle, color, kStyles[static_cast<std::size_t>(alike) % kStyles.size()], {}});
    }
    return tracks;
}

class DiagramPainter
{
  public:
    DiagramPainter(CDC& dc, std::span<const DiagramVehicle> vehicles, const PathTimeDiagramOptions& options)
        : m_dc(dc), m_options(options), m_palette(options.palette), m_tracks(MakeTracks(vehicles, options.palette))
    {
        const auto& units = UnitsSystemConfiguration::GetInstance();
        const UnitType length(unitType::length);
        const UnitType speed(unitType::speedKmh);
        if (options.path)
            m_panels.push_back({"Weg s in " + units.UnitString(length), &Position, length});
        if (options.speed)
            m_panels.push_back({"Geschwindigkeit v in " + units.UnitString(speed), &SpeedKmh, speed});
    }

    double LeastHeight()
    {
        if (m_tracks.empty())
            return 0.0;
        const double top = DrawHead(); // into a drawing that nobody looks at
        double least = 0.0;
        for (std::size_t i = 0; i < m_panels.size(); ++i) {
            const bool labelled = m_panels[i].quantity == &SpeedKmh;
            const double labels = labelled ? static_cast<double>(m_tracks.size()) * LineHeight(kNameFont) : 0.0;
            least = std::max(least, std::max(kSmallestPlot, labels) / ShareOf(i));
        }
        const double bars = m_options.phases ? static_cast<double>(m_tracks.size()) * kLeastBarPitch : 0.0;
        return std::ceil(top + least + bars + Overhead());
    }

    DiagramArea Draw()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.background});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        const double y = DrawHead();
        if (m_tracks.empty()) {
            DrawNothing(y, "Keine Phasen vor der Kollision");
            return {};
        }
        const bool lasts = std::any_of(m_tracks.begin(), m_tracks.end(),
                                       [](const Track& track) { return track.vehicle->curve.StartTime() < 0.0; });
        if (!lasts) {
            DrawNothing(y, "Die Phasen haben noch keine Zeit");
            return {};
        }
        if (!LayOut(y)) {
            DrawNothing(y, "Zu wenig Platz für das Diagramm");
            return {};
        }
        for (const Panel& panel : m_panels)
            DrawGrid(panel);
        if (m_options.phases)
            DrawBars();
        for (const Panel& panel : m_panels)
            DrawCurves(panel);
        DrawTimeAxis();
        return {m_bars.left, m_bars.right, (m_panels.empty() ? m_bars : m_panels.front().frame).top, m_axisTop,
                m_start};
    }

  private:
    /// Of the plots' height.
    double ShareOf(std::size_t panel) const
    {
        return m_panels.size() == 1 ? 1.0 : panel == 0 ? kPathShare : 1.0 - kPathShare;
    }

    double Heading() { return LineHeight(kLabelFont) + kTickLabelGap; }

    /// Height of what stands below the head and is neither plot nor bar.
    double Overhead()
    {
        const double axis = LineHeight(kTickFont) + LineHeight(kLabelFont) + 2.0 * kTickLabelGap;
        const auto panels = static_cast<double>(m_panels.size());
        const double blocks = panels + (m_options.phases ? 1.0 : 0.0);
        return kPad + axis + panels * Heading() + std::max(blocks - 1.0, 0.0) * kPanelGap;
    }

    void Text(CDPoint at, const std::string& text, const CFont& font, COLORREF color, TextAlign align)
    {
        m_dc.SelectFont(font);
        m_dc.SetTextColor(color);
        m_dc.TextOut(at, text, align);
    }

    double LineHeight(const CFont& font)
    {
        m_dc.SelectFont(font);
        return m_dc.TextHeight();
    }

    double Ascent(const CFont& font)
    {
        m_dc.SelectFont(font);
        return m_dc.TextAscent();
    }

    /// Title and legend, on one line if there is room; returns where they end.
    double DrawHead()
    {
        const double line = LineHeight(kNameFont) + 2.0;
        if (m_options.title.empty())
            return m_tracks.empty() ? kPad : DrawLegend(kPad, kPad, line);
        m_dc.SelectFont(kTitleFont);
        const std::string title = drawing::ShortenedToFit(m_dc, m_options.title, m_dc.Width() - 2.0 * kPad);
        const double height = m_dc.TextHeight();
        const double beside = m_dc.Width() - kPad - LegendWidth();
        m_dc.SelectFont(kTitleFont);
        const bool oneLine = kPad + m_dc.TextWidth(title) + 2.0 * kLegendSpace <= beside;
        Text({kPad, kPad + Ascent(kTitleFont)}, title, kTitleFont, m_palette.text, TextAlign::left);
        if (m_tracks.empty())
            return kPad + height;
        return oneLine ? DrawLegend(beside, kPad, height) : DrawLegend(kPad, kPad + height + 4.0, line);
    }

    double LegendWidth()
    {
        double width = -kLegendSpace;
        m_dc.SelectFont(kNameFont);
        for (const Track& track : m_tracks)
            width += kLegendLine + kTickLabelGap + m_dc.TextWidth(track.vehicle->name) + kLegendSpace;
        return width;
    }

    void DrawNothing(double top, const char* why)
    {
        Text({m_dc.Width() / 2.0, std::min((top + m_dc.Height()) / 2.0, m_dc.Height() - 4.0)}, why, kLabelFont,
             m_palette.quietText, TextAlign::center);
    }

    double DrawLegend(double left, double y, double height)
    {
        const double right = m_dc.Width() - kPad + 0.5;
        double x = left;
        for (const Track& track : m_tracks) {
            m_dc.SelectFont(kNameFont);
            const std::string name =
                drawing::ShortenedToFit(m_dc, track.vehicle->name, right - kPad - kLegendLine - kTickLabelGap);
            const double width = kLegendLine + kTickLabelGap + m_dc.TextWidth(name);
            if (x > left && x + width > right) {
                x = left;
                y += height;
            }
            m_dc.SelectPen({track.style, 2.5, track.color});
            const double middle = y + height / 2.0;
            m_dc.Line({x, middle}, {x + kLegendLine, middle});
            Text({x + kLegendLine + kTickLabelGap, middle + 0.36 * kNameFont.size}, name, kNameFont, m_palette.text,
                 TextAlign::left);
            x += width + kLegendSpace;
        }
        return y + height + 4.0;
    }

    /// Places the panels below `top`; false when nothing of use would fit.
    bool LayOut(double top)
    {
        const auto tracks = static_cast<double>(m_tracks.size());
        double least = 0.0; // of the plots together
        for (std::size_t i = 0; i < m_panels.size(); ++i)
            least = std::max(least, kSmallestPlot / ShareOf(i));
        const double room = m_dc.Height() - top - Overhead();
        const double wanted = std::min(kBarsPart * m_dc.Height(), room - least) / tracks;
        m_barPitch = m_options.phases ? std::clamp(wanted, kLeastBarPitch, kBarPitch) : 0.0;
        const double bars = tracks * m_barPitch;
        const double heading = Heading();
        const double plots = room - bars;
        if (plots < least - 0.01 || (m_panels.empty() && !m_options.phases))
            return false;

        double earliest = 0.0;
        for (const Track& track : m_tracks)
            earliest = std::min(earliest, track.vehicle->curve.StartTime());
        const double duration = -earliest;
        for (Track& track : m_tracks)
            track.samples = track.vehicle->curve.Sample(kSampleDistance * duration / std::max(m_dc.Width(), 1.0));

        double y = top;
        double labels = 0.0;
        for (std::size_t i = 0; i < m_panels.size(); ++i) {
            Panel& panel = m_panels[i];
            panel.frame.top = y + heading;
            panel.frame.bottom = panel.frame.top + plots * ShareOf(i);
            y = panel.frame.bottom + kPanelGap;
            FitTicks(panel);
            m_dc.SelectFont(kTickFont);
            for (int tick = 0; tick < panel.ticks.count; ++tick)
                labels = std::max(labels, m_dc.TextWidth(panel.ticks.Label(tick)));
        }
        m_bars = {0.0, 0.0, y, y + bars};
        const double left = std::ceil(kPad + labels + kTickLabelGap);
        const double right = m_dc.Width() - kPad - EndLabelWidth();
        if (right - left < kNarrowestPlot)
            return false;
        for (Panel& panel : m_panels) {
            panel.frame.left = left;
            panel.frame.right = right;
        }
        m_bars.left = left;
        m_bars.right = right;
        m_axisTop = m_options.phases ? m_bars.bottom : m_panels.back().frame.bottom;
        const int intervals = std::max(static_cast<int>(m_bars.Width() / kTickPitchX), 2);
        m_time = drawing::TicksFor(-duration, 0.0, intervals);
        // The axis begins with the motion, not at the next tick before it.
        m_start = -duration * 1.02;
        return true;
    }

    void FitTicks(Panel& panel) const
    {
        double lowest = 0.0;
        double highest = 0.0;
        for (const Track& track : m_tracks) {
            for (const MotionState& state : track.samples) {
                lowest = std::min(lowest, panel.Shown(state));
                highest = std::max(highest, panel.Shown(state));
            }
        }
        if (lowest == highest)
            (panel.quantity == &Position ? lowest : highest) = panel.quantity == &Position ? -1.0 : 10.0;
        panel.ticks =
            drawing::TicksFor(lowest, highest, std::max(static_cast<int>(panel.frame.Height() / kTickPitchY), 2));
    }

    double X(double time) const { return m_bars.left + (time - m_start) / -m_start * m_bars.Width(); }

    static double Y(const Panel& panel, double value)
    {
        const double part = (value - panel.ticks.minimum) / (panel.ticks.maximum - panel.ticks.minimum);
        return panel.frame.bottom - part * panel.frame.Height();
    }

    void DrawGrid(const Panel& panel)
    {
        const Frame& frame = panel.frame;
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_palette.plot});
        m_dc.Rectangle(frame.left, frame.top, frame.right, frame.bottom);
        m_dc.SelectPen({PenStyle::solid, 1.0, m_palette.grid});
        DrawTimeLines(frame.top, frame.bottom);
        for (int i = 0; i < panel.ticks.count; ++i) {
            const double value = panel.ticks.At(i);
            const double y = Sharp(Y(panel, value));
            m_dc.SelectPen({PenStyle::solid, 1.0, value == 0.0 ? m_palette.axis : m_palette.grid});
            m_dc.Line({frame.left, y}, {frame.right, y});
            Text({frame.left - kTickLabelGap, y + 0.36 * kTickFont.size}, panel.ticks.Label(i), kTickFont,
                 m_palette.quietText, TextAlign::right);
        }
        Text({frame.left, frame.top - kTickLabelGap - 1.0}, panel.title, kLabelFont, m_palette.text, TextAlign::left);
        m_dc.SelectPen({PenStyle::solid, 1.0, m_palette.axis});
        m_dc.Line({Sharp(frame.left), frame.top}, {Sharp(frame.left), frame.bottom});
        m_dc.SelectPen({PenStyle::solid, 2.0, m_palette.axis});
        m_dc.Line({frame.right, frame.top}, {frame.right, frame.bottom});
        if (&panel == &m_panels.front())
            Text({frame.right, frame.top - kTickLabelGap - 1.0}, "Kollision", kLabelFont, m_palette.text,
                 TextAlign::right);
    }

    void DrawTimeLines(double top, double bottom)
    {
        for (int i = 0; i < m_time.count; ++i)
            if (const double x = Sharp(X(m_time.At(i))); x > m_bars.left && m_time.At(i) < 0.0)
                m_dc.Line({x, top}, {x, bottom});
    }

    void DrawCurves(const Panel& panel)
    {
        for (const Track& track : m_tracks) {
            std::vector<CDPoint> points;
            points.reserve(track.samples.size());
            for (const MotionState& state : track.samples)
                points.push_back({X(state.time), Y(panel, panel.Shown(state))});
            const bool chosen = m_options.chosen == track.vehicle->index;
            m_dc.SelectPen({track.style, chosen ? kChosenCurve : kCurve, track.color});
            m_dc.Polyline(drawing::ThinnedCurve(points, kInvisible));
        }
        for (const Track& track : m_tracks) {
            m_dc.SelectPen({PenStyle::solid, 1.6, track.color});
            m_dc.SelectBrush({true, m_palette.plot});
            for (const PathTimeCurve::Phase& phase : track.vehicle->curve.Phases())
                m_dc.Ellipse({X(phase.start.time), Y(panel, panel.Shown(phase.start))}, kDot, kDot);
            m_dc.SelectBrush({true, track.color});
            const MotionState& end = track.vehicle->curve.Phases().back().end;
            m_dc.Ellipse({X(end.time), Y(panel, panel.Shown(end))}, kDot + 0.5, kDot + 0.5);
        }
        if (panel.quantity == &SpeedKmh)
            DrawEndLabels(panel);
    }

    std::string EndLabel(const Panel& panel, const Track& track) const
    {
        const double shown = panel.Shown(track.vehicle->curve.Phases().back().end);
        return base::FormatNumber(shown, 0) + " " + UnitsSystemConfiguration::GetInstance().UnitString(panel.unit);
    }

    double EndLabelWidth()
    {
        double width = 0.0;
        m_dc.SelectFont(kNameFont);
        for (const Panel& panel : m_panels)
            if (panel.quantity == &SpeedKmh)
                for (const Track& track : m_tracks)
                    width = std::max(width, m_dc.TextWidth(EndLabel(panel, track)) + kGap);
        return width;
    }

    /// The speeds at the collision beside the axis, moved apart where they would cover each other.
    void DrawEndLabels(const Panel& panel)
    {
        std::vector<std::pair<double, const Track*>> labels;
        for (const Track& track : m_tracks)
            labels.emplace_back(Y(panel, panel.Shown(track.vehicle->curve.Phases().back().end)), &track);
        std::stable_sort(labels.begin(), labels.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<double> heights;
        for (const auto& label : labels)
            heights.push_back(label.first);
        drawing::SpreadApart(heights, LineHeight(kNameFont));
        const double outside = labels.empty() ? 0.0 : std::max(heights.back() - panel.frame.bottom - kGap, 0.0);
        for (std::size_t i = 0; i < labels.size(); ++i)
            Text({panel.frame.right + kGap - 2.0, heights[i] - outside + 0.36 * kNameFont.size},
                 EndLabel(panel, *labels[i].second), kNameFont,
                 drawing::Legible(labels[i].second->color, m_palette.background, kTextContrast), TextAlign::left);
    }

    void DrawBars()
    {
        m_dc.SelectPen({PenStyle::solid, 1.0, m_palette.grid});
        DrawTimeLines(m_bars.top, m_bars.bottom);
        double top = m_bars.top;
        const double height = m_barPitch * kBarPart;
        for (const Track& track : m_tracks) {
            for (const PathTimeCurve::Phase& phase : track.vehicle->curve.Phases()) {
                const double left = X(phase.start.time);
                const double right = X(phase.end.time);
                const COLORREF fill = drawing::Blend(m_palette.plot, track.color, ShadeOf(phase.art));
                m_dc.SelectPen({PenStyle::solid, 1.0, track.color});
                m_dc.SelectBrush({true, fill});
                m_dc.Rectangle(left, top, right, top + height);
                m_dc.SelectFont(kBarFont);
                const std::string name = PhasenArtName(phase.art);
                if (m_dc.TextWidth(name) + 6.0 <= right - left && m_dc.TextHeight() <= height)
                    Text({(left + right) / 2.0, top + height / 2.0 + 0.36 * kBarFont.size}, name, kBarFont,
                         drawing::Legible(m_palette.text, fill, kTextContrast), TextAlign::center);
            }
            top += m_barPitch;
        }
        m_dc.SelectPen({PenStyle::solid, 2.0, m_palette.axis});
        m_dc.Line({m_bars.right, m_bars.top}, {m_bars.right, m_bars.bottom});
    }

    void DrawTimeAxis()
    {
        m_dc.SelectPen({PenStyle::solid, 1.0, m_palette.axis});
        m_dc.Line({m_bars.left, Sharp(m_axisTop)}, {m_bars.right, Sharp(m_axisTop)});
        const double baseline = m_axisTop + kTickLabelGap + Ascent(kTickFont);
        for (int i = 0; i < m_time.count; ++i) {
            const double x = X(m_time.At(i));
            if (x < m_bars.left - 0.5)
                continue;
            m_dc.Line({Sharp(x), m_axisTop}, {Sharp(x), m_axisTop + 4.0});
            Text({x, baseline}, m_time.Label(i), kTickFont, m_palette.quietText, TextAlign::center);
        }
        Text({m_bars.right, baseline + LineHeight(kLabelFont) + 2.0}, "Zeit t in s", kLabelFont, m_palette.text,
             TextAlign::right);
    }

    CDC& m_dc;
    const PathTimeDiagramOptions& m_options;
    const drawing::DiagramPalette& m_palette;
    std::vector<Track> m_tracks;
    std::vector<Panel> m_panels;
    Frame m_bars;
    double m_barPitch = 0.0;
    double m_axisTop = 0.0;
    double m_start = -1.0; ///< s, at the left end of the axis
    drawing::AxisTicks m_time;
};

} // namespace

std::vector<DiagramVehicle> DiagramVehicles(const CRuvData& data)
{
    std::vector<DiagramVehicle> vehicles;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        const CKfzDaten& vehicle = data.KfzDat(i);
        if (!vehicle.IsValid())
            continue;
        PathTimeCurve curve(data.WZRechDat(i));
        if (curve.IsEmpty())
            continue;
        std::string name = vehicle.name.empty() ? "Fahrzeug " + std::to_string(i + 1) : vehicle.name;
        vehicles.push_back({std::move(name), vehicle.color, std::move(curve), i});
    }
    return vehicles;
}

namespace
{

std::vector<DiagramVehicle> Moving(std::span<const DiagramVehicle> vehicles)
{
    std::vector<DiagramVehicle> moving;
    std::copy_if(vehicles.begin(), vehicles.end(), std::back_inserter(moving),
                 [](const DiagramVehicle& vehicle) { return !vehicle.curve.IsEmpty(); });
    return moving;
}

} // namespace

double LeastDiagramHeight(double width, std::span<const DiagramVehicle> vehicles, const PathTimeDiagramOptions& options)
{
    const std::vector<DiagramVehicle> moving = Moving(vehicles);
    CDC measure(width, 1.0);
    return DiagramPainter(measure, moving, options).LeastHeight();
}

DiagramArea DrawPathTimeDiagram(CDC& dc, std::span<const DiagramVehicle> vehicles,
                                const PathTimeDiagramOptions& options)
{
    const std::vector<DiagramVehicle> moving = Moving(vehicles);
    return DiagramPainter(dc, moving, options).Draw();
}

} // namespace pathtime
