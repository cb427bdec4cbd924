// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CWnd.h"
#include "host/Progress.h"

#include "framework/UiThread.h"
#include "framework/WndAccess.h"

using framework::UiThread;
using framework::Window;
using framework::WindowOf;

namespace framework
{

Window* WindowOf(const CWnd& object)
{
    const UiThread* thread = UiThread::Current();
    return thread == nullptr || object.m_hWnd == nullptr ? nullptr : thread->Find(object.m_hWnd);
}

void Changed(Window& window)
{
    UiThread::Current()->Front().WindowChanged(window);
}

} // namespace framework

bool CWndAccess::CallMap(CWnd& object, UINT message, UINT code, UINT id, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    for (const CMessageMap* map = object.GetMessageMap(); map != nullptr; map = map->base) {
        for (const CMessageEntry& entry : map->entries) {
            if (entry.message == message && (message != WM_COMMAND || (entry.code == code && entry.id == id))) {
                result = entry.call(object, wParam, lParam);
                return true;
            }
        }
    }
    return false;
}

LRESULT CWndAccess::WindowProc(CWnd& object, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND)
        return object.OnCommand(wParam, lParam);
    LRESULT result = 0;
    if (CallMap(object, message, 0, 0, wParam, lParam, result))
        return result;
    return object.DefWindowProc(message, wParam, lParam);
}

CWnd::~CWnd()
{
    if (Window* window = WindowOf(*this); window != nullptr && window->owned.get() != this) {
        window->object = nullptr;
        UiThread::Current()->Destroy(m_hWnd);
    }
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    return CWndAccess::CallMap(*this, WM_COMMAND, HIWORD(wParam), LOWORD(wParam), wParam, lParam, result) ? TRUE
                                                                                                          : FALSE;
}

void CWnd::DoDataExchange(CDataExchange*) {}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

LRESULT CWnd::DefWindowProc(UINT, WPARAM, LPARAM)
{
    return 0;
}

void CWnd::PostNcDestroy() {}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    UiThread* thread = UiThread::Current();
    return thread == nullptr ? 0 : thread->Send(m_hWnd, message, wParam, lParam);
}

void CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (UiThread* thread = UiThread::Current())
        thread->Post(m_hWnd, message, wParam, lParam);
}

UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT milliseconds)
{
    if (WindowOf(*this) == nullptr)
        return 0;
    UiThread::Current()->Front().StartTimer(m_hWnd, id, milliseconds);
    return id;
}

void CWnd::KillTimer(UINT_PTR id)
{
    if (WindowOf(*this) != nullptr)
        UiThread::Current()->Front().StopTimer(m_hWnd, id);
}

CWnd* CWnd::GetParent() const
{
    const Window* window = WindowOf(*this);
    return window == nullptr || window->parent == nullptr ? nullptr : window->parent->object;
}

CWnd* CWnd::GetDlgItem(UINT id) const
{
    const Window* window = WindowOf(*this);
    const Window* child = window == nullptr ? nullptr : window->Child(id);
    return child == nullptr ? nullptr : child->object;
}

UINT CWnd::GetDlgCtrlID() const
{
    const Window* window = WindowOf(*this);
    return window == nullptr ? 0 : window->id;
}

void CWnd::ShowWindow(int command)
{
    Window* window = WindowOf(*this);
    if (window == nullptr)
        return;
    window->visible = command != SW_HIDE;
    window->iconic = command == SW_MINIMIZE || (command == SW_HIDE && window->iconic);
    framework::Changed(*window);
}

BOOL CWnd::IsIconic() const
{
    return ::IsIconic(m_hWnd);
}

BOOL CWnd::IsWindowVisible() const
{
    const Window* window = WindowOf(*this);
    return window != nullptr && window->visible;
}

BOOL CWnd::IsWindowEnabled() const
{
    const Window* window = WindowOf(*this);
    return window != nullptr && window->enabled;
}

void CWnd::EnableWindow(BOOL enable)
{
    Window* window = WindowOf(*this);
    if (window == nullptr || window->enabled == (enable != FALSE))
        return;
    window->enabled = enable != FALSE;
    framework::Changed(*window);
}

void CWnd::SetFocus()
{
    if (Window* window = WindowOf(*this))
        UiThread::Current()->SetFocus(*window);
}

void CWnd::SetWindowText(const std::string& utf8)
{
    Window* window = WindowOf(*this);
    if (window == nullptr)
        return;
    window->modified = false;
    if (window->text == utf8)
        return;
    window->text = utf8;
    framework::Changed(*window);
}

std::string CWnd::GetWindowText() const
{
    const Window* window = WindowOf(*this);
    return window == nullptr ? std::string{} : window->text;
}

CRect CWnd::GetClientRect() const
{
    const Window* window = WindowOf(*this);
    return window == nullptr ? CRect{} : CRect{0, 0, window->rect.Width(), window->rect.Height()};
}

void CWnd::Invalidate()
{
    if (Window* window = WindowOf(*this))
        framework::Changed(*window);
}

BOOL CWnd::DestroyWindow()
{
    if (WindowOf(*this) == nullptr)
        return FALSE;
    UiThread::Current()->Destroy(m_hWnd);
    return TRUE;
}

BOOL IsWindow(HWND window)
{
    const UiThread* thread = UiThread::Current();
    return thread != nullptr && thread->Find(window) != nullptr;
}

BOOL IsIconic(HWND window)
{
    const UiThread* thread = UiThread::Current();
    const Window* found = thread == nullptr ? nullptr : thread->Find(window);
    return found != nullptr && found->iconic;
}

CWaitCursor::CWaitCursor()
{
    if (UiThread* thread = UiThread::Current())
        thread->Front().WaitCursor(true);
}

CWaitCursor::~CWaitCursor()
{
    if (UiThread* thread = UiThread::Current())
        thread->Front().WaitCursor(false);
}

Work RuvProgress(const std::string& what, double done)
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr)
        return Work::goOn;
    return thread->Report(what, done) ? Work::goOn : Work::cancel;
}

int AfxMessageBox(const std::string& utf8)
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr)
        return IDOK;
    const UiThread::Scope scope(*thread);
    return thread->Front().ShowMessage(nullptr, {0, framework::MessageKind::warning, utf8, {}});
}
