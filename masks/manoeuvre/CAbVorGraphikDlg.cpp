// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CAbVorGraphikDlg.h"

#include "host/Controls.h"
#include "masks/manoeuvre/CAbVorDlg.h"
#include "res/manoeuvre.h"

CAbVorGraphikDlg::CAbVorGraphikDlg(CAbVorDlg& maske) : CMDIDialog(IDD_ABVOR_GRAPHIK, &maske), m_maske(maske) {}

void CAbVorGraphikDlg::Zeige()
{
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_maske);
        return;
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CAbVorGraphikDlg::Zeichne()
{
    if (CWnd* feld = m_hWnd == nullptr ? nullptr : GetDlgItem(IDC_ABVOR_GROSSES_ZEICHENFELD))
        feld->Invalidate();
}

void CAbVorGraphikDlg::SetupWindow()
{
    if (CWnd* feld = GetDlgItem(IDC_ABVOR_GROSSES_ZEICHENFELD))
        static_cast<CStatic*>(feld)->SetPainter([this](CDC& dc, const CRect&) { m_maske.ZeichnePlan(dc); });
    CMDIDialog::SetupWindow();
}
