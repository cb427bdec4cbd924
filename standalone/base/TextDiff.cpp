// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The shortest edit of lines is found by E. W. Myers, "An O(ND) Difference Algorithm and Its Variations", 1986.
#include "base/TextDiff.h"

#include "host/Assert.h"

#include <algorithm>
#include <utility>

namespace base
{
namespace
{

/// Removed and added lines up to which the shortest edit is looked for; its cost grows with their square.
constexpr int kMostEdits = 128;

using Lines = std::vector<std::string_view>;

/// With their line breaks.
Lines SplitLines(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

/// A stretch of unlike lines: [before, beforeEnd) became [after, afterEnd).
struct Stretch {
    std::size_t before, beforeEnd;
    std::size_t after, afterEnd;
};

/// Reads the way back from the end through the furthest points that each number of edits reaches.
std::vector<Stretch> ReadBack(const std::vector<std::vector<int>>& reached, int x, int y)
{
    std::vector<Stretch> stretches;
    const auto add = [&](int fromX, int fromY, int toX, int toY) {
        const Stretch step{static_cast<std::size_t>(fromX), static_cast<std::size_t>(toX),
                           static_cast<std::size_t>(fromY), static_cast<std::size_t>(toY)};
        if (!stretches.empty() && stretches.back().before == step.beforeEnd &&
            stretches.back().after == step.afterEnd) {
            stretches.back().before = step.before;
            stretches.back().after = step.after;
        } else {
            stretches.push_back(step);
        }
    };
    for (int d = static_cast<int>(reached.size()) - 1; d > 0; --d) {
        const std::vector<int>& earlier = reached[static_cast<std::size_t>(d) - 1];
        const auto at = [&](int k) { return earlier[static_cast<std::size_t>(k + kMostEdits + 1)]; };
        const int k = x - y;
        const bool down = k == -d || (k != d && at(k - 1) < at(k + 1));
        const int previous = down ? k + 1 : k - 1;
        const int fromX = at(previous);
        const int fromY = fromX - previous;
        add(fromX, fromY, down ? fromX : fromX + 1, down ? fromY + 1 : fromY);
        x = fromX;
        y = fromY;
    }
    std::reverse(stretches.begin(), stretches.end());
    return stretches;
}

/// The unlike stretches of two lists of lines.
std::vector<Stretch> Compare(const Lines& a, const Lines& b)
{
    const int n = static_cast<int>(a.size());
    const int m = static_cast<int>(b.size());
    std::vector<std::vector<int>> reached;
    std::vector<int> furthest(2 * kMostEdits + 3, 0);
    for (int d = 0; d <= kMostEdits; ++d) {
        for (int k = -d; k <= d; k += 2) {
            const auto at = [&](int diagonal) -> int& {
                return furthest[static_cast<std::size_t>(diagonal + kMostEdits + 1)];
            };
            int x = k == -d || (k != d && at(k - 1) < at(k + 1)) ? at(k + 1) : at(k - 1) + 1;
            while (x < n && x - k < m && a[static_cast<std::size_t>(x)] == b[static_cast<std::size_t>(x - k)])
                ++x;
            at(k) = x;
            if (x >= n && x - k >= m) {
                reached.push_back(furthest);
                return ReadBack(reached, n, m);
            }
        }
        reached.push_back(furthest);
    }
    return {{0, a.size(), 0, b.size()}};
}

std::size_t CommonPrefix(std::string_view a, std::string_view b)
{
    const auto end =
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size())), b.begin());
    return static_cast<std::size_t>(end.first - a.begin());
}

std::size_t CommonSuffix(std::string_view a, std::string_view b)
{
    const std::size_t most = std::min(a.size(), b.size());
    std::size_t count = 0;
    while (count < most && a[a.size() - 1 - count] == b[b.size() - 1 - count])
        ++count;
    return count;
}

std::string_view Joined(const Lines& lines, std::size_t begin, std::size_t end)
{
    if (begin == end)
        return {};
    const std::string_view last = lines[end - 1];
    return {lines[begin].data(), static_cast<std::size_t>(last.data() + last.size() - lines[begin].data())};
}

} // namespace

TextDiff::TextDiff(std::string_view before, std::string_view after)
{
    const Lines a = SplitLines(before);
    const Lines b = SplitLines(after);
    std::size_t position = 0; // in the lines of `before`
    std::size_t skip = 0;
    for (const Stretch& stretch : Compare(a, b)) {
        skip += Joined(a, position, stretch.before).size();
        position = stretch.beforeEnd;
        std::string_view from = Joined(a, stretch.before, stretch.beforeEnd);
        std::string_view to = Joined(b, stretch.after, stretch.afterEnd);
        const std::size_t prefix = CommonPrefix(from, to);
        skip += prefix;
        from.remove_prefix(prefix);
        to.remove_prefix(prefix);
        const std::size_t suffix = CommonSuffix(from, to);
        from.remove_suffix(suffix);
        to.remove_suffix(suffix);
        if (from.empty() && to.empty()) {
            skip += suffix;
            continue;
        }
        m_changes.push_back({skip, std::string(from), std::string(to)});
        skip = suffix;
    }
    m_changes.shrink_to_fit();
}

std::string TextDiff::Apply(std::string_view text, const std::vector<Change>& changes, std::string Change::*from,
                            std::string Change::*to)
{
    std::string result;
    std::size_t position = 0;
    for (const Change& change : changes) {
        RUV_ASSERT(text.size() - position >= change.skip);
        result += text.substr(position, change.skip);
        position += change.skip;
        RUV_ASSERT(text.substr(position, (change.*from).size()) == change.*from);
        result += change.*to;
        position += (change.*from).size();
    }
    return result.append(text.substr(position));
}

std::string TextDiff::Forward(std::string_view before) const
{
    return Apply(before, m_changes, &Change::before, &Change::after);
}

std::string TextDiff::Backward(std::string_view after) const
{
    return Apply(after, m_changes, &Change::after, &Change::before);
}

std::size_t TextDiff::Size() const
{
    std::size_t size = m_changes.capacity() * sizeof(Change);
    for (const Change& change : m_changes)
        size += change.before.capacity() + change.after.capacity();
    return size;
}

} // namespace base
