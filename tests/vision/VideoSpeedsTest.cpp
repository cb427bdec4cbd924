// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Vehicles of known motion before a known camera.
#include "host/vision/VideoSpeeds.h"
#include "tests/cli/CliProgram.h"
#include "tests/vision/RoadCamera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace
{

using test::Calibrated;
using test::InputOf;
using test::kLane;
using test::RoadCamera;

constexpr double kKmh = 3.6;

/// A vehicle on x = 1.5 m, y(t) from the camera, points z above the road, seen at these times with noise of sigma px.
struct Drive {
    std::function<double(double)> y;
    double z = 0.0;
    double sigma = 0.0;
    std::uint32_t seed = 1;

    std::vector<VideoEntry> At(const std::vector<double>& times, const RoadCamera& camera = {}) const
    {
        std::mt19937 random(seed);
        std::normal_distribution<double> noise(0.0, 1.0);
        std::vector<VideoEntry> entries;
        for (const double t : times) {
            VisionPoint p = camera.See(1.5, y(t), z);
            if (sigma > 0.0)
                p = {p.x + sigma * noise(random), p.y + sigma * noise(random)};
            entries.push_back({t, static_cast<int>(entries.size()), p, false});
        }
        return entries;
    }
};

Drive Steady(double kmh, double from = 60.0)
{
    return {[=](double t) { return from - kmh / kKmh * t; }};
}

std::vector<double> Even(int count, double step)
{
    std::vector<double> times;
    for (int i = 0; i < count; ++i)
        times.push_back(i * step);
    return times;
}

std::vector<double> Uneven(int count)
{
    std::mt19937 random(11);
    std::vector<double> times{0.0};
    while (static_cast<int>(times.size()) < count)
        times.push_back(times.back() + 0.02 + 0.04 * static_cast<double>(random() % 1000U) / 1000.0);
    return times;
}

VideoSpeeds Speeds(const RoadInput& input, SpeedInput speed = {})
{
    return {Calibrated(input), speed};
}

TEST(VideoSpeeds, SixtyIsSixtyAtAnyRate)
{
    const VideoSpeeds speeds = Speeds(InputOf({}, kLane));
    for (const auto& times : {Even(50, 0.04), Uneven(50)}) {
        const auto course = speeds.Of(Steady(60.0).At(times));
        ASSERT_EQ(course.size(), 48U); // from the third entry on
        for (std::size_t i = 0; i < course.size(); ++i) {
            EXPECT_NEAR(course[i].speed, 60.0, 1e-6);
            EXPECT_NEAR(course[i].smooth.value_or(0.0), 60.0, 1e-6);
            // Between the last entry and the seventh from the end, while there are fewer to the first.
            const std::size_t newer = i + 2;
            const std::size_t older = newer - std::min<std::size_t>(newer, 6);
            EXPECT_DOUBLE_EQ(course[i].time, (times[older] + times[newer]) / 2.0);
            EXPECT_EQ(course[i].frame, static_cast<int>(newer));
        }
        const auto mean = speeds.Mean(Steady(60.0).At(times));
        ASSERT_TRUE(mean);
        EXPECT_NEAR(mean->speed, 60.0, 1e-6);
        EXPECT_EQ(mean->kind, MeanKind::line);
    }
}

/// An entry that the calibration has no place for counts as missing: from -7 on to -6.
TEST(VideoSpeeds, EntriesWithoutAPlaceOnTheRoadAreLeftOut)
{
    auto entries = Steady(60.0).At(Even(9, 0.04));
    entries[1].point = {960.0, 10.0};
    const auto course = Speeds(InputOf({}, kLane)).Of(entries);
    ASSERT_EQ(course.size(), 7U);
    EXPECT_DOUBLE_EQ(course[4].time, 0.12); // of the entries 0 and 6
    EXPECT_DOUBLE_EQ(course[5].time, 0.18); // 2 and 7, because 1 is none
    for (const VideoSpeed& speed : course)
        EXPECT_NEAR(speed.speed, 60.0, 1e-6);
}

/// Braking at 7.5 m/s²: the mean over an interval is the speed at its middle, exactly.
TEST(VideoSpeeds, ABrakingVehicleIsReadAtTheMiddleOfTheInterval)
{
    constexpr double kStart = 60.0 / kKmh;
    const Drive drive{[](double t) { return 55.0 - kStart * t + 7.5 * t * t / 2.0; }};
    const auto times = Uneven(40);
    for (const VideoSpeed& speed : Speeds(InputOf({}, kLane)).Of(drive.At(times))) {
        const double truth = (kStart - 7.5 * speed.time) * kKmh;
        EXPECT_NEAR(speed.speed, truth, 1e-6);
        EXPECT_NEAR(speed.smooth.value_or(0.0), truth, 1e-6);
    }
}

TEST(VideoSpeeds, EntriesAtTheSameTimeTakeTheFrameLength)
{
    auto entries = Steady(60.0).At(Even(3, 0.04));
    for (VideoEntry& entry : entries)
        entry.time = 5.0;
    SpeedInput input;
    EXPECT_TRUE(Speeds(InputOf({}, kLane), input).Of(entries).empty());
    input.fps = 25.0;
    const auto course = Speeds(InputOf({}, kLane), input).Of(entries);
    ASSERT_EQ(course.size(), 1U);
    EXPECT_NEAR(course[0].speed, 60.0, 1e-6);
    EXPECT_FALSE(course[0].smooth);
    EXPECT_FALSE(Speeds(InputOf({}, kLane), input).Mean(entries));
}

TEST(VideoSpeeds, TheLabelIsRoundedUpAsItAlwaysWas)
{
    EXPECT_EQ(SpeedLabel(50.0), 51);
    EXPECT_EQ(SpeedLabel(49.999), 50);
    EXPECT_EQ(SpeedLabel(49.0), 50);
    EXPECT_EQ(SpeedLabel(0.0), 1);
    EXPECT_EQ(SpeedLabel(1e300), 1000000000);
}

/// A point 0.72 m above the road reads h/(h - z) times too fast; the factor takes that back.
TEST(VideoSpeeds, TheFactorFollowsFromTheHeights)
{
    for (const auto& [above, tooFast] : {std::pair{6.0, 60.0 * 6.0 / 5.28}, std::pair{2.6, 60.0 * 2.6 / 1.88}}) {
        RoadCamera camera;
        camera.above = above;
        Drive drive = Steady(60.0, 50.0);
        drive.z = 0.72;
        const auto entries = drive.At(Even(30, 0.04), camera);
        SpeedInput input;
        input.pointHeight = 0.72;
        const VideoSpeeds preset = Speeds(InputOf(camera, kLane), input);
        EXPECT_NEAR(preset.Factor(), 1.0 - 0.72 / above, 1e-9);
        EXPECT_TRUE(preset.FactorIsKnown());
        EXPECT_NEAR(preset.Of(entries).back().speed, 60.0, 1e-6);
        input.factor = 1.0;
        EXPECT_NEAR(Speeds(InputOf(camera, kLane), input).Of(entries).back().speed, tooFast, 1e-6);
        input.factor.reset();
        input.cameraHeight = 2.0 * 0.72;
        EXPECT_DOUBLE_EQ(Speeds(InputOf(camera, kLane), input).Factor(), 0.5);
        input.cameraHeight = 0.5; // lower than the point: no factor
        EXPECT_EQ(Speeds(InputOf(camera, kLane), input).Factor(), 1.0);
        EXPECT_FALSE(Speeds(InputOf(camera, kLane), input).FactorIsKnown());
    }
}

TEST(VideoSpeeds, CutEntriesAreInTheRuleAndNotInTheCourse)
{
    auto entries = Steady(60.0).At(Even(40, 0.04));
    for (std::size_t i = 30; i < 40; ++i) {
        entries[i].cut = true;
        entries[i].point.x += 60.0;
        entries[i].point.y += 60.0;
    }
    const VideoSpeeds speeds = Speeds(InputOf({}, kLane));
    const auto course = speeds.Of(entries);
    EXPECT_GT(std::fabs(course[29].speed - 60.0), 5.0);
    for (const VideoSpeed& speed : course)
        EXPECT_NEAR(speed.smooth.value_or(60.0), 60.0, 1e-6);
    EXPECT_NEAR(speeds.Mean(entries)->speed, 60.0, 1e-6);
}

/// Where no steady motion explains the entries, the mean is the path over its time: 15 m/s, then standing.
TEST(VideoSpeeds, TheMeanOfAnUnsteadyMotionIsItsPathOverTime)
{
    const Drive drive{[](double t) { return 50.0 - 15.0 * std::min(t, 1.0); }};
    const auto mean = Speeds(InputOf({}, kLane)).Mean(drive.At(Even(51, 0.04)));
    ASSERT_TRUE(mean);
    EXPECT_EQ(mean->kind, MeanKind::polyline);
    EXPECT_NEAR(mean->speed, 15.0 / 2.0 * kKmh, 1e-6);
    EXPECT_GT(mean->uncertainty, 0.05);
    EXPECT_FALSE(Speeds(InputOf({}, kLane)).Mean(drive.At({0.0})));
}

/// Five entries that swing to and fro by 1, -4, 6, -4 and 1 times a length: a fourth difference, which no quadratic
/// follows, so that the sum of its squares, 70, is all scatter.
TEST(VideoSpeeds, PointsThatScatterMoreThanAPixelWidenTheBand)
{
    constexpr double kSwing[] = {1.0, -4.0, 6.0, -4.0, 1.0};
    const CPerspectiveRectifier road = Calibrated(InputOf({}, kLane));
    SpeedInput input;
    input.smoothSpan = 0.2;
    const VideoSpeeds speeds(road, input);
    const VisionPoint start = road.RectifyPoint(RoadCamera{}.See(1.5, 15.0, 0.0)).value();
    const auto swinging = [&](double length) {
        std::vector<VideoEntry> entries;
        for (int i = 0; i < 5; ++i) {
            const double aside = length * kSwing[i] / std::sqrt(2.0);
            entries.push_back({0.04 * i, i, road.PicturePoint({start.x + aside, start.y + aside + i}), false});
        }
        return speeds.Of(entries).back();
    };
    const auto reach = road.PointSpread(road.PicturePoint(start)).value();
    const double unit = std::sqrt((5 - 3) / 70.0 * (reach.xx + reach.yy)); // as much scatter as a pixel makes
    const auto variance = [&](double scatter) {
        const double u = swinging(scatter * unit).smoothUncertainty;
        return u * u;
    };
    EXPECT_NEAR((variance(2.0) - variance(0.0)) / (variance(4.0) - variance(0.0)), (4.0 - 1.0) / (16.0 - 1.0), 0.005);
    // It is left out where it is four times less sure than what was measured, and only there.
    int given = 0;
    int missing = 0;
    for (double scatter = 0.0; scatter < 20.0; scatter += 0.5) {
        const VideoSpeed speed = swinging(scatter * unit);
        const double ratio = speed.smoothUncertainty / speed.uncertainty;
        EXPECT_EQ(speed.smooth.has_value(), ratio <= 4.0) << ratio;
        given += ratio > 3.0 && ratio <= 4.0 ? 1 : 0;
        missing += ratio > 4.0 && ratio < 5.0 ? 1 : 0;
    }
    EXPECT_GT(given, 0);
    EXPECT_GT(missing, 0);
}

/// Boxes with a pixel of noise: the smooth course is near the truth, the rule alone is not.
TEST(VideoSpeeds, TheSmoothCourseIsNearTheTruth)
{
    std::vector<double> smooth;
    std::vector<double> rule;
    double within = 0.0;
    double withinBand = 0.0;
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        Drive drive = Steady(50.0, 45.0);
        drive.z = 0.72;
        drive.sigma = 1.0;
        drive.seed = seed;
        SpeedInput input;
        input.pointHeight = 0.72;
        for (const VideoSpeed& speed : Speeds(InputOf({}, kLane), input).Of(drive.At(Even(50, 0.04)))) {
            ASSERT_TRUE(speed.smooth);
            smooth.push_back(std::fabs(*speed.smooth - 50.0));
            rule.push_back(std::fabs(speed.speed - 50.0));
            within += rule.back() <= 2.0 * speed.uncertainty ? 1.0 : 0.0;
            withinBand += smooth.back() <= 2.0 * speed.smoothUncertainty ? 1.0 : 0.0;
        }
    }
    const auto part = [](std::vector<double>& errors, double quantile) {
        std::sort(errors.begin(), errors.end());
        return errors[static_cast<std::size_t>(quantile * static_cast<double>(errors.size() - 1))];
    };
    within /= static_cast<double>(rule.size());
    SCOPED_TRACE("smooth " + std::to_string(part(smooth, 0.5)) + " " + std::to_string(part(smooth, 0.95)) + ", rule " +
                 std::to_string(part(rule, 0.5)) + " " + std::to_string(part(rule, 0.95)));
    EXPECT_LE(part(smooth, 0.5), 0.5);
    EXPECT_LE(part(smooth, 0.95), 2.0);
    EXPECT_GT(part(rule, 0.5), 2.0 * part(smooth, 0.5));
    withinBand /= static_cast<double>(rule.size());
    EXPECT_GT(withinBand, 0.93);
    EXPECT_GT(within, 0.93); // the height is exact here, its uncertainty is not used up
}

