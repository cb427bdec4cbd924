// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What records write into the case. Apart from the records themselves, which know nothing of the case they are in.
#include "host/CKfzDaten.h"
#include "host/CRuvData.h"
#include "host/CWegZeitDat.h"

int CKfzDaten::Uebertragen(CRuvData& data, std::size_t index, CWnd*, int) const
{
    if (index >= CRuvData::kFahrzeuge)
        return 0;
    data.KfzDat(index) = *this;
    data.NotifyGeo(index);
    return 1;
}

int CWegZeitRechDat::Uebertragen(CRuvData& data, std::size_t vehicle, CWnd*, int) const
{
    if (vehicle >= CRuvData::kFahrzeuge)
        return 0;
    data.WZRechDat(vehicle) = *this;
    data.NotifyWZ(vehicle);
    return 1;
}
