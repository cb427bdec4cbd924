// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Units.h"

namespace
{

constexpr double kFoot = 0.3048;   // m
constexpr double kMile = 1.609344; // km

} // namespace

UnitsSystemConfiguration& UnitsSystemConfiguration::GetInstance()
{
    static UnitsSystemConfiguration instance;
    return instance;
}

double UnitsSystemConfiguration::Factor(UnitType unit) const
{
    if (m_system == UnitsSystem::metric)
        return 1.0;
    switch (unit.Type()) {
    case unitType::none:
        return 1.0;
    case unitType::speedKmh:
        return kMile;
    case unitType::speedMs:
    case unitType::acceleration:
    case unitType::length:
        return kFoot;
    }
    return 1.0;
}

std::string UnitsSystemConfiguration::UnitString(UnitType unit) const
{
    const bool metric = m_system == UnitsSystem::metric;
    switch (unit.Type()) {
    case unitType::none:
        return {};
    case unitType::speedKmh:
        return metric ? "km/h" : "mph";
    case unitType::speedMs:
        return metric ? "m/s" : "ft/s";
    case unitType::acceleration:
        return metric ? "m/s²" : "ft/s²";
    case unitType::length:
        return metric ? "m" : "ft";
    }
    return {};
}
