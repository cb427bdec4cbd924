// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CAbVorDlg.h"

#include "frame/RuvMod.h"
#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/AbbiegePlan.h"
#include "res/manoeuvre.h"

namespace
{

constexpr UINT kKeinText = 0;
constexpr WPARAM kKeinFahrzeug = static_cast<WPARAM>(-1);

using Ausgang = CAbDaten::Ausgang;

UINT Meldung(Ausgang ausgang)
{
    switch (ausgang) {
    case Ausgang::keinRadius:
        return 1336;
    case Ausgang::keineBewegung:
        return 1332;
    case Ausgang::keinEndradius:
        return 1335;
    case Ausgang::grenzeZuHoch:
        return 1339;
    case Ausgang::grenzeZuNiedrig:
        return 1340;
    case Ausgang::keinZiel:
        return 1349;
    default:
        return 1000;
    }
}

UINT Hinweis(Ausgang ausgang)
{
    switch (ausgang) {
    case Ausgang::berechnet:
        return kKeinText;
    case Ausgang::zuLang:
        return IDS_ABVOR_ZU_LANG;
    case Ausgang::nichtKonvergiert:
        return IDS_ABVOR_NICHT_KONVERGIERT;
    case Ausgang::unendlich:
        return IDS_ABVOR_UNENDLICH;
    default:
        return IDS_ABVOR_KEIN_ERGEBNIS;
    }
}

/// The string with the next "#" replaced by each number.
std::string MitNummern(UINT textId, std::initializer_list<std::size_t> numbers)
{
    std::string text = LoadRuvString(textId);
    for (const std::size_t number : numbers)
        if (const std::size_t at = text.find('#'); at != std::string::npos)
            text.replace(at, 1, std::to_string(number));
    return text;
}

} // namespace

CAbVorDlg::CAbVorDlg(CRuvData& data, UINT id)
    : CMDIRechDialog(id, MainWindow(), data, nullptr, nullptr), m_dat(data),
      m_graphik(IDD_ABVOR_GRAPHIK, IDC_ABVOR_GROSSES_ZEICHENFELD, *this, [this](CDC& dc) { ZeichnePlan(dc); })
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

CAbVorDlg::~CAbVorDlg()
{
    // A second mask that was opened later keeps its own.
    if (AbDat == &m_dat)
        AbDat = nullptr;
}

const CMessageMap* CAbVorDlg::GetMessageMap() const
{
    using Dlg = CAbVorDlg;
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<static_cast<LRESULT (Dlg::*)(WPARAM, LPARAM)>(&Dlg::UpdateDialog)>(WM_RUV_UPDATEDIALOG),
        OnMessage<&Dlg::EditModified>(WM_RUV_EDITCHANGED),
        OnControl<&Dlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&Dlg::Rechnen>(IDC_RECHNEN),
        OnControl<&Dlg::OnGraphik>(IDC_ABVOR_GRAPHIK),
        OnControl<&Dlg::OnSchalter>(IDC_UEBERTRAGEN),
        OnControl<&Dlg::SpurVorOK>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

BOOL CAbVorDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    return CMDIDialog::OnCommand(wParam, lParam);
}

void CAbVorDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_ABVOR_FAHRZEUG, 0, &m_dat.fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_ABVOR_PHASE, &m_dat.phase, m_editColors, m_editColors);
    phase->SetVehicle(&m_dat.fahrzeug);
}

void CAbVorDlg::SetupWindow()
{
    AbDat = &m_dat;
    m_dat.Oeffne();
    SetDrawing(IDC_ABVOR_ZEICHENFELD, [this](CDC& dc) { ZeichnePlan(dc); });
    CMDIRechDialog::SetupWindow();
}

void CAbVorDlg::UpdateDialog()
{
    Check(IDC_UEBERTRAGEN, RuvCfg.transferData);
    const bool ohneZiel = m_dat.gierziel == 0.0 && m_dat.weg == 0.0;
    ShowText(IDC_ABVOR_GEGEBEN, ohneZiel ? kKeinText : m_dat.BisWeg() ? IDS_ABVOR_WEG_GEGEBEN : IDS_ABVOR_GIER_GEGEBEN);
    SetFzgEditColors();
    CMDIRechDialog::UpdateDialog();
    m_graphik.Redraw();
}

LRESULT CAbVorDlg::UpdateDialog(WPARAM, LPARAM)
{
    UpdateDialog();
    return 0;
}

