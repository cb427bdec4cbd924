// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures inside of files that the exporters write.
#pragma once

#include "host/CDC.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace drawing
{
/// Three bytes a pixel, rows from the top.
std::string PngFile(int width, int height, const unsigned char* rgb);
/// The bitmap's pixels as red, green and blue bytes.
std::vector<unsigned char> RgbBytes(const drawing::Bitmap& bitmap);
/// The file the bitmap came from, or a PNG file of it.
std::string FileOf(const drawing::Bitmap& bitmap);

bool IsJpeg(std::string_view file);
struct JpegFrame {
    int width;
    int height;
    int components;
};
/// What the frame header says; nothing for files without one.
std::optional<JpegFrame> ReadJpegFrame(std::string_view file);

std::string Base64(std::string_view bytes);
} // namespace drawing
