// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/UserInput.h"

#include "framework/UiThread.h"
#include "framework/WndAccess.h"
#include "host/Charts.h"

#include <algorithm>
#include <optional>

namespace framework
{
namespace
{

void Notify(Window& control, UINT code)
{
    UiThread::Current()->Send(control.parent->handle, WM_COMMAND, MAKEWPARAM(control.id, code), 0);
}

/// Why the control takes no input now, if so.
std::optional<InputResult> Obstacle(const Window& control, std::initializer_list<Kind> kinds)
{
    if (control.parent == nullptr || std::find(kinds.begin(), kinds.end(), control.kind) == kinds.end())
        return InputResult::wrongKind;
    if (UiThread::Current()->IsReporting())
        return InputResult::disabled; // nothing changes under long work
    for (const Window* above = control.parent; above != nullptr; above = above->page ? above->parent : nullptr)
        if (!above->enabled)
            return InputResult::disabled;
    if (!control.enabled || !IsShown(control))
        return InputResult::disabled;
    if (control.readOnly)
        return InputResult::readOnly;
    return std::nullopt;
}

/// The edits and grids of a dialog and its pages whose entry is not finished.
std::vector<Window*> PendingEdits(const Window& dialog)
{
    std::vector<Window*> edits;
    for (const auto& child : dialog.children)
        if ((child->kind == Kind::edit || child->kind == Kind::grid) && child->modified)
            edits.push_back(child.get());
    for (const Window* page : UiThread::Current()->Pages(dialog))
        for (Window* edit : PendingEdits(*page))
            edits.push_back(edit);
    return edits;
}

/// Finishes a pending entry elsewhere in the dialog, as moving the focus does. False when it was refused: what the
/// user meant to do next would work with a value that was not entered.
bool MoveFocusTo(Window& control)
{
    UiThread& thread = *UiThread::Current();
    const bool discards = control.id == IDCANCEL || control.id == IDHELP;
    const HWND handle = control.handle;
    bool taken = true;
    for (Window* edit : discards ? std::vector<Window*>{} : PendingEdits(DialogOf(control)))
        if (edit != &control && thread.Find(handle) != nullptr)
            taken = FinishEntry(*edit) != InputResult::refused && taken;
    const bool takesFocus = !IsDrawn(control.kind) || control.tabStop;
    if (taken && takesFocus && thread.Find(handle) != nullptr)
        thread.SetFocus(control);
    return taken;
}

/// False when nobody uses the message: neither the window nor the dialogs it lies on.
bool SendUp(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const UiThread& thread = *UiThread::Current();
    for (const Window* at = thread.Find(window); at != nullptr;
         at = thread.Find(window) != nullptr && (at->kind != Kind::dialog || at->page) ? at->parent : nullptr) {
        if (at->object == nullptr)
            continue;
        MSG msg{at->handle, message, wParam, lParam};
        LRESULT result = 0;
        if (at->object->PreTranslateMessage(&msg) ||
            (WndAccess::CallMap(*at->object, message, 0, 0, wParam, lParam, result) && result == 0))
            return true;
    }
    return false;
}

InputResult Tell(Window& field, const CMouseEvent& event)
{
    const auto handler = field.mouse; // it may set another one
    return handler && handler(event) ? InputResult::done : InputResult::unused;
}

} // namespace

InputResult TypeText(Window& edit, const std::string& text)
{
    if (const auto obstacle = Obstacle(edit, {Kind::edit}))
        return *obstacle;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(edit))
        return InputResult::refused;
    edit.text = text;
    edit.modified = true;
    Changed(edit);
    return InputResult::done;
}

InputResult FinishEntry(Window& edit)
{
    if (const auto obstacle = Obstacle(edit, {Kind::edit, Kind::grid}))
        return *obstacle;
    if (!edit.modified)
        return InputResult::done;
    UiThread& thread = *UiThread::Current();
    const UiThread::Scope scope(thread);
    const HWND handle = edit.handle;
    edit.modified = false;
    edit.refused = false;
    Notify(edit, kEntryFinished);
    const Window* after = thread.Find(handle);
    return after != nullptr && after->refused ? InputResult::refused : InputResult::done;
}

