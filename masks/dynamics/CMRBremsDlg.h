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

  private:
    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void OnTransferOption();

    CMRBremsDat::Ausgang RechneUndZeige();
    void ZeigeAlles();
    void SetzeFarben();
    void ZeigeHinweis(CMRBremsDat::Vorbehalt vorbehalt);

    CMRBremsDat m_dat;
};
