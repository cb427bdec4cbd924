// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/CdcPainter.h"

#include "desktop/look/Theme.h"
#include "drawing/DrawingExport.h"
#include "drawing/DrawingFormat.h"
#include "host/Physics.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>

namespace desktop
{
namespace
{

constexpr double kPointsPerInch = 72.0;

class Player
{
  public:
    Player(QPainter& painter, const ColorMap& colors) : m_painter(painter), m_colors(colors) {}

    void operator()(const drawing::Polyline& line)
    {
        Select(line.pen);
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawPolyline(Points(line.points));
    }
    void operator()(const drawing::Polygon& polygon)
    {
        Select(polygon.pen);
        Select(polygon.brush);
        m_painter.drawPolygon(Points(polygon.points));
    }
    void operator()(const drawing::Rectangle& rectangle)
    {
        Select(rectangle.pen);
        Select(rectangle.brush);
        const QRectF area(QPointF(rectangle.left, rectangle.top), QPointF(rectangle.right, rectangle.bottom));
        m_painter.drawRoundedRect(area, rectangle.radiusX, rectangle.radiusY);
    }
    void operator()(const drawing::Ellipse& ellipse)
    {
        const QPointF centre(ellipse.centre.x, ellipse.centre.y);
        if (IsDot(ellipse)) {
            // As with a pen, but for a painter it is far less work.
            const double half = ellipse.pen.width / 2.0;
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(m_colors(ellipse.pen.color));
            m_painter.drawEllipse(centre, ellipse.rx + half, ellipse.rx + half);
            m_painter.setBrush(m_colors(ellipse.brush.color));
            m_painter.drawEllipse(centre, ellipse.rx - half, ellipse.rx - half);
            return;
        }
        Select(ellipse.pen);
        Select(ellipse.brush);
        m_painter.save();
        m_painter.translate(centre);
        m_painter.rotate(Degrees(ellipse.angle));
        m_painter.drawEllipse(QPointF(0.0, 0.0), ellipse.rx, ellipse.ry);
        m_painter.restore();
    }
    void operator()(const drawing::Text& text)
    {
        QFont font = TextFont(1.0, text.font.bold);
        font.setPointSizeF(text.font.size * kPointsPerInch / m_painter.device()->logicalDpiY());
        font.setKerning(false); // as the drawing measured it
        const CDPoint start = drawing::TextStart(text);
        m_painter.save();
        m_painter.setFont(font);
        m_painter.setPen(m_colors(text.color));
        m_painter.translate(start.x, start.y);
        m_painter.rotate(Degrees(text.angle));
        m_painter.drawText(QPointF(0.0, 0.0), QString::fromStdString(text.utf8));
        m_painter.restore();
    }

    void operator()(const drawing::Picture& picture)
    {
        const drawing::Bitmap& bitmap = *picture.bitmap;
        const double width = bitmap.width;
        const double height = bitmap.height;
        const QImage image(reinterpret_cast<const uchar*>(bitmap.pixels.data()), bitmap.width, bitmap.height,
                           4 * static_cast<qsizetype>(bitmap.width), QImage::Format_RGB32);
        m_painter.save();
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
        m_painter.setOpacity(picture.opacity);
        m_painter.setTransform(QTransform(picture.across.x / width, picture.across.y / width, picture.down.x / height,
                                          picture.down.y / height, picture.corner.x, picture.corner.y),
                               true);
        m_painter.drawImage(QPointF(0.0, 0.0), image);
        m_painter.restore();
    }

  private:
    /// A filled circle with a ring around it.
    static bool IsDot(const drawing::Ellipse& ellipse)
    {
        return ellipse.rx == ellipse.ry && ellipse.brush.filled && ellipse.pen.style == PenStyle::solid &&
               ellipse.pen.width < 2.0 * ellipse.rx;
    }

    /// Drawings turn counter-clockwise as seen, painters clockwise.
    static double Degrees(double angle) { return -angle / kRadProGrad; }

    static QPolygonF Points(const std::vector<CDPoint>& points)
    {
        QPolygonF polygon;
        polygon.reserve(static_cast<qsizetype>(points.size()));
        for (const CDPoint& point : points)
            polygon.append(QPointF(point.x, point.y));
        return polygon;
    }

    void Select(const CPen& pen)
    {
        if (pen.style == PenStyle::none) {
            m_painter.setPen(Qt::NoPen);
            return;
        }
        QPen line(m_colors(pen.color), pen.width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
        line.setMiterLimit(drawing::kMiterLimit);
        const std::vector<double> dashes = drawing::DashLengths(pen);
        if (!dashes.empty()) {
            QList<qreal> pattern;
            for (const double length : dashes)
                pattern.append(length / pen.width); // a pattern counts in widths of its pen
            line.setDashPattern(pattern);
        }
        m_painter.setPen(line);
    }
    void Select(const CBrush& brush)
    {
        m_painter.setBrush(brush.filled ? QBrush(m_colors(brush.color)) : QBrush(Qt::NoBrush));
    }

    QPainter& m_painter;
    const ColorMap& m_colors;
};

} // namespace

void Replay(const CDC& drawing, QPainter& painter, const ColorMap& colors)
{
    const ColorMap map = colors ? colors : ColorMap(&FromColorRef);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    Player player(painter, map);
    for (const drawing::Primitive& primitive : drawing.Primitives())
        std::visit(player, primitive);
    painter.restore();
}

} // namespace desktop
