// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CTeilanhDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "res/resource.h"

#include <initializer_list>

namespace
{

using Ids = std::initializer_list<UINT>;

constexpr UINT kKeinText = 0;
constexpr WPARAM kKeinFahrzeug = static_cast<WPARAM>(-1);

UINT Meldung(CTeilanhDat::Ausgang ausgang)
{
    switch (ausgang) {
    case CTeilanhDat::Ausgang::berechnet:
        break;
    case CTeilanhDat::Ausgang::keineBremszeit:
        return 1203;
    case CTeilanhDat::Ausgang::reaktionZuLang:
        return 1204;
    case CTeilanhDat::Ausgang::unendlich:
        break;
    }
    return 1000;
}

UINT Hinweis(CTeilanhDat::Ausgang ausgang)
{
    switch (ausgang) {
    case CTeilanhDat::Ausgang::berechnet:
        return kKeinText;
    case CTeilanhDat::Ausgang::keineBremszeit:
        return IDS_TEILANH_KEINE_BREMSZEIT;
    case CTeilanhDat::Ausgang::reaktionZuLang:
        return IDS_TEILANH_REAKTION_ZU_LANG;
    case CTeilanhDat::Ausgang::unendlich:
        break;
    }
    return IDS_TEILANH_UNENDLICH;
}

UINT Hinweis(CTeilanhDat::Vorbehalt vorbehalt)
{
    switch (vorbehalt) {
    case CTeilanhDat::Vorbehalt::keiner:
        break;
    case CTeilanhDat::Vorbehalt::negativeBremszeit:
        return IDS_TEILANH_NEGATIVE_BREMSZEIT;
    case CTeilanhDat::Vorbehalt::negativeGeschwindigkeit:
        return IDS_TEILANH_NEGATIVE_GESCHW;
    }
    return kKeinText;
}

} // namespace

CTeilanhDlg::CTeilanhDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_REAGIEREN_BREMSEN, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CTeilanhDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CTeilanhDlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CTeilanhDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnMessage<&CTeilanhDlg::OnTransferNow>(WM_RUV_TRANSFERNOW),
        OnControl<&CTeilanhDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CTeilanhDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CTeilanhDlg::Init>(IDC_INIT),
        OnControl<&CTeilanhDlg::OnButtonTransfer>(IDC_UEBERTRAGEN),
        OnControl<&CTeilanhDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

BOOL CTeilanhDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    return CMDIDialog::OnCommand(wParam, lParam);
}

void CTeilanhDlg::BuildObjects()
{
    const UnitType speed(unitType::speedKmh);
    const UnitType acceleration(unitType::acceleration);
    const UnitType length(unitType::length);
    const CEditColors* colors = &RuvCfg.editColors;
    const auto bind = [&](UINT id, double& field, double minimum, double maximum, const UnitType* unit) {
        return new CEditDouble(this, id, &field, minimum, maximum, 2, 0.0, colors, colors, unit);
    };
    new CFzgCombo(this, IDC_TEILANH_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, colors, colors);
    auto* phase = new CAbsCombo(this, IDC_TEILANH_PHASE, &m_dat.phase, colors, colors);
    phase->SetVehicle(&m_dat.fahrzeug);
    bind(IDC_TEILANH_VA, m_dat.vA, 0.0, 1000.0, &speed);
    bind(IDC_TEILANH_TR, m_dat.tR, 0.0, 100.0, nullptr);
    bind(IDC_TEILANH_AR, m_dat.aR, -100.0, 100.0, &acceleration);
    bind(IDC_TEILANH_TS, m_dat.tS, 0.0, 100.0, nullptr);
    bind(IDC_TEILANH_AB, m_dat.aB, -100.0, 100.0, &acceleration)->SetSource(ValueSource::maximumDeceleration);
    bind(IDC_TEILANH_VE, m_dat.vE, 0.0, 1000.0, &speed);
    bind(IDC_TEILANH_SG, m_dat.sG, 0.0, 1000.0, &length);
    bind(IDC_TEILANH_TG, m_dat.tG, 0.0, 100.0, nullptr);
    bind(IDC_TEILANH_SB, m_dat.sB, 0.0, 1000.0, &length);
    bind(IDC_TEILANH_SBS, m_dat.sBS, 0.0, 1000.0, &length);
    bind(IDC_TEILANH_TB, m_dat.tB, 0.0, 100.0, nullptr);
    bind(IDC_TEILANH_VR, m_dat.vR, 0.0, 1000.0, &speed);
}

