// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CBeschlDat.h"

#include "host/Physics.h"

#include <cmath>

RecordFields CBeschlDat::Felder()
{
    return {
        {"reibungsbeiwert", "", &reibungsbeiwert},
        {"neigungGrad", "°", &neigungGrad},
        {"neigungProzent", "%", &neigungProzent},
        {"verzoegerung", "m/s²", &verzoegerung},
    };
}

void CBeschlDat::Loeschen()
{
    reibungsbeiwert = 0.0;
    neigungGrad = 0.0;
    neigungProzent = 0.0;
    verzoegerung = 0.0;
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
