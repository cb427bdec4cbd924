// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/TextField.h"

#include <QKeyEvent>

namespace desktop
{

bool TextField::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if ((key.matches(QKeySequence::Undo) && !isModified()) ||
            (key.matches(QKeySequence::Redo) && !isRedoAvailable())) {
            event->ignore();
            return false;
        }
    }
    return QLineEdit::event(event);
}

void TextField::keyPressEvent(QKeyEvent* event)
{
    const bool typed = !event->text().isEmpty() && event->text().front().isPrint();
    if (typed && (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::AltModifier)
        event->ignore();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace desktop
