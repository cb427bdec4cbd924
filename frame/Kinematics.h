// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Kinematics that masks share and that other modules call. C linkage, so that the exported names are the same for
// every compiler. SI units unless said otherwise; none of the functions reports an error.
#pragma once

#include "frame/Export.h"

extern "C" {

/// Length along the road of swerving out or in by `lateralOffset` as a full sine wave whose sharpest bend just uses
/// up `lateralAcceleration` at `speed`. `curveRadius` is the road's, 0 for a straight one; what its bend takes of the
/// acceleration is not left for swerving. `length` is 0 where no equation's root is real, not-a-number where the root
/// is negative.
RUVMOD_API void AusEinScheren(double curveRadius, double lateralOffset, double speed, double lateralAcceleration,
                              double& length);

/// Arc length of one full sine wave that covers the offset `amplitudeParameter` over `baseLength`, and by how much it
/// exceeds the base length. Sampled in 200 steps of a quarter wave. A base length of 0 gives infinities or
/// not-a-number.
RUVMOD_API void Wegintegral(double amplitudeParameter, double baseLength, double& pathLength, double& surplus);
}
