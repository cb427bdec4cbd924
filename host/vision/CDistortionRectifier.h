// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The lens: straight edges of the road that a wide lens bends become straight again. Division model with one
// parameter (A. Fitzgibbon, "Simultaneous linear estimation of multiple view geometry and lens distortion", CVPR 2001):
// r_u = r_d / (1 + λ r_d²), r from the picture's centre in half diagonals, λ = -0.004 · strength.
#pragma once

#include "host/vision/VisionPoint.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

class CDistortionRectifier
{
  public:
    /// The trackbar's range.
    static constexpr double kMaxStrength = 100.0;

    /// Takes size of the pictures and strength; a strength out of range and a picture without size change nothing.
    /// Returns non-zero on success.
    int SetCameraParam(int width, int height, double strength);
    /// The same with the size of a frame.
    int EstimateCameraParam(const cv::Mat& frame, double strength);
    /// A straightened copy of the frame. Returns non-zero on success.
    int RectifyFrame(const cv::Mat& frame, cv::Mat& straight) const;
    /// No correction.
    void Reset() { *this = {}; }

    double Strength() const { return m_strength; }
    /// Where a point of the raw frame lies in the straightened one, and back. Exact inverses of each other.
    VisionPoint Straighten(VisionPoint raw) const { return m_lambda == 0.0 ? raw : StraightenByLens(raw); }
    VisionPoint Bend(VisionPoint straight) const;
    /// ∂x/∂x, ∂x/∂y, ∂y/∂x, ∂y/∂y of Straighten.
    std::array<double, 4> Derivative(VisionPoint raw) const;

  private:
    VisionPoint StraightenByLens(VisionPoint raw) const;

    VisionPoint m_centre;
    double m_halfDiagonal = 1.0; ///< px
    double m_strength = 0.0;
    double m_lambda = 0.0;
};

struct LensEstimate {
    double strength = 0.0;
    double uncertainty = 0.0; ///< standard uncertainty of the strength for points good to a pixel
};

/// The strength that straightens all edges together best: least squares of the points' distances in the raw frame from
/// their edge. `edges` are points along edges that are straight in nature, three or more each. Nothing when they say
/// nothing about the lens, or a strength out of the trackbar's range.
std::optional<LensEstimate> EstimateLens(int width, int height, std::span<const std::vector<VisionPoint>> edges);
