// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace base
{

/// Checksum of zip and PNG (CRC-32 with the polynomial 0xEDB88320): finds damage, not intent.
std::uint32_t Crc32(std::string_view bytes);

} // namespace base
