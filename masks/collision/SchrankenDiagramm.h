// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The diagram of the barrier method: speed over the distance behind the vehicle's front at rest.
#pragma once

#include "chart/Diagrammfarben.h"
#include "host/CDC.h"
#include "masks/collision/CSchrankenverfahrenDat.h"

#include <array>

namespace schranken
{

struct Farben : chart::Diagrammfarben {
    COLORREF bereich; ///< the common area
    COLORREF bereichRand;
    std::array<COLORREF, CSchrankenverfahrenDat::kSchranken> kurven;

    /// The colours of the settings; on a dark ground curves, grid and letters are lightened.
    static Farben Aus(const CRuvCfg& cfg);
};

/// "Verzögerung (Kühnel)" is drawn only above 3 m/s², a rule of display alone: it narrows the area at any deceleration.
bool ZeigtVerzoegerung(const CSchrankenverfahrenDat& dat);

/// Range of the axes in m and km/h.
struct Achsen {
    double wegVon;
    double wegBis;
    double tempoBis;
};
Achsen AchsenVon(const CSchrankenverfahrenDat& dat);

/// Draws the record into the whole of `dc`. `gross` is for a window of its own: wider pens and a legend.
void ZeichneDiagramm(CDC& dc, const CSchrankenverfahrenDat& dat, const Farben& farben, bool gross);

} // namespace schranken
