// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The lines of mask 462 in a larger window of their own.
#pragma once

#include "host/CDialog.h"

#include <functional>

class CDC;

class CVermGraphikDlg : public CMDIDialog
{
  public:
    CVermGraphikDlg(CWnd& maske, std::function<void(CDC&)> zeichne);

    /// Opens the dialog, or brings the open one to the front.
    void Zeige();
    /// Draws afresh; nothing while the dialog is not open.
    void Zeichne();
    void SetupWindow() override;

  private:
    CWnd& m_maske;
    std::function<void(CDC&)> m_zeichne;
};
