// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/CVideoDlg.h"

#include "host/Bindings.h"
#include "host/Charts.h"
#include "host/FehlerMeldung.h"
#include "host/Log.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoFrameDlg.h"
#include "masks/video/VideoBindungen.h"
#include "res/video.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace
{

using Dat = CVideoDat;
using Griff = Videobild::Griff;

constexpr double kHoeheZuBreite = 0.5;   // of the chart in reports
constexpr double kFeinerSchritt = 0.1;   // px of the arrow keys
constexpr double kGroberSchritt = 1.0;   // with Shift
constexpr double kHalbeMs = 0.000499999; // s
constexpr int kLangsamste = -3;          // 2^-3 of the speed
constexpr int kSchnellste = 2;
constexpr const char* kMuster[] = {"square", "trapez", "rhombus L", "rhombus R"};

std::string Text(UINT id, std::initializer_list<std::string> args)
{
    return Eingesetzt(LoadRuvString(id), args);
}

} // namespace

CVideoDlg::CVideoDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_VIDEO, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

CVideoDlg::~CVideoDlg() = default;

const CMessageMap* CVideoDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CVideoDlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CVideoDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnMessage<&CVideoDlg::OnHScroll>(WM_HSCROLL),
        OnMessage<&CVideoDlg::OnKeyDown>(WM_KEYDOWN),
        OnMessage<&CVideoDlg::OnTimer>(WM_TIMER),
        OnControl<&CVideoDlg::WaehleDatei>(IDC_IMPORT_WAEHLEN),
        OnControl<&CVideoDlg::OnZurueck>(IDC_VIDEO_ZURUECK),
        OnControl<&CVideoDlg::OnPlay>(IDC_VIDEO_PLAY),
        OnControl<&CVideoDlg::OnVor>(IDC_VIDEO_VOR),
        OnControl<&CVideoDlg::OnReset>(IDC_VIDEO_RESET),
        OnControl<&CVideoDlg::OnFaktorMinus>(IDC_VIDEO_FAKTOR_MINUS),
        OnControl<&CVideoDlg::OnFaktorPlus>(IDC_VIDEO_FAKTOR_PLUS),
        OnControl<&CVideoDlg::OnRuecknahme>(IDC_VIDEO_RUECKNAHME),
        OnControl<&CVideoDlg::OnNeueId>(IDC_VIDEO_NEUE_ID),
        OnControl<&CVideoDlg::OnVorschlag>(IDC_VIDEO_VORSCHLAG),
        OnControl<&CVideoDlg::OnPunkteLoeschen>(IDC_VIDEO_PUNKTE_LOESCHEN),
        OnControl<&CVideoDlg::OnLinseNehmen>(IDC_VIDEO_LINSE_NEHMEN),
        OnControl<&CVideoDlg::OnKomplettanalyse>(IDC_VIDEO_KOMPLETT),
        OnControl<&CVideoDlg::OnFrames>(IDC_VIDEO_FRAMES),
        OnControl<&CVideoDlg::OnTransfer>(IDOK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CVideoDlg::BuildObjects()
{
    RuvLog("CVideoDlg::BuildObjects", "Video analysis building objects started...");
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_IMPORT_FAHRZEUG, 0, &m_dat.auswahl.fahrzeug, nullptr, m_editColors, m_editColors);
    auto* phase = new CAbsCombo(this, IDC_IMPORT_PHASE, &m_dat.auswahl.phase, m_editColors, m_editColors);
    phase->SetVehicle(&m_dat.auswahl.fahrzeug);
    new CIdCombo(this, IDC_VIDEO_ID, &m_dat.id, m_dat.ids);
    new CVideozeit(this, IDC_VIDEO_ZEIT, &m_dat.stelle);
    RuvLog("CVideoDlg::BuildObjects", "Video analysis building objects finished successfully!");
}

