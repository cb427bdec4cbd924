// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Charts.h"

#include "base/NumberText.h"
#include "host/Assert.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace drawing
{
namespace
{

constexpr double kSmallestRange = 1e-9;
/// Ends that lie this part of a step beyond a tick are taken as being on it.
constexpr double kSlack = 1e-9;

} // namespace

double AxisTicks::At(int index) const
{
    return (std::round(minimum / step) + index) * step;
}

std::string AxisTicks::Label(int index) const
{
    return RuvNumberText(At(index), decimals);
}

AxisTicks TicksFor(double lowest, double highest, int intervals)
{
    RUV_ASSERT(intervals >= 2 && std::isfinite(lowest) && std::isfinite(highest));
    if (lowest > highest)
        std::swap(lowest, highest);
    if (highest - lowest < kSmallestRange * std::max({1.0, std::abs(lowest), std::abs(highest)}))
        highest = lowest + std::max(1.0, std::abs(lowest));

    int exponent = static_cast<int>(std::floor(std::log10((highest - lowest) / intervals)));
    for (;; ++exponent) {
        for (const double digit : {1.0, 2.0, 5.0}) {
            const double step = digit * std::pow(10.0, exponent);
            const double first = std::floor(lowest / step + kSlack);
            const double last = std::ceil(highest / step - kSlack);
            if (last - first <= intervals)
                return {first * step, last * step, step, static_cast<int>(last - first) + 1, std::max(-exponent, 0)};
        }
    }
}

} // namespace drawing

std::string RuvNumberText(double value, int decimals)
{
    std::string text = base::FormatNumber(value, decimals);
    if (text.starts_with('-'))
        text.replace(0, 1, "−");
    return text;
}
