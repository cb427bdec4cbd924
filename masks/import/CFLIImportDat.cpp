// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CFLIImportDat.h"

#include "host/CRuvData.h"
#include "host/Files.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "host/Progress.h"
#include "res/import.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

constexpr double kKeineZahl = std::numeric_limits<double>::quiet_NaN();
/// A line longer than this is none of a text file.
constexpr std::size_t kLaengsteZeile = std::size_t{16} << 20U;
/// Files below this size are read before anyone could read how far the work has come.
constexpr std::uint64_t kGrosseDatei = std::uint64_t{16} << 20U;
constexpr std::uint64_t kFortschritte = 100;

constexpr std::string_view kZuordnung = "zuordnung_";
constexpr std::size_t kZahlenJeZuordnung = 3;

std::string Zuordnungsname(std::uint64_t schluessel)
{
    char ziffern[16];
    const auto ende = std::to_chars(std::begin(ziffern), std::end(ziffern), schluessel, 16).ptr;
    return std::string(kZuordnung) + std::string(std::begin(ziffern), ende);
}

/// A whole number of a range, as it stands in a case; nothing for any other.
std::optional<int> Ganze(double zahl, int kleinste, int groesste)
{
    if (!(zahl >= kleinste && zahl <= groesste) || zahl != std::floor(zahl))
        return std::nullopt;
    return static_cast<int>(zahl);
}

std::vector<Zuordnung> AusZahlen(const std::vector<double>& zahlen)
{
    std::vector<Zuordnung> zuordnungen;
    for (std::size_t i = 0; i + kZahlenJeZuordnung <= zahlen.size(); i += kZahlenJeZuordnung) {
        const auto spalte = Ganze(zahlen[i], 0, std::numeric_limits<int>::max());
        const auto kanal = Ganze(zahlen[i + 1], static_cast<int>(Kanal::keiner), static_cast<int>(kKanaele) - 1);
        const auto einheit = Ganze(zahlen[i + 2], kEinheitDerDatei, std::numeric_limits<int>::max());
        if (spalte && kanal && einheit)
            zuordnungen.push_back({*spalte, static_cast<Kanal>(*kanal), *einheit});
    }
    return zuordnungen;
}

using Dat = CFLIImportDat;

constexpr NumberRow<Dat> kZahlen[] = {
    kZeileFahrzeug<Dat>,
    kZeilePhase<Dat>,
    kZeileVon<Dat>,
    kZeileBis<Dat>,
    {"vorhanden", At<&Dat::vorhanden>},
    {"koordinatenVorhanden", At<&Dat::koordinatenVorhanden>},
    {"zeilen", At<&Dat::zeilen>},
    {"zeilenAusgelassen", At<&Dat::zeilenAusgelassen>},
};

} // namespace

RecordFields CFLIImportDat::Felder()
{
    return Describe(*this, kZahlen);
}

Fahrtbefund CFLIImportDat::Uebertragen(std::size_t erste, std::size_t letzte)
{
    std::vector<Fahrzeile> fahrt;
    for (std::size_t i = erste; i <= letzte && i < alleZeilen.Anzahl(); ++i)
        fahrt.push_back({alleZeilen.Wert(i, Feld::zeitschritt), alleZeilen.Wert(i, Feld::geschwindigkeit)});
    return UebertrageFahrphasen(m_data, auswahl.fahrzeug, auswahl.phase, fahrt, m_parent);
}

Fahrtbefund CFLIImportDat::UebertrageKoordinaten(std::size_t erste, std::size_t letzte)
{
    std::vector<CDPoint> punkte;
    for (std::size_t i = erste; i <= letzte && i < alleZeilen.Anzahl(); ++i)
        if (alleZeilen.Hat(i, Feld::x) && alleZeilen.Hat(i, Feld::y))
            punkte.push_back({alleZeilen.Wert(i, Feld::x), alleZeilen.Wert(i, Feld::y)});
    return UebertrageFahrlinie(m_data, auswahl.fahrzeug, auswahl.phase, punkte, m_parent);
}

void CFLIImportDat::Leere()
{
    alleZeilen.Leere();
    m_lokal.clear();
    vorhanden.fill(0);
    koordinatenVorhanden = 0;
    zeilen = 0;
    zeilenAusgelassen = 0;
    m_koordinaten = Koordinaten::keine;
    m_abgeleitet = false;
    m_ohneRichtung = 0;
    m_ohnePosition = 0;
    m_dateifehler.clear();
    m_grund = Grund::keiner;
}

