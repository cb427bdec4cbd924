// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB3.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/resource.h"

namespace
{

using Dat = CSchrankenverfahrenDat;

/// A switch, and what is said beside it when the theory lacks what it needs.
struct Theorie {
    Dat::Theorie theorie;
    UINT schalter;
    UINT hinweis;
    UINT text;
};

constexpr Theorie kTheorien[] = {
    {Dat::scheinwerferHaupt, IDC_SCHR_HAUPTFELD, IDC_SCHR_HAUPTFELD_HINWEIS, IDS_SCHRANKEN_HAUPTFELD_FEHLT},
    {Dat::frontscheibe, IDC_SCHR_FRONTSCHEIBE, IDC_SCHR_FRONTSCHEIBE_HINWEIS, IDS_SCHRANKEN_HAUPTFELD_FEHLT},
    {Dat::scheinwerferGesamt, IDC_SCHR_GESAMTFELD, IDC_SCHR_GESAMTFELD_HINWEIS, IDS_SCHRANKEN_GESAMTFELD_FEHLT},
    {Dat::abwicklung, IDC_SCHR_ABWICKLUNG, IDC_SCHR_ABWICKLUNG_HINWEIS, IDS_SCHRANKEN_ABWICKLUNG_FEHLT},
    {Dat::geschwindigkeit, IDC_SCHR_TEMPOSCHRANKE, 0, 0},
};

} // namespace

CTAB3::CTAB3(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_ZUSATZ, maske, dat)
{
}

const CMessageMap* CTAB3::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB3::OnTheorie>(IDC_SCHR_HAUPTFELD),     OnControl<&CTAB3::OnTheorie>(IDC_SCHR_FRONTSCHEIBE),
        OnControl<&CTAB3::OnTheorie>(IDC_SCHR_GESAMTFELD),    OnControl<&CTAB3::OnTheorie>(IDC_SCHR_ABWICKLUNG),
        OnControl<&CTAB3::OnTheorie>(IDC_SCHR_TEMPOSCHRANKE),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB3::BuildObjects()
{
    constexpr double kGroessteStrecke = 1000.0; // cm
    constexpr double kGroessteKonstante = 100.0;
    constexpr double kGroesstesTempo = 200.0; // km/h
    Binde(IDC_SCHR_ABWICKLUNG_WEG, m_dat->abwicklungWeg, 0.0, kGroessteStrecke);
    Binde(IDC_SCHR_ABWICKLUNG_TOLERANZ, m_dat->abwicklungToleranz, 0.0, kGroessteStrecke);
    Binde(IDC_SCHR_KAROSSERIE, m_dat->karosserie, 0.0, kGroessteKonstante);
    Binde(IDC_SCHR_KAROSSERIE_TOLERANZ, m_dat->karosserieToleranz, 0.0, kGroessteKonstante);
    Binde(IDC_SCHR_TEMPOSCHRANKE_VON, m_dat->geschwindigkeitVon, 0.0, kGroesstesTempo, unitType::speedKmh);
    Binde(IDC_SCHR_TEMPOSCHRANKE_BIS, m_dat->geschwindigkeitBis, 0.0, kGroesstesTempo, unitType::speedKmh);
}

void CTAB3::SetupWindow()
{
    ZeigeEinheit(IDC_SCHR_TEMPOSCHRANKE_BIS, unitType::speedKmh);
    CSchrankenSeite::SetupWindow();
}

void CTAB3::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (const Theorie& eintrag : kTheorien) {
        const bool an = m_dat->theorien[eintrag.theorie] != 0;
        Kreuze(eintrag.schalter, an);
        if (eintrag.hinweis != 0)
            Hinweis(eintrag.hinweis, an && !m_dat->IstWirksam(eintrag.theorie) ? eintrag.text : 0);
    }
    for (const UINT edit :
         Ids{IDC_SCHR_ABWICKLUNG_WEG, IDC_SCHR_ABWICKLUNG_TOLERANZ, IDC_SCHR_KAROSSERIE, IDC_SCHR_KAROSSERIE_TOLERANZ})
        Enable(edit, m_dat->theorien[Dat::abwicklung] != 0);
    for (const UINT edit : Ids{IDC_SCHR_TEMPOSCHRANKE_VON, IDC_SCHR_TEMPOSCHRANKE_BIS})
        Enable(edit, m_dat->theorien[Dat::geschwindigkeit] != 0);
}

void CTAB3::WertGeaendert(UINT, bool schritt)
{
    m_maske.EingabeGeaendert(schritt);
}

void CTAB3::OnTheorie()
{
    for (const Theorie& eintrag : kTheorien)
        m_dat->theorien[eintrag.theorie] = Angekreuzt(eintrag.schalter) ? 1 : 0;
    m_maske.Nachrechnen();
}
