// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB3.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

namespace
{

using Dat = CSchrankenverfahrenDat;

/// What is said beside a switch when its theory lacks what it needs.
struct Theorie {
    Dat::Theorie theorie;
    UINT hinweis;
    UINT text;
};

constexpr Theorie kTheorien[] = {
    {Dat::scheinwerferHaupt, IDC_SCHR_HAUPTFELD_HINWEIS, IDS_SCHRANKEN_HAUPTFELD_FEHLT},
    {Dat::frontscheibe, IDC_SCHR_FRONTSCHEIBE_HINWEIS, IDS_SCHRANKEN_HAUPTFELD_FEHLT},
    {Dat::scheinwerferGesamt, IDC_SCHR_GESAMTFELD_HINWEIS, IDS_SCHRANKEN_GESAMTFELD_FEHLT},
    {Dat::abwicklung, IDC_SCHR_ABWICKLUNG_HINWEIS, IDS_SCHRANKEN_ABWICKLUNG_FEHLT},
};

} // namespace

CTAB3::CTAB3(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_ZUSATZ, maske, dat)
{
}

void CTAB3::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (const Theorie& eintrag : kTheorien) {
        const bool fehlt = m_dat->theorien[eintrag.theorie] != 0 && !m_dat->IstWirksam(eintrag.theorie);
        ShowText(eintrag.hinweis, fehlt ? eintrag.text : 0);
    }
}

void CTAB3::WertGeaendert(UINT controlId, bool schritt)
{
    m_maske.EingabeGeaendert(schritt || IstSchalter(controlId));
}
