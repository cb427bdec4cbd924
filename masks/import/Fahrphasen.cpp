// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrphasen.h"

#include "host/CRuvData.h"
#include "host/Physics.h"
#include "res/import.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Moments nearer to each other than this (s) are the same: the phase between them takes no time.
constexpr double kOhneDauer = 1e-5;
/// Decelerations (m/s²) above this one are braking, those up to it rolling.
constexpr double kRollen = 2.0;

/// What the next reconstruction run must bring up to date, and what it must leave.
constexpr unsigned kNachzufuehren[] = {28, 33, 34};
constexpr unsigned kNichtNachzufuehren = 29;

constexpr int kUnterArtKonstant = 1;
constexpr int kUnterArtVeraendert = 2;
constexpr int kUnterArtOhneZeit = 4;

Folgephase PhaseZwischen(const Fahrzeile& vor, const Fahrzeile& hier)
{
    Folgephase phase;
    phase.vEnd = hier.kmh;
    phase.vAnf = vor.kmh;
    phase.zeit = hier.zeitschritt;
    if (phase.zeit < kOhneDauer) { // or the clock was set back
        phase.zeit = std::max(phase.zeit, 0.0);
        phase.art = PhasenArt::noTime;
        phase.unterArt = kUnterArtOhneZeit;
        return phase;
    }
    // a = Δv / Δt and s = (v1 + v2) / 2 · Δt, uniformly between the moments.
    phase.verz = (phase.vAnf - phase.vEnd) / kKmhProMs / phase.zeit;
    phase.weg = (phase.vAnf + phase.vEnd) / 2.0 / kKmhProMs * phase.zeit;
    phase.art = phase.verz > kRollen ? PhasenArt::braking
                : phase.verz > 0.0   ? PhasenArt::rolling
                : phase.verz == 0.0  ? PhasenArt::constantSpeed
                                     : PhasenArt::accelerating;
    phase.unterArt = phase.art == PhasenArt::constantSpeed ? kUnterArtKonstant : kUnterArtVeraendert;
    return phase;
}

std::size_t Rest(std::int64_t phase, std::size_t ende)
{
    const auto erste = static_cast<std::size_t>(ErsteSpalteDerFolge(phase));
    return erste < ende ? ende - erste : 0;
}

/// What keeps the phases out of a case.
Fahrtausgang Pruefe(std::span<const Fahrzeile> zeilen, std::span<const Folgephase> phasen)
{
    if (phasen.empty())
        return zeilen.size() < 2 ? Fahrtausgang::zuWenigZeilen : Fahrtausgang::keinPlatz;
    double dauer = 0.0;
    for (const Folgephase& phase : phasen) {
        if (phase.vAnf == kNichtVorhanden || phase.vEnd == kNichtVorhanden)
            return Fahrtausgang::ohneGeschwindigkeit;
        for (const double wert : {phase.vAnf, phase.vEnd, phase.zeit, phase.weg, phase.verz})
            if (!std::isfinite(wert))
                return Fahrtausgang::keineZahl;
        dauer = std::max(dauer, phase.zeit);
    }
    return dauer < kOhneDauer ? Fahrtausgang::keineDauer : Fahrtausgang::uebertragen;
}

UINT Text(Fahrtausgang ausgang)
{
    switch (ausgang) {
    case Fahrtausgang::uebertragen:
        return IDS_FAHRT_UEBERTRAGEN;
    case Fahrtausgang::abweichend:
        return IDS_FAHRT_ABWEICHEND;
    case Fahrtausgang::keinFahrzeug:
        return IDS_FAHRT_KEIN_FAHRZEUG;
    case Fahrtausgang::zuWenigZeilen:
        return IDS_FAHRT_ZU_WENIG_ZEILEN;
    case Fahrtausgang::zuWenigPunkte:
        return IDS_FAHRT_ZU_WENIG_PUNKTE;
    case Fahrtausgang::keinPlatz:
        return IDS_FAHRT_KEIN_PLATZ;
    case Fahrtausgang::ohneGeschwindigkeit:
        return IDS_FAHRT_OHNE_GESCHWINDIGKEIT;
    case Fahrtausgang::keineZahl:
        return IDS_FAHRT_KEINE_ZAHL;
    case Fahrtausgang::keineDauer:
        break;
    }
    return IDS_FAHRT_KEINE_DAUER;
}

Fahrtbefund Befund(Fahrtausgang ausgang)
{
    return {ausgang, Text(ausgang)};
}

/// Phases are counted from 1 for the user.
double Phasennummer(std::size_t spalte)
{
    return static_cast<double>(spalte + 1 - CWegZeitDat::kErsteSpalte);
}

} // namespace

