// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The framework's front end on Qt. Modeless dialogs go to the mask area, modal ones run in a dialog window of their
// own with a nested event loop.
#pragma once

#include "framework/FrontEnd.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

class QTimer;
class QWidget;

namespace desktop
{

class MaskArea;
class MaskWindow;
class ProgressView;

class QtFrontEnd : public QObject, public framework::FrontEnd
{
    Q_OBJECT

  public:
    QtFrontEnd();
    ~QtFrontEnd() override;

    /// Where modeless dialogs are shown; without one they are built but not shown.
    void SetMaskArea(MaskArea* area) { m_area = area; }
    MaskWindow* WindowOf(HWND dialog) const;
    /// Handles posted messages.
    void Settle();

    void WindowAppeared(framework::Window& window) override;
    void WindowChanged(framework::Window& window) override;
    void WindowVanished(framework::Window& window) override;
    void FocusChanged(framework::Window& control) override;
    void RunModal(framework::Window& dialog, const std::function<bool()>& running) override;
    int ShowMessage(const framework::Window* owner, const framework::ShownMessage& message) override;
    void EntryRefused(framework::Window& control, const framework::ShownMessage& why) override;
    std::optional<std::string> ChooseFile(const framework::FileRequest& request) override;
    void StartTimer(HWND window, UINT_PTR id, UINT milliseconds) override;
    void StopTimer(HWND window, UINT_PTR id) override;
    void WaitCursor(bool wait) override;
    bool Progress(const std::string& what, double done) override;
    void ShowHelp(UINT dialogId) override;
    void MessagePosted(const framework::Window* target, const MSG& message) override;
    void CaseChanged(CRuvData& data) override;
    void SceneChanged(CRuvData& data) override;

  signals:
    void helpWanted(UINT dialogId);
    void caseChanged();
    void sceneChanged();
    /// A mask wrote phases of the vehicle (its index, -1 for none) into the case.
    void transferred(int vehicle);
    /// A mask has handled what the user did to it.
    void acted();
    /// Long work is going on (what, and how much of it is done: 0 to 1), or has ended.
    void busy(const QString& what, double done);
    void idle();
    /// A mask told its user something; null when no dialog owns the message.
    /// `dialog` is the handle of the mask it belongs to, 0 for none.
    void messageShown(quintptr dialog, const QString& text);

  private:
    using Timers = std::map<std::pair<HWND, UINT_PTR>, std::unique_ptr<QTimer>>;
    Timers::iterator DropTimer(Timers::iterator timer);
    MaskWindow* WindowFor(const framework::Window& window) const;
    QWidget* ShellOf(const framework::Window* owner) const;
    void EndProgress();
    /// Long work shows its progress: nothing else of a mask may run.
    bool IsWorking() const;

    MaskArea* m_area = nullptr;
    std::unordered_map<HWND, QPointer<MaskWindow>> m_windows;
    Timers m_timers;
    std::unique_ptr<ProgressView> m_progress;
    bool m_endPosted = false;
    bool m_settling = false;
};

} // namespace desktop
