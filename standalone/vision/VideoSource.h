// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The seam between the vision library and what decodes videos, which is loaded when it is first needed.
#pragma once

#include "host/CDC.h"
#include "host/vision/VisionPoint.h"
#include "vision/DetectorNet.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vision
{

struct VideoIndex {
    std::vector<double> times{}; ///< s, of each picture shown, ascending
    int width = 0;               ///< px, as shown
    int height = 0;
    int rotation = 0; ///< degrees clockwise
    double fps = 0.0;
    bool counted = false; ///< times are multiples of the frame length, the file stores none
    int missing = 0;      ///< pictures that the header promises and the file does not have
};

class VideoSource
{
  public:
    VideoSource() = default;
    virtual ~VideoSource() = default;
    VideoSource(const VideoSource&) = delete;
    VideoSource& operator=(const VideoSource&) = delete;

    virtual const VideoIndex& Index() const = 0;
    /// Empty when the picture was read, otherwise why not, in German.
    virtual std::string Read(int frame, cv::Mat& image) = 0;
    /// The same as pixels of the screen.
    virtual std::string Read(int frame, drawing::Bitmap& picture) = 0;
    virtual bool IsDamaged(int frame) const = 0;
};

struct OpenedVideo {
    std::unique_ptr<VideoSource> source{};
    std::string reason{}; ///< German, why there is no source
};

/// Rows from the top, without gaps.
struct GreyPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> values{};
};

struct VideoLibrary {
    OpenedVideo (*open)(const std::string& path);
    OpenedNet (*openNet)(const std::string& path, const NetInput& input);
    cv::Mat* (*makeImage)();
    void (*freeImage)(cv::Mat* image);
    int (*width)(const cv::Mat& image);
    int (*height)(const cv::Mat& image);
    /// `result` gets width x height pixels, each from where `source` says in `image`; false when that fails.
    bool (*remap)(const cv::Mat& image, cv::Mat& result, int width, int height,
                  const std::function<VisionPoint(VisionPoint)>& source);
    /// A closed polygon with marked corners.
    bool (*drawPolygon)(cv::Mat& image, const std::vector<VisionPoint>& corners);
    /// Normalised cross-correlation of the patch with every part of the picture as large as it, row by row.
    bool (*correlate)(const GreyPicture& picture, const GreyPicture& patch, std::vector<float>& values);
};

/// Null when this build reads no videos or the library does not load; `reason` then says why.
const VideoLibrary* LoadVideoLibrary(std::string& reason);

} // namespace vision
