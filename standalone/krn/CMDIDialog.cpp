// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDialog.h"
#include "host/RuvCfg.h"

#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "framework/WndAccess.h"
#include "host/Assert.h"
#include "host/Bindings.h"
#include "host/Controls.h"
#include "krn/MessageTable.h"

#include <algorithm>
#include <optional>
#include <utility>

using framework::Kind;
using framework::UiThread;
using framework::Window;
using framework::WindowOf;

namespace
{

/// What the user chose in a control: the entry of a combo box, the state of a check box, the number of a radio button.
std::optional<int> SelectionOf(const Window& control, const CBinding& binding, UINT code)
{
    if (control.kind == Kind::combo && code == CBN_SELCHANGE)
        return control.selection;
    if (control.kind == Kind::check && code == BN_CLICKED)
        return control.check;
    const auto* group = dynamic_cast<const CRadio*>(&binding);
    if (group == nullptr || code != BN_CLICKED)
        return std::nullopt;
    const auto& buttons = group->Buttons();
    return static_cast<int>(std::find(buttons.begin(), buttons.end(), control.id) - buttons.begin());
}

} // namespace

CMDIDialog::CMDIDialog(UINT templateId, CWnd* parent) : CDialog(templateId, parent) {}

CMDIDialog::~CMDIDialog() = default;

void CMDIDialog::AddBinding(CBinding& binding)
{
    m_bindings.emplace_back(&binding);
}

CBinding* CMDIDialog::FindBinding(UINT controlId) const
{
    for (const auto& binding : m_bindings)
        if (binding->Owns(controlId))
            return binding.get();
    return nullptr;
}

void CMDIDialog::OnControlsCreated()
{
    m_bindings.clear();
    m_shutDown = false;
    BuildObjects();
}

BOOL CMDIDialog::OnInitDialog()
{
    SetupWindow();
    if (m_hWnd != nullptr)
        UpdateDialog();
    return TRUE;
}

void CMDIDialog::OnFinishedEntry(Window& edit, CBinding& binding)
{
    const EntryResult result = binding.Take(edit.text);
    binding.Show();
    edit.refused = result.outcome == EntryResult::Outcome::refused;
    if (result.outcome == EntryResult::Outcome::taken)
        SendMessage(WM_RUV_EDITCHANGED, edit.id);
    else if (edit.refused)
        framework::UiThread::Current()->Front().EntryRefused(edit, krn::FormatMessage(result.message, result.args));
}

/// The dialog that owns the grid is asked; without a handler every entry is taken.
void CMDIDialog::OnFinishedCell(Window& control)
{
    framework::Grid& grid = *control.grid;
    const int row = grid.typedRow;
    const int column = grid.typedColumn;
    if (!grid.Holds(row, column))
        return;
    const HWND handle = control.handle;
    const std::string old = std::exchange(grid.Cell(row, column), grid.typed);
    const auto edit = grid.edit; // it may set another one
    const auto refusal = edit ? edit(row, column, std::string(grid.typed)) : std::nullopt;
    if (framework::UiThread::Current()->Find(handle) == nullptr)
        return;
    control.refused = refusal.has_value();
    if (refusal && grid.Holds(row, column) && grid.Cell(row, column) == grid.typed)
        grid.Cell(row, column) = old;
    framework::Changed(control);
    if (refusal)
        framework::UiThread::Current()->Front().EntryRefused(control,
                                                             krn::FormatMessage(refusal->message, refusal->args));
}

BOOL CMDIDialog::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const UINT code = HIWORD(wParam);
    const Window* self = framework::WindowOf(*this);
    Window* control = self == nullptr ? nullptr : self->Child(id);
    CBinding* binding = control == nullptr ? nullptr : FindBinding(id);
    if (binding != nullptr) {
        switch (code) {
        case framework::kEntryFinished:
            OnFinishedEntry(*control, *binding);
            return TRUE;
        case framework::kStepUp:
        case framework::kStepDown:
            if (binding->OnIncValue(code == framework::kStepUp ? 1 : -1)) {
                binding->Show();
                IncValue(static_cast<int>(id));
            }
            return TRUE;
        default:
            if (const auto selection = SelectionOf(*control, *binding, code)) {
                binding->TakeSelection(*selection);
                SendMessage(WM_RUV_EDITCHANGED, id);
                return TRUE;
            }
        }
    }
    if (control != nullptr && code == framework::kEntryFinished) {
        if (control->kind == Kind::grid)
            OnFinishedCell(*control);
        else
            SendMessage(WM_RUV_EDITCHANGED, id); // an edit without a binding keeps what was typed
        return TRUE;
    }
    if (CDialog::OnCommand(wParam, lParam))
        return TRUE;
    if (code != BN_CLICKED)
        return FALSE;
    if (self != nullptr && self->page && (id == IDOK || id == IDCANCEL || id == IDHELP)) {
        GetParent()->SendMessage(WM_COMMAND, wParam, lParam);
        return TRUE;
    }
    switch (id) {
    case IDOK:
        OnOK();
        return TRUE;
    case IDCANCEL:
        OnCancel();
        return TRUE;
    case IDHELP:
        ShowHelp();
        return TRUE;
    default:
        return FALSE;
    }
}

