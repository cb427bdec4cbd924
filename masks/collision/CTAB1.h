// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Page "1. Positionierung": who took part, and what stands where in the scene.
#pragma once

#include "masks/collision/CSchrankenSeite.h"

class CTAB1 : public CSchrankenSeite
{
  public:
    CTAB1(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void UpdateDialog() override;

  protected:
    void WertGeaendert(UINT controlId, bool schritt) override;

  private:
    LRESULT OnPlatz(WPARAM wParam, LPARAM);
    LRESULT OnSetzen(WPARAM wParam, LPARAM);
};
