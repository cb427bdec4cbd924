// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/MessageBox.h"

#include "host/FehlerMeldung.h"

#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

namespace desktop
{

using framework::MessageKind;

namespace
{

QMessageBox::Icon IconOf(MessageKind kind)
{
    switch (kind) {
    case MessageKind::warning:
        return QMessageBox::Warning;
    case MessageKind::question:
    case MessageKind::confirmation:
        return QMessageBox::Question;
    default:
        return QMessageBox::Information;
    }
}

/// A box whose buttons also listen to their letter alone.
class LetterBox : public QMessageBox
{
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        const QString letter = event->text().toLower();
        for (QAbstractButton* button : buttons()) {
            const QString text = button->text();
            const qsizetype mark = text.indexOf(QLatin1Char('&'));
            if (!letter.isEmpty() && mark >= 0 && text.mid(mark + 1, 1).toLower() == letter) {
                button->click();
                return;
            }
        }
        QMessageBox::keyPressEvent(event);
    }
};

} // namespace

int ShowMessageBox(QWidget* parent, const QString& title, const framework::ShownMessage& message)
{
    LetterBox box(IconOf(message.kind), title, QString::fromStdString(message.text), QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    if (!framework::AsksSomething(message.kind)) {
        box.addButton(QStringLiteral("&OK"), QMessageBox::AcceptRole);
        box.exec();
        return fehlerOk;
    }
    const bool confirms = message.kind == MessageKind::confirmation;
    QPushButton* yes = confirms ? box.addButton(QStringLiteral("&OK"), QMessageBox::AcceptRole)
                                : box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
    QPushButton* no = confirms ? box.addButton(QStringLiteral("&Abbrechen"), QMessageBox::RejectRole)
                               : box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    if (box.clickedButton() == yes)
        return confirms ? fehlerOk : fehlerJa;
    return confirms ? fehlerAbbrechen : fehlerNein;
}

void Warn(QWidget* parent, const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace desktop
