// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Bindings.h"

/// The user's settings as masks see them.
class CRuvCfg
{
  public:
    bool transferData = false;         ///< "Daten übertragen"
    double defaultReactionTime = 1.0;  ///< s
    double defaultThresholdTime = 0.2; ///< s
    bool useVehicleColors = true;      ///< edits follow the colour of the chosen vehicle
    bool decimalPoint = false;         ///< numbers are shown with a point instead of a comma
    CEditColors editColors{};          ///< inputs
    CEditColors resultColors{RGB(0, 0, 0), RGB(240, 240, 240)};
    COLORREF diagramBackground = RGB(255, 255, 255);
    COLORREF diagramPlot = RGB(255, 255, 255);
};

extern CRuvCfg RuvCfg;
