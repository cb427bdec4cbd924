// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The embedded fonts of drawings and the measures of a line of text in them: Noto Sans, regular and bold, and Noto Sans
// Math for the signs these two lack, such as the minus sign, ≤ and √.
#pragma once

#include "host/CDC.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

struct stbtt_fontinfo;

namespace drawing
{
/// The characters of a line of text as every format shows them: bytes that are no UTF-8 become U+FFFD, control
/// characters a blank.
std::u32string TextCodepoints(std::string_view utf8);

/// Sum of the characters' advances in pixels; no kerning, so widths add up.
double TextWidth(std::string_view utf8, const CFont& font);
/// Height above and depth below the baseline in pixels, both positive.
double FontAscent(const CFont& font);
double FontDescent(const CFont& font);

enum class FontFace { regular, bold, math };

/// One character of a text as it is set.
struct Glyph {
    char32_t codepoint;
    FontFace face;
    int index;      ///< within the face; 0 when no face has the character
    double advance; ///< in em
};

/// The glyphs of a line of text in the order of its characters.
std::vector<Glyph> GlyphsOf(std::string_view utf8, bool bold);

/// The whole TrueType file.
std::span<const unsigned char> FontFile(FontFace face);
const stbtt_fontinfo& FontInfo(FontFace face);
/// Font units per em square.
double UnitsPerEm(FontFace face);
} // namespace drawing
