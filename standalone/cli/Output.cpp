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
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return !base::ContinuesCharacter(c); }));
}

} // namespace

std::optional<UINT> MaskNumber(const std::string& text)
{
    UINT number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = failure == std::errc{} && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

int Complain(int exit, const std::string& text)
{
    std::fputs(("tavelin-cli: " + text + "\n").c_str(), stderr);
    return exit;
}

void Print(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string TableText(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
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
