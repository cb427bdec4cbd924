// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/CVideoDat.h"

#include "host/Files.h"
#include "host/NumberTable.h"
#include "masks/video/VideoBereiche.h"
#include "res/video.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace
{

using namespace videobereich;
using Dat = CVideoDat;

constexpr double kKeineZahl = std::numeric_limits<double>::quiet_NaN();
/// A strength that was set by eye is known to so much.
constexpr double kStaerkeVonHand = 2.0;

constexpr std::size_t kKantenpunkte = 3; // that an edge takes to count

constexpr NumberUnit kPx2{"px²"};
constexpr NumberUnit kPx{"px"};
constexpr auto kEingabe = FieldRole::input;
constexpr auto kInnen = FieldRole::internal;
constexpr SpinnerRange kDrehAbstand{0, 1000, 0.01};
constexpr SpinnerRange kDrehHoehe{0, 50, 0.1};
constexpr SpinnerRange kDrehFlaeche{0, 1e6, 10};
constexpr SpinnerRange kDrehFaktor{0, 2, CVideoDat::kSchrittFaktor};

constexpr UINT kMusterKnoepfe[] = {IDC_VIDEO_QUADRAT,        IDC_VIDEO_TRAPEZ,        IDC_VIDEO_RHOMBUS_L,
                                   IDC_VIDEO_RHOMBUS_R,      IDC_VIDEO_QUADRAT_FREI,  IDC_VIDEO_TRAPEZ_FREI,
                                   IDC_VIDEO_RHOMBUS_L_FREI, IDC_VIDEO_RHOMBUS_R_FREI};
constexpr UINT kKurvenKnoepfe[] = {IDC_VIDEO_AUSGLEICH, IDC_VIDEO_MESSWERTE};
constexpr UINT kWerkzeugKnoepfe[] = {IDC_VIDEO_KALIBRIEREN, IDC_VIDEO_VERFOLGEN, IDC_VIDEO_KANTE};

template <std::size_t I> constexpr NumberRow<Dat> Abstand(UINT control, std::string_view name)
{
    return {control, name, Element<&Dat::abstaende, I>, units::m, kAbstand, 3, kEingabe, {.spinner = kDrehAbstand}};
}

constexpr NumberRow<Dat> kZahlen[] = {
    kZeileFahrzeug<Dat>,
    kZeilePhase<Dat>,
    kZeileVon<Dat>,
    kZeileBis<Dat>,
    {"bildgroesse", At<&Dat::bildgroesse>, kPx},
    {"bilderJeSekunde", At<&Dat::bilderJeSekunde>},
    {"stelle", At<&Dat::stelle>, units::s, kInnen},
    {"bildnummer", At<&Dat::bildnummer>, units::none, kInnen},
    Abstand<0>(IDC_VIDEO_ABSTAND_12, "abstand12"),
    Abstand<1>(IDC_VIDEO_ABSTAND_24, "abstand24"),
    Abstand<2>(IDC_VIDEO_ABSTAND_43, "abstand43"),
    Abstand<3>(IDC_VIDEO_ABSTAND_31, "abstand31"),
    Abstand<4>(IDC_VIDEO_ABSTAND_14, "abstand14"),
    Abstand<5>(IDC_VIDEO_ABSTAND_23, "abstand23"),
    {kMusterKnoepfe, "muster", At<&Dat::muster>, "Form des Vierecks"},
    {IDC_VIDEO_VERZEICHNUNG, "verzeichnungKorrigieren", At<&Dat::verzeichnungKorrigieren>},
    {"linsenstaerke", At<&Dat::linsenstaerke>, units::none, FieldRole::state, {-100, 100}},
    {"staerkeAusKanten", At<&Dat::staerkeAusKanten>},
    {IDC_VIDEO_FAKTOR, "faktor", At<&Dat::faktor>, units::none, kFaktor, 3, kEingabe, {.spinner = kDrehFaktor}},
    {IDC_VIDEO_PUNKTHOEHE,
     "punktHoehe",
     At<&Dat::punktHoehe>,
     units::m,
     kPunktHoehe,
     2,
     kEingabe,
     {.spinner = {0, 5, 0.01}}},
    {IDC_VIDEO_KAMERAHOEHE,
     "kameraHoehe",
     At<&Dat::kameraHoehe>,
     units::m,
     kKameraHoehe,
     2,
     kEingabe,
     {.spinner = kDrehHoehe}},
    {IDC_VIDEO_FLAECHE_MIN, "flaecheMin", At<&Dat::flaecheMin>, kPx2, kFlaeche, 0, kEingabe, {.spinner = kDrehFlaeche}},
    {IDC_VIDEO_FLAECHE_MAX, "flaecheMax", At<&Dat::flaecheMax>, kPx2, kFlaeche, 0, kEingabe, {.spinner = kDrehFlaeche}},
    {IDC_VIDEO_SPANNE, "ausgleichsspanne", At<&Dat::ausgleichsspanne>, units::s, kSpanne, 1, kEingabe},
    {kKurvenKnoepfe, "kurve", At<&Dat::kurve>, "Geschwindigkeit"},
    {kWerkzeugKnoepfe, "werkzeug", At<&Dat::werkzeug>, "Klick ins Video"},
    {IDC_VIDEO_SCHRITT, "schritt", At<&Dat::schritt>, units::none, kSchritt, 0, kEingabe},
    {"abspielstufe", At<&Dat::abspielstufe>, units::none, FieldRole::state, {-3, 2}},
    {IDC_VIDEO_BEREICH_ZEIGEN, "bereichZeigen", At<&Dat::bereichZeigen>},
    {"analysiert", At<&Dat::analysiert>},
    {"analysiertAb", At<&Dat::analysiertAb>},
    {"unvollstaendig", At<&Dat::unvollstaendig>},
    {"id", At<&Dat::id>, units::none, FieldRole::state, {0, 1e6}},
    {IDC_VIDEO_OBJEKTE, "objekte", At<&Dat::objekte>, units::none, {0, 1e6}, 0, FieldRole::result},
    {"ids", At<&Dat::ids>, units::none, kInnen},
    {"rate", At<&Dat::rate>, units::m, kInnen},
    {"reste", At<&Dat::reste>, units::m, kInnen},
    {"brennweite", At<&Dat::brennweite>, kPx, kInnen},
    {"mittel", At<&Dat::mittel>, units::kmh, kInnen},
    {"mittelU", At<&Dat::mittelU>, units::kmh, kInnen},
    {"zeit", At<&Dat::zeit>, units::s, kInnen},
    {"geschwindigkeit", At<&Dat::geschwindigkeit>, units::kmh, kInnen},
    {"unsicherheit", At<&Dat::unsicherheit>, units::kmh, kInnen},
    {"bild", At<&Dat::bild>, units::none, kInnen},
    {"ausgleich", At<&Dat::ausgleich>, units::kmh, kInnen},
    {"ausgleichUnsicherheit", At<&Dat::ausgleichU>, units::kmh, kInnen},
};

} // namespace

