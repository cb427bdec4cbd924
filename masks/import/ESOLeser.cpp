// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/ESOLeser.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
#include <vector>

namespace
{

constexpr std::string_view kMarke = "\xEF\xBB\xBF"; // byte-order mark
constexpr std::size_t kSichereStellen = 18;         // digits that fit into 64 bits whatever they are
constexpr std::size_t kVorspalteFelder = 6;
constexpr std::size_t kVorspalteZahlen = 4; // fewer of the six are numbers

bool IstZiffer(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

bool IstLuecke(char c)
{
    return c == ' ' || c == '\t';
}

bool IstZeilenende(char c)
{
    return c == '\n' || c == '\r';
}

/// Reads a whole number with blanks around it from p on and leaves p behind it; false when there is none of 64 bits.
bool LiesGanzzahl(const char*& p, const char* ende, std::int64_t& wert)
{
    while (p != ende && IstLuecke(*p))
        ++p;
    const bool negativ = p != ende && *p == '-';
    if (p != ende && (*p == '-' || *p == '+'))
        ++p;
    const char* const ziffern = p;
    std::uint64_t betrag = 0;
    for (; p != ende && IstZiffer(*p); ++p)
        betrag = betrag * 10 + static_cast<unsigned>(*p - '0');
    const auto stellen = static_cast<std::size_t>(p - ziffern);
    if (stellen == 0)
        return false;
    if (stellen > kSichereStellen) {
        constexpr auto kGroesste = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        if (std::from_chars(ziffern, p, betrag).ec != std::errc{} || betrag > kGroesste + (negativ ? 1U : 0U))
            return false;
    }
    wert = static_cast<std::int64_t>(negativ ? ~betrag + 1U : betrag);
    while (p != ende && IstLuecke(*p))
        ++p;
    return true;
}

/// One separator at the end of a line ends its last field and begins none.
std::vector<std::string_view> Felder(std::string_view zeile, char trennzeichen)
{
    std::vector<std::string_view> felder;
    for (;;) {
        const std::size_t at = zeile.find(trennzeichen);
        felder.push_back(zeile.substr(0, at));
        if (at == std::string_view::npos || at + 1 == zeile.size())
            return felder;
        zeile.remove_prefix(at + 1);
    }
}

bool IstGanzzahl(std::string_view feld)
{
    const char* p = feld.data();
    const char* const ende = p + feld.size();
    std::int64_t wert = 0;
    return LiesGanzzahl(p, ende, wert) && p == ende;
}

bool IstLeer(std::string_view zeile)
{
    return std::all_of(zeile.begin(), zeile.end(), IstLuecke);
}

/// The usual field, up to seven digits with or without a minus and nothing around them, in one step; false for any
/// other. Eight bytes are there from behind the minus on.
bool LiesKurz(const char*& p, std::int64_t& wert)
{
    const bool negativ = *p == '-';
    const char* const ziffern = p + (negativ ? 1 : 0);
    std::uint64_t stellen = 0; // the first digit in the lowest byte
    std::memcpy(&stellen, ziffern, sizeof stellen);
    stellen ^= 0x3030303030303030U;
    // The top bit of a byte is set where it is above 9; what carries over lies behind the first such byte.
    const std::uint64_t andere = ((stellen + 0x7676767676767676U) | stellen) & 0x8080808080808080U;
    const int anzahl = std::countr_zero(andere) / 8;
    if (anzahl == 0 || anzahl == 8)
        return false;
    stellen <<= 64 - 8 * anzahl; // zeros before
    // Two digits, four, eight side by side.
    stellen = (stellen * 10 + (stellen >> 8U)) & 0x00FF00FF00FF00FFU;
    stellen = (stellen * 100 + (stellen >> 16U)) & 0x0000FFFF0000FFFFU;
    stellen = (stellen * 10000 + (stellen >> 32U)) & 0xFFFFFFFFU;
    const auto betrag = static_cast<std::int64_t>(stellen);
    wert = negativ ? -betrag : betrag;
    p = ziffern + anzahl;
    return true;
}

} // namespace

bool ESOLeser::Nimm(std::string_view stueck)
{
    if (m_anfang) {
        // The mark may come in pieces.
        m_rest += stueck;
        if (m_rest.size() < kMarke.size() && kMarke.starts_with(m_rest))
            return true;
        m_anfang = false;
        const std::string alles = std::exchange(m_rest, {});
        std::string_view text = alles;
        if (text.starts_with(kMarke))
            text.remove_prefix(kMarke.size());
        return Nimm(text);
    }
    if (m_befund != ESOBefund::gelesen)
        return false;
    const std::size_t letztes = stueck.find_last_of("\r\n");
    if (letztes == std::string_view::npos) {
        m_rest += stueck;
    } else {
        std::string_view ganze = stueck.substr(0, letztes + 1);
        if (!m_rest.empty()) {
            const std::size_t erstes = stueck.find_first_of("\r\n");
            m_rest += stueck.substr(0, erstes + 1);
            NimmZeilen(m_rest.data(), m_rest.data() + m_rest.size());
            ganze.remove_prefix(erstes + 1);
        }
        m_rest = stueck.substr(letztes + 1);
        NimmZeilen(ganze.data(), ganze.data() + ganze.size());
    }
    if (m_befund == ESOBefund::gelesen && m_rest.size() > kLaengsteZeile) {
        m_befund = ESOBefund::zuLang;
        ++m_zeile;
    }
    return m_befund == ESOBefund::gelesen;
}

ESOBefund ESOLeser::Ende()
{
    m_anfang = false; // what there is of a mark is a line
    m_rest += '\n';
    NimmZeilen(m_rest.data(), m_rest.data() + m_rest.size());
    m_rest.clear();
    if (m_befund == ESOBefund::gelesen && m_kurven[0].empty())
        m_befund = ESOBefund::ohneWerte;
    for (ESOKurve& kurve : m_kurven) {
        const std::int64_t erster = kurve.empty() ? 0 : kurve.front();
        bool ueberlauf = false;
        for (std::int64_t& wert : kurve)
            ueberlauf |= __builtin_sub_overflow(wert, erster, &wert);
        if (ueberlauf && m_befund == ESOBefund::gelesen)
            m_befund = ESOBefund::falscherWert;
    }
    if (m_befund != ESOBefund::gelesen)
        m_kurven = {};
    return m_befund;
}

/// The text ends with the end of a line.
void ESOLeser::NimmZeilen(const char* p, const char* ende)
{
    if (m_befund != ESOBefund::gelesen)
        return;
    while (p != ende && m_befund == ESOBefund::gelesen) {
        if (IstZeilenende(*p)) {
            m_zeile += *p == '\n' || (p + 1 != ende && p[1] != '\n') ? 1U : 0U;
            ++p;
            continue;
        }
        if (!m_kopf) {
            p = Datenzeile(p, ende);
            continue;
        }
        const char* const zeilenende = std::find_if(p, ende, IstZeilenende);
        const std::string_view zeile(p, static_cast<std::size_t>(zeilenende - p));
        if (!IstLeer(zeile)) {
            ErsteZeile(zeile);
            m_kopf = false;
            if (m_aufbau == ESOAufbau::ohneKopf)
                continue; // it is read once more, as data
        }
        p = zeilenende;
    }
    if (m_befund != ESOBefund::gelesen)
        ++m_zeile; // the ends of those before were counted
}

void ESOLeser::ErsteZeile(std::string_view zeile)
{
    m_trennzeichen = zeile.find(';') == std::string_view::npos && zeile.find(',') != std::string_view::npos ? ',' : ';';
    const auto felder = Felder(zeile, m_trennzeichen);
    const auto zahlen = static_cast<std::size_t>(std::count_if(felder.begin(), felder.end(), IstGanzzahl));
    if (felder.size() == kESOKurven && zahlen == kESOKurven)
        m_aufbau = ESOAufbau::ohneKopf;
    else if (felder.size() == kVorspalteFelder && zahlen < kVorspalteZahlen)
        m_aufbau = ESOAufbau::vorspalte;
    // A first guess of the rows: lines as long as this one, or ten bytes long, whatever is more.
    const std::uint64_t zeilen = m_groesse / std::max<std::uint64_t>(zeile.size() + 1, 2 * kESOKurven);
    for (ESOKurve& kurve : m_kurven)
        kurve.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(zeilen, kMeisteZeilen)));
}

