// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/ProtocolDrawings.h"

#include "desktop/look/CdcPainter.h"
#include "host/Assert.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

constexpr int kObject = QTextFormat::UserObject;
constexpr int kNumber = QTextFormat::UserProperty;
const QString kName = QStringLiteral("diagram-");

} // namespace

ProtocolDrawings::ProtocolDrawings(QTextDocument& document, const report::Protocol& protocol, QSizeF room)
    : QObject(&document), m_room(room)
{
    for (const report::ProtocolPicture& picture : protocol.pictures)
        m_drawings.push_back(picture.drawing);
    document.documentLayout()->registerHandler(kObject, this);
    std::vector<std::pair<int, int>> places; // position and number of each image
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto piece = block.begin(); !piece.atEnd(); ++piece)
            if (const QTextCharFormat format = piece.fragment().charFormat(); format.isImageFormat())
                if (const QString name = format.toImageFormat().name(); name.startsWith(kName))
                    places.emplace_back(piece.fragment().position(), name.mid(kName.size()).toInt());
    for (const auto& [position, number] : places) {
        QTextCursor cursor(&document);
        cursor.setPosition(position);
        cursor.setPosition(position + 1, QTextCursor::KeepAnchor);
        QTextCharFormat format;
        format.setObjectType(kObject);
        format.setProperty(kNumber, number);
        cursor.setCharFormat(format);
    }
}

const CDC& ProtocolDrawings::DrawingOf(const QTextFormat& format) const
{
    const auto number = static_cast<std::size_t>(format.intProperty(kNumber));
    RUV_ASSERT(number < m_drawings.size());
    return m_drawings[number];
}

QSizeF ProtocolDrawings::intrinsicSize(QTextDocument*, int, const QTextFormat& format)
{
    const CDC& drawing = DrawingOf(format);
    const QSizeF size(drawing.Width(), drawing.Height());
    return size * std::min({1.0, m_room.width() / size.width(), m_room.height() / size.height()});
}

void ProtocolDrawings::drawObject(QPainter* painter, const QRectF& area, QTextDocument*, int, const QTextFormat& format)
{
    const CDC& drawing = DrawingOf(format);
    painter->save();
    painter->translate(area.topLeft());
    painter->scale(area.width() / drawing.Width(), area.height() / drawing.Height());
    Replay(drawing, *painter);
    painter->restore();
}

} // namespace desktop
