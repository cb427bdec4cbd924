// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The avoidability calculation by hand: its numbers, its messages and what they stop.
#include "host/CRuvData.h"
#include "tests/masks/VermFaelle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{

using namespace test;

/// 50 km/h, 1 s reaction, 0.2 s threshold, 7.5 m/s²: 13.889 m + 2.728 m, then 13.139 m/s, 28.125 m to the stop.
void GiveExample(CVermDat& dat, VermRichtung direction, VermKenngroesse kind)
{
    dat.Loeschen();
    dat.richtung = static_cast<std::int64_t>(direction);
    dat.art = static_cast<std::int64_t>(kind);
    dat.vT = 70.0;
    dat.vZ = 50.0;
    dat.tR = 1.0;
    dat.tS = 0.2;
    dat.aB = 7.5;
}

TEST(VermDat, CrossingByHand)
{
    CRuvData data;
    CVermDat dat(data);
    GiveExample(dat, VermRichtung::quer, VermKenngroesse::raeumlich);
    dat.sRK = 20.0;
    dat.tRK = 1.2;
    dat.vG = 36.0;
    dat.sFR = 8.0;
    EXPECT_EQ(dat.Rechnen(), Meldungen{});
    // vE² = 13.139² - 2·7.5·(20 - 16.617) = 121.88
    EXPECT_NEAR(dat.vE, 39.743, 1e-3);
    EXPECT_EQ(dat.vorzeichen, 1);
    EXPECT_NEAR(dat.sR, 13.889, 1e-3);
    EXPECT_NEAR(dat.sS, 2.728, 1e-3);
    EXPECT_NEAR(dat.vS / kKmh, 13.139, 1e-3);
    EXPECT_NEAR(dat.vRt, 70.0, 1e-9);
    EXPECT_NEAR(dat.tG, 0.8, 1e-12);
    // v·1.1 + v²/15 = 20 + 0.0125 + ... : stopping distance v·1 + (v·0.2 - 0.05) + (v - 0.75)²/15 = 20
    const double root = -8.25 + std::sqrt(8.25 * 8.25 + 15.0 * 20.05 - 0.5625);
    EXPECT_NEAR(dat.vHoechst, root * kKmh, 4e-4);
    // 28.125 m are needed, 8.125 m are lacking at 13.889 m/s.
    EXPECT_NEAR(dat.tReakt, 1.2 + 0.585, 2e-4);
    EXPECT_NEAR(dat.sReakt, 28.125, 2e-3);
    // 6.111 m remain after the reaction: 13.889·0.2 - a·0.04/6 + (13.889 - a/10)²/(2·a) = 6.111; a ≈ 23.66
    const double a = dat.aGrenz;
    EXPECT_NEAR(13.8889 * 0.2 - a * 0.04 / 6.0 + std::pow(13.8889 - a / 10.0, 2) / (2.0 * a), 6.1111, 1e-3);

    // V is there after 1.2 s + (13.139 - 11.040)/7.5 = 1.480 s, unbraked after 1.440 s. G has covered 8 m after 2 s,
    // but 2.6 m after 1.460 s.
    dat.art = static_cast<std::int64_t>(VermKenngroesse::zeitlich);
    EXPECT_EQ(dat.Rechnen(), Meldungen{});
    EXPECT_NEAR(dat.vE, 39.743, 1e-3);
    dat.sFR = 2.6;
    EXPECT_EQ(dat.Rechnen(), Meldungen{Meldung::gegnerHatGeraeumt});
    EXPECT_EQ(dat.vE, 0.0);
    EXPECT_EQ(dat.vorzeichen, -1);
    EXPECT_GT(dat.vHoechst, 50.0);
    EXPECT_LT(dat.sReakt, 20.0);
    EXPECT_LT(dat.aGrenz, 7.5);

    // Spatially the same message and speed, but limits of the spatial condition.
    dat.art = static_cast<std::int64_t>(VermKenngroesse::raeumlich);
    EXPECT_EQ(dat.Rechnen(), Meldungen{Meldung::gegnerHatGeraeumt});
    EXPECT_EQ(dat.vE, 0.0);
    EXPECT_EQ(dat.vorzeichen, 1);
    EXPECT_NEAR(dat.vHoechst, root * kKmh, 4e-4);

    // A vanishing point 10 m beyond lets V stop.
    dat.xV = 10.0;
    EXPECT_EQ(dat.Rechnen(), Meldungen{});
    EXPECT_EQ(dat.vE, 0.0);
    EXPECT_EQ(dat.vorzeichen, -1);
    EXPECT_NEAR(dat.sReakt, 18.125, 2e-3);
    // One 30 m before the collision point lies before the reaction.
    dat.xV = -30.0;
    dat.sFR = 0.0;
    EXPECT_EQ(dat.Rechnen(), Meldungen{Meldung::keinGrenzwert});
    EXPECT_NEAR(dat.vE, 50.0, 1e-9);
}

