// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/ChartDrawing.h"

#include "host/Charts.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace chart
{
namespace
{

constexpr double kMargin = 8.0;         // px around everything
constexpr double kGap = 4.0;            // px between a tick and its label
constexpr double kBetween = 16.0;       // px between texts of one line
constexpr double kKey = 22.0;           // px, length of a line in the legend
constexpr double kTickRoom = 72.0;      // px of the bottom axis for each label
constexpr double kTickHeight = 1.7;     // lines of text of the left axis for each label
constexpr double kMarkedSpacing = 7.0;  // px between samples from which each is marked
constexpr double kContrast = 3.0;       // of a curve with the ground, as WCAG 2 asks of graphics
constexpr double kNarrowestGap = 2.0;   // px
constexpr double kGapKey = 8.0;         // px, its height in the legend
constexpr std::size_t kFooterLines = 2; // kept free, so that the plot stays when a range comes
constexpr double kSmallestFont = 9.0;   // px
constexpr double kLargestFont = 15.0;   // px
constexpr double kWidthToFont = 52.0;

constexpr COLORREF kText = RGB(28, 31, 36);
constexpr COLORREF kQuiet = RGB(88, 94, 104);
constexpr COLORREF kAxis = RGB(96, 102, 112);
constexpr COLORREF kGrid = RGB(226, 229, 234);
constexpr COLORREF kRange = RGB(0, 90, 200);

/// A line of one pixel is sharp when it runs through the middle of pixels.
double Sharp(double at)
{
    return std::floor(at) + 0.5;
}

/// Colours on the grounds that the user chose.
struct Colors {
    COLORREF ground = RuvCfg.diagramBackground;
    COLORREF plot = RuvCfg.diagramPlot;
    COLORREF text = drawing::Legible(kText, ground, 7.0);
    COLORREF quiet = drawing::Legible(kQuiet, ground, 4.5);
    COLORREF axis = drawing::Legible(kAxis, plot, kContrast);
    COLORREF grid = drawing::Legible(kGrid, plot, 1.2);
    COLORREF range = drawing::Legible(kRange, plot, kContrast);
    COLORREF rangeArea = drawing::Blend(plot, range, 0.12);
    COLORREF gap = drawing::Blend(plot, drawing::Legible(kQuiet, plot, 4.5), 0.35);
};

class Drawer
{
  public:
    Drawer(CDC& dc, const Look& look) : m_dc(dc), m_look(look)
    {
        m_font.size = std::clamp(dc.Width() / kWidthToFont, kSmallestFont, kLargestFont);
        m_dc.SelectFont(m_font);
        m_line = std::ceil(m_dc.TextHeight());
        m_plot.fontSize = m_font.size;
        m_plot.right = dc.Width() - kMargin;
        m_plot.left = kMargin;
        m_headings = Flow(Legend(), m_dc.TextWidth(m_look.left->Heading()) + kBetween);
        m_plot.top = kMargin + m_line * static_cast<double>(m_headings.lines) + kGap;
        m_items = Flow(Texts(m_look.items), 0.0);
        const std::size_t kept = m_look.report && m_look.items.empty() ? 0 : kFooterLines;
        const auto footerLines = static_cast<double>(std::max(m_items.lines, kept)) + (m_look.note.empty() ? 0.0 : 1.0);
        m_plot.footer = dc.Height() - kMargin - m_line * footerLines;
        m_plot.bottom = m_plot.footer - 2.0 * m_line - 2.0 * kGap;
        // The labels of the left axis decide where the plot begins.
        double widest = 0.0;
        for (const Tick& tick : LeftTicks())
            widest = std::max(widest, m_dc.TextWidth(tick.label));
        m_plot.left = std::min(kMargin + widest + 2.0 * kGap, dc.Width() / 3.0);
    }

    const Plot& Layout() const { return m_plot; }

    void Draw()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_colors.ground});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        if (!m_plot.IsUsable())
            return;
        m_dc.SelectBrush({true, m_colors.plot});
        m_dc.Rectangle(m_plot.left, m_plot.top, m_plot.right, m_plot.bottom);
        if (!m_look.message.empty()) {
            Frame();
            Message();
            return;
        }
        RangeArea();
        Gaps();
        Axes();
        for (const DrawnCurve& curve : m_look.curves)
            Curve(curve);
        Frame();
        Cursors();
        Headings();
        Footer();
        if (!m_look.report) {
            Rubber();
            if (m_look.pointedAt && *m_look.pointedAt >= m_look.view.from && *m_look.pointedAt <= m_look.view.to) {
                m_dc.SelectPen({PenStyle::dash, 1.0, m_colors.range});
                m_dc.Line({X(*m_look.pointedAt), m_plot.top}, {X(*m_look.pointedAt), m_plot.bottom});
            }
            CrossHair();
        }
    }

  private:
    struct Item {
        std::string text;
        double before = 0.0; ///< px kept in front of the text
        COLORREF color = 0;
        double width = 0.0; ///< of the key
    };
    struct Placed {
        Item item;
        double x = 0.0;
        std::size_t line = 0;
    };
    struct Flowing {
        std::vector<Placed> items{};
        std::size_t lines = 0;
    };

    double X(double value) const
    {
        const View& v = m_look.view;
        return m_plot.left + (value - v.from) / (v.to - v.from) * (m_plot.right - m_plot.left);
    }
    double Y(double value) const
    {
        const View& v = m_look.view;
        return m_plot.bottom - (value - v.low) / (v.high - v.low) * (m_plot.bottom - m_plot.top);
    }
    double ValueAt(double x) const
    {
        const View& v = m_look.view;
        return v.from + (x - m_plot.left) / (m_plot.right - m_plot.left) * (v.to - v.from);
    }

    std::vector<Item> Legend() const
    {
        std::vector<Item> items;
        for (const DrawnCurve& curve : m_look.curves)
            if (!curve.name.empty())
                items.push_back({curve.name, kKey + kGap, curve.color, std::min(curve.width, 4.0)});
        if (!m_look.gaps.empty() && !m_look.gapName.empty())
            items.push_back({m_look.gapName, kKey + kGap, m_colors.gap, kGapKey});
        return items;
    }

    std::vector<Item> Texts(const std::vector<std::string>& texts) const
    {
        std::vector<Item> items;
        for (const std::string& text : texts)
            items.push_back({text});
        return items;
    }

    /// Beside each other, in as many lines as they take. The first line begins at `start`.
    Flowing Flow(const std::vector<Item>& items, double start) const
    {
        Flowing flow;
        const double room = m_dc.Width() - 2.0 * kMargin;
        double x = start;
        std::size_t line = 0;
        for (const Item& item : items) {
            const double width = item.before + m_dc.TextWidth(item.text);
            if (x > 0.0 && x + width > room) {
                x = 0.0;
                ++line;
            }
            flow.items.push_back({item, kMargin + x, line});
            x += width + kBetween;
        }
        flow.lines = items.empty() && start <= 0.0 ? 0 : line + 1;
        return flow;
    }

    std::vector<Tick> LeftTicks() const
    {
        const int most = static_cast<int>((m_plot.bottom - m_plot.top) / (kTickHeight * m_line));
        return TicksOf(*m_look.left, m_look.view.low, m_look.view.high, std::clamp(most, 2, 12));
    }

    void Axes()
    {
        const View& v = m_look.view;
        const int most = static_cast<int>((m_plot.right - m_plot.left) / kTickRoom);
        const double baseline = m_plot.bottom + kGap + m_dc.TextAscent();
        m_dc.SetTextColor(m_colors.quiet);
        double free = 0.0; // where the next label may begin
        for (const Tick& tick : TicksOf(*m_look.bottom, v.from, v.to, std::clamp(most, 2, 16))) {
            const double x = Sharp(X(tick.at));
            m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.grid});
            m_dc.Line({x, m_plot.top}, {x, m_plot.bottom});
            m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.axis});
            m_dc.Line({x, m_plot.bottom}, {x, m_plot.bottom + kGap - 1.0});
            const double half = m_dc.TextWidth(tick.label) / 2.0;
            const double middle = std::clamp(x, half, std::max(half, m_dc.Width() - half));
            if (middle - half < free)
                continue;
            m_dc.TextOut({middle, baseline}, tick.label, TextAlign::center);
            free = middle + half + kGap;
        }
        for (const Tick& tick : LeftTicks()) {
            const double y = Sharp(Y(tick.at));
            m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.grid});
            m_dc.Line({m_plot.left, y}, {m_plot.right, y});
            m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.axis});
            m_dc.Line({m_plot.left - kGap + 1.0, y}, {m_plot.left, y});
            m_dc.TextOut({m_plot.left - kGap, y + 0.36 * m_font.size}, tick.label, TextAlign::right);
        }
        m_dc.SetTextColor(m_colors.text);
        m_dc.TextOut({m_plot.right, baseline + m_line}, m_look.bottom->Heading(), TextAlign::right);
    }

    void Frame()
    {
        m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.axis});
        const double left = Sharp(m_plot.left), right = Sharp(m_plot.right);
        const double top = Sharp(m_plot.top), bottom = Sharp(m_plot.bottom);
        m_dc.Polyline({{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}});
    }

    COLORREF ColorOf(const DrawnCurve& curve) const { return drawing::Legible(curve.color, m_colors.plot, kContrast); }

    void Curve(const DrawnCurve& drawn)
    {
        const View& v = m_look.view;
        const auto columns = static_cast<std::size_t>(std::max(1.0, m_plot.right - m_plot.left));
        const double factor = m_look.left->Factor();
        const COLORREF color = ColorOf(drawn);
        for (std::vector<CDPoint>& line : drawn.curve->Lines(v.from, v.to, columns)) {
            for (CDPoint& point : line)
                point = {X(point.x), Y(point.y / factor)};
            for (std::vector<CDPoint>& part : ClippedTo(line, m_plot)) {
                m_dc.SelectPen({PenStyle::solid, drawn.width, color});
                if (part.size() > 1)
                    m_dc.Polyline(std::move(part));
                else
                    Mark(part.front(), std::max(drawn.width, 2.0), color);
            }
        }
        // Samples that stand far apart are marked: between them is only the straight line.
        const std::size_t first = drawn.curve->FirstFrom(v.from);
        const std::size_t last = std::min(drawn.curve->FirstFrom(v.to), drawn.curve->Size());
        if (last <= first || (m_plot.right - m_plot.left) / static_cast<double>(last - first) < kMarkedSpacing)
            return;
        for (std::size_t i = first; i < last; ++i)
            if (const CDPoint at{X(drawn.curve->X(i)), Y(drawn.curve->Y(i) / factor)}; m_plot.Holds(at))
                Mark(at, drawn.width / 2.0 + 1.2, color);
    }

    void Mark(CDPoint at, double radius, COLORREF color)
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, color});
        m_dc.Ellipse(at, radius, radius);
        m_dc.SelectBrush({});
    }

    void RangeArea()
    {
        if (m_look.cursors.size() < 2)
            return;
        const double left = std::clamp(X(m_look.cursors[0]), m_plot.left, m_plot.right);
        const double right = std::clamp(X(m_look.cursors[1]), m_plot.left, m_plot.right);
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_colors.rangeArea});
        if (right > left)
            m_dc.Rectangle(left, m_plot.top, right, m_plot.bottom);
        m_dc.SelectBrush({});
    }

    /// Each one is seen, however short, and none more than once per pixel.
    void Gaps()
    {
        double covered = m_plot.left;
        for (const Gap& gap : m_look.gaps) {
            const double right = std::min(std::max(X(gap.to), X(gap.from) + kNarrowestGap), m_plot.right);
            const double left = std::max(X(gap.from), covered);
            if (right <= left)
                continue;
            m_dc.SelectPen({PenStyle::none});
            m_dc.SelectBrush({true, m_colors.gap});
            m_dc.Rectangle(left, m_plot.top, right, m_plot.bottom);
            m_dc.SelectBrush({});
            covered = std::max(covered, right + 1.0);
        }
    }

    void Cursors()
    {
        for (std::size_t i = 0; i < m_look.cursors.size(); ++i) {
            const double x = X(m_look.cursors[i]);
            if (x < m_plot.left - 0.5 || x > m_plot.right + 0.5)
                continue;
            const bool active = i == m_look.activeCursor && !m_look.report;
            m_dc.SelectPen({PenStyle::solid, active ? 2.0 : 1.0, m_colors.range});
            m_dc.Line({x, m_plot.top}, {x, m_plot.bottom});
            m_dc.SelectBrush({active, m_colors.range});
            m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.range});
            m_dc.Polygon({{x - 5.0, m_plot.top}, {x + 5.0, m_plot.top}, {x, m_plot.top + 7.0}});
            m_dc.SelectBrush({});
        }
    }

    void Headings()
    {
        const double baseline = kMargin + m_dc.TextAscent();
        m_dc.SetTextColor(m_colors.text);
        m_dc.TextOut({kMargin, baseline}, m_look.left->Heading());
        for (const Placed& placed : m_headings.items) {
            const double y = baseline + m_line * static_cast<double>(placed.line);
            const double middle = y - 0.33 * m_font.size;
            const bool area = placed.item.width >= kGapKey;
            m_dc.SelectPen(
                {PenStyle::solid, placed.item.width,
                 area ? placed.item.color : drawing::Legible(placed.item.color, m_colors.ground, kContrast)});
            m_dc.Line({placed.x, middle}, {placed.x + kKey, middle});
            m_dc.TextOut({placed.x + placed.item.before, y}, placed.item.text);
        }
    }

    void Footer()
    {
        double baseline = m_plot.footer + m_dc.TextAscent();
        m_dc.SetTextColor(m_colors.text);
        for (const Placed& placed : m_items.items)
            m_dc.TextOut({placed.x, baseline + m_line * static_cast<double>(placed.line)}, placed.item.text);
        if (m_look.note.empty())
            return;
        baseline += m_line * static_cast<double>(std::max(
                                 m_items.lines, m_look.report && m_look.items.empty() ? std::size_t{0} : kFooterLines));
        m_dc.SetTextColor(m_colors.quiet);
        m_dc.TextOut({kMargin, baseline}, m_look.note);
    }

    void Message()
    {
        // Broken at blanks, in the middle of the plot.
        std::vector<std::string> lines(1);
        const double room = m_plot.right - m_plot.left - 2.0 * kMargin;
        for (std::size_t at = 0; at < m_look.message.size();) {
            const std::size_t end = std::min(m_look.message.find(' ', at), m_look.message.size());
            const std::string word = m_look.message.substr(at, end - at);
            if (!lines.back().empty() && m_dc.TextWidth(lines.back() + " " + word) > room)
                lines.emplace_back();
            lines.back() += (lines.back().empty() ? "" : " ") + word;
            at = end + 1;
        }
        m_dc.SetTextColor(drawing::Legible(kText, m_colors.plot, 7.0));
        double y = (m_plot.top + m_plot.bottom - m_line * static_cast<double>(lines.size())) / 2.0 + m_dc.TextAscent();
        for (const std::string& line : lines) {
            m_dc.TextOut({(m_plot.left + m_plot.right) / 2.0, y}, line, TextAlign::center);
            y += m_line;
        }
    }

    void Rubber()
    {
        if (!m_look.rubber)
            return;
        const auto x = [&](double at) { return std::clamp(at, m_plot.left, m_plot.right); };
        const auto y = [&](double at) { return std::clamp(at, m_plot.top, m_plot.bottom); };
        const Box& box = *m_look.rubber;
        m_dc.SelectPen({PenStyle::dash, 1.0, m_colors.axis});
        m_dc.SelectBrush({});
        m_dc.Rectangle(std::min(x(box.a.x), x(box.b.x)), std::min(y(box.a.y), y(box.b.y)),
                       std::max(x(box.a.x), x(box.b.x)), std::max(y(box.a.y), y(box.b.y)));
    }

    /// What is read off at the pointer: between samples the value of the straight line, and beside it the nearest one.
    void CrossHair()
    {
        if (!m_look.pointer || !m_plot.Holds(*m_look.pointer))
            return;
        const CDPoint at = *m_look.pointer;
        m_dc.SelectPen({PenStyle::dash, 1.0, m_colors.quiet});
        m_dc.Line({Sharp(at.x), m_plot.top}, {Sharp(at.x), m_plot.bottom});
        m_dc.Line({m_plot.left, Sharp(at.y)}, {m_plot.right, Sharp(at.y)});

        const double x = ValueAt(at.x);
        const double factor = m_look.left->Factor();
        std::vector<std::pair<std::string, COLORREF>> lines{{m_look.bottom->Text(x), m_colors.text}};
        for (const DrawnCurve& drawn : m_look.curves) {
            const Reading reading = drawn.readings->At(x);
            std::string text = drawn.name.empty() ? "" : drawn.name + ": ";
            const COLORREF color = ColorOf(drawn);
            text += reading.interpolated ? m_look.left->Text(*reading.interpolated / factor) + " interpoliert"
                                         : std::string("kein Wert");
            if (reading.interpolated)
                if (const CDPoint point{at.x, Y(*reading.interpolated / factor)}; m_plot.Holds(point)) {
                    m_dc.SelectPen({PenStyle::solid, 1.5, color});
                    m_dc.SelectBrush({true, m_colors.plot});
                    m_dc.Ellipse(point, 3.5, 3.5);
                }
            if (reading.nearest) {
                const CDPoint sample{drawn.readings->X(*reading.nearest), drawn.readings->Y(*reading.nearest) / factor};
                text += ", Messwert " + m_look.left->TextWithoutUnit(sample.y) + " bei " +
                        m_look.bottom->TextWithoutUnit(sample.x);
                if (const CDPoint point{X(sample.x), Y(sample.y)}; m_plot.Holds(point))
                    Mark(point, 3.0, color);
            }
            lines.emplace_back(std::move(text), color);
        }
        double width = 0.0;
        for (const auto& line : lines)
            width = std::max(width, m_dc.TextWidth(line.first));
        width += 2.0 * kMargin;
        const double height = m_line * static_cast<double>(lines.size()) + kMargin;
        // On the other side of the pointer, so that it hides nothing that is pointed at.
        const double left = at.x < (m_plot.left + m_plot.right) / 2.0
                                ? std::max(m_plot.right - width - kGap, m_plot.left)
                                : m_plot.left + kGap;
        const double top = m_plot.top + kGap;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_colors.grid});
        m_dc.SelectBrush({true, m_colors.ground});
        m_dc.Rectangle(left, top, left + width, top + height, 3.0, 3.0);
        m_dc.SelectBrush({});
        double baseline = top + kMargin / 2.0 + m_dc.TextAscent();
        for (const auto& [text, color] : lines) {
            m_dc.SetTextColor(drawing::Legible(color, m_colors.ground, 4.5));
            m_dc.TextOut({left + kMargin, baseline}, text);
            baseline += m_line;
        }
    }

    CDC& m_dc;
    const Look& m_look;
    Colors m_colors{};
    CFont m_font{};
    double m_line = 0.0;
    Plot m_plot{};
    Flowing m_headings{};
    Flowing m_items{};
};

} // namespace