RecordFields CVideoDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CVideoDat::NimmVideo(const Videodaten& video)
{
    if (m_data.Video().sha256 != video.sha256) {
        m_punkte.clear();
        LoescheSpuren();
        m_hoechsteId = 0;
        verzeichnungKorrigieren = 0;
        linsenstaerke = 0;
        staerkeAusKanten = 0;
        m_kanten.clear();
        m_getippterFaktor = m_getippteHoehe = punktHoehe = 0.0;
        auswahl.von = auswahl.bis = kKeineZahl;
        werkzeug = kalibrieren;
    }
    m_data.Video() = {RuvNameBeside(video.pfad, m_data.Falldatei()), video.sha256};
    bildgroesse = {video.breite, video.hoehe};
    bilderJeSekunde = video.bilderJeSekunde;
    Rechne();
}

std::string CVideoDat::Videopfad() const
{
    const std::string& datei = m_data.Video().datei;
    return datei.empty() ? std::string() : RuvPathBeside(datei, m_data.Falldatei());
}

void CVideoDat::Zuruecksetzen()
{
    LoescheSpuren();
    m_hoechsteId = 0;
    auswahl.von = auswahl.bis = kKeineZahl;
    Rechne();
}

void CVideoDat::SetzePunkt(std::size_t punkt, VisionPoint wo)
{
    if (punkt > m_punkte.size() || punkt >= kEcken)
        return;
    if (punkt == m_punkte.size())
        m_punkte.push_back(wo);
    m_punkte[punkt] = wo;
    Rechne();
}

