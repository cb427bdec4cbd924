// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/Phasenfolge.h"

#include "host/CRuvData.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Quantities that differ by less than this part, or below 1 by less than this, are the same; finer than any shows.
constexpr double kGleich = 1e-6;

bool IstGleich(double x, double y)
{
    return std::abs(x - y) <= kGleich * std::max({std::abs(x), std::abs(y), 1.0});
}

} // namespace

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

bool StehtImFall(const CRuvData& data, std::int64_t fahrzeug, std::int64_t phase, std::span<const Folgephase> folge)
{
    const CWegZeitDat& stored = data.WZRechDat(static_cast<std::size_t>(fahrzeug));
    const auto first = stored.spalten.begin() + static_cast<std::ptrdiff_t>(phase);
    return std::equal(folge.begin(), folge.end(), first, [](const Folgephase& x, const CWegZeitSpalte& y) {
        return x.art == y.art && IstGleich(x.vEnd, y.vEnd) && IstGleich(x.vAnf, y.vAnf) && IstGleich(x.zeit, y.zeit) &&
               IstGleich(x.weg, y.weg) && IstGleich(x.verz, y.verz);
    });
}
