// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494: the video's file, its frames, playing it.
#include "host/CRuvFileDialog.h"
#include "host/Files.h"
#include "host/Log.h"
#include "host/Progress.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoDlg.h"
#include "res/video.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace
{

constexpr const char* kFilter = "*.mp4; *.avi|*.mp4; *.avi||";
constexpr UINT_PTR kUhr = 1;
constexpr double kLaengsteStandzeit = 10.0; // s that a frame is shown at most while playing

std::string Text(UINT id, std::initializer_list<std::string> args)
{
    return Eingesetzt(LoadRuvString(id), args);
}

} // namespace

void CVideoDlg::WaehleDatei()
{
    CRuvFileDialog dialog(true, "*.mp4", m_dat.Videopfad(), OFN_HIDEREADONLY, kFilter, this);
    if (dialog.DoModal() != IDOK)
        return;
    m_data.BroadcastMessage(WM_RUV_BEFOREIMPORT, 0, 0, this);
    ReadData();
    HalteAn();
    if (!LoadVideo(dialog.GetPathName()))
        return;
    m_suche.reset();
    m_angebot.reset();
    m_aktiv.reset();
    ZeigeFrame(0);
    Zeige();
}

/// After a failure everything is as before, and the status line says why.
bool CVideoDlg::LoadVideo(const std::string& pfad)
{
    constexpr const char* kContext = "CVideoDlg::LoadVideo";
    const CWaitCursor wait;
    bool istDa = false;
    const CFileRead datei = ReadFileBlocks(pfad, [&istDa](std::string_view, std::uint64_t) {
        istDa = true;
        return false;
    });
    if (!istDa && datei.outcome != FileOutcome::read) {
        RuvLog(kContext, "Failed to loaded new video at: " + pfad + ". Path does not exist");
        Status(datei.error);
        return false;
    }
    auto leser = std::make_unique<CVideoReader>();
    RuvLog("CVideoDlg::InitVideoReader", "Video reader initialized properly!");
    if (leser->OpenVideo(pfad) == 0) {
        RuvLog(kContext, "Video reader failed to open video");
        Status(leser->Reason());
        return false;
    }
    if (leser->IsOpened() == 0) {
        RuvLog(kContext, "Video reader is opened flag was false");
        Status(leser->Reason());
        return false;
    }
    const std::string hasht = LoadRuvString(IDS_VIDEO_HASHT);
    std::string sha256 = RuvFileSha256(pfad, [&hasht](double teil) { return RuvProgress(hasht, teil) == Work::goOn; });
    if (sha256.empty()) {
        Status(LoadRuvString(IDS_VIDEO_UNGEPRUEFT));
        return false;
    }
    if (m_leser) {
        RuvLog("CVideoDlg::InitVideoReader", "Video reader already initialized. Deleting old instance...");
        m_leser.reset();
        RuvLog("CVideoDlg::InitVideoReader", "Video reader old instance deleted");
    }
    m_leser = std::move(leser);
    m_offen = sha256;
    m_dat.NimmVideo({pfad, std::move(sha256), static_cast<double>(m_leser->GetWidth()),
                     static_cast<double>(m_leser->GetHeight()), m_leser->GetFPS()});
    RuvLog(kContext, "Loaded new video: " + pfad);
    Status(Text(IDS_VIDEO_GELADEN, {std::to_string(m_leser->GetFrameCount()), std::to_string(m_leser->GetWidth()),
                                    std::to_string(m_leser->GetHeight())}) +
           Gezaehlt());
    return true;
}

std::string CVideoDlg::Gezaehlt() const
{
    std::string text = m_leser->IsCounted() ? LoadRuvString(IDS_VIDEO_GEZAEHLT) : std::string();
    if (const int fehlen = m_leser->MissingFrames(); fehlen > 0)
        text += Text(IDS_VIDEO_ABGESCHNITTEN, {std::to_string(fehlen)});
    return text;
}

/// Shows the video that the case names, and no other: a file that changed is not what was clicked in.
void CVideoDlg::OeffneVideoDesFalls()
{
    HalteAn();
    m_leser.reset();
    m_offen.clear();
    m_bild.SetBild(nullptr, LoadRuvString(IDS_VIDEO_OHNE));
    m_dat.bildnummer = 0;
    m_dat.stelle = 0.0;
    const std::string pfad = m_dat.Videopfad();
    if (pfad.empty())
        return;
    const CWaitCursor wait;
    bool abgebrochen = false;
    const std::string hasht = LoadRuvString(IDS_VIDEO_HASHT);
    const std::string sha256 = RuvFileSha256(pfad, [&](double teil) {
        abgebrochen = RuvProgress(hasht, teil) == Work::cancel;
        return !abgebrochen;
    });
    if (sha256.empty()) {
        Status(abgebrochen ? LoadRuvString(IDS_VIDEO_UNGEPRUEFT) : Text(IDS_VIDEO_FEHLT, {pfad}));
        return;
    }
    if (sha256 != m_data.Video().sha256) {
        Status(Text(IDS_VIDEO_ANDERE_DATEI, {pfad}));
        return;
    }
    auto leser = std::make_unique<CVideoReader>();
    if (leser->OpenVideo(pfad) == 0) {
        RuvLog("CVideoDlg::LoadVideo", "Video reader failed to open video");
        Status(leser->Reason());
        return;
    }
    m_leser = std::move(leser);
    m_offen = sha256;
    RuvLog("CVideoDlg::LoadVideo", "Loaded new video: " + pfad);
    ZeigeFrame(0);
}

