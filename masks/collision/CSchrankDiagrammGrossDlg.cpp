// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankDiagrammGrossDlg.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

CSchrankDiagrammGrossDlg::CSchrankDiagrammGrossDlg(CSchrankenverfahrenDlg& maske)
    : CMDIDialog(IDD_SCHRANKEN_GROSSES_DIAGRAMM, &maske), m_maske(maske)
{
}

void CSchrankDiagrammGrossDlg::Zeige()
{
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_maske);
        return;
    }
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CSchrankDiagrammGrossDlg::Zeichne()
{
    if (CWnd* feld = GetDlgItem(IDC_SCHR_GROSSES_ZEICHENFELD))
        feld->Invalidate();
}

void CSchrankDiagrammGrossDlg::SetupWindow()
{
    m_maske.VerbindeZeichenfeld(GetDlgItem(IDC_SCHR_GROSSES_ZEICHENFELD), true);
    CMDIDialog::SetupWindow();
}
