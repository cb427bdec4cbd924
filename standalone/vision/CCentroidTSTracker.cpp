// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Straight-line prediction, a gate, and the assignment of least total cost.
#include "host/vision/CCentroidTSTracker.h"

#include "vision/Assignment.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kFrame = 0.04;         ///< s, the frame length that the gate is made for
constexpr double kGateGrowth = 0.25;    ///< of the gate, per further frame length since the last entry
constexpr double kSigmas = 3.0;         ///< standard uncertainties that a point may lie off beside the gate
constexpr std::size_t kPredictFrom = 5; ///< last entries that the straight line is laid through

} // namespace

CTrackObj::CTrackObj(int id, TrackPathInfo first, std::size_t point) : m_id(id), m_point(point), m_path{first} {}

std::optional<TrackPathInfo> CTrackObj::GetTrackPathInfo(int i) const
{
    const auto size = static_cast<int>(m_path.size());
    const int index = i < 0 ? size + i : i;
    return index >= 0 && index < size ? std::optional(m_path[static_cast<std::size_t>(index)]) : std::nullopt;
}

std::optional<VisionPoint> CTrackObj::GetAnchorTrackPath(int i) const
{
    const auto entry = GetTrackPathInfo(i);
    return entry ? std::optional(entry->point) : std::nullopt;
}

/// The least squares line of the last entries over time.
VisionPoint CTrackObj::PredictedAt(double time) const
{
    const std::size_t count = std::min(m_path.size(), kPredictFrom);
    const auto* const first = m_path.data() + (m_path.size() - count);
    double meanTime = 0.0;
    VisionPoint mean;
    for (std::size_t i = 0; i < count; ++i) {
        meanTime += first[i].time / static_cast<double>(count);
        mean.x += first[i].point.x / static_cast<double>(count);
        mean.y += first[i].point.y / static_cast<double>(count);
    }
    double tt = 0.0;
    VisionPoint tp;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = first[i].time - meanTime;
        tt += t * t;
        tp.x += t * (first[i].point.x - mean.x);
        tp.y += t * (first[i].point.y - mean.y);
    }
    if (!(tt > 0.0))
        return m_path.back().point;
    const double t = (time - meanTime) / tt;
    return {mean.x + t * tp.x, mean.y + t * tp.y};
}

double CTrackObj::ReachAt(double time, double gate) const
{
    const double frames = std::max(0.0, time - m_path.back().time) / kFrame;
    // Nothing is known yet about the motion of a track with one entry.
    return m_path.size() == 1 ? gate * frames : gate * (1.0 + kGateGrowth * std::max(0.0, frames - 1.0));
}

const std::vector<CTrackObj>& CCentroidTSTracker::Update(std::span<const VisionPoint> points, double time,
                                                         std::span<const double> sigmas)
{
    std::vector<std::vector<std::optional<double>>> costs(m_tracks.size(),
                                                          std::vector<std::optional<double>>(points.size()));
    for (std::size_t track = 0; track < m_tracks.size(); ++track) {
        const VisionPoint predicted = m_tracks[track].PredictedAt(time);
        const double reach = m_tracks[track].ReachAt(time, m_gate);
        for (std::size_t point = 0; point < points.size(); ++point) {
            const double sigma = point < sigmas.size() ? sigmas[point] : 0.0;
            const double distance = Distance(predicted, points[point]);
            if (distance <= reach + kSigmas * sigma)
                costs[track][point] = distance;
        }
    }
    std::vector<bool> taken(points.size(), false);
    const auto assigned = vision::Assign(costs);
    for (std::size_t track = 0; track < assigned.size(); ++track) {
        CTrackObj& object = m_tracks[track];
        if (!assigned[track]) {
            ++object.m_lost;
            continue;
        }
        taken[*assigned[track]] = true;
        object.m_lost = 0;
        object.m_point = *assigned[track];
        object.m_path.push_back({time, points[*assigned[track]]});
    }
    std::erase_if(m_tracks, [this](const CTrackObj& track) { return track.m_lost > m_maxLost; });
    for (std::size_t point = 0; point < points.size(); ++point)
        if (!taken[point])
            m_tracks.emplace_back(m_nextId++, TrackPathInfo{time, points[point]}, point);
    return m_tracks;
}

void CCentroidTSTracker::Reset()
{
    m_tracks.clear();
    m_nextId = 0;
}
