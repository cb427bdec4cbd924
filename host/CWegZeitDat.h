// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Path-time data of a vehicle: phases counted backwards in time from the collision.
#pragma once

#include "host/CDPoint.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CRuvData;
class CWnd;

enum class PhasenArt : int {
    unused = 0,
    braking = 2,
    accelerating = 3,
    threshold = 4,
    reaction = 5,
    constantSpeed = 7,
    noTime = 12,
    turning = 13,
    rolling = 15,
    halfSightMarker = 16,
};

/// German name of a kind, as phase lists show it.
const char* PhasenArtName(PhasenArt art);

/// Turning side of a phase.
inline constexpr int kSeiteLinks = 0;
inline constexpr int kSeiteRechts = 1;
inline constexpr int kSeiteUnbestimmt = 2;

/// One phase. "End" is nearer the collision. Zero means empty for everything but the speeds.
struct CWegZeitSpalte {
    PhasenArt art = PhasenArt::unused;
    int unterArt = 0;
    double vEnd = 0.0;         ///< km/h
    double vAnf = 0.0;         ///< km/h
    double verz = 0.0;         ///< deceleration, m/s², positive brakes
    double zeit = 0.0;         ///< s
    double weg = 0.0;          ///< m
    double sumZeit = 0.0;      ///< s, from the collision to the phase's start
    double sumWeg = 0.0;       ///< m, from the collision to the phase's start
    double schwellDauer = 0.0; ///< s
    int seite = kSeiteUnbestimmt;
    double radiusAnf = 0.0;    ///< m, 0 = straight
    double radiusEnd = 0.0;    ///< m, 0 = straight
    double lenkZeit = 0.0;     ///< s
    double richtung = 1.0;     ///< 1 forward, -1 reverse
    std::vector<CDPoint> bahn; ///< trajectory, cm
    double endWeg = 0.0;       ///< cm along the trajectory
    double endGier = 0.0;      ///< rad
    std::string weiteres{};    ///< what a newer program's case file says of the phase besides, as it stood there

    bool IsUsed() const { return art != PhasenArt::unused; }
    friend bool operator==(const CWegZeitSpalte&, const CWegZeitSpalte&) = default;
};

class CWegZeitDat
{
  public:
    static constexpr std::size_t kSpalten = 48;
    /// Columns before this one are the collision and what follows it.
    static constexpr std::size_t kErsteSpalte = 3;
    /// The collision itself: a phase without time, vAnf before and vEnd after it, bahn the last points of the way to
    /// it, endGier the direction of motion after it.
    static constexpr std::size_t kKollisionsSpalte = 2;

    /// Marker of the vehicles that meet in the half sight distance.
    static constexpr std::int64_t kMarkeHalbeSicht = 16;
    /// Mode of a driving line whose points are in fahrlinie.
    static constexpr std::int64_t kBahnAusFahrdaten = 20;

    std::array<CWegZeitSpalte, kSpalten> spalten{};
    /// The column that is marked as selected.
    std::size_t selected = kErsteSpalte;
    /// Mode of the last reaction-and-braking calculation, 0 = none.
    std::int64_t mode = 0;
    /// What a mask marked the record as (kMarkeHalbeSicht), 0 = nothing.
    std::int64_t marke = 0;
    /// How the driving line came about: 0 = drawn, 5 = from a collision configuration, kBahnAusFahrdaten.
    std::int64_t bahnModus = 0;
    /// The driving line as recorded driving data gave it, cm from its first point. Empty without such data.
    std::vector<CDPoint> fahrlinie{};
    CDPoint endPunkt{};       ///< where the participant came to rest, cm
    double endRichtung = 0.0; ///< heading at rest, rad

    /// First column that is unused, from kErsteSpalte on; kSpalten when all are used.
    std::size_t FirstFree() const;

    friend bool operator==(const CWegZeitDat&, const CWegZeitDat&) = default;
};

/// The working copy that can compute.
class CWegZeitRechDat : public CWegZeitDat
{
  public:
    /// Inserts an unused column before `column`; the last one falls off. False out of range (below kErsteSpalte too)
    /// or when it is in use. The selection stays with its phase, here and in Entfernen.
    bool Einfuegen(std::size_t column);
    /// Removes `column`; the later ones move up. False out of range.
    bool Entfernen(std::size_t column);
    /// Empties the columns from `first` to `last` (both included).
    void Loeschen(std::size_t first, std::size_t last = kSpalten - 1);

    /// Completes the used columns from kErsteSpalte on, in order, chains their speeds and sums time and path.
    ///
    /// - A column whose predecessor is used ends at the predecessor's start speed.
    /// - A phase that is complete and obeys its motion law (to 1e-6 of its speeds and path) keeps every bit. When only
    ///   the chained end speed disagrees, time and deceleration stay, start speed and path follow.
    /// - In any other phase a time, deceleration or path of 0 is missing and follows from those given; of more than
    ///   are needed, time and deceleration go before path, and path before start speed. A start speed counts as given
    ///   unless it is 0 in a phase other than an accelerating one. A deceleration that nothing determines is 0. An
    ///   accelerating or reaction phase without predecessor that ends at 0 lacks its end speed and is completed from
    ///   its start.
    /// - Laws: constant deceleration; threshold: deceleration rising linearly from that of the next column (0 when it
    ///   is unused) to the phase's own; constant speed; no time: time 0, the speeds may differ.
    /// - What cannot be completed, for lack or contradiction of quantities, stays as entered with time 0; a start
    ///   speed of 0 becomes the end speed, so that the chain goes on.
    /// - Quantities that are not numbers, or beyond 1e9, count as 0 and are cleared; none is left behind.
    void Berechnung();
    /// Writes the copy into the case under `vehicle` and tells open masks and views. Non-zero on success.
    int Uebertragen(CRuvData& data, std::size_t vehicle, CWnd* parent, int flag) const;
};
