// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/MaskArea.h"

#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UserInput.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStyle>

#include <algorithm>
#include <limits>

namespace desktop
{
namespace
{

struct Hint {
    const char* keys;
    const char* what;
};

constexpr Hint kHints[] = {
    {"Strg+K", "Maske öffnen"},
    {"Strg+O", "Fall öffnen"},
    {"F1", "Hilfe"},
};

} // namespace

MaskFrame::MaskFrame(MaskWindow& mask) : m_mask(&mask), m_scroll(new QScrollArea)
{
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(mask.IsDrawing());
    m_scroll->setWidget(&mask);
    setWidget(m_scroll);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && m_mask->isAncestorOf(now))
            m_scroll->ensureWidgetVisible(now, Spacing(), Spacing());
    });
    ShowTitle();
    setSystemMenu(nullptr); // title bar and keys do all it offers
    // A click beside the controls, or on a button, leaves the focus where it is: the framework moves it.
    setFocusPolicy(Qt::NoFocus);
    connect(&mask, &MaskWindow::clicked, this, [this] { mdiArea()->setActiveSubWindow(this); });
    connect(&mask, &MaskWindow::dialogChanged, this, &MaskFrame::Follow);
}

void MaskFrame::ShowTitle()
{
    setWindowTitle(QStringLiteral("%1  %2").arg(m_mask->Number()).arg(m_mask->windowTitle()));
}

void MaskFrame::Follow()
{
    const framework::Window* dialog = m_mask->Dialog();
    if (dialog == nullptr)
        return;
    ShowTitle();
    const QScopedValueRollback following(m_following, true);
    if (!dialog->visible) {
        hide();
        return;
    }
    if (dialog->iconic != isMinimized())
        if (dialog->iconic)
            showMinimized();
        else
            showNormal();
    else if (isHidden())
        show();
    if (!isMinimized() && !m_mask->IsDrawing() && FullSize() != m_full && mdiArea() != nullptr)
        FitInto(mdiArea()->viewport()->size());
}

QSize MaskFrame::FullSize() const
{
    return (m_mask->IsDrawing() ? m_mask->sizeHint() : m_mask->size()).grownBy(contentsMargins());
}

void MaskFrame::FitInto(const QSize& room)
{
    if (isMinimized() || isMaximized())
        return;
    QSize size = m_mask->IsDrawing() && !m_full.isEmpty() ? this->size() : FullSize();
    m_full = FullSize();
    if (!m_mask->IsDrawing()) {
        // A scroll bar takes room on the other side.
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const QSize lacks = size - room;
        setMaximumSize(m_full + QSize(lacks.height() > 0 ? bar : 0, lacks.width() > 0 ? bar : 0));
        size = maximumSize();
    }
    resize(size.boundedTo(room));
    move(std::clamp(x(), 0, std::max(0, room.width() - width())),
         std::clamp(y(), 0, std::max(0, room.height() - height())));
}

void MaskFrame::changeEvent(QEvent* event)
{
    QMdiSubWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || m_following)
        return;
    const framework::Window* dialog = m_mask->Dialog();
    if (dialog == nullptr || dialog->iconic == isMinimized())
        return;
    m_mask->Act([this, dialog] { dialog->object->ShowWindow(isMinimized() ? SW_MINIMIZE : SW_RESTORE); });
}

void MaskFrame::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the mask decides
    m_mask->Act([this] { framework::CloseDialog(*m_mask->Dialog()); });
}

MaskArea::MaskArea(QWidget* parent) : QMdiArea(parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setActivationOrder(QMdiArea::ActivationHistoryOrder);
    setBackground(Colors().desk);
}

void MaskArea::changeEvent(QEvent* event)
{
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::StyleChange)
        setBackground(Colors().desk);
}

