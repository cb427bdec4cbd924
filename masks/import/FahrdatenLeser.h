// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reads text files of driving data as loggers write them: bytes in, rows and a report out. One pass, in a time that
// follows from the number of bytes.
#pragma once

#include "masks/import/FLIZeilen.h"
#include "masks/import/Fahrdatenkanal.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What the user says of the columns of files, by Kopfschluessel.
using Zuordnungen = std::map<std::uint64_t, std::vector<Zuordnung>>;

/// What was seen of a column.
struct Spaltenbefund {
    std::string name;              ///< UTF-8, lower case
    std::string einheit;           ///< of the file, "" = none
    std::size_t mitRest = 0;       ///< cells with text behind the number
    std::string beispiel;          ///< the first of them
    std::size_t vorzeichenlos = 0; ///< cells between -1 and 0, whose sign is not read
};

/// Which channels the rows have without exception.
enum class Zeilensatz { geschwindigkeit, position, xy };

/// What was understood of a file and what was not.
struct Leserbericht {
    char trenner = 0;               ///< ',' ';' or ' ', 0 = no header line was found
    bool abschnitte = false;        ///< "[column names]" and "[data]"
    bool byteMarke = false;         ///< UTF-8 with its mark at the beginning
    bool nullBytes = false;         ///< it is no text in one byte per character
    std::size_t kopfzeile = 0;      ///< line number
    std::size_t einheitenzeile = 0; ///< line number, 0 = none
    bool einheitenSindZahlen = false;
    std::uint64_t schluessel = 0; ///< of the header line
    Spaltenplan plan;
    std::vector<Spaltenbefund> spalten;
    std::vector<std::vector<std::string>> vorschau; ///< cells of the first data lines

    std::size_t datenzeilen = 0;
    Zeilensatz satz = Zeilensatz::geschwindigkeit;
    std::size_t ausgelassen = 0;
    std::vector<std::size_t> ausgelasseneZeilen; ///< line numbers of the first of them
    std::size_t uhrOhneSekunden = 0;
    std::size_t keineUhr = 0;    ///< cells that should hold clock time and do not
    std::size_t rueckwaerts = 0; ///< negative time steps
    bool zifferzeit = false;     ///< the times look like HHMMSS, and are read as seconds
    bool stehendeZeit = false;   ///< no time step is positive
    std::size_t keineGrad = 0;   ///< rows whose position is outside ±90°, ±180°

    bool HatKopf() const { return trenner != 0; }
};

struct Fahrdaten {
    FLIZeilen zeilen;
    Leserbericht bericht;
    /// There are a header with the needed columns and enough rows, or no rows at all.
    bool brauchbar = false;
};

class FahrdatenLeser
{
  public:
    /// The assignments must outlive the reader.
    explicit FahrdatenLeser(const Zuordnungen& zuordnungen);
    ~FahrdatenLeser();
    FahrdatenLeser(const FahrdatenLeser&) = delete;
    FahrdatenLeser& operator=(const FahrdatenLeser&) = delete;

    /// Takes the complete lines at the beginning of `bytes`, with `ende` all of it; returns how many bytes that are.
    /// What is left comes again with the next block.
    std::size_t Lies(std::string_view bytes, bool ende);
    /// After the last block.
    Fahrdaten Fertig();

  private:
    class Maschine;
    std::unique_ptr<Maschine> m_maschine;
};

/// A whole file.
Fahrdaten LiesFahrdaten(std::string_view bytes, const Zuordnungen& zuordnungen = {});
