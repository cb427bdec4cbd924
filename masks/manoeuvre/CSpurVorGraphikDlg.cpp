// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CSpurVorGraphikDlg.h"

#include "masks/manoeuvre/CSpurVorDlg.h"
#include "res/manoeuvre.h"

CSpurVorGraphikDlg::CSpurVorGraphikDlg(CSpurVorDlg& maske) : CMDIDialog(IDD_SPURVOR_GRAPHIK, &maske), m_maske(maske) {}

void CSpurVorGraphikDlg::Zeige()
{
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_maske);
        return;
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CSpurVorGraphikDlg::Zeichne()
{
    if (CWnd* feld = GetDlgItem(IDC_SPURVOR_GROSSES_ZEICHENFELD))
        feld->Invalidate();
}

void CSpurVorGraphikDlg::SetupWindow()
{
    m_maske.VerbindeZeichenfeld(GetDlgItem(IDC_SPURVOR_GROSSES_ZEICHENFELD));
    CMDIDialog::SetupWindow();
}