Plot PlotOf(CDC& dc, const Look& look)
{
    return Drawer(dc, look).Layout();
}

void DrawChart(CDC& dc, const Look& look)
{
    Drawer(dc, look).Draw();
}

std::vector<std::vector<CDPoint>> ClippedTo(const std::vector<CDPoint>& line, const Plot& box)
{
    std::vector<std::vector<CDPoint>> parts;
    if (line.size() == 1 && box.Holds(line.front()))
        parts.push_back(line);
    bool open = false; // the last part ends where the next segment begins
    for (std::size_t i = 1; i < line.size(); ++i) {
        const CDPoint a = line[i - 1];
        const CDPoint d = line[i] - a;
        // The part of the segment inside: from `enter` to `leave` of its length (Liang and Barsky).
        double enter = 0.0;
        double leave = 1.0;
        const auto bound = [&](double step, double room) {
            if (step == 0.0)
                leave = room < 0.0 ? -1.0 : leave;
            else if (step < 0.0)
                enter = std::max(enter, room / step);
            else
                leave = std::min(leave, room / step);
        };
        bound(-d.x, a.x - box.left);
        bound(d.x, box.right - a.x);
        bound(-d.y, a.y - box.top);
        bound(d.y, box.bottom - a.y);
        if (enter > leave) {
            open = false;
            continue;
        }
        const CDPoint from = enter > 0.0 ? a + d * enter : a;
        const CDPoint to = leave < 1.0 ? a + d * leave : line[i];
        if (!open || enter > 0.0)
            parts.push_back({from});
        parts.back().push_back(to);
        open = leave >= 1.0;
    }
    return parts;
}

} // namespace chart
