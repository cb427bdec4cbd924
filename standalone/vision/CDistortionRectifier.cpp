// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The lens correction and its estimate from straight edges.
#include "host/vision/CDistortionRectifier.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kLambdaPerStrength = -0.004;
/// Steps of the search over the trackbar's range, and of the refinement (each takes 0.618 of the interval).
constexpr int kScanSteps = 80;
constexpr int kGoldenSteps = 60;
/// Points are clicked to so many px.
constexpr double kPointUncertainty = 1.0;
/// A lens parameter that is worse known than this says nothing.
constexpr double kMaxStrengthUncertainty = 100.0;

/// Sum of the squared distances, in px of the raw frame, of the points from the edge that fits them best once they are
/// straightened: the distance from the straight line over how far a raw pixel moves a point across it.
double EdgeError(const CDistortionRectifier& lens, const std::vector<VisionPoint>& edge)
{
    std::vector<double> weights(edge.size(), 1.0);
    double error = 0.0;
    // The direction of the edge is needed for the weights: twice is enough, they hardly differ along an edge.
    for (int pass = 0; pass < 3; ++pass) {
        double sum = 0.0;
        VisionPoint mean;
        for (std::size_t i = 0; i < edge.size(); ++i) {
            const VisionPoint p = lens.Straighten(edge[i]);
            sum += weights[i];
            mean.x += weights[i] * p.x;
            mean.y += weights[i] * p.y;
        }
        mean = {mean.x / sum, mean.y / sum};
        double xx = 0.0;
        double xy = 0.0;
        double yy = 0.0;
        for (std::size_t i = 0; i < edge.size(); ++i) {
            const VisionPoint d = lens.Straighten(edge[i]) - mean;
            xx += weights[i] * d.x * d.x;
            xy += weights[i] * d.x * d.y;
            yy += weights[i] * d.y * d.y;
        }
        // The line's direction is the main axis of the points.
        const double direction = 0.5 * std::atan2(2.0 * xy, xx - yy);
        const VisionPoint normal{-std::sin(direction), std::cos(direction)};
        error = 0.0;
        for (std::size_t i = 0; i < edge.size(); ++i) {
            const auto [xByX, xByY, yByX, yByY] = lens.Derivative(edge[i]);
            const double across = std::hypot(normal.x * xByX + normal.y * yByX, normal.x * xByY + normal.y * yByY);
            const VisionPoint d = lens.Straighten(edge[i]) - mean;
            const double distance = normal.x * d.x + normal.y * d.y;
            weights[i] = 1.0 / (across * across);
            error += weights[i] * distance * distance;
        }
    }
    return error;
}

} // namespace

int CDistortionRectifier::SetCameraParam(int width, int height, double strength)
{
    if (width <= 0 || height <= 0 || !(std::fabs(strength) <= kMaxStrength))
        return 0;
    m_centre = {width / 2.0, height / 2.0};
    m_halfDiagonal = std::hypot(width, height) / 2.0;
    m_strength = strength;
    m_lambda = kLambdaPerStrength * strength;
    return 1;
}

VisionPoint CDistortionRectifier::StraightenByLens(VisionPoint raw) const
{
    const VisionPoint d = raw - m_centre;
    const double r2 = (d.x * d.x + d.y * d.y) / (m_halfDiagonal * m_halfDiagonal);
    const double scale = 1.0 / (1.0 + m_lambda * r2);
    return {m_centre.x + d.x * scale, m_centre.y + d.y * scale};
}

VisionPoint CDistortionRectifier::Bend(VisionPoint straight) const
{
    const VisionPoint d = straight - m_centre;
    const double r2 = (d.x * d.x + d.y * d.y) / (m_halfDiagonal * m_halfDiagonal);
    // λ r_u r_d² - r_d + r_u = 0; the root that is r_u for λ = 0. Where a positive λ never reaches r_u, its end.
    const double scale = 2.0 / (1.0 + std::sqrt(std::max(0.0, 1.0 - 4.0 * m_lambda * r2)));
    return {m_centre.x + d.x * scale, m_centre.y + d.y * scale};
}

std::array<double, 4> CDistortionRectifier::Derivative(VisionPoint raw) const
{
    const VisionPoint d{(raw.x - m_centre.x) / m_halfDiagonal, (raw.y - m_centre.y) / m_halfDiagonal};
    const double scale = 1.0 / (1.0 + m_lambda * (d.x * d.x + d.y * d.y));
    const double bend = 2.0 * m_lambda * scale * scale;
    return {scale - bend * d.x * d.x, -bend * d.x * d.y, -bend * d.x * d.y, scale - bend * d.y * d.y};
}

std::optional<LensEstimate> EstimateLens(int width, int height, std::span<const std::vector<VisionPoint>> edges)
{
    for (const auto& edge : edges)
        if (edge.size() < 3)
            return std::nullopt;
    if (edges.empty() || width <= 0 || height <= 0)
        return std::nullopt;
    const auto error = [&](double strength) {
        CDistortionRectifier lens;
        lens.SetCameraParam(width, height, strength);
        double sum = 0.0;
        for (const auto& edge : edges)
            sum += EdgeError(lens, edge);
        return sum;
    };
    constexpr double kLimit = CDistortionRectifier::kMaxStrength;
    constexpr double kStep = 2.0 * kLimit / kScanSteps;
    int best = 0;
    double bestError = error(-kLimit);
    for (int i = 1; i <= kScanSteps; ++i)
        if (const double e = error(-kLimit + i * kStep); e < bestError) {
            best = i;
            bestError = e;
        }
    if (best == 0 || best == kScanSteps)
        return std::nullopt;
    // Golden section: J. Kiefer, 1953.
    constexpr double kGolden = 0.6180339887498949;
    double low = -kLimit + (best - 1) * kStep;
    double high = low + 2.0 * kStep;
    double a = high - kGolden * (high - low);
    double b = low + kGolden * (high - low);
    double errorA = error(a);
    double errorB = error(b);
    for (int i = 0; i < kGoldenSteps; ++i) {
        if (errorA < errorB) {
            high = b;
            b = a;
            errorB = errorA;
            a = high - kGolden * (high - low);
            errorA = error(a);
        } else {
            low = a;
            a = b;
            errorA = errorB;
            b = low + kGolden * (high - low);
            errorB = error(b);
        }
    }
    LensEstimate estimate;
    estimate.strength = (low + high) / 2.0;
    // χ²(s) ≈ χ²_min + (s - s_min)² / u², in units of the points' variance.
    constexpr double kProbe = 1.0;
    const double curvature = (error(std::min(estimate.strength + kProbe, kLimit)) +
                              error(std::max(estimate.strength - kProbe, -kLimit)) - 2.0 * error(estimate.strength)) /
                             (kProbe * kProbe);
    if (!(curvature > 0.0))
        return std::nullopt;
    estimate.uncertainty = kPointUncertainty * std::sqrt(2.0 / curvature);
    if (!(estimate.uncertainty < kMaxStrengthUncertainty))
        return std::nullopt;
    return estimate;
}
