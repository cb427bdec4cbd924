// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CSpurVorDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/SpurwechselZeichnung.h"
#include "masks/manoeuvre/Texte.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>

namespace
{

using Ausgang = CSpurVorDat::Ausgang;
using Befund = CSpurVorDat::Befund;

constexpr COLORREF kOhneFahrzeug = RGB(90, 90, 90);
/// The lateral acceleration may exceed the entered one by this part before it is worth a word.
constexpr double kNennenswert = 1.01;

UINT Meldung(Ausgang ausgang)
{
    switch (ausgang) {
    case Ausgang::berechnet:
        return 0;
    case Ausgang::querbeschlFehlt:
        return 1334;
    case Ausgang::versatzFehlt:
        return 1333;
    case Ausgang::geschwFehlt:
        return 1332;
    case Ausgang::zuEngeKurve:
        return 1341;
    case Ausgang::unmoeglich:
        break;
    }
    return 1000;
}

UINT Hinweis(const Befund& befund)
{
    switch (befund.ausgang) {
    case Ausgang::querbeschlFehlt:
        return IDS_SPURVOR_QUERBESCHL_FEHLT;
    case Ausgang::versatzFehlt:
        return IDS_SPURVOR_VERSATZ_FEHLT;
    case Ausgang::geschwFehlt:
        return IDS_SPURVOR_GESCHW_FEHLT;
    case Ausgang::zuEngeKurve:
        return IDS_SPURVOR_ZU_ENG;
    case Ausgang::unmoeglich:
        return IDS_SPURVOR_UNMOEGLICH;
    case Ausgang::berechnet:
        break;
    }
    if (befund.nichtKonvergiert)
        return IDS_SPURVOR_NICHT_KONVERGIERT;
    return befund.kurvenradius ? IDS_SPURVOR_KURVENRADIUS : 0;
}

/// To the centimetre, as it is shown.
double Gerundet(double meter)
{
    return std::round(meter * 100.0) / 100.0;
}

std::string Phasennummer(std::int64_t spalte)
{
    return std::to_string(spalte - static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) + 1);
}

} // namespace

CSpurVorDlg::CSpurVorDlg(CRuvData& data, UINT dialogId)
    : CMDIRechDialog(dialogId, MainWindow(), data, nullptr, nullptr), m_dat(data),
      m_graphik(IDD_SPURVOR_GRAPHIK, IDC_SPURVOR_GROSSES_ZEICHENFELD, *this, [this](CDC& dc) { Zeichne(dc); })
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CSpurVorDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CSpurVorDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CSpurVorDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CSpurVorDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CSpurVorDlg::OnGraphik>(IDC_SPURVOR_GRAPHIK),
        OnControl<&CSpurVorDlg::OnTransferOption>(IDC_UEBERTRAGEN),
        OnControl<&CSpurVorDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CSpurVorDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_SPURVOR_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_SPURVOR_PHASE, &m_dat.phase, m_editColors, m_editColors);
    phase->SetVehicle(&m_dat.fahrzeug);
}

void CSpurVorDlg::SetupWindow()
{
    m_dat.Oeffne();
    m_geaendert = false;
    SetDrawing(IDC_SPURVOR_ZEICHENFELD, [this](CDC& dc) { Zeichne(dc); });
    CMDIRechDialog::SetupWindow();
}

void CSpurVorDlg::UpdateDialog()
{
    Check(IDC_UEBERTRAGEN, RuvCfg.transferData);
    // The speed at the other end is computed.
    const bool amEnde = m_dat.bekannt == CSpurVorDat::amEnde;
    ChangeProtection(IDC_SPURVOR_ANFANGSGESCHW, amEnde);
    ChangeProtection(IDC_SPURVOR_ENDGESCHW, !amEnde);
    CMDIRechDialog::UpdateDialog();
    m_graphik.Redraw();
}

void CSpurVorDlg::Zeichne(CDC& dc) const
{
    const bool vorhanden = m_data.IsFzgValid(m_dat.fahrzeug);
    const COLORREF farbe = vorhanden ? KfzDat(static_cast<std::size_t>(m_dat.fahrzeug)).color : kOhneFahrzeug;
    ZeichneSpurwechsel(dc, m_dat, farbe, m_geaendert);
}

void CSpurVorDlg::GlobalGeoDatChanged(UINT_PTR hint)
{
    m_geaendert = true; // the vehicle's lengths are inputs
    CMDIRechDialog::GlobalGeoDatChanged(hint);
}

LRESULT CSpurVorDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    m_geaendert = true;
    if (controlId == IDC_SPURVOR_FAHRZEUG)
        m_dat.FahrzeugGewechselt();
    UpdateDialog();
    return 0;
}

void CSpurVorDlg::IncValue(int)
{
    m_geaendert = true;
    if (m_dat.berechnet != 0)
        RechneUndZeige(false);
    PostMessage(WM_RUV_UPDATEDIALOG);
}

void CSpurVorDlg::Melde(const Befund& befund)
{
    const double bekannt = m_dat.bekannt == CSpurVorDat::amEnde ? m_dat.endgeschw : m_dat.anfangsgeschw;
    if (befund.ersatzmasse)
        FehlerMeldung(this, 1331);
    if (befund.grenzeDarueber)
        FehlerMeldung(this, 1345, bekannt, m_dat.beschleunigung, m_dat.geschwGrenze);
    if (befund.grenzeDarunter)
        FehlerMeldung(this, 1346);
    if (befund.haelt) {
        const std::int64_t spalte = std::max(m_dat.phase, static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte));
        FehlerMeldung(this, 1347, spalte - static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) + 1);
    }
    if (befund.kurvenradius)
        FehlerMeldung(this, 1348, Gerundet(befund.weg), Gerundet(befund.differenz));
    if (befund.nichtKonvergiert)
        FehlerMeldung(this, 1350);
    if (const UINT meldung = Meldung(befund.ausgang))
        FehlerMeldung(this, meldung);
}

