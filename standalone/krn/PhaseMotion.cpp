// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/PhaseMotion.h"

#include "host/Quadratgl.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace krn
{
namespace
{

constexpr double kKmhPerMs = 3.6;
/// Quantities that differ by less than this part of the terms they are made of are the same.
constexpr double kSame = 1e-6;

/// A phase in m/s, m/s², s and m.
struct Motion {
    double end;
    double start;
    double deceleration;
    double time;
    double path;
};

/// Seen from the end of a phase backwards, start = end + slope·t and path = end·t + curve·t². For a constant
/// deceleration a: slope = a, curve = a/2. For one that rises linearly from a0 to a: slope = (a0 + a)/2,
/// curve = (a0 + 2a)/6.
struct Law {
    bool rising;
    double from;

    double Slope(double a) const { return rising ? (from + a) / 2.0 : a; }
    double Curve(double a) const { return rising ? (from + 2.0 * a) / 6.0 : a / 2.0; }
    double OfSlope(double slope) const { return rising ? 2.0 * slope - from : slope; }
    double OfCurve(double curve) const { return rising ? (6.0 * curve - from) / 2.0 : 2.0 * curve; }
};

/// What is known of the speed at the far end of the phase.
enum class FarSpeed { given, perhapsZero, missing };

bool Same(double x, double y, double scale)
{
    return std::abs(x - y) <= kSame * scale;
}

double SpeedScale(const Motion& m)
{
    return std::max({std::abs(m.end), std::abs(m.start), std::abs(m.start - m.end)});
}

double PathScale(const Motion& m)
{
    return std::max({std::abs(m.end * m.time), std::abs(m.start * m.time), std::abs(m.path)});
}

/// The phase of duration t at deceleration a that ends at this speed.
Motion Follow(double end, double a, double t, const Law& law)
{
    return {end, end + law.Slope(a) * t, a, t, (end + law.Curve(a) * t) * t};
}

bool IsComplete(const Motion& m, const Law& law)
{
    const bool onlyTime = m.end == 0.0 && m.start == 0.0 && m.deceleration == 0.0 && m.path == 0.0;
    if (m.time == 0.0 || onlyTime)
        return false;
    const Motion followed = Follow(m.end, m.deceleration, m.time, law);
    return Same(m.start, followed.start, SpeedScale(followed)) && Same(m.path, followed.path, PathScale(followed));
}

/// Smallest positive root of curve·t² + end·t = path, 0 when there is none.
double TimeForPath(double end, double curve, double path)
{
    double later = 0.0;
    double earlier = 0.0;
    int count = 0;
    Quadratgl(curve, end, -path, later, earlier, count);
    return earlier > 0.0 ? earlier : std::max(later, 0.0);
}

/// Time of a phase of which both speeds and the path are known, 0 when it cannot be driven.
double TimeForSpeeds(const Motion& m, const Law& law)
{
    if (!law.rising) {
        const double mean = (m.end + m.start) / 2.0;
        return mean == 0.0 ? 0.0 : m.path / mean;
    }
    // With slope = (start - end)/t the path is (end + 2·(start - end)/3)·t - a0·t²/6.
    return TimeForPath(m.end + 2.0 * (m.start - m.end) / 3.0, -law.from / 6.0, m.path);
}

bool InBounds(const Motion& m)
{
    const double quantities[] = {m.end * kKmhPerMs, m.start * kKmhPerMs, m.deceleration, m.time, m.path};
    return std::all_of(std::begin(quantities), std::end(quantities),
                       [](double quantity) { return std::abs(quantity) <= kLargestPhaseQuantity; });
}

/// The whole phase from its end speed and what else is given; nothing when that is too little or contradictory.
std::optional<Motion> Solve(const Motion& m, const Law& law, FarSpeed far)
{
    const bool hasPath = m.path != 0.0;
    double a = m.deceleration;
    double t = m.time;
    if (t != 0.0) {
        // A deceleration that nothing determines is 0.
        if (a == 0.0 && hasPath)
            a = law.OfCurve((m.path / t - m.end) / t);
        else if (a == 0.0 && far == FarSpeed::given)
            a = law.OfSlope((m.start - m.end) / t);
    } else {
        if (hasPath && a == 0.0 && far == FarSpeed::given) {
            t = TimeForSpeeds(m, law);
            a = t > 0.0 ? law.OfSlope((m.start - m.end) / t) : 0.0;
        } else if (hasPath) {
            t = TimeForPath(m.end, law.Curve(a), m.path);
        } else if (a != 0.0 && far != FarSpeed::missing && law.Slope(a) != 0.0 &&
                   !Same(m.start, m.end, SpeedScale(m))) {
            t = (m.start - m.end) / law.Slope(a);
        }
        if (!(t > 0.0))
            return std::nullopt;
    }
    return Follow(m.end, a, t, law);
}

/// Start and end exchanged: time runs the other way, so a deceleration becomes an acceleration.
Motion Mirrored(const Motion& m)
{
    return {m.start, m.end, -m.deceleration, m.time, m.path};
}

bool Assign(double& field, double value, double scale)
{
    if (field == value || Same(field, value, scale))
        return false;
    field = value;
    return true;
}

/// Writes what differs from the phase's own quantities.
bool Store(CWegZeitSpalte& phase, const Motion& m)
{
    const double speedScale = kKmhPerMs * SpeedScale(m);
    bool changed = Assign(phase.vEnd, m.end * kKmhPerMs, speedScale);
    changed |= Assign(phase.vAnf, m.start * kKmhPerMs, speedScale);
    changed |= Assign(phase.verz, m.deceleration, m.time == 0.0 ? 0.0 : SpeedScale(m) / std::abs(m.time));
    changed |= Assign(phase.zeit, m.time, std::abs(m.time));
    changed |= Assign(phase.weg, m.path, PathScale(m));
    return changed;
}

Motion MotionOf(const CWegZeitSpalte& phase)
{
    return {phase.vEnd / kKmhPerMs, phase.vAnf / kKmhPerMs, phase.verz, phase.zeit, phase.weg};
}

bool CompleteConstantSpeed(CWegZeitSpalte& phase, bool chained)
{
    Motion m = MotionOf(phase);
    double v = m.end;
    if (!chained && v == 0.0)
        v = m.start != 0.0 ? m.start : m.time != 0.0 ? m.path / m.time : 0.0;
    if (m.time == 0.0 && v != 0.0 && m.path / v > 0.0)
        m.time = m.path / v;
    const Motion solved{v, v, 0.0, m.time, m.time != 0.0 ? v * m.time : m.path};
    return InBounds(solved) && Store(phase, solved);
}

} // namespace

bool ClearImpossibleQuantities(CWegZeitSpalte& phase)
{
    bool changed = false;
    for (double* quantity : {&phase.vEnd, &phase.vAnf, &phase.verz, &phase.zeit, &phase.weg}) {
        if (!(std::abs(*quantity) <= kLargestPhaseQuantity)) {
            *quantity = 0.0;
            changed = true;
        }
    }
    return changed;
}

bool CompletePhase(CWegZeitSpalte& phase, std::optional<double> chainedSpeed, double earlierDeceleration)
{
    const Law law{phase.art == PhasenArt::threshold, earlierDeceleration};
    const bool complete = IsComplete(MotionOf(phase), law);
    bool changed = false;
    if (chainedSpeed)
        changed = Assign(phase.vEnd, *chainedSpeed, std::max(std::abs(phase.vEnd), std::abs(*chainedSpeed)));
    if (phase.art == PhasenArt::constantSpeed)
        return CompleteConstantSpeed(phase, chainedSpeed.has_value()) || changed;
    if (phase.art == PhasenArt::noTime) {
        changed |= Assign(phase.zeit, 0.0, 0.0);
        return (phase.vAnf == 0.0 && Assign(phase.vAnf, phase.vEnd, 0.0)) || changed;
    }

    const Motion m = MotionOf(phase);
    const bool reachesSpeed = phase.art == PhasenArt::accelerating;
    std::optional<Motion> solved;
    if (complete) {
        solved = Follow(m.end, m.deceleration, m.time, law);
    } else if (!chainedSpeed && m.end == 0.0 && (reachesSpeed || phase.art == PhasenArt::reaction)) {
        solved = Solve(Mirrored(m), law, FarSpeed::missing);
        return solved && InBounds(*solved) && Store(phase, Mirrored(*solved));
    } else {
        const bool given = m.start != 0.0 || reachesSpeed;
        solved = Solve(m, law, given ? FarSpeed::given : FarSpeed::perhapsZero);
    }
    if (solved && InBounds(*solved))
        return Store(phase, *solved) || changed;
    return (phase.vAnf == 0.0 && Assign(phase.vAnf, phase.vEnd, 0.0)) || changed;
}

} // namespace krn
