// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The colours of diagrams and drawings of masks, by the settings.
#pragma once

#include "host/HostTypes.h"

class CRuvCfg;

namespace chart
{

struct Diagrammfarben {
    COLORREF hintergrund;
    COLORREF zeichenflaeche; ///< inside the axes
    COLORREF raster;
    COLORREF rahmen;
    COLORREF schrift;

    /// The colours of the settings; on a dark ground grid and letters are lightened.
    static Diagrammfarben Aus(const CRuvCfg& cfg);
};

bool IstDunkel(COLORREF grund);
/// From one colour (0) to another (1).
COLORREF Mische(COLORREF von, COLORREF zu, double anteil);
/// The colour, lightened or darkened where it would hardly be seen on the ground.
COLORREF AufGrund(COLORREF farbe, COLORREF grund);

} // namespace chart
