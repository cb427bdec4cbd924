// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Drawings as pictures: every primitive becomes outlines, every outline a mask of coverages, blended over white.
#include "drawing/BitmapFiles.h"
#include "drawing/DrawingExport.h"
#include "drawing/DrawingFormat.h"
#include "drawing/DrawingGeometry.h"
#include "drawing/FontMetrics.h"
#include "drawing/Stb.h"
#include "drawing/Stroker.h"
#include "host/Assert.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <variant>

namespace drawing
{
namespace
{
constexpr double kCurveTolerance = 0.05; // picture pixels
constexpr double kMostPixels = 64e6;
constexpr int kMostSamples = 5; // of a bitmap, along a pixel's side
constexpr int kMargin = 1;      // the rasteriser wants no outline to touch the right border of its mask

/// An RGB picture.
class Canvas
{
  public:
    Canvas(int width, int height)
        : m_width(width), m_height(height),
          m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, 255)
    {
    }

    Box Area() const { return {0.0, 0.0, static_cast<double>(m_width), static_cast<double>(m_height)}; }

    /// Fills the outlines together by the non-zero rule.
    void Fill(std::vector<Contour> outlines, COLORREF color)
    {
        Box bounds{1e9, 1e9, -1e9, -1e9};
        m_vertices.clear();
        for (Contour& outline : outlines) {
            outline = ClipPolygon(std::move(outline), Area());
            for (const CDPoint& p : outline) {
                bounds.left = std::min(bounds.left, p.x);
                bounds.top = std::min(bounds.top, p.y);
                bounds.right = std::max(bounds.right, p.x);
                bounds.bottom = std::max(bounds.bottom, p.y);
            }
        }
        if (bounds.left > bounds.right)
            return;
        const int left = static_cast<int>(std::floor(bounds.left)) - kMargin;
        const int top = static_cast<int>(std::floor(bounds.top)) - kMargin;
        const int width = static_cast<int>(std::ceil(bounds.right)) + kMargin - left;
        const int height = static_cast<int>(std::ceil(bounds.bottom)) + kMargin - top;
        for (const Contour& outline : outlines) {
            unsigned char type = STBTT_vmove;
            for (const CDPoint& p : outline) {
                m_vertices.push_back(
                    {static_cast<float>(p.x - left), static_cast<float>(p.y - top), 0.0F, 0.0F, 0.0F, 0.0F, type, 0});
                type = STBTT_vline;
            }
        }
        m_mask.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        stbtt__bitmap mask{width, height, width, m_mask.data()};
        stbtt_Rasterize(&mask, 1.0F, m_vertices.data(), static_cast<int>(m_vertices.size()), 1.0F, 1.0F, 0.0F, 0.0F, 0,
                        0, 0, nullptr);
        Blend(mask, left, top, color);
    }

    /// Lays a bitmap over the picture; lengths in pixels of the picture.
    void Lay(const drawing::Bitmap& bitmap, CDPoint corner, CDPoint across, CDPoint down, double opacity)
    {
        const double area = across.x * down.y - across.y * down.x;
        const double perPixel = std::sqrt(bitmap.width * (bitmap.height / std::abs(area)));
        const int samples = std::clamp(static_cast<int>(std::ceil(perPixel)), 2, kMostSamples);
        const auto [left, right] =
            std::minmax({corner.x, corner.x + across.x, corner.x + down.x, corner.x + across.x + down.x});
        const auto [top, bottom] =
            std::minmax({corner.y, corner.y + across.y, corner.y + down.y, corner.y + across.y + down.y});
        const int lastX = static_cast<int>(std::min(std::ceil(right), Area().right));
        const int lastY = static_cast<int>(std::min(std::ceil(bottom), Area().bottom));
        for (int y = static_cast<int>(std::max(std::floor(top), 0.0)); y < lastY; ++y) {
            for (int x = static_cast<int>(std::max(std::floor(left), 0.0)); x < lastX; ++x) {
                unsigned sum[3] = {};
                unsigned hits = 0;
                for (int i = 0; i < samples * samples; ++i) {
                    const double px = x + (i % samples + 0.5) / samples - corner.x;
                    const double py = y + (i / samples + 0.5) / samples - corner.y;
                    const double u = (px * down.y - py * down.x) / area;
                    const double v = (py * across.x - px * across.y) / area;
                    if (!(u >= 0.0 && u < 1.0 && v >= 0.0 && v < 1.0))
                        continue;
                    const auto column = static_cast<std::size_t>(u * bitmap.width);
                    const auto row = static_cast<std::size_t>(v * bitmap.height);
                    const std::uint32_t pixel = bitmap.pixels[row * static_cast<std::size_t>(bitmap.width) + column];
                    for (unsigned channel = 0; channel < 3; ++channel)
                        sum[channel] += pixel >> (16U - 8U * channel) & 0xFFU;
                    ++hits;
                }
                if (hits > 0)
                    Mix(x, y, sum, hits, opacity * hits / (samples * samples));
            }
        }
    }

