// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Who belongs to whom, at the least total cost.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace vision
{

/// costs[row][column], nothing where the two cannot belong together. Gives each row its column, or none: as many pairs
/// as can be, and of those ways the one whose costs are least together. H. W. Kuhn 1955, in the form with potentials.
std::vector<std::optional<std::size_t>> Assign(const std::vector<std::vector<std::optional<double>>>& costs);

} // namespace vision
