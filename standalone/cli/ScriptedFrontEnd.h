// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A front end that answers as a script says and writes down what it was shown.
#pragma once

#include "framework/FrontEnd.h"

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace cli
{

/// A message box, or the reason why an entry was refused, with the button that ended it.
struct RecordedMessage {
    framework::ShownMessage shown;
    int answer = 0;
};

/// A posted message and whom it went to, as seen from the dialog at work: "main" window, the dialog itself with all it
/// opened ("mask"), or a dialog that owns it ("owner").
struct RecordedPost {
    MSG msg;
    const char* to = "mask";
};

class ScriptedFrontEnd : public framework::NullFrontEnd
{
  public:
    /// Continues the script on a modal dialog until it ends or the script does; then the dialog is cancelled.
    std::function<void(const std::function<bool()>& running)> continueScript;
    /// A dialog is about to go.
    std::function<void(framework::Window&)> dialogVanished;

    /// What long work reports; false asks it to stop.
    std::function<bool(const std::string& what, double done)> progress;

    void QueueAnswer(UINT message, int answer) { m_answers[message].push_back(answer); }
    void QueueFile(std::string path) { m_files.push_back(std::move(path)); }

    const std::vector<RecordedMessage>& Messages() const { return m_messages; }
    const std::vector<RecordedPost>& Posted() const { return m_posted; }
    const std::vector<MSG>& Broadcast() const { return m_broadcast; }
    bool Refused() const { return m_refused; }
    /// The modal dialog on top, or null.
    HWND TopModal() const { return m_modal.empty() ? nullptr : m_modal.back(); }

    void RunModal(framework::Window& dialog, const std::function<bool()>& running) override;
    int ShowMessage(const framework::Window* owner, const framework::ShownMessage& message) override;
    void EntryRefused(framework::Window& control, const framework::ShownMessage& why) override;
    std::optional<std::string> ChooseFile(const framework::FileRequest& request) override;
    bool Progress(const std::string& what, double done) override { return !progress || progress(what, done); }
    void WindowVanished(framework::Window& window) override;
    void MessagePosted(const framework::Window* target, const MSG& msg) override;
    void MessageBroadcast(const MSG& msg) override { m_broadcast.push_back(msg); }

  private:
    std::map<UINT, std::deque<int>> m_answers;
    std::deque<std::string> m_files;
    std::vector<RecordedMessage> m_messages;
    std::vector<RecordedPost> m_posted;
    std::vector<MSG> m_broadcast;
    std::vector<HWND> m_modal;
    bool m_refused = false;
};

} // namespace cli
