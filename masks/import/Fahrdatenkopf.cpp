// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrdatenkopf.h"

#include "masks/import/Fahrdatentext.h"

#include <algorithm>

namespace fahrdaten
{
namespace
{

/// A line with more columns heads no file.
constexpr std::size_t kMeisteSpalten = 4096;

std::string OhneKlammern(const std::string& einheit)
{
    const bool geklammert = einheit.size() >= 2 && ((einheit.front() == '[' && einheit.back() == ']') ||
                                                    (einheit.front() == '(' && einheit.back() == ')'));
    return geklammert ? std::string(Beschnitten(einheit).substr(1, einheit.size() - 2)) : einheit;
}

bool Gleich(std::string_view zeile, std::string_view klein)
{
    return std::equal(
        zeile.begin(), zeile.end(), klein.begin(), klein.end(), [](char a, char b) { return Klein(a) == b; });
}

} // namespace

void Kopf::Nimm(const std::string& titel)
{
    std::string name = titel;
    std::string einheit;
    std::size_t klammer = titel.find('(');
    if (klammer == std::string::npos)
        klammer = titel.find('[');
    if (klammer != std::string::npos) {
        if (klammer + 1 < titel.size())
            einheit = Beschnitten(std::string_view(titel).substr(klammer + 1, titel.size() - klammer - 2));
        name = Beschnitten(std::string_view(titel).substr(0, klammer));
        einheitenBekannt = true;
    } else if (titel.find(" mph") != std::string::npos) {
        name = Beschnitten(std::string_view(titel).substr(0, titel.size() - 4));
        einheit = "mph";
        einheitenBekannt = true;
    }
    namen.push_back(std::move(name));
    einheiten.push_back(std::move(einheit));
}

Kopfsuche::Antwort Kopfsuche::Lies(std::string_view zeile, std::size_t nummer)
{
    m_nummer = nummer;
    switch (m_zustand) {
    case Zustand::suche:
        return Suche(zeile);
    case Zustand::spaltennamen:
        m_zustand = Zustand::suche;
        return VersucheKopf(zeile, zeile.find(',') != std::string_view::npos   ? ','
                                   : zeile.find(';') != std::string_view::npos ? ';'
                                                                               : ' ')
                   ? NachDemKopf()
                   : Antwort::weiter;
    case Zustand::vorDaten:
        return Gleich(zeile, "[data]") ? Antwort::datenFolgen : Antwort::weiter;
    case Zustand::einheiten:
        break;
    }
    return LiesEinheiten(zeile);
}

Kopfsuche::Antwort Kopfsuche::Suche(std::string_view zeile)
{
    if (zeile[0] != '#' && !IstZiffer(zeile[0])) {
        if (Gleich(zeile, "[column names]")) {
            m_bericht.abschnitte = true;
            m_zustand = Zustand::spaltennamen;
            return Antwort::weiter;
        }
        for (const char trenner : {',', ';'})
            if (zeile.find(trenner) != std::string_view::npos && VersucheKopf(zeile, trenner))
                return NachDemKopf();
        m_bericht.abschnitte = m_bericht.abschnitte || zeile[0] == '[';
    }
    if (kopf.trenner != 0 && zeile != kopf.zeile && kopf.vorschau.size() < kVorschauzeilen) {
        m_zellen.Schneide(zeile, kopf.trenner);
        kopf.vorschau.push_back(m_zellen.Texte());
    }
    return Antwort::weiter;
}

/// Takes the line as header when its columns suffice; otherwise keeps it when it is the best so far.
bool Kopfsuche::VersucheKopf(std::string_view zeile, char trenner)
{
    Kopf neu;
    neu.zeile = zeile;
    neu.nummer = m_nummer;
    neu.trenner = trenner;
    m_zellen.Schneide(zeile, trenner);
    if (m_zellen.Anzahl() > kMeisteSpalten)
        return false;
    for (const std::string& titel : m_zellen.Texte())
        neu.Nimm(titel);
    neu.plan = Spaltenplan(neu.namen, neu.einheiten, ZuordnungFuer(zeile));
    if (neu.plan.Reicht()) {
        kopf = std::move(neu);
        m_zustand = m_bericht.abschnitte ? Zustand::vorDaten : Zustand::einheiten;
        return true;
    }
    const auto rang = [](const Kopf& k) { return std::pair(k.plan.Erkannt(), k.namen.size()); };
    if (neu.namen.size() > 1 && rang(neu) > rang(kopf))
        kopf = std::move(neu);
    return false;
}

/// Without sections, units in the header leave no line of units to come.
Kopfsuche::Antwort Kopfsuche::NachDemKopf() const
{
    return m_zustand == Zustand::einheiten && kopf.einheitenBekannt ? Antwort::datenFolgen : Antwort::weiter;
}

std::span<const Zuordnung> Kopfsuche::ZuordnungFuer(std::string_view kopfzeile) const
{
    const auto gefunden = m_zuordnungen.find(Kopfschluessel(kopfzeile));
    return gefunden == m_zuordnungen.end() ? std::span<const Zuordnung>{} : gefunden->second;
}

Kopfsuche::Antwort Kopfsuche::LiesEinheiten(std::string_view zeile)
{
    if (zeile[0] == '#' || zeile == kopf.zeile)
        return Antwort::weiter;
    const char erstes = zeile[zeile[0] == '"' && zeile.size() > 1 ? 1 : 0];
    if (IstZiffer(erstes))
        return Antwort::beginntDaten;
    if (zeile.find(kopf.trenner) == std::string_view::npos)
        return Antwort::weiter;
    m_zellen.Schneide(zeile, kopf.trenner);
    kopf.einheiten = m_zellen.Texte();
    m_bericht.einheitenzeile = m_nummer;
    m_bericht.einheitenSindZahlen = std::all_of(kopf.einheiten.begin(), kopf.einheiten.end(),
                                                [](const std::string& e) { return e.empty() || LiesZahl(e).gelesen; });
    for (std::string& einheit : kopf.einheiten)
        einheit = OhneKlammern(einheit);
    return Antwort::datenFolgen;
}

void Kopfsuche::Beende()
{
    kopf.einheiten.resize(kopf.namen.size());
    kopf.plan = Spaltenplan(kopf.namen, kopf.einheiten, ZuordnungFuer(kopf.zeile));
}

} // namespace fahrdaten