std::vector<MaskFrame*> MaskArea::Frames() const
{
    std::vector<MaskFrame*> frames;
    for (QMdiSubWindow* window : subWindowList(QMdiArea::CreationOrder))
        if (auto* frame = qobject_cast<MaskFrame*>(window); frame != nullptr && frame->Mask()->Dialog() != nullptr)
            frames.push_back(frame);
    return frames;
}

MaskFrame* MaskArea::FrameOf(const MaskWindow& mask) const
{
    for (QMdiSubWindow* window : subWindowList())
        if (auto* frame = qobject_cast<MaskFrame*>(window); frame != nullptr && frame->Mask() == &mask)
            return frame;
    return nullptr;
}

void MaskArea::resizeEvent(QResizeEvent* event)
{
    QMdiArea::resizeEvent(event);
    for (MaskFrame* frame : Frames())
        frame->FitInto(viewport()->size());
}

/// The first place at which a frame of this size covers no other, row by row; otherwise the one where it covers the
/// least, and of the buttons of others least of all.
QPoint MaskArea::FreePlace(const QSize& size) const
{
    const int gap = Spacing();
    std::vector<QRect> taken;
    for (const MaskFrame* frame : Frames())
        if (!frame->isMinimized() && frame->isVisible())
            taken.push_back(frame->geometry().adjusted(-gap, -gap, gap, gap));
    const QSize room = viewport()->size();
    std::vector<int> xs{gap};
    std::vector<int> ys{gap};
    for (const QRect& rect : taken) {
        xs.push_back(rect.right() + 1);
        ys.push_back(rect.bottom() + 1);
    }
    std::sort(xs.begin(), xs.end());
    std::sort(ys.begin(), ys.end());
    for (const int y : ys)
        for (const int x : xs) {
            const QRect place(QPoint(x, y), size);
            if (place.right() <= room.width() && place.bottom() <= room.height() &&
                std::none_of(taken.begin(), taken.end(), [&](const QRect& rect) { return rect.intersects(place); }))
                return place.topLeft();
        }
    std::vector<QRect> buttons;
    for (const MaskFrame* frame : Frames())
        if (!frame->isMinimized() && frame->isVisible())
            for (ControlView* view : frame->Mask()->Views())
                if (view->Control()->kind == framework::Kind::button && !view->Widget()->isHidden())
                    buttons.emplace_back(view->Widget()->mapTo(viewport(), QPoint(0, 0)), view->Widget()->size());
    const auto covered = [](const std::vector<QRect>& rects, const QRect& place) {
        double area = 0.0;
        for (const QRect& rect : rects) {
            const QRect part = rect & place;
            area += static_cast<double>(part.width()) * part.height();
        }
        return area;
    };
    constexpr double kButtonsCount = 1000.0; // as much as so much of the rest
    const int step = 4 * gap;
    QPoint best(gap, gap);
    double least = std::numeric_limits<double>::max();
    for (int y = gap; y <= std::max(gap, room.height() - size.height()); y += step)
        for (int x = gap; x <= std::max(gap, room.width() - size.width()); x += step) {
            const QRect place(QPoint(x, y), size);
            const double cost = kButtonsCount * covered(buttons, place) + covered(taken, place);
            if (cost < least) {
                least = cost;
                best = {x, y};
            }
        }
    return best;
}

void MaskArea::Add(MaskWindow& mask)
{
    auto* frame = new MaskFrame(mask);
    addSubWindow(frame);
    const int gap = Spacing();
    emit roomWanted(frame->FullSize() + QSize(2 * gap, 2 * gap));
    const QSize room = viewport()->size() - QSize(2 * gap, 2 * gap);
    const QPoint place = FreePlace(frame->FullSize().boundedTo(room));
    frame->move(place);
    frame->FitInto(viewport()->size());
    if (mask.IsDrawing()) { // as large as there is room
        frame->resize(frame->FullSize().boundedTo(room));
        frame->move(std::min(place.x(), viewport()->width() - gap - frame->width()),
                    std::min(place.y(), viewport()->height() - gap - frame->height()));
    }
    frame->Follow();
    if (mask.Dialog()->visible && !mask.Dialog()->iconic) {
        frame->show();
        setActiveSubWindow(frame);
        mask.GoToFirstControl();
    }
    viewport()->update();
    emit masksChanged();
}

