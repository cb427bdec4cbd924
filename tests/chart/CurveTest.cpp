// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Curve.h"
#include "chart/Axis.h"
#include "chart/ChartDrawing.h"
#include "chart/RangeStatistics.h"
#include "host/RuvCfg.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using namespace chart;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

Values Shared(std::vector<double> values)
{
    return std::make_shared<const std::vector<double>>(std::move(values));
}

/// Times that sometimes stand still, values with jumps and gaps.
Curve RandomCurve(std::mt19937_64& random, std::size_t size, std::size_t stride = 1)
{
    std::vector<double> x(size);
    std::vector<double> y(size);
    double time = -3.0;
    for (std::size_t i = 0; i < size; ++i) {
        x[i] = time += random() % 10 == 0 ? 0.0 : std::ldexp(static_cast<double>(random() % 1024), -10);
        y[i] = random() % 50 == 0 ? kMissing : std::ldexp(static_cast<double>(random() % 65536), -8) - 100.0;
        if (random() % 5000 == 0)
            y[i] = 1e101; // as good as missing
    }
    return {Shared(std::move(x)), Shared(std::move(y)), stride};
}

Extremes Plain(const Curve& curve, std::size_t first, std::size_t last)
{
    Extremes extremes;
    for (std::size_t i = first; i < std::min(last, curve.Size()); ++i)
        if (!curve.IsMissing(i))
            extremes.Take(curve.Y(i));
    return extremes;
}

TEST(ChartCurve, ExtremesOfEveryStretchAreThoseOfItsSamples)
{
    std::mt19937_64 random(1);
    for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 255U, 256U, 257U, 5000U, 70000U}) {
        const Curve curve = RandomCurve(random, size, 1 + random() % 3);
        for (int i = 0; i < 400; ++i) {
            const std::size_t first = random() % (curve.Size() + 1);
            const std::size_t last = first + random() % (curve.Size() - first + 3);
            ASSERT_EQ(curve.Between(first, last), Plain(curve, first, last)) << size << ": " << first << " " << last;
        }
    }
}

TEST(ChartCurve, TheSearchFindsTheSamePlaceFromEveryGuess)
{
    std::mt19937_64 random(2);
    const Curve curve = RandomCurve(random, 1000);
    for (int i = 0; i < 2000; ++i) {
        const double x =
            random() % 2 == 0 ? curve.X(random() % 1000) : -4.0 + 0.5 * static_cast<double>(random() % 1100);
        std::size_t plain = 0;
        while (plain < curve.Size() && curve.X(plain) < x)
            ++plain;
        ASSERT_EQ(curve.FirstFrom(x, random() % 1100), plain);
    }
}

/// Whatever the view: in each column of pixels the line reaches as high and as low as the samples in it.
TEST(ChartCurve, LinesKeepTheExtremesOfEveryColumn)
{
    std::mt19937_64 random(3);
    for (int round = 0; round < 60; ++round) {
        const Curve curve = RandomCurve(random, 200 + random() % 20000);
        const double length = curve.X(curve.Size() - 1) - curve.X(0);
        const double from = curve.X(0) + length * static_cast<double>(random() % 100) / 200.0;
        const double to = from + length * static_cast<double>(1 + random() % 100) / 200.0;
        constexpr std::size_t kColumns = 128;
        const double width = (to - from) / kColumns;
        const auto columnOf = [&](double x) {
            return std::min<std::size_t>(kColumns - 1, static_cast<std::size_t>(std::floor((x - from) / width)));
        };
        std::vector<Extremes> wanted(kColumns), drawn(kColumns);
        for (std::size_t i = 0; i < curve.Size(); ++i)
            if (!curve.IsMissing(i) && curve.X(i) >= from && curve.X(i) <= to)
                wanted[columnOf(curve.X(i))].Take(curve.Y(i));
        std::size_t points = 0;
        for (const auto& line : curve.Lines(from, to, kColumns)) {
            EXPECT_FALSE(line.empty());
            points += line.size();
            for (std::size_t i = 0; i < line.size(); ++i) {
                if (i > 0) {
                    EXPECT_LE(line[i - 1].x, line[i].x);
                }
                if (line[i].x >= from && line[i].x <= to)
                    drawn[columnOf(line[i].x)].Take(line[i].y);
            }
        }
        // The neighbours outside may stand at the very edge of the view, in the first and last column.
        for (std::size_t c = 1; c + 1 < kColumns; ++c)
            ASSERT_EQ(drawn[c], wanted[c]) << "round " << round << " column " << c;
        EXPECT_LE(points, 4 * kColumns + 2);
    }
}

