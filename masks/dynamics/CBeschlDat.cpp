// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CBeschlDat.h"

#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/dynamics.h"

#include <cmath>

namespace
{

using Dat = CBeschlDat;

// The percent field ends at 90 % on purpose, although degrees reach steeper gradients.
constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_BESCHL_REIBUNG, "reibungsbeiwert", At<&Dat::reibungsbeiwert>, units::none, {0, 10}, 2, FieldRole::input},
    {IDC_BESCHL_NEIGUNG_GRAD, "neigungGrad", At<&Dat::neigungGrad>, units::degree, {-90, 90}, 2, FieldRole::input},
    {IDC_BESCHL_NEIGUNG_PROZENT,
     "neigungProzent",
     At<&Dat::neigungProzent>,
     units::percent,
     {-90, 90},
     2,
     FieldRole::input,
     {.label = "Straßenneigung"}},
    {IDC_BESCHL_VERZOEGERUNG, "verzoegerung", At<&Dat::verzoegerung>, units::ms2, {-100, 100}, 2, FieldRole::result},
};

} // namespace

RecordFields CBeschlDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CBeschlDat::Loeschen()
{
    ClearNumbers(Felder());
}

double CBeschlDat::NeigungAusGrad()
{
    const double neigung = neigungGrad * kPi / 180.0;
    neigungProzent = std::tan(neigung) * 100.0;
    return neigung;
}

double CBeschlDat::NeigungAusProzent()
{
    const double neigung = std::atan(neigungProzent / 100.0);
    neigungGrad = neigung * 180.0 / kPi;
    return neigung;
}

void CBeschlDat::Rechnen(double neigung)
{
    verzoegerung = (reibungsbeiwert * std::cos(neigung) + std::sin(neigung)) * kErdbeschleunigung;
}
