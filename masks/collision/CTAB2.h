// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Page "2. Schranken": the vehicle's deceleration and the theories of throw distances.
#pragma once

#include "masks/collision/CSchrankenSeite.h"

class CTAB2 : public CSchrankenSeite
{
  public:
    CTAB2(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    void UpdateDialog() override;

  protected:
    void WertGeaendert(UINT controlId, bool schritt) override;
};
