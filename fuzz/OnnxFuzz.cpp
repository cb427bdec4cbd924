// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Any bytes as a network: refused with a reason, or one that takes pictures of the size asked for and of no other.
#include "host/Assert.h"
#include "vision/video/OnnxFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    const std::string reason = vision::RefuseOnnx(file, {512, 512});
    RUV_ASSERT(reason.empty() || reason.back() == '.');
    // A file that names its size takes one size; one that leaves it open takes every size.
    const bool takesOther = vision::RefuseOnnx(file, {320, 256}).empty();
    RUV_ASSERT(takesOther == vision::RefuseOnnx(file, {640, 480}).empty() || !reason.empty());
    return 0;
}
