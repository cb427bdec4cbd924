// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The mean speed of a range: a steady motion through weighted entries where one explains them, otherwise the path.
#include "host/vision/VideoSpeeds.h"

#include "vision/LinearSolve.h"
#include "vision/RoadPaths.h"
#include "vision/Uncertainties.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using vision::kKmhPerMs;
using vision::UncutPath;

/// Inputs that the calibration is varied by: coordinates of four points, six distances, the lens; and one to spare.
constexpr std::size_t kMaxVariants = 16;
constexpr double kQuantile = 1.6448536269514722; // of the normal distribution, 95 %

double Square(double x)
{
    return x * x;
}

/// 95 % of χ²: E. B. Wilson, M. M. Hilferty, 1931; within 1 % from two degrees of freedom on.
double ChiSquare95(double degrees)
{
    const double a = 2.0 / (9.0 * degrees);
    return degrees * std::pow(1.0 - a + kQuantile * std::sqrt(a), 3.0);
}

/// The inverse of the covariance of a point.
CPerspectiveRectifier::Spread Inverse(const CPerspectiveRectifier::Spread& s)
{
    const double determinant = s.xx * s.yy - s.xy * s.xy;
    return {s.yy / determinant, -s.xy / determinant, s.xx / determinant};
}

/// x = x0 + vx·t, y = y0 + vy·t by weighted least squares, and what each entry lies off.
struct Line {
    VisionPoint velocity{};
    std::vector<VisionPoint> residuals{};
    vision::Matrix<4> normal{}; ///< of vx, vy, x0, y0
};

class LineFit
{
  public:
    explicit LineFit(const UncutPath& path) : m_times(path.time)
    {
        double mean = 0.0;
        for (const double time : m_times)
            mean += time / static_cast<double>(m_times.size());
        for (std::size_t i = 0; i < m_times.size(); ++i) {
            m_times[i] -= mean;
            const auto w = Inverse(path.spread[i]);
            m_weights.push_back(w);
            const double t = m_times[i];
            const vision::Matrix<4> add{{{w.xx * t * t, w.xy * t * t, w.xx * t, w.xy * t},
                                         {w.xy * t * t, w.yy * t * t, w.xy * t, w.yy * t},
                                         {w.xx * t, w.xy * t, w.xx, w.xy},
                                         {w.xy * t, w.yy * t, w.xy, w.yy}}};
            for (std::size_t a = 0; a < 4; ++a)
                for (std::size_t b = 0; b < 4; ++b)
                    m_normal[a][b] += add[a][b];
        }
    }

    std::optional<Line> Through(const std::vector<VisionPoint>& places) const
    {
        vision::Vector<4> right{};
        const VisionPoint origin = places.front();
        for (std::size_t i = 0; i < places.size(); ++i) {
            const VisionPoint p = Weighted(i, places[i] - origin);
            right[0] += p.x * m_times[i];
            right[1] += p.y * m_times[i];
            right[2] += p.x;
            right[3] += p.y;
        }
        const auto solution = vision::Solve(m_normal, right);
        if (!solution)
            return std::nullopt;
        Line line;
        line.velocity = {(*solution)[0], (*solution)[1]};
        for (std::size_t i = 0; i < places.size(); ++i)
            line.residuals.push_back({places[i].x - origin.x - (*solution)[2] - line.velocity.x * m_times[i],
                                      places[i].y - origin.y - (*solution)[3] - line.velocity.y * m_times[i]});
        line.normal = m_normal;
        return line;
    }

    double Product(const std::vector<VisionPoint>& a, const std::vector<VisionPoint>& b) const
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < a.size(); ++i) {
            const VisionPoint p = Weighted(i, b[i]);
            sum += a[i].x * p.x + a[i].y * p.y;
        }
        return sum;
    }

  private:
    VisionPoint Weighted(std::size_t i, VisionPoint p) const
    {
        const auto& w = m_weights[i];
        return {w.xx * p.x + w.xy * p.y, w.xy * p.x + w.yy * p.y};
    }

    std::vector<double> m_times;
    std::vector<CPerspectiveRectifier::Spread> m_weights;
    vision::Matrix<4> m_normal{};
};

/// χ² of the residuals, whose covariance is that of the points plus what an error of the calibration bends the path by:
/// the inverse of such a sum by M. A. Woodbury, 1950.
double ChiSquare(const LineFit& fit, const Line& line, const std::vector<std::vector<VisionPoint>>& bends)
{
    vision::Matrix<kMaxVariants> m{};
    vision::Vector<kMaxVariants> b{};
    for (std::size_t i = 0; i < kMaxVariants; ++i) {
        m[i][i] = 1.0;
        if (i >= bends.size())
            continue;
        b[i] = fit.Product(bends[i], line.residuals);
        for (std::size_t k = 0; k < bends.size(); ++k)
            m[i][k] += fit.Product(bends[i], bends[k]);
    }
    double sum = fit.Product(line.residuals, line.residuals);
    if (const auto solution = vision::Solve(m, b))
        for (std::size_t i = 0; i < bends.size(); ++i)
            sum -= b[i] * (*solution)[i];
    return sum;
}

