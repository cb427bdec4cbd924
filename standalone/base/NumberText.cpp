// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/NumberText.h"

#include "host/RuvCfg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace base
{
namespace
{

// Beyond this a fixed notation only shows digits that are noise.
constexpr double kLargestFixed = 1e15;

std::string WithUsersSign(std::string text)
{
    if (!RuvCfg.decimalPoint)
        std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

/// Blanks as texts of other programs have them around a number: also line ends, no-break and thin blanks, and the
/// byte-order mark.
constexpr std::array<std::string_view, 9> kBlanks{" ",      "\t",     "\r",     "\n",    "\u00A0",
                                                  "\u2007", "\u2009", "\u202F", "\uFEFF"};
constexpr std::string_view kMinusSign = "\u2212";

bool IsPlainCharacter(char c)
{
    return c > ' ' && c < '\x7F';
}

std::string_view Trimmed(std::string_view text)
{
    if (!text.empty() && IsPlainCharacter(text.front()) && IsPlainCharacter(text.back()))
        return text;
    const auto cut = [&](auto stands, auto remove) {
        const auto blank = std::find_if(kBlanks.begin(), kBlanks.end(), [&](auto b) { return (text.*stands)(b); });
        if (blank != kBlanks.end())
            (text.*remove)(blank->size());
        return blank != kBlanks.end();
    };
    using View = std::string_view;
    constexpr bool (View::*kStarts)(View) const noexcept = &View::starts_with;
    constexpr bool (View::*kEnds)(View) const noexcept = &View::ends_with;
    while (cut(kStarts, &View::remove_prefix))
        ;
    while (cut(kEnds, &View::remove_suffix))
        ;
    return text;
}

/// The number as std::from_chars reads it: without the blanks around it, with a plain minus sign.
std::string Plain(std::string_view text)
{
    std::string plain(Trimmed(text));
    if (plain.starts_with(kMinusSign))
        plain.replace(0, kMinusSign.size(), "-");
    return plain;
}

/// std::from_chars knows no leading plus sign.
std::string_view WithoutPlus(std::string_view text)
{
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

} // namespace

std::string FormatNumber(double value, int decimals)
{
    if (std::isnan(value))
        return "—";
    if (std::isinf(value))
        return value > 0 ? "∞" : "-∞";
    if (value == 0.0 && decimals >= 0) { // most fields of a mask that opens
        std::string zero(decimals == 0 ? 1 : static_cast<std::size_t>(decimals) + 2, '0');
        if (decimals > 0)
            zero[1] = RuvCfg.decimalPoint ? '.' : ',';
        return zero;
    }
    std::array<char, 64> buffer{};
    const bool fixed = std::abs(value) < kLargestFixed;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   fixed ? std::chars_format::fixed : std::chars_format::scientific, decimals)
                         .ptr;
    std::string text(buffer.data(), end);
    if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos)
        text.erase(0, 1);
    return WithUsersSign(std::move(text));
}

std::string FormatNumber(double value)
{
    if (!std::isfinite(value))
        return FormatNumber(value, 0);
    return WithUsersSign(ShortestDigits(value));
}

std::string ShortestDigits(double value)
{
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

std::optional<double> ParseNumber(std::string_view text)
{
    const std::string plain = Plain(text);
    std::string point(WithoutPlus(plain));
    std::replace(point.begin(), point.end(), ',', '.');
    double value = 0.0;
    const auto [end, error] = std::from_chars(point.data(), point.data() + point.size(), value);
    if (error == std::errc::result_out_of_range || end != point.data() + point.size() || !std::isfinite(value))
        return std::nullopt;
    return error == std::errc{} ? std::optional(value + 0.0) : std::nullopt; // + 0.0: no negative zero
}

std::optional<std::int64_t> ParseInteger(std::string_view text)
{
    const std::string plain = Plain(text);
    text = WithoutPlus(plain);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace base