TEST(ChartCurve, GapsStayOpen)
{
    const Curve curve(Shared({0, 1, 2, 3, 4, 5}), Shared({10, 20, kMissing, 40, kMissing, 60}));
    using Lines = std::vector<std::vector<CDPoint>>;
    EXPECT_EQ(curve.Lines(0, 5, 100), (Lines{{{0, 10}, {1, 20}}, {{3, 40}}, {{5, 60}}}));
    EXPECT_EQ(curve.Lines(0.25, 0.75, 100), (Lines{{{0, 10}, {1, 20}}})) << "a neighbour on both sides";
}

TEST(ChartCurve, ReadsBetweenSamplesAndTellsTheNearestOne)
{
    const Curve curve(Shared({0, 1, 2, 4, 5}), Shared({10, 20, kMissing, 40, 60}));
    struct Case {
        double x;
        std::optional<double> interpolated;
        std::optional<std::size_t> nearest;
    };
    for (const Case& c :
         {Case{0.25, 12.5, 0}, Case{0.5, 15.0, 1}, Case{1.0, 20.0, 1}, Case{1.5, {}, 1}, Case{2.0, {}, 1},
          Case{2.75, {}, 3}, Case{4.75, 55.0, 4}, Case{-1.0, {}, 0}, Case{9.0, {}, 4}, Case{5.0, 60.0, 4}}) {
        const Reading reading = curve.At(c.x);
        EXPECT_EQ(reading.interpolated, c.interpolated) << c.x;
        EXPECT_EQ(reading.nearest, c.nearest) << c.x;
    }
    EXPECT_FALSE(Curve().At(1.0).nearest);
}

TEST(ChartCurve, NamesSamplesThatCannotBeDrawn)
{
    EXPECT_EQ(CheckSamples({0, 0, 1}, {5, kMissing, 7}), Samples::fine);
    EXPECT_EQ(CheckSamples({0, 1}, {5}), Samples::lengthsDiffer);
    EXPECT_EQ(CheckSamples({0, 2, 1}, {5, 6, 7}), Samples::timeRunsBack);
    EXPECT_EQ(CheckSamples({0, kMissing}, {5, 6}), Samples::timeNotFinite);
}

TEST(ChartClipping, CutsAtTheEdgesAndNowhereElse)
{
    Plot box;
    box.left = box.top = 0.0;
    box.right = box.bottom = 10.0;
    using Lines = std::vector<std::vector<CDPoint>>;
    EXPECT_EQ(ClippedTo({{-5, 5}, {5, 5}, {5, 25}}, box), (Lines{{{0, 5}, {5, 5}, {5, 10}}}));
    EXPECT_EQ(ClippedTo({{5, 5}, {15, 5}, {15, 6}, {5, 6}}, box), (Lines{{{5, 5}, {10, 5}}, {{10, 6}, {5, 6}}}));
    EXPECT_EQ(ClippedTo({{-1, 20}, {20, 20}}, box), Lines{});
    EXPECT_EQ(ClippedTo({{-5, 5}, {5, -5}}, box), (Lines{{{0, 0}, {0, 0}}})) << "touches the corner";
    EXPECT_EQ(ClippedTo({{3, 3}}, box), (Lines{{{3, 3}}}));
}

TEST(ChartAxis, TicksLieOnRoundNumbersWithinTheView)
{
    RuvCfg = CRuvCfg{};
    const auto labels = [](const Axis& axis, double lowest, double highest, int intervals) {
        std::string text;
        for (const Tick& tick : TicksOf(axis, lowest, highest, intervals))
            text += (text.empty() ? "" : " ") + tick.label;
        return text;
    };
    const Axis number{"", units::s};
    EXPECT_EQ(labels(number, -0.3, 1.1, 10), "−0,2 0,0 0,2 0,4 0,6 0,8 1,0");
    EXPECT_EQ(labels(number, 12.0, 48.0, 5), "20 30 40");
    const Axis minutes{"", units::s, AxisFormat::minutes};
    EXPECT_EQ(labels(minutes, 50.0, 130.0, 5), "1:00 1:30 2:00") << "steps of half a minute, not of 20 s";
    EXPECT_EQ(labels(minutes, -61.0, 0.0, 3), "−1:00 −0:30 0:00");
    EXPECT_EQ(labels(minutes, 3590.0, 3610.0, 3), "59:50 1:00:00 1:00:10");
    EXPECT_EQ(labels(minutes, 0.0, 0.4, 4), "0:00,0 0:00,1 0:00,2 0:00,3 0:00,4");
    const Axis clock{"", units::s, AxisFormat::clock, 1, 23 * 3600.0 + 59 * 60.0 + 50.0};
    EXPECT_EQ(labels(clock, 0.0, 20.0, 4), "23:59:50 23:59:55 00:00:00 00:00:05 00:00:10");
    EXPECT_EQ(clock.Text(9.96), "00:00:00,0 Uhr") << "rounded as a whole";
}

