// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Drawings as PDF 1.4: one page with vector paths. Text is set in subsets of the embedded fonts whose glyph numbers
// are the character codes, with a map back to Unicode, so that it can be selected and searched.
#include "base/Deflate.h"
#include "base/Utf.h"
#include "drawing/BitmapFiles.h"
#include "drawing/DrawingExport.h"
#include "drawing/DrawingFormat.h"
#include "drawing/DrawingGeometry.h"
#include "drawing/FontMetrics.h"
#include "drawing/FontSubset.h"
#include "drawing/Stb.h"
#include "host/Assert.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string_view>
#include <variant>

namespace drawing
{
namespace
{
constexpr double kPointsPerPixel = 0.75;
constexpr int kMatrixDecimals = 6;

void Numbers(std::string& out, std::initializer_list<double> values, int decimals = 3)
{
    for (const double value : values) {
        AppendNumber(out, value, decimals);
        out += ' ';
    }
}

void Point(std::string& out, const CDPoint& p)
{
    Numbers(out, {p.x, p.y});
}

void Hex16(std::string& out, unsigned value)
{
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        out += "0123456789ABCDEF"[value >> shift & 0xFU];
}

void Color(std::string& out, COLORREF color, std::string_view operation)
{
    for (const unsigned shift : {0U, 8U, 16U})
        Numbers(out, {(color >> shift & 0xFFU) / 255.0});
    out += operation;
}

/// Numbered objects and the table of where they are.
class PdfFile
{
  public:
    PdfFile() { m_bytes = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n"; }

    /// The number the next object gets.
    std::size_t Next() const { return m_offsets.size() + 1; }

    void Add(const std::string& object)
    {
        m_offsets.push_back(m_bytes.size());
        m_bytes += std::to_string(m_offsets.size()) + " 0 obj\n" + object + "\nendobj\n";
    }

    void AddStream(const std::string& data, const std::string& entries = {})
    {
        const std::string packed = base::Deflated(data, base::DeflateFormat::zlib);
        Add("<</Length " + std::to_string(packed.size()) + " /Filter /FlateDecode" + entries + ">>\nstream\n" + packed +
            "\nendstream");
    }

    void AddPicture(const drawing::Bitmap& bitmap)
    {
        const std::string size =
            " /Width " + std::to_string(bitmap.width) + " /Height " + std::to_string(bitmap.height);
        const std::string kind = " /Type /XObject /Subtype /Image /BitsPerComponent 8" + size + " /ColorSpace ";
        const auto frame = ReadJpegFrame(bitmap.file);
        const bool same = frame && frame->width == bitmap.width && frame->height == bitmap.height;
        if (same && (frame->components == 1 || frame->components == 3)) {
            Add("<</Length " + std::to_string(bitmap.file.size()) + " /Filter /DCTDecode" + kind +
                (frame->components == 1 ? "/DeviceGray" : "/DeviceRGB") + ">>\nstream\n" + bitmap.file + "\nendstream");
            return;
        }
        const std::vector<unsigned char> bytes = RgbBytes(bitmap);
        AddStream({bytes.begin(), bytes.end()}, kind + "/DeviceRGB");
    }

    std::string Finish(std::size_t catalog, std::size_t info) &&
    {
        const std::size_t tableAt = m_bytes.size();
        const std::string size = std::to_string(m_offsets.size() + 1);
        m_bytes += "xref\n0 " + size + "\n0000000000 65535 f \n";
        for (const std::size_t offset : m_offsets) {
            const std::string digits = std::to_string(offset);
            m_bytes += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
        }
        m_bytes += "trailer\n<</Size " + size + " /Root " + std::to_string(catalog) + " 0 R /Info " +
                   std::to_string(info) + " 0 R>>\nstartxref\n" + std::to_string(tableAt) + "\n%%EOF\n";
        return std::move(m_bytes);
    }

  private:
    std::string m_bytes;
    std::vector<std::size_t> m_offsets;
};

/// The characters a drawing uses of one face, each with its code in the document.
class PdfFont
{
  public:
    explicit PdfFont(FontFace face) : m_face(face) {}

