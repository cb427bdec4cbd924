// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace test
{

/// How many random cases a test goes through: so many, and a fifth of them under a sanitizer, where each takes ten to
/// twenty times as long and memory is looked at, not numbers.
constexpr int Rounds(int usual)
{
#ifdef __SANITIZE_ADDRESS__
    return usual / 5;
#else
    return usual;
#endif
}

} // namespace test
