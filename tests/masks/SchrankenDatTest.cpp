// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankenverfahrenDat.h"
#include "masks/collision/SchrankenKurve.h"

#include "host/CRuvData.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr std::size_t kOben = Dat::kProben;

class SchrankenDatTest : public ::testing::Test
{
  protected:
    SchrankenDatTest()
    {
        data.KfzDat(0) = TypicalCar("Pkw", RGB(200, 0, 0));
        data.KfzDat(0).length = 4.4;
        dat.fahrzeugNr = 0;
    }
    /// Vehicle heading along x with its front at 0, person 15 m behind the front's end position… seen along the axis,
    /// collision area from 18 to 22 m behind it.
    void Place()
    {
        dat.objekte[Dat::fahrzeug] = {{-2.2, 0.0}, 0.0, 0.0, 0.0, true};
        dat.objekte[Dat::person] = {{4.75, 1.0}, 0.0, 0.5, 1.8, true};
        dat.objekte[Dat::kollisionsort] = {{-22.0, -1.0}, 0.0, 4.0, 2.0, true};
        dat.verzoegerung = 7.0;
        dat.verzoegerungToleranz = 0.5;
        dat.Projizieren();
    }

    CRuvData data;
    Dat dat{data};
};

TEST_F(SchrankenDatTest, ProjectionMeasuresBackwardsFromTheFront)
{
    Place();
    EXPECT_NEAR(dat.personLaengs, -5.0, 1e-12) << "the person lies 5 m in front";
    EXPECT_NEAR(dat.personQuer, -1.9, 1e-12);
    EXPECT_NEAR(dat.kollision.von, 18.0, 1e-12);
    EXPECT_NEAR(dat.kollision.bis, 22.0, 1e-12);
    EXPECT_NEAR(dat.kleinsterWeg, -10.0, 1e-12);
    EXPECT_NEAR(dat.groessterWeg, 32.0, 1e-12);
}

TEST_F(SchrankenDatTest, ProjectionDoesNotDependOnWhereTheSceneLies)
{
    Place();
    const Dat::Bereich area = dat.kollision;
    const double along = dat.personLaengs;
    const double across = dat.personQuer;
    std::mt19937 random(7);
    for (int run = 0; run < 200; ++run) {
        const double turn = std::uniform_real_distribution<double>(-7.0, 7.0)(random);
        const CDPoint shift{std::uniform_real_distribution<double>(-500.0, 500.0)(random), 31.0};
        Place();
        for (auto& object : dat.objekte) {
            object.position.Rotate(turn, {});
            object.position += shift;
            object.winkel += turn;
        }
        dat.Projizieren();
        EXPECT_NEAR(dat.kollision.von, area.von, 1e-9);
        EXPECT_NEAR(dat.kollision.bis, area.bis, 1e-9);
        EXPECT_NEAR(dat.personLaengs, along, 1e-9);
        EXPECT_NEAR(dat.personQuer, across, 1e-9);
    }
}

TEST_F(SchrankenDatTest, CheckNamesTheFirstReasonOnly)
{
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::fahrzeug);
    dat.objekte[Dat::fahrzeug].gesetzt = true;
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::person);
    dat.objekte[Dat::person].gesetzt = true;
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::kollisionsort);
    dat.objekte[Dat::kollisionsort].gesetzt = true;
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::verzoegerung);
    dat.verzoegerung = 7.0;
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::toleranz);
    dat.verzoegerungToleranz = 0.5;
    EXPECT_EQ(dat.Pruefen(), Dat::Mangel::keiner);
}

