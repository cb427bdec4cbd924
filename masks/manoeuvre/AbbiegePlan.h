// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The plan of a turn: the ground that the body passes over, with the vehicle at start, intermediate position and end.
#pragma once

#include "host/CDC.h"
#include "masks/manoeuvre/CAbDaten.h"

#include <array>

namespace abbiegen
{

/// Corners of the body at a moment, m: front on the inside, front on the outside, rear outside, rear inside.
std::array<CDPoint, 4> Umriss(const Vorgabe& vorgabe, const Lage& lage);

/// Draws into the whole of `dc`. Without a run it says so. A turn to the right is mirrored.
void ZeichnePlan(CDC& dc, const CAbDaten::Lauf* lauf, bool rechts, COLORREF fahrzeugfarbe);

} // namespace abbiegen
