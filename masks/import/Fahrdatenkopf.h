// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Looks for the header of a file of driving data, line by line, and for its units.
#pragma once

#include "masks/import/FahrdatenLeser.h"
#include "masks/import/Fahrdatenzellen.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fahrdaten
{

/// Lines that are shown of a file.
inline constexpr std::size_t kVorschauzeilen = 3;

/// The header line of a file, or one that may be.
struct Kopf {
    std::string zeile;
    std::size_t nummer = 0;
    char trenner = 0;
    std::vector<std::string> namen;
    std::vector<std::string> einheiten;
    bool einheitenBekannt = false;
    std::vector<std::vector<std::string>> vorschau;
    Spaltenplan plan;

    /// Unit and name of a column that is headed "name (unit)", "name [unit]" or "name MPH".
    void Nimm(const std::string& titel);
};

class Kopfsuche
{
  public:
    /// All of them outlive the search; the report is told of sections and units.
    Kopfsuche(const Zuordnungen& zuordnungen, Zellen& zellen, Leserbericht& bericht)
        : m_zuordnungen(zuordnungen), m_zellen(zellen), m_bericht(bericht)
    {
    }

    enum class Antwort {
        weiter,
        datenFolgen,  ///< the rows begin with the next line
        beginntDaten, ///< the line is the first row
    };
    Antwort Lies(std::string_view zeile, std::size_t nummer);

    /// Gives the header its units, and the columns by them.
    void Beende();

    Kopf kopf; ///< the header, or the best line for it while there is none

  private:
    enum class Zustand { suche, spaltennamen, vorDaten, einheiten };

    Antwort Suche(std::string_view zeile);
    Antwort LiesEinheiten(std::string_view zeile);
    bool VersucheKopf(std::string_view zeile, char trenner);
    Antwort NachDemKopf() const;
    std::span<const Zuordnung> ZuordnungFuer(std::string_view kopfzeile) const;

    const Zuordnungen& m_zuordnungen;
    Zellen& m_zellen;
    Leserbericht& m_bericht;
    Zustand m_zustand = Zustand::suche;
    std::size_t m_nummer = 0; ///< of the line
};

} // namespace fahrdaten