void CMDIDialog::ShowHelp()
{
    framework::UiThread::Current()->Front().ShowHelp(m_templateId);
}

LRESULT CMDIDialog::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CLOSE) {
        const Window* self = framework::WindowOf(*this);
        if (self != nullptr && self->page)
            return GetParent()->SendMessage(WM_CLOSE);
        OnCancel();
        return 0;
    }
    return CDialog::DefWindowProc(message, wParam, lParam);
}

void CMDIDialog::CloseWindow(int code)
{
    if (!m_shutDown) {
        m_shutDown = true;
        ShutDownWindow();
    }
    EndDialog(code);
}

void CMDIDialog::OnOK()
{
    CloseWindow(IDOK);
}

void CMDIDialog::OnCancel()
{
    CloseWindow(IDCANCEL);
}

void CMDIDialog::PostNcDestroy()
{
    if (!m_shutDown) {
        m_shutDown = true;
        ShutDownWindow();
    }
    if (m_ownedByWindow)
        framework::UiThread::Current()->DeleteLater(this);
}

BOOL CMDIDialog::DoModeless(CWnd* parent)
{
    framework::UiThread* thread = framework::UiThread::Current();
    if (thread == nullptr) {
        delete this;
        return FALSE;
    }
    const framework::UiThread::Scope scope(*thread);
    m_ownedByWindow = true;
    if (CreateFromTemplate(parent))
        return TRUE;
    if (m_hWnd == nullptr)
        thread->DeleteLater(this);
    return FALSE;
}

void CMDIDialog::SetupWindow() {}

void CMDIDialog::ShutDownWindow() {}

UINT CMDIDialog::GetCloneCropStyle(UINT*)
{
    return 0;
}

void CMDIDialog::UpdateDialog()
{
    for (const auto& binding : m_bindings)
        binding->Show();
    Redraw();
}

void CMDIDialog::SetDrawing(UINT controlId, std::function<void(CDC&)> draw)
{
    auto* field = static_cast<CStatic*>(GetDlgItem(controlId));
    if (field == nullptr)
        return;
    field->SetPainter([draw = std::move(draw)](CDC& dc, const CRect&) { draw(dc); });
    if (std::find(m_drawings.begin(), m_drawings.end(), controlId) == m_drawings.end())
        m_drawings.push_back(controlId);
}

void CMDIDialog::Redraw()
{
    for (const UINT id : m_drawings)
        if (CWnd* field = GetDlgItem(id))
            field->Invalidate();
}

void CMDIDialog::ReadData()
{
    const Window* self = framework::WindowOf(*this);
    if (self == nullptr)
        return;
    const HWND handle = m_hWnd;
    for (const auto& child : self->children) {
        if (child->kind == Kind::edit && child->modified)
            framework::FinishEntry(*child);
        if (!IsWindow(handle))
            return;
    }
}

void CMDIDialog::RepaintData()
{
    Invalidate();
}

void CMDIDialog::IncValue(int)
{
    PostMessage(WM_RUV_UPDATEDIALOG);
}

void CMDIDialog::SaveDlgPosition() {}

void CMDIDialog::RestoreDlgPosition() {}

void CMDIDialog::BuildObjects() {}

void CMDIDialog::DrawHighlighting() {}

void CMDIDialog::Update(UINT controlId)
{
    if (CBinding* binding = FindBinding(controlId))
        binding->Show();
}

void CMDIDialog::Enable(UINT controlId, BOOL enable)
{
    if (CWnd* control = GetDlgItem(controlId))
        control->EnableWindow(enable);
}

void CMDIDialog::ChangeProtection(UINT controlId, int protect)
{
    CWnd* control = GetDlgItem(controlId);
    const Window* window = control == nullptr ? nullptr : framework::WindowOf(*control);
    if (window != nullptr && window->kind == Kind::edit)
        static_cast<CEdit*>(control)->SetReadOnly(protect != 0);
}

void CMDIDialog::ReplaceChildWindowSubstringWithUnitString(UINT controlId, const UnitType& unit)
{
    CWnd* control = GetDlgItem(controlId);
    if (control == nullptr)
        return;
    control->SetWindowText(UnitsSystemConfiguration::GetInstance().WithUnit(control->GetWindowText(), unit));
}

void CMDIDialog::SetUseFzgColors(std::int64_t vehicleOrKey)
{
    const std::int64_t named = FzgZuFarbSchluessel(vehicleOrKey);
    const std::int64_t vehicle = named >= 0 ? named : vehicleOrKey;
    Window* window = framework::WindowOf(*this);
    if (window == nullptr || window->vehicle == vehicle)
        return;
    window->vehicle = vehicle;
    framework::Changed(*window);
}
