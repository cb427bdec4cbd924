// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 468, "Weg - Zeit bei konstanter Geschwindigkeit".
#pragma once

#include "host/CDialog.h"
#include "masks/dynamics/CVkonstDat.h"

class CVkonstDlg : public CMDIRechDialog
{
  public:
    CVkonstDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void UebernehmeEingabe(UINT controlId);

    CVkonstDat m_dat;
};
