// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB2.h"

#include "host/Bindings.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "masks/collision/SchrankenDiagramm.h"
#include "res/resource.h"

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr double kGroessteToleranz = 100.0; // km/h

struct Theorie {
    Dat::Theorie theorie;
    UINT schalter;
    UINT toleranz; ///< edit that the switch enables, 0 = none
};

constexpr Theorie kTheorien[] = {
    {Dat::kuehnelGlobal, IDC_SCHR_KUEHNEL_GLOBAL, 0},
    {Dat::kuehnelVerzoegerung, IDC_SCHR_KUEHNEL_VERZOEGERUNG, IDC_SCHR_KUEHNEL_TOLERANZ},
    {Dat::rauOtteSchulz, IDC_SCHR_RAU, IDC_SCHR_RAU_TOLERANZ},
    {Dat::dettinger, IDC_SCHR_DETTINGER, IDC_SCHR_DETTINGER_TOLERANZ},
    {Dat::ritterKrieg, IDC_SCHR_RITTER, 0},
};

} // namespace

CTAB2::CTAB2(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_SCHRANKEN, maske, dat)
{
}

const CMessageMap* CTAB2::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB2::OnTheorie>(IDC_SCHR_KUEHNEL_GLOBAL),
        OnControl<&CTAB2::OnTheorie>(IDC_SCHR_KUEHNEL_VERZOEGERUNG),
        OnControl<&CTAB2::OnTheorie>(IDC_SCHR_RAU),
        OnControl<&CTAB2::OnTheorie>(IDC_SCHR_DETTINGER),
        OnControl<&CTAB2::OnTheorie>(IDC_SCHR_RITTER),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB2::BuildObjects()
{
    constexpr double kGroessteVerzoegerung = 20.0; // m/s²
    Binde(IDC_SCHR_VERZOEGERUNG, m_dat->verzoegerung, 0.0, kGroessteVerzoegerung, unitType::acceleration)
        ->SetSource(ValueSource::maximumDeceleration);
    Binde(IDC_SCHR_VERZOEGERUNG_TOLERANZ, m_dat->verzoegerungToleranz, 0.0, kGroessteVerzoegerung,
          unitType::acceleration);
    Binde(IDC_SCHR_KUEHNEL_TOLERANZ, m_dat->kuehnelToleranz, 0.0, kGroessteToleranz, unitType::speedKmh);
    Binde(IDC_SCHR_RAU_TOLERANZ, m_dat->rauToleranz, 0.0, kGroessteToleranz, unitType::speedKmh);
    Binde(IDC_SCHR_DETTINGER_TOLERANZ, m_dat->dettingerToleranz, 0.0, kGroessteToleranz, unitType::speedKmh);
}

void CTAB2::SetupWindow()
{
    ZeigeEinheit(IDC_SCHR_VERZOEGERUNG, unitType::acceleration);
    ZeigeEinheit(IDC_SCHR_VERZOEGERUNG_TOLERANZ, unitType::acceleration);
    for (const UINT edit : Ids{IDC_SCHR_KUEHNEL_TOLERANZ, IDC_SCHR_RAU_TOLERANZ, IDC_SCHR_DETTINGER_TOLERANZ})
        ZeigeEinheit(edit, unitType::speedKmh);
    CSchrankenSeite::SetupWindow();
}

void CTAB2::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (const Theorie& eintrag : kTheorien) {
        const bool an = m_dat->theorien[eintrag.theorie] != 0;
        Kreuze(eintrag.schalter, an);
        if (eintrag.toleranz != 0)
            Enable(eintrag.toleranz, an);
    }
    const bool verborgen = m_dat->theorien[Dat::kuehnelVerzoegerung] != 0 && !schranken::ZeigtVerzoegerung(*m_dat);
    Hinweis(IDC_SCHR_SCHRANKEN_HINWEIS, verborgen ? IDS_SCHRANKEN_NICHT_GEZEICHNET : 0);
}

void CTAB2::WertGeaendert(UINT, bool schritt)
{
    m_maske.EingabeGeaendert(schritt);
}

void CTAB2::OnTheorie()
{
    for (const Theorie& eintrag : kTheorien)
        m_dat->theorien[eintrag.theorie] = Angekreuzt(eintrag.schalter) ? 1 : 0;
    m_maske.Nachrechnen();
}
