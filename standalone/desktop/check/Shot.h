// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures of the workstation for documentation, and for looking at it.
#pragma once

#include "host/HostTypes.h"

#include <QString>

#include <vector>

namespace desktop
{

class MainWindow;

struct ShotRequest {
    QString folder;
    std::vector<UINT> numbers; ///< masks; none means all that are built, and everything else too
};

/// Writes PNG files: NNN.png for a mask with example values, NNN-2.png ... for its further pages, NNN-diagramm.png for
/// a diagram in a window of its own; main.png, main-hilfe.png, oeffner.png, einstellungen.png and hilfe.png for the
/// window, one per panel of the case. Names them on stdout. False, with the reason on stderr, when a file could not be
/// written or a mask is not there.
bool TakeShots(MainWindow& window, const ShotRequest& request);

} // namespace desktop
