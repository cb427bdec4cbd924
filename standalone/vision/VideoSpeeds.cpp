// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The rule of the display with its uncertainty of first order, and the smooth course: a quadratic through the entries
// around each moment.
#include "host/vision/VideoSpeeds.h"

#include "vision/Pair.h"
#include "vision/RoadPaths.h"
#include "vision/Uncertainties.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using vision::kKmhPerMs;
using vision::Pair;
using vision::RoadPath;

/// A smooth speed that is so many times less sure than the measured one beside it is none.
constexpr double kMuchLessSure = 4.0;
/// How many entries before the last one the speed is taken to: -7, then -6 to -3, where the last is -1.
constexpr std::size_t kOldest = 6;
constexpr std::size_t kYoungest = 2;

double Square(double x)
{
    return x * x;
}

struct Interval {
    std::size_t older = 0;
    std::size_t newer = 0;
    double seconds = 0.0;
};

std::vector<Interval> Intervals(std::span<const VideoEntry> entries, const RoadPath& path, double fps)
{
    std::vector<Interval> intervals;
    intervals.reserve(entries.size());
    for (std::size_t newer = kYoungest; newer < entries.size(); ++newer) {
        if (!path.IsPlace(newer))
            continue;
        for (std::size_t back = std::min(kOldest, newer); back >= kYoungest; --back) {
            const std::size_t older = newer - back;
            if (!path.IsPlace(older))
                continue;
            double seconds = entries[newer].time - entries[older].time;
            if (seconds == 0.0 && fps > 0.0) // a frame length of the file per frame between them
                seconds = std::max(1, entries[newer].frame - entries[older].frame) / fps;
            if (seconds > 0.0)
                intervals.push_back({older, newer, seconds});
            break;
        }
    }
    return intervals;
}

/// Of weighted entries around a moment: of w tⁿ, n from 0 to 4, of w tⁿ p, n from 0 to 2, and of w p².
struct Sums {
    Pair w01{};
    Pair w23{};
    Pair w4Squares{};
    Pair right0{};
    Pair right1{};
    Pair right2{};
};

/// As many weights and places as times.
Sums SumsOf(std::span<const double> times, const double* weights, const VisionPoint* places, double moment,
            VisionPoint origin)
{
    Sums sums;
    const double* const time = times.data();
    const std::size_t count = times.size();
    for (std::size_t i = 0; i < count; ++i) {
        const double t = time[i] - moment;
        const double w = weights[i];
        const double wt = w * t;
        const double wtt = wt * t;
        const double wttt = wtt * t;
        const Pair p{places[i].x - origin.x, places[i].y - origin.y};
        const Pair square = p * p;
        sums.w01 += Pair{w, wt};
        sums.w23 += Pair{wtt, wttt};
        sums.w4Squares += Pair{wttt, w} * Pair{t, square[0] + square[1]};
        sums.right0 += w * p;
        sums.right1 += wt * p;
        sums.right2 += wtt * p;
    }
    return sums;
}

} // namespace

int SpeedLabel(double kmh)
{
    constexpr double kLargest = 1e9;
    return static_cast<int>(std::clamp(std::round(kmh + 0.5), -kLargest, kLargest));
}

VideoSpeeds::VideoSpeeds(const CPerspectiveRectifier& road, const SpeedInput& input) : m_road(road), m_input(input)
{
    m_input.smoothSpan = std::clamp(input.smoothSpan, 0.2, 2.0);
    m_factor = FactorOf(road);
    const RoadInput& given = road.Input();
    const auto vary = [&](double& value, double uncertainty, RoadInput& changed) {
        if (!(uncertainty > 0.0))
            return;
        const double before = value;
        value += uncertainty;
        auto varied = road.Varied(changed);
        if (!varied) { // at the edge of what is a calibration: to the other side
            value = before - uncertainty;
            varied = road.Varied(changed);
        }
        value = before;
        if (!varied) {
            m_isSure = false;
            return;
        }
        const double factor = FactorOf(*varied);
        m_variants.push_back({std::move(*varied), factor});
    };
    RoadInput changed = given;
    for (VisionPoint& point : changed.points) {
        vary(point.x, vision::kClickUncertainty, changed);
        vary(point.y, vision::kClickUncertainty, changed);
    }
    for (double& distance : changed.distances)
        if (distance > 0.0)
            vary(distance, vision::kDistanceUncertainty, changed);
    vary(changed.strength, input.strengthUncertainty, changed);
    // The last word on whether the factor is known is the calibration's, not a variant's.
    m_factor = FactorOf(road);
    const auto height = m_input.cameraHeight ? m_input.cameraHeight : m_road.CameraHeight();
    m_factorIsKnown = m_input.factor || m_input.pointHeight == 0.0 || (height && *height > m_input.pointHeight);
}

