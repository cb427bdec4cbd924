// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CGrenzVDat.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <cmath>
#include <ctime>
#include <random>

namespace
{

using framework::InputResult;
using Grenze = CGrenzVDat::Grenze;
using Kurve = CGrenzVDat::Kurve;

constexpr UINT kFriction = 4651, kRadius = 4652, kDegrees = 4653, kPercent = 4654, kSpeed = 4655, kFelt = 4656,
               kLateral = 4657, kChord = 4658, kHeight = 4659, kLean = 4660, kArc = 4661, kFinding = 24655,
               kReason = 34655, kCurveHint = 24652, kCrossFallHint = 24653;

class GrenzVTest : public test::MaskTest
{
  protected:
    void SetUp() override { Open(); }
    void Open()
    {
        ASSERT_TRUE(thread.Dialogs().empty());
        mask = &OpenMask(401);
    }
    double Field(const char* name) { return test::FieldValue(*mask, name); }
    double In(UINT id) { return Value(*mask, id); }
    void Type(UINT id, const std::string& text) { EXPECT_EQ(Enter(*mask, id, text), InputResult::done) << id; }
    std::string Shown(UINT id) { return Text(*mask, id); }

    framework::Window* mask = nullptr;
};

TEST_F(GrenzVTest, LevelCurve)
{
    Type(kFriction, "0,8");
    Type(kRadius, "50");
    EXPECT_EQ(Field("berechnet"), 0.0);
    Press(*mask, kCalculate);
    EXPECT_NEAR(In(kSpeed), std::sqrt(50.0 * 9.81 * 0.8) * 3.6, 1e-10);
    EXPECT_EQ(Shown(kSpeed), "71,31");
    EXPECT_NEAR(In(kLateral), 7.848, 1e-12);
    EXPECT_NEAR(In(kFelt), 7.848, 1e-12);
    EXPECT_EQ(Shown(kLean), "38,66");
    EXPECT_EQ(Shown(kFinding), "");
    EXPECT_EQ(Enter(*mask, kSpeed, "5"), InputResult::disabled);
    EXPECT_EQ(Enter(*mask, kLean, "5"), InputResult::disabled);
    EXPECT_EQ(Enter(*mask, kLateral, "5"), InputResult::readOnly);
    EXPECT_EQ(Enter(*mask, kFelt, "5"), InputResult::readOnly);
}

// A point that runs round the curve needs exactly the friction there is.
TEST_F(GrenzVTest, LimitSpeedUsesUpTheFrictionOfTheMotion)
{
    std::mt19937_64 random(2201);
    std::uniform_real_distribution<double> frictions(0.02, 2.5);
    std::uniform_real_distribution<double> angles(-0.9, 1.2);
    std::uniform_real_distribution<double> radii(5.0, 800.0);
    int found = 0;
    int slides = 0;
    int unlimited = 0;
    for (int i = 0; i < 5000; ++i) {
        CGrenzVDat dat(data);
        dat.reibungsbeiwert = frictions(random);
        dat.quergefaelle = angles(random);
        dat.kurvenradius = radii(random);
        dat.grenzgeschwindigkeit = 1.25;
        // Forces per mass across the road's plane and onto it at a horizontal acceleration.
        const auto needed = [&](double acceleration) {
            const double across = acceleration * std::cos(dat.quergefaelle) - 9.81 * std::sin(dat.quergefaelle);
            const double onto = 9.81 * std::cos(dat.quergefaelle) + acceleration * std::sin(dat.quergefaelle);
            return std::pair(across, across / onto);
        };
        const Grenze grenze = dat.Rechnen();
        if (grenze == Grenze::gefunden) {
            ++found;
            const double speed = dat.grenzgeschwindigkeit / 3.6;
            const double turn = 1e-4;
            const double time = turn * dat.kurvenradius / speed;
            const auto x = [&](int n) { return dat.kurvenradius * std::cos(n * turn); };
            const double acceleration = -(x(-1) - 2.0 * x(0) + x(1)) / (time * time);
            EXPECT_NEAR(dat.querbeschleunigung / acceleration, 1.0, 1e-6);
            EXPECT_NEAR(needed(acceleration).second / dat.reibungsbeiwert, 1.0, 1e-5);
            EXPECT_NEAR(dat.fuehlbareQuerbeschleunigung, needed(dat.querbeschleunigung).first,
                        1e-10 * (9.81 + dat.querbeschleunigung));
            EXPECT_NEAR(std::tan(dat.schraeglage * M_PI / 180.0) * 9.81 / dat.querbeschleunigung, 1.0, 1e-9);
        } else if (grenze == Grenze::ohneHaftung) {
            ++slides;
            EXPECT_GE(needed(0.0).second, dat.reibungsbeiwert) << "slides outwards from a stand";
        } else {
            ++unlimited;
            ASSERT_EQ(grenze, Grenze::unbegrenzt);
            for (const double speed : {1.0, 30.0, 1000.0})
                EXPECT_LT(needed(speed * speed / dat.kurvenradius).second, dat.reibungsbeiwert);
        }
        if (grenze != Grenze::gefunden) {
            EXPECT_EQ(dat.grenzgeschwindigkeit, 1.25);
            EXPECT_EQ(dat.querbeschleunigung, 0.0);
        }
    }
    EXPECT_GT(found, 1000);
    EXPECT_GT(slides, 100);
    EXPECT_GT(unlimited, 100);
}

TEST_F(GrenzVTest, AnglesAtWhichTheFormulaEnds)
{
    CGrenzVDat dat(data);
    dat.kurvenradius = 50.0;
    dat.reibungsbeiwert = 0.5;
    dat.quergefaelle = 1.0;
    EXPECT_EQ(dat.Rechnen(), Grenze::unbestimmt);
    EXPECT_EQ(dat.grenzgeschwindigkeit, 0.0);
    dat.reibungsbeiwert = 4.0;
    dat.quergefaelle = std::atan(0.25);
    ASSERT_EQ(1.0 - 4.0 * std::tan(dat.quergefaelle), 0.0);
    EXPECT_EQ(dat.Rechnen(), Grenze::gefunden);
    EXPECT_EQ(dat.grenzgeschwindigkeit, INFINITY);
    EXPECT_DOUBLE_EQ(dat.schraeglage, 90.0);
}

TEST_F(GrenzVTest, WithoutALimitSpeedTheOldOneIsMarked)
{
    Press(*mask, kCalculate);
    EXPECT_EQ(Shown(kFinding), "keine gefunden");
    EXPECT_EQ(Shown(kReason), "Der Kurvenradius fehlt.");
    Type(kFriction, "0,8");
    Type(kRadius, "50");
    Press(*mask, kCalculate);
    EXPECT_EQ(Shown(kFinding) + Shown(kReason), "");
    const double speed = In(kSpeed);

    Type(kPercent, "-90");
    EXPECT_EQ(Shown(kFinding), "") << "typing does not recalculate";
    Press(*mask, kCalculate);
    EXPECT_EQ(In(kSpeed), speed);
    EXPECT_EQ(Field("berechnet"), 0.0);
    EXPECT_EQ(Shown(kFinding), "alter Wert – keine neue gefunden");
    EXPECT_EQ(Shown(kReason), "Reibung und Quergefälle halten nicht nach innen.");
    for (const UINT beside : {24656U, 24657U, 24660U})
        EXPECT_EQ(Shown(beside), "alter Wert");
    StepOnce(*mask, kFriction, +1);
    EXPECT_EQ(Shown(kFinding), "alter Wert – keine neue gefunden") << "nothing recalculates until it was computed";

    Type(kPercent, "0");
    Press(*mask, kCalculate);
    EXPECT_EQ(Shown(kFinding) + Shown(kReason) + Shown(24656) + Shown(24657) + Shown(24660), "");
    EXPECT_NEAR(In(kSpeed), std::sqrt(50.0 * 9.81 * 0.81) * 3.6, 1e-9);
}

TEST_F(GrenzVTest, SpinnerRecalculatesAndAFailureLeavesTheFlag)
{
    Type(kFriction, "0,8");
    Type(kRadius, "1");
    StepOnce(*mask, kRadius, +1);
    EXPECT_EQ(In(kSpeed), 0.0);
    Type(kRadius, "1");
    Press(*mask, kCalculate);
    const double speed = In(kSpeed);
    StepOnce(*mask, kRadius, -1);
    ASSERT_EQ(In(kRadius), 0.0);
    EXPECT_EQ(In(kSpeed), speed);
    EXPECT_EQ(Field("berechnet"), 1.0);
    EXPECT_EQ(Shown(kReason), "Der Kurvenradius fehlt.");
    StepOnce(*mask, kRadius, +1);
    StepOnce(*mask, kRadius, +1);
    EXPECT_NEAR(In(kSpeed), speed * std::sqrt(2.0), 1e-9);
    EXPECT_EQ(Shown(kFinding) + Shown(kReason), "");
    StepOnce(*mask, kDegrees, +1);
    const double angle = 0.1 * M_PI / 180.0;
    const double t = std::tan(angle);
    EXPECT_NEAR(In(kSpeed), 3.6 * std::sqrt(2.0 * 9.81 * (0.8 + t) / (1.0 - 0.8 * t)), 1e-9);
    EXPECT_NEAR(In(kPercent), t * 100.0, 1e-12);
}

TEST_F(GrenzVTest, ChordAndHeightGiveRadiusAndArc)
{
    Type(kChord, "30");
    EXPECT_EQ(In(kRadius), 0.0);
    Type(kHeight, "2");
    EXPECT_DOUBLE_EQ(In(kRadius), 57.25);
    EXPECT_DOUBLE_EQ(In(kArc), 2.0 * 57.25 * std::asin(15.0 / 57.25));
    EXPECT_EQ(Shown(kCurveHint), "");
    Type(kHeight, "16");
    EXPECT_NEAR(In(kArc), 2.0 * In(kRadius) * std::asin(15.0 / In(kRadius)), 1e-12);
    EXPECT_NE(Shown(kCurveHint), "") << "more than a half circle";
    Type(kRadius, "10");
    EXPECT_EQ(Shown(kHeight), "16,00");
    EXPECT_EQ(Shown(kCurveHint), "Die Sehne ist länger als der Durchmesser: Höhe und Bogen unverändert.");
}

TEST_F(GrenzVTest, EveryHalfCircleHasAnArc)
{
    for (int i = 1; i < 10000; ++i) {
        CGrenzVDat dat(data);
        dat.hoehe = i / 100.0;
        dat.sehne = 2 * i / 100.0;
        EXPECT_EQ(dat.HoeheGeaendert(), Kurve::stimmig) << dat.hoehe;
        EXPECT_NEAR(dat.bogenlaenge, M_PI * dat.hoehe, 1e-6 * dat.hoehe);
    }
}

TEST_F(GrenzVTest, AnyTwoMeasuresOfAnArcGiveTheOthers)
{
    std::mt19937_64 random(2202);
    std::uniform_real_distribution<double> radii(3.0, 900.0);
    std::uniform_real_distribution<double> angles(0.02, 5.9);
    for (int i = 0; i < 3000; ++i) {
        const double radius = radii(random);
        const double angle = angles(random);
        // Measured on points of the circle.
        const auto point = [&](double at) { return CDPoint{radius * std::cos(at), radius * std::sin(at)}; };
        const CDPoint across = point(angle) - point(0.0);
        const double chord = std::hypot(across.x, across.y);
        const CDPoint rise = point(angle / 2.0) - (point(0.0) + point(angle)) * 0.5;
        const double height = std::hypot(rise.x, rise.y);
        double arc = 0.0;
        for (int n = 0; n < 2000; ++n) {
            const CDPoint piece = point((n + 1) * angle / 2000) - point(n * angle / 2000);
            arc += std::hypot(piece.x, piece.y);
        }

        CGrenzVDat byHeight(data);
        byHeight.sehne = chord;
        byHeight.hoehe = height;
        const Kurve shape = byHeight.HoeheGeaendert();
        EXPECT_NEAR(byHeight.kurvenradius, radius, 1e-6 * radius);
        if (angle < 3.14) {
            EXPECT_EQ(shape, Kurve::stimmig);
            EXPECT_NEAR(byHeight.bogenlaenge, arc, 1e-5 * arc);
            CGrenzVDat byRadius(data);
            byRadius.sehne = chord;
            byRadius.kurvenradius = radius;
            EXPECT_EQ(byRadius.RadiusGeaendert(), Kurve::stimmig);
            EXPECT_NEAR(byRadius.hoehe, height, 1e-6 * radius);
            EXPECT_NEAR(byRadius.bogenlaenge, arc, 1e-5 * arc);
        } else if (angle > 3.15) {
            EXPECT_EQ(shape, Kurve::kurzerBogen);
            EXPECT_NEAR(byHeight.bogenlaenge, 2.0 * M_PI * radius - arc, 1e-5 * arc);
        }

        CGrenzVDat byArc(data);
        byArc.sehne = chord;
        byArc.bogenlaenge = radius * angle;
        EXPECT_EQ(byArc.BogenGeaendert(), Kurve::stimmig);
        EXPECT_EQ(byArc.radiusAusBogen, 1);
        const double x = byArc.bogenlaenge / byArc.kurvenradius;
        EXPECT_NEAR((chord / 2.0) / std::sin(x / 2.0), byArc.kurvenradius, 1.0001e-4) << "its own equation";
        // The first decimal fraction that is good enough: one unit of its last place less is not.
        double unit = 1.0;
        while (unit > 1e-12 && std::abs(x / unit - std::round(x / unit)) > 1e-4)
            unit /= 10.0;
        ASSERT_GT(unit, 1e-9);
        if (x > 1.5 * unit) {
            EXPECT_LT((chord / 2.0) / std::sin((x - unit) / 2.0) - radius * angle / (x - unit), -0.9999e-4);
        }
        // What 0.1 mm between the two radii leaves open in the radius itself.
        const double slope = radius / angle - chord / 4.0 * std::cos(angle / 2.0) / std::pow(std::sin(angle / 2.0), 2);
        const double open = 1e-4 * (radius / angle) / slope;
        EXPECT_NEAR(byArc.kurvenradius, radius, 1.1 * open + 1e-7 * radius);
        EXPECT_NEAR(byArc.hoehe, byArc.kurvenradius * (1.0 - std::cos(x / 2.0)), 1e-9 * radius);
    }
}

TEST_F(GrenzVTest, ArcWithoutACentralAngleChangesNothing)
{
    Type(kChord, "30");
    Type(kHeight, "2");
    const double radius = In(kRadius);
    for (const char* arc : {"29", "30"}) {
        Type(kArc, arc);
        EXPECT_EQ(In(kRadius), radius);
        EXPECT_EQ(In(kHeight), 2.0);
        EXPECT_EQ(Shown(kCurveHint), "Der Bogen ist nicht länger als die Sehne: Radius und Höhe unverändert.");
    }
    // A chord tiny beside its arc: the search ends, and what it takes meets the equation, if on another turn.
    int beyond = 0;
    for (const double chord : {49.0, 10.0, 1.0, 0.5, 0.1, 0.01, 1e-3, 1e-9, 1e-300}) {
        CGrenzVDat dat(data);
        dat.sehne = chord;
        dat.bogenlaenge = 1000.0;
        const Kurve shape = dat.BogenGeaendert();
        const auto angle = CGrenzVDat::Zentriwinkel(chord, 1000.0);
        if (!angle) {
            EXPECT_EQ(shape, Kurve::ohneErgebnis);
            EXPECT_EQ(dat.kurvenradius, 0.0);
            continue;
        }
        EXPECT_LE(std::abs((chord / 2.0) / std::sin(*angle / 2.0) - 1000.0 / *angle), 1e-4);
        EXPECT_EQ(shape, *angle > 2.0 * M_PI ? Kurve::ueberKreis : Kurve::stimmig);
        beyond += shape == Kurve::ueberKreis ? 1 : 0;
    }
    EXPECT_GT(beyond, 0);
    EXPECT_EQ(CGrenzVDat::Zentriwinkel(40.0, 1000.0), std::nullopt) << "the steps pass the full circle";
}

TEST_F(GrenzVTest, FastSearchOfTheArcGivesTheDoublesOfTheSteps)
{
    // The search as it is defined, step after step.
    const auto stepping = [](double chord, double arc) -> std::optional<double> {
        double x = 0.0, step = 1.0;
        for (int i = 0; i < 20'000'000; ++i) {
            const double before = x;
            x += step;
            if (x == before)
                return std::nullopt;
            const double f = (chord / 2.0) / std::sin(x / 2.0) - arc / x;
            if (f > 0.0) {
                x -= step;
                step /= 10.0;
                if (step < 1e-14)
                    return std::nullopt;
            } else if (std::abs(f) <= 0.0001) {
                return x;
            }
        }
        return std::nullopt;
    };
    std::mt19937_64 random(401);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    int found = 0, far = 0;
    const auto compare = [&](double chord, double arc) {
        const auto fast = CGrenzVDat::Zentriwinkel(chord, arc);
        ASSERT_EQ(fast, stepping(chord, arc)) << chord << " " << arc;
        found += fast.has_value();
        far += fast.value_or(0.0) > 1000.0;
    };
    for (int i = 0; i < 20000; ++i) {
        const double arc = i % 2 == 0 ? between(0.01, 1000.0) : std::pow(10.0, between(-4.0, 3.0));
        compare(arc * (i % 3 == 0 ? between(0.0, 1.0) : std::pow(10.0, between(-4.0, 0.0))), arc);
    }
    for (int i = 0; i < 150; ++i) {
        const double arc = std::pow(10.0, between(-3.0, 1.0));
        compare(arc * std::pow(10.0, between(-16.0, -4.0)), arc);
    }
    for (const double chord : {1e-3, 1e-6, 1e-9, 1e-300})
        compare(chord, 1000.0);
    EXPECT_GT(found, 10000);
    EXPECT_GT(far, 50);
    // The longest searches take less than a millisecond each of the processor's time.
    const std::clock_t start = std::clock();
    int runs = 0;
    for (double chord = 1e-300; chord < 1e-6; chord *= 1e3, ++runs)
        CGrenzVDat::Zentriwinkel(chord, 1000.0);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 1e-3 * runs);
}

