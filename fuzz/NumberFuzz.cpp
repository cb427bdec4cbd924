// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever is typed into a number field: a finite number within the range that reads back as it is shown, or a refusal.
#include "base/NumberText.h"
#include "host/Assert.h"
#include "krn/NumberEntry.h"

#include <cmath>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    if (const auto number = base::ParseNumber(text)) {
        RUV_ASSERT(std::isfinite(*number));
        RUV_ASSERT(base::ParseNumber(base::ShortestDigits(*number)) == number);
        RUV_ASSERT(base::ParseNumber(base::FormatNumber(*number)) == number);
    }
    const krn::NumberFormat format{"Weg", -1000.0, 1000.0, 2, UnitType(unitType::length), {}};
    const krn::NumberEntry entry = krn::ReadNumber(text, format);
    if (entry.value)
        RUV_ASSERT(entry.refusal.empty() && *entry.value >= format.minimum && *entry.value <= format.maximum);
    static_cast<void>(base::ParseInteger(text));
    return 0;
}
