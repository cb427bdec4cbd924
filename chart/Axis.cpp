// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Axis.h"

#include "host/Charts.h"
#include "host/Units.h"

#include <algorithm>
#include <cmath>

namespace chart
{
namespace
{

constexpr double kMinute = 60.0;
constexpr double kHour = 3600.0;
constexpr double kDay = 86400.0;
/// s; from a second on the steps of a time axis are those of a clock.
constexpr double kClockSteps[] = {1,   2,   5,    10,   15,   30,    60,    120,   300,
                                  600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400};
/// Ends that lie this part of a step beyond a tick are taken as being on it.
constexpr double kSlack = 1e-9;

std::string TwoDigits(double whole)
{
    return (whole < 10.0 ? "0" : "") + RuvNumberText(whole, 0);
}

/// Seconds below a minute with two digits before the decimal sign.
std::string SecondsText(double seconds, int decimals)
{
    return (seconds < 10.0 ? "0" : "") + RuvNumberText(seconds, decimals);
}

/// The time, rounded as a whole: 59.96 s with one decimal is 1:00.0 and not 0:60.0.
std::string TimeText(double seconds, int decimals, bool clock)
{
    if (!std::isfinite(seconds))
        return RuvNumberText(seconds, decimals);
    const double unit = std::pow(10.0, -decimals);
    double rounded = std::round(std::abs(seconds) / unit) * unit;
    const bool negative = seconds < 0.0 && rounded > 0.0 && !clock;
    if (clock) {
        rounded = std::round(seconds / unit) * unit;
        rounded -= std::floor(rounded / kDay) * kDay;
    }
    const double slack = unit / 4.0; // whole minutes stay whole when the multiple of the unit is a little below
    const double hours = std::floor((rounded + slack) / kHour);
    const double minutes = std::floor((rounded - hours * kHour + slack) / kMinute);
    const double rest = std::max(0.0, rounded - hours * kHour - minutes * kMinute);
    std::string text = negative ? "−" : "";
    if (clock)
        text += TwoDigits(hours) + ":" + TwoDigits(minutes) + ":";
    else if (hours > 0.0)
        text += RuvNumberText(hours, 0) + ":" + TwoDigits(minutes) + ":";
    else
        text += RuvNumberText(minutes, 0) + ":";
    return text + SecondsText(rest, decimals);
}

} // namespace

double Axis::Factor() const
{
    return UnitsSystemConfiguration::GetInstance().Factor(UnitType(unit.type));
}

std::string Axis::UnitText() const
{
    switch (format) {
    case AxisFormat::minutes:
        return "min:s";
    case AxisFormat::clock:
        return {};
    case AxisFormat::number:
        break;
    }
    return unit.type == unitType::none ? std::string(unit.text)
                                       : UnitsSystemConfiguration::GetInstance().UnitString(UnitType(unit.type));
}

std::string Axis::Heading() const
{
    const std::string unitText = UnitText();
    if (unitText.empty() || title.empty())
        return title + unitText;
    return title + " [" + unitText + "]";
}

std::string Axis::TextWithoutUnit(double shown) const
{
    if (format == AxisFormat::number)
        return RuvNumberText(shown, decimals);
    return TimeText(format == AxisFormat::clock ? shown + midnight : shown, decimals, format == AxisFormat::clock);
}

std::string Axis::Text(double shown) const
{
    const std::string unitText = format == AxisFormat::number  ? UnitText()
                                 : format == AxisFormat::clock ? "Uhr"
                                                               : "min";
    return TextWithoutUnit(shown) + (unitText.empty() ? "" : " " + unitText);
}

std::vector<Tick> TicksOf(const Axis& axis, double lowest, double highest, int intervals)
{
    std::vector<Tick> ticks;
    if (!(lowest < highest))
        return ticks;
    intervals = std::max(intervals, 2);
    drawing::AxisTicks plain = drawing::TicksFor(lowest, highest, intervals);
    if (axis.format == AxisFormat::number) {
        for (int i = 0; i < plain.count; ++i)
            if (plain.At(i) >= lowest - kSlack * plain.step && plain.At(i) <= highest + kSlack * plain.step)
                ticks.push_back({plain.At(i), plain.Label(i)});
        return ticks;
    }
    // A clock's ticks lie on round times of day, not on round values.
    const double offset = axis.format == AxisFormat::clock ? axis.midnight : 0.0;
    double step = plain.step;
    if (step >= kClockSteps[0] || (highest - lowest) / intervals > kClockSteps[0] / 2.0) {
        const double wanted = (highest - lowest) / intervals;
        const auto* found = std::find_if(std::begin(kClockSteps), std::end(kClockSteps),
                                         [&](double candidate) { return candidate >= wanted; });
        step = found != std::end(kClockSteps) ? *found : kDay * std::ceil(wanted / kDay);
    }
    const int decimals = step >= 1.0 ? 0 : plain.decimals;
    for (double n = std::ceil((lowest + offset) / step - kSlack); n * step - offset <= highest + kSlack * step; ++n)
        ticks.push_back({n * step - offset, TimeText(n * step, decimals, axis.format == AxisFormat::clock)});
    return ticks;
}

} // namespace chart
