// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct NumberSpec;

using FieldValue = std::variant<double*, std::int64_t*, std::int32_t*, std::uint8_t*>;

/// Where a field's value lies: one, or with count > 1 an array.
struct FieldRef {
    FieldValue value;
    std::size_t count = 1;
    bool list = false; ///< of any length, also when it has one element
};

/// A named field of a mask's record. The unit is the record's own.
struct RecordField {
    std::string_view name;
    std::string_view unit;
    FieldValue value;
    std::size_t count = 1;
    const NumberSpec* spec = nullptr; ///< its row in the record's table, or null
    bool list = false;                ///< of any length, also when it has one element
};

using RecordFields = std::vector<RecordField>;

/// The rows that a mask has read from its file. They end with the next message to the mask.
struct ReadRows {
    std::vector<std::string_view> titles; ///< with units: "speed [km/h]"
    std::size_t count = 0;
    std::function<void(std::size_t row, std::span<double> values)> get; ///< one value per title
    std::string file;                                                   ///< where they come from
};
