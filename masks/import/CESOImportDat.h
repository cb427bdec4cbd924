// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Record of mask 486: five measured curves, aligned to the first, and what their shifts say of the speed.
#pragma once

#include "host/CDlgData.h"
#include "host/NumberTable.h"
#include "host/RecordField.h"
#include "masks/import/ESOKorrelation.h"
#include "masks/import/ESOLeser.h"

#include <array>
#include <limits>
#include <string>

class CESOImportDat final : public CDlgData
{
  public:
    explicit CESOImportDat(CRuvData& data) : CDlgData(data) {}

    static constexpr double kKeine = std::numeric_limits<double>::quiet_NaN();
    static constexpr double kVerlaesslich = 0.9; ///< r below it is not
    enum Paar : std::size_t { paar12, paar23, paar13, kPaare };

    // What the case keeps.
    double abstand12 = 0.25;  ///< m, between the sensors of curves 1 and 2
    double abstand23 = 0.25;  ///< m
    double abtastzeit = 0.01; ///< s, between two samples

    // Of the pairs 1–2, 2–3 and 1–3; not-a-number for none.
    std::array<double, kPaare> verschiebung{kKeine, kKeine, kKeine}; ///< samples; positive: the second comes later
    std::array<double, kPaare> r{kKeine, kKeine, kKeine};            ///< there; 0 when no shift has a positive one
    std::array<double, kPaare> v{kKeine, kKeine, kKeine};            ///< km/h, with the sign of the shift
    std::array<double, kPaare> vVon{kKeine, kKeine, kKeine};         ///< km/h, when the shift is half a sample off
    std::array<double, kPaare> vBis{kKeine, kKeine, kKeine};         ///< km/h
    std::array<double, kPaare> vParabel{kKeine, kKeine, kKeine}; ///< km/h, of the peak of a parabola through three r
    double abstand13 = 0.5;                                      ///< m, the sum of the others

    // What is shown of the curves.
    std::uint8_t korrelieren = 0;   ///< aligned curves, otherwise raw ones
    std::uint8_t residuen = 0;      ///< also the aligned curves 2 to 5 less the first
    std::int64_t skalierung = 100;  ///< of the picture, %
    std::int64_t linienstaerke = 2; ///< px
    double bereichVon = kKeine;     ///< s
    double bereichBis = kKeine;
    std::int64_t zeilen = 0; ///< samples of each curve
    std::int64_t aufbau = 0; ///< ESOAufbau of the file

    RecordFields Felder();
    void Laden();
    void Merken();

    enum class Lesung {
        gelesen,
        nichtGeoeffnet,
        falschesFormat,
        zuLang,
        ohneWerte,
        abgebrochen, ///< everything is as before
    };
    /// Reads the file, aligns the curves and evaluates them. What was there before goes, unless it is cancelled.
    Lesung Lies(const std::string& utf8Pfad);
    /// Speeds from shifts, distances and sample interval.
    void Auswerten();

    bool IstLeer() const { return roh[0].empty(); }
    bool IstVerlaesslich(std::size_t paar) const { return r[paar] >= kVerlaesslich; }
    std::size_t FehlerZeile() const { return m_fehlerZeile; } ///< of a wrong format, counted from 1; 0: the whole
    char Trennzeichen() const { return m_trennzeichen; }
    const std::string& Pfad() const { return m_pfad; }

    ESOKurven roh{}; ///< relative to their first sample
    ESOKurven ausgerichtet{};
    std::array<std::int64_t, kESOKurven> verschiebungen{}; ///< of the curves against the first one

  private:
    void Leere();

    std::array<double, kPaare> m_spitze{kKeine, kKeine, kKeine}; // shift of the parabola's peak
    std::string m_pfad;
    std::size_t m_fehlerZeile = 0;
    char m_trennzeichen = ';';
};
