// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Path-time data of a vehicle: phases counted backwards in time from the collision.
#pragma once

#include "host/CDPoint.h"

#include <array>
#include <cstddef>
#include <cstdint>
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

    bool IsUsed() const { return art != PhasenArt::unused; }
    friend bool operator==(const CWegZeitSpalte&, const CWegZeitSpalte&) = default;
};

class CWegZeitDat
{
  public:
    static constexpr std::size_t kSpalten = 48;
    /// Columns before this one are the collision and what follows it.
    static constexpr std::size_t kErsteSpalte = 3;

    std::array<CWegZeitSpalte, kSpalten> spalten{};
    /// The column that is marked as selected.
    std::size_t selected = kErsteSpalte;
    /// Mode of the last reaction-and-braking calculation, 0 = none.
    std::int64_t mode = 0;

    /// First column that is unused, from kErsteSpalte on; kSpalten when all are used.
    std::size_t FirstFree() const;

    friend bool operator==(const CWegZeitDat&, const CWegZeitDat&) = default;
};

/// The working copy that can compute.
class CWegZeitRechDat : public CWegZeitDat
{
  public:
    /// Inserts an unused column before `column`; the last one falls off. False out of range or when it is in use.
    bool Einfuegen(std::size_t column);
    /// Removes `column`; the later ones move up.
    bool Entfernen(std::size_t column);
    /// Empties the columns from `first` to `last` (both included).
    void Loeschen(std::size_t first, std::size_t last = kSpalten - 1);
    /// Completes each phase from the quantities given, chains the speeds and sums time and path.
    void Berechnung();
    /// Writes the copy into the case under `vehicle` and tells open masks and views. Non-zero on success.
    int Uebertragen(CRuvData& data, std::size_t vehicle, CWnd* parent, int flag) const;
};