void CVideoDat::LoeschePunkte()
{
    m_punkte.clear();
    Rechne();
}

void CVideoDat::NeueKante()
{
    if (m_kanten.empty() || !m_kanten.back().empty())
        m_kanten.emplace_back();
}

void CVideoDat::KlickeKante(VisionPoint wo)
{
    if (m_kanten.empty())
        m_kanten.emplace_back();
    m_kanten.back().push_back(wo);
    Rechne();
}

std::optional<VisionPoint> CVideoDat::Kantenpunkt(std::size_t nummer) const
{
    for (const auto& kante : m_kanten) {
        if (nummer < kante.size())
            return kante[nummer];
        nummer -= kante.size();
    }
    return std::nullopt;
}

void CVideoDat::SetzeKantenpunkt(std::size_t nummer, VisionPoint wo)
{
    for (auto& kante : m_kanten) {
        if (nummer < kante.size()) {
            kante[nummer] = wo;
            break;
        }
        nummer -= kante.size();
    }
    Rechne();
}

bool CVideoDat::NimmKantenpunktZurueck()
{
    if (!m_kanten.empty() && m_kanten.back().empty())
        m_kanten.pop_back();
    if (m_kanten.empty())
        return false;
    m_kanten.back().pop_back();
    Rechne();
    return true;
}

void CVideoDat::LoescheKanten()
{
    m_kanten.clear();
    Rechne();
}

void CVideoDat::NimmLinse()
{
    if (!m_linse)
        return;
    staerkeAusKanten = verzeichnungKorrigieren = 1;
    Rechne();
}

void CVideoDat::StelleLinse(std::int64_t staerke)
{
    linsenstaerke = staerke;
    staerkeAusKanten = 0;
    Rechne();
}

double CVideoDat::Staerkeunsicherheit() const
{
    return staerkeAusKanten != 0 && m_linse ? m_linse->uncertainty : kStaerkeVonHand;
}

/// Edges that no longer tell the strength leave it as it was last, as if it had been set by hand.
void CVideoDat::SchaetzeLinse()
{
    std::vector<std::vector<VisionPoint>> kanten = m_kanten;
    std::erase_if(kanten, [](const auto& kante) { return kante.size() < kKantenpunkte; });
    m_linse = EstimateLens(static_cast<int>(bildgroesse[0]), static_cast<int>(bildgroesse[1]), kanten);
    if (staerkeAusKanten == 0)
        return;
    if (m_linse)
        linsenstaerke = std::llround(m_linse->strength);
    else
        staerkeAusKanten = 0;
}

const Videospur* CVideoDat::Spur() const
{
    const auto spur = m_spuren.find(static_cast<int>(id));
    return spur == m_spuren.end() ? nullptr : &spur->second;
}

Videospur* CVideoDat::Spur()
{
    const auto spur = m_spuren.find(static_cast<int>(id));
    return spur == m_spuren.end() ? nullptr : &spur->second;
}

void CVideoDat::NeueSpur()
{
    id = ++m_hoechsteId;
    m_spuren[static_cast<int>(id)] = {.punktHoehe = punktHoehe};
    Rechne();
}