void CVideoDlg::SetupWindow()
{
    RuvLog("CVideoDlg::SetupWindow", "Video analysis module opened!");
    m_dat.Laden();
    m_diagramm.Attach(GetDlgItem(IDC_IMPORT_DIAGRAMM), kHoeheZuBreite);
    m_diagramm.SetHint(LoadRuvString(IDS_VIDEO_KLICK));
    m_diagramm.OnRangeChanged([this] {
        if (!m_zeigtKurve)
            BereichGeaendert();
    });
    auto* feld = static_cast<CStatic*>(GetDlgItem(IDC_VIDEO_BILD));
    feld->SetPainter([this](CDC& dc, const CRect&) { m_bild.Zeichne(dc, false); });
    feld->SetReportPainter([this](CDC& dc, const CRect&) { m_bild.Zeichne(dc, true); }, kHoeheZuBreite);
    feld->SetMouse([this, feld](const CMouseEvent& ereignis) {
        const bool benutzt = m_bild.Maus(ereignis);
        feld->Invalidate();
        return benutzt;
    });
    feld->SetCursorShape(CursorShape::cross);
    m_bild.OnKlick([this](VisionPoint wo, std::optional<Griff> griff) { OnKlick(wo, griff); });
    m_bild.OnZug([this](Griff griff, VisionPoint wo, bool fertig) { OnZug(griff, wo, fertig); });
    static_cast<CSliderCtrl*>(GetDlgItem(IDC_VIDEO_TEMPO))->SetRange(kLangsamste, kSchnellste);
    constexpr auto kStaerkste = static_cast<int>(CDistortionRectifier::kMaxStrength);
    static_cast<CSliderCtrl*>(GetDlgItem(IDC_VIDEO_LINSE))->SetRange(-kStaerkste, kStaerkste);
    static_cast<CGridCtrl*>(GetDlgItem(IDC_VIDEO_BERICHT))->SetColumns({{LoadRuvString(IDS_VIDEO_BERICHT)}});
    CMDIRechDialog::SetupWindow();
    m_bild.SetBild(nullptr, LoadRuvString(IDS_VIDEO_OHNE));
    OeffneVideoDesFalls();
    m_gezeigtesMuster = m_dat.muster;
    m_gezeigteVerzeichnung = m_dat.verzeichnungKorrigieren;
    m_gezeigteId = m_dat.id;
    Zeige(false);
}

void CVideoDlg::ShutDownWindow()
{
    HalteAn();
    m_diagramm.OnRangeChanged({});
    m_diagramm.Attach(nullptr);
    RuvLog("CVideoDlg::ShutDownWindow", "Video analysis module closed!");
    CMDIRechDialog::ShutDownWindow();
}

void CVideoDlg::OnReset()
{
    HalteAn();
    m_suche.reset();
    m_angebot.reset();
    m_dat.Zuruecksetzen();
    m_aktiv.reset();
    ZeigeFrame(0);
    Zeige();
}

std::optional<Griff> CVideoDlg::Aktiv() const
{
    const Videospur* spur = m_dat.Spur();
    if (m_dat.werkzeug == Dat::begradigen)
        return m_aktiv && m_aktiv->art == Griff::Art::kante && m_dat.Kantenpunkt(m_aktiv->nummer) ? m_aktiv
                                                                                                  : std::nullopt;
    if (m_dat.werkzeug == Dat::verfolgen) {
        const bool hier = spur != nullptr && !spur->IstGefunden() && spur->ImBild(static_cast<int>(m_dat.bildnummer));
        if (hier && !(m_aktiv && m_aktiv->art == Griff::Art::punkt))
            return Griff{Griff::Art::klick, 0};
    }
    if (m_aktiv && m_aktiv->art == Griff::Art::punkt && m_aktiv->nummer < m_dat.Punkte().size())
        return m_aktiv;
    return std::nullopt;
}

