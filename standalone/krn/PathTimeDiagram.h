// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The path-time and the speed-time diagram of several vehicles over one time axis.
#pragma once

#include "host/CDC.h"
#include "krn/PathTimeCurve.h"

#include <span>
#include <string>
#include <vector>

class CRuvData;

namespace krn
{

struct DiagramPalette {
    COLORREF background;
    COLORREF plot; ///< inside the axes
    COLORREF grid;
    COLORREF axis;
    COLORREF text;
    COLORREF quietText; ///< numbers at the axes

    static DiagramPalette Light();
    static DiagramPalette Dark();
};

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
    DiagramPalette palette = DiagramPalette::Light();
};

/// Fills the whole drawing. Vehicles of nearly the same colour are told apart by dashes, and colours that would not
/// stand out from the background are shifted until they do.
void DrawPathTimeDiagram(CDC& dc, std::span<const DiagramVehicle> vehicles, const PathTimeDiagramOptions& options);

} // namespace krn
