// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneCamera.h"

#include <algorithm>
#include <cmath>

namespace scene
{
namespace
{

constexpr double kUsualScale = 30.0;       // pixels per metre of an empty scene
constexpr double kLargestFitScale = 120.0; // a lone pedestrian does not fill the view

} // namespace

void SceneBounds::Add(CDPoint point)
{
    if (!std::isfinite(point.x) || !std::isfinite(point.y))
        return;
    low = empty ? point : CDPoint{std::min(low.x, point.x), std::min(low.y, point.y)};
    high = empty ? point : CDPoint{std::max(high.x, point.x), std::max(high.y, point.y)};
    empty = false;
}

CDPoint SceneCamera::ToPixel(CDPoint scene) const
{
    return {width / 2.0 + Pixels(scene.x - centre.x), height / 2.0 - Pixels(scene.y - centre.y)};
}

CDPoint SceneCamera::ToScene(CDPoint pixel) const
{
    return {centre.x + Length(pixel.x - width / 2.0), centre.y - Length(pixel.y - height / 2.0)};
}

void SceneCamera::ZoomAbout(CDPoint pixel, double factor)
{
    const CDPoint fixed = ToScene(pixel);
    pixelsPerMetre = std::clamp(pixelsPerMetre * factor, kSmallestScale, kLargestScale);
    centre += fixed - ToScene(pixel);
}

void SceneCamera::Pan(CDPoint pixels)
{
    centre -= CDPoint{Length(pixels.x), -Length(pixels.y)};
}

void SceneCamera::Fit(const SceneBounds& bounds, double margin)
{
    centre = bounds.empty ? CDPoint{} : bounds.low + (bounds.high - bounds.low) * 0.5;
    const CDPoint size = (bounds.high - bounds.low) * 0.01;
    if (bounds.empty || (size.x <= 0.0 && size.y <= 0.0)) {
        pixelsPerMetre = kUsualScale;
        return;
    }
    const double across = size.x > 0.0 ? std::max(width - 2.0 * margin, 1.0) / size.x : kLargestFitScale;
    const double up = size.y > 0.0 ? std::max(height - 2.0 * margin, 1.0) / size.y : kLargestFitScale;
    pixelsPerMetre = std::clamp(std::min(across, up), kSmallestScale, kLargestFitScale);
}

SceneCamera SceneCamera::For(double otherWidth, double otherHeight) const
{
    SceneCamera other = *this;
    const double factor = std::min(otherWidth / std::max(width, 1.0), otherHeight / std::max(height, 1.0));
    other.width = otherWidth;
    other.height = otherHeight;
    other.pixelsPerMetre = std::clamp(pixelsPerMetre * factor, kSmallestScale, kLargestScale);
    return other;
}

double RoundLength(double most)
{
    const double decade = std::pow(10.0, std::floor(std::log10(most)));
    for (const double times : {5.0, 2.0})
        if (times * decade <= most)
            return times * decade;
    return decade;
}

} // namespace scene
