// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever an argument of the command line is: an action, or words about what is expected.
#include "cli/Actions.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const cli::ParsedAction parsed = cli::ParseAction({reinterpret_cast<const char*>(bytes), size});
    RUV_ASSERT(parsed.action.has_value() == parsed.error.empty());
    return 0;
}
