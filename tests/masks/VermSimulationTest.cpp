// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The avoidability calculation against a simulation of both vehicles in small steps, and its searches against plain
// stepping.
#include "host/CRuvData.h"
#include "masks/manoeuvre/VermSuche.h"
#include "tests/masks/VermFaelle.h"
#include "tests/support/Rounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace test;

/// A vehicle driven in small steps, over each of which its acceleration changes evenly. It stops once.
class Simulated
{
  public:
    Simulated(double v, double duration, const std::function<double(double)>& acceleration,
              std::vector<double> kinks = {})
    {
        double t = 0.0, s = 0.0;
        m_samples.push_back({0.0, 0.0, v, 0.0, 0.0});
        if (v == 0.0 && acceleration(1e-12) <= 0.0)
            duration = 0.0;
        kinks.push_back(duration);
        std::sort(kinks.begin(), kinks.end());
        for (const double kink : kinks) {
            const double stretch = std::min(kink, duration) - t;
            const int steps = 400;
            const double begin = t;
            for (int i = 0; i < steps && stretch > 0.0; ++i) {
                const double from = begin + stretch * i / steps, to = begin + stretch * (i + 1) / steps;
                const double h = to - from, inside = h * 1e-9;
                const double a0 = acceleration(from + inside), a1 = acceleration(to - inside);
                m_samples.back().a = a0;
                m_samples.back().jerk = (a1 - a0) / h;
                const double next = v + h * (a0 + a1) / 2.0;
                if (next * v < 0.0 || next == 0.0) {
                    // Halve the step down to where it stops.
                    double low = 0.0, high = h;
                    for (int halving = 0; halving < 100; ++halving) {
                        const double middle = (low + high) / 2.0;
                        (m_samples.back().Speed(middle) * v > 0.0 ? low : high) = middle;
                    }
                    m_stop = from + low;
                    m_end = s + m_samples.back().Path(low);
                    m_stops = true;
                    return;
                }
                s += h * v + h * h * (2.0 * a0 + a1) / 6.0;
                v = next;
                t = to;
                m_samples.push_back({t, s, v, 0.0, 0.0});
            }
        }
        m_stop = t;
        m_end = s;
    }
    double Path(double t) const
    {
        if (t >= m_stop)
            return m_end;
        const Sample& at = At(t);
        return at.s + at.Path(t - at.t);
    }
    double Speed(double t) const
    {
        if (t >= m_stop)
            return 0.0;
        const Sample& at = At(t);
        return at.Speed(t - at.t);
    }
    double Stop() const { return m_stop; }
    bool Stops() const { return m_stops; }
    double End() const { return m_end; }

  private:
    struct Sample {
        double t, s, v, a, jerk;
        double Path(double h) const { return h * v + h * h * a / 2.0 + h * h * h * jerk / 6.0; }
        double Speed(double h) const { return v + h * a + h * h * jerk / 2.0; }
    };
    const Sample& At(double t) const
    {
        const auto after = std::upper_bound(m_samples.begin(), m_samples.end(), t,
                                            [](double value, const Sample& sample) { return value < sample.t; });
        return after == m_samples.begin() ? m_samples.front() : *(after - 1);
    }
    std::vector<Sample> m_samples;
    double m_stop = 0.0, m_end = 0.0;
    bool m_stops = false;
};

/// What both do, in m, s, m/s.
struct Case {
    VermRichtung direction;
    VermKenngroesse kind;
    double v, aR, tR, tS, aB, sRK, tRK, vG, aG, sFB, sFR, xV;
};

Simulated DriveV(const Case& c, double v, double aB)
{
    const double longest = c.tR + c.tS + (v + std::abs(c.aR) * c.tR + 10.0) / aB + 1.0;
    return Simulated(v, longest,
                     [&](double t) {
                         if (t < c.tR)
                             return c.aR;
                         return t < c.tR + c.tS ? c.aR - (aB + c.aR) * (t - c.tR) / c.tS : -aB;
                     },
                     {c.tR, c.tR + c.tS});
}

