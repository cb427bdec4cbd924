// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// "Schrankenverfahren - Diagramm": the diagram in a window of its own.
#pragma once

#include "host/CDialog.h"

#include <functional>

class CSchrankDiagrammGrossDlg : public CMDIDialog
{
  public:
    /// `verbinde` lets the static draw the diagram.
    CSchrankDiagrammGrossDlg(CWnd& maske, std::function<void(CWnd*)> verbinde);

    /// Opens the dialog, or brings the open one to the front.
    void Zeige();
    /// Draws afresh; nothing while the dialog is not open.
    void Zeichne();
    void SetupWindow() override;

  private:
    CWnd& m_maske;
    std::function<void(CWnd*)> m_verbinde;
};
