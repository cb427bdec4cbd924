// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The motion laws behind CWegZeitRechDat::Berechnung, one phase at a time.
#pragma once

#include "host/CWegZeitDat.h"

#include <optional>

namespace krn
{

/// The largest speed (km/h), deceleration, time and path a phase can have; anything above, and whatever is not a
/// number, is cleared.
inline constexpr double kLargestPhaseQuantity = 1e9;

/// Sets quantities that are not numbers or beyond all bounds to 0 (empty). True when something changed.
bool ClearImpossibleQuantities(CWegZeitSpalte& phase);

/// Completes the quantities of a used phase by the rules of CWegZeitRechDat::Berechnung. `chainedSpeed` is the start
/// speed (km/h) of the phase nearer the collision, `earlierDeceleration` the deceleration (m/s²) of the phase before
/// this one in time, which a threshold phase rises from. True when something changed.
bool CompletePhase(CWegZeitSpalte& phase, std::optional<double> chainedSpeed, double earlierDeceleration);

} // namespace krn
