// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Straighten, detect, follow; of one frame, or of all in turn.
#include "host/vision/VideoAnalysis.h"

#include "vision/OwnedImage.h"

#include <exception>
#include <utility>

namespace
{

const char* const kNotReady = "Die Objekterkennung ist nicht bereit.";
const char* const kNoVideo = "Es ist kein Video geöffnet.";

/// The next frame of the reader into `image`. One that cannot be read shows no vehicle; they may be there all the same.
SearchedFrame SearchNext(const FrameSearch& with, CVideoReader& reader, cv::Mat& image, VideoTracks& tracks)
{
    const int frame = reader.GetFramePos();
    double time = 0.0;
    if (reader.ReadFrame(image, time) != 0)
        return DetectAndTrack(with, image, time, frame, tracks);
    tracks.Add(*with.road, time, frame, {});
    SearchedFrame unreadable;
    unreadable.isUnreadable = true;
    return unreadable;
}

} // namespace

SearchedFrame DetectAndTrack(const FrameSearch& with, const cv::Mat& image, double time, int frame, VideoTracks& tracks)
{
    SearchedFrame result;
    if (with.detector == nullptr || with.road == nullptr) {
        result.reason = kNotReady;
        return result;
    }
    with.detector->SetMinArea(with.minArea);
    with.detector->SetMaxArea(with.maxArea);
    const CDistortionRectifier* lens = with.lens != nullptr && with.lens->Strength() != 0.0 ? with.lens : nullptr;
    const vision::OwnedImage straight = lens != nullptr ? vision::MakeImage() : nullptr;
    if (lens != nullptr && (!straight || lens->RectifyFrame(image, *straight) == 0)) {
        result.reason = "Das Bild lässt sich nicht entzerren.";
        return result;
    }
    std::vector<VideoBox> boxes;
    if (with.detector->Detect(straight ? std::as_const(*straight) : image, boxes) == 0)
        result.reason = with.detector->Reason();
    else
        result.seen = tracks.Add(*with.road, time, frame, boxes, lens);
    return result;
}

SearchedFrame DetectAndTrack(const FrameSearch& with, CVideoReader& reader, int frame, VideoTracks& tracks)
{
    SearchedFrame result;
    const vision::OwnedImage image = vision::MakeImage();
    if (!image || reader.SetFramePos(frame) == 0)
        result.reason = kNoVideo;
    else if (with.detector == nullptr || with.road == nullptr)
        result.reason = kNotReady;
    else
        result = SearchNext(with, reader, *image, tracks);
    return result;
}

AnalysisResult AnalyzeVideo(CVideoReader& reader, const FrameSearch& with, VideoTracks& tracks,
                            const AnalysisProgress& goOn)
{
    AnalysisResult result;
    const auto ends = [&result](AnalysisEnd end, std::string reason) {
        result.end = end;
        result.reason = std::move(reason);
        return result;
    };
    const vision::OwnedImage image = vision::MakeImage();
    if (!image || reader.SetFramePos(0) == 0)
        return ends(AnalysisEnd::failed, kNoVideo);
    if (with.detector == nullptr || with.road == nullptr)
        return ends(AnalysisEnd::failed, kNotReady);
    try {
        const int count = reader.GetFrameCount();
        for (; result.frames < count; ++result.frames) {
            if (!goOn(result.frames, count))
                return ends(AnalysisEnd::cancelled, "Die Komplettanalyse wurde abgebrochen.");
            SearchedFrame found = SearchNext(with, reader, *image, tracks);
            if (!found.reason.empty())
                return ends(AnalysisEnd::failed, std::move(found.reason));
            result.unreadable += found.isUnreadable ? 1 : 0;
        }
    } catch (const std::exception& fault) {
        return ends(AnalysisEnd::failed, fault.what());
    }
    return result;
}
