// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/MaskReport.h"

#include "base/AtomicFile.h"
#include "base/Sha256.h"
#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/look/Aside.h"
#include "desktop/look/Icons.h"
#include "desktop/look/MessageBox.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/ProtocolPages.h"
#include "desktop/mask/QtFrontEnd.h"
#include "drawing/DrawingExport.h"
#include "framework/DialogPicture.h"
#include "framework/UiThread.h"
#include "report/HelpPages.h"
#include "report/ProtocolHtml.h"
#include "report/ProtocolOdt.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

#include <memory>

namespace desktop
{
namespace
{

constexpr double kClipboardUnit = 3.0; // pixels of a dialog unit in the picture on the clipboard

} // namespace

MaskReport::MaskReport(MainWindow& window, CaseDocument& document, QtFrontEnd& frontEnd)
    : QObject(&window), m_window(window), m_document(document), m_frontEnd(frontEnd)
{
    AddCommands();
    connect(
        &frontEnd, &QtFrontEnd::messageShown, this,
        [this](quintptr dialog, const QString& text) { Note(reinterpret_cast<HWND>(dialog), text); });
    connect(&frontEnd, &QtFrontEnd::acted, this, [this] { m_messages.EndAction(); });
}

void MaskReport::AddCommands()
{
    const auto add = [this](const QString& text, const char* icon, const QString& keys, void (MaskReport::*command)()) {
        auto* action = new QAction(Icon(icon), text, this);
        action->setShortcut(QKeySequence(keys));
        connect(action, &QAction::triggered, this, command);
        connect(&m_window.Masks(), &MaskArea::activeChanged, action,
                [this, action] { action->setEnabled(m_window.Masks().Active() != nullptr); });
        action->setEnabled(false);
        m_window.AddCommand(QStringLiteral("Masken"), action);
    };
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    m_window.AddCommand(QStringLiteral("Masken"), separator);
    add(QStringLiteral("&Werte kopieren"), "copy", QStringLiteral("Ctrl+Shift+C"), &MaskReport::Copy);
    add(QStringLiteral("&Protokoll speichern…"), "report", QStringLiteral("Ctrl+Shift+E"), &MaskReport::AskAndSave);
    add(QStringLiteral("Protokoll &drucken…"), "print", QStringLiteral("Ctrl+Shift+P"), &MaskReport::AskAndPrint);
}

MaskWindow* MaskReport::Active() const
{
    MaskWindow* active = m_window.Masks().Active();
    if (active == nullptr || !active->IsDrawing() || active->Dialog()->parent == nullptr)
        return active;
    return m_frontEnd.WindowOf(framework::DialogOf(*active->Dialog()->parent).handle);
}

void MaskReport::Note(HWND dialog, const QString& message)
{
    if (dialog == nullptr && m_window.Masks().Active() != nullptr)
        dialog = m_window.Masks().Active()->Handle();
    if (dialog != nullptr)
        m_messages.Note(dialog, message.toStdString());
}

report::Protocol MaskReport::ProtocolOf(MaskWindow& mask)
{
    report::ProtocolContext context;
    context.number = mask.Number();
    context.helpPage = report::HelpPage(mask.Number());
    context.messages = m_messages.Of(mask.Handle());
    context.caseTitle = m_document.Data().Title();
    context.caseDetails = m_document.Data().Angaben();
    context.caseFile = m_document.Path().isEmpty() ? std::string() : m_document.DisplayName().toStdString();
    context.caseSha256 = base::Sha256(m_document.CaseText());
    context.date = report::ProtocolDate();
    return report::MakeProtocol(*mask.Dialog(), context);
}

std::optional<QString> MaskReport::Save(MaskWindow& mask, const QString& path)
{
    const QString ending = QFileInfo(path).suffix().toLower();
    const bool pdf = ending == QLatin1String("pdf");
    const bool odt = ending == QLatin1String("odt");
    if (!pdf && !odt && ending != QLatin1String("html") && ending != QLatin1String("htm"))
        return QStringLiteral("Der Dateiname muss auf .pdf, .html oder .odt enden.");
    const auto why = std::make_shared<QString>();
    const bool ended =
        DoAside(&m_window, QStringLiteral("Das Protokoll wird geschrieben"),
                [protocol = ProtocolOf(mask), path, pdf, odt, why](AsideWork& work) {
                    const std::string bytes = pdf   ? ProtocolPdf(protocol, work).toStdString()
                                              : odt ? report::ProtocolOdt(protocol)
                                                    : report::ProtocolHtml(protocol, report::HtmlPictures::inlineSvg);
                    if (work.BeginToKeep())
                        *why = QString::fromStdString(base::WriteFileAtomically(path.toStdString(), bytes).Text());
                });
    return ended ? std::optional(*why) : std::nullopt;
}

std::optional<QString> MaskReport::PrintOn(const std::shared_ptr<QPrinter>& printer, MaskWindow& mask)
{
    const auto why = std::make_shared<QString>();
    const bool ended = DoAside(&m_window, QStringLiteral("Das Protokoll wird gedruckt"),
                               [protocol = ProtocolOf(mask), printer, why](AsideWork& work) {
                                   *why = PrintProtocol(protocol, *printer, work);
                               });
    return ended ? std::optional(*why) : std::nullopt;
}

QMimeData* MaskReport::ForClipboard(MaskWindow& mask)
{
    const report::Protocol protocol = ProtocolOf(mask);
    auto* mime = new QMimeData;
    mime->setText(QString::fromStdString(report::ProtocolText(protocol)));
    mime->setHtml(QString::fromStdString(report::ProtocolHtmlTable(protocol)));
    const std::string png = drawing::ToPng(framework::DrawDialog(*mask.Dialog(), kClipboardUnit), 1.0);
    mime->setImageData(QImage::fromData(QByteArray::fromStdString(png), "PNG"));
    return mime;
}

void MaskReport::Copy()
{
    MaskWindow* mask = Active();
    if (mask == nullptr)
        return;
    QApplication::clipboard()->setMimeData(ForClipboard(*mask));
    m_window.Say(QStringLiteral("Werte der Maske %1 in die Zwischenablage kopiert").arg(mask->Number()));
}

void MaskReport::AskAndSave()
{
    MaskWindow* mask = Active();
    if (mask == nullptr)
        return;
    const QString title = QStringLiteral("Protokoll speichern");
    QFileDialog dialog(mask->window(), title, QFileInfo(m_document.Path()).absolutePath(),
                       QStringLiteral("PDF-Dokument (*.pdf);;OpenDocument-Text (*.odt);;HTML-Seite (*.html)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    dialog.selectFile(QStringLiteral("Protokoll %1").arg(mask->Number()));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section(QStringLiteral("*."), 1).chopped(1));
    });
    const QPointer<MaskWindow> still(mask);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty() || !still || mask->Dialog() == nullptr)
        return;
    const UINT number = mask->Number();
    const QString path = dialog.selectedFiles().front();
    TellEnd(Save(*mask, path), title, QStringLiteral("Protokoll der Maske %1 gespeichert: %2").arg(number).arg(path));
}

void MaskReport::TellEnd(const std::optional<QString>& why, const QString& title, const QString& done)
{
    if (!why)
        m_window.Say(title + QStringLiteral(": abgebrochen"));
    else if (!why->isEmpty())
        Warn(&m_window, title, *why);
    else
        m_window.Say(done);
}

void MaskReport::AskAndPrint()
{
    MaskWindow* mask = Active();
    if (mask == nullptr)
        return;
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(QStringLiteral("Protokoll %1").arg(mask->Number()));
    QPrintDialog dialog(printer.get(), mask->window());
    const QPointer<MaskWindow> still(mask);
    if (dialog.exec() != QDialog::Accepted || !still || mask->Dialog() == nullptr)
        return;
    const UINT number = mask->Number();
    TellEnd(PrintOn(printer, *mask), QStringLiteral("Protokoll drucken"),
            QStringLiteral("Protokoll der Maske %1 gedruckt").arg(number));
}

} // namespace desktop