void CVideoDlg::OnKlick(VisionPoint wo, std::optional<Griff> griff)
{
    if (!HatVideo())
        return;
    HalteAn();
    if (m_dat.werkzeug == Dat::begradigen) {
        if (!griff)
            m_dat.KlickeKante(wo);
        m_aktiv = griff;
        Zeige();
        return;
    }
    const std::size_t punkte = m_dat.Punkte().size();
    if (m_dat.werkzeug == Dat::kalibrieren) {
        if (griff && griff->art == Griff::Art::punkt) {
            m_aktiv = griff;
        } else if (punkte < 4) {
            m_dat.SetzePunkt(punkte, wo);
            m_aktiv = Griff{Griff::Art::punkt, punkte};
            if (m_dat.Punkte().size() == 4)
                m_dat.werkzeug = Dat::verfolgen;
        }
        Zeige();
        return;
    }
    KlickeFahrzeug(wo);
}

void CVideoDlg::OnZug(Griff griff, VisionPoint wo, bool fertig)
{
    m_aktiv = griff;
    if (griff.art == Griff::Art::punkt) {
        m_dat.SetzePunkt(griff.nummer, wo);
    } else if (griff.art == Griff::Art::kante) {
        m_dat.SetzeKantenpunkt(griff.nummer, wo);
    } else if (Videospur* spur = m_dat.Spur()) {
        spur->Setze(static_cast<int>(m_dat.bildnummer), m_dat.stelle, wo);
        m_dat.Rechne();
    }
    Zeige(fertig);
}

void CVideoDlg::OnRuecknahme()
{
    HalteAn();
    if (m_dat.werkzeug == Dat::begradigen) {
        const bool da = m_dat.NimmKantenpunktZurueck();
        Zeige();
        Status(LoadRuvString(da ? IDS_VIDEO_KANTENPUNKT_GENOMMEN : IDS_VIDEO_KEIN_KANTENPUNKT));
        return;
    }
    const std::string id = std::to_string(m_dat.id);
    const auto bild = m_dat.NimmZurueck();
    if (!bild) {
        Status(LoadRuvString(IDS_VIDEO_NICHTS_ZURUECK));
        return;
    }
    ZeigeFrame(*bild);
    Zeige();
    Status(Text(IDS_VIDEO_GENOMMEN, {id}));
}

void CVideoDlg::OnNeueId()
{
    if (m_dat.werkzeug == Dat::begradigen) {
        m_dat.NeueKante();
        m_aktiv.reset();
        Zeige();
        return;
    }
    m_dat.NeueSpur();
    m_dat.werkzeug = Dat::verfolgen;
    m_aktiv.reset();
    Zeige();
}

void CVideoDlg::OnLinseNehmen()
{
    m_dat.NimmLinse();
    IncValue(IDC_VIDEO_VERZEICHNUNG);
}

void CVideoDlg::OnPunkteLoeschen()
{
    if (m_dat.werkzeug == Dat::begradigen) {
        m_dat.LoescheKanten();
        m_aktiv.reset();
        Zeige();
        return;
    }
    m_dat.LoeschePunkte();
    m_dat.werkzeug = Dat::kalibrieren;
    m_aktiv.reset();
    Zeige();
}

LRESULT CVideoDlg::OnKeyDown(WPARAM key, LPARAM how)
{
    if (KeyControl(how) != IDC_VIDEO_BILD)
        return 1;
    VisionPoint um{};
    switch (key) {
    case VK_LEFT:
        um.x = -1.0;
        break;
    case VK_RIGHT:
        um.x = 1.0;
        break;
    case VK_UP:
        um.y = -1.0;
        break;
    case VK_DOWN:
        um.y = 1.0;
        break;
    case VK_PRIOR:
        OnZurueck();
        return 0;
    case VK_NEXT:
        OnVor();
        return 0;
    case VK_SPACE:
        OnPlay();
        return 0;
    case VK_BACK:
        OnRuecknahme();
        return 0;
    case VK_RETURN:
        if (!Vorschlag())
            return 1;
        OnVorschlag();
        return 0;
    case VK_HOME:
        m_bild.ZeigeGanz();
        GetDlgItem(IDC_VIDEO_BILD)->Invalidate();
        return 0;
    default:
        return 1;
    }
    const auto griff = Aktiv();
    if (!griff)
        return 0;
    const double weite = (KeyModifiers(how) & MK_SHIFT) != 0 ? kGroberSchritt : kFeinerSchritt;
    VisionPoint wo;
    if (griff->art == Griff::Art::punkt) {
        wo = m_dat.Punkte()[griff->nummer];
    } else if (griff->art == Griff::Art::kante) {
        wo = *m_dat.Kantenpunkt(griff->nummer);
    } else {
        const Videospur& spur = *m_dat.Spur();
        wo = spur.eintraege[*spur.ImBild(static_cast<int>(m_dat.bildnummer))].punkt.point;
    }
    wo = {std::clamp(wo.x + um.x * weite, 0.0, m_dat.bildgroesse[0]),
          std::clamp(wo.y + um.y * weite, 0.0, m_dat.bildgroesse[1])};
    OnZug(*griff, wo, true);
    return 0;
}