std::size_t MeisteFahrzeilen(std::int64_t phase)
{
    return Rest(phase, CWegZeitDat::kSpalten);
}

std::size_t MeisteBahnpunkte(std::int64_t phase)
{
    return Rest(phase, CWegZeitDat::kSpalten - 1);
}

std::vector<Folgephase> Fahrphasen(std::span<const Fahrzeile> zeilen, std::int64_t phase)
{
    std::vector<Folgephase> phasen;
    if (zeilen.size() < 2)
        return phasen;
    const std::size_t anzahl = std::min(zeilen.size() - 1, MeisteFahrzeilen(phase));
    phasen.reserve(anzahl);
    for (std::size_t i = zeilen.size() - 1; phasen.size() < anzahl; --i)
        phasen.push_back(PhaseZwischen(zeilen[i - 1], zeilen[i]));
    return phasen;
}

Fahrtbefund UebertrageFahrphasen(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                 std::span<const Fahrzeile> zeilen, CWnd* parent)
{
    if (!data.IsFzgValid(fahrzeug))
        return Befund(Fahrtausgang::keinFahrzeug);
    const std::vector<Folgephase> phasen = Fahrphasen(zeilen, phase);
    if (const Fahrtausgang mangel = Pruefe(zeilen, phasen); mangel != Fahrtausgang::uebertragen)
        return Befund(mangel);

    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    const auto erste = static_cast<std::size_t>(ErsteSpalteDerFolge(phase));
    CWegZeitRechDat copy = data.WZRechDat(vehicle);
    copy.Loeschen(erste);
    copy.selected = erste;
    for (std::size_t k = 0; k < phasen.size(); ++k) {
        SchreibeSpalte(copy.spalten[erste + k], phasen[k]);
        copy.spalten[erste + k].unterArt = phasen[k].unterArt;
    }
    data.BroadcastMessage(WM_RUV_PHASESCHANGED, vehicle, 0, parent);
    UebertrageSpalten(data, vehicle, copy, parent);
    for (const unsigned flag : kNachzufuehren)
        data.UPa(vehicle).SetUpdateFlag(flag);
    data.UPa(vehicle).ClearUpdateFlag(kNichtNachzufuehren);
    data.NotifyUPa(vehicle);

    const Uebertragungsbefund folge = VergleicheFolge(phasen, data.WZRechDat(vehicle), erste);
    Fahrtbefund befund =
        Befund(folge.ausgang == Uebertragung::abweichend ? Fahrtausgang::abweichend : Fahrtausgang::uebertragen);
    befund.zahlen = {{Phasennummer(erste), units::none, 0}, {Phasennummer(erste + phasen.size() - 1), units::none, 0}};
    const auto imFall = folge.Zahlen();
    befund.zahlen.insert(befund.zahlen.end(), imFall.begin(), imFall.end());
    befund.zahlen.push_back({phasen.front().vEnd, units::kmh});
    return befund;
}

Fahrtbefund UebertrageFahrlinie(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                std::span<const CDPoint> positionen, CWnd* parent)
{
    if (!data.IsFzgValid(fahrzeug))
        return Befund(Fahrtausgang::keinFahrzeug);
    if (positionen.size() < 2)
        return Befund(Fahrtausgang::zuWenigPunkte);
    const std::size_t anzahl = std::min(positionen.size(), MeisteBahnpunkte(phase));
    if (anzahl < 2)
        return Befund(Fahrtausgang::keinPlatz);
    const auto benutzt = positionen.last(anzahl);
    std::vector<CDPoint> linie;
    linie.reserve(anzahl);
    for (const CDPoint& position : benutzt) {
        linie.push_back({(position.x - benutzt[0].x) * kCmProM, (position.y - benutzt[0].y) * kCmProM});
        if (!std::isfinite(linie.back().x) || !std::isfinite(linie.back().y))
            return Befund(Fahrtausgang::keineZahl);
    }

    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    CWegZeitRechDat copy = data.WZRechDat(vehicle);
    copy.bahnModus = CWegZeitDat::kBahnAusFahrdaten;
    copy.fahrlinie = std::move(linie);
    copy.Uebertragen(data, vehicle, parent, 0);
    data.BroadcastMessage(WM_RUV_DRIVINGLINE, vehicle, 0, parent);
    Fahrtbefund befund = Befund(Fahrtausgang::uebertragen);
    const CDPoint& ende = copy.fahrlinie.back();
    befund.text = IDS_FAHRT_LINIE_UEBERTRAGEN;
    befund.zahlen = {{static_cast<double>(anzahl), units::none, 0}, {std::hypot(ende.x, ende.y) / kCmProM, units::m}};
    return befund;
}
