// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Page "4. Kontrolle": take-off and collision speed from throw and slide.
#pragma once

#include "masks/collision/CSchrankenSeite.h"

class CTAB4 : public CSchrankenSeite
{
  public:
    CTAB4(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

  protected:
    void WertGeaendert(UINT controlId, bool schritt) override;
};
