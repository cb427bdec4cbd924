// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/NumberEntry.h"

#include "base/NumberText.h"
#include "krn/MessageTable.h"

#include <array>

namespace krn
{

std::string UnitOf(const NumberFormat& format)
{
    return format.unit.Type() == unitType::none ? format.plainUnit
                                                : UnitsSystemConfiguration::GetInstance().UnitString(format.unit);
}

std::string ShowNumber(double value, const NumberFormat& format)
{
    return base::FormatNumber(UnitsSystemConfiguration::GetInstance().ToShown(value, format.unit), format.decimals);
}

NumberEntry ReadNumber(const std::string& text, const NumberFormat& format)
{
    if (text.find_first_not_of(" \t") == std::string::npos)
        return {};
    const std::optional<double> shown = base::ParseNumber(text);
    if (shown) {
        const double value = UnitsSystemConfiguration::GetInstance().ToMetric(*shown, format.unit);
        if (value >= format.minimum && value <= format.maximum)
            return {value, {}};
    }
    const std::array<MessageArg, 4> args{format.label, text, ShowNumber(format.minimum, format),
                                         ShowNumber(format.maximum, format)};
    return {std::nullopt, FormatMessage(shown ? 1002 : 1001, args).text};
}

} // namespace krn
