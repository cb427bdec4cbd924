// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 400, "Berechnung der Beschleunigung".
#pragma once

#include "host/CDialog.h"
#include "masks/dynamics/CBeschlDat.h"

class CBeschlDlg : public CMDIRechDialog
{
  public:
    CBeschlDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    /// Every input has a result, computed with OK.
    bool HatErgebnis() { return true; }
    /// The maximum deceleration, m/s².
    virtual double Ergebnis() const { return m_dat.verzoegerung; }

    void Rechnen();
    void Loeschen();

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void UebernehmeNeigung(UINT controlId);

    CBeschlDat m_dat;
    double m_neigung = 0.0; // rad; follows the gradient fields only when one of them is changed
    int m_berechnet = 0;
};
