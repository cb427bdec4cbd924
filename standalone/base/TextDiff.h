// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The difference of two texts, to turn each into the other. It takes room in proportion to what differs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace base
{

class TextDiff
{
  public:
    /// Compares by lines, then trims each changed stretch to the bytes that differ. Texts that differ in very many
    /// places are taken as changed from the first of them to the last.
    TextDiff(std::string_view before, std::string_view after);

    bool IsEmpty() const { return m_changes.empty(); }
    /// `before` of the constructor to `after`; any other text is a broken invariant.
    std::string Forward(std::string_view before) const;
    /// `after` of the constructor to `before`.
    std::string Backward(std::string_view after) const;
    /// Bytes on the heap.
    std::size_t Size() const;

  private:
    struct Change {
        std::size_t skip; ///< unchanged bytes since the previous change
        std::string before;
        std::string after;
    };
    static std::string Apply(std::string_view text, const std::vector<Change>& changes, std::string Change::*from,
                             std::string Change::*to);

    std::vector<Change> m_changes;
};

} // namespace base
