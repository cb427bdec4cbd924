// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/Kinematics.h"
#include "host/CRuvData.h"
#include "masks/manoeuvre/CSpurVorDat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace
{

using Ausgang = CSpurVorDat::Ausgang;
using Uebertragung = CSpurVorDat::Uebertragung;

constexpr double kPi = std::numbers::pi;
constexpr double kKmh = 3.6;
constexpr std::size_t kFirst = CWegZeitDat::kErsteSpalte;

class SpurVorDatTest : public testing::Test
{
  protected:
    SpurVorDatTest()
    {
        data.KfzDat(0) = TypicalCar("Pkw", 0);
        dat.Oeffne();
        dat.seitenversatz = 3.0;
        dat.querbeschleunigung = 3.0;
        dat.anfangsgeschw = 50.0;
    }
    double Uniform(double from, double to) { return std::uniform_real_distribution(from, to)(random); }
    CWegZeitRechDat& Phases() { return data.WZRechDat(0); }

    CRuvData data;
    CSpurVorDat dat{data};
    std::mt19937_64 random{458};
};

TEST(SpurwechselKurve, LeadsFromLaneToLaneInTheRoadsDirection)
{
    for (const auto& [laenge, versatz] : {std::pair{60.0, 3.0}, {20.0, 6.0}, {5.0, 8.0}}) {
        const SpurwechselKurve kurve(laenge, versatz);
        const double c = kurve.Sehne();
        EXPECT_NEAR(kurve.Gierwinkel(0.0), 0.0, 1e-12);
        EXPECT_NEAR(kurve.Gierwinkel(c), 0.0, 1e-12);
        EXPECT_NEAR(kurve.Punkt(c).x, laenge, 1e-12 * laenge);
        EXPECT_NEAR(kurve.Punkt(c).y, versatz, 1e-12 * laenge);
        EXPECT_NEAR(kurve.Punkt(c / 2.0).y, versatz / 2.0, 1e-12 * laenge);
        EXPECT_NEAR(kurve.GroessterGierwinkel(), kurve.Gierwinkel(c / 2.0), 1e-12);

        // Direction, arc length and curvature from the points alone.
        const double h = c / 4000.0;
        double arc = 0.0, sharpest = 0.0, before = 0.0;
        for (int i = 0; i < 4000; ++i) {
            const CDPoint step = kurve.Punkt((i + 1) * h) - kurve.Punkt(i * h);
            const double length = std::hypot(step.x, step.y), direction = std::atan2(step.y, step.x);
            EXPECT_NEAR(direction, kurve.Gierwinkel((i + 0.5) * h), 1e-5);
            if (i > 0)
                sharpest = std::max(sharpest, std::abs(direction - before) / length);
            before = direction;
            arc += length;
            if (i == 1499) {
                EXPECT_NEAR(kurve.Bogenlaenge(1500 * h), arc, 1e-5 * arc);
                EXPECT_NEAR(kurve.Bogenlaenge(kurve.StelleBei(arc)), arc, 1e-9 * arc);
            }
        }
        EXPECT_NEAR(kurve.Bogenlaenge(c), arc, 1e-5 * arc);
        EXPECT_NEAR(1.0 / sharpest, kurve.RadiusAmViertelpunkt(), 1e-3 * kurve.RadiusAmViertelpunkt());
        double path = 0.0, surplus = 0.0;
        Wegintegral(versatz, laenge, path, surplus);
        EXPECT_NEAR(kurve.Bogenlaenge(c), path, 1e-6 * path);
    }
}

TEST(SpurwechselKurve, SearchFindsTheVeryStepThatWalkingFinds)
{
    std::mt19937_64 random(3631);
    const auto uniform = [&](double from, double to) { return std::uniform_real_distribution(from, to)(random); };
    int found = 0;
    for (int round = 0; round < 200; ++round) {
        const double versatz = uniform(0.3, 20.0);
        const SpurwechselKurve kurve(round % 5 == 0 ? uniform(0.3, 6.0) : uniform(2.0, 90.0), versatz);
        const double abstand = round % 7 == 0 ? 0.0 : uniform(0.0, 6.0);
        double highest = 0.0;
        for (double u = 0.0; u < kurve.Sehne(); u += 0.01)
            highest = std::max(highest, kurve.VersatzVor(u, abstand));
        const double offset = round % 3 == 0   ? highest * uniform(0.9999, 1.0001)
                              : round % 3 == 1 ? versatz
                                               : uniform(0.0, 1.2) * versatz;
        std::optional<double> walked;
        const double last = std::floor(kurve.Sehne() / 0.001);
        for (double n = 0.0; n <= last && !walked; ++n)
            if (kurve.VersatzVor(n * 0.001, abstand) >= offset)
                walked = n * 0.001;
        ASSERT_EQ(kurve.ErsteStelle(offset, abstand), walked) << "round " << round;
        found += walked.has_value();
    }
    EXPECT_GT(found, 100);
    EXPECT_LT(found, 195);
}

TEST_F(SpurVorDatTest, ConstantSpeedOnAStraightRoadInClosedForm)
{
    ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    // The sharpest bend 1/ρ = 2π·Y/(X·C) uses up 3 m/s² at 13.89 m/s: ρ = 64.30 m, X = 34.75 m.
    const double v = 50.0 / kKmh, rho = v * v / 3.0;
    EXPECT_NEAR(dat.laenge * std::hypot(dat.laenge, 3.0), 2.0 * kPi * 3.0 * rho, 1e-6);
    EXPECT_NEAR(dat.laenge, 34.75, 0.005);
    EXPECT_NEAR(dat.gierwinkel, 2.0 * std::atan(3.0 / 34.75) * 180.0 / kPi, 0.005);
    EXPECT_NEAR(dat.differenz, dat.weg - dat.laenge, 1e-12);
    // Of a gentle wave the arc exceeds the chord by k²/4 of it; the chord the road by k²/2.
    EXPECT_NEAR(dat.differenz, 34.75 * 0.75 * std::pow(3.0 / 34.75, 2), 0.005);
    EXPECT_NEAR(dat.zeit, dat.weg / v, 1e-12);
    EXPECT_DOUBLE_EQ(dat.endgeschw, 50.0);
    EXPECT_EQ(dat.anfangsgeschw, 50.0);
    EXPECT_EQ(dat.berechnet, 1);
}

/// The speed at a time of a motion that is driven as the mask's user describes it.
struct Law {
    double v0, a, limit, delay, brakeAt; // m/s, m/s², m/s or 0, s, s or negative

    double operator()(double t) const
    {
        if (brakeAt >= 0.0)
            return t < brakeAt ? v0 : std::max(v0 + a * (t - brakeAt), 0.0);
        const double v = t < delay ? v0 : v0 + a * (t - delay);
        return limit == 0.0 ? v : a > 0.0 ? std::min(v, limit) : std::max(v, limit);
    }
};

/// Drives along by time until the path is covered; Simpson's rule, so exact within each part.
struct Driven {
    double time = 0.0, atQuarter = 0.0, atThreeQuarters = 0.0;
};
Driven DriveAlong(const Law& law, double path)
{
    constexpr double kStep = 1e-4;
    Driven driven;
    double s = 0.0;
    while (s < path && driven.time < 1000.0) {
        const double t = driven.time;
        const double ds = kStep * (law(t) + 4.0 * law(t + kStep / 2.0) + law(t + kStep)) / 6.0;
        if (s < path / 4.0 && s + ds >= path / 4.0)
            driven.atQuarter = law(t);
        if (s < path * 0.75 && s + ds >= path * 0.75)
            driven.atThreeQuarters = law(t);
        if (ds <= 0.0)
            break;
        driven.time += s + ds > path ? kStep * (path - s) / ds : kStep;
        s += ds;
    }
    return driven;
}

TEST_F(SpurVorDatTest, DrivenAlongTheCurveTheLateralAccelerationIsUsedUpWhereItIsFastest)
{
    int stops = 0, limited = 0, delayed = 0;
    for (int round = 0; round < 300; ++round) {
        const bool atEnd = round % 2 == 1;
        const double known = Uniform(15.0, 120.0), a = Uniform(-5.0, 3.0);
        const double aq = Uniform(1.0, 6.0), radius = round % 3 == 0 ? (round % 6 - 1) * Uniform(400.0, 3000.0) : 0.0;
        const double delay = round % 5 == 0 ? Uniform(0.1, 0.8) : 0.0;
        // Away from the known speed it falls or rises towards the limit.
        const double away = atEnd ? -a : a;
        const double limit = round % 4 != 0 ? 0.0 : away > 0.0 ? known * Uniform(1.0, 1.2) : known * Uniform(0.7, 1.0);
        dat.Oeffne();
        dat.bekannt = atEnd;
        dat.seitenversatz = Uniform(1.0, 5.0);
        dat.querbeschleunigung = aq;
        (atEnd ? dat.endgeschw : dat.anfangsgeschw) = known;
        dat.beschleunigung = a;
        dat.kurvenradius = radius;
        dat.zeitverzug = delay;
        dat.geschwGrenze = limit;
        SCOPED_TRACE(testing::Message() << "round " << round << " known " << known << " a " << a << " aq " << aq
                                        << " R " << radius << " limit " << limit << " delay " << delay);
        const CSpurVorDat::Befund befund = dat.Rechnen();
        ASSERT_FALSE(befund.nichtKonvergiert);
        if (befund.ausgang != Ausgang::berechnet) {
            ASSERT_TRUE(befund.kurvenradius || befund.ausgang == Ausgang::zuEngeKurve);
            continue;
        }
        ASSERT_FALSE(befund.grenzeDarueber || befund.grenzeDarunter);

        // From the known end the motion is the same forward and backward.
        Law law{known / kKmh, away, limit / kKmh, delay, -1.0};
        if (befund.haelt) {
            // It brakes as late as possible: the braking path is v²/2a.
            const double v = known / kKmh;
            law.brakeAt = (dat.weg - v * v / (2.0 * std::abs(a))) / v;
            EXPECT_GE(law.brakeAt, delay);
            EXPECT_EQ(atEnd ? dat.anfangsgeschw : dat.endgeschw, 0.0);
            ++stops;
        }
        const Driven driven = DriveAlong(law, dat.weg);
        EXPECT_NEAR(dat.zeit, driven.time, befund.haelt ? 0.02 : 1e-3);
        if (!befund.haelt) {
            EXPECT_NEAR(atEnd ? dat.anfangsgeschw : dat.endgeschw, law(driven.time) * kKmh, 0.01);
        }
        EXPECT_EQ(atEnd ? dat.endgeschw : dat.anfangsgeschw, known);
        limited += limit != 0.0;
        if (delay != 0.0) {
            ++delayed;
            continue;
        }
        // Both bends add up in one half of the curve; where the speed is higher decides.
        const double v = std::max(driven.atQuarter, driven.atThreeQuarters);
        const double c = std::hypot(dat.laenge, dat.seitenversatz);
        const double bend = dat.seitenversatz / dat.laenge * 2.0 * kPi / c;
        const double lateral = v * v * (bend + (radius != 0.0 ? 1.0 / std::abs(radius) : 0.0));
        EXPECT_NEAR(lateral, aq, 1e-3 * aq);
        EXPECT_NEAR(dat.LetztesErgebnis()->groessteQuerbeschl, aq, 1e-3 * aq);
    }
    EXPECT_GT(stops, 10);
    EXPECT_GT(limited, 40);
    EXPECT_GT(delayed, 40);
}

TEST_F(SpurVorDatTest, DelayLongerThanTheLaneChangeLeavesTheSpeed)
{
    dat.beschleunigung = 2.0;
    dat.zeitverzug = 10.0;
    ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    EXPECT_DOUBLE_EQ(dat.endgeschw, 50.0);
    EXPECT_NEAR(dat.laenge, 34.75, 0.005);
    EXPECT_NEAR(dat.zeit, dat.weg / 50.0 * kKmh, 1e-9);
    // A delay within it makes the braking come after the bend it was found for; the true acceleration says so.
    dat.beschleunigung = -3.0;
    dat.zeitverzug = 1.0;
    ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    EXPECT_GT(dat.LetztesErgebnis()->groessteQuerbeschl, 3.2);
}

TEST_F(SpurVorDatTest, ChecksComeInTheirOrder)
{
    struct Row {
        double aq, y, vA, vE, a, limit;
        Ausgang ausgang;
        bool above, below;
    };
    for (const Row& row : {Row{0, 0, 0, 0, -1, 30, Ausgang::querbeschlFehlt, true, false},
                           Row{3, 0, 0, 0, 0, 0, Ausgang::versatzFehlt, false, false},
                           Row{3, 1e-10, 50, 0, 0, 0, Ausgang::versatzFehlt, false, false},
                           Row{3, 3, 0, 0, 2, 0, Ausgang::geschwFehlt, false, false},
                           Row{3, 3, 0, 40, -1, 0, Ausgang::geschwFehlt, false, false},
                           Row{3, 3, 0, 40, 2, 0, Ausgang::berechnet, false, false},
                           Row{3, 3, 50, 0, -1, 60, Ausgang::berechnet, true, false},
                           Row{3, 3, 50, 0, 1, 40, Ausgang::berechnet, false, true},
                           Row{3, 3, 50, 0, 0, 40, Ausgang::berechnet, false, false},
                           Row{3, 3, -50, 0, 0, 0, Ausgang::unmoeglich, false, false},
                           Row{1e-300, 3, 50, 0, 0, 0, Ausgang::querbeschlFehlt, false, false},
                           Row{1e-8, 3, 300, 0, 0, 0, Ausgang::unmoeglich, false, false}}) {
        dat.Oeffne();
        dat.querbeschleunigung = row.aq;
        dat.seitenversatz = row.y;
        dat.anfangsgeschw = row.vA;
        dat.endgeschw = row.vE;
        dat.beschleunigung = row.a;
        dat.geschwGrenze = row.limit;
        const CSpurVorDat::Befund befund = dat.Rechnen();
        SCOPED_TRACE(testing::Message() << row.aq << " " << row.y << " " << row.vA << " " << row.a);
        EXPECT_EQ(befund.ausgang, row.ausgang);
        EXPECT_EQ(befund.grenzeDarueber, row.above);
        EXPECT_EQ(befund.grenzeDarunter, row.below);
        EXPECT_EQ(dat.berechnet, row.ausgang == Ausgang::berechnet ? 1 : 0);
        EXPECT_EQ(dat.geschwGrenze, row.limit);
        EXPECT_EQ(dat.LetztesErgebnis().has_value(), row.ausgang == Ausgang::berechnet);
    }
    // A limit that contradicts the acceleration is left out: the speed goes on as without one.
    dat.Oeffne();
    dat.querbeschleunigung = dat.seitenversatz = 3.0;
    dat.anfangsgeschw = 50.0;
    dat.beschleunigung = -1.0;
    dat.Rechnen();
    const double without = dat.endgeschw;
    dat.geschwGrenze = 60.0;
    dat.Rechnen();
    EXPECT_EQ(dat.endgeschw, without);
}

TEST_F(SpurVorDatTest, AVehicleThatSlowsDownToALimitDoesNotStop)
{
    dat.beschleunigung = -6.0;
    dat.Rechnen();
    EXPECT_EQ(dat.endgeschw, 0.0);
    dat.geschwGrenze = 20.0;
    const CSpurVorDat::Befund befund = dat.Rechnen();
    EXPECT_FALSE(befund.haelt);
    EXPECT_DOUBLE_EQ(dat.endgeschw, 20.0);
    const double vA = 50.0 / kKmh, vG = 20.0 / kKmh;
    const double braking = (vA * vA - vG * vG) / 12.0;
    EXPECT_NEAR(dat.zeit, (vA - vG) / 6.0 + (dat.weg - braking) / vG, 1e-9);
}

TEST_F(SpurVorDatTest, ARoadThatBendsAsMuchAsTheVehicleMay)
{
    // 13.89 m/s at 3 m/s² is a circle of 64.3 m.
    for (const double side : {1.0, -1.0}) {
        dat.kurvenradius = side * 80.0;
        EXPECT_FALSE(dat.Rechnen().kurvenradius);
        // 1/ρ = 1/64.3 - 1/80
        EXPECT_NEAR(dat.laenge * std::hypot(dat.laenge, 3.0),
                    2.0 * kPi * 3.0 / (3.0 / std::pow(50.0 / kKmh, 2) - 1.0 / 80.0), 1e-6);
        dat.kurvenradius = side * 68.0;
        CSpurVorDat::Befund befund = dat.Rechnen();
        EXPECT_TRUE(befund.kurvenradius);
        EXPECT_EQ(befund.ausgang, Ausgang::berechnet);
        EXPECT_EQ(befund.weg, dat.weg);
        EXPECT_EQ(befund.differenz, dat.differenz);
        const double former = dat.laenge;
        dat.kurvenradius = side * 64.0;
        befund = dat.Rechnen();
        EXPECT_TRUE(befund.kurvenradius);
        EXPECT_EQ(befund.ausgang, Ausgang::zuEngeKurve);
        EXPECT_EQ(dat.laenge, former) << "a failure leaves the results";
        EXPECT_EQ(dat.berechnet, 0);
    }
}

TEST_F(SpurVorDatTest, TheCurveMustBeWiderThanTheVehicleCanTurn)
{
    data.KfzDat(0).wheelbase = 2.65;
    dat.seitenversatz = 1.0;
    dat.querbeschleunigung = 9.0;
    // The radius is v²/9: 1.325 m is half the wheelbase.
    dat.anfangsgeschw = 1.01 * kKmh * std::sqrt(1.325 * 9.0);
    EXPECT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    dat.anfangsgeschw = 0.99 * kKmh * std::sqrt(1.325 * 9.0);
    EXPECT_EQ(dat.Rechnen().ausgang, Ausgang::zuEngeKurve);
    // Shorter than the offset it has no end of its own, yet it ends.
    dat.seitenversatz = 20.0;
    EXPECT_EQ(dat.Rechnen().ausgang, Ausgang::zuEngeKurve);
}

TEST_F(SpurVorDatTest, MissingLengthsAreCompletedInTheCase)
{
    struct Row {
        double length, wheelbase, front;
        bool completed;
        double thenWheelbase, thenFront;
    };
    for (const Row& row : {Row{4.5, 0, 0, false, 0, 0}, Row{0, 0, 0, true, 2.3, 0.9}, Row{0, 3.1, 0, true, 3.1, 0.9},
                           Row{0, 0, 1.2, true, 2.3, 1.2}}) {
        data.KfzDat(0).length = row.length;
        data.KfzDat(0).wheelbase = row.wheelbase;
        data.KfzDat(0).frontOverhang = row.front;
        EXPECT_EQ(dat.Rechnen().ersatzmasse, row.completed);
        EXPECT_EQ(data.KfzDat(0).length, row.completed ? 4.0 : 4.5);
        EXPECT_EQ(data.KfzDat(0).wheelbase, row.thenWheelbase);
        EXPECT_EQ(data.KfzDat(0).frontOverhang, row.thenFront);
        EXPECT_FALSE(dat.Rechnen().ersatzmasse && row.completed);
    }
    // Without a vehicle nothing is written.
    dat.fahrzeug = 3;
    EXPECT_TRUE(dat.Rechnen().ersatzmasse);
    EXPECT_EQ(data.KfzDat(3), CKfzDaten{});
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::keinFahrzeug);
}

