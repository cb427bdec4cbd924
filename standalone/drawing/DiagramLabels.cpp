// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DiagramLabels.h"

#include "base/Utf.h"

namespace drawing
{
namespace
{

void RemoveLastLetter(std::string& utf8)
{
    while (!utf8.empty() && base::ContinuesCharacter(utf8.back()))
        utf8.pop_back();
    if (!utf8.empty())
        utf8.pop_back();
}

} // namespace

std::string ShortenedToFit(const CDC& dc, std::string text, double width)
{
    if (dc.TextWidth(text) <= width)
        return text;
    do {
        RemoveLastLetter(text);
    } while (!text.empty() && dc.TextWidth(text + "…") > width);
    return text.empty() ? text : text + "…";
}

void SpreadApart(std::vector<double>& positions, double distance)
{
    // Positions that push each other form a group about the mean of where they belong; groups that meet become one.
    struct Group {
        double sum; // of the first member's place as each member would have it
        int count;
        double First() const { return sum / count; }
    };
    std::vector<Group> groups;
    for (const double position : positions) {
        Group group{position, 1};
        while (!groups.empty() && groups.back().First() + groups.back().count * distance > group.First()) {
            const Group& before = groups.back();
            group.sum = before.sum + group.sum - group.count * before.count * distance;
            group.count += before.count;
            groups.pop_back();
        }
        groups.push_back(group);
    }
    auto position = positions.begin();
    for (const Group& group : groups)
        for (int i = 0; i < group.count; ++i)
            *position++ = group.First() + i * distance;
}

} // namespace drawing
