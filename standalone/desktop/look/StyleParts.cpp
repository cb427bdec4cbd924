// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/StyleParts.h"

#include "desktop/look/Style.h"
#include "desktop/look/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QVariant>
#include <QWidget>

namespace desktop
{
namespace
{

class Saved
{
  public:
    explicit Saved(QPainter& painter) : m_painter(painter)
    {
        m_painter.save();
        m_painter.setRenderHint(QPainter::Antialiasing);
    }
    ~Saved() { m_painter.restore(); }
    Saved(const Saved&) = delete;
    Saved& operator=(const Saved&) = delete;

  private:
    QPainter& m_painter;
};

FieldLook LookOf(const QWidget* widget, QStyle::State state)
{
    const QVariant look = widget == nullptr ? QVariant() : widget->property(kLookProperty);
    if (look.isValid())
        return static_cast<FieldLook>(look.toInt());
    return state & QStyle::State_Enabled ? FieldLook::input : FieldLook::disabled;
}

QPen Outline(const QColor& color, double width = 1.0)
{
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

} // namespace

void DrawRounded(QPainter& painter, const QRectF& area, const QPen& pen, const QBrush& ground)
{
    const Saved saved(painter);
    painter.setPen(pen);
    painter.setBrush(ground);
    const double inset = pen.style() == Qt::NoPen ? 0.0 : pen.widthF() / 2.0;
    painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), CornerRadius(), CornerRadius());
}

void DrawField(QPainter& painter, const QRectF& area, QStyle::State state, const QWidget* widget)
{
    const SchemeColors& c = Colors();
    const FieldLook look = LookOf(widget, state);
    const bool refused = widget != nullptr && widget->property(kRefusedProperty).toBool();
    const QColor tint = widget == nullptr ? QColor() : widget->property(kTintProperty).value<QColor>();
    const QColor chosen = widget == nullptr ? QColor() : widget->property(kGroundProperty).value<QColor>();

    QColor ground = look == FieldLook::input ? c.field : look == FieldLook::result ? c.result : c.surface;
    QPen pen = look == FieldLook::result ? QPen(Qt::NoPen) : Outline(look == FieldLook::input ? c.border : c.line);
    if (look == FieldLook::input && state & QStyle::State_MouseOver)
        pen = Outline(c.muted);
    if (chosen.isValid() && look != FieldLook::disabled)
        ground = chosen;
    if (tint.isValid() && look == FieldLook::input)
        ground = Tinted(ground, tint);
    if (refused) {
        ground = c.dangerSoft;
        pen = Outline(c.danger, 2.0);
    } else if (state & QStyle::State_HasFocus && look == FieldLook::input) {
        pen = Outline(c.accent, 2.0);
    }
    DrawRounded(painter, area, pen, ground);

    if (tint.isValid() && look != FieldLook::disabled && !refused) {
        const Saved saved(painter);
        QPainterPath field;
        field.addRoundedRect(area.adjusted(1.0, 1.0, -1.0, -1.0), CornerRadius() - 1.0, CornerRadius() - 1.0);
        painter.setClipPath(field);
        painter.fillRect(QRectF(area.left(), area.top(), 4.0 * CurrentFontScale(), area.height()), tint);
    }
}

