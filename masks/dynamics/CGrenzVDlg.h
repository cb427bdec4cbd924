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
    void SetupWindow() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    /// The last calculation found a limit speed, and for the inputs as they are.
    bool HatErgebnis() { return m_gefunden && !ResultsAreOutdated(); }
    /// The limit speed found last, km/h; 0 when none was.
    virtual double Ergebnis() const { return m_dat.grenzgeschwindigkeit; }

    void Rechnen();
    void Loeschen();

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void UebernehmeEingabe(UINT controlId);
    CGrenzVDat::Grenze RechneUndZeige();
    void ZeigeGrenze(CGrenzVDat::Grenze grenze);
    void ZeigeKurve(CGrenzVDat::Kurve kurve);
    void ZeigeQuergefaelle();

    CGrenzVDat m_dat;
    bool m_gefunden = false; // by the last calculation
};
