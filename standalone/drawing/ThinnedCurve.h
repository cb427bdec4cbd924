// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CDPoint.h"

#include <vector>

namespace drawing
{

/// Leaves out the points of a curve that lie on the line between those that stay, but for `tolerance` up or down. The
/// points go to the right; where they turn back or go straight up or down, all stay. First and last stay.
std::vector<CDPoint> ThinnedCurve(const std::vector<CDPoint>& points, double tolerance);

} // namespace drawing