void DrawCheckMark(QPainter& painter, const QRectF& area, QStyle::State state)
{
    const SchemeColors& c = Colors();
    const bool enabled = (state & QStyle::State_Enabled) != 0;
    const bool on = (state & QStyle::State_On) != 0;
    const bool partly = (state & QStyle::State_NoChange) != 0;
    const QColor fill = (on || partly) ? (enabled ? c.accent : c.muted) : (enabled ? c.field : c.surface);
    const QColor edge = (on || partly) ? fill : (state & QStyle::State_MouseOver ? c.muted : c.border);
    DrawRounded(painter, area, Outline(enabled ? edge : c.line, 1.2), fill);
    const Saved saved(painter);
    painter.setPen(QPen(c.onAccent, area.width() / 8.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&](double x, double y) {
        return QPointF(area.left() + x * area.width(), area.top() + y * area.height());
    };
    if (on)
        painter.drawPolyline(QPolygonF({at(0.25, 0.52), at(0.43, 0.70), at(0.76, 0.32)}));
    else if (partly)
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
    if (state & QStyle::State_HasFocus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(Outline(c.accent, 1.5));
        painter.drawRoundedRect(area.adjusted(-1.5, -1.5, 1.5, 1.5), CornerRadius() + 1.0, CornerRadius() + 1.0);
    }
}

void DrawRadioMark(QPainter& painter, const QRectF& area, QStyle::State state)
{
    const SchemeColors& c = Colors();
    const Saved saved(painter);
    const bool enabled = (state & QStyle::State_Enabled) != 0;
    const bool on = (state & QStyle::State_On) != 0;
    const QRectF circle = area.adjusted(0.7, 0.7, -0.7, -0.7);
    const QColor strong = enabled ? c.accent : c.muted;
    painter.setPen(Outline(on        ? strong
                           : enabled ? (state & QStyle::State_MouseOver ? c.muted : c.border)
                                     : c.line,
                           1.2));
    painter.setBrush(enabled ? c.field : c.surface);
    painter.drawEllipse(circle);
    if (on) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(strong);
        const double inset = circle.width() * 0.27;
        painter.drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
    }
    if (state & QStyle::State_HasFocus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(Outline(c.accent, 1.5));
        painter.drawEllipse(area.adjusted(-1.5, -1.5, 1.5, 1.5));
    }
}

bool IsFilled(const QStyleOptionButton& button)
{
    return button.features & QStyleOptionButton::DefaultButton && button.state & QStyle::State_Enabled;
}

void DrawButton(QPainter& painter, const QStyleOptionButton& button)
{
    const SchemeColors& c = Colors();
    const QRectF area(button.rect);
    const bool enabled = (button.state & QStyle::State_Enabled) != 0;
    const bool pressed = (button.state & (QStyle::State_Sunken | QStyle::State_On)) != 0;
    const bool hovered = (button.state & QStyle::State_MouseOver) != 0;
    if (IsFilled(button)) {
        const QColor ground = pressed ? c.accent.darker(125) : hovered ? c.accent.lighter(112) : c.accent;
        DrawRounded(painter, area, Qt::NoPen, ground);
        if (button.state & QStyle::State_HasFocus)
            DrawRounded(painter, area.adjusted(2.5, 2.5, -2.5, -2.5), Outline(c.onAccent, 1.2), Qt::NoBrush);
        return;
    }
    const QColor ground = !enabled ? c.surface : pressed ? c.selection : hovered ? c.hover : c.field;
    DrawRounded(painter, area, Outline(enabled ? c.border : c.line), ground);
    if (button.state & QStyle::State_HasFocus)
        DrawRounded(painter, area, Outline(c.accent, 2.0), Qt::NoBrush);
}

void DrawGroup(QPainter& painter, const QRect& area, const QString& title, const QString& warning, const QColor& ground)
{
    const SchemeColors& c = Colors();
    const QFont font = TextFont(1.0, true);
    const QFontMetrics metrics(font);
    const Saved saved(painter);
    painter.setPen(c.line);
    painter.setBrush(Qt::NoBrush);
    const double radius = 1.5 * CornerRadius();
    painter.drawRoundedRect(QRectF(area).adjusted(0.5, metrics.height() / 2.0, -0.5, -0.5), radius, radius);
    const int indent = Spacing();
    if (!warning.isEmpty()) {
        const int room = metrics.horizontalAdvance(warning) + indent;
        const QRect right(area.right() - indent - room, area.top(), room, metrics.height());
        painter.fillRect(right, ground);
        painter.setFont(font);
        painter.setPen(c.danger);
        painter.drawText(right, Qt::AlignCenter | Qt::TextDontClip, warning);
        painter.setPen(c.line);
    }
    if (title.isEmpty())
        return;
    const int width = metrics.size(Qt::TextShowMnemonic, title).width();
    const QRect gap(area.left() + indent, area.top(), width + indent, metrics.height());
    painter.fillRect(gap, ground);
    painter.setFont(font);
    painter.setPen(c.muted);
    painter.drawText(gap, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip, title);
}

