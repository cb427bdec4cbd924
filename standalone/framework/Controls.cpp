// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Charts.h"

#include "framework/WndAccess.h"

#include <algorithm>
#include <utility>

using framework::Changed;
using framework::Window;
using framework::WindowOf;

namespace
{

/// Sets a member of the window's state and tells the front end when that changed it.
template <class T> void Assign(const CWnd& control, T Window::*member, T value)
{
    Window* window = WindowOf(control);
    if (window == nullptr || window->*member == value)
        return;
    window->*member = std::move(value);
    Changed(*window);
}

template <class T> T Get(const CWnd& control, T Window::*member, T absent)
{
    const Window* window = WindowOf(control);
    return window == nullptr ? absent : window->*member;
}

} // namespace

void CStatic::SetPainter(std::function<void(CDC&, const CRect&)> paint)
{
    if (Window* window = WindowOf(*this)) {
        window->painter = std::move(paint);
        if (window->kind != framework::Kind::chart)
            window->kind = framework::Kind::field;
        Changed(*window);
    }
}

void CStatic::SetMouse(std::function<bool(const CMouseEvent&)> mouse)
{
    if (Window* window = WindowOf(*this)) {
        window->mouse = std::move(mouse);
        window->held = MouseButton::none;
        Changed(*window);
    }
}

void CStatic::SetCursorShape(CursorShape shape)
{
    Assign(*this, &Window::cursor, shape);
}

void CStatic::SetReportPainter(std::function<void(CDC&, const CRect&)> paint, double heightToWidth)
{
    if (Window* window = WindowOf(*this)) {
        window->reportPainter = std::move(paint);
        window->reportHeightToWidth = heightToWidth;
    }
}

void CEdit::SetReadOnly(BOOL readOnly)
{
    Assign(*this, &Window::readOnly, readOnly != FALSE);
}

BOOL CEdit::IsReadOnly() const
{
    return Get(*this, &Window::readOnly, false);
}

int CButton::GetCheck() const
{
    return Get(*this, &Window::check, 0);
}

void CButton::SetCheck(int check)
{
    Assign(*this, &Window::check, check);
}

int CItemsCtrl::AddString(const std::string& utf8)
{
    Window* window = WindowOf(*this);
    if (window == nullptr)
        return -1;
    window->items.push_back(utf8);
    Changed(*window);
    return static_cast<int>(window->items.size()) - 1;
}

void CItemsCtrl::ResetContent()
{
    if (Window* window = WindowOf(*this)) {
        window->items.clear();
        window->selection = -1;
        Changed(*window);
    }
}

int CItemsCtrl::GetCount() const
{
    const Window* window = WindowOf(*this);
    return window == nullptr ? 0 : static_cast<int>(window->items.size());
}

std::string CItemsCtrl::GetItemText(int index) const
{
    const Window* window = WindowOf(*this);
    return index < 0 || index >= GetCount() ? std::string{} : window->items[static_cast<std::size_t>(index)];
}

int CItemsCtrl::GetCurSel() const
{
    return Get(*this, &Window::selection, -1);
}

void CItemsCtrl::SetCurSel(int index)
{
    Assign(*this, &Window::selection, index >= 0 && index < GetCount() ? index : -1);
}

void CSliderCtrl::SetRange(int minimum, int maximum)
{
    Assign(*this, &Window::trackMinimum, minimum);
    Assign(*this, &Window::trackMaximum, std::max(minimum, maximum));
    SetPos(GetPos());
}

void CSliderCtrl::SetPos(int position)
{
    if (const Window* window = WindowOf(*this))
        Assign(*this, &Window::trackPosition, std::clamp(position, window->trackMinimum, window->trackMaximum));
}

int CSliderCtrl::GetPos() const
{
    return Get(*this, &Window::trackPosition, 0);
}

namespace
{

/// The table behind a grid, or null.
framework::Grid* GridOf(const CGridCtrl& control)
{
    const Window* window = WindowOf(control);
    return window == nullptr ? nullptr : window->grid.get();
}

} // namespace

