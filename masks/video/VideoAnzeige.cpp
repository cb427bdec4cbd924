// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494: what it shows of its record.
#include "host/Charts.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoDlg.h"
#include "res/video.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

namespace
{

using Dat = CVideoDat;

constexpr double kK = 2.0; // coverage factor of what is shown
constexpr std::size_t kKantenteile = 16;
constexpr const char* kAbstaende[Dat::kAbstaende] = {"P1 - P2", "P2 - P4", "P4 - P3", "P3 - P1", "P1 - P4", "P2 - P3"};
/// The quadrilateral's sides by the numbers of their points.
constexpr std::pair<std::size_t, std::size_t> kSeiten[] = {{0, 1}, {1, 3}, {3, 2}, {2, 0}};

std::string Text(UINT id, std::initializer_list<std::string> args)
{
    return Eingesetzt(LoadRuvString(id), args);
}

chart::Values Geteilt(std::vector<double> werte)
{
    return std::make_shared<const std::vector<double>>(std::move(werte));
}

} // namespace

void CVideoDlg::Zeige(bool merken)
{
    ZeigeInhalt();
    ZeigeKurve();
    ZeigeTexte();
    UpdateDialog();
    static_cast<CSliderCtrl*>(GetDlgItem(IDC_VIDEO_TEMPO))->SetPos(static_cast<int>(m_dat.abspielstufe));
    static_cast<CSliderCtrl*>(GetDlgItem(IDC_VIDEO_LINSE))->SetPos(static_cast<int>(m_dat.linsenstaerke));
    if (merken)
        m_dat.Merken();
}

void CVideoDlg::ZeigeInhalt()
{
    Videobild::Inhalt inhalt;
    const auto bild = static_cast<int>(m_dat.bildnummer);
    m_dat.objekte = 0;
    for (const auto& [nummer, spur] : m_dat.Spuren()) {
        const bool gewaehlt = nummer == m_dat.id;
        if (const auto hier = spur.ImBild(bild)) {
            const Videospur::Eintrag& e = spur.eintraege[*hier];
            inhalt.objekte.push_back(
                {nummer, e.punkt.point, e.breite, e.hoehe, m_dat.Beschriftung(nummer, bild), gewaehlt});
            ++m_dat.objekte;
        }
        for (const Videospur::Eintrag& e : spur.eintraege)
            if (gewaehlt && e.punkt.frame != bild)
                inhalt.spur.push_back(e.punkt.point);
    }
    if (m_dat.bereichZeigen != 0) {
        inhalt.punkte = m_dat.Punkte();
        // Straight on the road, bent by the lens.
        CDistortionRectifier linse;
        linse.SetCameraParam(static_cast<int>(m_dat.bildgroesse[0]), static_cast<int>(m_dat.bildgroesse[1]),
                             m_dat.Staerke());
        for (const auto& [von, bis] : kSeiten) {
            if (std::max(von, bis) >= inhalt.punkte.size())
                continue;
            const VisionPoint a = linse.Straighten(inhalt.punkte[von]);
            const VisionPoint b = linse.Straighten(inhalt.punkte[bis]);
            std::vector<VisionPoint> kante;
            for (std::size_t i = 0; i <= kKantenteile; ++i) {
                const double teil = static_cast<double>(i) / kKantenteile;
                kante.push_back(linse.Bend({a.x + teil * (b.x - a.x), a.y + teil * (b.y - a.y)}));
            }
            inhalt.kanten.push_back(std::move(kante));
        }
    }
    inhalt.nurKanten = m_dat.werkzeug == Dat::begradigen;
    if (inhalt.nurKanten || m_dat.bereichZeigen != 0)
        inhalt.gerade = m_dat.Kanten();
    inhalt.aktiv = Aktiv();
    const auto vorschlag = Vorschlag();
    if (vorschlag)
        inhalt.vorschlag = {*vorschlag, Text(IDS_VIDEO_VORSCHLAG_SCHILD, {RuvNumberText(m_angebot->korrelation, 2)})};
    Enable(IDC_VIDEO_VORSCHLAG, vorschlag ? TRUE : FALSE);
    inhalt.punkteZuerst = m_dat.werkzeug == Dat::kalibrieren;
    m_bild.SetInhalt(std::move(inhalt));
    Update(IDC_VIDEO_ZEIT);
    Update(IDC_VIDEO_OBJEKTE);
    GetDlgItem(IDC_VIDEO_BILD)->Invalidate();
}

