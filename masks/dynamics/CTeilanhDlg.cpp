// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CTeilanhDlg.h"

#include "host/Bindings.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "res/dynamics.h"

namespace
{

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
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CTeilanhDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
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

void CTeilanhDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_TEILANH_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_TEILANH_PHASE, &m_dat.phase, m_editColors, m_editColors);
    phase->SetVehicle(&m_dat.fahrzeug);
}

void CTeilanhDlg::SetupWindow()
{
    m_dat.Oeffne();
    ResultsComputed(); // what a phase holds belongs together
    m_geaendert = false;
    CMDIRechDialog::SetupWindow();
    SetzeSchutz();
}

LRESULT CTeilanhDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    m_geaendert = true;
    if (controlId == IDC_TEILANH_FAHRZEUG || controlId == IDC_TEILANH_PHASE) {
        if (controlId == IDC_TEILANH_FAHRZEUG)
            m_dat.FahrzeugGewechselt();
        else
            m_dat.LeseSpalte();
        SetzeSchutz();
        ResultsComputed(); // what a phase holds belongs together
        ShowText(IDC_TEILANH_HINWEIS, kKeinText);
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
            RechneUndZeige();
        else
            ShowText(IDC_TEILANH_HINWEIS, IDS_TEILANH_OHNE_VERZOEGERUNG);
    }
    PostMessage(WM_RUV_UPDATEDIALOG);
}

CTeilanhDat::Ausgang CTeilanhDlg::RechneUndZeige()
{
    const CTeilanhDat::Ausgang ausgang = m_dat.Rechnen();
    if (ausgang == CTeilanhDat::Ausgang::berechnet)
        ResultsComputed();
    else
        ResultsFailed();
    SetzeSchutz();
    ZeigeAusgang(ausgang);
    return ausgang;
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
    const CTeilanhDat::Ausgang ausgang = RechneUndZeige();
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
    SendMessage(WM_RUV_UPDATEDIALOG);
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
    if (RuvCfg.transferData)
        Uebertrage();
}

void CTeilanhDlg::OnButtonOk()
{
    if (BringeAufStand()) {
        const Uebertragung ausgang = Uebertrage();
        // The mask goes, and what it says with it.
        if (ausgang != Uebertragung::erfolgt && ausgang != Uebertragung::keinPlatz)
            AfxMessageBox(GetDlgItem(IDC_TEILANH_HINWEIS)->GetWindowText());
        if (ausgang != Uebertragung::erfolgt && ausgang != Uebertragung::abweichend &&
            ausgang != Uebertragung::keinFahrzeug)
            return;
        if (CWnd* main = MainWindow())
            main->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
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
    if (BringeAufStand())
        Uebertrage();
    return 0;
}

Uebertragung CTeilanhDlg::Uebertrage()
{
    const Uebertragungsbefund befund = m_dat.Uebertragen();
    Update(IDC_TEILANH_PHASE);
    if (const UINT text = befund.Text())
        ShowText(IDC_TEILANH_HINWEIS, text, befund.Zahlen());
    if (befund.ausgang == Uebertragung::keinPlatz)
        AfxMessageBox(LoadRuvString(IDS_KEIN_PLATZ_FUER_FOLGE));
    return befund.ausgang;
}

void CTeilanhDlg::Init()
{
    m_dat.modus = CTeilanhDat::nichtGewaehlt;
    SetzeSchutz();
}

void CTeilanhDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    m_geaendert = true;
    SetzeSchutz();
    ShowText(IDC_TEILANH_HINWEIS, kKeinText);
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
    ShowText(IDC_TEILANH_GEGEBEN, kGegeben[m_dat.modus]);
}

void CTeilanhDlg::ZeigeAusgang(CTeilanhDat::Ausgang ausgang)
{
    const UINT text = Hinweis(ausgang);
    ShowText(IDC_TEILANH_HINWEIS, text != kKeinText ? text : Hinweis(m_dat.PruefeErgebnis()));
}
