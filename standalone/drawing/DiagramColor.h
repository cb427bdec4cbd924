// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Colours of diagrams that can be told apart. Blend and Legible stand in host/Charts.h: masks draw with them too.
#pragma once

#include "host/Charts.h"

namespace drawing
{

/// Contrast ratio of two colours, 1 (same lightness) to 21 (black on white), as WCAG 2 defines it.
double Contrast(COLORREF a, COLORREF b);

/// True when a reader would take the two for the same.
bool LookAlike(COLORREF a, COLORREF b);

} // namespace drawing
