// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/MaskReport.h"

#include "desktop/CaseDocument.h"
#include "desktop/Icons.h"
#include "desktop/MainWindow.h"
#include "desktop/MaskArea.h"
#include "desktop/MaskWindow.h"
#include "desktop/QtFrontEnd.h"
#include "desktop/Theme.h"
#include "framework/DialogPicture.h"
#include "framework/DrawingExport.h"
#include "framework/UiThread.h"
#include "krn/AtomicFile.h"
#include "krn/HelpPages.h"
#include "krn/ProgramVersion.h"
#include "krn/ProtocolHtml.h"
#include "krn/ProtocolOdt.h"
#include "krn/Sha256.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <memory>

namespace desktop
{
namespace
{

constexpr double kPictureScale = 3.0;  // picture pixels per pixel of a diagram in documents
constexpr double kClipboardUnit = 3.0; // pixels of a dialog unit in the picture on the clipboard
constexpr int kResolution = 300;       // dots per inch of a PDF
constexpr double kMargin = 20.0;       // mm
constexpr double kFootHeight = 24.0;   // dots of the screen
constexpr double kFootPoints = 7.5;

QString FromUtf8(const std::string& text)
{
    return QString::fromStdString(text);
}

/// The protocol as a text document with its pictures.
std::unique_ptr<QTextDocument> Typeset(const krn::Protocol& protocol, double textWidth)
{
    auto document = std::make_unique<QTextDocument>();
    QFont font = TextFont();
    font.setPointSizeF(10.0);
    document->setDefaultFont(font);
    document->setMetaInformation(QTextDocument::DocumentTitle, FromUtf8(protocol.title));
    std::string html = krn::ProtocolHtml(protocol, krn::HtmlPictures::named);
    for (std::size_t i = 0; i < protocol.pictures.size(); ++i) {
        const CDC& drawing = protocol.pictures[i].drawing;
        const std::string name = "diagram-" + std::to_string(i);
        const std::string png = framework::ToPng(drawing, kPictureScale);
        document->addResource(QTextDocument::ImageResource, QUrl(FromUtf8(name)),
                              QImage::fromData(QByteArray::fromStdString(png), "PNG"));
        const std::string mark = "src=\"" + name + "\"";
        const int width = static_cast<int>(std::min(drawing.Width(), textWidth));
        html.replace(html.find(mark), mark.size(), mark + " width=\"" + std::to_string(width) + "\"");
    }
    document->setHtml(FromUtf8(html));
    return document;
}

/// A heading at the foot of a page goes to the next one with what it stands for.
void KeepHeadingsWithText(QTextDocument& document, double pageHeight)
{
    // A block may begin at the foot of a page and its first line on the next one.
    const auto pageOf = [&](const QTextBlock& block) {
        const double top = document.documentLayout()->blockBoundingRect(block).top();
        const QTextLayout& layout = *block.layout();
        return std::floor((top + (layout.lineCount() > 0 ? layout.lineAt(0).y() : 0.0)) / pageHeight);
    };
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlock next = block.next();
        if (block.blockFormat().headingLevel() == 0 || !next.isValid() || pageOf(block) == pageOf(next))
            continue;
        QTextBlockFormat format = block.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(format);
    }
}

/// Pages of the device's own size, with the page's number and `foot` below the text.
void Print(const krn::Protocol& protocol, const QString& foot, QPagedPaintDevice& device)
{
    QPainter painter;
    if (!painter.begin(&device))
        return;
    // The text document counts in dots of the screen.
    const double scale = device.logicalDpiY() / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    const double width = device.width() / scale;
    const double height = device.height() / scale - kFootHeight;
    const auto document = Typeset(protocol, width);
    document->setDocumentMargin(0.0);
    document->setPageSize(QSizeF(width, height));
    KeepHeadingsWithText(*document, height);
    QFont footFont = document->defaultFont();
    footFont.setPointSizeF(kFootPoints);
    const QRectF line(0.0, height * scale, device.width(), kFootHeight * scale);
    for (int page = 0; page < document->pageCount(); ++page) {
        if (page > 0)
            device.newPage();
        painter.save();
        painter.scale(scale, scale);
        painter.translate(0.0, -page * height);
        document->drawContents(&painter, QRectF(0.0, page * height, width, height));
        painter.restore();
        painter.setFont(footFont);
        painter.setPen(Qt::darkGray);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignBottom, foot);
        painter.drawText(line, Qt::AlignRight | Qt::AlignBottom,
                         QStringLiteral("Seite %1 von %2").arg(page + 1).arg(document->pageCount()));
    }
}

QString FootOf(const krn::Protocol& protocol)
{
    for (const krn::ProtocolEntry& entry : protocol.origin)
        if (entry.label == krn::kSha256Label)
            return QStringLiteral("SHA-256 ") + FromUtf8(entry.value);
    return {};
}

QByteArray Pdf(const krn::Protocol& protocol)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(kResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    writer.setTitle(FromUtf8(protocol.title));
    writer.setCreator(
        QStringLiteral("%1 %2").arg(QLatin1String(krn::kProgramName), QLatin1String(krn::kProgramVersion)));
    Print(protocol, FootOf(protocol), writer);
    buffer.close();
    return bytes;
}

} // namespace

