// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DrawingExport.h"

#include "drawing/DrawingFormat.h"
#include "drawing/FontMetrics.h"
#include "host/Assert.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace drawing
{
namespace
{
constexpr double kPngScale = 2.0;
constexpr double kLargestSide = 1e6; // px

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The last four characters in small letters.
std::string Ending(const std::string& path)
{
    std::string ending = path.size() < 4 ? std::string() : path.substr(path.size() - 4);
    std::transform(ending.begin(), ending.end(), ending.begin(), Lower);
    return ending;
}

double Side(double length)
{
    return length >= 1.0 ? std::min(length, kLargestSide) : 1.0;
}
} // namespace

bool IsDrawingFile(const std::string& path)
{
    const std::string ending = Ending(path);
    return ending == ".svg" || ending == ".pdf" || ending == ".png";
}

std::string ExportByEnding(const CDC& drawing, const std::string& path)
{
    const std::string ending = Ending(path);
    if (ending == ".svg")
        return ToSvg(drawing);
    if (ending == ".pdf")
        return ToPdf(drawing);
    return ending == ".png" ? ToPng(drawing, kPngScale) : std::string();
}

std::vector<double> DashLengths(const CPen& pen)
{
    const double unit = std::max(pen.width, 1.0);
    const double dash = 6.0 * unit;
    const double dot = 2.0 * unit;
    const double gap = 3.0 * unit;
    switch (pen.style) {
    case PenStyle::dash:
        return {dash, gap};
    case PenStyle::dot:
        return {dot, dot};
    case PenStyle::dashDot:
        return {dash, gap, dot, gap};
    case PenStyle::dashDotDot:
        return {dash, gap, dot, gap, dot, gap};
    case PenStyle::none:
    case PenStyle::solid:
        break;
    }
    return {};
}

DrawingSize SizeOf(const CDC& drawing)
{
    return {Side(drawing.Width()), Side(drawing.Height())};
}

CDPoint TextStart(const drawing::Text& text)
{
    if (text.align == TextAlign::left)
        return text.position;
    const double back = TextWidth(text.utf8, text.font) * (text.align == TextAlign::center ? 0.5 : 1.0);
    return text.position - CDPoint{std::cos(text.angle), -std::sin(text.angle)} * back;
}

void AppendNumber(std::string& out, double value, int decimals)
{
    char digits[64];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    RUV_ASSERT(error == std::errc());
    std::string_view text(digits, static_cast<std::size_t>(end - digits));
    if (text.find('.') != std::string_view::npos) {
        text.remove_suffix(text.size() - 1 - text.find_last_not_of('0'));
        if (text.back() == '.')
            text.remove_suffix(1);
    }
    out += text == "-0" ? "0" : text;
}
} // namespace drawing
