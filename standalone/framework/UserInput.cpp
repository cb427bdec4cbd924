// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/UserInput.h"

#include "framework/UiThread.h"
#include "framework/WndAccess.h"

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
    for (const Window* above = control.parent; above != nullptr; above = above->page ? above->parent : nullptr)
        if (!above->enabled)
            return InputResult::disabled;
    if (!control.enabled || !IsShown(control))
        return InputResult::disabled;
    if (control.readOnly)
        return InputResult::readOnly;
    return std::nullopt;
}

/// The edits of a dialog and its pages whose entry is not finished.
std::vector<Window*> PendingEdits(const Window& dialog)
{
    std::vector<Window*> edits;
    for (const auto& child : dialog.children)
        if (child->kind == Kind::edit && child->modified)
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
    if (taken && thread.Find(handle) != nullptr)
        thread.SetFocus(control);
    return taken;
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
    if (const auto obstacle = Obstacle(edit, {Kind::edit}))
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

void CloseDialog(Window& dialog)
{
    UiThread::Current()->Send(dialog.handle, WM_CLOSE, 0, 0);
}

} // namespace framework
