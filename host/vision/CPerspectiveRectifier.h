// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// From the picture to the road: four clicked points of the road whose distances were measured. Their shape is a least
// squares solution of the distances, then the homography of the four points is exact.
#pragma once

#include "host/vision/CDistortionRectifier.h"
#include "host/vision/VisionPoint.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What the four points are assumed to form: a rectangle; a trapezium with P1 P2 parallel to P3 P4; a parallelogram
/// whose far edge is shifted to the left or to the right.
enum class RectifyPattern { square, trapez, rhombusL, rhombusR };

/// P1 and P2 lie far left and right, P3 and P4 near left and right.
using RoadPoints = std::array<VisionPoint, 4>;
/// m: P1P2, P2P4, P4P3, P3P1, P1P4, P2P3; 0 where none was measured.
using RoadDistances = std::array<double, 6>;

/// All that the way from the picture to the road depends on.
struct RoadInput {
    int width = 0; ///< px, of the picture
    int height = 0;
    RoadPoints points{}; ///< in the raw frame
    RoadDistances distances{};
    RectifyPattern pattern = RectifyPattern::square;
    /// The pattern holds exactly; otherwise it decides only what the distances leave open.
    bool strict = true;
    double strength = 0.0; ///< of the lens correction
};

enum class RoadFault {
    none,
    noPicture,        ///< the picture has no size
    noPoints,         ///< fewer than four points are set, or one is no number
    notConvex,        ///< the points are not far left, far right, near left, near right
    badDistance,      ///< a distance is negative or no number
    missingDistances, ///< the distances do not fix the shape
    contradiction,    ///< no quadrilateral in this order comes near the distances
    leansOtherWay,    ///< the distances shift the far edge to the other side
};
/// German, a whole sentence; empty for RoadFault::none.
std::string Explain(RoadFault fault);

class CPerspectiveRectifier
{
  public:
    /// Neither points nor calibration.
    void Reset() { *this = {}; }
    /// Sets the point of this index, 0 to 3; the calibration is void until it is estimated anew. Non-zero on success.
    int UpdatePoint(int index, VisionPoint point);
    /// Index of the nearest point that is not farther than `radius` px, -1 without one.
    int FindNearPoint(VisionPoint point, double radius) const;
    const std::array<std::optional<VisionPoint>, 4>& GetPoints() const { return m_points; }
    /// The quadrilateral and its corners, onto a raw frame. Non-zero on success.
    int DrawPoints(cv::Mat& frame) const;

    /// Calibrates by the points set and, from the argument, everything else. Non-zero on success; otherwise Fault()
    /// says why not, and nothing is calibrated.
    int EstimateRectificationMap(RoadInput input);
    RoadFault Fault() const { return m_fault; }

    /// The road of the quadrilateral seen from above, a pixel of the result per rectified pixel. Non-zero on success.
    int RectifyFrame(const cv::Mat& frame, cv::Mat& road) const;
    /// Points of the raw frame, exactly. What lies at the horizon or beyond is no point.
    std::optional<VisionPoint> RectifyPoint(VisionPoint raw) const;
    std::vector<std::optional<VisionPoint>> RectifyPoints(const std::vector<VisionPoint>& raw) const;
    /// The same for many: `road` gets as many, not a number where there is no point.
    void RectifyPoints(std::span<const VisionPoint> raw, std::span<VisionPoint> road) const;
    /// The first half of it, for calibrations that share their lens; then the second.
    std::vector<VisionPoint> StraightenPoints(std::span<const VisionPoint> raw) const;
    void RectifyStraightened(std::span<const VisionPoint> straight, std::span<VisionPoint> road) const;
    /// The raw frame's point that a rectified one is seen at.
    VisionPoint PicturePoint(VisionPoint road) const;
    /// Metres per rectified pixel, 0 when not calibrated.
    double GetRateRealDistToRectifiedPixels() const { return m_fault == RoadFault::none ? kRectifiedPixel : 0.0; }

    /// Of each distance, measured minus that of the shape, m; nothing where none was measured.
    const std::array<std::optional<double>, 6>& Residuals() const { return m_residuals; }
    /// A residual that is larger than three times the uncertainty of a distance.
    static bool IsSuspicious(double residual);
    /// Focal length in px of the straightened frame and height of the camera above the road in m, for square pixels and
    /// an axis through the picture's centre. Nothing when the four points do not give it.
    std::optional<double> Focal() const { return m_focal; }
    std::optional<double> CameraHeight() const { return m_cameraHeight; }
    /// The corners on the road, rectified.
    const RoadPoints& RoadCorners() const { return m_corners; }
    /// Covariance on the road, rectified px², of a point of the raw frame that is known to 1 px.
    struct Spread {
        double xx = 0.0;
        double xy = 0.0;
        double yy = 0.0;
    };
    /// Nothing beyond the horizon.
    std::optional<Spread> PointSpread(VisionPoint raw) const;

    /// The calibration with one input changed a little, for uncertainties: starts from this shape. Nothing when the
    /// changed one is none.
    std::optional<CPerspectiveRectifier> Varied(const RoadInput& input) const;
    const RoadInput& Input() const { return m_input; }

  private:
    RoadFault Estimate(const std::vector<double>& shapeStart);
    void EstimateCamera();

    std::array<std::optional<VisionPoint>, 4> m_points{};
    RoadInput m_input{};
    RoadFault m_fault = RoadFault::noPoints;
    CDistortionRectifier m_lens{};
    VisionPoint m_centre{};
    double m_halfDiagonal = 1.0; ///< px
    std::vector<double> m_shape{};
    RoadPoints m_corners{};
    std::array<double, 9> m_toRoad{};    ///< straightened px -> rectified px
    std::array<double, 9> m_toPicture{}; ///< rectified px -> straightened, from the centre, in half diagonals
    std::array<std::optional<double>, 6> m_residuals{};
    std::optional<double> m_focal{};
    std::optional<double> m_cameraHeight{};
};
