// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The control that a chart is drawn in, and what of the host a chart needs: ticks, numbers as text, legible colours.
// What the chart shows and how it answers the mouse is its client's (chart/Chart.h).
#pragma once

#include "host/Controls.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What a chart shows, for scripts and tests.
struct CChartState {
    std::size_t rows = 0;                   ///< that a range can be picked of
    std::optional<std::size_t> first{};     ///< of the range, counted from 0
    std::optional<std::size_t> last{};      ///< of the range, included
    std::pair<double, double> rangeTimes{}; ///< of those two rows, in the unit of the bottom axis
    std::pair<double, double> view{};       ///< ends of the bottom axis
    std::vector<std::string> series{};      ///< names of those that are shown
    std::vector<std::pair<std::string, std::string>> statistics{}; ///< of the range: name, and value with unit
    std::string note{};                                            ///< what the chart says in a line of its own
};

class CChartCtrl;

/// Who draws a chart and answers its user.
class CChartClient
{
  public:
    CChartClient() = default;
    CChartClient(const CChartClient&) = delete;
    CChartClient& operator=(const CChartClient&) = delete;
    virtual ~CChartClient();

    /// `report`: for paper, without what only the mouse points at.
    virtual void Paint(CDC& dc, bool report) = 0;
    virtual bool OnMouse(const CMouseEvent& event) = 0;
    /// A key that goes down (`character` 0) or a character that is typed (`key` 0); false when it is not used.
    virtual bool OnKey(UINT key, char32_t character, UINT modifiers) = 0;
    /// Takes the rows with from <= time <= to (unit of the bottom axis) as the range; otherwise why not, in German.
    virtual std::optional<std::string> TakeTimes(double from, double to) = 0;
    virtual CChartState State() const = 0;

  protected:
    /// The control it is drawn in, null before and after.
    CChartCtrl* Control() const { return m_control; }

  private:
    friend class CChartCtrl;
    CChartCtrl* m_control = nullptr;
};

/// Control of class "RuvChart" in a template. As a tab stop it takes the keys.
class CChartCtrl : public CStatic
{
  public:
    ~CChartCtrl() override;
    const CMessageMap* GetMessageMap() const override;
    /// The client outlives neither the control nor the other way round: each forgets the other when it goes.
    /// `heightToWidth` is the shape in reports.
    void SetClient(CChartClient* client, double heightToWidth = 0.5);
    CChartClient* Client() const { return m_client; }

  private:
    friend class CChartClient;
    LRESULT OnKeyDown(WPARAM key, LPARAM how);
    LRESULT OnCharacter(WPARAM character, LPARAM how);

    CChartClient* m_client = nullptr;
};

/// Rounded to `decimals` places with the user's decimal sign and a true minus; not-a-number is "—".
std::string RuvNumberText(double value, int decimals);

namespace drawing
{

/// An axis from `minimum` to `maximum`, both multiples of `step`; the step is 1, 2 or 5 times a power of ten.
struct AxisTicks {
    double minimum = 0.0;
    double maximum = 1.0;
    double step = 1.0;
    int count = 2; ///< ticks, both ends included
    int decimals = 0;

    double At(int index) const;
    /// Tick's value with decimal comma and a true minus sign.
    std::string Label(int index) const;
};

/// The finest axis that holds lowest..highest with at most `intervals` steps; two at least, as a range about 0 needs
/// them. A range without extent is widened; both must be finite.
AxisTicks TicksFor(double lowest, double highest, int intervals);

/// The colour, shifted towards black or white as little as it takes to reach the contrast (WCAG 2) with the background.
COLORREF Legible(COLORREF color, COLORREF background, double contrast);

/// `part` 0 gives `from`, 1 gives `to`.
COLORREF Blend(COLORREF from, COLORREF to, double part);

} // namespace drawing
