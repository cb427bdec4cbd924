// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The one seam between the toolkit-free framework and whatever shows it: a desktop, the command line, a test.
#pragma once

#include "framework/Window.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class CDialog;
class CRuvData;

namespace framework
{

/// A question is answered Ja or Nein, a confirmation OK or Abbrechen.
enum class MessageKind { information, warning, question, confirmation };

inline bool AsksSomething(MessageKind kind)
{
    return kind == MessageKind::question || kind == MessageKind::confirmation;
}

/// A message as it is shown: the number of the host's table (0 for a text of a module's own), the finished text and
/// the arguments in it.
struct ShownMessage {
    UINT number = 0;
    MessageKind kind = MessageKind::information;
    std::string text;
    std::vector<std::string> args;
};

struct FileRequest {
    const Window* owner = nullptr;
    bool open = true;
    bool mustExist = false; ///< the caller refuses a file that does not
    std::string title;
    std::string filter;           ///< pairs "Name|*.ext|"
    std::string defaultExtension; ///< without the point
    std::string initialName;
};

class FrontEnd
{
  public:
    virtual ~FrontEnd() = default;

    /// A dialog's window stands complete and wants to be seen. A page follows the dialog it lies on (Window::page).
    virtual void WindowAppeared(Window&) {}
    /// Something visible of a dialog or a control changed: text, state, entries, drawing.
    virtual void WindowChanged(Window&) {}
    /// A dialog's window is about to go; the object behind it still stands.
    virtual void WindowVanished(Window&) {}
    virtual void FocusChanged(Window&) {}

    /// Runs a modal dialog until `running` turns false.
    virtual void RunModal(Window& dialog, const std::function<bool()>& running) = 0;
    /// Shows a message and returns the answer (FehlerRet).
    virtual int ShowMessage(const Window* owner, const ShownMessage& message) = 0;
    /// A finished entry was refused; the control shows its old value again.
    virtual void EntryRefused(Window& control, const ShownMessage& why) = 0;
    /// UTF-8 path, or nothing when the user cancelled. The caller asks about existing files.
    virtual std::optional<std::string> ChooseFile(const FileRequest& request) = 0;

    virtual void StartTimer(HWND, UINT_PTR, UINT /*milliseconds*/) {}
    virtual void StopTimer(HWND, UINT_PTR) {}
    virtual void WaitCursor(bool) {}
    /// Progress of long work, 0..1. False asks the work to stop.
    virtual bool Progress(const std::string& /*what*/, double /*done*/) { return true; }
    /// The help page of a mask is wanted.
    virtual void ShowHelp(UINT /*dialogId*/) {}
    /// A message was posted; DispatchPending is wanted soon.
    virtual void MessagePosted(const Window* /*target*/, const MSG&) {}
    /// Objects in the scene or the request to place one changed; see krn/Placing.h.
    virtual void SceneChanged(CRuvData&) {}
    /// Something in a case changed: vehicles, phases or parameters.
    virtual void CaseChanged(CRuvData&) {}
    /// A message went to all windows of a case.
    virtual void MessageBroadcast(const MSG&) {}
    /// A line for the log.
    virtual void Logged(const std::string& /*context*/, const std::string& /*text*/) {}
};

/// Shows nothing, answers every question with no, chooses no file and cancels modal dialogs.
class NullFrontEnd : public FrontEnd
{
  public:
    void RunModal(Window& dialog, const std::function<bool()>& running) override;
    int ShowMessage(const Window*, const ShownMessage& message) override;
    void EntryRefused(Window&, const ShownMessage&) override {}
    std::optional<std::string> ChooseFile(const FileRequest&) override { return std::nullopt; }
};

} // namespace framework
