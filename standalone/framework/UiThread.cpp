// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/UiThread.h"

#include "framework/WndAccess.h"
#include "host/Assert.h"
#include "host/CDialog.h"
#include "host/Charts.h"

#include <algorithm>
#include <utility>

namespace framework
{
namespace
{

UiThread* g_current = nullptr;

// A handle is a number that only looks like an address, and is never used again.
constexpr std::uintptr_t kFirstHandle = 0x104;
constexpr std::uintptr_t kHandleStep = 4;

HWND HandleAt(std::size_t index)
{
    return reinterpret_cast<HWND>(kFirstHandle + index * kHandleStep);
}

/// Far beyond all windows for a handle that never was one.
std::size_t IndexOf(HWND handle)
{
    return (reinterpret_cast<std::uintptr_t>(handle) - kFirstHandle) / kHandleStep;
}

std::unique_ptr<CWnd> MakeControlObject(Kind kind)
{
    switch (kind) {
    case Kind::edit:
        return std::make_unique<CEdit>();
    case Kind::button:
    case Kind::check:
    case Kind::radio:
    case Kind::group:
        return std::make_unique<CButton>();
    case Kind::combo:
        return std::make_unique<CComboBox>();
    case Kind::list:
        return std::make_unique<CListBox>();
    case Kind::trackbar:
        return std::make_unique<CSliderCtrl>();
    case Kind::grid:
        return std::make_unique<CGridCtrl>();
    case Kind::chart:
        return std::make_unique<CChartCtrl>();
    default:
        return std::make_unique<CStatic>();
    }
}

} // namespace

void NullFrontEnd::RunModal(Window& dialog, const std::function<bool()>& running)
{
    while (running()) {
        UiThread::Current()->Send(dialog.handle, WM_CLOSE, 0, 0);
        if (running())
            static_cast<CDialog*>(dialog.object)->EndDialog(IDCANCEL);
    }
}

int NullFrontEnd::ShowMessage(const Window*, const ShownMessage& message)
{
    switch (message.kind) {
    case MessageKind::question:
        return IDNO;
    case MessageKind::confirmation:
        return IDCANCEL;
    default:
        return IDOK;
    }
}

UiThread::UiThread(FrontEnd& frontEnd) : m_frontEnd(&frontEnd)
{
    RUV_ASSERT(g_current == nullptr);
    g_current = this;
}

UiThread::~UiThread()
{
    m_queue.clear();
    while (!m_top.empty())
        Destroy(m_top.back()->handle);
    m_depth = 0;
    DeleteCondemned();
    g_current = nullptr;
}

UiThread* UiThread::Current()
{
    return g_current;
}

HWND UiThread::Enter(Window& window)
{
    window.handle = HandleAt(m_windows.size());
    m_windows.push_back(&window);
    return window.handle;
}

Window& UiThread::CreateTopWindow(CWnd& object, Kind kind, UINT id, Window* parent)
{
    RUV_ASSERT(object.m_hWnd == nullptr);
    auto window = std::make_unique<Window>();
    window->object = &object;
    window->parent = parent;
    window->kind = kind;
    window->id = id;
    object.m_hWnd = Enter(*window);
    m_top.push_back(std::move(window));
    return *m_top.back();
}

Window& UiThread::CreateControl(Window& dialog, Kind kind, UINT id)
{
    auto control = std::make_unique<Window>();
    control->owned = MakeControlObject(kind);
    control->object = control->owned.get();
    control->object->m_hWnd = Enter(*control);
    control->parent = &dialog;
    control->kind = kind;
    if (kind == Kind::grid)
        control->grid = std::make_unique<Grid>();
    control->id = id;
    dialog.childIds.push_back(id);
    dialog.children.push_back(std::move(control));
    return *dialog.children.back();
}

void UiThread::Forget(Window& window)
{
    for (const auto& child : window.children)
        Forget(*child);
    if (window.object != nullptr)
        window.object->m_hWnd = nullptr;
    m_windows[IndexOf(window.handle)] = nullptr;
}

void UiThread::Destroy(HWND handle)
{
    Window* window = Find(handle);
    if (window == nullptr)
        return;
    m_frontEnd->WindowVanished(*window);

    // Dialogs opened from this one go with it.
    for (;;) {
        const auto child =
            std::find_if(m_top.begin(), m_top.end(), [&](const auto& top) { return top->parent == window; });
        if (child == m_top.end() || window->kind == Kind::frame)
            break;
        Destroy((*child)->handle);
    }
    for (const auto& top : m_top)
        if (top->parent == window)
            top->parent = nullptr;

    CWnd* object = window->object;
    const auto position =
        std::find_if(m_top.begin(), m_top.end(), [&](const auto& top) { return top.get() == window; });
    RUV_ASSERT(position != m_top.end());
    m_gone.push_back(std::move(*position)); // handlers that are running may still look at it
    m_top.erase(position);
    Forget(*m_gone.back());
    if (object != nullptr)
        WndAccess::PostNcDestroy(*object);
}

Window* UiThread::Find(HWND window) const
{
    const std::size_t index = IndexOf(window);
    return index < m_windows.size() ? m_windows[index] : nullptr;
}

std::vector<Window*> UiThread::Dialogs() const
{
    std::vector<Window*> dialogs;
    for (const auto& top : m_top)
        if (top->kind == Kind::dialog)
            dialogs.push_back(top.get());
    return dialogs;
}

std::vector<Window*> UiThread::Pages(const Window& dialog) const
{
    std::vector<Window*> pages;
    for (const auto& top : m_top)
        if (top->page && top->parent == &dialog)
            pages.push_back(top.get());
    return pages;
}

LRESULT UiThread::Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Window* target = Find(window);
    if (target == nullptr || target->object == nullptr)
        return 0;
    const Scope scope(*this);
    return WndAccess::WindowProc(*target->object, message, wParam, lParam);
}

