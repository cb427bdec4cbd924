// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/DrawingOutput.h"

#include "base/AtomicFile.h"
#include "desktop/look/Aside.h"
#include "desktop/look/CdcPainter.h"
#include "desktop/look/Icons.h"
#include "desktop/look/MessageBox.h"
#include "desktop/look/Tell.h"
#include "drawing/DrawingExport.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

#include <algorithm>
#include <memory>

namespace desktop
{
namespace
{

constexpr double kClipboardScale = 2.0;

} // namespace

void CopyDrawing(const CDC& drawing)
{
    auto* mime = new QMimeData; // the clipboard's
    const std::string png = drawing::ToPng(drawing, kClipboardScale);
    mime->setImageData(QImage::fromData(QByteArray::fromStdString(png), "PNG"));
    mime->setData(QStringLiteral("image/svg+xml"), QByteArray::fromStdString(drawing::ToSvg(drawing)));
    QApplication::clipboard()->setMimeData(mime);
}

QString SaveDrawing(const CDC& drawing, const QString& path)
{
    AsideWork work;
    return SaveDrawing(drawing, path, work);
}

QString SaveDrawing(const CDC& drawing, const QString& path, AsideWork& work)
{
    const std::string file = path.toStdString();
    if (!drawing::IsDrawingFile(file))
        return QStringLiteral("Der Dateiname muss auf .svg, .pdf oder .png enden.");
    const std::string bytes = drawing::ExportByEnding(drawing, file);
    return work.BeginToKeep() ? QString::fromStdString(base::WriteFileAtomically(file, bytes).Text()) : QString();
}

QString PrintDrawing(const CDC& drawing, QPrinter& printer)
{
    AsideWork work;
    return PrintDrawing(drawing, printer, work);
}

QString PrintDrawing(const CDC& drawing, QPrinter& printer, AsideWork& work)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return QStringLiteral("Der Drucker „%1“ nimmt den Auftrag nicht an.").arg(printer.printerName());
    const QRect page = painter.viewport();
    const double scale = std::min(page.width() / drawing.Width(), page.height() / drawing.Height());
    painter.scale(scale, scale);
    Replay(drawing, painter);
    if (!work.BeginToKeep())
        printer.abort();
    return {};
}

void AskAndSaveDrawing(const CDC& drawing, const QString& name, QWidget* parent)
{
    const QString title = QStringLiteral("Diagramm speichern");
    QFileDialog dialog(parent, title, {},
                       QStringLiteral("SVG-Zeichnung (*.svg);;PDF-Dokument (*.pdf);;PNG-Bild (*.png)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(name);
    dialog.setDefaultSuffix(QStringLiteral("svg"));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section(QStringLiteral("*."), 1).chopped(1));
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    const QString path = dialog.selectedFiles().front();
    const auto why = std::make_shared<QString>();
    const bool ended = DoAside(parent, QStringLiteral("%1 wird gespeichert").arg(name),
                               [drawing, path, why](AsideWork& work) { *why = SaveDrawing(drawing, path, work); });
    if (!ended)
        Tell(*parent, title + QStringLiteral(": abgebrochen"));
    else if (!why->isEmpty())
        Warn(parent, title, *why);
    else
        Tell(*parent, QStringLiteral("%1 gespeichert: %2").arg(name, path));
}

void AskAndPrintDrawing(const CDC& drawing, const QString& name, QWidget* parent)
{
    const QString title = QStringLiteral("Diagramm drucken");
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(name);
    printer->setPageOrientation(drawing.Width() > drawing.Height() ? QPageLayout::Landscape : QPageLayout::Portrait);
    QPrintDialog dialog(printer.get(), parent);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const auto why = std::make_shared<QString>();
    const bool ended =
        DoAside(parent, QStringLiteral("%1 wird gedruckt").arg(name),
                [drawing, printer, why](AsideWork& work) { *why = PrintDrawing(drawing, *printer, work); });
    if (!ended)
        Tell(*parent, title + QStringLiteral(": abgebrochen"));
    else if (!why->isEmpty())
        Warn(parent, title, *why);
    else
        Tell(*parent, QStringLiteral("%1 gedruckt").arg(name));
}

void AddDrawingEntries(QMenu& menu, const QString& name, QWidget* parent, const std::function<CDC()>& draw)
{
    menu.addAction(
        Icon("copy"), QStringLiteral("&Kopieren"), parent,
        [draw, name, parent] {
            CopyDrawing(draw());
            Tell(*parent, QStringLiteral("%1 in die Zwischenablage kopiert").arg(name));
        });
    menu.addAction(
        Icon("save"), QStringLiteral("&Speichern als SVG, PDF oder PNG…"), parent,
        [draw, name, parent] { AskAndSaveDrawing(draw(), name, parent); });
    menu.addAction(Icon("print"), QStringLiteral("&Drucken…"), parent,
                   [draw, name, parent] { AskAndPrintDrawing(draw(), name, parent); });
}

} // namespace desktop
