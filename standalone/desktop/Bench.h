// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QElapsedTimer;

namespace desktop
{

class MainWindow;

/// Measures how long the program took to its first usable window (from `sinceStart`, begun in main) and how long masks
/// take to open, painted; prints both with their limits. False when a limit is exceeded.
bool RunBench(MainWindow& window, const QElapsedTimer& sinceStart);

} // namespace desktop
