// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Help pages as text blocks, for documents that quote them. Reads the part of Markdown that help pages use: headings,
// paragraphs, lists, indented or fenced formulas, tables; bold, italics, code and links.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace report
{

struct TextRun {
    std::string text;
    bool bold = false;
    bool italic = false;
    bool code = false;
    friend bool operator==(const TextRun&, const TextRun&) = default;
};
using TextLine = std::vector<TextRun>;

struct TextBlock {
    enum class Kind { paragraph, heading, item, formula, table };
    Kind kind = Kind::paragraph;
    TextLine text{};                           ///< paragraph, heading, item
    std::string marker{};                      ///< item: "•" or "1."
    std::vector<std::string> lines{};          ///< formula, as written
    std::vector<std::vector<TextLine>> rows{}; ///< table, the first row being its head
    std::vector<bool> rightAligned{};          ///< its columns that hold numbers; none when it does not say

    bool IsRightAligned(std::size_t column) const { return column < rightAligned.size() && rightAligned[column]; }
};

std::vector<TextBlock> ReadHelpText(std::string_view markdown);
/// The part of a page between its heading of level 2 with this title and the next one, empty when it has none.
std::string_view HelpSection(std::string_view markdown, std::string_view title);

} // namespace report
