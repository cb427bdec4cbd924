// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A camera above a plane road, from the world to the picture: the way back is what is tested.
#pragma once

#include "host/vision/CPerspectiveRectifier.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace test
{

/// x to the right, y ahead, z up; metres. The camera stands above the origin.
struct RoadCamera {
    int width = 1920;
    int height = 1080;
    double focal = 1500.0; ///< px
    double above = 6.0;    ///< m
    double down = 12.0;    ///< degrees
    double strength = 0.0; ///< of its lens: the distortion that this strength corrects

    VisionPoint See(double x, double y, double z = 0.0) const
    {
        const double tilt = down * std::numbers::pi / 180.0;
        const double up = z - above;
        const double depth = y * std::cos(tilt) - up * std::sin(tilt);
        const double low = -y * std::sin(tilt) - up * std::cos(tilt);
        return Distorted({focal * x / depth, focal * low / depth});
    }

  private:
    /// The radius whose correction is the true one, by bisection.
    VisionPoint Distorted(VisionPoint p) const
    {
        const double half = std::hypot(width, height) / 2.0;
        const double wanted = std::hypot(p.x, p.y) / half;
        const double lambda = -0.004 * strength;
        double low = 0.0;
        double high = 1.5;
        for (int i = 0; i < 200; ++i) {
            const double r = (low + high) / 2.0;
            (r / (1.0 + lambda * r * r) < wanted ? low : high) = r;
        }
        const double scale = wanted > 0.0 ? low / wanted : 1.0;
        return {width / 2.0 + p.x * scale, height / 2.0 + p.y * scale};
    }
};

/// P1 far left, P2 far right, P3 near left, P4 near right, m.
using RoadQuad = std::array<std::pair<double, double>, 4>;

inline constexpr RoadQuad kLane{{{-3.5, 45.0}, {3.5, 45.0}, {-3.5, 20.0}, {3.5, 20.0}}};

inline RoadInput InputOf(const RoadCamera& camera, const RoadQuad& quad)
{
    RoadInput input;
    input.width = camera.width;
    input.height = camera.height;
    input.strength = camera.strength;
    for (std::size_t i = 0; i < quad.size(); ++i)
        input.points[i] = camera.See(quad[i].first, quad[i].second);
    const auto between = [&](std::size_t a, std::size_t b) {
        return std::hypot(quad[a].first - quad[b].first, quad[a].second - quad[b].second);
    };
    input.distances = {between(0, 1), between(1, 3), between(3, 2), between(2, 0), between(0, 3), between(1, 2)};
    return input;
}

inline CPerspectiveRectifier Calibrated(const RoadInput& input)
{
    CPerspectiveRectifier road;
    for (int i = 0; i < 4; ++i)
        road.UpdatePoint(i, input.points[static_cast<std::size_t>(i)]);
    road.EstimateRectificationMap(input);
    return road;
}

} // namespace test
