// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB5.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

CTAB5::CTAB5(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_EXPORT, maske, dat)
{
}

const CMessageMap* CTAB5::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB5::OnExport>(IDC_SCHR_EXPORT),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB5::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    const bool bereit = m_dat->KannExportieren();
    Enable(IDC_SCHR_EXPORT, bereit);
    if (m_dat->ergebnisSteht == 0)
        ShowPrompt(IDC_SCHR_EXPORT_HINWEIS, IDS_SCHRANKEN_ERST_RECHNEN);
    else if (!m_dat->HatFlaeche())
        ShowText(IDC_SCHR_EXPORT_HINWEIS, IDS_SCHRANKEN_NICHTS_ZU_UEBERTRAGEN);
    else if (m_dat->exportWahl < 0 || m_dat->exportWahl > 2)
        ShowPrompt(IDC_SCHR_EXPORT_HINWEIS, IDS_SCHRANKEN_WAEHLEN);
    else if (!bereit)
        ShowText(IDC_SCHR_EXPORT_HINWEIS, IDS_SCHRANKEN_NUR_MAXIMUM);
    else
        ShowText(IDC_SCHR_EXPORT_HINWEIS, m_maske.IstExportiert() ? IDS_SCHRANKEN_EXPORTIERT : 0);
}

void CTAB5::WertGeaendert(UINT controlId, bool)
{
    if (controlId >= IDC_SCHR_EXPORT_MINIMUM && controlId <= IDC_SCHR_EXPORT_MAXIMUM)
        m_maske.TempoUebergeben();
    else
        m_maske.KontrolleGeaendert();
}

void CTAB5::OnExport()
{
    m_maske.Exportieren();
}
