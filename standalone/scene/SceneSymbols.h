// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Participants from above.
#pragma once

#include "host/CDC.h"
#include "host/CKfzDaten.h"

namespace scene
{

/// A place in a drawing: pixels, the heading in rad counter-clockwise as seen.
struct SymbolPlace {
    CDPoint centre{};
    double heading = 0.0;
    double length = 0.0;
    double width = 0.0;
};

struct SymbolColors {
    COLORREF body;
    COLORREF line;
    COLORREF glass;     ///< windows, saddles and hair
    bool filled = true; ///< else outlines only, dashed
};

/// To scale; what is too small to be recognised becomes simpler.
void DrawParticipant(CDC& dc, CKfzDaten::Type type, const SymbolPlace& place, const SymbolColors& colors);

} // namespace scene