CFLIImportDat::Ausgang CFLIImportDat::Lies()
{
    const Zuordnungen zuordnungen = GemerkteZuordnungen();
    FahrdatenLeser leser(zuordnungen);
    std::string rest; // a line whose end is yet to come
    std::uint64_t gelesen = 0;
    std::uint64_t naechsterFortschritt = 0;
    bool zuLang = false;
    const CFileRead datei = ReadFileBlocks(auswahl.pfad, [&](std::string_view block, std::uint64_t groesse) {
        if (groesse >= kGrosseDatei && gelesen >= naechsterFortschritt) {
            naechsterFortschritt += groesse / kFortschritte;
            if (RuvProgress("Fahrdaten lesen", static_cast<double>(gelesen) / static_cast<double>(groesse)) ==
                Work::cancel)
                return false;
        }
        gelesen += block.size();
        rest += block;
        if (block.find_first_of("\r\n") != std::string_view::npos)
            rest.erase(0, leser.Lies(rest, false));
        zuLang = rest.size() > kLaengsteZeile;
        return !zuLang;
    });
    if (datei.outcome == FileOutcome::stopped && !zuLang)
        return Ausgang::abgebrochen;
    if (datei.outcome == FileOutcome::read)
        leser.Lies(rest, true);
    Fahrdaten daten = leser.Fertig();
    Leere();
    m_bericht = std::move(daten.bericht);
    if (datei.outcome != FileOutcome::read && !zuLang) {
        m_dateifehler = datei.error;
        return Ausgang::nichtLesbar;
    }
    zeilenAusgelassen = static_cast<std::int64_t>(m_bericht.ausgelassen);
    if (zuLang || !daten.brauchbar) {
        m_grund = zuLang                    ? Grund::zeileZuLang
                  : m_bericht.plan.Reicht() ? Grund::zuVieleZeilenUnvollstaendig
                                            : Grund::keiner;
        return Ausgang::abgelehnt;
    }
    alleZeilen = std::move(daten.zeilen);
    zeilen = static_cast<std::int64_t>(alleZeilen.Anzahl());
    return Ausgang::gelesen;
}

void CFLIImportDat::SetzeVorhanden()
{
    const auto eine = [this](Feld feld, auto pruefung) {
        const std::vector<double>& werte = std::as_const(alleZeilen).Werte(feld);
        return static_cast<std::uint8_t>(std::any_of(werte.begin(), werte.end(), pruefung));
    };
    const auto positiv = [](double wert) { return wert > 0.0; };
    const auto da = [](double wert) { return wert != kNichtVorhanden; };
    vorhanden = {eine(Feld::geschwindigkeit, positiv),
                 eine(Feld::zeitschritt, positiv),
                 eine(Feld::richtung, positiv),
                 eine(Feld::laenge, da),
                 eine(Feld::breite, da),
                 eine(Feld::hoehe, positiv),
                 eine(Feld::x, da),
                 eine(Feld::y, da),
                 eine(Feld::z, positiv),
                 eine(Feld::beschleunigungX, positiv),
                 eine(Feld::beschleunigungY, positiv),
                 eine(Feld::beschleunigungZ, positiv)};
}

void CFLIImportDat::BildeKoordinaten()
{
    koordinatenVorhanden = 0;
    m_koordinaten = Koordinaten::keine;
    bool mitRichtung = false;
    bool mitPosition = false;
    bool mitTempo = true;
    for (std::size_t i = 0; i < alleZeilen.Anzahl(); ++i) {
        const auto hat = [&](Feld feld) { return alleZeilen.Hat(i, feld); };
        const auto gesetzt = [&](Feld feld) { return hat(feld) && alleZeilen.Wert(i, feld) != 0.0; };
        if (!mitRichtung && gesetzt(Feld::x) && gesetzt(Feld::y)) {
            koordinatenVorhanden = 1;
            m_koordinaten = Koordinaten::datei;
            return;
        }
        mitPosition = mitPosition || (hat(Feld::laenge) && hat(Feld::breite));
        mitRichtung = mitRichtung || hat(Feld::richtung);
        mitTempo = mitTempo && hat(Feld::geschwindigkeit);
    }
    // Dead reckoning needs the speed of every row.
    if (mitRichtung && mitTempo)
        Kopple();
    else if (mitPosition)
        KonvertierePositionen();
}

