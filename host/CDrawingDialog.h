// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A drawing of a mask in a window of its own.
#pragma once

#include "host/CDialog.h"

class CDrawingDialog : public CMDIDialog
{
  public:
    /// `fieldId` is the static of the template that is drawn in. `owner` outlives the dialog.
    CDrawingDialog(UINT templateId, UINT fieldId, CWnd& owner, std::function<void(CDC&)> draw);

    void SetupWindow() override;
    /// Opens the window, or brings the open one to the front.
    void Show();

  private:
    UINT m_fieldId;
    CWnd& m_owner;
    std::function<void(CDC&)> m_draw;
};
