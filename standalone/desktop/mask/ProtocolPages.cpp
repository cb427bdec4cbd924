// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/ProtocolPages.h"

#include "base/ProgramVersion.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/ProtocolDrawings.h"
#include "report/ProtocolHtml.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace desktop
{
namespace
{

constexpr int kResolution = 300;     // dots per inch of a PDF
constexpr double kMargin = 20.0;     // mm
constexpr double kFootHeight = 24.0; // dots of the screen
constexpr double kFootPoints = 7.5;
constexpr double kTypesetPart = 0.8; // of the work

/// What keeps together that a page's end would part: from a block on, a new page.
struct PageEnd {
    int block;
    double room; ///< left on the page before it, of a row of a table; negative for a block outside of tables
};

/// A row of a table cannot begin a page: what stands in it is moved down to where the page begins.
void PushRow(QTextTable& table, int row, double room)
{
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell cell = table.cellAt(row, column);
        QTextTableCellFormat format = cell.format().toTableCellFormat();
        if (cell.column() != column)
            continue; // one cell over several columns
        format.setTopPadding(format.topPadding() + room);
        cell.setFormat(format);
    }
}

QTextTable* TableOf(const QTextBlock& block)
{
    return QTextCursor(block).currentTable();
}

/// The protocol as a text document with its pictures.
std::unique_ptr<QTextDocument> Typeset(const report::Protocol& protocol, QSizeF page, const std::vector<PageEnd>& ends)
{
    constexpr double kMostOfPage = 0.9; // that a drawing fills
    auto document = std::make_unique<QTextDocument>();
    QFont font = TextFont();
    font.setPointSizeF(10.0);
    document->setDefaultFont(font);
    document->setMetaInformation(QTextDocument::DocumentTitle, QString::fromStdString(protocol.title));
    document->setHtml(QString::fromStdString(report::ProtocolHtml(protocol, report::HtmlPictures::named)));
    new ProtocolDrawings(*document, protocol, {page.width(), kMostOfPage * page.height()}); // belongs to the document
    // Before the document is laid out: changed afterwards, it may lose lines.
    for (const PageEnd& end : ends) {
        const QTextBlock block = document->findBlockByNumber(end.block);
        if (end.room >= 0.0) {
            QTextTable* table = TableOf(block);
            PushRow(*table, table->cellAt(block.position()).row(), end.room);
            continue;
        }
        QTextBlockFormat format = block.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(format);
    }
    document->setDocumentMargin(0.0);
    document->setPageSize(page);
    document->pageCount(); // lays out all of it
    return document;
}

/// Finds where the end of a page parts what belongs together.
class PageEnds
{
  public:
    PageEnds(const QTextDocument& document, double height) : m_document(document), m_height(height) {}

    /// The first such place from block `first` on.
    std::optional<PageEnd> First(int first) const
    {
        for (QTextBlock block = m_document.findBlockByNumber(first); block.isValid(); block = block.next()) {
            QTextTable* table = TableOf(block);
            if (table == nullptr) {
                if (block.blockFormat().headingLevel() != 0 && block.next().isValid() && IsAlone(block))
                    return PageEnd{block.blockNumber(), -1.0};
                continue;
            }
            const QTextTableCell cell = table->cellAt(block.position());
            if (cell.column() != 0 || block != cell.firstCursorPosition().block())
                continue;
            const Extent row = ExtentOf(*table, cell.row());
            const bool lead = IsLead(*table, cell.row()) && PageOf(row.top) != PageOf(EndOfLead(*table, cell.row()));
            const double room = (PageOf(row.top) + 1.0) * m_height - row.top;
            if ((lead || PageOf(row.top) != PageOf(row.bottom)) && room < m_height - 1.0)
                return PageEnd{block.blockNumber(), room};
        }
        return std::nullopt;
    }

  private:
    struct Extent {
        double top;
        double bottom;
    };

    // A block may begin at the foot of a page and its first line on the next one, at its edge but for rounding.
    double PageOf(double y) const { return std::floor((y + 0.5) / m_height); }

    Extent ExtentOf(const QTextBlock& block) const
    {
        const double top = m_document.documentLayout()->blockBoundingRect(block).top();
        const QTextLayout& layout = *block.layout();
        if (layout.lineCount() == 0)
            return {top, top};
        const QTextLine last = layout.lineAt(layout.lineCount() - 1);
        return {top + layout.lineAt(0).y(), top + last.y() + last.height() - 2.0};
    }

    Extent ExtentOf(const QTextTable& table, int row) const
    {
        Extent extent{1e9, 0.0};
        for (int column = 0; column < table.columns(); ++column) {
            const QTextTableCell cell = table.cellAt(row, column);
            for (QTextBlock block = cell.firstCursorPosition().block();
                 block.isValid() && block.position() <= cell.lastPosition(); block = block.next()) {
                const Extent own = ExtentOf(block);
                extent = {std::min(extent.top, own.top), std::max(extent.bottom, own.bottom)};
            }
        }
        return extent;
    }

    /// A row that is for those below it: the head, the name of a group.
    static bool IsLead(const QTextTable& table, int row)
    {
        return row + 1 < table.rows() && (row == 0 || table.cellAt(row, 0).columnSpan() == table.columns());
    }

    /// The end of the first row that a lead is for.
    double EndOfLead(const QTextTable& table, int row) const
    {
        while (IsLead(table, row))
            ++row;
        return ExtentOf(table, row).bottom;
    }

    bool IsAlone(const QTextBlock& heading) const
    {
        const QTextBlock next = heading.next();
        const QTextTable* table = TableOf(next);
        const double end = table == nullptr ? ExtentOf(next).top : EndOfLead(*table, 0);
        return PageOf(ExtentOf(heading).top) != PageOf(end);
    }

    const QTextDocument& m_document;
    double m_height;
};

} // namespace

