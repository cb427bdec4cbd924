// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankDiagrammGrossDlg.h"

#include "res/collision.h"

#include <utility>

CSchrankDiagrammGrossDlg::CSchrankDiagrammGrossDlg(CWnd& maske, std::function<void(CWnd*)> verbinde)
    : CMDIDialog(IDD_SCHRANKEN_GROSSES_DIAGRAMM, &maske), m_maske(maske), m_verbinde(std::move(verbinde))
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
    m_verbinde(GetDlgItem(IDC_SCHR_GROSSES_ZEICHENFELD));
    CMDIDialog::SetupWindow();
}
