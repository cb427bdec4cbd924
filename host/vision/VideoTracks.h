// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The vehicles of a video: boxes of each frame become tracks whose entries stay in the raw frame, so that a change of
// the calibration changes speeds and no vehicle.
#pragma once

#include "host/vision/CCentroidTSTracker.h"
#include "host/vision/CPerspectiveRectifier.h"
#include "host/vision/VideoBox.h"
#include "host/vision/VideoSpeeds.h"

#include <map>
#include <span>
#include <vector>

/// A vehicle where a frame shows it.
struct SeenVehicle {
    int id = 0;       ///< counts from 1
    VideoBox box{};   ///< of the picture that was searched
    bool cut = false; ///< the box reaches its edge
};

class VideoTracks
{
  public:
    VideoTracks(int width, int height) : m_width(width), m_height(height) {}

    /// The boxes of the next frame; with a lens, of the straightened one. On a calibrated road those count whose centre
    /// has a place on it. Returns them with the numbers of their tracks.
    std::vector<SeenVehicle> Add(const CPerspectiveRectifier& road, double time, int frame,
                                 std::span<const VideoBox> boxes, const CDistortionRectifier* lens = nullptr);
    /// By ID; IDs count from 1.
    const std::map<int, std::vector<VideoEntry>>& Tracks() const { return m_tracks; }
    /// Whether the box reaches the frame's edge.
    bool IsCut(const VideoBox& box) const;

  private:
    int m_width; ///< px
    int m_height;
    CCentroidTSTracker m_tracker{20, 60};
    std::map<int, std::vector<VideoEntry>> m_tracks;
};
