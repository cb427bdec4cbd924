// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Deflate.h"

#include "host/Assert.h"

#include <zlib.h>

#include <limits>

namespace base
{

std::string Deflated(std::string_view bytes, DeflateFormat format)
{
    constexpr int kMemoryLevel = 8; // zlib's default
    RUV_ASSERT(bytes.size() <= std::numeric_limits<uInt>::max() / 2);
    z_stream stream{};
    const int window = format == DeflateFormat::raw ? -MAX_WBITS : MAX_WBITS;
    RUV_ASSERT(deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, window, kMemoryLevel, Z_DEFAULT_STRATEGY) ==
               Z_OK);
    std::string out(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data())); // zlib does not write there
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    RUV_ASSERT(deflate(&stream, Z_FINISH) == Z_STREAM_END);
    out.resize(out.size() - stream.avail_out);
    deflateEnd(&stream);
    return out;
}

std::uint32_t Crc32(std::string_view bytes)
{
    return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

} // namespace base
