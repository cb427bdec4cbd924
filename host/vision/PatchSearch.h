// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What surrounds a point of one frame is looked for in another one: where the point may be there, for a person to
// confirm. Followed blindly, such places drift away by more than any click is off.
#pragma once

#include "host/vision/VisionPoint.h"

namespace drawing
{
struct Bitmap;
}

/// Correlation below which two patches do not show the same: less than two thirds (0.8² = 0.64) of the brightness
/// differences of the one are those of the other.
inline constexpr double kLeastCorrelation = 0.8;

enum class PatchFault {
    none,
    noLibrary, ///< this build does not work on pictures, or they have no common size
    atEdge,    ///< the patch reaches beyond a frame, or the best place lies at the edge of what was searched
    plain,     ///< nothing around the point by which it could be known again
    unlike,    ///< no place correlates enough
    ambiguous  ///< another place correlates almost as well
};

struct PatchPlace {
    PatchFault fault = PatchFault::noLibrary;
    VisionPoint point{};      ///< where the point is seen, to parts of a pixel; only without a fault
    double correlation = 0.0; ///< of the best place, normalised: 1 is the same but for brightness and contrast
};

/// Looks for what lies around `point` of `before` within `reach` px of `expected` in `after`, each way. Normalised
/// cross-correlation of grey values (J. P. Lewis, "Fast normalized cross-correlation", 1995), the place between pixels
/// by a parabola each way.
PatchPlace FindPatch(const drawing::Bitmap& before, VisionPoint point, const drawing::Bitmap& after,
                     VisionPoint expected, double reach);
