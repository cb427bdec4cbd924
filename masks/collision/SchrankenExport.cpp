// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the barrier method writes into the case: the vehicle's collision speed, and how person and bicycle met it.
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"

#include <cmath>

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr std::array kSpurAbstaende{0.2, 0.1, 0.05, 0.0}; // m before the collision position
constexpr double kEndlageZurueck = 0.2;                   // share of the way from the collision
constexpr std::int64_t kBahnAusKollision = 5;
constexpr std::array kUpdateFlags{28U, 29U, 33U, 34U};

CDPoint Richtung(double winkel)
{
    return {std::cos(winkel), std::sin(winkel)};
}

/// Centre of a rectangle as seen from its corner: half the diagonal at the angle asin(l/diagonal) from the width.
CDPoint Endlage(const Dat::Rechteck& rechteck)
{
    const double diagonale = std::hypot(rechteck.breite, rechteck.laenge);
    if (!(diagonale > 0.0))
        return rechteck.position;
    const double halb =
        std::sqrt(rechteck.breite / 2.0 * (rechteck.breite / 2.0) + rechteck.laenge / 2.0 * (rechteck.laenge / 2.0));
    return rechteck.position + Richtung(std::asin(rechteck.laenge / diagonale) + rechteck.winkel) * halb;
}

/// Puts a participant where the collision was: the last four points of its way lead to `ort` (m) in the direction (rad)
/// it came in.
void SetzeKollisionslage(CWegZeitDat& daten, CDPoint ort, double richtung)
{
    std::vector<CDPoint>& bahn = daten.spalten[CWegZeitDat::kKollisionsSpalte].bahn;
    if (bahn.size() < kSpurAbstaende.size())
        bahn.resize(kSpurAbstaende.size());
    auto punkt = bahn.end() - static_cast<std::ptrdiff_t>(kSpurAbstaende.size());
    for (const double abstand : kSpurAbstaende)
        *punkt++ = (ort - Richtung(richtung) * abstand) * kCmProM;
    daten.bahnModus = kBahnAusKollision;
}

/// The speed at the collision; a phase without time that said but one speed says this one.
void SetzeTempo(CWegZeitSpalte& spalte, double CWegZeitSpalte::*bekannt, double CWegZeitSpalte::*anderes, double v)
{
    if (spalte.art == PhasenArt::noTime && spalte.vAnf == spalte.vEnd)
        spalte.*anderes = v;
    spalte.*bekannt = v;
}

} // namespace

bool CSchrankenverfahrenDat::KannExportieren() const
{
    return ergebnisSteht != 0 && exportWahl >= 0 && exportWahl <= 2 && FahrzeugGueltig() &&
           exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)] > 0.0;
}

void CSchrankenverfahrenDat::UebergibTempo()
{
    const auto fahrzeugIndex = static_cast<std::size_t>(fahrzeugNr);
    const double v = exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)];
    CWegZeitRechDat copy = m_data.WZRechDat(fahrzeugIndex);
    CWegZeitSpalte& erste = copy.spalten[CWegZeitDat::kErsteSpalte];
    // How the vehicle came to this speed may not be known here: a phase without time says the speed and nothing else.
    if (!erste.IsUsed())
        erste.art = PhasenArt::noTime;
    SetzeTempo(erste, &CWegZeitSpalte::vEnd, &CWegZeitSpalte::vAnf, v);
    if (CWegZeitSpalte& zweite = copy.spalten[CWegZeitDat::kKollisionsSpalte]; zweite.IsUsed())
        SetzeTempo(zweite, &CWegZeitSpalte::vAnf, &CWegZeitSpalte::vEnd, v);
    copy.Berechnung();
    copy.Uebertragen(m_data, fahrzeugIndex, m_parent, 0);
    m_data.BroadcastMessage(WM_RUV_PHASESCHANGED, fahrzeugIndex, 0, nullptr);
}

