// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrdatentext.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace fahrdaten
{
namespace
{

/// What is larger, infinite or not-a-number measures nothing.
constexpr double kGroessteZahl = 1e100;
constexpr double kMinute = 60.0;
constexpr double kStunde = 3600.0;
constexpr double kHalberTag = 12.0;

std::size_t Ziffern(std::string_view text, std::size_t at)
{
    std::size_t end = at;
    while (end < text.size() && IstZiffer(text[end]))
        ++end;
    return end - at;
}

/// A floating-point number at the beginning; `used` is its length.
std::optional<double> Gleitkomma(std::string_view text, std::size_t& used)
{
    const std::size_t plus = text.size() > 1 && text[0] == '+' && text[1] != '-' ? 1 : 0;
    double value = 0.0;
    const auto [end, failure] = std::from_chars(text.data() + plus, text.data() + text.size(), value);
    if (failure != std::errc{} || !(std::abs(value) <= kGroessteZahl))
        return std::nullopt;
    used = static_cast<std::size_t>(end - text.data());
    return value;
}

std::uint64_t Ganzzahl(std::string_view ziffern)
{
    std::uint64_t value = 0;
    for (const char c : ziffern)
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
    return value;
}

/// Seconds at the beginning of the text: digits, and decimals behind a point or comma.
std::optional<double> Sekunden(std::string_view text)
{
    if (text.empty() || !IstZiffer(text[0]))
        return std::nullopt;
    const std::size_t ganze = Ziffern(text, 0);
    std::size_t used = ganze;
    if (used < text.size() && (text[used] == '.' || text[used] == ','))
        used += 1 + Ziffern(text, used + 1);
    std::array<char, 64> puffer{};
    const std::size_t size = std::min(used, puffer.size());
    std::copy_n(text.begin(), size, puffer.begin());
    std::replace(puffer.begin(), puffer.begin() + static_cast<std::ptrdiff_t>(size), ',', '.');
    std::size_t ignored = 0;
    return Gleitkomma({puffer.data(), size}, ignored);
}

} // namespace

Zahl LiesZahl(std::string_view zelle)
{
    Zahl zahl;
    const std::size_t punkt = zelle.find_first_of(".,");
    if (punkt == std::string_view::npos) {
        std::size_t used = 0;
        if (const auto wert = Gleitkomma(zelle, used))
            zahl = {*wert, true, used != zelle.size(), false};
        return zahl;
    }
    const bool negativ = zelle[0] == '-';
    const std::size_t anfang = negativ || zelle[0] == '+' ? 1 : 0;
    const std::size_t vor = Ziffern(zelle, anfang);
    const std::size_t nach = Ziffern(zelle, punkt + 1);
    if (vor == 0 && (anfang != punkt || nach == 0))
        return zahl;
    const std::size_t stellen = std::min<std::size_t>(nach, kMeisteZiffern);
    const std::uint64_t dezimalen = Ganzzahl(zelle.substr(punkt + 1, stellen));
    std::uint64_t ganze = 0;
    if (vor <= kMeisteZiffern) {
        ganze = Ganzzahl(zelle.substr(anfang, vor));
        zahl.wert = Verbinde(negativ, ganze, dezimalen, static_cast<int>(stellen));
    } else {
        std::size_t used = 0;
        const auto wert = Gleitkomma(zelle.substr(anfang, vor), used);
        if (!wert)
            return zahl;
        ganze = 1;
        zahl.wert = negativ ? -*wert : *wert; // decimals are far below its last bit
    }
    zahl.gelesen = true;
    zahl.mitRest = anfang + vor != punkt || punkt + 1 + nach != zelle.size();
    zahl.vorzeichenlos = negativ && ganze == 0 && dezimalen != 0;
    return zahl;
}

Uhrzeit LiesUhrzeit(std::string_view zelle)
{
    Uhrzeit uhr;
    const std::size_t h = Ziffern(zelle, 0);
    if (h == 0 || h > kMeisteZiffern || h + 1 >= zelle.size())
        return uhr;
    const std::size_t m = Ziffern(zelle, h + 1);
    if (m == 0 || m > kMeisteZiffern)
        return uhr;
    auto stunden = static_cast<double>(Ganzzahl(zelle.substr(0, h)));
    const auto minuten = static_cast<double>(Ganzzahl(zelle.substr(h + 1, m)));
    const std::size_t ende = h + 1 + m;
    double sekunden = 0.0;
    if (ende + 1 < zelle.size() && IstZiffer(zelle[ende + 1])) {
        const auto gelesen = Sekunden(zelle.substr(ende + 1));
        if (!gelesen)
            return uhr;
        sekunden = *gelesen;
    } else if (zelle[h] != ':' || (ende < zelle.size() && zelle[ende] == ':')) {
        return uhr; // a number with decimals, or the seconds are announced and are none
    } else {
        uhr.ohneSekunden = true;
    }
    // Both by the hour as read. That no text begins with " am" or " pm" makes this the rule for every text.
    if (stunden < kHalberTag)
        stunden += kHalberTag;
    else if (stunden == kHalberTag)
        stunden = 0.0;
    uhr.sekunden = stunden * kStunde + minuten * kMinute + sekunden;
    uhr.gelesen = true;
    return uhr;
}

bool IstUhrzeit(std::string_view zelle)
{
    if (zelle.find(':') != std::string_view::npos)
        return true;
    int trenner = 0;
    for (std::size_t i = 1; i + 1 < zelle.size(); ++i)
        trenner += !IstZiffer(zelle[i]) && zelle[i] != ',' && IstZiffer(zelle[i - 1]) && IstZiffer(zelle[i + 1]);
    return trenner >= 2;
}

Uhrzeit LiesTageszeit(std::string_view zelle)
{
    Uhrzeit uhr;
    const std::size_t punkt = zelle.find(':');
    if (punkt == std::string_view::npos)
        return uhr;
    std::size_t anfang = punkt;
    while (anfang > 0 && IstZiffer(zelle[anfang - 1]))
        --anfang;
    const std::size_t m = Ziffern(zelle, punkt + 1);
    const std::size_t ende = punkt + 1 + m;
    if (anfang == punkt || punkt - anfang > 2 || m == 0 || m > 2)
        return uhr;
    auto stunden = static_cast<double>(Ganzzahl(zelle.substr(anfang, punkt - anfang)));
    const auto minuten = static_cast<double>(Ganzzahl(zelle.substr(punkt + 1, m)));
    double sekunden = 0.0;
    if (ende + 1 < zelle.size() && zelle[ende] == ':') {
        const auto gelesen = Sekunden(zelle.substr(ende + 1));
        if (!gelesen)
            return uhr;
        sekunden = *gelesen;
    } else {
        uhr.ohneSekunden = true;
    }
    const std::string_view danach = zelle.substr(ende);
    if (stunden == kHalberTag && danach.ends_with("am"))
        stunden = 0.0;
    else if (stunden < kHalberTag && danach.ends_with("pm"))
        stunden += kHalberTag;
    uhr.sekunden = stunden * kStunde + minuten * kMinute + sekunden;
    uhr.gelesen = true;
    return uhr;
}

Uhrzeit LiesZiffern(std::string_view zelle)
{
    Uhrzeit uhr;
    const Zahl zahl = LiesZahl(zelle);
    if (!zahl.gelesen || zahl.wert < 0.0)
        return uhr;
    const double stunden = std::floor(zahl.wert / 10000.0);
    const double minuten = std::floor(zahl.wert / 100.0) - stunden * 100.0;
    uhr.sekunden = stunden * kStunde + minuten * kMinute + std::fmod(zahl.wert, 100.0);
    uhr.gelesen = true;
    return uhr;
}

} // namespace fahrdaten
