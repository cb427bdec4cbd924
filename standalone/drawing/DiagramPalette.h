// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The colours a diagram is drawn in, beside those of its curves.
#pragma once

#include "host/HostTypes.h"

namespace drawing
{

struct DiagramPalette {
    COLORREF background;
    COLORREF plot; ///< inside the axes
    COLORREF grid;
    COLORREF axis;
    COLORREF text;
    COLORREF quietText; ///< numbers at the axes

    static DiagramPalette Light();
    static DiagramPalette Dark();
};

} // namespace drawing
