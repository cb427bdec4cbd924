// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/PictureReader.h"

#include "base/Deflate.h"
#include "drawing/BitmapFiles.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
/// A compressed picture may claim to be far longer when unpacked: no buffer grows beyond what its pixels need.
std::size_t g_largestBuffer = 0;

void* GrowBuffer(void* buffer, std::size_t size)
{
    return size > g_largestBuffer ? nullptr : std::realloc(buffer, size);
}
} // namespace

#define STBI_MALLOC(size) std::malloc(size)
#define STBI_REALLOC(buffer, size) GrowBuffer(buffer, size)
#define STBI_FREE(buffer) std::free(buffer)
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_BMP
#define STBI_ONLY_GIF
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include <stb/stb_image.h>
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

namespace drawing
{
namespace
{
using namespace std::string_view_literals;

/// Bytes of a file by their place; 0 beyond its end.
class Bytes
{
  public:
    explicit Bytes(std::string_view file, bool bigEndian) : m_file(file), m_bigEndian(bigEndian) {}

    std::uint32_t Word(std::size_t at, std::size_t bytes) const
    {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            const std::size_t place = at + (m_bigEndian ? i : bytes - 1 - i);
            value = value << 8U | (place < m_file.size() ? static_cast<unsigned char>(m_file[place]) : 0U);
        }
        return value;
    }
    std::uint32_t U16(std::size_t at) const { return Word(at, 2); }
    std::uint32_t U32(std::size_t at) const { return Word(at, 4); }

  private:
    std::string_view m_file;
    bool m_bigEndian;
};

/// All parts of a PNG file, each with its checksum, up to the part that ends it (ISO/IEC 15948, 5.3).
bool IsWholePng(std::string_view file)
{
    const Bytes bytes(file, true);
    std::size_t at = 8;
    while (at + 12 <= file.size()) {
        const std::size_t length = bytes.U32(at);
        if (length > file.size() - at - 12)
            return false;
        if (base::Crc32(file.substr(at + 4, length + 4)) != bytes.U32(at + 8 + length))
            return false;
        if (file.substr(at + 4, 4) == "IEND")
            return true;
        at += length + 12;
    }
    return false;
}

/// The place of a marker of a JPEG file before its first scan, or of that scan; npos when there is none.
std::size_t FindMarker(std::string_view file, std::uint32_t wanted)
{
    const Bytes bytes(file, true);
    for (std::size_t at = 2; at + 4 <= file.size(); at += 2 + bytes.U16(at + 2)) {
        while (at + 4 <= file.size() && bytes.U16(at) == 0xFFFFU)
            ++at; // fill bytes
        const std::uint32_t marker = bytes.U16(at);
        if (marker == wanted)
            return at;
        if (marker == 0xFFDAU || marker < 0xFF00U || bytes.U16(at + 2) < 2)
            return std::string_view::npos;
    }
    return std::string_view::npos;
}

/// Every Huffman table of the segment at `at` has at most 256 codes (ITU-T T.81, B.2.4.2). The decoder's room for
/// their lengths ends there.
bool HasSoundTables(std::string_view file, std::size_t at)
{
    constexpr std::size_t kHead = 17; // class and number, then the count of codes of each length
    constexpr std::uint32_t kMostCodes = 256;
    const Bytes bytes(file, true);
    std::size_t left = bytes.U16(at + 2) < 2 ? 0 : bytes.U16(at + 2) - 2;
    for (at += 4; left > 0 && at < file.size();) {
        std::uint32_t codes = 0;
        for (std::size_t i = 1; i < kHead; ++i)
            codes += bytes.Word(at + i, 1);
        if (codes > kMostCodes)
            return false;
        at += kHead + codes;
        left -= std::min(left, kHead + codes);
    }
    return true;
}

/// Looks at the Huffman tables in the order in which a decoder meets them, those between the scans too.
bool HasSoundTables(std::string_view file)
{
    const Bytes bytes(file, true);
    for (std::size_t at = 2; at + 4 <= file.size();) {
        const std::uint32_t marker = bytes.U16(at);
        if (marker <= 0xFF00U || marker == 0xFFFFU || (marker >= 0xFFD0U && marker <= 0xFFD9U)) {
            ++at; // data of a scan, fill bytes, marks without a segment
            continue;
        }
        if (marker == 0xFFC4U && !HasSoundTables(file, at))
            return false;
        at += 2 + std::max(bytes.U16(at + 2), 2U);
    }
    return true;
}

/// In the data of a scan the end marker cannot occur by chance (ITU-T T.81, B.1.1.5).
bool IsWholeJpeg(std::string_view file)
{
    const std::size_t scan = FindMarker(file, 0xFFDAU);
    return HasSoundTables(file) && scan != std::string_view::npos &&
           file.find("\xFF\xD9"sv, scan) != std::string_view::npos;
}

bool IsWholeBmp(std::string_view file)
{
    const Bytes bytes(file, false);
    constexpr std::uint32_t kOldHeader = 12;
    const bool old = bytes.U32(14) == kOldHeader;
    const auto signedHeight = static_cast<std::int32_t>(bytes.U32(22));
    const double height = old ? bytes.U16(20) : std::abs(static_cast<double>(signedHeight));
    const double width = old ? bytes.U16(18) : bytes.U32(18);
    const double bits = bytes.U16(old ? 24 : 28);
    const double row = std::ceil(width * bits / 32.0) * 4.0;
    return bytes.U32(10) + row * height <= static_cast<double>(file.size());
}

/// Behind the mark of the end some writers leave zeros.
bool IsWholeGif(std::string_view file)
{
    const std::size_t last = file.find_last_not_of('\0');
    return last != std::string_view::npos && file[last] == ';';
}

struct Format {
    std::string_view begin;
    bool (*isWhole)(std::string_view file);
};
constexpr Format kFormats[] = {
    {"\x89PNG\r\n\x1A\n"sv, IsWholePng},
    {"\xFF\xD8"sv, IsWholeJpeg},
    {"BM"sv, IsWholeBmp},
    {"GIF87a"sv, IsWholeGif},
    {"GIF89a"sv, IsWholeGif},
};

/// How the camera was held (Exif 2.3, tag 0x0112): 1 upright, up to 8.
std::uint32_t Orientation(std::string_view file)
{
    constexpr std::uint32_t kOrientation = 0x0112;
    const std::size_t marker = IsJpeg(file) ? FindMarker(file, 0xFFE1U) : std::string_view::npos;
    if (marker == std::string_view::npos || file.substr(marker + 4, 6) != "Exif\0\0"sv)
        return 1;
    const std::string_view tiff = file.substr(marker + 10);
    const Bytes bytes(tiff, tiff.starts_with("MM"));
    const std::size_t directory = bytes.U32(4);
    const std::size_t count = bytes.U16(directory);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + 12 * i;
        if (bytes.U16(entry) == kOrientation) {
            const std::uint32_t value = bytes.U16(entry + 8);
            return value >= 1 && value <= 8 ? value : 1;
        }
    }
    return 1;
}

