// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The ground of a track's map: tiles of a map of the world, laid into the local plane of the track.
#pragma once

#include "host/CDPoint.h"
#include "host/Tiles.h"

#include <cstdint>
#include <memory>

/// A point of the track, in the plane (m, east and north) and on the earth (°).
struct Kartenanker {
    CDPoint lage{};
    double breite = 0.0;
    double laenge = 0.0;
};

/// What of the plane is shown.
struct Kartenausschnitt {
    CDPoint mitte{};       ///< m
    double massstab = 1.0; ///< px per m
    int breite = 0;        ///< px
    int hoehe = 0;

    friend bool operator==(const Kartenausschnitt&, const Kartenausschnitt&) = default;
};

/// Where a point of the earth lies on the map of a zoom, in tiles from its upper left corner (Web Mercator projection,
/// EPSG:3857). Beyond 85.05° of latitude, y is outside 0..2^zoom.
CDPoint Kachelort(double breite, double laenge, int zoom);

/// The ground, each of its pixels taken from the place of the map it stands for; `leer` (0xFFRRGGBB) where no tile is
/// at hand. Null when none is at all. The plane is that of the track's coordinates: true at the anchor, and off by
/// about Δx · Δφ · tan φ at Δx east and Δφ (rad) north of it, because each step of the track counts with its own
/// latitude.
std::shared_ptr<const drawing::Bitmap> ZeichneKartengrund(CTileSource& quelle, const Kartenanker& anker,
                                                          const Kartenausschnitt& ausschnitt, std::uint32_t leer);
