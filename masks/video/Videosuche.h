// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The detector's way through a video: frame after frame, and what it finds goes into the record at once.
#pragma once

#include "host/vision/VideoAnalysis.h"
#include "masks/video/CVideoDat.h"

#include <map>
#include <vector>

class Videosuche
{
  public:
    /// Begins anew with this frame: what was found before is dropped, what was clicked stays.
    Videosuche(CVideoDat& dat, int bild);

    int NaechstesBild() const { return m_naechstes; }
    /// The calibration, the lens and the limits of the area are those that it began with: otherwise what it follows
    /// cannot be followed on.
    bool Gilt() const { return m_eingaben == Eingaben(m_dat); }
    /// Searches the next frame. With a reason, why it could not, the frame does not count as searched.
    SearchedFrame Suche(CObjDetector& detektor, CVideoReader& leser);

  private:
    static std::vector<double> Eingaben(const CVideoDat& dat);

    CVideoDat& m_dat;
    int m_naechstes;
    std::vector<double> m_eingaben;
    VideoTracks m_spuren;
    std::map<int, int> m_ids; // by number of the tracker; clicked ones may have come between
};
