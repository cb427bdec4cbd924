// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 472, "Halbe Sicht".
#pragma once

#include "host/CDialog.h"
#include "masks/manoeuvre/CHalbeSichtDat.h"

class CHalbeSichtDlg : public CMDIRechDialog
{
  public:
    CHalbeSichtDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    void GlobalWZDatChanged(UINT_PTR vehicle) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.a.fahrzeug; }
    std::int64_t ColorVehicleOf(const void* field) const override;

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    LRESULT OnTransferNow(WPARAM, LPARAM);
    void OnButtonTransfer();
    void OnButtonOk();

    /// What follows from a changed field: the other collision speed, the sum, a vehicle's phases.
    void FolgeEingabe(UINT controlId);
    bool RechneUndZeige(bool mitMeldungen);
    /// False when there is no room in the case.
    bool Uebertrage(bool mitMeldungen);
    COLORREF Farbe(const CHalbeSichtDat::Teilnehmer& seite) const;

    CHalbeSichtDat m_dat;
    bool m_geaendert = false; // an input, since the last calculation
};
