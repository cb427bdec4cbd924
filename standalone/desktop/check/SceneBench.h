// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace desktop
{

class MainWindow;

/// Drags an object of the barrier mask through the scene, with every barrier on: at each step the mask computes, scene
/// and diagram are painted. Prints how many steps a second are done; false when they are too few. The case is replaced.
bool RunSceneBench(MainWindow& window);

} // namespace desktop
