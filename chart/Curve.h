// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The samples of one curve. Finds the extremes of any stretch without looking at each sample, so that ten million of
// them are drawn as fast as a thousand.
#pragma once

#include "host/CDPoint.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace chart
{

using Values = std::shared_ptr<const std::vector<double>>;

/// A larger or smaller number, and not-a-number, is a missing sample: it leaves a gap.
inline constexpr double kLargest = 1e100;

struct Extremes {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();

    bool IsEmpty() const { return lowest > highest; }
    void Take(double value)
    {
        if (value < lowest)
            lowest = value;
        if (value > highest)
            highest = value;
    }
    void Take(const Extremes& other)
    {
        if (other.IsEmpty())
            return;
        Take(other.lowest);
        Take(other.highest);
    }
    friend bool operator==(const Extremes&, const Extremes&) = default;
};

/// What a curve is at one place.
struct Reading {
    /// On the straight line between the samples on both sides; nothing outside the curve and in a gap.
    std::optional<double> interpolated{};
    /// The sample nearest in x that is not missing, and its index.
    std::optional<std::size_t> nearest{};
};

class Curve
{
  public:
    Curve() = default;
    /// Every `stride`-th of the samples, the first included. `x` must be as long as `y` and finite, and must not
    /// decrease.
    Curve(Values x, Values y, std::size_t stride = 1);

    std::size_t Size() const { return m_size; }
    double X(std::size_t index) const { return (*m_x)[index * m_stride]; }
    /// Not-a-number for a missing sample.
    double Y(std::size_t index) const;
    bool IsMissing(std::size_t index) const;

    /// The first sample with X >= x, Size() when there is none. Faster the nearer it is to the guess.
    std::size_t FirstFrom(double x, std::size_t guess = 0) const;
    /// Of the samples first..last-1 that are not missing.
    Extremes Between(std::size_t first, std::size_t last) const;
    Reading At(double x) const;

    /// The curve from `from` to `to` as lines with `columns` columns of pixels between: a column with more samples than
    /// can be seen keeps its first, lowest, highest and last one. One sample on either side of the view belongs to it.
    std::vector<std::vector<CDPoint>> Lines(double from, double to, std::size_t columns) const;

  private:
    void AddColumn(std::vector<std::vector<CDPoint>>& lines, std::size_t first, std::size_t last, double middle) const;

    Values m_x;
    Values m_y;
    std::size_t m_stride = 1;
    std::size_t m_size = 0;
    std::vector<std::vector<Extremes>> m_levels; ///< of 16 samples each, then of 16 of the level before
};

/// What is wrong with samples that a curve could not be made of.
enum class Samples { fine, lengthsDiffer, timeNotFinite, timeRunsBack };
Samples CheckSamples(const std::vector<double>& x, const std::vector<double>& y);

} // namespace chart
