// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 459, "Reagieren (mit Beschleunigung) - Bremsen".
#pragma once

#include "host/CDialog.h"
#include "masks/dynamics/CTeilanhDat.h"

class CTeilanhDlg : public CMDIRechDialog
{
  public:
    CTeilanhDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();
    void Init();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    LRESULT OnTransferNow(WPARAM, LPARAM);
    void OnButtonOk();
    void OnButtonTransfer();

    CTeilanhDat::Ausgang RechneUndZeige();
    bool PruefeUndRechne();
    bool BringeAufStand();
    /// Hands the phases to the vehicle and shows what is not as it should be.
    Uebertragung Uebertrage();
    void SetzeSchutz();
    void ZeigeAusgang(CTeilanhDat::Ausgang ausgang);

    CTeilanhDat m_dat;
    bool m_geaendert = false; // an input, since the last calculation
};
