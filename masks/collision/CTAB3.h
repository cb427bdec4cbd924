// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Page "3. Zusatzschranken": splinters, wrap distance and bounds of the speed itself.
#pragma once

#include "masks/collision/CSchrankenSeite.h"

class CTAB3 : public CSchrankenSeite
{
  public:
    CTAB3(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    void UpdateDialog() override;

  protected:
    void WertGeaendert(UINT controlId, bool schritt) override;
};