void CTeilanhDlg::SetupWindow()
{
    m_dat.Oeffne();
    m_geaendert = false;
    for (const UINT id : Ids{IDC_TEILANH_VA_EINHEIT, IDC_TEILANH_VR_EINHEIT, IDC_TEILANH_VE_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::speedKmh));
    for (const UINT id : Ids{IDC_TEILANH_AR_EINHEIT, IDC_TEILANH_AB_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::acceleration));
    for (const UINT id : Ids{IDC_TEILANH_SG_EINHEIT, IDC_TEILANH_SB_EINHEIT, IDC_TEILANH_SBS_EINHEIT})
        ReplaceChildWindowSubstringWithUnitString(id, UnitType(unitType::length));
    for (const UINT id : Ids{IDC_TEILANH_VR, IDC_TEILANH_TG, IDC_TEILANH_SBS, IDC_TEILANH_TB})
        Enable(id, FALSE);
    SetzeSchutz();
    SetzeFarben();
    CMDIRechDialog::SetupWindow();
}

void CTeilanhDlg::ShutDownWindow()
{
    CMDIRechDialog::ShutDownWindow();
}

UINT CTeilanhDlg::GetCloneCropStyle(UINT* out)
{
    out[0] = IDC_MASKE_OK;
    out[1] = 8;
    out[2] = IDC_RECHNEN;
    out[3] = 2;
    return 2;
}

void CTeilanhDlg::GlobalGeoDatChanged(UINT_PTR)
{
    SetzeFarben();
    UpdateDialog();
}

void CTeilanhDlg::GlobalWZDatChanged(UINT_PTR)
{
    // The entered quantities stay; the phases to choose from may be others.
    UpdateDialog();
}

LRESULT CTeilanhDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    UpdateDialog();
    return 0;
}

LRESULT CTeilanhDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    m_geaendert = true;
    if (controlId == IDC_TEILANH_FAHRZEUG || controlId == IDC_TEILANH_PHASE) {
        if (controlId == IDC_TEILANH_FAHRZEUG)
            m_dat.FahrzeugGewechselt();
        else
            m_dat.LeseSpalte();
        SetzeFarben();
        ZeigeHinweis(kKeinText);
        SendMessage(WM_RUV_UPDATEDIALOG);
        return 0;
    }
    UpdateDialog();
    return 0;
}

void CTeilanhDlg::IncValue(int)
{
    m_geaendert = true;
    if (m_dat.berechnet != 0) {
        if (m_dat.Pruefe().Bestanden())
            ZeigeAusgang(m_dat.Rechnen());
        else
            ZeigeHinweis(IDS_TEILANH_OHNE_VERZOEGERUNG);
    }
    PostMessage(WM_RUV_UPDATEDIALOG);
}

bool CTeilanhDlg::PruefeUndRechne()
{
    m_dat.berechnet = 0;
    const CTeilanhDat::Pruefung pruefung = m_dat.Pruefe();
    if (pruefung.ohneVerzoegerung)
        FehlerMeldung(this, 1201);
    if (pruefung.ohneEingabe)
        FehlerMeldung(this, 1202);
    if (!pruefung.Bestanden())
        return false;
    const CTeilanhDat::Ausgang ausgang = m_dat.Rechnen();
    ZeigeAusgang(ausgang);
    if (ausgang != CTeilanhDat::Ausgang::berechnet) {
        FehlerMeldung(this, Meldung(ausgang));
        return false;
    }
    m_geaendert = false;
    return true;
}

