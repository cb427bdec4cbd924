// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

class QElapsedTimer;

namespace desktop
{

class MainWindow;

/// Measures how long the program took to its first usable window (from `sinceStart`, begun in main), how long masks
/// take to open, painted, and a full case to follow a change; prints all with their limits. False when a limit is
/// exceeded. Replaces the case.
bool RunBench(MainWindow& window, const QElapsedTimer& sinceStart);

} // namespace desktop