TEST_F(SchrankenDatTest, CurvesSolveTheTheoriesWithinTheWindow)
{
    Place();
    dat.theorien.fill(true);
    dat.objekte[Dat::hauptfeld] = {{-10.0, -1.0}, 0.0, 3.0, 1.0, true};
    dat.objekte[Dat::gesamtfeld] = {{-12.0, -1.0}, 0.0, 8.0, 1.0, true};
    dat.kuehnelToleranz = 4.0;
    dat.rauToleranz = 5.0;
    dat.dettingerToleranz = 6.0;
    dat.abwicklungWeg = 210.0;
    dat.abwicklungToleranz = 10.0;
    dat.karosserie = 2.0;
    dat.karosserieToleranz = 0.5;
    dat.geschwindigkeitVon = 30.0;
    dat.Berechnen();
    const double d = dat.personLaengs;
    int hits = 0;
    const auto expect = [&](Dat::Schranke curve, std::size_t offset, auto f) {
        for (std::size_t i = 0; i < Dat::kProben; ++i) {
            const CDPoint& p = dat.kurven[curve][i + offset];
            ASSERT_DOUBLE_EQ(p.x, static_cast<double>(i) * dat.groessterWeg / 199.0);
            if (p.y > 0.0) {
                EXPECT_LT(std::abs(f(p.y) - p.x), std::sqrt(0.001) + 1e-9) << curve << " " << i;
                ++hits;
            }
        }
    };
    const auto braking = [](double a) { return [a](double v) { return v * v / (25.92 * a); }; };
    expect(Dat::kurveBremsung, 0, braking(6.5));
    expect(Dat::kurveBremsung, kOben, braking(7.5));
    expect(Dat::kurveKuehnelGlobal, 0, [&](double v) { return 0.00375 * v * v + 0.175 * v + d; });
    expect(Dat::kurveKuehnelVerzoegerung, 0,
           [&](double v) { return 0.0271 * (v + 4) * (v + 4) / 7 + 0.0178 * (v + 4) * 7 + d; });
    expect(Dat::kurveKuehnelVerzoegerung, kOben,
           [&](double v) { return 0.0271 * (v - 4) * (v - 4) / 7 + 0.0178 * (v - 4) * 7 + d; });
    expect(Dat::kurveRau, kOben, [&](double v) { return 0.0052 * (v - 5) * (v - 5) + 0.0783 * (v - 5) + d; });
    expect(Dat::kurveDettinger, 0, [&](double v) {
        return 1.64e-5 * std::pow(v + 6, 3) + 0.00452 * (v + 6) * (v + 6) + 0.071 * (v + 6) + 2.5 + d;
    });
    expect(Dat::kurveRitter, kOben, [&](double v) { return 0.0028313 * v * v + 0.0271596 * v + d; });
    expect(Dat::kurveHauptfeld, 0, [&](double v) { return 0.388571 * v + dat.haupt.von; });
    expect(Dat::kurveGesamtfeld, kOben, [&](double v) { return 0.0018 * v * v - 0.00544 * v + dat.gesamt.bis; });
    expect(Dat::kurveFrontscheibe, 0, [&](double v) {
        return 0.00027203013 * v * v * v - 0.01724212509 * v * v + 0.66913310304 * v + dat.haupt.von;
    });
    EXPECT_GT(hits, 1200);
    // (210 ± 10 - 0.7·180)/(2 ± 0.5)
    EXPECT_NEAR(dat.kurven[Dat::kurveAbwicklung][7].y, 74.0 / 2.5, 1e-12);
    EXPECT_NEAR(dat.kurven[Dat::kurveAbwicklung][7 + kOben].y, 94.0 / 1.5, 1e-12);
    EXPECT_EQ(dat.kurven[Dat::kurveGeschwindigkeit][3].y, 30.0);
    EXPECT_EQ(dat.kurven[Dat::kurveGeschwindigkeit][3 + kOben].y, 200.0) << "no upper bound given";
}

// Each of the eighteen curves that are searched, against a table of its own origin.
TEST_F(SchrankenDatTest, CurvesAgreeWithTheIndependentTable)
{
    constexpr std::size_t kUnten = 0;
    constexpr struct {
        Dat::Schranke schranke;
        std::size_t seite;
        std::size_t stelle;
        int tausendstel;
    } kTabelle[] = {
#include "tests/masks/SchrankenKurvenTabelle.inc"
    };
    Place();
    dat.theorien.fill(true);
    dat.objekte[Dat::hauptfeld] = {{-10.0, -1.0}, 0.0, 3.0, 1.0, true};
    dat.objekte[Dat::gesamtfeld] = {{-12.0, -1.0}, 0.0, 8.0, 1.0, true};
    dat.kuehnelToleranz = 4.0;
    dat.rauToleranz = 5.0;
    dat.dettingerToleranz = 6.0;
    dat.Berechnen();
    for (const auto& fall : kTabelle)
        EXPECT_NEAR(dat.kurven[fall.schranke][fall.stelle + fall.seite].y, fall.tausendstel / 1000.0, 2e-4)
            << "curve " << fall.schranke << " side " << fall.seite << " position " << fall.stelle;
}

