// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/ProtocolOdt.h"

#include "base/ProgramVersion.h"
#include "base/ZipWriter.h"
#include "drawing/DrawingExport.h"
#include "report/ProtocolHtml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace report
{
namespace
{

constexpr const char* kMimeType = "application/vnd.oasis.opendocument.text";
constexpr double kTextWidth = 17.0;     // cm: A4 less two margins of 2 cm
constexpr double kMostPicture = 20.0;   // cm of height that a page has for a diagram
constexpr double kPixelsPerCm = 37.795; // of a drawing at its own size
constexpr double kPictureScale = 3.0;   // picture pixels per pixel of a drawing

constexpr const char* kNamespaces = " xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\""
                                    " xmlns:style=\"urn:oasis:names:tc:opendocument:xmlns:style:1.0\""
                                    " xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\""
                                    " xmlns:table=\"urn:oasis:names:tc:opendocument:xmlns:table:1.0\""
                                    " xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\""
                                    " xmlns:fo=\"urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0\""
                                    " xmlns:svg=\"urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0\""
                                    " xmlns:xlink=\"http://www.w3.org/1999/xlink\""
                                    " xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
                                    " xmlns:meta=\"urn:oasis:names:tc:opendocument:xmlns:meta:1.0\""
                                    " office:version=\"1.2\"";

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string Cm(double length)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), length, std::chars_format::fixed, 3).ptr;
    return std::string(text.data(), end) + "cm";
}

/// Text whose runs of blanks and line ends survive.
std::string Preserved(const std::string& text)
{
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t word = std::min(text.find_first_not_of(' ', at), text.size());
        if (word > at)
            out += "<text:s text:c=\"" + std::to_string(word - at) + "\"/>";
        at = std::min(text.find(' ', word), text.size());
        out += EscapeXml(text.substr(word, at - word));
    }
    return out;
}

struct ParagraphStyle {
    const char* name;
    const char* parent;
    const char* paragraph; ///< attributes of style:paragraph-properties
    const char* text;      ///< attributes of style:text-properties
};

constexpr ParagraphStyle kParagraphStyles[] = {
    {"Standard", "", "fo:margin-top=\"0cm\" fo:margin-bottom=\"0.15cm\"", "fo:font-size=\"10pt\""},
    {"Title", "Standard", "fo:margin-bottom=\"0.3cm\" fo:keep-with-next=\"always\"",
     "fo:font-size=\"16pt\" fo:font-weight=\"bold\""},
    {"Heading", "Standard", "fo:margin-top=\"0.5cm\" fo:margin-bottom=\"0.15cm\" fo:keep-with-next=\"always\"",
     "fo:font-size=\"12pt\" fo:font-weight=\"bold\" fo:color=\"#1f5fa8\""},
    {"Subheading", "Standard", "fo:margin-top=\"0.25cm\" fo:keep-with-next=\"always\"", "fo:font-weight=\"bold\""},
    {"Cell", "Standard", "fo:margin-bottom=\"0cm\"", ""},
    {"CellValue", "Cell", "fo:text-align=\"end\"", ""},
    {"CellHead", "Cell", "fo:keep-with-next=\"always\"", "fo:font-weight=\"bold\""},
    {"CellHeadValue", "CellHead", "fo:text-align=\"end\"", ""},
    {"CellSmall", "Cell", "", "fo:font-size=\"8pt\" fo:color=\"#586070\""},
    {"Formula", "Standard", "fo:margin-bottom=\"0cm\" fo:background-color=\"#f3f6fa\" fo:padding=\"0.05cm\"",
     "style:font-name=\"Noto Sans Mono\" fo:font-size=\"9pt\""},
    {"Foot", "Standard", "fo:margin-bottom=\"0cm\"", "fo:font-size=\"8pt\" fo:color=\"#586070\""},
};

std::string Fonts()
{
    return "<office:font-face-decls>"
           "<style:font-face style:name=\"Noto Sans\" svg:font-family=\"'Noto Sans'\" "
           "style:font-family-generic=\"swiss\"/>"
           "<style:font-face style:name=\"Noto Sans Mono\" svg:font-family=\"'Noto Sans Mono'\" "
           "style:font-family-generic=\"modern\" style:font-pitch=\"fixed\"/>"
           "</office:font-face-decls>";
}

