// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/DiagramView.h"

#include "desktop/look/CdcPainter.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Tell.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace desktop
{
namespace
{

constexpr QSize kSmallest(280, 200);
constexpr QSize kPaper(900, 620); // logical pixels of a drawing for paper: 24 cm wide
constexpr double kMostZoom = 16.0;
constexpr double kZoomStep = 1.25;
constexpr double kWheelNotch = 120.0;

} // namespace

drawing::DiagramPalette PaletteFor(Ground ground)
{
    if (ground == Ground::paper)
        return drawing::DiagramPalette::Light();
    const SchemeColors& c = Colors();
    return {ToColorRef(c.surface), ToColorRef(c.field), ToColorRef(c.line),
            ToColorRef(c.muted),   ToColorRef(c.text),  ToColorRef(c.muted)};
}

DiagramView::DiagramView(Draw draw, QString name, QWidget* parent)
    : QAbstractScrollArea(parent), m_draw(std::move(draw)), m_name(std::move(name))
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(m_name);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void DiagramView::Refresh()
{
    m_drawing.reset();
    if (isVisible())
        FitScrollBars();
    viewport()->update();
}

void DiagramView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    FitScrollBars();
}

void DiagramView::SetReading(std::function<std::optional<DiagramReading>(QPointF)> reading)
{
    m_reading = std::move(reading);
    viewport()->setMouseTracking(true);
}

std::optional<DiagramReading> DiagramView::ReadingAt(QPointF point) const
{
    const QPointF offset(horizontalScrollBar()->value(), verticalScrollBar()->value());
    return m_reading ? m_reading((point + offset) / m_zoom) : std::nullopt;
}

QSizeF DiagramView::Whole() const
{
    const QSizeF shown = viewport()->size().expandedTo(kSmallest);
    return {shown.width(), m_least ? std::max(shown.height(), m_least(shown.width())) : shown.height()};
}

QSize DiagramView::sizeHint() const
{
    return kPaper * 0.6;
}

QSize DiagramView::minimumSizeHint() const
{
    return kSmallest;
}

CDC DiagramView::ForPaper() const
{
    const double width = kPaper.width();
    CDC drawing(width, m_least ? std::max<double>(kPaper.height(), m_least(width)) : kPaper.height());
    m_draw(drawing, Ground::paper);
    return drawing;
}

void DiagramView::paintEvent(QPaintEvent*)
{
    if (!m_drawing || m_scheme != CurrentScheme()) {
        m_scheme = CurrentScheme();
        const QSizeF size = Whole();
        m_drawing.emplace(size.width(), size.height());
        m_draw(*m_drawing, Ground::screen);
    }
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(viewport()->rect(), Colors().surface);
    painter.translate(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    painter.scale(m_zoom, m_zoom);
    Replay(*m_drawing, painter);
    PaintReading(painter);
}

void DiagramView::PaintReading(QPainter& painter) const
{
    const auto reading = m_hovered ? ReadingAt(*m_hovered) : std::nullopt;
    if (!reading)
        return;
    painter.setPen(QPen(Colors().accent, 1.0 / m_zoom));
    painter.drawLine(reading->line);
    painter.resetTransform();
    painter.setFont(TextFont());
    const QFontMetricsF metrics(TextFont());
    const double pad = Spacing();
    double width = 0.0;
    for (const auto& [text, color] : reading->texts)
        width = std::max(width, metrics.horizontalAdvance(text));
    const QSizeF size(width + 2.0 * pad, metrics.height() * static_cast<double>(reading->texts.size()) + pad);
    const QRectF room = viewport()->rect();
    // To the left of the mouse where there is no room to its right.
    const double right = m_hovered->x() + 2.0 * pad;
    const double x = right + size.width() <= room.right() ? right : m_hovered->x() - 2.0 * pad - size.width();
    const double y =
        std::clamp(m_hovered->y() - size.height() / 2.0, 0.0, std::max(0.0, room.height() - size.height()));
    const QRectF box(QPointF(std::max(x, 0.0), y), size);
    painter.setPen(Colors().border);
    painter.setBrush(Colors().field);
    painter.drawRoundedRect(box, CornerRadius(), CornerRadius());
    double baseline = box.top() + pad / 2.0 + metrics.ascent();
    for (const auto& [text, color] : reading->texts) {
        painter.setPen(color.isValid() ? color : Colors().text);
        painter.drawText(QPointF(box.left() + pad, baseline), text);
        baseline += metrics.height();
    }
}

void DiagramView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    m_drawing.reset();
    FitScrollBars();
}