/// Whether the drive avoids, with so many metres to spare (negative: more than that must be lacking to fail).
bool Avoids(const Case& c, double v, double earlier, double aB, double spare)
{
    const Simulated own = DriveV(c, v, aB);
    // A G that stands has its missing braking distance behind it.
    const double stands = c.direction == VermRichtung::entgegen && c.vG == 0.0 ? c.sFB : 0.0;
    const double path = c.sRK + c.v * earlier - stands, time = c.tRK + earlier;
    const double longest = std::max(own.Stop() - time, 0.0) + 1.0;
    if (c.direction == VermRichtung::quer) {
        const double conflict = path + c.xV - spare;
        if (own.End() <= conflict)
            return true;
        if (c.kind == VermKenngroesse::raeumlich || c.sFR <= 0.0)
            return false;
        double low = 0.0, high = own.Stop();
        for (int halving = 0; halving < 100; ++halving) {
            const double middle = (low + high) / 2.0;
            (own.Path(middle) < conflict ? low : high) = middle;
        }
        const double wait = high - time;
        if (conflict <= 0.0 || wait <= 0.001)
            return false;
        return Simulated(c.vG, longest, [&](double) { return -c.aG; }).Path(wait) > c.sFR;
    }
    const double sign = c.direction == VermRichtung::gleich ? 1.0 : -1.0;
    const double span = c.aG > 0.0 ? std::max(longest, c.vG / c.aG + 1.0) : longest;
    const Simulated other(c.vG, span, [&](double) { return -c.aG; });
    const auto gap = [&](double tau) { return path + sign * other.Path(tau) - own.Path(time + tau); };
    if (c.direction == VermRichtung::gleich && c.kind == VermKenngroesse::raeumlich && own.End() > path + c.sFB - spare)
        return false;
    constexpr int kSteps = 1000;
    double smallest = std::min(gap(0.0), gap(span));
    for (int i = 1; i < kSteps; ++i) {
        double low = span * (i - 1) / kSteps, high = span * (i + 1) / kSteps;
        const double middle = gap(span * i / kSteps);
        if (middle > gap(low) || middle > gap(high))
            continue;
        for (int cut = 0; cut < 60; ++cut) {
            const double left = low + (high - low) / 3.0, right = high - (high - low) / 3.0;
            (gap(left) < gap(right) ? high : low) = gap(left) < gap(right) ? right : left;
        }
        smallest = std::min({smallest, middle, gap(low)});
    }
    return smallest >= spare;
}

class RandomCase
{
  public:
    explicit RandomCase(unsigned seed) : m_random(seed) {}

    Case Next(VermRichtung direction, VermKenngroesse kind)
    {
        Case c{};
        c.direction = direction;
        c.kind = kind;
        c.v = Between(5.0, 40.0);
        c.aR = Rarely() ? 0.0 : Between(-2.5, 2.5);
        c.tR = Rarely() ? 0.0 : Between(0.1, 2.0);
        c.tS = Rarely() ? 0.0 : Between(0.05, 0.8);
        c.aB = Between(1.0, 10.0);
        // Around the stopping distance, so that both answers occur.
        c.sRK = Between(0.2, 1.6) * (c.v * (c.tR + c.tS / 2.0) + c.v * c.v / (2.0 * c.aB));
        c.tRK = Between(0.1, 1.3) * c.sRK / c.v;
        c.vG = Rarely() ? 0.0 : Between(1.0, 40.0);
        c.aG = Rarely() ? 0.0 : Between(0.2, 9.0);
        c.sFB = Rarely() ? 0.0 : Between(0.5, 40.0);
        c.sFR = Rarely() ? 0.0 : Between(0.5, 12.0);
        c.xV = Rarely() ? 0.0 : Between(-5.0, 5.0);
        if (direction != VermRichtung::entgegen && Rarely())
            c.aG = -c.aG / 3.0;
        return c;
    }
    double Between(double from, double to) { return std::uniform_real_distribution<double>(from, to)(m_random); }
    bool Rarely() { return std::bernoulli_distribution(0.2)(m_random); }