void CVideoDat::NimmKasten(int nummer, const VideoEntry& eintrag, const VideoBox& kasten)
{
    const auto [spur, neu] = m_spuren.try_emplace(nummer);
    if (neu)
        spur->second.punktHoehe = kKastenHoehe;
    spur->second.eintraege.push_back({eintrag, kasten.w, kasten.h});
    m_hoechsteId = std::max<std::int64_t>(m_hoechsteId, nummer);
}

void CVideoDat::LoescheSpuren()
{
    m_spuren.clear();
    id = 0;
    analysiert = analysiertAb = 0;
    unvollstaendig = 0;
}

void CVideoDat::LoescheGefundene()
{
    std::erase_if(m_spuren, [](const auto& spur) { return spur.second.IstGefunden(); });
    m_hoechsteId = m_spuren.empty() ? 0 : m_spuren.rbegin()->first;
    if (!m_spuren.contains(static_cast<int>(id)))
        id = 0;
    analysiert = analysiertAb = 0;
    unvollstaendig = 0;
}

void CVideoDat::Klicke(int nummer, double wann, VisionPoint wo)
{
    const Videospur* bisher = Spur();
    // A click is a point of the road or of the vehicle, a box's centre is another one: they make no common path.
    const bool gefunden = bisher != nullptr && bisher->IstGefunden();
    if (gefunden)
        punktHoehe = 0.0;
    if (bisher == nullptr || gefunden)
        NeueSpur();
    Spur()->Setze(nummer, wann, wo);
    Rechne();
}

std::optional<int> CVideoDat::NimmZurueck()
{
    Videospur* spur = Spur();
    if (spur == nullptr || spur->eintraege.empty())
        return std::nullopt;
    const int letztes = spur->eintraege.back().punkt.frame;
    spur->eintraege.pop_back();
    Rechne();
    return letztes;
}

void CVideoDat::WaehleSpur(std::int64_t nummer)
{
    id = m_spuren.contains(static_cast<int>(nummer)) ? nummer : 0;
    auswahl.von = auswahl.bis = kKeineZahl;
    Rechne();
}

void CVideoDat::TippeFaktor()
{
    m_getippterFaktor = faktor;
    Rechne();
}

void CVideoDat::TippeKameraHoehe()
{
    m_getippteHoehe = kameraHoehe;
    Rechne();
}

void CVideoDat::TippePunktHoehe()
{
    if (Videospur* spur = Spur())
        spur->punktHoehe = punktHoehe;
    Rechne();
}

RoadInput CVideoDat::Strasseneingabe() const
{
    RoadInput eingabe;
    eingabe.width = static_cast<int>(bildgroesse[0]);
    eingabe.height = static_cast<int>(bildgroesse[1]);
    std::copy(m_punkte.begin(), m_punkte.end(), eingabe.points.begin());
    eingabe.distances = abstaende;
    eingabe.pattern = static_cast<RectifyPattern>(muster % (kMuster / 2));
    eingabe.strict = muster < kMuster / 2;
    eingabe.strength = Staerke();
    return eingabe;
}

VideoSpeeds CVideoDat::Geschwindigkeiten(double z) const
{
    SpeedInput eingabe;
    eingabe.fps = bilderJeSekunde;
    if (FaktorIstGetippt())
        eingabe.factor = m_getippterFaktor;
    if (KameraHoeheIstGetippt())
        eingabe.cameraHeight = m_getippteHoehe;
    eingabe.pointHeight = z;
    eingabe.strengthUncertainty = verzeichnungKorrigieren != 0 ? Staerkeunsicherheit() : 0.0;
    eingabe.smoothSpan = ausgleichsspanne;
    return {m_strasse, eingabe};
}

