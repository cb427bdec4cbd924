// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Would the collision have been avoided at the permissible speed, and by what?
#pragma once

#include "host/CDPoint.h"
#include "host/CDlgData.h"
#include "host/HostTypes.h"
#include "host/RecordField.h"
#include "masks/dynamics/Phasenfolge.h"
#include "masks/manoeuvre/VermBewegung.h"

#include <array>
#include <optional>
#include <vector>

class CVermDat final : public CDlgData
{
  public:
    /// What a calculation has to say; message 1400 + number.
    enum class Meldung : UINT {
        keineBremsverzoegerung = 4,
        keineGeschwindigkeit = 5,
        gegnerHaeltVorher = 6, ///< temporal: before it has cleared the conflict area
        keineGegnergeschw = 7,
        keinGrenzwert = 8,
        gegnerSteht = 10,
        keineFehlbremsstrecke = 12,
        gegnerHaeltImKonflikt = 13, ///< the same, spatial
        gegnerBeschleunigt = 14,
        gegnerHatGeraeumt = 19,
        unendlich = 0, ///< a quantity is none of a drive: a negative duration or path, or beyond all measure
    };
    static bool IstFatal(Meldung meldung);
    /// Which variant of V a transfer writes.
    enum Version : std::int64_t { mitZulaessiger = 0, mitHoechster = 1, mitReaktionspunkt = 2, mitVerzoegerung = 3 };

    explicit CVermDat(CRuvData& data) : CDlgData(data) {}

    std::int64_t fahrzeug = 0;   ///< V
    std::int64_t phase = 0;      ///< column of V's earliest phase that counts, 0 = none
    std::int64_t ziel = 2;       ///< vehicle that receives V's variant
    std::int64_t gegner = 1;     ///< G
    std::int64_t zielGegner = 3; ///< vehicle that receives G's continued motion
    std::int64_t art = static_cast<std::int64_t>(VermKenngroesse::raeumlich);
    std::int64_t richtung = static_cast<std::int64_t>(VermRichtung::entgegen);
    std::int64_t version = mitZulaessiger;

    // Inputs. Speeds in km/h.
    double vT = 0.0;    ///< actual initial speed
    double vKoll = 0.0; ///< actual collision speed
    double vZ = 0.0;    ///< permissible initial speed
    double tR = 0.0;    ///< reaction time, s
    double tS = 0.0;    ///< threshold time, s
    double aB = 0.0;    ///< braking deceleration, m/s²
    double aR = 0.0;    ///< acceleration during the reaction, m/s²
    double sRK = 0.0;   ///< path from the reaction point to the collision, m
    double tRK = 0.0;   ///< time from the reaction point to the collision, s
    double vG = 0.0;    ///< G's collision speed
    double sFB = 0.0;   ///< G's missing braking distance, m
    double sFR = 0.0;   ///< G's missing clearing distance, m
    double aG = 0.0;    ///< G's deceleration, m/s²
    double xV = 0.0;    ///< vanishing point, m

    // Results.
    double vE = 0.0;       ///< V's speed at the collision when driving vZ, km/h
    double vHoechst = 0.0; ///< highest speed that avoids, km/h
    double sReakt = 0.0;   ///< latest reaction point that avoids: path before the collision, m
    double tReakt = 0.0;   ///< and time before it, s
    double aGrenz = 0.0;   ///< deceleration that avoids, m/s²

    // On the way.
    double sR = 0.0;  ///< reaction path, m
    double vR = 0.0;  ///< speed after the reaction from vZ, km/h
    double vRt = 0.0; ///< speed after the reaction from vT, km/h
    double sS = 0.0;  ///< threshold path, m
    double vS = 0.0;  ///< speed after the threshold phase, km/h
    double tG = 0.0;  ///< G's time to its stop or until it has cleared, s

    std::int32_t vorzeichen = 1;       ///< -1: avoided, the limits lie on the far side of the entered values
    std::int32_t berechnet = 0;        ///< 1: the results belong to a calculation
    std::uint8_t aGErrechnet = 0;      ///< 1: aG was computed, not entered
    std::uint8_t vGErrechnet = 0;      ///< 1: vG was computed, not entered
    std::uint8_t hoechstBestimmt = 0;  ///< 0: vHoechst is no limit
    std::uint8_t reaktBestimmt = 0;    ///< 0: sReakt and tReakt are no limit
    std::uint8_t grenzBestimmt = 0;    ///< 0: aGrenz is no limit
    std::uint8_t zeitlichGeraeumt = 0; ///< 1: V comes after G has cleared the conflict area
    std::uint8_t ohneBeruehrung = 0;   ///< 1: V does not stop in time, but does not touch G either

    RecordFields Felder();

    /// State at opening: the remembered vehicles, and what their columns say.
    void Oeffne();
    /// Clears all quantities; vehicles, direction, kind and version stay.
    void Loeschen();
    /// Another V, its columns or another number of its phases.
    void LeseFahrzeug();
    /// V was chosen: all phases up to its reaction count.
    void FahrzeugGewechselt();
    /// V's phases changed: as after a choice, unless the user counts the phases otherwise.
    void FahrzeugGeaendert();
    /// Another G or its columns.
    void LeseGegner();
    /// Keeps the four vehicles with the case.
    void Merken();
    /// The number in this field was entered; it is no longer a computed one.
    void Eingegeben(const void* feld);

    /// Everything the mask shows. The last message is fatal when nothing could be computed; then no field changes
    /// but the direction (after gegnerSteht) and `berechnet`.
    std::vector<Meldung> Rechnen();
    /// What the results say.
    enum class Befund {
        keiner,
        vermieden,
        geraeumt,    ///< avoided in time: G has cleared the conflict area
        nurGeraeumt, ///< the same where avoidance in space was asked for
        kollision,
        ohneAnhalten,   ///< not avoided in space, without contact
        stehtBeiKontakt ///< G still reaches V, which stands
    };
    Befund Beurteile() const;
    /// How many of V's phases count.
    std::int64_t Phasenzahl() const;

    /// What the last calculation went by; nothing when there is none.
    struct Stand {
        VermVorgabe vorgabe;
        VermKonflikt konflikt;
    };
    const std::optional<Stand>& Berechnet() const { return m_stand; }
    /// V's variant: what it is given and how much earlier it reacts (s).
    struct Variante {
        VermVorgabe vorgabe;
        double vorverlegung;
    };
    Variante GibVariante(std::int64_t nummer) const;
    /// Until when V's variant drives: to its stop when it avoids, otherwise to the contact or conflict point.
    double Fahrtende(const Variante& variante) const;

    /// V's actual way (time in s, path in m from the reaction point): its phases, or only both ends where the entered
    /// path and time are not theirs.
    struct Tatsaechlich {
        std::vector<CDPoint> punkte;
        bool nurEnden;
    };
    Tatsaechlich GibTatsaechlich() const;

    struct Ergebnis {
        Uebertragung fahrzeug;
        Uebertragung gegner;
        bool ohneWegDesGegners; ///< G does not move on: nothing was written for it
        bool ohneWeg;           ///< V's variant has no phase: nothing was written for it
        bool geaendert = false; ///< the case made other speeds or paths of V's variant
    };
    Ergebnis Uebertragen();

  private:
    std::int64_t Reaktionsphase() const;

    std::optional<Stand> m_stand;
    std::int64_t m_phaseNachRegel = 0; // the column that V's phases themselves give
};
