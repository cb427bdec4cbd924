// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 493, "Anstreifspuren Fahrrad".
#pragma once

#include "host/CDialog.h"
#include "masks/collision/CFahrradDat.h"

class CFahrradDlg : public CMDIRechDialog
{
  public:
    CFahrradDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  private:
    void OnButtonOk();

    CFahrradDat m_dat;
    CFahrradDat::Befund m_befund = CFahrradDat::Befund::keiner;
};
