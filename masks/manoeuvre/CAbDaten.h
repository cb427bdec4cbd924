// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A vehicle drives through a turn, forward or in reverse: the steering goes from one radius to another within a given
// time, the speed changes evenly up to a limit.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/manoeuvre/Abbiegelauf.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

struct CWegZeitSpalte;

class CAbDaten final : public CDlgData
{
  public:
    enum class Ausgang {
        berechnet,
        keinRadius,       ///< neither initial nor end radius
        keineBewegung,    ///< neither speed nor acceleration
        keinEndradius,    ///< no steering time and no end radius: nothing would be steered
        grenzeZuHoch,     ///< slows down, but the limit is above the initial speed
        grenzeZuNiedrig,  ///< speeds up, but the limit is below the initial speed
        keinZiel,         ///< neither yaw nor path
        zuLang,           ///< the drive takes longer than a run may
        nichtKonvergiert, ///< a question was answered with yes, but no run met its aim
        unendlich,        ///< a quantity leaves the range of numbers
    };
    enum class Frage {
        anhaltenAmZiel,   ///< stands before the aim: start braking later, so that it stands there?
        lenkenBisZumZiel, ///< straight before the aim: start steering later, so that it is straight there?
    };
    /// Answers a question; true is yes. Called at most once per question and calculation.
    using Antwort = std::function<bool(Frage)>;

    enum class Uebertragung {
        erfolgt,
        angepasst,    ///< written, but the phases before and after it made the case hold other numbers
        keinErgebnis, ///< nothing is calculated for these inputs
        keinFahrzeug, ///< the vehicle is none of the case
        keinPlatz,    ///< no column is free
    };

    explicit CAbDaten(CRuvData& data) : CDlgData(data) {}

    // Lengths of the chosen vehicle, m.
    abbiegen::Fahrzeug masse{};
    double lenkuebersetzung = 0.0;

    // Inputs.
    std::int64_t fahrzeug = 0;
    std::int64_t phase = 0;     ///< column of the turn, 0 = none
    std::int64_t seite = 0;     ///< as the path-time data keep it, seen along the travel: 0 left, 1 right
    std::int64_t lenkseite = 0; ///< as the wheels are steered: 0 left, 1 right; in reverse the other one of `seite`
    std::int64_t rueckwaerts = 0;
    double anfangsradius = 0.0;   ///< of the inner rear wheel, m; 0 = straight
    double mindestradius = 0.0;   ///< of the inner rear wheel at full lock, m
    double endradius = 0.0;       ///< m; 0 = straight
    double lenkzeit = 0.0;        ///< s
    double gierziel = 0.0;        ///< °
    double anfangsgeschw = 0.0;   ///< km/h
    double beschleunigung = 0.0;  ///< m/s²
    double grenzgeschw = 0.0;     ///< km/h; 0 = none when speeding up, standstill when slowing down
    double weg = 0.0;             ///< m
    double zwischenversatz = 0.0; ///< m
    std::int32_t wegGegeben = 0;  ///< 1: the path is the aim, 0: the yaw

    // Results.
    double lenkradwinkel = 0.0;       ///< °
    double gierwinkel = 0.0;          ///< °
    double erreichterRadius = 0.0;    ///< m; 0 = straight
    double querbeschleunigung = 0.0;  ///< m/s²
    double schwimmwinkel = 0.0;       ///< °
    double zeit = 0.0;                ///< s
    double endgeschw = 0.0;           ///< km/h
    double versatzFront = 0.0;        ///< m
    double versatzHeck = 0.0;         ///< m
    double wegZwischen = 0.0;         ///< m
    double zeitZwischen = 0.0;        ///< s
    double wegBisEnde = 0.0;          ///< m
    double zeitBisEnde = 0.0;         ///< s
    double gierZwischen = 0.0;        ///< °
    double versatzHeckZwischen = 0.0; ///< m

