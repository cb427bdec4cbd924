// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/FontMetrics.h"

#include "base/Utf.h"
#include "drawing/Stb.h"
#include "host/Assert.h"

#include <algorithm>
#include <array>

extern "C" {
extern const unsigned char ruvFontRegularBegin[];
extern const unsigned char ruvFontRegularEnd[];
extern const unsigned char ruvFontBoldBegin[];
extern const unsigned char ruvFontBoldEnd[];
extern const unsigned char ruvFontMathBegin[];
extern const unsigned char ruvFontMathEnd[];
}

namespace drawing
{
namespace
{
constexpr char32_t kReplacement = 0xFFFD;

struct VerticalMetrics {
    double ascent;
    double descent;
};

stbtt_fontinfo OpenFont(FontFace face)
{
    stbtt_fontinfo info{};
    RUV_ASSERT(stbtt_InitFont(&info, FontFile(face).data(), 0) != 0);
    return info;
}

Glyph GlyphOf(char32_t codepoint, bool bold)
{
    const FontFace main = bold ? FontFace::bold : FontFace::regular;
    const auto find = [codepoint](FontFace face) {
        return stbtt_FindGlyphIndex(&FontInfo(face), static_cast<int>(codepoint));
    };
    Glyph glyph{codepoint, main, find(main), 0.0};
    if (glyph.index == 0) {
        glyph.index = find(FontFace::math);
        glyph.face = glyph.index == 0 ? main : FontFace::math;
    }
    int advance = 0;
    stbtt_GetGlyphHMetrics(&FontInfo(glyph.face), glyph.index, &advance, nullptr);
    glyph.advance = advance / UnitsPerEm(glyph.face);
    return glyph;
}

VerticalMetrics EmMetrics(bool bold)
{
    const FontFace face = bold ? FontFace::bold : FontFace::regular;
    int ascent = 0;
    int descent = 0;
    int lineGap = 0;
    stbtt_GetFontVMetrics(&FontInfo(face), &ascent, &descent, &lineGap);
    return {ascent / UnitsPerEm(face), -descent / UnitsPerEm(face)};
}

} // namespace

std::u32string TextCodepoints(std::string_view utf8)
{
    std::u32string codepoints = base::Codepoints(utf8);
    for (char32_t& codepoint : codepoints) {
        const bool control = codepoint < 0x20 || (codepoint >= 0x7F && codepoint < 0xA0);
        const bool noncharacter = (codepoint & 0xFFFEU) == 0xFFFEU;
        codepoint = control ? U' ' : noncharacter ? kReplacement : codepoint;
    }
    return codepoints;
}

std::vector<Glyph> GlyphsOf(std::string_view utf8, bool bold)
{
    std::vector<Glyph> glyphs;
    for (const char32_t codepoint : TextCodepoints(utf8))
        glyphs.push_back(GlyphOf(codepoint, bold));
    return glyphs;
}

std::span<const unsigned char> FontFile(FontFace face)
{
    switch (face) {
    case FontFace::regular:
        break;
    case FontFace::bold:
        return {ruvFontBoldBegin, ruvFontBoldEnd};
    case FontFace::math:
        return {ruvFontMathBegin, ruvFontMathEnd};
    }
    return {ruvFontRegularBegin, ruvFontRegularEnd};
}

const stbtt_fontinfo& FontInfo(FontFace face)
{
    static const std::array<stbtt_fontinfo, 3> fonts{OpenFont(FontFace::regular), OpenFont(FontFace::bold),
                                                     OpenFont(FontFace::math)};
    return fonts[static_cast<std::size_t>(face)];
}

double UnitsPerEm(FontFace face)
{
    // The library offers the reciprocal only, as a float.
    const unsigned char* field = FontFile(face).data() + FontInfo(face).head + 18;
    return field[0] * 256 + field[1];
}

double TextWidth(std::string_view utf8, const CFont& font)
{
    double width = 0.0;
    for (const Glyph& glyph : GlyphsOf(utf8, font.bold))
        width += glyph.advance * font.size;
    return width;
}

double FontAscent(const CFont& font)
{
    return EmMetrics(font.bold).ascent * font.size;
}

double FontDescent(const CFont& font)
{
    return EmMetrics(font.bold).descent * font.size;
}
} // namespace drawing
