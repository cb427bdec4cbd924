// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Rows of driving data. One of plain numbers is read from the bytes as they are (LiesSchnell); any other takes the long
// way over trimmed cells in lower case. Both give the same row.
#pragma once

#include "masks/import/Fahrdatenkopf.h"
#include "masks/import/Fahrdatentext.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace fahrdaten
{

class Datenzeilen
{
  public:
    /// All of them outlive the rows; the report is told of what the cells hold.
    Datenzeilen(Kopf& kopf, Zellen& zellen, Leserbericht& bericht) : m_kopf(kopf), m_zellen(zellen), m_bericht(bericht)
    {
    }

    /// The header is complete.
    void Beginne();
    /// A row of plain numbers. False for any other, which is then untouched.
    bool LiesSchnell(std::string_view roh, std::size_t nummer);
    /// False when the line ends the rows.
    bool Lies(std::string_view zeile, std::size_t nummer);
    /// Keeps the rows that have the channels of the set that keeps most. False when that is less than half of them.
    bool WaehleSatz(FLIZeilen& zeilen);

  private:
    /// One row as it is read.
    struct Reihe {
        double wert[kKanaele];
        unsigned hat; ///< bit per channel
    };

    void LiesZeit(Reihe& reihe, std::string_view erste, std::string_view zweite);
    std::optional<double> Genommen(const Uhrzeit& uhr, std::string_view zelle);
    std::optional<double> UhrzeitDer(std::string_view zelle, bool auchSekunden);
    double Fortlaufend(double sekunden);
    void Nimm(const Reihe& reihe, std::size_t nummer);

    static constexpr std::size_t kSaetze = 3;

    Kopf& m_kopf;
    Zellen& m_zellen;
    Leserbericht& m_bericht;

    enum class Spaltenart : unsigned char { unbenutzt, zahl, ersteZeit, zweiteZeit };
    struct Schnellspalte {
        Spaltenart art = Spaltenart::unbenutzt;
        unsigned char kanal = 0;
        double faktor = 1.0;
    };
    bool m_schnell = false;
    std::vector<Schnellspalte> m_schnellspalten; ///< up to the last one that is needed
    bool m_zeitAusText = false;
    double m_letzteTageszeit = 0.0;
    double m_tage = 0.0;

    std::vector<Kanal> m_kanaele; ///< that a column feeds
    std::array<std::vector<double>, kKanaele> m_werte;
    std::vector<unsigned char> m_vollstaendig; ///< per row a bit of each set of channels
    std::array<std::size_t, kSaetze> m_fehlend{};
    std::array<std::vector<std::size_t>, kSaetze> m_fehlendeZeilen;
};

} // namespace fahrdaten
