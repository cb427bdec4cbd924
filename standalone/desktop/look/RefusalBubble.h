// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QWidget>

namespace desktop
{

/// Says beside a field why its entry was refused. Lies over the field's window and follows the field when it moves.
class RefusalBubble : public QWidget
{
  public:
    RefusalBubble(QWidget& field, const QString& text);
    ~RefusalBubble() override;

    const QString& Text() const { return m_text; }
    QWidget* Field() const { return m_field; }

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void Place();

    QPointer<QWidget> m_field;
    QString m_text;
    bool m_below = true;
    int m_tip = 0; // x of the point that shows to the field
};

} // namespace desktop