void DrawSlider(QPainter& painter, const QStyleOptionSlider& slider, const QRect& handle)
{
    const SchemeColors& c = Colors();
    const bool enabled = (slider.state & QStyle::State_Enabled) != 0;
    const bool level = slider.orientation == Qt::Horizontal;
    const double half = 2.0 * CurrentFontScale();
    const QRectF all(slider.rect);
    const QPointF knob = QRectF(handle).center();
    const QRectF groove = level ? QRectF(all.left(), knob.y() - half, all.width(), 2.0 * half)
                                : QRectF(knob.x() - half, all.top(), 2.0 * half, all.height());
    DrawRounded(painter, groove, Qt::NoPen, c.line);
    const QRectF done = level ? QRectF(groove.topLeft(), QPointF(knob.x(), groove.bottom())) : QRectF();
    if (enabled && level)
        DrawRounded(painter, done, Qt::NoPen, c.accent);
    const Saved saved(painter);
    const double radius = 0.5 * qMin(handle.width(), handle.height()) - 2.0;
    painter.setPen(Outline(enabled ? c.accent : c.border, slider.state & QStyle::State_HasFocus ? 2.5 : 1.5));
    painter.setBrush(c.field);
    painter.drawEllipse(knob, radius, radius);
}

void DrawTab(QPainter& painter, const QStyleOptionTab& tab)
{
    const SchemeColors& c = Colors();
    const bool selected = (tab.state & QStyle::State_Selected) != 0;
    painter.fillRect(tab.rect, selected ? c.surface : (tab.state & QStyle::State_MouseOver) != 0 ? c.hover : c.window);
    if (!selected)
        return;
    const int thickness = qRound(2 * CurrentFontScale());
    const bool below = tab.shape == QTabBar::RoundedSouth || tab.shape == QTabBar::TriangularSouth;
    const int y = below ? tab.rect.bottom() - thickness + 1 : tab.rect.top();
    painter.fillRect(QRect(tab.rect.left(), y, tab.rect.width(), thickness), c.accent);
}

QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part)
{
    // No arrow buttons: the slider has the whole length.
    const bool level = bar.orientation == Qt::Horizontal;
    const int length = level ? bar.rect.width() : bar.rect.height();
    const int range = bar.maximum - bar.minimum;
    int size = length;
    if (range > 0) {
        const qint64 share = static_cast<qint64>(length) * bar.pageStep / (range + bar.pageStep);
        size = qBound(qMin(length, qRound(28 * CurrentFontScale())), static_cast<int>(share), length);
    }
    const int start =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, length - size, bar.upsideDown);
    const auto span = [&](int from, int count) {
        return level ? QRect(bar.rect.left() + from, bar.rect.top(), count, bar.rect.height())
                     : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), count);
    };
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    case QStyle::SC_ScrollBarSlider:
        return span(start, size);
    case QStyle::SC_ScrollBarSubPage:
        return span(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return span(start + size, length - start - size);
    default:
        return {};
    }
}

void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar)
{
    const SchemeColors& c = Colors();
    painter.fillRect(bar.rect, c.window);
    if (bar.maximum == bar.minimum)
        return;
    const double inset = 3.0;
    const QRectF slider = QRectF(ScrollBarPart(bar, QStyle::SC_ScrollBarSlider)).adjusted(inset, inset, -inset, -inset);
    DrawRounded(painter, slider, Qt::NoPen,
                bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken) ? c.muted : c.border);
}