    bool Used() const { return !m_characters.empty(); }
    void Use(const Glyph& glyph) { m_characters.try_emplace(glyph.codepoint, Character{glyph, 0}); }
    unsigned Code(char32_t codepoint) const { return m_characters.at(codepoint).code; }

    /// Codes count from 1 in the order of the characters; 0 stands for characters the font does not have.
    void Number()
    {
        unsigned code = 0;
        for (auto& entry : m_characters)
            entry.second.code = ++code;
    }

    /// Adds the objects of the font; its own is the first of them.
    void AddTo(PdfFile& file) const
    {
        const std::string name = "/" + Tag() + "+" + Name();
        const auto reference = [first = file.Next()](std::size_t offset) {
            return std::to_string(first + offset) + " 0 R";
        };
        file.Add("<</Type /Font /Subtype /Type0 /BaseFont " + name + " /Encoding /Identity-H /DescendantFonts [" +
                 reference(1) + "] /ToUnicode " + reference(4) + ">>");
        file.Add("<</Type /Font /Subtype /CIDFontType2 /BaseFont " + name +
                 " /CIDSystemInfo <</Registry (Adobe) /Ordering (Identity) /Supplement 0>> /CIDToGIDMap /Identity"
                 " /FontDescriptor " +
                 reference(2) + " " + Widths() + ">>");
        file.Add("<</Type /FontDescriptor /FontName " + name + " " + Metrics() + "/FontFile2 " + reference(3) + ">>");
        std::vector<int> glyphs{0};
        for (const auto& entry : m_characters)
            glyphs.push_back(entry.second.glyph.index);
        const std::string subset = SubsetTrueType(FontFile(m_face), std::move(glyphs));
        file.AddStream(subset, " /Length1 " + std::to_string(subset.size()));
        file.AddStream(ToUnicode());
    }

  private:
    struct Character {
        Glyph glyph;
        unsigned code;
    };

    const char* Name() const
    {
        switch (m_face) {
        case FontFace::regular:
            break;
        case FontFace::bold:
            return "NotoSans-Bold";
        case FontFace::math:
            return "NotoSansMath-Regular";
        }
        return "NotoSans-Regular";
    }

    /// Six letters that differ between subsets, for tools that join documents.
    std::string Tag() const
    {
        std::uint32_t hash = 2166136261U;
        for (const auto& entry : m_characters)
            hash = (hash ^ static_cast<std::uint32_t>(entry.first)) * 16777619U;
        std::string tag;
        for (int i = 0; i < 6; ++i, hash /= 26)
            tag += static_cast<char>('A' + hash % 26);
        return tag;
    }

    double PerMille(double units) const { return units * 1000.0 / UnitsPerEm(m_face); }

    std::string Widths() const
    {
        std::string out = "/W [1 [";
        for (const auto& entry : m_characters)
            Numbers(out, {entry.second.glyph.advance * 1000.0});
        return out + "]]";
    }

    std::string Metrics() const
    {
        constexpr int nonsymbolic = 32;
        int left = 0;
        int bottom = 0;
        int right = 0;
        int top = 0;
        stbtt_GetFontBoundingBox(&FontInfo(m_face), &left, &bottom, &right, &top);
        const bool bold = m_face == FontFace::bold;
        const CFont perMille{1000.0, bold};
        std::string out = "/Flags " + std::to_string(nonsymbolic) + " /FontBBox [";
        Numbers(out, {PerMille(left), PerMille(bottom), PerMille(right), PerMille(top)});
        out += "] /ItalicAngle 0 /Ascent ";
        Numbers(out, {FontAscent(perMille)});
        out += "/Descent ";
        Numbers(out, {-FontDescent(perMille)});
        // Height of capitals and width of stems are guesses at what a viewer without the font should take instead.
        return out + "/CapHeight 714 /StemV " + (bold ? "140 " : "80 ");
    }

