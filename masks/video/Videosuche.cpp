// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/Videosuche.h"

#include "host/Log.h"

#include <string>

Videosuche::Videosuche(CVideoDat& dat, int bild)
    : m_dat(dat), m_naechstes(bild), m_eingaben(Eingaben(dat)),
      m_spuren(static_cast<int>(dat.bildgroesse[0]), static_cast<int>(dat.bildgroesse[1]))
{
    constexpr const char* kContext = "CVideoDlg::InitObjTracker";
    RuvLog(kContext, "Initializing object tracker...");
    m_dat.LoescheGefundene();
    m_dat.analysiertAb = bild;
    m_dat.unvollstaendig = 1;
    RuvLog(kContext, "Object tracker initialsed properly!");
}

std::vector<double> Videosuche::Eingaben(const CVideoDat& dat)
{
    const RoadInput strasse = dat.Strasseneingabe();
    std::vector<double> eingaben{
        strasse.strength, static_cast<double>(strasse.pattern),    strasse.strict ? 1.0 : 0.0, dat.flaecheMin,
        dat.flaecheMax,   static_cast<double>(dat.Punkte().size())};
    eingaben.insert(eingaben.end(), strasse.distances.begin(), strasse.distances.end());
    for (const VisionPoint p : strasse.points)
        eingaben.insert(eingaben.end(), {p.x, p.y});
    return eingaben;
}

SearchedFrame Videosuche::Suche(CObjDetector& detektor, CVideoReader& leser)
{
    CDistortionRectifier linse;
    linse.SetCameraParam(leser.GetWidth(), leser.GetHeight(), m_dat.Staerke());
    SearchedFrame gesucht = DetectAndTrack({&detektor, &m_dat.Strasse(), &linse, m_dat.flaecheMin, m_dat.flaecheMax},
                                           leser, m_naechstes, m_spuren);
    if (!gesucht.reason.empty())
        return gesucht;
    for (const SeenVehicle& fahrzeug : gesucht.seen) {
        const auto [id, neu] = m_ids.try_emplace(fahrzeug.id, static_cast<int>(m_dat.HoechsteId()) + 1);
        if (neu)
            RuvLog("CVideoDlg::DetectTrackAndDrawObjs", "Detected vehicle ID: " + std::to_string(id->second));
        m_dat.NimmKasten(id->second, m_spuren.Tracks().at(fahrzeug.id).back(), fahrzeug.box);
    }
    ++m_naechstes;
    ++m_dat.analysiert;
    m_dat.unvollstaendig = m_dat.analysiertAb == 0 && m_naechstes >= leser.GetFrameCount() ? 0 : 1;
    return gesucht;
}