void UiThread::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* target = Find(window);
    if (target == nullptr)
        return;
    const MSG msg{window, message, wParam, lParam};
    m_queue.push_back(msg);
    m_frontEnd->MessagePosted(target, msg);
}

void UiThread::DispatchPending()
{
    const Scope scope(*this);
    while (!m_queue.empty()) {
        MSG msg = m_queue.front();
        m_queue.pop_front();
        Window* target = Find(msg.hwnd);
        if (target == nullptr || target->object == nullptr || target->object->PreTranslateMessage(&msg))
            continue;
        Send(msg.hwnd, msg.message, msg.wParam, msg.lParam);
    }
}

void UiThread::FireTimer(HWND window, UINT_PTR id)
{
    Send(window, WM_TIMER, id, 0);
}

void UiThread::DeleteLater(CWnd* object)
{
    if (std::find(m_condemned.begin(), m_condemned.end(), object) == m_condemned.end())
        m_condemned.push_back(object);
}

void UiThread::DeleteCondemned()
{
    while (!m_condemned.empty()) {
        CWnd* object = m_condemned.back();
        m_condemned.pop_back();
        delete object;
    }
    m_gone.clear();
}

void UiThread::SetFocus(Window& control)
{
    if (m_focus == control.handle)
        return;
    m_focus = control.handle;
    m_frontEnd->FocusChanged(control);
}

bool UiThread::Report(const std::string& what, double done)
{
    const Scope scope(*this);
    if (m_cancelled)
        return false;
    const bool before = std::exchange(m_reporting, true);
    const bool goOn = m_frontEnd->Progress(what, done);
    m_reporting = before;
    return goOn && !m_cancelled;
}

UiThread::ClickScope::ClickScope(UiThread& thread, const Window& button)
    : m_thread(thread), m_clickedBefore(std::exchange(thread.m_clicked, button.handle)),
      m_cancelledBefore(std::exchange(thread.m_cancelled, false))
{
}

UiThread::ClickScope::~ClickScope()
{
    m_thread.m_clicked = m_clickedBefore;
    m_thread.m_cancelled = m_cancelledBefore;
}

UiThread::Scope::~Scope()
{
    if (--m_thread.m_depth == 0)
        m_thread.DeleteCondemned();
}

} // namespace framework

CWinThread* AfxGetThread()
{
    return framework::UiThread::Current();
}
