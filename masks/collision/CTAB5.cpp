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
    UINT text = 0;
    if (m_dat->ergebnisSteht == 0)
        text = IDS_SCHRANKEN_ERST_RECHNEN;
    else if (!m_dat->HatFlaeche())
        text = IDS_SCHRANKEN_KEINE_FLAECHE;
    else if (!bereit)
        text = IDS_SCHRANKEN_WAEHLEN;
    else if (m_maske.IstExportiert())
        text = IDS_SCHRANKEN_EXPORTIERT;
    ShowText(IDC_SCHR_EXPORT_HINWEIS, text);
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
