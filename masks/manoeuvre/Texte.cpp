// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/Texte.h"

#include "host/RuvCfg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

std::string Dezimal(double value, int decimals)
{
    std::array<char, 400> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
    std::string text(buffer.data(), end.ptr);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-')
        text.erase(0, 1);
    if (!RuvCfg.decimalPoint)
        std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

std::string Eingesetzt(const std::string& text, std::initializer_list<std::string> args)
{
    std::string result;
    // One pass, so that braces inside an argument stay what they are.
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool slot = i + 2 < text.size() && text[i] == '{' && text[i + 2] == '}';
        const auto index = slot ? static_cast<std::size_t>(text[i + 1] - '0') : args.size();
        if (index < args.size()) {
            result += args.begin()[index];
            i += 2;
        } else {
            result.push_back(text[i]);
        }
    }
    return result;
}
