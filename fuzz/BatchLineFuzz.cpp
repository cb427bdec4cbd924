// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever a line of a batch is: one line of JSON answers it, with an exit code.
#include "base/JsonValue.h"
#include "cli/BatchLine.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view line(reinterpret_cast<const char*>(bytes), size);
    for (const std::string_view writing : {"draw:", "protocol:", "rows:", "\\u"}) // no files, nor in disguise
        if (line.find(writing) != std::string_view::npos)
            return 0;
    const std::string answer = cli::ComputeBatchLine(line);
    RUV_ASSERT(answer.find('\n') == std::string::npos);
    const base::JsonParsed parsed = base::ParseJson(answer);
    RUV_ASSERT(parsed.value.has_value());
    const auto* object = parsed.value->As<base::JsonValue::Object>();
    RUV_ASSERT(object != nullptr);
    const base::JsonValue* exit = base::Find(*object, "exit");
    RUV_ASSERT(exit != nullptr && exit->Integer() && *exit->Integer() >= 0 && *exit->Integer() <= 3);
    return 0;
}
