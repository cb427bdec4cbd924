// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CGPXImportDat.h"

#include "host/CRuvData.h"
#include "host/CWnd.h"
#include "host/Files.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "host/Progress.h"
#include "masks/import/Zivilzeit.h"
#include "masks/manoeuvre/Texte.h"
#include "res/import.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

constexpr double kKeineZahl = std::numeric_limits<double>::quiet_NaN();
/// Larger files are no tracks; their points would take three times as much memory.
constexpr std::size_t kMeisteBytes = std::size_t{1} << 30U;
constexpr double kKleinsterAbstand = 0.05; // m, of points in the scene that has not room for all
constexpr double kGroessteSpur = 1e6;      // m, as large as things of the scene may be
constexpr std::size_t kEndung = 3;         // "fit", "gpx"

constexpr UINT kTempoquellen[] = {IDC_GPX_BERECHNET, IDC_GPX_AUFGEZEICHNET};

using Dat = CGPXImportDat;

constexpr NumberRow<Dat> kZahlen[] = {
    kZeileFahrzeug<Dat>,
    kZeilePhase<Dat>,
    kZeileVon<Dat>,
    kZeileBis<Dat>,
    {kTempoquellen, "tempoquelle", At<&Dat::tempoquelle>, "Geschwindigkeit"},
    {"vorhanden", At<&Dat::vorhanden>},
    {"zeilen", At<&Dat::zeilen>},
};

/// Seconds from 1970 of the point's instant, without the fraction.
double Sekunden(const GPXTrackPoint& p)
{
    return static_cast<double>(SekundenSeit1970({p.year, p.month, p.day, p.hour, p.minute, p.second}) -
                               std::int64_t{p.zone} * 60);
}

double Millisekunden(const GPXTrackPoint& p)
{
    return p.mikrosekunde == 0 ? p.millisecond : p.millisecond + p.mikrosekunde / 1000.0;
}

/// A part of a track for the scene, which has not room for all of it.
struct Spurlinie {
    std::vector<CDPoint> lagen{}; ///< m; the last one before a joint twice
    std::size_t punkte = 0;       ///< without the second ones
};

/// The points erste..letzte without those that lie nearer than `abstand` to the last one kept; both sides of a joint
/// stay.
Spurlinie Ausgeduennt(const std::vector<GPXTrackPoint>& punkte, const std::vector<std::size_t>& nahtstellen,
                      std::size_t erste, std::size_t letzte, double abstand)
{
    Spurlinie linie;
    const auto lage = [&punkte](std::size_t i) { return CDPoint{punkte[i].x, punkte[i].y}; };
    const auto nimm = [&linie](const CDPoint& ort) {
        if (!linie.lagen.empty() && ort == linie.lagen.back())
            return; // a second one would end the stretch
        linie.lagen.push_back(ort);
        ++linie.punkte;
    };
    auto naht = std::upper_bound(nahtstellen.begin(), nahtstellen.end(), erste);
    for (std::size_t i = erste; i <= letzte; ++i) {
        if (naht != nahtstellen.end() && *naht == i) {
            nimm(lage(i - 1));
            linie.lagen.push_back(lage(i - 1));
            // A step across the joint that leads nowhere ends nothing: there is no gap to be seen.
            if (lage(i) == lage(i - 1))
                linie.lagen.pop_back();
            nimm(lage(i));
            ++naht;
            continue;
        }
        const CDPoint ort = lage(i);
        if (linie.lagen.empty() || std::hypot(ort.x - linie.lagen.back().x, ort.y - linie.lagen.back().y) >= abstand)
            nimm(ort);
    }
    return linie;
}

double Zeitpunkt(const GPXTrackPoint& p)
{
    return Sekunden(p) + Millisekunden(p) * 0.001;
}

} // namespace

RecordFields CGPXImportDat::Felder()
{
    return Describe(*this, kZahlen);
}

bool CGPXImportDat::IstFitPfad(const std::string& pfad)
{
    if (pfad.find(".fit") == std::string::npos)
        return false;
    // A file system may not tell "GPX" from "gpx".
    std::string endung = pfad.substr(pfad.size() - kEndung);
    for (char& c : endung)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return endung != "gpx";
}

std::string CGPXImportDat::GpxPfad(const std::string& pfad)
{
    return pfad.substr(0, pfad.size() - kEndung) + "gpx";
}

