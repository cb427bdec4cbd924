// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QEvent>
#include <QString>

class QWidget;

namespace desktop
{

/// Says for a moment at the foot of the main window that something was done, what and where.
void Tell(QWidget& from, const QString& what);

/// What the main window gets of TellBusy and TellIdle.
class BusyEvent : public QEvent
{
  public:
    BusyEvent(QString text, double part) : QEvent(OfBusy()), what(std::move(text)), done(part) {}
    static Type OfBusy();

    QString what; ///< empty: nothing is going on any more
    double done;  ///< 0 to 1
};

/// Says at the foot of the main window what is going on, and how much of it is done (0 to 1), until TellIdle.
void TellBusy(QWidget& from, const QString& what, double done);
void TellIdle(QWidget& from);

} // namespace desktop
