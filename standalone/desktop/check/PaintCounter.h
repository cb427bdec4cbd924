// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace desktop
{

/// Counts how often a widget or something in it is painted.
class PaintCounter : public QObject
{
  public:
    explicit PaintCounter(const QWidget& of) : m_of(of) { QApplication::instance()->installEventFilter(this); }
    int Count() const { return m_count; }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && object->isWidgetType() &&
            (object == &m_of || m_of.isAncestorOf(static_cast<QWidget*>(object))))
            ++m_count;
        return false;
    }

  private:
    const QWidget& m_of;
    int m_count = 0;
};

} // namespace desktop
