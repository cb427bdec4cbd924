// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/ZipWriter.h"

#include "base/Deflate.h"
#include "host/Assert.h"

#include <limits>
#include <utility>

namespace base
{
namespace
{

constexpr std::uint16_t kVersionNeeded = 20;
constexpr std::uint16_t kUtf8Names = 0x0800;
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kNoTime = 0;
constexpr std::uint16_t kFirstDay = 0x21; // 1 January 1980, the earliest that can be written

void Append16(std::string& out, std::uint16_t value)
{
    out += static_cast<char>(value & 0xFFU);
    out += static_cast<char>(value >> 8U & 0xFFU);
}

void Append32(std::string& out, std::uint32_t value)
{
    Append16(out, static_cast<std::uint16_t>(value & 0xFFFFU));
    Append16(out, static_cast<std::uint16_t>(value >> 16U));
}

std::uint32_t Size32(std::size_t size)
{
    RUV_ASSERT(size <= std::numeric_limits<std::uint32_t>::max());
    return static_cast<std::uint32_t>(size);
}

} // namespace

/// What the local header and the central directory have in common.
void ZipWriter::AppendCommon(std::string& out, const Entry& entry) const
{
    Append16(out, kVersionNeeded);
    Append16(out, kUtf8Names);
    Append16(out, entry.method);
    Append16(out, kNoTime);
    Append16(out, kFirstDay);
    Append32(out, entry.checksum);
    Append32(out, entry.packed);
    Append32(out, entry.size);
    Append16(out, static_cast<std::uint16_t>(entry.name.size()));
    Append16(out, 0); // extra field
}

void ZipWriter::Append(Entry entry, std::string_view packed)
{
    RUV_ASSERT(entry.name.size() <= std::numeric_limits<std::uint16_t>::max());
    Append32(m_bytes, 0x04034B50U);
    AppendCommon(m_bytes, entry);
    m_bytes += entry.name;
    m_bytes += packed;
    m_entries.push_back(std::move(entry));
}

void ZipWriter::Add(std::string name, std::string_view bytes)
{
    const std::string packed = Deflated(bytes, DeflateFormat::raw);
    if (packed.size() >= bytes.size())
        return AddUncompressed(std::move(name), bytes);
    Append(
        {std::move(name), Crc32(bytes), kDeflated, Size32(packed.size()), Size32(bytes.size()), Size32(m_bytes.size())},
        packed);
}

void ZipWriter::AddUncompressed(std::string name, std::string_view bytes)
{
    const std::uint32_t size = Size32(bytes.size());
    Append({std::move(name), Crc32(bytes), kStored, size, size, Size32(m_bytes.size())}, bytes);
}

std::string ZipWriter::Finish()
{
    const std::uint32_t directory = Size32(m_bytes.size());
    for (const Entry& entry : m_entries) {
        Append32(m_bytes, 0x02014B50U);
        Append16(m_bytes, kVersionNeeded); // made by
        AppendCommon(m_bytes, entry);
        Append16(m_bytes, 0); // comment
        Append16(m_bytes, 0); // disk
        Append16(m_bytes, 0); // internal attributes
        Append32(m_bytes, 0); // external attributes
        Append32(m_bytes, entry.offset);
        m_bytes += entry.name;
    }
    const std::uint32_t directorySize = Size32(m_bytes.size()) - directory;
    const auto count = static_cast<std::uint16_t>(m_entries.size());
    Append32(m_bytes, 0x06054B50U);
    Append16(m_bytes, 0);
    Append16(m_bytes, 0);
    Append16(m_bytes, count);
    Append16(m_bytes, count);
    Append32(m_bytes, directorySize);
    Append32(m_bytes, directory);
    Append16(m_bytes, 0);
    m_entries.clear();
    return std::move(m_bytes);
}

} // namespace base
