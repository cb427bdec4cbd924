// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace base
{

/// As documents name the program that made them.
inline constexpr const char* kProgramName = "Tavelin";
inline constexpr const char* kProgramVersion = "0.1";

} // namespace base
