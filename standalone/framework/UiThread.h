// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The user-interface thread: windows, message dispatch, timers. One object per program; the program makes it first
// and destroys it last.
#pragma once

#include "framework/FrontEnd.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace framework
{

class UiThread : public CWinThread
{
  public:
    explicit UiThread(FrontEnd& frontEnd);
    ~UiThread();
    UiThread(const UiThread&) = delete;
    UiThread& operator=(const UiThread&) = delete;

    /// The thread object; null outside its life.
    static UiThread* Current();

    FrontEnd& Front() const { return *m_frontEnd; }

    /// Creates a window for `object` (a dialog or the main frame). It belongs to the thread.
    Window& CreateTopWindow(CWnd& object, Kind kind, UINT id, Window* parent);
    /// Creates a control on a dialog, with an object of its own.
    Window& CreateControl(Window& dialog, Kind kind, UINT id);
    /// Removes a window with its controls and tells its object. Harmless for a window that is gone.
    void Destroy(HWND window);

    Window* Find(HWND window) const;
    /// Open dialogs in the order of their creation.
    std::vector<Window*> Dialogs() const;
    /// The pages that lie on a dialog, in the order of their creation.
    std::vector<Window*> Pages(const Window& dialog) const;

    LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    /// Handles every queued message, also those that are posted meanwhile, then deletes objects whose window is gone.
    void DispatchPending();
    void FireTimer(HWND window, UINT_PTR id);

    /// Deletes the object once no handler of it can be running any more.
    void DeleteLater(CWnd* object);

    void SetFocus(Window& control);
    Window* Focus() const { return Find(m_focus); }

    /// Tells the front end how far long work has come; false asks the work to stop. Meanwhile no input reaches a
    /// dialog, and another click of the button that is being handled cancels.
    bool Report(const std::string& what, double done);
    bool IsReporting() const { return m_reporting; }
    /// The button whose click is being handled, the innermost one, or null.
    Window* ClickedButton() const { return Find(m_clicked); }
    void CancelWork() { m_cancelled = true; }

    /// Holds deletions back while user input or a modal dialog is being handled.
    class Scope
    {
      public:
        explicit Scope(UiThread& thread) : m_thread(thread) { ++m_thread.m_depth; }
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        UiThread& m_thread;
    };

    /// A button's click is being handled.
    class ClickScope
    {
      public:
        ClickScope(UiThread& thread, const Window& button);
        ~ClickScope();
        ClickScope(const ClickScope&) = delete;
        ClickScope& operator=(const ClickScope&) = delete;

      private:
        UiThread& m_thread;
        HWND m_clickedBefore;
        bool m_cancelledBefore;
    };

  private:
    HWND Enter(Window& window); ///< gives the window its handle
    void Forget(Window& window);
    void DeleteCondemned();

    FrontEnd* m_frontEnd;
    std::vector<std::unique_ptr<Window>> m_top;
    std::vector<std::unique_ptr<Window>> m_gone;
    std::vector<Window*>
        m_windows; ///< in the order of their handles, which follow each other; null for those that went
    std::deque<MSG> m_queue;
    std::vector<CWnd*> m_condemned;
    HWND m_focus = nullptr;
    int m_depth = 0;
    HWND m_clicked = nullptr;
    bool m_reporting = false;
    bool m_cancelled = false; // by its button
};

} // namespace framework