void CVideoDlg::ZeigeKurve()
{
    std::vector<chart::Series> reihen;
    const std::vector<std::size_t> zeilen = m_dat.Kurvenzeilen();
    if (!zeilen.empty()) {
        std::vector<double> zeiten;
        std::vector<double> werte;
        for (const std::size_t i : zeilen) {
            zeiten.push_back(m_dat.zeit[i]);
            werte.push_back(m_dat.Kurvenwerte()[i]);
        }
        const bool roh = m_dat.kurve == Dat::gemessen;
        reihen.push_back({.name = LoadRuvString(roh ? IDS_VIDEO_MESSWERTE : IDS_VIDEO_AUSGLEICH),
                          .x = Geteilt(std::move(zeiten)),
                          .y = Geteilt(std::move(werte)),
                          .color = chart::kCurveColors[0],
                          .width = 2.0});
        const auto alleZeiten = Geteilt(m_dat.zeit);
        reihen.push_back({.name = LoadRuvString(roh ? IDS_VIDEO_AUSGLEICH : IDS_VIDEO_MESSWERTE),
                          .x = alleZeiten,
                          .y = Geteilt(roh ? m_dat.ausgleich : m_dat.geschwindigkeit),
                          .color = chart::kCurveColors[1],
                          .width = 0.8});
        std::vector<double> oben(m_dat.zeit.size());
        std::vector<double> unten(m_dat.zeit.size());
        for (std::size_t i = 0; i < oben.size(); ++i) {
            const double u = m_dat.ausgleichU[i];
            const double band = std::isfinite(u) ? kK * u : std::nan("");
            oben[i] = m_dat.ausgleich[i] + band;
            unten[i] = m_dat.ausgleich[i] - band;
        }
        for (auto& [text, grenze] :
             {std::pair<UINT, std::vector<double>*>{IDS_VIDEO_OBEN, &oben}, {IDS_VIDEO_UNTEN, &unten}})
            reihen.push_back({.name = LoadRuvString(text),
                              .x = alleZeiten,
                              .y = Geteilt(std::move(*grenze)),
                              .color = chart::kCurveColors[5],
                              .width = 0.8});
    }
    // The range is one of times: it stays while the curve changes.
    m_zeigtKurve = true;
    const double von = m_dat.auswahl.von;
    const double bis = m_dat.auswahl.bis;
    m_diagramm.SetSeries(std::move(reihen));
    if (!m_diagramm.IsEmpty() && !std::isnan(von))
        m_diagramm.TakeTyped(von, bis);
    m_dat.auswahl.von = m_diagramm.RangeFrom();
    m_dat.auswahl.bis = m_diagramm.RangeTo();
    m_dat.RechneMittel(m_dat.auswahl.von, m_dat.auswahl.bis);
    m_zeigtKurve = false;
}

std::string CVideoDlg::Zahltext(UINT control, UINT text, std::span<const ShownNumber> zahlen)
{
    ShowText(control, text, zahlen);
    return GetDlgItem(control)->GetWindowText();
}

void CVideoDlg::Status(const std::string& text)
{
    ShowText(IDC_VIDEO_STATUS, text);
}

void CVideoDlg::ZeigeTexte()
{
    GetDlgItem(IDC_IMPORT_PFAD)->SetWindowText(m_dat.Videopfad());
    const auto stufe = m_dat.abspielstufe;
    ShowPrompt(IDC_VIDEO_TEMPO_WERT,
               stufe < 0 ? "1/" + std::to_string(1LL << -stufe) : std::to_string(1LL << stufe) + "×");
    ZeigeStrasse();
    ZeigeLinse();
    ZeigeMittel();
    ZeigeVerlauf();
    ZeigeBericht();
}

void CVideoDlg::ZeigeStrasse()
{
    const bool kalibriert = m_dat.rate > 0.0;
    const bool mitKamera = kalibriert && m_dat.brennweite > 0.0 && m_dat.Strasse().CameraHeight();
    if (!HatVideo() && m_dat.bildgroesse[0] == 0.0) {
        ShowPrompt(IDC_VIDEO_STRASSE, IDS_VIDEO_ERST_VIDEO);
    } else if (!kalibriert && m_dat.Punkte().size() < 4) {
        ShowPrompt(IDC_VIDEO_STRASSE, Text(IDS_VIDEO_PUNKT_SETZEN, {"P" + std::to_string(m_dat.Punkte().size() + 1)}));
    } else if (!kalibriert) {
        ShowText(IDC_VIDEO_STRASSE, Explain(m_dat.Strasse().Fault()));
    } else if (mitKamera) {
        const std::array<ShownNumber, 3> zahlen{
            {{m_dat.rate, units::m}, {m_dat.brennweite, {"px"}, 0}, {*m_dat.Strasse().CameraHeight(), units::m}}};
        ShowText(IDC_VIDEO_STRASSE, IDS_VIDEO_STRASSE, zahlen);
    } else {
        const std::array<ShownNumber, 1> zahlen{{{m_dat.rate, units::m}}};
        ShowText(IDC_VIDEO_STRASSE, IDS_VIDEO_OHNE_KAMERA, zahlen);
    }
    // The report names them in its own lines.
    for (std::size_t i = 0; i < Dat::kAbstaende; ++i)
        ShowPrompt(IDC_VIDEO_REST + static_cast<UINT>(i), Resttext(i));
    ShowText(IDC_VIDEO_FAKTOR_HERKUNFT, m_dat.FaktorIstGetippt()     ? IDS_VIDEO_GETIPPT
                                        : m_dat.FaktorIstUnbekannt() ? IDS_VIDEO_OHNE_HOEHE
                                                                     : IDS_VIDEO_VORGABE);
}

