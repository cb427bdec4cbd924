// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Texts are UTF-8. Bytes that are none are shown as U+FFFD, one for each.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace base
{

bool IsUtf8(std::string_view text);
/// The text with U+FFFD in place of each byte that belongs to no character.
std::string ValidUtf8(std::string_view text);
/// The characters of ValidUtf8.
std::u32string Codepoints(std::string_view text);
/// Whether the byte belongs to the character that began before it.
constexpr bool ContinuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

void AppendUtf8(std::string& out, char32_t codepoint);
/// UTF-16 code units to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf8FromUtf16(std::span<const char16_t> units);
/// One or two code units.
std::u16string Utf16Of(char32_t codepoint);

#ifdef _WIN32
std::string Utf8FromWide(std::wstring_view wide);
/// Nothing for bytes that are no UTF-8.
std::optional<std::wstring> WideFromUtf8(std::string_view text);
#endif

} // namespace base
