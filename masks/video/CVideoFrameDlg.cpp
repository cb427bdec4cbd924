// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/CVideoFrameDlg.h"

#include "host/Bindings.h"
#include "host/Charts.h"
#include "host/Log.h"
#include "masks/video/CVideoDlg.h"
#include "masks/video/VideoBindungen.h"
#include "res/video.h"

#include <algorithm>

namespace
{

constexpr int kSpalteLaenge = 2;
constexpr int kStellen = 6; // s, to the microsecond: the time bases of files are no round milliseconds
constexpr UINT kKeineZahl = 1001;
constexpr UINT kAusserhalb = 1002;
constexpr double kKuerzeste = 0.000001;
constexpr double kLaengste = 3600.0;
constexpr UINT kKnoepfe[] = {IDC_FRAME_GEMESSEN, IDC_FRAME_GEWAEHLT};
constexpr const char* kAnwenden = "CVideoFrameDlg::ApplyFrameRateChanges";

} // namespace

CVideoFrameDlg::CVideoFrameDlg(CVideoDlg* maske) : CMDIDialog(IDD_VIDEO_FRAMERATE, maske), m_maske(maske) {}

const CMessageMap* CVideoFrameDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CVideoFrameDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CVideoFrameDlg::OnReset>(IDC_FRAME_RESET),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CVideoFrameDlg::BuildObjects()
{
    CMDIDialog::BuildObjects();
    CVideoDat& dat = m_maske->Daten();
    new CIdCombo(this, IDC_FRAME_ID, &dat.id, dat.ids);
    new CRadio(this, kKnoepfe, &m_gewaehlt);
}

void CVideoFrameDlg::SetupWindow()
{
    auto* tabelle = static_cast<CGridCtrl*>(GetDlgItem(IDC_FRAME_LAENGEN));
    tabelle->SetColumns({{LoadRuvString(IDS_FRAME_BILD), false, true},
                         {LoadRuvString(IDS_FRAME_GEMESSEN), false, true},
                         {LoadRuvString(IDS_FRAME_LAENGE), true, true}});
    tabelle->SetCellEdit([this](int zeile, int spalte, const std::string& text) -> std::optional<CCellRefusal> {
        return spalte == kSpalteLaenge ? NimmLaenge(zeile, text) : std::nullopt;
    });
    CMDIDialog::SetupWindow();
    ZeigeLaengen();
}

void CVideoFrameDlg::ZeigeLaengen()
{
    auto* tabelle = static_cast<CGridCtrl*>(GetDlgItem(IDC_FRAME_LAENGEN));
    const Videospur* spur = m_maske->Daten().Spur();
    m_gewaehlt = spur != nullptr && spur->gewaehlteLaengen ? 1 : 0;
    std::vector<CGridCtrl::Row> zeilen;
    for (std::size_t i = 0; spur != nullptr && i < spur->eintraege.size(); ++i) {
        // The first entry has none before it.
        const auto& eintrag = spur->eintraege[i];
        const double gewaehlt = eintrag.laenge > 0.0 ? eintrag.laenge : spur->GemesseneLaenge(i);
        zeilen.push_back({std::to_string(eintrag.punkt.frame + 1),
                          i == 0 ? "–" : RuvNumberText(spur->GemesseneLaenge(i), kStellen),
                          i == 0 ? "–" : RuvNumberText(gewaehlt, kStellen)});
    }
    const int erste = tabelle->GetFirstSelected();
    const int letzte = tabelle->GetLastSelected();
    tabelle->SetRows(std::move(zeilen));
    if (erste >= 0 && letzte < tabelle->GetRowCount())
        tabelle->SetSelection(erste, letzte);
    GetDlgItem(IDC_FRAME_STATUS)
        ->SetWindowText(spur == nullptr              ? LoadRuvString(IDS_FRAME_KEINE_ID)
                        : spur->eintraege.size() < 2 ? LoadRuvString(IDS_FRAME_KEINE_WERTE)
                                                     : std::string());
    UpdateDialog();
}

/// Of all selected rows when the one that was typed into is among them.
std::optional<CCellRefusal> CVideoFrameDlg::NimmLaenge(int zeile, const std::string& text)
{
    Videospur* spur = m_maske->Daten().Spur();
    const auto zahl = LiesSekunden(text);
    const std::string spalte = LoadRuvString(IDS_FRAME_LAENGE);
    if (!zahl)
        return CCellRefusal{kKeineZahl, {spalte, text, kKuerzeste, kLaengste}};
    if (!(*zahl >= kKuerzeste && *zahl <= kLaengste) || zeile == 0)
        return CCellRefusal{kAusserhalb, {spalte, text, kKuerzeste, kLaengste}};
    if (spur == nullptr || zeile >= static_cast<int>(spur->eintraege.size())) {
        RuvLog(kAnwenden, spur == nullptr ? "Vehicle ID not selected" : "Speed info vector empty");
        return std::nullopt;
    }
    const auto* tabelle = static_cast<CGridCtrl*>(GetDlgItem(IDC_FRAME_LAENGEN));
    const bool mehrere = zeile >= tabelle->GetFirstSelected() && zeile <= tabelle->GetLastSelected();
    const int erste = std::max(1, mehrere ? tabelle->GetFirstSelected() : zeile);
    const int letzte = mehrere ? tabelle->GetLastSelected() : zeile;
    for (int i = erste; i <= letzte && i < static_cast<int>(spur->eintraege.size()); ++i)
        spur->eintraege[static_cast<std::size_t>(i)].laenge = *zahl;
    spur->gewaehlteLaengen = true; // what is typed counts
    Uebernimm();
    return std::nullopt;
}

LRESULT CVideoFrameDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    CVideoDat& dat = m_maske->Daten();
    if (controlId == IDC_FRAME_ID)
        dat.WaehleSpur(dat.id);
    else if (Videospur* spur = dat.Spur())
        spur->gewaehlteLaengen = m_gewaehlt != 0;
    Uebernimm();
    return 0;
}

void CVideoFrameDlg::OnReset()
{
    if (Videospur* spur = m_maske->Daten().Spur()) {
        for (Videospur::Eintrag& eintrag : spur->eintraege)
            eintrag.laenge = 0.0;
        spur->gewaehlteLaengen = false;
    }
    Uebernimm();
}

void CVideoFrameDlg::Uebernimm()
{
    if (m_maske == nullptr) {
        RuvLog(kAnwenden, "Video Dialog is a null pointer");
        return;
    }
    m_maske->ApplyFrameRateChanges();
    ZeigeLaengen();
}