/// Rows without a heading of their own go on in the one before, the first ones in the first there is.
void CFLIImportDat::Kopple()
{
    const std::size_t anzahl = alleZeilen.Anzahl();
    std::size_t mit = 0;
    while (!alleZeilen.Hat(mit, Feld::richtung))
        ++mit;
    double richtung = alleZeilen.Wert(mit, Feld::richtung);
    std::vector<Koppelschritt> schritte;
    std::vector<std::size_t> nummern;
    schritte.reserve(anzahl);
    nummern.reserve(anzahl);
    for (std::size_t i = 0; i < anzahl; ++i) {
        if (alleZeilen.Hat(i, Feld::richtung))
            richtung = alleZeilen.Wert(i, Feld::richtung);
        else
            ++m_ohneRichtung;
        schritte.push_back(
            {richtung, alleZeilen.Wert(i, Feld::geschwindigkeit) / kKmhProMs, alleZeilen.Wert(i, Feld::zeitschritt)});
        nummern.push_back(i);
    }
    m_konverter.KonvertiereKopplung(schritte, m_lokal);
    m_koordinaten = Koordinaten::kopplung;
    Uebernimm(nummern);
}

/// Rows without a position get no coordinates.
void CFLIImportDat::KonvertierePositionen()
{
    std::vector<GPSPunkt> punkte;
    std::vector<std::size_t> nummern;
    for (std::size_t i = 0; i < alleZeilen.Anzahl(); ++i) {
        if (!alleZeilen.Hat(i, Feld::laenge) || !alleZeilen.Hat(i, Feld::breite)) {
            ++m_ohnePosition;
            continue;
        }
        punkte.push_back(
            {alleZeilen.Wert(i, Feld::breite), alleZeilen.Wert(i, Feld::laenge), alleZeilen.Wert(i, Feld::hoehe)});
        nummern.push_back(i);
    }
    m_konverter.KonvertiereGPS(punkte, m_lokal);
    m_koordinaten = Koordinaten::gps;
    Uebernimm(nummern);
}

void CFLIImportDat::Uebernimm(const std::vector<std::size_t>& zeilenNummern)
{
    if (m_lokal.empty()) {
        m_koordinaten = Koordinaten::keine;
        return;
    }
    std::vector<double>& x = alleZeilen.Werte(Feld::x);
    std::vector<double>& y = alleZeilen.Werte(Feld::y);
    std::vector<double>& z = alleZeilen.Werte(Feld::z);
    std::vector<double>& abstand = alleZeilen.Werte(Feld::abstand);
    for (std::size_t k = 0; k < zeilenNummern.size(); ++k) {
        const std::size_t i = zeilenNummern[k];
        x[i] = m_lokal[k].x;
        y[i] = m_lokal[k].y;
        z[i] = m_lokal[k].z;
        abstand[i] = m_lokal[k].abstand;
    }
    m_lokal = {};
    koordinatenVorhanden = 1;
}

std::optional<double> CFLIImportDat::AbstandZurVorigen(std::size_t zeile) const
{
    if (alleZeilen.Hat(zeile, Feld::abstand))
        return alleZeilen.Wert(zeile, Feld::abstand);
    const auto hat = [this](std::size_t i) { return alleZeilen.Hat(i, Feld::x) && alleZeilen.Hat(i, Feld::y); };
    if (m_koordinaten != Koordinaten::datei || !hat(zeile) || (zeile > 0 && !hat(zeile - 1)))
        return std::nullopt;
    if (zeile == 0)
        return 0.0;
    const double dx = alleZeilen.Wert(zeile, Feld::x) - alleZeilen.Wert(zeile - 1, Feld::x);
    const double dy = alleZeilen.Wert(zeile, Feld::y) - alleZeilen.Wert(zeile - 1, Feld::y);
    return std::sqrt(dx * dx + dy * dy);
}

void CFLIImportDat::LeiteGeschwindigkeitAb()
{
    const auto& bekannt = std::as_const(alleZeilen).Werte(Feld::geschwindigkeit);
    const std::size_t anzahl = alleZeilen.Anzahl();
    if (m_koordinaten == Koordinaten::keine || anzahl == 0 ||
        std::any_of(bekannt.begin(), bekannt.end(), [](double v) { return v != kNichtVorhanden; }))
        return;
    std::vector<double>& v = alleZeilen.Werte(Feld::geschwindigkeit);
    if (AbstandZurVorigen(0))
        v[0] = 0.0;
    for (std::size_t i = 1; i < anzahl; ++i) {
        const auto abstand = AbstandZurVorigen(i);
        const double schritt = alleZeilen.Wert(i, Feld::zeitschritt);
        if (abstand)
            v[i] = schritt > 0.0 ? *abstand / schritt * kKmhProMs : v[i - 1];
    }
    m_abgeleitet = true;
}