std::string Styles(const std::string& foot)
{
    std::string xml = std::string(kDeclaration) + "<office:document-styles" + kNamespaces + ">" + Fonts() +
                      "<office:styles><style:default-style style:family=\"paragraph\"><style:text-properties "
                      "style:font-name=\"Noto Sans\" fo:font-size=\"10pt\" fo:language=\"de\" fo:country=\"DE\"/>"
                      "</style:default-style>";
    for (const ParagraphStyle& style : kParagraphStyles) {
        xml += "<style:style style:name=\"" + std::string(style.name) + "\" style:family=\"paragraph\"";
        if (*style.parent != '\0')
            xml += " style:parent-style-name=\"" + std::string(style.parent) + "\"";
        xml += "><style:paragraph-properties " + std::string(style.paragraph) + "/><style:text-properties " +
               style.text + "/></style:style>";
    }
    return xml +
           "</office:styles><office:automatic-styles><style:page-layout style:name=\"A4\">"
           "<style:page-layout-properties fo:page-width=\"21cm\" fo:page-height=\"29.7cm\" fo:margin=\"2cm\"/>"
           "<style:footer-style><style:header-footer-properties fo:margin-top=\"0.4cm\"/></style:footer-style>"
           "</style:page-layout></office:automatic-styles><office:master-styles><style:master-page "
           "style:name=\"Standard\" style:page-layout-name=\"A4\"><style:footer><text:p text:style-name=\"Foot\">" +
           EscapeXml(foot) +
           "Seite <text:page-number text:select-page=\"current\">1</text:page-number> von "
           "<text:page-count>1</text:page-count></text:p></style:footer></style:master-page>"
           "</office:master-styles></office:document-styles>\n";
}

struct Column {
    double width; ///< part of the text's width
    const char* style;
};

class Document
{
  public:
    explicit Document(base::ZipWriter& archive) : m_archive(archive) {}

    void Paragraph(const char* style, const std::string& xml)
    {
        m_body += "<text:p text:style-name=\"" + std::string(style) + "\">" + xml + "</text:p>";
    }

    void Heading(const std::string& text)
    {
        m_body += "<text:h text:style-name=\"Heading\" text:outline-level=\"2\">" + EscapeXml(text) + "</text:h>";
    }

    void Groups(const std::vector<ProtocolGroup>& groups)
    {
        BeginTable({{0.6, "Cell"}, {0.25, "CellValue"}, {0.15, "Cell"}});
        Row({"Größe", "Wert", "Einheit"}, true);
        for (const ProtocolGroup& group : groups) {
            if (!group.title.empty())
                Row({group.title, "", ""}, true);
            for (const ProtocolEntry& entry : group.entries)
                Row({entry.label, entry.value, entry.unit}, false);
        }
        EndTable();
    }

    void Pairs(const std::vector<ProtocolEntry>& entries)
    {
        BeginTable({{0.3, "CellSmall"}, {0.7, "CellSmall"}});
        for (const ProtocolEntry& entry : entries)
            Row({entry.label, entry.unit.empty() ? entry.value : entry.value + " " + entry.unit}, false);
        EndTable();
    }

    void Picture(const ProtocolPicture& picture, std::size_t number)
    {
        const std::string path = "Pictures/diagram-" + std::to_string(number) + ".png";
        const std::string png = drawing::ToPng(picture.drawing, kPictureScale);
        if (png.empty())
            return;
        m_archive.Add(path, png);
        m_pictures.push_back(path);
        const double aspect = picture.drawing.Height() / picture.drawing.Width();
        const double width =
            std::min({picture.drawing.Width() / kPixelsPerCm, kTextWidth, kMostPicture / std::max(aspect, 1e-3)});
        if (!picture.caption.empty())
            Paragraph("Subheading", EscapeXml(picture.caption));
        Paragraph("Standard", "<draw:frame draw:name=\"" + path + "\" text:anchor-type=\"as-char\" svg:width=\"" +
                                  Cm(width) + "\" svg:height=\"" + Cm(width * aspect) + "\"><draw:image xlink:href=\"" +
                                  path + "\" xlink:type=\"simple\" xlink:show=\"embed\" xlink:actuate=\"onLoad\"/>" +
                                  "</draw:frame>");
    }

