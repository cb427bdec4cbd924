// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

/// A named field of a mask's record: one value or, with count > 1, an array of them. The unit is the record's own.
struct RecordField {
    std::string_view name;
    std::string_view unit;
    std::variant<double*, std::int64_t*, std::int32_t*, std::uint8_t*> value;
    std::size_t count = 1;
};

using RecordFields = std::vector<RecordField>;
