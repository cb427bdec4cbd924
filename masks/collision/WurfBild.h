// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The flight of the throw distance mask, to scale.
#pragma once

class CDC;
class CWurfWeiteDat;

/// Path, apex, impact and slide of the flight that the record holds; the ground alone when it holds none.
void ZeichneWurf(CDC& dc, const CWurfWeiteDat& dat);
