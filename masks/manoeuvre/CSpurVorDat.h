// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A lane change of a given offset and lateral acceleration while the speed changes: its length, path and time, and
// where the front of the vehicle has reached a given offset.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/manoeuvre/SpurwechselFahrt.h"
#include "masks/manoeuvre/SpurwechselKurve.h"

#include <optional>

class CSpurVorDat final : public CDlgData
{
  public:
    enum Richtung : std::int64_t { vorwaerts = 0, rueckwaerts = 1 };
    /// Where the speed is known. From the end the motion is followed backwards.
    enum Bekannt : std::int64_t { amAnfang = 0, amEnde = 1 };
    enum class Ausgang {
        berechnet,
        querbeschlFehlt,
        versatzFehlt,
        geschwFehlt,
        zuEngeKurve, ///< the vehicle cannot be steered round the curve
        unmoeglich,  ///< a quantity is negative where it must not be, or leaves the range of numbers
    };
    /// What a calculation has to say besides its outcome.
    struct Befund {
        Ausgang ausgang = Ausgang::berechnet;
        bool ersatzmasse = false;      ///< lengths of the vehicle were missing
        bool grenzeDarueber = false;   ///< the limit lies above the speed that falls; it was left out
        bool grenzeDarunter = false;   ///< the limit lies below the speed that rises; it was left out
        bool haelt = false;            ///< the vehicle would stop on the way; it brakes (or starts) later instead
        bool kurvenradius = false;     ///< the road's bend takes nearly all of the lateral acceleration
        bool nichtKonvergiert = false; ///< the length is not exact
        double weg = 0.0;              ///< m, and
        double differenz = 0.0;        ///< m, to go with `kurvenradius`
    };
    /// Lengths of the vehicle, m.
    struct Masse {
        double laenge;
        double radstand;
        double vorne; ///< front axle to front
    };
    enum class Uebertragung {
        erfolgt,
        geaendert,    ///< written, but the phases before and after made other speeds or paths of it
        keinFahrzeug, ///< nothing was written, here and below
        keinPlatz,
        nichtBerechnet, ///< there is no result, or it does not belong to the inputs
    };

    explicit CSpurVorDat(CRuvData& data) : CDlgData(data) {}

    std::int64_t fahrzeug = 0;
    std::int64_t phase = 0; ///< column of the last part of the lane change, 0 = none chosen
    std::int64_t richtung = vorwaerts;
    std::int64_t bekannt = amAnfang;
    // Speeds in km/h.
    double kurvenradius = 0.0;       ///< of the road, m, 0 = straight
    double seitenversatz = 0.0;      ///< m
    double querbeschleunigung = 0.0; ///< m/s²
    double anfangsgeschw = 0.0;      ///< the result when the speed is known at the end
    double endgeschw = 0.0;          ///< the result when the speed is known at the start
    double beschleunigung = 0.0;     ///< m/s²
    double geschwGrenze = 0.0;       ///< 0 = none
    double zeitverzug = 0.0;         ///< until the speed changes, s
    double zwischenFront = 0.0;      ///< offset of the front at the intermediate position, m
    // Results.
    double gierwinkel = 0.0;    ///< the greatest, °
    double weg = 0.0;           ///< along the curve, m
    double zeit = 0.0;          ///< s
    double laenge = 0.0;        ///< along the road, m
    double differenz = 0.0;     ///< path less length, m
    double zwischenWeg = 0.0;   ///< m
    double zwischenZeit = 0.0;  ///< s
    double zwischenHeck = 0.0;  ///< offset of the rear, m
    double zwischenGier = 0.0;  ///< °
    std::int32_t berechnet = 0; ///< 1: the last calculation succeeded

    RecordFields Felder();

    /// State at opening: everything empty but the offset of the intermediate position; the case's first vehicle.
    void Oeffne();
    /// Clears everything but the choice of the vehicle.
    void Loeschen();
    void FahrzeugGewechselt();

    /// Missing lengths of the vehicle are completed in the case, too.
    Befund Rechnen();
    /// Writes the parts of the last calculation into the case, from the chosen column on backwards in time. Parts of
    /// a lane change that begins there are replaced, other phases move.
    Uebertragung Uebertragen();

    // The last calculation, for the drawing; nothing before the first one and after a failure.
    struct Ergebnis {
        SpurwechselKurve kurve;
        SpurwechselFahrt fahrt;
        Masse masse;
        double breite;                  ///< of the vehicle, m, 0 = unknown
        double seite;                   ///< 1 to the left, -1 to the right
        std::optional<double> zwischen; ///< the intermediate position, m along the chord
        double groessteQuerbeschl;      ///< at the quarter points, in the speed driven there, m/s²
    };
    const std::optional<Ergebnis>& LetztesErgebnis() const { return m_ergebnis; }

  private:
    bool IstVorhanden() const;
    Masse LiesMasse(bool& ersetzt);

    std::optional<Ergebnis> m_ergebnis;
};
