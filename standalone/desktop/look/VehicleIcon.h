// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CKfzDaten.h"

#include <QIcon>
#include <QString>

#include <vector>

class CRuvData;

namespace desktop
{

/// A swatch of the vehicle's colour for lists and buttons.
QIcon VehicleIcon(const CKfzDaten& vehicle);

/// By what the user knows a vehicle of the case.
struct VehicleMark {
    int index;
    QString name; ///< never empty
    COLORREF color;
    friend bool operator==(const VehicleMark&, const VehicleMark&) = default;
};
QString ShownName(const CKfzDaten& vehicle, int index);
std::vector<VehicleMark> VehicleMarks(const CRuvData& data);

} // namespace desktop
