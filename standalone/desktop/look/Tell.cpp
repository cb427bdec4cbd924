// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Tell.h"

#include <QApplication>
#include <QMainWindow>
#include <QStatusTipEvent>

namespace desktop
{

void Tell(QWidget& from, const QString& what)
{
    QWidget* window = from.window(); // a panel may be a window of its own
    while (qobject_cast<QMainWindow*>(window) == nullptr && window->parentWidget() != nullptr)
        window = window->parentWidget()->window();
    QStatusTipEvent tip(what);
    QApplication::sendEvent(window, &tip);
}

} // namespace desktop
