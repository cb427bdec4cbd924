// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PathTimeCurve.h"

#include "host/Assert.h"
#include "host/Physics.h"
#include "krn/PhaseMotion.h"

#include <algorithm>
#include <cmath>

namespace pathtime
{
namespace
{

constexpr double kMostSamples = 1000.0;

struct Deceleration {
    double atStart;
    double atEnd;
};

/// `earlier` is the phase before this one in time, if it is used.
Deceleration DecelerationOf(const CWegZeitSpalte& phase, const CWegZeitSpalte* earlier)
{
    if (phase.zeit == 0.0 || phase.art == PhasenArt::constantSpeed)
        return {0.0, 0.0};
    if (phase.art != PhasenArt::threshold)
        return {phase.verz, phase.verz};
    return {earlier == nullptr ? 0.0 : earlier->verz, phase.verz};
}

} // namespace

PathTimeCurve::PathTimeCurve(const CWegZeitDat& columns)
{
    auto spalten = columns.spalten;
    for (CWegZeitSpalte& column : spalten)
        krn::ClearImpossibleQuantities(column);

    double time = 0.0;
    double position = 0.0;
    for (std::size_t i = CWegZeitDat::kErsteSpalte; i < spalten.size(); ++i) {
        const CWegZeitSpalte& column = spalten[i];
        if (!column.IsUsed())
            continue;
        const bool hasEarlier = i + 1 < spalten.size() && spalten[i + 1].IsUsed();
        const Deceleration deceleration = DecelerationOf(column, hasEarlier ? &spalten[i + 1] : nullptr);
        const double sign = column.richtung < 0.0 ? -1.0 : 1.0;
        const MotionState end{time, position, sign * column.vEnd / kKmhProMs, deceleration.atEnd};
        time -= std::max(column.zeit, 0.0);
        position -= sign * column.weg;
        const MotionState start{time, position, sign * column.vAnf / kKmhProMs, deceleration.atStart};
        m_phases.push_back({i, column.art, start, end});
    }
    std::reverse(m_phases.begin(), m_phases.end());
}

MotionState PathTimeCurve::Phase::At(double time) const
{
    if (time >= end.time)
        return end;
    if (time <= start.time)
        return start;
    const double duration = end.time - start.time;
    const double u = (time - start.time) / duration;
    const double w = 1.0 - u;
    // Cubic through both positions with both speeds as slopes, and its derivative.
    const double mean = (end.position - start.position) / duration;
    const double position = w * w * (1.0 + 2.0 * u) * start.position + u * u * (3.0 - 2.0 * u) * end.position +
                            u * w * (w * start.speed - u * end.speed) * duration;
    const double speed = 6.0 * u * w * mean + w * (1.0 - 3.0 * u) * start.speed + u * (3.0 * u - 2.0) * end.speed;
    const double deceleration = w * start.deceleration + u * end.deceleration;
    return {time, position, speed, deceleration};
}

std::optional<MotionState> PathTimeCurve::At(double time) const
{
    if (IsEmpty() || !(time >= StartTime() && time <= 0.0))
        return std::nullopt;
    // The last phase that has begun; of several that begin at once, the one that lasts.
    const auto after = std::upper_bound(m_phases.begin(), m_phases.end(), time,
                                        [](double t, const Phase& phase) { return t < phase.start.time; });
    return std::prev(after)->At(time);
}

std::vector<MotionState> PathTimeCurve::Sample(double step) const
{
    RUV_ASSERT(step > 0.0);
    std::vector<MotionState> states;
    for (const Phase& phase : m_phases) {
        states.push_back(phase.start);
        const double duration = phase.end.time - phase.start.time;
        const bool straight = phase.art == PhasenArt::constantSpeed || duration == 0.0;
        const double parts = straight ? 1.0 : std::clamp(std::ceil(duration / step), 1.0, kMostSamples);
        for (double part = 1.0; part < parts; ++part)
            states.push_back(phase.At(phase.start.time + duration * part / parts));
        states.push_back(phase.end);
    }
    return states;
}

} // namespace pathtime
