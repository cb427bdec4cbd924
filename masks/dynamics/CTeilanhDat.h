// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A vehicle reacts, possibly accelerating, lets its deceleration rise linearly and brakes.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/dynamics/Phasenfolge.h"

class CTeilanhDat final : public CDlgData
{
  public:
    /// Which two quantities are given; the others follow. The numbers are kept with the case.
    enum Modus : std::int64_t {
        nichtGewaehlt = 0,
        gesamtwegUndEndgeschw = 1,
        gesamtwegUndAnfangsgeschw = 2,
        beideGeschw = 3,
        bremswegUndEndgeschw = 4,
        bremswegUndAnfangsgeschw = 5,
    };
    /// What the look at the inputs before a calculation found.
    struct Pruefung {
        bool ohneVerzoegerung; ///< the deceleration is 0
        bool ohneEingabe;      ///< no speed and no path is given
        /// Nothing entered is worth a message, but is calculated; even without a deceleration.
        bool Bestanden() const { return !ohneVerzoegerung || ohneEingabe; }
    };
    enum class Ausgang {
        berechnet,
        keineBremszeit, ///< no real braking time
        reaktionZuLang, ///< reaction and threshold phase are longer than the total path
        unendlich,      ///< a quantity leaves the range of numbers; the former results stay
    };
    /// Where the results of a calculation are no braking that can be driven.
    enum class Vorbehalt { keiner, negativeBremszeit, negativeGeschwindigkeit };

    explicit CTeilanhDat(CRuvData& data) : CDlgData(data) {}

    // Speeds in km/h.
    double vA = 0.0;  ///< initial speed
    double vR = 0.0;  ///< speed after the reaction
    double vS = 0.0;  ///< speed after the threshold phase
    double vE = 0.0;  ///< end speed
    double tB = 0.0;  ///< braking time, s
    double tR = 0.0;  ///< reaction time, s
    double tS = 0.0;  ///< threshold time, s
    double tG = 0.0;  ///< total time, s
    double sB = 0.0;  ///< braking path, m
    double sR = 0.0;  ///< reaction path, m
    double sS = 0.0;  ///< threshold path, m
    double sG = 0.0;  ///< total path, m
    double sBS = 0.0; ///< braking plus threshold path, m
    double aR = 0.0;  ///< acceleration during the reaction, m/s²
    double aB = 0.0;  ///< deceleration, m/s², positive brakes
    std::int64_t fahrzeug = 0;
    std::int64_t phase = 0; ///< column of the braking phase, 0 = none chosen
    std::int64_t modus = nichtGewaehlt;
    std::int32_t berechnet = 0; ///< 1: the results belong to a calculation
    std::int32_t status = 0;    ///< 1 after clearing, a transfer, and a calculation without result
    std::int32_t ergebnis = 0;  ///< 1: the last calculation succeeded

    RecordFields Felder();

    /// State at opening: the selected column and the mode of the case's first vehicle.
    void Oeffne();
    /// Clears everything but the choice of the vehicle and whether a calculation has taken place.
    void Loeschen();
    /// Another vehicle was chosen: its mode and its selected column are taken, and the column is read.
    void FahrzeugGewechselt();
    /// Takes the quantities from the chosen column and those before it in time. Nothing without a vehicle.
    void LeseSpalte();

    /// Notes a failure when the inputs do not pass.
    Pruefung Pruefe();
    /// Computes what the mode asks for; chooses the mode by the given quantities when none is chosen, and keeps the
    /// choice when it led to a result.
    Ausgang Rechnen();
    Vorbehalt PruefeErgebnis() const;
    Uebertragungsbefund Uebertragen();

    // What the mode computes, so that it cannot be entered.
    bool IstAnfangsgeschwErgebnis() const { return modus == gesamtwegUndEndgeschw || modus == bremswegUndEndgeschw; }
    bool IstEndgeschwErgebnis() const
    {
        return modus == gesamtwegUndAnfangsgeschw || modus == bremswegUndAnfangsgeschw;
    }
    bool IstGesamtwegErgebnis() const { return modus >= beideGeschw; }
    bool IstBremswegErgebnis() const { return modus >= gesamtwegUndEndgeschw && modus <= beideGeschw; }

  private:
    Modus WaehleModus() const;
};
