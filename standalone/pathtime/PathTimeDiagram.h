// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The path-time and the speed-time diagram of several vehicles over one time axis.
#pragma once

#include "drawing/DiagramPalette.h"
#include "host/CDC.h"
#include "pathtime/PathTimeCurve.h"

#include <span>
#include <string>
#include <vector>

class CRuvData;

namespace pathtime
{

struct DiagramVehicle {
    std::string name;
    COLORREF color;
    PathTimeCurve curve;
};

/// The case's vehicles that have phases before the collision, in their order.
std::vector<DiagramVehicle> DiagramVehicles(const CRuvData& data);

struct PathTimeDiagramOptions {
    std::string title;
    bool path = true;
    bool speed = true;
    bool phases = true; ///< bars that name each vehicle's phases
    drawing::DiagramPalette palette = drawing::DiagramPalette::Light();
};

/// Fills the whole drawing. Vehicles of nearly the same colour are told apart by dashes, and colours that would not
/// stand out from the background are shifted until they do.
void DrawPathTimeDiagram(CDC& dc, std::span<const DiagramVehicle> vehicles, const PathTimeDiagramOptions& options);

} // namespace pathtime