LRESULT CVideoDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    if (m_dat.IstFremd()) { // a step taken back, or another window of this mask
        m_suche.reset();
        m_angebot.reset();
        m_ungemerkt = false;
        HalteAn();
        m_dat.Laden();
        m_aktiv.reset();
        if (m_data.Video().datei.empty() ? HatVideo() : m_data.Video().sha256 != m_offen)
            OeffneVideoDesFalls();
        m_gezeigtesMuster = m_dat.muster;
        m_gezeigteVerzeichnung = m_dat.verzeichnungKorrigieren;
        m_gezeigteId = m_dat.id;
    }
    Zeige(false);
    return 0;
}

LRESULT CVideoDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    IncValue(static_cast<int>(controlId));
    return 0;
}

void CVideoDlg::IncValue(int controlId)
{
    switch (controlId) {
    case IDC_VIDEO_ZEIT:
        if (HatVideo())
            GeheZu(m_leser->FrameAt(m_dat.stelle + kHalbeMs));
        else
            m_dat.stelle = 0.0;
        Update(IDC_VIDEO_ZEIT);
        return;
    case IDC_IMPORT_VON:
    case IDC_IMPORT_BIS: {
        const bool genommen = m_diagramm.TakeTyped(m_dat.auswahl.von, m_dat.auswahl.bis);
        BereichGeaendert();
        if (!genommen)
            ShowPrompt(IDC_IMPORT_HINWEIS, IDS_IMPORT_KEINE_ZEILE);
        return;
    }
    case IDC_IMPORT_PHASE:
        RuvLog("CVideoDlg::OnEditChanged", "Vehicle phase changed");
        break;
    case IDC_VIDEO_FAKTOR:
        m_dat.TippeFaktor();
        break;
    case IDC_VIDEO_KAMERAHOEHE:
        m_dat.TippeKameraHoehe();
        break;
    case IDC_VIDEO_PUNKTHOEHE:
        m_dat.TippePunktHoehe();
        break;
    case IDC_VIDEO_ID:
        m_dat.WaehleSpur(m_dat.id);
        break;
    default:
        m_dat.Rechne();
        break;
    }
    if (m_dat.id != m_gezeigteId)
        RuvLog("CVideoDlg::OnEditChanged", "Vehicle ID " + std::to_string(m_dat.id) + " selected");
    if (m_dat.muster != m_gezeigtesMuster)
        RuvLog("CVideoDlg::OnEditChanged", std::string("Perspective rectify square mode changed to: ") +
                                               kMuster[static_cast<std::size_t>(m_dat.muster) % std::size(kMuster)]);
    if (m_dat.verzeichnungKorrigieren != m_gezeigteVerzeichnung)
        RuvLog("CVideoDlg::OnEditChanged", m_dat.verzeichnungKorrigieren != 0 ? "Distortion rectification enabled"
                                                                              : "Distortion rectification disabled");
    m_gezeigteId = m_dat.id;
    m_gezeigtesMuster = m_dat.muster;
    m_gezeigteVerzeichnung = m_dat.verzeichnungKorrigieren;
    Zeige();
}

