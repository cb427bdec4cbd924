// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 401, "Berechnung der Kurvengrenzgeschwindigkeit".
#pragma once

#include "host/CDialog.h"
#include "masks/dynamics/CGrenzVDat.h"

class CGrenzVDlg : public CMDIRechDialog
{
  public:
    CGrenzVDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void SetupWindow() override;
    void ShutDownWindow() override;
    UINT GetCloneCropStyle(UINT* out) override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    /// The limit speed found last, km/h; 0 when none was.
    virtual double Ergebnis() const { return m_dat.grenzgeschwindigkeit; }

    void Rechnen();
    void Loeschen();

  private:
    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void UebernehmeEingabe(UINT controlId);
    CGrenzVDat::Grenze RechneUndZeige();
    void ZeigeGrenze(CGrenzVDat::Grenze grenze);
    void ZeigeKurve(CGrenzVDat::Kurve kurve);
    void ZeigeQuergefaelle();
    void ZeigeText(UINT controlId, UINT textId);

    CGrenzVDat m_dat;
};
