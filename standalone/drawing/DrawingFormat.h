// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the exporters of drawings have in common.
#pragma once

#include "host/CDC.h"

#include <string>

namespace drawing
{
/// A mitred corner longer than this many pen widths is cut off.
inline constexpr double kMiterLimit = 4.0;

struct DrawingSize {
    double width;
    double height;
};

/// The drawing's size in pixels as files need it: a number of at least 1.
DrawingSize SizeOf(const CDC& drawing);

/// The left end of the text's baseline.
CDPoint TextStart(const drawing::Text& text);

/// Appends a finite number with at most `decimals` decimals, a point before them and no needless zeros.
void AppendNumber(std::string& out, double value, int decimals = 3);
} // namespace drawing
