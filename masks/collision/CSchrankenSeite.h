// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the five pages of the barrier method have in common.
#pragma once

#include "host/CDialog.h"
#include "host/Units.h"
#include "masks/collision/CSchrankenverfahrenDat.h"

#include <initializer_list>

class CEditDouble;
class CSchrankenverfahrenDlg;

class CSchrankenSeite : public CMDIRechDialog
{
  public:
    CSchrankenSeite(UINT dialogId, CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat);

    const CMessageMap* GetMessageMap() const override;
    UINT GetDlgResIDForAssistant() override;
    void IncValue(int controlId) override;

  protected:
    using Ids = std::initializer_list<UINT>;

    /// A bound value changed: by a spinner step, or by an entry or choice.
    virtual void WertGeaendert(UINT controlId, bool schritt) = 0;

    CEditDouble* Binde(UINT controlId, double& feld, double minimum, double maximum, unitType einheit = unitType::none);
    /// Names the user's unit beside a bound edit.
    void ZeigeEinheit(UINT controlId, unitType einheit);
    bool Angekreuzt(UINT controlId) const;
    void Kreuze(UINT controlId, bool an);
    /// Shows a string of the module beside the fields, or nothing for 0.
    void Hinweis(UINT controlId, UINT text);

    CSchrankenverfahrenDlg& m_maske;
    CSchrankenverfahrenDat* m_dat;

  private:
    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
};