/// The pixels as they lie in the file, on white.
std::vector<std::uint32_t> Opaque(const unsigned char* samples, std::size_t count, int channels)
{
    std::vector<std::uint32_t> pixels(count);
    const bool grey = channels <= 2;
    const bool transparent = channels == 2 || channels == 4;
    for (std::uint32_t& pixel : pixels) {
        const unsigned alpha = transparent ? samples[channels - 1] : 255U;
        pixel = 0xFFU;
        for (int i = 0; i < 3; ++i)
            pixel = pixel << 8U | (samples[grey ? 0 : i] * alpha + 255U * (255U - alpha) + 127U) / 255U;
        samples += channels;
    }
    return pixels;
}

/// Turns and mirrors the picture to upright.
void Turn(Bitmap& bitmap, std::uint32_t orientation)
{
    if (orientation == 1)
        return;
    const bool sideways = orientation >= 5;
    const int width = sideways ? bitmap.height : bitmap.width;
    const int height = sideways ? bitmap.width : bitmap.height;
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    std::vector<std::uint32_t> turned;
    turned.reserve(bitmap.pixels.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int across = sideways ? y : x;
            const int down = sideways ? x : y;
            const int column = fromRight ? bitmap.width - 1 - across : across;
            const int row = fromBottom ? bitmap.height - 1 - down : down;
            turned.push_back(bitmap.pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(bitmap.width) +
                                           static_cast<std::size_t>(column)]);
        }
    }
    bitmap.pixels = std::move(turned);
    bitmap.width = width;
    bitmap.height = height;
}

/// What exports embed must have the bitmap's pixels.
bool HasSamePixels(const std::string& file, const unsigned char* data, int size, int channels)
{
    if (channels != 1 && channels != 3)
        return false;
    const auto frame = ReadJpegFrame(file);
    return frame ? frame->components <= 3
                 : file.starts_with(kFormats[0].begin) && stbi_is_16_bit_from_memory(data, size) == 0;
}
} // namespace

DecodedPicture DecodePicture(std::string file, double mostPixels)
{
    DecodedPicture picture;
    const auto format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const Format& known) { return file.starts_with(known.begin); });
    if (format == std::end(kFormats)) {
        picture.outcome = PictureOutcome::unknownFormat;
        return picture;
    }
    const auto* data = reinterpret_cast<const unsigned char*>(file.data());
    const auto size = static_cast<int>(file.size());
    int channels = 0;
    if (stbi_info_from_memory(data, size, &picture.width, &picture.height, &channels) == 0)
        return picture;
    const double pixels = static_cast<double>(picture.width) * picture.height;
    if (pixels > mostPixels) {
        picture.outcome = PictureOutcome::tooManyPixels;
        return picture;
    }
    if (!format->isWhole(file))
        return picture;
    constexpr std::size_t kBytesPerPixel = 8; // four samples of 16 bits
    constexpr std::size_t kSpare = 1U << 20U; // filter bytes, passes, tables
    g_largestBuffer = 2 * static_cast<std::size_t>(pixels) * kBytesPerPixel + kSpare;
    unsigned char* samples = stbi_load_from_memory(data, size, &picture.width, &picture.height, &channels, 0);
    if (samples == nullptr)
        return picture;
    auto bitmap = std::make_shared<Bitmap>();
    bitmap->width = picture.width;
    bitmap->height = picture.height;
    const std::size_t count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    bitmap->pixels = Opaque(samples, count, channels);
    std::free(samples);
    const std::uint32_t orientation = Orientation(file);
    Turn(*bitmap, orientation);
    if (orientation == 1 && HasSamePixels(file, data, size, channels))
        bitmap->file = std::move(file);
    picture.bitmap = std::move(bitmap);
    picture.outcome = PictureOutcome::read;
    return picture;
}
} // namespace drawing
