// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the five pages of the barrier method have in common.
#pragma once

#include "host/CDialog.h"
#include "masks/collision/CSchrankenverfahrenDat.h"

class CSchrankenverfahrenDlg;

class CSchrankenSeite : public CMDIRechDialog
{
  public:
    CSchrankenSeite(UINT dialogId, CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    const CMessageMap* GetMessageMap() const override;
    UINT GetDlgResIDForAssistant() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat->Felder(); }
    bool ResultsAreOutdated() override;

  protected:
    /// A bound value changed: by a spinner step, or by an entry or choice.
    virtual void WertGeaendert(UINT controlId, bool schritt) = 0;
    /// A check box or radio button of the table.
    bool IstSchalter(UINT controlId) const;

    CSchrankenverfahrenDlg& m_maske;
    CSchrankenverfahrenDat* m_dat;

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
};
