// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace drawing
{

/// An axis from `minimum` to `maximum`, both multiples of `step`; the step is 1, 2 or 5 times a power of ten.
struct AxisTicks {
    double minimum = 0.0;
    double maximum = 1.0;
    double step = 1.0;
    int count = 2; ///< ticks, both ends included
    int decimals = 0;

    double At(int index) const;
    /// Tick's value with decimal comma and a true minus sign.
    std::string Label(int index) const;
};

/// The finest axis that holds lowest..highest with at most `intervals` steps; two at least, as a range about 0 needs
/// them. A range without extent is widened; both must be finite.
AxisTicks TicksFor(double lowest, double highest, int intervals);

} // namespace drawing