  private:
    std::mt19937_64 m_random;
};

void Give(CVermDat& dat, const Case& c)
{
    dat.Loeschen();
    dat.richtung = static_cast<std::int64_t>(c.direction);
    dat.art = static_cast<std::int64_t>(c.kind);
    dat.vZ = c.v * kKmh;
    dat.aR = c.aR;
    dat.tR = c.tR;
    dat.tS = c.tS;
    dat.aB = c.aB;
    dat.sRK = c.sRK;
    dat.tRK = c.tRK;
    dat.vG = c.vG * kKmh;
    dat.aG = c.aG;
    dat.sFB = c.sFB;
    dat.sFR = c.sFR;
    dat.xV = c.xV;
}

std::string Describe(const Case& c)
{
    std::string text = "direction " + std::to_string(static_cast<int>(c.direction)) + ", kind " +
                       std::to_string(static_cast<int>(c.kind));
    for (const double value : {c.v, c.aR, c.tR, c.tS, c.aB, c.sRK, c.tRK, c.vG, c.aG, c.sFB, c.sFR, c.xV})
        text += ", " + std::to_string(value);
    return text;
}

TEST(VermSimulation, EveryLimitIsALimitInASimulationOfBothVehicles)
{
    constexpr double kSlack = 1e-5; // m
    constexpr int kRounds = test::Rounds(500);
    CRuvData data;
    CVermDat dat(data);
    RandomCase random(462);
    for (const Setting setting : kSettings) {
        int avoided = 0, limits = 0;
        for (int round = 0; round < kRounds; ++round) {
            Case c = random.Next(setting.direction, setting.kind);
            Give(dat, c);
            SCOPED_TRACE(Describe(c));
            const Meldungen messages = dat.Rechnen();
            if (dat.berechnet == 0) {
                ASSERT_TRUE(!messages.empty() && CVermDat::IstFatal(messages.back()));
                continue;
            }
            // What was not given is G's to derive.
            c.vG = dat.vG / kKmh;
            c.aG = dat.aG;
            c.sFB = dat.sFB;
            const bool withoutContact = dat.vorzeichen < 0;
            avoided += withoutContact ? 1 : 0;
            if (withoutContact) {
                ASSERT_TRUE(Avoids(c, c.v, 0.0, c.aB, -kSlack));
                ASSERT_EQ(dat.vE, 0.0);
            } else {
                ASSERT_FALSE(Avoids(c, c.v, 0.0, c.aB, kSlack));
                // An oncoming G may run into V when it already stands.
                ASSERT_TRUE(dat.vE > 0.0 || dat.zeitlichGeraeumt != 0 ||
                            (c.direction == VermRichtung::entgegen && DriveV(c, c.v, c.aB).End() < c.sRK));
            }
            if (dat.hoechstBestimmt != 0) {
                ++limits;
                ASSERT_TRUE(Avoids(c, dat.vHoechst / kKmh, 0.0, c.aB, -kSlack));
                ASSERT_FALSE(Avoids(c, dat.vHoechst / kKmh + 1e-4, 0.0, c.aB, kSlack));
            }
            if (dat.reaktBestimmt != 0) {
                ++limits;
                const double earlier = dat.tReakt - c.tRK;
                ASSERT_NEAR(dat.sReakt, c.sRK + c.v * earlier, 1e-9);
                ASSERT_TRUE(Avoids(c, c.v, earlier, c.aB, -kSlack));
                ASSERT_FALSE(Avoids(c, c.v, earlier - 1e-4, c.aB, kSlack));
            }
            if (dat.grenzBestimmt != 0) {
                ++limits;
                ASSERT_TRUE(Avoids(c, c.v, 0.0, dat.aGrenz, -kSlack));
                ASSERT_FALSE(dat.aGrenz > 0.0011 && Avoids(c, c.v, 0.0, dat.aGrenz - 1e-3, kSlack));
            }
            ASSERT_EQ(Says(messages, Meldung::keinGrenzwert),
                      dat.hoechstBestimmt == 0 || dat.reaktBestimmt == 0 || dat.grenzBestimmt == 0);
        }
        EXPECT_GT(avoided, kRounds / 10);
        EXPECT_LT(avoided, kRounds * 9 / 10);
        EXPECT_GT(limits, kRounds * 7 / 5);
    }
}