void CVideoDlg::ZeigeFrame(std::int64_t bild)
{
    if (!HatVideo() || m_leser->GetFrameCount() == 0)
        return;
    bild = std::clamp<std::int64_t>(bild, 0, m_leser->GetFrameCount() - 1);
    m_leser->SetFramePos(static_cast<int>(bild));
    auto gelesen = std::make_shared<drawing::Bitmap>();
    double zeit = m_leser->FrameTimes()[static_cast<std::size_t>(bild)];
    const bool gelungen = m_leser->ReadFrame(*gelesen, zeit) != 0;
    m_dat.bildnummer = bild;
    m_dat.stelle = zeit;
    m_bild.SetBild(gelungen ? std::move(gelesen) : nullptr, m_leser->Reason());
    if (!gelungen)
        Status(m_leser->Reason());
    else if (m_leser->IsDamaged(static_cast<int>(bild)))
        Status(LoadRuvString(IDS_VIDEO_BILD_BESCHAEDIGT));
    else
        Status(Text(IDS_VIDEO_GELADEN, {std::to_string(m_leser->GetFrameCount()), std::to_string(m_leser->GetWidth()),
                                        std::to_string(m_leser->GetHeight())}) +
               Gezaehlt());
    ZeigeInhalt();
}

void CVideoDlg::GeheZu(std::int64_t bild)
{
    if (!HatVideo()) {
        Status(LoadRuvString(IDS_VIDEO_ERST_VIDEO));
        return;
    }
    HalteAn();
    ZeigeFrame(bild);
}

void CVideoDlg::OnPlay()
{
    if (m_spielt) {
        RuvLog("CVideoDlg::OnPlay", "Pause button pressed");
        HalteAn();
        return;
    }
    RuvLog("CVideoDlg::OnPlay", "Play button pressed");
    if (!HatVideo()) {
        Status(LoadRuvString(IDS_VIDEO_ERST_VIDEO));
        return;
    }
    if (m_amEnde)
        ZeigeFrame(0);
    m_amEnde = false;
    m_spielt = true;
    GetDlgItem(IDC_VIDEO_PLAY)->SetWindowText(LoadRuvString(IDS_VIDEO_PAUSE));
    BeginneSuche();
    if (!MussSuchen(m_dat.bildnummer) || SpieleFrame(m_dat.bildnummer))
        Spiele();
}

/// The timer for the frame that follows, as long as this one is shown; none is skipped.
void CVideoDlg::Spiele()
{
    const auto naechstes = static_cast<std::size_t>(m_dat.bildnummer) + 1;
    const std::vector<double>& zeiten = m_leser->FrameTimes();
    if (naechstes >= zeiten.size()) {
        HalteAn();
        m_amEnde = true;
        GetDlgItem(IDC_VIDEO_PLAY)->SetWindowText(LoadRuvString(IDS_VIDEO_ENDE));
        RuvLog("CVideoDlg::OnTimer", "Playing video finished");
        return;
    }
    const double dauer = std::clamp(zeiten[naechstes] - zeiten[naechstes - 1], 0.0, kLaengsteStandzeit);
    const double ms = dauer * 1000.0 / std::exp2(static_cast<double>(m_dat.abspielstufe));
    SetTimer(kUhr, std::max(1U, static_cast<UINT>(std::lround(ms))));
}

void CVideoDlg::HalteAn()
{
    KillTimer(kUhr);
    if (m_spielt || m_amEnde)
        GetDlgItem(IDC_VIDEO_PLAY)->SetWindowText(LoadRuvString(IDS_VIDEO_PLAY));
    m_spielt = m_amEnde = false;
    // One step for all of it, and none into a case that is another one by now.
    if (std::exchange(m_ungemerkt, false) && !m_dat.IstFremd())
        m_dat.Merken();
}

LRESULT CVideoDlg::OnTimer(WPARAM, LPARAM)
{
    KillTimer(kUhr);
    if (!m_spielt || !HatVideo())
        return 0;
    if (SpieleFrame(m_dat.bildnummer + 1))
        Spiele();
    return 0;
}