TEST(ChartAxis, TicksOfRandomViewsAreInItAndFew)
{
    std::mt19937_64 random(4);
    for (int i = 0; i < 3000; ++i) {
        Axis axis{"", units::s, static_cast<AxisFormat>(random() % 3), 2, static_cast<double>(random() % 86400)};
        const double lowest =
            (static_cast<double>(random() % 2001) - 1000.0) * std::pow(10.0, static_cast<double>(random() % 4));
        const double span =
            static_cast<double>(1 + random() % 999) * std::pow(10.0, static_cast<double>(random() % 9) - 4.0);
        const int intervals = 2 + static_cast<int>(random() % 12);
        const auto ticks = TicksOf(axis, lowest, lowest + span, intervals);
        ASSERT_LE(ticks.size(), static_cast<std::size_t>(intervals) + 1);
        for (std::size_t k = 0; k < ticks.size(); ++k) {
            ASSERT_GE(ticks[k].at, lowest - 1e-6 * span);
            ASSERT_LE(ticks[k].at, lowest + span * (1.0 + 1e-6));
            if (k > 0) {
                ASSERT_GT(ticks[k].at, ticks[k - 1].at);
            }
            if (k > 0 && ticks[k].at - ticks[k - 1].at < 86400.0) { // a clock shows no days
                ASSERT_NE(ticks[k].label, ticks[k - 1].label);
            }
        }
    }
}

/// 36 km/h for 2 s, to 72 km/h in 4 s, and 1 s there: 20 m + 60 m + 20 m in 7 s.
TEST(ChartStatistics, AreThoseOfTheLinesThroughTheSamples)
{
    const Curve curve(Shared({0, 2, 6, 7}), Shared({36, 36, 72, 72}));
    const RangeStatistics all = StatisticsOf(curve, 0, 3, 1 / 3.6);
    EXPECT_DOUBLE_EQ(all.duration, 7.0);
    EXPECT_NEAR(all.path.value(), 100.0, 1e-12);
    EXPECT_NEAR(all.mean.value(), 100.0 / 7.0 * 3.6, 1e-12) << "by time, where the mean of the samples is 54";
    EXPECT_EQ(all.lowest, 36.0);
    EXPECT_EQ(all.highest, 72.0);
    EXPECT_NEAR(all.acceleration.value(), 10.0 / 7.0, 1e-12);
    const RangeStatistics noSpeed = StatisticsOf(curve, 1, 2, 0.0);
    EXPECT_DOUBLE_EQ(noSpeed.mean.value(), 54.0);
    EXPECT_FALSE(noSpeed.path || noSpeed.acceleration);
    const RangeStatistics one = StatisticsOf(curve, 2, 2, 1 / 3.6);
    EXPECT_FALSE(one.mean || one.acceleration);
    EXPECT_EQ(one.path, 0.0);
}

TEST(ChartStatistics, SayNothingOfWhatAMissingSampleLeavesOpen)
{
    const Curve curve(Shared({0, 1, 2, 3}), Shared({10, kMissing, 30, kMissing}));
    const RangeStatistics inner = StatisticsOf(curve, 0, 2, 1.0);
    EXPECT_FALSE(inner.path || inner.mean);
    EXPECT_EQ(inner.highest, 30.0);
    EXPECT_EQ(inner.acceleration, 10.0);
    EXPECT_FALSE(StatisticsOf(curve, 2, 3, 1.0).acceleration);
    EXPECT_FALSE(StatisticsOf(curve, 1, 1, 1.0).lowest);
    EXPECT_FALSE(StatisticsOf(curve, 1, 1, 1.0).path);
}

} // namespace
