// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Dialog 495, "Videoanalyse - Framerate": how long each frame of a vehicle lasts, as measured and as chosen.
#pragma once

#include "host/CDialog.h"
#include "host/Controls.h"

#include <cstdint>
#include <optional>
#include <string>

class CVideoDlg;

class CVideoFrameDlg final : public CMDIDialog
{
  public:
    explicit CVideoFrameDlg(CVideoDlg* maske);

    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void SetupWindow() override;

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnReset();
    std::optional<CCellRefusal> NimmLaenge(int zeile, const std::string& text);
    void ZeigeLaengen();
    void Uebernimm();

    CVideoDlg* m_maske;
    std::int64_t m_gewaehlt = 0; // 1: the chosen lengths count
};
