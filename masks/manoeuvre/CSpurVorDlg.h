// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 458, "Spurwechsel-Vorgang".
#pragma once

#include "host/CDrawingDialog.h"
#include "masks/manoeuvre/CSpurVorDat.h"

class CSpurVorDlg : public CMDIRechDialog
{
  public:
    CSpurVorDlg(CRuvData& data, UINT dialogId);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    void GlobalGeoDatChanged(UINT_PTR hint) override;
    void GlobalWZDatChanged(UINT_PTR vehicle) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void OnTransferOption();
    void OnGraphik();

    /// Calculates, says what is to be said when `mitMeldungen`, and transfers when that is switched on. False when
    /// there is no result, or no room for it in the case.
    bool RechneUndZeige(bool mitMeldungen);
    void Melde(const CSpurVorDat::Befund& befund);
    void ZeigeHinweis(const CSpurVorDat::Befund& befund);
    bool Uebertrage(bool mitMeldungen);
    void Zeichne(CDC& dc) const;

    CSpurVorDat m_dat;
    CDrawingDialog m_graphik; // the drawing in a window of its own
    bool m_geaendert = false; // an input, since the last calculation
};