LRESULT CVideoDlg::OnHScroll(WPARAM position, LPARAM controlId)
{
    const auto wert = static_cast<std::int64_t>(static_cast<std::int32_t>(position));
    if (controlId == IDC_VIDEO_TEMPO) {
        m_dat.abspielstufe = std::clamp<std::int64_t>(wert, kLangsamste, kSchnellste);
    } else if (controlId == IDC_VIDEO_LINSE) {
        constexpr auto kStaerkste = static_cast<std::int64_t>(CDistortionRectifier::kMaxStrength);
        m_dat.StelleLinse(std::clamp(wert, -kStaerkste, kStaerkste));
    }
    Zeige();
    return 0;
}

void CVideoDlg::SchrittFaktor(double um)
{
    m_dat.faktor = std::round((m_dat.faktor + um) * 1000.0) / 1000.0;
    if (m_dat.faktor < CVideoDat::kSchrittFaktor)
        m_dat.faktor = CVideoDat::kSchrittFaktor;
    m_dat.TippeFaktor();
    Zeige();
}

void CVideoDlg::OnFrames()
{
    HalteAn();
    CVideoFrameDlg dialog(this);
    dialog.DoModal();
}

void CVideoDlg::ApplyFrameRateChanges()
{
    constexpr const char* kContext = "CVideoDlg::ApplyFrameRateChanges";
    m_dat.Rechne();
    if (const Videospur* spur = m_dat.Spur(); spur == nullptr)
        RuvLog(kContext, "Vehicle ID not selected");
    else if (spur->eintraege.empty())
        RuvLog(kContext, "Speed info vector empty");
    else
        RuvLog(kContext,
               spur->gewaehlteLaengen ? "Speed graph using forced frame rate" : "Speed graph using native frame rate");
    Zeige();
}

std::optional<chart::Rows> CVideoDlg::Bereich() const
{
    const auto bereich = m_diagramm.Range();
    return bereich && bereich->Count() > 1 ? bereich : std::nullopt;
}

void CVideoDlg::BereichGeaendert()
{
    m_dat.auswahl.von = m_diagramm.RangeFrom();
    m_dat.auswahl.bis = m_diagramm.RangeTo();
    m_dat.RechneMittel(m_dat.auswahl.von, m_dat.auswahl.bis);
    ZeigeTexte();
    UpdateDialog();
    m_dat.Merken();
}

void CVideoDlg::OnTransfer()
{
    const auto bereich = Bereich();
    if (!bereich)
        return;
    const Dat::Verlauf verlauf = m_dat.MacheVerlauf(bereich->first, bereich->last);
    const Fahrtbefund befund = m_dat.Uebertrage(verlauf);
    UpdateDialog();
    std::string vorne;
    if (befund.IstGeschrieben()) {
        const std::array<ShownNumber, 3> zahlen{
            {{verlauf.weg, units::m}, {verlauf.kurvenWeg, units::m}, {verlauf.toleranz, units::kmh, 1}}};
        vorne = Zahltext(IDC_IMPORT_HINWEIS, IDS_VIDEO_VERLAUF_VORNE, zahlen);
    }
    ShowText(IDC_IMPORT_HINWEIS, vorne + Zahltext(IDC_IMPORT_HINWEIS, befund.text, befund.zahlen));
    if (CWnd* main = MainWindow(); main != nullptr && befund.IstGeschrieben())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(m_dat.auswahl.fahrzeug));
}

std::optional<ReadRows> CVideoDlg::RowsRead()
{
    ReadRows rows;
    rows.titles = {"time [s]", "speed [km/h]", "uncertainty [km/h]", "frame", "fit [km/h]"};
    rows.count = m_dat.zeit.size();
    rows.get = [this](std::size_t zeile, std::span<double> werte) {
        werte[0] = m_dat.zeit[zeile];
        werte[1] = m_dat.geschwindigkeit[zeile];
        werte[2] = m_dat.unsicherheit[zeile];
        werte[3] = static_cast<double>(m_dat.bild[zeile]);
        werte[4] = std::isnan(m_dat.ausgleich[zeile]) ? kNichtVorhanden : m_dat.ausgleich[zeile];
    };
    rows.file = m_dat.Videopfad();
    return rows;
}
