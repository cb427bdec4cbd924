// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Calibrations of known cameras over known roads.
#include "tests/vision/RoadCamera.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace
{

using test::Calibrated;
using test::InputOf;
using test::kLane;
using test::RoadCamera;
using test::RoadQuad;

constexpr RoadQuad kTrapez{{{-2.0, 40.0}, {3.5, 40.0}, {-3.5, 18.0}, {3.5, 18.0}}};
constexpr RoadQuad kLeft{{{-5.0, 40.0}, {2.0, 40.0}, {-3.5, 18.0}, {3.5, 18.0}}};
constexpr RoadQuad kRight{{{-2.0, 40.0}, {5.0, 40.0}, {-3.5, 18.0}, {3.5, 18.0}}};
constexpr RoadQuad kAny{{{-2.0, 41.0}, {5.0, 38.0}, {-3.5, 18.0}, {3.1, 19.5}}};

/// A point of the road, seen and rectified, lies where it is: distances to the corners are the true ones.
/// The conditions of a free shape weigh little, but they do: `near` in m.
void ExpectTrue(const CPerspectiveRectifier& road, const RoadCamera& camera, const RoadQuad& quad, double near = 1e-6)
{
    for (const auto& [x, y] : {std::pair{0.0, 25.0}, std::pair{-6.0, 12.0}, std::pair{4.0, 90.0}}) {
        const auto seen = road.RectifyPoint(camera.See(x, y));
        ASSERT_TRUE(seen);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(Distance(*seen, road.RoadCorners()[i]) * kRectifiedPixel,
                        std::hypot(x - quad[i].first, y - quad[i].second), near);
        EXPECT_NEAR(Distance(road.PicturePoint(*seen), camera.See(x, y)), 0.0, 1e-6);
    }
}

TEST(PerspectiveRectifier, FindsRoadFocalLengthAndHeight)
{
    struct {
        RoadQuad quad;
        RectifyPattern pattern;
        bool strict;
    } const kShapes[] = {{kLane, RectifyPattern::square, true},    {kTrapez, RectifyPattern::trapez, true},
                         {kLeft, RectifyPattern::rhombusL, true},  {kRight, RectifyPattern::rhombusR, true},
                         {kAny, RectifyPattern::square, false},    {kLane, RectifyPattern::trapez, false},
                         {kLeft, RectifyPattern::rhombusL, false}, {kRight, RectifyPattern::rhombusR, false}};
    for (const auto& shape : kShapes)
        for (const RoadCamera& camera : {RoadCamera{}, RoadCamera{1280, 720, 900.0, 2.6, 7.0, 40.0},
                                         RoadCamera{1920, 1080, 1100.0, 9.0, 30.0, -30.0}}) {
            RoadInput input = InputOf(camera, shape.quad);
            input.pattern = shape.pattern;
            input.strict = shape.strict;
            const CPerspectiveRectifier road = Calibrated(input);
            ASSERT_EQ(road.Fault(), RoadFault::none) << Explain(road.Fault());
            EXPECT_EQ(road.GetRateRealDistToRectifiedPixels(), 0.05);
            ASSERT_TRUE(road.Focal() && road.CameraHeight());
            EXPECT_NEAR(*road.Focal(), camera.focal, 1e-3 * camera.focal);
            EXPECT_NEAR(*road.CameraHeight(), camera.above, 1e-3 * camera.above);
            for (const auto& residual : road.Residuals())
                EXPECT_NEAR(residual.value_or(1.0), 0.0, shape.strict ? 1e-6 : 1e-4);
            ExpectTrue(road, camera, shape.quad, shape.strict ? 1e-6 : 1e-3);
        }
}

/// Fewer distances than the shape has numbers do; the pattern decides the rest only where it is free.
TEST(PerspectiveRectifier, DistancesThatFixTheShapeAreEnough)
{
    struct {
        RoadQuad quad;
        RectifyPattern pattern;
        bool strict;
        RoadDistances given; // 1: measured
    } const kCases[] = {
        {kLane, RectifyPattern::square, true, {1, 1, 0, 0, 0, 0}},
        {kLane, RectifyPattern::square, true, {1, 0, 0, 0, 1, 0}},
        {kLeft, RectifyPattern::rhombusL, true, {1, 1, 0, 0, 0, 1}},
        {kTrapez, RectifyPattern::trapez, true, {1, 1, 1, 1, 0, 0}},
        {kAny, RectifyPattern::square, false, {1, 1, 1, 1, 1, 0}},
        {kLane, RectifyPattern::square, false, {1, 1, 0, 1, 0, 0}},
        {kTrapez, RectifyPattern::trapez, false, {1, 1, 1, 1, 0, 0}},
        {kRight, RectifyPattern::rhombusR, false, {1, 1, 0, 0, 1, 0}},
    };
    for (const auto& c : kCases) {
        const RoadCamera camera;
        RoadInput input = InputOf(camera, c.quad);
        input.pattern = c.pattern;
        input.strict = c.strict;
        for (std::size_t i = 0; i < 6; ++i)
            input.distances[i] *= c.given[i];
        const CPerspectiveRectifier road = Calibrated(input);
        ASSERT_EQ(road.Fault(), RoadFault::none) << &c - kCases;
        ExpectTrue(road, camera, c.quad, c.strict ? 1e-6 : 1e-3);
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_EQ(road.Residuals()[i].has_value(), c.given[i] != 0);
    }
}

/// A rectangle between sides of 6.9 m and 7.1 m, and of 25.0 m and 25.04 m, is 7.0 m by 25.02 m.
TEST(PerspectiveRectifier, ContradictingDistancesAreBalancedAndShown)
{
    RoadInput input = InputOf({}, kLane);
    input.distances = {6.9, 25.0, 7.1, 25.04, 0.0, 0.0};
    const CPerspectiveRectifier road = Calibrated(input);
    ASSERT_EQ(road.Fault(), RoadFault::none);
    const std::array<double, 4> expected{-0.1, -0.02, 0.1, 0.02};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(*road.Residuals()[i], expected[i], 1e-9);
    EXPECT_TRUE(CPerspectiveRectifier::IsSuspicious(*road.Residuals()[0]));
    EXPECT_FALSE(CPerspectiveRectifier::IsSuspicious(*road.Residuals()[1]));
    EXPECT_FALSE(CPerspectiveRectifier::IsSuspicious(0.0599));
    EXPECT_TRUE(CPerspectiveRectifier::IsSuspicious(-0.0601));
}

TEST(PerspectiveRectifier, SaysWhyItIsNotCalibrated)
{
    const RoadInput good = InputOf({}, kLane);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto fault = [&](auto change) {
        RoadInput input = good;
        change(input);
        const CPerspectiveRectifier road = Calibrated(input);
        EXPECT_EQ(road.GetRateRealDistToRectifiedPixels(), road.Fault() == RoadFault::none ? 0.05 : 0.0);
        EXPECT_EQ(Explain(road.Fault()).empty(), road.Fault() == RoadFault::none);
        EXPECT_EQ(road.RectifyPoint({900.0, 800.0}).has_value(), road.Fault() == RoadFault::none);
        return road.Fault();
    };
    const auto only = [](RoadInput& input, RoadDistances distances, RectifyPattern pattern, bool strict) {
        input.distances = distances;
        input.pattern = pattern;
        input.strict = strict;
    };
    using P = RectifyPattern;
    EXPECT_EQ(fault([](RoadInput&) {}), RoadFault::none);
    EXPECT_EQ(fault([](RoadInput& i) { i.width = 0; }), RoadFault::noPicture);
    EXPECT_EQ(fault([](RoadInput& i) { std::swap(i.points[0], i.points[1]); }), RoadFault::notConvex);
    EXPECT_EQ(fault([](RoadInput& i) { std::swap(i.points[0], i.points[2]); }), RoadFault::notConvex);
    EXPECT_EQ(fault([](RoadInput& i) {
                  std::swap(i.points[0], i.points[3]);
                  std::swap(i.points[1], i.points[2]);
              }),
              RoadFault::notConvex); // upside down
    EXPECT_EQ(fault([](RoadInput& i) { i.points[0] = i.points[1]; }), RoadFault::notConvex);
    EXPECT_EQ(fault([](RoadInput& i) {
                  i.points[0] = {i.points[3].x - 5.0, i.points[3].y - 5.0};
              }),
              RoadFault::notConvex);
    EXPECT_EQ(fault([](RoadInput& i) { i.distances[3] = -25.0; }), RoadFault::badDistance);
    EXPECT_EQ(fault([&](RoadInput& i) { i.distances[3] = nan; }), RoadFault::badDistance);
    EXPECT_EQ(fault([](RoadInput& i) { i.distances = {}; }), RoadFault::missingDistances);
    // Both widths say nothing about the depth; four sides nothing about the angle of a parallelogram.
    EXPECT_EQ(fault([&](RoadInput& i) { only(i, {7, 0, 7, 0, 0, 0}, P::square, true); }), RoadFault::missingDistances);
    EXPECT_EQ(fault([&](RoadInput& i) {
                  only(i, {7, 25, 7, 25, 0, 0}, P::rhombusL, true);
              }),
              RoadFault::missingDistances);
    EXPECT_EQ(fault([&](RoadInput& i) {
                  only(i, {7, 25, 7, 25, 0, 0}, P::trapez, true);
              }),
              RoadFault::missingDistances);
    EXPECT_EQ(fault([&](RoadInput& i) {
                  only(i, {7, 25, 7, 25, 0, 0}, P::trapez, false);
              }),
              RoadFault::missingDistances);
    EXPECT_EQ(fault([&](RoadInput& i) { only(i, {7, 25, 7, 25, 0, 0}, P::square, false); }), RoadFault::none);
    EXPECT_EQ(fault([&](RoadInput& i) { only(i, {1, 5, 100, 5, 0, 0}, P::trapez, true); }), RoadFault::contradiction);
    // Left means that the diagonal P2 P3 is the shorter one.
    EXPECT_EQ(fault([&](RoadInput& i) {
                  only(i, {7, 25, 7, 25, 24, 28}, P::rhombusL, true);
              }),
              RoadFault::leansOtherWay);
    EXPECT_EQ(fault([&](RoadInput& i) { only(i, {7, 25, 7, 25, 24, 28}, P::rhombusR, true); }), RoadFault::none);
    EXPECT_EQ(fault([&](RoadInput& i) { only(i, {7, 25, 7, 25, 28, 24}, P::rhombusL, false); }), RoadFault::none);
    EXPECT_EQ(fault([&](RoadInput& i) {
                  only(i, {7, 25, 7, 25, 28, 24}, P::rhombusR, false);
              }),
              RoadFault::leansOtherWay);
}

TEST(PerspectiveRectifier, BeyondTheHorizonIsNoPoint)
{
    // The horizon of a camera that looks down by α lies f·tan α above the picture's centre.
    const RoadCamera camera;
    const CPerspectiveRectifier road = Calibrated(InputOf(camera, kLane));
    const double horizon = 540.0 - camera.focal * std::tan(12.0 * std::numbers::pi / 180.0);
    EXPECT_FALSE(road.RectifyPoint({960.0, horizon - 0.01}));
    EXPECT_FALSE(road.PointSpread({960.0, horizon - 50.0}));
    EXPECT_TRUE(road.RectifyPoint({960.0, horizon + 0.01}));
    const auto points = road.RectifyPoints({{960.0, 0.0}, {960.0, 900.0}});
    EXPECT_FALSE(points[0]);
    EXPECT_TRUE(points[1]);
}

/// Points are rectified two at a time: however many there are, each gets the very bits that it gets alone.
TEST(PerspectiveRectifier, ManyPointsAreRectifiedAsEachAlone)
{
    for (const double strength : {0.0, 30.0}) {
        RoadCamera camera;
        camera.strength = strength;
        const CPerspectiveRectifier road = Calibrated(InputOf(camera, kLane));
        ASSERT_EQ(road.Fault(), RoadFault::none);
        std::mt19937 random(3);
        std::uniform_real_distribution<double> x(-200.0, 2120.0);
        std::uniform_real_distribution<double> y(0.0, 1080.0); // some beyond the horizon
        std::vector<VisionPoint> raw;
        for (int i = 0; i < 501; ++i) {
            raw.push_back({x(random), y(random)});
            raw[raw.size() / 2].x = i % 9 == 0 ? std::nan("") : raw[raw.size() / 2].x;
            std::vector<VisionPoint> places(raw.size());
            road.RectifyPoints(raw, places);
            for (const std::size_t k : {std::size_t{0}, raw.size() / 2, raw.size() - 1}) {
                const auto alone = road.RectifyPoint(raw[k]);
                ASSERT_EQ(alone.has_value(), !std::isnan(places[k].x)) << i;
                if (alone) {
                    ASSERT_EQ(alone->x, places[k].x) << i;
                    ASSERT_EQ(alone->y, places[k].y) << i;
                }
            }
        }
    }
}

/// With the camera's axis on the horizon, which goes through the picture's centre, everything stays finite.
TEST(PerspectiveRectifier, AHorizonThroughTheCentreDoesNotMatter)
{
    RoadCamera camera;
    camera.down = 0.0;
    const CPerspectiveRectifier road = Calibrated(InputOf(camera, kLane));
    ASSERT_EQ(road.Fault(), RoadFault::none);
    ExpectTrue(road, camera, kLane);
}

TEST(PerspectiveRectifier, SpreadIsTheDerivative)
{
    for (const double strength : {0.0, 40.0, -60.0}) {
        RoadCamera camera;
        camera.strength = strength;
        const CPerspectiveRectifier road = Calibrated(InputOf(camera, kLane));
        for (const VisionPoint p : {VisionPoint{700.0, 900.0}, VisionPoint{1500.0, 600.0}}) {
            constexpr double kStep = 1e-3;
            const auto at = [&](double dx, double dy) { return road.RectifyPoint({p.x + dx, p.y + dy}).value(); };
            const VisionPoint byX = at(kStep, 0.0) - at(-kStep, 0.0);
            const VisionPoint byY = at(0.0, kStep) - at(0.0, -kStep);
            const auto spread = road.PointSpread(p).value();
            const double unit = 4.0 * kStep * kStep;
            EXPECT_NEAR(spread.xx, (byX.x * byX.x + byY.x * byY.x) / unit, 1e-5 * spread.xx);
            EXPECT_NEAR(spread.xy, (byX.x * byX.y + byY.x * byY.y) / unit, 1e-5 * (spread.xx + spread.yy));
            EXPECT_NEAR(spread.yy, (byX.y * byX.y + byY.y * byY.y) / unit, 1e-5 * spread.yy);
        }
    }
}

TEST(PerspectiveRectifier, PointsAreSetMovedAndFound)
{
    CPerspectiveRectifier road = Calibrated(InputOf({}, kLane));
    const VisionPoint p = *road.GetPoints()[2];
    EXPECT_EQ(road.FindNearPoint({p.x + 3.0, p.y + 4.0}, 5.0), 2);
    EXPECT_EQ(road.FindNearPoint({p.x + 3.0, p.y + 4.0}, 4.9), -1);
    EXPECT_EQ(road.UpdatePoint(4, p), 0);
    EXPECT_EQ(road.UpdatePoint(0, {std::nan(""), 0.0}), 0);
    EXPECT_EQ(road.Fault(), RoadFault::none);
    EXPECT_NE(road.UpdatePoint(2, {p.x + 1.0, p.y}), 0);
    EXPECT_EQ(road.Fault(), RoadFault::noPoints); // an old calibration does not stand beside a new point
    road.Reset();
    EXPECT_EQ(road.FindNearPoint(p, 1e9), -1);
    EXPECT_EQ(road.EstimateRectificationMap(InputOf({}, kLane)), 0);
}

TEST(DistortionRectifier, StraightensAndBendsBack)
{
    CDistortionRectifier lens;
    EXPECT_EQ(lens.SetCameraParam(1920, 1080, 101.0), 0);
    EXPECT_EQ(lens.SetCameraParam(0, 1080, 10.0), 0);
    for (const double strength : {-100.0, -30.0, 0.0, 55.0, 100.0}) {
        ASSERT_NE(lens.SetCameraParam(1920, 1080, strength), 0);
        for (const VisionPoint p : {VisionPoint{0.0, 0.0}, VisionPoint{960.0, 540.0}, VisionPoint{1700.0, 200.0}})
            EXPECT_NEAR(Distance(lens.Bend(lens.Straighten(p)), p), 0.0, 1e-9);
    }
    // λ = -0.4: the corner moves to 1/0.6 of its distance from the centre.
    const VisionPoint corner = lens.Straighten({0.0, 0.0});
    EXPECT_NEAR(corner.x, 960.0 - 960.0 / 0.6, 1e-9);
    EXPECT_NEAR(corner.y, 540.0 - 540.0 / 0.6, 1e-9);
}

/// Points along edges of the road that are straight in nature, clicked to a pixel: the strength within two standard
/// uncertainties in about 95 of 100 draws, and as large as the scatter.
TEST(DistortionRectifier, TheStrengthFollowsFromStraightEdges)
{
    RoadCamera camera;
    camera.strength = 35.0;
    std::mt19937 random(4);
    std::normal_distribution<double> noise(0.0, 1.0);
    const auto edges = [&](double sigma) {
        std::vector<std::vector<VisionPoint>> lines(3);
        for (int i = 0; i < 8; ++i) {
            lines[0].push_back(camera.See(-3.5, 10.0 + 5.0 * i));
            lines[1].push_back(camera.See(7.0, 12.0 + 5.0 * i));
            lines[2].push_back(camera.See(-8.0 + 2.2 * i, 14.0));
        }
        for (auto& line : lines)
            for (VisionPoint& p : line)
                p = {p.x + sigma * noise(random), p.y + sigma * noise(random)};
        return lines;
    };
    const auto exact = EstimateLens(1920, 1080, edges(0.0));
    ASSERT_TRUE(exact);
    EXPECT_NEAR(exact->strength, 35.0, 1e-3);
    int within = 0;
    double claimed = 0.0;
    double squares = 0.0;
    constexpr int kDraws = 200;
    for (int i = 0; i < kDraws; ++i) {
        const auto estimate = EstimateLens(1920, 1080, edges(1.0));
        ASSERT_TRUE(estimate);
        claimed += estimate->uncertainty / kDraws;
        squares += std::pow(estimate->strength - 35.0, 2.0) / kDraws;
        within += std::fabs(estimate->strength - 35.0) <= 2.0 * estimate->uncertainty ? 1 : 0;
    }
    EXPECT_GE(within, kDraws * 90 / 100);
    EXPECT_LE(within, kDraws * 99 / 100);
    EXPECT_NEAR(claimed, std::sqrt(squares), 0.12 * claimed);
    EXPECT_FALSE(EstimateLens(1920, 1080, {}));
    EXPECT_FALSE(EstimateLens(1920, 1080, std::vector<std::vector<VisionPoint>>{{{0, 0}, {9, 9}}}));
    // An edge through the picture's centre stays straight with any lens.
    EXPECT_FALSE(EstimateLens(1920, 1080, std::vector<std::vector<VisionPoint>>{{{0, 540}, {960, 540}, {1920, 540}}}));
}

} // namespace
