// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PathTimeCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

using pathtime::MotionState;
using pathtime::PathTimeCurve;

CWegZeitSpalte Phase(PhasenArt art, double vAnfKmh, double deceleration, double time)
{
    CWegZeitSpalte phase;
    phase.art = art;
    phase.vAnf = vAnfKmh;
    phase.verz = deceleration;
    phase.zeit = time;
    return phase;
}

/// Braking from 50 km/h with 1 s of reaction, 0.2 s of threshold and 1 s of full deceleration of 8 m/s².
CWegZeitRechDat EmergencyBraking()
{
    CWegZeitRechDat data;
    const double afterThreshold = 50.0 - 3.6 * 0.5 * 8.0 * 0.2;
    data.spalten[3] = Phase(PhasenArt::braking, afterThreshold, 8.0, 1.0);
    data.spalten[3].vEnd = afterThreshold - 3.6 * 8.0;
    data.spalten[4] = Phase(PhasenArt::threshold, 50.0, 8.0, 0.2);
    data.spalten[5] = Phase(PhasenArt::reaction, 50.0, 0.0, 1.0);
    data.Berechnung();
    return data;
}

TEST(PathTimeCurve, EmergencyBrakingByHand)
{
    const PathTimeCurve curve(EmergencyBraking());
    ASSERT_EQ(curve.Phases().size(), 3U);
    EXPECT_EQ(curve.Phases().front().art, PhasenArt::reaction);
    EXPECT_DOUBLE_EQ(curve.StartTime(), -2.2);

    const double v0 = 50.0 / 3.6;
    // Deceleration grows as 40·t: v = v0 - 20·t², s = v0·t - 20/3·t³.
    const MotionState inThreshold = *curve.At(-1.1);
    EXPECT_NEAR(inThreshold.deceleration, 4.0, 1e-9);
    EXPECT_NEAR(inThreshold.speed, v0 - 20.0 * 0.01, 1e-9);
    const double v1 = v0 - 0.8;
    const double brakingPath = v1 - 4.0;
    const double rest = (v0 * 0.2 - 20.0 / 3.0 * 0.008) - (v0 * 0.1 - 20.0 / 3.0 * 0.001);
    EXPECT_NEAR(inThreshold.position, -brakingPath - rest, 1e-9);

    const MotionState inBraking = *curve.At(-0.5);
    EXPECT_NEAR(inBraking.speed, v1 - 4.0, 1e-9);
    EXPECT_NEAR(inBraking.position, -(v1 - 4.0) * 0.5 + 0.5 * 8.0 * 0.25, 1e-9);
    EXPECT_DOUBLE_EQ(inBraking.deceleration, 8.0);

    EXPECT_EQ(curve.At(0.0)->position, 0.0);
    EXPECT_FALSE(curve.At(0.001));
    EXPECT_FALSE(curve.At(-2.201));
    EXPECT_FALSE(curve.At(std::numeric_limits<double>::quiet_NaN()));
}

/// Random phases as an expert enters them, completed by the record itself.
CWegZeitRechDat RandomDrive(std::mt19937& random)
{
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    constexpr PhasenArt kArten[] = {PhasenArt::braking,  PhasenArt::accelerating,  PhasenArt::threshold,
                                    PhasenArt::reaction, PhasenArt::constantSpeed, PhasenArt::turning,
                                    PhasenArt::rolling};
    CWegZeitRechDat data;
    const auto count = static_cast<std::size_t>(1.0 + 8.0 * unit(random));
    for (std::size_t i = 0; i < count; ++i) {
        CWegZeitSpalte& phase = data.spalten[CWegZeitDat::kErsteSpalte + i];
        phase.art = kArten[static_cast<std::size_t>(7.0 * unit(random))];
        phase.zeit = 0.05 + 3.0 * unit(random);
        phase.verz = phase.art == PhasenArt::reaction || phase.art == PhasenArt::constantSpeed ? 0.0
                     : phase.art == PhasenArt::accelerating                                    ? -3.0 * unit(random)
                                                                                               : 9.0 * unit(random);
        if (i == 0)
            phase.vEnd = 80.0 * unit(random);
    }
    data.Berechnung();
    return data;
}

