// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/FitSpur.h"

#include "host/Memory.h"
#include "masks/import/Zivilzeit.h"

#include <charconv>
#include <ctime>
#include <limits>
#include <utility>

namespace
{

constexpr std::uint16_t kRecord = 20;
constexpr std::uint16_t kGpsMetadata = 160;
/// 180 / 2^31 = 180 × this.
constexpr double kHalbkreis = 4.656612873077393e-10;
constexpr int kStellen = 30;
/// The GPX text comes in pieces of about this size.
constexpr std::size_t kStueck = std::size_t{1} << 20U;
constexpr std::string_view kGpxKopf = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                      "<gpx creator = \"Tavelin\" version = \"1.0\">\n"
                                      "  <trk>\n"
                                      "    <name>Tavelin</name>\n"
                                      "    <type>cycling</type>\n"
                                      "    <trkseg>\n";
constexpr std::string_view kGpxFuss = "    </trkseg>\n  </trk>\n</gpx>\n";

/// What of a message makes a point, in the order of the tables below.
enum Messwert : std::size_t {
    breite,
    laenge,
    hoehe,
    hoeheGenau,
    tempo,
    tempoGenau,
    puls,
    tritt,
    temperatur,
    millisekunde,
    kMesswerte
};

/// Field numbers of a message; 255 is no field.
constexpr std::uint8_t kKeins = 255;
using Felder = std::array<std::uint8_t, kMesswerte>;
constexpr Felder kRecordFelder{0, 1, 2, 78, 6, 73, 3, 4, 13, kKeins};
constexpr Felder kMetadatenFelder{1, 2, kKeins, 3, kKeins, 4, kKeins, kKeins, kKeins, 0};

/// Where the messages of a definition have them: looked up once, for all messages of it.
struct Leseplan {
    std::size_t folge = 0;  ///< of the definition
    unsigned vorhanden = 0; ///< one bit for each of them that the definition has
    std::array<FitDefinition::Feld, kMesswerte> felder{};

    void Richte(const FitDefinition& definition, const Felder& nummern)
    {
        folge = definition.folge;
        vorhanden = 0;
        for (std::size_t i = 0; i < kMesswerte; ++i)
            if (const FitDefinition::Feld* feld = nummern[i] == kKeins ? nullptr : definition.Finde(nummern[i])) {
                felder[i] = *feld;
                vorhanden |= 1U << i;
            }
    }
};

/// Reads the measured values of one message, each into its place of the point.
class Messwertleser
{
  public:
    Messwertleser(const FitNachricht& nachricht, const Leseplan& plan) : m_nachricht(nachricht), m_plan(plan) {}

    /// False, with nothing changed, when the message has no such value or one that the place has no room for, which is
    /// no measured value.
    template <Messwert wert, class T> bool Nimm(T& ziel, std::int64_t groesster = std::numeric_limits<T>::max()) const
    {
        if ((m_plan.vorhanden & 1U << wert) == 0)
            return false;
        const auto zahl = m_nachricht.Zahl(std::get<wert>(m_plan.felder));
        if (!zahl || *zahl < std::numeric_limits<T>::min() || *zahl > groesster)
            return false;
        ziel = static_cast<T>(*zahl);
        return true;
    }

  private:
    const FitNachricht& m_nachricht;
    const Leseplan& m_plan;
};

/// False when the message has no position.
bool Lies(const FitNachricht& nachricht, const Leseplan& plan, FitPunkt& punkt)
{
    const Messwertleser leser(nachricht, plan);
    if (!leser.Nimm<breite>(punkt.breite) || !leser.Nimm<laenge>(punkt.laenge))
        return false;
    unsigned vorhanden = 0;
    const auto merke = [&vorhanden](bool da, FitPunkt::Vorhanden was) { vorhanden |= da ? unsigned{was} : 0U; };
    merke(leser.Nimm<hoeheGenau>(punkt.hoeheRoh) || leser.Nimm<hoehe>(punkt.hoeheRoh), FitPunkt::hoehe);
    merke(leser.Nimm<tempoGenau>(punkt.tempoRoh) || leser.Nimm<tempo>(punkt.tempoRoh), FitPunkt::tempo);
    merke(leser.Nimm<puls>(punkt.pulsRoh), FitPunkt::puls);
    merke(leser.Nimm<tritt>(punkt.trittRoh), FitPunkt::tritt);
    merke(leser.Nimm<temperatur>(punkt.temperaturC), FitPunkt::temperatur);
    leser.Nimm<millisekunde>(punkt.millisekunde, 999);
    const auto zeitstempel = nachricht.Zeitstempel();
    punkt.zeitstempel = zeitstempel.value_or(0);
    merke(zeitstempel.has_value(), FitPunkt::zeit);
    punkt.vorhanden = static_cast<std::uint16_t>(vorhanden);
    return true;
}

/// Points of one kind of message.
class Punkthoerer : public FitHoerer
{
  public:
    Punkthoerer(const Felder& felder, std::size_t bytes) : m_felder(felder), m_bytes(bytes) {}

