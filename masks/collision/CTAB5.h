// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Page "5. Export": hands the collision speed and the collision configuration to the case.
#pragma once

#include "masks/collision/CSchrankenSeite.h"

class CTAB5 : public CSchrankenSeite
{
  public:
    CTAB5(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    const CMessageMap* GetMessageMap() const override;
    void UpdateDialog() override;

  protected:
    void WertGeaendert(UINT controlId, bool schritt) override;

  private:
    void OnExport();
};
