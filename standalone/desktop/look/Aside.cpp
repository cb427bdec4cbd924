// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Aside.h"

#include "desktop/look/Progress.h"
#include "desktop/look/Tell.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <memory>
#include <thread>
#include <utility>

namespace desktop
{
namespace
{

constexpr int kLook = 10; // ms between two looks at the work

struct Shared {
    AsideWork work;
    std::function<void(AsideWork&)> run;
    std::atomic<bool> ended = false;
};

void Start(const std::shared_ptr<Shared>& shared, AtEnd atEnd)
{
    auto run = [shared] {
        shared->run(shared->work);
        shared->ended = true;
    };
    if (atEnd == AtEnd::leaves)
        std::thread(run).detach();
    else // the application object waits for the pool, and text needs threads of Qt
        QThreadPool::globalInstance()->start(run);
}

} // namespace

bool DoAside(QWidget* parent, const QString& what, std::function<void(AsideWork&)> work, AtEnd atEnd)
{
    const auto shared = std::make_shared<Shared>();
    shared->run = std::move(work);
    QElapsedTimer clock;
    clock.start();
    const QPointer<QWidget> teller(parent);
    Start(shared, atEnd);
    QTimer look;
    look.start(kLook);
    QPointer<QProgressDialog> dialog;
    bool told = false;
    bool cancelled = false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    while (!shared->ended && !cancelled) {
        // Before the dialog is there, what the user does would reach the window that waits.
        QApplication::processEvents(QEventLoop::WaitForMoreEvents |
                                    (dialog ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents));
        if (clock.elapsed() >= kBusyAfter && teller) {
            TellBusy(*teller, what, shared->work.Done());
            told = true;
        }
        if (!dialog && clock.elapsed() >= kDialogAfter) {
            QApplication::restoreOverrideCursor(); // the button is to be clicked
            dialog = MakeProgressDialog(what, teller);
            QObject::connect(dialog, &QProgressDialog::canceled, dialog,
                             [shared, &cancelled] { cancelled = shared->work.Cancel(); });
            dialog->show();
        }
        if (dialog)
            ShowProgress(*dialog, shared->work.Done());
    }
    if (dialog)
        delete dialog;
    else
        QApplication::restoreOverrideCursor();
    if (told && teller)
        TellIdle(*teller);
    return !cancelled;
}

} // namespace desktop
