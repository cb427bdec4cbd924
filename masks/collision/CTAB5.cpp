// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB5.h"

#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/resource.h"

namespace
{

constexpr UINT kWahl[] = {IDC_SCHR_EXPORT_MINIMUM, IDC_SCHR_EXPORT_MITTEL, IDC_SCHR_EXPORT_MAXIMUM};
constexpr UINT kTempi[] = {IDC_SCHR_EXPORTTEMPO_MINIMUM, IDC_SCHR_EXPORTTEMPO_MITTEL, IDC_SCHR_EXPORTTEMPO_MAXIMUM};

} // namespace

CTAB5::CTAB5(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_EXPORT, maske, dat)
{
}

const CMessageMap* CTAB5::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB5::OnWahl>(IDC_SCHR_EXPORT_MINIMUM), OnControl<&CTAB5::OnWahl>(IDC_SCHR_EXPORT_MITTEL),
        OnControl<&CTAB5::OnWahl>(IDC_SCHR_EXPORT_MAXIMUM), OnControl<&CTAB5::OnSeite>(IDC_SCHR_VON_LINKS),
        OnControl<&CTAB5::OnSeite>(IDC_SCHR_VON_RECHTS),    OnControl<&CTAB5::OnExport>(IDC_SCHR_EXPORT),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB5::BuildObjects()
{
    constexpr double kGroesstesTempo = 2000.0; // km/h
    for (std::size_t i = 0; i < std::size(kTempi); ++i)
        Binde(kTempi[i], m_dat->exportGeschwindigkeit[i], -kGroesstesTempo, kGroesstesTempo, unitType::speedKmh);
    Binde(IDC_SCHR_EXPORT_ANSTOSS, m_dat->anstossfaktor, 0.0, 1.0);
}

void CTAB5::SetupWindow()
{
    for (const UINT edit : kTempi) {
        ZeigeEinheit(edit, unitType::speedKmh);
        Enable(edit, FALSE);
    }
    CSchrankenSeite::SetupWindow();
}

void CTAB5::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (std::size_t i = 0; i < std::size(kWahl); ++i)
        Kreuze(kWahl[i], m_dat->exportWahl == static_cast<std::int64_t>(i));
    Kreuze(IDC_SCHR_VON_LINKS, m_dat->vonRechts == 0);
    Kreuze(IDC_SCHR_VON_RECHTS, m_dat->vonRechts != 0);
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
    Hinweis(IDC_SCHR_EXPORT_HINWEIS, text);
}

void CTAB5::WertGeaendert(UINT, bool)
{
    m_maske.KontrolleGeaendert();
}

LRESULT CTAB5::OnWahl(WPARAM wParam, LPARAM)
{
    m_dat->exportWahl = LOWORD(wParam) - IDC_SCHR_EXPORT_MINIMUM;
    m_maske.TempoUebergeben();
    return 0;
}

LRESULT CTAB5::OnSeite(WPARAM wParam, LPARAM)
{
    m_dat->vonRechts = LOWORD(wParam) == IDC_SCHR_VON_RECHTS ? 1 : 0;
    m_maske.KontrolleGeaendert();
    return 0;
}

void CTAB5::OnExport()
{
    m_maske.Exportieren();
}
