// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Vehicles are found and followed: in one frame while a video is played, or in all of them.
#pragma once

#include "host/vision/CObjDetector.h"
#include "host/vision/CVideoReader.h"
#include "host/vision/VideoTracks.h"

#include <functional>
#include <string>
#include <vector>

/// What a frame is searched with. All are needed but the lens.
struct FrameSearch {
    CObjDetector* detector = nullptr;
    const CPerspectiveRectifier* road = nullptr; ///< calibrated or not
    const CDistortionRectifier* lens = nullptr;  ///< the frame is straightened first
    double minArea = 0.0;                        ///< px², 0: none
    double maxArea = 0.0;
};

struct SearchedFrame {
    std::vector<SeenVehicle> seen{};
    bool isUnreadable = false; ///< it could not be decoded, so nothing was found in it
    std::string reason{};      ///< German, why the frame could not be searched; the tracks are as before then
};

/// Straightens a frame, detects in it and follows the boxes. A frame that shows no vehicle counts too: tracks end by
/// it.
SearchedFrame DetectAndTrack(const FrameSearch& with, const cv::Mat& image, double time, int frame,
                             VideoTracks& tracks);
/// The same with the frame of this number, read for it; the reader's position is behind it then.
SearchedFrame DetectAndTrack(const FrameSearch& with, CVideoReader& reader, int frame, VideoTracks& tracks);

enum class AnalysisEnd {
    complete,
    cancelled,
    failed ///< the reason says why
};
struct AnalysisResult {
    AnalysisEnd end = AnalysisEnd::complete;
    std::string reason{}; ///< German
    int frames = 0;       ///< gone through, from the first one on
    int unreadable = 0;   ///< of these, could not be decoded, so nothing was found in them
};

/// Before each frame: its number from 0, and of how many; false cancels.
using AnalysisProgress = std::function<bool(int frame, int count)>;

/// Every frame of the open video in turn, from the first one on. `tracks` begins empty and keeps what was found until
/// the end, whichever it is. Nothing is thrown.
AnalysisResult AnalyzeVideo(CVideoReader& reader, const FrameSearch& with, VideoTracks& tracks,
                            const AnalysisProgress& goOn);
