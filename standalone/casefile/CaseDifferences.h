// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What differs between two versions of a case file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace casefile
{

struct CaseDifference {
    std::string pointer; ///< JSON pointer (RFC 6901) to the value
    std::string before;  ///< JSON, empty where there is none
    std::string after;
};

/// In the order of `before`, then what only `after` has. Texts that are no JSON differ as a whole.
std::vector<CaseDifference> CaseDifferences(std::string_view before, std::string_view after);

} // namespace casefile
