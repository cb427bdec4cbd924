// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB4.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/resource.h"

namespace
{

constexpr UINT kWahl[] = {IDC_SCHR_WURF_MINIMUM, IDC_SCHR_WURF_MITTEL, IDC_SCHR_WURF_MAXIMUM};
constexpr UINT kWege[] = {IDC_SCHR_WURFWEG_MINIMUM, IDC_SCHR_WURFWEG_MITTEL, IDC_SCHR_WURFWEG_MAXIMUM};

} // namespace

CTAB4::CTAB4(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_KONTROLLE, maske, dat)
{
}

const CMessageMap* CTAB4::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB4::OnWahl>(IDC_SCHR_WURF_MINIMUM),
        OnControl<&CTAB4::OnWahl>(IDC_SCHR_WURF_MITTEL),
        OnControl<&CTAB4::OnWahl>(IDC_SCHR_WURF_MAXIMUM),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB4::BuildObjects()
{
    constexpr double kGroessterWeg = 2000.0; // m
    constexpr double kTiefster = -10.0;      // m
    for (std::size_t i = 0; i < std::size(kWege); ++i)
        Binde(kWege[i], m_dat->wurfRutschWeg[i], -kGroessterWeg, kGroessterWeg, unitType::length);
    Binde(IDC_SCHR_ABFLUGWINKEL, m_dat->abflugwinkel, 0.0, 90.0);
    Binde(IDC_SCHR_HOEHENUNTERSCHIED, m_dat->hoehenunterschied, kTiefster, 0.0, unitType::length);
    Binde(IDC_SCHR_RUTSCHVERZOEGERUNG, m_dat->rutschverzoegerung, 0.0, 20.0, unitType::acceleration);
    Binde(IDC_SCHR_KONTROLLE_ANSTOSS, m_dat->anstossfaktor, 0.0, 1.0);
    Binde(IDC_SCHR_ABFLUGTEMPO, m_dat->abfluggeschwindigkeit, 0.0, kGroessterWeg, unitType::speedKmh);
    Binde(IDC_SCHR_WURFWEITE, m_dat->wurfweite, 0.0, kGroessterWeg, unitType::length);
    Binde(IDC_SCHR_WURFHOEHE, m_dat->wurfhoehe, 0.0, kGroessterWeg, unitType::length);
    Binde(IDC_SCHR_KOLLISIONSTEMPO, m_dat->kollisionsgeschwindigkeit, 0.0, kGroessterWeg, unitType::speedKmh);
}

void CTAB4::SetupWindow()
{
    for (const UINT edit : kWege)
        ZeigeEinheit(edit, unitType::length);
    ZeigeEinheit(IDC_SCHR_HOEHENUNTERSCHIED, unitType::length);
    ZeigeEinheit(IDC_SCHR_RUTSCHVERZOEGERUNG, unitType::acceleration);
    ZeigeEinheit(IDC_SCHR_ABFLUGTEMPO, unitType::speedKmh);
    ZeigeEinheit(IDC_SCHR_WURFWEITE, unitType::length);
    ZeigeEinheit(IDC_SCHR_WURFHOEHE, unitType::length);
    ZeigeEinheit(IDC_SCHR_KOLLISIONSTEMPO, unitType::speedKmh);
    for (const UINT edit : kWege)
        Enable(edit, FALSE);
    for (const UINT edit : Ids{IDC_SCHR_ABFLUGTEMPO, IDC_SCHR_WURFWEITE, IDC_SCHR_WURFHOEHE, IDC_SCHR_KOLLISIONSTEMPO})
        Enable(edit, FALSE);
    CSchrankenSeite::SetupWindow();
}

void CTAB4::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (std::size_t i = 0; i < std::size(kWahl); ++i)
        Kreuze(kWahl[i], m_dat->wegWahl == static_cast<std::int64_t>(i));
}

void CTAB4::WertGeaendert(UINT, bool)
{
    m_maske.KontrolleGeaendert();
}

LRESULT CTAB4::OnWahl(WPARAM wParam, LPARAM)
{
    m_dat->wegWahl = LOWORD(wParam) - IDC_SCHR_WURF_MINIMUM;
    m_maske.KontrolleGeaendert();
    return 0;
}
