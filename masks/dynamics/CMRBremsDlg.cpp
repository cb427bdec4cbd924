// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CMRBremsDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "res/resource.h"

#include <initializer_list>

namespace
{

using Ids = std::initializer_list<UINT>;

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
}

const CMessageMap* CMRBremsDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CMRBremsDlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CMRBremsDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CMRBremsDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CMRBremsDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CMRBremsDlg::OnTransferOption>(IDC_UEBERTRAGEN),
        OnControl<&CMRBremsDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

BOOL CMRBremsDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    return CMDIDialog::OnCommand(wParam, lParam);
}

void CMRBremsDlg::BuildObjects()
{
    const UnitType speed(unitType::speedKmh);
    const UnitType acceleration(unitType::acceleration);
    const UnitType length(unitType::length);
    const CEditColors* colors = &RuvCfg.editColors;
    const auto bind = [&](UINT id, double& field, double maximum, const UnitType* unit) {
        return new CEditDouble(this, id, &field, 0.0, maximum, 2, 0.0, colors, colors, unit);
    };
    bind(IDC_MRBREMS_VOLLVERZOEGERUNG, m_dat.vollverzoegerung, 100.0, &acceleration)
        ->SetSource(ValueSource::maximumDeceleration);
    bind(IDC_MRBREMS_ANSTIEG, m_dat.anstieg, 100.0, nullptr);
    bind(IDC_MRBREMS_SPURVERZOEGERUNG, m_dat.spurverzoegerung, 100.0, &acceleration);
    bind(IDC_MRBREMS_SPURLAENGE, m_dat.spurlaenge, 1000.0, &length);
    bind(IDC_MRBREMS_VE, m_dat.endgeschwindigkeit, 1000.0, &speed);
    bind(IDC_MRBREMS_REAKTIONSDAUER, m_dat.reaktionsdauer, 100.0, nullptr);
    bind(IDC_MRBREMS_REAKTIONSPUNKT_WEG, m_dat.reaktionspunktWeg, 100.0, &length);
    bind(IDC_MRBREMS_REAKTIONSPUNKT_ZEIT, m_dat.reaktionspunktZeit, 100.0, nullptr);
    bind(IDC_MRBREMS_V0, m_dat.anfangsgeschwindigkeit, 100.0, &speed);
    bind(IDC_MRBREMS_SCHWELLDAUER, m_dat.schwelldauer, 100.0, nullptr);
    bind(IDC_MRBREMS_SCHWELLWEG, m_dat.schwellweg, 100.0, &length);
    bind(IDC_MRBREMS_BREMS_SCHWELLWEG, m_dat.bremsSchwellweg, 100.0, &length);
    bind(IDC_MRBREMS_BREMS_SCHWELLZEIT, m_dat.bremsSchwellzeit, 100.0, nullptr);
    bind(IDC_MRBREMS_ERREICHT, m_dat.erreichteVerzoegerung, 100.0, &acceleration);
    bind(IDC_MRBREMS_LIN_VERZOEGERUNG, m_dat.linVerzoegerung, 100.0, &acceleration);
    bind(IDC_MRBREMS_LIN_REAKTIONSDAUER, m_dat.linReaktionsdauer, 100.0, nullptr);
    bind(IDC_MRBREMS_LIN_SCHWELLDAUER, m_dat.linSchwelldauer, 100.0, nullptr);
    bind(IDC_MRBREMS_LIN_BREMSWEG, m_dat.linBremsweg, 100.0, &length);
    new CFzgCombo(this, IDC_MRBREMS_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, colors, colors);
    auto* phase = new CAbsCombo(this, IDC_MRBREMS_PHASE, &m_dat.phase, colors, colors);
    phase->SetVehicle(&m_dat.fahrzeug);
    bind(IDC_MRBREMS_LIN_SCHWELLWEG, m_dat.linSchwellweg, 100.0, &length);
}

