// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DrawingExport.h"
#include "drawing/FontMetrics.h"
#include "tests/support/DrawingFiles.h"

#include <gtest/gtest.h>

#include <charconv>

namespace
{
using namespace drawing;
using namespace drawing_test;
using drawing_test::Picture;

unsigned Big(const std::string& bytes, std::size_t at, std::size_t size)
{
    unsigned value = 0;
    for (const char byte : bytes.substr(at, size))
        value = value << 8U | static_cast<unsigned char>(byte);
    return value;
}

std::string TableOf(const std::string& font, const std::string& tag)
{
    for (std::size_t entry = 12; entry < 12 + 16 * Big(font, 4, 2); entry += 16)
        if (font.substr(entry, 4) == tag)
            return font.substr(Big(font, entry + 8, 4), Big(font, entry + 12, 4));
    ADD_FAILURE() << tag;
    return {};
}

TEST(DrawingPdf, EveryOffsetLeadsToItsObject)
{
    for (const CDC& dc : {SampleDrawing(), CDC(0, 0)}) {
        const PdfReader pdf(ToPdf(dc));
        for (std::size_t i = 1; i < pdf.Count(); ++i)
            EXPECT_EQ(pdf.Object(i).substr(0, 2), "<<") << i;
        EXPECT_NE(pdf.Object(1).find("/Catalog"), std::string::npos);
    }
    const PdfReader pdf(ToPdf(SampleDrawing()));
    EXPECT_NE(pdf.Object(3).find("/MediaBox [0 0 300 225 ]"), std::string::npos);
    const std::string content = pdf.Stream(PdfReader::Reference(pdf.Object(3), "Contents"));
    EXPECT_EQ(content.rfind("0.75 0 0 -0.75 0 225 cm ", 0), 0U);
    EXPECT_NE(content.find("1.5 w [9 4.5 ] 0 d 10 20 m 100.125 30.063 l 200 0 l S"), std::string::npos);
}

TEST(DrawingPdf, TextCanBeReadBack)
{
    const PdfReader pdf(ToPdf(SampleDrawing()));
    const std::string page = pdf.Object(3);
    const std::string content = pdf.Stream(4);
    std::string text;
    const std::regex shown(R"((F\d) [\d.]+ Tf <([0-9A-F]+)> Tj)");
    for (std::sregex_iterator it(content.begin(), content.end(), shown), end; it != end; ++it) {
        const std::string map =
            pdf.Stream(PdfReader::Reference(pdf.Object(PdfReader::Reference(page, (*it)[1])), "ToUnicode"));
        const std::string codes = (*it)[2];
        for (std::size_t i = 0; i < codes.size(); i += 4) {
            std::smatch match;
            ASSERT_TRUE(std::regex_search(map, match, std::regex("<" + codes.substr(i, 4) + "> <([0-9A-F]{4})>")));
            unsigned unit = 0;
            const std::string hex = match[1];
            std::from_chars(hex.data(), hex.data() + hex.size(), unit, 16);
            text += static_cast<char>(unit >> 8U);
            text += static_cast<char>(unit & 0xFFU);
        }
    }
    std::string expected;
    for (const char32_t codepoint : TextCodepoints("v² < 2·a & s > \"√x\"" + kSigns)) {
        expected += static_cast<char>(codepoint >> 8U);
        expected += static_cast<char>(codepoint & 0xFFU);
    }
    EXPECT_EQ(text, expected);
}

TEST(DrawingPdf, EmbedsWholeGlyphsOfTheFont)
{
    CDC dc(100, 100);
    dc.TextOut({10, 50}, "äb\u0378"); // the first is composed of two others, the last unassigned
    const PdfReader pdf(ToPdf(dc));
    const std::string cid = pdf.Object(PdfReader::Reference(pdf.Object(6), "DescendantFonts"));
    const std::string font =
        pdf.Stream(PdfReader::Reference(pdf.Object(PdfReader::Reference(cid, "FontDescriptor")), "FontFile2"));
    const auto whole = FontFile(FontFace::regular);
    const std::string full(whole.begin(), whole.end());

    unsigned sum = 0;
    for (std::size_t at = 0; at < font.size(); at += 4)
        sum += Big(font, at, 4);
    EXPECT_EQ(sum, 0xB1B0AFBAU); // what the format prescribes

    const auto outline = [](const std::string& file, unsigned glyph, bool wide) {
        const std::string loca = TableOf(file, "loca");
        const unsigned from = wide ? Big(loca, 4U * glyph, 4) : 2 * Big(loca, 2U * glyph, 2);
        const unsigned to = wide ? Big(loca, 4U * glyph + 4, 4) : 2 * Big(loca, 2U * glyph + 2, 2);
        return TableOf(file, "glyf").substr(from, to - from);
    };
    const bool fullWide = Big(TableOf(full, "head"), 50, 2) != 0;
    const auto glyphs = GlyphsOf("äb\u0378", false);
    const unsigned sources[] = {0, static_cast<unsigned>(glyphs[1].index), static_cast<unsigned>(glyphs[0].index), 0};
    const unsigned count = Big(TableOf(font, "maxp"), 4, 2);
    EXPECT_EQ(count, 6U); // missing, b, ä, U+0378 and the parts a and dieresis
    EXPECT_EQ(TableOf(font, "hmtx").size(), 4U * count);
    for (unsigned i = 0; i < 4; ++i) {
        const std::string ours = outline(font, i, true);
        const std::string theirs = outline(full, sources[i], fullWide);
        EXPECT_EQ(Big(TableOf(font, "hmtx"), 4U * i, 2), Big(TableOf(full, "hmtx"), 4U * sources[i], 2));
        ASSERT_GE(ours.size(), 10U);
        EXPECT_EQ(ours.substr(0, 10), theirs.substr(0, 10)) << i; // kind and bounds
        if (Big(theirs, 0, 2) < 0x8000) {
            EXPECT_EQ(ours.substr(0, theirs.size()), theirs) << i;
            continue;
        }
        const unsigned part = Big(ours, 12, 2);
        ASSERT_LT(part, count);
        const std::string base = outline(full, Big(theirs, 12, 2), fullWide);
        EXPECT_EQ(outline(font, part, true).substr(0, base.size()), base);
    }
    EXPECT_GE(Big(outline(font, 2, true), 0, 2), 0x8000U) << "ä is expected to be composed";
}
} // namespace
