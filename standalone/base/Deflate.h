// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Compression and checksum of zip, PNG and PDF; the only place that includes zlib.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace base
{

enum class DeflateFormat {
    zlib, ///< with header and checksum (RFC 1950): PNG and PDF
    raw,  ///< the blocks alone (RFC 1951): zip
};
/// The same bytes give the same result.
std::string Deflated(std::string_view bytes, DeflateFormat format);

/// Checksum of zip and PNG (CRC-32 with the polynomial 0xEDB88320): finds damage, not intent.
std::uint32_t Crc32(std::string_view bytes);

} // namespace base