TEST(VermDat, OpponentCompletesWhatIsNotGiven)
{
    struct Row {
        VermRichtung direction;
        double vG, aG, sFB;       // given
        double vG2, aG2, sFB2, t; // what it becomes
    };
    CRuvData data;
    CVermDat dat(data);
    for (const Row& row : {
             Row{VermRichtung::entgegen, 36, 0, 10, 36, 5, 10, 2},
             Row{VermRichtung::entgegen, 0, 5, 10, 36, 5, 10, 2},
             Row{VermRichtung::entgegen, 36, 5, 99, 36, 5, 10, 2},
             Row{VermRichtung::gleich, 36, 0, 10, 36, 0, 10, 0},
             Row{VermRichtung::gleich, 0, 5, 10, 36, 5, 10, 2},
             Row{VermRichtung::gleich, 36, -5, 99, 36, -5, 0, 0},
             Row{VermRichtung::gleich, -36, 5, 99, -36, 5, 0, 0},
             Row{VermRichtung::gleich, 36, 5, 0, 36, 5, 10, 2},
         }) {
        GiveExample(dat, row.direction, VermKenngroesse::raeumlich);
        dat.sRK = 60.0;
        dat.tRK = 3.0;
        dat.vG = row.vG;
        dat.aG = row.aG;
        dat.sFB = row.sFB;
        // Twice: what was computed is computed anew.
        for (int i = 0; i < 2; ++i) {
            dat.Rechnen();
            ASSERT_EQ(dat.berechnet, 1);
            EXPECT_NEAR(dat.vG, row.vG2, 1e-12);
            EXPECT_NEAR(dat.aG, row.aG2, 1e-12);
            EXPECT_NEAR(dat.sFB, row.sFB2, 1e-12);
            EXPECT_NEAR(dat.tG, row.t, 1e-12);
        }
    }
    // A computed deceleration follows the speed it came from, an entered one does not.
    GiveExample(dat, VermRichtung::entgegen, VermKenngroesse::raeumlich);
    dat.vG = 36.0;
    dat.sFB = 10.0;
    dat.Rechnen();
    dat.vG = 72.0;
    dat.Rechnen();
    EXPECT_NEAR(dat.aG, 20.0, 1e-12);
    dat.aG = 10.0;
    dat.Eingegeben(&dat.aG);
    dat.Rechnen();
    EXPECT_NEAR(dat.sFB, 20.0, 1e-12);
    EXPECT_NEAR(dat.aG, 10.0, 1e-12);

    // Clearing 12 m: accelerating from rest at 1.5 m/s² 4 s; braking from 10 m/s at 4 m/s² to 2 m/s 2 s.
    GiveExample(dat, VermRichtung::quer, VermKenngroesse::zeitlich);
    dat.sFR = 12.0;
    dat.aG = -1.5;
    dat.Rechnen();
    EXPECT_NEAR(dat.tG, 4.0, 1e-12);
    dat.vG = 36.0;
    dat.aG = 4.0;
    dat.Rechnen();
    EXPECT_NEAR(dat.tG, 2.0, 1e-12);
    // The smallest deceleration makes no difference to 1.2 s.
    dat.aG = 2e-9;
    dat.Rechnen();
    EXPECT_NEAR(dat.tG, 1.2, 1e-8);
    EXPECT_EQ(dat.aG, 2e-9);
}

