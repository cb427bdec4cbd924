// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0

// The rasteriser asserts that its sums are exact to a hundredth of a pixel, which rounding can break. It checks every
// array access apart from that.
#define STBTT_assert(condition) static_cast<void>(0)
#define STB_TRUETYPE_IMPLEMENTATION
#include "drawing/Stb.h"
