// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Small systems of linear equations.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace vision
{

template <std::size_t N> using Vector = std::array<double, N>;
template <std::size_t N> using Matrix = std::array<std::array<double, N>, N>;

/// The solution of a·x = b by elimination with row pivoting; nothing for a singular matrix.
template <std::size_t N> std::optional<Vector<N>> Solve(Matrix<N> a, Vector<N> b)
{
    for (std::size_t column = 0; column < N; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < N; ++row)
            if (std::fabs(a[row][column]) > std::fabs(a[pivot][column]))
                pivot = row;
        if (!(std::fabs(a[pivot][column]) > 0.0))
            return std::nullopt;
        std::swap(a[pivot], a[column]);
        std::swap(b[pivot], b[column]);
        for (std::size_t row = column + 1; row < N; ++row) {
            const double factor = a[row][column] / a[column][column];
            for (std::size_t k = column; k < N; ++k)
                a[row][k] -= factor * a[column][k];
            b[row] -= factor * b[column];
        }
    }
    for (std::size_t column = N; column-- > 0;) {
        for (std::size_t k = column + 1; k < N; ++k)
            b[column] -= a[column][k] * b[k];
        b[column] /= a[column][column];
        if (!std::isfinite(b[column]))
            return std::nullopt;
    }
    return b;
}

} // namespace vision
