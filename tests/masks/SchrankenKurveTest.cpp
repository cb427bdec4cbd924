// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/SchrankenKurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{

using namespace schranken;

std::vector<double> Fast(const Kurve& kurve, const std::vector<double>& s)
{
    std::vector<double> v(s.size(), -1.0);
    SucheGeschwindigkeiten(kurve, s, v);
    return v;
}

/// The search as it is defined, for many distances: steps of 0.001 km/h, the first speed within the window.
class Stepping
{
  public:
    explicit Stepping(const Kurve& kurve)
    {
        for (double v = 0.0; v <= kHoechstgeschwindigkeit; v += 0.001) {
            m_v.push_back(v);
            m_f.push_back(kurve(v));
        }
    }
    double operator()(double s) const
    {
        for (std::size_t i = 0; i < m_f.size(); ++i)
            if ((m_f[i] - s) * (m_f[i] - s) < 0.001)
                return m_v[i];
        return 0.0;
    }

  private:
    std::vector<double> m_v;
    std::vector<double> m_f;
};

/// A curve of one of the shapes the barriers have, with random parameters. Large shifts make w negative.
Kurve RandomCurve(std::mt19937_64& random, int shape)
{
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    Kurve kurve;
    kurve.d = between(-10.0, 40.0);
    kurve.shift = random() % 2 == 0 ? between(-250.0, 250.0) : between(-15.0, 15.0);
    switch (shape) {
    case 0:
        kurve.form = Kurve::Form::braking;
        kurve.p = between(-1.0, 12.0);
        break;
    case 1:
        kurve.form = Kurve::Form::deceleration;
        kurve.p = between(0.001, 20.0);
        break;
    case 2:
        kurve.c3 = between(-1e-4, 3e-4);
        kurve.c2 = between(-0.02, 0.02);
        kurve.c1 = between(-0.5, 0.7);
        break;
    case 3:
        kurve.c2 = between(-0.01, 0.01);
        kurve.c1 = between(-0.3, 0.3);
        break;
    default:
        kurve.c1 = between(-0.6, 0.6);
        break;
    }
    return kurve;
}

TEST(SchrankenKurveTest, FastSearchGivesTheDoublesOfTheStepwiseOne)
{
    std::mt19937_64 random(20240701);
    int found = 0;
    for (int run = 0; run < 250; ++run) {
        const Kurve kurve = RandomCurve(random, run % 5);
        const double largest = std::uniform_real_distribution<double>(0.0, 120.0)(random);
        std::vector<double> s;
        for (int i = 0; i < 200; ++i)
            s.push_back(i * largest / 199.0);
        const auto fast = Fast(kurve, s);
        const Stepping stepping(kurve);
        for (std::size_t i = static_cast<std::size_t>(run) % 29; i < s.size(); i += 29) {
            const double plain = stepping(s[i]);
            ASSERT_EQ(fast[i], plain) << "run " << run << " s " << s[i];
            found += plain > 0.0;
        }
    }
    EXPECT_GT(found, 400);
}

TEST(SchrankenKurveTest, LargeOffsetsLeaveThePlainSearchesDoubles)
{
    // Rounding swallows what the curve changes from sample to sample, up to all of it.
    std::mt19937_64 random(5);
    for (const double offset : {1e6, 1e9, 1e13, 1e17}) {
        for (int run = 0; run < 8; ++run) {
            Kurve kurve = RandomCurve(random, 1 + run % 4);
            kurve.d = offset;
            std::vector<double> s;
            for (int i = 0; i < 3; ++i)
                s.push_back(kurve(std::uniform_real_distribution<double>(0.0, 200.0)(random)));
            s.push_back(-offset);
            const auto fast = Fast(kurve, s);
            const Stepping stepping(kurve);
            for (std::size_t i = 0; i < s.size(); ++i)
                ASSERT_EQ(fast[i], stepping(s[i])) << offset << " run " << run;
        }
    }
}

TEST(SchrankenKurveTest, ValuesAroundTurningPointsAgree)
{
    // Minimum of the headlamp field's upper curve: at v = 1.51 km/h, f = -0.0041.
    Kurve kurve;
    kurve.c2 = 0.0018;
    kurve.c1 = -0.00544;
    const double lowest = -0.00544 * 0.00544 / (4.0 * 0.0018);
    std::vector<double> s;
    for (int i = -40; i <= 40; ++i)
        s.push_back(lowest - std::sqrt(kFenster) + i * 1e-9);
    const auto fast = Fast(kurve, s);
    const Stepping stepping(kurve);
    for (std::size_t i = 0; i < s.size(); ++i)
        EXPECT_EQ(fast[i], stepping(s[i])) << i;
    EXPECT_EQ(SucheGeschwindigkeit(kurve, s.back()), stepping(s.back()));
    EXPECT_EQ(fast.front(), 0.0) << "below the window";
    EXPECT_GT(fast.back(), 1.0) << "within it";
}

TEST(SchrankenKurveTest, TakesTheFirstSpeedOfTheWindowAndTheFallingBranchFirst)
{
    Kurve line;
    line.c1 = 0.5;
    const auto v = Fast(line, {10.0, 0.0, 200.0});
    // 0.5·v first comes within √0.001 of 10 at v = 19.936754…
    EXPECT_NEAR(v[0], 19.937, 1e-6);
    EXPECT_EQ(v[1], 0.0);
    EXPECT_EQ(v[2], 0.0) << "needs 400 km/h";

    Kurve parabola; // falls to -25 at v = 50, rises afterwards
    parabola.c2 = 0.01;
    parabola.c1 = -1.0;
    EXPECT_NEAR(Fast(parabola, {-9.0})[0], 10.0, 0.1);

    Kurve steep; // 0.001 km/h more adds over a metre: the window is jumped over
    steep.form = Kurve::Form::braking;
    steep.p = 0.0009;
    const double s = 100.6;
    EXPECT_EQ(Fast(steep, {s})[0], SucheGeschwindigkeit(steep, s));
}

TEST(SchrankenKurveTest, NothingThatIsNotANumberOrHugeBreaksTheSearch)
{
    Kurve kurve;
    kurve.form = Kurve::Form::braking;
    kurve.p = 0.0;
    EXPECT_EQ(Fast(kurve, {0.0})[0], 0.0);
    kurve.form = Kurve::Form::deceleration;
    kurve.shift = -100.0;
    EXPECT_EQ(Fast(kurve, {5.0})[0], 0.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    kurve = Kurve{};
    kurve.c1 = nan;
    EXPECT_EQ(Fast(kurve, {5.0})[0], 0.0);
    kurve.c1 = 0.5;
    EXPECT_EQ(Fast(kurve, {nan})[0], 0.0);
    EXPECT_EQ(Fast(kurve, {1e300})[0], 0.0);
}

} // namespace
