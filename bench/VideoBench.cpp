// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The list of the pictures of an hour of video; what a whole analysis takes beside reading and the network; stepping
// back.
#include "host/vision/CVideoReader.h"
#include "host/vision/VideoAnalysis.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/video/VehicleVideo.h"
#include "tests/vision/video/VideoMaker.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

namespace
{

constexpr double kLimit = 1.0;      // s
constexpr double kLimitShare = 0.1; // of an analysis
constexpr double kLimitBack = 30.0; // ms

double Seconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Three vehicles before a camera of 1920 x 1080 px.
std::string WriteRoad(const test::TemporaryFolder& folder, int count)
{
    const test::RoadCamera camera;
    test::VideoPlan plan;
    plan.width = camera.width;
    plan.height = camera.height;
    plan.times = test::EvenTimes(count, 512);
    plan.draw = [&](AVFrame& frame, int number) {
        std::vector<test::ColouredBox> boxes;
        for (const test::RoadVehicle& vehicle :
             {test::RoadVehicle{{1, 0, 0}, -1.75, 52.0, -14.0}, test::RoadVehicle{{0, 1, 0}, 1.75, 14.0, 17.0},
              test::RoadVehicle{{0, 0, 1}, -1.75, 70.0, -19.0}})
            boxes.push_back({vehicle.At(0.04 * number, camera), vehicle.colour});
        test::DrawBoxes(frame, boxes);
    };
    test::WriteVideo(folder.File("road.mp4"), plan);
    return folder.File("road.mp4");
}

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

/// Processor time of all but reading and the network, which this one's small network makes large.
void VideoAnalysisBesideNet(benchmark::State& state)
{
    constexpr int kFrames = 50;
    const test::TemporaryFolder folder;
    const std::string path = WriteRoad(folder, kFrames);
    CYoloV5ORTDetector detector = StandardDetector();
    if (detector.ReadModel(std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx", "") == 0) {
        state.SkipWithError("no network");
        return;
    }
    const test::RoadCamera camera;
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf(camera, test::kLane));
    const FrameSearch with{&detector, &road};
    std::vector<VideoBox> boxes;
    cv::Mat image;
    double time = 0.0;
    // The least of each, so that what else the machine does is not counted.
    double reading = 1e9;
    double net = 1e9;
    double all = 1e9;
    for (auto _ : state) {
        CVideoReader reader;
        reader.OpenVideo(path);
        double start = Seconds();
        for (int i = 0; i < kFrames; ++i)
            reader.ReadFrame(image, time);
        reading = std::min(reading, Seconds() - start);
        // A picture of the network's own size needs no fitting.
        const cv::Mat fitted(512, 512, CV_8UC3, cv::Scalar::all(102));
        start = Seconds();
        for (int i = 0; i < kFrames; ++i)
            detector.Detect(fitted, boxes);
        net = std::min(net, Seconds() - start);
        reader.OpenVideo(path);
        VideoTracks tracks(camera.width, camera.height);
        start = Seconds();
        AnalyzeVideo(reader, with, tracks, [](int, int) { return true; });
        all = std::min(all, Seconds() - start);
        if (tracks.Tracks().size() != 3)
            state.SkipWithError("not three vehicles");
    }
    const double share = (all - reading - net) / all;
    state.counters["frame_ms"] = 1e3 * all / kFrames;
    state.counters["reading_ms"] = 1e3 * reading / kFrames;
    state.counters["net_ms"] = 1e3 * net / kFrames;
    state.counters["share"] = share;
    if (share > kLimitShare)
        state.SkipWithError(("share " + std::to_string(share)).c_str());
}
BENCHMARK(VideoAnalysisBesideNet)->Unit(benchmark::kMillisecond)->Iterations(8);

/// A picture that was decoded for the one behind it.
void VideoStepBack(benchmark::State& state)
{
    constexpr int kFrames = 40;
    const test::TemporaryFolder folder;
    CVideoReader reader;
    reader.OpenVideo(WriteRoad(folder, kFrames));
    cv::Mat image;
    double time = 0.0;
    std::vector<double> times;
    for (auto _ : state) {
        reader.SetFramePos(kFrames - 1);
        reader.ReadFrame(image, time);
        for (int i = kFrames - 2; i >= kFrames / 2; --i) {
            const double start = Seconds();
            if (reader.SetFramePos(i) == 0 || reader.ReadFrame(image, time) == 0)
                state.SkipWithError("not read");
            times.push_back(1e3 * (Seconds() - start));
        }
    }
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    state.counters["median_ms"] = median;
    if (median > kLimitBack)
        state.SkipWithError(("median " + std::to_string(median) + " ms").c_str());
}
BENCHMARK(VideoStepBack)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