void CAbVorDlg::SetFzgEditColors()
{
    SetUseFzgColors(RuvCfg.useVehicleColors && m_data.IsFzgValid(m_dat.fahrzeug) ? FzgFarbSchluessel(m_dat.fahrzeug)
                                                                                 : -1);
}

void CAbVorDlg::GlobalGeoDatChanged(UINT_PTR vehicle)
{
    if (static_cast<std::int64_t>(vehicle) == m_dat.fahrzeug) {
        m_dat.LeseFahrzeug();
        m_dat.BerechneLenkradwinkel();
        RechneNach();
    }
    UpdateDialog();
}

void CAbVorDlg::GlobalWZDatChanged(UINT_PTR vehicle)
{
    // Somebody else changed the phases, or a step was taken back: what was said of the case may no longer be true.
    if (static_cast<std::int64_t>(vehicle) == m_dat.fahrzeug) {
        m_uebertragen = false;
        ShowText(IDC_ABVOR_FALL, kKeinText);
    }
    CMDIRechDialog::GlobalWZDatChanged(vehicle);
}

void CAbVorDlg::ChangeAbs(int alt, int neu)
{
    if (AbDat != nullptr)
        AbDat->PhaseUmnummeriert(alt, neu);
}

LRESULT CAbVorDlg::EditModified(WPARAM controlId, LPARAM)
{
    switch (controlId) {
    case IDC_ABVOR_FAHRZEUG:
        m_dat.FahrzeugGewechselt();
        BeginneNeu();
        break;
    case IDC_ABVOR_PHASE:
        m_dat.LeseSpalte();
        BeginneNeu();
        break;
    case IDC_ABVOR_LINKS:
    case IDC_ABVOR_RECHTS: {
        const bool uebertragen = m_uebertragen; // the turn in the case is mirrored and stays the former one
        m_dat.SeiteGewaehlt();
        m_uebertragen = uebertragen;
        break;
    }
    case IDC_ABVOR_VORWAERTS:
    case IDC_ABVOR_RUECKWAERTS:
        m_dat.ZeigeSeite();
        break;
    case IDC_ABVOR_ANFANGSRADIUS:
    case IDC_ABVOR_ENDRADIUS:
        m_dat.RadiusGeaendert();
        break;
    case IDC_ABVOR_GIERZIEL:
        m_dat.GierzielGeaendert();
        break;
    case IDC_ABVOR_WEG:
        m_dat.WegGeaendert();
        break;
    case IDC_ABVOR_ANFANGSGESCHW:
    case IDC_ABVOR_BESCHLEUNIGUNG:
        m_dat.GeschwindigkeitGeaendert();
        break;
    default:
        break;
    }
    RechneNach();
    SendMessage(WM_RUV_UPDATEDIALOG);
    return 0;
}

void CAbVorDlg::IncValue(int controlId)
{
    EditModified(static_cast<WPARAM>(controlId), 0);
}

/// Another turn is shown: nothing is said of the former one.
void CAbVorDlg::BeginneNeu()
{
    m_uebertragen = false;
    ResultsCleared();
    ShowText(IDC_ABVOR_HINWEIS, kKeinText);
    ShowText(IDC_ABVOR_FALL, kKeinText);
}

void CAbVorDlg::PruefeFahrzeug()
{
    if (!m_dat.FehlenMasse())
        return;
    FehlerMeldung(this, 1331);
    m_dat.ErgaenzeMasse();
}

Ausgang CAbVorDlg::Berechne()
{
    const CWaitCursor wartet;
    const Ausgang ausgang = m_dat.Rechnen([this](CAbDaten::Frage frage) {
        return FehlerMeldung(this, frage == CAbDaten::Frage::anhaltenAmZiel ? 1342 : 1344) == fehlerJa;
    });
    if (ausgang == Ausgang::berechnet)
        ResultsComputed();
    else
        ResultsCleared();
    // Until it is transferred the case holds what was transferred before.
    ShowText(IDC_ABVOR_FALL, m_uebertragen ? IDS_ABVOR_FALL_VORIGES : kKeinText);
    ZeigeHinweis(ausgang);
    return ausgang;
}

