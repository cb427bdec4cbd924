// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/RefusalBubble.h"
#include "desktop/look/TextField.h"
#include "krn/NumberEntry.h"

#include <QPointer>

namespace desktop
{

/// A number outside of masks that behaves like one in a mask: shown rounded in the user's unit; Enter, Tab and leaving
/// finish the entry, Esc gives it up; a refused one is taken back, and the reason shown at the field as long as it
/// keeps the focus. Leaving with a refused entry brings the focus back, unless it went to another panel.
class NumberField : public TextField
{
    Q_OBJECT

  public:
    explicit NumberField(krn::NumberFormat format, QWidget* parent = nullptr);

    const krn::NumberFormat& Format() const { return m_format; }
    void SetValue(double value);
    const RefusalBubble* Refusal() const { return m_bubble; }
    /// The field shows something else from now on: another vehicle, another case.
    void DropRefusal();

  signals:
    /// A number of the field's unit within its range, other than the one shown.
    void entered(double value);
    void focused();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    void Finish();
    void Refuse(const QString& why);
    void ComeBack();

    krn::NumberFormat m_format;
    double m_value = 0.0;
    QPointer<RefusalBubble> m_bubble;
    QString m_leftWith; ///< why the entry was refused with which the focus went
};

} // namespace desktop
