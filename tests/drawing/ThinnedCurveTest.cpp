// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/ThinnedCurve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using Points = std::vector<CDPoint>;

double HeightAt(const Points& curve, double x)
{
    const auto right =
        std::find_if(curve.begin() + 1, curve.end() - 1, [x](const CDPoint& point) { return point.x >= x; });
    const CDPoint a = *(right - 1);
    const double part = (x - a.x) / (right->x - a.x);
    return a.y + part * (right->y - a.y);
}

TEST(ThinnedCurve, KeepsTheCurveWithinTheToleranceAndFewPointsOfIt)
{
    Points wave;
    for (int i = 0; i <= 2000; ++i)
        wave.push_back({0.5 * i, 100.0 * std::sin(0.01 * i) + 3.0 * std::cos(0.07 * i)});
    for (const double tolerance : {0.05, 1.0}) {
        const Points thinned = drawing::ThinnedCurve(wave, tolerance);
        for (const CDPoint& point : wave)
            ASSERT_NEAR(HeightAt(thinned, point.x), point.y, tolerance * 1.000001) << point.x;
        EXPECT_LT(thinned.size(), wave.size() / 4) << tolerance;
        EXPECT_EQ(thinned.front(), wave.front());
        EXPECT_EQ(thinned.back(), wave.back());
    }
    EXPECT_GT(drawing::ThinnedCurve(wave, 0.05).size(), drawing::ThinnedCurve(wave, 1.0).size());
}

TEST(ThinnedCurve, KeepsCornersJumpsAndWhatIsShort)
{
    const Points straight{{0, 0}, {1, 2}, {2, 4}, {5, 10}};
    EXPECT_EQ(drawing::ThinnedCurve(straight, 0.05), (Points{{0, 0}, {5, 10}}));
    const Points corner{{0, 0}, {1, 0}, {2, 0}, {3, 1}, {4, 2}};
    EXPECT_EQ(drawing::ThinnedCurve(corner, 0.05), (Points{{0, 0}, {2, 0}, {4, 2}}));
    const Points jump{{0, 0}, {1, 0}, {2, 0}, {2, 0}, {2, 9}, {3, 9}, {4, 9}};
    EXPECT_EQ(drawing::ThinnedCurve(jump, 0.05), (Points{{0, 0}, {2, 0}, {2, 9}, {4, 9}}));
    EXPECT_EQ(drawing::ThinnedCurve({}, 0.05), Points{});
    EXPECT_EQ(drawing::ThinnedCurve({{1, 1}}, 0.05), (Points{{1, 1}}));
    EXPECT_EQ(drawing::ThinnedCurve({{1, 1}, {1, 5}}, 0.05), (Points{{1, 1}, {1, 5}}));
}

} // namespace