    void Dateianfang() override
    {
        if (!punkte.empty() && (nahtstellen.empty() || nahtstellen.back() != punkte.size()))
            nahtstellen.push_back(punkte.size());
    }

    void Empfange(const FitNachricht& nachricht) override
    {
        if (punkte.capacity() == 0) {
            punkte.reserve(m_bytes / nachricht.Groesse()); // more messages of this size the file cannot hold
            RuvWillFill(punkte.data(), punkte.capacity() * sizeof(FitPunkt));
        }
        Leseplan& plan = m_plaene[nachricht.Definition().lokal];
        if (plan.folge != nachricht.Definition().folge)
            plan.Richte(nachricht.Definition(), m_felder);
        if (!Lies(nachricht, plan, punkte.emplace_back())) {
            punkte.pop_back();
            ++ohneLage;
        }
    }

    std::vector<FitPunkt> punkte;
    std::vector<std::size_t> nahtstellen;
    std::size_t ohneLage = 0;

  private:
    const Felder& m_felder;
    std::array<Leseplan, kFitLokaleNummern> m_plaene{};
    std::size_t m_bytes;
};

/// Keeps its points only until the record messages turn out to have positions.
class Metadatenhoerer final : public Punkthoerer
{
  public:
    Metadatenhoerer(const Punkthoerer& records, std::size_t bytes)
        : Punkthoerer(kMetadatenFelder, bytes), m_records(records)
    {
    }

    void Empfange(const FitNachricht& nachricht) override
    {
        if (m_records.punkte.empty())
            Punkthoerer::Empfange(nachricht);
        else
            punkte = {};
    }

  private:
    const Punkthoerer& m_records;
};

void HaengeZahlAn(std::string& text, double zahl)
{
    // 30 significant digits of any double: sign, digits, point, zeros after it or an exponent.
    char ziffern[64];
    const auto ende = std::to_chars(ziffern, ziffern + sizeof ziffern, zahl, std::chars_format::general, kStellen).ptr;
    text.append(ziffern, ende);
}

void HaengeZahlAn(std::string& text, std::int64_t zahl, std::size_t breite)
{
    const std::string ziffern = std::to_string(zahl);
    if (ziffern.size() < breite)
        text.append(breite - ziffern.size(), '0');
    text += ziffern;
}

void HaengeElementAn(std::string& text, std::string_view anfang, double zahl, std::string_view ende)
{
    text += anfang;
    HaengeZahlAn(text, zahl);
    text += ende;
}

} // namespace

double FitPunkt::Breite() const
{
    return breite * 180.0 * kHalbkreis;
}

double FitPunkt::Laenge() const
{
    return laenge * 180.0 * kHalbkreis;
}

double FitPunkt::Hoehe() const
{
    return hoeheRoh / 5.0 - 500.0;
}

double FitPunkt::Tempo() const
{
    return Hat(tempo) ? tempoRoh / 1000.0 : -1.0;
}

FitSpur LiesFit(std::string_view bytes, const std::function<bool(double)>& weiter)
{
    Punkthoerer records(kRecordFelder, bytes.size());
    Metadatenhoerer metadaten(records, bytes.size());
    FitVerteiler verteiler;
    verteiler.Anmelden(kRecord, records);
    verteiler.Anmelden(kGpsMetadata, metadaten);
    FitSpur spur;
    spur.befund = verteiler.Dekodiere(bytes, weiter);
    spur.ausMetadaten = records.punkte.empty() && !metadaten.punkte.empty();
    Punkthoerer& quelle = spur.ausMetadaten ? metadaten : records;
    spur.punkte = std::move(quelle.punkte);
    spur.nahtstellen = std::move(quelle.nahtstellen);
    if (!spur.nahtstellen.empty() && spur.nahtstellen.back() == spur.punkte.size())
        spur.nahtstellen.pop_back();
    spur.ohneLage = records.ohneLage;
    return spur;
}

const Ortszeit& Ortsuhr::Zeit(std::int64_t unixSekunden)
{
    if (unixSekunden < m_blockanfang || unixSekunden >= m_blockanfang + kBlock)
        StelleAuf(unixSekunden);
    m_zeit.zeit = ZivilzeitVon(unixSekunden + m_voraus);
    m_zeit.voraus = static_cast<std::int16_t>(m_voraus / 60);
    return m_zeit;
}