/// A far vehicle that is lost now and then, once found a few pixels off: a quadratic through few entries swings there.
TEST(VideoSpeeds, TheSmoothCourseHasGapsWhereItWouldSayNothing)
{
    std::vector<double> times;
    for (const int frame : {56, 57, 58, 60, 62, 64, 75, 77, 78, 79, 91, 92, 93, 94})
        times.push_back(frame * 0.04);
    std::size_t given = 0;
    std::size_t missing = 0;
    for (std::uint32_t seed = 1; seed <= 50; ++seed) {
        Drive drive = Steady(-60.0, 15.0);
        drive.sigma = 1.0;
        drive.seed = seed;
        std::vector<VideoEntry> entries = drive.At(times);
        entries[8].point.y += 5.0;
        for (const VideoSpeed& speed : Speeds(InputOf({}, kLane)).Of(entries)) {
            ++(speed.smooth ? given : missing);
            if (speed.smooth) {
                EXPECT_LE(speed.smoothUncertainty, 4.0 * speed.uncertainty) << speed.time;
            }
        }
    }
    EXPECT_GT(missing, 0U);
    EXPECT_GT(given, missing);
}

/// Ten clicks on the road, four on the corners, all to a pixel, and a tape to 2 cm: the truth within two standard
/// uncertainties in 90 to 99 of 100 draws.
TEST(VideoSpeeds, TheMeanOfTenClicksIsAsGoodAsItSays)
{
    constexpr int kDraws = 500;
    std::mt19937 random(77);
    std::normal_distribution<double> noise(0.0, 1.0);
    for (const bool strict : {true, false}) {
        int within = 0;
        int lines = 0;
        for (int draw = 0; draw < kDraws; ++draw) {
            RoadInput input = InputOf({}, kLane);
            input.strict = strict;
            for (VisionPoint& point : input.points)
                point = {point.x + noise(random), point.y + noise(random)};
            for (double& distance : input.distances)
                distance += 0.02 * noise(random);
            Drive drive = Steady(60.0, 50.0);
            drive.sigma = 1.0;
            drive.seed = static_cast<std::uint32_t>(random());
            const auto mean = Speeds(input).Mean(drive.At(Even(10, 0.2)));
            ASSERT_TRUE(mean);
            EXPECT_GT(mean->uncertainty, 0.2);
            EXPECT_LT(mean->uncertainty, 1.1);
            within += std::fabs(mean->speed - 60.0) <= 2.0 * mean->uncertainty ? 1 : 0;
            lines += mean->kind == MeanKind::line ? 1 : 0;
        }
        RecordProperty(strict ? "withinStrict" : "withinFree", within);
        EXPECT_GE(within, kDraws * 90 / 100);
        EXPECT_LE(within, kDraws * 99 / 100);
        EXPECT_GE(lines, kDraws * 90 / 100);
    }
}

