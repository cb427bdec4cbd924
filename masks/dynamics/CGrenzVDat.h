// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Speed at which a vehicle reaches the limit of adhesion in a banked curve, and the curve's radius from its chord,
// height or arc length.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"

#include <optional>

class CGrenzVDat final : public CDlgData
{
  public:
    /// What the calculation of the limit speed came to.
    enum class Grenze {
        gefunden,
        ohneRadius,  ///< no curve radius
        ohneHaftung, ///< friction and cross-fall give no force towards the inside
        unbegrenzt,  ///< at no speed the vehicle slides outwards
        unbestimmt,  ///< a cross-fall of exactly 1 rad
    };
    /// How radius, chord, height and arc go together after one of them changed.
    enum class Kurve {
        stimmig,      ///< the others follow, or there is nothing yet to derive them from
        kurzerBogen,  ///< the height exceeds half the chord: the arc length is that of the shorter arc
        ueberKreis,   ///< the central angle of the arc exceeds a full circle
        sehneZuLang,  ///< the chord is longer than the diameter; the others stay
        bogenZuKurz,  ///< the arc is not longer than the chord; the others stay
        ohneErgebnis, ///< no radius or no central angle follows; the others stay
    };

    explicit CGrenzVDat(CRuvData& data) : CDlgData(data) {}

    double reibungsbeiwert = 0.0;             ///< coefficient of friction μ, dimensionless
    double quergefaelleGrad = 0.0;            ///< inward cross-fall in degrees
    double quergefaelleProzent = 0.0;         ///< the same in percent
    double reserve = 0.0;                     ///< not used
    double quergefaelle = 0.0;                ///< the same in rad; follows only changes of the two fields above
    double kurvenradius = 0.0;                ///< R, m
    double grenzgeschwindigkeit = 0.0;        ///< result, km/h
    double fuehlbareQuerbeschleunigung = 0.0; ///< result: in the plane of the road, m/s²
    double querbeschleunigung = 0.0;          ///< result: horizontal, v²/R, m/s²
    double sehne = 0.0;                       ///< chord length c, m
    double hoehe = 0.0;                       ///< height h of the arc over the chord, m
    double schraeglage = 0.0;                 ///< result: largest lean angle of a single-track vehicle, degrees
    double bogenlaenge = 0.0;                 ///< arc length b, m
    int berechnet = 0;                        ///< 1: the results belong to a calculation
    int radiusAusBogen = 0;                   ///< 1: R and h come from the arc length

    RecordFields Felder();

    /// Takes friction, cross-fall in degrees, R, c, h and the lean angle that the case keeps; the percent follow.
    void Laden();
    /// Lets the case keep these six values.
    void Merken();

    /// Sets every value to zero; the two flags stay.
    void Loeschen();

    void QuergefaelleAusGrad();
    void QuergefaelleAusProzent();

    // After the named quantity changed: derives the others.
    Kurve RadiusGeaendert();
    Kurve SehneGeaendert();
    Kurve HoeheGeaendert();
    Kurve BogenGeaendert();

    /// Computes limit speed and lateral accelerations, which keep their values when there is no limit speed, and from
    /// the lateral acceleration the lean angle.
    Grenze Rechnen();

    /// Speed below which the vehicle slides inwards, km/h: friction does not hold it on the cross-fall. 0 when it does.
    double RutschgrenzeInnen() const;

    /// Central angle (rad) over a chord and its arc (m), 0 < chord < arc: the first angle met in decimal steps at
    /// which the radii by chord and by arc agree to 0.1 mm. Nothing when the steps find none.
    static std::optional<double> Zentriwinkel(double sehne, double bogen);
};
