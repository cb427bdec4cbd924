// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CRuvData.h"
#include "masks/dynamics/CTeilanhDat.h"
#include "tests/support/Drive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

constexpr std::size_t kFirst = CWegZeitDat::kErsteSpalte;
constexpr double kKmh = 3.6;

/// A motion in m/s, found by driving it.
struct Truth {
    double vA, tR, aR, tS, aB, tB;
    double vR = 0.0, vS = 0.0, vE = 0.0, sR = 0.0, sS = 0.0, sB = 0.0;

    void Drive()
    {
        const test::Driven reaction = test::Drive(vA, tR, [this](double) { return -aR; });
        vR = reaction.v;
        sR = reaction.path;
        const double rise = tS == 0.0 ? 0.0 : (aB + aR) / tS;
        const test::Driven threshold = test::Drive(vR, tS, [&](double t) { return -aR + rise * t; });
        vS = threshold.v;
        sS = threshold.path;
        const test::Driven braking = test::Drive(vS, tB, [this](double) { return aB; });
        vE = braking.v;
        sB = braking.path;
    }
    double Path() const { return sR + sS + sB; }
};

class RandomMotion
{
  public:
    explicit RandomMotion(unsigned seed) : m_random(seed) {}

    /// A motion that never backs up. It brakes, or accelerates further when `braking` is false.
    Truth Next(bool braking)
    {
        for (;;) {
            Truth truth{Between(1.0, 70.0),
                        Between(0.0, 2.5),
                        Between(-2.0, 3.0),
                        Rarely() ? 0.0 : Between(0.02, 0.9),
                        braking ? Between(0.3, 11.0) : Between(-5.0, -0.1),
                        0.0};
            if (Rarely())
                truth.aR = 0.0;
            truth.Drive();
            if (std::min(truth.vR, truth.vS) < 0.5)
                continue;
            const double stop = truth.vS / truth.aB;
            truth.tB = !braking ? Between(0.0, 4.0) : Rarely() ? stop : Between(0.0, 1.0) * stop;
            truth.Drive();
            return truth;
        }
    }
    double Between(double from, double to) { return std::uniform_real_distribution<double>(from, to)(m_random); }
    bool Rarely() { return std::bernoulli_distribution(0.15)(m_random); }

  private:
    std::mt19937_64 m_random;
};

/// The quantities a mode is given, and nothing else of the motion.
void Give(CTeilanhDat& dat, const Truth& truth, std::int64_t mode)
{
    dat.Loeschen();
    dat.modus = mode;
    dat.tR = truth.tR;
    dat.tS = truth.tS;
    dat.aR = truth.aR;
    dat.aB = truth.aB;
    if (mode == 2 || mode == 3 || mode == 5)
        dat.vA = truth.vA * kKmh;
    if (mode == 1 || mode == 3 || mode == 4)
        dat.vE = truth.vE * kKmh;
    if (mode <= 2)
        dat.sG = truth.Path();
    if (mode >= 4)
        dat.sB = truth.sB;
}

void ExpectMotion(const CTeilanhDat& dat, const Truth& truth)
{
    // Near a standstill the end speed follows from its square.
    EXPECT_NEAR(dat.vE / kKmh * dat.vE / kKmh, truth.vE * truth.vE, 1e-8 * truth.vS * truth.vS);
    EXPECT_NEAR(dat.vA / kKmh, truth.vA, 1e-6);
    EXPECT_NEAR(dat.vR / kKmh, truth.vR, 1e-6);
    EXPECT_NEAR(dat.vS / kKmh, truth.vS, 1e-6);
    const double standstill = 1e-4 * truth.vS / std::abs(truth.aB) + 1e-6;
    EXPECT_NEAR(dat.tB, truth.tB, standstill);
    EXPECT_NEAR(dat.tG, truth.tR + truth.tS + truth.tB, standstill);
    EXPECT_NEAR(dat.sR, truth.sR, 1e-5);
    EXPECT_NEAR(dat.sS, truth.sS, 1e-5);
    EXPECT_NEAR(dat.sB, truth.sB, 1e-5);
    EXPECT_NEAR(dat.sG, truth.Path(), 1e-5);
    EXPECT_NEAR(dat.sBS, truth.sS + truth.sB, 1e-5);
}

