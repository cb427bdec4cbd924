// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Progress.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>

#include <utility>

namespace desktop
{
namespace
{

constexpr qint64 kEventsEvery = 40; // ms between two looks at the event queue
constexpr int kSteps = 1000;
constexpr int kClear = 48; // px between the button and a dialog that would lie on it, for the frame too

bool IsInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

/// Of what a key does to a button, only pressing it.
bool PressesButton(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride: {
        const int key = static_cast<const QKeyEvent&>(event).key();
        return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return true;
    default:
        return false;
    }
}

bool IsOrLiesIn(const QObject* object, const QObject* whole)
{
    while (object != nullptr && object != whole)
        object = object->parent();
    return object != nullptr;
}

/// Where the dialog's place over its parent would cover the button, it comes below or above it.
void KeepClear(QProgressDialog& dialog, const QWidget& button)
{
    if (dialog.parentWidget() == nullptr)
        return;
    const QRect pressed(button.mapToGlobal(QPoint()), button.size());
    QRect place(QPoint(), dialog.sizeHint());
    place.moveCenter(dialog.parentWidget()->window()->frameGeometry().center());
    if (!place.adjusted(-kClear, -kClear, kClear, kClear).intersects(pressed))
        return;
    place.moveTop(pressed.bottom() + kClear);
    if (place.bottom() > button.screen()->availableGeometry().bottom())
        place.moveBottom(pressed.top() - kClear);
    dialog.move(place.topLeft());
}

} // namespace

QProgressDialog* MakeProgressDialog(const QString& what, QWidget* parent)
{
    auto* dialog = new QProgressDialog(what, QStringLiteral("Abbrechen"), 0, kSteps, parent);
    dialog->setWindowTitle(QStringLiteral("Bitte warten"));
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setMinimumDuration(0);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    return dialog;
}

void ShowProgress(QProgressDialog& dialog, double done)
{
    dialog.setValue(qBound(0, qRound(done * kSteps), kSteps));
}

ProgressView::ProgressView(QWidget* parent, QWidget* button) : m_parent(parent), m_button(button)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_clock.start();
    m_sinceEvents.start();
}

ProgressView::~ProgressView()
{
    EndWaitCursor();
    delete m_dialog;
}

void ProgressView::EndWaitCursor()
{
    if (std::exchange(m_waitCursor, false))
        QApplication::restoreOverrideCursor();
}

bool ProgressView::IsBusyShown() const
{
    return m_clock.elapsed() >= kBusyAfter;
}

void ProgressView::ShowDialog(const QString& what)
{
    m_dialog = MakeProgressDialog(what, m_parent);
    QObject::connect(m_dialog, &QProgressDialog::canceled, m_dialog, [this] { m_cancelled = true; });
    if (m_button) {
        m_dialog->setWindowModality(Qt::NonModal); // a modal one would keep the mouse from the button
        KeepClear(*m_dialog, *m_button);
    }
    EndWaitCursor(); // the button is to be clicked
    m_dialog->show();
}

void ProgressView::HandleEvents()
{
    if (m_dialog->isModal()) {
        QApplication::processEvents();
        return;
    }
    QApplication::instance()->installEventFilter(this);
    QApplication::processEvents();
    QApplication::instance()->removeEventFilter(this);
    m_takesInput = true;
}

bool ProgressView::eventFilter(QObject* object, QEvent* event)
{
    // A window hands its input on to the widgets in it.
    if (!IsInput(event->type()) || object->isWindowType())
        return false;
    if (m_takesInput && (IsOrLiesIn(object, m_dialog) || (m_button && object == m_button && PressesButton(*event))))
        return false;
    if (m_takesInput && event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        m_cancelled = true;
    event->ignore();
    return true;
}

bool ProgressView::Report(const QString& what, double done)
{
    if (m_reporting || m_cancelled || m_clock.elapsed() < kBusyAfter || m_sinceEvents.elapsed() < kEventsEvery)
        return !m_cancelled;
    m_sinceEvents.restart();
    m_reporting = true;
    if (!m_dialog && m_clock.elapsed() >= kDialogAfter)
        ShowDialog(what);
    if (m_dialog) {
        m_dialog->setLabelText(what);
        ShowProgress(*m_dialog, done);
        HandleEvents();
    } else {
        // Paint the busy mark; what the user does meanwhile has to wait.
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    m_reporting = false;
    return !m_cancelled;
}

} // namespace desktop
