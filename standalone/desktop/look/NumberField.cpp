// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/NumberField.h"

#include "desktop/look/Style.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include <utility>

namespace desktop
{

NumberField::NumberField(krn::NumberFormat format, QWidget* parent) : QLineEdit(parent), m_format(std::move(format))
{
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setAccessibleName(QString::fromStdString(m_format.label + " " + krn::UnitOf(m_format)));
    setProperty(kLookProperty, static_cast<int>(FieldLook::input));
    connect(this, &QLineEdit::editingFinished, this, &NumberField::Finish);
    connect(this, &QLineEdit::textEdited, this, &NumberField::Accept);
    SetValue(0.0);
}

void NumberField::SetValue(double value)
{
    m_value = value;
    if (const QString shown = QString::fromStdString(krn::ShowNumber(value, m_format)); shown != text())
        setText(shown);
    setModified(false);
}

void NumberField::Finish()
{
    if (!isModified())
        return;
    const krn::NumberEntry entry = krn::ReadNumber(text().toStdString(), m_format);
    const std::string before = krn::ShowNumber(m_value, m_format);
    if (!entry.value) {
        SetValue(m_value);
        if (!entry.refusal.empty())
            Refuse(entry.refusal);
        return;
    }
    SetValue(*entry.value);
    if (krn::ShowNumber(*entry.value, m_format) != before)
        emit entered(*entry.value);
}

void NumberField::Refuse(const std::string& why)
{
    setProperty(kRefusedProperty, true);
    update();
    delete m_bubble;
    m_bubble = new RefusalBubble(*this, QString::fromStdString(why));
}

void NumberField::Accept()
{
    setProperty(kRefusedProperty, false);
    update();
    delete m_bubble;
}

void NumberField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && (isModified() || m_bubble)) {
        SetValue(m_value);
        Accept();
        selectAll();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        selectAll();
    emit focused();
}

} // namespace desktop
