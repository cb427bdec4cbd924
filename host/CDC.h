// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Drawing context. It records what is drawn as a list of primitives; screen, export and tests read that list.
#pragma once

#include "host/CDPoint.h"
#include "host/HostTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

enum class PenStyle { none, solid, dash, dot, dashDot, dashDotDot };

struct CPen {
    PenStyle style = PenStyle::solid;
    double width = 1.0;
    COLORREF color = RGB(0, 0, 0);
    friend bool operator==(const CPen&, const CPen&) = default;
};

struct CBrush {
    bool filled = false;
    COLORREF color = RGB(255, 255, 255);
    friend bool operator==(const CBrush&, const CBrush&) = default;
};

enum class TextAlign { left, center, right };

/// Font of a text; sizes in pixels of the drawing, height of the em square.
struct CFont {
    double size = 12.0;
    bool bold = false;
    friend bool operator==(const CFont&, const CFont&) = default;
};

namespace drawing
{
struct Polyline {
    std::vector<CDPoint> points;
    CPen pen;
};
/// Closed and filled polygon.
struct Polygon {
    std::vector<CDPoint> points;
    CPen pen;
    CBrush brush;
};
struct Rectangle {
    double left, top, right, bottom;
    double radiusX, radiusY; ///< rounded corners, 0 = sharp
    CPen pen;
    CBrush brush;
};
/// Ellipse about `centre` with half axes rx, ry, turned by `angle` (rad, counter-clockwise as seen).
struct Ellipse {
    CDPoint centre;
    double rx, ry;
    double angle;
    CPen pen;
    CBrush brush;
};
/// One line of text; `position` is the anchor on the baseline. `angle` (rad) turns it counter-clockwise as seen.
struct Text {
    CDPoint position;
    std::string utf8;
    TextAlign align;
    double angle;
    CFont font;
    COLORREF color;
};
/// The pixels of a picture, and the PNG or JPEG file that holds the same ones.
struct Bitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; ///< rows from the top, 0xFFRRGGBB
    std::string file;                  ///< empty when there is none
};
/// A bitmap laid on the drawing: `corner` is its upper left one, `across` runs along its first row to the upper right
/// corner, `down` along its first column to the lower left one. Opacity from 0 to 1.
struct Picture {
    CDPoint corner;
    CDPoint across;
    CDPoint down;
    double opacity;
    std::shared_ptr<const Bitmap> bitmap;
};
using Primitive = std::variant<Polyline, Polygon, Rectangle, Ellipse, Text, Picture>;
} // namespace drawing

/// Coordinates are pixels, x to the right, y down, origin at the top left.
class CDC
{
  public:
    CDC(double width, double height, double sharpness = 1.0) : m_width(width), m_height(height), m_sharpness(sharpness)
    {
    }

    double Width() const { return m_width; }
    double Height() const { return m_height; }
    /// Pixels of the screen for one of the drawing, each way; 1 when it is for no screen.
    double Sharpness() const { return m_sharpness; }

    void SelectPen(const CPen& pen) { m_pen = pen; }
    void SelectBrush(const CBrush& brush) { m_brush = brush; }
    void SelectFont(const CFont& font) { m_font = font; }
    void SetTextColor(COLORREF color) { m_textColor = color; }

    void Line(CDPoint from, CDPoint to);
    void Polyline(std::vector<CDPoint> points);
    void Polygon(std::vector<CDPoint> points);
    void Rectangle(double left, double top, double right, double bottom, double radiusX = 0.0, double radiusY = 0.0);
    void Ellipse(CDPoint centre, double rx, double ry, double angle = 0.0);
    void TextOut(CDPoint baseline, const std::string& utf8, TextAlign align = TextAlign::left, double angle = 0.0);
    void Picture(CDPoint corner, CDPoint across, CDPoint down, double opacity,
                 std::shared_ptr<const drawing::Bitmap> bitmap);
    /// Width of a line of text in the selected font, in pixels.
    double TextWidth(const std::string& utf8) const;
    /// Height of a line of text: ascent and descent of the selected font, in pixels.
    double TextHeight() const;
    double TextAscent() const;

    const std::vector<drawing::Primitive>& Primitives() const { return m_primitives; }

  private:
    double m_width;
    double m_height;
    double m_sharpness;
    CPen m_pen{};
    CBrush m_brush{};
    CFont m_font{};
    COLORREF m_textColor = RGB(0, 0, 0);
    std::vector<drawing::Primitive> m_primitives;
};