bool CFLIImportDat::Pruefe() const
{
    bool position = true;
    bool tempo = true;
    bool xy = true;
    for (std::size_t i = 0; i < alleZeilen.Anzahl(); ++i) {
        const auto hat = [&](Feld feld) { return alleZeilen.Hat(i, feld); };
        const auto gesetzt = [&](Feld feld) { return hat(feld) && alleZeilen.Wert(i, feld) != 0.0; };
        if (!hat(Feld::zeitschritt))
            return false;
        position = position && hat(Feld::laenge) && hat(Feld::breite);
        tempo = tempo && hat(Feld::geschwindigkeit);
        xy = xy && gesetzt(Feld::x) && gesetzt(Feld::y);
    }
    return position || tempo || xy;
}

CFLIImportDat::Ausgang CFLIImportDat::Importiere()
{
    const Ausgang ausgang = Lies();
    if (ausgang != Ausgang::gelesen)
        return ausgang;
    if (!Pruefe()) {
        Leere();
        m_grund = Grund::zeitschrittFehlt;
        return Ausgang::abgelehnt;
    }
    LeiteGeschwindigkeitAb();
    BildeKoordinaten();
    LeiteGeschwindigkeitAb();
    SetzeVorhanden();
    return ausgang;
}

std::vector<double> CFLIImportDat::Zeiten() const
{
    std::vector<double> zeiten;
    zeiten.reserve(alleZeilen.Anzahl());
    double zeit = 0.0;
    for (std::size_t i = 0; i < alleZeilen.Anzahl(); ++i)
        zeiten.push_back(zeit += std::max(alleZeilen.Wert(i, Feld::zeitschritt), 0.0));
    return zeiten;
}

std::vector<double> CFLIImportDat::Geschwindigkeiten() const
{
    std::vector<double> v;
    v.reserve(alleZeilen.Anzahl());
    for (std::size_t i = 0; i < alleZeilen.Anzahl(); ++i)
        v.push_back(alleZeilen.Hat(i, Feld::geschwindigkeit) ? alleZeilen.Wert(i, Feld::geschwindigkeit) : kKeineZahl);
    return v;
}

Zuordnungen CFLIImportDat::GemerkteZuordnungen() const
{
    Zuordnungen gemerkt;
    const auto maske = m_data.AlleMaskenWerte().find(IDD_FAHRDATEN);
    if (maske == m_data.AlleMaskenWerte().end())
        return gemerkt;
    for (const auto& [name, zahlen] : maske->second) {
        if (!name.starts_with(kZuordnung))
            continue;
        std::uint64_t schluessel = 0;
        const char* const ende = name.data() + name.size();
        const auto gelesen = std::from_chars(name.data() + kZuordnung.size(), ende, schluessel, 16);
        if (gelesen.ec == std::errc{} && gelesen.ptr == ende)
            gemerkt[schluessel] = AusZahlen(zahlen);
    }
    return gemerkt;
}

void CFLIImportDat::Ordne(const Zuordnung& zuordnung)
{
    std::vector<Zuordnung> alle = GemerkteZuordnungen()[m_bericht.schluessel];
    std::erase_if(alle, [&](const Zuordnung& z) {
        return z.spalte == zuordnung.spalte || (z.kanal == zuordnung.kanal && z.kanal != Kanal::keiner);
    });
    alle.push_back(zuordnung);
    std::vector<double> zahlen;
    for (const Zuordnung& z : alle)
        zahlen.insert(zahlen.end(), {static_cast<double>(z.spalte), static_cast<double>(static_cast<int>(z.kanal)),
                                     static_cast<double>(z.einheit)});
    m_data.MaskenWerte(IDD_FAHRDATEN)[Zuordnungsname(m_bericht.schluessel)] = std::move(zahlen);
    m_data.NotifyMaskenWerte();
}

void CFLIImportDat::VergissZuordnungen()
{
    m_data.MaskenWerte(IDD_FAHRDATEN).erase(Zuordnungsname(m_bericht.schluessel));
    m_data.NotifyMaskenWerte();
}

bool CFLIImportDat::HatZuordnungen() const
{
    return !m_data.GemerkteWerte(IDD_FAHRDATEN, Zuordnungsname(m_bericht.schluessel)).empty();
}
