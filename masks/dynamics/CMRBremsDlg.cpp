// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CMRBremsDlg.h"

#include "host/Bindings.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "res/dynamics.h"

namespace
{

constexpr UINT kKeinText = 0;
constexpr WPARAM kKeinFahrzeug = static_cast<WPARAM>(-1);

UINT Hinweis(CMRBremsDat::Vorbehalt vorbehalt)
{
    switch (vorbehalt) {
    case CMRBremsDat::Vorbehalt::keiner:
        break;
    case CMRBremsDat::Vorbehalt::spurverzoegerung:
        return IDS_MRBREMS_SPURVERZOEGERUNG;
    case CMRBremsDat::Vorbehalt::ohneAnstieg:
        return IDS_MRBREMS_OHNE_ANSTIEG;
    case CMRBremsDat::Vorbehalt::spurZuKurz:
        return IDS_MRBREMS_SPUR_ZU_KURZ;
    case CMRBremsDat::Vorbehalt::ohneLineares:
        return IDS_MRBREMS_OHNE_LINEARES;
    case CMRBremsDat::Vorbehalt::negativeDauer:
        return IDS_MRBREMS_NEGATIVE_DAUER;
    }
    return kKeinText;
}

} // namespace

CMRBremsDlg::CMRBremsDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_MOTORRAD_BREMSUNG, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CMRBremsDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CMRBremsDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CMRBremsDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CMRBremsDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CMRBremsDlg::OnTransferOption>(IDC_UEBERTRAGEN),
        OnControl<&CMRBremsDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CMRBremsDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_MRBREMS_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_MRBREMS_PHASE, &m_dat.phase, m_editColors, m_editColors);
    phase->SetVehicle(&m_dat.fahrzeug);
}

void CMRBremsDlg::SetupWindow()
{
    m_dat.Loeschen();
    m_dat.FahrzeugGewechselt();
    m_dat.berechnet = 0;
    CMDIRechDialog::SetupWindow();
}

void CMRBremsDlg::UpdateDialog()
{
    Enable(IDC_MASKE_OK, RuvCfg.transferData ? TRUE : FALSE);
    Check(IDC_UEBERTRAGEN, RuvCfg.transferData);
    CMDIRechDialog::UpdateDialog();
}

LRESULT CMRBremsDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    switch (controlId) {
    case IDC_MRBREMS_VOLLVERZOEGERUNG:
        m_dat.VollverzoegerungEingegeben();
        break;
    case IDC_MRBREMS_SPURVERZOEGERUNG:
        m_dat.SpurverzoegerungEingegeben();
        break;
    case IDC_MRBREMS_FAHRZEUG:
        m_dat.FahrzeugGewechselt();
        break;
    default:
        break;
    }
    UpdateDialog();
    return 0;
}

void CMRBremsDlg::IncValue(int)
{
    if (m_dat.berechnet != 0)
        RechneUndZeige();
    PostMessage(WM_RUV_UPDATEDIALOG);
}

CMRBremsDat::Ausgang CMRBremsDlg::RechneUndZeige()
{
    const CWaitCursor wait;
    const CMRBremsDat::Ausgang ausgang = m_dat.Rechnen();
    if (ausgang == CMRBremsDat::Ausgang::berechnet)
        ResultsComputed();
    else // the motion was found, its linear model is that of an earlier calculation
        ResultsComputed({IDC_MRBREMS_LIN_REAKTIONSDAUER, IDC_MRBREMS_LIN_SCHWELLDAUER, IDC_MRBREMS_LIN_SCHWELLWEG,
                         IDC_MRBREMS_LIN_BREMSWEG});
    ShowText(IDC_MRBREMS_HINWEIS, Hinweis(m_dat.PruefeErgebnis(ausgang)));
    UpdateDialog();
    return ausgang;
}

void CMRBremsDlg::Rechnen()
{
    if (RechneUndZeige() != CMRBremsDat::Ausgang::berechnet) {
        FehlerMeldung(this, 1443);
        return;
    }
    m_dat.berechnet = 1;
    if (CWnd* owner = GetParent())
        owner->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
    if (!RuvCfg.transferData)
        return;
    const Uebertragungsbefund befund = m_dat.Uebertragen();
    Update(IDC_MRBREMS_PHASE);
    if (const UINT text = befund.Text())
        ShowText(IDC_MRBREMS_HINWEIS, text, befund.Zahlen());
    if (befund.ausgang == Uebertragung::keinPlatz)
        AfxMessageBox(LoadRuvString(IDS_KEIN_PLATZ_FUER_FOLGE));
}

void CMRBremsDlg::OnButtonOk()
{
    OnOK();
}

void CMRBremsDlg::OnTransferOption()
{
    RuvCfg.transferData = IsChecked(IDC_UEBERTRAGEN);
    UpdateDialog();
}

void CMRBremsDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    ShowText(IDC_MRBREMS_HINWEIS, kKeinText);
    SendMessage(WM_RUV_UPDATEDIALOG);
}
