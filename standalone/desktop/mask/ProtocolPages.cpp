// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/ProtocolPages.h"

#include "base/ProgramVersion.h"
#include "desktop/look/Theme.h"
#include "drawing/DrawingExport.h"
#include "report/ProtocolHtml.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <vector>

namespace desktop
{
namespace
{

constexpr double kPictureScale = 3.0; // picture pixels per pixel of a diagram in documents
constexpr int kResolution = 300;      // dots per inch of a PDF
constexpr double kMargin = 20.0;      // mm
constexpr double kFootHeight = 24.0;  // dots of the screen
constexpr double kFootPoints = 7.5;

/// The protocol as a text document with its pictures.
std::unique_ptr<QTextDocument> Typeset(const report::Protocol& protocol, double textWidth)
{
    auto document = std::make_unique<QTextDocument>();
    QFont font = TextFont();
    font.setPointSizeF(10.0);
    document->setDefaultFont(font);
    document->setMetaInformation(QTextDocument::DocumentTitle, QString::fromStdString(protocol.title));
    std::string html = report::ProtocolHtml(protocol, report::HtmlPictures::named);
    for (std::size_t i = 0; i < protocol.pictures.size(); ++i) {
        const CDC& drawing = protocol.pictures[i].drawing;
        const std::string name = "diagram-" + std::to_string(i);
        const std::string png = drawing::ToPng(drawing, kPictureScale);
        document->addResource(QTextDocument::ImageResource, QUrl(QString::fromStdString(name)),
                              QImage::fromData(QByteArray::fromStdString(png), "PNG"));
        const std::string mark = "src=\"" + name + "\"";
        const int width = static_cast<int>(std::min(drawing.Width(), textWidth));
        html.replace(html.find(mark), mark.size(), mark + " width=\"" + std::to_string(width) + "\"");
    }
    document->setHtml(QString::fromStdString(html));
    return document;
}

/// The first heading from block `first` on that stands at the foot of a page without the text it is for; -1 for none.
int LoneHeading(const QTextDocument& document, double pageHeight, int first)
{
    // A block may begin at the foot of a page and its first line on the next one, at its edge but for rounding.
    const auto pageOf = [&](const QTextBlock& block) {
        const double top = document.documentLayout()->blockBoundingRect(block).top();
        const QTextLayout& layout = *block.layout();
        return std::floor((top + (layout.lineCount() > 0 ? layout.lineAt(0).y() : 0.0) + 0.5) / pageHeight);
    };
    for (QTextBlock block = document.findBlockByNumber(first); block.isValid(); block = block.next()) {
        const QTextBlock next = block.next();
        if (block.blockFormat().headingLevel() != 0 && next.isValid() && pageOf(block) != pageOf(next))
            return block.blockNumber();
    }
    return -1;
}

} // namespace

std::unique_ptr<QTextDocument> ProtocolOnPages(const report::Protocol& protocol, QSizeF page)
{
    std::vector<int> breaks;
    for (;;) {
        auto document = Typeset(protocol, page.width());
        // Before the document is laid out: changed afterwards, it may lose lines.
        for (const int number : breaks) {
            const QTextBlock block = document->findBlockByNumber(number);
            QTextBlockFormat format = block.blockFormat();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            QTextCursor(block).setBlockFormat(format);
        }
        document->setDocumentMargin(0.0);
        document->setPageSize(page);
        document->pageCount(); // lays out all of it
        const int lone = LoneHeading(*document, page.height(), breaks.empty() ? 0 : breaks.back() + 1);
        if (lone < 0)
            return document;
        breaks.push_back(lone);
    }
}

namespace
{

/// Pages of the device's own size, with the page's number and `foot` below the text.
bool Print(const report::Protocol& protocol, const QString& foot, QPagedPaintDevice& device)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    // The text document counts in dots of the screen.
    const double scale = device.logicalDpiY() / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    const double width = device.width() / scale;
    const double height = device.height() / scale - kFootHeight;
    const auto document = ProtocolOnPages(protocol, QSizeF(width, height));
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
    return true;
}

QString FootOf(const report::Protocol& protocol)
{
    for (const report::ProtocolEntry& entry : protocol.origin)
        if (entry.label == report::kSha256Label)
            return QStringLiteral("SHA-256 ") + QString::fromStdString(entry.value);
    return {};
}

} // namespace

QByteArray ProtocolPdf(const report::Protocol& protocol)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(kResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    writer.setTitle(QString::fromStdString(protocol.title));
    writer.setCreator(
        QStringLiteral("%1 %2").arg(QLatin1String(base::kProgramName), QLatin1String(base::kProgramVersion)));
    Print(protocol, FootOf(protocol), writer);
    buffer.close();
    return bytes;
}

QString PrintProtocol(const report::Protocol& protocol, QPrinter& printer)
{
    printer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    if (!Print(protocol, FootOf(protocol), printer))
        return QStringLiteral("Der Drucker „%1“ nimmt den Auftrag nicht an.").arg(printer.printerName());
    return {};
}

} // namespace desktop
