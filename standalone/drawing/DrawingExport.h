// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Drawings as files. The same drawing gives the same bytes on every machine, whatever the locale.
#pragma once

#include "host/CDC.h"

#include <string>
#include <vector>

namespace drawing
{
/// One pixel of the drawing is one CSS pixel.
std::string ToSvg(const CDC& drawing);
/// One page of the drawing's size, 0.75 pt per pixel; text can be selected and searched.
std::string ToPdf(const CDC& drawing);
/// `scale` > 0 picture pixels per pixel of the drawing, on white. Empty when the picture would be larger than 64
/// million pixels.
std::string ToPng(const CDC& drawing, double scale);

/// True for a path that ends in .svg, .pdf or .png, in small or capital letters.
bool IsDrawingFile(const std::string& path);
/// The drawing in the format of the path's ending (PNG with two picture pixels per pixel); empty for another ending.
std::string ExportByEnding(const CDC& drawing, const std::string& path);

/// Lengths of the pen's dashes and gaps in turn, in pixels of the drawing; empty for a solid pen. Lines begin with a
/// dash, and neither dashes nor lines have caps.
std::vector<double> DashLengths(const CPen& pen);
} // namespace drawing
