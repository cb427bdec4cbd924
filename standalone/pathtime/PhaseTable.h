// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The phases of a vehicle as a table: columns are phases, rows their quantities.
#pragma once

#include "host/CWegZeitDat.h"
#include "krn/NumberEntry.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

class CRuvData;

namespace pathtime
{

enum class PhaseQuantity {
    startSpeed,
    endSpeed,
    deceleration,
    time,
    path,
    sumTime,
    sumPath,
    startRadius,
    endRadius,
    steeringTime,
};

struct PhaseRow {
    PhaseQuantity quantity;
    double CWegZeitSpalte::*value;
    krn::NumberFormat format;
    bool ofTurning; ///< of interest where a vehicle turns
};
std::span<const PhaseRow> PhaseRows();

/// The kinds an expert can choose, in the order they are offered.
std::span<const PhasenArt> OfferedKinds();

/// A phase that Berechnung could not complete: it lacks a quantity, or they contradict each other.
bool IsIncomplete(const CWegZeitSpalte& phase);
/// False for what follows from other phases or has no meaning for the kind.
bool IsEditable(const CWegZeitDat& phases, std::size_t column, PhaseQuantity quantity);

/// One vehicle's phases while they are edited. Each operation works on a copy, completes it by Berechnung, writes it
/// into the case (Uebertragen), with the column selected, and marks the vehicle's parameters as modified.
class PhaseTable
{
  public:
    PhaseTable(CRuvData& data, std::size_t vehicle) : m_data(data), m_vehicle(vehicle) {}

    const CWegZeitRechDat& Phases() const;
    /// Columns to be shown: the used ones from the collision on, gaps included, and a free one behind them.
    std::size_t EndColumn() const;

    /// Takes an entry. The value entered stays; of the others
    /// - deceleration and time stay when the end speed is entered;
    /// - deceleration stays when time or path is entered, otherwise the time, otherwise the path;
    /// - with a start speed the deceleration stays if the speed can be reached with it, otherwise the time;
    /// - with a deceleration the time stays, otherwise the path, otherwise the start speed.
    /// A phase that cannot be completed yet keeps what was entered; 0 is as good as no entry. Returns why the entry was
    /// refused, in German; empty when it was taken.
    std::string Enter(std::size_t column, PhaseQuantity quantity, const std::string& text);
    /// A new kind for the column; unused empties it.
    void SetKind(std::size_t column, PhasenArt kind);
    /// False when there is no room.
    bool Insert(std::size_t column);
    bool Remove(std::size_t column);

  private:
    void Store(CWegZeitRechDat phases, std::size_t column);

    CRuvData& m_data;
    std::size_t m_vehicle;
};

} // namespace pathtime
