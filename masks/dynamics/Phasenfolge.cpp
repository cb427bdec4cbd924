// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/Phasenfolge.h"

#include "host/CRuvData.h"
#include "res/dynamics.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

/// Down to this below zero (s, m, km/h) a quantity is the rounding of none at all.
constexpr double kRundung = 1e-6;
/// From here on a difference shows in two decimals (s, m, km/h, m/s²).
constexpr double kSichtbar = 0.005;

/// What keeps the sequence out of a case.
Uebertragung Pruefe(std::span<const Folgephase> folge)
{
    bool dauert = false;
    bool negativ = false;
    for (const Folgephase& phase : folge) {
        for (const double wert : {phase.vEnd, phase.vAnf, phase.zeit, phase.weg, phase.verz})
            if (!std::isfinite(wert))
                return Uebertragung::keineZahl;
        for (const double wert : {phase.vEnd, phase.vAnf, phase.zeit, phase.weg})
            negativ = negativ || wert < -kRundung;
        dauert = dauert || phase.zeit > kRundung;
    }
    if (negativ)
        return Uebertragung::negativ;
    return dauert ? Uebertragung::erfolgt : Uebertragung::keineDauer;
}

bool Verschieden(double a, double b)
{
    return !(std::abs(a - b) < kSichtbar);
}

} // namespace

UINT Uebertragungsbefund::Text() const
{
    switch (ausgang) {
    case Uebertragung::erfolgt:
        break;
    case Uebertragung::abweichend:
        return IDS_FOLGE_ABWEICHEND;
    case Uebertragung::keinFahrzeug:
        return IDS_FOLGE_KEIN_FAHRZEUG;
    case Uebertragung::keinPlatz:
        return IDS_KEIN_PLATZ_FUER_FOLGE;
    case Uebertragung::keineDauer:
        return IDS_FOLGE_KEINE_DAUER;
    case Uebertragung::negativ:
        return IDS_FOLGE_NEGATIV;
    case Uebertragung::keineZahl:
        return IDS_FOLGE_KEINE_ZAHL;
    }
    return 0;
}

std::array<ShownNumber, 6> Uebertragungsbefund::Zahlen() const
{
    return {{{imFall.geschwindigkeit, units::kmh},
             {gezeigt.geschwindigkeit, units::kmh},
             {imFall.weg, units::m},
             {gezeigt.weg, units::m},
             {imFall.zeit, units::s},
             {gezeigt.zeit, units::s}}};
}

std::int64_t ErsteSpalteDerFolge(std::int64_t phase)
{
    return std::max(phase, static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte));
}

void SchreibeSpalte(CWegZeitSpalte& spalte, const Folgephase& phase)
{
    spalte.art = phase.art;
    spalte.vEnd = phase.vEnd;
    spalte.vAnf = phase.vAnf;
    spalte.zeit = phase.zeit;
    spalte.weg = phase.weg;
    spalte.verz = phase.verz;
}

Uebertragungsbefund VergleicheFolge(std::span<const Folgephase> folge, const CWegZeitDat& daten, std::size_t column)
{
    Uebertragungsbefund befund;
    for (const Folgephase& phase : folge) {
        const CWegZeitSpalte& spalte = daten.spalten[column++];
        befund.gezeigt.geschwindigkeit = phase.vAnf;
        befund.gezeigt.weg += phase.weg;
        befund.gezeigt.zeit += phase.zeit;
        befund.imFall.geschwindigkeit = spalte.vAnf;
        befund.imFall.weg += spalte.weg;
        befund.imFall.zeit += spalte.zeit;
        if (spalte.art != phase.art || Verschieden(spalte.verz, phase.verz) || Verschieden(spalte.vEnd, phase.vEnd) ||
            Verschieden(spalte.vAnf, phase.vAnf) || Verschieden(spalte.weg, phase.weg) ||
            Verschieden(spalte.zeit, phase.zeit))
            befund.ausgang = Uebertragung::abweichend;
    }
    return befund;
}

Uebertragung UebertrageFolge(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                             std::span<const Folgephase> folge, std::optional<std::int64_t> modus, CWnd* parent)
{
    if (!data.IsFzgValid(fahrzeug))
        return Uebertragung::keinFahrzeug;
    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    auto column = static_cast<std::size_t>(ErsteSpalteDerFolge(phase));
    if (column >= CWegZeitDat::kSpalten || folge.size() > CWegZeitDat::kSpalten - column)
        return Uebertragung::keinPlatz;

    CWegZeitRechDat copy = data.WZRechDat(vehicle);
    copy.selected = column;
    if (modus)
        copy.mode = *modus;
    for (const Folgephase& from : folge) {
        CWegZeitSpalte& to = copy.spalten[column++];
        // A column that becomes another kind of phase keeps nothing; of the same kind it keeps radii, side and the
        // like.
        if (to.art != from.art)
            to = {};
        SchreibeSpalte(to, from);
    }
    if (column < CWegZeitDat::kSpalten)
        copy.Loeschen(column);
    UebertrageSpalten(data, vehicle, copy, parent);
    return Uebertragung::erfolgt;
}

void UebertrageSpalten(CRuvData& data, std::size_t vehicle, CWegZeitRechDat& copy, CWnd* parent)
{
    if (data.UPa(vehicle).modified)
        data.BroadcastMessage(WM_RUV_BEFORETRANSFER, vehicle, 0, parent);
    data.UPa(vehicle).modified = true;
    copy.Berechnung();
    copy.Uebertragen(data, vehicle, parent, 0);
}

Uebertragungsbefund UebertrageUndVergleiche(CRuvData& data, std::int64_t fahrzeug, std::int64_t phase,
                                            std::span<const Folgephase> folge, std::optional<std::int64_t> modus,
                                            CWnd* parent)
{
    if (const Uebertragung mangel = Pruefe(folge); mangel != Uebertragung::erfolgt)
        return {mangel};
    std::vector<Folgephase> gerundet(folge.begin(), folge.end());
    for (Folgephase& eine : gerundet) {
        eine.zeit = std::max(eine.zeit, 0.0);
        eine.weg = std::max(eine.weg, 0.0);
    }
    const Uebertragung ausgang = UebertrageFolge(data, fahrzeug, phase, gerundet, modus, parent);
    if (ausgang != Uebertragung::erfolgt)
        return {ausgang};
    return VergleicheFolge(gerundet, data.WZRechDat(static_cast<std::size_t>(fahrzeug)),
                           static_cast<std::size_t>(ErsteSpalteDerFolge(phase)));
}