TEST(TeilanhDat, EveryModeFindsTheMotionThatWasDriven)
{
    CRuvData data;
    CTeilanhDat dat(data);
    RandomMotion random(459);
    for (int round = 0; round < 4000; ++round) {
        const bool braking = round % 4 != 0;
        const Truth truth = random.Next(braking);
        // Accelerating further, the total path and the end speed belong to two motions.
        for (std::int64_t mode = braking ? 1 : 2; mode <= 5; ++mode) {
            SCOPED_TRACE(testing::Message()
                         << "round " << round << ", mode " << mode << ", vA " << truth.vA << ", tR " << truth.tR
                         << ", aR " << truth.aR << ", tS " << truth.tS << ", aB " << truth.aB << ", tB " << truth.tB);
            Give(dat, truth, mode);
            ASSERT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
            ASSERT_EQ(dat.PruefeErgebnis(), CTeilanhDat::Vorbehalt::keiner);
            ExpectMotion(dat, truth);
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

TEST(TeilanhDat, ModeFollowsFromWhatWasEntered)
{
    struct Row {
        double vA, vE, sG, sB;
        std::int64_t mode;
    };
    CRuvData data;
    CTeilanhDat dat(data);
    for (const Row& row : {Row{0, 20, 60, 0, 1}, Row{0, 20, 60, 8, 1}, Row{70, 20, 20, 0, 2}, Row{70, 20, 0, 0, 3},
                           Row{0, 20, 0, 8, 4}, Row{70, 20, 0, 8, 4}, Row{70, 0, 0, 8, 5}}) {
        dat.Loeschen();
        dat.aB = 7.0;
        dat.vA = row.vA;
        dat.vE = row.vE;
        dat.sG = row.sG;
        dat.sB = row.sB;
        EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
        EXPECT_EQ(dat.modus, row.mode);
    }

    // Only a braking path: from a standstill nobody brakes over 20 m, so the initial speed is what is not known.
    dat.Loeschen();
    dat.aB = 10.0;
    dat.tS = 0.2;
    dat.sB = 20.0;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
    EXPECT_EQ(dat.modus, 4);
    EXPECT_NEAR(dat.vA, (20.0 + 10.0 / 2.0 * 0.2) * kKmh, 1e-12);
    EXPECT_EQ(dat.vE, 0.0);
    // Once the user has chosen to give the initial speed, 0 is one.
    dat.vA = 0.0;
    dat.modus = 5;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::keineBremszeit);
    EXPECT_EQ(dat.modus, 5);
}

TEST(TeilanhDat, FailureLeavesTheResultsAndReturnsTheSpeedsInKmh)
{
    CRuvData data;
    CTeilanhDat dat(data);
    for (const std::int64_t mode : {2, 5}) {
        dat.Loeschen();
        dat.vA = 50.0;
        dat.vE = 10.0;
        dat.aB = 8.0;
        dat.tR = 1.0;
        dat.tS = 0.2;
        ASSERT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
        const double tB = dat.tB, tG = dat.tG, sBS = dat.sBS;
        dat.modus = mode;
        dat.vA = 54.0;
        dat.vE = 7.2;
        dat.sB = 1000.0;
        dat.sG = mode == 2 ? 17.0 : 1000.0;
        EXPECT_EQ(dat.Rechnen(),
                  mode == 2 ? CTeilanhDat::Ausgang::reaktionZuLang : CTeilanhDat::Ausgang::keineBremszeit);
        EXPECT_EQ(dat.ergebnis, 0);
        EXPECT_EQ(dat.status, 1);
        EXPECT_DOUBLE_EQ(dat.vA, 54.0);
        EXPECT_DOUBLE_EQ(dat.vE, 7.2);
        EXPECT_DOUBLE_EQ(dat.vR, 54.0);
        EXPECT_NEAR(dat.vS, (15.0 - 0.8) * kKmh, 1e-12);
        EXPECT_EQ(dat.tB, tB);
        EXPECT_EQ(dat.tG, tG);
        EXPECT_EQ(dat.sBS, sBS);
        EXPECT_EQ(dat.sB, 1000.0);
    }
    // A deceleration that no number can divide by.
    dat.modus = 3;
    dat.aB = 1e-308;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::unendlich);
    EXPECT_EQ(dat.sB, 1000.0);
}

TEST(TeilanhDat, ResultsThatCannotBeDrivenAreNamed)
{
    CRuvData data;
    CTeilanhDat dat(data);
    // 36 km/h to 72 km/h by braking takes negative time.
    dat.modus = 3;
    dat.aB = 5.0;
    dat.vA = 36.0;
    dat.vE = 72.0;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
    EXPECT_NEAR(dat.tB, -2.0, 1e-12);
    EXPECT_EQ(dat.PruefeErgebnis(), CTeilanhDat::Vorbehalt::negativeBremszeit);
    // Decelerating at 6 m/s² in the reaction, 18 km/h are gone before the brakes take hold.
    dat.vA = 18.0;
    dat.vE = 0.0;
    dat.aR = -6.0;
    dat.tR = 1.0;
    dat.aB = -1.0;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
    EXPECT_EQ(dat.PruefeErgebnis(), CTeilanhDat::Vorbehalt::negativeGeschwindigkeit);
}

TEST(TeilanhDat, SequencesSurviveWritingReadingAndCalculating)
{
    CRuvData data;
    data.KfzDat(0).type = CKfzDaten::Type::car;
    CWegZeitRechDat& phases = data.WZRechDat(0);
    RandomMotion random(4591);
    for (int round = 0; round < 2000; ++round) {
        const Truth truth = random.Next(round % 5 != 0);
        const std::size_t column = kFirst + (random.Rarely() ? 1U : 0U);
        SCOPED_TRACE(testing::Message() << "round " << round << ", column " << column);
        phases = {};
        if (column > kFirst) {
            CWegZeitSpalte& after = phases.spalten[kFirst];
            after.art = PhasenArt::rolling;
            after.vEnd = 0.5 * truth.vE * kKmh;
            after.vAnf = truth.vE * kKmh;
            after.zeit = 2.0;
            phases.Berechnung();
        }
        const std::int64_t mode = truth.aB > 0.0 ? 1 + round % 5 : 2 + round % 4;
        CTeilanhDat first(data);
        Give(first, truth, mode);
        first.phase = static_cast<std::int64_t>(column);
        ASSERT_EQ(first.Rechnen(), CTeilanhDat::Ausgang::berechnet);
        ASSERT_EQ(first.Uebertragen().ausgang, Uebertragung::erfolgt);
        const CWegZeitRechDat written = phases;
        ASSERT_EQ(written.spalten[column + 1].art == PhasenArt::threshold, truth.tS != 0.0);

        CTeilanhDat second(data);
        second.Oeffne();
        ASSERT_EQ(second.modus, mode);
        ASSERT_EQ(second.phase, first.phase);
        ASSERT_EQ(second.Rechnen(), CTeilanhDat::Ausgang::berechnet);
        ASSERT_EQ(second.Uebertragen().ausgang, Uebertragung::erfolgt);
        // The end speed near a standstill follows from its square, and the braking time with it.
        const double slack = 1e-9 + 1e-12 * truth.vS * truth.vS / std::max(truth.vE, 1e-6);
        for (std::size_t c = 0; c < CWegZeitDat::kSpalten; ++c) {
            const CWegZeitSpalte& old = written.spalten[c];
            const CWegZeitSpalte& now = phases.spalten[c];
            ASSERT_EQ(now.art, old.art);
            ASSERT_NEAR(now.vEnd, old.vEnd, slack);
            ASSERT_NEAR(now.vAnf, old.vAnf, 1e-8);
            ASSERT_NEAR(now.zeit, old.zeit, slack / std::min(1.0, std::abs(truth.aB)));
            ASSERT_NEAR(now.weg, old.weg, 1e-8);
            ASSERT_NEAR(now.verz, old.verz, 1e-9);
        }
    }
}

TEST(TeilanhDat, ResidueOfRoundingIsNotGiven)
{
    CRuvData data;
    using Modus = CTeilanhDat::Modus;
    const auto chosen = [&](double vA, double vE, double sG, double sB) {
        CTeilanhDat dat(data);
        dat.vA = vA;
        dat.vE = vE;
        dat.sG = sG;
        dat.sB = sB;
        dat.aB = 7.5;
        EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
        return dat.modus;
    };
    constexpr double kSpeed = 3.5e-7; // km/h
    constexpr double kPath = 7e-15;   // m
    EXPECT_EQ(chosen(kSpeed, 0.0, 10.0, 0.0), Modus::gesamtwegUndEndgeschw);
    EXPECT_EQ(chosen(80.0, 0.0, 10.0, 0.0), Modus::gesamtwegUndAnfangsgeschw);
    EXPECT_EQ(chosen(80.0, 10.0, kPath, 0.0), Modus::beideGeschw);
    EXPECT_EQ(chosen(80.0, 10.0, kPath, kPath), Modus::beideGeschw);
    EXPECT_EQ(chosen(80.0, kSpeed, 0.0, 10.0), Modus::bremswegUndAnfangsgeschw);
    EXPECT_EQ(chosen(kSpeed, 0.0, 0.0, 10.0), Modus::bremswegUndEndgeschw);
}

TEST(TeilanhDat, PathThatReactionAndThresholdUseUpIsEnough)
{
    CRuvData data;
    CTeilanhDat dat(data);
    dat.vA = 36.0; // 10 m in the second of reaction
    dat.tR = 1.0;
    dat.aB = 5.0;
    dat.sG = 10.0;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::berechnet);
    EXPECT_EQ(dat.modus, CTeilanhDat::gesamtwegUndAnfangsgeschw);
    EXPECT_EQ(dat.tB, 0.0);
    EXPECT_NEAR(dat.vE, 36.0, 1e-12);
    dat.modus = CTeilanhDat::nichtGewaehlt;
    dat.vA = 36.0;
    dat.sG = 9.999;
    EXPECT_EQ(dat.Rechnen(), CTeilanhDat::Ausgang::reaktionZuLang);
    EXPECT_EQ(dat.modus, CTeilanhDat::nichtGewaehlt);
}

} // namespace
