// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How well what a user clicks and measures is known: standard uncertainties.
#pragma once

namespace vision
{

inline constexpr double kClickUncertainty = 1.0;     ///< px, of the four points and of followed points
inline constexpr double kDistanceUncertainty = 0.02; ///< m, of a distance taken by tape
inline constexpr double kHeightUncertainty = 0.15;   ///< m, of a box's centre above the road
/// s, of a time that a file stores to the millisecond: 1 ms / √12.
inline constexpr double kTimeUncertainty = 0.00029;

} // namespace vision