InputResult EnterText(Window& edit, const std::string& text)
{
    const InputResult typed = TypeText(edit, text);
    return typed == InputResult::done ? FinishEntry(edit) : typed;
}

InputResult TypeCell(Window& grid, int row, int column, const std::string& text)
{
    if (const auto obstacle = Obstacle(grid, {Kind::grid}))
        return *obstacle;
    const UiThread::Scope scope(*UiThread::Current());
    const bool elsewhere = grid.grid->typedRow != row || grid.grid->typedColumn != column;
    if (!MoveFocusTo(grid) || (elsewhere && FinishEntry(grid) == InputResult::refused))
        return InputResult::refused;
    Grid& cells = *grid.grid; // afterwards: what was entered may have changed the table
    if (!cells.Holds(row, column))
        return InputResult::noSuchItem;
    if (!cells.columns[static_cast<std::size_t>(column)].editable)
        return InputResult::readOnly;
    cells.typedRow = row;
    cells.typedColumn = column;
    cells.typed = text;
    grid.modified = true;
    return InputResult::done;
}

InputResult EnterCell(Window& grid, int row, int column, const std::string& text)
{
    const InputResult typed = TypeCell(grid, row, column, text);
    return typed == InputResult::done ? FinishEntry(grid) : typed;
}

void DiscardCell(Window& grid)
{
    grid.modified = false;
}

InputResult Step(Window& edit, int direction)
{
    if (const auto obstacle = Obstacle(edit, {Kind::edit}))
        return *obstacle;
    if (!edit.spinner)
        return InputResult::wrongKind;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(edit) || FinishEntry(edit) == InputResult::refused)
        return InputResult::refused;
    Notify(edit, direction > 0 ? kStepUp : kStepDown);
    return InputResult::done;
}

InputResult Click(Window& button)
{
    if (UiThread::Current()->IsReporting() && UiThread::Current()->ClickedButton() == &button) {
        UiThread::Current()->CancelWork();
        return InputResult::done;
    }
    if (const auto obstacle = Obstacle(button, {Kind::button, Kind::check, Kind::radio}))
        return *obstacle;
    UiThread& thread = *UiThread::Current();
    const UiThread::Scope scope(thread);
    const HWND handle = button.handle;
    if (!MoveFocusTo(button))
        return InputResult::refused;
    if (thread.Find(handle) == nullptr || !button.enabled)
        return InputResult::done; // the finished entry closed or disabled it
    if (button.automatic && button.kind == Kind::check) {
        button.check = button.check == 0 ? 1 : 0;
        Changed(button);
    } else if (button.automatic) {
        for (Window* radio : RadioGroup(button)) {
            radio->check = radio == &button ? 1 : 0;
            Changed(*radio);
        }
    }
    const UiThread::ClickScope clicked(thread, button);
    Notify(button, BN_CLICKED);
    return InputResult::done;
}

InputResult Select(Window& list, int index)
{
    if (const auto obstacle = Obstacle(list, {Kind::combo, Kind::list}))
        return *obstacle;
    if (index < 0 || index >= static_cast<int>(list.items.size()))
        return InputResult::noSuchItem;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(list))
        return InputResult::refused;
    list.selection = index;
    Changed(list);
    Notify(list, CBN_SELCHANGE);
    return InputResult::done;
}

InputResult SelectRows(Window& grid, int first, int last)
{
    if (const auto obstacle = Obstacle(grid, {Kind::grid}))
        return *obstacle;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(grid) || FinishEntry(grid) == InputResult::refused)
        return InputResult::refused;
    Grid& cells = *grid.grid;
    if (first > last || !cells.Holds(first, 0) || !cells.Holds(last, 0))
        return InputResult::noSuchItem;
    cells.firstSelected = first;
    cells.lastSelected = last;
    Changed(grid);
    Notify(grid, LBN_SELCHANGE);
    return InputResult::done;
}

