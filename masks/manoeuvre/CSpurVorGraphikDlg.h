// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The plan of mask 458 in a window of its own.
#pragma once

#include "host/CDialog.h"

class CSpurVorDlg;

class CSpurVorGraphikDlg : public CMDIDialog
{
  public:
    explicit CSpurVorGraphikDlg(CSpurVorDlg& maske);

    /// Opens the window, or brings the open one to the front.
    void Zeige();
    /// Draws afresh when it is open.
    void Zeichne();
    void SetupWindow() override;

  private:
    CSpurVorDlg& m_maske;
};
