// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A protocol on pages, for PDF and printer.
#pragma once

#include "desktop/look/Aside.h"
#include "report/Protocol.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <memory>

class QPrinter;
class QTextDocument;

namespace desktop
{

// All may run in a thread of its own. What is cancelled returns early with whatever there is.

/// Laid out on pages of this size (dots of the screen). A heading at the foot of a page goes to the next one with what
/// it stands for.
std::unique_ptr<QTextDocument> ProtocolOnPages(const report::Protocol& protocol, QSizeF page, AsideWork& work);

/// A4, with page numbers and the case's SHA-256 at the foot.
QByteArray ProtocolPdf(const report::Protocol& protocol, AsideWork& work);
/// Returns why it failed, in German, or nothing.
QString PrintProtocol(const report::Protocol& protocol, QPrinter& printer, AsideWork& work);

} // namespace desktop
