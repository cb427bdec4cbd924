// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/Kinematics.h"

#include "host/Physics.h"
#include "host/Quadratgl.h"

#include <cmath>

namespace
{

/// Constant term where the road leaves no acceleration for swerving: the equation has no positive root then.
constexpr double kKeinAusscheren = 100000000000.0;

constexpr int kViertelSchritte = 200;

} // namespace

void AusEinScheren(double curveRadius, double lateralOffset, double speed, double lateralAcceleration, double& length)
{
    // The radius that uses up the lateral acceleration, and what of it the road's bend leaves: 1/ρ = 1/r − 1/R.
    const double tightest = speed * speed / lateralAcceleration;
    double c = kKeinAusscheren;
    if (curveRadius == 0.0 || curveRadius - tightest > 0.0) {
        const double radius = curveRadius == 0.0 ? tightest : curveRadius * tightest / (curveRadius - tightest);
        const double product = kPi * lateralOffset * radius;
        c = -4.0 * (product * product);
    }
    // L⁴ + q²·L² = (2π·q·ρ)², solved for L².
    double x1 = 0.0;
    double x2 = 0.0;
    int count = 0;
    Quadratgl(1.0, lateralOffset * lateralOffset, c, x1, x2, count);
    length = count == 0 ? 0.0 : std::sqrt(x1);
}

void Wegintegral(double amplitudeParameter, double baseLength, double& pathLength, double& surplus)
{
    // The wave runs along the diagonal; its slope there at the start turns it back into the road's direction.
    const double wave = std::sqrt(amplitudeParameter * amplitudeParameter + baseLength * baseLength);
    const double k = 2.0 * kPi / wave;
    const double step = wave / (4 * kViertelSchritte);
    const double amplitude = -(amplitudeParameter / k) / baseLength;
    double x = 0.0;
    double before = 0.0;
    double sum = 0.0;
    // The first segment is flat and stands for the last one of the quarter, at the crest.
    for (int i = 0; i < kViertelSchritte; ++i) {
        const double y = amplitude * std::sin(k * x);
        sum += std::sqrt((y - before) * (y - before) + step * step);
        before = y;
        x += step;
    }
    pathLength = 4.0 * sum;
    surplus = pathLength - baseLength;
}