TEST_F(SchrankenDatTest, EachTheoryNeedsItsOwnFieldAndNoOther)
{
    Place();
    dat.theorien.fill(true);
    const auto wirksam = [&] {
        std::string liste;
        for (std::size_t i = 0; i < Dat::kTheorien; ++i)
            liste += dat.IstWirksam(static_cast<Dat::Theorie>(i)) ? '1' : '0';
        return liste;
    };
    // Global, Verzögerung, Rau, Dettinger, Ritter, Frontscheibe, Hauptfeld, Gesamtfeld, Abwicklung, Geschwindigkeit
    EXPECT_EQ(wirksam(), "1111100001");
    dat.objekte[Dat::hauptfeld].gesetzt = 1;
    EXPECT_EQ(wirksam(), "1111111001");
    dat.objekte[Dat::hauptfeld].gesetzt = 0;
    dat.objekte[Dat::gesamtfeld].gesetzt = 1;
    EXPECT_EQ(wirksam(), "1111100101");
    dat.abwicklungWeg = 100.0;
    EXPECT_EQ(wirksam(), "1111100111");
    dat.theorien.fill(false);
    EXPECT_EQ(wirksam(), "0000000000");
}

TEST_F(SchrankenDatTest, NearAndFarEndGoByTheSquare)
{
    Place();
    // Corners at -1 and 3 m behind the front: the near one lies before it.
    dat.objekte[Dat::gesamtfeld] = {{-3.0, 0.0}, 0.0, 4.0, 1.0, 1};
    // Wholly before the front, 2 to 6 m: the near end is the one at the front.
    dat.objekte[Dat::hauptfeld] = {{2.0, 0.0}, 0.0, 4.0, 1.0, 1};
    dat.Projizieren();
    EXPECT_NEAR(dat.gesamt.von, -1.0, 1e-12);
    EXPECT_NEAR(dat.gesamt.bis, 3.0, 1e-12);
    EXPECT_NEAR(dat.haupt.von, -2.0, 1e-12);
    EXPECT_NEAR(dat.haupt.bis, -6.0, 1e-12);
}

TEST_F(SchrankenDatTest, BandsBelowOneKmhAreCleared)
{
    for (const double oben : {0.999, 1.0, 1.001}) {
        Dat::Kurvenfeld band{};
        Dat::Kurvenfeld schranke{};
        band[0].y = 0.25;
        band[kOben].y = oben;
        schranke[0].y = 0.5;
        schranke[kOben].y = 50.0;
        Dat::FlaechenRechner(band, schranke, 1);
        EXPECT_EQ(band[0].y, oben < 1.0 ? 0.0 : 0.5) << oben;
        EXPECT_EQ(band[kOben].y, oben < 1.0 ? 0.0 : oben) << oben;
    }
}

TEST_F(SchrankenDatTest, ReasonForAnEmptyAreaIsTheTrueOne)
{
    Place();
    dat.Berechnen();
    EXPECT_EQ(dat.WarumOhneFlaeche(), Dat::OhneFlaeche::keine);
    dat.theorien[Dat::geschwindigkeit] = true;
    dat.geschwindigkeitVon = 190.0;
    dat.Berechnen();
    EXPECT_EQ(dat.WarumOhneFlaeche(), Dat::OhneFlaeche::schranken);
    // 1 cm wide at 18.005 m: the positions are 28.01 m / 199 = 14 cm apart, at 17.88 and 18.02 m.
    Place();
    dat.theorien = {};
    dat.objekte[Dat::kollisionsort] = {{-18.01, 0.0}, 0.0, 0.01, 0.01, true};
    dat.Berechnen();
    EXPECT_FALSE(dat.HatFlaeche());
    EXPECT_EQ(dat.WarumOhneFlaeche(), Dat::OhneFlaeche::zuSchmal);
    EXPECT_NEAR(dat.Stellenabstand(), 28.01 / 199.0, 1e-12);
    dat.objekte[Dat::kollisionsort] = {{2.0, 0.0}, 0.0, 2.0, 2.0, true};
    dat.Berechnen();
    EXPECT_EQ(dat.WarumOhneFlaeche(), Dat::OhneFlaeche::vorn);
}

