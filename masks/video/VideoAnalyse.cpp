// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494: the whole video goes through the detector.
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/Log.h"
#include "host/Progress.h"
#include "host/vision/VideoAnalysis.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoDlg.h"
#include "res/video.h"

#include <cmath>
#include <utility>

namespace
{

constexpr UINT kFrageAnalyse = 1980;
constexpr UINT kFertig = 30202;
constexpr const char* kInit = "CVideoDlg::InitObjDetector";
constexpr const char* kAnalyse = "CVideoDlg::AnalyzeVideo";

} // namespace

bool CVideoDlg::InitObjDetector()
{
    const auto modell = DetectorModelPath();
    if (!modell) {
        RuvLog(kInit, "Object detector not initialsed properly. Could not find backslash in application path");
        Status(Eingesetzt(LoadRuvString(IDS_VIDEO_KEIN_DETEKTOR), {LoadRuvString(IDS_VIDEO_OHNE_ORDNER)}));
        return false;
    }
    m_detektor.reset(new CYoloV5ORTDetector(StandardDetector()));
    RuvLog(kInit, "Weight path: " + *modell);
    RuvLog(kInit, "Config path: ");
    if (m_detektor->ReadModel(*modell, "") == 0) {
        RuvLog(kInit, "Object detector could not read the model");
        Status(Eingesetzt(LoadRuvString(IDS_VIDEO_KEIN_DETEKTOR), {m_detektor->Reason()}));
        m_detektor.reset();
        return false;
    }
    RuvLog(kInit, "Object detector initialsed properly!");
    return true;
}

void CVideoDlg::OnKomplettanalyse()
{
    HalteAn();
    if (!HatVideo()) {
        RuvLog(kAnalyse, "Analyzing video failed. Path does not exist");
        Status(LoadRuvString(IDS_VIDEO_ERST_VIDEO));
        return;
    }
    if (InitObjDetector() && FehlerMeldung(this, kFrageAnalyse) == fehlerOk)
        AnalyzeVideo();
}

void CVideoDlg::AnalyzeVideo()
{
    const CWaitCursor wait;
    CDistortionRectifier linse;
    linse.SetCameraParam(m_leser->GetWidth(), m_leser->GetHeight(), m_dat.Staerke());
    const FrameSearch suche{m_detektor.get(), &m_dat.Strasse(), m_dat.Staerke() != 0.0 ? &linse : nullptr,
                            m_dat.flaecheMin, m_dat.flaecheMax};
    m_dat.LoescheGefundene();
    const auto vorher = static_cast<int>(m_dat.HoechsteId());
    RuvLog("CVideoDlg::InitObjTracker", "Initializing object tracker...");
    VideoTracks spuren(m_leser->GetWidth(), m_leser->GetHeight());
    RuvLog("CVideoDlg::InitObjTracker", "Object tracker initialsed properly!");
    std::map<std::pair<int, int>, VideoBox> kaesten; // by ID and frame
    CWnd* knopf = GetDlgItem(IDC_VIDEO_KOMPLETT);
    const std::string beschriftung = knopf->GetWindowText();
    const std::string was = LoadRuvString(IDS_VIDEO_ANALYSIERT);
    const int bilder = m_leser->GetFrameCount();
    std::string grund;
    int bild = 0;
    int unlesbar = 0;
    for (; bild < bilder && grund.empty(); ++bild) {
        knopf->SetWindowText(std::to_string(bild + 1));
        if (RuvProgress(was, static_cast<double>(bild) / bilder) == Work::cancel) {
            grund = LoadRuvString(IDS_VIDEO_VOM_BENUTZER);
            break;
        }
        SearchedFrame gesucht = DetectAndTrack(suche, *m_leser, bild, spuren);
        grund = std::move(gesucht.reason);
        unlesbar += gesucht.isUnreadable ? 1 : 0;
        for (const SeenVehicle& fahrzeug : gesucht.seen)
            kaesten[{fahrzeug.id, bild}] = fahrzeug.box;
    }
    for (const auto& [nummer, eintraege] : spuren.Tracks()) {
        Videospur spur{.punktHoehe = CVideoDat::kKastenHoehe};
        for (const VideoEntry& eintrag : eintraege) {
            const auto kasten = kaesten.find({nummer, eintrag.frame});
            const bool da = kasten != kaesten.end();
            spur.eintraege.push_back({eintrag, da ? kasten->second.w : 1.0, da ? kasten->second.h : 1.0});
        }
        m_dat.NimmSpur(vorher + nummer, std::move(spur));
        RuvLog("CVideoDlg::DetectTrackAndDrawObjs", "Detected vehicle ID: " + std::to_string(vorher + nummer));
    }
    m_dat.analysiert = bild;
    m_dat.unvollstaendig = grund.empty() ? 0 : 1;
    if (m_dat.Spur() == nullptr && !m_dat.Spuren().empty())
        m_dat.WaehleSpur(m_dat.Spuren().begin()->first);
    m_dat.Rechne();
    knopf->SetWindowText(beschriftung);
    RuvLog("CVideoDlg::FillIdList", "Number of vehicles detected: " + std::to_string(spuren.Tracks().size()));
    ZeigeFrame(m_dat.bildnummer);
    Zeige();
    if (grund.empty()) {
        if (unlesbar > 0)
            Status(Eingesetzt(LoadRuvString(IDS_VIDEO_UNLESBAR), {std::to_string(unlesbar)}));
        FehlerMeldung(this, kFertig);
        return;
    }
    RuvLog(kAnalyse, "Analyzing video failed. Error: " + grund);
    Status(Eingesetzt(LoadRuvString(IDS_VIDEO_ABGEBROCHEN), {grund}));
}
