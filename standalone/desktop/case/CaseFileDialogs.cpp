// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseFileDialogs.h"

#include "desktop/case/CaseDocument.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace desktop
{
namespace
{

const QString kFilter = QStringLiteral("Fälle (*.json);;Alle Dateien (*)");
const QString kExamples = QStringLiteral(":/examples");
const QString kEnding = QStringLiteral("json");

QString FolderOf(const CaseDocument& document)
{
    if (!document.Path().isEmpty())
        return QFileInfo(document.Path()).absolutePath();
    const QStringList recent = document.RecentFiles();
    return recent.isEmpty() ? QDir::homePath() : QFileInfo(recent.front()).absolutePath();
}

/// True when the operation was done; otherwise says why not.
bool Told(bool done, const CaseDocument& document, QWidget* parent, const QString& title)
{
    if (!done)
        QMessageBox::warning(parent, title, document.Error());
    return done;
}

} // namespace

bool MayClose(CaseDocument& document, QWidget* parent)
{
    document.Commit(QStringLiteral("Änderung"));
    if (!document.IsModified())
        return true;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Ungespeicherte Änderungen"),
                    QStringLiteral("Der Fall „%1“ wurde geändert.").arg(document.DisplayName()), {}, parent);
    box.setInformativeText(QStringLiteral("Sollen die Änderungen gespeichert werden?"));
    const auto* save = box.addButton(QStringLiteral("&Speichern"), QMessageBox::AcceptRole);
    const auto* discard = box.addButton(QStringLiteral("&Verwerfen"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(QStringLiteral("&Abbrechen"), QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == save)
        return SaveCase(document, parent);
    return box.clickedButton() == discard;
}

bool NewCase(CaseDocument& document, QWidget* parent)
{
    return MayClose(document, parent) && Told(document.New(), document, parent, QStringLiteral("Neuer Fall"));
}

QStringList ExampleNames()
{
    QStringList names;
    for (const QString& file : QDir(kExamples).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
        names.append(QFileInfo(file).completeBaseName());
    return names;
}

bool OpenExample(CaseDocument& document, QWidget* parent, const QString& name)
{
    if (!MayClose(document, parent))
        return false;
    const QString title = QStringLiteral("Beispiel öffnen");
    QFile file(QStringLiteral("%1/%2.json").arg(kExamples, name));
    if (!file.open(QIODevice::ReadOnly)) {
        QMessageBox::warning(parent, title,
                             QStringLiteral("Ein Beispiel „%1“ gibt es nicht. Es gibt: %2.")
                                 .arg(name, ExampleNames().join(QStringLiteral(", "))));
        return false;
    }
    return Told(document.NewFrom(file.readAll().toStdString()), document, parent, title);
}

bool OpenCase(CaseDocument& document, QWidget* parent, const QString& path)
{
    if (!MayClose(document, parent))
        return false;
    const QString title = QStringLiteral("Fall öffnen");
    const QString chosen =
        path.isEmpty() ? QFileDialog::getOpenFileName(parent, title, FolderOf(document), kFilter) : path;
    if (chosen.isEmpty() || !Told(document.Open(chosen), document, parent, title))
        return false;
    for (const QString& warning : document.Warnings())
        QMessageBox::information(parent, title, warning);
    return true;
}

bool SaveCase(CaseDocument& document, QWidget* parent)
{
    if (document.Path().isEmpty())
        return SaveCaseAs(document, parent);
    return Told(document.Save(), document, parent, QStringLiteral("Fall speichern"));
}

bool SaveCaseAs(CaseDocument& document, QWidget* parent)
{
    const QString title = QStringLiteral("Fall speichern unter");
    QFileDialog dialog(parent, title, FolderOf(document), kFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(kEnding); // before the question about an existing file is asked
    dialog.selectFile(document.DisplayName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    return Told(document.SaveAs(dialog.selectedFiles().front()), document, parent, title);
}

bool RecoverCase(CaseDocument& document, QWidget* parent)
{
    const QString title = QStringLiteral("Fall wiederherstellen");
    for (const LeftBehind& left : CaseDocument::FindLeftBehind()) {
        QMessageBox box(QMessageBox::Question, title,
                        QStringLiteral("Der Fall „%1“ wurde nicht ordentlich geschlossen.").arg(left.title), {},
                        parent);
        box.setInformativeText(
            QStringLiteral("Stand der Sicherung: %1%2")
                .arg(left.time, left.path.isEmpty() ? QString() : QStringLiteral("\nDatei: ") + left.path));
        const auto* recover = box.addButton(QStringLiteral("&Wiederherstellen"), QMessageBox::AcceptRole);
        const auto* discard = box.addButton(QStringLiteral("&Löschen"), QMessageBox::DestructiveRole);
        box.setEscapeButton(box.addButton(QStringLiteral("&Später"), QMessageBox::RejectRole));
        box.exec();
        if (box.clickedButton() == recover && Told(document.Recover(left), document, parent, title))
            return true;
        if (box.clickedButton() == discard)
            CaseDocument::Discard(left);
    }
    return false;
}

} // namespace desktop
