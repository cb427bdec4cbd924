// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Quadratgl.h"

#include <algorithm>
#include <cmath>

namespace
{

/// A discriminant down to this part of -b² is the rounding of an exact zero.
constexpr double kZeroDiscriminant = 1e-12;

/// value · 2^exponent with |value| in [0.5, 1), or 0: no product of coefficients overflows or vanishes.
struct Scaled {
    double value = 0.0;
    int exponent = 0;
};

Scaled Split(double number)
{
    Scaled scaled;
    scaled.value = std::frexp(number, &scaled.exponent);
    return scaled;
}

/// x·y - z·w, rounded as the difference, not as the products.
double DifferenceOfProducts(double x, double y, double z, double w)
{
    const double zw = z * w;
    const double lost = std::fma(-z, w, zw);
    return std::fma(x, y, -zw) + lost;
}

} // namespace

void Quadratgl(double a, double b, double c, double& x1, double& x2, int& count)
{
    count = 0;
    if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c))
        return;
    if (a == 0.0) {
        if (b != 0.0) {
            x1 = -c / b + 0.0; // + 0.0: no negative zero
            count = 1;
        }
        return;
    }
    const Scaled sa = Split(a);
    const Scaled sb = Split(b);
    const Scaled sc = Split(c);

    // h = b/2 and D/4 = h² - a·c, h in units of 2^unit and D/4 in units of its square.
    const int halfOfB = sb.exponent - 1;
    const int rootOfAC = (sa.exponent + sc.exponent + 1) >> 1;
    const int unit = b == 0.0 ? rootOfAC : c == 0.0 ? halfOfB : std::max(halfOfB, rootOfAC);
    const double h = std::ldexp(sb.value, halfOfB - unit);
    const double aScaled = std::ldexp(sa.value, sa.exponent + sc.exponent - 2 * unit);
    const double discriminant = DifferenceOfProducts(h, h, aScaled, sc.value);
    if (discriminant < -kZeroDiscriminant * h * h)
        return;
    count = 2;
    if (discriminant <= 0.0) {
        x1 = x2 = std::ldexp(-h / sa.value, unit - sa.exponent) + 0.0;
        return;
    }
    // q = -(b + sign(b)·√D)/2 adds magnitudes; the roots are q/a and c/q.
    const double q = -(h + std::copysign(std::sqrt(discriminant), h));
    const double outer = std::ldexp(q / sa.value, unit - sa.exponent);
    const double inner = b == 0.0 ? -outer : std::ldexp(sc.value / q, sc.exponent - unit) + 0.0;
    x1 = std::max(outer, inner);
    x2 = std::min(outer, inner);
}
