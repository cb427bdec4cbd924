// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <cstdlib>

/// Broken invariants end the program, in release builds too: a wrong number must not be shown.
#define RUV_ASSERT(condition)                                                                                          \
    ((condition)                                                                                                       \
         ? static_cast<void>(0)                                                                                        \
         : (std::fprintf(stderr, "%s:%d: broken invariant: %s\n", __FILE__, __LINE__, #condition), std::abort()))
