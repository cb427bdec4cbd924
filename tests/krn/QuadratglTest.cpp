// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Quadratgl.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{

constexpr double kUntouched = -77.25;

struct Roots {
    double x1 = kUntouched;
    double x2 = kUntouched;
    int count = -1;
};

Roots Solve(double a, double b, double c)
{
    Roots r;
    Quadratgl(a, b, c, r.x1, r.x2, r.count);
    return r;
}

TEST(Quadratgl, FactoredEquations)
{
    const Roots r = Solve(2.0, -2.0, -12.0); // 2·(x - 3)·(x + 2)
    EXPECT_EQ(r.count, 2);
    EXPECT_EQ(r.x1, 3.0);
    EXPECT_EQ(r.x2, -2.0);

    const Roots negated = Solve(-2.0, 2.0, 12.0);
    EXPECT_EQ(negated.x1, 3.0);
    EXPECT_EQ(negated.x2, -2.0);

    const Roots symmetric = Solve(1.0, 0.0, -2.0);
    EXPECT_EQ(symmetric.x1, std::sqrt(2.0));
    EXPECT_EQ(symmetric.x2, -std::sqrt(2.0));

    const Roots throughZero = Solve(4.0, 8.0, 0.0);
    EXPECT_EQ(throughZero.count, 2);
    EXPECT_EQ(throughZero.x1, 0.0);
    EXPECT_FALSE(std::signbit(throughZero.x1));
    EXPECT_EQ(throughZero.x2, -2.0);
}

TEST(Quadratgl, DegenerateEquationsLeaveMissingRootsUntouched)
{
    const Roots linear = Solve(0.0, 4.0, -6.0);
    EXPECT_EQ(linear.count, 1);
    EXPECT_EQ(linear.x1, 1.5);
    EXPECT_EQ(linear.x2, kUntouched);

    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const Roots& none : {Solve(0.0, 0.0, 5.0), Solve(0.0, 0.0, 0.0), Solve(1.0, 0.0, 1.0), Solve(nan, 1.0, 1.0),
                              Solve(1.0, nan, 1.0), Solve(0.0, 1.0, nan), Solve(infinity, 1.0, -1.0)}) {
        EXPECT_EQ(none.count, 0);
        EXPECT_EQ(none.x1, kUntouched);
        EXPECT_EQ(none.x2, kUntouched);
    }
}

TEST(Quadratgl, DoubleRootAndItsTolerance)
{
    for (const double scale : {1.0, 1e-120, 1e120}) {
        // x² - 2x + c has the discriminant 4·(1 - c), that is (1 - c)·b².
        const Roots exact = Solve(scale, -2.0 * scale, scale);
        EXPECT_EQ(exact.count, 2);
        EXPECT_EQ(exact.x1, 1.0);
        EXPECT_EQ(exact.x2, 1.0);

        const Roots within = Solve(scale, -2.0 * scale, scale * (1.0 + 0.9e-12));
        EXPECT_EQ(within.count, 2);
        EXPECT_EQ(within.x1, 1.0);
        EXPECT_EQ(within.x2, 1.0);

        EXPECT_EQ(Solve(scale, -2.0 * scale, scale * (1.0 + 1.1e-12)).count, 0);

        // The tolerance is for discriminants below zero only.
        const Roots apart = Solve(scale, -2.0 * scale, scale * (1.0 - 1e-12));
        EXPECT_NEAR(apart.x1 - 1.0, 1e-6, 1e-10);
        EXPECT_NEAR(apart.x2 - 1.0, -1e-6, 1e-10);
    }
    const Roots zero = Solve(3.0, 0.0, 0.0);
    EXPECT_EQ(zero.count, 2);
    EXPECT_EQ(zero.x1, 0.0);
    EXPECT_EQ(zero.x2, 0.0);
}

