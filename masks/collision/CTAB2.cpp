// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB2.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "masks/collision/SchrankenDiagramm.h"
#include "res/collision.h"

namespace
{

using Dat = CSchrankenverfahrenDat;

} // namespace

CTAB2::CTAB2(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_SCHRANKEN, maske, dat)
{
}

void CTAB2::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    const bool verborgen = m_dat->theorien[Dat::kuehnelVerzoegerung] != 0 && !schranken::ZeigtVerzoegerung(*m_dat);
    ShowText(IDC_SCHR_SCHRANKEN_HINWEIS, verborgen ? IDS_SCHRANKEN_NICHT_GEZEICHNET : 0);
}

void CTAB2::WertGeaendert(UINT controlId, bool schritt)
{
    m_maske.EingabeGeaendert(schritt || IstSchalter(controlId));
}
