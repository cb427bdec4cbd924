// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/FontSubset.h"

#include "host/Assert.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string_view>

namespace drawing
{
namespace
{
using Bytes = std::span<const unsigned char>;

// Flags of a part of a composite glyph.
constexpr unsigned kWordArguments = 0x0001;
constexpr unsigned kOneScale = 0x0008;
constexpr unsigned kMoreParts = 0x0020;
constexpr unsigned kTwoScales = 0x0040;
constexpr unsigned kMatrix = 0x0080;

unsigned Get16(Bytes bytes, std::size_t at)
{
    RUV_ASSERT(at + 2 <= bytes.size());
    return static_cast<unsigned>(bytes[at]) << 8U | bytes[at + 1];
}

std::uint32_t Get32(Bytes bytes, std::size_t at)
{
    return Get16(bytes, at) << 16U | Get16(bytes, at + 2);
}

void Put16(std::string& out, unsigned value)
{
    out.push_back(static_cast<char>(value >> 8U & 0xFFU));
    out.push_back(static_cast<char>(value & 0xFFU));
}

void Put32(std::string& out, std::uint32_t value)
{
    Put16(out, value >> 16U);
    Put16(out, value & 0xFFFFU);
}

void Set16(std::string& out, std::size_t at, unsigned value)
{
    std::string bytes;
    Put16(bytes, value);
    out.replace(at, bytes.size(), bytes);
}

void Set32(std::string& out, std::size_t at, std::uint32_t value)
{
    std::string bytes;
    Put32(bytes, value);
    out.replace(at, bytes.size(), bytes);
}

void PadTo4(std::string& out)
{
    out.append((4 - out.size() % 4) % 4, '\0');
}

/// Sum of the 32-bit words, the file format's checksum; the size is a multiple of 4.
std::uint32_t Checksum(std::string_view data)
{
    const Bytes bytes(reinterpret_cast<const unsigned char*>(data.data()), data.size());
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < bytes.size(); at += 4)
        sum += Get32(bytes, at);
    return sum;
}

/// A table that every TrueType font has.
Bytes Table(Bytes font, std::string_view tag)
{
    const std::size_t end = 12 + 16 * Get16(font, 4);
    std::size_t entry = 12;
    while (!std::equal(tag.begin(), tag.end(), font.begin() + static_cast<std::ptrdiff_t>(entry))) {
        entry += 16;
        RUV_ASSERT(entry < end);
    }
    return font.subspan(Get32(font, entry + 8), Get32(font, entry + 12));
}

std::string Copy(Bytes bytes)
{
    return {bytes.begin(), bytes.end()};
}

class Subset
{
  public:
    Subset(Bytes font, std::vector<int> glyphs) : m_font(font), m_glyphs(std::move(glyphs)) {}

    std::string File()
    {
        const bool longOffsets = Get16(Table(m_font, "head"), 50) != 0;
        const Bytes loca = Table(m_font, "loca");
        const Bytes outlines = Table(m_font, "glyf");
        const auto offset = [&](std::size_t glyph) -> std::size_t {
            return longOffsets ? Get32(loca, 4 * glyph) : 2U * Get16(loca, 2 * glyph);
        };
        Put32(m_tables["loca"], 0);
        for (std::size_t i = 0; i < m_glyphs.size(); ++i) { // grows on the way
            const auto glyph = static_cast<std::size_t>(m_glyphs[i]);
            m_tables["glyf"] += Renumbered(outlines.subspan(offset(glyph), offset(glyph + 1) - offset(glyph)));
            PadTo4(m_tables["glyf"]);
            Put32(m_tables["loca"], static_cast<std::uint32_t>(m_tables["glyf"].size()));
            AddMetrics(glyph);
        }
        const auto count = static_cast<unsigned>(m_glyphs.size());
        m_tables["head"] = Copy(Table(m_font, "head"));
        Set32(m_tables["head"], 8, 0);  // checksum of the file, see below
        Set16(m_tables["head"], 50, 1); // long offsets
        m_tables["hhea"] = Copy(Table(m_font, "hhea"));
        Set16(m_tables["hhea"], 34, count);
        m_tables["maxp"] = Copy(Table(m_font, "maxp"));
        Set16(m_tables["maxp"], 4, count);
        for (const char* hinting : {"cvt ", "fpgm", "prep"})
            m_tables[hinting] = Copy(Table(m_font, hinting));
        return Assembled();
    }

  private:
    /// The outline of a glyph with its parts' numbers replaced by theirs in the subset.
    std::string Renumbered(Bytes outline)
    {
        std::string result = Copy(outline);
        const bool composite = !outline.empty() && Get16(outline, 0) >= 0x8000;
        unsigned flags = composite ? kMoreParts : 0;
        for (std::size_t at = 10; (flags & kMoreParts) != 0;) {
            flags = Get16(outline, at);
            Set16(result, at + 2, PartNumber(static_cast<int>(Get16(outline, at + 2))));
            at += (flags & kWordArguments) != 0 ? 8 : 6;
            at += (flags & kOneScale) != 0 ? 2 : (flags & kTwoScales) != 0 ? 4 : (flags & kMatrix) != 0 ? 8 : 0;
        }
        return result;
    }

    unsigned PartNumber(int glyph)
    {
        const auto [entry, added] = m_parts.try_emplace(glyph, static_cast<unsigned>(m_glyphs.size()));
        if (added)
            m_glyphs.push_back(glyph);
        return entry->second;
    }

    void AddMetrics(std::size_t glyph)
    {
        const Bytes hmtx = Table(m_font, "hmtx");
        const std::size_t full = Get16(Table(m_font, "hhea"), 34); // later glyphs share the last advance
        Put16(m_tables["hmtx"], Get16(hmtx, 4 * std::min(glyph, full - 1)));
        Put16(m_tables["hmtx"], Get16(hmtx, glyph < full ? 4 * glyph + 2 : 4 * full + 2 * (glyph - full)));
    }

    std::string Assembled()
    {
        const auto count = static_cast<unsigned>(m_tables.size());
        unsigned log2 = 0;
        while (2U << log2 <= count)
            ++log2;
        std::string file;
        Put32(file, 0x00010000);
        Put16(file, count);
        Put16(file, 16U << log2);
        Put16(file, log2);
        Put16(file, 16 * count - (16U << log2));

        std::string body;
        std::size_t headAt = 0;
        const std::size_t bodyAt = 12 + 16 * m_tables.size();
        for (auto& [tag, data] : m_tables) { // in order of their tags, as the format wants it
            const std::size_t size = data.size();
            PadTo4(data);
            if (tag == "head")
                headAt = bodyAt + body.size();
            file += tag;
            Put32(file, Checksum(data));
            Put32(file, static_cast<std::uint32_t>(bodyAt + body.size()));
            Put32(file, static_cast<std::uint32_t>(size));
            body += data;
        }
        file += body;
        Set32(file, headAt + 8, 0xB1B0AFBAU - Checksum(file));
        return file;
    }

    Bytes m_font;
    std::vector<int> m_glyphs;
    std::map<int, unsigned> m_parts;
    std::map<std::string, std::string> m_tables;
};
} // namespace

std::string SubsetTrueType(std::span<const unsigned char> font, std::vector<int> glyphs)
{
    return Subset(font, std::move(glyphs)).File();
}
} // namespace drawing
