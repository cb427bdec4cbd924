// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Numbers as users read and write them. Independent of the machine's locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace base
{

/// Rounded to `decimals` places with the user's decimal sign (RuvCfg), a comma by default; no negative zero.
/// Not-a-number is "—", infinities "∞" and "-∞".
std::string FormatNumber(double value, int decimals);
/// Shortest text that names the value, with the user's decimal sign.
std::string FormatNumber(double value);

/// The shortest digits that read back as the same number, with a point; for files and programs. The value is finite.
std::string ShortestDigits(double value);

/// A number with decimal comma or point, optional sign and exponent; blanks around it are allowed. Nothing for anything
/// else, not-a-number and infinities included.
std::optional<double> ParseNumber(std::string_view text);
std::optional<std::int64_t> ParseInteger(std::string_view text);

} // namespace base
