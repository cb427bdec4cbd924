// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494: the video goes through the detector, all of it or what is played.
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/Log.h"
#include "host/Progress.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoDlg.h"
#include "res/video.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr UINT kFrageAnalyse = 1980;
constexpr UINT kFertig = 30202;
constexpr const char* kInit = "CVideoDlg::InitObjDetector";
constexpr const char* kAnalyse = "CVideoDlg::AnalyzeVideo";

} // namespace

/// Empty on success, else why there is none, in German.
std::string CVideoDlg::InitObjDetector()
{
    m_detektor.reset();
    const auto modell = DetectorModelPath();
    if (!modell) {
        RuvLog(kInit, "Object detector not initialsed properly. Could not find backslash in application path");
        return LoadRuvString(IDS_VIDEO_OHNE_ORDNER);
    }
    m_detektor.reset(new CYoloV5ORTDetector(StandardDetector()));
    RuvLog(kInit, "Weight path: " + *modell);
    RuvLog(kInit, "Config path: ");
    if (m_detektor->ReadModel(*modell, "") == 0) {
        RuvLog(kInit, "Object detector could not read the model");
        std::string grund = m_detektor->Reason();
        m_detektor.reset();
        return grund;
    }
    RuvLog(kInit, "Object detector initialsed properly!");
    return {};
}

void CVideoDlg::OnKomplettanalyse()
{
    HalteAn();
    if (!HatVideo()) {
        RuvLog(kAnalyse, "Analyzing video failed. Path does not exist");
        Status(LoadRuvString(IDS_VIDEO_ERST_VIDEO));
        return;
    }
    if (const std::string grund = InitObjDetector(); !grund.empty()) {
        Status(Eingesetzt(LoadRuvString(IDS_VIDEO_KEIN_DETEKTOR), {grund}));
        return;
    }
    if (FehlerMeldung(this, kFrageAnalyse) == fehlerOk)
        AnalyzeVideo();
}

void CVideoDlg::AnalyzeVideo()
{
    const CWaitCursor wait;
    CWnd* knopf = GetDlgItem(IDC_VIDEO_KOMPLETT);
    const std::string beschriftung = knopf->GetWindowText();
    const std::string was = LoadRuvString(IDS_VIDEO_ANALYSIERT);
    const int bilder = m_leser->GetFrameCount();
    std::string grund;
    int unlesbar = 0;
    m_suche = std::make_unique<Videosuche>(m_dat, 0);
    while (m_suche->NaechstesBild() < bilder && grund.empty()) {
        const int bild = m_suche->NaechstesBild();
        knopf->SetWindowText(std::to_string(bild + 1));
        if (RuvProgress(was, static_cast<double>(bild) / bilder) == Work::cancel) {
            grund = LoadRuvString(IDS_VIDEO_VOM_BENUTZER);
            break;
        }
        SearchedFrame gesucht = m_suche->Suche(*m_detektor, *m_leser);
        grund = std::move(gesucht.reason);
        unlesbar += gesucht.isUnreadable ? 1 : 0;
    }
    NimmGefundene();
    knopf->SetWindowText(beschriftung);
    const auto gefunden = std::count_if(m_dat.Spuren().begin(), m_dat.Spuren().end(),
                                        [](const auto& spur) { return spur.second.IstGefunden(); });
    RuvLog("CVideoDlg::FillIdList", "Number of vehicles detected: " + std::to_string(gefunden));
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

/// Where nothing is chosen yet, the first one is.
void CVideoDlg::NimmGefundene()
{
    if (m_dat.Spur() == nullptr && !m_dat.Spuren().empty())
        m_dat.WaehleSpur(m_dat.Spuren().begin()->first);
    else
        m_dat.Rechne();
}

/// Without a network the video is played all the same; why there is none stands in the log only.
void CVideoDlg::BeginneSuche()
{
    m_sucheNeuAb.reset();
    m_sucht = !m_dat.IstGanzGesucht() && (m_detektor || InitObjDetector().empty());
    if (!m_sucht && !m_detektor)
        RuvLog("CVideoDlg::DetectTrackAndDrawObjs", "Object detector,  is a null pointer");
}

/// What the detector went through is not searched again, unless its search would be another one now.
bool CVideoDlg::MussSuchen(std::int64_t bild) const
{
    return m_sucht && !m_dat.IstGanzGesucht() && (!m_dat.IstGesucht(bild) || (m_suche && !m_suche->Gilt()));
}

/// A frame that is played. False when it could not be searched: playing has stopped, and the status line says why.
bool CVideoDlg::SpieleFrame(std::int64_t bild)
{
    std::string grund;
    const bool sucht = MussSuchen(bild);
    const std::int64_t id = m_dat.id;
    if (sucht) {
        if (!m_suche || !m_suche->Gilt() || m_suche->NaechstesBild() != bild) {
            if (m_dat.analysiert > 0)
                m_sucheNeuAb = bild;
            m_suche = std::make_unique<Videosuche>(m_dat, static_cast<int>(bild));
        }
        grund = m_suche->Suche(*m_detektor, *m_leser).reason;
        m_ungemerkt = true;
        NimmGefundene();
    }
    ZeigeFrame(bild);
    if (sucht) {
        ZeigeKurve();
        ZeigeTexte();
        // A field that is being typed in is left alone.
        if (m_dat.id != id)
            UpdateDialog();
        else
            Update(IDC_VIDEO_ID);
    }
    if (!grund.empty()) {
        RuvLog(kAnalyse, "Analyzing video failed. Error: " + grund);
        HalteAn();
        Status(Eingesetzt(LoadRuvString(IDS_VIDEO_ABGEBROCHEN), {grund}));
    } else if (m_sucheNeuAb) {
        Status(Eingesetzt(LoadRuvString(IDS_VIDEO_SUCHE_NEU), {std::to_string(*m_sucheNeuAb + 1)}));
    }
    return grund.empty();
}
