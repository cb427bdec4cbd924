// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CWegZeitDat.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{

constexpr std::size_t kFirst = CWegZeitDat::kErsteSpalte;

struct Given {
    PhasenArt art;
    double vEnd = 0.0;
    double vAnf = 0.0;
    double verz = 0.0;
    double zeit = 0.0;
    double weg = 0.0;
};

void Put(CWegZeitRechDat& data, std::size_t column, const Given& given)
{
    CWegZeitSpalte& s = data.spalten[column];
    s = {};
    s.art = given.art;
    s.vEnd = given.vEnd;
    s.vAnf = given.vAnf;
    s.verz = given.verz;
    s.zeit = given.zeit;
    s.weg = given.weg;
}

CWegZeitRechDat Computed(std::initializer_list<Given> phases)
{
    CWegZeitRechDat data;
    std::size_t column = kFirst;
    for (const Given& given : phases) {
        Put(data, column++, given);
    }
    data.Berechnung();
    return data;
}

void ExpectPhase(const CWegZeitSpalte& s, double vEnd, double vAnf, double verz, double zeit, double weg)
{
    EXPECT_NEAR(s.vEnd, vEnd, 1e-9);
    EXPECT_NEAR(s.vAnf, vAnf, 1e-9);
    EXPECT_NEAR(s.verz, verz, 1e-9);
    EXPECT_NEAR(s.zeit, zeit, 1e-9);
    EXPECT_NEAR(s.weg, weg, 1e-9);
}

/// Drives the phase forwards in time in small steps, from its start speed on.
struct Driven {
    double vEnd; // km/h
    double weg;  // m
};

Driven Drive(const CWegZeitSpalte& s, double decelerationBefore)
{
    constexpr int kSteps = 2000;
    const double dt = s.zeit / kSteps;
    double v = s.vAnf / 3.6;
    double path = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        const double share = (i + 0.5) / kSteps;
        const double a = s.art == PhasenArt::constantSpeed ? 0.0
                         : s.art == PhasenArt::threshold   ? decelerationBefore + share * (s.verz - decelerationBefore)
                                                           : s.verz;
        const double next = v - a * dt;
        path += (v + next) / 2.0 * dt;
        v = next;
    }
    return {v * 3.6, path};
}

TEST(Berechnung, BrakingFromEveryPairOfQuantities)
{
    // 16 m/s to a stop at 8 m/s² takes 2 s and 16 m.
    for (const Given& given :
         {Given{PhasenArt::braking, 0.0, 0.0, 8.0, 2.0, 0.0}, Given{PhasenArt::braking, 0.0, 0.0, 8.0, 0.0, 16.0},
          Given{PhasenArt::braking, 0.0, 0.0, 0.0, 2.0, 16.0}, Given{PhasenArt::braking, 0.0, 57.6, 8.0, 0.0, 0.0},
          Given{PhasenArt::braking, 0.0, 57.6, 0.0, 2.0, 0.0}, Given{PhasenArt::braking, 0.0, 57.6, 0.0, 0.0, 16.0}}) {
        const CWegZeitRechDat data = Computed({given});
        ExpectPhase(data.spalten[kFirst], 0.0, 57.6, 8.0, 2.0, 16.0);
    }
    // The same backing up: all signed quantities change sign.
    const CWegZeitRechDat reverse = Computed({{PhasenArt::braking, 0.0, 0.0, -8.0, 0.0, -16.0}});
    ExpectPhase(reverse.spalten[kFirst], 0.0, -57.6, -8.0, 2.0, -16.0);
}

