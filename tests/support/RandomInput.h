// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a careless user types, reproducibly, and a look at a mask's record by field names.
#pragma once

#include "framework/Window.h"
#include "host/CDialog.h"

#include <cmath>
#include <initializer_list>
#include <random>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace test
{

class RandomInput
{
  public:
    explicit RandomInput(std::uint64_t seed) : m_random(seed) {}

    /// 0 .. below - 1
    int Number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(m_random); }

    template <class T> T Pick(std::initializer_list<T> choices)
    {
        return choices.begin()[Number(static_cast<int>(choices.size()))];
    }

    std::string Text()
    {
        switch (Number(4)) {
        case 0:
            return Pick<const char*>({"", " ", "abc", "-", ",", "1,2,3", "nan", "inf", "1e", "0x10", "ß", "1 0"});
        case 1:
            return Pick<const char*>({"0", "-0", "1e-300", "1e-308", "5e-324", "-1e-300", "1e-9", "1e308", "1e999",
                                      "-1", "90", "-90", "89,99999999", "100", "1000", "1000,01"});
        case 2:
            return std::to_string(Number(1001));
        default:
            return std::to_string(std::pow(10.0, Number(7) - 3) * (Number(2000) - 200) / 1000.0);
        }
    }

  private:
    std::mt19937_64 m_random;
};

/// Values of a field of the mask's record.
inline std::vector<double> FieldValues(const RecordField& field)
{
    std::vector<double> values;
    std::visit(
        [&](const auto* first) {
            for (std::size_t i = 0; i < field.count; ++i)
                values.push_back(static_cast<double>(first[i]));
        },
        field.value);
    return values;
}

/// Value of a field of the mask's record, by name.
inline double FieldValue(framework::Window& mask, const std::string& name, std::size_t index = 0)
{
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask.object)->DescribeRecord())
        if (field.name == name)
            return FieldValues(field).at(index);
    throw std::out_of_range("field " + name);
}

/// Name of the first field that holds a not-a-number, or "".
inline std::string NotANumberIn(framework::Window& mask)
{
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask.object)->DescribeRecord())
        for (const double value : FieldValues(field))
            if (std::isnan(value))
                return std::string(field.name);
    return {};
}

} // namespace test