/// The definition: step by step.
VermSchritte::Ende StepPlainly(const VermSchritte& steps, bool falling)
{
    const bool towards = steps.Vorzeichen() > 0;
    for (std::int64_t n = 1; n <= kVermSchritte; ++n) {
        if (falling && !steps.IstPositiv(n))
            return {0, false};
        if (steps.Vermieden(n) == towards) {
            const std::int64_t found = towards ? n : n - 1;
            return steps.IstPositiv(found) ? VermSchritte::Ende{found, true} : VermSchritte::Ende{0, false};
        }
    }
    return {kVermSchritte, false};
}

VermVorgabe Given(const Case& c)
{
    return {c.v, c.aR, c.tR, c.tS, c.aB};
}

VermKonflikt Conflict(const Case& c)
{
    VermKonflikt k;
    k.richtung = c.direction;
    k.art = c.kind;
    k.sRK = c.sRK;
    k.tRK = c.tRK;
    k.sFB = c.sFB;
    k.xV = c.xV;
    k.gegner = {c.vG, c.aG};
    if (c.direction == VermRichtung::quer && c.sFR > 0.0 && c.vG > 0.0 && c.aG == 0.0)
        k.tRaeumen = c.sFR / c.vG;
    return k;
}

void ExpectSearchSteps(VermGroesse quantity, const Case& c)
{
    const VermSchritte steps(quantity, Given(c), Conflict(c));
    const bool falling = (quantity == VermGroesse::hoechstgeschw) == (steps.Vorzeichen() > 0);
    const VermSchritte::Ende plain = StepPlainly(steps, falling);
    const VermSchritte::Ende fast = steps.Suche();
    EXPECT_EQ(fast.schritt, plain.schritt) << Describe(c);
    EXPECT_EQ(fast.bestimmt, plain.bestimmt) << Describe(c);
}

TEST(VermSimulation, SearchesGiveWhatTheirStepsDefine)
{
    RandomCase random(4620);
    for (const Setting setting : kSettings)
        for (int round = 0; round < 15; ++round) {
            Case c = random.Next(setting.direction, setting.kind);
            if (setting.direction == VermRichtung::quer)
                c.aG = 0.0;
            // Searched backwards there is no step at all.
            if (round % 5 == 4)
                (round % 2 == 0 ? c.tRK : c.sRK) = 0.0;
            for (const VermGroesse quantity :
                 {VermGroesse::hoechstgeschw, VermGroesse::reaktionspunkt, VermGroesse::verzoegerung})
                ExpectSearchSteps(quantity, c);
            ASSERT_FALSE(testing::Test::HasFailure());
        }
}

