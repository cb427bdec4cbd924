// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

namespace test
{

/// What a vehicle does when its deceleration follows a law of time.
struct Driven {
    double v;    ///< m/s at the end
    double path; ///< m
};

/// Drives from the speed v (m/s) on in small steps (Simpson's rule). `deceleration` gives m/s² at a time in s.
inline Driven Drive(double v, double duration, const std::function<double(double)>& deceleration, int steps = 16)
{
    const double h = duration / steps;
    double path = 0.0;
    for (int i = 0; i < steps; ++i) {
        const double t = i * h;
        const double a1 = deceleration(t), a2 = deceleration(t + h / 2.0), a4 = deceleration(t + h);
        path += h * v - h * h * (a1 + 2.0 * a2) / 6.0;
        v -= h * (a1 + 4.0 * a2 + a4) / 6.0;
    }
    return {v, path};
}

} // namespace test
