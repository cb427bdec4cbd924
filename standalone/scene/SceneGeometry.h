// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Plane geometry of the scene.
#pragma once

#include "host/CDPoint.h"
#include "host/Physics.h"

#include <cmath>

namespace scene
{

/// Unit vector at an angle (rad, counter-clockwise from x).
inline CDPoint Direction(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

inline double Dot(CDPoint a, CDPoint b)
{
    return a.x * b.x + a.y * b.y;
}

inline double Distance(CDPoint a, CDPoint b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

} // namespace scene
