// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace cli
{

/// Exit codes of the program, and the "exit" of a batch line. Scripts depend on them.
enum ExitCode : int {
    exitDone = 0,
    exitRefused = 1, ///< the mask did not take an entry; everything else was done
    exitUsage = 2,   ///< a mistake in the call
    exitFile = 3,    ///< a file could not be read or written
    exitCrashed = 4, ///< batch only: the process that computed the line died
};

/// Why something ended early.
struct Failure {
    int exit = exitUsage;
    std::string text;
};

} // namespace cli
