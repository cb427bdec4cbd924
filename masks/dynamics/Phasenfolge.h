// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Hands a sequence of phases that a mask has computed to a vehicle of the case.
#pragma once

#include "host/CWegZeitDat.h"

#include <cstdint>
#include <optional>
#include <span>

/// One phase of a sequence. "End" is nearer the collision.
struct Folgephase {
    PhasenArt art = PhasenArt::unused;
    double vEnd = 0.0; ///< km/h
    double vAnf = 0.0; ///< km/h
    double zeit = 0.0; ///< s
    double weg = 0.0;  ///< m
    double verz = 0.0; ///< deceleration, m/s²
};

enum class Uebertragung {
    erfolgt,
    keinFahrzeug, ///< the vehicle is none of the case; nothing was written
    keinPlatz,    ///< the sequence would reach beyond the last column; nothing was written
};

/// The column a sequence starts at when the user chose `phase`: at least the first one before the collision.
std::int64_t ErsteSpalteDerFolge(std::int64_t phase);

/// Writes the phases backwards in time from column ErsteSpalteDerFolge(phase) on, which becomes the selected one, and
/// clears all later columns. `modus`, when given, is kept with the vehicle.
Uebertragung UebertrageFolge(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                             std::span<const Folgephase> folge, std::optional<std::int64_t> modus, CWnd* parent);

/// Lets the columns compute and writes them into the case. Announces (1342) that a modified parameter record is
/// overwritten, and marks it modified.
void UebertrageSpalten(CRuvData& data, std::size_t vehicle, CWegZeitRechDat& copy, CWnd* parent);

/// Whether the columns from `phase` on hold the phases as they were written: other phases around them may have made
/// other speeds and paths of them.
bool StehtImFall(const CRuvData& data, std::int64_t fahrzeug, std::int64_t phase, std::span<const Folgephase> folge);
