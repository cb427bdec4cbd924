// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace base
{

/// A zip archive (APPNOTE 6.3) without times, so that the same content gives the same bytes.
/// Names are UTF-8. All together must stay below 4 GiB.
class ZipWriter
{
  public:
    /// Compressed where that makes it smaller.
    void Add(std::string name, std::string_view bytes);
    void AddUncompressed(std::string name, std::string_view bytes);
    /// The whole archive.
    std::string Finish();

  private:
    struct Entry {
        std::string name;
        std::uint32_t checksum;
        std::uint16_t method;
        std::uint32_t packed;
        std::uint32_t size;
        std::uint32_t offset;
    };
    void Append(Entry entry, std::string_view packed);
    void AppendCommon(std::string& out, const Entry& entry) const;

    std::string m_bytes;
    std::vector<Entry> m_entries;
};

} // namespace base
