// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The path-time and the speed-time diagram of several vehicles over one time axis.
#pragma once

#include "drawing/DiagramPalette.h"
#include "host/CDC.h"
#include "pathtime/PathTimeCurve.h"

#include <optional>
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
    std::size_t index = 0; ///< in the case
};

/// The case's vehicles that have phases before the collision, in their order.
std::vector<DiagramVehicle> DiagramVehicles(const CRuvData& data);

struct PathTimeDiagramOptions {
    std::string title;
    bool path = true;
    bool speed = true;
    bool phases = true;                  ///< bars that name each vehicle's phases
    std::optional<std::size_t> chosen{}; ///< index of the vehicle whose curves stand out
    drawing::DiagramPalette palette = drawing::DiagramPalette::Light();
};

/// Where the plots lie in a drawing, and the time axis they share. `start` is not negative when nothing is plotted.
struct DiagramArea {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    double start = 0.0; ///< s, at the left end; the right one is the collision

    bool IsEmpty() const { return !(start < 0.0); }
    double TimeAt(double x) const { return start * (right - x) / (right - left); }
};

/// The least height at which every curve can be read and no speed at the collision covers another. A much
/// lower drawing only says that there is no room.
double LeastDiagramHeight(double width, std::span<const DiagramVehicle> vehicles,
                          const PathTimeDiagramOptions& options);

/// Fills the whole drawing. Vehicles of nearly the same colour are told apart by dashes, and colours that would not
/// stand out from the background are shifted until they do.
DiagramArea DrawPathTimeDiagram(CDC& dc, std::span<const DiagramVehicle> vehicles,
                                const PathTimeDiagramOptions& options);

} // namespace pathtime