CGPXImportDat::Ausgang CGPXImportDat::Lies()
{
    std::string bytes;
    const CFileRead datei = ReadFileBlocks(auswahl.pfad, [&](std::string_view block, std::uint64_t groesse) {
        if (groesse > kMeisteBytes || bytes.size() + block.size() > kMeisteBytes)
            return false;
        if (bytes.empty())
            bytes.reserve(static_cast<std::size_t>(groesse));
        bytes += block;
        return true;
    });
    const bool fit = IstFitPfad(auswahl.pfad);
    bool gelesen = datei.outcome == FileOutcome::read;
    FitSpur spur;
    GpxInhalt inhalt;
    std::string sha256;
    if (gelesen) {
        const auto weiter = [](double teil) { return RuvProgress("Die Spur wird gelesen", teil) == Work::goOn; };
        if (fit)
            spur = LiesFit(bytes, weiter);
        else
            inhalt = LiesGpx(bytes, weiter);
        if (spur.befund.abgebrochen || inhalt.ausgang == GpxAusgang::abgebrochen)
            return Ausgang::abgebrochen;
        sha256 = RuvSha256(bytes, [](double teil) {
            return RuvProgress("Die Prüfsumme der Datei wird gebildet", teil) == Work::goOn;
        });
        if (sha256.empty())
            return Ausgang::abgebrochen;
    }
    Leere();
    m_herkunft.pfad = auswahl.pfad;
    m_herkunft.fit = fit;
    if (!gelesen) {
        m_hindernis = datei.outcome == FileOutcome::stopped ? LoadRuvString(IDS_GPX_ZU_GROSS) : datei.error;
        return Ausgang::nichtLesbar;
    }
    m_herkunft.bytes = bytes.size();
    m_herkunft.sha256 = std::move(sha256);
    if (fit) {
        m_fit = std::move(spur);
        return Ausgang::fit;
    }
    if (inhalt.ausgang != GpxAusgang::gelesen) {
        m_hindernis = LoadRuvString(inhalt.ausgang == GpxAusgang::istFit     ? IDS_GPX_IST_FIT
                                    : inhalt.ausgang == GpxAusgang::istUtf16 ? IDS_GPX_IST_UTF16
                                                                             : IDS_GPX_KEIN_GPX);
        return Ausgang::keineSpur;
    }
    punkte = std::exchange(inhalt.punkte, {});
    m_nahtstellen = inhalt.nahtstellen;
    m_gpx = std::move(inhalt);
    m_herkunft.gelesen = punkte.size();
    return Ausgang::gpx;
}

CGPXImportDat::Ziel CGPXImportDat::VergleicheZiel() const
{
    GpxText text(m_fit.punkte);
    std::string rest;
    bool gleich = true;
    const CFileRead datei = ReadFileBlocks(GpxPfad(auswahl.pfad), [&](std::string_view block, std::uint64_t) {
        while (rest.size() < block.size()) {
            const std::string_view stueck = text.Naechstes();
            if (stueck.empty())
                break;
            rest += stueck;
        }
        gleich = rest.starts_with(block);
        rest.erase(0, block.size());
        return gleich;
    });
    if (datei.outcome == FileOutcome::notFound)
        return Ziel::fehlt;
    const bool zuEnde = rest.empty() && text.Naechstes().empty();
    return gleich && zuEnde && datei.outcome == FileOutcome::read ? Ziel::gleich : Ziel::anders;
}

std::string CGPXImportDat::SchreibeGpx(Ziel dort)
{
    const std::string ziel = GpxPfad(auswahl.pfad);
    GpxText text(m_fit.punkte);
    std::string fehler;
    if (dort != Ziel::gleich)
        fehler = WriteFilePieces(ziel, m_herkunft.pfad, [&text]() -> std::optional<std::string_view> {
            if (RuvProgress("Die GPX-Datei wird geschrieben", text.Anteil()) != Work::goOn)
                return std::nullopt;
            return text.Naechstes();
        });
    if (fehler.empty())
        auswahl.pfad = m_herkunft.geschrieben = ziel;
    return fehler;
}

