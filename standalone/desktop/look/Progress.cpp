// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Progress.h"

#include <QApplication>

#include <utility>

namespace desktop
{
namespace
{

constexpr qint64 kEventsEvery = 40; // ms between two looks at the event queue
constexpr int kSteps = 1000;

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
        m_dialog = MakeProgressDialog(what, m_parent);
        QObject::connect(m_dialog, &QProgressDialog::canceled, m_dialog, [this] { m_cancelled = true; });
        EndWaitCursor(); // the button is to be clicked
        m_dialog->show();
    }
    if (m_dialog) {
        m_dialog->setLabelText(what);
        ShowProgress(*m_dialog, done);
        QApplication::processEvents();
    } else {
        // Paint the busy mark; what the user does meanwhile has to wait.
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    m_reporting = false;
    return !m_cancelled;
}

} // namespace desktop
