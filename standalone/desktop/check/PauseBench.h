// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace desktop
{

class MainWindow;

/// Measures how long the interface computes at a stretch while a report is written and a picture is read; prints it
/// with the limit. False when that is exceeded or one of them fails. Replaces the case.
bool RunPauseBench(MainWindow& window);

} // namespace desktop
