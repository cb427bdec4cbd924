// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Collision speed of a vehicle against a pedestrian or cyclist by the barrier method: every theory allows an interval
// of speeds at each candidate collision position, and the plausible ones lie where the intervals overlap.
#pragma once

#include "host/CDPoint.h"
#include "host/CDlgData.h"
#include "host/RecordField.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

class CWegZeitRechDat;

class CSchrankenverfahrenDat final : public CDlgData
{
  public:
    /// Candidate collision positions; a curve array holds the lower curve, then the upper one.
    static constexpr std::size_t kProben = 200;
    using Kurvenfeld = std::array<CDPoint, 2 * kProben>; ///< x = distance s (m), y = speed (km/h)

    /// What can be placed in the scene, by the number of the placing dialog.
    enum Objekt : std::size_t { fahrzeug, kollisionsort, person, fahrrad, gesamtfeld, hauptfeld, kObjekte };

    /// Theories in the order of their switches.
    enum Theorie : std::size_t {
        kuehnelGlobal,
        kuehnelVerzoegerung,
        rauOtteSchulz,
        dettinger,
        ritterKrieg,
        frontscheibe,
        scheinwerferHaupt,
        scheinwerferGesamt,
        abwicklung,
        geschwindigkeit,
        kTheorien
    };

    /// Curve arrays in their order.
    enum Schranke : std::size_t {
        kurveBremsung,
        kurveKuehnelGlobal,
        kurveKuehnelVerzoegerung,
        kurveRau,
        kurveFrontscheibe,
        kurveHauptfeld,
        kurveGesamtfeld,
        kurveDettinger,
        kurveRitter,
        kurveAbwicklung,
        kurveGeschwindigkeit,
        kSchranken
    };

    /// Why nothing can be computed; the first reason that applies.
    enum class Mangel { keiner, fahrzeug, person, kollisionsort, verzoegerung, toleranz };

    /// A rectangle in the scene: corner (m), direction of its width (rad), width and length (m). A vehicle, whose
    /// position is its centre, uses position and angle alone.
    struct Rechteck {
        CDPoint position{};
        double winkel = 0.0;
        double breite = 0.0;
        double laenge = 0.0;
        std::uint8_t gesetzt = 0;

        CDPoint Mitte() const;
        std::array<CDPoint, 4> Ecken() const;
    };

    struct Bereich {
        double von = 0.0;
        double bis = 0.0;
    };

    /// Why there is no common area.
    enum class OhneFlaeche {
        keine,     ///< there is one
        vorn,      ///< the collision area reaches before the front of the vehicle at rest, where nothing is computed
        zuSchmal,  ///< it lies between two positions
        schranken, ///< the bands have nothing in common there
    };

    explicit CSchrankenverfahrenDat(CRuvData& data);

    std::int64_t fahrzeugNr = -2;
    std::int64_t personNr = -2;
    std::int64_t fahrradNr = -2;

    double verzoegerung = 0.0;         ///< a, m/s²
    double verzoegerungToleranz = 0.0; ///< ±Δa, m/s²
    double kuehnelToleranz = 0.0;      ///< ±Δv, km/h
    double rauToleranz = 0.0;          ///< ±Δv, km/h
    double dettingerToleranz = 0.0;    ///< ±Δv, km/h
    double abwicklungWeg = 0.0;        ///< W, cm
    double abwicklungToleranz = 0.0;   ///< ±ΔW, cm
    double karosserie = 0.0;           ///< k
    double karosserieToleranz = 0.0;   ///< ±Δk
    double geschwindigkeitVon = 0.0;   ///< km/h, 0 = no lower bound
    double geschwindigkeitBis = 0.0;   ///< km/h, 0 = no upper bound

    std::array<Rechteck, kObjekte> objekte{};
    std::array<std::uint8_t, kTheorien> theorien{}; ///< switches

    double fahrzeugLaenge = 0.0; ///< of the placed vehicle, m

    double fahrradLaengs = 0.0; ///< projections onto the vehicle's axis, m
    double fahrradQuer = 0.0;
    double personLaengs = 0.0; ///< d_P
    double personQuer = 0.0;
    Bereich kollision{}; ///< near and far end, m
    Bereich gesamt{};
    Bereich haupt{};

    double kleinsterWeg = 0.0; ///< range of the distances, m
    double groessterWeg = 0.0; ///< s_max, m

    std::uint8_t ergebnisSteht = 0; ///< a computation stands
    std::uint8_t gerechnet = 0;     ///< there was one: it comes back as soon as everything it needs has its place
    Bereich weg{};                  ///< range of the common area, m; zeros when it is empty
    Bereich tempo{};                ///< range of the common area, km/h