/// Every input widens the uncertainty as its derivative says: against repeated changes of one input at a time.
TEST(VideoSpeeds, TheUncertaintyIsTheSumOfItsParts)
{
    const RoadInput input = InputOf({}, kLane);
    const auto entries = Steady(60.0, 40.0).At(Even(7, 0.04));
    const auto speedWith = [&](const RoadInput& changed, double factor) {
        SpeedInput speed;
        speed.factor = factor;
        return Speeds(changed, speed).Of(entries).back().speed;
    };
    double variance = 0.0;
    const auto add = [&](double& value, RoadInput& changed, double u) {
        const double before = value;
        value = before + u;
        const double up = speedWith(changed, 1.0);
        value = before - u;
        variance += std::pow((up - speedWith(changed, 1.0)) / 2.0, 2.0);
        value = before;
    };
    RoadInput changed = input;
    for (VisionPoint& point : changed.points) {
        add(point.x, changed, 1.0);
        add(point.y, changed, 1.0);
    }
    for (double& distance : changed.distances)
        add(distance, changed, 0.02);
    add(changed.strength, changed, 5.0);
    // Both ends of the interval by a pixel each way.
    for (const std::size_t i : {std::size_t{0}, std::size_t{6}})
        for (const VisionPoint step : {VisionPoint{1.0, 0.0}, VisionPoint{0.0, 1.0}}) {
            auto moved = entries;
            moved[i].point = {entries[i].point.x + step.x / 10.0, entries[i].point.y + step.y / 10.0};
            SpeedInput speed;
            variance += std::pow((Speeds(input, speed).Of(moved).back().speed - 60.0) * 10.0, 2.0);
        }
    variance += 2.0 * std::pow(60.0 * 0.00029 / 0.24, 2.0);
    SpeedInput speed;
    speed.factor = 1.0;
    speed.strengthUncertainty = 5.0;
    EXPECT_NEAR(Speeds(input, speed).Of(entries).back().uncertainty, std::sqrt(variance), 0.03 * std::sqrt(variance));
    // The height of the followed points, 0.15 m at 6 m, comes on top.
    speed.pointHeight = 0.72;
    variance += std::pow(60.0 * 0.15 / 6.0, 2.0);
    EXPECT_NEAR(Speeds(input, speed).Of(entries).back().uncertainty, std::sqrt(variance), 0.03 * std::sqrt(variance));
    // The lens, so little known that it counts.
    const auto varianceWith = [&](double strengthUncertainty) {
        speed.pointHeight = 0.0;
        speed.strengthUncertainty = strengthUncertainty;
        return std::pow(Speeds(input, speed).Of(entries).back().uncertainty, 2.0);
    };
    changed.strength = input.strength + 40.0;
    const double byLens = speedWith(changed, 1.0) - 60.0;
    EXPECT_GT(std::fabs(byLens), 0.1);
    EXPECT_NEAR(varianceWith(40.0) - varianceWith(0.0), byLens * byLens, 1e-6);
}