    std::int32_t berechnet = 0; ///< 1: a change of an input calculates again
    std::int32_t frage1342 = 1; ///< 1: the question may be asked
    std::int32_t frage1344 = 1;
    std::int32_t antwort1342 = 7; ///< 6 yes, 7 no
    std::int32_t antwort1344 = 7;

    RecordFields Felder();

    /// State at opening: the first turn of the case, or the first free phase of its first vehicle.
    void Oeffne();
    /// Clears everything but the choice of vehicle and phase and the vehicle's lengths.
    void Loeschen();
    /// Another vehicle was chosen: its turn, or its first free phase, is taken and read.
    void FahrzeugGewechselt();
    /// Takes the lengths of the chosen vehicle; usual ones stand for those it does not have.
    void LeseFahrzeug();
    /// Whether the chosen vehicle has no length or no wheelbase; ErgaenzeMasse gives it usual ones in the case.
    bool FehlenMasse() const;
    void ErgaenzeMasse();
    /// Takes the inputs from the chosen column. What lies outside a field's range counts as not given.
    void LeseSpalte();
    /// The phases of the case were numbered anew: what was in the column `alt` is in `neu` now.
    void PhaseUmnummeriert(int alt, int neu);

    void BerechneLenkradwinkel();
    void RadiusGeaendert();
    void GierzielGeaendert();
    void WegGeaendert();
    /// Copies the phase's speed while neither speed nor acceleration is given; lets a braking one be asked for again.
    void GeschwindigkeitGeaendert();
    /// `lenkseite` was chosen: the turn that the case holds follows.
    void SeiteGewaehlt();
    /// `rueckwaerts` or `seite` changed: the wheels are steered accordingly.
    void ZeigeSeite();

    /// Both questions may be asked again.
    void FrageErneut();
    /// The results of a calculation that fails are 0.
    Ausgang Rechnen(const Antwort& antwort);
    /// The inputs are others: what is kept of the last run belongs to none.
    void VerwerfeLauf() { m_lauf.reset(); }
    bool HatErgebnis() const { return m_lauf.has_value(); }

    /// The run the results belong to.
    struct Lauf {
        abbiegen::Vorgabe vorgabe;
        abbiegen::Fahrt fahrt;
        double richtung = 1.0; ///< 1 forward, -1 reverse
    };
    const Lauf* LetzterLauf() const { return m_lauf ? &*m_lauf : nullptr; }

    /// The results cannot be driven by the vehicle: a radius is smaller than the least one.
    bool IstZuEng() const;
    /// The aim was not reached.
    bool ZielVerfehlt() const;
    bool StehtAmEnde() const { return m_lauf && m_lauf->fahrt.ende == abbiegen::Ende::stillstand; }
    /// Whether the path is the aim, not the yaw.
    bool BisWeg() const { return weg != 0.0 && (wegGegeben != 0 || gierziel == 0.0); }

    /// Writes the turn of the results into the case. `geschrieben` gets the first column and their number.
    struct Geschrieben {
        std::size_t spalte = 0;
        std::size_t anzahl = 0;
    };
    Uebertragung Uebertragen(Geschrieben& geschrieben);

  private:
    void LoescheEingaben();
    void LoescheErgebnisse();
    /// 1 along the sign that the inputs have, -1 against it: the direction of travel and what shown values are
    /// multiplied by.
    struct Richtung {
        double fahrt;
        double anzeige;
    };
    Richtung FahrtRichtung() const;
    std::optional<Ausgang> Pruefe(double vA, double a, double vG) const;
    Ausgang FindeLauf(Lauf& lauf, const Antwort& antwort);
    void Zeige(const Lauf& lauf, double anzeige);
    bool IstFahrzeug() const;
    std::size_t BelegteSpalten(std::size_t spalte) const;
    std::vector<CWegZeitSpalte> Phasen() const;
    void SchreibeSeite();
    double Schwimmwinkel(double radius) const;

    std::optional<Lauf> m_lauf;
};