    void Help(const std::vector<TextBlock>& blocks)
    {
        for (const TextBlock& block : blocks) {
            switch (block.kind) {
            case TextBlock::Kind::heading:
                Paragraph("Subheading", Inline(block.text));
                break;
            case TextBlock::Kind::paragraph:
            case TextBlock::Kind::item:
                Paragraph("Standard", (block.marker.empty() ? "" : EscapeXml(block.marker) + " ") + Inline(block.text));
                break;
            case TextBlock::Kind::formula:
                for (const std::string& line : block.lines)
                    Paragraph("Formula", Preserved(line));
                break;
            case TextBlock::Kind::table:
                HelpTable(block);
                break;
            }
        }
    }

    std::string Content() const
    {
        return std::string(kDeclaration) + "<office:document-content" + kNamespaces + ">" + Fonts() +
               "<office:automatic-styles>" + CharacterStyles() + m_tableStyles +
               "</office:automatic-styles><office:body><office:text>" + m_body +
               "</office:text></office:body></office:document-content>\n";
    }

    std::string Manifest() const
    {
        std::string xml = std::string(kDeclaration) +
                          "<manifest:manifest xmlns:manifest=\"urn:oasis:names:tc:opendocument:xmlns:manifest:1.0\" "
                          "manifest:version=\"1.2\">" +
                          FileEntry("/", kMimeType);
        for (const char* part : {"content.xml", "styles.xml", "meta.xml"})
            xml += FileEntry(part, "text/xml");
        for (const std::string& picture : m_pictures)
            xml += FileEntry(picture, "image/png");
        return xml + "</manifest:manifest>\n";
    }

  private:
    static std::string FileEntry(const std::string& path, const char* type)
    {
        return "<manifest:file-entry manifest:full-path=\"" + path + "\" manifest:media-type=\"" + type + "\"/>";
    }

    static std::string CharacterStyles()
    {
        return "<style:style style:name=\"Bold\" style:family=\"text\"><style:text-properties "
               "fo:font-weight=\"bold\"/></style:style>"
               "<style:style style:name=\"Italic\" style:family=\"text\"><style:text-properties "
               "fo:font-style=\"italic\"/></style:style>"
               "<style:style style:name=\"Code\" style:family=\"text\"><style:text-properties "
               "style:font-name=\"Noto Sans Mono\"/></style:style>"
               "<style:style style:name=\"Row\" style:family=\"table-row\"><style:table-row-properties "
               "fo:keep-together=\"always\"/></style:style>"
               "<style:style style:name=\"Line\" style:family=\"table-cell\"><style:table-cell-properties "
               "fo:padding=\"0.08cm\" fo:border=\"none\" fo:border-bottom=\"0.5pt solid #d5dae2\"/></style:style>";
    }

    static std::string Inline(const TextLine& line)
    {
        std::string xml;
        for (const TextRun& run : line) {
            const char* style = run.bold ? "Bold" : run.italic ? "Italic" : run.code ? "Code" : nullptr;
            xml += style == nullptr ? EscapeXml(run.text)
                                    : "<text:span text:style-name=\"" + std::string(style) + "\">" +
                                          EscapeXml(run.text) + "</text:span>";
        }
        return xml;
    }

