// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A small drawing of a vehicle that names its dimensions.
#pragma once

#include "drawing/DiagramPalette.h"
#include "host/CDC.h"
#include "host/CKfzDaten.h"

namespace scene
{

/// Draws the vehicle from the side and from above, to scale, with its dimension lines; `chosen` is drawn in full, with
/// name and value. Turning circles are drawn as such. Null, or a quantity that is no length, chooses none.
void DrawVehicle(CDC& dc, const CKfzDaten& vehicle, double CKfzDaten::*chosen, const drawing::DiagramPalette& palette,
                 COLORREF accent);

} // namespace scene
