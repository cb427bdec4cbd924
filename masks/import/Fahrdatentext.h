// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Numbers and clock times in the cells of a file of driving data. A cell is trimmed and in lower case.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace fahrdaten
{

/// A number at the beginning of a cell.
struct Zahl {
    double wert = 0.0;
    bool gelesen = false;
    bool mitRest = false;       ///< text follows it
    bool vorzeichenlos = false; ///< a minus before a 0 and digits behind the sign: it is not read
};

/// A comma or point splits a number in the integer before it and the digits behind it, which take its sign only from an
/// integer that is not 0: -0.5 is 0.5. Without one the text is an ordinary floating-point number.
Zahl LiesZahl(std::string_view zelle);

struct Uhrzeit {
    double sekunden = 0.0; ///< since midnight
    bool gelesen = false;
    bool ohneSekunden = false;
};

/// Hours, minutes and seconds with one character between them; the seconds may be missing behind a colon. Hours below
/// 12 count 12 more and the hour 12 counts as 0: only differences of times are used.
Uhrzeit LiesUhrzeit(std::string_view zelle);
/// Whether a cell is clock time and not a number of seconds: it holds a colon, or two separators between digits.
bool IstUhrzeit(std::string_view zelle);
/// The time of day in a text that may begin with a date, on a clock of 24 hours, or of 12 with am or pm behind it.
Uhrzeit LiesTageszeit(std::string_view zelle);
/// HHMMSS.s
Uhrzeit LiesZiffern(std::string_view zelle);

inline constexpr int kMeisteZiffern = 18;
inline constexpr std::array<double, kMeisteZiffern + 1> kZehnerpotenz{
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

inline bool IstZiffer(char c)
{
    return static_cast<unsigned char>(c - '0') <= 9;
}

/// Integer and decimals as one number.
inline double Verbinde(bool negativ, std::uint64_t ganze, std::uint64_t dezimalen, int stellen)
{
    const double betrag = static_cast<double>(ganze);
    const double rest = static_cast<double>(dezimalen) / kZehnerpotenz[static_cast<std::size_t>(stellen)];
    return negativ && ganze != 0 ? -betrag - rest : betrag + rest;
}

} // namespace fahrdaten
