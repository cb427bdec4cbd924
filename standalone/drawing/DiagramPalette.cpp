// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DiagramPalette.h"

namespace drawing
{

DiagramPalette DiagramPalette::Light()
{
    return {RGB(255, 255, 255), RGB(255, 255, 255), RGB(226, 229, 234),
            RGB(96, 102, 112),  RGB(28, 31, 36),    RGB(88, 94, 104)};
}

DiagramPalette DiagramPalette::Dark()
{
    return {RGB(30, 32, 37),    RGB(35, 38, 44),    RGB(58, 62, 70),
            RGB(150, 156, 166), RGB(232, 234, 238), RGB(172, 178, 188)};
}

} // namespace drawing