/// The same of a mean, of a vehicle that drives across as well as along, by a line and by a path.
TEST(VideoSpeeds, TheUncertaintyOfTheMeanIsTheSumOfItsParts)
{
    const RoadCamera camera;
    for (const bool steady : {true, false}) {
        std::vector<VideoEntry> entries;
        for (int i = 0; i < 6; ++i) {
            const double t = 0.2 * i;
            const double way = steady ? t : std::min(t, 0.6);
            entries.push_back({t, i, camera.See(-3.0 + 6.0 * way, 36.0 - 12.0 * way), false});
        }
        const RoadInput input = InputOf(camera, kLane);
        const double speed = Speeds(input).Mean(entries)->speed;
        EXPECT_NEAR(speed, std::hypot(6.0, 12.0) * kKmh * (steady ? 1.0 : 0.6), 1e-6);
        double variance = 2.0 * std::pow(speed * 0.00029, 2.0); // over one second
        const auto add = [&](double& value, RoadInput& changed, double u) {
            const double before = value;
            value = before + u;
            variance += std::pow(Speeds(changed).Mean(entries)->speed - speed, 2.0);
            value = before;
        };
        RoadInput changed = input;
        for (VisionPoint& point : changed.points) {
            add(point.x, changed, 1.0);
            add(point.y, changed, 1.0);
        }
        for (double& distance : changed.distances)
            add(distance, changed, 0.02);
        const double byCalibration = variance;
        constexpr double kStep = 0.01;
        for (std::size_t i = 0; i < entries.size(); ++i)
            for (const VisionPoint step : {VisionPoint{kStep, 0.0}, VisionPoint{0.0, kStep}}) {
                auto moved = entries;
                moved[i].point = {entries[i].point.x + step.x, entries[i].point.y + step.y};
                const double up = Speeds(input).Mean(moved)->speed;
                moved[i].point = {entries[i].point.x - step.x, entries[i].point.y - step.y};
                variance += std::pow((up - Speeds(input).Mean(moved)->speed) / (2.0 * kStep), 2.0);
            }
        EXPECT_GT(variance, 1.1 * byCalibration);
        const double u = Speeds(input).Mean(entries)->uncertainty;
        EXPECT_EQ(Speeds(input).Mean(entries)->kind, steady ? MeanKind::line : MeanKind::polyline);
        EXPECT_NEAR(u, std::sqrt(variance), 0.03 * u);
    }
}

