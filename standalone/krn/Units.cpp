// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Units.h"

#include <string_view>

namespace
{

constexpr double kKmhPerMph = 1.609344; // 1 mile = 1609.344 m
constexpr double kMetresPerFoot = 0.3048;

struct Shown {
    double factor;
    const char* text;
};

Shown InSystem(unitType type, bool imperial)
{
    switch (type) {
    case unitType::speedKmh:
        return imperial ? Shown{kKmhPerMph, "mph"} : Shown{1.0, "km/h"};
    case unitType::speedMs:
        return imperial ? Shown{kMetresPerFoot, "ft/s"} : Shown{1.0, "m/s"};
    case unitType::acceleration:
        return imperial ? Shown{kMetresPerFoot, "ft/s²"} : Shown{1.0, "m/s²"};
    case unitType::length:
        return imperial ? Shown{kMetresPerFoot, "ft"} : Shown{1.0, "m"};
    case unitType::none:
        break;
    }
    return {1.0, ""};
}

} // namespace

UnitsSystemConfiguration& UnitsSystemConfiguration::GetInstance()
{
    static UnitsSystemConfiguration instance;
    return instance;
}

double UnitsSystemConfiguration::Factor(UnitType unit) const
{
    return InSystem(unit.Type(), m_system == UnitsSystem::imperial).factor;
}

std::string UnitsSystemConfiguration::UnitString(UnitType unit) const
{
    return InSystem(unit.Type(), m_system == UnitsSystem::imperial).text;
}

std::string UnitsSystemConfiguration::WithUnit(std::string text, UnitType unit) const
{
    // Longer texts first: the shorter ones are parts of them.
    for (const std::string_view metric : {"m/s²", "km/h", "m/s", "m"}) {
        const std::size_t at = text.find(metric);
        if (at != std::string::npos)
            return text.replace(at, metric.size(), UnitString(unit));
    }
    return text;
}
