// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/SpurwechselPhasen.h"

#include "host/CRuvData.h"
#include "host/Physics.h"
#include "masks/manoeuvre/SpurwechselFahrt.h"
#include "masks/manoeuvre/SpurwechselKurve.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Pieces of the trajectory over the whole lane change.
constexpr double kPunkte = 100.0;
PhasenArt Art(const Fahrabschnitt& part)
{
    if (part.vAnf == part.vEnd)
        return PhasenArt::constantSpeed;
    return part.vEnd > part.vAnf ? PhasenArt::accelerating : PhasenArt::braking;
}

} // namespace

std::vector<CWegZeitSpalte> SpurwechselSpalten(const SpurwechselKurve& kurve, const SpurwechselFahrt& fahrt,
                                               double mitte, double seite, double richtung)
{
    std::vector<CWegZeitSpalte> spalten;
    double ende = fahrt.Weg();
    for (auto part = fahrt.abschnitte.rbegin(); part != fahrt.abschnitte.rend(); ++part) {
        if (!(part->zeit > 0.0))
            continue;
        CWegZeitSpalte spalte;
        spalte.art = Art(*part);
        spalte.unterArt = spalten.empty() ? kLetzterSpurwechselteil : kFruehererSpurwechselteil;
        spalte.vEnd = richtung * part->vEnd * kKmhProMs;
        spalte.vAnf = richtung * part->vAnf * kKmhProMs;
        spalte.verz = richtung * (part->vAnf - part->vEnd) / part->zeit;
        spalte.zeit = part->zeit;
        spalte.weg = richtung * part->weg;
        spalte.richtung = richtung;

        const double von = kurve.StelleBei(ende - part->weg);
        const double bis = kurve.StelleBei(ende);
        const double pieces = std::max(std::ceil(kPunkte * (bis - von) / kurve.Sehne()), 1.0);
        for (double i = 0.0; i <= pieces; ++i) {
            const double u = von + (bis - von) * (i / pieces);
            const double yaw = kurve.Gierwinkel(u);
            const CDPoint centre = kurve.Punkt(u) + CDPoint{std::cos(yaw), std::sin(yaw)} * mitte;
            spalte.bahn.push_back(CDPoint{centre.x, seite * centre.y} * kCmProM);
        }
        spalte.endWeg = part->weg * kCmProM;
        spalte.endGier = seite * kurve.Gierwinkel(bis);
        spalten.push_back(std::move(spalte));
        ende -= part->weg;
    }
    return spalten;
}

std::optional<bool> SchreibeSpurwechsel(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                        const std::vector<CWegZeitSpalte>& spalten, CWnd* parent)
{
    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    const auto first = static_cast<std::size_t>(ErsteSpalteDerFolge(phase));
    if (first >= CWegZeitDat::kSpalten)
        return std::nullopt;
    CWegZeitRechDat copy = data.WZRechDat(vehicle);
    const bool ersetzt = copy.spalten[first].unterArt == kLetzterSpurwechselteil;
    if (ersetzt || !copy.spalten[first].IsUsed())
        copy.Entfernen(first);
    while (ersetzt && copy.spalten[first].IsUsed() && copy.spalten[first].unterArt == kFruehererSpurwechselteil)
        copy.Entfernen(first);
    // The last one is put in first, so that each moves those after it.
    for (auto spalte = spalten.rbegin(); spalte != spalten.rend(); ++spalte) {
        if (!copy.Einfuegen(first))
            return std::nullopt;
        copy.spalten[first] = *spalte;
    }
    copy.selected = first;
    UebertrageSpalten(data, vehicle, copy, parent);

    std::vector<Folgephase> folge;
    for (const CWegZeitSpalte& s : spalten)
        folge.push_back({s.art, s.vEnd, s.vAnf, s.zeit, s.weg, s.verz});
    return VergleicheFolge(folge, data.WZRechDat(vehicle), first).ausgang == Uebertragung::erfolgt;
}
