// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The entries of a track on the road.
#pragma once

#include "host/vision/VideoSpeeds.h"

#include <span>
#include <vector>

namespace vision
{

inline constexpr double kKmhPerMs = 3.6;

/// Rectified, from points that the lens no longer bends; not a number where an entry has no place on the road.
class RoadPath
{
  public:
    RoadPath(const CPerspectiveRectifier& road, std::span<const VisionPoint> straight) : m_places(straight.size())
    {
        road.RectifyStraightened(straight, m_places);
    }
    VisionPoint At(std::size_t i) const { return m_places[i]; }
    bool IsPlace(std::size_t i) const { return !std::isnan(m_places[i].x); }

  private:
    std::vector<VisionPoint> m_places;
};

inline std::vector<VisionPoint> RawPoints(std::span<const VideoEntry> entries)
{
    std::vector<VisionPoint> raw;
    raw.reserve(entries.size());
    for (const VideoEntry& entry : entries)
        raw.push_back(entry.point);
    return raw;
}

/// Of a pixel of each entry on the road; zeros without a place.
inline std::vector<CPerspectiveRectifier::Spread> Spreads(const CPerspectiveRectifier& road,
                                                          std::span<const VideoEntry> entries)
{
    std::vector<CPerspectiveRectifier::Spread> spreads;
    spreads.reserve(entries.size());
    for (const VideoEntry& entry : entries)
        spreads.push_back(road.PointSpread(entry.point).value_or(CPerspectiveRectifier::Spread{}));
    return spreads;
}

/// Variance along a direction; without one the larger of both axes.
inline double Along(const CPerspectiveRectifier::Spread& spread, VisionPoint direction)
{
    const double square = direction.x * direction.x + direction.y * direction.y;
    if (!(square > 0.0))
        return spread.xx + spread.yy;
    return (direction.x * direction.x * spread.xx + 2.0 * direction.x * direction.y * spread.xy +
            direction.y * direction.y * spread.yy) /
           square;
}

/// What counts for courses and means: entries on the road that the frame's edge does not cut.
struct UncutPath {
    UncutPath(const CPerspectiveRectifier& road, std::span<const VideoEntry> entries)
        : UncutPath(entries, RoadPath(road, road.StraightenPoints(RawPoints(entries))), Spreads(road, entries))
    {
    }
    UncutPath(std::span<const VideoEntry> entries, const RoadPath& path,
              std::span<const CPerspectiveRectifier::Spread> spreads)
    {
        time.reserve(entries.size());
        place.reserve(entries.size());
        spread.reserve(entries.size());
        weight.reserve(entries.size());
        source.reserve(entries.size());
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const CPerspectiveRectifier::Spread& reach = spreads[i];
            if (entries[i].cut || !path.IsPlace(i) || !(reach.xx + reach.yy > 0.0))
                continue;
            time.push_back(entries[i].time);
            place.push_back(path.At(i));
            spread.push_back(reach);
            weight.push_back(1.0 / (reach.xx + reach.yy));
            source.push_back(entries[i]);
        }
    }
    std::size_t size() const { return time.size(); }

    std::vector<double> time; ///< s
    std::vector<VisionPoint> place;
    std::vector<CPerspectiveRectifier::Spread> spread;
    std::vector<double> weight; ///< one over the variance in both axes
    std::vector<VideoEntry> source;
};

} // namespace vision
