// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/JsonText.h"

#include "base/NumberText.h"
#include "base/Utf.h"

#include <algorithm>
#include <cmath>

namespace cli
{
namespace
{

/// Characters beyond ASCII stand for themselves.
bool IsPlain(char c)
{
    return (static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\' && c != 0x7F);
}

void AppendEscaped(std::string& out, char c)
{
    constexpr std::string_view hex = "0123456789abcdef";
    switch (c) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\u00";
        out += hex[static_cast<unsigned char>(c) >> 4U];
        out += hex[static_cast<unsigned char>(c) & 0xFU];
    }
}

} // namespace

std::string NumberText(double value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0.0 ? "inf" : "-inf";
    if (value == 0.0)
        return std::signbit(value) ? "-0.0" : "0"; // readers take "-0" for an integer and lose the sign
    return base::ShortestDigits(value);
}

void JsonText::Separate()
{
    if (m_comma)
        m_text += ',';
    m_comma = true;
}

JsonText& JsonText::Open(char bracket)
{
    Separate();
    m_text += bracket;
    m_comma = false;
    return *this;
}

JsonText& JsonText::Close(char bracket)
{
    m_text += bracket;
    m_comma = true;
    return *this;
}

JsonText& JsonText::Key(std::string_view name)
{
    Text(name);
    m_text += ':';
    m_comma = false;
    return *this;
}

JsonText& JsonText::Text(std::string_view utf8)
{
    if (!base::IsUtf8(utf8))
        return Text(base::ValidUtf8(utf8));
    Separate();
    m_text += '"';
    while (!utf8.empty()) {
        const auto plain = static_cast<std::size_t>(std::find_if_not(utf8.begin(), utf8.end(), IsPlain) - utf8.begin());
        m_text += utf8.substr(0, plain);
        utf8.remove_prefix(plain);
        if (!utf8.empty()) {
            AppendEscaped(m_text, utf8.front());
            utf8.remove_prefix(1);
        }
    }
    m_text += '"';
    return *this;
}

JsonText& JsonText::Number(double value)
{
    return std::isfinite(value) ? Raw(NumberText(value)) : Text(NumberText(value));
}

JsonText& JsonText::Integer(std::int64_t value)
{
    return Raw(std::to_string(value));
}

JsonText& JsonText::Raw(std::string_view json)
{
    Separate();
    m_text += json;
    return *this;
}

} // namespace cli