void CGridCtrl::SetColumns(std::vector<Column> columns)
{
    if (framework::Grid* grid = GridOf(*this)) {
        grid->columns = std::move(columns);
        SetRows({});
    }
}

void CGridCtrl::SetRows(std::vector<Row> rows)
{
    framework::Grid* grid = GridOf(*this);
    if (grid == nullptr)
        return;
    grid->rows = std::move(rows);
    for (Row& row : grid->rows)
        row.resize(grid->columns.size());
    grid->firstSelected = grid->lastSelected = -1;
    Window& window = *WindowOf(*this);
    window.modified = false;
    Changed(window);
}

int CGridCtrl::GetColumnCount() const
{
    const framework::Grid* grid = GridOf(*this);
    return grid == nullptr ? 0 : static_cast<int>(grid->columns.size());
}

int CGridCtrl::GetRowCount() const
{
    const framework::Grid* grid = GridOf(*this);
    return grid == nullptr ? 0 : static_cast<int>(grid->rows.size());
}

void CGridCtrl::SetItemText(int row, int column, const std::string& utf8)
{
    framework::Grid* grid = GridOf(*this);
    if (grid == nullptr || !grid->Holds(row, column) || grid->Cell(row, column) == utf8)
        return;
    grid->Cell(row, column) = utf8;
    Changed(*WindowOf(*this));
}

std::string CGridCtrl::GetItemText(int row, int column) const
{
    const framework::Grid* grid = GridOf(*this);
    return grid == nullptr || !grid->Holds(row, column) ? std::string{} : grid->Cell(row, column);
}

void CGridCtrl::SetSelection(int first, int last)
{
    framework::Grid* grid = GridOf(*this);
    if (grid == nullptr)
        return;
    const bool some = first <= last && grid->Holds(first, 0) && grid->Holds(last, 0);
    grid->firstSelected = some ? first : -1;
    grid->lastSelected = some ? last : -1;
    Changed(*WindowOf(*this));
}

int CGridCtrl::GetFirstSelected() const
{
    const framework::Grid* grid = GridOf(*this);
    return grid == nullptr ? -1 : grid->firstSelected;
}

int CGridCtrl::GetLastSelected() const
{
    const framework::Grid* grid = GridOf(*this);
    return grid == nullptr ? -1 : grid->lastSelected;
}

void CGridCtrl::SetCellEdit(CellEdit edit)
{
    if (framework::Grid* grid = GridOf(*this))
        grid->edit = std::move(edit);
}

CChartClient::~CChartClient()
{
    if (m_control != nullptr)
        m_control->SetClient(nullptr);
}

CChartCtrl::~CChartCtrl()
{
    if (m_client != nullptr)
        m_client->m_control = nullptr;
}

const CMessageMap* CChartCtrl::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {OnMessage<&CChartCtrl::OnKeyDown>(WM_KEYDOWN),
                                                 OnMessage<&CChartCtrl::OnCharacter>(WM_CHAR)};
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CChartCtrl::SetClient(CChartClient* client, double heightToWidth)
{
    if (client != nullptr && client->m_control != nullptr && client->m_control != this)
        client->m_control->SetClient(nullptr);
    if (m_client != nullptr)
        m_client->m_control = nullptr;
    m_client = client;
    if (client == nullptr) {
        SetPainter({});
        SetReportPainter({}, heightToWidth);
        SetMouse({});
        return;
    }
    client->m_control = this;
    SetPainter([client](CDC& dc, const CRect&) { client->Paint(dc, false); });
    SetReportPainter([client](CDC& dc, const CRect&) { client->Paint(dc, true); }, heightToWidth);
    SetMouse([client](const CMouseEvent& event) { return client->OnMouse(event); });
}

LRESULT CChartCtrl::OnKeyDown(WPARAM key, LPARAM how)
{
    return m_client != nullptr && m_client->OnKey(static_cast<UINT>(key), 0, KeyModifiers(how)) ? 0 : 1;
}

LRESULT CChartCtrl::OnCharacter(WPARAM character, LPARAM how)
{
    return m_client != nullptr && m_client->OnKey(0, static_cast<char32_t>(character), KeyModifiers(how)) ? 0 : 1;
}