void CGPXImportDat::NimmFit()
{
    punkte.clear();
    punkte.reserve(m_fit.punkte.size());
    Ortsuhr uhr;
    bool tempo = false;
    for (const FitPunkt& punkt : m_fit.punkte) {
        punkte.push_back(AlsTrackPoint(punkt, uhr));
        tempo = tempo || punkt.Hat(FitPunkt::tempo);
    }
    if (tempo)
        for (const FitPunkt& punkt : m_fit.punkte)
            m_aufgezeichnet.push_back(punkt.Tempo());
    m_nahtstellen = m_fit.nahtstellen;
    m_herkunft.beschaedigt = !m_fit.befund.fehler.empty();
    m_herkunft.gelesen = punkte.size();
    if (!m_fit.punkte.empty())
        m_herkunft.fitZeit = m_fit.punkte.front().zeitstempel + kFitEpoche;
    m_fit.punkte = {};
}

void CGPXImportDat::VerwirfFit()
{
    m_fit.punkte = {};
}

void CGPXImportDat::Leere()
{
    punkte = {};
    m_lokal = {};
    m_aufgezeichnet = {};
    m_nahtstellen = {};
    m_fit = {};
    m_gpx = {};
    m_herkunft = {};
    m_hindernis.clear();
    vorhanden = {};
    zeilen = 0;
    tempoquelle = berechnet;
}

bool CGPXImportDat::Pruefe()
{
    const auto schlecht =
        std::find_if(punkte.begin(), punkte.end(), [](const GPXTrackPoint& p) { return !p.HatLage() || !p.HatZeit(); });
    if (schlecht == punkte.end())
        return true;
    m_herkunft.ersteSchlechte = static_cast<std::size_t>(schlecht - punkte.begin()) + 1;
    punkte = {};
    m_aufgezeichnet = {};
    m_nahtstellen = {};
    return false;
}

void CGPXImportDat::Rechne()
{
    BildeZeitschritte();
    Konvertiere();
    BildeGeschwindigkeiten();
    SetzeVorhanden();
    zeilen = static_cast<std::int64_t>(punkte.size());
}

void CGPXImportDat::BildeZeitschritte()
{
    double vorher = 0.0;
    for (std::size_t i = 0; i < punkte.size(); ++i) {
        const double jetzt = Zeitpunkt(punkte[i]);
        punkte[i].timeStep = i == 0 ? 0.0 : jetzt - vorher;
        vorher = jetzt;
    }
}

void CGPXImportDat::Konvertiere()
{
    std::vector<GPSPunkt> lagen;
    lagen.reserve(punkte.size());
    for (const GPXTrackPoint& p : punkte)
        lagen.push_back({p.latitude, p.longitude, p.elevation});
    m_konverter.KonvertiereGPS(lagen, m_lokal);
    for (std::size_t i = 0; i < m_lokal.size(); ++i) {
        punkte[i].x = m_lokal[i].x;
        punkte[i].y = m_lokal[i].y;
        punkte[i].z = m_lokal[i].z;
        punkte[i].distance = m_lokal[i].abstand;
    }
    m_lokal = {};
}

void CGPXImportDat::BildeGeschwindigkeiten()
{
    for (std::size_t i = 1; i < punkte.size(); ++i) {
        GPXTrackPoint& p = punkte[i];
        p.speed = p.timeStep != 0.0 ? p.distance / p.timeStep : punkte[i - 1].speed;
        p.speedKmh = p.speed * kKmhProMs;
    }
}

void CGPXImportDat::SetzeVorhanden()
{
    for (const GPXTrackPoint& p : punkte) {
        const bool tests[kFlags] = {p.day > 0,       p.HatZeit(),         p.longitude != -1.0, p.latitude != -1.0,
                                    p.elevation > 0, p.temperature > 0.0, p.heartRate > 0.0,   p.cadence > 0.0};
        for (std::size_t i = 0; i < kFlags; ++i)
            vorhanden[i] = vorhanden[i] != 0 || tests[i] ? 1 : 0;
    }
}

std::vector<double> CGPXImportDat::Zeiten() const
{
    std::vector<double> zeiten;
    zeiten.reserve(punkte.size());
    double zeit = 0.0;
    for (const GPXTrackPoint& p : punkte)
        zeiten.push_back(zeit += std::max(p.timeStep, 0.0));
    return zeiten;
}

bool CGPXImportDat::HatNaht(std::size_t erste, std::size_t letzte) const
{
    const auto naht = std::upper_bound(m_nahtstellen.begin(), m_nahtstellen.end(), erste);
    return naht != m_nahtstellen.end() && *naht <= letzte;
}

