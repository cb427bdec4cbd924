// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CVermGraphikDlg.h"

#include "host/CDC.h"
#include "host/Controls.h"
#include "res/manoeuvre.h"

#include <utility>

CVermGraphikDlg::CVermGraphikDlg(CWnd& maske, std::function<void(CDC&)> zeichne)
    : CMDIDialog(IDD_VERM_GRAPHIK, &maske), m_maske(maske), m_zeichne(std::move(zeichne))
{
}

void CVermGraphikDlg::Zeige()
{
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_maske);
        return;
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CVermGraphikDlg::Zeichne()
{
    if (CWnd* feld = GetDlgItem(IDC_VERM_GROSSES_ZEICHENFELD))
        feld->Invalidate();
}

void CVermGraphikDlg::SetupWindow()
{
    if (CWnd* feld = GetDlgItem(IDC_VERM_GROSSES_ZEICHENFELD))
        static_cast<CStatic*>(feld)->SetPainter([this](CDC& dc, const CRect&) { m_zeichne(dc); });
    CMDIDialog::SetupWindow();
}
