// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// "Schrankenverfahren - Diagramm": the diagram in a window of its own.
#pragma once

#include "host/CDialog.h"

class CSchrankenverfahrenDlg;

class CSchrankDiagrammGrossDlg : public CMDIDialog
{
  public:
    explicit CSchrankDiagrammGrossDlg(CSchrankenverfahrenDlg& maske);

    /// Opens the dialog, or brings the open one to the front.
    void Zeige();
    /// Draws afresh; nothing while the dialog is not open.
    void Zeichne();
    void SetupWindow() override;

  private:
    CSchrankenverfahrenDlg& m_maske;
};