/// Variance of the speed along the velocity.
double SpeedVariance(const Line& line)
{
    const double speed = std::hypot(line.velocity.x, line.velocity.y);
    if (!(speed > 0.0))
        return 0.0;
    const vision::Vector<4> direction{line.velocity.x / speed, line.velocity.y / speed, 0.0, 0.0};
    const auto solution = vision::Solve(line.normal, direction);
    return solution ? direction[0] * (*solution)[0] + direction[1] * (*solution)[1] : 0.0;
}

double Length(const std::vector<VisionPoint>& places)
{
    double length = 0.0;
    for (std::size_t i = 1; i < places.size(); ++i)
        length += Distance(places[i - 1], places[i]);
    return length;
}

/// Variance of the path's length by the points' own.
double LengthVariance(const UncutPath& path)
{
    double variance = 0.0;
    const auto unit = [&](std::size_t from, std::size_t to) {
        const VisionPoint d = path.place[to] - path.place[from];
        const double length = std::hypot(d.x, d.y);
        return length > 0.0 ? VisionPoint{d.x / length, d.y / length} : VisionPoint{};
    };
    for (std::size_t i = 0; i < path.size(); ++i) {
        VisionPoint pull;
        if (i > 0)
            pull = unit(i - 1, i);
        if (i + 1 < path.size())
            pull = pull - unit(i, i + 1);
        variance += vision::Along(path.spread[i], pull) * (pull.x * pull.x + pull.y * pull.y);
    }
    return variance;
}

} // namespace

std::optional<MeanSpeed> VideoSpeeds::Mean(std::span<const VideoEntry> entries) const
{
    const UncutPath path(m_road, entries);
    if (path.size() < 2 || !(path.time.back() > path.time.front()))
        return std::nullopt;
    const LineFit fit(path);
    const auto line = fit.Through(path.place);
    if (!line)
        return std::nullopt;
    std::vector<std::vector<VisionPoint>> places;
    std::vector<std::vector<VisionPoint>> bends;
    std::vector<Line> lines;
    std::vector<double> factors;
    bool isBlind = !m_isSure; // a changed calibration is none, or no longer sees all points
    for (const Variant& variant : m_variants) {
        std::vector<VisionPoint> varied;
        for (const VideoEntry& entry : path.source)
            if (const auto place = variant.road.RectifyPoint(entry.point))
                varied.push_back(*place);
        const auto through = varied.size() == path.size() ? fit.Through(varied) : std::nullopt;
        if (!through) {
            isBlind = true;
            continue;
        }
        std::vector<VisionPoint> bend;
        for (std::size_t i = 0; i < path.size(); ++i)
            bend.push_back(through->residuals[i] - line->residuals[i]);
        places.push_back(std::move(varied));
        bends.push_back(std::move(bend));
        lines.push_back(*through);
        factors.push_back(variant.factor);
    }
    const double seconds = path.time.back() - path.time.front();
    const std::size_t degrees = 2 * path.size() - 4;
    MeanSpeed mean;
    mean.kind = degrees == 0 || ChiSquare(fit, *line, bends) <= ChiSquare95(static_cast<double>(degrees))
                    ? MeanKind::line
                    : MeanKind::polyline;
    const bool steady = mean.kind == MeanKind::line;
    const double unit = kRectifiedPixel * kKmhPerMs;
    const auto speedOf = [&](const Line& of, const std::vector<VisionPoint>& along) {
        return unit * (steady ? std::hypot(of.velocity.x, of.velocity.y) : Length(along) / seconds);
    };
    mean.speed = m_factor * speedOf(*line, path.place);
    double variance =
        (steady ? SpeedVariance(*line) : LengthVariance(path) / Square(seconds)) * Square(m_factor * unit);
    for (std::size_t i = 0; i < lines.size(); ++i)
        variance += Square(factors[i] * speedOf(lines[i], places[i]) - mean.speed);
    variance +=
        Square(mean.speed * HeightUncertainty()) + 2.0 * Square(mean.speed * vision::kTimeUncertainty / seconds);
    mean.uncertainty =
        isBlind || !std::isfinite(variance) ? std::numeric_limits<double>::infinity() : std::sqrt(variance);
    return mean;
}