    void BeginTable(std::vector<Column> columns)
    {
        m_columns = std::move(columns);
        const std::string name = "Table" + std::to_string(++m_tables);
        m_tableStyles += "<style:style style:name=\"" + name +
                         "\" style:family=\"table\"><style:table-properties style:width=\"" + Cm(kTextWidth) +
                         "\" table:align=\"left\"/></style:style>";
        m_body += "<table:table table:name=\"" + name + "\" table:style-name=\"" + name + "\">";
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const std::string column = name + "." + std::to_string(i + 1);
            m_tableStyles += "<style:style style:name=\"" + column +
                             "\" style:family=\"table-column\"><style:table-column-properties style:column-width=\"" +
                             Cm(kTextWidth * m_columns[i].width) + "\"/></style:style>";
            m_body += "<table:table-column table:style-name=\"" + column + "\"/>";
        }
    }

    void CellRow(const std::vector<std::string>& cells, bool head)
    {
        m_body += "<table:table-row table:style-name=\"Row\">";
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            m_body += "<table:table-cell table:style-name=\"Line\" office:value-type=\"string\">";
            const std::string_view style = m_columns[i].style;
            Paragraph(!head                  ? style.data()
                      : style == "CellValue" ? "CellHeadValue"
                                             : "CellHead",
                      i < cells.size() ? cells[i] : std::string());
            m_body += "</table:table-cell>";
        }
        m_body += "</table:table-row>";
    }

    void Row(std::vector<std::string> cells, bool head)
    {
        for (std::string& cell : cells)
            cell = EscapeXml(cell);
        CellRow(cells, head);
    }

    void EndTable() { m_body += "</table:table>"; }

    void HelpTable(const TextBlock& table)
    {
        std::size_t columns = 1;
        for (const auto& row : table.rows)
            columns = std::max(columns, row.size());
        std::vector<Column> widths;
        for (std::size_t i = 0; i < columns; ++i)
            widths.push_back({1.0 / static_cast<double>(columns), table.IsRightAligned(i) ? "CellValue" : "Cell"});
        BeginTable(std::move(widths));
        for (const auto& row : table.rows) {
            std::vector<std::string> cells;
            for (const TextLine& cell : row)
                cells.push_back(Inline(cell));
            CellRow(cells, &row == &table.rows.front());
        }
        EndTable();
    }

    base::ZipWriter& m_archive;
    std::string m_body;
    std::string m_tableStyles;
    std::vector<Column> m_columns;
    std::vector<std::string> m_pictures;
    int m_tables = 0;
};

std::string Meta(const std::string& title)
{
    return std::string(kDeclaration) + "<office:document-meta" + kNamespaces + "><office:meta><dc:title>" +
           EscapeXml(title) + "</dc:title><meta:generator>" + base::kProgramName + " " + base::kProgramVersion +
           "</meta:generator></office:meta></office:document-meta>\n";
}

} // namespace

std::string ProtocolOdt(const Protocol& protocol)
{
    base::ZipWriter archive;
    archive.AddUncompressed("mimetype", kMimeType); // must be the first
    Document document(archive);
    document.Paragraph("Title", EscapeXml(protocol.title));
    document.Pairs(protocol.origin);
    if (!protocol.inputs.empty()) {
        document.Heading("Eingaben");
        document.Groups(protocol.inputs);
    }
    if (!protocol.results.empty()) {
        document.Heading("Ergebnisse");
        document.Groups(protocol.results);
    }
    document.Help(protocol.tables);
    for (const std::string& note : protocol.notes)
        document.Paragraph("Standard", EscapeXml(note));
    if (!protocol.messages.empty()) {
        document.Heading("Meldungen");
        for (const std::string& message : protocol.messages)
            document.Paragraph("Standard", EscapeXml(message));
    }
    if (!protocol.pictures.empty()) {
        document.Heading(protocol.pictures.size() == 1 ? "Diagramm" : "Diagramme");
        for (std::size_t i = 0; i < protocol.pictures.size(); ++i)
            document.Picture(protocol.pictures[i], i);
    }
    if (!protocol.formulas.empty()) {
        document.Heading("Formeln");
        document.Help(protocol.formulas);
    }
    std::string foot;
    for (const ProtocolEntry& entry : protocol.origin)
        if (entry.label == kSha256Label)
            foot = "SHA-256 " + entry.value + " · ";
    archive.Add("content.xml", document.Content());
    archive.Add("styles.xml", Styles(foot));
    archive.Add("meta.xml", Meta(protocol.title));
    archive.Add("META-INF/manifest.xml", document.Manifest());
    return archive.Finish();
}

} // namespace report
