// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Utf.h"

namespace base
{

std::string Utf8FromUtf16(std::span<const char16_t> units)
{
    std::string out;
    out.reserve(units.size());
    const auto put = [&out](unsigned byte) { out.push_back(static_cast<char>(byte)); };
    for (std::size_t i = 0; i < units.size(); ++i) {
        unsigned code = units[i];
        if (code >= 0xD800 && code < 0xE000) {
            const bool pair = code < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
            code = pair ? 0x10000U + ((code - 0xD800U) << 10U) + (units[++i] - 0xDC00U) : 0xFFFDU;
        }
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xC0U | code >> 6U);
            put(0x80U | (code & 0x3FU));
        } else if (code < 0x10000) {
            put(0xE0U | code >> 12U);
            put(0x80U | (code >> 6U & 0x3FU));
            put(0x80U | (code & 0x3FU));
        } else {
            put(0xF0U | code >> 18U);
            put(0x80U | (code >> 12U & 0x3FU));
            put(0x80U | (code >> 6U & 0x3FU));
            put(0x80U | (code & 0x3FU));
        }
    }
    return out;
}

} // namespace base
