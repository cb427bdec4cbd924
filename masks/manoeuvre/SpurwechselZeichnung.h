// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Plan of a lane change: the way of the rear axle and the vehicle at the start, at the intermediate position and at the
// end. The road is drawn straight, whatever its bend.
#pragma once

#include "masks/manoeuvre/CSpurVorDat.h"

#include "host/CDC.h"

/// `farbe` is the vehicle's. An old plan, one that does not belong to the inputs, says so.
void ZeichneSpurwechsel(CDC& dc, const CSpurVorDat& dat, COLORREF farbe, bool alt);