    /// Map from codes to UTF-16.
    std::string ToUnicode() const
    {
        constexpr std::size_t mostPerBlock = 100;
        std::string out = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                          "/CIDSystemInfo <</Registry (Adobe) /Ordering (UCS) /Supplement 0>> def\n"
                          "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                          "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
        std::size_t left = m_characters.size();
        std::size_t leftInBlock = 0;
        for (const auto& [codepoint, character] : m_characters) {
            if (leftInBlock == 0) {
                leftInBlock = std::min(left, mostPerBlock);
                left -= leftInBlock;
                out += std::to_string(leftInBlock) + " beginbfchar\n";
            }
            out += '<';
            Hex16(out, character.code);
            out += "> <";
            for (const char16_t unit : base::Utf16Of(codepoint))
                Hex16(out, unit);
            out += ">\n";
            if (--leftInBlock == 0)
                out += "endbfchar\n";
        }
        return out + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    }

    FontFace m_face;
    std::map<char32_t, Character> m_characters;
};

/// By their faces' numbers.
using PdfFonts = std::array<PdfFont, 3>;

/// Page content in the drawing's own coordinates.
class PdfPainter
{
  public:
    PdfPainter(std::string& out, const PdfFonts& fonts) : m_out(out), m_fonts(fonts) {}

    void operator()(const drawing::Polyline& line)
    {
        m_out += "1 j ";
        Path(line.points);
        Paint({}, line.pen, "");
    }

    void operator()(const drawing::Polygon& polygon)
    {
        m_out += "0 j ";
        Path(polygon.points);
        Paint(polygon.brush, polygon.pen, "h ");
    }

    void operator()(const drawing::Rectangle& rectangle)
    {
        m_out += "0 j ";
        Arcs(ArcsOf(rectangle));
        Paint(rectangle.brush, rectangle.pen, "h ");
    }

    void operator()(const drawing::Ellipse& ellipse)
    {
        m_out += "0 j ";
        Arcs(ArcsOf(ellipse));
        Paint(ellipse.brush, ellipse.pen, "h ");
    }

    void operator()(const drawing::Text& text)
    {
        const double c = std::cos(text.angle);
        const double s = std::sin(text.angle);
        m_out += "BT ";
        Color(m_out, text.color, "rg ");
        Numbers(m_out, {c, -s, -s, -c}, kMatrixDecimals); // y points down on the page, up in the font
        Point(m_out, TextStart(text));
        m_out += "Tm ";
        const std::vector<Glyph> glyphs = GlyphsOf(text.utf8, text.font.bold);
        for (std::size_t i = 0; i < glyphs.size();) {
            const FontFace face = glyphs[i].face;
            const auto number = static_cast<std::size_t>(face);
            m_out += "/F" + std::to_string(number) + " ";
            Numbers(m_out, {text.font.size});
            m_out += "Tf <";
            for (; i < glyphs.size() && glyphs[i].face == face; ++i)
                Hex16(m_out, m_fonts[number].Code(glyphs[i].codepoint));
            m_out += "> Tj ";
        }
        m_out += "ET\n";
    }

    void operator()(const drawing::Picture& picture)
    {
        // A picture fills the unit square, its first row at the top.
        const CDPoint origin = picture.corner + picture.down;
        const std::string number = std::to_string(m_pictures++);
        m_out += "q /G" + number + " gs ";
        Numbers(m_out, {picture.across.x, picture.across.y, -picture.down.x, -picture.down.y, origin.x, origin.y});
        m_out += "cm /I" + number + " Do Q\n";
    }

  private:
    void Path(const std::vector<CDPoint>& points)
    {
        m_path.clear();
        for (const CDPoint& p : points) {
            Point(m_path, p);
            m_path += &p == &points.front() ? "m " : "l ";
        }
    }