std::unique_ptr<QTextDocument> ProtocolOnPages(const report::Protocol& protocol, QSizeF page, AsideWork& work)
{
    std::vector<PageEnd> ends;
    for (;;) {
        auto document = Typeset(protocol, page, ends);
        const auto end = PageEnds(*document, page.height()).First(ends.empty() ? 0 : ends.back().block + 1);
        if (!end || work.IsCancelled())
            return document;
        ends.push_back(*end);
        work.Report(kTypesetPart * end->block / std::max(document->blockCount(), 1));
    }
}

namespace
{

/// Pages of the device's own size, with the page's number and `foot` below the text.
bool Print(const report::Protocol& protocol, const QString& foot, QPagedPaintDevice& device, AsideWork& work)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    // The text document counts in dots of the screen.
    const double scale = device.logicalDpiY() / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    const double width = device.width() / scale;
    const double height = device.height() / scale - kFootHeight;
    const auto document = ProtocolOnPages(protocol, QSizeF(width, height), work);
    QFont footFont = document->defaultFont();
    footFont.setPointSizeF(kFootPoints);
    const QRectF line(0.0, height * scale, device.width(), kFootHeight * scale);
    for (int page = 0; page < document->pageCount() && !work.IsCancelled(); ++page) {
        work.Report(kTypesetPart + (1.0 - kTypesetPart) * page / document->pageCount());
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
    if (auto* printer = dynamic_cast<QPrinter*>(&device); printer != nullptr && work.IsCancelled())
        printer->abort();
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

QByteArray ProtocolPdf(const report::Protocol& protocol, AsideWork& work)
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
    Print(protocol, FootOf(protocol), writer, work);
    buffer.close();
    return bytes;
}

QString PrintProtocol(const report::Protocol& protocol, QPrinter& printer, AsideWork& work)
{
    printer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    if (!Print(protocol, FootOf(protocol), printer, work))
        return QStringLiteral("Der Drucker „%1“ nimmt den Auftrag nicht an.").arg(printer.printerName());
    if (!printer.outputFileName().isEmpty() && !work.BeginToKeep())
        QFile::remove(printer.outputFileName()); // a part of the pages would pass for all
    return {};
}

} // namespace desktop