void CSpurVorDlg::ZeigeHinweis(const Befund& befund)
{
    std::string text;
    const auto add = [&text](const std::string& sentence) { text += (text.empty() ? "" : " ") + sentence; };
    if (const UINT hinweis = Hinweis(befund))
        add(LoadRuvString(hinweis));
    if (befund.ausgang == Ausgang::berechnet) {
        if (befund.haelt)
            add(LoadRuvString(m_dat.bekannt == CSpurVorDat::amEnde ? IDS_SPURVOR_FAEHRT_AN : IDS_SPURVOR_HAELT));
        if (befund.grenzeDarueber || befund.grenzeDarunter)
            add(LoadRuvString(IDS_SPURVOR_OHNE_GRENZE));
        const double quer = m_dat.LetztesErgebnis()->groessteQuerbeschl;
        if (m_dat.zeitverzug > 0.0 && quer > kNennenswert * std::abs(m_dat.querbeschleunigung))
            add(Eingesetzt(LoadRuvString(IDS_SPURVOR_QUERBESCHL_GROESSER), {Dezimal(quer, 2)}));
    }
    ShowText(IDC_SPURVOR_HINWEIS, text);
}

void CSpurVorDlg::GlobalWZDatChanged(UINT_PTR vehicle)
{
    // Somebody else changed the phases, or a step was taken back: what was said of the case may no longer be true.
    if (static_cast<std::int64_t>(vehicle) == m_dat.fahrzeug)
        ShowText(IDC_SPURVOR_FALL, {});
    CMDIRechDialog::GlobalWZDatChanged(vehicle);
}

bool CSpurVorDlg::RechneUndZeige(bool mitMeldungen)
{
    const CWaitCursor wait;
    const Befund befund = m_dat.Rechnen();
    m_geaendert = befund.ausgang != Ausgang::berechnet;
    if (m_geaendert)
        ResultsFailed();
    else
        ResultsComputed();
    ZeigeHinweis(befund);
    ShowText(IDC_SPURVOR_FALL, {});
    if (mitMeldungen)
        Melde(befund);
    const bool gelungen = befund.ausgang == Ausgang::berechnet && (!RuvCfg.transferData || Uebertrage(mitMeldungen));
    UpdateDialog();
    return gelungen;
}

bool CSpurVorDlg::Uebertrage(bool mitMeldungen)
{
    const CSpurVorDat::Uebertragung ausgang = m_dat.Uebertragen();
    switch (ausgang) {
    case CSpurVorDat::Uebertragung::keinPlatz:
        if (mitMeldungen)
            FehlerMeldung(this, 1343);
        return false;
    case CSpurVorDat::Uebertragung::keinFahrzeug:
        ShowText(IDC_SPURVOR_FALL, LoadRuvString(IDS_SPURVOR_KEIN_FAHRZEUG));
        return true;
    case CSpurVorDat::Uebertragung::nichtBerechnet:
        return true;
    case CSpurVorDat::Uebertragung::erfolgt:
    case CSpurVorDat::Uebertragung::geaendert:
        break;
    }
    const bool geaendert = ausgang == CSpurVorDat::Uebertragung::geaendert;
    const auto fahrzeug = static_cast<std::size_t>(m_dat.fahrzeug);
    const auto& abschnitte = m_dat.LetztesErgebnis()->fahrt.abschnitte;
    const auto anzahl =
        std::count_if(abschnitte.begin(), abschnitte.end(), [](const Fahrabschnitt& part) { return part.zeit > 0.0; });
    ShowText(IDC_SPURVOR_FALL,
             Eingesetzt(LoadRuvString(geaendert ? IDS_SPURVOR_GEAENDERT : IDS_SPURVOR_UEBERTRAGEN),
                        {KfzDat(fahrzeug).name, Phasennummer(m_dat.phase), Phasennummer(m_dat.phase + anzahl - 1)}));
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, fahrzeug);
    return true;
}

void CSpurVorDlg::Rechnen()
{
    RechneUndZeige(true);
}

void CSpurVorDlg::OnButtonOk()
{
    const bool aufStand = m_dat.berechnet != 0 && !m_geaendert;
    // Without room in the case the mask stays, so that another phase can be chosen.
    if (!aufStand && !RechneUndZeige(true) && m_dat.berechnet != 0)
        return;
    OnOK();
}

void CSpurVorDlg::OnTransferOption()
{
    RuvCfg.transferData = IsChecked(IDC_UEBERTRAGEN);
    if (RuvCfg.transferData && m_dat.berechnet != 0 && !m_geaendert)
        Uebertrage(true);
    UpdateDialog();
}

void CSpurVorDlg::OnGraphik()
{
    m_graphik.Show();
}

void CSpurVorDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    m_geaendert = true;
    ShowText(IDC_SPURVOR_HINWEIS, {});
    ShowText(IDC_SPURVOR_FALL, {});
    SendMessage(WM_RUV_UPDATEDIALOG);
}
