// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/RefusalBubble.h"

#include "desktop/look/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace desktop
{
namespace
{

int TipHeight()
{
    return qRound(6 * CurrentFontScale());
}

int LargestWidth()
{
    return qRound(330 * CurrentFontScale());
}

constexpr int kWrap = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

} // namespace

RefusalBubble::RefusalBubble(QWidget& field, const QString& text)
    : QWidget(field.window()), m_field(&field), m_text(text)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    for (QWidget* above = &field; above != nullptr && above != parentWidget(); above = above->parentWidget())
        above->installEventFilter(this);
    Place();
    show();
    raise();
}

RefusalBubble::~RefusalBubble() = default;

void RefusalBubble::Place()
{
    if (m_field == nullptr || parentWidget() == nullptr || !parentWidget()->isAncestorOf(m_field))
        return;
    const int pad = Spacing();
    const QRect text = QFontMetrics(TextFont()).boundingRect(QRect(0, 0, LargestWidth(), 1000), kWrap, m_text);
    const QSize size(text.width() + 2 * pad + 2, text.height() + pad + TipHeight());
    const QRect field(m_field->mapTo(parentWidget(), QPoint(0, 0)), m_field->size());
    const QRect room = parentWidget()->rect();
    m_below = field.bottom() + size.height() <= room.bottom() || field.top() - size.height() < room.top();
    const int x = std::clamp(field.left(), room.left(), std::max(room.left(), room.right() - size.width()));
    const int y = m_below ? field.bottom() + 1 : field.top() - size.height();
    setGeometry(QRect(QPoint(x, y), size));
    m_tip = std::clamp(field.left() + 2 * pad - x, 2 * pad, size.width() - 2 * pad);
    setVisible(m_field->isVisible());
    update();
}

bool RefusalBubble::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        Place();
        break;
    case QEvent::ZOrderChange:
        raise();
        break;
    default:
        break;
    }
    return false;
}

void RefusalBubble::paintEvent(QPaintEvent*)
{
    const SchemeColors& c = Colors();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double tip = TipHeight();
    const QRectF body = QRectF(rect()).adjusted(0.5, m_below ? tip : 0.5, -0.5, m_below ? -0.5 : -tip);
    QPainterPath box;
    box.addRoundedRect(body, CornerRadius(), CornerRadius());
    QPainterPath pointer;
    const double edge = m_below ? body.top() : body.bottom();
    const double end = m_below ? 0.5 : height() - 0.5;
    pointer.addPolygon(QPolygonF({{m_tip - tip, edge}, {static_cast<double>(m_tip), end}, {m_tip + tip, edge}}));
    pointer.closeSubpath();
    painter.setPen(c.danger);
    painter.setBrush(c.dangerSoft);
    painter.drawPath(box.united(pointer));
    painter.setPen(c.text);
    painter.drawText(body.adjusted(Spacing(), 0.0, -Spacing(), 0.0), kWrap, m_text);
}

} // namespace desktop
