// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whether a load on a vehicle is secured: friction, form locking and lashing against the accelerations of the standard
// and against those of the vehicle's own driving.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"

#include <cstdint>
#include <optional>

/// What the user enters, with its defaults.
struct LadungEingaben {
    enum Zurrart : std::int64_t { niederzurren = 0, diagonalzurren = 1 };

    std::int64_t fahrzeug = -1;   ///< vehicle index, -1 = none
    double nutzlast = 0.0;        ///< payload of the vehicle, kg
    double ladung = 0.0;          ///< kg
    std::int64_t reibungWahl = 0; ///< pair of materials
    double reibungsbeiwert = 0.2;
    double zurrpunktbelastbarkeit = 100000.0; ///< N
    std::uint8_t formschlussVorne = 0;
    std::uint8_t formschlussHinten = 0;
    std::uint8_t formschlussSeitlich = 0;
    std::int64_t formschlussVorneProzent = 40; ///< of the payload
    std::int64_t formschlussHintenProzent = 40;
    std::int64_t formschlussSeitlichProzent = 30;
    double formschlussVorneGrenze = 50000.0; ///< N, 0 = none
    double formschlussHintenGrenze = 50000.0;
    double formschlussSeitlichGrenze = 50000.0;
    double beschleunigungVorne = 8.0; ///< m/s²
    double beschleunigungHinten = 5.0;
    double beschleunigungQuer = 5.0;
    double beschleunigungVertikal = 10.0;
    double zurrkraftLC = 5000.0;  ///< largest force of a lashing, N
    double zurrkraftSTF = 5000.0; ///< pre-tension of a lashing, N
    std::int64_t zurrart = niederzurren;
    std::int64_t zurrungen = 4;
    double zurrwinkel = 75.0; ///< °
    std::int64_t uebertragungWahl = 1;
    double uebertragungsbeiwert = 1.5;
    double reibungGurt = 0.0;
    double diagonalAlpha = 45.0; ///< to the loading area, °
    double diagonalBeta = 45.0;  ///< to the driving direction, °
    double reibungLaengs = 0.0;
    double reibungQuer = 0.0;
    double gefaelleLaengs = 0.0; ///< %
    double gefaelleQuer = 0.0;   ///< %
};

class CLadungDat final : public CDlgData, public LadungEingaben
{
  public:
    explicit CLadungDat(CRuvData& data) : CDlgData(data) {}

    double sicherungskraft = 0.0;            ///< to the front, N
    double reibungskraftOhne = 0.0;          ///< without lashing, N
    double reibungskraftZurrung = 0.0;       ///< N
    double reibungskraftGesamt = 0.0;        ///< N
    double beschleunigungskraftLaengs = 0.0; ///< N
    double beschleunigungskraftQuer = 0.0;   ///< N
    // What is still missing, N: the force in each direction and the force of each lashing. Negative is over-secured.
    double normKraftVorne = 0.0;
    double normKraftHinten = 0.0;
    double normKraftSeitlich = 0.0;
    double normZurrkraftVorne = 0.0;
    double normZurrkraftHinten = 0.0;
    double normZurrkraftSeitlich = 0.0;
    double kinKraftVorne = 0.0;
    double kinKraftHinten = 0.0;
    double kinKraftSeitlich = 0.0;
    double kinZurrkraftVorne = 0.0;
    double kinZurrkraftHinten = 0.0;
    double kinZurrkraftSeitlich = 0.0;
    // Lashings needed, a whole number; not a number or infinite when no number of them is enough.
    double normZurrungen = 0.0;
    double kinZurrungen = 0.0;
    std::int32_t ergebnisSteht = 0;

    /// Missing force by the magnitude of a negative acceleration force, N.
    std::optional<double> fehltLaengs;
    std::optional<double> fehltQuer;

    RecordFields Felder();

    LadungEingaben& Eingaben() { return *this; }

    // After the named choice was made.
    void FahrzeugGewaehlt();
    void ReibungGewaehlt();
    void UebertragungGewaehlt();

    void Rechnen();

  private:
    struct Kraefte {
        double vorne;
        double hinten;
        double seitlich;
    };

    Kraefte Formschluss() const;
    void RechneNiederzurren(const Kraefte& norm, const Kraefte& formschluss);
    void RechneDiagonal(const Kraefte& norm, const Kraefte& formschluss);
    void NenneFehlbetrag(const Kraefte& formschluss, double gehaltenLaengs, double gehaltenQuer);
    double Anzahl(double vorne, double hinten, double seitlich, double faktor) const;
};