    void Arcs(const std::vector<QuarterArc>& arcs)
    {
        // A cubic curve with this share of the half axes strays 0.03 % of the radius from the quarter.
        constexpr double share = 0.5522847498;
        m_path.clear();
        CDPoint pen;
        for (const QuarterArc& arc : arcs) {
            const CDPoint start = arc.centre + arc.from;
            const bool first = m_path.empty();
            if (first || !(start == pen)) {
                Point(m_path, start);
                m_path += first ? "m " : "l ";
            }
            pen = arc.centre + arc.to;
            if (arc.IsCorner())
                continue;
            Point(m_path, start + arc.to * share);
            Point(m_path, pen + arc.from * share);
            Point(m_path, pen);
            m_path += "c ";
        }
    }

    /// Fills and strokes the path.
    void Paint(const CBrush& brush, const CPen& pen, std::string_view close)
    {
        const bool stroked = pen.style != PenStyle::none;
        if (brush.filled)
            Color(m_out, brush.color, "rg ");
        if (stroked) {
            Color(m_out, pen.color, "RG ");
            Numbers(m_out, {pen.width});
            m_out += "w [";
            for (const double length : DashLengths(pen))
                Numbers(m_out, {length});
            m_out += "] 0 d ";
        }
        m_out += m_path;
        m_out += close;
        m_out += stroked ? (brush.filled ? "B\n" : "S\n") : (brush.filled ? "f\n" : "n\n");
    }

    std::string& m_out;
    std::string m_path;
    const PdfFonts& m_fonts;
    std::size_t m_pictures = 0;
};
} // namespace

std::string ToPdf(const CDC& drawing)
{
    PdfFonts fonts{PdfFont(FontFace::regular), PdfFont(FontFace::bold), PdfFont(FontFace::math)};
    for (const drawing::Primitive& primitive : drawing.Primitives())
        if (const auto* text = std::get_if<drawing::Text>(&primitive))
            for (const Glyph& glyph : GlyphsOf(text->utf8, text->font.bold))
                fonts[static_cast<std::size_t>(glyph.face)].Use(glyph);
    for (PdfFont& font : fonts)
        font.Number();

    const DrawingSize size = SizeOf(drawing);
    const double height = size.height * kPointsPerPixel;
    std::string content;
    Numbers(content, {kPointsPerPixel, 0.0, 0.0, -kPointsPerPixel, 0.0, height});
    content += "cm ";
    Numbers(content, {kMiterLimit});
    content += "M\n";
    PdfPainter painter(content, fonts);
    for (const drawing::Primitive& primitive : drawing.Primitives())
        std::visit(painter, primitive);

    PdfFile file;
    file.Add("<</Type /Catalog /Pages 2 0 R>>");
    file.Add("<</Type /Pages /Kids [3 0 R] /Count 1>>");
    std::string page = "<</Type /Page /Parent 2 0 R /MediaBox [0 0 ";
    Numbers(page, {size.width * kPointsPerPixel, height});
    page += "] /Contents 4 0 R /Resources <</Font <<";
    std::vector<const drawing::Picture*> pictures;
    for (const drawing::Primitive& primitive : drawing.Primitives())
        if (const auto* picture = std::get_if<drawing::Picture>(&primitive))
            pictures.push_back(picture);
    std::size_t fontAt = file.Next() + 3;
    constexpr std::size_t objectsPerFont = 5;
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        if (!fonts[i].Used())
            continue;
        page += "/F" + std::to_string(i) + " " + std::to_string(fontAt) + " 0 R ";
        fontAt += objectsPerFont;
    }
    page += ">>";
    if (!pictures.empty()) {
        std::string states = " /ExtGState <<";
        page += " /XObject <<";
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            const std::string number = std::to_string(i);
            page += "/I" + number + " " + std::to_string(fontAt + i) + " 0 R ";
            states += "/G" + number + " <</ca ";
            Numbers(states, {pictures[i]->opacity});
            states += ">> ";
        }
        page += ">>" + states + ">>";
    }
    file.Add(page + ">>>>");
    file.AddStream(content);
    file.Add("<</Producer (RuvMod)>>");
    for (const PdfFont& font : fonts)
        if (font.Used())
            font.AddTo(file);
    for (const drawing::Picture* picture : pictures)
        file.AddPicture(*picture->bitmap);
    return std::move(file).Finish(1, 5);
}
} // namespace drawing
