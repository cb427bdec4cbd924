// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Path over time of both vehicles of the avoidability calculation, from V's reaction point on.
#pragma once

#include "host/CDC.h"

class CVermDat;

/// Draws into the whole of `dc`; nothing but the ground and a word when nothing has been calculated. `veraltet`: inputs
/// have changed since, which the drawing says.
void ZeichneVermeidbarkeit(CDC& dc, const CVermDat& dat, bool veraltet);
