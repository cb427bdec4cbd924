// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/FontMetrics.h"
#include "base/Utf.h"
#include "tests/support/DrawingFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
using namespace drawing;
using namespace drawing_test;
using drawing_test::Picture;

TEST(FontMetrics, DecodesUtf8Strictly)
{
    EXPECT_EQ(TextCodepoints("aß€\xF0\x9F\x9A\x97"), U"aß€\U0001F697");
    EXPECT_EQ(TextCodepoints("a\tb\nc\x7F"), U"a b c ");
    const std::u32string bad = U"\uFFFD";
    EXPECT_EQ(TextCodepoints("\xFCx"), bad + U"x");   // Latin-1
    EXPECT_EQ(TextCodepoints("\xC3"), bad);           // cut off
    EXPECT_EQ(TextCodepoints("\xC0\x80"), bad + bad); // too long for its value
    EXPECT_EQ(TextCodepoints("\xE0\x80\xAF"), bad + bad + bad);
    EXPECT_EQ(TextCodepoints("\xED\xA0\x80"), bad + bad + bad);           // half of a surrogate pair
    EXPECT_EQ(TextCodepoints("\xF4\x90\x80\x80"), bad + bad + bad + bad); // beyond Unicode
}

TEST(FontMetrics, WidthsAddUpAndGrow)
{
    const std::string text = "Größe v = 7,85 m/s² ≤ 2·a·s";
    CDC dc(1, 1);
    double sum = 0.0;
    std::string sofar;
    double last = 0.0;
    for (const Glyph& glyph : GlyphsOf(text, false)) {
        const std::u16string units = base::Utf16Of(glyph.codepoint);
        ASSERT_EQ(units.size(), 1U);
        sum += glyph.advance * 12.0;
        EXPECT_GT(glyph.advance, 0.0);
    }
    EXPECT_NEAR(dc.TextWidth(text), sum, 1e-9);
    for (const char c : std::string("Ab fi WAVE 1.0")) {
        sofar += c;
        EXPECT_GT(dc.TextWidth(sofar), last);
        EXPECT_NEAR(dc.TextWidth(sofar), last + dc.TextWidth(std::string(1, c)), 1e-9);
        last = dc.TextWidth(sofar);
    }
    EXPECT_EQ(dc.TextWidth(""), 0.0);
    dc.SelectFont({24, false});
    EXPECT_NEAR(dc.TextWidth(text), 2.0 * sum, 1e-9);
    dc.SelectFont({12, true});
    EXPECT_GT(dc.TextWidth(text), sum);
    // Digits share one width, so that columns of numbers align.
    EXPECT_NEAR(dc.TextWidth("1111"), dc.TextWidth("8888"), 1e-9);
    // Line heights of Noto Sans: 1.069 em above the baseline, 0.293 em below.
    EXPECT_NEAR(dc.TextAscent(), 12.0 * 1.069, 1e-9);
    EXPECT_NEAR(dc.TextHeight(), 12.0 * 1.362, 1e-9);
}

TEST(FontMetrics, HasTheSignsOfDiagrams)
{
    for (const bool bold : {false, true})
        for (const Glyph& glyph : GlyphsOf(kSigns, bold))
            EXPECT_NE(glyph.index, 0) << "U+" << std::hex << static_cast<unsigned>(glyph.codepoint);
    EXPECT_EQ(GlyphsOf("\U0001F697", false).front().index, 0);
}
} // namespace
