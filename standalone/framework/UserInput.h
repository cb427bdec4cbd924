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
    disabled,  ///< the control cannot be used now
    readOnly,  ///< the edit is write-protected
    wrongKind, ///< the control does not know this
    noSuchItem,
};

/// Types into an edit without finishing the entry.
InputResult TypeText(Window& edit, const std::string& text);
/// Finishes the entry of an edit (Enter, Tab, loss of focus); nothing happens when nothing was typed.
InputResult FinishEntry(Window& edit);
/// Types and finishes.
InputResult EnterText(Window& edit, const std::string& text);
/// One spinner step, direction +1 or -1.
InputResult Step(Window& edit, int direction);
/// Clicks a button, check box or radio button. Pending entries of the dialog are finished first, as the focus moves.
InputResult Click(Window& button);
/// Chooses an entry of a combo or list box by index.
InputResult Select(Window& list, int index);
InputResult MoveTrackbar(Window& trackbar, int position);
/// Closes a dialog by its frame (WM_CLOSE).
void CloseDialog(Window& dialog);

/// Notification codes of WM_COMMAND with which edits report to their dialog.
inline constexpr UINT kEntryFinished = 0x0700;
inline constexpr UINT kStepUp = 0x0701;
inline constexpr UINT kStepDown = 0x0702;

} // namespace framework