void CVideoDlg::ZeigeLinse()
{
    const bool kanten = m_dat.werkzeug == Dat::begradigen;
    GetDlgItem(IDC_VIDEO_NEUE_ID)->SetWindowText(LoadRuvString(kanten ? IDS_VIDEO_NEUE_KANTE : IDS_VIDEO_NEUE_ID));
    ShowPrompt(IDC_VIDEO_LINSE_WERT, RuvNumberText(m_dat.Linsenstaerke(), m_dat.staerkeAusKanten != 0 ? 1 : 0));
    const auto& linse = m_dat.Linse();
    Enable(IDC_VIDEO_LINSE_NEHMEN, linse && (m_dat.staerkeAusKanten == 0 || m_dat.verzeichnungKorrigieren == 0));
    if (linse) {
        const std::array<ShownNumber, 2> zahlen{
            {{linse->strength, units::none, 1}, {kK * linse->uncertainty, units::none, 1}}};
        ShowPrompt(IDC_VIDEO_LINSE_VORSCHLAG, Zahltext(IDC_VIDEO_LINSE_VORSCHLAG, IDS_VIDEO_LINSE_VORSCHLAG, zahlen));
    } else {
        ShowPrompt(IDC_VIDEO_LINSE_VORSCHLAG, kanten ? IDS_VIDEO_LINSE_KLICKEN : 0U);
    }
}

/// The lens as it counts, for the report; empty without.
std::string CVideoDlg::Linsentext()
{
    if (m_dat.verzeichnungKorrigieren == 0)
        return {};
    std::size_t punkte = 0;
    for (const auto& kante : m_dat.Kanten())
        punkte += kante.size();
    return Text(m_dat.staerkeAusKanten != 0 ? IDS_VIDEO_BERICHT_LINSE_KANTEN : IDS_VIDEO_BERICHT_LINSE,
                {RuvNumberText(m_dat.Linsenstaerke(), 1), RuvNumberText(kK * m_dat.Staerkeunsicherheit(), 1),
                 std::to_string(m_dat.Kanten().size()), std::to_string(punkte)});
}

/// Measured less computed, of a distance; empty where none was measured.
std::string CVideoDlg::Resttext(std::size_t abstand)
{
    const double rest = m_dat.reste[abstand];
    if (std::isnan(rest))
        return {};
    const std::array<ShownNumber, 1> zahl{{{rest, units::m, 3}}};
    return Zahltext(IDC_VIDEO_REST + static_cast<UINT>(abstand),
                    CPerspectiveRectifier::IsSuspicious(rest) ? IDS_VIDEO_REST_GROSS : IDS_VIDEO_REST, zahl);
}

void CVideoDlg::ZeigeMittel()
{
    const Videospur* spur = m_dat.Spur();
    if (spur == nullptr || std::isnan(m_dat.mittel)) {
        if (spur == nullptr && m_dat.rate > 0.0)
            ShowPrompt(IDC_VIDEO_MITTEL, IDS_VIDEO_FAHRZEUG_KLICKEN);
        else if (spur != nullptr)
            ShowPrompt(IDC_VIDEO_MITTEL, IDS_VIDEO_KEIN_MITTEL);
        else
            ShowPrompt(IDC_VIDEO_MITTEL, 0U);
        return;
    }
    const std::array<ShownNumber, 2> zahlen{{{m_dat.mittel, units::kmh, 1}, {kK * m_dat.mittelU, units::kmh, 1}}};
    ShowText(IDC_VIDEO_MITTEL,
             !std::isfinite(m_dat.mittelU)         ? IDS_VIDEO_UNSICHER
             : m_dat.Mittelart() == MeanKind::line ? IDS_VIDEO_MITTEL
                                                   : IDS_VIDEO_MITTEL_POLYGON,
             zahlen);
}

