// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a user does to a control, as one call each. Every front end goes through here, so that a key press, a script
// and a test have the same effect. Each call delivers the messages it causes before it returns; posted messages wait
// for UiThread::DispatchPending.
#pragma once

#include "framework/Window.h"

#include <string>

namespace framework
{

enum class InputResult {
    done,
    refused,   ///< the entry was not taken; the front end was told why
    disabled,  ///< the control cannot be used now, or long work is going on
    readOnly,  ///< the edit is write-protected
    wrongKind, ///< the control does not know this
    noSuchItem,
    unused, ///< nobody wanted it
};

/// A key as it goes to a field or a dialog: its number (VK_...), the character it types and what is held with it.
struct KeyPress {
    UINT key = 0;
    char32_t character = 0; ///< 0 when it types none
    UINT modifiers = 0;     ///< MK_SHIFT, MK_CONTROL
};

/// Types into an edit without finishing the entry.
InputResult TypeText(Window& edit, const std::string& text);
/// Finishes the entry of an edit or grid (Enter, Tab, loss of focus); nothing happens when nothing was typed.
InputResult FinishEntry(Window& edit);
/// Types into a cell of a grid without finishing the entry.
InputResult TypeCell(Window& grid, int row, int column, const std::string& text);
/// Types into a cell and finishes.
InputResult EnterCell(Window& grid, int row, int column, const std::string& text);
/// Forgets what was typed into a cell.
void DiscardCell(Window& grid);
/// Types and finishes.
InputResult EnterText(Window& edit, const std::string& text);
/// One spinner step, direction +1 or -1.
InputResult Step(Window& edit, int direction);
/// Clicks a button, check box or radio button. Pending entries of the dialog are finished first, as the focus moves.
/// The button whose click began the long work that is going on cancels it.
InputResult Click(Window& button);
/// Chooses an entry of a combo or list box by index.
InputResult Select(Window& list, int index);
/// Selects rows of a grid.
InputResult SelectRows(Window& grid, int first, int last);
InputResult MoveTrackbar(Window& trackbar, int position);
/// The mouse in a drawing field. A press counts until its release: meanwhile other buttons do nothing.
InputResult Mouse(Window& field, const CMouseEvent& event);
/// A key in a drawing field that has, or now gets, the focus, or in a dialog itself. It goes up from there until a
/// message map takes it.
InputResult Key(Window& target, const KeyPress& press);
/// Picks the rows of a chart between two values of its bottom axis; noSuchItem with the reason in `why` when there is
/// none to pick.
InputResult TakeRange(Window& chart, double from, double to, std::string& why);
/// Closes a dialog by its frame (WM_CLOSE).
void CloseDialog(Window& dialog);

/// Notification codes of WM_COMMAND with which edits report to their dialog.
inline constexpr UINT kEntryFinished = 0x0700;
inline constexpr UINT kStepUp = 0x0701;
inline constexpr UINT kStepDown = 0x0702;

} // namespace framework
