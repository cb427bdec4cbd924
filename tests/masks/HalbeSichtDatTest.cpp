// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CRuvData.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/CHalbeSichtDat.h"
#include "tests/support/Drive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace
{

using Ausgang = CHalbeSichtDat::Ausgang;
using Uebertragung = CHalbeSichtDat::Uebertragung;
using Teilnehmer = CHalbeSichtDat::Teilnehmer;

constexpr double kKmh = 3.6;
constexpr std::size_t kFirst = CWegZeitDat::kErsteSpalte;

/// Drives with the vehicle's reaction, threshold and braking for a time from the sighting on.
test::Driven DriveFor(const Teilnehmer& t, double v, double duration)
{
    test::Driven now{v, 0.0};
    const auto part = [&](double length, const std::function<double(double)>& deceleration) {
        const test::Driven next = test::Drive(now.v, std::min(length, duration), deceleration);
        now = {next.v, now.path + next.path};
        duration -= std::min(length, duration);
    };
    part(t.reaktionsdauer, [](double) { return 0.0; });
    if (t.schwelldauer > 0.0)
        part(t.schwelldauer, [&](double time) { return t.verzoegerung * time / t.schwelldauer; });
    part(duration, [&](double) { return t.verzoegerung; });
    return now;
}

class HalbeSichtDatTest : public testing::Test
{
  protected:
    HalbeSichtDatTest()
    {
        RuvCfg = CRuvCfg{};
        for (const std::size_t i : {0U, 1U, 5U})
            data.KfzDat(i) = TypicalCar("Pkw", 0);
        dat.Oeffne();
    }
    ~HalbeSichtDatTest() override { RuvCfg = CRuvCfg{}; }
    double Uniform(double from, double to) { return std::uniform_real_distribution(from, to)(random); }
    /// 80 m of sight, both brake, at 20 and 30 km/h they collide.
    void GiveExample()
    {
        dat.sichtweite = 80.0;
        dat.a = {0, 3, 20.0, 7.0, 0.2, 1.0};
        dat.b = {1, 3, 30.0, 6.0, 0.3, 0.8};
    }
    CWegZeitRechDat& Phases(std::size_t vehicle) { return data.WZRechDat(vehicle); }

    CRuvData data;
    CHalbeSichtDat dat{data};
    std::mt19937_64 random{472};
};

TEST_F(HalbeSichtDatTest, DrivenFromTheSightingTheyMeetWithTheGivenSpeeds)
{
    int early = 0;
    for (int round = 0; round < 1000; ++round) {
        dat.sichtweite = Uniform(20.0, 200.0);
        for (Teilnehmer* t : {&dat.a, &dat.b})
            *t = {0,
                  0,
                  Uniform(0.0, 50.0),
                  Uniform(2.0, 9.0),
                  round % 7 == 0 ? 0.0 : Uniform(0.05, 0.6),
                  round % 5 == 0 ? 0.0 : Uniform(0.3, 2.0)};
        const int who = round % 4; // both, only A, only B, none
        if (who == 1 || who == 3)
            dat.b.verzoegerung = 0.0;
        if (who >= 2)
            dat.a.verzoegerung = 0.0;
        SCOPED_TRACE(testing::Message() << "round " << round);
        const Ausgang ausgang = dat.Rechnen();
        if (ausgang != Ausgang::berechnet)
            continue;
        if (!dat.PruefeErgebnis().SindUebertragbar()) {
            ++early;
            continue;
        }
        for (const Teilnehmer* t : {&dat.a, &dat.b}) {
            const test::Driven driven = DriveFor(*t, t->anfangsgeschw / kKmh, dat.gesamtzeit);
            EXPECT_NEAR(driven.v * kKmh, t->kollGeschw, 1e-6);
            EXPECT_NEAR(driven.path, t->gesamtweg, 1e-6);
            EXPECT_NEAR(t->distanz, dat.sichtweite / 2.0 - driven.path, 1e-6);
            if (!t->Bremst())
                continue;
            EXPECT_NEAR(t->reaktionsweg + t->schwellweg + t->bremsweg, t->gesamtweg, 1e-6);
            EXPECT_NEAR(t->reaktionsdauer + t->schwelldauer + t->bremsdauer, dat.gesamtzeit, 1e-9);
            // Braking on past the collision it stands after the stopping distance.
            const double toStop = dat.gesamtzeit + t->kollGeschw / kKmh / t->verzoegerung;
            const test::Driven stopped = DriveFor(*t, t->anfangsgeschw / kKmh, toStop);
            EXPECT_NEAR(stopped.v, 0.0, 1e-6);
            EXPECT_NEAR(stopped.path, t->anhalteweg, 1e-6);
            EXPECT_NEAR(t->fehlbremsstrecke, stopped.path - driven.path, 1e-6);
            EXPECT_NEAR(t->anhalteDifferenz, dat.sichtweite / 2.0 - stopped.path, 1e-6);
        }
        EXPECT_NEAR(dat.a.gesamtweg + dat.b.gesamtweg, dat.sichtweite, 1e-6);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_LT(early, 300);
}

TEST_F(HalbeSichtDatTest, FromTheLimitSpeedItStopsWithinHalfTheSightDistance)
{
    int none = 0;
    for (int round = 0; round < 500; ++round) {
        for (Teilnehmer* other : {&dat.a, &dat.b})
            *other = {0, 0, 1.0, 0.0, 0.0, 0.0};
        dat.sichtweite = round % 4 == 0 ? Uniform(0.05, 6.0) : Uniform(10.0, 300.0);
        Teilnehmer& t = round % 2 == 0 ? dat.a : dat.b;
        t = {0,
             0,
             0.0,
             Uniform(1.0, 9.0),
             round % 3 == 0 ? 0.0 : Uniform(0.05, 0.6),
             round % 5 == 0 ? 0.0 : Uniform(0.3, 2.0)};
        if (dat.Rechnen() != Ausgang::berechnet)
            continue;
        const double v = t.grenzgeschw / kKmh;
        const auto stop = [&](double speed) {
            return DriveFor(t, speed, t.reaktionsdauer + t.schwelldauer / 2.0 + speed / t.verzoegerung).path;
        };
        if (v == 0.0) {
            // The slowest speed from which it brakes fully needs more.
            const double slowest = t.verzoegerung * t.schwelldauer / 2.0;
            EXPECT_GE(stop(slowest), dat.sichtweite / 2.0 - 1e-6);
            ++none;
            continue;
        }
        EXPECT_NEAR(stop(v), dat.sichtweite / 2.0, 1e-6);
    }
    EXPECT_GT(none, 5);
}

TEST_F(HalbeSichtDatTest, NobodyBrakes)
{
    GiveExample();
    dat.a.verzoegerung = dat.b.verzoegerung = 0.0;
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    EXPECT_NEAR(dat.gesamtzeit, 80.0 / (50.0 / kKmh), 1e-12);
    EXPECT_NEAR(dat.a.gesamtweg, 32.0, 1e-12);
    EXPECT_NEAR(dat.b.gesamtweg, 48.0, 1e-12);
    EXPECT_EQ(dat.a.anfangsgeschw, 20.0);
    EXPECT_EQ(dat.a.fehlbremsstrecke, 0.0);
    EXPECT_EQ(dat.a.grenzgeschw, 0.0);
    EXPECT_TRUE(dat.PruefeErgebnis().bremstNicht[0]);
    EXPECT_TRUE(dat.PruefeErgebnis().bremstNicht[1]);
    dat.a.kollGeschw = dat.b.kollGeschw = 0.0;
    EXPECT_EQ(dat.Rechnen(), Ausgang::keineLoesung);
}

TEST_F(HalbeSichtDatTest, FailureLeavesTheFormerResults)
{
    GiveExample();
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    const Teilnehmer former = dat.a;
    for (const double kollGeschw : {300.0, -1.0}) {
        GiveExample();
        dat.a = former;
        // At 300 km/h there is no sight for it; a negative deceleration is none.
        dat.a.kollGeschw = 20.0;
        if (kollGeschw > 0.0) {
            dat.sichtweite = 0.0;
            dat.a.reaktionsdauer = 10.0;
        } else {
            dat.b.verzoegerung = -3.0;
        }
        EXPECT_EQ(dat.Rechnen(), kollGeschw > 0.0 ? Ausgang::keineLoesung : Ausgang::unmoeglich);
        EXPECT_EQ(dat.ergebnis, 0);
        EXPECT_EQ(dat.a.kollGeschw, 20.0);
        EXPECT_EQ(dat.a.anfangsgeschw, former.anfangsgeschw);
        EXPECT_EQ(dat.a.gesamtweg, former.gesamtweg);
        EXPECT_EQ(dat.Uebertragen(), Uebertragung::nichtBerechnet);
    }
}

TEST_F(HalbeSichtDatTest, CollisionBeforeFullBrakingIsSaidAndNotTransferred)
{
    GiveExample();
    dat.b.reaktionsdauer = 3.0;
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    ASSERT_LT(dat.gesamtzeit, 3.3);
    EXPECT_FALSE(dat.PruefeErgebnis().vorVollbremsung[0]);
    EXPECT_TRUE(dat.PruefeErgebnis().vorVollbremsung[1]);
    const CWegZeitRechDat before = Phases(0);
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::nichtBerechnet);
    EXPECT_TRUE(Phases(0) == before);
}

TEST_F(HalbeSichtDatTest, CollisionSpeedsFollowTheirSum)
{
    dat.a.kollGeschw = 20.0;
    dat.KollGeschwGeaendert(dat.a);
    EXPECT_EQ(dat.summeKollGeschw, 0.0) << "one is not known yet";
    dat.b.kollGeschw = 30.0;
    dat.KollGeschwGeaendert(dat.b);
    EXPECT_EQ(dat.summeKollGeschw, 50.0);
    dat.a.kollGeschw = 35.0;
    dat.KollGeschwGeaendert(dat.a);
    EXPECT_EQ(dat.b.kollGeschw, 15.0);
    dat.b.kollGeschw = 60.0;
    dat.KollGeschwGeaendert(dat.b);
    EXPECT_EQ(dat.a.kollGeschw, -10.0) << "taken as entered";
    dat.summeKollGeschw = 90.0;
    dat.SummeGeaendert();
    EXPECT_EQ(dat.b.kollGeschw, 100.0);
    dat.a.kollGeschw = 0.0;
    dat.b.kollGeschw = 30.0;
    dat.SummeGeaendert();
    EXPECT_EQ(dat.a.kollGeschw, 60.0);
    dat.a.kollGeschw = dat.b.kollGeschw = 0.0;
    dat.SummeGeaendert();
    EXPECT_EQ(dat.a.kollGeschw + dat.b.kollGeschw, 0.0) << "nothing to derive the other from";
}

TEST_F(HalbeSichtDatTest, OpensWithTheMarkedVehicles)
{
    EXPECT_EQ(dat.a.fahrzeug, 0);
    EXPECT_EQ(dat.b.fahrzeug, 1);
    EXPECT_EQ(dat.a.reaktionsdauer, 1.0);
    EXPECT_EQ(dat.a.schwelldauer, 0.2);
    Phases(5).marke = 16;
    dat.Oeffne();
    EXPECT_EQ(dat.a.fahrzeug, 5);
    EXPECT_EQ(dat.b.fahrzeug, 0) << "the first other one";
    Phases(0).marke = 16;
    dat.Oeffne();
    EXPECT_EQ(dat.a.fahrzeug, 0);
    EXPECT_EQ(dat.b.fahrzeug, 5);
    Phases(5).marke = 0;
    data.KfzDat(1) = {};
    dat.Oeffne();
    EXPECT_EQ(dat.b.fahrzeug, 5);
}

TEST_F(HalbeSichtDatTest, TransferWritesBothWaysAndIsReadBack)
{
    GiveExample();
    dat.a.schwelldauer = 0.2;
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    Phases(5).marke = 16;
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    for (const Teilnehmer* t : {&dat.a, &dat.b}) {
        const CWegZeitRechDat& phases = Phases(static_cast<std::size_t>(t->fahrzeug));
        EXPECT_EQ(phases.marke, 16);
        EXPECT_EQ(phases.mode, 0);
        const PhasenArt kinds[] = {PhasenArt::braking, PhasenArt::threshold, PhasenArt::reaction, PhasenArt::unused};
        for (std::size_t i = 0; i < std::size(kinds); ++i)
            EXPECT_EQ(phases.spalten[kFirst + i].art, kinds[i]);
        EXPECT_EQ(phases.spalten[kFirst].vEnd, t->kollGeschw);
        EXPECT_EQ(phases.spalten[kFirst].verz, t->verzoegerung);
        EXPECT_EQ(phases.spalten[kFirst + 2].vAnf, t->anfangsgeschw);
        EXPECT_NEAR(phases.spalten[kFirst + 2].sumWeg, t->gesamtweg, 1e-9);
        EXPECT_NEAR(phases.spalten[kFirst + 2].sumZeit, dat.gesamtzeit, 1e-9);
    }
    EXPECT_EQ(Phases(5).marke, 0) << "only one pair is marked";

    CHalbeSichtDat again(data);
    again.Oeffne();
    again.sichtweite = 80.0;
    ASSERT_EQ(again.Rechnen(), Ausgang::berechnet);
    EXPECT_NEAR(again.a.anfangsgeschw, dat.a.anfangsgeschw, 1e-9);
    EXPECT_NEAR(again.b.anfangsgeschw, dat.b.anfangsgeschw, 1e-9);

    // One drives on: one phase of constant speed for the whole time.
    dat.b.verzoegerung = 0.0;
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    EXPECT_EQ(Phases(1).spalten[kFirst].art, PhasenArt::constantSpeed);
    EXPECT_NEAR(Phases(1).spalten[kFirst].weg, dat.b.gesamtweg, 1e-9);
    EXPECT_FALSE(Phases(1).spalten[kFirst + 1].IsUsed());
}

TEST_F(HalbeSichtDatTest, TransferIsForBothOrNone)
{
    GiveExample();
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    dat.b.phase = 46;
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::keinPlatz);
    dat.b.phase = 3;
    for (const std::int64_t other : {0, 2, -1, 99}) {
        dat.b.fahrzeug = other;
        EXPECT_EQ(dat.Uebertragen(), Uebertragung::keinFahrzeug);
    }
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i)
        EXPECT_TRUE(Phases(i) == CWegZeitRechDat{});
    // A phase before the sequence that starts at another speed changes what was written.
    dat.b.fahrzeug = 1;
    dat.b.phase = 4;
    Phases(1).spalten[kFirst].art = PhasenArt::rolling;
    Phases(1).spalten[kFirst].vAnf = Phases(1).spalten[kFirst].vEnd = 10.0;
    Phases(1).spalten[kFirst].zeit = 1.0;
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::geaendert);
}

