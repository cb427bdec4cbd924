// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The two vehicles on the line of the road, from the sighting to the collision: reaction, threshold and braking, and
// the middle of the sight distance.
#pragma once

#include "host/CDC.h"
#include "masks/manoeuvre/CHalbeSichtDat.h"

/// The colours are the vehicles'. An old drawing, one that does not belong to the inputs, says so.
void ZeichneHalbeSicht(CDC& dc, const CHalbeSichtDat& dat, COLORREF farbeA, COLORREF farbeB, bool alt);