const char* ESOLeser::Datenzeile(const char* p, const char* ende)
{
    // A line of blanks is empty.
    if (IstLuecke(*p)) {
        const char* rest = p;
        while (IstLuecke(*rest))
            ++rest;
        if (IstZeilenende(*rest))
            return rest;
    }
    if (m_aufbau == ESOAufbau::vorspalte) {
        while (*p != m_trennzeichen && !IstZeilenende(*p))
            ++p;
        if (IstZeilenende(*p)) {
            m_befund = ESOBefund::feldFehlt;
            return p;
        }
        ++p;
    }
    std::array<std::int64_t, kESOKurven> werte;
    std::size_t i = 0;
    constexpr std::ptrdiff_t kKurzeFelder = 9 * static_cast<std::ptrdiff_t>(kESOKurven) + 8;
    if (std::endian::native == std::endian::little && ende - p >= kKurzeFelder)
        for (const char* kurz = p; i < kESOKurven && LiesKurz(kurz, werte[i]); ++i) {
            if (*kurz != m_trennzeichen && (i + 1 < kESOKurven || !IstZeilenende(*kurz)))
                break; // blanks, or an error: with the others
            p = i + 1 < kESOKurven ? ++kurz : kurz;
        }
    for (; i < kESOKurven; ++i) {
        if (!LiesGanzzahl(p, ende, werte[i]) || (*p != m_trennzeichen && !IstZeilenende(*p))) {
            m_befund = IstZeilenende(*p) ? ESOBefund::feldFehlt : ESOBefund::falscherWert;
            return p;
        }
        if (i + 1 < kESOKurven) {
            if (IstZeilenende(*p)) {
                m_befund = ESOBefund::feldFehlt;
                return p;
            }
            ++p;
        }
    }
    if (m_kurven[0].size() == kMeisteZeilen) {
        m_befund = ESOBefund::zuLang;
        return p;
    }
    for (i = 0; i < kESOKurven; ++i)
        m_kurven[i].push_back(werte[i]);
    while (!IstZeilenende(*p)) // further fields
        ++p;
    return p;
}
