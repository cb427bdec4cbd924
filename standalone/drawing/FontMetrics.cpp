// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/FontMetrics.h"

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

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Number of bytes of the UTF-8 sequence that `lead` starts, 0 when it starts none.
std::size_t SequenceLength(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Takes one character off the front of `rest`.
char32_t NextCodepoint(std::string_view& rest)
{
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(rest.front());
    const std::size_t length = SequenceLength(lead);
    const std::string_view tail = rest.substr(1, std::max<std::size_t>(length, 1) - 1);
    if (length == 0 || tail.size() + 1 != length || !std::all_of(tail.begin(), tail.end(), IsContinuation)) {
        rest.remove_prefix(1);
        return kReplacement;
    }
    char32_t codepoint = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (const char byte : tail)
        codepoint = codepoint << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    const bool surrogate = codepoint >= 0xD800 && codepoint <= 0xDFFF;
    if (codepoint < smallest[length] || codepoint > 0x10FFFF || surrogate) {
        rest.remove_prefix(1);
        return kReplacement;
    }
    rest.remove_prefix(length);
    return codepoint;
}
} // namespace

std::u32string TextCodepoints(std::string_view utf8)
{
    std::u32string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const char32_t codepoint = NextCodepoint(utf8);
        const bool control = codepoint < 0x20 || (codepoint >= 0x7F && codepoint < 0xA0);
        const bool noncharacter = (codepoint & 0xFFFEU) == 0xFFFEU;
        result.push_back(control ? U' ' : noncharacter ? kReplacement : codepoint);
    }
    return result;
}

std::u16string Utf16(char32_t codepoint)
{
    if (codepoint < 0x10000)
        return {static_cast<char16_t>(codepoint)};
    const char32_t offset = codepoint - 0x10000;
    return {static_cast<char16_t>(0xD800U + (offset >> 10U)), static_cast<char16_t>(0xDC00U + (offset & 0x3FFU))};
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
