// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Hands a sequence of phases that a mask has computed to a vehicle of the case.
#pragma once

#include "host/CWegZeitDat.h"
#include "host/NumberTable.h"

#include <array>
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
    int unterArt = 0;  ///< how the kind is driven, where the mask says it
};

enum class Uebertragung {
    erfolgt,
    keinFahrzeug, ///< the vehicle is none of the case; nothing was written
    keinPlatz,    ///< the sequence would reach beyond the last column; nothing was written
    // Only of UebertrageUndVergleiche:
    abweichend, ///< written, but beside the phases that were there the case holds another motion
    keineDauer, ///< no phase takes any time; nothing was written
    negativ,    ///< a time, path or speed is negative; nothing was written
    keineZahl,  ///< a quantity is not a number; nothing was written
};

/// Speed at the start of a sequence (km/h), its whole path (m) and time (s).
struct Folgewerte {
    double geschwindigkeit = 0.0;
    double weg = 0.0;
    double zeit = 0.0;
};

struct Uebertragungsbefund {
    Uebertragung ausgang = Uebertragung::erfolgt;
    Folgewerte imFall{}; ///< what the case holds of the sequence, and what was handed over
    Folgewerte gezeigt{};

    bool IstGeschrieben() const { return ausgang == Uebertragung::erfolgt || ausgang == Uebertragung::abweichend; }
    /// The string that says what is not as it should be, 0 for none, and the numbers in it: speed, path and time, each
    /// as the case holds it and as it was handed over.
    UINT Text() const;
    std::array<ShownNumber, 6> Zahlen() const;
};

/// The column a sequence starts at when the user chose `phase`: at least the first one before the collision.
std::int64_t ErsteSpalteDerFolge(std::int64_t phase);

/// Writes the quantities of a phase into its column; what the phase does not say stays.
void SchreibeSpalte(CWegZeitSpalte& spalte, const Folgephase& phase);

/// Compares phases that were written from column `column` on with what the columns hold now: other phases around them
/// may have made another motion of them.
Uebertragungsbefund VergleicheFolge(std::span<const Folgephase> folge, const CWegZeitDat& daten, std::size_t column);

/// Writes the phases backwards in time from column ErsteSpalteDerFolge(phase) on, which becomes the selected one, and
/// clears all later columns. `modus`, when given, is kept with the vehicle.
Uebertragung UebertrageFolge(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                             std::span<const Folgephase> folge, std::optional<std::int64_t> modus, CWnd* parent);

/// Lets the columns compute and writes them into the case. Announces (1342) that a modified parameter record is
/// overwritten, and marks it modified.
void UebertrageSpalten(CRuvData& data, std::size_t vehicle, CWegZeitRechDat& copy, CWnd* parent);

/// As UebertrageFolge, but nothing empty or impossible is written, and what the case holds afterwards is compared.
/// Times and paths that are negative by rounding alone count as 0.
Uebertragungsbefund UebertrageUndVergleiche(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                            std::span<const Folgephase> folge, std::optional<std::int64_t> modus,
                                            CWnd* parent);
