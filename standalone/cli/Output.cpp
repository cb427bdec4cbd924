// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Verbs.h"

#include "base/Utf.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace cli
{
namespace
{

/// Number of characters; the marks that continue one are not counted.
std::size_t Width(const std::string& utf8)
{
    return static_cast<std::size_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char c) { return !base::ContinuesCharacter(c); }));
}

} // namespace

std::optional<UINT> MaskNumber(const std::string& text)
{
    UINT number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = failure == std::errc{} && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

std::string ForTerminal(std::string_view text)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // C0 and DEL, and the C1 set as UTF-8 writes it.
        const bool c1 = byte == 0xC2U && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0U;
        if ((byte >= 0x20U && byte != 0x7FU && !c1) || byte == '\n') {
            shown += text[i];
            continue;
        }
        const auto code = c1 ? static_cast<unsigned char>(text[++i]) : byte;
        shown += "\\x";
        shown += kDigits[code >> 4U];
        shown += kDigits[code & 0xFU];
    }
    return shown;
}

int Complain(int exit, const std::string& text)
{
    std::fputs(("tavelin-cli: " + ForTerminal(text) + "\n").c_str(), stderr);
    return exit;
}

void Print(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string TableText(std::vector<std::vector<std::string>> rows)
{
    std::vector<std::size_t> widths;
    for (auto& row : rows) {
        for (std::string& cell : row)
            cell = ForTerminal(cell);
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], Width(row[i]));
    }
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i] + std::string(widths[i] - Width(row[i]) + 2, ' ');
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

} // namespace cli
