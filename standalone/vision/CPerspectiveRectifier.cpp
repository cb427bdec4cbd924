// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The exact homography of the four points, and the camera that it implies.
#include "host/vision/CPerspectiveRectifier.h"

#include "vision/LinearSolve.h"
#include "vision/Pair.h"
#include "vision/PlaneShape.h"
#include "vision/Uncertainties.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Focal lengths in half diagonals that a camera has; outside, the four points say nothing about it.
constexpr double kMinFocal = 0.1;
constexpr double kMaxFocal = 50.0;
/// What stands for the perspective of the four points, compared with their size; below, they are seen as if from above.
constexpr double kMinPerspective = 1e-9;

using Homography = std::array<double, 9>;

VisionPoint Apply(const Homography& h, VisionPoint p, double& w)
{
    w = h[6] * p.x + h[7] * p.y + h[8];
    const double perW = 1.0 / w;
    return {(h[0] * p.x + h[1] * p.y + h[2]) * perW, (h[3] * p.x + h[4] * p.y + h[5]) * perW};
}

/// The homography that takes `from` to `to`: R. Hartley, A. Zisserman, "Multiple View Geometry", 2004, 4.1. Solved
/// around the middle of `from`, which lies within the quadrilateral and so never on the horizon.
std::optional<Homography> HomographyOf(const RoadPoints& from, const RoadPoints& to)
{
    const VisionPoint middle{(from[0].x + from[1].x + from[2].x + from[3].x) / 4.0,
                             (from[0].y + from[1].y + from[2].y + from[3].y) / 4.0};
    vision::Matrix<8> a{};
    vision::Vector<8> b{};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto [x, y] = from[i] - middle;
        a[2 * i] = {x, y, 1.0, 0.0, 0.0, 0.0, -x * to[i].x, -y * to[i].x};
        a[2 * i + 1] = {0.0, 0.0, 0.0, x, y, 1.0, -x * to[i].y, -y * to[i].y};
        b[2 * i] = to[i].x;
        b[2 * i + 1] = to[i].y;
    }
    const auto solution = vision::Solve(a, b);
    if (!solution)
        return std::nullopt;
    const auto& h = *solution;
    const auto moved = [&](double x, double y, double constant) { return constant - x * middle.x - y * middle.y; };
    return Homography{h[0], h[1], moved(h[0], h[1], h[2]), h[3], h[4], moved(h[3], h[4], h[5]),
                      h[6], h[7], moved(h[6], h[7], 1.0)};
}

/// Far left, far right, near right, near left as one sees them: turning right at every corner, y downwards.
bool AreInOrder(const RoadPoints& p)
{
    constexpr std::array<std::size_t, 4> kRound{0, 1, 3, 2};
    for (std::size_t i = 0; i < kRound.size(); ++i) {
        const VisionPoint a = p[kRound[(i + 1) % 4]] - p[kRound[i]];
        const VisionPoint b = p[kRound[(i + 2) % 4]] - p[kRound[(i + 1) % 4]];
        if (!(a.x * b.y - a.y * b.x > 0.0))
            return false;
    }
    return p[0].y + p[1].y < p[2].y + p[3].y;
}

} // namespace

std::string Explain(RoadFault fault)
{
    switch (fault) {
    case RoadFault::none:
        return {};
    case RoadFault::noPicture:
        return "Das Bild hat keine Größe.";
    case RoadFault::noPoints:
        return "Es sind nicht alle vier Punkte gesetzt.";
    case RoadFault::notConvex:
        return "P1 und P2 müssen hinten links und rechts liegen, P3 und P4 vorn links und rechts.";
    case RoadFault::badDistance:
        return "Eine Strecke ist negativ oder keine Zahl.";
    case RoadFault::missingDistances:
        return "Die angegebenen Strecken legen die Form nicht fest.";
    case RoadFault::contradiction:
        return "Zu den angegebenen Strecken gibt es kein Viereck.";
    case RoadFault::leansOtherWay:
        return "Die angegebenen Strecken verschieben die hintere Kante zur anderen Seite.";
    }
    return {};
}

int CPerspectiveRectifier::UpdatePoint(int index, VisionPoint point)
{
    if (index < 0 || index > 3 || !std::isfinite(point.x) || !std::isfinite(point.y))
        return 0;
    m_points[static_cast<std::size_t>(index)] = point;
    m_fault = RoadFault::noPoints;
    return 1;
}

