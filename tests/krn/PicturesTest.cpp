// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Pictures.h"

#include "base/Deflate.h"
#include "drawing/BitmapFiles.h"
#include "drawing/PictureReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <utility>

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace
{

using namespace std::string_literals;

constexpr std::uint32_t kWhite = 0xFFFFFFFFU;
constexpr std::uint32_t kBlack = 0xFF000000U;
constexpr int kWidth = 32;
constexpr int kHeight = 16;

/// White with a black quarter at the upper left.
std::vector<unsigned char> Samples()
{
    std::vector<unsigned char> samples;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            samples.insert(samples.end(), 3, x < kWidth / 2 && y < kHeight / 2 ? 0 : 255);
    return samples;
}

void Append(void* file, void* data, int size)
{
    static_cast<std::string*>(file)->append(static_cast<const char*>(data), static_cast<std::size_t>(size));
}

std::string Png()
{
    return drawing::PngFile(kWidth, kHeight, Samples().data());
}

std::string Jpeg()
{
    std::string file;
    stbi_write_jpg_to_func(Append, &file, kWidth, kHeight, 3, Samples().data(), 100);
    return file;
}

std::string Bmp()
{
    std::string file;
    stbi_write_bmp_to_func(Append, &file, kWidth, kHeight, 3, Samples().data());
    return file;
}

/// Two pixels, red and transparent, each with a code of its own: clear, 0, 1, end at three bits each.
std::string Gif()
{
    return "GIF89a\x02\0\x01\0\x80\0\0"s + "\xFF\0\0\0\0\xFF"s + "\x21\xF9\x04\x01\0\0\x01\0"s +
           "\x2C\0\0\0\0\x02\0\x01\0\0"s + "\x02\x02\x44\x0A\0"s + ";";
}

std::uint32_t At(const drawing::Bitmap& bitmap, int x, int y)
{
    return bitmap.pixels.at(static_cast<std::size_t>(y * bitmap.width + x));
}

TEST(Pictures, EveryFormatHasItsPixels)
{
    for (const std::string& file : {Png(), Jpeg(), Bmp()}) {
        const auto picture = drawing::DecodePicture(file);
        ASSERT_EQ(picture.outcome, PictureOutcome::read);
        const drawing::Bitmap& bitmap = *picture.bitmap;
        EXPECT_EQ(bitmap.width, kWidth);
        EXPECT_EQ(bitmap.height, kHeight);
        ASSERT_EQ(bitmap.pixels.size(), static_cast<std::size_t>(kWidth * kHeight));
        EXPECT_EQ(At(bitmap, 2, 2), kBlack);
        EXPECT_EQ(At(bitmap, kWidth - 2, 2), kWhite);
        EXPECT_EQ(At(bitmap, 2, kHeight - 2), kWhite);
        EXPECT_EQ(bitmap.file, file.starts_with("BM") ? "" : file) << "what exports embed";
    }
    const auto gif = drawing::DecodePicture(Gif());
    ASSERT_EQ(gif.outcome, PictureOutcome::read);
    EXPECT_EQ(gif.bitmap->pixels, (std::vector<std::uint32_t>{0xFFFF0000U, kWhite})) << "transparent lies on white";
    EXPECT_EQ(gif.bitmap->file, "");
}

TEST(Pictures, TransparencyIsMixedWithWhite)
{
    const std::array<unsigned char, 8> samples{0, 0, 200, 51, 10, 20, 30, 255};
    int size = 0;
    unsigned char* bytes = stbi_write_png_to_mem(samples.data(), 8, 2, 1, 4, &size);
    const std::string file(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(size));
    std::free(bytes);
    const auto picture = drawing::DecodePicture(file);
    ASSERT_EQ(picture.outcome, PictureOutcome::read);
    // A fifth of the colour, four fifths of 255: 204, 204, 244.
    EXPECT_EQ(picture.bitmap->pixels, (std::vector<std::uint32_t>{0xFFCCCCF4U, 0xFF0A141EU}));
    EXPECT_EQ(picture.bitmap->file, "") << "it has other pixels";
}

// Exif 2.3, 4.6.4: which side of the scene the file's row 0 and column 0 are.
TEST(Pictures, APhotoIsTurnedUpright)
{
    enum Side { top, bottom, left, right };
    constexpr std::pair<Side, Side> kSides[] = {{top, left}, {top, right}, {bottom, right}, {bottom, left},
                                                {left, top}, {right, top}, {right, bottom}, {left, bottom}};
    for (const bool bigEndian : {false, true}) {
        for (int orientation = 1; orientation <= 8; ++orientation) {
            const std::string value = bigEndian ? "\0"s + static_cast<char>(orientation) + "\0\0"s
                                                : static_cast<char>(orientation) + "\0\0\0"s;
            const std::string exif = "Exif\0\0"s +
                                     (bigEndian ? "MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01"s
                                                : "II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0"s) +
                                     value + "\0\0\0\0"s;
            std::string file = Jpeg();
            file.insert(2, "\xFF\xE1\0"s + static_cast<char>(exif.size() + 2) + exif);
            const auto picture = drawing::DecodePicture(file);
            ASSERT_EQ(picture.outcome, PictureOutcome::read) << orientation;
            const auto [row, column] = kSides[orientation - 1];
            const drawing::Bitmap& bitmap = *picture.bitmap;
            EXPECT_EQ(bitmap.width, orientation >= 5 ? kHeight : kWidth) << orientation;
            const bool isRight = row == right || column == right;
            const bool isBottom = row == bottom || column == bottom;
            for (const bool atRight : {false, true})
                for (const bool atBottom : {false, true})
                    EXPECT_EQ(At(bitmap, atRight ? bitmap.width - 2 : 1, atBottom ? bitmap.height - 2 : 1),
                              atRight == isRight && atBottom == isBottom ? kBlack : kWhite)
                        << orientation;
            EXPECT_EQ(bitmap.file.empty(), orientation != 1);
        }
    }
}

TEST(Pictures, WhatEndsTooEarlyIsDamaged)
{
    for (const std::string& file : {Png(), Jpeg(), Bmp(), Gif()})
        for (std::size_t size = 6; size < file.size(); size += 1 + file.size() / 50) {
            const auto picture = drawing::DecodePicture(file.substr(0, size));
            EXPECT_NE(picture.outcome, PictureOutcome::read) << file.substr(0, 4) << " " << size;
            EXPECT_EQ(picture.bitmap, nullptr);
        }
    std::string changed = Png();
    changed[changed.size() / 2] = static_cast<char>(changed[changed.size() / 2] ^ 1);
    EXPECT_EQ(drawing::DecodePicture(changed).outcome, PictureOutcome::damaged) << "its checksum";
}

TEST(Pictures, RandomDamageIsSurvived)
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string file = std::array{Png(), Jpeg(), Bmp(), Gif()}[static_cast<std::size_t>(round % 4)];
        for (unsigned i = 0; i <= random() % 4; ++i)
            file[random() % file.size()] = static_cast<char>(random());
        if (random() % 8 == 0)
            file.resize(random() % file.size());
        const auto picture = drawing::DecodePicture(file);
        EXPECT_EQ(picture.outcome == PictureOutcome::read, picture.bitmap != nullptr);
        if (picture.bitmap != nullptr) {
            EXPECT_EQ(picture.bitmap->pixels.size(), static_cast<std::size_t>(picture.bitmap->width) *
                                                         static_cast<std::size_t>(picture.bitmap->height));
        }
    }
}

