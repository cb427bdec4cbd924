// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankSetzDlg.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

CSchrankSetzDlg::CSchrankSetzDlg(CSchrankenverfahrenDlg& maske)
    : CMDIDialog(IDD_SCHRANKEN_SETZEN, &maske), m_maske(maske)
{
}

void CSchrankSetzDlg::Zeige(UINT text)
{
    m_text = text;
    if (m_hWnd == nullptr) {
        CreateFromTemplate(&m_maske);
        return;
    }
    SetupWindow();
    ShowWindow(SW_SHOW);
    SetFocus();
}

void CSchrankSetzDlg::Schliesse()
{
    if (m_hWnd != nullptr)
        OnOK();
}

void CSchrankSetzDlg::SetupWindow()
{
    if (CWnd* prompt = GetDlgItem(IDC_SCHR_SETZE_TEXT))
        prompt->SetWindowText(LoadRuvString(m_text));
    CMDIDialog::SetupWindow();
}

void CSchrankSetzDlg::ShutDownWindow()
{
    m_maske.CancelPlacing();
    CMDIDialog::ShutDownWindow();
}
