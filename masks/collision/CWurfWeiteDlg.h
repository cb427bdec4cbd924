// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 471, "Wurfweitenberechnung".
#pragma once

#include "host/CDialog.h"
#include "masks/collision/CWurfWeiteDat.h"

class CWurfWeiteDlg : public CMDIRechDialog
{
  public:
    CWurfWeiteDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();

  private:
    void ZeigeHinweis();

    CWurfWeiteDat m_dat;
    CWurfWeiteDat::Befund m_befund = CWurfWeiteDat::Befund::keiner;
};
