// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Six independent rows of speed, distance and time at constant speed: two of them give the third.
#pragma once

#include "host/CDlgData.h"
#include "host/HostTypes.h"
#include "host/RecordField.h"

#include <array>
#include <cstdint>
#include <optional>

class CVkonstDat final : public CDlgData
{
  public:
    static constexpr std::size_t kZeilen = 6;
    using Werte = std::array<double, kZeilen>;
    using Merker = std::array<std::uint8_t, kZeilen>;
    using Edits = std::array<UINT, kZeilen>;

    // The edits of each quantity, row by row.
    static const Edits kKmh;
    static const Edits kMs;
    static const Edits kWeg;
    static const Edits kZeit;

    explicit CVkonstDat(CRuvData& data) : CDlgData(data) {}

    Werte geschwindigkeitKmh{}; ///< km/h
    Werte geschwindigkeitMs{};  ///< the same, m/s
    Werte weg{};                ///< m
    Werte zeit{};               ///< s
    // 1: the quantity was computed and not entered.
    Merker geschwindigkeitBerechnet{};
    Merker wegBerechnet{};
    Merker zeitBerechnet{};

    RecordFields Felder();

    /// Takes all rows from the case; what it does not keep is zero.
    void Laden();
    /// Lets the case keep all rows.
    void Merken();

    /// Sets every value and flag to zero.
    void Loeschen();

    // After the named quantity of a row was entered. A result beyond the numbers a double holds is not taken.
    void KmhGeaendert(std::size_t zeile);
    void MsGeaendert(std::size_t zeile);
    void WegGeaendert(std::size_t zeile);
    void ZeitGeaendert(std::size_t zeile);

    /// Completes every row from the quantities entered.
    void Rechnen();

    /// First row whose two speeds are not the same one.
    std::optional<std::size_t> UneinigeZeile() const;

  private:
    void RechneZeile(std::size_t zeile);
};
