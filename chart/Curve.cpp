// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Curve.h"

#include "host/Assert.h"

#include <algorithm>
#include <cmath>

namespace chart
{
namespace
{

constexpr std::size_t kBlock = 16;  // samples of an entry of the lowest level
constexpr std::size_t kFanOut = 16; // entries of a level that the next one joins
constexpr std::size_t kDense = 4;   // samples of a column that are drawn one by one

/// A line's end; the samples after it begin another.
void Break(std::vector<std::vector<CDPoint>>& lines)
{
    if (!lines.back().empty())
        lines.emplace_back();
}

} // namespace

Samples CheckSamples(const std::vector<double>& x, const std::vector<double>& y)
{
    if (x.size() != y.size())
        return Samples::lengthsDiffer;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!(std::abs(x[i]) <= kLargest))
            return Samples::timeNotFinite;
        if (i > 0 && x[i] < x[i - 1])
            return Samples::timeRunsBack;
    }
    return Samples::fine;
}

Curve::Curve(Values x, Values y, std::size_t stride) : m_x(std::move(x)), m_y(std::move(y)), m_stride(stride)
{
    RUV_ASSERT(stride >= 1 && m_x != nullptr && m_y != nullptr && m_x->size() == m_y->size());
    m_size = (m_x->size() + stride - 1) / stride;
    std::vector<Extremes> level((m_size + kBlock - 1) / kBlock);
    for (std::size_t i = 0; i < m_size; ++i)
        if (const double y_i = Y(i); y_i == y_i)
            level[i / kBlock].Take(y_i);
    while (level.size() > 1) {
        std::vector<Extremes> next((level.size() + kFanOut - 1) / kFanOut);
        for (std::size_t i = 0; i < level.size(); ++i)
            next[i / kFanOut].Take(level[i]);
        m_levels.push_back(std::move(level));
        level = std::move(next);
    }
    m_levels.push_back(std::move(level));
}

double Curve::Y(std::size_t index) const
{
    const double y = (*m_y)[index * m_stride];
    return std::abs(y) <= kLargest ? y : std::numeric_limits<double>::quiet_NaN();
}

bool Curve::IsMissing(std::size_t index) const
{
    return std::isnan(Y(index));
}

std::size_t Curve::FirstFrom(double x, std::size_t guess) const
{
    // Steps that double lead away from the guess until the place lies between low and high.
    std::size_t low = std::min(guess, m_size); // every sample before it is less than x
    std::size_t high = low;                    // it and every sample behind it are not
    for (std::size_t step = 1; low > 0 && !(X(low - 1) < x); step *= 2) {
        high = low - 1;
        low -= std::min(low, step);
    }
    for (std::size_t step = 1; high < m_size && X(high) < x; step *= 2) {
        low = high + 1;
        high = step < m_size - high ? high + step : m_size;
    }
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (X(middle) < x)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

Extremes Curve::Between(std::size_t first, std::size_t last) const
{
    last = std::min(last, m_size);
    Extremes found;
    const auto samples = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i)
            if (const double y = Y(i); y == y)
                found.Take(y);
    };
    if (first >= last)
        return found;
    std::size_t low = (first + kBlock - 1) / kBlock; // whole blocks low..high-1
    std::size_t high = last / kBlock;
    if (low >= high) {
        samples(first, last);
        return found;
    }
    samples(first, low * kBlock);
    samples(high * kBlock, last);
    // From level to level the ends that are no whole entry of the next one are taken.
    for (const std::vector<Extremes>& level : m_levels) {
        const std::size_t nextLow = (low + kFanOut - 1) / kFanOut;
        const std::size_t nextHigh = high / kFanOut;
        if (nextLow >= nextHigh || &level == &m_levels.back()) {
            for (std::size_t i = low; i < high; ++i)
                found.Take(level[i]);
            return found;
        }
        for (std::size_t i = low; i < nextLow * kFanOut; ++i)
            found.Take(level[i]);
        for (std::size_t i = nextHigh * kFanOut; i < high; ++i)
            found.Take(level[i]);
        low = nextLow;
        high = nextHigh;
    }
    return found;
}

Reading Curve::At(double x) const
{
    Reading reading;
    if (m_size == 0 || std::isnan(x))
        return reading;
    const std::size_t after = FirstFrom(x);
    if (after < m_size && X(after) == x && !IsMissing(after)) {
        reading.interpolated = Y(after);
    } else if (after > 0 && after < m_size && !IsMissing(after - 1) && !IsMissing(after)) {
        const double part = (x - X(after - 1)) / (X(after) - X(after - 1));
        reading.interpolated = Y(after - 1) + part * (Y(after) - Y(after - 1));
    }
    constexpr std::size_t kFarthest = 100'000; // samples, in a long gap
    std::size_t left = after;                  // one past the candidate
    while (left > 0 && after - left < kFarthest && IsMissing(left - 1))
        --left;
    std::size_t right = after;
    while (right < m_size && right - after < kFarthest && IsMissing(right))
        ++right;
    const bool hasLeft = left > 0 && !IsMissing(left - 1);
    const bool hasRight = right < m_size && !IsMissing(right);
    if (hasLeft && (!hasRight || x - X(left - 1) < X(right) - x))
        reading.nearest = left - 1;
    else if (hasRight)
        reading.nearest = right;
    return reading;
}

void Curve::AddColumn(std::vector<std::vector<CDPoint>>& lines, std::size_t first, std::size_t last,
                      double middle) const
{
    if (last - first <= kDense) {
        for (std::size_t i = first; i < last; ++i)
            if (IsMissing(i))
                Break(lines);
            else
                lines.back().push_back({X(i), Y(i)});
        return;
    }
    const Extremes extremes = Between(first, last);
    if (IsMissing(first))
        Break(lines);
    else
        lines.back().push_back({X(first), Y(first)});
    if (!extremes.IsEmpty()) {
        lines.back().push_back({middle, extremes.lowest});
        lines.back().push_back({middle, extremes.highest});
    }
    if (IsMissing(last - 1))
        Break(lines);
    else
        lines.back().push_back({X(last - 1), Y(last - 1)});
}

std::vector<std::vector<CDPoint>> Curve::Lines(double from, double to, std::size_t columns) const
{
    std::vector<std::vector<CDPoint>> lines(1);
    if (m_size == 0 || !(from < to) || columns == 0)
        return {};
    const std::size_t first = FirstFrom(from);
    std::size_t beyond = FirstFrom(to);
    while (beyond < m_size && X(beyond) == to)
        ++beyond;
    if (first > 0)
        AddColumn(lines, first - 1, first, from);
    std::size_t begin = first;
    if (beyond - first <= kDense * columns) {
        for (; begin < beyond; ++begin)
            AddColumn(lines, begin, begin + 1, X(begin));
    } else {
        const double width = (to - from) / static_cast<double>(columns);
        std::size_t before = 0; // samples of the column before: most often the next one has as many
        for (std::size_t column = 0; column < columns && begin < beyond; ++column) {
            const double left = from + width * static_cast<double>(column);
            const std::size_t end =
                column + 1 == columns ? beyond : std::clamp(FirstFrom(left + width, begin + before), begin, beyond);
            before = end - begin;
            if (end > begin)
                AddColumn(lines, begin, end, std::clamp(left + width / 2.0, X(begin), X(end - 1)));
            begin = end;
        }
    }
    if (beyond < m_size)
        AddColumn(lines, beyond, beyond + 1, to);
    if (lines.back().empty())
        lines.pop_back();
    return lines;
}

} // namespace chart