InputResult MoveTrackbar(Window& trackbar, int position)
{
    if (const auto obstacle = Obstacle(trackbar, {Kind::trackbar}))
        return *obstacle;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(trackbar))
        return InputResult::refused;
    trackbar.trackPosition = std::clamp(position, trackbar.trackMinimum, trackbar.trackMaximum);
    Changed(trackbar);
    UiThread::Current()->Send(trackbar.parent->handle, WM_HSCROLL, static_cast<WPARAM>(trackbar.trackPosition),
                              static_cast<LPARAM>(trackbar.id));
    return InputResult::done;
}

InputResult Mouse(Window& field, const CMouseEvent& event)
{
    using What = CMouseEvent::Kind;
    UiThread& thread = *UiThread::Current();
    const UiThread::Scope scope(thread);
    const HWND handle = field.handle;
    if (thread.IsReporting()) {
        if (event.kind == What::release && event.button == field.held)
            field.held = MouseButton::none;
        return InputResult::disabled;
    }
    if (event.kind == What::release) {
        if (field.held == MouseButton::none || event.button != field.held)
            return InputResult::unused;
        field.held = MouseButton::none;
        return Tell(field, event);
    }
    if (event.kind == What::move && field.held != MouseButton::none) {
        CMouseEvent held = event;
        held.button = field.held;
        return Tell(field, held); // also when the field was disabled meanwhile
    }
    if (const auto obstacle = Obstacle(field, {Kind::field, Kind::chart}))
        return *obstacle;
    if (!field.mouse)
        return InputResult::wrongKind;
    if (event.kind != What::press && event.kind != What::doubleClick) {
        CMouseEvent free = event;
        free.button = MouseButton::none;
        return Tell(field, free);
    }
    // The same button again: its release went to a window that opened meanwhile.
    if (field.held != MouseButton::none && field.held != event.button)
        return InputResult::unused;
    if (!MoveFocusTo(field))
        return InputResult::refused;
    if (thread.Find(handle) == nullptr || !field.enabled)
        return InputResult::done; // the finished entry closed or disabled it
    field.held = event.button;
    const InputResult result = Tell(field, event);
    if (result != InputResult::done)
        field.held = MouseButton::none;
    return result;
}

InputResult Key(Window& target, const KeyPress& press)
{
    UiThread& thread = *UiThread::Current();
    const UiThread::Scope scope(thread);
    const HWND handle = target.handle;
    UINT control = 0;
    if (target.kind != Kind::dialog) {
        if (const auto obstacle = Obstacle(target, {Kind::field, Kind::chart}))
            return *obstacle;
        if (!target.tabStop)
            return InputResult::wrongKind;
        if (!MoveFocusTo(target))
            return InputResult::refused;
        control = target.id;
    } else if (!target.enabled || !IsShown(target) || thread.IsReporting()) {
        return InputResult::disabled;
    }
    const auto lParam = static_cast<LPARAM>(MAKEWPARAM(press.modifiers, control));
    bool used = SendUp(handle, WM_KEYDOWN, press.key, lParam);
    if (press.character != 0)
        used = SendUp(handle, WM_CHAR, press.character, lParam) || used;
    return used ? InputResult::done : InputResult::unused;
}

InputResult TakeRange(Window& chart, double from, double to, std::string& why)
{
    if (const auto obstacle = Obstacle(chart, {Kind::chart}))
        return *obstacle;
    const UiThread::Scope scope(*UiThread::Current());
    if (!MoveFocusTo(chart))
        return InputResult::refused;
    CChartClient* client = static_cast<CChartCtrl*>(chart.object)->Client();
    const auto refusal =
        client == nullptr ? std::optional<std::string>("es ist kein Diagramm da") : client->TakeTimes(from, to);
    why = refusal.value_or("");
    return refusal ? InputResult::noSuchItem : InputResult::done;
}

void CloseDialog(Window& dialog)
{
    if (!UiThread::Current()->IsReporting())
        UiThread::Current()->Send(dialog.handle, WM_CLOSE, 0, 0);
}

} // namespace framework
