// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/MaskArea.h"

#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UserInput.h"

#include <QCloseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyle>

#include <algorithm>

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

MaskFrame::MaskFrame(MaskWindow& mask) : m_mask(&mask)
{
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setWidget(&mask);
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
    if (!isMinimized() && !m_mask->IsDrawing())
        adjustSize();
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

/// The first place at which a frame of this size covers no other, row by row; otherwise a little below the last one.
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
    const int step = 4 * gap;
    const int count = static_cast<int>(taken.size()) % 8;
    return {gap + count * step, gap + count * step};
}

void MaskArea::Add(MaskWindow& mask)
{
    auto* frame = new MaskFrame(mask);
    frame->resize(frame->sizeHint());
    const QPoint place = FreePlace(frame->size());
    addSubWindow(frame);
    frame->adjustSize();
    frame->move(place);
    if (mask.IsDrawing()) { // as large as there is room
        const int gap = Spacing();
        frame->resize(frame->size().boundedTo(viewport()->size() - QSize(2 * gap, 2 * gap)));
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
        if (at.x() > gap && at.x() + frame->width() + gap > viewport()->width()) {
            at = QPoint(gap, at.y() + rowHeight + gap);
            rowHeight = 0;
        }
        frame->move(at);
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