void Ortsuhr::StelleAuf(std::int64_t unixSekunden)
{
    m_blockanfang = unixSekunden - unixSekunden % kBlock;
    const auto zeitpunkt = static_cast<std::time_t>(m_blockanfang);
    // All of the module runs on the user-interface thread.
    const std::tm* ort = std::localtime(&zeitpunkt); // NOLINT(concurrency-mt-unsafe)
    m_voraus = ort == nullptr ? 0
                              : SekundenSeit1970({ort->tm_year + 1900, ort->tm_mon + 1, ort->tm_mday, ort->tm_hour,
                                                  ort->tm_min, ort->tm_sec}) -
                                    m_blockanfang;
}

GPXTrackPoint AlsTrackPoint(const FitPunkt& punkt, Ortsuhr& uhr)
{
    GPXTrackPoint ziel;
    ziel.latitude = punkt.Breite();
    ziel.longitude = punkt.Laenge();
    if (punkt.Hat(FitPunkt::hoehe))
        ziel.elevation = punkt.Hoehe();
    if (punkt.Hat(FitPunkt::zeit)) {
        const Ortszeit& ort = uhr.Zeit(punkt.zeitstempel + kFitZeitVersatz);
        ziel.year = ort.zeit.jahr;
        ziel.month = ort.zeit.monat;
        ziel.day = ort.zeit.tag;
        ziel.hour = ort.zeit.stunde;
        ziel.minute = ort.zeit.minute;
        ziel.second = ort.zeit.sekunde;
        ziel.millisecond = punkt.millisekunde;
        ziel.zone = ort.voraus;
    }
    if (punkt.Hat(FitPunkt::puls))
        ziel.heartRate = punkt.pulsRoh;
    if (punkt.Hat(FitPunkt::tritt))
        ziel.cadence = punkt.trittRoh;
    if (punkt.Hat(FitPunkt::temperatur))
        ziel.temperature = punkt.temperaturC;
    return ziel;
}

std::string_view GpxText::Naechstes()
{
    m_text.clear();
    if (!std::exchange(m_begonnen, true))
        m_text += kGpxKopf;
    for (; !m_punkte.empty() && m_text.size() < kStueck; m_punkte = m_punkte.subspan(1))
        HaengeAn(m_punkte.front());
    if (m_punkte.empty() && !std::exchange(m_beendet, true))
        m_text += kGpxFuss;
    return m_text;
}

void GpxText::HaengeAn(const FitPunkt& punkt)
{
    std::string& text = m_text;
    HaengeElementAn(text, "      <trkpt lat=\"", punkt.Breite(), "\" lon=\"");
    HaengeZahlAn(text, punkt.Laenge());
    text += "\">\n";
    if (punkt.Hat(FitPunkt::hoehe))
        HaengeElementAn(text, "        <ele>", punkt.Hoehe(), "</ele>\n");
    if (punkt.Hat(FitPunkt::zeit)) {
        const Zivilzeit& zeit = m_uhr.Zeit(punkt.zeitstempel + kFitZeitVersatz).zeit;
        text += "        <time>";
        HaengeZahlAn(text, zeit.jahr, 4);
        const auto stelle = [&](char davor, std::int32_t zahl, std::size_t breite) {
            text += davor;
            HaengeZahlAn(text, zahl, breite);
        };
        stelle('-', zeit.monat, 2);
        stelle('-', zeit.tag, 2);
        stelle('T', zeit.stunde, 2);
        stelle(':', zeit.minute, 2);
        stelle(':', zeit.sekunde, 2);
        stelle('.', punkt.millisekunde, 3);
        text += "Z</time>\n";
    }
    const bool temperatur = punkt.Hat(FitPunkt::temperatur);
    const bool puls = punkt.Hat(FitPunkt::puls);
    const bool tritt = punkt.Hat(FitPunkt::tritt);
    if (temperatur || puls || tritt) {
        text += "        <extensions>\n          <ns3:TrackPointExtension>\n";
        if (temperatur)
            HaengeElementAn(text, "            <ns3:atemp>", punkt.temperaturC, "</ns3:atemp>\n");
        if (puls)
            HaengeElementAn(text, "            <ns3:hr>", punkt.pulsRoh, "</ns3:hr>\n");
        if (tritt)
            HaengeElementAn(text, "            <ns3:cad>", punkt.trittRoh, "</ns3:cad>\n");
        text += "          </ns3:TrackPointExtension>\n        </extensions>\n";
    }
    text += "      </trkpt>\n";
}
