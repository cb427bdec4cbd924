// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDialog.h"

#include "framework/Resources.h"
#include "framework/UiThread.h"
#include "framework/WndAccess.h"

using framework::Kind;
using framework::UiThread;
using framework::Window;

namespace
{

constexpr DWORD kStyleVisible = 0x10000000;
constexpr DWORD kStyleDisabled = 0x08000000;
constexpr DWORD kStyleGroup = 0x00020000;
constexpr DWORD kStyleTabStop = 0x00010000;
constexpr DWORD kButtonTypeMask = 0x0F;
constexpr DWORD kDefaultButton = 0x01;
constexpr DWORD kEditReadOnly = 0x0800;
constexpr DWORD kEditRight = 0x0002;
constexpr DWORD kStaticTypeMask = 0x1F;
constexpr DWORD kStaticRight = 0x02;

void CreateControls(UiThread& thread, Window& dialog, const framework::DialogTemplate& dialogTemplate)
{
    dialog.children.reserve(dialogTemplate.controls.size());
    dialog.childIds.reserve(dialogTemplate.controls.size());
    for (const auto& item : dialogTemplate.controls) {
        Window& control = thread.CreateControl(dialog, item.kind, item.id);
        const DWORD buttonType = item.style & kButtonTypeMask;
        control.text = item.text;
        control.rect = item.rect;
        control.visible = (item.style & kStyleVisible) != 0;
        control.enabled = (item.style & kStyleDisabled) == 0;
        control.groupStart = (item.style & kStyleGroup) != 0;
        control.tabStop = (item.style & kStyleTabStop) != 0;
        control.defaultButton = item.kind == Kind::button && buttonType == kDefaultButton;
        control.automatic = (item.kind == Kind::check && (buttonType == 3 || buttonType == 6)) ||
                            (item.kind == Kind::radio && buttonType == 9);
        control.readOnly = item.kind == Kind::edit && (item.style & kEditReadOnly) != 0;
        control.rightAligned = (item.kind == Kind::edit && (item.style & kEditRight) != 0) ||
                               (item.kind == Kind::label && (item.style & kStaticTypeMask) == kStaticRight);
    }
}

/// A page is seen with the dialog it lies on, and appears after it.
void Appear(UiThread& thread, Window& dialog)
{
    const HWND handle = dialog.handle;
    dialog.appeared = true;
    thread.Front().WindowAppeared(dialog);
    if (thread.Find(handle) == nullptr)
        return;
    for (Window* page : thread.Pages(dialog))
        if (!page->appeared)
            Appear(thread, *page);
}

} // namespace

CDialog::CDialog(UINT templateId, CWnd* parent) : m_templateId(templateId), m_parent(parent) {}

CDialog::~CDialog() = default;

BOOL CDialog::OnInitDialog()
{
    return TRUE;
}

void CDialog::OnOK()
{
    EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

bool CDialog::CreateFromTemplate(CWnd* parent)
{
    return Create(parent, nullptr);
}

bool CDialog::CreatePage(CWnd& parent, const CRect& place)
{
    return Create(&parent, &place);
}

bool CDialog::Create(CWnd* parent, const CRect* place)
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr || m_hWnd != nullptr)
        return false;
    const auto dialogTemplate = framework::FindDialogTemplate(m_templateId);
    if (!dialogTemplate)
        return false;
    Window* parentWindow = parent == nullptr ? nullptr : framework::WindowOf(*parent);
    Window& dialog = thread->CreateTopWindow(*this, Kind::dialog, m_templateId, parentWindow);
    dialog.text = dialogTemplate->title;
    dialog.rect = place == nullptr ? dialogTemplate->rect : *place;
    dialog.page = place != nullptr;
    CreateControls(*thread, dialog, *dialogTemplate);
    OnControlsCreated();
    const HWND handle = m_hWnd;
    OnInitDialog();
    if (!IsWindow(handle))
        return false; // the dialog closed itself while it was set up
    if (!dialog.page || dialog.parent->appeared)
        Appear(*thread, dialog);
    return true;
}

INT_PTR CDialog::DoModal()
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr)
        return -1;
    const UiThread::Scope scope(*thread);
    m_modal = true;
    m_endCode = 0;
    if (!CreateFromTemplate(m_parent)) {
        m_modal = false;
        return m_endCode != 0 ? m_endCode : -1;
    }
    thread->Front().RunModal(*framework::WindowOf(*this), [this] { return m_endCode == 0 && m_hWnd != nullptr; });
    DestroyWindow();
    m_modal = false;
    return m_endCode != 0 ? m_endCode : IDCANCEL;
}

void CDialog::EndDialog(int code)
{
    m_endCode = code;
    if (!m_modal)
        DestroyWindow();
}