TEST_F(GrenzVTest, BankedSteeperThanFrictionItSlidesInwardsWhenSlow)
{
    // μ = 0,5 and 100 % cross-fall at 50 m: below √(50·9,81·0,5/1,5) = 12,79 m/s friction does not hold it.
    CGrenzVDat dat(data);
    dat.kurvenradius = 50.0;
    dat.reibungsbeiwert = 0.5;
    dat.quergefaelle = std::atan(1.0);
    EXPECT_NEAR(dat.RutschgrenzeInnen(), 3.6 * std::sqrt(50.0 * 9.81 / 3.0), 1e-9);
    // A point at that speed uses up the friction uphill.
    for (const double steep : {0.2, 0.5, 0.9}) {
        dat.reibungsbeiwert = 0.1;
        dat.quergefaelle = steep;
        const double needed = std::pow(dat.RutschgrenzeInnen() / 3.6, 2) / dat.kurvenradius;
        const double across = needed * std::cos(steep) - 9.81 * std::sin(steep);
        const double onto = 9.81 * std::cos(steep) + needed * std::sin(steep);
        EXPECT_NEAR(across / onto, -0.1, 1e-9);
    }
    dat.reibungsbeiwert = std::tan(0.9);
    EXPECT_EQ(dat.RutschgrenzeInnen(), 0.0) << "held at rest";
    dat.quergefaelle = -0.3;
    EXPECT_EQ(dat.RutschgrenzeInnen(), 0.0);

    Type(kRadius, "50");
    Type(kFriction, "0,5");
    Type(kPercent, "90");
    Press(*mask, kCalculate);
    // √(50·9,81·0,4/1,45)·3,6 = 41,88
    EXPECT_EQ(Shown(kReason), "Unter 41,88 km/h rutscht das Fahrzeug nach innen.");
    EXPECT_EQ(Shown(kFinding), "");
    Type(kDegrees, "70"); // tan 70° = 2,747: nothing slides outwards; √(490,5·2,2475/2,3737)·3,6 = 77,58
    Press(*mask, kCalculate);
    EXPECT_EQ(Shown(kReason), "Rutscht nie nach außen, unter 77,58 km/h nach innen.");
    Type(kFriction, "3");
    Press(*mask, kCalculate);
    EXPECT_EQ(Shown(kReason), "Bei keiner Geschwindigkeit rutscht es nach außen.");
    EXPECT_NE(Shown(kFinding), "");
}