    std::string Png() const { return PngFile(m_width, m_height, m_pixels.data()); }

  private:
    void Mix(int x, int y, const unsigned (&sum)[3], unsigned count, double share)
    {
        unsigned char* pixel = m_pixels.data() + (static_cast<std::ptrdiff_t>(y) * m_width + x) * 3;
        for (int channel = 0; channel < 3; ++channel) {
            const double ink = static_cast<double>(sum[channel]) / count;
            pixel[channel] = static_cast<unsigned char>(std::lround(pixel[channel] + (ink - pixel[channel]) * share));
        }
    }

    void Blend(const stbtt__bitmap& mask, int left, int top, COLORREF color)
    {
        const unsigned ink[] = {color & 0xFFU, color >> 8U & 0xFFU, color >> 16U & 0xFFU};
        const int firstX = std::max(left, 0);
        const int lastX = std::min(left + mask.w, m_width);
        for (int y = std::max(top, 0); y < std::min(top + mask.h, m_height); ++y) {
            const unsigned char* coverage = mask.pixels + static_cast<std::ptrdiff_t>(y - top) * mask.stride;
            unsigned char* row = m_pixels.data() + static_cast<std::ptrdiff_t>(y) * m_width * 3;
            for (int x = firstX; x < lastX; ++x) {
                const unsigned share = coverage[x - left];
                if (share == 0)
                    continue;
                for (int channel = 0; channel < 3; ++channel) {
                    unsigned char& value = row[x * 3 + channel];
                    value = static_cast<unsigned char>((value * (255U - share) + ink[channel] * share + 127U) / 255U);
                }
            }
        }
    }

    int m_width;
    int m_height;
    std::vector<unsigned char> m_pixels;
    std::vector<unsigned char> m_mask;
    std::vector<stbtt_vertex> m_vertices;
};

/// Appends the outlines of a glyph; `place` takes coordinates in em to the picture.
template <class Place> void AppendGlyph(std::vector<Contour>& outlines, const Glyph& glyph, Place place)
{
    const stbtt_fontinfo& font = FontInfo(glyph.face);
    const double unit = 1.0 / UnitsPerEm(glyph.face);
    const auto at = [&](float x, float y) { return place(CDPoint{x * unit, y * unit}); };
    stbtt_vertex* vertices = nullptr;
    const int count = stbtt_GetGlyphShape(&font, glyph.index, &vertices);
    CDPoint pen;
    for (int i = 0; i < count; ++i) {
        const stbtt_vertex& vertex = vertices[i];
        const CDPoint end = at(vertex.x, vertex.y);
        if (vertex.type == STBTT_vmove) {
            outlines.emplace_back();
        } else if (vertex.type == STBTT_vcurve) {
            // A quadratic curve in n chords strays |p0 - 2·p1 + p2| / (4·n²) from them.
            const CDPoint control = at(vertex.cx, vertex.cy);
            const CDPoint bend = pen - control * 2.0 + end;
            const int steps = static_cast<int>(std::sqrt(std::hypot(bend.x, bend.y) / (4.0 * kCurveTolerance))) + 1;
            for (int step = 1; step < steps; ++step) {
                const double t = static_cast<double>(step) / steps;
                outlines.back().push_back(pen * ((1.0 - t) * (1.0 - t)) + control * (2.0 * t * (1.0 - t)) +
                                          end * (t * t));
            }
        }
        outlines.back().push_back(end);
        pen = end;
    }
    stbtt_FreeShape(&font, vertices);
}

class PngPainter
{
  public:
    PngPainter(Canvas& canvas, double scale) : m_canvas(canvas), m_scale(scale) {}

