// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The single-header library for fonts and filled outlines. Include it through this file only.
#pragma once

#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>

// The rasteriser's outlines get float coordinates in place of 16-bit integers, so that positions between pixels
// survive. The changed type must not meet another copy of the library in the same process: the symbols stay hidden.
#define stbtt_vertex_type float
struct StbOutlineVertex {
    stbtt_vertex_type x, y, cx, cy, cx1, cy1;
    unsigned char type, padding;
};
#define stbtt_vertex StbOutlineVertex

#ifdef __ELF__
#pragma GCC visibility push(hidden)
#endif
#include <stb/stb_truetype.h>
#ifdef __ELF__
#pragma GCC visibility pop
#endif
