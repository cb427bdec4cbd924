// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CDC.h"

#include <string>
#include <variant>
#include <vector>

namespace test
{

/// What of one kind stands in a drawing, in its order.
template <class T> std::vector<T> All(const CDC& dc)
{
    std::vector<T> found;
    for (const auto& primitive : dc.Primitives())
        if (const auto* one = std::get_if<T>(&primitive))
            found.push_back(*one);
    return found;
}

inline std::vector<std::string> Words(const CDC& dc)
{
    std::vector<std::string> words;
    for (const auto& text : All<drawing::Text>(dc))
        words.push_back(text.utf8);
    return words;
}

} // namespace test