TEST_F(SchrankenDatTest, AreaOpenBelowHasAllItsPositionsAndNoSmallestSpeed)
{
    Place();
    dat.verzoegerungToleranz = 7.0; // a - Δa = 0 gives no lower speed
    dat.Berechnen();
    ASSERT_TRUE(dat.HatFlaeche());
    EXPECT_TRUE(dat.IstNachUntenOffen());
    EXPECT_GE(dat.weg.von, 18.0);
    EXPECT_NEAR(dat.tempo.bis, 3.6 * std::sqrt(2.0 * 14.0 * dat.weg.bis), 0.1);
    EXPECT_EQ(dat.tempo.von, 0.0);
    EXPECT_EQ(dat.exportGeschwindigkeit[0], 0.0);
    EXPECT_EQ(dat.exportGeschwindigkeit[1], 0.0);
    EXPECT_EQ(dat.exportGeschwindigkeit[2], dat.tempo.bis);
    for (dat.exportWahl = 0; dat.exportWahl < 4; ++dat.exportWahl)
        EXPECT_EQ(dat.KannExportieren(), dat.exportWahl == 2) << dat.exportWahl;
}

TEST_F(SchrankenDatTest, MeanOfTheDistancesCountsEveryPosition)
{
    Place();
    dat.Berechnen();
    // Positions from 18 to 22 m in steps of 32 m / 199, less the person's -5 m.
    double sum = 0.0;
    int count = 0;
    for (int i = 0; i < 200; ++i) {
        const double s = i * 32.0 / 199.0;
        if (s >= 18.0 && s <= 22.0) {
            sum += s + 5.0;
            ++count;
        }
    }
    EXPECT_NEAR(dat.wurfRutschWeg[1], sum / count, 1e-9);
}

TEST_F(SchrankenDatTest, CollisionPositionIsTheMiddleOfThoseThatHoldTheSpeed)
{
    Place();
    dat.Berechnen();
    for (const std::int64_t wahl : {0, 1, 2}) {
        const double v = dat.exportGeschwindigkeit[static_cast<std::size_t>(wahl)] / 3.6;
        // v between √(2·6.5·s) and √(2·7.5·s), within the area.
        const double von = std::max(v * v / 15.0, 18.0);
        const double bis = std::min(v * v / 13.0, 22.0);
        EXPECT_NEAR(dat.FlaecheWegZu(wahl), (von + bis) / 2.0, 0.17) << wahl;
    }
}

TEST_F(SchrankenDatTest, AParticipantIsOneThingOnly)
{
    data.KfzDat(1) = TypicalCar("Person", RGB(0, 0, 0));
    data.MaskenWerte(487)["fahrzeug"] = {0.0};
    data.MaskenWerte(487)["person"] = {1.0};
    data.MaskenWerte(487)["fahrrad"] = {1.0};
    dat.Laden();
    EXPECT_EQ(dat.personNr, 1);
    EXPECT_EQ(dat.fahrradNr, -2);
    data.MaskenWerte(487)["person"] = {0.0};
    dat.Laden();
    EXPECT_EQ(dat.personNr, -2);
}

TEST_F(SchrankenDatTest, BodyConstantBelowHalfBecomesOneAndStaysSo)
{
    Place();
    dat.theorien[Dat::abwicklung] = true;
    dat.abwicklungWeg = 200.0;
    dat.karosserie = 0.49;
    dat.karosserieToleranz = 1.0;
    dat.Berechnen();
    EXPECT_EQ(dat.karosserie, 1.0);
    EXPECT_NEAR(dat.kurven[Dat::kurveAbwicklung][0].y, (200.0 - 126.0) / 2.0, 1e-12);
    EXPECT_EQ(dat.kurven[Dat::kurveAbwicklung][kOben].y, 0.0) << "k does not exceed its tolerance";
    EXPECT_FALSE(dat.HatFlaeche());
}

