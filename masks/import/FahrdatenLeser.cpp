// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Lines of the file, handed to the search for the header and then to the rows.
#include "masks/import/FahrdatenLeser.h"

#include "masks/import/Fahrdatenkopf.h"
#include "masks/import/Fahrdatenzeilen.h"

#include <algorithm>
#include <cmath>

using namespace fahrdaten;

namespace
{

constexpr double kGroessteBreite = 90.0;
constexpr double kGroessteLaenge = 180.0;

constexpr std::string_view kMarke = "\xEF\xBB\xBF";
constexpr std::string_view kGeschuetztesLeerzeichen = "\xC2\xA0";

} // namespace

class FahrdatenLeser::Maschine
{
  public:
    explicit Maschine(const Zuordnungen& zuordnungen) : m_suche(zuordnungen, m_zellen, m_bericht) {}

    std::size_t Lies(std::string_view bytes, bool ende)
    {
        const std::size_t size = bytes.size();
        const auto naechstes = [&](char zeichen, std::size_t ab) { return std::min(bytes.find(zeichen, ab), size); };
        std::size_t at = 0;
        std::size_t lf = naechstes('\n', 0);
        std::size_t cr = naechstes('\r', 0);
        while (at < size && m_zustand != Zustand::ende) {
            if (lf < at)
                lf = naechstes('\n', at);
            if (cr < at)
                cr = naechstes('\r', at);
            const std::size_t zeilenende = std::min(lf, cr);
            if (!ende && (zeilenende == size || (zeilenende == cr && cr + 1 == size)))
                break; // the rest of the line, or the second character of its end, is yet to come
            ++m_nummer;
            LiesZeile(bytes.substr(at, zeilenende - at));
            at = zeilenende + (cr + 1 == lf && zeilenende == cr ? 2 : 1);
        }
        return m_zustand == Zustand::ende ? size : std::min(at, size);
    }

    Fahrdaten Fertig();

  private:
    enum class Zustand { kopf, daten, ende };

    void LiesZeile(std::string_view roh)
    {
        if (m_zustand == Zustand::daten && m_zeilen.LiesSchnell(roh, m_nummer))
            return;
        const std::string_view zeile = Vorbereitet(roh);
        if (zeile.empty())
            return;
        if (m_zustand == Zustand::kopf) {
            const Kopfsuche::Antwort antwort = m_suche.Lies(zeile, m_nummer);
            if (antwort == Kopfsuche::Antwort::weiter)
                return;
            BeginneDaten();
            if (antwort == Kopfsuche::Antwort::datenFolgen)
                return;
        }
        if (!m_zeilen.Lies(zeile, m_nummer))
            m_zustand = Zustand::ende;
    }

    /// Without byte-order marks, no-break spaces and blanks around.
    std::string_view Vorbereitet(std::string_view roh)
    {
        if (roh.find('\0') != std::string_view::npos)
            m_bericht.nullBytes = true;
        if (roh.find('\xEF') == std::string_view::npos && roh.find('\xC2') == std::string_view::npos)
            return Beschnitten(roh);
        if (m_nummer == 1 && roh.starts_with(kMarke))
            m_bericht.byteMarke = true;
        m_zeile.clear();
        for (std::size_t i = 0; i < roh.size(); ++i) {
            const std::string_view rest = roh.substr(i);
            if (rest.starts_with(kMarke)) {
                i += kMarke.size() - 1;
            } else if (rest.starts_with(kGeschuetztesLeerzeichen)) {
                m_zeile += ' ';
                i += kGeschuetztesLeerzeichen.size() - 1;
            } else {
                m_zeile += roh[i];
            }
        }
        return Beschnitten(m_zeile);
    }

    void BeginneDaten()
    {
        m_zustand = Zustand::daten;
        m_suche.Beende();
        m_zeilen.Beginne();
    }
    void PruefeWerte(const FLIZeilen& zeilen);

    Zustand m_zustand = Zustand::kopf;
    std::size_t m_nummer = 0; ///< of the line
    std::string m_zeile;
    Zellen m_zellen;
    Leserbericht m_bericht;
    Kopfsuche m_suche;
    Datenzeilen m_zeilen{m_suche.kopf, m_zellen, m_bericht};
};

void FahrdatenLeser::Maschine::PruefeWerte(const FLIZeilen& zeilen)
{
    bool vorwaerts = false;
    for (std::size_t i = 0; i < zeilen.Anzahl(); ++i) {
        const double schritt = zeilen.Wert(i, Feld::zeitschritt);
        vorwaerts = vorwaerts || schritt > 0.0;
        m_bericht.rueckwaerts += schritt < 0.0;
        m_bericht.keineGrad += std::abs(zeilen.Wert(i, Feld::breite)) > kGroessteBreite ||
                               std::abs(zeilen.Wert(i, Feld::laenge)) > kGroessteLaenge;
    }
    m_bericht.stehendeZeit = zeilen.Anzahl() > 1 && !vorwaerts;
}

Fahrdaten FahrdatenLeser::Maschine::Fertig()
{
    Fahrdaten daten;
    Kopf& kopf = m_suche.kopf;
    const bool gefunden = kopf.plan.Reicht();
    if (gefunden && m_zustand == Zustand::kopf)
        BeginneDaten();
    daten.brauchbar = gefunden && m_zeilen.WaehleSatz(daten.zeilen);
    PruefeWerte(daten.zeilen);
    m_bericht.trenner = kopf.trenner;
    m_bericht.kopfzeile = kopf.nummer;
    m_bericht.schluessel = Kopfschluessel(kopf.zeile);
    m_bericht.spalten.resize(kopf.namen.size());
    for (std::size_t i = 0; i < kopf.namen.size(); ++i) {
        m_bericht.spalten[i].name = kopf.namen[i];
        m_bericht.spalten[i].einheit = kopf.einheiten[i];
    }
    m_bericht.plan = std::move(kopf.plan);
    m_bericht.vorschau = std::move(kopf.vorschau);
    daten.bericht = std::move(m_bericht);
    return daten;
}

FahrdatenLeser::FahrdatenLeser(const Zuordnungen& zuordnungen) : m_maschine(std::make_unique<Maschine>(zuordnungen)) {}

FahrdatenLeser::~FahrdatenLeser() = default;

std::size_t FahrdatenLeser::Lies(std::string_view bytes, bool ende)
{
    return m_maschine->Lies(bytes, ende);
}

Fahrdaten FahrdatenLeser::Fertig()
{
    return m_maschine->Fertig();
}

Fahrdaten LiesFahrdaten(std::string_view bytes, const Zuordnungen& zuordnungen)
{
    FahrdatenLeser leser(zuordnungen);
    leser.Lies(bytes, true);
    return leser.Fertig();
}
