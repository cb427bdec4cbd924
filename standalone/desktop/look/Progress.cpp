// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Progress.h"

#include <QApplication>

#include <utility>

namespace desktop
{
namespace
{

constexpr qint64 kBusyAfter = 200;    // ms
constexpr qint64 kDialogAfter = 1000; // ms
constexpr qint64 kEventsEvery = 40;   // ms between two looks at the event queue
constexpr int kSteps = 1000;

} // namespace

ProgressView::ProgressView(QWidget* parent) : m_parent(parent)
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

bool ProgressView::Report(const QString& what, double done)
{
    if (m_reporting || m_cancelled || m_clock.elapsed() < kBusyAfter || m_sinceEvents.elapsed() < kEventsEvery)
        return !m_cancelled;
    m_sinceEvents.restart();
    m_reporting = true;
    if (!m_dialog && m_clock.elapsed() >= kDialogAfter) {
        m_dialog = new QProgressDialog(what, QObject::tr("Abbrechen"), 0, kSteps, m_parent);
        m_dialog->setWindowTitle(QObject::tr("Bitte warten"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setMinimumDuration(0);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        QObject::connect(m_dialog, &QProgressDialog::canceled, m_dialog, [this] { m_cancelled = true; });
        EndWaitCursor(); // the button is to be clicked
        m_dialog->show();
    }
    if (m_dialog) {
        m_dialog->setLabelText(what);
        m_dialog->setValue(qBound(0, qRound(done * kSteps), kSteps));
        QApplication::processEvents();
    } else {
        // Paint the busy mark; what the user does meanwhile has to wait.
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    m_reporting = false;
    return !m_cancelled;
}

} // namespace desktop
