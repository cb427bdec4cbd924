// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// From the rows of the network to boxes: what is a vehicle, which of several boxes around it is the surest.
#include "vision/ProgramPath.h"
#include "vision/VideoSource.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr std::size_t kBeforeClasses = 5; ///< columns: x, y, w, h, and how sure it is that there is something
constexpr std::size_t kCocoClasses = 80;
constexpr std::array<int, 5> kCocoVehicles{1, 2, 3, 5, 7}; ///< bicycle, car, motorcycle, bus, truck
constexpr std::size_t kMaxBoxes = 200;                     ///< in a picture
constexpr int kNoCrop = 0;
constexpr int kProcessor = -1;

/// Common area over the area of both together.
double Overlap(const VideoBox& a, const VideoBox& b)
{
    const double w = std::min(a.x + a.w, b.x + b.w) - std::max(a.x, b.x);
    const double h = std::min(a.y + a.h, b.y + b.h) - std::max(a.y, b.y);
    if (!(w > 0.0 && h > 0.0))
        return 0.0;
    return w * h / (a.w * a.h + b.w * b.h - w * h);
}

/// The box of a row in px of the picture, within it.
VideoBox BoxOf(const float* row, const vision::NetOutput& output, double width, double height)
{
    const auto [scaleX, scaleY] = std::pair(output.scaleX, output.scaleY);
    const auto within = [](double x, double limit) { return std::clamp(x, 0.0, limit); };
    const double left = within((row[0] - row[2] / 2.0 - output.left) / scaleX, width);
    const double top = within((row[1] - row[3] / 2.0 - output.top) / scaleY, height);
    const double right = within((row[0] + row[2] / 2.0 - output.left) / scaleX, width);
    const double bottom = within((row[1] + row[3] / 2.0 - output.top) / scaleY, height);
    return {left, top, right - left, bottom - top};
}

/// Greedy non-maximum suppression, whichever class a box is of: a vehicle is one vehicle.
std::vector<VideoBox> Surest(std::vector<VideoBox> boxes, double maxOverlap)
{
    std::stable_sort(boxes.begin(), boxes.end(),
                     [](const VideoBox& a, const VideoBox& b) { return a.score > b.score; });
    std::vector<VideoBox> kept;
    for (const VideoBox& box : boxes) {
        if (kept.size() == kMaxBoxes)
            break;
        if (std::none_of(kept.begin(), kept.end(),
                         [&](const VideoBox& surer) { return Overlap(surer, box) > maxOverlap; }))
            kept.push_back(box);
    }
    return kept;
}

} // namespace

bool CObjDetector::HasCountingArea(const VideoBox& box) const
{
    const double area = box.w * box.h;
    return (!(m_minArea > 0.0) || area > m_minArea) && (!(m_maxArea > 0.0) || area < m_maxArea);
}

CYoloV5ORTDetector::CYoloV5ORTDetector(int swapRB, float minScore, float maxOverlap, double mean, double scale,
                                       NetSize size, int crop, int device)
    : m_swapRB(swapRB), m_minScore(minScore), m_maxOverlap(maxOverlap), m_mean(mean), m_scale(scale), m_size(size),
      m_crop(crop), m_device(device)
{
}

CYoloV5ORTDetector::~CYoloV5ORTDetector() = default;

int CYoloV5ORTDetector::ReadModel(const std::string& weights, const std::string& /*config*/)
{
    if (m_crop != kNoCrop || m_device != kProcessor || m_size.width <= 0 || m_size.height <= 0) {
        m_reason = "Diese Einstellung der Objekterkennung gibt es nicht.";
        return 0;
    }
    const vision::VideoLibrary* library = vision::LoadVideoLibrary(m_reason);
    if (library == nullptr)
        return 0;
    vision::OpenedNet opened = library->openNet(weights, {m_swapRB != 0, m_mean, m_scale, m_size});
    m_net = std::move(opened.net);
    m_reason = std::move(opened.reason);
    return m_net ? 1 : 0;
}

int CYoloV5ORTDetector::Detect(const cv::Mat& image, std::vector<VideoBox>& boxes)
{
    boxes.clear();
    if (!m_net) {
        m_reason = "Für die Objekterkennung ist kein Modell geladen.";
        return 0;
    }
    vision::NetOutput output;
    m_reason = m_net->Run(image, output);
    if (!m_reason.empty())
        return 0;
    std::string ignored;
    const vision::VideoLibrary& library = *vision::LoadVideoLibrary(ignored);
    const double width = library.width(image);
    const double height = library.height(image);
    const std::size_t classes = output.columns - kBeforeClasses;
    std::vector<VideoBox> candidates;
    for (std::size_t at = 0; at + output.columns <= output.values.size(); at += output.columns) {
        const float* row = &output.values[at];
        // A class makes nothing surer. What is not a number is not sure.
        if (!(row[4] >= m_minScore))
            continue;
        const float* first = row + kBeforeClasses;
        const float* best = std::max_element(first, first + classes);
        VideoBox box = BoxOf(row, output, width, height);
        box.classId = static_cast<int>(best - first);
        box.score = static_cast<double>(row[4]) * static_cast<double>(*best);
        const bool isVehicle = classes != kCocoClasses || std::find(kCocoVehicles.begin(), kCocoVehicles.end(),
                                                                    box.classId) != kCocoVehicles.end();
        if (isVehicle && box.score >= static_cast<double>(m_minScore) && box.w > 0.0 && box.h > 0.0)
            candidates.push_back(box);
    }
    boxes = Surest(std::move(candidates), static_cast<double>(m_maxOverlap));
    // The surest box says how large a vehicle is: a less sure one does not count in its place.
    std::erase_if(boxes, [this](const VideoBox& box) { return !HasCountingArea(box); });
    return 1;
}

std::optional<std::string> DetectorModelPath(const std::string& program)
{
#ifdef _WIN32
    constexpr char kSeparator = '\\';
#else
    constexpr char kSeparator = '/';
#endif
    const auto folder = program.rfind(kSeparator);
    if (folder == std::string::npos)
        return std::nullopt;
    return program.substr(0, folder + 1) + "Dnn" + kSeparator + "detector.onnx";
}

std::optional<std::string> DetectorModelPath()
{
    return DetectorModelPath(HostProgramPath());
}
