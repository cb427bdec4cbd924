// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever the bytes are: a reason, or a case that can be written and read again. Seeds: examples/*.json.
#include "casefile/CaseFile.h"
#include "host/Assert.h"
#include "host/CRuvData.h"

#include <cstdint>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto data = std::make_unique<CRuvData>();
    const casefile::CaseResult result = casefile::CaseFromJson(text, *data);
    if (!result) {
        RUV_ASSERT(!result.Text().empty());
        return 0;
    }
    std::string written;
    std::string again;
    RUV_ASSERT(casefile::CaseToJson(*data, written));
    const auto read = std::make_unique<CRuvData>();
    RUV_ASSERT(casefile::CaseFromJson(written, *read));
    RUV_ASSERT(casefile::CaseToJson(*read, again));
    RUV_ASSERT(again == written);
    return 0;
}
