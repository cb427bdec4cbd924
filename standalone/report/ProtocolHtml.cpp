// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/ProtocolHtml.h"

#include "base/Utf.h"
#include "drawing/DrawingExport.h"

#include <utility>

namespace report
{
namespace
{

/// Margins and paddings by side and in px: simple renderers know no other.
constexpr const char* kStyle =
    "body{font-family:'Noto Sans','Segoe UI',sans-serif;font-size:10pt;color:#1c1f24}"
    "h1{font-size:16pt;margin-top:0px;margin-bottom:11px}"
    "h2{font-size:12pt;color:#1f5fa8;margin-top:21px;margin-bottom:5px}"
    "h3{font-size:10pt;margin-top:11px;margin-bottom:3px}"
    "table{border-collapse:collapse;margin-left:0px;margin-right:0px}"
    "th,td{text-align:left;vertical-align:top;padding-top:3px;padding-bottom:3px;padding-left:5px;padding-right:5px;"
    "border-bottom:1px solid #d5dae2}"
    "th{background-color:#eef2f7}"
    "td.value,th.value{text-align:right;white-space:nowrap}"
    "td.group{font-weight:bold;padding-top:8px}"
    "td.small{font-size:8pt;color:#586070}"
    "pre{font-family:'Noto Sans "
    "Mono',monospace;font-size:8pt;background-color:#f3f6fa;white-space:pre-wrap;margin-top:5px;"
    "margin-bottom:5px}"
    "p{margin-top:5px;margin-bottom:5px}"
    "svg,img{max-width:100%;height:auto}";

/// For browsers alone.
constexpr const char* kScreenStyle =
    "@media screen{body{max-width:18cm;margin:1cm auto;padding:0 0.5cm}pre{padding:6pt}}"
    "@media print{h1,h2,h3,td.group{break-after:avoid}tr,svg{break-inside:avoid}}";

class Page
{
  public:
    std::string Take() { return std::move(m_html); }

    void Heading(const char* text) { m_html += "<h2>" + std::string(text) + "</h2>\n"; }

    void Groups(const std::vector<ProtocolGroup>& groups)
    {
        m_html += "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"4\">\n"
                  "<tr><th width=\"60%\">Größe</th><th class=\"value\" align=\"right\" width=\"25%\">Wert</th>"
                  "<th width=\"15%\">Einheit</th></tr>\n";
        Rows(groups);
        m_html += "</table>\n";
    }

    void Rows(const std::vector<ProtocolGroup>& groups)
    {
        for (const ProtocolGroup& group : groups) {
            if (!group.title.empty())
                m_html += "<tr><td class=\"group\" colspan=\"3\">" + EscapeXml(group.title) + "</td></tr>\n";
            for (const ProtocolEntry& entry : group.entries)
                m_html += "<tr><td>" + EscapeXml(entry.label) + "</td>" + Value(entry) + "</tr>\n";
        }
    }

    /// The cells of a value and its unit; a sentence takes the room of both.
    static std::string Value(const ProtocolEntry& entry)
    {
        constexpr std::size_t kLongestNumber = 24; // bytes
        if (entry.unit.empty() && entry.value.size() > kLongestNumber)
            return "<td colspan=\"2\">" + EscapeXml(entry.value) + "</td>";
        return "<td class=\"value\" align=\"right\">" + EscapeXml(entry.value) + "</td><td>" + EscapeXml(entry.unit) +
               "</td>";
    }

    /// Pairs of name and value without a head.
    void Pairs(const std::vector<ProtocolEntry>& entries, const char* cssClass)
    {
        m_html += "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\">\n";
        for (const ProtocolEntry& entry : entries) {
            const std::string cell = "<td class=\"" + std::string(cssClass) + "\"";
            const std::string unit = entry.unit.empty() ? "" : " " + entry.unit;
            m_html += "<tr>" + cell + " width=\"30%\">" + EscapeXml(entry.label) + "</td>" + cell + ">" +
                      EscapeXml(entry.value + unit) + "</td></tr>\n";
        }
        m_html += "</table>\n";
    }

    void Paragraph(const std::string& text) { m_html += "<p>" + EscapeXml(text) + "</p>\n"; }

    void Picture(const ProtocolPicture& picture, std::size_t number, HtmlPictures kind)
    {
        if (!picture.caption.empty())
            m_html += "<h3>" + EscapeXml(picture.caption) + "</h3>\n";
        m_html += "<p>";
        if (kind == HtmlPictures::inlineSvg) {
            const std::string svg = drawing::ToSvg(picture.drawing);
            m_html += svg.substr(svg.find("<svg")); // without the XML declaration
        } else {
            m_html += "<img src=\"diagram-" + std::to_string(number) + "\">";
        }
        m_html += "</p>\n";
    }

