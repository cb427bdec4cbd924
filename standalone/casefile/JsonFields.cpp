// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/JsonFields.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>

namespace casefile
{

base::JsonValue ColorToJson(COLORREF color)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const unsigned shift : {4U, 0U, 12U, 8U, 20U, 16U}) // a COLORREF is 0x00bbggrr
        text += kDigits[color >> shift & 0xFU];
    return text;
}

std::optional<COLORREF> ColorFromJson(const base::JsonValue& value)
{
    const auto* text = value.As<std::string>();
    if (!text || text->size() != 7 || text->front() != '#')
        return std::nullopt;
    unsigned rgb = 0;
    const auto parsed = std::from_chars(text->data() + 1, text->data() + text->size(), rgb, 16);
    if (parsed.ec != std::errc() || parsed.ptr != text->data() + text->size())
        return std::nullopt;
    return RGB(rgb >> 16U, rgb >> 8U & 0xFFU, rgb & 0xFFU);
}

base::JsonValue::Object OtherMembers(const base::JsonValue::Object& object, std::span<const std::string_view> known)
{
    base::JsonValue::Object others;
    std::copy_if(object.begin(), object.end(), std::back_inserter(others),
                 [known](const base::JsonValue::Member& member) {
                     return std::find(known.begin(), known.end(), member.name) == known.end();
                 });
    return others;
}

void Append(base::JsonValue::Object& object, const base::JsonValue::Object& more)
{
    object.insert(object.end(), more.begin(), more.end());
}

} // namespace casefile