/// A point z above the road is seen where the ray through it meets the road: h / (h - z) times as far from below the
/// camera.
double VideoSpeeds::FactorOf(const CPerspectiveRectifier& road) const
{
    if (m_input.factor)
        return *m_input.factor;
    const auto height = m_input.cameraHeight ? m_input.cameraHeight : road.CameraHeight();
    const double factor = height ? 1.0 - m_input.pointHeight / *height : 1.0;
    return factor > 0.0 ? factor : 1.0;
}

/// Of any speed, relative: of the height of the followed points. A point on the road is on the road.
double VideoSpeeds::HeightUncertainty() const
{
    const auto height = m_input.cameraHeight ? m_input.cameraHeight : m_road.CameraHeight();
    if (m_input.pointHeight == 0.0 || !height || m_factor == 0.0)
        return 0.0;
    return vision::kHeightUncertainty / *height / m_factor;
}

std::vector<VideoSpeed> VideoSpeeds::Of(std::span<const VideoEntry> entries) const
{
    const std::vector<VisionPoint> raw = vision::RawPoints(entries);
    const std::vector<VisionPoint> straight = m_road.StraightenPoints(raw);
    const RoadPath path(m_road, straight);
    const std::vector<Interval> intervals = Intervals(entries, path, m_input.fps);
    std::vector<VideoSpeed> speeds(intervals.size());
    std::vector<double> systematic(intervals.size(), 0.0); // variance, (km/h)²
    const auto perPixel = [](double factor, const Interval& interval) {
        return factor * kRectifiedPixel * kKmhPerMs / interval.seconds;
    };
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        const auto& [older, newer, seconds] = intervals[i];
        speeds[i].time = (entries[older].time + entries[newer].time) / 2.0;
        speeds[i].frame = entries[newer].frame;
        speeds[i].speed = Distance(path.At(older), path.At(newer)) * perPixel(m_factor, intervals[i]);
        speeds[i].label = SpeedLabel(speeds[i].speed);
    }
    for (const Variant& variant : m_variants) {
        const bool sameLens = variant.road.Input().strength == m_road.Input().strength;
        const RoadPath varied =
            sameLens ? RoadPath(variant.road, straight) : RoadPath(variant.road, variant.road.StraightenPoints(raw));
        for (std::size_t i = 0; i < intervals.size(); ++i) {
            const double speed = Distance(varied.At(intervals[i].older), varied.At(intervals[i].newer)) *
                                 perPixel(variant.factor, intervals[i]);
            systematic[i] += Square(speed - speeds[i].speed);
        }
    }
    const std::vector<CPerspectiveRectifier::Spread> spreads = vision::Spreads(m_road, entries);
    const double height = HeightUncertainty();
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        const auto& [older, newer, seconds] = intervals[i];
        systematic[i] += Square(speeds[i].speed * height);
        const VisionPoint d = path.At(newer) - path.At(older);
        const double points = vision::Along(spreads[older], d) + vision::Along(spreads[newer], d);
        const double random = points * Square(perPixel(m_factor, intervals[i])) +
                              2.0 * Square(speeds[i].speed * vision::kTimeUncertainty / seconds);
        const double sum = std::sqrt(systematic[i] + random);
        // A changed calibration that no longer sees the points says nothing but that it is bad.
        speeds[i].uncertainty = m_isSure && std::isfinite(sum) ? sum : std::numeric_limits<double>::infinity();
    }
    Smooth(vision::UncutPath(entries, path, spreads), speeds, systematic);
    return speeds;
}