TEST(Berechnung, AcceleratingReactionAndConstantSpeed)
{
    // From rest at 2 m/s² over 9 m: 6 m/s after 3 s. Without a predecessor the end speed is what is missing.
    const CWegZeitRechDat fromRest = Computed({{PhasenArt::accelerating, 0.0, 0.0, -2.0, 0.0, 9.0}});
    ExpectPhase(fromRest.spalten[kFirst], 21.6, 0.0, -2.0, 3.0, 9.0);
    const CWegZeitRechDat steady = Computed({{PhasenArt::reaction, 0.0, 36.0, 0.0, 1.0, 0.0}});
    ExpectPhase(steady.spalten[kFirst], 36.0, 36.0, 0.0, 1.0, 10.0);
    // From 2 to 6 m/s at 2 m/s², and not from -2 m/s, which has the same path.
    const CWegZeitRechDat faster = Computed({{PhasenArt::accelerating, 21.6, 0.0, -2.0, 0.0, 8.0}});
    ExpectPhase(faster.spalten[kFirst], 21.6, 7.2, -2.0, 2.0, 8.0);

    // A reaction at constant speed and a start from rest before it, both known by one quantity besides the speed.
    const CWegZeitRechDat chain = Computed({{PhasenArt::braking, 0.0, 36.0, 5.0, 0.0, 0.0},
                                            {PhasenArt::reaction, 0.0, 0.0, 0.0, 1.0, 0.0},
                                            {PhasenArt::constantSpeed, 0.0, 0.0, 0.0, 0.0, 25.0},
                                            {PhasenArt::accelerating, 0.0, 0.0, 0.0, 5.0, 0.0}});
    ExpectPhase(chain.spalten[kFirst], 0.0, 36.0, 5.0, 2.0, 10.0);
    ExpectPhase(chain.spalten[kFirst + 1], 36.0, 36.0, 0.0, 1.0, 10.0);
    ExpectPhase(chain.spalten[kFirst + 2], 36.0, 36.0, 0.0, 2.5, 25.0);
    ExpectPhase(chain.spalten[kFirst + 3], 36.0, 0.0, -2.0, 5.0, 25.0);
    EXPECT_NEAR(chain.spalten[kFirst + 3].sumZeit, 10.5, 1e-9);
    EXPECT_NEAR(chain.spalten[kFirst + 3].sumWeg, 70.0, 1e-9);
}

TEST(Berechnung, ThresholdRisesFromThePhaseBefore)
{
    // 0.6 s from an acceleration of 2 m/s² to a deceleration of 8 m/s²: on the average 3 m/s² over 1.8 m/s; the path
    // lost against the start speed is (2·(-2) + 8)·0.6²/6 = 0.24 m.
    const CWegZeitRechDat data = Computed({{PhasenArt::braking, 0.0, 57.6, 8.0, 0.0, 0.0},
                                           {PhasenArt::threshold, 0.0, 0.0, 8.0, 0.6, 0.0},
                                           {PhasenArt::reaction, 0.0, 0.0, -2.0, 1.0, 0.0}});
    ExpectPhase(data.spalten[kFirst + 1], 57.6, 64.08, 8.0, 0.6, 17.8 * 0.6 - 0.24);
    ExpectPhase(data.spalten[kFirst + 2], 64.08, 56.88, -2.0, 1.0, 16.8);
}

/// Reaction, threshold and braking as a mask computes them from the initial speed (m/s).
CWegZeitRechDat StoppingSequence(double vA)
{
    const double tR = 1.0, tS = 0.2, aR = 0.3, aB = 7.5, vE = 10.0 / 3.6;
    const double vR = vA + aR * tR;
    const double vS = vR - (aB - aR) / 2.0 * tS;
    const double tB = (vS - vE) / aB;
    CWegZeitRechDat data;
    Put(data, kFirst, {PhasenArt::braking, vE * 3.6, vS * 3.6, aB, tB, vS * tB - aB / 2.0 * tB * tB});
    Put(data, kFirst + 1,
        {PhasenArt::threshold, vS * 3.6, vR * 3.6, aB, tS, vR * tS - (aB - 2.0 * aR) * tS * tS / 6.0});
    Put(data, kFirst + 2, {PhasenArt::reaction, vR * 3.6, vA * 3.6, -aR, tR, vA * tR + aR / 2.0 * tR * tR});
    return data;
}