TEST_F(GrenzVTest, RadiusIsTheUsersOnceItIsTyped)
{
    Type(kChord, "30");
    Type(kArc, "31");
    ASSERT_EQ(Field("radiusAusBogen"), 1.0);
    Type(kRadius, "60");
    EXPECT_EQ(Field("radiusAusBogen"), 0.0);
}

TEST_F(GrenzVTest, ChordAfterAnArcKeepsTheArcAndFollowsTheNewHeight)
{
    Type(kChord, "30");
    Type(kArc, "31");
    EXPECT_EQ(Field("radiusAusBogen"), 1.0);
    const double radius = In(kRadius);
    Type(kChord, "29");
    EXPECT_EQ(Field("radiusAusBogen"), 0.0);
    EXPECT_LT(In(kRadius), radius);
    EXPECT_NEAR(In(kArc), 31.0, 1e-3);
    EXPECT_NEAR(In(kRadius), (4.0 * In(kHeight) * In(kHeight) + 29.0 * 29.0) / (8.0 * In(kHeight)), 1e-9);
    Type(kChord, "28"); // chord and height lead now
    EXPECT_LT(In(kArc), 31.0 - 0.5);
}

TEST_F(GrenzVTest, CaseKeepsTheInputsButTheRoadIsLevelUntilTheCrossFallIsEntered)
{
    EXPECT_TRUE(data.AlleMaskenWerte().empty()) << "opening keeps nothing";
    Type(kFriction, "0,7");
    Type(kDegrees, "5");
    Type(kChord, "30");
    Type(kHeight, "2");
    Press(*mask, kOk);
    ASSERT_TRUE(thread.Dialogs().empty());
    const auto kept = data.GemerkteWerte(401, "kurve");
    ASSERT_EQ(kept.size(), 6U);
    const double t = std::tan(5.0 * M_PI / 180.0);
    const double lateral = (0.7 + t) * 9.81 / (1.0 - 0.7 * t);
    const double expected[] = {0.7, 5.0, 57.25, 30.0, 2.0, std::atan(lateral / 9.81) * 180.0 / M_PI};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(kept[i], expected[i], 1e-9) << i;

    Open();
    EXPECT_EQ(Shown(kDegrees), "5,0");
    EXPECT_NEAR(In(kPercent), t * 100.0, 1e-9);
    EXPECT_NEAR(In(kLean), expected[5], 1e-9);
    EXPECT_EQ(In(kArc), 0.0);
    EXPECT_EQ(In(kSpeed), 0.0);
    EXPECT_NE(Shown(kCrossFallHint), "");
    Press(*mask, kCalculate);
    EXPECT_NEAR(In(kLateral), 0.7 * 9.81, 1e-12);
    Type(kDegrees, "5");
    EXPECT_EQ(Shown(kCrossFallHint), "");
    Press(*mask, kCalculate);
    EXPECT_NEAR(In(kLateral), lateral, 1e-9);
}

TEST_F(GrenzVTest, ClearingKeepsTheFlagsAndNothingElse)
{
    Type(kFriction, "0,8");
    Type(kDegrees, "3");
    Type(kChord, "30");
    Type(kArc, "31");
    Press(*mask, kCalculate);
    Press(*mask, kClear); // answered with no
    EXPECT_EQ(Shown(kFriction), "0,80");
    front.answers[1052] = fehlerJa;
    Press(*mask, kClear);
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask->object)->DescribeRecord()) {
        const bool flag = field.name == "berechnet" || field.name == "radiusAusBogen";
        EXPECT_EQ(Field(std::string(field.name).c_str()), flag ? 1.0 : 0.0) << field.name;
    }
}

} // namespace