// An exact stop: the path that a vehicle needs at v and a, computed in doubles, is accepted for the same v and a.
TEST(Quadratgl, StoppingDistanceIsReached)
{
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> speed(1.0, 80.0);
    std::uniform_real_distribution<double> deceleration(0.5, 12.0);
    for (int i = 0; i < 10000; ++i) {
        const double v = speed(random);
        const double a = deceleration(random);
        const double path = v * v / (2.0 * a);
        const Roots r = Solve(a / 2.0, -v, path);
        ASSERT_EQ(r.count, 2) << v << ' ' << a;
        // The two roots part like the square root of the rounding.
        ASSERT_NEAR(r.x2, v / a, 1e-6 * v / a);
    }
}

TEST(Quadratgl, ExtremeCoefficients)
{
    constexpr double big = 1e300;
    constexpr double largest = std::numeric_limits<double>::max();
    const Roots scaled = Solve(2.0 * big, -2.0 * big, -12.0 * big);
    EXPECT_DOUBLE_EQ(scaled.x1, 3.0);
    EXPECT_DOUBLE_EQ(scaled.x2, -2.0);

    const Roots largestOfAll = Solve(largest, largest, -largest); // golden section
    EXPECT_DOUBLE_EQ(largestOfAll.x1, (std::sqrt(5.0) - 1.0) / 2.0);
    EXPECT_DOUBLE_EQ(largestOfAll.x2, -(std::sqrt(5.0) + 1.0) / 2.0);

    const Roots apart = Solve(1.0, -1e200, 1.0);
    EXPECT_DOUBLE_EQ(apart.x1, 1e200);
    EXPECT_DOUBLE_EQ(apart.x2, 1e-200);

    const Roots tiny = Solve(1e-310, 0.0, -4e-310);
    EXPECT_NEAR(tiny.x1, 2.0, 1e-12); // the coefficients themselves carry few digits
    EXPECT_EQ(tiny.x2, -tiny.x1);

    const Roots nearlyLinear = Solve(1e-300, 1e10, -1e10);
    EXPECT_DOUBLE_EQ(nearlyLinear.x1, 1.0);
    EXPECT_TRUE(std::isinf(nearlyLinear.x2)); // -1e310 is beyond the largest double
}

TEST(Quadratgl, AgreesWithExtendedPrecision)
{
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-60, 60);
    int solved = 0;
    for (int i = 0; i < 200000; ++i) {
        const double a = std::ldexp(mantissa(random), exponent(random));
        const double b = std::ldexp(mantissa(random), exponent(random));
        // Every third equation is close to a double root.
        const double c = i % 3 == 0 ? b * b / (4.0 * a) * (1.0 - 1e-3 * mantissa(random) * mantissa(random))
                                    : std::ldexp(mantissa(random), exponent(random));
        const long double bb = static_cast<long double>(b) * b;
        const long double discriminant = bb - 4.0L * a * c;
        if (a == 0.0 || std::abs(discriminant) < 1e-11L * bb) {
            continue;
        }
        const Roots r = Solve(a, b, c);
        if (discriminant < 0.0L) {
            ASSERT_EQ(r.count, 0) << a << ' ' << b << ' ' << c;
            continue;
        }
        ASSERT_EQ(r.count, 2) << a << ' ' << b << ' ' << c;
        ++solved;
        const long double q = -(b + std::copysign(std::sqrt(discriminant), static_cast<long double>(b))) / 2.0L;
        const long double x1 = std::max(q / a, c / q);
        const long double x2 = std::min(q / a, c / q);
        // What the reference itself loses in its discriminant, plus three units of the last place.
        const long double lost = 1e-18L * bb / std::abs(discriminant) + 3.0L * std::numeric_limits<double>::epsilon();
        ASSERT_LE(std::abs(r.x1 - x1), lost * std::abs(x1)) << a << ' ' << b << ' ' << c;
        ASSERT_LE(std::abs(r.x2 - x2), lost * std::abs(x2)) << a << ' ' << b << ' ' << c;
        ASSERT_GE(r.x1, r.x2);
    }
    EXPECT_GT(solved, 100000);
}

} // namespace