/// What a transfer would write, before it does.
void CVideoDlg::ZeigeVerlauf()
{
    const auto bereich = Bereich();
    Enable(IDOK, bereich ? TRUE : FALSE);
    if (!bereich) {
        ShowPrompt(IDC_IMPORT_HINWEIS, m_dat.Spur() == nullptr ? 0U : IDS_VIDEO_ERST_ZEITRAUM);
        return;
    }
    const Dat::Verlauf verlauf = m_dat.MacheVerlauf(bereich->first, bereich->last);
    const std::array<ShownNumber, 4> zahlen{{{static_cast<double>(verlauf.zeilen.size()) - 1.0, units::none, 0},
                                             {verlauf.toleranz, units::kmh, 1},
                                             {verlauf.weg, units::m},
                                             {verlauf.kurvenWeg, units::m}}};
    ShowPrompt(IDC_IMPORT_HINWEIS, Zahltext(IDC_IMPORT_HINWEIS, IDS_VIDEO_UEBERTRAEGT, zahlen));
}

void CVideoDlg::ZeigeBericht()
{
    std::vector<CGridCtrl::Row> zeilen;
    if (!m_data.Video().datei.empty()) {
        zeilen.push_back({Text(IDS_VIDEO_BERICHT_DATEI, {m_dat.Videopfad()})});
        zeilen.push_back({Text(IDS_VIDEO_BERICHT_SHA, {m_data.Video().sha256})});
    }
    if (HatVideo()) {
        zeilen.push_back({Text(IDS_VIDEO_BERICHT_BILDER,
                               {std::to_string(m_leser->GetFrameCount()), std::to_string(m_leser->GetWidth()),
                                std::to_string(m_leser->GetHeight()), RuvNumberText(m_leser->GetFPS(), 3)})});
        if (m_leser->Rotation() != 0)
            zeilen.push_back({Text(IDS_VIDEO_BERICHT_DREHUNG, {std::to_string(m_leser->Rotation())})});
        zeilen.push_back(
            {Text(IDS_VIDEO_BERICHT_ZEITEN, {m_leser->IsCounted() ? LoadRuvString(IDS_VIDEO_ZEITEN_GEZAEHLT)
                                                                  : LoadRuvString(IDS_VIDEO_ZEITEN_DATEI)})});
        if (const int fehlen = m_leser->MissingFrames(); fehlen > 0)
            zeilen.push_back(
                {Text(IDS_VIDEO_BERICHT_SCHAEDEN, {Text(IDS_VIDEO_ABGESCHNITTEN, {std::to_string(fehlen)})})});
    }
    std::string text;
    for (std::size_t i = 0; i < m_dat.Punkte().size(); ++i)
        text += (i == 0 ? "P" : ", P") + std::to_string(i + 1) + " (" + RuvNumberText(m_dat.Punkte()[i].x, 1) + "; " +
                RuvNumberText(m_dat.Punkte()[i].y, 1) + ")";
    if (!text.empty())
        zeilen.push_back({Text(IDS_VIDEO_BERICHT_PUNKTE, {text})});
    for (std::size_t i = 0; i < Dat::kAbstaende; ++i)
        if (std::string rest = Resttext(i); !rest.empty())
            zeilen.push_back({std::string(kAbstaende[i]) + ": " + rest});
    if (std::string linse = Linsentext(); !linse.empty())
        zeilen.push_back({std::move(linse)});
    for (const auto& [nummer, spur] : m_dat.Spuren())
        zeilen.push_back(
            {Text(IDS_VIDEO_BERICHT_ID,
                  {std::to_string(nummer), std::to_string(spur.eintraege.size()),
                   LoadRuvString(spur.IstGefunden() ? IDS_VIDEO_GEFUNDEN : IDS_VIDEO_GEKLICKT),
                   RuvNumberText(spur.punktHoehe, 2),
                   LoadRuvString(spur.gewaehlteLaengen ? IDS_VIDEO_LAENGEN_GEWAEHLT : IDS_VIDEO_LAENGEN_GEMESSEN)})});
    if (m_dat.analysiert > 0)
        zeilen.push_back({Text(m_dat.unvollstaendig != 0 ? IDS_VIDEO_BERICHT_UNVOLLSTAENDIG : IDS_VIDEO_BERICHT_ANALYSE,
                               {std::to_string(m_dat.analysiert), std::to_string(m_dat.analysiertAb + 1)})});
    static_cast<CGridCtrl*>(GetDlgItem(IDC_VIDEO_BERICHT))->SetRows(std::move(zeilen));
}
