// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A calibration point that is dragged: all speeds of ten vehicles with 2,000 entries each, anew in one picture's time.
#include "host/vision/VideoSpeeds.h"
#include "tests/vision/RoadCamera.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>

namespace
{

constexpr double kLimit = 16.0; // ms

void VideoSpeedsAnew(benchmark::State& state)
{
    const test::RoadCamera camera;
    std::vector<std::vector<VideoEntry>> tracks(10);
    for (std::size_t track = 0; track < tracks.size(); ++track)
        for (int i = 0; i < 2000; ++i)
            tracks[track].push_back(
                {0.04 * i, i, camera.See(static_cast<double>(track) - 5.0, 60.0 - 0.02 * i, 0.72), false});
    RoadInput input = test::InputOf(camera, test::kLane);
    SpeedInput speed;
    speed.pointHeight = 0.72;
    std::vector<double> times;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        input.points[0].x += 0.1;
        const VideoSpeeds speeds(test::Calibrated(input), speed);
        for (const auto& track : tracks)
            benchmark::DoNotOptimize(speeds.Of(track));
        times.push_back(1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    state.counters["median_ms"] = median;
    if (median > kLimit)
        state.SkipWithError(("median " + std::to_string(median) + " ms").c_str());
}
BENCHMARK(VideoSpeedsAnew)->Unit(benchmark::kMillisecond);

} // namespace
