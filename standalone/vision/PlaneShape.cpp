// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Levenberg-Marquardt over the few numbers that a shape has.
#include "vision/PlaneShape.h"

#include "vision/LinearSolve.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vision
{
namespace
{

constexpr std::size_t kMost = 5; ///< numbers of a free quadrilateral
/// Of the shape's conditions beside the distances where the quadrilateral is free.
constexpr double kShapeWeight = 1e-3;
constexpr int kMaxSteps = 300;
constexpr double kStepLimit = 1e-13; ///< of the quadrilateral's size: nothing moves any more
/// What is left of a column of the scaled normal matrix when the others are taken off: below, the distances do not fix
/// the shape. In a free one also the shape's conditions count, and they are weak.
constexpr double kMinPivotStrict = 1e-4;
constexpr double kMinPivotFree = 1e-9;
/// Smaller corners than these, as the sine of their angle, are no quadrilateral any more.
constexpr double kMinSine = 1e-3;
/// Where the far corners may lie beside the near ones, in lengths of the sides: starts of the search.
constexpr double kShifts[] = {0.0, 0.4, -0.4, 0.8, -0.8};

using Row = std::array<double, kMost>;

/// Corners and conditions are linear in the numbers of the shape.
struct Form {
    std::size_t count = 0;
    std::array<Row, 4> x{};
    std::array<Row, 4> y{};
    std::vector<Row> conditions{}; ///< each is zero in the shape
};

Form FormOf(RectifyPattern pattern, bool strict)
{
    Form form;
    const auto place = [&](std::size_t point, Row x, Row y) {
        form.x[point] = x;
        form.y[point] = y;
    };
    if (!strict) { // P4.x, P1.x, P1.y, P2.x, P2.y
        form.count = 5;
        place(3, {1}, {});
        place(0, {0, 1}, {0, 0, 1});
        place(1, {0, 0, 0, 1}, {0, 0, 0, 0, 1});
        form.conditions.push_back({0, 0, kShapeWeight, 0, -kShapeWeight}); // far edge parallel to the near one
        if (pattern != RectifyPattern::trapez)
            form.conditions.push_back({-kShapeWeight, -kShapeWeight, 0, kShapeWeight}); // and as long
        if (pattern == RectifyPattern::square)
            form.conditions.push_back({0, kShapeWeight}); // and not shifted
    } else if (pattern == RectifyPattern::square) {       // width, depth
        form.count = 2;
        place(3, {1}, {});
        place(0, {}, {0, 1});
        place(1, {1}, {0, 1});
    } else if (pattern == RectifyPattern::trapez) { // near width, far width, shift, depth
        form.count = 4;
        place(3, {1}, {});
        place(0, {0, 0, 1}, {0, 0, 0, 1});
        place(1, {0, 1, 1}, {0, 0, 0, 1});
    } else { // width, shift, depth
        form.count = 3;
        place(3, {1}, {});
        place(0, {0, 1}, {0, 0, 1});
        place(1, {1, 1}, {0, 0, 1});
    }
    return form;
}

double Dot(const Row& a, const Row& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < kMost; ++i)
        sum += a[i] * b[i];
    return sum;
}

RoadPoints Corners(const Form& form, const Row& numbers)
{
    RoadPoints corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        corners[i] = {Dot(form.x[i], numbers), Dot(form.y[i], numbers)};
    return corners;
}

struct Normal {
    double error = 0.0;     ///< sum of squares, m²
    Matrix<kMost> matrix{}; ///< with ones on the diagonal of what the form does not have
    Row gradient{};
};

Normal NormalOf(const Form& form, const RoadDistances& distances, const Row& numbers)
{
    Normal normal;
    const auto add = [&](const Row& row, double residual) {
        normal.error += residual * residual;
        for (std::size_t i = 0; i < kMost; ++i) {
            normal.gradient[i] += row[i] * residual;
            for (std::size_t k = 0; k < kMost; ++k)
                normal.matrix[i][k] += row[i] * row[k];
        }
    };
    const RoadPoints corners = Corners(form, numbers);
    for (std::size_t i = 0; i < distances.size(); ++i) {
        if (distances[i] == 0.0)
            continue;
        const auto [a, b] = kDistancePairs[i];
        const VisionPoint d = corners[b] - corners[a];
        const double length = std::max(std::hypot(d.x, d.y), std::numeric_limits<double>::min());
        Row row{};
        for (std::size_t k = 0; k < kMost; ++k)
            row[k] = ((form.x[b][k] - form.x[a][k]) * d.x + (form.y[b][k] - form.y[a][k]) * d.y) / length;
        add(row, distances[i] - length);
    }
    for (const Row& condition : form.conditions)
        add(condition, -Dot(condition, numbers));
    for (std::size_t i = form.count; i < kMost; ++i)
        normal.matrix[i][i] = 1.0;
    return normal;
}

/// K. Levenberg 1944, D. Marquardt 1963; the damping scales with the diagonal.
Row Minimise(const Form& form, const RoadDistances& distances, Row numbers)
{
    double damping = 1e-3;
    Normal normal = NormalOf(form, distances, numbers);
    for (int i = 0; i < kMaxSteps; ++i) {
        Matrix<kMost> damped = normal.matrix;
        for (std::size_t k = 0; k < kMost; ++k)
            damped[k][k] *= 1.0 + damping;
        const auto step = Solve(damped, normal.gradient);
        Row next = numbers;
        double moved = 0.0;
        double size = 0.0;
        for (std::size_t k = 0; step && k < kMost; ++k) {
            next[k] += (*step)[k];
            moved = std::max(moved, std::fabs((*step)[k]));
            size = std::max(size, std::fabs(next[k]));
        }
        const Normal there = NormalOf(form, distances, next);
        if (step && there.error <= normal.error) {
            numbers = next;
            normal = there;
            damping = std::max(damping / 10.0, 1e-15);
            if (moved <= kStepLimit * size)
                break;
        } else {
            damping *= 10.0;
            if (damping > 1e12)
                break;
        }
    }
    return numbers;
}

/// Whether going round P1, P2, P4, P3 turns right at every corner, with corners that are some.
bool IsConvex(const RoadPoints& corners)
{
    constexpr std::array<std::size_t, 4> kRound{0, 1, 3, 2};
    for (std::size_t i = 0; i < kRound.size(); ++i) {
        const VisionPoint a = corners[kRound[(i + 1) % 4]] - corners[kRound[i]];
        const VisionPoint b = corners[kRound[(i + 2) % 4]] - corners[kRound[(i + 1) % 4]];
        if (!(a.y * b.x - a.x * b.y > kMinSine * std::hypot(a.x, a.y) * std::hypot(b.x, b.y)))
            return false;
    }
    return true;
}

/// Whether each number of the shape is fixed: elimination of the normal matrix with the diagonal scaled to one.
bool IsFixed(const Form& form, Matrix<kMost> matrix, double minPivot)
{
    Row scale{};
    for (std::size_t i = 0; i < form.count; ++i) {
        if (!(matrix[i][i] > 0.0))
            return false;
        scale[i] = 1.0 / std::sqrt(matrix[i][i]);
    }
    for (std::size_t i = 0; i < form.count; ++i)
        for (std::size_t k = 0; k < form.count; ++k)
            matrix[i][k] *= scale[i] * scale[k];
    std::array<bool, kMost> done{};
    for (std::size_t round = 0; round < form.count; ++round) {
        std::size_t pivot = kMost;
        for (std::size_t i = 0; i < form.count; ++i)
            if (!done[i] && (pivot == kMost || matrix[i][i] > matrix[pivot][pivot]))
                pivot = i;
        if (!(matrix[pivot][pivot] > minPivot))
            return false;
        done[pivot] = true;
        for (std::size_t i = 0; i < form.count; ++i)
            for (std::size_t k = 0; k < form.count; ++k)
                if (!done[i] && !done[k])
                    matrix[i][k] -= matrix[i][pivot] * matrix[pivot][k] / matrix[pivot][pivot];
    }
    return true;
}

std::vector<Row> Starts(const RoadDistances& distances, RectifyPattern pattern, bool strict)
{
    const auto firstOf = [](std::initializer_list<double> lengths) {
        return *std::find_if(lengths.begin(), lengths.end() - 1, [](double length) { return length > 0.0; });
    };
    const double largest = *std::max_element(distances.begin(), distances.end());
    const double near = firstOf({distances[2], distances[0], largest});
    const double far = firstOf({distances[0], distances[2], largest});
    const double side = firstOf({distances[3], distances[1], largest});
    std::vector<Row> starts;
    for (const double left : kShifts) {
        const double shift = left * side;
        const double depth = std::sqrt(side * side - shift * shift);
        if (strict && pattern == RectifyPattern::square) {
            starts.push_back({near, depth});
            break;
        }
        if (strict && pattern == RectifyPattern::trapez)
            starts.push_back({near, far, shift, depth});
        else if (strict)
            starts.push_back({near, shift, depth});
        else
            for (const double right : kShifts)
                starts.push_back({near, shift, depth, near + right * side, depth});
    }
    return starts;
}

} // namespace

