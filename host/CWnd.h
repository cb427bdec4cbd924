// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Windows, messages and the calling thread, as far as masks use them. All on the user-interface thread.
#pragma once

#include "host/HostTypes.h"

#include <span>
#include <string>
#include <type_traits>

class CCmdTarget;
class CDataExchange;
class CWnd;

struct MSG {
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

/// One line of a message map: a message (and for WM_COMMAND a control ID and notification code) and its handler.
struct CMessageEntry {
    UINT message;
    UINT code;
    UINT id;
    LRESULT (*call)(CCmdTarget&, WPARAM, LPARAM);
};

/// The handlers of one class; `base` is the map of its base class, asked next.
struct CMessageMap {
    const CMessageMap* base;
    std::span<const CMessageEntry> entries;
};

class CObject
{
  public:
    virtual ~CObject() = default;
};

class CCmdTarget : public CObject
{
  public:
    virtual const CMessageMap* GetMessageMap() const { return nullptr; }
};

namespace host_detail
{
template <class> struct ClassOf;
template <class C, class R, class... A> struct ClassOf<R (C::*)(A...)> {
    using type = C;
};

template <auto Handler> LRESULT CallHandler(CCmdTarget& target, WPARAM wParam, LPARAM lParam)
{
    using Class = typename ClassOf<decltype(Handler)>::type;
    auto& object = static_cast<Class&>(target);
    if constexpr (std::is_invocable_v<decltype(Handler), Class&, WPARAM, LPARAM>) {
        return (object.*Handler)(wParam, lParam);
    } else {
        (object.*Handler)();
        return 0;
    }
}
} // namespace host_detail

/// Handler of a private or system message: `LRESULT (WPARAM, LPARAM)` or `void ()`.
template <auto Handler> constexpr CMessageEntry OnMessage(UINT message)
{
    return {message, 0, 0, &host_detail::CallHandler<Handler>};
}

/// Handler of a control's notification, by default a click.
template <auto Handler> constexpr CMessageEntry OnControl(UINT id, UINT code = BN_CLICKED)
{
    return {WM_COMMAND, code, id, &host_detail::CallHandler<Handler>};
}

class CWnd : public CCmdTarget
{
  public:
    HWND m_hWnd = nullptr;

    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    ~CWnd() override;

    // Overridable, in slot order.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual void DoDataExchange(CDataExchange*);
    virtual BOOL PreTranslateMessage(MSG*);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    void PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    UINT_PTR SetTimer(UINT_PTR id, UINT milliseconds);
    void KillTimer(UINT_PTR id);

    CWnd* GetParent() const;
    CWnd* GetDlgItem(UINT id) const;
    UINT GetDlgCtrlID() const;
    void ShowWindow(int command);
    BOOL IsIconic() const;
    BOOL IsWindowVisible() const;
    BOOL IsWindowEnabled() const;
    void EnableWindow(BOOL enable);
    void SetFocus();
    void SetWindowText(const std::string& utf8);
    std::string GetWindowText() const;
    CRect GetClientRect() const;
    /// Asks the front end to show the window's content afresh.
    void Invalidate();
    BOOL DestroyWindow();

  protected:
    /// What happens to a message that no handler of the class takes.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Last call into the object; the window is gone.
    virtual void PostNcDestroy();

  private:
    friend struct CWndAccess;
};

BOOL IsWindow(HWND window);
BOOL IsIconic(HWND window);

class CWinThread
{
  public:
    CWnd* GetMainWnd() const { return m_pMainWnd; }
    CWnd* m_pMainWnd = nullptr;
};

/// The calling thread, or null before a program has started one.
CWinThread* AfxGetThread();

/// Shows the front end's wait cursor for its lifetime.
class CWaitCursor
{
  public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
};

/// A plain message box with an OK button, for texts of the module's own. Returns the answer.
int AfxMessageBox(const std::string& utf8);

/// String of the resource chain, the host's own last; empty when none holds it.
std::string LoadRuvString(UINT id);

// --- module start and end ---------------------------------------------------------------------------------------

using HINSTANCE = void*;

/// An extension module and the compiled resources it brings along (a 32-bit .res image).
struct AFX_EXTENSION_MODULE {
    std::span<const std::byte> resources;
    HINSTANCE instance = nullptr;
    bool attached = false;
};

/// Takes the module's record into use; false when its resources are not a resource image.
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HINSTANCE instance);
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& module);

/// Puts an attached module into the resource chain; the chain owns it until the module ends.
class CDynLinkLibrary
{
  public:
    CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system);
    AFX_EXTENSION_MODULE& module;
};
