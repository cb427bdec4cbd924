// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The chart as a mask holds it: a member of the dialog, attached to a control of class "RuvChart". It draws the mask's
// curves, lets the user look closer and pick a range of rows, and says what the range holds. docs/chart.md.
#pragma once

#include "chart/Axis.h"
#include "chart/ChartDrawing.h"
#include "chart/Curve.h"
#include "chart/RangeStatistics.h"
#include "host/Charts.h"

#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

class CWnd;

namespace chart
{

/// Colours that stay apart for colour-blind readers (Okabe and Ito, Color Universal Design, 2008; the yellow of their
/// set is left out, it does not show on white). The chart lightens or darkens them where the ground asks for it.
inline constexpr std::array<COLORREF, 6> kCurveColors{RGB(0, 114, 178),   RGB(213, 94, 0), RGB(0, 158, 115),
                                                      RGB(204, 121, 167), RGB(0, 0, 0),    RGB(86, 180, 233)};

struct Series {
    std::string name{}; ///< in legend and read-out; may be empty when there is one series only
    Values x{};         ///< of the bottom axis; must not decrease. Series may share theirs
    Values y{};         ///< in the unit of the left axis; not-a-number for a missing sample
    COLORREF color = kCurveColors[0];
    double width = 1.5; ///< px
    bool visible = true;
    /// The whole view shows every n-th sample only; closer views show all. The range of the left axis counts all.
    std::size_t overviewStride = 1;
};

/// Rows first..last, both included, counted from 0.
struct Rows {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t Count() const { return last - first + 1; }
    friend bool operator==(const Rows&, const Rows&) = default;
};

class Chart final : public CChartClient
{
  public:
    /// Draws in the control from now on; null or another control lets go of the one before.
    void Attach(CWnd* control, double heightToWidth = 0.5);

    void SetBottomAxis(Axis axis);
    void SetLeftAxis(Axis axis);
    /// Says, in German, that there is nothing to see: at first "Es sind keine Daten geladen."
    void SetEmptyText(std::string text);
    /// Asks the user to pick a range while none is picked; empty asks for nothing.
    void SetHint(std::string text);

    /// New data: the whole of it is shown, no range is picked. The rows of a range are the samples of the first series.
    /// Samples that cannot be drawn (CheckSamples) leave the chart with a sentence that says so, and Problem() true.
    void SetSeries(std::vector<Series> series);
    /// Nothing is loaded.
    void Clear();
    bool IsEmpty() const { return m_curves.empty(); }
    bool Problem() const { return !m_problem.empty(); }
    /// Stretches of the bottom axis without recorded samples, in order; they are shaded until there are other series.
    void SetGaps(std::string name, std::vector<Gap> gaps);
    void SetVisible(std::size_t series, bool visible);
    /// The y range follows what is visible; the view along the bottom axis and the range stay.
    void SetWidth(double pixels);

    // The range of rows.
    /// Called whenever the range has become another one or none, whoever did it.
    void OnRangeChanged(std::function<void()> changed) { m_rangeChanged = std::move(changed); }
    /// A range holds at most so many rows; one that is longer ends sooner, and the chart says so.
    void SetMostRows(std::size_t rows);
    std::optional<Rows> Range() const;
    /// Times of its first and last row; not-a-number without a range.
    double RangeFrom() const;
    double RangeTo() const;
    /// False when there are no such rows.
    bool SetRange(Rows rows);
    void DropRange();
    /// Typed ends, of which not-a-number is none: the rows between them, or the start alone when `to` is none. False
    /// when no row lies between; then the range is as before.
    bool TakeTyped(double from, double to);

    /// The series that statistics are of, and one unit of it in m/s, 0 when it is no speed. 0, 1/3.6 at first: the
    /// first series is a speed in km/h.
    void SetStatistics(std::size_t series, double metresPerSecond);
    /// Of the range; nothing without one.
    std::optional<RangeStatistics> Statistics() const;

    /// Called with the place under the pointer (unit of the bottom axis).
    void OnPointer(std::function<void(double)> moved) { m_pointerMoved = std::move(moved); }
    /// Points at a place from outside, as another view of the same data does.
    void PointAt(std::optional<double> x);

    void ShowAll();
    View CurrentView() const;

    // CChartClient
    void Paint(CDC& dc, bool report) override;
    bool OnMouse(const CMouseEvent& event) override;
    bool OnKey(UINT key, char32_t character, UINT modifiers) override;
    std::optional<std::string> TakeTimes(double from, double to) override;
    CChartState State() const override;

  private:
    static constexpr double kClickRadius = 4.0; // px; a press that moves farther is a drag

    struct Entry {
        Series series;
        Curve curve;
        std::optional<Curve> overview;
    };
    enum class Drag { none, click, cursor, pan };

    Look MakeLook(bool report) const;
    std::vector<std::string> Items() const;
    std::vector<std::pair<std::string, std::string>> StatisticTexts() const;
    View Whole() const;
    void SetSpan(double from, double to);
    void Zoom(double factor, double about);
    void ZoomLeft(double factor, double about);
    void ZoomTo(const Box& box, const Plot& plot);
    void Pan(double part, double partUp);

    const Curve& RowCurve() const { return m_curves.front().curve; }
    std::size_t RowNear(double x) const;
    void ClickRow(std::size_t row);
    void MoveCursor(std::size_t row);
    void KeepRange(std::size_t anchor, std::size_t other);
    void RangeIs(std::optional<std::size_t> start, std::optional<Rows> rows, bool shortened = false);
    bool OnPress(const CMouseEvent& event, const Plot& plot);
    void OnMove(const CMouseEvent& event, const Plot& plot);
    void OnRelease(const CMouseEvent& event, const Plot& plot);
    void Redraw();

    Axis m_bottom{"Zeit", units::s, AxisFormat::number, 3};
    Axis m_left{"Geschwindigkeit", units::kmh, AxisFormat::number, 2};
    std::string m_emptyText = "Es sind keine Daten geladen.";
    std::string m_hint;
    std::string m_problem;
    std::vector<Entry> m_curves;
    std::vector<Gap> m_gaps;
    std::string m_gapName;
    std::optional<std::pair<double, double>> m_span;   // of the bottom axis, all without
    std::optional<std::pair<double, double>> m_height; // of the left axis, all without

    std::size_t m_mostRows = std::numeric_limits<std::size_t>::max();
    std::optional<std::size_t> m_start; // picked, the end is not yet
    std::optional<Rows> m_range;
    bool m_lastIsActive = true; // the arrow keys move the end
    bool m_shortened = false;   // the range would hold more rows
    std::function<void()> m_rangeChanged;

    std::size_t m_statisticsOf = 0;
    double m_metresPerSecond = 1.0 / 3.6;
    std::optional<RangeStatistics> m_statistics;

    std::optional<CDPoint> m_pointer; // as parts of the drawing's width and height
    std::optional<double> m_pointedAt;
    std::function<void(double)> m_pointerMoved;
    Drag m_drag = Drag::none;
    CDPoint m_pressed{};
    View m_pressedView{};
    std::optional<Box> m_rubber;
};

} // namespace chart
