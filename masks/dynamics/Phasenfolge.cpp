// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/Phasenfolge.h"

#include "host/CRuvData.h"

#include <algorithm>

std::int64_t ErsteSpalteDerFolge(std::int64_t phase)
{
    return std::max(phase, static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte));
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
        to.art = from.art;
        to.vEnd = from.vEnd;
        to.vAnf = from.vAnf;
        to.zeit = from.zeit;
        to.weg = from.weg;
        to.verz = from.verz;
    }
    if (column < CWegZeitDat::kSpalten)
        copy.Loeschen(column);

    if (data.UPa(vehicle).modified)
        data.BroadcastMessage(WM_RUV_BEFORETRANSFER, vehicle, 0, parent);
    data.UPa(vehicle).modified = true;
    copy.Berechnung();
    copy.Uebertragen(data, vehicle, parent, 0);
    return Uebertragung::erfolgt;
}
