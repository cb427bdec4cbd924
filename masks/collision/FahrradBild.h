// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The bicycle of the scrape marks mask from behind, upright and leaning, beside the band of the mark.
#pragma once

class CDC;
class CFahrradDat;

/// Draws the bicycle that the record describes and, when a result stands, how far its part rises.
void ZeichneFahrrad(CDC& dc, const CFahrradDat& dat);