TEST(Berechnung, CompleteSequenceKeepsEveryBit)
{
    for (double kmh = 20.0; kmh < 250.0; kmh += 0.37) {
        const CWegZeitRechDat before = StoppingSequence(kmh / 3.6);
        CWegZeitRechDat after = before;
        after.Berechnung();
        double time = 0.0, path = 0.0;
        for (std::size_t c = kFirst; c < kFirst + 3; ++c) {
            CWegZeitSpalte expected = before.spalten[c];
            expected.sumZeit = time += expected.zeit;
            expected.sumWeg = path += expected.weg;
            ASSERT_EQ(after.spalten[c], expected) << kmh << " km/h, column " << c;
        }
    }
}

TEST(Berechnung, ChangedCollisionSpeedKeepsTimesAndDecelerations)
{
    const CWegZeitRechDat before = StoppingSequence(70.0 / 3.6);
    CWegZeitRechDat after = before;
    after.spalten[kFirst].vEnd += 18.0;
    after.Berechnung();
    for (std::size_t c = kFirst; c < kFirst + 3; ++c) {
        EXPECT_EQ(after.spalten[c].zeit, before.spalten[c].zeit);
        EXPECT_EQ(after.spalten[c].verz, before.spalten[c].verz);
        EXPECT_NEAR(after.spalten[c].vAnf, before.spalten[c].vAnf + 18.0, 1e-9);
        EXPECT_NEAR(after.spalten[c].weg, before.spalten[c].weg + 5.0 * before.spalten[c].zeit, 1e-9);
    }

    // The same for a reaction at constant speed, whose deceleration of 0 is not a missing one.
    CWegZeitRechDat steady =
        Computed({{PhasenArt::braking, 0.0, 36.0, 5.0, 0.0, 0.0}, {PhasenArt::reaction, 36.0, 36.0, 0.0, 1.0, 10.0}});
    steady.spalten[kFirst].vEnd = 18.0;
    steady.Berechnung();
    ExpectPhase(steady.spalten[kFirst + 1], 54.0, 54.0, 0.0, 1.0, 15.0);
}

TEST(Berechnung, WhatCannotBeCompletedStays)
{
    // Speeds alone, a deceleration of the wrong sign, an acceleration over more path than from rest, a reaction that
    // could end at any speed, a difference of speeds that is rounding.
    const CWegZeitRechDat speeds = Computed({{PhasenArt::braking, 20.0, 50.0, 0.0, 0.0, 0.0}});
    ExpectPhase(speeds.spalten[kFirst], 20.0, 50.0, 0.0, 0.0, 0.0);
    const CWegZeitRechDat sign = Computed({{PhasenArt::braking, 20.0, 50.0, -5.0, 0.0, 0.0}});
    ExpectPhase(sign.spalten[kFirst], 20.0, 50.0, -5.0, 0.0, 0.0);
    const CWegZeitRechDat path = Computed({{PhasenArt::accelerating, 18.0, 3.6, -2.0, 0.0, 30.0}});
    ExpectPhase(path.spalten[kFirst], 18.0, 3.6, -2.0, 0.0, 30.0);
    const CWegZeitRechDat open = Computed({{PhasenArt::reaction, 0.0, 36.0, 2.0, 0.0, 0.0}});
    ExpectPhase(open.spalten[kFirst], 0.0, 36.0, 2.0, 0.0, 0.0);
    const CWegZeitRechDat none = Computed({{PhasenArt::braking, 36.0, std::nextafter(36.0, 40.0), 7.5, 0.0, 0.0}});
    EXPECT_EQ(none.spalten[kFirst].zeit, 0.0);
    // An empty phase hands its speed on.
    const CWegZeitRechDat empty = Computed({{PhasenArt::braking, 0.0, 36.0, 5.0, 0.0, 0.0},
                                            {PhasenArt::braking},
                                            {PhasenArt::noTime, 0.0, 0.0, 0.0, 3.0, 0.0},
                                            {PhasenArt::noTime, 0.0, 54.0, 0.0, 3.0, 0.0},
                                            {PhasenArt::constantSpeed, 0.0, 0.0, 0.0, 2.0, 0.0}});
    ExpectPhase(empty.spalten[kFirst + 1], 36.0, 36.0, 0.0, 0.0, 0.0);
    ExpectPhase(empty.spalten[kFirst + 2], 36.0, 36.0, 0.0, 0.0, 0.0);
    ExpectPhase(empty.spalten[kFirst + 3], 36.0, 54.0, 0.0, 0.0, 0.0);
    ExpectPhase(empty.spalten[kFirst + 4], 54.0, 54.0, 0.0, 2.0, 30.0);
}

