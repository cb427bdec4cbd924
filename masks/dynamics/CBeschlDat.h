// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Largest deceleration (or acceleration) that the tyres transmit on a gradient.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"

class CBeschlDat final : public CDlgData
{
  public:
    explicit CBeschlDat(CRuvData& data) : CDlgData(data) {}

    double reibungsbeiwert = 0.0; ///< coefficient of friction μ, dimensionless
    double neigungGrad = 0.0;     ///< road gradient in degrees, positive uphill
    double neigungProzent = 0.0;  ///< the same gradient in percent
    double verzoegerung = 0.0;    ///< result: maximum deceleration, m/s²

    RecordFields Felder();

    /// Sets every field to zero.
    void Loeschen();
    /// Takes the gradient from the degree field. Returns its angle in rad and sets the percent field.
    double NeigungAusGrad();
    /// Takes the gradient from the percent field. Returns its angle in rad and sets the degree field.
    double NeigungAusProzent();
    /// Computes the deceleration from friction and the gradient's angle (rad).
    void Rechnen(double neigung);
};
