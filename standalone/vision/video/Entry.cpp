// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the vision library finds when it loads this one. No exception leaves it.
#include "vision/VideoSource.h"
#include "vision/video/OnnxNet.h"
#include "vision/video/VideoFile.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace vision
{
namespace
{

OpenedVideo Open(const std::string& path)
{
    try {
        auto file = std::make_unique<VideoFile>();
        std::string reason = file->Open(path);
        if (reason.empty())
            return {std::move(file), {}};
        return {nullptr, std::move(reason)};
    } catch (const std::exception&) {
        return {nullptr, "Für das Video reicht der Speicher nicht."};
    }
}

OpenedNet OpenNet(const std::string& path, const NetInput& input)
{
    auto net = std::make_unique<OnnxNet>(input);
    std::string reason = net->Open(path);
    if (!reason.empty())
        return {nullptr, std::move(reason)};
    return {std::move(net), {}};
}

cv::Mat* MakeImage()
{
    return new cv::Mat();
}

void FreeImage(cv::Mat* image)
{
    delete image;
}

int Width(const cv::Mat& image)
{
    return image.cols;
}

int Height(const cv::Mat& image)
{
    return image.rows;
}

bool Remap(const cv::Mat& image, cv::Mat& result, int width, int height,
           const std::function<VisionPoint(VisionPoint)>& source)
{
    if (image.empty() || width <= 0 || height <= 0)
        return false;
    try {
        cv::Mat map(height, width, CV_32FC2);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                // The centre of a pixel lies half a pixel behind its corner; OpenCV counts from the first centre.
                const VisionPoint p = source({x + 0.5, y + 0.5});
                map.at<cv::Vec2f>(y, x) = {static_cast<float>(p.x - 0.5), static_cast<float>(p.y - 0.5)};
            }
        cv::Mat drawn;
        cv::remap(image, drawn, map, cv::noArray(), cv::INTER_LINEAR);
        result = drawn;
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool DrawPolygon(cv::Mat& image, const std::vector<VisionPoint>& corners)
{
    static const cv::Scalar kRed(0, 0, 240);
    constexpr int kRadius = 5;
    constexpr int kThickness = 2;
    try {
        std::vector<cv::Point> pixels;
        for (const VisionPoint corner : corners)
            pixels.emplace_back(static_cast<int>(std::lround(corner.x - 0.5)),
                                static_cast<int>(std::lround(corner.y - 0.5)));
        if (pixels.size() > 1)
            cv::polylines(image, pixels, true, kRed, kThickness, cv::LINE_AA);
        for (const cv::Point& pixel : pixels)
            cv::circle(image, pixel, kRadius, kRed, cv::FILLED, cv::LINE_AA);
        return !image.empty();
    } catch (const std::exception&) {
        return false;
    }
}

bool Correlate(const GreyPicture& picture, const GreyPicture& patch, std::vector<float>& values)
{
    try {
        // OpenCV does not write to what it only reads.
        const auto matrix = [](const GreyPicture& grey) {
            return cv::Mat(grey.height, grey.width, CV_8UC1, const_cast<std::uint8_t*>(grey.values.data()));
        };
        cv::Mat result;
        cv::matchTemplate(matrix(picture), matrix(patch), result, cv::TM_CCOEFF_NORMED);
        values.assign(result.begin<float>(), result.end<float>());
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace
} // namespace vision

extern "C" const vision::VideoLibrary* RuvVideoLibrary();

const vision::VideoLibrary* RuvVideoLibrary()
{
    static const vision::VideoLibrary library{vision::Open,      vision::OpenNet,     vision::MakeImage,
                                              vision::FreeImage, vision::Width,       vision::Height,
                                              vision::Remap,     vision::DrawPolygon, vision::Correlate};
    return &library;
}