    void operator()(const drawing::Polyline& line) { Stroke(Scaled(line.points), false, line.pen, StrokeJoin::round); }

    void operator()(const drawing::Polygon& polygon) { Shape(Scaled(polygon.points), polygon.brush, polygon.pen); }

    void operator()(const drawing::Rectangle& rectangle)
    {
        Shape(Scaled(Flatten(ArcsOf(rectangle), kCurveTolerance / m_scale)), rectangle.brush, rectangle.pen);
    }

    void operator()(const drawing::Ellipse& ellipse)
    {
        Shape(Scaled(Flatten(ArcsOf(ellipse), kCurveTolerance / m_scale)), ellipse.brush, ellipse.pen);
    }

    void operator()(const drawing::Text& text)
    {
        const CDPoint along = CDPoint{std::cos(text.angle), -std::sin(text.angle)} * (text.font.size * m_scale);
        const CDPoint up{along.y, -along.x};
        CDPoint start = TextStart(text) * m_scale;
        std::vector<Contour> outlines;
        for (const Glyph& glyph : GlyphsOf(text.utf8, text.font.bold)) {
            AppendGlyph(outlines, glyph, [&](CDPoint p) { return start + along * p.x + up * p.y; });
            start += along * glyph.advance;
        }
        m_canvas.Fill(std::move(outlines), text.color);
    }

    void operator()(const drawing::Picture& picture)
    {
        m_canvas.Lay(*picture.bitmap, picture.corner * m_scale, picture.across * m_scale, picture.down * m_scale,
                     picture.opacity);
    }

  private:
    Contour Scaled(Contour points) const
    {
        for (CDPoint& p : points)
            p *= m_scale;
        return points;
    }

    void Shape(const Contour& outline, const CBrush& brush, const CPen& pen)
    {
        if (brush.filled)
            m_canvas.Fill({outline}, brush.color);
        Stroke(outline, true, pen, StrokeJoin::miter);
    }

    void Stroke(const Contour& points, bool closed, const CPen& pen, StrokeJoin join)
    {
        if (pen.style == PenStyle::none)
            return;
        StrokeStyle style{pen.width * m_scale, join, DashLengths(pen)};
        for (double& length : style.dashes)
            length *= m_scale;
        m_canvas.Fill(StrokeOutlines(points, closed, style, m_canvas.Area()), pen.color);
    }

    Canvas& m_canvas;
    double m_scale;
};
} // namespace

std::string ToPng(const CDC& drawing, double scale)
{
    RUV_ASSERT(scale > 0.0);
    // A size that is whole but for rounding must not gain a row.
    const double width = std::ceil(SizeOf(drawing).width * scale - 1e-6);
    const double height = std::ceil(SizeOf(drawing).height * scale - 1e-6);
    if (!(width * height <= kMostPixels))
        return {};
    Canvas canvas(std::max(static_cast<int>(width), 1), std::max(static_cast<int>(height), 1));
    PngPainter painter(canvas, scale);
    for (const drawing::Primitive& primitive : drawing.Primitives())
        std::visit(painter, primitive);
    return canvas.Png();
}
} // namespace drawing
