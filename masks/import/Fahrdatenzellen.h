// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Lines of a file of driving data as cells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fahrdaten
{

/// Without white space around.
std::string_view Beschnitten(std::string_view text);

/// A letter A to Z as a small one.
inline char Klein(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The text as UTF-8 to be shown: what is not is one byte per character (Latin-1), control characters are blanks.
std::string Utf8(std::string_view text);

/// A line cut into cells, trimmed and in lower case.
class Zellen
{
  public:
    /// Quoted stretches keep their separators. A blank separates together with the blanks beside it.
    void Schneide(std::string_view zeile, char trenner);
    std::size_t Anzahl() const { return m_zellen.size(); }
    /// Empty where there is none.
    std::string_view operator[](int spalte) const
    {
        const auto index = static_cast<std::size_t>(spalte);
        return spalte >= 0 && index < m_zellen.size() ? m_zellen[index] : std::string_view{};
    }
    /// As UTF-8.
    std::vector<std::string> Texte() const;

  private:
    void Entpacke(std::string_view inneres);
    void Beende(std::size_t anfang, char trenner);

    std::string m_text;
    std::string m_entpackt;
    std::vector<std::string_view> m_zellen;
};

} // namespace fahrdaten
