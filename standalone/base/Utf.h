// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

namespace base
{

/// UTF-16 code units to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf8FromUtf16(std::span<const char16_t> units);

} // namespace base