/// A quantity that is missing, ordinary, extreme or no number.
class RandomQuantity
{
  public:
    explicit RandomQuantity(std::mt19937_64& random) : m_random(random) {}

    double Ordinary(double from, double to)
    {
        return Chance(0.45) ? 0.0 : std::uniform_real_distribution<double>(from, to)(m_random);
    }
    double Any(double from, double to)
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        constexpr double odd[] = {std::numeric_limits<double>::quiet_NaN(),
                                  infinity,
                                  -infinity,
                                  1e308,
                                  -1e308,
                                  1e-308,
                                  5e-324,
                                  1e9,
                                  -1e9,
                                  -0.0,
                                  1e-12};
        return Chance(0.3) ? odd[m_random() % std::size(odd)] : Ordinary(from, to);
    }
    bool Chance(double probability) { return std::bernoulli_distribution(probability)(m_random); }

  private:
    std::mt19937_64& m_random;
};

constexpr PhasenArt kKinds[] = {PhasenArt::braking,  PhasenArt::accelerating,  PhasenArt::threshold,
                                PhasenArt::reaction, PhasenArt::constantSpeed, PhasenArt::noTime,
                                PhasenArt::turning,  PhasenArt::rolling,       PhasenArt::halfSightMarker};

TEST(Berechnung, EveryTimedPhaseDrivesAsItsNumbersSay)
{
    std::mt19937_64 random(3);
    RandomQuantity quantity(random);
    int driven = 0;
    for (int round = 0; round < 4000; ++round) {
        CWegZeitRechDat data;
        const std::size_t used = 1 + random() % 5;
        for (std::size_t c = kFirst; c < kFirst + used; ++c) {
            if (quantity.Chance(0.1)) {
                continue; // a gap: the next column is not chained
            }
            const PhasenArt kind = kKinds[random() % std::size(kKinds)];
            const double sign = kind == PhasenArt::accelerating ? -1.0 : 1.0;
            Put(data, c,
                {kind, quantity.Ordinary(0.0, 130.0), quantity.Ordinary(0.0, 130.0),
                 sign * quantity.Ordinary(-1.0, 10.0), quantity.Ordinary(0.1, 8.0), quantity.Ordinary(0.5, 90.0)});
        }
        const CWegZeitRechDat given = data;
        data.Berechnung();
        bool risesAnew = false;
        for (std::size_t c = kFirst; c < kFirst + used; ++c) {
            const CWegZeitSpalte& s = data.spalten[c];
            const CWegZeitSpalte& g = given.spalten[c];
            SCOPED_TRACE(testing::Message()
                         << "round " << round << ", column " << c << ", kind " << static_cast<int>(s.art));
            if (!s.IsUsed()) {
                continue;
            }
            if (data.spalten[c - 1].IsUsed()) {
                ASSERT_NEAR(s.vEnd, data.spalten[c - 1].vAnf, 1e-5 * (1.0 + std::abs(s.vEnd)));
            }
            if (s.zeit == 0.0) {
                ASSERT_EQ(s.verz, s.art == PhasenArt::constantSpeed ? 0.0 : g.verz);
                ASSERT_EQ(s.weg, g.weg);
                continue;
            }
            ++driven;
            // What was given and is not contradicted is still there.
            const bool free = s.art != PhasenArt::constantSpeed;
            const bool hasTime = g.zeit != 0.0, hasPath = g.weg != 0.0, hasDeceleration = g.verz != 0.0;
            if (hasTime) {
                ASSERT_EQ(s.zeit, g.zeit);
            }
            if (hasDeceleration && free) {
                ASSERT_EQ(s.verz, g.verz);
            }
            // A threshold phase is completed once more when that gave the phase before it a deceleration to rise from.
            risesAnew |= s.art == PhasenArt::threshold && data.spalten[c + 1].verz != given.spalten[c + 1].verz;
            if (!risesAnew && hasPath && free && !(hasTime && hasDeceleration)) {
                ASSERT_EQ(s.weg, g.weg);
            }
            if (!risesAnew && g.vAnf != 0.0 && free && hasTime + hasPath + hasDeceleration == 1) {
                ASSERT_EQ(s.vAnf, g.vAnf);
            }
            const Driven forward = Drive(s, c + 1 < data.spalten.size() ? data.spalten[c + 1].verz : 0.0);
            const double scale = 1.0 + std::abs(s.vEnd) + std::abs(s.vAnf);
            ASSERT_NEAR(forward.vEnd, s.vEnd, 1e-5 * scale);
            ASSERT_NEAR(forward.weg, s.weg, 1e-5 * scale * (1.0 + std::abs(s.zeit)));
        }
        CWegZeitRechDat again = data;
        again.Berechnung();
        ASSERT_EQ(again, data) << "round " << round;
    }
    EXPECT_GT(driven, 4000);
}

