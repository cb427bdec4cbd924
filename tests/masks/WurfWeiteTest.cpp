// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CWurfWeiteDat.h"

#include "host/CDC.h"
#include "host/CRuvData.h"
#include "masks/collision/WurfBild.h"
#include "res/collision.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace
{

using Befund = CWurfWeiteDat::Befund;

constexpr double kPiHere = 3.14159265358979324;
constexpr double kG = 9.81;

/// A throw in SI units.
struct Throw {
    double v, angle, height; // m/s, rad, m
    double k, wind;          // 1/m, m/s
};

struct Flown {
    double vx, range, rangeTime, farthest, farthestTime, top, topTime, loss;
};

/// The same motion integrated by Runge and Kutta's method of fourth order, events by linear interpolation.
Flown Integrate(const Throw& t)
{
    using State = std::array<double, 5>; // x, z, vx, vz, ∫k·vz²dt while falling
    const auto slope = [&](const State& s) {
        const double ux = s[2] + t.wind;
        return State{s[2], s[3], -t.k * ux * std::abs(ux), -t.k * s[3] * std::abs(s[3]) - kG,
                     s[3] < 0.0 ? t.k * s[3] * s[3] : 0.0};
    };
    const auto shifted = [](const State& s, const State& d, double h) {
        State r{};
        for (std::size_t i = 0; i < r.size(); ++i)
            r[i] = s[i] + h * d[i];
        return r;
    };
    constexpr double h = 5e-4;
    State s{0.0, 0.0, t.v * std::cos(t.angle), t.v * std::sin(t.angle), 0.0};
    Flown f{s[2], 0, 0, 0, 0, 0, 0, 0};
    const double end = std::min(t.height, 0.0);
    for (double time = 0.0; s[3] > 0.0 || s[1] > end; time += h) {
        const State k1 = slope(s), k2 = slope(shifted(s, k1, h / 2)), k3 = slope(shifted(s, k2, h / 2)),
                    k4 = slope(shifted(s, k3, h));
        State next{};
        for (std::size_t i = 0; i < s.size(); ++i)
            next[i] = s[i] + h / 6.0 * (k1[i] + 2.0 * k2[i] + 2.0 * k3[i] + k4[i]);
        const auto at = [&](double share, std::size_t i) { return s[i] + share * (next[i] - s[i]); };
        if (s[3] > 0.0 && next[3] <= 0.0) {
            const double share = s[3] / (s[3] - next[3]);
            f.top = at(share, 1);
            f.topTime = time + share * h;
        }
        const double down = (s[1] - t.height) / (s[1] - next[1]);
        if (s[1] > t.height && next[1] <= t.height) {
            f.range = at(down, 0);
            f.rangeTime = time + down * h;
        }
        if (next[1] >= 0.0 && next[0] > f.farthest) {
            f.farthest = next[0];
            f.farthestTime = time + h;
        }
        if (next[1] <= end && next[3] <= 0.0) {
            const double share = (s[1] - end) / (s[1] - next[1]);
            if (end == 0.0 && at(share, 0) > f.farthest) {
                f.farthest = at(share, 0);
                f.farthestTime = time + share * h;
            }
            f.vx = at(share, 2);
            f.loss = at(share, 4);
            return f;
        }
        s = next;
    }
    return f;
}

class WurfWeiteDat : public ::testing::Test
{
  protected:
    void SpeedKmh(double kmh)
    {
        dat.anfangsgeschwindigkeit = kmh;
        dat.KmhGeaendert();
    }
    void Target(double s)
    {
        dat.wurfRutschweite = s;
        dat.ZielGeaendert();
    }
    /// The fields are in km/h, cm², g and degrees; the throw in SI units.
    Throw InSi() const
    {
        const double kg = dat.masse / 1000.0;
        const double area = dat.querschnitt / 10000.0;
        return {dat.anfangsgeschwindigkeit / 3.6, dat.flugwinkel * kPiHere / 180.0, dat.aufprallhoehe,
                kg > 0.0 ? 0.5 * dat.luftwiderstand * dat.luftdichte * area / kg : 0.0, dat.gegenwind / 3.6};
    }

    CRuvData data;
    CWurfWeiteDat dat{data};
};

TEST_F(WurfWeiteDat, FliesAsAnIndependentIntegrationWithDragAndWind)
{
    struct Case {
        double kmh, angle, height, grams, cw, area, wind;
    };
    for (const Case& c :
         {Case{50, 45, 0, 0, 0.5, 100, 0}, Case{50, 45, 0, 250, 0.5, 100, 0}, Case{120, 30, -1.5, 20, 1.1, 30, 0},
          Case{80, 60, 3, 500, 0.8, 400, 25}, Case{80, 60, 0, 500, 0.8, 400, -25}, Case{200, 10, -40, 5, 1.2, 20, 40},
          Case{30, -20, -2, 50, 1.0, 60, 0}, Case{60, 0, -1, 0, 0.5, 0, 0}, Case{20, 80, 0, 10, 1.2, 100, 60}}) {
        dat.flugwinkel = c.angle;
        dat.aufprallhoehe = c.height;
        dat.masse = c.grams;
        dat.luftwiderstand = c.cw;
        dat.querschnitt = c.area;
        dat.gegenwind = c.wind;
        dat.rutschverzoegerung = 6.0;
        SpeedKmh(c.kmh);
        ASSERT_EQ(dat.Rechnen(), Befund::keiner);
        const Throw t = InSi();
        const Flown f = Integrate(t);
        SCOPED_TRACE(std::to_string(c.kmh) + " km/h, " + std::to_string(c.angle) + "°, k = " + std::to_string(t.k));
        // One step is 0.1 ms: the first order method is off by some millimetres.
        EXPECT_NEAR(dat.wurfweite, f.range, 0.02);
        EXPECT_NEAR(dat.wurfweiteZeit, f.rangeTime, 1e-3);
        EXPECT_NEAR(dat.maxWurfweite, f.farthest, 0.02);
        EXPECT_NEAR(dat.wurfhoehe, f.top, 0.005);
        EXPECT_NEAR(dat.wurfhoeheZeit, f.topTime, 1e-3);
        EXPECT_NEAR(dat.luftverlust, f.loss, 0.01);
        EXPECT_NEAR(dat.aufprallX, f.vx, 0.01);
        const double vz = std::sqrt(2.0 * kG * (f.top - c.height)) - f.loss;
        EXPECT_NEAR(dat.aufprallZ, vz, 0.02);
        EXPECT_NEAR(dat.aufprallwinkel, std::atan2(vz, f.vx) * 180.0 / kPiHere, 0.1);
        EXPECT_NEAR(dat.wurfRutschweite, f.range + f.vx * f.vx / 12.0, 0.03);
        EXPECT_NEAR(dat.anfangX, t.v * std::cos(t.angle), 1e-12);
        EXPECT_NEAR(dat.anfangZ, t.v * std::sin(t.angle), 1e-12);
        double length = 0.0;
        double longest = 0.0;
        for (std::size_t i = 1; i < dat.bahn.size(); ++i) {
            const CDPoint way = dat.bahn[i] - dat.bahn[i - 1];
            length += std::hypot(way.x, way.y);
            longest = std::max(longest, std::hypot(way.x, way.y));
        }
        EXPECT_GT(length, 2.0 * f.top - c.height);
        EXPECT_LT(longest, 0.05 * length);
        EXPECT_LE(dat.bahn.size(), 402U);
    }
}

TEST_F(WurfWeiteDat, WithoutMassItIsTheParabola)
{
    dat.querschnitt = 500.0; // does not matter without mass
    dat.rutschverzoegerung = 0.0;
    for (const double kmh : {10.0, 36.0, 144.0})
        for (const double angle : {0.0, 15.0, 45.0, 75.0, 90.0})
            for (const double height : {-10.0, 0.0, 0.2}) {
                dat.flugwinkel = angle;
                dat.aufprallhoehe = height;
                SpeedKmh(kmh);
                const double v = kmh / 3.6;
                const double up = v * std::sin(angle * kPiHere / 180.0);
                const double root = up * up - 2.0 * kG * height;
                if (root < 0.0)
                    continue;
                ASSERT_EQ(dat.Rechnen(), Befund::keiner);
                const double time = (up + std::sqrt(root)) / kG;
                const double range = v * std::cos(angle * kPiHere / 180.0) * time;
                const double step = 3e-4 * v; // three steps of time
                EXPECT_NEAR(dat.wurfweite, range, 0.001 + step);
                EXPECT_NEAR(dat.wurfweiteZeit, time, 3e-4);
                EXPECT_NEAR(dat.wurfhoehe, up * up / (2.0 * kG), 0.001 + 1e-4 * up);
                EXPECT_NEAR(dat.aufprallX, v * std::cos(angle * kPiHere / 180.0), 1e-9);
                EXPECT_NEAR(dat.aufprallZ, std::sqrt(root), 0.002 + (root < 0.1 ? 0.1 : 0.0));
                EXPECT_EQ(dat.wurfRutschweite, dat.wurfweite);
                EXPECT_EQ(dat.luftverlust, 0.0);
            }
}

TEST_F(WurfWeiteDat, ImpactHeightOutOfReachIsLowered)
{
    dat.flugwinkel = 45.0;
    dat.aufprallhoehe = 50.0;
    dat.masse = 100.0;
    dat.querschnitt = 50.0;
    SpeedKmh(50.0);
    EXPECT_EQ(dat.Rechnen(), Befund::hoeheNichtErreicht);
    EXPECT_EQ(dat.aufprallhoehe, dat.wurfhoehe);
    EXPECT_GT(dat.luftverlust, 0.0);
    EXPECT_EQ(dat.aufprallZ, -dat.luftverlust);
    EXPECT_EQ(dat.wurfweite, 0.0);
    // Now it is in reach: the top of the flight.
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    EXPECT_EQ(dat.wurfweiteZeit, dat.wurfhoeheZeit);
}

TEST_F(WurfWeiteDat, ForwardTwiceIsTheSame)
{
    std::mt19937_64 random(4711);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    for (int i = 0; i < 50; ++i) {
        dat.Loeschen();
        dat.flugwinkel = between(-30.0, 89.0);
        dat.aufprallhoehe = between(-5.0, 0.0);
        dat.querschnitt = between(1.0, 500.0);
        dat.QuerschnittGeaendert();
        dat.gegenwind = between(-50.0, 50.0);
        dat.rutschverzoegerung = between(0.0, 8.0);
        SpeedKmh(between(0.0, 150.0));
        std::vector<double> first;
        for (const bool again : {false, true}) {
            dat.Rechnen();
            std::size_t n = 0;
            for (const RecordField& field : dat.Felder())
                if (double* const* value = std::get_if<double*>(&field.value)) {
                    if (!again)
                        first.push_back(**value);
                    else
                        EXPECT_EQ(**value, first[n++]) << field.name;
                }
        }
        EXPECT_GT(dat.bahn.size(), 2U);
    }
}

TEST_F(WurfWeiteDat, FlightsSideBySideAreTheSingleOnes)
{
    std::mt19937_64 random(471);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    for (int i = 0; i < 150; ++i) {
        const flug::Bedingung b{between(-90.0, 90.0) * kPiHere / 180.0,
                                i % 3 == 0 ? 0.0 : std::pow(10.0, between(-4, 0)), between(-30.0, 30.0),
                                i % 4 == 0 ? 0.0 : between(-10.0, 4.0)};
        flug::Geschwindigkeiten v0{};
        for (double& v : v0)
            v = i == 0 ? 0.0 : between(0.0, 40.0);
        double time = 0.0;
        const auto landed = flug::Lande(b, v0, time);
        for (std::size_t n = 0; n < v0.size(); ++n) {
            const flug::Flug single = flug::Fliege(b, v0[n]);
            EXPECT_EQ(landed[n].vx, single.vx);
            EXPECT_EQ(landed[n].weite, single.weite);
            EXPECT_EQ(landed[n].gelandet, single.gelandet);
            EXPECT_EQ(landed[n].erreicht, single.weite != 0.0);
        }
    }
}

TEST_F(WurfWeiteDat, TheInverseFindsTheSpeedOfTheThrow)
{
    std::mt19937_64 random(47100);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    int checked = 0;
    int fine = 0;
    for (int i = 0; i < 2500; ++i) {
        dat.Loeschen();
        dat.flugwinkel = between(0.0, 60.0);
        dat.aufprallhoehe = i % 3 == 0 ? 0.0 : between(-2.0, 0.5);
        dat.gegenwind = between(-10.0, 10.0);
        dat.rutschverzoegerung = i % 2 == 0 ? 0.0 : between(2.0, 9.0);
        if (i % 4 != 0) {
            dat.querschnitt = between(20.0, 200.0);
            dat.QuerschnittGeaendert();
        }
        const double kmh = between(1.0, 60.0);
        SpeedKmh(kmh);
        const double height = dat.aufprallhoehe;
        if (dat.Rechnen() != Befund::keiner || dat.wurfRutschweite < 0.01)
            continue;
        const double target = dat.wurfRutschweite;
        Target(target);
        dat.Rechnen();
        ++checked;
        // Where the distance hardly depends on the speed, a millimetre is near enough.
        const bool flat = std::abs(dat.zielabweichung) <= 0.001;
        const bool near = std::abs(dat.anfangsgeschwindigkeit - kmh) <= 0.01 + 1e-9;
        ASSERT_TRUE(near || flat) << i << ": " << dat.anfangsgeschwindigkeit << " for " << kmh;
        fine += near;
        EXPECT_EQ(dat.aufprallhoehe, height);
        EXPECT_NEAR(dat.wurfRutschweite - dat.zielabweichung, target, 0.002);
        // What is shown belongs to the speed that is shown.
        const CWurfWeiteDat& found = dat;
        const double range = found.wurfweite, x = found.aufprallX;
        SpeedKmh(found.anfangsgeschwindigkeit);
        dat.Rechnen();
        EXPECT_EQ(dat.wurfweite, range);
        EXPECT_EQ(dat.aufprallX, x);
    }
    EXPECT_GT(checked, 2000);
    EXPECT_GT(fine, checked - checked / 20);
}

TEST_F(WurfWeiteDat, TheTargetStaysTheEnteredOne)
{
    dat.flugwinkel = 45.0;
    Target(123.4);
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    const double kmh = dat.anfangsgeschwindigkeit;
    EXPECT_NEAR(kmh, std::sqrt(123.4 * kG) * 3.6, 0.01);
    for (int i = 0; i < 3; ++i)
        dat.Rechnen();
    EXPECT_EQ(dat.anfangsgeschwindigkeit, kmh);
    // Next to nothing needs no flight.
    Target(0.001);
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    EXPECT_EQ(dat.anfangsgeschwindigkeit, 0.0);
    EXPECT_EQ(dat.wurfRutschweite, 0.001);
    EXPECT_EQ(dat.wurfhoehe, 0.0);
}

TEST_F(WurfWeiteDat, AThrowPastTheTargetIsNamed)
{
    // The flight reaches 5 m only when it comes at least 5 m far: 2 m at that height cannot be.
    dat.flugwinkel = 45.0;
    dat.aufprallhoehe = 5.0;
    Target(2.0);
    EXPECT_EQ(dat.Rechnen(), Befund::zielVerfehlt);
    EXPECT_EQ(dat.aufprallhoehe, 5.0);
    EXPECT_GT(std::abs(dat.zielabweichung), 1.9);
    EXPECT_EQ(dat.wurfRutschweite, 2.0 + dat.zielabweichung);
    // Where it can be, the height is reached on the way down: v from x = 20 m, z = 5 m.
    Target(20.0);
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    EXPECT_NEAR(dat.anfangsgeschwindigkeitMs, std::sqrt(kG * 400.0 / (20.0 - 5.0)), 0.01);
}

TEST_F(WurfWeiteDat, UnreachableTargetsEndAndLeaveTheTarget)
{
    struct Case {
        double angle, height, grams, area, wind, target;
        Befund finding;
    };
    for (const Case& c : {Case{-45, 0, 0, 0, 0, 10, Befund::unerreichbar},        // never flies
                          Case{90, 0, 0, 0, 0, 10, Befund::unerreichbar},         // comes straight down
                          Case{45, 0, 1, 1e4, 0, 50, Befund::unerreichbar},       // the air stops it
                          Case{60, 0, 100, 1000, 150, 200, Befund::unerreichbar}, // blown back
                          Case{45, 99, 1, 1e4, 0, 50, Befund::unerreichbar},      // stays below the height
                          Case{45, -100, 5, 1e5, 0, 900, Befund::flugZuLang}}) {
        dat.Loeschen();
        dat.flugwinkel = c.angle;
        dat.aufprallhoehe = c.height;
        dat.masse = c.grams;
        dat.querschnitt = c.area;
        dat.gegenwind = c.wind;
        SpeedKmh(30.0);
        Target(c.target);
        EXPECT_EQ(dat.Rechnen(), c.finding) << c.angle << " " << c.height;
        EXPECT_EQ(dat.wurfRutschweite, c.target);
        EXPECT_EQ(dat.aufprallhoehe, c.height);
        for (const double* field :
             {&dat.anfangsgeschwindigkeit, &dat.anfangsgeschwindigkeitMs, &dat.wurfweite, &dat.wurfweiteZeit,
              &dat.maxWurfweite, &dat.maxWurfweiteZeit, &dat.wurfhoehe, &dat.wurfhoeheZeit, &dat.aufprallX,
              &dat.aufprallZ, &dat.luftverlust, &dat.aufprallwinkel, &dat.anfangX, &dat.anfangZ})
            EXPECT_EQ(*field, 0.0);
    }
    // The fastest throw is still one: 500 km/h at 45° without drag.
    dat.Loeschen();
    dat.flugwinkel = 5.0;
    const double farthest = std::pow(500.0 / 3.6, 2) * std::sin(10.0 * kPiHere / 180.0) / kG;
    Target(farthest - 1.0);
    EXPECT_NE(dat.Rechnen(), Befund::unerreichbar);
    EXPECT_NEAR(dat.anfangsgeschwindigkeit, 500.0 * std::sqrt(1.0 - 1.0 / farthest), 0.02);
    Target(farthest + 1.0);
    EXPECT_EQ(dat.Rechnen(), Befund::unerreichbar);
}

TEST_F(WurfWeiteDat, DragTooStrongForTheStepIsSaid)
{
    dat.flugwinkel = 45.0;
    dat.querschnitt = 1000.0;
    // k = ½·0.5·1.2·0.1/m; k·v·dt is 0.02 at 27.8 m/s for m = 4.2 g, above 1 for less than 0.08 g.
    dat.masse = 0.4;
    SpeedKmh(200.0);
    EXPECT_EQ(dat.Rechnen(), Befund::ungenau);
    dat.masse = 0.001;
    SpeedKmh(200.0);
    EXPECT_EQ(dat.Rechnen(), Befund::nichtBerechenbar);
    EXPECT_EQ(dat.anfangsgeschwindigkeit, 200.0);
    EXPECT_EQ(dat.wurfweite, 0.0);
    EXPECT_EQ(dat.wurfRutschweite, 0.0);
    EXPECT_TRUE(dat.bahn.empty());
}

TEST_F(WurfWeiteDat, ImpactAngleOfStandingAndStraightMotion)
{
    EXPECT_EQ(dat.Rechnen(), Befund::keiner); // all zero
    EXPECT_EQ(dat.aufprallwinkel, 0.0);
    dat.flugwinkel = 90.0;
    SpeedKmh(30.0);
    dat.Rechnen();
    EXPECT_EQ(dat.aufprallwinkel, 90.0);
    dat.aufprallhoehe = 50.0; // lowered: only what the air took is left, upwards
    dat.masse = 50.0;
    dat.querschnitt = 50.0;
    dat.Rechnen();
    EXPECT_EQ(dat.aufprallwinkel, -90.0);
    dat.aufprallhoehe = 0.0;
    dat.flugwinkel = 0.0;
    dat.Rechnen();
    EXPECT_EQ(dat.aufprallwinkel, 0.0);
    SpeedKmh(-30.0);
    dat.Rechnen();
    EXPECT_EQ(dat.aufprallwinkel, -180.0);
}

TEST_F(WurfWeiteDat, EntriesMoveTheirPartners)
{
    dat.anfangsgeschwindigkeitMs = 10.0;
    Target(5.0);
    dat.MsGeaendert();
    EXPECT_DOUBLE_EQ(dat.anfangsgeschwindigkeit, 36.0);
    EXPECT_EQ(dat.rueckwaerts, 0);
    Target(5.0);
    EXPECT_EQ(dat.rueckwaerts, 1);
    SpeedKmh(72.0);
    EXPECT_DOUBLE_EQ(dat.anfangsgeschwindigkeitMs, 20.0);
    EXPECT_EQ(dat.rueckwaerts, 0);
    dat.querschnitt = 100.0;
    dat.QuerschnittGeaendert();
    EXPECT_DOUBLE_EQ(dat.masse, 1000.0); // a cube of 10 cm
    dat.querschnitt = -3.0;
    dat.QuerschnittGeaendert();
    EXPECT_EQ(dat.querschnitt, 0.0);
    dat.masse = -1.0;
    dat.Rechnen();
    EXPECT_EQ(dat.masse, 0.0);
    EXPECT_EQ(dat.ergebnisSteht, 1);
    dat.Loeschen();
    EXPECT_EQ(dat.luftwiderstand, 0.5);
    EXPECT_EQ(dat.luftdichte, 1.2);
    EXPECT_EQ(dat.anfangsgeschwindigkeit, 0.0);
    EXPECT_EQ(dat.ergebnisSteht, 0);
}

template <class T> std::vector<T> Of(const CDC& dc)
{
    std::vector<T> found;
    for (const auto& primitive : dc.Primitives())
        if (const T* one = std::get_if<T>(&primitive))
            found.push_back(*one);
    return found;
}

TEST_F(WurfWeiteDat, TheDrawingIsToScale)
{
    CDC empty(600, 200);
    ZeichneWurf(empty, dat);
    EXPECT_TRUE(Of<drawing::Text>(empty).empty());

    dat.flugwinkel = 60.0;
    dat.rutschverzoegerung = 5.0;
    SpeedKmh(60.0);
    dat.Rechnen();
    CDC dc(600, 200);
    ZeichneWurf(dc, dat);
    const drawing::Polyline* path = nullptr;
    const auto lines = Of<drawing::Polyline>(dc);
    for (const auto& line : lines)
        if (line.points.size() > 20)
            path = &line;
    ASSERT_NE(path, nullptr);
    double top = 1e9, left = 1e9, right = 0.0;
    for (const CDPoint& p : path->points) {
        top = std::min(top, p.y);
        left = std::min(left, p.x);
        right = std::max(right, p.x);
    }
    const double scale = (right - left) / dat.wurfweite;
    EXPECT_NEAR((path->points.front().y - top) / scale, dat.wurfhoehe, 0.02);
    // Apex and impact are marked where they are.
    const auto marks = Of<drawing::Ellipse>(dc);
    ASSERT_EQ(marks.size(), 2U);
    EXPECT_NEAR(marks[0].centre.y, top, 0.5);
    EXPECT_NEAR(marks[0].centre.x, (left + right) / 2.0, 0.5);
    EXPECT_NEAR(marks[1].centre.x, right, 0.5);
    std::string texts;
    for (const auto& text : Of<drawing::Text>(dc))
        texts += text.utf8 + "|";
    EXPECT_NE(texts.find("Höhe 10,62 m"), std::string::npos) << texts;
    EXPECT_NE(texts.find("Wurfweite 24,5"), std::string::npos) << texts;
    for (const auto& line : lines)
        for (const CDPoint& p : line.points)
            EXPECT_TRUE(p.x >= 0.0 && p.x <= 600.0 && p.y >= 0.0 && p.y <= 200.0);
}

class WurfWeiteTest : public test::MaskTest
{
  protected:
    framework::Window& mask = OpenMask(471);
};

TEST_F(WurfWeiteTest, TypedAndSteppedEntriesFollowAResultThatStands)
{
    Enter(mask, IDC_WURF_FLUGWINKEL, "45");
    Enter(mask, IDC_WURF_V0_KMH, "36");
    EXPECT_EQ(Text(mask, IDC_WURF_V0_MS), "10,00");
    EXPECT_EQ(test::FieldValue(mask, "wurfweite"), 0.0);
    EXPECT_EQ(Text(mask, IDC_WURF_RECHENART), "");
    Press(mask, IDC_RECHNEN);
    EXPECT_NEAR(test::FieldValue(mask, "wurfweite"), 100.0 / kG, 0.01);
    EXPECT_EQ(Text(mask, IDC_WURF_RECHENART), LoadRuvString(IDS_WURF_GERECHNET));
    StepOnce(mask, IDC_WURF_V0_KMH, 1);
    EXPECT_NEAR(test::FieldValue(mask, "wurfweite"), std::pow(37.0 / 3.6, 2) / kG, 0.01);
    Enter(mask, IDC_WURF_V0_MS, "20");
    EXPECT_EQ(Text(mask, IDC_WURF_V0_KMH), "72,00");
    EXPECT_NEAR(test::FieldValue(mask, "wurfweite"), 400.0 / kG, 0.01);
    Enter(mask, IDC_WURF_QUERSCHNITT, "25");
    EXPECT_EQ(Text(mask, IDC_WURF_MASSE), "125,00");
    EXPECT_LT(test::FieldValue(mask, "wurfweite"), 400.0 / kG - 1.0);
    Enter(mask, IDC_WURF_MASSE, "0");
    Enter(mask, IDC_WURF_WURF_RUTSCHWEITE, "30");
    EXPECT_NEAR(test::FieldValue(mask, "anfangsgeschwindigkeit"), std::sqrt(30.0 * kG) * 3.6, 0.01);
    EXPECT_EQ(Text(mask, IDC_WURF_HINWEIS), "");
    EXPECT_EQ(Text(mask, IDC_WURF_RECHENART), LoadRuvString(IDS_WURF_GESUCHT));
    Enter(mask, IDC_WURF_FLUGWINKEL, "90");
    EXPECT_EQ(Text(mask, IDC_WURF_RECHENART), "");
    EXPECT_EQ(Text(mask, IDC_WURF_HINWEIS), LoadRuvString(IDS_WURF_UNERREICHBAR));
    EXPECT_EQ(Text(mask, IDC_WURF_WURF_RUTSCHWEITE), "30,00");
    EXPECT_EQ(Text(mask, IDC_WURF_V0_KMH), "0,00");
    Enter(mask, IDC_WURF_FLUGWINKEL, "45");
    Enter(mask, IDC_WURF_AUFPRALLHOEHE, "5");
    Enter(mask, IDC_WURF_WURF_RUTSCHWEITE, "2");
    EXPECT_NE(Text(mask, IDC_WURF_HINWEIS).find("um "), std::string::npos);
    EXPECT_EQ(Text(mask, IDC_WURF_HINWEIS).find('#'), std::string::npos);
}

TEST_F(WurfWeiteTest, ClearingAsksAndTakesTheAirOfTheCase)
{
    data.FallParameter().luftdichte = 1.05;
    Enter(mask, IDC_WURF_LUFTDICHTE, "0,9");
    Enter(mask, IDC_WURF_CW, "2");
    Enter(mask, IDC_WURF_V0_KMH, "30");
    Press(mask, IDC_RECHNEN);
    Press(mask, IDC_LOESCHEN);
    EXPECT_EQ(test::FieldValue(mask, "luftwiderstand"), 2.0);
    front.answers[1052] = fehlerJa;
    Press(mask, IDC_LOESCHEN);
    EXPECT_EQ(Text(mask, IDC_WURF_LUFTDICHTE), "1,050");
    EXPECT_EQ(Text(mask, IDC_WURF_CW), "0,50");
    EXPECT_EQ(Text(mask, IDC_WURF_V0_KMH), "0,00");
    EXPECT_EQ(test::FieldValue(mask, "ergebnisSteht"), 0.0);
    EXPECT_EQ(test::FieldValue(OpenMask(471), "luftdichte"), 1.05);
    Press(mask, IDCANCEL);
    EXPECT_EQ(thread.Dialogs().size(), 1U);
}

TEST_F(WurfWeiteTest, ImperialUnitsAreShownOnly)
{
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    framework::Window& second = OpenMask(471);
    Enter(second, IDC_WURF_FLUGWINKEL, "45");
    Enter(second, IDC_WURF_V0_KMH, "30"); // mph
    Press(second, IDC_RECHNEN);
    EXPECT_NEAR(test::FieldValue(second, "anfangsgeschwindigkeitMs"), 13.4112, 1e-9);
    EXPECT_NEAR(test::FieldValue(second, "wurfweite"), 13.4112 * 13.4112 / kG, 0.01);
}

} // namespace
