// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Colours of diagrams that can be told apart.
#pragma once

#include "host/HostTypes.h"

namespace drawing
{

/// `part` 0 gives `from`, 1 gives `to`.
COLORREF Blend(COLORREF from, COLORREF to, double part);

/// Contrast ratio of two colours, 1 (same lightness) to 21 (black on white), as WCAG 2 defines it.
double Contrast(COLORREF a, COLORREF b);

/// The colour, shifted towards black or white as little as it takes to reach the contrast with the background.
COLORREF Legible(COLORREF color, COLORREF background, double contrast);

/// True when a reader would take the two for the same.
bool LookAlike(COLORREF a, COLORREF b);

} // namespace drawing