/// Accelerating during the reaction, an earlier reaction can be worse: the values that fail may have avoiding ones on
/// both sides, and two stretches of them.
TEST(VermSimulation, ReactionPointIsSearchedWhereAvoidanceComesAndGoes)
{
    RandomCase random(46200);
    for (int round = 0; round < 250; ++round) {
        const bool crossing = round % 5 == 0;
        Case c = random.Next(crossing ? VermRichtung::quer : VermRichtung::gleich, VermKenngroesse::zeitlich);
        c.aR = random.Between(0.5, 4.0);
        c.tR = random.Between(0.5, 3.0);
        c.vG = crossing ? random.Between(5.0, 20.0) : c.v * random.Between(0.7, 1.4);
        c.aG = crossing ? 0.0 : random.Between(-1.0, 6.0);
        c.tRK = random.Between(0.2, 4.0);
        // Close to where V is when G is at the collision point, so that little decides.
        c.sRK = VermFahrt(Given(c)).Weg(c.tRK + (crossing ? 0.5 : 0.0)) + random.Between(-1.0, 3.0);
        ExpectSearchSteps(VermGroesse::reaktionspunkt, c);
        ASSERT_FALSE(testing::Test::HasFailure());
    }
}

/// First multiple of 0.00001 s at which `reached` holds, by steps of 0.01, 0.001, 0.0001 and 0.00001 s, each pass from
/// one step before the last time that was short of it.
double RefineTime(const std::function<bool(double)>& reached)
{
    std::int64_t at = 0;
    for (const std::int64_t step : {1000, 100, 10, 1}) {
        at = std::max<std::int64_t>(at - 2 * step, 0);
        while (!reached(static_cast<double>(at) * 1e-5))
            at += step;
        if (step > 1)
            at -= at == 0 ? 0 : step;
    }
    return static_cast<double>(at) * 1e-5;
}

TEST(VermSimulation, TimesAreFoundToTheStep)
{
    RandomCase random(46201);
    int beforeBraking = 0, meetings = 0;
    for (int round = 0; round < 600; ++round) {
        Case c =
            random.Next(round % 2 == 0 ? VermRichtung::entgegen : VermRichtung::gleich, VermKenngroesse::raeumlich);
        if (c.vG == 0.0)
            c.aG = 0.0;
        SCOPED_TRACE(Describe(c));
        const VermFahrt drive(Given(c));
        const double path = drive.Halteweg() * random.Between(0.01, 0.99);
        const VermAnkunft arrival = VermErreicht(drive, path);
        if (path <= drive.Weg(c.tR + c.tS)) {
            ++beforeBraking;
            ASSERT_EQ(arrival.zeit, RefineTime([&](double t) { return drive.Weg(t) >= path; }));
        } else {
            ASSERT_NEAR(DriveV(c, c.v, c.aB).Path(arrival.zeit), path, 1e-6);
            ASSERT_NEAR(DriveV(c, c.v, c.aB).Speed(arrival.zeit), arrival.geschw, 1e-5);
        }

        const VermKonflikt k = Conflict(c);
        if (const auto meeting = VermTrifft(drive, k)) {
            ++meetings;
            const Simulated own = DriveV(c, c.v, c.aB);
            const Simulated other(c.vG, 200.0, [&](double) { return -c.aG; });
            const double sign = c.direction == VermRichtung::gleich ? 1.0 : -1.0;
            const double stands = c.direction == VermRichtung::entgegen && c.vG == 0.0 ? c.sFB : 0.0;
            const auto gap = [&](double t) {
                return c.sRK - stands + sign * other.Path(std::max(t - c.tRK, 0.0)) - own.Path(t);
            };
            ASSERT_LE(gap(meeting->zeit), 1e-6);
            // Never before: on a grid a hundred times as fine as the time it lasts.
            for (double t = 0.0; t < meeting->zeit - kVermZeitraster; t += meeting->zeit / 500.0)
                ASSERT_GE(gap(t), -1e-6) << t;
            ASSERT_NEAR(meeting->geschw, own.Speed(meeting->zeit), 1e-6);
            if (c.direction == VermRichtung::entgegen) {
                ASSERT_EQ(meeting->zeit, RefineTime([&](double t) { return k.Abstand(drive, t) < -kVermNull; }));
            }
        }
    }
    EXPECT_GT(beforeBraking, 100);
    EXPECT_GT(meetings, 100);
}

} // namespace
