// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QWidget>

namespace desktop
{

/// Says beside a field why its entry was refused. Lies over the field's window, where it hides the least that can be
/// used, and follows the field when it moves. Goes when the focus goes elsewhere.
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
    void GoWithFocus();
    /// How much of what can be used it would hide at a place.
    double Hidden(const QRect& place) const;

    QPointer<QWidget> m_field;
    QString m_text;
    Qt::Edge m_tipEdge = Qt::TopEdge; // of the box, where the point that shows to the field is
    int m_tip = 0;                    // how far along that edge
};

} // namespace desktop
