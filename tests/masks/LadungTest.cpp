// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CLadungDat.h"

#include "host/CRuvData.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace
{

constexpr double kDegree = 3.14159265358979324 / 180.0;
constexpr double kG = 9.81;

class LadungDat : public ::testing::Test
{
  protected:
    LadungDat()
    {
        dat.nutzlast = 10000.0;
        dat.ladung = 4000.0;
    }

    /// What holds the load when every lashing pulls with `force`, N: friction under load and lashings, the walls, and
    /// the lashings' own pull. `pull` is the share of the pull against the direction.
    double HeldByTieDown(double force, double walls) const
    {
        const double weight = dat.ladung * kG;
        // Each lashing presses down with sinα on both sides; k tells what of it the second side gets.
        const double pressed =
            static_cast<double>(dat.zurrungen) * force * dat.uebertragungsbeiwert * std::sin(dat.zurrwinkel * kDegree);
        return dat.reibungsbeiwert * weight + (dat.reibungsbeiwert + dat.reibungGurt) * pressed + walls;
    }
    double HeldByDiagonal(double force, double walls, double direction) const
    {
        const double down = std::sin(dat.diagonalAlpha * kDegree);
        const double pull = std::cos(dat.diagonalAlpha * kDegree) * direction;
        return dat.reibungsbeiwert * (dat.ladung * kG + 4.0 * force * down) + 2.0 * force * pull + walls;
    }

    CRuvData data;
    CLadungDat dat{data};
};

TEST_F(LadungDat, ChoosersSetTheLowerEndOfTheirRange)
{
    constexpr std::array friction{0.2, 0.2, 0.2, 0.2, 0.1, 0.1, 0.3, 0.3, 0.4, 0.6, 0.3};
    for (std::size_t i = 0; i < friction.size(); ++i) {
        dat.reibungWahl = static_cast<std::int64_t>(i);
        dat.ReibungGewaehlt();
        EXPECT_EQ(dat.reibungsbeiwert, friction[i]) << i;
    }
    constexpr std::array transfer{1.25, 1.5, 2.0};
    for (std::size_t i = 0; i < transfer.size(); ++i) {
        dat.uebertragungWahl = static_cast<std::int64_t>(i);
        dat.UebertragungGewaehlt();
        EXPECT_EQ(dat.uebertragungsbeiwert, transfer[i]) << i;
    }
    for (const std::int64_t none : {-1, 11}) {
        dat.reibungWahl = dat.uebertragungWahl = none;
        dat.ReibungGewaehlt();
        dat.UebertragungGewaehlt();
        EXPECT_EQ(dat.reibungsbeiwert, 0.3);
        EXPECT_EQ(dat.uebertragungsbeiwert, 2.0);
    }
}

TEST_F(LadungDat, ComputedByHand)
{
    // 4 t, µ 0.2, four lashings of 5 kN at 75° with 1.5.
    dat.Rechnen();
    const double fromLashings = 4.0 * 5000.0 * 1.5 * 0.9659258263 * 0.2; // 5795.55
    EXPECT_NEAR(dat.sicherungskraft, 32000.0 - 7848.0, 1e-9);
    EXPECT_NEAR(dat.reibungskraftOhne, 7848.0, 1e-9);
    EXPECT_NEAR(dat.reibungskraftZurrung, fromLashings, 1e-4);
    EXPECT_NEAR(dat.reibungskraftGesamt, 7848.0 + fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftVorne, 24152.0 - fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftHinten, 20000.0 - 7848.0 - fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftSeitlich, dat.normKraftHinten, 1e-9);
    // 24152 N of 1448.9 N each
    EXPECT_EQ(dat.normZurrungen, 17.0);
    // At rest on the level nothing pulls; the direction of the standard that is not computed stays in the count.
    EXPECT_EQ(dat.beschleunigungskraftLaengs, 0.0);
    EXPECT_NEAR(dat.kinKraftVorne, -7848.0 - fromLashings, 1e-4);
    EXPECT_EQ(dat.kinKraftHinten, 0.0);
    EXPECT_EQ(dat.kinZurrkraftHinten, 0.0);
    EXPECT_EQ(dat.kinKraftSeitlich, 0.0);
    EXPECT_EQ(dat.kinZurrkraftSeitlich, 0.0);
    EXPECT_EQ(dat.kinZurrungen, 9.0); // 12152 N to the rear
    // Weaker lashings than their pre-tension count by their limit.
    dat.zurrkraftLC = 2500.0;
    dat.Rechnen();
    EXPECT_EQ(dat.normZurrungen, 34.0);
}

TEST_F(LadungDat, TieDownBalancesInEachDirection)
{
    std::mt19937_64 random(419);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    for (int i = 0; i < 200; ++i) {
        dat.ladung = between(100.0, 20000.0);
        dat.reibungsbeiwert = between(0.05, 0.6);
        dat.reibungGurt = between(0.0, 0.2);
        dat.zurrwinkel = between(10.0, 90.0);
        dat.zurrungen = 1 + i % 12;
        dat.formschlussVorne = i % 2 != 0;
        dat.formschlussHinten = i / 2 % 2 != 0;
        dat.formschlussSeitlich = i / 4 % 2 != 0;
        dat.formschlussVorneGrenze = between(0.0, 60000.0);
        dat.zurrkraftSTF = between(500.0, 8000.0);
        dat.reibungLaengs = between(-1.0, 1.0);
        dat.reibungQuer = between(-1.0, 1.0);
        dat.gefaelleLaengs = between(-12.0, 12.0);
        dat.gefaelleQuer = between(-5.0, 5.0);
        dat.Rechnen();
        const double front = dat.formschlussVorne != 0 ? std::min(0.4 * 98100.0, dat.formschlussVorneGrenze) : 0.0;
        const double rear = dat.formschlussHinten != 0 ? 0.4 * 98100.0 : 0.0;
        const double side = dat.formschlussSeitlich != 0 ? 0.3 * 98100.0 : 0.0;
        const double stf = dat.zurrkraftSTF;
        const auto check = [&](double pushed, double walls, double missing, double missingForce) {
            EXPECT_NEAR(missing, pushed - HeldByTieDown(stf, walls), 1e-6);
            EXPECT_NEAR(HeldByTieDown(stf + missingForce, walls), pushed, 1e-6);
        };
        check(dat.ladung * 8.0, front, dat.normKraftVorne, dat.normZurrkraftVorne);
        check(dat.ladung * 5.0, rear, dat.normKraftHinten, dat.normZurrkraftHinten);
        check(dat.ladung * 5.0, side, dat.normKraftSeitlich, dat.normZurrkraftSeitlich);

        // The driving's own forces act on a load that presses with g·cosθ on the slope.
        const double cosL = 1.0 / std::hypot(1.0, 0.01 * dat.gefaelleLaengs);
        const double cosQ = 1.0 / std::hypot(1.0, 0.01 * dat.gefaelleQuer);
        const double weight = dat.ladung * kG;
        const double less = dat.reibungsbeiwert * weight * (1.0 - cosL * cosQ);
        EXPECT_NEAR(dat.reibungskraftOhne, dat.reibungsbeiwert * weight * cosL * cosQ, 1e-6);
        const double along = dat.reibungLaengs * weight * cosL;
        const double across = dat.reibungQuer * weight * cosQ;
        EXPECT_NEAR(dat.beschleunigungskraftLaengs, along, 1e-6);
        EXPECT_NEAR(dat.beschleunigungskraftQuer, across, 1e-6);
        if (along >= 0.0) {
            check(along + less, front, dat.kinKraftVorne, dat.kinZurrkraftVorne);
            EXPECT_EQ(dat.kinKraftHinten, 0.0);
            EXPECT_FALSE(dat.fehltLaengs);
        } else {
            check(along + less, rear, dat.kinKraftHinten, dat.kinZurrkraftHinten);
            EXPECT_EQ(dat.kinKraftVorne, 0.0);
            ASSERT_TRUE(dat.fehltLaengs);
            EXPECT_NEAR(*dat.fehltLaengs, less - along - HeldByTieDown(stf, rear), 1e-6);
        }
        check(across + less, side, dat.kinKraftSeitlich, dat.kinZurrkraftSeitlich);
        ASSERT_EQ(dat.fehltQuer.has_value(), across < 0.0);
        if (dat.fehltQuer) {
            EXPECT_NEAR(*dat.fehltQuer, less - across - HeldByTieDown(stf, side), 1e-6);
        }
    }
}

TEST_F(LadungDat, DiagonalBalancesInEachDirection)
{
    std::mt19937_64 random(4190);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    dat.zurrart = CLadungDat::diagonalzurren;
    dat.reibungGurt = 0.3; // has no part in it
    for (int i = 0; i < 200; ++i) {
        dat.ladung = between(100.0, 20000.0);
        dat.reibungsbeiwert = between(0.0, 0.6);
        dat.diagonalAlpha = between(5.0, 80.0);
        dat.diagonalBeta = between(5.0, 85.0);
        dat.formschlussSeitlich = i % 2 != 0;
        dat.formschlussSeitlichGrenze = i % 4 == 1 ? 0.0 : 20000.0;
        dat.zurrkraftSTF = between(500.0, 8000.0);
        dat.reibungLaengs = between(-1.0, 1.0);
        dat.reibungQuer = i % 5 == 0 ? 0.0 : between(-1.0, 1.0);
        dat.Rechnen();
        const double side = dat.formschlussSeitlich != 0 ? (i % 4 == 1 ? 0.3 * 98100.0 : 20000.0) : 0.0;
        const double stf = dat.zurrkraftSTF;
        const double along = std::cos(dat.diagonalBeta * kDegree), across = std::sin(dat.diagonalBeta * kDegree);
        const auto check = [&](double pushed, double walls, double direction, double missing, double missingForce) {
            EXPECT_NEAR(missing, pushed - HeldByDiagonal(stf, walls, direction), 1e-6);
            EXPECT_NEAR(HeldByDiagonal(stf + missingForce, walls, direction), pushed, 1e-6);
        };
        EXPECT_NEAR(dat.reibungskraftGesamt, HeldByDiagonal(stf, 0.0, 0.0), 1e-6);
        check(dat.ladung * 8.0, 0.0, along, dat.normKraftVorne, dat.normZurrkraftVorne);
        check(dat.ladung * 5.0, 0.0, along, dat.normKraftHinten, dat.normZurrkraftHinten);
        check(dat.ladung * 5.0, side, across, dat.normKraftSeitlich, dat.normZurrkraftSeitlich);
        const double kl = dat.reibungLaengs * dat.ladung * kG, kq = dat.reibungQuer * dat.ladung * kG;
        if (kl >= 0.0)
            check(kl, 0.0, along, dat.kinKraftVorne, dat.kinZurrkraftVorne);
        else
            check(kl, 0.0, along, dat.kinKraftHinten, dat.kinZurrkraftHinten);
        EXPECT_EQ(kl >= 0.0 ? dat.kinKraftHinten : dat.kinKraftVorne, 0.0);
        EXPECT_EQ(kl >= 0.0 ? dat.kinZurrkraftHinten : dat.kinZurrkraftVorne, 0.0);
        check(kq, side, across, dat.kinKraftSeitlich, dat.kinZurrkraftSeitlich);
        if (kl < 0.0) {
            EXPECT_NEAR(dat.fehltLaengs.value(), -kl - HeldByDiagonal(stf, 0.0, along), 1e-6);
        }
        if (kq < 0.0) {
            EXPECT_NEAR(dat.fehltQuer.value(), -kq - HeldByDiagonal(stf, side, across), 1e-6);
        }

        // Twice the pull that one pair needs, in lashings.
        const double each = std::min(stf, 5000.0);
        const auto pair = [&](double missingForce) { return 2.0 * (missingForce + stf); };
        const double most =
            std::max({pair(dat.normZurrkraftVorne), pair(dat.normZurrkraftHinten), pair(dat.normZurrkraftSeitlich)});
        EXPECT_GE(dat.normZurrungen * each, 2.0 * most - 1e-6);
        EXPECT_LT((dat.normZurrungen - 1.0) * each, 2.0 * most);
        const double mostDriven =
            std::max(pair(kl >= 0.0 ? dat.kinZurrkraftVorne : dat.kinZurrkraftHinten), pair(dat.kinZurrkraftSeitlich));
        EXPECT_GE(dat.kinZurrungen * each, 2.0 * mostDriven - 1e-6);
        EXPECT_LT((dat.kinZurrungen - 1.0) * each, 2.0 * mostDriven);
    }
}

TEST_F(LadungDat, TheCountOfLashingsIsTheSmallestThatHolds)
{
    dat.ladung = 3300.0;
    dat.Rechnen();
    const auto needed = static_cast<std::int64_t>(dat.normZurrungen);
    ASSERT_GT(needed, 1);
    const auto holds = [&](std::int64_t n) {
        dat.zurrungen = n;
        dat.Rechnen();
        return dat.normKraftVorne <= 0.0 && dat.normKraftHinten <= 0.0 && dat.normKraftSeitlich <= 0.0;
    };
    EXPECT_TRUE(holds(needed));
    EXPECT_EQ(dat.normZurrungen, static_cast<double>(needed));
    EXPECT_FALSE(holds(needed - 1));
    // Sideways can be what needs the most.
    dat.beschleunigungQuer = 9.0;
    dat.Rechnen();
    const double sideways = dat.normZurrungen;
    EXPECT_GT(sideways, static_cast<double>(needed));
    // Driving in a curve alone: forward and rear are less.
    dat.beschleunigungQuer = 5.0;
    dat.reibungLaengs = 0.5;
    dat.reibungQuer = 0.9;
    dat.Rechnen();
    EXPECT_TRUE(holds(static_cast<std::int64_t>(dat.kinZurrungen)) || dat.kinKraftSeitlich <= 0.0);
}

TEST_F(LadungDat, WithoutLashingsNoCountIsANumberOfThem)
{
    for (const bool angle : {false, true}) {
        dat.zurrungen = angle ? 4 : 0;
        dat.zurrwinkel = angle ? 0.0 : 75.0;
        dat.Rechnen();
        EXPECT_TRUE(std::isinf(dat.normZurrkraftVorne));
        EXPECT_FALSE(std::isfinite(dat.normZurrungen));
        EXPECT_FALSE(std::isfinite(dat.kinZurrungen));
        EXPECT_TRUE(std::isfinite(dat.normKraftVorne));
    }
    dat.zurrwinkel = 75.0;
    dat.zurrkraftLC = 0.0;
    dat.Rechnen();
    EXPECT_FALSE(std::isfinite(dat.normZurrungen));
    // Nothing over nothing is no number whatever stands beside it.
    dat.ladung = 0.0;
    dat.zurrungen = 0;
    dat.formschlussSeitlich = 1;
    dat.Rechnen();
    EXPECT_TRUE(std::isnan(dat.normZurrungen));
}

} // namespace
