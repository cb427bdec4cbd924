// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace cli
{
namespace
{

/// Length of the well-formed UTF-8 character at the front of `text`, 0 when it is malformed.
std::size_t CharacterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    std::size_t length = 0;
    unsigned lowest = 0x80; // of the second byte: no overlong forms, no surrogates, nothing above U+10FFFF
    unsigned highest = 0xBF;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        lowest = lead == 0xE0 ? 0xA0 : lowest;
        highest = lead == 0xED ? 0x9F : highest;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        lowest = lead == 0xF0 ? 0x90 : lowest;
        highest = lead == 0xF4 ? 0x8F : highest;
    }
    if (length == 0 || text.size() < length || byte(1) < lowest || byte(1) > highest)
        return 0;
    for (std::size_t i = 2; i < length; ++i)
        if (byte(i) < 0x80 || byte(i) > 0xBF)
            return 0;
    return length;
}

bool IsPlain(char c)
{
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
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
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
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
    Separate();
    m_text += '"';
    for (std::size_t i = 0; i < utf8.size();) {
        std::size_t plain = i;
        while (plain < utf8.size() && IsPlain(utf8[plain]))
            ++plain;
        m_text += utf8.substr(i, plain - i);
        i = plain;
        if (i == utf8.size())
            break;
        const std::size_t length = CharacterLength(utf8.substr(i));
        if (length == 1)
            AppendEscaped(m_text, utf8[i]);
        else if (length == 0)
            m_text += "\xEF\xBF\xBD";
        else
            m_text += utf8.substr(i, length);
        i += length == 0 ? 1 : length;
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
