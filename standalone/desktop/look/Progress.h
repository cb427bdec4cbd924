// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>

class QString;
class QWidget;

namespace desktop
{

constexpr qint64 kBusyAfter = 200;    ///< ms until the foot of the main window says that work is going on
constexpr qint64 kDialogAfter = 1000; ///< ms until a dialog with "Abbrechen" does

/// The dialog, not shown yet; stays until it is deleted.
QProgressDialog* MakeProgressDialog(const QString& what, QWidget* parent);
/// `done` is 0 to 1.
void ShowProgress(QProgressDialog& dialog, double done);

/// Shows how far long work on the user-interface thread has come: the wait cursor, after 0.2 s a busy mark, after 1 s a
/// dialog with "Abbrechen" in place of the cursor.
class ProgressView
{
  public:
    explicit ProgressView(QWidget* parent);
    ~ProgressView();

    /// `done` is 0 to 1. False when the user wants the work to stop.
    bool Report(const QString& what, double done);
    bool IsBusyShown() const;
    /// True while Report lets the event loop run.
    bool IsReporting() const { return m_reporting; }

  private:
    void EndWaitCursor();

    QWidget* m_parent;
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceEvents;
    QPointer<QProgressDialog> m_dialog; // may go with its parent
    bool m_waitCursor = true;
    bool m_reporting = false;
    bool m_cancelled = false;
};

} // namespace desktop
