// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/MaskFrame.h"

#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/TornOffMask.h"
#include "framework/UserInput.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStyle>

#include <algorithm>

namespace desktop
{

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
    connect(&mask, &MaskWindow::clicked, this, [this] {
        if (mdiArea() != nullptr)
            mdiArea()->setActiveSubWindow(this);
    });
    connect(&mask, &MaskWindow::dialogChanged, this, &MaskFrame::Follow);
}

void MaskFrame::ShowTitle()
{
    setWindowTitle(QStringLiteral("%1  %2").arg(m_mask->Number()).arg(m_mask->windowTitle()));
    if (m_own)
        m_own->setWindowTitle(windowTitle());
}

void MaskFrame::Follow()
{
    const framework::Window* dialog = m_mask->Dialog();
    if (dialog == nullptr)
        return;
    ShowTitle();
    const QScopedValueRollback following(m_following, true);
    QWidget* shell = m_own == nullptr ? this : static_cast<QWidget*>(m_own);
    if (!dialog->visible) {
        shell->hide();
        return;
    }
    if (dialog->iconic != IsMinimised())
        if (dialog->iconic)
            Minimise();
        else
            Restore();
    else if (shell->isHidden())
        shell->show();
    if (!m_own && !isMinimized() && !m_mask->IsDrawing() && FullSize() != m_full && mdiArea() != nullptr)
        FitInto(mdiArea()->viewport()->size());
}

bool MaskFrame::IsMinimised() const
{
    return m_own ? m_own->isMinimized() : isMinimized();
}

void MaskFrame::Minimise()
{
    if (m_own)
        m_own->showMinimized();
    else
        showMinimized();
}

void MaskFrame::Restore()
{
    if (m_own)
        m_own->showNormal();
    else if (mdiArea() != nullptr && mdiArea()->viewMode() == QMdiArea::TabbedView)
        showMaximized();
    else
        showNormal();
}

TornOffMask& MaskFrame::TearOff(QWidget* mainWindow)
{
    const QSize size = m_mask->IsDrawing() ? m_scroll->size() : m_mask->size();
    setWidget(nullptr);
    m_own = new TornOffMask(*this, *m_scroll, mainWindow);
    m_own->setWindowTitle(windowTitle());
    m_own->setWindowIcon(mainWindow->windowIcon());
    m_own->resize(size + QSize(0, m_own->sizeHint().height() - m_scroll->sizeHint().height()));
    return *m_own;
}

void MaskFrame::TakeBack()
{
    setWidget(m_scroll);
    m_scroll->show();
    m_own->hide();
    m_own->deleteLater(); // its button may have been pressed
    m_own = nullptr;
    m_full = {};
}

void MaskFrame::TellState()
{
    const framework::Window* dialog = m_mask->Dialog();
    if (m_following || dialog == nullptr || dialog->iconic == IsMinimised())
        return;
    m_mask->Act([this, dialog] { dialog->object->ShowWindow(IsMinimised() ? SW_MINIMIZE : SW_RESTORE); });
}

QSize MaskFrame::FullSize() const
{
    return (m_mask->IsDrawing() ? m_mask->sizeHint() : m_mask->size()).grownBy(contentsMargins());
}

void MaskFrame::FitInto(const QSize& room)
{
    if (m_own || isMinimized())
        return;
    if (mdiArea() != nullptr && mdiArea()->viewMode() == QMdiArea::TabbedView) {
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        return;
    }
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
    if (event->type() == QEvent::WindowStateChange && !m_own)
        TellState();
}

void MaskFrame::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the mask decides
    m_mask->Act([this] { framework::CloseDialog(*m_mask->Dialog()); });
}

} // namespace desktop
