// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Throw of an object with air drag and head wind: distances, heights, times and impact from the initial speed, or the
// initial speed from the distance of throw and slide.
#pragma once

#include "host/CDPoint.h"
#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/collision/Flug.h"

#include <cstdint>
#include <vector>

class CWurfWeiteDat final : public CDlgData
{
  public:
    /// What a user should know about the last calculation.
    enum class Befund {
        keiner,
        hoeheNichtErreicht, ///< the flight stays below the impact height
        ungenau,            ///< the drag changes the speed noticeably within one time step
        zielVerfehlt,       ///< the speed found lands `zielabweichung` away from the target
        unerreichbar,       ///< no speed up to the largest one reaches the target
        flugZuLang,         ///< still in the air after the longest flight, or the search took too many of them
        nichtBerechenbar,   ///< the drag would turn the speed around within one time step
    };
    /// Initial speeds end here, km/h.
    static constexpr double kGroessteGeschwindigkeit = 500.0;

    explicit CWurfWeiteDat(CRuvData& data);

    double anfangsgeschwindigkeit = 0.0;   ///< km/h
    double anfangsgeschwindigkeitMs = 0.0; ///< the same, m/s
    double aufprallhoehe = 0.0;            ///< above the start, m
    double wurfweite = 0.0;                ///< at the impact height, m
    double wurfweiteZeit = 0.0;            ///< s
    double flugwinkel = 0.0;               ///< °
    double maxWurfweite = 0.0;             ///< m
    double maxWurfweiteZeit = 0.0;         ///< s
    double wurfhoehe = 0.0;                ///< m
    double wurfhoeheZeit = 0.0;            ///< s
    double aufprallX = 0.0;                ///< m/s
    double aufprallZ = 0.0;                ///< downwards, m/s
    double luftverlust = 0.0;              ///< vertical speed lost to the air in the fall, m/s
    double masse = 0.0;                    ///< g, 0 = no drag
    double luftwiderstand = 0.0;           ///< drag coefficient cW
    double querschnitt = 0.0;              ///< cm²
    double luftdichte = 0.0;               ///< kg/m³
    double gegenwind = 0.0;                ///< km/h
    double rutschverzoegerung = 0.0;       ///< m/s²
    double wurfRutschweite = 0.0;          ///< m, the target in the inverse mode
    double aufprallwinkel = 0.0;           ///< °
    double anfangX = 0.0;                  ///< m/s
    double anfangZ = 0.0;                  ///< m/s
    std::int32_t ergebnisSteht = 0;
    std::int32_t rueckwaerts = 0; ///< the speed is looked for

    double ziel = 0.0;           ///< wurfRutschweite as it was entered, m
    double zielabweichung = 0.0; ///< distance found minus the target, m
    std::vector<CDPoint> bahn;   ///< path of the flight, m

    RecordFields Felder();

    /// Sets every field to its default; the air density is the case's.
    void Loeschen();

    // After the named quantity was entered.
    void KmhGeaendert();
    void MsGeaendert();
    void QuerschnittGeaendert();
    void ZielGeaendert();

    /// Computes in the mode that the last entry chose.
    Befund Rechnen();

  private:
    enum class Suche { gefunden, unerreichbar, zuLang };

    flug::Bedingung Bedingung() const;
    void SetzeGeschwindigkeit(double kmh);
    double WurfUndRutschen(double vx, double weite) const;
    Befund Fliege();
    Befund Vorwaerts();
    Befund Rueckwaerts();
    Suche SucheGeschwindigkeit(double& kmh) const;
    void NulleErgebnisse();
};
