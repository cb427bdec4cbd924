// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDrawingDialog.h"

#include <utility>

CDrawingDialog::CDrawingDialog(UINT templateId, UINT fieldId, CWnd& owner, std::function<void(CDC&)> draw)
    : CMDIDialog(templateId, &owner), m_fieldId(fieldId), m_owner(owner), m_draw(std::move(draw))
{
}

void CDrawingDialog::SetupWindow()
{
    SetDrawing(m_fieldId, m_draw);
    CMDIDialog::SetupWindow();
}

void CDrawingDialog::Show()
{
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_owner);
        return;
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}
