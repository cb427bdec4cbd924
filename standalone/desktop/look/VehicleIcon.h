// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CKfzDaten.h"

#include <QIcon>

namespace desktop
{

/// A swatch of the vehicle's colour for lists and buttons.
QIcon VehicleIcon(const CKfzDaten& vehicle);

} // namespace desktop
