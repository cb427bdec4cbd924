// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A drawing of every kind of primitive, and readers of the files that drawings are written to.
#pragma once

#include "drawing/DrawingExport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <numbers>
#include <regex>
#include <string>
#include <vector>

#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_ONLY_PNG
#include <stb/stb_image.h>

namespace drawing_test
{
inline constexpr double kPi = std::numbers::pi;
inline constexpr COLORREF kRed = RGB(255, 0, 0);
inline constexpr CPen kNoPen{PenStyle::none, 1.0, 0};
// The characters diagrams use beyond ASCII.
inline const std::string kSigns = "äöüÄÖÜß°²³·×±½−–≤≥≈≠√∞→αβγδλμµφψωΔΣ„“…€";

inline CDC SampleDrawing()
{
    CDC dc(400, 300);
    dc.SelectPen({PenStyle::dash, 1.5, RGB(0, 0x80, 0xff)});
    dc.Polyline({{10.0, 20.0}, {100.125, 30.0626}, {200.0, 1e-9}});
    dc.SelectBrush({true, kRed});
    dc.Polygon({{10, 100}, {60, 100}, {35, 150}});
    dc.Rectangle(200, 150, 100, 100, 5, 8);
    dc.Ellipse({300, 100}, 50, 20, kPi / 6);
    dc.TextOut({10, 200}, "v² < 2·a & s > \"√x\"");
    dc.SelectFont({20, true});
    dc.SetTextColor(kRed);
    dc.TextOut({200, 250}, kSigns, TextAlign::center, kPi / 2);
    return dc;
}

/// Counts the elements of an XML text by name; fails on text that is not well-formed.
inline std::map<std::string, int> Elements(const std::string& xml)
{
    static const std::regex tag(R"(<(/?)([\w?]+)((?:\s+[\w:-]+="[^"<&]*")*)\s*([/?]?)>)");
    static const std::regex content("([^<>&]|&(amp|lt|gt);)*");
    std::map<std::string, int> counts;
    std::vector<std::string> open;
    auto at = xml.begin();
    for (std::sregex_iterator it(xml.begin(), xml.end(), tag), end; it != end; ++it) {
        const auto& match = *it;
        EXPECT_TRUE(std::regex_match(at, match[0].first, content)) << std::string(at, match[0].first);
        at = match[0].second;
        if (match[1].length() != 0) {
            if (open.empty() || open.back() != match[2]) {
                ADD_FAILURE() << "unexpected " << match[0];
                return {};
            }
            open.pop_back();
            continue;
        }
        ++counts[match[2]];
        if (match[4].length() == 0)
            open.push_back(match[2]);
    }
    EXPECT_TRUE(open.empty());
    EXPECT_EQ(std::string(at, xml.end()), "\n");
    return counts;
}

/// A PDF file read by its cross-reference table.
class PdfReader
{
  public:
    explicit PdfReader(const std::string& file) : m_file(file)
    {
        EXPECT_EQ(file.substr(0, 7), "%PDF-1.");
        std::smatch match;
        EXPECT_TRUE(std::regex_search(file, match, std::regex("startxref\n(\\d+)\n%%EOF\n$")));
        std::size_t at = std::stoul(match[1]);
        EXPECT_EQ(file.substr(at, 7), "xref\n0 ");
        m_count = std::stoul(file.substr(at + 7));
        at = file.find('\n', at + 7) + 1;
        EXPECT_EQ(file.substr(at, 20), "0000000000 65535 f \n");
        for (std::size_t i = 1; i < m_count; ++i) {
            const std::string entry = file.substr(at + 20 * i, 20);
            EXPECT_EQ(entry.substr(10), " 00000 n \n");
            m_offsets[i] = std::stoul(entry.substr(0, 10));
        }
        EXPECT_EQ(file.substr(at + 20 * m_count, 8), "trailer\n");
    }

    std::size_t Count() const { return m_count; }

    std::string Object(std::size_t number) const
    {
        const std::string start = std::to_string(number) + " 0 obj\n";
        const std::size_t at = m_offsets.at(number);
        EXPECT_EQ(m_file.substr(at, start.size()), start);
        return m_file.substr(at + start.size(), m_file.find("\nendobj\n", at) - at - start.size());
    }

    /// The number of the object that `key` of `object` refers to.
    static std::size_t Reference(const std::string& object, const std::string& key)
    {
        std::smatch match;
        EXPECT_TRUE(std::regex_search(object, match, std::regex("/" + key + " \\[?(\\d+) 0 R"))) << key;
        return std::stoul(match[1]);
    }

    std::string Stream(std::size_t number) const
    {
        const std::size_t at = m_offsets.at(number);
        const std::size_t begin = m_file.find("stream\n", at) + 7;
        std::smatch match;
        const std::string dictionary = m_file.substr(at, begin - at);
        EXPECT_TRUE(std::regex_search(dictionary, match, std::regex("/Length (\\d+)")));
        const std::size_t length = std::stoul(match[1]);
        EXPECT_EQ(m_file.substr(begin + length, 18), "\nendstream\nendobj\n");
        int size = 0;
        char* bytes = stbi_zlib_decode_malloc(m_file.data() + begin, static_cast<int>(length), &size);
        EXPECT_NE(bytes, nullptr) << stbi_failure_reason();
        const std::string result(bytes, static_cast<std::size_t>(size));
        std::free(bytes);
        return result;
    }

  private:
    std::string m_file;
    std::size_t m_count = 0;
    std::map<std::size_t, std::size_t> m_offsets;
};

/// A picture read back. Ink is 1 minus the green share: red and black both count full.
class Picture
{
  public:
    explicit Picture(const std::string& png)
    {
        int channels = 0;
        const auto* bytes = reinterpret_cast<const unsigned char*>(png.data());
        m_pixels = stbi_load_from_memory(bytes, static_cast<int>(png.size()), &m_width, &m_height, &channels, 3);
        EXPECT_NE(m_pixels, nullptr);
        EXPECT_EQ(channels, 3);
    }
    explicit Picture(const CDC& dc, double scale = 1.0) : Picture(drawing::ToPng(dc, scale)) {}
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { std::free(m_pixels); }

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    COLORREF At(int x, int y) const
    {
        const unsigned char* p = m_pixels + static_cast<std::ptrdiff_t>(y * m_width + x) * 3;
        return RGB(p[0], p[1], p[2]);
    }
    double Ink(int x, int y) const { return 1.0 - (At(x, y) >> 8U & 0xFFU) / 255.0; }
    /// Inked area of the pixels from (left, top) up to but not including (right, bottom).
    double Area(int left, int top, int right, int bottom) const
    {
        double sum = 0.0;
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                sum += Ink(x, y);
        return sum;
    }
    double Area() const { return Area(0, 0, m_width, m_height); }

  private:
    unsigned char* m_pixels = nullptr;
    int m_width = 0;
    int m_height = 0;
};
} // namespace drawing_test