/// W. S. Cleveland's local regression (1979) with even weights over the span: x(t) and y(t) each a quadratic around the
/// moment, the entries weighted by how far a pixel reaches on the road; the speed is the length of the linear terms.
void VideoSpeeds::Smooth(const vision::UncutPath& path, std::vector<VideoSpeed>& speeds,
                         std::span<const double> systematic) const
{
    if (path.size() == 0)
        return;
    std::size_t first = 0;
    for (std::size_t s = 0; s < speeds.size(); ++s) {
        VideoSpeed& speed = speeds[s];
        // At the ends of the track the span stays within it.
        const double begin = std::max(
            path.time.front(), std::min(speed.time - m_input.smoothSpan / 2.0, path.time.back() - m_input.smoothSpan));
        while (first < path.size() && path.time[first] < begin)
            ++first;
        std::size_t end = first;
        while (end < path.size() && path.time[end] <= begin + m_input.smoothSpan)
            ++end;
        const std::size_t count = end - first;
        if (count < 3)
            continue;
        const std::size_t middle = first + count / 2;
        const VisionPoint origin = path.place[middle];
        const Sums sums = SumsOf(std::span(path.time).subspan(first, count), &path.weight[first], &path.place[first],
                                 speed.time, origin);
        const double w0 = sums.w01[0];
        const double w1 = sums.w01[1];
        const double w2 = sums.w23[0];
        const double w3 = sums.w23[1];
        const double w4 = sums.w4Squares[0];
        const double squares = sums.w4Squares[1];
        // The inverse of the symmetric normal matrix {{w0, w1, w2}, {w1, w2, w3}, {w2, w3, w4}} by its cofactors.
        const double c00 = w2 * w4 - w3 * w3;
        const double c01 = w2 * w3 - w1 * w4;
        const double c02 = w1 * w3 - w2 * w2;
        const double c11 = w0 * w4 - w2 * w2;
        const double c12 = w1 * w2 - w0 * w3;
        const double c22 = w0 * w2 - w1 * w1;
        const double determinant = w0 * c00 + w1 * c01 + w2 * c02;
        // Entries at fewer than three different times fix no quadratic.
        if (!(determinant > 1e-12 * w0 * w2 * w4))
            continue;
        const auto solve = [&](double a, double b, double c) {
            return (a * sums.right0 + b * sums.right1 + c * sums.right2) / determinant;
        };
        const Pair linear = solve(c01, c11, c12);
        const VisionPoint velocity{linear[0], linear[1]};
        const double length = std::hypot(velocity.x, velocity.y);
        const double unit = m_factor * kRectifiedPixel * kKmhPerMs;
        speed.smooth = length * unit;
        double scatter = 1.0;
        if (count > 3) {
            const Pair explained =
                sums.right0 * solve(c00, c01, c02) + sums.right1 * linear + sums.right2 * solve(c02, c12, c22);
            // Points that scatter more than by a pixel widen the band.
            scatter = std::max(1.0, (squares - (explained[0] + explained[1])) / static_cast<double>(count - 3));
        }
        const double share = vision::Along(path.spread[middle], velocity) * path.weight[middle];
        const double random = c11 / determinant * share * scatter * unit * unit;
        const double relative = speed.speed > 0.0 ? systematic[s] / Square(speed.speed) : 0.0;
        const double sum = std::sqrt(random + relative * Square(*speed.smooth));
        speed.smoothUncertainty = m_isSure && std::isfinite(sum) ? sum : std::numeric_limits<double>::infinity();
        // Beside a gap the quadratic swings freely: then it says less than the two entries of the rule.
        if (speed.smoothUncertainty > kMuchLessSure * speed.uncertainty)
            speed.smooth.reset();
    }
}
