// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CBeschlDlg.h"

#include "host/Bindings.h"
#include "host/FehlerMeldung.h"
#include "res/resource.h"

CBeschlDlg::CBeschlDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_BESCHLEUNIGUNG, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CBeschlDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CBeschlDlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CBeschlDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CBeschlDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CBeschlDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CBeschlDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

BOOL CBeschlDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    return CMDIDialog::OnCommand(wParam, lParam);
}

void CBeschlDlg::BuildObjects()
{
    const UnitType acceleration(unitType::acceleration);
    new CEditDouble(this, IDC_BESCHL_REIBUNG, &m_dat.reibungsbeiwert, 0.0, 10.0, 2, 0.0, nullptr, nullptr, nullptr);
    new CEditDouble(this, IDC_BESCHL_NEIGUNG_GRAD, &m_dat.neigungGrad, -90.0, 90.0, 2, 0.0, nullptr, nullptr, nullptr);
    // The percent field ends at 90 % on purpose, although degrees reach steeper gradients.
    new CEditDouble(this, IDC_BESCHL_NEIGUNG_PROZENT, &m_dat.neigungProzent, -90.0, 90.0, 2, 0.0, nullptr, nullptr,
                    nullptr);
    new CEditDouble(this, IDC_BESCHL_VERZOEGERUNG, &m_dat.verzoegerung, -100.0, 100.0, 2, 0.0, nullptr, nullptr,
                    &acceleration);
}

void CBeschlDlg::SetupWindow()
{
    m_dat.Loeschen();
    m_neigung = 0.0;
    m_berechnet = 0;
    ReplaceChildWindowSubstringWithUnitString(IDC_BESCHL_VERZOEGERUNG_EINHEIT, UnitType(unitType::acceleration));
    Enable(IDC_BESCHL_VERZOEGERUNG, FALSE);
    CMDIRechDialog::SetupWindow();
}

void CBeschlDlg::ShutDownWindow()
{
    CMDIRechDialog::ShutDownWindow();
}

UINT CBeschlDlg::GetCloneCropStyle(UINT* out)
{
    out[0] = IDC_MASKE_OK;
    out[1] = 8;
    out[2] = IDC_RECHNEN;
    out[3] = 2;
    return 2;
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

LRESULT CBeschlDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    UpdateDialog();
    return 0;
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
    UpdateDialog();
}

void CBeschlDlg::OnButtonOk()
{
    m_dat.Rechnen(m_neigung);
    OnOK();
}

void CBeschlDlg::Loeschen()
{
    if (FehlerMeldung(this, 1052) != fehlerJa)
        return;
    m_dat.Loeschen();
    SendMessage(WM_RUV_UPDATEDIALOG);
}
