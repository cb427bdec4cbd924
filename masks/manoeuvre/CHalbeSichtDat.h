// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Two vehicles that come into sight of each other, react, brake and collide: how fast they were, and how fast each
// could have been to stop within half the sight distance.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"

#include <array>

class CHalbeSichtDat final : public CDlgData
{
  public:
    /// One of the two vehicles. Speeds in km/h.
    struct Teilnehmer {
        std::int64_t fahrzeug = 0;
        std::int64_t phase = 0;        ///< column of its braking phase, 0 = none chosen
        double kollGeschw = 0.0;       ///< given
        double verzoegerung = 0.0;     ///< given, m/s², 0 = does not brake
        double schwelldauer = 0.0;     ///< given, s
        double reaktionsdauer = 0.0;   ///< given, s
        double gesamtweg = 0.0;        ///< from the sighting to the collision, m
        double fehlbremsstrecke = 0.0; ///< missing to a stop at the collision, m
        double anfangsgeschw = 0.0;
        double distanz = 0.0;          ///< half the sight distance less the total path, m
        double grenzgeschw = 0.0;      ///< from which it stops within half the sight distance, 0 = from none
        double anhalteweg = 0.0;       ///< m
        double anhalteDifferenz = 0.0; ///< half the sight distance less the stopping distance, m
        // The phases of the way to the collision.
        double reaktionsweg = 0.0; ///< m
        double schwellweg = 0.0;   ///< m
        double schwellEndgeschw = 0.0;
        double bremsweg = 0.0;   ///< m
        double bremsdauer = 0.0; ///< s

        bool Bremst() const { return verzoegerung >= 1e-9; }
    };
    enum class Ausgang {
        berechnet,
        keineLoesung, ///< no initial speeds lead to this collision; the results are the former ones
        unmoeglich,   ///< a quantity is negative where it must not be, or leaves the range of numbers; likewise
    };
    /// Where the results do not describe what happens.
    struct Vorbehalt {
        std::array<bool, 2> vorVollbremsung{}; ///< the collision comes before this vehicle brakes fully
        std::array<bool, 2> bremstNicht{};     ///< its stopping distance is only its path
        std::array<bool, 2> negativeGeschwindigkeit{};
        bool SindUebertragbar() const
        {
            return !vorVollbremsung[0] && !vorVollbremsung[1] && !negativeGeschwindigkeit[0] &&
                   !negativeGeschwindigkeit[1];
        }
    };
    enum class Uebertragung {
        erfolgt,
        geaendert,    ///< written, but other phases of a vehicle made other speeds or paths of it
        keinFahrzeug, ///< one of them is none of the case, or both are the same; nothing was written, here and below
        keinPlatz,
        nichtBerechnet, ///< there is no result that describes what happens
    };

    explicit CHalbeSichtDat(CRuvData& data) : CDlgData(data) {}

    double sichtweite = 0.0;      ///< m
    double summeKollGeschw = 0.0; ///< km/h, 0 = the collision speeds are free of each other
    Teilnehmer a;
    Teilnehmer b;
    double gesamtzeit = 0.0;    ///< from the sighting to the collision, s
    std::int32_t berechnet = 0; ///< 1: calculated since the phases were read
    std::int32_t ergebnis = 0;  ///< 1: the last calculation succeeded

    RecordFields Felder();

    /// State at opening: the two vehicles marked for this calculation in the case, with their phases.
    void Oeffne();
    /// Clears everything but the choice of the vehicles; threshold and reaction times become the settings'.
    void Loeschen();
    void FahrzeugGewechselt(Teilnehmer& seite);
    /// Takes deceleration, threshold and reaction time and collision speed from the chosen column on.
    void LeseSpalte(Teilnehmer& seite);
    /// One of the collision speeds changed: the other follows the sum, or the sum follows both.
    void KollGeschwGeaendert(const Teilnehmer& seite);
    void SummeGeaendert();

    Ausgang Rechnen();
    Vorbehalt PruefeErgebnis() const;
    /// Writes both vehicles' phases into the case and marks the vehicles.
    Uebertragung Uebertragen();
};