MaskReport::MaskReport(MainWindow& window, CaseDocument& document, QtFrontEnd& frontEnd)
    : QObject(&window), m_window(window), m_document(document)
{
    AddCommands();
    connect(&frontEnd, &QtFrontEnd::messageShown, this, [this](const framework::Window* dialog, const QString& text) {
        Note(dialog == nullptr ? nullptr : dialog->handle, text);
    });
}

void MaskReport::AddCommands()
{
    const auto add = [this](const QString& text, const char* icon, const QString& keys, void (MaskReport::*command)()) {
        auto* action = new QAction(Icon(icon), text, this);
        action->setShortcut(QKeySequence(keys));
        connect(action, &QAction::triggered, this, command);
        connect(&m_window.Masks(), &QMdiArea::subWindowActivated, action,
                [this, action] { action->setEnabled(m_window.Masks().Active() != nullptr); });
        action->setEnabled(false);
        m_window.AddCommand(QStringLiteral("Masken"), action);
    };
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    m_window.AddCommand(QStringLiteral("Masken"), separator);
    add(QStringLiteral("&Werte kopieren"), "copy", QStringLiteral("Ctrl+Shift+C"), &MaskReport::Copy);
    add(QStringLiteral("&Protokoll speichern…"), "report", QStringLiteral("Ctrl+P"), &MaskReport::AskAndSave);
    add(QStringLiteral("Protokoll &drucken…"), "print", QStringLiteral("Ctrl+Shift+P"), &MaskReport::AskAndPrint);
}

void MaskReport::Note(HWND dialog, const QString& message)
{
    std::erase_if(m_messages, [](const auto& entry) { return IsWindow(entry.first) == FALSE; });
    if (dialog == nullptr && m_window.Masks().Active() != nullptr)
        dialog = m_window.Masks().Active()->Handle();
    if (dialog != nullptr && !m_messages[dialog].contains(message))
        m_messages[dialog].append(message);
}

krn::Protocol MaskReport::ProtocolOf(MaskWindow& mask)
{
    krn::ProtocolContext context;
    context.number = mask.Number();
    context.helpPage = krn::HelpPage(mask.Number());
    for (const QString& message : m_messages[mask.Handle()])
        context.messages.push_back(message.toStdString());
    context.caseTitle = m_document.Data().Title();
    context.caseFile = m_document.Path().isEmpty() ? std::string() : m_document.DisplayName().toStdString();
    context.caseSha256 = krn::Sha256(m_document.CaseText());
    context.date = krn::DateText(std::time(nullptr));
    return krn::MakeProtocol(*mask.Dialog(), context);
}

QString MaskReport::Save(MaskWindow& mask, const QString& path)
{
    const krn::Protocol protocol = ProtocolOf(mask);
    const QString ending = QFileInfo(path).suffix().toLower();
    std::string bytes;
    if (ending == QLatin1String("pdf"))
        bytes = Pdf(protocol).toStdString();
    else if (ending == QLatin1String("html") || ending == QLatin1String("htm"))
        bytes = krn::ProtocolHtml(protocol, krn::HtmlPictures::inlineSvg);
    else if (ending == QLatin1String("odt"))
        bytes = krn::ProtocolOdt(protocol);
    else
        return QStringLiteral("Der Dateiname muss auf .pdf, .html oder .odt enden.");
    return FromUtf8(krn::WriteFileAtomically(path.toStdString(), bytes).Text());
}

void MaskReport::PrintOn(QPrinter& printer, MaskWindow& mask)
{
    const krn::Protocol protocol = ProtocolOf(mask);
    printer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    Print(protocol, FootOf(protocol), printer);
}

QMimeData* MaskReport::ForClipboard(MaskWindow& mask)
{
    const krn::Protocol protocol = ProtocolOf(mask);
    auto* mime = new QMimeData;
    mime->setText(FromUtf8(krn::ProtocolText(protocol)));
    mime->setHtml(FromUtf8(krn::ProtocolHtmlTable(protocol)));
    const std::string png = framework::ToPng(framework::DrawDialog(*mask.Dialog(), kClipboardUnit), 1.0);
    mime->setImageData(QImage::fromData(QByteArray::fromStdString(png), "PNG"));
    return mime;
}

void MaskReport::Copy()
{
    if (MaskWindow* mask = m_window.Masks().Active())
        QApplication::clipboard()->setMimeData(ForClipboard(*mask));
}

void MaskReport::AskAndSave()
{
    MaskWindow* mask = m_window.Masks().Active();
    if (mask == nullptr)
        return;
    const QString title = QStringLiteral("Protokoll speichern");
    QFileDialog dialog(&m_window, title, QFileInfo(m_document.Path()).absolutePath(),
                       QStringLiteral("PDF-Dokument (*.pdf);;OpenDocument-Text (*.odt);;HTML-Seite (*.html)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("pdf"));
    dialog.selectFile(QStringLiteral("Protokoll %1").arg(mask->Number()));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section(QStringLiteral("*."), 1).chopped(1));
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    if (const QString why = Save(*mask, dialog.selectedFiles().front()); !why.isEmpty())
        QMessageBox::warning(&m_window, title, why);
}

void MaskReport::AskAndPrint()
{
    MaskWindow* mask = m_window.Masks().Active();
    if (mask == nullptr)
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(QStringLiteral("Protokoll %1").arg(mask->Number()));
    QPrintDialog dialog(&printer, &m_window);
    if (dialog.exec() == QDialog::Accepted)
        PrintOn(printer, *mask);
}

} // namespace desktop