void CVideoDat::Rechne()
{
    SchaetzeLinse();
    m_strasse.Reset();
    for (std::size_t i = 0; i < m_punkte.size(); ++i)
        m_strasse.UpdatePoint(static_cast<int>(i), m_punkte[i]);
    m_strasse.EstimateRectificationMap(Strasseneingabe());
    const bool kalibriert = m_strasse.Fault() == RoadFault::none;
    rate = m_strasse.GetRateRealDistToRectifiedPixels();
    for (std::size_t i = 0; i < kAbstaende; ++i)
        reste[i] = kalibriert ? m_strasse.Residuals()[i].value_or(kKeineZahl) : kKeineZahl;
    brennweite = kalibriert ? m_strasse.Focal().value_or(0.0) : 0.0;
    kameraHoehe = KameraHoeheIstGetippt() ? m_getippteHoehe : kalibriert ? m_strasse.CameraHeight().value_or(0.0) : 0.0;
    if (const Videospur* spur = Spur())
        punktHoehe = spur->punktHoehe;
    // Each height of followed points has a factor of its own.
    std::map<double, VideoSpeeds> jeHoehe;
    const auto mitHoehe = [&](double z) -> const VideoSpeeds& {
        const auto da = jeHoehe.find(z);
        return da != jeHoehe.end() ? da->second : jeHoehe.emplace(z, Geschwindigkeiten(z)).first->second;
    };
    m_verlaeufe.clear();
    ids.clear();
    for (const auto& [nummer, spur] : m_spuren) {
        ids.push_back(nummer);
        if (kalibriert)
            m_verlaeufe[nummer] = mitHoehe(spur.punktHoehe).Of(spur.Eintraege());
    }
    m_faktorUnbekannt = false;
    faktor = FaktorIstGetippt() ? m_getippterFaktor : 1.0;
    m_geschwindigkeiten.reset();
    if (kalibriert) {
        m_geschwindigkeiten = mitHoehe(punktHoehe);
        faktor = m_geschwindigkeiten->Factor();
        m_faktorUnbekannt = !m_geschwindigkeiten->FactorIsKnown();
    }
    ZeigeSpur();
    RechneMittel(auswahl.von, auswahl.bis);
}

void CVideoDat::ZeigeSpur()
{
    zeit.clear();
    geschwindigkeit.clear();
    unsicherheit.clear();
    bild.clear();
    ausgleich.clear();
    ausgleichU.clear();
    const auto verlauf = m_verlaeufe.find(static_cast<int>(id));
    if (verlauf == m_verlaeufe.end())
        return;
    for (const VideoSpeed& v : verlauf->second) {
        zeit.push_back(v.time);
        geschwindigkeit.push_back(v.speed);
        unsicherheit.push_back(v.uncertainty);
        bild.push_back(v.frame);
        ausgleich.push_back(v.smooth.value_or(kKeineZahl));
        ausgleichU.push_back(v.smooth ? v.smoothUncertainty : kKeineZahl);
    }
}

std::optional<int> CVideoDat::Beschriftung(int nummer, int bildnummerGezeigt) const
{
    const auto verlauf = m_verlaeufe.find(nummer);
    if (verlauf == m_verlaeufe.end())
        return std::nullopt;
    const auto& alle = verlauf->second;
    const auto v = std::lower_bound(alle.begin(), alle.end(), bildnummerGezeigt,
                                    [](const VideoSpeed& speed, int frame) { return speed.frame < frame; });
    return v == alle.end() || v->frame != bildnummerGezeigt ? std::nullopt : std::optional(v->label);
}

void CVideoDat::RechneMittel(double von, double bis)
{
    mittel = mittelU = kKeineZahl;
    m_mittelart.reset();
    const Videospur* spur = Spur();
    if (spur == nullptr || !m_geschwindigkeiten)
        return;
    std::vector<VideoEntry> eintraege = spur->Eintraege();
    if (!std::isnan(von) && !std::isnan(bis))
        std::erase_if(eintraege, [&](const VideoEntry& e) { return e.time < von || e.time > bis; });
    const auto mean = m_geschwindigkeiten->Mean(eintraege);
    if (!mean)
        return;
    mittel = mean->speed;
    mittelU = mean->uncertainty;
    m_mittelart = mean->kind;
}