class VideoSpeedsCli : public testing::Test
{
  protected:
    static nlohmann::json Job(bool clicks)
    {
        const RoadInput input = InputOf({}, kLane);
        nlohmann::json job{{"width", 1920},
                           {"height", 1080},
                           {"fps", 25},
                           {"pattern", "square"},
                           {"strict", true},
                           {"strength", 0},
                           {"factor", nullptr},
                           {"pointHeight", clicks ? 0.0 : 0.72},
                           {"distances", input.distances}};
        for (const VisionPoint p : input.points)
            job["points"].push_back({p.x, p.y});
        Drive drive = Steady(60.0, 50.0);
        drive.z = clicks ? 0.0 : 0.72;
        for (const VideoEntry& e : drive.At(Even(20, 0.04))) {
            if (clicks)
                job["clicks"].push_back({{"t", e.time}, {"frame", e.frame}, {"x", e.point.x}, {"y", e.point.y}});
            else
                job["frames"].push_back({{"t", e.time}, {"boxes", {{e.point.x - 30, e.point.y - 20, 60, 40}}}});
        }
        return job;
    }
    test::Output Run(const std::string& text) const
    {
        m_folder.Write("job.json", text);
        return test::RunCli({"eval", "VideoSpeeds", m_folder.File("job.json"), "--json"});
    }
    test::TemporaryFolder m_folder;
};

