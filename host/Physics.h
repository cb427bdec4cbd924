// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

inline constexpr double kPi = 3.141592653589793;
/// Standard gravity as the masks use it, m/s².
inline constexpr double kErdbeschleunigung = 9.81;
/// km/h per m/s.
inline constexpr double kKmhProMs = 3.6;
/// Places in the scene are in cm.
inline constexpr double kCmProM = 100.0;
inline constexpr double kMProCm = 0.01;
inline constexpr double kRadProGrad = kPi / 180.0;
