// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Tell.h"

#include <QApplication>
#include <QMainWindow>
#include <QStatusTipEvent>

namespace desktop
{

namespace
{

void SendToMainWindow(QWidget& from, QEvent& event)
{
    QWidget* window = from.window(); // a panel may be a window of its own
    while (qobject_cast<QMainWindow*>(window) == nullptr && window->parentWidget() != nullptr)
        window = window->parentWidget()->window();
    QApplication::sendEvent(window, &event);
}

} // namespace

void Tell(QWidget& from, const QString& what)
{
    QStatusTipEvent tip(what);
    SendToMainWindow(from, tip);
}

QEvent::Type BusyEvent::OfBusy()
{
    static const int type = QEvent::registerEventType();
    return static_cast<Type>(type);
}

void TellBusy(QWidget& from, const QString& what, double done)
{
    BusyEvent event(what, done);
    SendToMainWindow(from, event);
}

void TellIdle(QWidget& from)
{
    BusyEvent event({}, 1.0);
    SendToMainWindow(from, event);
}

} // namespace desktop