bool MaskArea::Remove(MaskWindow& mask)
{
    MaskFrame* frame = FrameOf(mask);
    if (frame == nullptr)
        return false;
    frame->hide();
    removeSubWindow(frame);
    frame->deleteLater(); // with the mask
    viewport()->update();
    emit masksChanged();
    return true;
}

MaskWindow* MaskArea::Active() const
{
    auto* frame = qobject_cast<MaskFrame*>(currentSubWindow());
    return frame == nullptr || frame->Mask()->Dialog() == nullptr ? nullptr : frame->Mask();
}

void MaskArea::Tile()
{
    const int gap = Spacing();
    QPoint at(gap, gap);
    int rowHeight = 0;
    for (MaskFrame* frame : Frames()) {
        if (frame->isMinimized() || !frame->isVisible())
            continue;
        frame->FitInto(viewport()->size());
        if (at.x() > gap && at.x() + frame->width() + gap > viewport()->width()) {
            at = QPoint(gap, at.y() + rowHeight + gap);
            rowHeight = 0;
        }
        // Below the last row a frame would lie outside.
        frame->move(at.x(), std::clamp(at.y(), 0, std::max(0, viewport()->height() - frame->height())));
        at.rx() += frame->width() + gap;
        rowHeight = std::max(rowHeight, frame->height());
    }
}

void MaskArea::Cascade()
{
    const int gap = Spacing();
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight) + gap / 2;
    QPoint at(gap, gap);
    for (MaskFrame* frame : Frames()) {
        if (frame->isMinimized() || !frame->isVisible())
            continue;
        frame->move(at);
        frame->raise();
        at += QPoint(step, step);
        if (at.y() + step > viewport()->height())
            at = QPoint(at.x(), gap);
    }
}

void MaskArea::MinimiseAll()
{
    for (MaskFrame* frame : Frames())
        if (frame->isVisible() && !frame->isMinimized())
            frame->showMinimized();
}

void MaskArea::RestoreAll()
{
    for (MaskFrame* frame : Frames())
        if (frame->isMinimized())
            frame->showNormal();
}

void MaskArea::GoToNext()
{
    activateNextSubWindow();
}

void MaskArea::GoToPrevious()
{
    activatePreviousSubWindow();
}

void MaskArea::MinimiseActive()
{
    if (QMdiSubWindow* frame = activeSubWindow())
        frame->showMinimized();
}

void MaskArea::CloseActive()
{
    if (QMdiSubWindow* frame = activeSubWindow())
        frame->close();
}

void MaskArea::GoTo(MaskFrame& frame)
{
    if (frame.isMinimized())
        frame.showNormal();
    setActiveSubWindow(&frame);
}

void MaskArea::paintEvent(QPaintEvent* event)
{
    QMdiArea::paintEvent(event);
    if (!Frames().empty())
        return;
    QPainter painter(viewport());
    const QFont font = TextFont(1.15);
    const QFontMetrics metrics(font);
    const int line = qRound(metrics.height() * 1.7);
    const int middle = viewport()->width() / 2;
    const int gap = 2 * Spacing();
    int y = viewport()->height() / 2 - line * static_cast<int>(std::size(kHints)) / 2;
    painter.setPen(Colors().muted);
    for (const Hint& hint : kHints) {
        painter.setFont(TextFont(1.15, true));
        painter.drawText(QRect(0, y, middle - gap, line), Qt::AlignRight | Qt::AlignVCenter,
                         QString::fromUtf8(hint.keys));
        painter.setFont(font);
        painter.drawText(QRect(middle + gap, y, middle, line), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::fromUtf8(hint.what));
        y += line;
    }
}

} // namespace desktop
