// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/BitmapFiles.h"

#include "base/Deflate.h"

#include <algorithm>
#include <cstdint>

namespace drawing
{
namespace
{
unsigned Byte(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}
} // namespace

std::string PngFile(int width, int height, const unsigned char* rgb)
{
    std::string file = "\x89PNG\r\n\x1A\n";
    const auto append32 = [](std::string& out, std::size_t value) {
        for (const unsigned shift : {24U, 16U, 8U, 0U})
            out += static_cast<char>(value >> shift & 0xFFU);
    };
    const auto chunk = [&](const char* name, std::string_view data) {
        append32(file, data.size());
        const std::size_t begin = file.size();
        file.append(name).append(data);
        append32(file, base::Crc32(std::string_view(file).substr(begin)));
    };
    std::string head;
    append32(head, static_cast<std::size_t>(width));
    append32(head, static_cast<std::size_t>(height));
    head.append({8, 2, 0, 0, 0}); // bits a channel, red-green-blue, deflate, filters, no interlacing
    chunk("IHDR", head);

    // Unfiltered rows make diagrams smaller than filtered ones.
    const std::size_t row = static_cast<std::size_t>(width) * 3;
    std::string rows;
    rows.reserve((row + 1) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        rows += '\0';
        rows.append(reinterpret_cast<const char*>(rgb) + static_cast<std::size_t>(y) * row, row);
    }
    chunk("IDAT", base::Deflated(rows, base::DeflateFormat::zlib));
    chunk("IEND", {});
    return file;
}

std::vector<unsigned char> RgbBytes(const drawing::Bitmap& bitmap)
{
    std::vector<unsigned char> bytes;
    bytes.reserve(bitmap.pixels.size() * 3);
    for (const std::uint32_t pixel : bitmap.pixels)
        for (const unsigned shift : {16U, 8U, 0U})
            bytes.push_back(static_cast<unsigned char>(pixel >> shift & 0xFFU));
    return bytes;
}

std::string FileOf(const drawing::Bitmap& bitmap)
{
    return bitmap.file.empty() ? PngFile(bitmap.width, bitmap.height, RgbBytes(bitmap).data()) : bitmap.file;
}

bool IsJpeg(std::string_view file)
{
    return file.size() > 2 && Byte(file, 0) == 0xFFU && Byte(file, 1) == 0xD8U;
}

std::optional<JpegFrame> ReadJpegFrame(std::string_view file)
{
    if (!IsJpeg(file))
        return std::nullopt;
    std::size_t at = 2;
    while (at + 9 < file.size() && Byte(file, at) == 0xFFU) {
        const unsigned marker = Byte(file, at + 1);
        const std::size_t length = Byte(file, at + 2) * 256U + Byte(file, at + 3);
        // Start of frame, but for the tables that share the range.
        if (marker >= 0xC0U && marker <= 0xCFU && marker != 0xC4U && marker != 0xC8U && marker != 0xCCU)
            return JpegFrame{static_cast<int>(Byte(file, at + 7) * 256U + Byte(file, at + 8)),
                             static_cast<int>(Byte(file, at + 5) * 256U + Byte(file, at + 6)),
                             static_cast<int>(Byte(file, at + 9))};
        if (marker == 0xDAU)
            return std::nullopt;
        at += 2 + length;
    }
    return std::nullopt;
}

std::string Base64(std::string_view bytes)
{
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(bytes.size() - i, 3);
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8U | (k < count ? Byte(bytes, i + k) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? digits[group >> (18U - 6U * k) & 0x3FU] : '=';
    }
    return text;
}
} // namespace drawing
