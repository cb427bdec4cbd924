// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Drawings as Scalable Vector Graphics 1.1.
#include "base/Utf.h"
#include "drawing/BitmapFiles.h"
#include "drawing/DrawingExport.h"
#include "drawing/DrawingFormat.h"
#include "drawing/FontMetrics.h"
#include "host/Physics.h"

#include <algorithm>
#include <string_view>
#include <variant>

namespace drawing
{
namespace
{
class SvgWriter
{
  public:
    SvgWriter(DrawingSize size, bool hasPictures)
    {
        // Without kerning and ligatures, text is as wide as the drawing measured it.
        m_out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"";
        if (hasPictures)
            m_out += " xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
        Number("width", size.width);
        Number("height", size.height);
        m_out += " viewBox=\"0 0 ";
        AppendNumber(m_out, size.width);
        m_out += ' ';
        AppendNumber(m_out, size.height);
        m_out += "\" font-family=\"'Noto Sans', 'Noto Sans Math', 'Segoe UI', 'Helvetica Neue', Arial, sans-serif\""
                 " style=\"font-kerning:none;font-variant-ligatures:none\" xml:space=\"preserve\">\n"
                 "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    }

    std::string Finish() &&
    {
        m_out += "</svg>\n";
        return std::move(m_out);
    }

    void operator()(const drawing::Polyline& line)
    {
        m_out += "<polyline";
        Points(line.points);
        m_out += " fill=\"none\" stroke-linejoin=\"round\"";
        Pen(line.pen);
        m_out += "/>\n";
    }

    void operator()(const drawing::Polygon& polygon)
    {
        m_out += "<polygon";
        Points(polygon.points);
        Brush(polygon.brush);
        Pen(polygon.pen);
        m_out += "/>\n";
    }

    void operator()(const drawing::Rectangle& rectangle)
    {
        m_out += "<rect";
        Number("x", rectangle.left);
        Number("y", rectangle.top);
        Number("width", rectangle.right - rectangle.left);
        Number("height", rectangle.bottom - rectangle.top);
        if (rectangle.radiusX > 0.0) {
            Number("rx", rectangle.radiusX);
            Number("ry", rectangle.radiusY);
        }
        Brush(rectangle.brush);
        Pen(rectangle.pen);
        m_out += "/>\n";
    }

    void operator()(const drawing::Ellipse& ellipse)
    {
        m_out += "<ellipse";
        Number("cx", ellipse.centre.x);
        Number("cy", ellipse.centre.y);
        Number("rx", ellipse.rx);
        Number("ry", ellipse.ry);
        Turn(ellipse.angle, ellipse.centre);
        Brush(ellipse.brush);
        Pen(ellipse.pen);
        m_out += "/>\n";
    }

    void operator()(const drawing::Text& text)
    {
        m_out += "<text";
        Number("x", text.position.x);
        Number("y", text.position.y);
        Number("font-size", text.font.size);
        if (text.font.bold)
            m_out += " font-weight=\"bold\"";
        if (text.align == TextAlign::center)
            m_out += " text-anchor=\"middle\"";
        if (text.align == TextAlign::right)
            m_out += " text-anchor=\"end\"";
        Turn(text.angle, text.position);
        Color("fill", text.color);
        m_out += '>';
        Escaped(text.utf8);
        m_out += "</text>\n";
    }

    void operator()(const drawing::Picture& picture)
    {
        const double width = picture.bitmap->width;
        const double height = picture.bitmap->height;
        m_out += "<image";
        Number("width", width);
        Number("height", height);
        if (picture.opacity < 1.0)
            Number("opacity", picture.opacity);
        m_out += " preserveAspectRatio=\"none\" transform=\"matrix(";
        for (const double value : {picture.across.x / width, picture.across.y / width, picture.down.x / height,
                                   picture.down.y / height, picture.corner.x, picture.corner.y}) {
            AppendNumber(m_out, value, 6);
            m_out += ' ';
        }
        const std::string file = FileOf(*picture.bitmap);
        m_out.back() = ')';
        m_out += "\" xlink:href=\"data:image/";
        m_out += IsJpeg(file) ? "jpeg" : "png";
        m_out += ";base64," + Base64(file) + "\"/>\n";
    }

  private:
    void Number(std::string_view name, double value)
    {
        m_out += ' ';
        m_out += name;
        m_out += "=\"";
        AppendNumber(m_out, value);
        m_out += '"';
    }

    void Color(std::string_view name, COLORREF color)
    {
        constexpr char digits[] = "0123456789abcdef";
        m_out += ' ';
        m_out += name;
        m_out += "=\"#";
        for (const unsigned shift : {4U, 0U, 12U, 8U, 20U, 16U})
            m_out += digits[color >> shift & 0xFU];
        m_out += '"';
    }

    void Points(const std::vector<CDPoint>& points)
    {
        m_out += " points=\"";
        for (const CDPoint& p : points) {
            AppendNumber(m_out, p.x);
            m_out += ',';
            AppendNumber(m_out, p.y);
            m_out += ' ';
        }
        m_out.back() = '"';
    }

    void Pen(const CPen& pen)
    {
        if (pen.style == PenStyle::none)
            return;
        Color("stroke", pen.color);
        Number("stroke-width", pen.width);
        const std::vector<double> dashes = DashLengths(pen);
        if (dashes.empty())
            return;
        m_out += " stroke-dasharray=\"";
        for (const double length : dashes) {
            AppendNumber(m_out, length);
            m_out += ' ';
        }
        m_out.back() = '"';
    }

    void Brush(const CBrush& brush)
    {
        if (brush.filled)
            Color("fill", brush.color);
        else
            m_out += " fill=\"none\"";
    }

    /// Turns an element counter-clockwise as seen; SVG counts clockwise.
    void Turn(double angle, CDPoint centre)
    {
        if (angle == 0.0)
            return;
        m_out += " transform=\"rotate(";
        for (const double value : {-angle / kRadProGrad, centre.x, centre.y}) {
            AppendNumber(m_out, value);
            m_out += ' ';
        }
        m_out.back() = ')';
        m_out += '"';
    }

    void Escaped(std::string_view utf8)
    {
        for (const char32_t codepoint : TextCodepoints(utf8)) {
            switch (codepoint) {
            case U'&':
                m_out += "&amp;";
                break;
            case U'<':
                m_out += "&lt;";
                break;
            case U'>':
                m_out += "&gt;";
                break;
            default:
                base::AppendUtf8(m_out, codepoint);
            }
        }
    }

    std::string m_out;
};
} // namespace

std::string ToSvg(const CDC& drawing)
{
    const auto& all = drawing.Primitives();
    const bool hasPictures = std::any_of(all.begin(), all.end(), [](const drawing::Primitive& primitive) {
        return std::holds_alternative<drawing::Picture>(primitive);
    });
    SvgWriter writer(SizeOf(drawing), hasPictures);
    for (const drawing::Primitive& primitive : drawing.Primitives())
        std::visit(writer, primitive);
    return std::move(writer).Finish();
}
} // namespace drawing