QRect TitleBarPart(const QStyleOptionTitleBar& bar, QStyle::SubControl part)
{
    const QRect area = bar.rect;
    const int side = area.height();
    const bool minimised = (bar.titleBarState & Qt::WindowMinimized) != 0;
    const auto button = [&](int fromRight) {
        return QRect(area.right() + 1 - side * fromRight, area.top(), side, side);
    };
    switch (part) {
    case QStyle::SC_TitleBarCloseButton:
        return button(1);
    case QStyle::SC_TitleBarMinButton:
        return !minimised && bar.titleBarFlags & Qt::WindowMinimizeButtonHint ? button(2) : QRect();
    case QStyle::SC_TitleBarNormalButton:
        return minimised && bar.titleBarFlags & Qt::WindowMinimizeButtonHint ? button(2) : QRect();
    case QStyle::SC_TitleBarLabel:
        return area.adjusted(Spacing(), 0, -2 * side, 0);
    default:
        return {};
    }
}

void DrawTitleBar(QPainter& painter, const QStyleOptionTitleBar& bar)
{
    const SchemeColors& c = Colors();
    const bool active = (bar.titleBarState & QStyle::State_Active) != 0;
    const bool minimised = (bar.titleBarState & Qt::WindowMinimized) != 0;
    painter.fillRect(bar.rect, active ? c.window : c.desk);
    painter.setPen(c.border);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(bar.rect.adjusted(0, 0, -1, minimised ? -1 : bar.rect.height()));
    if (!minimised)
        painter.fillRect(bar.rect.adjusted(1, bar.rect.height() - 1, -1, 0), c.line);
    if (active)
        painter.fillRect(QRect(bar.rect.left(), bar.rect.top(), bar.rect.width(), qRound(2 * CurrentFontScale())),
                         c.accent);
    const Saved saved(painter);
    const QRect label = TitleBarPart(bar, QStyle::SC_TitleBarLabel);
    painter.setFont(TextFont(1.0, true));
    painter.setPen(active ? c.text : c.muted);
    painter.drawText(label, Qt::AlignVCenter | Qt::AlignLeft,
                     painter.fontMetrics().elidedText(bar.text, Qt::ElideRight, label.width()));

    for (const auto part :
         {QStyle::SC_TitleBarMinButton, QStyle::SC_TitleBarNormalButton, QStyle::SC_TitleBarCloseButton}) {
        const QRect button = TitleBarPart(bar, part);
        if (button.isEmpty())
            continue;
        const bool hovered = (bar.activeSubControls & part) != 0 && (bar.state & QStyle::State_MouseOver) != 0;
        if (hovered)
            painter.fillRect(button.adjusted(0, 2, 0, -1), part == QStyle::SC_TitleBarCloseButton ? c.danger : c.hover);
        painter.setPen(QPen(hovered && part == QStyle::SC_TitleBarCloseButton ? c.surface
                            : active                                          ? c.text
                                                                              : c.muted,
                            1.3 * CurrentFontScale(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const double r = button.height() / 6.5;
        const QPointF m = QRectF(button).center();
        if (part == QStyle::SC_TitleBarCloseButton) {
            painter.drawLine(m + QPointF(-r, -r), m + QPointF(r, r));
            painter.drawLine(m + QPointF(-r, r), m + QPointF(r, -r));
        } else if (part == QStyle::SC_TitleBarMinButton) {
            painter.drawLine(m + QPointF(-r, r), m + QPointF(r, r));
        } else {
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(QRectF(m - QPointF(r, r), QSizeF(2 * r, 2 * r)));
        }
    }
}

void DrawChevron(QPainter& painter, const QRectF& area, Qt::ArrowType direction, const QColor& color)
{
    const Saved saved(painter);
    const double r = 3.2 * CurrentFontScale();
    const QPointF m = area.center();
    const double side = direction == Qt::UpArrow || direction == Qt::LeftArrow ? -1.0 : 1.0;
    const bool vertical = direction == Qt::UpArrow || direction == Qt::DownArrow;
    const auto at = [&](double along, double across) {
        return vertical ? m + QPointF(along, side * across) : m + QPointF(side * across, along);
    };
    painter.setPen(QPen(color, 1.4 * CurrentFontScale(), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({at(-r, -0.5 * r), at(0.0, 0.5 * r), at(r, -0.5 * r)}));
}

} // namespace desktop
