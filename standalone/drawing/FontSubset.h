// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <vector>

namespace drawing
{
/// A TrueType file that holds glyph `glyphs[i]` of `font` as its glyph i, followed by the parts these are composed of.
/// `glyphs[0]` stands for characters the font does not have. The result holds what documents embed: outlines, widths
/// and hinting, but no character map, names or layout rules. `font` is an intact TrueType file.
/// Source: the definitions of the OpenType tables glyf, head, hhea, hmtx, loca and maxp.
std::string SubsetTrueType(std::span<const unsigned char> font, std::vector<int> glyphs);
} // namespace drawing