/// A calculated mask follows each change at once.
void CAbVorDlg::RechneNach()
{
    if (m_dat.berechnet == 0) {
        m_dat.VerwerfeLauf();
        return;
    }
    if (Berechne() == Ausgang::berechnet && RuvCfg.transferData)
        Uebertrage();
}

void CAbVorDlg::Rechnen()
{
    PruefeFahrzeug();
    m_dat.FrageErneut();
    const Ausgang ausgang = Berechne();
    if (ausgang != Ausgang::berechnet)
        FehlerMeldung(this, Meldung(ausgang));
    else if (RuvCfg.transferData)
        Uebertrage();
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CAbVorDlg::BerechneDrehWinkel()
{
    m_dat.BerechneLenkradwinkel();
    Update(IDC_ABVOR_LENKRADWINKEL);
}

void CAbVorDlg::SpurVorOK()
{
    if (!m_dat.HatErgebnis()) {
        PruefeFahrzeug();
        const Ausgang ausgang = Berechne();
        if (ausgang != Ausgang::berechnet)
            FehlerMeldung(this, Meldung(ausgang));
    }
    if (m_dat.HatErgebnis() && !Uebertrage())
        return;
    OnOK();
}

/// False when the turn has no place in the case; the user was told.
bool CAbVorDlg::Uebertrage()
{
    CAbDaten::Geschrieben geschrieben;
    const CAbDaten::Uebertragung ausgang = m_dat.Uebertragen(geschrieben);
    Update(IDC_ABVOR_PHASE);
    switch (ausgang) {
    case CAbDaten::Uebertragung::keinErgebnis:
        return true;
    case CAbDaten::Uebertragung::keinFahrzeug:
        ShowText(IDC_ABVOR_FALL, IDS_ABVOR_KEIN_FAHRZEUG);
        AfxMessageBox(LoadRuvString(IDS_ABVOR_KEIN_FAHRZEUG));
        return true;
    case CAbDaten::Uebertragung::keinPlatz:
        ShowText(IDC_ABVOR_FALL, IDS_ABVOR_KEIN_PLATZ);
        AfxMessageBox(LoadRuvString(IDS_ABVOR_KEIN_PLATZ));
        return false;
    case CAbDaten::Uebertragung::angepasst:
        ShowText(IDC_ABVOR_HINWEIS, IDS_ABVOR_ANGEPASST);
        break;
    case CAbDaten::Uebertragung::erfolgt:
        break;
    }
    m_uebertragen = true;
    const std::size_t phase =
        geschrieben.spalte - CWegZeitDat::kErsteSpalte + 1; // as the phases are counted for the user
    ShowText(IDC_ABVOR_FALL, geschrieben.anzahl == 1 ? MitNummern(IDS_ABVOR_UEBERTRAGEN_EINE, {phase})
                                                     : MitNummern(IDS_ABVOR_UEBERTRAGEN_ZWEI, {phase, phase + 1}));
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(m_dat.fahrzeug));
    return true;
}

void CAbVorDlg::OnSchalter()
{
    RuvCfg.transferData = IsChecked(IDC_UEBERTRAGEN);
    if (RuvCfg.transferData && m_dat.HatErgebnis())
        Uebertrage();
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
}

void CAbVorDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    ShowText(IDC_ABVOR_HINWEIS, kKeinText);
    ShowText(IDC_ABVOR_FALL, m_uebertragen ? IDS_ABVOR_FALL_VORIGES : kKeinText);
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CAbVorDlg::ZeigeHinweis(Ausgang ausgang)
{
    UINT text = Hinweis(ausgang);
    if (text == kKeinText && m_dat.ZielVerfehlt())
        text = m_dat.StehtAmEnde() ? IDS_ABVOR_STEHT : IDS_ABVOR_GERADE;
    if (text == kKeinText && m_dat.IstZuEng())
        text = IDS_ABVOR_ZU_ENG;
    ShowText(IDC_ABVOR_HINWEIS, text);
}

void CAbVorDlg::OnGraphik()
{
    m_graphik.Show();
}

void CAbVorDlg::ZeichnePlan(CDC& dc) const
{
    const bool vorhanden = m_data.IsFzgValid(m_dat.fahrzeug);
    const COLORREF farbe = vorhanden ? KfzDat(static_cast<std::size_t>(m_dat.fahrzeug)).color : RGB(60, 60, 60);
    abbiegen::ZeichnePlan(dc, m_dat.LetzterLauf(), m_dat.seite != 0, farbe);
}
