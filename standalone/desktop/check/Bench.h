// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <vector>

class QElapsedTimer;

namespace desktop
{

class MainWindow;

/// Measures how long the program took to its first usable window (from `sinceStart`, begun in main), how long masks
/// take to open, painted (with `numbers` only those), and a full case to follow an entry on every panel; prints all
/// with their limits. False when a limit is exceeded, or something is not shown. Replaces the case.
bool RunBench(MainWindow& window, const QElapsedTimer& sinceStart, const std::vector<UINT>& numbers);

} // namespace desktop