bool CTeilanhDlg::BringeAufStand()
{
    return (m_dat.berechnet != 0 && !m_geaendert) || PruefeUndRechne();
}

void CTeilanhDlg::Rechnen()
{
    if (!PruefeUndRechne()) {
        UpdateDialog();
        return;
    }
    SetzeSchutz();
    SendMessage(WM_RUV_UPDATEDIALOG);
    MeldeHauptfenster();
    if (RuvCfg.transferData)
        Uebertrage();
}

void CTeilanhDlg::OnButtonOk()
{
    if (BringeAufStand()) {
        if (!Uebertrage())
            return;
        MeldeHauptfenster();
    }
    OnOK();
}

void CTeilanhDlg::OnButtonTransfer()
{
    PostMessage(WM_RUV_TRANSFERNOW);
    PostMessage(WM_RUV_UPDATEDIALOG);
    PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
}

LRESULT CTeilanhDlg::OnTransferNow(WPARAM, LPARAM)
{
    if (BringeAufStand()) {
        SetzeSchutz();
        Uebertrage();
    }
    return 0;
}

bool CTeilanhDlg::Uebertrage()
{
    const Uebertragung ausgang = m_dat.Uebertragen();
    Update(IDC_TEILANH_PHASE);
    if (ausgang != Uebertragung::keinPlatz)
        return true;
    AfxMessageBox(LoadRuvString(IDS_KEIN_PLATZ_FUER_FOLGE));
    return false;
}

void CTeilanhDlg::MeldeHauptfenster()
{
    const CWinThread* const thread = AfxGetThread();
    if (thread != nullptr && thread->GetMainWnd() != nullptr)
        thread->GetMainWnd()->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
}

void CTeilanhDlg::Init()
{
    m_dat.modus = CTeilanhDat::nichtGewaehlt;
    SetzeSchutz();
}

void CTeilanhDlg::Loeschen()
{
    if (FehlerMeldung(this, 1052) != fehlerJa)
        return;
    m_dat.Loeschen();
    m_geaendert = true;
    SetzeSchutz();
    ZeigeHinweis(kKeinText);
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CTeilanhDlg::SetzeSchutz()
{
    ChangeProtection(IDC_TEILANH_VA, m_dat.IstAnfangsgeschwErgebnis());
    ChangeProtection(IDC_TEILANH_VE, m_dat.IstEndgeschwErgebnis());
    ChangeProtection(IDC_TEILANH_SG, m_dat.IstGesamtwegErgebnis());
    ChangeProtection(IDC_TEILANH_SB, m_dat.IstBremswegErgebnis());
    constexpr UINT kGegeben[] = {IDS_TEILANH_MODUS_0, IDS_TEILANH_MODUS_1, IDS_TEILANH_MODUS_2,
                                 IDS_TEILANH_MODUS_3, IDS_TEILANH_MODUS_4, IDS_TEILANH_MODUS_5};
    if (CWnd* gegeben = GetDlgItem(IDC_TEILANH_GEGEBEN))
        gegeben->SetWindowText(LoadRuvString(kGegeben[m_dat.modus]));
}

void CTeilanhDlg::SetzeFarben()
{
    const bool gefaerbt = RuvCfg.useVehicleColors && m_data.IsFzgValid(m_dat.fahrzeug);
    SetUseFzgColors(gefaerbt ? m_dat.fahrzeug : -1);
}

void CTeilanhDlg::ZeigeAusgang(CTeilanhDat::Ausgang ausgang)
{
    const UINT text = Hinweis(ausgang);
    ZeigeHinweis(text != kKeinText ? text : Hinweis(m_dat.PruefeErgebnis()));
}

void CTeilanhDlg::ZeigeHinweis(UINT textId)
{
    if (CWnd* hinweis = GetDlgItem(IDC_TEILANH_HINWEIS))
        hinweis->SetWindowText(textId == kKeinText ? std::string{} : LoadRuvString(textId));
}