TEST_F(SpurVorDatTest, IntermediatePositionWhereTheFrontIsFarEnoughOut)
{
    dat.beschleunigung = -2.0;
    dat.zeitverzug = 0.3;
    for (const double front : {0.5, -0.5, 1.5, 3.0}) {
        dat.zwischenFront = front;
        ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
        const SpurwechselKurve& kurve = dat.LetztesErgebnis()->kurve;
        // Followed by small steps along the curve, with the body on it.
        double u = 0.0, path = 0.0, time = 0.0;
        const double h = 1e-4;
        const auto offset = [&](double at, double ahead) {
            return kurve.Punkt(at).y + ahead * std::sin(kurve.Gierwinkel(at));
        };
        while (offset(u, 2.65 + 0.9) < std::abs(front)) {
            const CDPoint step = kurve.Punkt(u + h) - kurve.Punkt(u);
            const double ds = std::hypot(step.x, step.y);
            const double v0 = 50.0 / kKmh, delayed = v0 * 0.3;
            const double v = path < delayed ? v0 : std::sqrt(v0 * v0 - 4.0 * (path - delayed));
            time += ds / v;
            path += ds;
            u += h;
        }
        EXPECT_NEAR(dat.zwischenWeg, path, 2e-3);
        EXPECT_NEAR(dat.zwischenZeit, time, 2e-4);
        EXPECT_NEAR(dat.zwischenGier, kurve.Gierwinkel(u) * 180.0 / kPi, 0.01);
        EXPECT_NEAR(dat.zwischenHeck, offset(u, 2.65 + 0.9 - 4.5), 2e-3);
        EXPECT_EQ(dat.zwischenFront, front);
    }
    dat.zwischenFront = 20.0;
    dat.Rechnen();
    for (const double empty : {dat.zwischenWeg, dat.zwischenZeit, dat.zwischenHeck, dat.zwischenGier})
        EXPECT_EQ(empty, 0.0);
}

