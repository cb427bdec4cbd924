// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Loads the library that decodes videos, and what of the vision library works on pictures through it.
#include "host/vision/CDistortionRectifier.h"
#include "host/vision/CPerspectiveRectifier.h"
#include "vision/VideoSource.h"

#include <algorithm>
#include <cmath>

#ifdef RUV_VIDEO_LIBRARY
#include <dlfcn.h>
#endif

namespace vision
{

#ifdef RUV_VIDEO_LIBRARY
namespace
{

/// The library that lies beside this one; no other of its name.
std::string BesideThis()
{
    Dl_info self{};
    if (dladdr(reinterpret_cast<const void*>(&LoadVideoLibrary), &self) == 0 || self.dli_fname == nullptr)
        return RUV_VIDEO_LIBRARY;
    const std::string path = self.dli_fname;
    return path.substr(0, path.rfind('/') + 1) + RUV_VIDEO_LIBRARY;
}

} // namespace

const VideoLibrary* LoadVideoLibrary(std::string& reason)
{
    using Entry = const VideoLibrary* (*)();
    // Never unloaded: the libraries behind it do not expect that.
    static void* const handle = dlopen(BesideThis().c_str(), RTLD_NOW | RTLD_LOCAL);
    static const auto entry =
        handle != nullptr ? reinterpret_cast<Entry>(dlsym(handle, "RuvVideoLibrary")) : Entry{nullptr};
    if (entry == nullptr) {
        reason = "Die Bibliothek zum Lesen von Videos (" RUV_VIDEO_LIBRARY ") fehlt oder lässt sich nicht laden.";
        return nullptr;
    }
    return entry();
}
#else
const VideoLibrary* LoadVideoLibrary(std::string& reason)
{
    reason = "Diese Fassung des Programms liest keine Videos.";
    return nullptr;
}
#endif

} // namespace vision

namespace
{

/// Larger pictures of the road are not made, px each way.
constexpr double kMaxRoadPicture = 8000.0;

const vision::VideoLibrary* Library()
{
    std::string ignored;
    return vision::LoadVideoLibrary(ignored);
}

} // namespace

int CDistortionRectifier::EstimateCameraParam(const cv::Mat& frame, double strength)
{
    const auto* library = Library();
    return library == nullptr ? 0 : SetCameraParam(library->width(frame), library->height(frame), strength);
}

int CDistortionRectifier::RectifyFrame(const cv::Mat& frame, cv::Mat& straight) const
{
    const auto* library = Library();
    return library != nullptr && library->remap(frame, straight, library->width(frame), library->height(frame),
                                                [this](VisionPoint p) { return Bend(p); })
               ? 1
               : 0;
}

int CPerspectiveRectifier::DrawPoints(cv::Mat& frame) const
{
    const auto* library = Library();
    std::vector<VisionPoint> corners;
    for (const std::size_t i : {0U, 1U, 3U, 2U})
        if (m_points[i])
            corners.push_back(*m_points[i]);
    return library != nullptr && library->drawPolygon(frame, corners) ? 1 : 0;
}

int CPerspectiveRectifier::RectifyFrame(const cv::Mat& frame, cv::Mat& road) const
{
    const auto* library = Library();
    if (library == nullptr || m_fault != RoadFault::none)
        return 0;
    double width = 0.0;
    double height = 0.0;
    for (const VisionPoint corner : m_corners) {
        width = std::max(width, std::ceil(corner.x));
        height = std::max(height, std::ceil(corner.y));
    }
    if (!(width >= 1.0 && height >= 1.0 && width <= kMaxRoadPicture && height <= kMaxRoadPicture))
        return 0;
    const auto source = [this](VisionPoint p) { return PicturePoint(p); };
    return library->remap(frame, road, static_cast<int>(width), static_cast<int>(height), source) ? 1 : 0;
}
