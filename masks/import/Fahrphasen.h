// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Hands a stretch of recorded driving data to a vehicle of the case: as path-time phases and as a driving line.
#pragma once

#include "host/CDPoint.h"
#include "host/HostTypes.h"
#include "host/NumberTable.h"
#include "masks/dynamics/Phasenfolge.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class CRuvData;
class CWnd;

/// What a file does not hold.
inline constexpr double kNichtVorhanden = -1.0;

/// One recorded moment.
struct Fahrzeile {
    double zeitschritt = 0.0; ///< s since the moment before
    double kmh = kNichtVorhanden;
};

enum class Fahrtausgang {
    uebertragen,
    abweichend, ///< written, but the case holds another motion than was handed over
    // Nothing was written:
    keinFahrzeug,
    zuWenigZeilen,       ///< fewer than two
    zuWenigPunkte,       ///< fewer than two with coordinates
    keinPlatz,           ///< no column is left from the chosen phase on
    ohneGeschwindigkeit, ///< of a moment the speed is not known
    keineZahl,
    keineDauer, ///< the moments are all the same
};

/// What became of a transfer, in words for the user.
struct Fahrtbefund {
    Fahrtausgang ausgang = Fahrtausgang::uebertragen;
    UINT text = 0; ///< the string that says it; {0}, {1}, ... in it are the numbers
    std::vector<ShownNumber> zahlen{};

    bool IstGeschrieben() const { return ausgang == Fahrtausgang::uebertragen || ausgang == Fahrtausgang::abweichend; }
};

/// The most moments that phases from column `phase` on can hold, and the most points of a driving line.
std::size_t MeisteFahrzeilen(std::int64_t phase);
std::size_t MeisteBahnpunkte(std::int64_t phase);

/// One phase between each two moments, backwards in time: of n moments the last MeisteFahrzeilen(phase).
std::vector<Folgephase> Fahrphasen(std::span<const Fahrzeile> zeilen, std::int64_t phase);

/// Writes the phases of the moments from column `phase` (3 at least) on, clears all later columns and sets the
/// switches of the vehicle's parameter record.
Fahrtbefund UebertrageFahrphasen(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                 std::span<const Fahrzeile> zeilen, CWnd* parent);

/// Writes the last MeisteBahnpunkte(phase) positions (m) as the vehicle's driving line, which begins at 0, 0.
Fahrtbefund UebertrageFahrlinie(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                std::span<const CDPoint> positionen, CWnd* parent);
