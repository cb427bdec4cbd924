// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/HelpText.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace report
{
namespace
{

using Kind = TextBlock::Kind;

std::vector<std::string_view> SplitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.push_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string_view Trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::size_t Indentation(std::string_view line)
{
    return std::min(line.find_first_not_of(' '), line.size());
}

/// Bold, italics, code and links; what is not closed stands for itself.
TextLine ReadInline(std::string_view text)
{
    TextLine runs;
    std::string plain;
    const auto flush = [&] {
        if (!plain.empty())
            runs.push_back({std::exchange(plain, {})});
    };
    while (!text.empty()) {
        const auto take = [&](std::string_view mark, auto TextRun::*property) {
            if (!text.starts_with(mark))
                return false;
            const std::size_t end = text.find(mark, mark.size());
            if (end == std::string_view::npos || end == mark.size() || text[mark.size()] == ' ')
                return false;
            flush();
            TextRun run{std::string(text.substr(mark.size(), end - mark.size()))};
            run.*property = true;
            runs.push_back(std::move(run));
            text.remove_prefix(end + mark.size());
            return true;
        };
        if (text.front() == '\\' && text.size() > 1) {
            plain += text[1];
            text.remove_prefix(2);
            continue;
        }
        if (take("`", &TextRun::code) || take("**", &TextRun::bold) || take("*", &TextRun::italic))
            continue;
        if (text.front() == '[') {
            const std::size_t middle = text.find("](");
            const std::size_t end = middle == std::string_view::npos ? middle : text.find(')', middle);
            if (end != std::string_view::npos && text.find(']') == middle) {
                plain += text.substr(1, middle - 1);
                text.remove_prefix(end + 1);
                continue;
            }
        }
        plain += text.front();
        text.remove_prefix(1);
    }
    flush();
    return runs;
}

/// Marker and text of a list item.
struct Item {
    std::string marker;
    std::string_view text;
};

std::optional<Item> ReadItem(std::string_view line)
{
    const std::string_view text = Trimmed(line);
    if (text.starts_with("- ") || text.starts_with("* "))
        return Item{"•", text.substr(2)};
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    if (digits > 0 && digits <= 3 && text.substr(digits).starts_with(". "))
        return Item{std::string(text.substr(0, digits + 1)), text.substr(digits + 2)};
    return std::nullopt;
}

std::vector<TextLine> ReadRow(std::string_view line)
{
    std::string_view text = Trimmed(line);
    text.remove_prefix(1);
    if (text.ends_with('|'))
        text.remove_suffix(1);
    std::vector<TextLine> cells;
    for (;;) {
        const std::size_t end = text.find('|');
        cells.push_back(ReadInline(Trimmed(text.substr(0, end))));
        if (end == std::string_view::npos)
            return cells;
        text.remove_prefix(end + 1);
    }
}

bool IsRuler(std::string_view line)
{
    return line.find('-') != std::string_view::npos && line.find_first_not_of("|-: ") == std::string_view::npos;
}

class Reader
{
  public:
    std::vector<TextBlock> Read(std::string_view markdown)
    {
        for (const std::string_view line : SplitLines(markdown))
            Line(line);
        EndText();
        for (TextBlock& block : m_blocks)
            while (!block.lines.empty() && block.lines.back().empty())
                block.lines.pop_back();
        return std::move(m_blocks);
    }

  private:
    void Line(std::string_view line)
    {
        const std::string_view text = Trimmed(line);
        if (m_fenced || text.starts_with("```")) {
            if (text.starts_with("```"))
                m_fenced = !m_fenced;
            else
                Formula(line);
            if (m_fenced && text.starts_with("```"))
                EndText();
            return;
        }
        const bool inFormula = m_pending.empty() && !m_blocks.empty() && m_blocks.back().kind == Kind::formula;
        if (text.empty()) {
            if (inFormula)
                Formula({});
            EndText();
        } else if (Indentation(line) >= 4 && m_pending.empty() && !m_inItem) {
            Formula(line.substr(4));
        } else if (text.starts_with('#')) {
            EndText();
            m_inItem = false;
            const std::size_t level = std::min(text.find_first_not_of('#'), text.size());
            m_blocks.push_back({Kind::heading, ReadInline(Trimmed(text.substr(level)))});
        } else if (text.starts_with('|')) {
            EndText();
            m_inItem = false;
            if (IsRuler(text))
                return;
            if (m_blocks.empty() || m_blocks.back().kind != Kind::table)
                m_blocks.push_back({Kind::table});
            m_blocks.back().rows.push_back(ReadRow(text));
        } else if (const auto item = ReadItem(line)) {
            EndText();
            m_inItem = true;
            m_marker = item->marker;
            m_pending = item->text;
        } else {
            if (m_pending.empty() && Indentation(line) == 0)
                m_inItem = false;
            m_pending += (m_pending.empty() ? "" : " ") + std::string(text);
        }
    }

    void Formula(std::string_view line)
    {
        EndText();
        if (m_blocks.empty() || m_blocks.back().kind != Kind::formula)
            m_blocks.push_back({Kind::formula});
        m_blocks.back().lines.emplace_back(line);
    }

    void EndText()
    {
        if (m_pending.empty())
            return;
        TextBlock block{m_marker.empty() ? Kind::paragraph : Kind::item, ReadInline(m_pending)};
        block.marker = std::exchange(m_marker, {});
        m_blocks.push_back(std::move(block));
        m_pending.clear();
    }

    std::vector<TextBlock> m_blocks;
    std::string m_pending;
    std::string m_marker;
    bool m_inItem = false;
    bool m_fenced = false;
};

} // namespace

std::vector<TextBlock> ReadHelpText(std::string_view markdown)
{
    return Reader().Read(markdown);
}

std::string_view HelpSection(std::string_view markdown, std::string_view title)
{
    const std::string heading = "## " + std::string(title);
    std::size_t begin = std::string_view::npos;
    std::size_t position = 0;
    for (const std::string_view line : SplitLines(markdown)) {
        position = static_cast<std::size_t>(line.data() - markdown.data());
        if (begin != std::string_view::npos && line.starts_with("## "))
            return markdown.substr(begin, position - begin);
        if (line == heading)
            begin = std::min(position + line.size() + 1, markdown.size());
    }
    return begin == std::string_view::npos ? std::string_view() : markdown.substr(begin);
}

} // namespace report
