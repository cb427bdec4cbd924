// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>
#include <QWidget>

namespace desktop
{

constexpr qint64 kBusyAfter = 200;    ///< ms until the foot of the main window says that work is going on
constexpr qint64 kDialogAfter = 1000; ///< ms until a dialog with "Abbrechen" does

/// The dialog, not shown yet; stays until it is deleted.
QProgressDialog* MakeProgressDialog(const QString& what, QWidget* parent);
/// `done` is 0 to 1.
void ShowProgress(QProgressDialog& dialog, double done);

/// Shows how far long work on the user-interface thread has come: the wait cursor, after 0.2 s a busy mark, after 1 s a
/// dialog with "Abbrechen" in place of the cursor. The button that began the work can be pressed then too, and nothing
/// else.
class ProgressView : public QObject
{
  public:
    /// `button` may be null: the dialog is a modal one then.
    ProgressView(QWidget* parent, QWidget* button);
    ~ProgressView() override;

    /// `done` is 0 to 1. False when the user wants the work to stop.
    bool Report(const QString& what, double done);
    bool IsBusyShown() const;
    /// True while Report lets the event loop run.
    bool IsReporting() const { return m_reporting; }

    /// While Report lets the event loop run with a button that can be pressed.
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void EndWaitCursor();
    void ShowDialog(const QString& what);
    void HandleEvents();

    QWidget* m_parent;
    QPointer<QWidget> m_button;
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceEvents;
    QPointer<QProgressDialog> m_dialog; // may go with its parent
    bool m_waitCursor = true;
    bool m_reporting = false;
    bool m_cancelled = false;
    bool m_takesInput = false; // what was done before the dialog was seen is not meant for it
};

} // namespace desktop
