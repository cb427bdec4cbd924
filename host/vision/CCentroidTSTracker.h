// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Follows points from frame to frame: each gets the number of the track that it continues.
#pragma once

#include "host/vision/VisionPoint.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

struct TrackPathInfo {
    double time = 0.0; ///< s
    VisionPoint point{};
};

class CTrackObj
{
  public:
    CTrackObj(int id, TrackPathInfo first, std::size_t point);

    /// Counts from 0; a person reads one more.
    int GetTrackID() const { return m_id; }
    /// Frames since the track was seen last, 0 when it was in the last one.
    int GetLostCounter() const { return m_lost; }
    /// An entry of the path; a negative index counts from the end, -1 is the last. Nothing where the path has none.
    std::optional<TrackPathInfo> GetTrackPathInfo(int i) const;
    std::optional<VisionPoint> GetAnchorTrackPath(int i) const;
    /// Puts the last entry elsewhere.
    void CorrectLastTrackPathInfo(VisionPoint point) { m_path.back().point = point; }
    /// Which point of the last update the last entry was.
    std::size_t LastPoint() const { return m_point; }

  private:
    friend class CCentroidTSTracker;
    VisionPoint PredictedAt(double time) const;
    double ReachAt(double time, double gate) const;

    int m_id;
    int m_lost = 0;
    std::size_t m_point;
    std::vector<TrackPathInfo> m_path;
};

class CCentroidTSTracker
{
  public:
    /// A track ends after more than `maxLost` frames without it. `gate` is how far, in px of the points, an object may
    /// be from where its path leads, a frame of 25 per second later.
    CCentroidTSTracker(int maxLost, int gate) : m_maxLost(maxLost), m_gate(gate) {}

    /// The points of the next frame, its time in s, and of each point the standard uncertainty in its own px (missing:
    /// 0). Each point continues the track that makes all distances from the predicted places together least, or begins
    /// one. Returns the tracks that live; their entries are where they were seen, nothing between.
    const std::vector<CTrackObj>& Update(std::span<const VisionPoint> points, double time,
                                         std::span<const double> sigmas = {});
    void Reset();

  private:
    int m_maxLost;
    double m_gate;
    int m_nextId = 0;
    std::vector<CTrackObj> m_tracks;
};