void DiagramView::FitScrollBars()
{
    const QSize shown = viewport()->size();
    const QSizeF whole = Whole() * m_zoom;
    horizontalScrollBar()->setPageStep(shown.width());
    horizontalScrollBar()->setRange(0, std::max(0, static_cast<int>(std::ceil(whole.width())) - shown.width()));
    verticalScrollBar()->setPageStep(shown.height());
    verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(std::ceil(whole.height())) - shown.height()));
}

void DiagramView::SetZoom(double zoom, QPointF fixed)
{
    const double next = std::clamp(zoom, 1.0, kMostZoom);
    const QPointF offset(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QPointF moved = (offset + fixed) * (next / m_zoom) - fixed;
    m_zoom = next;
    FitScrollBars();
    horizontalScrollBar()->setValue(qRound(moved.x()));
    verticalScrollBar()->setValue(qRound(moved.y()));
    viewport()->setCursor(m_zoom > 1.0 ? Qt::OpenHandCursor : Qt::ArrowCursor);
    viewport()->update();
}

void DiagramView::wheelEvent(QWheelEvent* event)
{
    SetZoom(m_zoom * std::pow(kZoomStep, event->angleDelta().y() / kWheelNotch), event->position());
    event->accept();
}

void DiagramView::mousePressEvent(QMouseEvent* event)
{
    m_grabbed = event->pos();
    if (m_zoom > 1.0 && event->button() == Qt::LeftButton)
        viewport()->setCursor(Qt::ClosedHandCursor);
}

void DiagramView::mouseMoveEvent(QMouseEvent* event)
{
    m_hovered = event->position();
    if (m_reading)
        viewport()->update();
    if ((event->buttons() & Qt::LeftButton) == 0)
        return;
    const QPoint moved = event->pos() - m_grabbed;
    m_grabbed = event->pos();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void DiagramView::mouseReleaseEvent(QMouseEvent*)
{
    viewport()->setCursor(m_zoom > 1.0 ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void DiagramView::mouseDoubleClickEvent(QMouseEvent* event)
{
    SetZoom(m_zoom > 1.0 ? 1.0 : 2.0 * kZoomStep, event->position());
}

void DiagramView::keyPressEvent(QKeyEvent* event)
{
    const QPointF middle = QRectF(viewport()->rect()).center();
    if (event->matches(QKeySequence::Copy)) {
        Copy();
        Tell(*this, QStringLiteral("%1 in die Zwischenablage kopiert").arg(m_name));
    } else if (event->key() == Qt::Key_Plus)
        SetZoom(m_zoom * kZoomStep, middle);
    else if (event->key() == Qt::Key_Minus)
        SetZoom(m_zoom / kZoomStep, middle);
    else if (event->key() == Qt::Key_0)
        SetZoom(1.0, middle);
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void DiagramView::leaveEvent(QEvent* event)
{
    QAbstractScrollArea::leaveEvent(event);
    m_hovered.reset();
    viewport()->update();
}

void DiagramView::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    menu.addActions(m_actions);
    if (!m_actions.isEmpty())
        menu.addSeparator();
    AddDrawingEntries(menu, m_name, this, [this] { return ForPaper(); });
    menu.addSeparator();
    QAction* whole = menu.addAction(QStringLiteral("&Ganz zeigen"), this, [this] { SetZoom(1.0, {}); });
    whole->setEnabled(m_zoom > 1.0);
    menu.exec(event->globalPos());
}

void DiagramView::Copy() const
{
    CopyDrawing(ForPaper());
}

QString DiagramView::SaveAs(const QString& path) const
{
    return SaveDrawing(ForPaper(), path);
}

void DiagramView::PrintOn(QPrinter& printer) const
{
    PrintDrawing(ForPaper(), printer);
}

} // namespace desktop