TEST(VermDat, MessagesAndWhatTheyStop)
{
    CRuvData data;
    CVermDat dat(data);
    const auto given = [&](VermRichtung direction, VermKenngroesse kind) {
        GiveExample(dat, direction, kind);
        dat.sRK = 30.0;
        dat.tRK = 2.0;
        dat.vG = 36.0;
        dat.aG = 5.0;
        dat.sFR = 5.0;
    };
    const auto expectFatal = [&](Meldung message) {
        const double vE = dat.vE = 12.5;
        const double sFB = dat.sFB;
        dat.berechnet = 1;
        EXPECT_EQ(dat.Rechnen(), Meldungen{message});
        EXPECT_TRUE(CVermDat::IstFatal(message));
        EXPECT_EQ(dat.berechnet, 0);
        EXPECT_EQ(dat.vE, vE);
        EXPECT_EQ(dat.sFB, sFB);
    };
    for (const Setting s : kSettings) {
        given(s.direction, s.kind);
        for (const double v : {0.0, -20.0}) {
            dat.vZ = v;
            expectFatal(Meldung::keineGeschwindigkeit);
        }
        dat.vZ = 50.0;
        dat.aB = 0.0;
        expectFatal(Meldung::keineBremsverzoegerung);
    }
    given(VermRichtung::entgegen, VermKenngroesse::raeumlich);
    dat.aG = -1.0;
    expectFatal(Meldung::gegnerBeschleunigt);
    for (const double v : {0.0, 36.0}) {
        dat.aG = 0.0;
        dat.vG = v;
        expectFatal(Meldung::keineFehlbremsstrecke);
    }
    given(VermRichtung::gleich, VermKenngroesse::zeitlich);
    dat.aG = -1.0;
    dat.vG = 0.0;
    dat.sFB = 3.0;
    expectFatal(Meldung::keineGegnergeschw);

    given(VermRichtung::quer, VermKenngroesse::zeitlich);
    dat.aG = dat.vG = 0.0;
    expectFatal(Meldung::gegnerSteht);
    EXPECT_EQ(dat.richtung, 1);
    given(VermRichtung::quer, VermKenngroesse::raeumlich);
    dat.aG = dat.vG = 0.0;
    dat.Rechnen();
    EXPECT_EQ(dat.berechnet, 1);
    EXPECT_EQ(dat.richtung, 2);

    // 36 km/h at 5 m/s² are over after 10 m.
    given(VermRichtung::quer, VermKenngroesse::zeitlich);
    dat.sFR = 10.5;
    EXPECT_TRUE(Says(dat.Rechnen(), Meldung::gegnerHaeltVorher));
    EXPECT_EQ(dat.berechnet, 1);
    dat.art = static_cast<std::int64_t>(VermKenngroesse::raeumlich);
    EXPECT_TRUE(Says(dat.Rechnen(), Meldung::gegnerHaeltImKonflikt));
    EXPECT_EQ(dat.berechnet, 1);
    dat.sFR = 9.5;
    EXPECT_FALSE(Says(dat.Rechnen(), Meldung::gegnerHaeltImKonflikt));

    // G follows its way on faster than V ever drives: no speed and no braking ends that.
    given(VermRichtung::gleich, VermKenngroesse::zeitlich);
    dat.vG = 90.0;
    dat.aG = 0.0;
    dat.tRK = 1.0;
    const Meldungen messages = dat.Rechnen();
    EXPECT_EQ(std::count(messages.begin(), messages.end(), Meldung::keinGrenzwert), 1);
    EXPECT_EQ(dat.grenzBestimmt, 0);
    EXPECT_EQ(dat.aGrenz, 7.5);
    EXPECT_EQ(dat.reaktBestimmt, 0);
    EXPECT_EQ(dat.tReakt, 1.0);
    EXPECT_EQ(dat.sReakt, 30.0);
}

TEST(VermDat, NothingEnteredMakesAWrongNumber)
{
    CRuvData data;
    CVermDat dat(data);
    std::mt19937_64 random(46202);
    constexpr double kNumbers[] = {0.0,  -0.0,   1e-300, 5e-324, 1e-9, 1e-3,  1.0,  7.5,   50.0, 100.0,
                                   -1.0, -100.0, 1e6,    1e9,    1e15, 1e300, -1e9, 0.001, 10.0, 30.0};
    const auto number = [&] {
        if (random() % 50 == 0)
            return random() % 2 == 0 ? std::nan("") : std::numeric_limits<double>::infinity();
        return kNumbers[random() % std::size(kNumbers)];
    };
    int computed = 0;
    for (int round = 0; round < 20000; ++round) {
        dat.Loeschen();
        for (double* field : {&dat.vT, &dat.vKoll, &dat.vZ, &dat.tR, &dat.tS, &dat.aB, &dat.aR, &dat.sRK, &dat.tRK,
                              &dat.vG, &dat.sFB, &dat.sFR, &dat.aG, &dat.xV})
            *field = number();
        for (double* field : {&dat.tR, &dat.tS, &dat.aB, &dat.sRK, &dat.tRK, &dat.sFB, &dat.sFR})
            *field = random() % 30 == 0 ? *field : std::abs(*field);
        dat.richtung = static_cast<std::int64_t>(1 + random() % 3);
        dat.art = static_cast<std::int64_t>(1 + random() % 2);
        const Meldungen messages = dat.Rechnen();
        ASSERT_EQ(dat.berechnet == 0, !messages.empty() && CVermDat::IstFatal(messages.back()));
        if (dat.berechnet == 0)
            continue;
        ++computed;
        for (const double value : {dat.vE, dat.vHoechst, dat.sR, dat.vR, dat.vRt, dat.vS, dat.sS})
            ASSERT_TRUE(std::isfinite(value) && value >= 0.0) << round;
        for (const double value : {dat.sReakt, dat.tReakt, dat.aGrenz, dat.tG, dat.sFB})
            ASSERT_TRUE(std::isfinite(value)) << round;
        for (std::int64_t version = 0; version < 4; ++version)
            ASSERT_TRUE(std::isfinite(dat.Fahrtende(dat.GibVariante(version))));
    }
    EXPECT_GT(computed, 500);
}

} // namespace
