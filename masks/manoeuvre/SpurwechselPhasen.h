// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The parts of a lane change as phases of the case.
#pragma once

#include "host/CWegZeitDat.h"
#include "masks/dynamics/Phasenfolge.h"

#include <optional>
#include <vector>

class SpurwechselKurve;
struct SpurwechselFahrt;

/// Sub-kind of the phases of a lane change: the one nearest the collision, and those before it in time.
inline constexpr int kLetzterSpurwechselteil = 458;
inline constexpr int kFruehererSpurwechselteil = 459;

/// One column for each part that takes time, the last one first. Each holds its piece of the way of the point
/// `mitte` (m) ahead of the rear axle; x along the road from the start of the lane change, y to the left (`seite` 1)
/// or mirrored (-1). `richtung` is 1 forward, -1 in reverse, where speeds and paths are negative.
std::vector<CWegZeitSpalte> SpurwechselSpalten(const SpurwechselKurve& kurve, const SpurwechselFahrt& fahrt,
                                               double mitte, double seite, double richtung);

/// Puts the columns before the phase in column ErsteSpalteDerFolge(phase), which they take the place of when it is
/// unused or the last part of a lane change written before, and lets the case compute. True when the phases there kept
/// what was written, false when those around them made something else of it, nothing when there is no room; then the
/// case is as it was. `fahrzeug` is one of the case.
std::optional<bool> SchreibeSpurwechsel(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                        const std::vector<CWegZeitSpalte>& spalten, CWnd* parent);
