// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/RefusalBubble.h"

#include "desktop/look/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

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
    // The focus may be on its way: a field with a refused entry gets it back.
    constexpr int kSettled = 50; // ms
    QTimer::singleShot(kSettled, this, &RefusalBubble::GoWithFocus);
}

RefusalBubble::~RefusalBubble() = default;

void RefusalBubble::GoWithFocus()
{
    const auto follow = [this](const QWidget* now) {
        if (now != nullptr && m_field != nullptr && now != m_field && !m_field->isAncestorOf(now) &&
            !now->isAncestorOf(m_field) && now->window() == window())
            deleteLater();
    };
    connect(qApp, &QApplication::focusChanged, this, [follow](QWidget*, QWidget* now) { follow(now); });
    follow(QApplication::focusWidget());
}

double RefusalBubble::Hidden(const QRect& place) const
{
    double hidden = 0.0;
    for (const QWidget* other : parentWidget()->findChildren<QWidget*>()) {
        const bool used = other->focusPolicy() != Qt::NoFocus && other->isVisible() && other->isEnabled();
        if (!used || other == m_field || other->isAncestorOf(m_field) || !other->findChildren<QWidget*>().isEmpty())
            continue;
        const QRect covered = place & QRect(other->mapTo(parentWidget(), QPoint(0, 0)), other->size());
        hidden += static_cast<double>(covered.width()) * covered.height();
    }
    return hidden;
}

void RefusalBubble::Place()
{
    if (m_field == nullptr || parentWidget() == nullptr || !parentWidget()->isAncestorOf(m_field))
        return;
    const int pad = Spacing();
    const int tip = TipHeight();
    const QRect text = QFontMetrics(TextFont()).boundingRect(QRect(0, 0, LargestWidth(), 1000), kWrap, m_text);
    const QSize box(text.width() + 2 * pad + 2, text.height() + pad);
    const QRect field(m_field->mapTo(parentWidget(), QPoint(0, 0)), m_field->size());
    const QRect room = parentWidget()->rect();
    const auto within = [](int value, int low, int high) { return std::clamp(value, low, std::max(low, high)); };
    const int x = within(field.left(), room.left(), room.right() - box.width());
    const int y = within(field.center().y() - box.height() / 2, room.top(), room.bottom() - box.height());
    const struct {
        QRect place;
        Qt::Edge tipEdge;
    } places[] = {
        {{x, field.bottom() + 1, box.width(), box.height() + tip}, Qt::TopEdge},
        {{x, field.top() - box.height() - tip, box.width(), box.height() + tip}, Qt::BottomEdge},
        {{field.right() + 1, y, box.width() + tip, box.height()}, Qt::LeftEdge},
        {{field.left() - box.width() - tip, y, box.width() + tip, box.height()}, Qt::RightEdge},
    };
    const auto* best = &places[0];
    double least = -1.0;
    for (const auto& candidate : places) {
        if (!room.contains(candidate.place))
            continue;
        const double hidden = Hidden(candidate.place);
        if (least < 0.0 || hidden < least) {
            best = &candidate;
            least = hidden;
        }
    }
    m_tipEdge = best->tipEdge;
    setGeometry(best->place);
    const bool across = m_tipEdge == Qt::TopEdge || m_tipEdge == Qt::BottomEdge;
    m_tip = across ? within(field.left() + 2 * pad - x, 2 * pad, box.width() - 2 * pad)
                   : within(field.center().y() - y, tip + 1, box.height() - tip - 1);
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
    const auto inset = [&](Qt::Edge edge) { return m_tipEdge == edge ? tip : 0.5; };
    const QRectF body =
        QRectF(rect()).adjusted(inset(Qt::LeftEdge), inset(Qt::TopEdge), -inset(Qt::RightEdge), -inset(Qt::BottomEdge));
    QPainterPath box;
    box.addRoundedRect(body, CornerRadius(), CornerRadius());
    // The point is drawn at the upper edge and turned to its own.
    const bool across = m_tipEdge == Qt::TopEdge || m_tipEdge == Qt::BottomEdge;
    const double edge = m_tipEdge == Qt::TopEdge      ? body.top()
                        : m_tipEdge == Qt::BottomEdge ? body.bottom()
                        : m_tipEdge == Qt::LeftEdge   ? body.left()
                                                      : body.right();
    const double end = edge + (m_tipEdge == Qt::TopEdge || m_tipEdge == Qt::LeftEdge ? 0.5 - tip : tip - 0.5);
    const auto at = [across](double along, double away) {
        return across ? QPointF(along, away) : QPointF(away, along);
    };
    QPainterPath pointer;
    pointer.addPolygon(QPolygonF({at(m_tip - tip, edge), at(m_tip, end), at(m_tip + tip, edge)}));
    pointer.closeSubpath();
    painter.setPen(c.danger);
    painter.setBrush(c.dangerSoft);
    painter.drawPath(box.united(pointer));
    painter.setPen(c.text);
    painter.drawText(body.adjusted(Spacing(), 0.0, -Spacing(), 0.0), kWrap, m_text);
}

} // namespace desktop
