// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CBeschlDlg.h"

#include "res/dynamics.h"

CBeschlDlg::CBeschlDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_BESCHLEUNIGUNG, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CBeschlDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CBeschlDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CBeschlDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CBeschlDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CBeschlDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CBeschlDlg::SetupWindow()
{
    m_dat.Loeschen();
    m_neigung = 0.0;
    m_berechnet = 0;
    CMDIRechDialog::SetupWindow();
}

void CBeschlDlg::UebernehmeNeigung(UINT controlId)
{
    if (controlId == IDC_BESCHL_NEIGUNG_GRAD) {
        m_neigung = m_dat.NeigungAusGrad();
        Update(IDC_BESCHL_NEIGUNG_PROZENT);
    } else if (controlId == IDC_BESCHL_NEIGUNG_PROZENT) {
        m_neigung = m_dat.NeigungAusProzent();
        Update(IDC_BESCHL_NEIGUNG_GRAD);
    }
}

LRESULT CBeschlDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    UebernehmeNeigung(static_cast<UINT>(controlId));
    UpdateDialog();
    return 0;
}

void CBeschlDlg::IncValue(int controlId)
{
    UebernehmeNeigung(static_cast<UINT>(controlId));
    if (m_berechnet != 0)
        Rechnen();
    PostMessage(WM_RUV_UPDATEDIALOG);
}

void CBeschlDlg::Rechnen()
{
    const CWaitCursor wait;
    m_dat.Rechnen(m_neigung);
    m_berechnet = 1;
    ResultsComputed();
    UpdateDialog();
}

void CBeschlDlg::OnButtonOk()
{
    m_dat.Rechnen(m_neigung);
    ResultsComputed();
    OnOK();
}

void CBeschlDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    SendMessage(WM_RUV_UPDATEDIALOG);
}
