// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/NumberField.h"

#include "desktop/look/Style.h"
#include "desktop/look/Tell.h"

#include <QApplication>
#include <QDockWidget>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>

#include <utility>

namespace desktop
{

NumberField::NumberField(krn::NumberFormat format, QWidget* parent) : TextField(parent), m_format(std::move(format))
{
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setAccessibleName(QString::fromStdString(m_format.label + " " + krn::UnitOf(m_format)));
    setProperty(kLookProperty, static_cast<int>(FieldLook::input));
    connect(this, &QLineEdit::editingFinished, this, &NumberField::Finish);
    connect(this, &QLineEdit::textEdited, this, &NumberField::DropRefusal);
    SetValue(0.0);
}

void NumberField::SetValue(double value)
{
    if (value != m_value)
        delete m_bubble; // it spoke of another number
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
            Refuse(QString::fromStdString(entry.refusal));
        return;
    }
    SetValue(*entry.value);
    if (krn::ShowNumber(*entry.value, m_format) != before)
        emit entered(*entry.value);
}

void NumberField::Refuse(const QString& why)
{
    DropRefusal();
    if (hasFocus()) {
        m_bubble = new RefusalBubble(*this, why);
        return;
    }
    m_leftWith = why;
    QTimer::singleShot(0, this, &NumberField::ComeBack);
}

void NumberField::ComeBack()
{
    const QWidget* panel = this;
    while (panel->parentWidget() != nullptr && qobject_cast<const QDockWidget*>(panel) == nullptr)
        panel = panel->parentWidget();
    const QWidget* now = QApplication::focusWidget();
    if (m_leftWith.isEmpty() || !isVisible() || (now != nullptr && !panel->isAncestorOf(now))) {
        DropRefusal(); // the user went elsewhere
        return;
    }
    setFocus(Qt::OtherFocusReason);
    selectAll();
    m_bubble = new RefusalBubble(*this, std::exchange(m_leftWith, {}));
}

void NumberField::DropRefusal()
{
    delete m_bubble;
    if (const QString why = std::exchange(m_leftWith, {}); !why.isEmpty())
        Tell(*this, QStringLiteral("Nicht übernommen: ") + why); // it has not been read yet
}

void NumberField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && (isModified() || m_bubble)) {
        SetValue(m_value);
        DropRefusal();
        selectAll();
        return;
    }
    TextField::keyPressEvent(event);
}

void NumberField::focusInEvent(QFocusEvent* event)
{
    TextField::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        selectAll();
    emit focused();
}

} // namespace desktop
