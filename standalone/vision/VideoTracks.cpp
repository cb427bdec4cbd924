// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The tracker follows rectified points; without a calibration, those of a frame scaled to a common width.
#include "host/vision/VideoTracks.h"

#include "vision/Uncertainties.h"

#include <cmath>

namespace
{

constexpr double kEdge = 2.0;           ///< px: a box nearer to the frame's edge is cut
constexpr double kCommonWidth = 1280.0; ///< px

/// The longer half axis of the ellipse.
double LargestSigma(const CPerspectiveRectifier::Spread& s)
{
    return std::sqrt((s.xx + s.yy) / 2.0 + std::hypot((s.xx - s.yy) / 2.0, s.xy));
}

} // namespace

bool VideoTracks::IsCut(const VideoBox& box) const
{
    return box.x <= kEdge || box.y <= kEdge || box.x + box.w >= m_width - kEdge || box.y + box.h >= m_height - kEdge;
}

std::vector<SeenVehicle> VideoTracks::Add(const CPerspectiveRectifier& road, double time, int frame,
                                          std::span<const VideoBox> boxes, const CDistortionRectifier* lens)
{
    const bool calibrated = road.GetRateRealDistToRectifiedPixels() > 0.0;
    std::vector<VisionPoint> points;
    std::vector<double> sigmas;
    struct Accepted {
        const VideoBox* box;
        VisionPoint centre; // in the raw frame
    };
    std::vector<Accepted> accepted;
    for (const VideoBox& box : boxes) {
        const VisionPoint centre = lens != nullptr ? lens->Bend(box.Centre()) : box.Centre();
        if (calibrated) {
            const auto point = road.RectifyPoint(centre);
            const auto spread = road.PointSpread(centre);
            if (!point || !spread)
                continue;
            points.push_back(*point);
            sigmas.push_back(vision::kClickUncertainty * LargestSigma(*spread));
        } else {
            const double scale = kCommonWidth / m_width;
            points.push_back({centre.x * scale, centre.y * scale});
            sigmas.push_back(vision::kClickUncertainty * scale);
        }
        accepted.push_back({&box, centre});
    }
    std::vector<SeenVehicle> seen;
    for (const CTrackObj& track : m_tracker.Update(points, time, sigmas)) {
        if (track.GetLostCounter() != 0)
            continue;
        const auto& [box, centre] = accepted[track.LastPoint()];
        const int id = track.GetTrackID() + 1;
        const bool cut = IsCut(*box);
        m_tracks[id].push_back({time, frame, centre, cut});
        seen.push_back({id, *box, cut});
    }
    return seen;
}
