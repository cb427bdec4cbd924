// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Gpxwerte.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace
{

/// A number in a calendar text has no more digits.
constexpr int kHoechstensZiffern = 9;
/// Whole numbers up to here and powers of ten up to the 22nd are exact doubles, so that their quotient is the nearest
/// double to the decimal number (W. D. Clinger, How to read floating point numbers accurately, 1990).
constexpr std::uint64_t kExakt = std::uint64_t{1} << 53U;
constexpr std::size_t kZiffernImWort = 19; // digits that fit into 64 bits
constexpr std::array<double, 23> kZehnerpotenzen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::size_t kZeitLaenge = 19; // "2024-05-01T10:00:00"
constexpr std::uint64_t kJeByte = 0x0101010101010101U;

bool IstZiffer(char c)
{
    return c >= '0' && c <= '9';
}

bool IstLeer(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view OhneLeerraum(std::string_view text)
{
    while (!text.empty() && IstLeer(text.front()))
        text.remove_prefix(1);
    return text;
}

/// Takes a number without decimals from the front of the text, blanks and sign before it allowed.
bool NimmGanze(std::string_view& text, std::int32_t& zahl)
{
    text = OhneLeerraum(text);
    std::size_t i = 0;
    const bool negativ = !text.empty() && text.front() == '-';
    if (negativ || (!text.empty() && text.front() == '+'))
        i = 1;
    const std::size_t von = i;
    std::int32_t wert = 0;
    while (i < text.size() && IstZiffer(text[i])) {
        if (i - von == kHoechstensZiffern)
            return false;
        wert = wert * 10 + (text[i] - '0');
        ++i;
    }
    if (i == von)
        return false;
    zahl = negativ ? -wert : wert;
    text.remove_prefix(i);
    return true;
}

bool NimmZeichen(std::string_view& text, char zeichen)
{
    if (text.empty() || text.front() != zeichen)
        return false;
    text.remove_prefix(1);
    return true;
}

std::uint64_t Acht(const char* p)
{
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t acht;
    std::memcpy(&acht, p, 8);
    return acht;
}

/// Eight digits of values 0..9, the first in the lowest byte: in every other byte the number of two of them.
std::uint64_t Paare(std::uint64_t ziffern)
{
    return ziffern * 10 + (ziffern >> 8U);
}
/// Marks with its lowest bit the first byte that is no value 0..9; what lies above may be wrong.
std::uint64_t KeineZiffer(std::uint64_t werte)
{
    return ((werte + kJeByte * 0x76U) | werte) & kJeByte * 0x80U;
}

/// "2024-05-01T10:00:00", as nearly every file writes it, eight characters at once. False, with nothing changed, for
/// anything else, which is read number by number.
bool NimmUeblicheZeit(const char* p, GPXTrackPoint& punkt)
{
    // What is left of a text without the pattern's characters: digits where it has a zero, nothing elsewhere.
    const std::uint64_t datum = Acht(p) ^ Acht("0000-00-");
    const std::uint64_t uhr = Acht(p + 8) ^ Acht("00T00:00");
    const std::uint64_t schluss = Acht(p + 11) ^ Acht("00:00:00");
    constexpr std::uint64_t kStricheImDatum = 0xFF0000FF00000000U;
    constexpr std::uint64_t kTrennerDerUhr = 0x0000FF0000FF0000U;
    const std::uint64_t falsch = KeineZiffer(datum) | (datum & kStricheImDatum) | KeineZiffer(uhr) |
                                 (uhr & kTrennerDerUhr) | KeineZiffer(schluss) | (schluss & kTrennerDerUhr);
    if (falsch != 0)
        return false;
    const auto zwei = [](std::uint64_t paare, unsigned stelle) {
        return static_cast<std::int32_t>(paare >> 8 * stelle & 0xFFU);
    };
    const std::uint64_t d = Paare(datum);
    const std::uint64_t u = Paare(uhr);
    punkt.year = zwei(d, 0) * 100 + zwei(d, 2);
    punkt.month = zwei(d, 5);
    punkt.day = zwei(u, 0);
    punkt.hour = zwei(u, 3);
    punkt.minute = zwei(u, 6);
    punkt.second = zwei(Paare(schluss), 6);
    return true;
}

/// The same at the front of a text.
bool NimmUeblicheZeit(std::string_view& text, GPXTrackPoint& punkt)
{
    if (text.size() < kZeitLaenge || (text.size() > kZeitLaenge && IstZiffer(text[kZeitLaenge])) ||
        !NimmUeblicheZeit(text.data(), punkt))
        return false;
    text.remove_prefix(kZeitLaenge);
    return true;
}

/// The decimals of the seconds: milliseconds, and microseconds beyond them.
void NimmBruchteil(std::string_view& text, GPXTrackPoint& punkt)
{
    std::int32_t mikro = 0;
    std::int32_t gewicht = 100000;
    std::size_t i = 0;
    for (; i < text.size() && IstZiffer(text[i]); ++i) {
        mikro += (text[i] - '0') * gewicht;
        gewicht /= 10;
    }
    punkt.millisecond = mikro / 1000;
    punkt.mikrosekunde = static_cast<std::uint16_t>(mikro % 1000);
    text.remove_prefix(i);
}

/// "+01:00", "+0100" or "+01" as minutes; 0 for anything else.
std::int16_t Zonenversatz(std::string_view text)
{
    if (text.empty() || (text.front() != '+' && text.front() != '-'))
        return 0;
    std::array<int, 4> ziffern{};
    std::size_t anzahl = 0;
    for (const char c : text.substr(1))
        if (IstZiffer(c) && anzahl < 4)
            ziffern[anzahl++] = c - '0';
        else if (c != ':' || anzahl != 2)
            break;
    if (anzahl < 2)
        return 0;
    const int minuten = (ziffern[0] * 10 + ziffern[1]) * 60 + ziffern[2] * 10 + ziffern[3];
    return static_cast<std::int16_t>(text.front() == '-' ? -minuten : minuten);
}

/// Of digits that are no more than kExakt.
double Exakt(bool negativ, std::uint64_t ziffern, std::size_t nachkomma)
{
    const double betrag = static_cast<double>(ziffern) / kZehnerpotenzen[nachkomma];
    return negativ ? -betrag : betrag;
}

/// Digits at `p`, no more than eight of them, as a number.
struct Ziffernfolge {
    std::uint64_t zahl = 0;
    unsigned anzahl = 0;
};

Ziffernfolge LiesZiffern(const char* p)
{
    const std::uint64_t werte = Acht(p) ^ kJeByte * '0';
    const std::uint64_t ende = KeineZiffer(werte);
    const unsigned anzahl = ende == 0 ? 8U : static_cast<unsigned>(std::countr_zero(ende)) / 8U;
    if (anzahl == 0)
        return {};
    // Zeros before them make them eight; then pairs, fours, all.
    std::uint64_t z = Paare(werte << (64U - 8U * anzahl));
    constexpr std::uint64_t kUnten = 0x000000FF000000FFU;
    z = ((z & kUnten) * (100U + (std::uint64_t{1000000} << 32U)) +
         ((z >> 16U) & kUnten) * (1U + (std::uint64_t{10000} << 32U))) >>
        32U;
    return {z & 0xFFFFFFFFU, anzahl};
}

} // namespace

void GpxZeit(std::string_view text, GPXTrackPoint& punkt)
{
    if (!NimmUeblicheZeit(text, punkt) &&
        (!NimmGanze(text, punkt.year) || !NimmZeichen(text, '-') || !NimmGanze(text, punkt.month) ||
         !NimmZeichen(text, '-') || !NimmGanze(text, punkt.day) || !NimmZeichen(text, 'T') ||
         !NimmGanze(text, punkt.hour) || !NimmZeichen(text, ':') || !NimmGanze(text, punkt.minute) ||
         !NimmZeichen(text, ':') || !NimmGanze(text, punkt.second)))
        return;
    punkt.millisecond = 0;
    punkt.mikrosekunde = 0;
    if (NimmZeichen(text, '.') || NimmZeichen(text, ','))
        NimmBruchteil(text, punkt);
    punkt.zone = Zonenversatz(text);
}

std::optional<double> GpxZahl(std::string_view text)
{
    if (!text.empty() && IstLeer(text.front()))
        text = OhneLeerraum(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const char* p = text.data();
    const char* const ende = p + text.size();
    const bool negativ = p != ende && *p == '-';
    if (negativ)
        ++p;
    std::uint64_t ziffern = 0;
    std::size_t nachkomma = 0;
    const char* const von = p;
    while (p != ende && IstZiffer(*p))
        ziffern = ziffern * 10 + static_cast<unsigned>(*p++ - '0');
    std::size_t anzahl = static_cast<std::size_t>(p - von);
    if (p != ende && *p == '.') {
        const char* const punkt = ++p;
        while (p != ende && IstZiffer(*p))
            ziffern = ziffern * 10 + static_cast<unsigned>(*p++ - '0');
        nachkomma = static_cast<std::size_t>(p - punkt);
        anzahl += nachkomma;
    }
    if (anzahl == 0)
        return std::nullopt; // "nan", "inf"
    if (anzahl <= kZiffernImWort && ziffern <= kExakt && (p == ende || (*p != 'e' && *p != 'E')))
        return Exakt(negativ, ziffern, nachkomma);
    double zahl = 0.0;
    const auto ergebnis = std::from_chars(text.data(), ende, zahl);
    return ergebnis.ec == std::errc{} && std::isfinite(zahl) ? std::optional(zahl) : std::nullopt;
}

const char* UeblicheGpxZahl(const char* p, double& zahl)
{
    const bool negativ = *p == '-';
    if (negativ)
        ++p;
    const char* const von = p;
    std::uint64_t ziffern = 0;
    while (IstZiffer(*p) && p - von < 8)
        ziffern = ziffern * 10 + static_cast<unsigned>(*p++ - '0');
    if (p == von)
        return nullptr;
    const auto ganze = static_cast<std::size_t>(p - von);
    std::size_t nachkomma = 0;
    if (*p == '.') {
        ++p;
        constexpr std::array<std::uint64_t, 9> kZehner{1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
        for (unsigned gelesen = 8; gelesen == 8 && nachkomma <= 8;) {
            const Ziffernfolge folge = LiesZiffern(p);
            gelesen = folge.anzahl;
            ziffern = ziffern * kZehner[gelesen] + folge.zahl;
            nachkomma += gelesen;
            p += gelesen;
        }
    }
    if (ganze + nachkomma > kZiffernImWort || ziffern > kExakt)
        return nullptr;
    zahl = Exakt(negativ, ziffern, nachkomma);
    return p;
}

const char* UeblicheGpxZeit(const char* p, GPXTrackPoint& punkt)
{
    const char* const rest = p + kZeitLaenge;
    std::int32_t milli = 0;
    if (*rest == '.' && IstZiffer(rest[1]) && IstZiffer(rest[2]) && IstZiffer(rest[3])) {
        milli = (rest[1] - '0') * 100 + (rest[2] - '0') * 10 + rest[3] - '0';
        p += 4;
    }
    constexpr std::string_view kSchluss = "Z</time>";
    if (std::memcmp(p + kZeitLaenge, kSchluss.data(), kSchluss.size()) != 0 ||
        !NimmUeblicheZeit(rest - kZeitLaenge, punkt))
        return nullptr;
    punkt.millisecond = milli;
    punkt.mikrosekunde = 0;
    punkt.zone = 0;
    return p + kZeitLaenge + kSchluss.size();
}