void CMRBremsDlg::SetupWindow()
{
    m_dat.Loeschen();
    m_dat.FahrzeugGewechselt();
    m_dat.berechnet = 0;
    for (const UINT id : Ids{IDC_MRBREMS_VE_EINHEIT, IDC_MRBREMS_V0_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::speedKmh));
    for (const UINT id : Ids{IDC_MRBREMS_VOLLVERZOEGERUNG_EINHEIT, IDC_MRBREMS_SPURVERZOEGERUNG_EINHEIT,
                             IDC_MRBREMS_ERREICHT_EINHEIT, IDC_MRBREMS_LIN_VERZOEGERUNG_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::acceleration));
    for (const UINT id : Ids{IDC_MRBREMS_SPURLAENGE_EINHEIT, IDC_MRBREMS_REAKTIONSPUNKT_WEG_EINHEIT,
                             IDC_MRBREMS_SCHWELLWEG_EINHEIT, IDC_MRBREMS_BREMS_SCHWELLWEG_EINHEIT,
                             IDC_MRBREMS_LIN_BREMSWEG_EINHEIT, IDC_MRBREMS_LIN_SCHWELLWEG_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::length));
    for (const UINT id : Ids{IDC_MRBREMS_REAKTIONSPUNKT_WEG, IDC_MRBREMS_REAKTIONSPUNKT_ZEIT, IDC_MRBREMS_V0,
                             IDC_MRBREMS_SCHWELLDAUER, IDC_MRBREMS_SCHWELLWEG, IDC_MRBREMS_BREMS_SCHWELLWEG,
                             IDC_MRBREMS_BREMS_SCHWELLZEIT, IDC_MRBREMS_ERREICHT, IDC_MRBREMS_LIN_REAKTIONSDAUER,
                             IDC_MRBREMS_LIN_SCHWELLDAUER, IDC_MRBREMS_LIN_BREMSWEG, IDC_MRBREMS_LIN_SCHWELLWEG})
        Enable(id, FALSE);
    SetzeFarben();
    ZeigeAlles();
    CMDIRechDialog::SetupWindow();
}

void CMRBremsDlg::ShutDownWindow()
{
    CMDIRechDialog::ShutDownWindow();
}

UINT CMRBremsDlg::GetCloneCropStyle(UINT* out)
{
    out[0] = IDC_MASKE_OK;
    out[1] = 8;
    out[2] = IDC_RECHNEN;
    out[3] = 2;
    return 2;
}

void CMRBremsDlg::GlobalGeoDatChanged(UINT_PTR)
{
    SetzeFarben();
    UpdateDialog();
}

void CMRBremsDlg::GlobalWZDatChanged(UINT_PTR)
{
    UpdateDialog();
}

LRESULT CMRBremsDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    ZeigeAlles();
    return 0;
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
        SetzeFarben();
        break;
    default:
        break;
    }
    ZeigeAlles();
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
    ZeigeHinweis(m_dat.PruefeErgebnis(ausgang));
    ZeigeAlles();
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
    const Uebertragung uebertragung = m_dat.Uebertragen();
    Update(IDC_MRBREMS_PHASE);
    if (uebertragung == Uebertragung::keinPlatz)
        AfxMessageBox(LoadRuvString(IDS_KEIN_PLATZ_FUER_FOLGE));
}

void CMRBremsDlg::OnButtonOk()
{
    OnOK();
}

void CMRBremsDlg::OnTransferOption()
{
    if (const auto* option = static_cast<CButton*>(GetDlgItem(IDC_UEBERTRAGEN)))
        RuvCfg.transferData = option->GetCheck() != 0;
    ZeigeAlles();
}

void CMRBremsDlg::Loeschen()
{
    if (FehlerMeldung(this, 1052) != fehlerJa)
        return;
    m_dat.Loeschen();
    SetzeFarben();
    ZeigeHinweis(CMRBremsDat::Vorbehalt::keiner);
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CMRBremsDlg::ZeigeAlles()
{
    Enable(IDC_MASKE_OK, RuvCfg.transferData ? TRUE : FALSE);
    if (auto* option = static_cast<CButton*>(GetDlgItem(IDC_UEBERTRAGEN)))
        option->SetCheck(RuvCfg.transferData ? 1 : 0);
    UpdateDialog();
}

void CMRBremsDlg::SetzeFarben()
{
    const bool gefaerbt = RuvCfg.useVehicleColors && m_data.IsFzgValid(m_dat.fahrzeug);
    SetUseFzgColors(gefaerbt ? m_dat.fahrzeug : -1);
}

void CMRBremsDlg::ZeigeHinweis(CMRBremsDat::Vorbehalt vorbehalt)
{
    const UINT text = Hinweis(vorbehalt);
    if (CWnd* hinweis = GetDlgItem(IDC_MRBREMS_HINWEIS))
        hinweis->SetWindowText(text == kKeinText ? std::string{} : LoadRuvString(text));
}