TEST_F(SpurVorDatTest, ANegativeOffsetIsTheSameLaneChangeToTheOtherSide)
{
    dat.Rechnen();
    dat.Uebertragen();
    const double length = dat.laenge, rear = dat.zwischenHeck;
    const std::vector<CDPoint> left = Phases().spalten[kFirst].bahn;
    dat.seitenversatz = -3.0;
    ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    EXPECT_EQ(dat.seitenversatz, -3.0);
    EXPECT_EQ(dat.laenge, length);
    EXPECT_EQ(dat.zwischenHeck, rear);
    const std::vector<CDPoint>& right = Phases().spalten[kFirst].bahn;
    ASSERT_EQ(left.size(), right.size());
    EXPECT_NEAR(left.back().y, 300.0, 1e-6);
    for (std::size_t i = 0; i < left.size(); ++i)
        EXPECT_EQ(right[i], (CDPoint{left[i].x, -left[i].y}));
}

TEST_F(SpurVorDatTest, TransferAddsUpToPathAndTimeInDrivingOrder)
{
    struct Row {
        bool atEnd;
        double a, limit, delay;
        std::vector<PhasenArt> kinds; // from the collision backwards
    };
    using enum PhasenArt;
    for (const Row& row :
         {Row{false, 0, 0, 0, {constantSpeed}}, Row{false, 2, 55, 0.5, {constantSpeed, accelerating, constantSpeed}},
          Row{false, -3, 0, 0.5, {braking, constantSpeed}},
          Row{true, -2, 55, 0.5, {constantSpeed, braking, constantSpeed}}, Row{true, 2, 0, 0, {accelerating}},
          Row{false, -8, 0, 0.2, {braking, constantSpeed, constantSpeed}},
          Row{true, 8, 0, 0.2, {constantSpeed, constantSpeed, accelerating}}}) {
        SCOPED_TRACE(testing::Message() << row.atEnd << " " << row.a);
        Phases() = {};
        dat.Oeffne();
        dat.seitenversatz = dat.querbeschleunigung = 3.0;
        dat.bekannt = row.atEnd;
        (row.atEnd ? dat.endgeschw : dat.anfangsgeschw) = 50.0;
        dat.beschleunigung = row.a;
        dat.geschwGrenze = row.limit;
        dat.zeitverzug = row.delay;
        ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
        ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
        const auto& columns = Phases().spalten;
        const std::size_t last = kFirst + row.kinds.size() - 1;
        for (std::size_t i = 0; i < row.kinds.size(); ++i) {
            const CWegZeitSpalte& phase = columns[kFirst + i];
            EXPECT_EQ(phase.art, row.kinds[i]) << i;
            EXPECT_GT(phase.zeit, 0.0);
            if (phase.art != constantSpeed) {
                EXPECT_NEAR(phase.verz, -row.a, 1e-6);
            }
            if (i > 0) {
                EXPECT_NEAR(phase.bahn.back().x, columns[kFirst + i - 1].bahn.front().x, 1e-6);
            }
        }
        EXPECT_FALSE(columns[last + 1].IsUsed());
        EXPECT_NEAR(columns[last].sumWeg, dat.weg, 1e-6);
        EXPECT_NEAR(columns[last].sumZeit, dat.zeit, 1e-9);
        EXPECT_NEAR(columns[kFirst].vEnd, dat.endgeschw, 1e-9);
        EXPECT_NEAR(columns[last].vAnf, dat.anfangsgeschw, 1e-9);
        EXPECT_NEAR(columns[last].bahn.front().x, 265.0 / 2.0, 1e-9) << "the middle of the wheelbase";
        EXPECT_NEAR(columns[kFirst].bahn.back().x, 100.0 * dat.laenge + 265.0 / 2.0, 1e-4);
        EXPECT_TRUE(data.UPa(0).modified);
    }
}