    // Page 4.
    std::int64_t wegWahl = 0;              ///< 0 smallest, 1 mean, 2 largest distance of the area
    std::array<double, 3> wurfRutschWeg{}; ///< m
    double abflugwinkel = 0.0;             ///< degrees
    double hoehenunterschied = 0.0;        ///< m, 0 or negative
    double rutschverzoegerung = 0.0;       ///< m/s²
    double abfluggeschwindigkeit = 0.0;    ///< km/h
    double wurfweite = 0.0;                ///< m
    double wurfhoehe = 0.0;                ///< m
    double anstossfaktor = 0.8;
    double kollisionsgeschwindigkeit = 0.0; ///< km/h

    // Page 5.
    std::int64_t exportWahl = 3;                   ///< 0 minimum, 1 mean, 2 maximum, 3 none chosen
    std::array<double, 3> exportGeschwindigkeit{}; ///< km/h
    std::uint8_t vonRechts = 1;                    ///< the pedestrian comes from the right as seen from the vehicle

    std::array<Kurvenfeld, kSchranken> kurven{};
    Kurvenfeld flaeche{}; ///< intersection of the bands

    RecordFields Felder();
    /// What the case keeps of them: inputs, choices and places.
    RecordFields Behaltene();
    /// Keeps the record with the case, and reads it back; values that are missing or no numbers keep their default.
    void Merken();
    void Laden();
    /// The case holds other values than this record kept or read last: an undone step, or another case.
    bool FallHatAnderes() const;

    bool FahrzeugGueltig() const;
    /// Vehicle, person and collision area have their places.
    bool IstPlatziert() const;
    /// An object that stands or stood somewhere.
    bool HatPlatz(std::size_t objekt) const;
    /// Participant an object stands for, -1 for a bare rectangle.
    std::int64_t Beteiligter(std::size_t objekt) const;
    /// Width and length of an object, m: its own, or before it is placed those that are typical for it.
    std::pair<double, double> Groesse(std::size_t objekt) const;
    /// Centre of the vehicle to its front, m; 0 without a valid vehicle.
    double Ueberhang() const;

    /// Projects the placed objects onto the vehicle's axis and sets the range of distances.
    void Projizieren();
    Mangel Pruefen() const;
    /// Computes the curves of all switched-on barriers from fresh projections, then area and results.
    void Berechnen();
    /// Drops curves, area and results; that there was a computation stays.
    void Verwerfen();
    /// A switched-on theory that has what it needs.
    bool IstWirksam(Theorie theorie) const;
    static Schranke KurveVon(Theorie theorie);

    /// Forms the common area of the braking barrier, all effective theories and the collision area.
    void BildeFlaeche();
    /// Narrows the first n (at most 200) positions of `band` by the band of `schranke`.
    static void FlaechenRechner(Kurvenfeld& band, const Kurvenfeld& schranke, std::size_t n);
    /// Whether any position of the area carries speeds.
    bool HatFlaeche() const;
    OhneFlaeche WarumOhneFlaeche() const;
    /// Distance between neighbouring positions, m.
    double Stellenabstand() const { return groessterWeg / static_cast<double>(kProben - 1); }
    /// The area has positions without a lowest speed.
    bool IstNachUntenOffen() const;
    /// Range of distances and speeds of the area; zeros when it is empty, and a lowest speed of 0 when it is open
    /// below.
    Bereich FlaecheWeg() const;
    Bereich FlaecheGeschwindigkeit() const;
    /// Distance of the area's position that a chosen speed (0 minimum, 1 mean, 2 maximum) belongs to.
    double FlaecheWegZu(std::int64_t wahl) const;

    /// Ranges, distances, speeds and the check of page 4 from the area.
    void Kontrolle();

    /// A result stands and one of its speeds is chosen.
    bool KannExportieren() const;
    /// Makes the chosen speed the vehicle's speed at the collision. Only when KannExportieren.
    void UebergibTempo();
    /// The same, and writes where the vehicle was then and how person and bicycle met it, as far as they are placed and
    /// in the case.
    void Exportieren();

  private:
    using Werte = std::map<std::string, std::vector<double>>;

    Werte WerteDesFalls() const;
    void Kurven();
    /// Writes the participant's data, and says that its driving line changed.
    void SchreibeKollision(std::size_t beteiligter, const CWegZeitRechDat& daten);
    void UebergibFahrzeuglage(double s);
    void UebergibKollision(std::int64_t beteiligter, Objekt objekt, double s);

    Werte m_abgelegt;
};
