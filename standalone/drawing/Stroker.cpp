// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/Stroker.h"

#include "drawing/DrawingFormat.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>

namespace drawing
{
namespace
{
constexpr double kArcTolerance = 0.05; // chord of a round join to its arc

/// One straight piece: its start, its direction (length 1) and its length.
struct Piece {
    CDPoint start;
    CDPoint direction;
    double length;
};

CDPoint LeftOf(const CDPoint& direction)
{
    return {direction.y, -direction.x};
}

/// The pieces of positive length.
std::vector<Piece> PiecesOf(const Contour& points, bool closed)
{
    std::vector<Piece> pieces;
    const std::size_t count = closed ? points.size() : points.size() - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const CDPoint step = points[(i + 1) % points.size()] - points[i];
        const double length = std::hypot(step.x, step.y);
        if (length > 1e-9)
            pieces.push_back({points[i], step * (1.0 / length), length});
    }
    return pieces;
}

/// The same way, walked backwards.
std::vector<Piece> Reversed(const std::vector<Piece>& pieces)
{
    std::vector<Piece> result;
    result.reserve(pieces.size());
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
        result.push_back({piece->start + piece->direction * piece->length, piece->direction * -1.0, piece->length});
    return result;
}

/// Adds the left border of the stroke where `from` meets `to`.
///
/// Seen as area, the pieces are rectangles; a join adds the wedge missing on the outside of the bend. On the inside,
/// the border runs through the point where both borders cross, so that the overlap of the rectangles counts once.
/// Where a piece is too short for that, it runs through the bend itself; the overlap then counts twice but never
/// less than once.
void AddJoin(Contour& border, const Piece& from, const Piece& to, double half, StrokeJoin join)
{
    const CDPoint& bend = to.start;
    const CDPoint n0 = LeftOf(from.direction);
    const CDPoint n1 = LeftOf(to.direction);
    const double cross = from.direction.x * to.direction.y - from.direction.y * to.direction.x;
    const double dot = from.direction.x * to.direction.x + from.direction.y * to.direction.y;
    const CDPoint crossing = dot > -1.0 ? bend + (n0 + n1) * (half / (1.0 + dot)) : bend;

    const bool outside = cross > 0.0 || (cross == 0.0 && dot < 0.0);
    if (!outside) {
        const double setback = half * -cross / (1.0 + dot); // half · tan(angle / 2)
        if (setback <= std::min(from.length, to.length)) {
            border.push_back(crossing);
        } else {
            border.push_back(bend + n0 * half);
            border.push_back(bend);
            border.push_back(bend + n1 * half);
        }
        return;
    }
    // The mitre is 1 / cos(angle / 2) pen widths long.
    if (join == StrokeJoin::miter && (1.0 + dot) * kMiterLimit * kMiterLimit >= 2.0) {
        border.push_back(crossing);
        return;
    }
    border.push_back(bend + n0 * half);
    if (join == StrokeJoin::round) {
        const double angle = std::atan2(cross, dot);
        const int steps = static_cast<int>(std::ceil(angle / std::sqrt(8.0 * kArcTolerance / half)));
        for (int i = 1; i < steps; ++i) {
            CDPoint n = n0;
            n.Rotate(angle * i / steps, CDPoint{});
            border.push_back(bend + n * half);
        }
    }
    border.push_back(bend + n1 * half);
}

Contour LeftBorder(const std::vector<Piece>& pieces, bool closed, double half, StrokeJoin join)
{
    Contour border;
    if (closed)
        AddJoin(border, pieces.back(), pieces.front(), half, join);
    else
        border.push_back(pieces.front().start + LeftOf(pieces.front().direction) * half);
    for (std::size_t i = 1; i < pieces.size(); ++i)
        AddJoin(border, pieces[i - 1], pieces[i], half, join);
    if (!closed) {
        const Piece& last = pieces.back();
        border.push_back(last.start + last.direction * last.length + LeftOf(last.direction) * half);
    }
    return border;
}

void AddOutline(std::vector<Contour>& outlines, const Contour& points, bool closed, const StrokeStyle& style)
{
    const std::vector<Piece> pieces = PiecesOf(points, closed);
    if (pieces.empty())
        return;
    Contour left = LeftBorder(pieces, closed, style.width / 2.0, style.join);
    Contour right = LeftBorder(Reversed(pieces), closed, style.width / 2.0, style.join);
    if (closed)
        outlines.push_back(std::move(right));
    else
        left.insert(left.end(), right.begin(), right.end());
    outlines.push_back(std::move(left));
}

/// Walks along dashes and gaps.
class DashPattern
{
  public:
    explicit DashPattern(const std::vector<double>& lengths)
        : m_lengths(lengths), m_period(std::accumulate(lengths.begin(), lengths.end(), 0.0)), m_left(lengths.front())
    {
    }

    bool InDash() const { return m_index % 2 == 0; }
    /// Length left of the current dash or gap.
    double Left() const { return m_left; }

    void Next()
    {
        m_index = (m_index + 1) % m_lengths.size();
        m_left = m_lengths[m_index];
    }

    /// Uses up part of the current dash or gap.
    void Spend(double distance) { m_left = std::max(m_left - distance, 0.0); }

    void Skip(double distance)
    {
        distance = std::fmod(distance, m_period);
        while (distance >= m_left) {
            distance -= m_left;
            Next();
        }
        m_left -= distance;
    }

  private:
    const std::vector<double>& m_lengths;
    double m_period;
    double m_left;
    std::size_t m_index = 0;
};

/// The visible dashes of the line as lines of their own.
std::vector<Contour> DashesOf(const Contour& points, bool closed, const std::vector<double>& lengths,
                              const Box& visible)
{
    std::vector<Contour> dashes;
    Contour dash;
    const auto finish = [&] {
        if (dash.size() > 1)
            dashes.push_back(std::move(dash));
        dash.clear();
    };
    DashPattern pattern(lengths);
    for (const Piece& piece : PiecesOf(points, closed)) {
        const auto at = [&](double way) { return piece.start + piece.direction * way; };
        const auto part = ClipSegment(piece.start, at(piece.length), visible);
        double way = part ? part->from * piece.length : piece.length;
        const double end = part ? part->to * piece.length : piece.length;
        if (way > 0.0) {
            finish();
            pattern.Skip(way);
        }
        if (!part)
            continue;
        if (pattern.InDash() && dash.empty())
            dash.push_back(at(way));
        while (way + pattern.Left() <= end) {
            way += pattern.Left();
            dash.push_back(at(way));
            if (pattern.InDash())
                finish();
            pattern.Next();
        }
        pattern.Spend(end - way);
        if (pattern.InDash())
            dash.push_back(at(end));
        if (end < piece.length) {
            finish();
            pattern.Skip(piece.length - end);
        }
    }
    finish();
    return dashes;
}
} // namespace

std::vector<Contour> StrokeOutlines(const Contour& points, bool closed, const StrokeStyle& style, const Box& visible)
{
    std::vector<Contour> outlines;
    if (points.size() < 2)
        return outlines;
    if (style.dashes.empty()) {
        AddOutline(outlines, points, closed, style);
        return outlines;
    }
    const double reach = style.width * kMiterLimit;
    const Box wider{visible.left - reach, visible.top - reach, visible.right + reach, visible.bottom + reach};
    for (const Contour& dash : DashesOf(points, closed, style.dashes, wider))
        AddOutline(outlines, dash, false, style);
    return outlines;
}
} // namespace drawing