TEST_F(SchrankenDatTest, DegenerateInputsGiveEmptyAreas)
{
    Place();
    dat.verzoegerungToleranz = 7.0; // a = Δa: the lower curve divides by zero
    dat.Berechnen();
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        ASSERT_EQ(dat.kurven[Dat::kurveBremsung][i].y, 0.0);

    Place();
    dat.groessterWeg = 0.0;
    dat.objekte[Dat::kollisionsort] = {{-12.2 - 20.0, 0.0}, 0.0, 0.0, 0.0, true};
    dat.kollision = {};
    dat.objekte[Dat::person].gesetzt = false; // keeps the range at 0
    dat.Berechnen();
    for (const CDPoint& p : dat.kurven[Dat::kurveBremsung])
        ASSERT_EQ(p.x, 0.0);
    EXPECT_FALSE(dat.HatFlaeche());

    dat.fahrzeugNr = -2; // the vehicle is gone: old projections stay, nothing is read
    dat.Berechnen();
    EXPECT_EQ(dat.Ueberhang(), 0.0);
}

TEST_F(SchrankenDatTest, AreaIsTheIntersectionOfTheBands)
{
    std::mt19937 random(11);
    const auto speed = [&] { return static_cast<double>(random() % 12) * 10.0; };
    for (int run = 0; run < 5000; ++run) {
        Dat::Kurvenfeld band{};
        Dat::Kurvenfeld barrier{};
        for (std::size_t i = 0; i < 3; ++i) {
            band[i].y = speed();
            band[i + kOben].y = speed();
            barrier[i].y = speed();
            barrier[i + kOben].y = speed();
        }
        const Dat::Kurvenfeld before = band;
        Dat::FlaechenRechner(band, barrier, 2);
        for (std::size_t i = 0; i < 3; ++i) {
            const double low = before[i].y;
            const double high = before[i + kOben].y;
            if (i == 2) { // beyond n
                EXPECT_EQ(band[i].y, low);
                EXPECT_EQ(band[i + kOben].y, high);
                continue;
            }
            // Speeds of the grid that both intervals hold.
            double first = -1.0;
            double last = -1.0;
            for (double v = 0.0; v <= 110.0; v += 10.0) {
                const bool both = v >= low && v <= high && v >= barrier[i].y && v <= barrier[i + kOben].y;
                if (both && first < 0.0)
                    first = v;
                if (both)
                    last = v;
            }
            const bool empty = first < 0.0 || high == 0.0 || barrier[i + kOben].y == 0.0;
            EXPECT_EQ(band[i].y, empty ? 0.0 : first);
            EXPECT_EQ(band[i + kOben].y, empty ? 0.0 : last);
        }
    }
}

TEST_F(SchrankenDatTest, AreaEndsWithTheCollisionArea)
{
    Place();
    dat.Berechnen();
    ASSERT_TRUE(dat.HatFlaeche());
    EXPECT_GE(dat.FlaecheWeg().von, 18.0);
    EXPECT_LE(dat.FlaecheWeg().bis, 22.0);
    // The band of the braking barrier alone: v = 3.6·√(2·a·s).
    EXPECT_NEAR(dat.FlaecheGeschwindigkeit().von, 3.6 * std::sqrt(2 * 6.5 * dat.FlaecheWeg().von), 0.1);
    EXPECT_NEAR(dat.FlaecheGeschwindigkeit().bis, 3.6 * std::sqrt(2 * 7.5 * dat.FlaecheWeg().bis), 0.1);
    EXPECT_NEAR(dat.exportGeschwindigkeit[1], (dat.exportGeschwindigkeit[0] + dat.exportGeschwindigkeit[2]) / 2, 1e-12);
    EXPECT_NEAR(dat.FlaecheWegZu(0), dat.FlaecheWeg().von, 0.2);
    EXPECT_NEAR(dat.FlaecheWegZu(2), dat.FlaecheWeg().bis, 0.2);

    // Unplaced splinter fields and an empty wrap do not narrow it.
    const auto before = dat.FlaecheGeschwindigkeit();
    dat.theorien[Dat::frontscheibe] = dat.theorien[Dat::scheinwerferGesamt] = dat.theorien[Dat::abwicklung] = true;
    dat.Berechnen();
    EXPECT_EQ(dat.FlaecheGeschwindigkeit().von, before.von);
    EXPECT_EQ(dat.FlaecheGeschwindigkeit().bis, before.bis);
}

