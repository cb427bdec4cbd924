// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 486, "ESO Datenanalyse": are five measured curves alike, and by how much is each shifted?
#pragma once

#include "chart/Chart.h"
#include "host/CDialog.h"
#include "masks/import/CESOImportDat.h"

#include <memory>
#include <string>

class CESOImportDlg : public CMDIRechDialog
{
  public:
    CESOImportDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }
    std::optional<ReadRows> RowsRead() override;

    void WaehleDatei();
    void LadeBild();
    void EntferneBild();

  private:
    LRESULT OnHScroll(WPARAM position, LPARAM controlId);
    void OnKorrelieren();
    void Lade(const std::string& pfad);
    /// The curves as the switches want them, all of them; a range stays while the file is the same.
    void ZeigeKurven();
    void ZeigeBild();
    void ZeigeBefund();
    void BereichGeaendert();
    void ZeichneBild(CDC& dc);

    CESOImportDat m_dat;
    chart::Chart m_diagramm;
    std::string m_gezeigteDatei;
    std::int64_t m_gezeigt = 0; // samples of it
    CESOImportDat::Lesung m_lesung = CESOImportDat::Lesung::gelesen;
    std::shared_ptr<const drawing::Bitmap> m_bild;
    std::shared_ptr<const drawing::Bitmap> m_ausschnitt; // of the picture, when it is larger than its field
};
