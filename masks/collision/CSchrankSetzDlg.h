// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// "Position setzen": stands open while the user places an object in the scene.
#pragma once

#include "host/CDialog.h"

class CSchrankenverfahrenDlg;

class CSchrankSetzDlg : public CMDIDialog
{
  public:
    explicit CSchrankSetzDlg(CSchrankenverfahrenDlg& maske);

    /// Opens the dialog, or switches the open one to this prompt.
    void Zeige(UINT text);
    void Schliesse();
    void SetupWindow() override;
    void ShutDownWindow() override;

  private:
    CSchrankenverfahrenDlg& m_maske;
    UINT m_text = 0;
};