TEST(Berechnung, LeavesNothingThatIsNotANumber)
{
    std::mt19937_64 random(4);
    RandomQuantity quantity(random);
    for (int round = 0; round < 20000; ++round) {
        CWegZeitRechDat data;
        for (std::size_t c = kFirst; c < CWegZeitDat::kSpalten; c += 1 + random() % 3) {
            Put(data, c,
                {kKinds[random() % std::size(kKinds)], quantity.Any(-130.0, 130.0), quantity.Any(-130.0, 130.0),
                 quantity.Any(-10.0, 10.0), quantity.Any(-1.0, 8.0), quantity.Any(-20.0, 90.0)});
        }
        data.Berechnung();
        for (const CWegZeitSpalte& s : data.spalten) {
            for (const double value : {s.vEnd, s.vAnf, s.verz, s.zeit, s.weg}) {
                ASSERT_LE(std::abs(value), 1e9) << "round " << round;
            }
            ASSERT_TRUE(std::isfinite(s.sumZeit) && std::isfinite(s.sumWeg)) << "round " << round;
        }
    }
}

TEST(CWegZeitRechDat, InsertRemoveAndClearColumns)
{
    CWegZeitRechDat data;
    EXPECT_EQ(data.FirstFree(), kFirst);
    for (std::size_t c = 0; c < CWegZeitDat::kSpalten - 1; ++c) {
        Put(data, c, {PhasenArt::braking, static_cast<double>(c)});
    }
    EXPECT_EQ(data.FirstFree(), 47U);
    const CWegZeitRechDat before = data;
    data.selected = 20;

    ASSERT_TRUE(data.Einfuegen(10));
    EXPECT_FALSE(data.spalten[10].IsUsed());
    EXPECT_EQ(data.FirstFree(), 10U);
    EXPECT_EQ(data.spalten[9], before.spalten[9]);
    EXPECT_EQ(data.spalten[11], before.spalten[10]);
    EXPECT_EQ(data.spalten[47], before.spalten[46]);
    EXPECT_EQ(data.selected, 21U);

    const CWegZeitRechDat full = data;
    EXPECT_FALSE(data.Einfuegen(10)); // would lose the phase in the last column
    EXPECT_FALSE(data.Einfuegen(2));
    EXPECT_FALSE(data.Entfernen(2));
    EXPECT_FALSE(data.Entfernen(48));
    EXPECT_EQ(data, full);

    ASSERT_TRUE(data.Entfernen(10));
    EXPECT_EQ(data.spalten, before.spalten);
    EXPECT_EQ(data.selected, 20U);

    data.Loeschen(40);
    EXPECT_EQ(data.FirstFree(), 40U);
    data.Loeschen(0, 1);
    EXPECT_FALSE(data.spalten[1].IsUsed());
    EXPECT_EQ(data.spalten[2], before.spalten[2]);
    EXPECT_EQ(data.spalten[39], before.spalten[39]);
}

} // namespace