void CSchrankenverfahrenDat::SchreibeKollision(std::size_t beteiligter, const CWegZeitRechDat& daten)
{
    daten.Uebertragen(m_data, beteiligter, m_parent, 0);
    for (const unsigned flag : kUpdateFlags)
        UPa(beteiligter).SetUpdateFlag(flag);
    m_data.NotifyUPa(beteiligter);
    m_data.BroadcastMessage(WM_RUV_DRIVINGLINE, beteiligter, 0, nullptr);
    m_data.BroadcastMessage(WM_RUV_PHASESCHANGED, beteiligter, 0, nullptr);
}

void CSchrankenverfahrenDat::UebergibFahrzeuglage(double s)
{
    const Rechteck& wagen = objekte[fahrzeug];
    const auto index = static_cast<std::size_t>(fahrzeugNr);
    const double v = exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)];
    CWegZeitRechDat copy = m_data.WZRechDat(index);
    SetzeKollisionslage(copy, wagen.position - Richtung(wagen.winkel) * s, wagen.winkel);
    CWegZeitSpalte& kollisionsSpalte = copy.spalten[CWegZeitDat::kKollisionsSpalte];
    kollisionsSpalte.art = PhasenArt::noTime;
    SetzeTempo(kollisionsSpalte, &CWegZeitSpalte::vAnf, &CWegZeitSpalte::vEnd, v);
    kollisionsSpalte.endGier = wagen.winkel;
    SchreibeKollision(index, copy);
}

void CSchrankenverfahrenDat::UebergibKollision(std::int64_t beteiligter, Objekt objekt, double s)
{
    const Rechteck& wagen = objekte[fahrzeug];
    const Rechteck& ende = objekte[objekt];
    const auto index = static_cast<std::size_t>(beteiligter);
    CWegZeitRechDat copy = m_data.WZRechDat(index);
    CWegZeitSpalte& kollisionsSpalte = copy.spalten[CWegZeitDat::kKollisionsSpalte];
    const CWegZeitSpalte& davor = copy.spalten[CWegZeitDat::kErsteSpalte];

    // The person walked across the vehicle's axis, from its right to its left or back.
    const double gehrichtung = wagen.winkel + kPi / 2.0 + (vonRechts != 0 ? 0.0 : kPi);
    const double vorn = objekt == person ? Ueberhang() : fahrzeugLaenge / 2.0;
    SetzeKollisionslage(copy, wagen.position - Richtung(wagen.winkel) * (s - vorn), gehrichtung);
    std::vector<CDPoint>& bahn = kollisionsSpalte.bahn;
    if (objekt == fahrrad && m_data.IsFzgValid(personNr) && objekte[person].gesetzt != 0) {
        constexpr auto kPunkte = static_cast<std::ptrdiff_t>(kSpurAbstaende.size());
        const auto& vonPerson =
            m_data.WZRechDat(static_cast<std::size_t>(personNr)).spalten[CWegZeitDat::kKollisionsSpalte].bahn;
        std::copy(vonPerson.end() - kPunkte, vonPerson.end(), bahn.end() - kPunkte);
    }
    const CDPoint endlage = Endlage(ende) * kCmProM;
    copy.endPunkt = endlage - (endlage - bahn.back()) * kEndlageZurueck;
    copy.endRichtung = objekt == person ? ende.winkel + kPi / 2.0 : ende.winkel;

    kollisionsSpalte.art = PhasenArt::noTime;
    kollisionsSpalte.vAnf = davor.IsUsed() ? davor.vEnd : 0.0;
    kollisionsSpalte.vEnd = anstossfaktor * exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)];
    kollisionsSpalte.endGier = wagen.winkel;
    SchreibeKollision(index, copy);
}

void CSchrankenverfahrenDat::Exportieren()
{
    UebergibTempo();
    const double s = FlaecheWegZu(exportWahl);
    UebergibFahrzeuglage(s);
    if (objekte[person].gesetzt != 0 && m_data.IsFzgValid(personNr))
        UebergibKollision(personNr, person, s);
    if (objekte[fahrrad].gesetzt != 0 && m_data.IsFzgValid(fahrradNr))
        UebergibKollision(fahrradNr, fahrrad, s);
}
