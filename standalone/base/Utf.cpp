// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Utf.h"

#include <utf8cpp/utf8.h>

#include <iterator>

namespace base
{
namespace
{

constexpr char32_t kReplacement = 0xFFFD;

bool IsIn(char16_t unit, char16_t first, char16_t last)
{
    return unit >= first && unit <= last;
}

} // namespace

bool IsUtf8(std::string_view text)
{
    return utf8::is_valid(text.begin(), text.end());
}

std::string ValidUtf8(std::string_view text)
{
    std::string valid;
    valid.reserve(text.size());
    for (;;) {
        const auto good = static_cast<std::size_t>(utf8::find_invalid(text.begin(), text.end()) - text.begin());
        valid += text.substr(0, good);
        if (good == text.size())
            return valid;
        AppendUtf8(valid, kReplacement);
        text.remove_prefix(good + 1);
    }
}

std::u32string Codepoints(std::string_view text)
{
    const std::string valid = ValidUtf8(text);
    std::u32string codepoints;
    codepoints.reserve(valid.size());
    utf8::unchecked::utf8to32(valid.begin(), valid.end(), std::back_inserter(codepoints));
    return codepoints;
}

void AppendUtf8(std::string& out, char32_t codepoint)
{
    utf8::unchecked::append(codepoint, std::back_inserter(out));
}

std::string Utf8FromUtf16(std::span<const char16_t> units)
{
    std::string out;
    out.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t code = units[i];
        const bool pair = IsIn(units[i], 0xD800, 0xDBFF) && i + 1 < units.size() && IsIn(units[i + 1], 0xDC00, 0xDFFF);
        if (pair)
            code = 0x10000U + ((code - 0xD800U) << 10U) + (units[++i] - 0xDC00U);
        else if (IsIn(units[i], 0xD800, 0xDFFF))
            code = kReplacement;
        AppendUtf8(out, code);
    }
    return out;
}

std::u16string Utf16Of(char32_t codepoint)
{
    std::string text;
    AppendUtf8(text, codepoint);
    std::u16string units;
    utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(units));
    return units;
}

#ifdef _WIN32

std::string Utf8FromWide(std::wstring_view wide)
{
    return Utf8FromUtf16(std::u16string(wide.begin(), wide.end()));
}

std::optional<std::wstring> WideFromUtf8(std::string_view text)
{
    if (!IsUtf8(text))
        return std::nullopt;
    std::wstring wide;
    utf8::unchecked::utf8to16(text.begin(), text.end(), std::back_inserter(wide));
    return wide;
}

#endif

} // namespace base
