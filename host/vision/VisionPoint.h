// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Points of a picture and of the road, and what a read frame is: plain values of the vision library.
#pragma once

#include <cmath>

namespace cv
{
class Mat;
}

/// A point of the picture: continuous, in pixels, (0, 0) its upper left corner, after the file's rotation and sample
/// aspect. Rectified: in steps of kRectifiedPixel on the road, y towards the camera.
struct VisionPoint {
    double x = 0.0;
    double y = 0.0;
};

inline VisionPoint operator-(VisionPoint a, VisionPoint b)
{
    return {a.x - b.x, a.y - b.y};
}
inline double Distance(VisionPoint a, VisionPoint b)
{
    // Far from overflow, and a third of std::hypot's time.
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

/// Metres of the road per rectified pixel.
inline constexpr double kRectifiedPixel = 0.05;
