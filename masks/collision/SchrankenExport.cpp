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

} // namespace

bool CSchrankenverfahrenDat::KannExportieren() const
{
    return ergebnisSteht != 0 && exportWahl >= 0 && exportWahl <= 2 && FahrzeugGueltig() && tempo.bis > 0.0;
}

void CSchrankenverfahrenDat::UebergibTempo()
{
    const auto fahrzeugIndex = static_cast<std::size_t>(fahrzeugNr);
    const double v = exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)];
    CWegZeitRechDat copy = m_data.WZRechDat(fahrzeugIndex);
    CWegZeitSpalte& erste = copy.spalten[CWegZeitDat::kErsteSpalte];
    if (!erste.IsUsed()) {
        // How the vehicle came to this speed is not known here: a phase without time says the speed and nothing else.
        erste.art = PhasenArt::noTime;
        erste.vAnf = v;
    } else if (erste.art == PhasenArt::noTime && erste.vAnf == erste.vEnd) {
        erste.vAnf = v;
    }
    erste.vEnd = v;
    copy.Berechnung();
    copy.Uebertragen(m_data, fahrzeugIndex, m_parent, 0);
    m_data.BroadcastMessage(WM_RUV_PHASESCHANGED, fahrzeugIndex, 0, nullptr);
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
    const CDPoint ort = wagen.position - Richtung(wagen.winkel) * (s - vorn);
    std::vector<CDPoint>& bahn = kollisionsSpalte.bahn;
    if (bahn.size() < kSpurAbstaende.size())
        bahn.resize(kSpurAbstaende.size());
    const auto letzte = bahn.end() - static_cast<std::ptrdiff_t>(kSpurAbstaende.size());
    if (objekt == fahrrad && m_data.IsFzgValid(personNr) && objekte[person].gesetzt != 0) {
        const auto& vonPerson =
            m_data.WZRechDat(static_cast<std::size_t>(personNr)).spalten[CWegZeitDat::kKollisionsSpalte].bahn;
        std::copy(vonPerson.end() - static_cast<std::ptrdiff_t>(kSpurAbstaende.size()), vonPerson.end(), letzte);
    } else {
        for (std::size_t i = 0; i < kSpurAbstaende.size(); ++i)
            letzte[static_cast<std::ptrdiff_t>(i)] = (ort - Richtung(gehrichtung) * kSpurAbstaende[i]) * kCmProM;
    }
    const CDPoint endlage = Endlage(ende) * kCmProM;
    copy.endPunkt = endlage - (endlage - bahn.back()) * kEndlageZurueck;
    copy.endRichtung = objekt == person ? ende.winkel + kPi / 2.0 : ende.winkel;
    copy.bahnModus = kBahnAusKollision;

    kollisionsSpalte.art = PhasenArt::noTime;
    kollisionsSpalte.vAnf = davor.IsUsed() ? davor.vEnd : 0.0;
    kollisionsSpalte.vEnd = anstossfaktor * exportGeschwindigkeit[static_cast<std::size_t>(exportWahl)];
    kollisionsSpalte.endGier = wagen.winkel;

    copy.Uebertragen(m_data, index, m_parent, 0);
    for (const unsigned flag : kUpdateFlags)
        UPa(index).SetUpdateFlag(flag);
    m_data.NotifyUPa(index);
    m_data.BroadcastMessage(WM_RUV_DRIVINGLINE, index, 0, nullptr);
    m_data.BroadcastMessage(WM_RUV_PHASESCHANGED, index, 0, nullptr);
}

void CSchrankenverfahrenDat::Exportieren()
{
    UebergibTempo();
    const double s = FlaecheWegZu(exportWahl);
    if (objekte[person].gesetzt != 0 && m_data.IsFzgValid(personNr))
        UebergibKollision(personNr, person, s);
    if (objekte[fahrrad].gesetzt != 0 && m_data.IsFzgValid(fahrradNr))
        UebergibKollision(fahrradNr, fahrrad, s);
}
