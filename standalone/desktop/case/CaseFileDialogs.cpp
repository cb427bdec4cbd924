// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseFileDialogs.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/MessageBox.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <optional>

namespace desktop
{
namespace
{

const QString kFilter = QStringLiteral("Fälle (*.json);;Alle Dateien (*)");
const QString kExamples = QStringLiteral(":/examples");
const QString kEnding = QStringLiteral("json");
const QString kSaveTitle = QStringLiteral("Fall speichern");
constexpr QSize kDifferencesSize(700, 500);

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
        Warn(parent, title, document.Error());
    return done;
}

/// A file that another window has open is opened write-protected unless the user wants otherwise; nothing when he gives
/// up.
std::optional<OpenMode> ModeFor(const CaseDocument& document, QWidget* parent, const QString& path)
{
    if (!document.IsOpenElsewhere(path))
        return OpenMode::edit;
    QMessageBox box(
        QMessageBox::Warning, QStringLiteral("Fall öffnen"),
        QStringLiteral("Der Fall „%1“ ist schon in einem anderen Fenster geöffnet.").arg(QFileInfo(path).fileName()),
        {}, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QStringLiteral("Wer ihn in beiden bearbeitet, überschreibt leicht die eigene Arbeit."));
    auto* readOnly = box.addButton(QStringLiteral("&Schreibgeschützt öffnen"), QMessageBox::AcceptRole);
    const auto* edit = box.addButton(QStringLiteral("Trotzdem &bearbeiten"), QMessageBox::DestructiveRole);
    box.setDefaultButton(readOnly);
    box.setEscapeButton(box.addButton(QStringLiteral("&Abbrechen"), QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == edit)
        return OpenMode::edit;
    return box.clickedButton() == readOnly ? std::optional(OpenMode::readOnly) : std::nullopt;
}

void ShowDifferences(CaseDocument& document, QWidget* parent)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(QStringLiteral("Unterschiede"));
    dialog.resize(kDifferencesSize);
    auto* text = new QPlainTextEdit(document.Differences());
    text->setReadOnly(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog.exec();
}

/// Somebody else has changed the file that is to be written.
bool SettleForeignFile(CaseDocument& document, QWidget* parent)
{
    for (;;) {
        QMessageBox box(
            QMessageBox::Warning, kSaveTitle,
            QStringLiteral("Die Datei „%1“ wurde inzwischen von jemand anderem geändert.").arg(document.DisplayName()),
            {}, parent);
        box.setTextFormat(Qt::PlainText);
        box.setInformativeText(QStringLiteral("Was soll mit dem Fall in diesem Fenster geschehen?"));
        const auto* differences = box.addButton(QStringLiteral("&Unterschiede zeigen"), QMessageBox::HelpRole);
        auto* beside = box.addButton(QStringLiteral("&Daneben speichern…"), QMessageBox::AcceptRole);
        const auto* overwrite = box.addButton(QStringLiteral("Ü&berschreiben"), QMessageBox::DestructiveRole);
        const auto* load = box.addButton(QStringLiteral("&Fassung der Datei laden"), QMessageBox::DestructiveRole);
        box.setDefaultButton(beside);
        box.setEscapeButton(box.addButton(QStringLiteral("&Abbrechen"), QMessageBox::RejectRole));
        box.exec();
        if (box.clickedButton() == differences) {
            ShowDifferences(document, parent);
            continue;
        }
        if (box.clickedButton() == beside)
            return SaveCaseAs(document, parent);
        if (box.clickedButton() == overwrite)
            return Told(document.Save(true), document, parent, kSaveTitle);
        if (box.clickedButton() == load)
            return Told(document.Open(document.Path()), document, parent, kSaveTitle);
        return false;
    }
}

} // namespace

bool MayClose(CaseDocument& document, QWidget* parent)
{
    document.Commit(QStringLiteral("Änderung"));
    if (!document.IsModified())
        return true;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Ungespeicherte Änderungen"),
                    QStringLiteral("Der Fall „%1“ wurde geändert.").arg(document.DisplayName()), {}, parent);
    box.setTextFormat(Qt::PlainText);
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
        Warn(parent, title,
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
    if (chosen.isEmpty())
        return false;
    const auto mode = ModeFor(document, parent, chosen);
    if (!mode || !Told(document.Open(chosen, *mode), document, parent, title))
        return false;
    for (const QString& warning : document.Warnings())
        Warn(parent, title, warning);
    return true;
}

bool SaveCase(CaseDocument& document, QWidget* parent)
{
    if (document.Path().isEmpty())
        return SaveCaseAs(document, parent);
    document.CheckFile();
    if (document.IsReadOnly()) {
        Warn(parent, kSaveTitle,
             QStringLiteral(
                 "Der Fall ist schreibgeschützt geöffnet. Er lässt sich unter einem anderen Namen speichern."));
        return SaveCaseAs(document, parent);
    }
    if (document.FileIsForeign())
        return SettleForeignFile(document, parent);
    return Told(document.Save(), document, parent, kSaveTitle);
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
    QStringList kept;
    const std::vector<LeftBehind> all = CaseDocument::FindLeftBehind(&kept);
    for (const QString& sentence : kept)
        Warn(parent, title, sentence);
    for (const LeftBehind& left : all) {
        QMessageBox box(QMessageBox::Question, title,
                        QStringLiteral("Der Fall „%1“ wurde nicht ordentlich geschlossen.").arg(left.title), {},
                        parent);
        box.setTextFormat(Qt::PlainText);
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
