// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The turn without its dialog: against another integration of another model, against closed forms, and what it writes
// into the case.
#include "host/CRuvData.h"
#include "host/Physics.h"
#include "masks/manoeuvre/CAbDaten.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace
{

using Ausgang = CAbDaten::Ausgang;
using Frage = CAbDaten::Frage;
using Uebertragung = CAbDaten::Uebertragung;

constexpr double kGrad = kPi / 180.0;

class AbDaten : public ::testing::Test
{
  protected:
    AbDaten()
    {
        data.KfzDat(0) = TypicalCar("Pkw 1", 0);
        data.KfzDat(1) = TypicalCar("Pkw 2", 0);
        dat.Oeffne();
    }
    /// A turn by 90° from straight to 8 m within 2 s at 20 km/h.
    void Beispiel()
    {
        dat.endradius = 8.0;
        dat.lenkzeit = 2.0;
        dat.gierziel = 90.0;
        dat.anfangsgeschw = 20.0;
    }
    Ausgang Rechne(std::initializer_list<Frage> ja = {})
    {
        fragen.clear();
        return dat.Rechnen([&](Frage frage) {
            fragen.push_back(frage);
            return std::find(ja.begin(), ja.end(), frage) != ja.end();
        });
    }
    const CAbDaten::Lauf& Lauf() const { return *dat.LetzterLauf(); }
    CDPoint Ende() const { return abbiegen::Mitte(Lauf().vorgabe, Lauf().fahrt.lage); }
    const CWegZeitSpalte& Spalte(std::size_t column) const { return data.WZRechDat(0).spalten[column]; }
    Uebertragung Uebertrage() { return dat.Uebertragen(geschrieben); }

    CRuvData data;
    CAbDaten dat{data};
    std::vector<Frage> fragen;
    CAbDaten::Geschrieben geschrieben;
};

CWegZeitSpalte Phase(PhasenArt art, double speed, double time, double path)
{
    CWegZeitSpalte phase;
    phase.art = art;
    phase.vEnd = phase.vAnf = speed;
    phase.zeit = time;
    phase.weg = path;
    return phase;
}

/// Where a bicycle model stands that steers and drives as the inputs say, by Runge and Kutta's method in steps ten
/// times smaller than the mask's. x along the travel, y to the inside, from the inner rear wheel at the start.
struct Stand {
    double x = 0.0, y = 0.0; // centre between the axles
    double psi = 0.0;
    double s = 0.0;
    double quer = 0.0; // greatest lateral acceleration
};

struct Modell {
    double L, b;
    double r0, r1, ts; // radii, infinite when straight
    double v0, a, grenze;
    double lenkbeginn = 0.0, verzug = 0.0;
    bool vorwaerts = true;

    double Speed(double t) const
    {
        const double v = v0 + a * std::max(0.0, t - verzug);
        return a > 0.0 ? std::min(v, grenze) : a < 0.0 ? std::max(v, grenze) : v;
    }
    double TanWheel(double t) const
    {
        const double begin = std::atan(L / (r0 + b / 2.0)), end = std::atan(L / (r1 + b / 2.0));
        const double part = ts > 0.0 ? std::clamp((t - lenkbeginn) / ts, 0.0, 1.0) : 1.0;
        return std::tan(begin + part * (end - begin));
    }
    /// Rates of psi and of the rear axle's way.
    std::array<double, 2> Rates(double t) const
    {
        const double bend = TanWheel(t);
        const double rear = Speed(t) / std::sqrt(1.0 + bend * bend / 4.0);
        return {rear * bend / L, rear};
    }
    Stand Drive(double duration) const
    {
        const int steps = static_cast<int>(std::ceil(duration / 0.00005));
        const double h = duration / steps;
        Stand z;
        double x = 0.0, y = -b / 2.0; // rear axle
        for (int i = 0; i < steps; ++i) {
            const double t = i * h;
            const auto k1 = Rates(t), k2 = Rates(t + h / 2.0), k4 = Rates(t + h);
            const double p2 = z.psi + h / 2.0 * k1[0], p3 = z.psi + h / 2.0 * k2[0], p4 = z.psi + h * k2[0];
            x += h / 6.0 *
                 (k1[1] * std::cos(z.psi) + 2.0 * k2[1] * (std::cos(p2) + std::cos(p3)) + k4[1] * std::cos(p4));
            y += h / 6.0 *
                 (k1[1] * std::sin(z.psi) + 2.0 * k2[1] * (std::sin(p2) + std::sin(p3)) + k4[1] * std::sin(p4));
            z.psi += h / 6.0 * (k1[0] + 4.0 * k2[0] + k4[0]);
            z.s += h / 6.0 * (Speed(t) + 4.0 * Speed(t + h / 2.0) + Speed(t + h));
            z.quer = std::max(z.quer, Speed(t + h) * k4[0]);
        }
        const double half = vorwaerts ? L / 2.0 : -L / 2.0;
        z.x = x + half * std::cos(z.psi);
        z.y = y + half * std::sin(z.psi);
        return z;
    }
};

Modell ModellVon(const abbiegen::Vorgabe& g)
{
    const auto radius = [](double r) { return r >= 1e19 ? std::numeric_limits<double>::infinity() : r; };
    return {g.fahrzeug.radstand,
            g.fahrzeug.spurweite,
            radius(g.anfangsradius),
            radius(g.endradius),
            g.stellzeit,
            g.anfangsgeschw,
            g.beschleunigung,
            g.grenze,
            g.lenkbeginn,
            g.verzug,
            g.vorwaerts};
}

TEST_F(AbDaten, AgreesWithABicycleModelUnderRungeKutta)
{
    std::mt19937_64 random(11);
    const auto between = [&](double low, double high) { return std::uniform_real_distribution<>(low, high)(random); };
    const auto chance = [&](double part) { return between(0.0, 1.0) < part; };
    int driven = 0, reverse = 0, limited = 0, later = 0;
    for (int i = 0; i < 40; ++i) {
        dat.Oeffne();
        dat.anfangsradius = chance(0.4) ? 0.0 : between(3.0, 60.0);
        dat.endradius = dat.anfangsradius > 0.0 && chance(0.3) ? 0.0 : between(3.0, 60.0);
        dat.lenkzeit = dat.endradius > 0.0 && chance(0.2) ? 0.0 : between(0.2, 5.0);
        dat.seite = chance(0.5);
        dat.rueckwaerts = chance(0.4);
        dat.anfangsgeschw = chance(0.1) ? 0.0 : between(5.0, 50.0);
        dat.beschleunigung = chance(0.2) && dat.anfangsgeschw > 0.0 ? 0.0 : between(-4.0, 4.0);
        if (dat.beschleunigung > 0.0 && chance(0.5))
            dat.grenzgeschw = dat.anfangsgeschw + between(1.0, 15.0);
        else if (dat.beschleunigung < 0.0 && chance(0.5))
            dat.grenzgeschw = dat.anfangsgeschw * between(0.0, 0.9);
        if (chance(0.7))
            dat.gierziel = between(5.0, 150.0) * (chance(0.1) ? -1.0 : 1.0);
        else
            dat.weg = between(3.0, 40.0);
        const bool ja = chance(0.5);
        if ((ja ? Rechne({Frage::anhaltenAmZiel, Frage::lenkenBisZumZiel}) : Rechne()) != Ausgang::berechnet)
            continue;
        ++driven;
        reverse += !Lauf().vorgabe.vorwaerts;
        limited += Lauf().fahrt.grenzeErreicht && Lauf().vorgabe.grenze > 0.0;
        later += Lauf().vorgabe.verzug > 0.0 || Lauf().vorgabe.lenkbeginn > 0.0;
        SCOPED_TRACE(i);
        const Stand z = ModellVon(Lauf().vorgabe).Drive(dat.zeit);
        EXPECT_NEAR(Lauf().fahrt.lage.psi, z.psi, 5e-4);
        EXPECT_NEAR(Ende().x, z.x, 0.02);
        EXPECT_NEAR(Ende().y, z.y, 0.02);
        EXPECT_NEAR(std::abs(dat.wegZwischen + dat.wegBisEnde), z.s, 1e-3);
        EXPECT_NEAR(dat.querbeschleunigung, z.quer, 0.01 * std::max(1.0, z.quer));
        const abbiegen::Fahrt suchend = abbiegen::FahreSuchend(Lauf().vorgabe);
        const abbiegen::Fahrt ganz = abbiegen::Fahre(Lauf().vorgabe);
        EXPECT_EQ(suchend.lage.psi, ganz.lage.psi);
        EXPECT_EQ(suchend.lage.t, ganz.lage.t);
        // The way that is stored ends where the vehicle does and is as long as the path.
        const auto& way = Lauf().fahrt.punkte;
        EXPECT_NEAR(way.back().x, 100.0 * Ende().x, 0.5);
        EXPECT_NEAR(way.back().y, 100.0 * Ende().y, 0.5);
        double length = 0.0;
        for (std::size_t p = 1; p < way.size(); ++p)
            length += std::hypot(way[p].x - way[p - 1].x, way[p].y - way[p - 1].y);
        if (Lauf().vorgabe.punktteiler < 10.0) {
            EXPECT_NEAR(length, 100.0 * z.s, z.s + 1.0);
        }
        if (Lauf().fahrt.ende == abbiegen::Ende::ziel && Lauf().vorgabe.bisWeg) {
            EXPECT_NEAR(z.s, std::abs(dat.weg), 0.05);
        } else if (Lauf().fahrt.ende == abbiegen::Ende::ziel) {
            EXPECT_NEAR(dat.gierwinkel, std::abs(dat.gierziel), 0.3);
        }
    }
    EXPECT_GT(driven, 28);
    EXPECT_GT(reverse, 6);
    EXPECT_GT(limited, 3);
    EXPECT_GT(later, 3);
}

TEST_F(AbDaten, ConstantRadiusIsACircle)
{
    // TypicalCar: wheelbase 2.65, track 1.55, front 3.55 before the rear axle, length 4.5. Inner wheel on 5 m.
    dat.endradius = 5.0;
    dat.gierziel = 90.0;
    dat.anfangsgeschw = 18.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const double rc = std::hypot(5.775, 1.325);
    EXPECT_NEAR(dat.wegZwischen + dat.wegBisEnde, rc * kPi / 2.0, 0.005);
    EXPECT_NEAR(dat.zeit, rc * kPi / 2.0 / 5.0, 0.001);
    EXPECT_NEAR(dat.querbeschleunigung, 25.0 / rc, 1e-6);
    EXPECT_NEAR(dat.schwimmwinkel, std::atan(1.325 / 5.775) / kGrad, 1e-9);
    EXPECT_NEAR(dat.versatzFront, 5.0 + 3.55, 0.01);
    EXPECT_NEAR(dat.versatzHeck, 5.0 + 3.55 - 4.5, 0.01);
    // At the intermediate position the front has swung in by 0.5 m: 5(1 − cos ψ) + 3.55 sin ψ = 0.5.
    const double psi = dat.gierZwischen * kGrad;
    EXPECT_NEAR(5.0 * (1.0 - std::cos(psi)) + 3.55 * std::sin(psi), 0.5, 0.01);
    EXPECT_NEAR(dat.wegZwischen, rc * psi, 0.005);
    EXPECT_NEAR(dat.zeitZwischen, rc * psi / 5.0, 0.001);
    EXPECT_NEAR(dat.versatzHeckZwischen, 0.5 - 4.5 * std::sin(psi), 0.01);
    EXPECT_NEAR(dat.zeitZwischen + dat.zeitBisEnde, dat.zeit, 1e-12);
    // 15.5·(atan(2.65/5.775) − 0)
    dat.BerechneLenkradwinkel();
    EXPECT_NEAR(dat.lenkradwinkel, 15.5 * std::atan(2.65 / 5.775) / kGrad, 1e-9);
    dat.anfangsradius = 10.0;
    dat.endradius = 0.0;
    dat.BerechneLenkradwinkel();
    EXPECT_NEAR(dat.lenkradwinkel, -15.5 * std::atan(2.65 / 10.775) / kGrad, 1e-9);
    // √(5.7² − 3.55²) − 1.55
    EXPECT_NEAR(dat.mindestradius, 2.90961, 1e-4);
}

TEST_F(AbDaten, SideAndDirectionMirrorTheSameRun)
{
    Beispiel();
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const double beta = dat.schwimmwinkel;
    const double time = dat.zeit;
    EXPECT_GT(beta, 0.0);
    struct Case {
        std::int64_t seite, rueckwaerts;
        double speed, slip;
    };
    for (const Case& c : {Case{1, 0, 20.0, -beta}, Case{0, 1, 20.0, 180.0 - beta}, Case{1, 1, 20.0, beta - 180.0},
                          Case{0, 0, -20.0, 180.0 - beta}, Case{0, 1, -20.0, beta}}) {
        dat.seite = c.seite;
        dat.rueckwaerts = c.rueckwaerts;
        dat.anfangsgeschw = c.speed;
        ASSERT_EQ(Rechne(), Ausgang::berechnet);
        EXPECT_NEAR(dat.schwimmwinkel, c.slip, 1e-9);
        EXPECT_EQ(dat.zeit, time);
        EXPECT_EQ(dat.endgeschw, c.speed); // as entered
        EXPECT_EQ(dat.wegZwischen + dat.wegBisEnde < 0.0, c.speed < 0.0);
    }
}

TEST_F(AbDaten, RefusesInOrder)
{
    EXPECT_EQ(Rechne(), Ausgang::keinRadius);
    dat.anfangsradius = 10.0;
    EXPECT_EQ(Rechne(), Ausgang::keineBewegung);
    dat.anfangsgeschw = 20.0;
    EXPECT_EQ(Rechne(), Ausgang::keinEndradius);
    dat.endradius = 8.0;
    dat.beschleunigung = -1.0;
    dat.grenzgeschw = 21.0;
    EXPECT_EQ(Rechne(), Ausgang::grenzeZuHoch);
    dat.beschleunigung = 1.0;
    dat.grenzgeschw = 19.0;
    EXPECT_EQ(Rechne(), Ausgang::grenzeZuNiedrig);
    dat.grenzgeschw = 0.0;
    EXPECT_EQ(Rechne(), Ausgang::keinZiel);
    EXPECT_FALSE(dat.HatErgebnis());
    dat.gierziel = 0.01; // within the aim's tolerance: nothing is driven
    EXPECT_EQ(Rechne(), Ausgang::keinZiel);
    dat.gierziel = 30.0;
    EXPECT_EQ(Rechne(), Ausgang::berechnet);
    dat.anfangsradius = 0.0;
    dat.beschleunigung = 0.0;
    dat.anfangsgeschw = 0.01;
    dat.lenkzeit = 100.0;
    dat.gierziel = 500.0;
    EXPECT_EQ(Rechne(), Ausgang::zuLang);
    EXPECT_EQ(dat.zeit, 0.0); // a calculation that fails leaves no results behind
    EXPECT_EQ(Uebertrage(), Uebertragung::keinErgebnis);
}

TEST_F(AbDaten, SpeedLimitEndsTheAcceleration)
{
    dat.endradius = 10.0;
    dat.gierziel = 120.0;
    dat.beschleunigung = 2.0;
    dat.grenzgeschw = 18.0; // 5 m/s after 2.5 s and 6.25 m
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const double path = std::hypot(10.775, 1.325) * 120.0 * kGrad;
    EXPECT_NEAR(dat.zeit, 2.5 + (path - 6.25) / 5.0, 0.002);
    EXPECT_NEAR(dat.endgeschw, 18.0, 1e-9);
    dat.grenzgeschw = 0.0; // no limit
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_NEAR(dat.zeit, std::sqrt(path), 0.002);
    dat.beschleunigung = 0.0; // without an acceleration a limit means nothing
    dat.anfangsgeschw = 36.0;
    dat.grenzgeschw = 5.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_NEAR(dat.zeit, path / 10.0, 0.002);
}

TEST_F(AbDaten, AsksWhetherToBrakeLater)
{
    Beispiel();
    dat.beschleunigung = -3.0; // stands after 5.556²/6 = 5.144 m
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_EQ(fragen, std::vector{Frage::anhaltenAmZiel});
    EXPECT_NEAR(dat.wegZwischen + dat.wegBisEnde, 5.144, 0.001);
    EXPECT_NEAR(dat.zeit, 20.0 / 3.6 / 3.0, 1e-9);
    EXPECT_LT(dat.gierwinkel, 80.0);
    EXPECT_TRUE(dat.ZielVerfehlt());

    ASSERT_EQ(Rechne({Frage::anhaltenAmZiel}), Ausgang::berechnet);
    EXPECT_TRUE(fragen.empty()); // answered before
    dat.FrageErneut();
    ASSERT_EQ(Rechne({Frage::anhaltenAmZiel}), Ausgang::berechnet);
    EXPECT_EQ(fragen, std::vector{Frage::anhaltenAmZiel});
    EXPECT_NEAR(dat.gierwinkel, 90.0, 0.2);
    EXPECT_LE(dat.endgeschw, 0.5);
    EXPECT_FALSE(dat.ZielVerfehlt());

    dat.FrageErneut();
    dat.weg = 12.0;
    dat.WegGeaendert();
    ASSERT_EQ(Rechne({Frage::anhaltenAmZiel}), Ausgang::berechnet);
    EXPECT_NEAR(dat.wegZwischen + dat.wegBisEnde, 12.0, 0.01);
    EXPECT_NEAR(dat.zeit, 1.85185 + (12.0 - 5.14403) / 5.55556, 0.005);
    EXPECT_LE(dat.endgeschw, 0.5);
}

TEST_F(AbDaten, AsksWhetherToSteerLater)
{
    dat.anfangsradius = 8.0;
    dat.lenkzeit = 1.0;
    dat.gierziel = 90.0;
    dat.anfangsgeschw = 20.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_EQ(fragen, std::vector{Frage::lenkenBisZumZiel});
    EXPECT_NEAR(dat.zeit, 1.0, 0.001); // straight when the steering is done
    EXPECT_EQ(dat.erreichterRadius, 0.0);
    EXPECT_EQ(dat.schwimmwinkel, 0.0);
    const double ohne = dat.gierwinkel;
    EXPECT_LT(ohne, 60.0);

    dat.FrageErneut();
    ASSERT_EQ(Rechne({Frage::lenkenBisZumZiel}), Ausgang::berechnet);
    EXPECT_NEAR(dat.gierwinkel, 90.0, 0.2);
    EXPECT_EQ(dat.erreichterRadius, 0.0);
    // What was missing is driven on the initial radius.
    const double rc = std::hypot(8.775, 1.325);
    EXPECT_NEAR(dat.zeit, 1.0 + (90.0 - ohne) * kGrad * rc / (20.0 / 3.6), 0.02);

    // Both at once: braking to a stop at the aim, straight there.
    dat.beschleunigung = -3.0;
    dat.lenkzeit = 2.0;
    dat.FrageErneut();
    ASSERT_EQ(Rechne({Frage::anhaltenAmZiel, Frage::lenkenBisZumZiel}), Ausgang::berechnet);
    EXPECT_EQ(fragen.size(), 2U);
    EXPECT_NEAR(dat.gierwinkel, 90.0, 0.2);
}

TEST_F(AbDaten, KeepsTheIntermediatePositionWithinTheTurn)
{
    Beispiel();
    dat.zwischenversatz = 50.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_EQ(dat.zwischenversatz, std::abs(dat.versatzFront));
    EXPECT_EQ(dat.wegBisEnde, 0.0);
    EXPECT_EQ(dat.gierZwischen, dat.gierwinkel);
    // More than half a circle: the front comes back, the first passage counts.
    dat.gierziel = 350.0;
    dat.zwischenversatz = 1.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_LT(dat.gierZwischen, 40.0);
    EXPECT_LT(dat.versatzFront, 5.0);
}

TEST_F(AbDaten, SpacesTheStoredPoints)
{
    Beispiel();
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const auto& way = Lauf().fahrt.punkte;
    EXPECT_GT(way.size(), 50U);
    EXPECT_LT(way.size(), 500U);
    EXPECT_NEAR(way.front().x, 132.5, 1e-9); // half the wheelbase ahead of the inner rear wheel
    EXPECT_NEAR(way.front().y, -77.5, 1e-9); // half the track to its outside

    // The course for the plan is thinned out evenly.
    const auto& course = Lauf().fahrt.verlauf;
    ASSERT_GT(course.size(), 200U);
    for (std::size_t i = 2; i + 1 < course.size(); ++i)
        EXPECT_NEAR(course[i].t - course[i - 1].t, course[1].t, 1e-9);
    // At 19 km/h a step is 2.639 mm. A point is stored where 2·k·path reaches 1 m, k = 30, 15, 8, 4 while the steering
    // lasts and 1 after it: every 7, 13, 24, 48 and 190 steps.
    const auto gap = [&](std::size_t i) {
        return std::hypot(way[i].x - way[i - 1].x, way[i].y - way[i - 1].y) / 100.0;
    };
    dat.anfangsgeschw = 19.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const std::array<std::pair<double, int>, 5> zones{{{0.2, 7}, {0.4, 13}, {1.0, 24}, {2.0, 48}, {9.0, 190}}};
    std::array<int, 5> seen{};
    double path = 0.0;
    for (std::size_t i = 1; i + 1 < way.size(); ++i) {
        path += gap(i);
        const double t = path / (19.0 / 3.6);
        const auto zone =
            std::find_if(zones.begin(), zones.end(), [&](const auto& z) { return t < z.first; }) - zones.begin();
        const auto index = static_cast<std::size_t>(zone);
        if (std::abs(t - zones[index].first) < 0.002 || (index > 0 && t - zones[index - 1].first < 0.002))
            continue; // at the change itself
        ++seen[index];
        EXPECT_NEAR(gap(i), zones[index].second * 19.0 / 3.6 * 0.0005, 2e-4) << t;
    }
    for (const int count : seen)
        EXPECT_GT(count, 4);
    // Above 10 m/s k is 2 after the steering: at 73 km/h every 25 steps.
    dat.anfangsgeschw = 73.0;
    dat.lenkzeit = 0.0;
    dat.endradius = 100.0;
    dat.gierziel = 30.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    for (std::size_t i = 1; i + 1 < way.size(); ++i)
        EXPECT_NEAR(gap(i), 25 * 73.0 / 3.6 * 0.0005, 2e-4);
    dat.lenkzeit = 2.0; // k = 30·10/20.28 = 14.8 at its beginning: every 4 steps
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_NEAR(gap(2), 4 * 73.0 / 3.6 * 0.0005, 2e-4);

    // 500 points and more are spaced anew, so that hardly any are left.
    dat.gierziel = 0.0;
    dat.weg = 400.0;
    dat.endradius = 100.0;
    dat.lenkzeit = 100.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_EQ(Lauf().vorgabe.punktteiler > 1e5, true);
    EXPECT_LT(Lauf().fahrt.punkte.size(), 10U);
}

TEST_F(AbDaten, WritesOnePhaseAndReadsItAgain)
{
    Beispiel();
    dat.seite = 1;
    dat.beschleunigung = 1.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    const double time = dat.zeit;
    const double end = dat.endgeschw;
    ASSERT_EQ(Uebertrage(), Uebertragung::erfolgt);
    EXPECT_EQ(geschrieben.spalte, 3U);
    EXPECT_EQ(geschrieben.anzahl, 1U);
    EXPECT_EQ(Spalte(3).art, PhasenArt::turning);
    EXPECT_EQ(Spalte(3).seite, 1);
    EXPECT_NEAR(Spalte(3).vAnf, 20.0, 1e-9);
    EXPECT_NEAR(Spalte(3).vEnd, end, 1e-9);
    EXPECT_EQ(Spalte(3).verz, -1.0);
    EXPECT_EQ(Spalte(3).sumZeit, time);
    EXPECT_GT(Spalte(3).bahn.front().y, 0.0); // a right turn is mirrored
    EXPECT_LT(Spalte(3).bahn.back().y, -500.0);
    EXPECT_NEAR(Spalte(3).endGier, -90.0 * kGrad, 0.01);
    EXPECT_FALSE(Spalte(4).IsUsed());

    CAbDaten again(data);
    again.Oeffne();
    EXPECT_EQ(again.phase, 3);
    EXPECT_EQ(again.seite, 1);
    EXPECT_EQ(again.endradius, 8.0);
    EXPECT_EQ(again.lenkzeit, 2.0);
    EXPECT_NEAR(again.anfangsgeschw, 20.0, 1e-9);
    EXPECT_EQ(again.beschleunigung, 1.0);
    EXPECT_NEAR(again.grenzgeschw, end, 1e-9);
    ASSERT_EQ(again.Rechnen({}), Ausgang::berechnet);
    EXPECT_NEAR(again.zeit, time, 0.001);
    CAbDaten::Geschrieben second;
    EXPECT_EQ(again.Uebertragen(second), Uebertragung::erfolgt);
    EXPECT_EQ(second.anzahl, 1U);
    EXPECT_FALSE(Spalte(4).IsUsed());
}

TEST_F(AbDaten, WritesTwoPhasesWhenTheLimitWasReachedAndMovesLaterOnes)
{
    CWegZeitRechDat way = data.WZRechDat(0);
    way.spalten[3] = Phase(PhasenArt::constantSpeed, 18.0, 1.0, 5.0);
    way.spalten[4] = Phase(PhasenArt::reaction, 0.0, 1.0, 0.0);
    way.Berechnung();
    way.Uebertragen(data, 0, nullptr, 0);
    dat.Oeffne();
    EXPECT_EQ(dat.phase, 5);
    dat.phase = 4;
    dat.endradius = 10.0;
    dat.gierziel = 120.0;
    dat.beschleunigung = 2.0;
    dat.grenzgeschw = 18.0;
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    ASSERT_EQ(Uebertrage(), Uebertragung::erfolgt);
    EXPECT_EQ(geschrieben.anzahl, 2U);
    EXPECT_EQ(Spalte(4).art, PhasenArt::turning);
    EXPECT_NEAR(Spalte(4).vAnf, 18.0, 1e-9);
    EXPECT_FALSE(Spalte(4).bahn.empty());
    EXPECT_EQ(Spalte(5).art, PhasenArt::turning);
    EXPECT_NEAR(Spalte(5).zeit, 2.5, 1e-9);
    EXPECT_NEAR(Spalte(5).weg, 6.25, 1e-9);
    EXPECT_EQ(Spalte(5).verz, -2.0);
    EXPECT_TRUE(Spalte(5).bahn.empty());
    EXPECT_NEAR(Spalte(4).zeit + Spalte(5).zeit, dat.zeit, 1e-9);
    EXPECT_NEAR(Spalte(4).weg + Spalte(5).weg, dat.wegZwischen + dat.wegBisEnde, 1e-9);
    EXPECT_EQ(Spalte(6).art, PhasenArt::reaction); // moved, not lost

    // Read again as one turn; without the limit it needs one column, and the other goes.
    CAbDaten again(data);
    again.Oeffne();
    EXPECT_EQ(again.phase, 4);
    EXPECT_EQ(again.anfangsgeschw, 0.0);
    EXPECT_EQ(again.beschleunigung, 2.0);
    EXPECT_NEAR(again.weg, dat.wegZwischen + dat.wegBisEnde, 1e-9);
    ASSERT_EQ(again.Rechnen({}), Ausgang::berechnet);
    EXPECT_NEAR(again.zeit, dat.zeit, 0.002);
    again.grenzgeschw = 0.0;
    ASSERT_EQ(again.Rechnen({}), Ausgang::berechnet);
    EXPECT_EQ(again.Uebertragen(geschrieben), Uebertragung::angepasst); // the phase after it is slower
    EXPECT_EQ(geschrieben.anzahl, 1U);
    EXPECT_EQ(Spalte(5).art, PhasenArt::reaction);
}

TEST_F(AbDaten, WritesReverseTurnsWithNegativeSpeeds)
{
    Beispiel();
    dat.rueckwaerts = 1;
    dat.beschleunigung = -3.0;
    ASSERT_EQ(Rechne({Frage::anhaltenAmZiel}), Ausgang::berechnet);
    ASSERT_EQ(Uebertrage(), Uebertragung::erfolgt);
    EXPECT_EQ(geschrieben.anzahl, 2U); // constant, then braking
    EXPECT_EQ(Spalte(3).vEnd, 0.0);
    EXPECT_NEAR(Spalte(3).vAnf, -20.0, 1e-9);
    EXPECT_NEAR(Spalte(4).vAnf, -20.0, 1e-9);
    EXPECT_LT(Spalte(3).weg, 0.0);
    EXPECT_EQ(Spalte(4).richtung, -1.0);
    CAbDaten again(data);
    again.Oeffne();
    EXPECT_EQ(again.rueckwaerts, 1);
    EXPECT_NEAR(again.anfangsgeschw, 20.0, 1e-9);
    EXPECT_EQ(again.beschleunigung, -3.0);
    EXPECT_EQ(again.grenzgeschw, 0.0);
    EXPECT_NEAR(again.weg, std::abs(dat.wegZwischen + dat.wegBisEnde), 1e-9);
    // The side is kept along the travel: the wheels are steered the other way.
    EXPECT_EQ(again.lenkseite, 1);
    const double y = Spalte(3).bahn.back().y;
    again.lenkseite = 0;
    again.SeiteGewaehlt();
    EXPECT_EQ(Spalte(3).seite, 1);
    EXPECT_EQ(Spalte(4).seite, 1);
    EXPECT_EQ(Spalte(3).bahn.back().y, -y);
}

TEST_F(AbDaten, FullCaseTakesNothingMore)
{
    CWegZeitRechDat way = data.WZRechDat(0);
    for (std::size_t c = CWegZeitDat::kErsteSpalte; c < CWegZeitDat::kSpalten; ++c)
        way.spalten[c] = Phase(PhasenArt::constantSpeed, 20.0, 1.0, 20.0 / 3.6);
    way.Uebertragen(data, 0, nullptr, 0);
    dat.Oeffne();
    EXPECT_EQ(dat.phase, 0);
    for (const std::int64_t phase : {0, 3, 47, 48, -1}) {
        dat.phase = phase;
        Beispiel();
        ASSERT_EQ(Rechne(), Ausgang::berechnet);
        EXPECT_EQ(Uebertrage(), Uebertragung::keinPlatz);
        EXPECT_EQ(static_cast<const CWegZeitDat&>(data.WZRechDat(0)), static_cast<const CWegZeitDat&>(way));
    }
    dat.fahrzeug = 5; // none of the case
    dat.FahrzeugGewechselt();
    EXPECT_TRUE(dat.FehlenMasse());
    Beispiel();
    ASSERT_EQ(Rechne(), Ausgang::berechnet);
    EXPECT_EQ(Uebertrage(), Uebertragung::keinFahrzeug);
}

TEST_F(AbDaten, NonsenseInTheCaseDoesNoHarm)
{
    const double wild[] = {0.0,         -1.0,   1e-300, 1e-12, 0.004, 3.0,
                           299.0,       -299.0, 1e9,    -1e9,  1e20,  std::numeric_limits<double>::infinity(),
                           std::nan("")};
    std::mt19937_64 random(7);
    const auto pick = [&] { return wild[random() % std::size(wild)]; };
    for (int i = 0; i < 120; ++i) {
        CWegZeitRechDat& way = data.WZRechDat(0);
        way = {};
        for (std::size_t c = 3; c < 5; ++c) {
            CWegZeitSpalte& phase = way.spalten[c];
            phase.art = PhasenArt::turning;
            for (double* quantity : {&phase.vEnd, &phase.vAnf, &phase.verz, &phase.zeit, &phase.weg, &phase.radiusAnf,
                                     &phase.radiusEnd, &phase.lenkZeit, &phase.richtung})
                *quantity = pick();
            phase.seite = static_cast<int>(random() % 3);
        }
        CKfzDaten& car = data.KfzDat(0);
        car = TypicalCar("Pkw", 0);
        double* const lengths[] = {
            &car.length,        &car.wheelbase,         &car.track, &car.frontOverhang, &car.steeringRatio,
            &car.turningCircle, &car.turningCircleExtra};
        *lengths[random() % std::size(lengths)] = pick();
        dat.Oeffne();
        if (random() % 2 == 0) {
            dat.endradius = 6.0;
            dat.gierziel = 45.0;
            dat.weg = 0.0;
        }
        const Ausgang ausgang = Rechne({Frage::anhaltenAmZiel, Frage::lenkenBisZumZiel});
        for (const RecordField& field : dat.Felder()) {
            if (const auto* value = std::get_if<double*>(&field.value)) {
                EXPECT_TRUE(std::isfinite(**value)) << i << ' ' << field.name;
            }
        }
        EXPECT_EQ(ausgang == Ausgang::berechnet, dat.HatErgebnis());
        EXPECT_GE(dat.zeitBisEnde, 0.0);
        const Uebertragung written = Uebertrage();
        if (written != Uebertragung::erfolgt && written != Uebertragung::angepasst)
            continue;
        for (std::size_t c = geschrieben.spalte; c < geschrieben.spalte + geschrieben.anzahl; ++c) {
            EXPECT_GT(Spalte(c).zeit, 0.0) << i;
            EXPECT_TRUE(std::isfinite(Spalte(c).weg) && std::isfinite(Spalte(c).vAnf) && std::isfinite(Spalte(c).vEnd));
        }
    }
}

} // namespace
