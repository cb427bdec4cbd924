// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 469, "Motorrad-Bremsung (Exponentialansatz)".
#pragma once

#include "host/CDialog.h"
#include "masks/dynamics/CMRBremsDat.h"

class CMRBremsDlg : public CMDIRechDialog
{
  public:
    CMRBremsDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void OnTransferOption();

    CMRBremsDat::Ausgang RechneUndZeige();

    CMRBremsDat m_dat;
};