TEST(PathTimeCurve, AgreesWithNumericIntegrationOfTheDeceleration)
{
    std::mt19937 random(7);
    for (int run = 0; run < 200; ++run) {
        const PathTimeCurve curve(RandomDrive(random));
        for (const PathTimeCurve::Phase& phase : curve.Phases()) {
            // Simpson's rule is exact for the deceleration's line and for the speed's parabola.
            double speed = phase.start.speed;
            double position = phase.start.position;
            constexpr int kSteps = 50;
            const double h = (phase.end.time - phase.start.time) / kSteps;
            for (int i = 0; i < kSteps; ++i) {
                const auto decelerationAt = [&](double part) {
                    return phase.At(phase.start.time + h * (i + part)).deceleration;
                };
                const double half =
                    speed - h / 12.0 * (decelerationAt(0.0) + 4.0 * decelerationAt(0.25) + decelerationAt(0.5));
                const double next =
                    speed - h / 6.0 * (decelerationAt(0.0) + 4.0 * decelerationAt(0.5) + decelerationAt(1.0));
                position += h / 6.0 * (speed + 4.0 * half + next);
                speed = next;
                const MotionState state = phase.At(phase.start.time + h * (i + 1));
                ASSERT_NEAR(state.speed, speed, 1e-5) << "run " << run << ", column " << phase.column;
                ASSERT_NEAR(state.position, position, 1e-4) << "run " << run << ", column " << phase.column;
            }
        }
        const MotionState first = curve.Phases().front().start;
        EXPECT_EQ(curve.At(curve.StartTime())->position, first.position);
        EXPECT_NEAR(curve.Phases().back().end.position, 0.0, 0.0);
    }
}

TEST(PathTimeCurve, SamplesHoldEveryPhaseEndAndBendOnlyWhereTheMotionDoes)
{
    std::mt19937 random(11);
    for (int run = 0; run < 100; ++run) {
        const CWegZeitRechDat data = RandomDrive(random);
        const PathTimeCurve curve(data);
        const auto samples = curve.Sample(0.02);
        std::size_t at = 0;
        for (const PathTimeCurve::Phase& phase : curve.Phases()) {
            ASSERT_EQ(samples[at].time, phase.start.time);
            ASSERT_EQ(samples[at].position, phase.start.position);
            while (samples[at].time != phase.end.time || samples[at].speed != phase.end.speed) {
                ++at;
                ASSERT_LT(at, samples.size());
                ASSERT_LE(samples[at].time - samples[at - 1].time,
                          phase.art == PhasenArt::constantSpeed ? 1e9 : 0.02 + 1e-9);
            }
            ++at;
        }
        EXPECT_EQ(at, samples.size());
        EXPECT_NEAR(samples.front().time, -data.spalten[data.FirstFree() - 1].sumZeit, 1e-9);
        EXPECT_NEAR(samples.front().position, -data.spalten[data.FirstFree() - 1].sumWeg, 1e-9);
    }
}

TEST(PathTimeCurve, JumpsReverseAndDamagedColumns)
{
    CWegZeitRechDat data;
    data.spalten[3] = Phase(PhasenArt::constantSpeed, 36.0, 0.0, 1.0);
    data.spalten[4] = Phase(PhasenArt::noTime, 72.0, 0.0, 0.0);
    data.spalten[5] = Phase(PhasenArt::constantSpeed, 72.0, 0.0, 1.0);
    data.spalten[3].vEnd = 36.0;
    data.Berechnung();
    const PathTimeCurve jump(data);
    EXPECT_DOUBLE_EQ(jump.At(-1.0)->speed, 10.0);
    EXPECT_DOUBLE_EQ(jump.At(-1.0 - 1e-9)->speed, 20.0);
    EXPECT_DOUBLE_EQ(jump.Phases().front().start.position, -30.0);

    // Forward 10 m, then back 5 m to the collision.
    CWegZeitRechDat reverse;
    reverse.spalten[3] = Phase(PhasenArt::constantSpeed, 18.0, 0.0, 1.0);
    reverse.spalten[3].vEnd = 18.0;
    reverse.spalten[3].weg = 5.0;
    reverse.spalten[3].richtung = -1.0;
    reverse.spalten[4] = Phase(PhasenArt::constantSpeed, 36.0, 0.0, 1.0);
    reverse.spalten[4].vEnd = 36.0;
    reverse.spalten[4].weg = 10.0;
    const PathTimeCurve back(reverse);
    EXPECT_DOUBLE_EQ(back.At(-0.5)->speed, -5.0);
    EXPECT_DOUBLE_EQ(back.At(-0.5)->position, 2.5);
    EXPECT_DOUBLE_EQ(back.At(-1.0)->position, 5.0);
    EXPECT_DOUBLE_EQ(back.At(-2.0)->position, -5.0);

    CWegZeitDat damaged;
    damaged.spalten[3] = Phase(PhasenArt::braking, std::numeric_limits<double>::quiet_NaN(), 1e300, -3.0);
    damaged.spalten[47] = Phase(PhasenArt::threshold, 10.0, 2.0, std::numeric_limits<double>::infinity());
    const PathTimeCurve curve(damaged);
    for (const MotionState& state : curve.Sample(1e-12)) {
        EXPECT_TRUE(std::isfinite(state.time) && std::isfinite(state.position));
        EXPECT_TRUE(std::isfinite(state.speed) && std::isfinite(state.deceleration));
    }
    EXPECT_TRUE(PathTimeCurve(CWegZeitDat{}).IsEmpty());
    EXPECT_TRUE(PathTimeCurve(CWegZeitDat{}).Sample(0.1).empty());
}

} // namespace