double CGPXImportDat::Tempo(std::size_t punkt, std::int64_t quelle) const
{
    const double kmh = quelle == aufgezeichnet
                           ? punkt < m_aufgezeichnet.size() ? m_aufgezeichnet[punkt] * kKmhProMs : kKeineZahl
                           : punkte[punkt].speedKmh;
    return kmh >= 0.0 && std::isfinite(kmh) ? kmh : kKeineZahl;
}

std::vector<double> CGPXImportDat::Geschwindigkeiten(std::int64_t quelle) const
{
    std::vector<double> v;
    v.reserve(punkte.size());
    for (std::size_t i = 0; i < punkte.size(); ++i)
        v.push_back(Tempo(i, quelle));
    return v;
}

Fahrtbefund CGPXImportDat::Uebertrage(std::size_t erste, std::size_t letzte)
{
    std::vector<Fahrzeile> fahrt;
    for (std::size_t i = erste; i <= letzte && i < punkte.size(); ++i) {
        const double v = Tempo(i, tempoquelle);
        fahrt.push_back({std::max(punkte[i].timeStep, 0.0), std::isnan(v) ? kNichtVorhanden : v});
    }
    return UebertrageFahrphasen(m_data, auswahl.fahrzeug, auswahl.phase, fahrt, m_parent);
}

Fahrtbefund CGPXImportDat::UebertrageKoordinaten(std::size_t erste, std::size_t letzte)
{
    std::vector<CDPoint> positionen;
    for (std::size_t i = erste; i <= letzte && i < punkte.size(); ++i)
        positionen.push_back({punkte[i].x, punkte[i].y});
    return UebertrageFahrlinie(m_data, auswahl.fahrzeug, auswahl.phase, positionen, m_parent);
}

std::string CGPXImportDat::LegeInSzene(std::size_t erste, std::size_t letzte)
{
    if (m_data.Spuren().size() >= CSzenenSpur::kMeiste)
        return Eingesetzt(LoadRuvString(IDS_GPX_SZENE_VOLL), {std::to_string(CSzenenSpur::kMeiste)});
    letzte = std::min(letzte, punkte.size() - 1);
    double abstand = 0.0;
    Spurlinie linie = Ausgeduennt(punkte, m_nahtstellen, erste, letzte, abstand);
    // Thousands of joints would keep it too long for ever.
    while (linie.lagen.size() > CSzenenSpur::kMeistePunkte && abstand < kGroessteSpur) {
        abstand = abstand == 0.0 ? kKleinsterAbstand : 2.0 * abstand;
        linie = Ausgeduennt(punkte, m_nahtstellen, erste, letzte, abstand);
    }
    const std::vector<CDPoint>& lagen = linie.lagen;
    if (lagen.size() < 2)
        return LoadRuvString(IDS_GPX_SZENE_STEHT);
    CDPoint unten = lagen.front();
    CDPoint oben = lagen.front();
    for (const CDPoint& p : lagen) {
        unten = {std::min(unten.x, p.x), std::min(unten.y, p.y)};
        oben = {std::max(oben.x, p.x), std::max(oben.y, p.y)};
    }
    if (!(std::max(oben.x - unten.x, oben.y - unten.y) <= kGroessteSpur) || lagen.size() > CSzenenSpur::kMeistePunkte)
        return LoadRuvString(IDS_GPX_SZENE_ZU_GROSS);
    CSzenenSpur spur;
    spur.name = m_herkunft.pfad.substr(m_herkunft.pfad.find_last_of("/\\") + 1);
    const CDPoint mitte = (unten + oben) * 0.5;
    spur.mitte = (mitte - lagen.front()) * kCmProM;
    for (const CDPoint& p : lagen)
        spur.punkte.push_back((p - mitte) * kCmProM);
    m_data.Spuren().push_back(std::move(spur));
    m_data.NotifyMaskenWerte();
    const std::string alle = std::to_string(letzte - erste + 1);
    return linie.punkte == letzte - erste + 1 ? Eingesetzt(LoadRuvString(IDS_GPX_SZENE_ALLE), {alle})
                                              : Eingesetzt(LoadRuvString(IDS_GPX_SZENE_AUSGEDUENNT),
                                                           {std::to_string(linie.punkte), alle, Dezimal(abstand, 2)});
}
