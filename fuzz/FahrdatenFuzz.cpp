// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever stands in a file of driving data: finite numbers, the same rows wherever its blocks end, and the same rows
// when every line takes the long way.
#include "host/Assert.h"
#include "masks/import/FahrdatenLeser.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace
{

void MustBeSame(const Fahrdaten& a, const Fahrdaten& b)
{
    RUV_ASSERT(a.brauchbar == b.brauchbar && a.zeilen.Anzahl() == b.zeilen.Anzahl());
    RUV_ASSERT(a.bericht.ausgelassen == b.bericht.ausgelassen);
    for (std::size_t i = 0; i < a.zeilen.Anzahl(); ++i)
        RUV_ASSERT(a.zeilen.Zeile(i) == b.zeilen.Zeile(i));
    for (std::size_t i = 0; i < a.bericht.spalten.size(); ++i)
        RUV_ASSERT(a.bericht.spalten[i].vorzeichenlos == b.bericht.spalten[i].vorzeichenlos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t block = 1 + bytes[0];
    const std::string text(reinterpret_cast<const char*>(bytes) + 2, size - 2);
    Zuordnungen zuordnungen;
    if (bytes[1] != 0) {
        const Leserbericht bericht = LiesFahrdaten(text).bericht;
        zuordnungen[bericht.schluessel] = {
            {bytes[1] & 7, static_cast<Kanal>((bytes[1] >> 3) % 14 - 1), bytes[1] % 5 - 1}};
    }
    const Fahrdaten ganz = LiesFahrdaten(text, zuordnungen);
    for (std::size_t i = 0; i < ganz.zeilen.Anzahl(); ++i)
        for (const double wert : ganz.zeilen.Zeile(i))
            RUV_ASSERT(!std::isnan(wert));

    FahrdatenLeser leser(zuordnungen);
    std::string rest;
    for (std::size_t at = 0; at < text.size(); at += block) {
        rest += text.substr(at, block);
        rest.erase(0, leser.Lies(rest, at + block >= text.size()));
    }
    MustBeSame(ganz, leser.Fertig());

    constexpr const char* kGeschuetztesLeerzeichen = "\xC2\xA0";
    std::string lang = kGeschuetztesLeerzeichen;
    for (const char c : text) {
        lang += c;
        if (c == '\n')
            lang += kGeschuetztesLeerzeichen;
    }
    MustBeSame(ganz, LiesFahrdaten(lang, zuordnungen));
    return 0;
}