TEST_F(SchrankenDatTest, ThrowAndSlideIsFoundAgainByIntegratingTheMotion)
{
    Place();
    dat.Berechnen();
    std::mt19937 random(3);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int run = 0; run < 60; ++run) {
        dat.abflugwinkel = run % 4 == 0 ? 0.0 : between(0.0, 80.0);
        dat.hoehenunterschied = run % 5 == 0 ? -0.01 : between(-3.0, 0.0);
        dat.rutschverzoegerung = run % 6 == 0 ? 0.0 : between(3.0, 9.0);
        dat.wegWahl = run % 3;
        dat.Kontrolle();
        const double target = dat.wurfRutschWeg[static_cast<std::size_t>(run % 3)];
        ASSERT_GT(target, 10.0);
        // Flight and slide in small steps.
        const double angle = dat.abflugwinkel * M_PI / 180.0;
        const double v = dat.abfluggeschwindigkeit / 3.6;
        double vx = v * std::cos(angle);
        double vy = v * std::sin(angle);
        double x = 0.0;
        double y = -dat.hoehenunterschied;
        double top = y;
        const double dt = 2e-5;
        for (vy -= 0.5 * 9.81 * dt; y >= 0.0 && (y > 0.0 || vy > 0.0); vy -= 9.81 * dt) {
            x += vx * dt;
            y += vy * dt;
            top = std::max(top, y);
        }
        EXPECT_NEAR(dat.wurfweite, x, 2e-3 * std::max(1.0, x));
        EXPECT_NEAR(dat.wurfhoehe, top + dat.hoehenunterschied, 2e-3);
        if (dat.rutschverzoegerung > 0.0)
            for (; vx > 0.0; vx -= dat.rutschverzoegerung * dt)
                x += vx * dt;
        EXPECT_NEAR(x, target, 5e-3 * target) << run;
        EXPECT_NEAR(dat.kollisionsgeschwindigkeit, dat.abfluggeschwindigkeit / 0.8, 1e-9);
    }
    dat.anstossfaktor = 0.0;
    dat.Kontrolle();
    EXPECT_EQ(dat.kollisionsgeschwindigkeit, 0.0);
    dat.abflugwinkel = 90.0;
    dat.Kontrolle();
    EXPECT_EQ(dat.abfluggeschwindigkeit, 0.0);
    dat.abflugwinkel = dat.hoehenunterschied = dat.rutschverzoegerung = 0.0; // nothing carries
    dat.Kontrolle();
    EXPECT_EQ(dat.abfluggeschwindigkeit, 0.0);
    EXPECT_EQ(dat.wurfweite, 0.0);
}

TEST_F(SchrankenDatTest, RecordIsKeptWithTheCaseAndOddNumbersAreNotTaken)
{
    Place();
    dat.theorien[Dat::dettinger] = true;
    dat.dettingerToleranz = 3.25;
    dat.vonRechts = false;
    dat.exportWahl = 1;
    dat.Merken();

    Dat other(data);
    other.Laden();
    EXPECT_EQ(other.fahrzeugNr, 0);
    EXPECT_EQ(other.dettingerToleranz, 3.25);
    EXPECT_TRUE(other.theorien[Dat::dettinger]);
    EXPECT_FALSE(other.vonRechts);
    EXPECT_EQ(other.exportWahl, 1);
    EXPECT_EQ(other.objekte[Dat::kollisionsort].position, dat.objekte[Dat::kollisionsort].position);
    EXPECT_TRUE(other.objekte[Dat::person].gesetzt);

    auto& werte = data.MaskenWerte(487);
    werte["verzoegerung"] = {std::numeric_limits<double>::quiet_NaN()};
    werte["fahrzeug"] = {99.0};
    werte["objekt.person.x"] = {1.0, 2.0};
    Dat third(data);
    third.Laden();
    EXPECT_EQ(third.verzoegerung, 0.0);
    EXPECT_EQ(third.fahrzeugNr, -2);
    EXPECT_EQ(third.objekte[Dat::person].position.x, 0.0);
}

} // namespace
