// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The list of the pictures of an hour of video.
#include "host/vision/CVideoReader.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/video/VideoMaker.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <string>

namespace
{

constexpr double kLimit = 1.0; // s

void VideoIndex90000(benchmark::State& state)
{
    const test::TemporaryFolder folder;
    test::VideoPlan plan;
    plan.width = 32;
    plan.height = 16;
    plan.codec = "mpeg4";
    plan.times = test::EvenTimes(90'000, 512);
    const std::string path = folder.File("v.mp4");
    test::WriteVideo(path, plan);
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        CVideoReader reader;
        if (reader.OpenVideo(path) == 0 || reader.GetFrameCount() != 90'000)
            state.SkipWithError("not read");
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        state.counters["seconds"] = seconds;
        if (seconds > kLimit)
            state.SkipWithError((std::to_string(seconds) + " s").c_str());
    }
}
BENCHMARK(VideoIndex90000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