TEST_F(VideoSpeedsCli, BoxesAndClicksGiveTracksAndSpeeds)
{
    for (const bool clicks : {false, true}) {
        const auto output = Run(Job(clicks).dump());
        ASSERT_EQ(output.exit, 0) << output.err;
        const auto results = nlohmann::json::parse(output.out).at("results");
        EXPECT_EQ(results.at("why"), "");
        EXPECT_EQ(results.at("rate"), 0.05);
        EXPECT_EQ(results.at("residuals").size(), 6U);
        EXPECT_NEAR(results.at("focal").get<double>(), 1500.0, 1e-6);
        EXPECT_NEAR(results.at("cameraHeight").get<double>(), 6.0, 1e-9);
        EXPECT_NEAR(results.at("factor").get<double>(), clicks ? 1.0 : 0.88, 1e-9);
        EXPECT_NEAR(results.at("mean").get<double>(), 60.0, 1e-6);
        EXPECT_GT(results.at("meanU").get<double>(), 0.1);
        const auto track = results.at("tracks").at(0);
        EXPECT_EQ(track.at("id"), 1);
        for (const char* name : {"t", "frame", "x", "y"})
            EXPECT_EQ(track.at(name).size(), 20U) << name;
        for (const char* name : {"v", "vTime", "vFrame", "u", "label", "fit"})
            EXPECT_EQ(track.at(name).size(), 18U) << name;
        EXPECT_NEAR(track["v"][17].get<double>(), 60.0, 1e-6);
        EXPECT_EQ(track["vFrame"][17], 19);
        EXPECT_NEAR(track["vTime"][17].get<double>(), 0.64, 1e-12);
    }
}

