// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reads the track points of a GPX file (GPX 1.0 and 1.1, topografix.com/gpx.asp) in one pass over its bytes.
#pragma once

#include "masks/import/GPXTrackPoint.h"

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

enum class GpxAusgang {
    gelesen,
    istFit,      ///< the bytes are a FIT file
    istUtf16,    ///< every character has two bytes
    keinGpx,     ///< no <gpx> in it
    abgebrochen, ///< the user does not want it any more
};

/// What a GPX file holds. Waypoints and routes are not read.
struct GpxInhalt {
    GpxAusgang ausgang = GpxAusgang::keinGpx;
    std::vector<GPXTrackPoint> punkte;      ///< of all tracks and segments, in the order of the file
    std::vector<std::size_t> nahtstellen{}; ///< first point of each further segment or track
    std::size_t spuren = 0;                 ///< <trk>
    std::size_t unvollstaendig = 0;         ///< points that the file does not end
    std::size_t unmoeglich = 0;             ///< points with a latitude beyond 90° or a longitude beyond 360°
    bool vollstaendig = false;              ///< </gpx> was met
};

/// Never fails but by what `ausgang` says. `weiter` gets the part done now and then; false stops.
///
/// Elevation and time are taken from the point itself, heart rate, cadence and temperature from anywhere inside it. Of
/// a time, the calendar fields hold the text; a zone offset ("+01:00") is kept beside them, none is UTC. Memory stays
/// below three times that of the bytes, as long as the points have a time.
GpxInhalt LiesGpx(std::string_view bytes, const std::function<bool(double)>& weiter = {});