TEST_F(HalbeSichtDatTest, NonsenseInCaseAndFieldsLeavesNumbers)
{
    const double strange[] = {0.0,
                              -0.0,
                              1e-300,
                              1e-9,
                              -5.0,
                              1e9,
                              1e300,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()};
    const auto any = [&](double largest) {
        return random() % 4 == 0 ? strange[random() % std::size(strange)] : Uniform(0.0, largest);
    };
    for (int round = 0; round < 5000; ++round) {
        dat.Oeffne();
        dat.sichtweite = any(200.0);
        for (Teilnehmer* t : {&dat.a, &dat.b})
            *t = {static_cast<std::int64_t>(random() % 20) - 2,
                  static_cast<std::int64_t>(random() % 60) - 5,
                  any(60.0),
                  any(9.0),
                  any(0.5),
                  any(2.0)};
        const bool computed = dat.Rechnen() == Ausgang::berechnet;
        ASSERT_EQ(dat.ergebnis == 1, computed);
        for (const Teilnehmer* t : {&dat.a, &dat.b})
            for (const double result : {t->anfangsgeschw, t->gesamtweg, t->fehlbremsstrecke, t->distanz, t->anhalteweg,
                                        t->anhalteDifferenz, t->grenzgeschw, dat.gesamtzeit})
                ASSERT_TRUE(std::isfinite(result)) << round;
        dat.Uebertragen();
        for (const std::size_t vehicle : {0U, 1U, 5U})
            for (const CWegZeitSpalte& s : Phases(vehicle).spalten)
                for (const double value : {s.zeit, s.vAnf, s.vEnd, s.weg})
                    ASSERT_GE(value, 0.0) << round;
    }
    for (CWegZeitSpalte& s : Phases(0).spalten)
        for (double* quantity : {&s.vEnd, &s.vAnf, &s.verz, &s.zeit}) {
            s.art = PhasenArt::turning;
            *quantity = any(9.0);
        }
    for (const std::int64_t phase : {-7, 0, 3, 46, 47, 48, 1000000}) {
        dat.a.fahrzeug = 0;
        dat.a.phase = phase;
        dat.LeseSpalte(dat.a);
        EXPECT_GE(dat.a.kollGeschw, 0.0);
        EXPECT_GE(dat.a.verzoegerung, 0.0);
    }
}

} // namespace