TEST_F(VideoSpeedsCli, WithoutACalibrationThereAreNumbersAndNoSpeeds)
{
    auto job = Job(false);
    job["distances"] = {7, 0, 7, 0, 0, 0};
    const auto output = Run(job.dump());
    ASSERT_EQ(output.exit, 0) << output.err;
    const auto results = nlohmann::json::parse(output.out).at("results");
    EXPECT_EQ(results.at("why"), "Die angegebenen Strecken legen die Form nicht fest.");
    EXPECT_EQ(results.at("rate"), 0);
    for (const char* name : {"focal", "cameraHeight", "factor", "mean", "meanU"})
        EXPECT_TRUE(results.at(name).is_null()) << name;
    EXPECT_EQ(results.at("tracks").at(0).at("t").size(), 20U);
    EXPECT_TRUE(results.at("tracks").at(0).at("v").empty());
}

TEST_F(VideoSpeedsCli, MistakesInTheFileAreNamed)
{
    const auto refused = [&](auto change, const std::string& word) {
        auto job = Job(true);
        change(job);
        const auto output = Run(job.dump());
        EXPECT_EQ(output.exit, 3) << word;
        EXPECT_NE(output.err.find(word), std::string::npos) << output.err;
        EXPECT_EQ(output.out, "");
    };
    refused([](auto& j) { j["with"] = 3; }, "with");
    refused([](auto& j) { j.erase("width"); }, "width");
    refused([](auto& j) { j["pattern"] = "kreis"; }, "pattern");
    refused([](auto& j) { j["distances"] = {1, 2}; }, "distances");
    refused([](auto& j) { j["strength"] = 101; }, "strength");
    refused([](auto& j) { j["frames"] = nlohmann::json::array(); }, "clicks");
    refused([](auto& j) { j.erase("clicks"); }, "clicks");
    refused([](auto& j) { j["clicks"][5]["t"] = 0; }, "clicks[5]");
    refused([](auto& j) { j["clicks"][5]["y"] = "oben"; }, "clicks[5]");
    EXPECT_EQ(Run("[1,").exit, 3);
    EXPECT_EQ(test::RunCli({"eval", "VideoSpeeds", m_folder.File("none.json")}).exit, 3);
    EXPECT_EQ(test::RunCli({"eval", "VideoSpeeds"}).exit, 2);
}

} // namespace
