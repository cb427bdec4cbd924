// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// One mask on one case, worked by a script. One session at a time per process; cheap to create.
#pragma once

#include "cli/Actions.h"
#include "cli/ExitCode.h"
#include "cli/ScriptedFrontEnd.h"
#include "cli/StateJson.h"
#include "framework/UiThread.h"
#include "host/CRuvData.h"
#include "report/MessageLog.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace cli
{

/// A control as messages name it: number and label.
std::string NameOf(const framework::Window& control);

class Session
{
  public:
    explicit Session(std::shared_ptr<CRuvData> data);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Opens the mask and does the actions in order, stopping at the first that cannot be done. Answers that lead the
    /// list are in place before the mask opens. `onState` gets what a state action prints.
    std::optional<Failure> Run(UINT mask, std::span<const Action> actions,
                               const std::function<void(const std::string&)>& onState = {});

    /// Calls a function that runs a mask modally for the window it is given, and does the actions meanwhile. A mask
    /// that is still open after the last action is cancelled.
    std::optional<Failure> RunModally(UINT mask, std::span<const Action> actions,
                                      const std::function<void(CRuvData&, CWnd*)>& function);

    /// The state holds these fields of the record and the messages from now on, nothing else. A name that the mask's
    /// record does not have fails the run as soon as the mask is open.
    void ShowOnly(std::vector<std::string> fields) { m_fields = std::move(fields); }

    /// Called with what long work reports; false asks it to stop.
    void OnProgress(std::function<bool(const std::string&, double)> report) { m_front.progress = std::move(report); }

    /// The first picture or report that could not be written; the actions after it were done all the same.
    const std::optional<Failure>& FileFailure() const { return m_fileFailure; }
    /// An entry was not taken by the mask.
    bool Refused() const { return m_front.Refused(); }
    /// The state as a JSON object.
    std::string State() const;
    CRuvData& Case() { return *m_data; }
    /// The mask's window, or null when it is not open.
    framework::Window* Mask() const;

  private:
    void Continue(const std::function<bool()>& running);
    void NoteMessages();
    void Open();
    void Fail(std::string text);
    void FailToWrite(std::string text);
    MaskImage Image(framework::Window& mask) const;
    void CheckFields();

    void Do(const EnterAction& action);
    void Do(const StepAction& action);
    void Do(const PressAction& action);
    void Do(const SelectAction& action);
    void Do(const CellAction& action);
    void Do(const ClickAction& action);
    void Do(const DragAction& action);
    void Do(const WheelAction& action);
    void Do(const KeyAction& action);
    void Do(const AnswerAction& action);
    void Do(const FileAction& action);
    void Do(const SendAction& action);
    void Do(const HostAction& action);
    void Do(const RangeAction& action);
    void Do(const PlaceAction& action);
    void Do(const DrawAction& action);
    void Do(const ProtocolAction& action);
    void Do(const RowsAction& action);
    void Do(const StateAction& action);

    /// Where actions go: the modal dialog on top, else the mask.
    framework::Window* DialogAtWork() const;
    /// The control of the dialog at work, of its pages, or of another dialog that is not held up by a modal one.
    /// Null with a failure when there is none.
    framework::Window* Control(UINT id);
    template <class Input> void Use(UINT id, const char* wanted, Input input);
    void MoveTrackbar(UINT id, int position);
    /// Does the events in order until one is not taken; the first must be in the field.
    void UseMouse(UINT id, std::vector<CMouseEvent> events);
    framework::Window* OpenDialog(UINT number) const;
    std::string NameOfMask() const;

    // In the order of their dependence: the thread goes first and takes the windows along.
    std::shared_ptr<CRuvData> m_data;
    ScriptedFrontEnd m_front;
    CWnd m_mainWindow;
    framework::UiThread m_thread;

    UINT m_number = 0;
    std::optional<std::vector<std::string>> m_fields;
    HWND m_mask = nullptr;
    std::optional<MaskImage> m_last; ///< the mask as it was when its window went
    std::span<const Action> m_actions;
    std::size_t m_next = 0;
    std::function<void(const std::string&)> m_onState;
    std::optional<Failure> m_failure;
    std::optional<Failure> m_fileFailure;
    report::MessageLog m_log;
    std::size_t m_logged = 0; ///< so many of the messages shown are in it
};

} // namespace cli
