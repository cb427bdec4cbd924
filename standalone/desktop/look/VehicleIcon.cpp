// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/VehicleIcon.h"

#include "desktop/look/Theme.h"
#include "host/CRuvData.h"

#include <QPainter>
#include <QPixmap>

namespace desktop
{

QIcon VehicleIcon(const CKfzDaten& vehicle)
{
    constexpr int kSize = 16;
    constexpr qreal kScale = 4.0; // sharp up to 400 %
    QPixmap pixmap(QSize(kSize, kSize) * kScale);
    pixmap.setDevicePixelRatio(kScale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Colors().border, 1.0));
    painter.setBrush(FromColorRef(vehicle.color));
    painter.drawRoundedRect(QRectF(1.5, 1.5, kSize - 3.0, kSize - 3.0), 3.0, 3.0);
    QIcon icon(pixmap);
    icon.addPixmap(pixmap, QIcon::Selected); // the colour itself, not mixed with the selection's
    return icon;
}

QString ShownName(const CKfzDaten& vehicle, int index)
{
    return vehicle.name.empty() ? QStringLiteral("Fahrzeug %1").arg(index + 1) : QString::fromStdString(vehicle.name);
}

std::vector<VehicleMark> VehicleMarks(const CRuvData& data)
{
    std::vector<VehicleMark> marks;
    for (int i = 0; i < static_cast<int>(CRuvData::kFahrzeuge); ++i)
        if (const CKfzDaten& vehicle = data.KfzDat(static_cast<std::size_t>(i)); vehicle.IsValid())
            marks.push_back({i, ShownName(vehicle, i), vehicle.color});
    return marks;
}

} // namespace desktop
