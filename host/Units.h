// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The user's unit system. Fields stay metric; only what a control shows is converted.
#pragma once

#include <string>

/// What a number means. The values are part of the masks' contract.
enum class unitType : int {
    none = 0,
    speedKmh = 3,     // field in km/h
    speedMs = 4,      // field in m/s
    acceleration = 5, // field in m/s²
    length = 6,       // field in m
};

class UnitType
{
  public:
    explicit constexpr UnitType(unitType type) : m_type(type) {}
    constexpr unitType Type() const { return m_type; }

  private:
    unitType m_type;
};

enum class UnitsSystem : int {
    metric = 1,
    imperial = 2, // mph, ft/s, ft/s², ft
};

class UnitsSystemConfiguration
{
  public:
    static UnitsSystemConfiguration& GetInstance();

    UnitsSystem System() const { return m_system; }
    void SetSystem(UnitsSystem system) { m_system = system; }

    /// Size of one shown unit in the field's metric unit (1 in the metric system).
    double Factor(UnitType unit) const;
    double ToShown(double metric, UnitType unit) const { return metric / Factor(unit); }
    double ToMetric(double shown, UnitType unit) const { return shown * Factor(unit); }
    /// The text beside a field, for example "km/h".
    std::string UnitString(UnitType unit) const;

    /// The text with the first metric unit in it replaced by the user's.
    std::string WithUnit(std::string text, UnitType unit) const;

    /// Speed in km/h to the user's unit, and that unit's text.
    double ConvertSpeedMetricToUnit(double kmh) const { return ToShown(kmh, UnitType(unitType::speedKmh)); }
    std::string GetSpeedUnit() const { return UnitString(UnitType(unitType::speedKmh)); }

  private:
    UnitsSystem m_system = UnitsSystem::metric;
};
