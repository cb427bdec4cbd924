// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever a picture's file begins with: a size, or none. Texts of drawings too, which are any bytes.
#include "base/Utf.h"
#include "drawing/BitmapFiles.h"
#include "drawing/FontMetrics.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    if (const auto frame = drawing::ReadJpegFrame(file)) {
        RUV_ASSERT(drawing::IsJpeg(file));
        RUV_ASSERT(frame->width >= 0 && frame->width < 65536 && frame->height >= 0 && frame->height < 65536);
    }
    RUV_ASSERT(drawing::Base64(file).size() == (size + 2) / 3 * 4);
    const std::string valid = base::ValidUtf8(file);
    RUV_ASSERT(base::IsUtf8(valid) && base::ValidUtf8(valid) == valid);
    RUV_ASSERT((valid == file) == base::IsUtf8(file));
    RUV_ASSERT(drawing::TextCodepoints(file).size() == base::Codepoints(file).size());
    return 0;
}
