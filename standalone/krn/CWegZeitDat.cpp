// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CWegZeitDat.h"

#include "host/Assert.h"
#include "krn/PhaseMotion.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

namespace
{

std::span<CWegZeitSpalte> BeforeCollision(CWegZeitDat& data)
{
    return std::span(data.spalten).subspan(CWegZeitDat::kErsteSpalte);
}

bool IsPhaseColumn(std::size_t column)
{
    return column >= CWegZeitDat::kErsteSpalte && column < CWegZeitDat::kSpalten;
}

/// One pass over the phases; true when something changed.
bool CompletePhases(std::span<CWegZeitSpalte> phases)
{
    bool changed = false;
    for (std::size_t i = 0; i < phases.size(); ++i) {
        if (!phases[i].IsUsed())
            continue;
        std::optional<double> chainedSpeed;
        if (i > 0 && phases[i - 1].IsUsed())
            chainedSpeed = phases[i - 1].vAnf;
        const bool hasEarlier = i + 1 < phases.size() && phases[i + 1].IsUsed();
        changed |= krn::CompletePhase(phases[i], chainedSpeed, hasEarlier ? phases[i + 1].verz : 0.0);
    }
    return changed;
}

} // namespace

std::size_t CWegZeitDat::FirstFree() const
{
    const auto free = std::find_if(spalten.begin() + kErsteSpalte, spalten.end(),
                                   [](const CWegZeitSpalte& column) { return !column.IsUsed(); });
    return static_cast<std::size_t>(free - spalten.begin());
}

bool CWegZeitRechDat::Einfuegen(std::size_t column)
{
    if (!IsPhaseColumn(column) || spalten.back().IsUsed())
        return false;
    const auto at = spalten.begin() + static_cast<std::ptrdiff_t>(column);
    std::rotate(at, spalten.end() - 1, spalten.end());
    *at = {};
    if (selected >= column && selected + 1 < kSpalten)
        ++selected;
    return true;
}

bool CWegZeitRechDat::Entfernen(std::size_t column)
{
    if (!IsPhaseColumn(column))
        return false;
    const auto at = spalten.begin() + static_cast<std::ptrdiff_t>(column);
    std::rotate(at, at + 1, spalten.end());
    spalten.back() = {};
    if (selected > column)
        --selected;
    return true;
}

void CWegZeitRechDat::Loeschen(std::size_t first, std::size_t last)
{
    RUV_ASSERT(last < kSpalten);
    for (std::size_t column = first; column <= last; ++column)
        spalten[column] = {};
}

void CWegZeitRechDat::Berechnung()
{
    const auto phases = BeforeCollision(*this);
    for (CWegZeitSpalte& phase : phases)
        krn::ClearImpossibleQuantities(phase);
    // More than one pass: the deceleration that a threshold phase rises from may itself be completed after it.
    for (std::size_t pass = 0; pass < kSpalten && CompletePhases(phases); ++pass) {
    }
    double time = 0.0;
    double path = 0.0;
    for (CWegZeitSpalte& phase : phases) {
        if (phase.IsUsed()) {
            phase.sumZeit = time += phase.zeit;
            phase.sumWeg = path += phase.weg;
        }
    }
}
