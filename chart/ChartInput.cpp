// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What mouse and keys do with a chart.
#include "chart/Chart.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace chart
{
namespace
{

constexpr double kWheelZoom = 1.25;   // per notch
constexpr double kKeyZoom = 1.5;      // per key press
constexpr double kKeyPan = 0.1;       // of the view, per key press
constexpr double kPagePan = 0.9;      // of the view
constexpr std::size_t kManyRows = 10; // of an arrow key with Ctrl
constexpr double kGrab = 5.0;         // px beside a cursor where it is taken hold of

} // namespace

bool Chart::OnMouse(const CMouseEvent& event)
{
    using What = CMouseEvent::Kind;
    const bool finite = std::isfinite(event.position.x) && std::isfinite(event.position.y) && event.width >= 1.0 &&
                        event.height >= 1.0 && std::isfinite(event.width) && std::isfinite(event.height);
    if (m_curves.empty() || !finite)
        return false;
    CDC dc(event.width, event.height);
    const Plot plot = PlotOf(dc, MakeLook(false));
    if (!plot.IsUsable())
        return false;
    switch (event.kind) {
    case What::press:
    case What::doubleClick: // two quick clicks are two clicks
        return plot.Holds(event.position) && OnPress(event, plot);
    case What::move:
        OnMove(event, plot);
        return true;
    case What::release:
        OnRelease(event, plot);
        return true;
    case What::wheel:
        break;
    }
    if (!plot.Holds(event.position) || !std::isfinite(event.wheel))
        return false;
    const View view = CurrentView();
    const double factor = std::pow(kWheelZoom, std::clamp(event.wheel, -50.0, 50.0));
    if ((event.modifiers & MK_SHIFT) != 0)
        Pan(-kKeyPan * std::clamp(event.wheel, -50.0, 50.0), 0.0);
    else if ((event.modifiers & MK_CONTROL) != 0)
        ZoomLeft(factor, view.high - (event.position.y - plot.top) / (plot.bottom - plot.top) * (view.high - view.low));
    else
        Zoom(factor, view.from + (event.position.x - plot.left) / (plot.right - plot.left) * (view.to - view.from));
    return true;
}

bool Chart::OnPress(const CMouseEvent& event, const Plot& plot)
{
    m_pressed = event.position;
    m_pressedView = CurrentView();
    m_rubber.reset();
    const bool shift = (event.modifiers & MK_SHIFT) != 0;
    if (event.button == MouseButton::middle || (event.button == MouseButton::left && shift)) {
        m_drag = Drag::pan;
        return true;
    }
    if (event.button != MouseButton::left)
        return false;
    m_drag = Drag::click;
    double nearest = kGrab;
    const View& view = m_pressedView;
    for (const bool last : {true, false}) {
        const double time = last ? RangeTo() : RangeFrom();
        const double x = plot.left + (time - view.from) / (view.to - view.from) * (plot.right - plot.left);
        if (std::abs(x - event.position.x) < nearest) {
            nearest = std::abs(x - event.position.x);
            m_drag = Drag::cursor;
            m_lastIsActive = last;
        }
    }
    return true;
}

void Chart::OnMove(const CMouseEvent& event, const Plot& plot)
{
    m_pointer = CDPoint{event.position.x / event.width, event.position.y / event.height};
    m_pointedAt.reset();
    const View view = CurrentView();
    const double x = view.from + (event.position.x - plot.left) / (plot.right - plot.left) * (view.to - view.from);
    const CDPoint moved = event.position - m_pressed;
    const bool far = std::abs(moved.x) > kClickRadius || std::abs(moved.y) > kClickRadius;
    switch (event.button == MouseButton::none ? Drag::none : m_drag) {
    case Drag::none:
        break;
    case Drag::pan:
        Pan(-moved.x / (plot.right - plot.left), moved.y / (plot.bottom - plot.top));
        break;
    case Drag::click:
        if (far || m_rubber)
            m_rubber = Box{m_pressed, event.position};
        break;
    case Drag::cursor:
        if (far || m_rubber) {
            m_rubber = Box{m_pressed, m_pressed}; // it moved: the release is no click
            MoveCursor(RowNear(std::clamp(x, view.from, view.to)));
        }
        break;
    }
    if (plot.Holds(event.position) && m_pointerMoved)
        m_pointerMoved(x);
    Redraw();
}

void Chart::OnRelease(const CMouseEvent& event, const Plot& plot)
{
    const Drag drag = std::exchange(m_drag, Drag::none);
    const std::optional<Box> rubber = std::exchange(m_rubber, std::nullopt);
    if (drag == Drag::click && rubber) {
        ZoomTo({m_pressed, event.position}, plot);
    } else if ((drag == Drag::click || drag == Drag::cursor) && !rubber) {
        const View view = CurrentView();
        ClickRow(RowNear(view.from + (m_pressed.x - plot.left) / (plot.right - plot.left) * (view.to - view.from)));
    }
    Redraw();
}

bool Chart::OnKey(UINT key, char32_t character, UINT modifiers)
{
    if (m_curves.empty())
        return false;
    const View view = CurrentView();
    const bool right = key == VK_RIGHT;
    if ((key == VK_LEFT || right) && (modifiers & MK_SHIFT) != 0) {
        Pan(right ? kKeyPan : -kKeyPan, 0.0);
    } else if (key == VK_LEFT || right) {
        const std::size_t most = RowCurve().Size() - 1;
        if (!m_range && !m_start) {
            RangeIs(std::min(RowCurve().FirstFrom(view.from), most), {});
            return true;
        }
        const std::size_t at = m_range ? (m_lastIsActive ? m_range->last : m_range->first) : *m_start;
        const std::size_t step = (modifiers & MK_CONTROL) != 0 ? kManyRows : 1;
        MoveCursor(right ? std::min(most, at + step) : at - std::min(at, step));
    } else if (key == VK_PRIOR || key == VK_NEXT) {
        Pan(key == VK_NEXT ? kPagePan : -kPagePan, 0.0);
    } else if (key == VK_UP || character == U'+') {
        Zoom(kKeyZoom, (view.from + view.to) / 2.0);
    } else if (key == VK_DOWN || character == U'-') {
        Zoom(1.0 / kKeyZoom, (view.from + view.to) / 2.0);
    } else if (key == VK_HOME) {
        ShowAll();
    } else if (key == VK_SPACE && m_range) {
        m_lastIsActive = !m_lastIsActive;
        Redraw();
    } else if (key == VK_SPACE && m_start) {
        m_lastIsActive = true;
        KeepRange(*m_start, *m_start);
    } else if (key == VK_DELETE || key == VK_BACK) {
        DropRange();
    } else {
        return false;
    }
    return true;
}

} // namespace chart
