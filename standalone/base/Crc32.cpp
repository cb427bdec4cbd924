// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Crc32.h"

#include <array>

namespace base
{
namespace
{

constexpr std::array<std::uint32_t, 256> MakeTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t remainder = i;
        for (int bit = 0; bit < 8; ++bit)
            remainder = remainder >> 1U ^ (0xEDB88320U & (0U - (remainder & 1U)));
        table[i] = remainder;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

} // namespace

std::uint32_t Crc32(std::string_view bytes)
{
    std::uint32_t remainder = 0xFFFFFFFFU;
    for (const char byte : bytes)
        remainder = remainder >> 8U ^ kTable[(remainder ^ static_cast<unsigned char>(byte)) & 0xFFU];
    return ~remainder;
}

} // namespace base
