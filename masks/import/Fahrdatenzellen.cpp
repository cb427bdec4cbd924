// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrdatenzellen.h"

namespace fahrdaten
{
namespace
{

constexpr std::string_view kLeerzeichen = " \t\n\v\f\r";

/// Length of a sequence of several bytes by its first two, 0 when they begin none (RFC 3629).
std::size_t Folgenlaenge(unsigned char erstes, unsigned char zweites)
{
    if (erstes >= 0xC2 && erstes < 0xE0)
        return 2;
    if (erstes >= 0xE0 && erstes < 0xF0)
        return (erstes == 0xE0 && zweites < 0xA0) || (erstes == 0xED && zweites > 0x9F) ? 0 : 3;
    if (erstes >= 0xF0 && erstes < 0xF5)
        return (erstes == 0xF0 && zweites < 0x90) || (erstes == 0xF4 && zweites > 0x8F) ? 0 : 4;
    return 0;
}

bool IstUtf8(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t laenge =
            byte(i) < 0x80 ? 1
                           : Folgenlaenge(static_cast<unsigned char>(byte(i)), static_cast<unsigned char>(byte(i + 1)));
        if (laenge == 0)
            return false;
        for (std::size_t k = 1; k < laenge; ++k)
            if ((byte(i + k) & 0xC0U) != 0x80U)
                return false;
        i += laenge;
    }
    return true;
}

} // namespace

std::string_view Beschnitten(std::string_view text)
{
    const std::size_t anfang = text.find_first_not_of(kLeerzeichen);
    return anfang == std::string_view::npos ? std::string_view{}
                                            : text.substr(anfang, text.find_last_not_of(kLeerzeichen) + 1 - anfang);
}

std::string Utf8(std::string_view text)
{
    const bool istUtf8 = IstUtf8(text);
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            utf8 += ' ';
        } else if (byte < 0x80 || istUtf8) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | byte >> 6U);
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

void Zellen::Schneide(std::string_view zeile, char trenner)
{
    if (zeile.size() >= 3 && zeile.front() == '"' && zeile[zeile.size() - 2] == '"' && zeile[zeile.size() - 3] == '"') {
        Entpacke(zeile.substr(1, zeile.size() - 2));
        zeile = m_entpackt;
    }
    m_zellen.clear();
    m_text.clear();
    m_text.reserve(zeile.size()); // the cells point into it
    bool gequotet = false;
    std::size_t anfang = 0;
    for (const char c : zeile) {
        if (c == '"') {
            gequotet = !gequotet;
        } else if (!gequotet && (c == trenner || (trenner == ' ' && c == '\t'))) {
            Beende(anfang, trenner);
            anfang = m_text.size();
        } else {
            m_text += Klein(c);
        }
    }
    Beende(anfang, trenner);
}

std::vector<std::string> Zellen::Texte() const
{
    std::vector<std::string> texte;
    for (const std::string_view zelle : m_zellen)
        texte.push_back(Utf8(zelle));
    return texte;
}

/// A whole row that was written as one quoted text.
void Zellen::Entpacke(std::string_view inneres)
{
    m_entpackt.clear();
    for (std::size_t i = 0; i < inneres.size(); ++i) {
        m_entpackt += inneres[i];
        i += inneres[i] == '"' && i + 1 < inneres.size() && inneres[i + 1] == '"' ? 1 : 0;
    }
}

void Zellen::Beende(std::size_t anfang, char trenner)
{
    const std::string_view zelle = Beschnitten(std::string_view(m_text).substr(anfang));
    if (trenner != ' ' || !zelle.empty()) // any number of blanks separates once
        m_zellen.push_back(zelle);
}

} // namespace fahrdaten
