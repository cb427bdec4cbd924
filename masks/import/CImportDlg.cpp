// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CImportDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/CRuvFileDialog.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "res/import.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace
{

constexpr UINT kAbgelehnt = 1093;
/// Characters that a line of the report has room for.
constexpr std::size_t kBerichtsbreite = 140;

bool IstFolgebyte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// Lines of a text, broken between words.
std::vector<std::string> Umgebrochen(const std::string& text)
{
    std::vector<std::string> zeilen{""};
    std::size_t breite = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t ende = std::min(text.find(' ', at), text.size() - 1) + 1;
        const std::string wort = text.substr(at, ende - at);
        const auto zeichen =
            static_cast<std::size_t>(std::count_if(wort.begin(), wort.end(), [](char c) { return !IstFolgebyte(c); }));
        if (breite > 0 && breite + zeichen > kBerichtsbreite) {
            zeilen.emplace_back("      ");
            breite = zeilen.back().size();
        }
        zeilen.back() += wort;
        breite += zeichen;
        at = ende;
    }
    return zeilen;
}

} // namespace

CImportDlg::CImportDlg(UINT nummer, CRuvData& data, Dateiart art)
    : CMDIRechDialog(nummer, nullptr, data, nullptr, nullptr), m_art(art)
{
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CImportDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CImportDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CImportDlg::WaehleDatei>(IDC_IMPORT_WAEHLEN),
        OnControl<&CImportDlg::OnUebertragen>(IDC_UEBERTRAGEN),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 1),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 2),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 3),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 4),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 5),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 6),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 7),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 8),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 9),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 10),
        OnControl<&CImportDlg::ZeigeVorhanden>(IDC_IMPORT_VORHANDEN + 11),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CImportDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_IMPORT_FAHRZEUG, 0, &Auswahl().fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_IMPORT_PHASE, &Auswahl().phase, m_editColors, m_editColors);
    phase->SetVehicle(&Auswahl().fahrzeug);
}

void CImportDlg::SetupWindow()
{
    m_diagramm.Attach(GetDlgItem(IDC_IMPORT_DIAGRAMM));
    m_diagramm.SetHint(LoadRuvString(IDS_IMPORT_KLICK));
    m_diagramm.SetMostRows(MeisteFahrzeilen(Auswahl().phase));
    m_diagramm.OnRangeChanged([this] { BereichGeaendert(); });
    static_cast<CGridCtrl*>(GetDlgItem(IDC_IMPORT_BERICHT))->SetColumns({{LoadRuvString(IDS_IMPORT_BEFUND)}});
    CMDIRechDialog::SetupWindow();
    ZeigeDatei();
}

void CImportDlg::ShutDownWindow()
{
    m_diagramm.OnRangeChanged({});
    m_diagramm.Attach(nullptr);
    CMDIRechDialog::ShutDownWindow();
}

void CImportDlg::WaehleDatei()
{
    CRuvFileDialog dialog(true, m_art.endung, Auswahl().pfad, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST, m_art.filter, this);
    if (dialog.DoModal() == IDOK)
        Importiere(dialog.GetPathName());
}

void CImportDlg::Importiere()
{
    if (Auswahl().pfad.empty())
        WaehleDatei();
    else
        Importiere(Auswahl().pfad);
}

void CImportDlg::Importiere(std::string pfad)
{
    const std::string vorher = std::exchange(Auswahl().pfad, std::move(pfad));
    m_data.BroadcastMessage(WM_RUV_BEFOREIMPORT, 0, 0, this);
    ReadData();
    Lesung lesung;
    {
        const CWaitCursor wait;
        lesung = Lies();
    }
    if (lesung == Lesung::abgebrochen) {
        Auswahl().pfad = vorher;
        return;
    }
    ZeigeDatei();
    if (lesung == Lesung::abgelehnt)
        FehlerMeldung(this, kAbgelehnt);
}

void CImportDlg::ZeigeDatei()
{
    GetDlgItem(IDC_IMPORT_PFAD)->SetWindowText(Auswahl().pfad);
    Kurve kurve = MacheKurve();
    const bool bekannt = std::any_of(kurve.geschwindigkeiten.begin(), kurve.geschwindigkeiten.end(),
                                     [](double v) { return std::isfinite(v); });
    if (bekannt)
        m_diagramm.SetSeries({{.name = LoadRuvString(IDS_IMPORT_KURVE),
                               .x = std::make_shared<const std::vector<double>>(std::move(kurve.zeiten)),
                               .y = std::make_shared<const std::vector<double>>(std::move(kurve.geschwindigkeiten))}});
    else
        m_diagramm.Clear();
    ZeigeBericht();
    ZeigeVorhanden();
    ZeigeDaten();
    BereichGeaendert();
}

void CImportDlg::ZeigeBericht()
{
    std::vector<CGridCtrl::Row> zeilen;
    for (Berichtszeile& zeile : MacheBericht())
        for (std::string& teil : Umgebrochen(zeile.was + ": " + zeile.text))
            zeilen.push_back({std::move(teil)});
    static_cast<CGridCtrl*>(GetDlgItem(IDC_IMPORT_BERICHT))->SetRows(std::move(zeilen));
}

/// The boxes only show what the file holds: a click on one changes nothing.
void CImportDlg::ZeigeVorhanden()
{
    UINT feld = IDC_IMPORT_VORHANDEN;
    for (const std::uint8_t vorhanden : Vorhanden())
        Check(feld++, vorhanden != 0);
}

std::optional<chart::Rows> CImportDlg::Bereich() const
{
    const auto bereich = m_diagramm.Range();
    return bereich && bereich->Count() > 1 ? bereich : std::nullopt;
}

void CImportDlg::BereichGeaendert()
{
    Auswahl().von = m_diagramm.RangeFrom();
    Auswahl().bis = m_diagramm.RangeTo();
    Enable(IDC_UEBERTRAGEN, Bereich() ? TRUE : FALSE);
    ShowPrompt(IDC_IMPORT_HINWEIS, Bereich()              ? 0U
                                   : m_diagramm.IsEmpty() ? IDS_IMPORT_ERST_DATEI
                                                          : IDS_IMPORT_ERST_ZEITRAUM);
    ZeigeWeiteres();
    UpdateDialog();
}

LRESULT CImportDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    const bool getippt = controlId == IDC_IMPORT_VON || controlId == IDC_IMPORT_BIS;
    const bool genommen = !getippt || m_diagramm.TakeTyped(Auswahl().von, Auswahl().bis);
    m_diagramm.SetMostRows(MeisteFahrzeilen(Auswahl().phase));
    BereichGeaendert();
    if (!genommen)
        ShowPrompt(IDC_IMPORT_HINWEIS, IDS_IMPORT_KEINE_ZEILE);
    return 0;
}

void CImportDlg::OnUebertragen()
{
    if (const auto bereich = Bereich())
        ZeigeUebertragung(Uebertrage(bereich->first, bereich->last));
}

void CImportDlg::ZeigeUebertragung(const Fahrtbefund& befund)
{
    UpdateDialog();
    ShowText(IDC_IMPORT_HINWEIS, befund.text, befund.zahlen);
    if (CWnd* main = MainWindow(); main != nullptr && befund.IstGeschrieben())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(Auswahl().fahrzeug));
}
