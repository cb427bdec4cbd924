// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The load of the load securing mask with its lashings and forces: from the side, and from behind or above.
#pragma once

class CDC;
class CLadungDat;

/// Draws the lashings at the record's angles and, when a result stands, the forces of the standard per direction.
void ZeichneLadung(CDC& dc, const CLadungDat& dat);
