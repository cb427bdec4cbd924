// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Memory.h"

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#endif

void RuvWillFill([[maybe_unused]] const void* block, [[maybe_unused]] std::size_t bytes)
{
#ifdef __linux__
    // Smaller blocks share their pages with others.
    constexpr std::size_t kSmallest = std::size_t{4} << 20U;
    if (bytes < kSmallest)
        return;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (begin + page - 1) / page * page;
    const std::uintptr_t last = (begin + bytes) / page * page;
    // Only advice: a system that does not take it loses time, nothing else.
    (void)madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}