PlaneShape SolveShape(const RoadDistances& distances, RectifyPattern pattern, bool strict,
                      const std::vector<double>& start)
{
    PlaneShape shape;
    const Form form = FormOf(pattern, strict);
    std::size_t given = 0;
    for (const double distance : distances) {
        if (!(distance >= 0.0) || !std::isfinite(distance)) {
            shape.fault = RoadFault::badDistance;
            return shape;
        }
        given += distance > 0.0 ? 1U : 0U;
    }
    if (given == 0 || given + form.conditions.size() < form.count) {
        shape.fault = RoadFault::missingDistances;
        return shape;
    }
    std::vector<Row> starts = Starts(distances, pattern, strict);
    if (start.size() == form.count) {
        starts.assign(1, Row{});
        std::copy(start.begin(), start.end(), starts.front().begin());
    }
    std::optional<Row> best;
    double leastError = std::numeric_limits<double>::infinity();
    for (const Row& first : starts) {
        const Row numbers = Minimise(form, distances, first);
        if (!IsConvex(Corners(form, numbers)))
            continue;
        if (const double error = NormalOf(form, distances, numbers).error; error < leastError) {
            leastError = error;
            best = numbers;
        }
    }
    if (!best) {
        shape.fault = RoadFault::contradiction;
        return shape;
    }
    if (!IsFixed(form, NormalOf(form, distances, *best).matrix, strict ? kMinPivotStrict : kMinPivotFree)) {
        shape.fault = RoadFault::missingDistances;
        return shape;
    }
    shape.corners = Corners(form, *best);
    const RoadPoints& p = shape.corners;
    const double lean = (p[0].x + p[1].x) - (p[2].x + p[3].x);
    if ((pattern == RectifyPattern::rhombusL && lean > 0.0) || (pattern == RectifyPattern::rhombusR && lean < 0.0)) {
        shape.fault = RoadFault::leansOtherWay;
        return shape;
    }
    shape.parameters.assign(best->begin(), best->begin() + static_cast<std::ptrdiff_t>(form.count));
    for (std::size_t i = 0; i < distances.size(); ++i)
        if (distances[i] > 0.0)
            shape.residuals[i] = distances[i] - Distance(p[kDistancePairs[i].first], p[kDistancePairs[i].second]);
    return shape;
}

} // namespace vision