    void Help(const std::vector<TextBlock>& blocks)
    {
        for (const TextBlock& block : blocks)
            Block(block);
    }

    void Raw(const std::string& html) { m_html += html; }

  private:
    void Inline(const TextLine& line)
    {
        for (const TextRun& run : line) {
            const char* tag = run.bold ? "b" : run.italic ? "i" : run.code ? "code" : nullptr;
            if (tag != nullptr)
                m_html += "<" + std::string(tag) + ">";
            m_html += EscapeXml(run.text);
            if (tag != nullptr)
                m_html += "</" + std::string(tag) + ">";
        }
    }

    void Block(const TextBlock& block)
    {
        switch (block.kind) {
        case TextBlock::Kind::heading:
            m_html += "<h3>";
            Inline(block.text);
            m_html += "</h3>\n";
            break;
        case TextBlock::Kind::paragraph:
        case TextBlock::Kind::item:
            m_html += "<p>" + (block.marker.empty() ? "" : EscapeXml(block.marker) + " ");
            Inline(block.text);
            m_html += "</p>\n";
            break;
        case TextBlock::Kind::formula:
            m_html += "<pre>";
            for (const std::string& line : block.lines)
                m_html += EscapeXml(line) + "\n";
            m_html += "</pre>\n";
            break;
        case TextBlock::Kind::table:
            m_html += "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"4\">\n";
            for (const auto& row : block.rows) {
                const char* cell = &row == &block.rows.front() ? "th" : "td";
                m_html += "<tr>";
                for (std::size_t i = 0; i < row.size(); ++i) {
                    m_html +=
                        "<" + std::string(cell) + (block.IsRightAligned(i) ? " class=\"value\" align=\"right\">" : ">");
                    Inline(row[i]);
                    m_html += "</" + std::string(cell) + ">";
                }
                m_html += "</tr>\n";
            }
            m_html += "</table>\n";
            break;
        }
    }

    std::string m_html;
};

} // namespace

std::string EscapeXml(const std::string& text)
{
    constexpr char32_t kReplacement = 0xFFFD;
    std::string out;
    for (const char32_t c : base::Codepoints(text)) {
        switch (c) {
        case U'&':
            out += "&amp;";
            break;
        case U'<':
            out += "&lt;";
            break;
        case U'>':
            out += "&gt;";
            break;
        case U'"':
            out += "&quot;";
            break;
        default: // XML has no other control characters, and not these two
            base::AppendUtf8(out, c < 0x20 ? U' ' : c == 0xFFFE || c == 0xFFFF ? kReplacement : c);
        }
    }
    return out;
}

std::string ProtocolHtml(const Protocol& protocol, HtmlPictures pictures)
{
    Page page;
    const std::string title = EscapeXml(protocol.title);
    page.Raw("<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title +
             "</title>\n<style>" + kStyle + (pictures == HtmlPictures::inlineSvg ? kScreenStyle : "") +
             "</style>\n</head>\n<body>\n<h1>" + title + "</h1>\n");
    page.Pairs(protocol.origin, "small");
    if (!protocol.inputs.empty()) {
        page.Heading("Eingaben");
        page.Groups(protocol.inputs);
    }
    if (!protocol.results.empty()) {
        page.Heading("Ergebnisse");
        page.Groups(protocol.results);
    }
    page.Help(protocol.tables);
    for (const std::string& note : protocol.notes)
        page.Paragraph(note);
    if (!protocol.messages.empty()) {
        page.Heading("Meldungen");
        for (const std::string& message : protocol.messages)
            page.Paragraph(message);
    }
    if (!protocol.pictures.empty()) {
        page.Heading(protocol.pictures.size() == 1 ? "Diagramm" : "Diagramme");
        for (std::size_t i = 0; i < protocol.pictures.size(); ++i)
            page.Picture(protocol.pictures[i], i, pictures);
    }
    if (!protocol.formulas.empty()) {
        page.Heading("Formeln");
        page.Help(protocol.formulas);
    }
    page.Raw("</body>\n</html>\n");
    return page.Take();
}

std::string ProtocolHtmlTable(const Protocol& protocol)
{
    Page page;
    page.Raw("<table>\n<tr><th colspan=\"3\">" + EscapeXml(protocol.title) + "</th></tr>\n");
    page.Rows(protocol.inputs);
    page.Rows(protocol.results);
    page.Raw("</table>\n");
    return page.Take();
}

} // namespace report
