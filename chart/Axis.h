// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// An axis of the chart: what stands beside it, and where its ticks lie.
#pragma once

#include "host/NumberTable.h"

#include <string>
#include <vector>

namespace chart
{

enum class AxisFormat {
    number,
    minutes, ///< values in s, shown as min:s, from an hour on as h:min:s
    clock,   ///< values in s, shown as the time of day
};

struct Axis {
    std::string title{};
    NumberUnit unit = units::none; ///< of the values; converted to the user's where the unit system does that
    AxisFormat format = AxisFormat::number;
    int decimals = 2;      ///< of a number that is read off; ticks have as many as they need
    double midnight = 0.0; ///< clock: what is added to a value to count from midnight, in s

    /// One unit shown, in the unit of the values.
    double Factor() const;
    std::string UnitText() const;
    /// Title and unit as they stand at the axis.
    std::string Heading() const;
    /// A value in the shown unit, as text with the unit.
    std::string Text(double shown) const;
    std::string TextWithoutUnit(double shown) const;
};

struct Tick {
    double at = 0.0; ///< in the shown unit
    std::string label{};
};

/// The ticks between two ends (shown unit), most often fewer than `intervals` and never more than one more. A time axis
/// has steps that a clock has.
std::vector<Tick> TicksOf(const Axis& axis, double lowest, double highest, int intervals);

} // namespace chart
