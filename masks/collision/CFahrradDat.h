// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whether a scrape mark can come from a leaning bicycle: heights it reaches, lean angles, curve and steering.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"

#include <cstdint>

class CFahrradDat final : public CDlgData
{
  public:
    /// Whether the band fits to the bicycle at all.
    enum class Befund {
        keiner,
        bandNegativ,    ///< the largest height lies below the smallest
        ohneNeigung,    ///< the band is wider than the part stands off: no lean gives it
        ueberZunahme,   ///< the band is wider than the part can rise
        unvollstaendig, ///< a divisor is zero: some results are no finite numbers
    };

    explicit CFahrradDat(CRuvData& data) : CDlgData(data) {}

    double hoeheMax = 0.0;        ///< of the mark, cm
    double hoeheMin = 0.0;        ///< of the mark, cm
    double laenge = 0.0;          ///< of the mark, cm
    double bauteilHoehe = 0.0;    ///< of the scraping part, cm
    double bauteilAbstand = 0.0;  ///< of the part from the centre plane, cm
    double radstand = 0.0;        ///< cm
    double durchmesser = 0.0;     ///< of the wheels, cm
    double pedalAbstand = 0.0;    ///< cm
    double geschwindigkeit = 0.0; ///< km/h
    double reibwert = 0.0;

    double bandbreite = 0.0;           ///< of the mark, cm
    double beschaedigungshoehe = 0.0;  ///< largest height the part can reach, cm
    double hoehenzunahme = 0.0;        ///< cm
    double neigungBeschaedigung = 0.0; ///< lean at the largest height, °
    double neigungKratzspur = 0.0;     ///< lean that the band needs, °; not a number when none does
    double kurvenradius = 0.0;         ///< cm
    double maxNeigungswinkel = 0.0;    ///< that the friction allows, °
    double radausstellhoehe = 0.0;     ///< how far the steered wheel stands out, cm
    double beruehrzeit = 0.0;          ///< s
    double lenkeinschlag = 0.0;        ///< °
    std::int32_t ergebnisSteht = 0;
    std::int64_t fahrradtyp = 0; ///< 0 = none chosen

    RecordFields Felder();

    void Loeschen();
    /// Fills the measures of the chosen type; none changes nothing.
    void TypGewaehlt();
    Befund Rechnen();

    // Verdicts.
    bool IstHoeheErreicht() const { return beschaedigungshoehe > hoeheMax; }
    bool IstNeigungUeberschritten() const { return neigungKratzspur > maxNeigungswinkel; }
    bool IstBeruehrungUnmoeglich() const { return radausstellhoehe > pedalAbstand; }
};
