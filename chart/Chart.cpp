// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Chart.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace chart
{
namespace
{

constexpr double kMargin = 0.1; // of the values, above and below them
/// The closest view, as a part of the times in it: their doubles still differ there.
constexpr double kClosest = 2e-9;
/// Times this part apart are the same: sums of time steps are rounded.
constexpr double kSameTime = 1e-9;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

const Axis kSeconds{"", units::s, AxisFormat::number, 3};
const Axis kMetres{"", units::m, AxisFormat::number, 2};
const Axis kAcceleration{"", units::ms2, AxisFormat::number, 2};

double Slack(double time)
{
    return kSameTime * std::max(1.0, std::abs(time));
}

std::string ProblemText(Samples samples, const std::string& name)
{
    const std::string which = name.empty() ? "" : " (" + name + ")";
    switch (samples) {
    case Samples::fine:
        break;
    case Samples::lengthsDiffer:
        return "Die Messreihe" + which + " hat nicht zu jedem Zeitpunkt einen Wert; sie wird nicht gezeichnet.";
    case Samples::timeNotFinite:
        return "Die Messreihe" + which + " hat Zeiten, die keine Zahlen sind; sie wird nicht gezeichnet.";
    case Samples::timeRunsBack:
        return "Die Zeiten der Messreihe" + which + " laufen nicht vorwärts; sie wird nicht gezeichnet.";
    }
    return {};
}

std::string TextOrNone(const Axis& axis, const std::optional<double>& value)
{
    return value ? axis.Text(*value / axis.Factor()) : "–";
}

} // namespace

void Chart::Attach(CWnd* control, double heightToWidth)
{
    if (auto* field = dynamic_cast<CChartCtrl*>(control))
        field->SetClient(this, heightToWidth);
    else if (Control() != nullptr)
        Control()->SetClient(nullptr);
}

void Chart::Redraw()
{
    if (Control() != nullptr)
        Control()->Invalidate();
}

void Chart::SetBottomAxis(Axis axis)
{
    m_bottom = std::move(axis);
    Redraw();
}

void Chart::SetLeftAxis(Axis axis)
{
    m_left = std::move(axis);
    Redraw();
}

void Chart::SetEmptyText(std::string text)
{
    m_emptyText = std::move(text);
    Redraw();
}

void Chart::SetHint(std::string text)
{
    m_hint = std::move(text);
    Redraw();
}

void Chart::SetSeries(std::vector<Series> series)
{
    m_problem.clear();
    std::vector<Entry> curves;
    for (Series& one : series) {
        static const Values kEmpty = std::make_shared<const std::vector<double>>();
        const Values x = one.x != nullptr ? one.x : kEmpty;
        const Values y = one.y != nullptr ? one.y : kEmpty;
        const Samples samples = CheckSamples(*x, *y);
        if (samples != Samples::fine) {
            m_problem = ProblemText(samples, one.name);
            curves.clear();
            break;
        }
        if (x->empty())
            continue;
        Entry entry{std::move(one), Curve(x, y), std::nullopt};
        if (entry.series.overviewStride > 1)
            entry.overview.emplace(x, y, entry.series.overviewStride);
        curves.push_back(std::move(entry));
    }
    m_curves = std::move(curves);
    m_gaps.clear();
    m_span.reset();
    m_height.reset();
    m_pointer.reset();
    m_pointedAt.reset();
    m_drag = Drag::none;
    m_rubber.reset();
    RangeIs({}, {});
}

void Chart::Clear()
{
    SetSeries({});
}

void Chart::SetGaps(std::string name, std::vector<Gap> gaps)
{
    m_gapName = std::move(name);
    m_gaps = std::move(gaps);
    Redraw();
}

void Chart::SetVisible(std::size_t series, bool visible)
{
    if (series >= m_curves.size())
        return;
    m_curves[series].series.visible = visible;
    Redraw();
}

void Chart::SetWidth(double pixels)
{
    for (Entry& entry : m_curves)
        entry.series.width = pixels;
    Redraw();
}

View Chart::Whole() const
{
    View view;
    if (m_curves.empty())
        return view;
    view.from = std::numeric_limits<double>::infinity();
    view.to = -view.from;
    Extremes values;
    for (const Entry& entry : m_curves) {
        view.from = std::min(view.from, entry.curve.X(0));
        view.to = std::max(view.to, entry.curve.X(entry.curve.Size() - 1));
        if (entry.series.visible)
            values.Take(entry.curve.Between(0, entry.curve.Size()));
    }
    if (!(view.to - view.from >= kClosest * std::max({1.0, std::abs(view.from), std::abs(view.to)}))) {
        const double more = std::max(0.5, kClosest * std::abs(view.to));
        view.from -= more;
        view.to += more;
    }
    if (values.IsEmpty())
        return view;
    const double factor = m_left.Factor();
    view.low = values.lowest / factor;
    view.high = values.highest / factor;
    const double margin = std::trunc((view.high - view.low) * kMargin);
    view.low -= margin;
    view.high += margin;
    if (!(view.high - view.low >= kClosest * std::max({1.0, std::abs(view.low), std::abs(view.high)}))) {
        const double more = std::max(1.0, kClosest * std::abs(view.high));
        view.low -= more;
        view.high += more;
    }
    return view;
}

View Chart::CurrentView() const
{
    View view = Whole();
    if (m_span)
        std::tie(view.from, view.to) = *m_span;
    if (m_height)
        std::tie(view.low, view.high) = *m_height;
    return view;
}

void Chart::ShowAll()
{
    m_span.reset();
    m_height.reset();
    Redraw();
}

/// Keeps the ends within the data, and their distance.
void Chart::SetSpan(double from, double to)
{
    const View whole = Whole();
    const double closest = kClosest * std::max({1.0, std::abs(whole.from), std::abs(whole.to)});
    const double span = std::max(to - from, closest);
    if (!(span < whole.to - whole.from)) {
        m_span.reset();
    } else {
        from = std::clamp(from, whole.from, whole.to - span);
        m_span = {from, from + span};
    }
    Redraw();
}

void Chart::Zoom(double factor, double about)
{
    const View view = CurrentView();
    SetSpan(about - (about - view.from) / factor, about + (view.to - about) / factor);
}

void Chart::ZoomLeft(double factor, double about)
{
    const View view = CurrentView();
    const View whole = Whole();
    const double low = about - (about - view.low) / factor;
    const double high = about + (view.high - about) / factor;
    const double closest = kClosest * std::max({1.0, std::abs(whole.low), std::abs(whole.high)});
    if (high - low >= whole.high - whole.low)
        m_height.reset();
    else if (high - low > closest)
        m_height = {low, high};
    Redraw();
}

void Chart::ZoomTo(const Box& box, const Plot& plot)
{
    const View view = CurrentView();
    const auto x = [&](double at) {
        const double part = (std::clamp(at, plot.left, plot.right) - plot.left) / (plot.right - plot.left);
        return view.from + part * (view.to - view.from);
    };
    const auto y = [&](double at) {
        const double part = (plot.bottom - std::clamp(at, plot.top, plot.bottom)) / (plot.bottom - plot.top);
        return view.low + part * (view.high - view.low);
    };
    if (std::abs(box.a.x - box.b.x) > kClickRadius)
        SetSpan(std::min(x(box.a.x), x(box.b.x)), std::max(x(box.a.x), x(box.b.x)));
    // A flat box is a stretch of time with all its values.
    if (std::abs(box.a.y - box.b.y) > 4.0 * kClickRadius) {
        const double low = std::min(y(box.a.y), y(box.b.y));
        const double high = std::max(y(box.a.y), y(box.b.y));
        if (high - low > kClosest * std::max({1.0, std::abs(low), std::abs(high)}))
            m_height = {low, high};
    }
    Redraw();
}

void Chart::Pan(double part, double partUp)
{
    const View view = m_drag == Drag::pan ? m_pressedView : CurrentView();
    if (m_span)
        SetSpan(view.from + part * (view.to - view.from), view.to + part * (view.to - view.from));
    if (m_height) {
        const View whole = Whole();
        const double height = view.high - view.low;
        const double low = std::clamp(view.low + partUp * height, whole.low, std::max(whole.low, whole.high - height));
        m_height = {low, low + height};
    }
    Redraw();
}

void Chart::SetMostRows(std::size_t rows)
{
    m_mostRows = rows;
    if (rows == 0)
        DropRange();
    else if (m_range && m_range->Count() > rows)
        KeepRange(m_range->first, m_range->last);
    else
        Redraw();
}

std::optional<Rows> Chart::Range() const
{
    return m_range;
}

double Chart::RangeFrom() const
{
    return m_range ? RowCurve().X(m_range->first) : m_start ? RowCurve().X(*m_start) : kNone;
}

double Chart::RangeTo() const
{
    return m_range ? RowCurve().X(m_range->last) : kNone;
}

bool Chart::SetRange(Rows rows)
{
    if (m_curves.empty() || rows.first > rows.last || rows.last >= RowCurve().Size() || m_mostRows == 0)
        return false;
    KeepRange(rows.first, rows.last);
    return true;
}

void Chart::DropRange()
{
    RangeIs({}, {});
}

/// From the anchor towards the other row, as far as a range may go.
void Chart::KeepRange(std::size_t anchor, std::size_t other)
{
    if (m_mostRows == 0)
        return;
    const std::size_t distance = other > anchor ? other - anchor : anchor - other;
    const std::size_t kept = std::min(distance, m_mostRows - 1);
    RangeIs({}, other >= anchor ? Rows{anchor, anchor + kept} : Rows{anchor - kept, anchor}, kept < distance);
}

void Chart::RangeIs(std::optional<std::size_t> start, std::optional<Rows> rows, bool shortened)
{
    const bool changed = rows != m_range || start != m_start;
    const bool otherRows = rows != m_range;
    m_start = start;
    m_range = rows;
    m_shortened = shortened;
    if (otherRows || !rows)
        SetStatistics(m_statisticsOf, m_metresPerSecond);
    Redraw();
    if (changed && m_rangeChanged) {
        const auto tell = m_rangeChanged; // it may set another one
        tell();
    }
}

std::size_t Chart::RowNear(double x) const
{
    const Curve& rows = RowCurve();
    const std::size_t after = rows.FirstFrom(x);
    if (after == rows.Size())
        return after - 1;
    return after > 0 && x - rows.X(after - 1) < rows.X(after) - x ? after - 1 : after;
}

/// The first click sets the start, the second the end, a third begins anew.
void Chart::ClickRow(std::size_t row)
{
    if (!m_start) {
        RangeIs(row, {});
        return;
    }
    m_lastIsActive = row >= *m_start;
    KeepRange(*m_start, row);
}

void Chart::MoveCursor(std::size_t row)
{
    if (!m_range) {
        RangeIs(row, {});
    } else {
        const std::size_t anchor = m_lastIsActive ? m_range->first : m_range->last;
        m_lastIsActive = row > anchor || (row == anchor && m_lastIsActive);
        KeepRange(anchor, row);
    }
    // Where the cursor went out of sight, the view follows it.
    const double x = m_range ? (m_lastIsActive ? RangeTo() : RangeFrom()) : RangeFrom();
    const View view = CurrentView();
    if (m_span && x < view.from)
        SetSpan(x, x + view.to - view.from);
    else if (m_span && x > view.to)
        SetSpan(x - view.to + view.from, x);
}

std::optional<std::string> Chart::TakeTimes(double from, double to)
{
    if (m_curves.empty())
        return "es sind keine Daten geladen";
    if (m_mostRows == 0)
        return "hier ist kein Platz für eine Zeile";
    const Curve& rows = RowCurve();
    const std::size_t first = rows.FirstFrom(from - Slack(from));
    std::size_t beyond = rows.FirstFrom(to + Slack(to));
    while (beyond < rows.Size() && rows.X(beyond) <= to + Slack(to))
        ++beyond;
    if (!(from <= to) || first >= beyond)
        return "zwischen " + m_bottom.Text(from) + " und " + m_bottom.Text(to) +
               " liegt keine Zeile; die Zeiten gehen von " + m_bottom.Text(rows.X(0)) + " bis " +
               m_bottom.Text(rows.X(rows.Size() - 1));
    m_lastIsActive = true;
    KeepRange(first, beyond - 1);
    return std::nullopt;
}

bool Chart::TakeTyped(double from, double to)
{
    if (std::isnan(from) && std::isnan(to)) {
        DropRange();
        return true;
    }
    if (m_curves.empty())
        return false;
    if (std::isnan(from))
        from = RowCurve().X(0);
    if (!std::isnan(to))
        return !TakeTimes(from, to);
    const std::size_t row = RowCurve().FirstFrom(from - Slack(from));
    if (row == RowCurve().Size())
        return false;
    RangeIs(row, {});
    return true;
}

void Chart::SetStatistics(std::size_t series, double metresPerSecond)
{
    m_statisticsOf = series;
    m_metresPerSecond = metresPerSecond;
    m_statistics.reset();
    if (m_range && series < m_curves.size()) {
        const Curve& curve = m_curves[series].curve;
        Rows rows = *m_range;
        if (m_curves[series].series.x != m_curves.front().series.x) {
            // Times of its own: its samples between the ends of the range.
            rows.first = curve.FirstFrom(RangeFrom());
            rows.last = curve.FirstFrom(RangeTo());
            if (rows.last == curve.Size() || curve.X(rows.last) > RangeTo())
                --rows.last; // wraps when there is none
        }
        if (rows.first <= rows.last && rows.last < curve.Size())
            m_statistics = StatisticsOf(curve, rows.first, rows.last, metresPerSecond);
    }
    Redraw();
}

std::optional<RangeStatistics> Chart::Statistics() const
{
    return m_statistics;
}

std::vector<std::pair<std::string, std::string>> Chart::StatisticTexts() const
{
    if (!m_statistics)
        return {};
    const RangeStatistics& s = *m_statistics;
    std::vector<std::pair<std::string, std::string>> texts{{"Δt", kSeconds.Text(s.duration)}};
    const bool speed = m_metresPerSecond > 0.0;
    if (speed)
        texts.emplace_back("Δs", TextOrNone(kMetres, s.path));
    texts.emplace_back(speed ? "Mittel (Δs/Δt)" : "Mittel", TextOrNone(m_left, s.mean));
    texts.emplace_back("Minimum", TextOrNone(m_left, s.lowest));
    texts.emplace_back("Maximum", TextOrNone(m_left, s.highest));
    if (speed)
        texts.emplace_back("mittlere Beschleunigung (Δv/Δt)", TextOrNone(kAcceleration, s.acceleration));
    return texts;
}

std::vector<std::string> Chart::Items() const
{
    std::vector<std::string> items;
    if (!m_range)
        return items;
    items.push_back("Bereich " + m_bottom.TextWithoutUnit(RangeFrom()) + " bis " + m_bottom.Text(RangeTo()) + ", " +
                    std::to_string(m_range->Count()) + (m_range->Count() == 1 ? " Zeile" : " Zeilen"));
    // Which series, where there are several.
    const std::string of =
        m_curves.size() > 1 && m_statisticsOf < m_curves.size() ? m_curves[m_statisticsOf].series.name : std::string();
    if (m_statistics && !of.empty())
        items.push_back(of + ":");
    for (const auto& [name, value] : StatisticTexts())
        items.push_back(name + " " + value);
    return items;
}

Look Chart::MakeLook(bool report) const
{
    Look look;
    look.bottom = &m_bottom;
    look.left = &m_left;
    look.view = CurrentView();
    look.report = report;
    if (m_curves.empty()) {
        look.message = m_problem.empty() ? m_emptyText : m_problem;
        return look;
    }
    const bool whole = !m_span && !m_height;
    std::size_t stride = 1;
    for (const Entry& entry : m_curves) {
        if (!entry.series.visible)
            continue;
        const bool overview = whole && entry.overview;
        if (overview)
            stride = std::max(stride, entry.series.overviewStride);
        look.curves.push_back({entry.series.name, entry.series.color, entry.series.width,
                               overview ? &*entry.overview : &entry.curve, &entry.curve});
    }
    look.gaps = m_gaps;
    look.gapName = m_gapName;
    if (m_range)
        look.cursors = {RangeFrom(), RangeTo()};
    else if (m_start)
        look.cursors = {RangeFrom()};
    look.activeCursor = m_range && m_lastIsActive ? 1 : 0;
    look.items = Items();
    if (!report && look.items.empty() && m_start)
        look.items.push_back("Anfang bei " + m_bottom.Text(RangeFrom()) + "; ein weiterer Klick setzt das Ende.");
    else if (!report && look.items.empty() && !m_hint.empty())
        look.items.push_back(m_hint);
    if (m_shortened)
        look.note = "Der Bereich ist verkürzt: er darf höchstens " + std::to_string(m_mostRows) +
                    (m_mostRows == 1 ? " Zeile" : " Zeilen") + " haben.";
    else if (m_statistics && m_statistics->duration > 0.0 && !m_statistics->mean)
        look.note = "Im Bereich fehlen Messwerte: was von ihnen abhängt, ist nicht bestimmbar.";
    else if (stride > 1)
        look.note = "Gesamtansicht: gezeichnet ist jeder " + std::to_string(stride) + ". Messwert.";
    if (!report) {
        look.rubber = m_rubber;
        look.pointedAt = m_pointedAt;
    }
    return look;
}

void Chart::Paint(CDC& dc, bool report)
{
    Look look = MakeLook(report);
    if (m_pointer && !report)
        look.pointer = CDPoint{m_pointer->x * dc.Width(), m_pointer->y * dc.Height()};
    DrawChart(dc, look);
}

CChartState Chart::State() const
{
    const Look look = MakeLook(false);
    CChartState state;
    state.view = {look.view.from, look.view.to};
    for (const DrawnCurve& curve : look.curves)
        state.series.push_back(curve.name);
    state.note = look.message.empty() ? look.note : look.message;
    if (m_curves.empty())
        return state;
    state.rows = RowCurve().Size();
    if (m_range) {
        state.first = m_range->first;
        state.last = m_range->last;
        state.rangeTimes = {RangeFrom(), RangeTo()};
    }
    state.statistics = StatisticTexts();
    return state;
}

void Chart::PointAt(std::optional<double> x)
{
    m_pointedAt = x;
    Redraw();
}

} // namespace chart