int CPerspectiveRectifier::FindNearPoint(VisionPoint point, double radius) const
{
    int nearest = -1;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (!m_points[i])
            continue;
        if (const double distance = Distance(*m_points[i], point); distance <= radius) {
            radius = distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

int CPerspectiveRectifier::EstimateRectificationMap(RoadInput input)
{
    m_fault = RoadFault::noPoints;
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        if (!m_points[i])
            return 0;
        input.points[i] = *m_points[i];
    }
    m_input = input;
    m_fault = Estimate({});
    return m_fault == RoadFault::none ? 1 : 0;
}

std::optional<CPerspectiveRectifier> CPerspectiveRectifier::Varied(const RoadInput& input) const
{
    CPerspectiveRectifier varied = *this;
    varied.m_input = input;
    for (std::size_t i = 0; i < input.points.size(); ++i)
        varied.m_points[i] = input.points[i];
    varied.m_fault = varied.Estimate(m_shape);
    return varied.m_fault == RoadFault::none ? std::optional(std::move(varied)) : std::nullopt;
}

RoadFault CPerspectiveRectifier::Estimate(const std::vector<double>& shapeStart)
{
    m_residuals = {};
    m_focal.reset();
    m_cameraHeight.reset();
    if (m_lens.SetCameraParam(m_input.width, m_input.height, m_input.strength) == 0)
        return RoadFault::noPicture;
    m_centre = {m_input.width / 2.0, m_input.height / 2.0};
    m_halfDiagonal = std::hypot(m_input.width, m_input.height) / 2.0;
    RoadPoints picture;
    std::transform(m_input.points.begin(), m_input.points.end(), picture.begin(), [this](VisionPoint point) {
        const VisionPoint d = m_lens.Straighten(point) - m_centre;
        return VisionPoint{d.x / m_halfDiagonal, d.y / m_halfDiagonal};
    });
    if (!AreInOrder(picture))
        return RoadFault::notConvex;
    vision::PlaneShape shape = vision::SolveShape(m_input.distances, m_input.pattern, m_input.strict, shapeStart);
    if (shape.fault != RoadFault::none)
        return shape.fault;
    m_residuals = shape.residuals;
    m_shape = std::move(shape.parameters);

    // Rectified pixels, the origin where the quadrilateral reaches farthest to the left and away.
    const auto [left, right] = std::minmax_element(shape.corners.begin(), shape.corners.end(),
                                                   [](VisionPoint a, VisionPoint b) { return a.x < b.x; });
    const double far = std::max(shape.corners[0].y, shape.corners[1].y);
    for (std::size_t i = 0; i < m_corners.size(); ++i)
        m_corners[i] = {(shape.corners[i].x - left->x) / kRectifiedPixel, (far - shape.corners[i].y) / kRectifiedPixel};
    const auto toRoad = HomographyOf(picture, m_corners);
    const auto toPicture = HomographyOf(m_corners, picture);
    if (!toRoad || !toPicture)
        return RoadFault::notConvex;
    m_toRoad = *toRoad;
    m_toPicture = *toPicture;
    // The denominator is positive this side of the horizon, where the four points are.
    double w = 0.0;
    Apply(m_toRoad, picture[3], w);
    for (double& element : m_toRoad)
        element /= w;
    for (const VisionPoint corner : picture)
        if (Apply(m_toRoad, corner, w); !(w > 0.0))
            return RoadFault::notConvex;
    // From here on for straightened pixels.
    for (const std::size_t row : {0U, 3U, 6U}) {
        m_toRoad[row] /= m_halfDiagonal;
        m_toRoad[row + 1] /= m_halfDiagonal;
        m_toRoad[row + 2] -= m_toRoad[row] * m_centre.x + m_toRoad[row + 1] * m_centre.y;
    }
    EstimateCamera();
    return RoadFault::none;
}

/// Square pixels and a central axis make the columns h1, h2 of the homography orthogonal and equally long behind
/// K^-1 = diag(1/f, 1/f, 1): Z. Zhang, "A flexible new technique for camera calibration", 2000. Both conditions are
/// linear in 1/f²; doubling the first makes them independent of how the road's axes are turned.
void CPerspectiveRectifier::EstimateCamera()
{
    const Homography& h = m_toPicture;
    const std::array<double, 2> a{2.0 * (h[0] * h[1] + h[3] * h[4]),
                                  h[0] * h[0] + h[3] * h[3] - h[1] * h[1] - h[4] * h[4]};
    const std::array<double, 2> c{2.0 * h[6] * h[7], h[6] * h[6] - h[7] * h[7]};
    const double size = h[0] * h[0] + h[3] * h[3] + h[1] * h[1] + h[4] * h[4];
    const double square = a[0] * a[0] + a[1] * a[1];
    if (!(square > kMinPerspective * size * size))
        return;
    const double inverse = -(a[0] * c[0] + a[1] * c[1]) / square; // 1/f²
    if (!(inverse > 1.0 / (kMaxFocal * kMaxFocal) && inverse < 1.0 / (kMinFocal * kMinFocal)))
        return;
    const double f = 1.0 / std::sqrt(inverse);
    const std::array<double, 3> k1{h[0] / f, h[3] / f, h[6]};
    const std::array<double, 3> k2{h[1] / f, h[4] / f, h[7]};
    const std::array<double, 3> k3{h[2] / f, h[5] / f, h[8]};
    const std::array<double, 3> normal{k1[1] * k2[2] - k1[2] * k2[1], k1[2] * k2[0] - k1[0] * k2[2],
                                       k1[0] * k2[1] - k1[1] * k2[0]};
    const auto length = [](const std::array<double, 3>& v) { return std::hypot(v[0], v[1], v[2]); };
    // The road's unit vectors have the length 1, so the mean of the columns' lengths is the scale.
    const double scale = (length(k1) + length(k2)) / 2.0;
    const double along = (normal[0] * k3[0] + normal[1] * k3[1] + normal[2] * k3[2]) / length(normal);
    const double height = std::fabs(along) / scale * kRectifiedPixel;
    if (!std::isfinite(height) || !(height > 0.0))
        return;
    m_focal = f * m_halfDiagonal;
    m_cameraHeight = height;
}

std::vector<VisionPoint> CPerspectiveRectifier::StraightenPoints(std::span<const VisionPoint> raw) const
{
    std::vector<VisionPoint> straight(raw.size());
    std::transform(raw.begin(), raw.end(), straight.begin(), [this](VisionPoint p) { return m_lens.Straighten(p); });
    return straight;
}

void CPerspectiveRectifier::RectifyStraightened(std::span<const VisionPoint> straight,
                                                std::span<VisionPoint> road) const
{
    constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
    constexpr VisionPoint kNoPlace{kNowhere, kNowhere};
    if (m_fault != RoadFault::none) {
        std::fill(road.begin(), road.end(), kNoPlace);
        return;
    }
    const Homography h = m_toRoad;
    const std::size_t count = straight.size();
    for (std::size_t i = 0; i < count; i += 2) {
        const std::size_t j = std::min(i + 1, count - 1); // an odd last one is computed twice
        const vision::Pair x{straight[i].x, straight[j].x};
        const vision::Pair y{straight[i].y, straight[j].y};
        const vision::Pair w = h[6] * x + h[7] * y + h[8];
        const vision::Pair perW = 1.0 / w;
        const vision::Pair px = (h[0] * x + h[1] * y + h[2]) * perW;
        const vision::Pair py = (h[3] * x + h[4] * y + h[5]) * perW;
        // False for what is no number too: an infinite one less itself is none.
        const auto isPlace = (w > 0.0) & (px - px == 0.0) & (py - py == 0.0);
        road[i] = isPlace[0] != 0 ? VisionPoint{px[0], py[0]} : kNoPlace;
        road[j] = isPlace[1] != 0 ? VisionPoint{px[1], py[1]} : kNoPlace;
    }
}

void CPerspectiveRectifier::RectifyPoints(std::span<const VisionPoint> raw, std::span<VisionPoint> road) const
{
    RectifyStraightened(StraightenPoints(raw), road);
}

std::optional<VisionPoint> CPerspectiveRectifier::RectifyPoint(VisionPoint raw) const
{
    const VisionPoint straight = m_lens.Straighten(raw);
    VisionPoint road;
    RectifyStraightened(std::span(&straight, 1), std::span(&road, 1));
    return std::isnan(road.x) ? std::nullopt : std::optional(road);
}

VisionPoint CPerspectiveRectifier::PicturePoint(VisionPoint road) const
{
    double w = 0.0;
    const VisionPoint p = Apply(m_toPicture, road, w);
    return m_lens.Bend({m_centre.x + p.x * m_halfDiagonal, m_centre.y + p.y * m_halfDiagonal});
}

std::vector<std::optional<VisionPoint>> CPerspectiveRectifier::RectifyPoints(const std::vector<VisionPoint>& raw) const
{
    std::vector<std::optional<VisionPoint>> road(raw.size());
    std::transform(raw.begin(), raw.end(), road.begin(), [this](VisionPoint point) { return RectifyPoint(point); });
    return road;
}

std::optional<CPerspectiveRectifier::Spread> CPerspectiveRectifier::PointSpread(VisionPoint raw) const
{
    const auto road = RectifyPoint(raw);
    if (!road)
        return std::nullopt;
    const VisionPoint p = m_lens.Straighten(raw);
    const double w = m_toRoad[6] * p.x + m_toRoad[7] * p.y + m_toRoad[8];
    const auto [a, b, c, d] = m_lens.Derivative(raw);
    // d(N/w) = (dN - N/w dw)/w, then the lens.
    const double xByX = (m_toRoad[0] - road->x * m_toRoad[6]) / w;
    const double xByY = (m_toRoad[1] - road->x * m_toRoad[7]) / w;
    const double yByX = (m_toRoad[3] - road->y * m_toRoad[6]) / w;
    const double yByY = (m_toRoad[4] - road->y * m_toRoad[7]) / w;
    const std::array<double, 2> rowX{xByX * a + xByY * c, xByX * b + xByY * d};
    const std::array<double, 2> rowY{yByX * a + yByY * c, yByX * b + yByY * d};
    return Spread{rowX[0] * rowX[0] + rowX[1] * rowX[1], rowX[0] * rowY[0] + rowX[1] * rowY[1],
                  rowY[0] * rowY[0] + rowY[1] * rowY[1]};
}

bool CPerspectiveRectifier::IsSuspicious(double residual)
{
    return std::fabs(residual) > 3.0 * vision::kDistanceUncertainty;
}
