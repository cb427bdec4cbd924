// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/XmlLeser.h"

#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace
{

constexpr std::array<std::pair<std::string_view, char>, 5> kZeichen{
    {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};

/// Longest name between '&' and ';' that is looked at: "#x0010FFFF".
constexpr std::size_t kLaengsterName = 10;

void Anhaengen(std::string& text, std::uint32_t zeichen)
{
    const auto byte = [&](std::uint32_t b) { text += static_cast<char>(static_cast<unsigned char>(b)); };
    if (zeichen < 0x80) {
        byte(zeichen);
    } else if (zeichen < 0x800) {
        byte(0xC0U | zeichen >> 6U);
        byte(0x80U | (zeichen & 0x3FU));
    } else if (zeichen < 0x10000) {
        byte(0xE0U | zeichen >> 12U);
        byte(0x80U | (zeichen >> 6U & 0x3FU));
        byte(0x80U | (zeichen & 0x3FU));
    } else {
        byte(0xF0U | zeichen >> 18U);
        byte(0x80U | (zeichen >> 12U & 0x3FU));
        byte(0x80U | (zeichen >> 6U & 0x3FU));
        byte(0x80U | (zeichen & 0x3FU));
    }
}

/// The character of "#49" or "#x31".
std::optional<std::uint32_t> Nummer(std::string_view name)
{
    name.remove_prefix(1);
    const bool hex = !name.empty() && (name.front() == 'x' || name.front() == 'X');
    if (hex)
        name.remove_prefix(1);
    std::uint32_t zeichen = 0;
    const auto [ende, fehler] = std::from_chars(name.data(), name.data() + name.size(), zeichen, hex ? 16 : 10);
    const bool surrogat = zeichen >= 0xD800 && zeichen < 0xE000;
    if (fehler != std::errc{} || ende != name.data() + name.size() || zeichen == 0 || zeichen > 0x10FFFF || surrogat)
        return std::nullopt;
    return zeichen;
}

bool Ersetze(std::string& text, std::string_view name)
{
    if (name.starts_with('#')) {
        const auto zeichen = Nummer(name);
        if (zeichen)
            Anhaengen(text, *zeichen);
        return zeichen.has_value();
    }
    for (const auto& [wort, zeichen] : kZeichen)
        if (name == wort) {
            text += zeichen;
            return true;
        }
    return false;
}

} // namespace

std::string XmlText(std::string_view roh)
{
    std::string text;
    text.reserve(roh.size());
    for (std::size_t i = 0; i < roh.size(); ++i) {
        if (roh[i] == '&') {
            const std::size_t ende = roh.substr(i + 1, kLaengsterName + 1).find(';');
            if (ende != std::string_view::npos && Ersetze(text, roh.substr(i + 1, ende))) {
                i += ende + 1;
                continue;
            }
        }
        text += roh[i];
    }
    return text;
}
