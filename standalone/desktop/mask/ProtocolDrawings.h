// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CDC.h"
#include "report/Protocol.h"

#include <QObject>
#include <QTextObjectInterface>

#include <vector>

namespace desktop
{

/// The drawings of a protocol as lines and text in a text document, sharp at any size. Belongs to the document.
class ProtocolDrawings : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

  public:
    /// Puts the drawings into the places of the images "diagram-0", "diagram-1", …, none larger than `room`.
    ProtocolDrawings(QTextDocument& document, const report::Protocol& protocol, QSizeF room);

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& area, QTextDocument* document, int position,
                    const QTextFormat& format) override;

  private:
    const CDC& DrawingOf(const QTextFormat& format) const;

    std::vector<CDC> m_drawings;
    QSizeF m_room;
};

} // namespace desktop
