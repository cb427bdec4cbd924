// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What of a mask goes into an expert's report.
#pragma once

#include "report/MessageLog.h"
#include "report/Protocol.h"

#include <QObject>

#include <memory>
#include <optional>

class QAction;
class QMimeData;
class QPrinter;

namespace desktop
{

class CaseDocument;
class MainWindow;
class MaskWindow;
class QtFrontEnd;

/// The commands "Werte kopieren", "Protokoll speichern" and "Protokoll drucken" for the active mask, or the one that
/// the active drawing belongs to. Notes the messages that masks show, for their protocols.
class MaskReport : public QObject
{
    Q_OBJECT

  public:
    MaskReport(MainWindow& window, CaseDocument& document, QtFrontEnd& frontEnd);

    report::Protocol ProtocolOf(MaskWindow& mask);
    /// As PDF, HTML or OpenDocument by the ending (.pdf, .html, .odt), of what the mask shows when it is called.
    /// Returns why it failed, in German, or an empty text; nothing when the user cancelled it, then there is no new
    /// file.
    std::optional<QString> Save(MaskWindow& mask, const QString& path);
    /// Likewise.
    std::optional<QString> PrintOn(const std::shared_ptr<QPrinter>& printer, MaskWindow& mask);
    /// Text, HTML table and picture of the mask at once. The caller owns it.
    QMimeData* ForClipboard(MaskWindow& mask);

    /// Ask for the file or the printer first; nothing without an active mask.
    void AskAndSave();
    void AskAndPrint();

  private:
    void AddCommands();
    MaskWindow* Active() const;
    void Note(HWND dialog, const QString& message);
    void Copy();
    void TellEnd(const std::optional<QString>& why, const QString& title, const QString& done);

    MainWindow& m_window;
    CaseDocument& m_document;
    QtFrontEnd& m_frontEnd;
    report::MessageLog m_messages;
};

} // namespace desktop
