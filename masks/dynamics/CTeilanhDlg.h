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
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void SetupWindow() override;
    void ShutDownWindow() override;
    UINT GetCloneCropStyle(UINT* out) override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    void GlobalGeoDatChanged(UINT_PTR hint) override;
    void GlobalWZDatChanged(UINT_PTR hint) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();
    void Init();

  private:
    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    LRESULT OnTransferNow(WPARAM, LPARAM);
    void OnButtonOk();
    void OnButtonTransfer();

    bool PruefeUndRechne();
    bool BringeAufStand();
    bool Uebertrage();
    void SetzeSchutz();
    void SetzeFarben();
    void MeldeHauptfenster();
    void ZeigeAusgang(CTeilanhDat::Ausgang ausgang);
    void ZeigeHinweis(UINT textId);

    CTeilanhDat m_dat;
    bool m_geaendert = false; // an input, since the last calculation
};
