// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB4.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

CTAB4::CTAB4(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_KONTROLLE, maske, dat)
{
}

void CTAB4::WertGeaendert(UINT, bool)
{
    m_maske.KontrolleGeaendert();
}
