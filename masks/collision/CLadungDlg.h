// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 419, "Ladungssicherung".
#pragma once

#include "host/CDialog.h"
#include "masks/collision/CLadungDat.h"

class CLadungDlg : public CMDIRechDialog
{
  public:
    CLadungDlg(CRuvData& data, UINT dialogId);

    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    void OnCancel() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }

  private:
    void OnButtonOk();
    void ZeigeHinweis();

    CLadungDat m_dat;
    LadungEingaben m_anfang; // as the dialog was opened
};