TEST_F(SpurVorDatTest, TransferReplacesItsOwnPhasesAndMovesOthers)
{
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::nichtBerechnet);
    CWegZeitSpalte& earlier = Phases().spalten[kFirst];
    earlier.art = PhasenArt::reaction;
    earlier.zeit = 1.0;
    earlier.vAnf = earlier.vEnd = 50.0;
    dat.beschleunigung = -2.0;
    dat.zeitverzug = 0.5;
    dat.Rechnen();
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    EXPECT_EQ(Phases().spalten[kFirst + 2].art, PhasenArt::reaction);
    dat.zeitverzug = 0.0;
    dat.Rechnen();
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    EXPECT_EQ(Phases().spalten[kFirst].art, PhasenArt::braking);
    EXPECT_EQ(Phases().spalten[kFirst + 1].art, PhasenArt::reaction);
    EXPECT_EQ(Phases().FirstFree(), kFirst + 2);
    EXPECT_EQ(Phases().selected, kFirst);

    // Behind a phase that starts at another speed the case keeps its chain, and that is said.
    dat.phase = static_cast<std::int64_t>(kFirst + 2);
    dat.Rechnen();
    EXPECT_EQ(dat.Uebertragen(), Uebertragung::geaendert);

    // Without room nothing is written.
    for (std::size_t i = kFirst; i < CWegZeitDat::kSpalten; ++i) {
        Phases().spalten[i] = {};
        Phases().spalten[i].art = PhasenArt::rolling;
    }
    const CWegZeitRechDat before = Phases();
    for (const std::int64_t phase : {3, 20, 47, 48, 1000}) {
        dat.phase = phase;
        EXPECT_EQ(dat.Uebertragen(), Uebertragung::keinPlatz);
        EXPECT_TRUE(Phases() == before);
    }
    Phases().Loeschen(47);
    dat.phase = 47;
    EXPECT_NE(dat.Uebertragen(), Uebertragung::keinPlatz);
    EXPECT_TRUE(Phases().spalten[47].IsUsed());
}

