// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Vehicles as coloured boxes on a grey road, drawn with parts of pixels, before a known camera.
#pragma once

#include "host/vision/VideoBox.h"
#include "tests/vision/RoadCamera.h"
#include "tests/vision/video/VideoMaker.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

namespace test
{

/// Red, green and blue from 0 to 1.
struct Colour {
    double r, g, b;
};
inline constexpr Colour kRoadGrey{0.4, 0.4, 0.4};

struct ColouredBox {
    VideoBox box;
    Colour colour;
};

/// ITU-R BT.709, limited range.
inline std::array<double, 3> LumaChroma(Colour c)
{
    const double y = 0.2126 * c.r + 0.7152 * c.g + 0.0722 * c.b;
    return {16.0 + 219.0 * y, 128.0 + 224.0 * (c.b - y) / 1.8556, 128.0 + 224.0 * (c.r - y) / 1.5748};
}

/// Of the pixel that covers [at, at + size].
inline double Covered(double at, double size, double from, double to)
{
    return std::clamp(std::min(at + size, to) - std::max(at, from), 0.0, size) / size;
}

/// Each colour plane by how much of a sample a box covers.
inline void DrawBoxes(AVFrame& frame, const std::vector<ColouredBox>& boxes)
{
    const auto road = LumaChroma(kRoadGrey);
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const int step = plane == 0 ? 1 : 2;
        const int columns = frame.width / step;
        const int rows = frame.height / step;
        const auto row = [&](int y) {
            return frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
        };
        for (int y = 0; y < rows; ++y)
            std::memset(row(y), static_cast<int>(std::lround(road[plane])), static_cast<std::size_t>(columns));
        for (const auto& [box, colour] : boxes) {
            const double value = LumaChroma(colour)[plane];
            const auto first = [step](double at, int limit) {
                return std::clamp(static_cast<int>(at) / step, 0, limit);
            };
            for (int y = first(box.y, rows); y < first(box.y + box.h + step, rows); ++y)
                for (int x = first(box.x, columns); x < first(box.x + box.w + step, columns); ++x) {
                    const double part =
                        Covered(x * step, step, box.x, box.x + box.w) * Covered(y * step, step, box.y, box.y + box.h);
                    row(y)[x] = static_cast<std::uint8_t>(std::lround(row(y)[x] * (1.0 - part) + value * part));
                }
        }
    }
}

/// A vehicle on a straight line along the road: its box's centre is 0.72 m above it.
struct RoadVehicle {
    Colour colour;
    double x = 0.0; ///< m
    double y = 0.0; ///< m, at the first picture
    double v = 0.0; ///< m/s, towards the camera when negative

    VideoBox At(double time, const RoadCamera& camera) const
    {
        const double ahead = y + v * time;
        const VisionPoint centre = camera.See(x, ahead, 0.72);
        const double scale = camera.focal / ahead;
        return {centre.x - 0.9 * scale, centre.y - 0.7 * scale, 1.8 * scale, 1.4 * scale};
    }
};

} // namespace test
