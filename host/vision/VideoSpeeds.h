// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Speeds of what was followed in a video, with their uncertainty: the rule of the display, a smooth course, a mean.
#pragma once

#include "host/vision/CPerspectiveRectifier.h"

#include <optional>
#include <span>
#include <vector>

namespace vision
{
struct UncutPath;
}

/// Where a vehicle was seen, or a point of it clicked.
struct VideoEntry {
    double time = 0.0; ///< s
    int frame = 0;
    VisionPoint point{}; ///< in the raw frame
    bool cut = false;    ///< the box reaches the frame's edge: its centre is not the vehicle's
};

/// One speed of a course.
struct VideoSpeed {
    double time = 0.0;              ///< s, the middle of the interval
    double speed = 0.0;             ///< km/h
    int frame = 0;                  ///< where the interval ends
    double uncertainty = 0.0;       ///< km/h, standard uncertainty
    int label = 0;                  ///< km/h, as it stands beside the object in the picture
    std::optional<double> smooth;   ///< km/h, the smooth course at this time; none where it says much less than `speed`
    double smoothUncertainty = 0.0; ///< km/h, standard uncertainty
};

/// What the speeds are computed with beside the road.
struct SpeedInput {
    double fps = 0.0;                     ///< 1/s, for entries at the same time
    std::optional<double> factor{};       ///< on every speed; without one it follows from the heights
    double pointHeight = 0.0;             ///< m, of the followed points above the road
    std::optional<double> cameraHeight{}; ///< m; without one that of the four points
    double strengthUncertainty = 0.0;     ///< of the lens correction's strength
    double smoothSpan = 1.0;              ///< s, 0.2 to 2
};

enum class MeanKind {
    line,    ///< a steady motion explains the entries (χ², 95 %)
    polyline ///< none does: length of the path from entry to entry over its time
};
struct MeanSpeed {
    double speed = 0.0;       ///< km/h
    double uncertainty = 0.0; ///< km/h, standard uncertainty
    MeanKind kind = MeanKind::line;
};

/// Speeds on one calibrated road. Made anew whenever anything of the calibration changes; the entries stay.
class VideoSpeeds
{
  public:
    /// `road` is calibrated.
    VideoSpeeds(const CPerspectiveRectifier& road, const SpeedInput& input);

    /// Every speed is read h - z above the road as if it lay on it: 1 - z/h. 1 when no height is known.
    double Factor() const { return m_factor; }
    bool FactorIsKnown() const { return m_factorIsKnown; }

    /// The speeds of one track. Between the last entry and the seventh from the end, or the nearest of the sixth to the
    /// third; entries without a place on the road do not count.
    std::vector<VideoSpeed> Of(std::span<const VideoEntry> entries) const;
    /// Nothing for fewer than two entries at different times.
    std::optional<MeanSpeed> Mean(std::span<const VideoEntry> entries) const;

  private:
    /// The calibration as it would be with one of its inputs changed by its uncertainty.
    struct Variant {
        CPerspectiveRectifier road;
        double factor = 1.0;
    };
    double FactorOf(const CPerspectiveRectifier& road) const;
    double HeightUncertainty() const;
    void Smooth(const vision::UncutPath& path, std::vector<VideoSpeed>& speeds,
                std::span<const double> systematic) const;

    CPerspectiveRectifier m_road;
    SpeedInput m_input;
    double m_factor = 1.0;
    bool m_factorIsKnown = true;
    std::vector<Variant> m_variants;
    bool m_isSure = true; ///< every input can be changed by its uncertainty and is still a calibration
};

/// The label beside an object: literally round(x + 0.5), halves away from zero, so that 50.0 shows 51.
int SpeedLabel(double kmh);
