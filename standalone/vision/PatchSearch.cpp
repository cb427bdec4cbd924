// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/vision/PatchSearch.h"

#include "host/CDC.h"
#include "vision/VideoSource.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace
{

using vision::GreyPicture;

constexpr int kHalf = 10;              ///< px of the patch on each side of the point's pixel
constexpr int kSide = 2 * kHalf + 1;   ///< px
constexpr double kMaxReach = 200.0;    ///< px
constexpr double kFar = 1e6;           ///< px
constexpr double kLeastContrast = 4.0; ///< grey values, standard deviation; noise of compression is below
/// Another place: so far that the patch overlaps itself by half only, and so much less correlated at least.
constexpr int kOtherPlace = kHalf;
constexpr double kClearlyBetter = 0.05;

/// ITU-R BT.601 luma.
std::uint8_t GreyOf(std::uint32_t pixel)
{
    const std::uint32_t r = pixel >> 16U & 0xFFU;
    const std::uint32_t g = pixel >> 8U & 0xFFU;
    const std::uint32_t b = pixel & 0xFFU;
    return static_cast<std::uint8_t>((299U * r + 587U * g + 114U * b + 500U) / 1000U);
}

/// The part must lie within the picture.
GreyPicture Part(const drawing::Bitmap& picture, int left, int top, int width, int height)
{
    GreyPicture part{width, height, {}};
    part.values.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = top; y < top + height; ++y)
        for (int x = left; x < left + width; ++x)
            part.values.push_back(
                GreyOf(picture.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                                      static_cast<std::size_t>(x)]));
    return part;
}

double Contrast(const GreyPicture& patch)
{
    double sum = 0.0;
    double squares = 0.0;
    for (const std::uint8_t value : patch.values) {
        sum += value;
        squares += static_cast<double>(value) * value;
    }
    const auto n = static_cast<double>(patch.values.size());
    return std::sqrt(std::max(0.0, squares / n - sum / n * (sum / n)));
}

/// How far from the middle one of three even values the top of the parabola through them lies, in steps.
double TopOf(double before, double middle, double after)
{
    const double bend = before - 2.0 * middle + after;
    return bend < 0.0 ? std::clamp(0.5 * (before - after) / bend, -0.5, 0.5) : 0.0;
}

} // namespace

PatchPlace FindPatch(const drawing::Bitmap& before, VisionPoint point, const drawing::Bitmap& after,
                     VisionPoint expected, double reach)
{
    std::string ignored;
    const vision::VideoLibrary* library = vision::LoadVideoLibrary(ignored);
    const bool finite = std::isfinite(point.x + point.y) && std::isfinite(expected.x + expected.y);
    if (library == nullptr || !finite || before.width != after.width || before.height != after.height)
        return {PatchFault::noLibrary};
    const int width = before.width;
    const int height = before.height;
    // Far outside is as far as it takes.
    const auto pixel = [](double at) { return static_cast<int>(std::floor(std::clamp(at, -kFar, kFar))); };
    const int left = pixel(point.x) - kHalf;
    const int top = pixel(point.y) - kHalf;
    if (left < 0 || top < 0 || left + kSide > width || top + kSide > height)
        return {PatchFault::atEdge};
    const GreyPicture patch = Part(before, left, top, kSide, kSide);
    if (Contrast(patch) < kLeastContrast)
        return {PatchFault::plain};

    // Upper left corners of the patch that are tried.
    const int steps = static_cast<int>(std::ceil(std::clamp(reach, 1.0, kMaxReach)));
    const int middleX = pixel(expected.x) - kHalf;
    const int middleY = pixel(expected.y) - kHalf;
    const int firstX = std::max(0, middleX - steps);
    const int firstY = std::max(0, middleY - steps);
    const int columns = std::min(width - kSide, middleX + steps) - firstX + 1;
    const int rows = std::min(height - kSide, middleY + steps) - firstY + 1;
    if (columns < 3 || rows < 3)
        return {PatchFault::atEdge};
    std::vector<float> values;
    if (!library->correlate(Part(after, firstX, firstY, columns + kSide - 1, rows + kSide - 1), patch, values) ||
        values.size() != static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
        return {PatchFault::noLibrary};
    const auto at = [&](int x, int y) -> double {
        const double value =
            values[static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x)];
        return std::isfinite(value) ? value : -1.0;
    };
    int bestX = 0;
    int bestY = 0;
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
            if (at(x, y) > at(bestX, bestY)) {
                bestX = x;
                bestY = y;
            }
    PatchPlace place{PatchFault::none, {}, at(bestX, bestY)};
    if (!(place.correlation >= kLeastCorrelation)) {
        place.fault = PatchFault::unlike;
        return place;
    }
    if (bestX == 0 || bestY == 0 || bestX == columns - 1 || bestY == rows - 1) {
        place.fault = PatchFault::atEdge;
        return place;
    }
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
            if (std::max(std::abs(x - bestX), std::abs(y - bestY)) >= kOtherPlace &&
                at(x, y) > place.correlation - kClearlyBetter)
                place.fault = PatchFault::ambiguous;
    if (place.fault != PatchFault::none)
        return place;
    const double partX = TopOf(at(bestX - 1, bestY), at(bestX, bestY), at(bestX + 1, bestY));
    const double partY = TopOf(at(bestX, bestY - 1), at(bestX, bestY), at(bestX, bestY + 1));
    place.point = {point.x - left + firstX + bestX + partX, point.y - top + firstY + bestY + partY};
    return place;
}
