// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace desktop
{

class MainWindow;
class MaskWindow;

/// The barrier mask on its example with every barrier on, computed; null when it cannot be had. Replaces the case.
MaskWindow* OpenBarriers(MainWindow& window);

/// Drags an object of the barrier mask through the scene, with every barrier on: at each step the mask computes, scene
/// and diagram are painted. Prints how many steps a second are done; false when they are too few. The case is replaced.
bool RunSceneBench(MainWindow& window);

} // namespace desktop