std::string BigEndian(std::uint32_t value)
{
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

std::string Chunk(const std::string& typeAndData)
{
    return BigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData +
           BigEndian(base::Crc32(typeAndData));
}

std::string HandMadePng(std::uint32_t side, const std::string& unpacked)
{
    int size = 0;
    std::string copy = unpacked;
    unsigned char* packed =
        stbi_zlib_compress(reinterpret_cast<unsigned char*>(copy.data()), static_cast<int>(copy.size()), &size, 8);
    const std::string data(reinterpret_cast<char*>(packed), static_cast<std::size_t>(size));
    std::free(packed);
    return "\x89PNG\r\n\x1A\n"s + Chunk("IHDR" + BigEndian(side) + BigEndian(side) + "\x08\0\0\0\0"s) +
           Chunk("IDAT" + data) + Chunk("IEND");
}

TEST(Pictures, TooMuchIsRefusedBeforeItIsUnpacked)
{
    EXPECT_EQ(drawing::DecodePicture(HandMadePng(1, "\0\x80"s)).outcome, PictureOutcome::read);
    const auto huge = drawing::DecodePicture(HandMadePng(10001, "\0\x80"s));
    EXPECT_EQ(huge.outcome, PictureOutcome::tooManyPixels);
    EXPECT_EQ(huge.width, 10001);
    // One pixel, and 8 MB of it.
    EXPECT_EQ(drawing::DecodePicture(HandMadePng(1, std::string(8U << 20U, '\0'))).outcome, PictureOutcome::damaged);
}

TEST(Pictures, FilesThatCannotBeReadSayWhy)
{
    const test::TemporaryFolder folder;
    folder.Write("gut.bin", Png());
    folder.Write("text.png", "kein Bild");
    folder.Write("riesig.png", HandMadePng(10001, "\0\x80"s));
    folder.Write("halb.jpg", Jpeg().substr(0, 300));
    folder.Write("lang.png", Png());
    std::filesystem::resize_file(folder.File("lang.png"), (64U << 20U) + 1);
    const auto check = [&](const std::string& name, PictureOutcome outcome, const std::string& words) {
        const CPictureFile file = ReadPicture(folder.File(name));
        EXPECT_EQ(file.outcome, outcome) << name;
        EXPECT_EQ(file.bitmap, nullptr);
        EXPECT_NE(file.error.find(folder.File(name)), std::string::npos) << file.error;
        EXPECT_NE(file.error.find(words), std::string::npos) << file.error;
    };
    check("fehlt.png", PictureOutcome::notFound, "gibt es nicht");
    folder.Folder("ordner");
    check("ordner", PictureOutcome::notAFile, "keine gewöhnliche Datei");
    check("text.png", PictureOutcome::unknownFormat, "weder");
    check("riesig.png", PictureOutcome::tooManyPixels, "10001 × 10001");
    check("halb.jpg", PictureOutcome::damaged, "beschädigt");
    check("lang.png", PictureOutcome::fileTooLarge, "64 MB");
    const CPictureFile good = ReadPicture(folder.File("gut.bin"));
    EXPECT_EQ(good.outcome, PictureOutcome::read) << "the content counts, not the name";
    EXPECT_EQ(good.error, "");
}

} // namespace
