// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Braking of a motorcycle whose deceleration rises exponentially, a·(1 - exp(-t/τ)), and the equivalent sequence of
// reaction, linear rise and full braking.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/dynamics/Phasenfolge.h"

class CMRBremsDat final : public CDlgData
{
  public:
    enum class Ausgang {
        berechnet,
        ohneLineares, ///< no linear model drives the same path in the same time; its quantities stay
    };
    /// Why the present results are to be doubted.
    enum class Vorbehalt {
        keiner,
        spurverzoegerung, ///< not below the full-braking deceleration
        ohneAnstieg,      ///< the time constant is 0
        spurZuKurz,       ///< no braking time beyond the start of the trace was found
        ohneLineares,
        negativeDauer, ///< a duration of the linear model is negative
    };
    /// The equation for the normalised braking time x = T/τ; all quantities are dimensionless.
    struct Gleichung {
        double r; ///< share of the full deceleration that is missing when the trace starts
        double l; ///< normalised time at which the trace starts, ln(1/r)
        double h; ///< l²/2
        double s; ///< normalised length of the trace
        double w; ///< normalised end speed
        /// Positive while the path from the start of the trace up to the time x is shorter than the trace.
        double operator()(double x) const;
    };

    explicit CMRBremsDat(CRuvData& data) : CDlgData(data) {}

    double vollverzoegerung = 0.0;       ///< a, m/s²
    double spurverzoegerung = 0.0;       ///< a₀ at the start of the trace, m/s²
    double erreichteVerzoegerung = 0.0;  ///< result, m/s²
    double endgeschwindigkeit = 0.0;     ///< vₑ, km/h
    double anfangsgeschwindigkeit = 0.0; ///< result: v₀, km/h
    double bremszeit = 0.0;              ///< result: braking time after the build-up, s
    double schwelldauer = 0.0;           ///< result: build-up time, s
    double spurlaenge = 0.0;             ///< s, m
    double schwellweg = 0.0;             ///< result: build-up distance, m
    double reaktionspunktWeg = 0.0;      ///< result: from the reaction to the end, m
    double reaktionspunktZeit = 0.0;     ///< result, s
    double anstieg = 0.0;                ///< time constant τ, s
    double reaktionsdauer = 0.0;         ///< t_R, s
    double bremsSchwellweg = 0.0;        ///< result, m
    double bremsSchwellzeit = 0.0;       ///< result: T, s
    double linVerzoegerung = 0.0;        ///< a_L of the linear model, m/s²; 0: as the full-braking deceleration
    double linGeschwindigkeit = 0.0;     ///< result: speed at the end of the linear build-up, km/h
    double linBremszeit = 0.0;           ///< result, s
    double linSchwelldauer = 0.0;        ///< result, s
    double linBremsweg = 0.0;            ///< result, m
    double linSchwellweg = 0.0;          ///< result, m
    double linReaktionsdauer = 0.0;      ///< result, s
    std::int64_t fahrzeug = 0;
    std::int64_t phase = 0; ///< column of the braking phase, 0 = none chosen
    int berechnet = 0;      ///< 1: a calculation has succeeded

    RecordFields Felder();

    /// Sets everything to zero but the choice of vehicle and phase and whether a calculation has succeeded.
    void Loeschen();
    /// Another vehicle was chosen: its selected column is taken.
    void FahrzeugGewechselt();

    // Defaults that follow what was typed.
    void VollverzoegerungEingegeben();
    void SpurverzoegerungEingegeben();

    Ausgang Rechnen();
    Vorbehalt PruefeErgebnis(Ausgang ausgang) const;
    /// Hands the linear model to the chosen vehicle.
    Uebertragungsbefund Uebertragen();

    /// The last of the decimal steps 1, 0.1, ... 1e-10 from 0 on, tried in this order, at which the equation is still
    /// positive; 0 when it is so at none. Not a number when it stays positive so long that the last decimal is lost.
    static double Loese(const Gleichung& gleichung);

  private:
    bool LineareGroessen(double v0, double vE);
};
