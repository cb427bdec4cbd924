// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Numbers of the case that are shown and edited outside of masks, by the rules of masks: shown rounded in the user's
// unit, kept as they are, an entry out of range refused with field, value and range.
#pragma once

#include "host/Units.h"

#include <optional>
#include <string>

namespace krn
{

struct NumberFormat {
    std::string label;
    double minimum; ///< in the field's unit, as `maximum`
    double maximum;
    int decimals;
    UnitType unit{unitType::none};
    std::string plainUnit; ///< text of a unit that the unit system does not convert, such as "kg"
};

std::string UnitOf(const NumberFormat& format);
std::string ShowNumber(double value, const NumberFormat& format);

struct NumberEntry {
    std::optional<double> value; ///< in the field's unit; nothing when refused, and for an empty entry
    std::string refusal;         ///< German; empty unless refused
};
NumberEntry ReadNumber(const std::string& text, const NumberFormat& format);

} // namespace krn
