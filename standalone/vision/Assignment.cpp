// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The Hungarian method: rows are added one by one along a cheapest augmenting path.
#include "vision/Assignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vision
{

std::vector<std::optional<std::size_t>> Assign(const std::vector<std::vector<std::optional<double>>>& costs)
{
    const std::size_t rows = costs.size();
    if (rows == 0)
        return {};
    const std::size_t columns = costs.front().size();
    // Each row also has a column of its own that means none. It costs more than all pairs of a solution together, and
    // what cannot belong together costs more than that.
    double largest = 1.0;
    for (const auto& row : costs)
        for (const auto& cost : row)
            largest = std::max(largest, cost.value_or(0.0));
    const double alone = largest * static_cast<double>(rows + 1) * 2.0;
    const double never = alone * static_cast<double>(rows + 1) * 2.0;
    const std::size_t width = columns + rows;
    const auto cost = [&](std::size_t row, std::size_t column) {
        if (column >= columns)
            return column - columns == row ? alone : never;
        return costs[row][column].value_or(never);
    };

    // Row and column 0 stand for "not yet"; real ones count from 1.
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    std::vector<double> rowPotential(rows + 1, 0.0);
    std::vector<double> columnPotential(width + 1, 0.0);
    std::vector<std::size_t> rowOf(width + 1, 0);
    std::vector<std::size_t> cameFrom(width + 1, 0);
    for (std::size_t row = 1; row <= rows; ++row) {
        rowOf[0] = row;
        std::size_t column = 0;
        std::vector<double> reach(width + 1, kInfinite);
        std::vector<bool> used(width + 1, false);
        do {
            used[column] = true;
            const std::size_t here = rowOf[column];
            double least = kInfinite;
            std::size_t next = 0;
            for (std::size_t j = 1; j <= width; ++j) {
                if (used[j])
                    continue;
                const double reduced = cost(here - 1, j - 1) - rowPotential[here] - columnPotential[j];
                if (reduced < reach[j]) {
                    reach[j] = reduced;
                    cameFrom[j] = column;
                }
                if (reach[j] < least) {
                    least = reach[j];
                    next = j;
                }
            }
            for (std::size_t j = 0; j <= width; ++j)
                if (used[j]) {
                    rowPotential[rowOf[j]] += least;
                    columnPotential[j] -= least;
                } else {
                    reach[j] -= least;
                }
            column = next;
        } while (rowOf[column] != 0);
        for (; column != 0; column = cameFrom[column])
            rowOf[column] = rowOf[cameFrom[column]];
    }
    std::vector<std::optional<std::size_t>> result(rows);
    for (std::size_t column = 1; column <= columns; ++column)
        if (rowOf[column] != 0 && costs[rowOf[column] - 1][column - 1])
            result[rowOf[column] - 1] = column - 1;
    return result;
}

} // namespace vision
