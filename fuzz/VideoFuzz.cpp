// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Any bytes as a video: opened or refused with a reason; its times ascend, and its pictures are read or not.
#include "fuzz/ScratchFolder.h"
#include "host/Assert.h"
#include "host/vision/CVideoReader.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace
{

void Check(CVideoReader& reader)
{
    const auto& times = reader.FrameTimes();
    RUV_ASSERT(!times.empty() && times.front() == 0.0);
    RUV_ASSERT(std::is_sorted(times.begin(), times.end()));
    RUV_ASSERT(reader.GetWidth() > 0 && reader.GetHeight() > 0);
    RUV_ASSERT(reader.GetFPS() >= 0.0);
    constexpr int kRead = 6;
    const int count = reader.GetFrameCount();
    for (int i = 0; i < kRead; ++i) {
        const int frame = static_cast<int>(static_cast<std::int64_t>(count) * (i * 5 % kRead) / kRead);
        RUV_ASSERT(reader.SetFramePos(frame) != 0);
        cv::Mat image;
        double time = -1.0;
        const bool read = reader.ReadFrame(image, time) != 0;
        RUV_ASSERT(time == times[static_cast<std::size_t>(frame)]);
        RUV_ASSERT(!read || (image.cols == reader.GetWidth() && image.rows == reader.GetHeight()));
        RUV_ASSERT(read == reader.Reason().empty());
        RUV_ASSERT(read || reader.IsDamaged(frame));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::ScratchFolder folder;
    folder.Write("video", std::string_view(reinterpret_cast<const char*>(bytes), size));
    CVideoReader reader;
    if (reader.OpenVideo(folder.File("video")) != 0)
        Check(reader);
    else
        RUV_ASSERT(!reader.Reason().empty());
    return 0;
}