TEST_F(SpurVorDatTest, DrivingInReverseIsMarkedInTheCase)
{
    dat.richtung = CSpurVorDat::rueckwaerts;
    dat.beschleunigung = -1.0;
    dat.anfangsgeschw = 10.0;
    dat.querbeschleunigung = 1.0;
    ASSERT_EQ(dat.Rechnen().ausgang, Ausgang::berechnet);
    ASSERT_EQ(dat.Uebertragen(), Uebertragung::erfolgt);
    for (std::size_t i = kFirst; i < Phases().FirstFree(); ++i) {
        EXPECT_EQ(Phases().spalten[i].richtung, -1.0);
        EXPECT_LE(Phases().spalten[i].vEnd, 0.0);
        EXPECT_GT(Phases().spalten[i].zeit, 0.0);
    }
    EXPECT_NEAR(Phases().spalten[Phases().FirstFree() - 1].vAnf, -10.0, 1e-9);
}

TEST_F(SpurVorDatTest, NonsenseEndsInAnOutcomeAndSoon)
{
    const double strange[] = {0.0,
                              -0.0,
                              1e-300,
                              -1e-9,
                              1e-9,
                              1e-3,
                              -3.0,
                              1e4,
                              1e9,
                              1e300,
                              -1e300,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()};
    for (int round = 0; round < 3000; ++round) {
        dat.Oeffne();
        for (double* field :
             {&dat.kurvenradius, &dat.seitenversatz, &dat.querbeschleunigung, &dat.anfangsgeschw, &dat.endgeschw,
              &dat.beschleunigung, &dat.geschwGrenze, &dat.zeitverzug, &dat.zwischenFront})
            *field = random() % 3 == 0 ? strange[random() % std::size(strange)] : Uniform(-5.0, 40.0);
        dat.bekannt = static_cast<std::int64_t>(random() % 2);
        for (double* length : {&data.KfzDat(0).length, &data.KfzDat(0).wheelbase, &data.KfzDat(0).frontOverhang})
            *length = random() % 3 == 0 ? strange[random() % std::size(strange)] : Uniform(0.0, 5.0);
        dat.fahrzeug = static_cast<std::int64_t>(random() % 20) - 2;
        dat.phase = static_cast<std::int64_t>(random() % 60) - 5;
        const auto start = std::chrono::steady_clock::now();
        const bool computed = dat.Rechnen().ausgang == Ausgang::berechnet;
        ASSERT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
        ASSERT_EQ(dat.berechnet == 1, computed);
        if (computed) {
            for (const double result : {dat.weg, dat.zeit, dat.laenge, dat.zwischenWeg, dat.zwischenZeit})
                ASSERT_TRUE(std::isfinite(result) && result >= 0.0) << round;
            for (const double result : {dat.endgeschw, dat.anfangsgeschw, dat.gierwinkel, dat.zwischenHeck})
                ASSERT_TRUE(std::isfinite(result) ||
                            !(std::isfinite(dat.anfangsgeschw) && std::isfinite(dat.endgeschw)))
                    << round;
        }
        const Uebertragung written = dat.Uebertragen();
        ASSERT_TRUE(computed || written == Uebertragung::nichtBerechnet);
    }
}

} // namespace
