// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Two texts, apart at the first zero byte: each is turned into the other.
#include "base/TextDiff.h"
#include "casefile/CaseDifferences.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view all(reinterpret_cast<const char*>(bytes), size);
    const std::size_t middle = std::min(all.find('\0'), all.size());
    const std::string_view before = all.substr(0, middle);
    const std::string_view after = all.substr(std::min(middle + 1, all.size()));
    const base::TextDiff diff(before, after);
    RUV_ASSERT(diff.Forward(before) == after);
    RUV_ASSERT(diff.Backward(after) == before);
    RUV_ASSERT(diff.IsEmpty() == (before == after));
    if (before == after)
        RUV_ASSERT(casefile::CaseDifferences(before, after).empty());
    return 0;
}
