// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Videos of vehicles of known motion, from the file to the speeds.
#include "host/vision/VideoAnalysis.h"
#include "host/vision/VideoSpeeds.h"
#include "tests/cli/CliProgram.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/video/VehicleVideo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <random>

namespace
{

using test::RoadCamera;
using test::RoadVehicle;

const std::string kModel = std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx";
constexpr double kKmh = 3.6;
constexpr double kFrame = 0.04; // s
constexpr double kBoxHeight = 0.72;

/// Two towards the camera in a row, one away from it; and a person, who is no vehicle.
const std::vector<RoadVehicle>& Vehicles()
{
    static const std::vector<RoadVehicle> vehicles{{{1, 0, 0}, -1.75, 52.0, -50.0 / kKmh},
                                                   {{0, 1, 0}, 1.75, 14.0, 60.0 / kKmh},
                                                   {{0, 0, 1}, -1.75, 70.0, -70.0 / kKmh}};
    return vehicles;
}
constexpr RoadVehicle kPerson{{1, 0, 1}, 8.0, 30.0, 1.5};

/// Boxes with so many px of noise, `count` pictures.
std::string WriteRoad(const test::TemporaryFolder& folder, int count, double sigma = 0.0, const RoadCamera& camera = {})
{
    test::VideoPlan plan;
    plan.width = camera.width;
    plan.height = camera.height;
    plan.times = test::EvenTimes(count, 512);
    plan.draw = [&](AVFrame& frame, int number) {
        std::mt19937 random(static_cast<unsigned>(number));
        std::normal_distribution<double> noise(0.0, 1.0);
        std::vector<test::ColouredBox> boxes;
        auto all = Vehicles();
        all.push_back(kPerson);
        for (const RoadVehicle& vehicle : all) {
            VideoBox box = vehicle.At(kFrame * number, camera);
            box.x += sigma * noise(random);
            box.y += sigma * noise(random);
            boxes.push_back({box, vehicle.colour});
        }
        test::DrawBoxes(frame, boxes);
    };
    test::WriteVideo(folder.File("road.mp4"), plan);
    return folder.File("road.mp4");
}

/// What a mask holds.
struct Desk {
    explicit Desk(const std::string& video, const RoadCamera& camera = {})
    {
        EXPECT_NE(reader.OpenVideo(video), 0) << reader.Reason();
        EXPECT_NE(detector.ReadModel(kModel, ""), 0) << detector.Reason();
        lens.SetCameraParam(camera.width, camera.height, camera.strength);
        tracks.emplace(reader.GetWidth(), reader.GetHeight());
    }
    FrameSearch With(const CPerspectiveRectifier& road) { return {&detector, &road, &lens, 0.0, 0.0}; }
    AnalysisResult Analyze(const CPerspectiveRectifier& road)
    {
        return AnalyzeVideo(reader, With(road), *tracks, [](int, int) { return true; });
    }

    CVideoReader reader;
    CYoloV5ORTDetector detector = StandardDetector();
    CDistortionRectifier lens;
    std::optional<VideoTracks> tracks;
};

/// The vehicle that an entry is of: the one whose box's centre is nearest in the raw frame.
std::pair<std::size_t, double> Nearest(const VideoEntry& entry, const RoadCamera& camera)
{
    std::pair<std::size_t, double> best{0, 1e9};
    for (std::size_t i = 0; i < Vehicles().size(); ++i)
        if (const double d = Distance(Vehicles()[i].At(entry.time, camera).Centre(), entry.point); d < best.second)
            best = {i, d};
    return best;
}

/// Each vehicle that is wholly in the picture has one track, and no track mixes two. Returns track numbers by vehicle.
std::map<std::size_t, int> OneTrackEach(const VideoTracks& tracks, double tolerance, const RoadCamera& camera = {})
{
    std::map<std::size_t, int> trackOf;
    for (const auto& [id, entries] : tracks.Tracks()) {
        const std::size_t vehicle = Nearest(entries[entries.size() / 2], camera).first;
        EXPECT_TRUE(trackOf.emplace(vehicle, id).second) << "two tracks for vehicle " << vehicle;
        for (const VideoEntry& entry : entries) {
            if (entry.cut)
                continue;
            const auto [nearest, distance] = Nearest(entry, camera);
            EXPECT_EQ(nearest, vehicle);
            EXPECT_LT(distance, tolerance) << "vehicle " << vehicle << ", frame " << entry.frame;
        }
    }
    EXPECT_EQ(trackOf.size(), Vehicles().size());
    return trackOf;
}

TEST(VideoAnalysis, SpeedsOfDetectedVehiclesAreTrue)
{
    const test::TemporaryFolder folder;
    Desk desk(WriteRoad(folder, 60, 1.0));
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf({}, test::kLane));
    const AnalysisResult result = desk.Analyze(road);
    ASSERT_EQ(result.end, AnalysisEnd::complete) << result.reason;
    EXPECT_EQ(result.frames, 60);
    EXPECT_EQ(result.unreadable, 0);
    const auto trackOf = OneTrackEach(*desk.tracks, 6.0);
    SpeedInput input;
    input.fps = desk.reader.GetFPS();
    input.pointHeight = kBoxHeight;
    const VideoSpeeds speeds(road, input);
    std::vector<double> errors;
    for (const auto& [vehicle, id] : trackOf)
        for (const VideoSpeed& speed : speeds.Of(desk.tracks->Tracks().at(id)))
            if (speed.smooth)
                errors.push_back(std::fabs(*speed.smooth - std::fabs(Vehicles()[vehicle].v) * kKmh));
    ASSERT_GT(errors.size(), 150U);
    const auto at = [](std::vector<double>& list, double part) {
        std::sort(list.begin(), list.end());
        return list[static_cast<std::size_t>(part * static_cast<double>(list.size() - 1))];
    };
    EXPECT_LT(at(errors, 0.5), 0.5);
    EXPECT_LT(at(errors, 0.95), 2.0);
}

/// What was followed without a calibration is as good afterwards: entries lie in the raw frame.
TEST(VideoAnalysis, TracksAreTheSameBeforeACalibration)
{
    const test::TemporaryFolder folder;
    const std::string video = WriteRoad(folder, 16);
    Desk before(video);
    Desk after(video);
    ASSERT_EQ(before.Analyze({}).end, AnalysisEnd::complete);
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf({}, test::kLane));
    ASSERT_EQ(after.Analyze(road).end, AnalysisEnd::complete);
    const auto earlier = OneTrackEach(*before.tracks, 3.0);
    const auto later = OneTrackEach(*after.tracks, 3.0);
    ASSERT_EQ(earlier.size(), later.size());
    for (const auto& [vehicle, id] : earlier) {
        const auto& a = before.tracks->Tracks().at(id);
        const auto& b = after.tracks->Tracks().at(later.at(vehicle));
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i)
            EXPECT_EQ(Distance(a[i].point, b[i].point), 0.0);
    }
}

/// Frames are straightened before they are searched; the entries lie where the lens has put the vehicle.
TEST(VideoAnalysis, WithALensEntriesLieInTheRawFrame)
{
    RoadCamera camera;
    camera.strength = 30.0;
    const test::TemporaryFolder folder;
    Desk desk(WriteRoad(folder, 12, 0.0, camera), camera);
    ASSERT_EQ(desk.Analyze(test::Calibrated(test::InputOf(camera, test::kLane))).end, AnalysisEnd::complete);
    OneTrackEach(*desk.tracks, 3.0, camera);
}

/// As while a video is played.
TEST(VideoAnalysis, FramesOneByOneGiveTheSameAsAllInTurn)
{
    const test::TemporaryFolder folder;
    const std::string video = WriteRoad(folder, 12);
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf({}, test::kLane));
    Desk all(video);
    ASSERT_EQ(all.Analyze(road).end, AnalysisEnd::complete);
    Desk played(video);
    for (int frame = 0; frame < 12; ++frame) {
        const SearchedFrame found = DetectAndTrack(played.With(road), played.reader, frame, *played.tracks);
        ASSERT_EQ(found.reason, "");
        EXPECT_EQ(played.reader.GetFramePos(), frame + 1);
        ASSERT_EQ(found.seen.size(), 3U);
        for (const SeenVehicle& seen : found.seen) {
            const VideoEntry& entry = played.tracks->Tracks().at(seen.id).back();
            EXPECT_EQ(entry.frame, frame);
            EXPECT_EQ(Distance(entry.point, seen.box.Centre()), 0.0);
            EXPECT_EQ(entry.cut, seen.cut);
        }
    }
    ASSERT_EQ(all.tracks->Tracks().size(), played.tracks->Tracks().size());
    for (const auto& [id, entries] : all.tracks->Tracks()) {
        const auto& others = played.tracks->Tracks().at(id);
        ASSERT_EQ(entries.size(), others.size());
        for (std::size_t i = 0; i < entries.size(); ++i)
            EXPECT_EQ(Distance(entries[i].point, others[i].point), 0.0);
    }
}

TEST(VideoAnalysis, CancelledItKeepsWhatWasFound)
{
    const test::TemporaryFolder folder;
    Desk desk(WriteRoad(folder, 12));
    const CPerspectiveRectifier road;
    std::vector<int> shown;
    const AnalysisResult result = AnalyzeVideo(desk.reader, desk.With(road), *desk.tracks, [&](int frame, int count) {
        shown.push_back(frame);
        EXPECT_EQ(count, 12);
        return frame < 7;
    });
    EXPECT_EQ(result.end, AnalysisEnd::cancelled);
    EXPECT_EQ(result.frames, 7);
    EXPECT_EQ(shown, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    ASSERT_EQ(desk.tracks->Tracks().size(), 3U);
    EXPECT_EQ(desk.tracks->Tracks().at(1).back().frame, 6);
}

TEST(VideoAnalysis, WhatIsMissingIsSaid)
{
    const test::TemporaryFolder folder;
    Desk desk(WriteRoad(folder, 3));
    const CPerspectiveRectifier road;
    const auto ends = [&](CVideoReader& reader, const FrameSearch& with) {
        const AnalysisResult result = AnalyzeVideo(reader, with, *desk.tracks, [](int, int) { return true; });
        EXPECT_EQ(result.end, AnalysisEnd::failed);
        EXPECT_EQ(result.frames, 0);
        EXPECT_TRUE(desk.tracks->Tracks().empty());
        return result.reason;
    };
    CVideoReader closed;
    EXPECT_EQ(ends(closed, desk.With(road)), "Es ist kein Video geöffnet.");
    FrameSearch none = desk.With(road);
    none.detector = nullptr;
    EXPECT_EQ(ends(desk.reader, none), "Die Objekterkennung ist nicht bereit.");
    CYoloV5ORTDetector empty = StandardDetector();
    none.detector = &empty;
    EXPECT_EQ(ends(desk.reader, none), "Für die Objekterkennung ist kein Modell geladen.");
    EXPECT_EQ(DetectAndTrack(desk.With(road), desk.reader, 3, *desk.tracks).reason, "Es ist kein Video geöffnet.");
    // Whatever is thrown inside ends the analysis with its text.
    const AnalysisResult thrown = AnalyzeVideo(desk.reader, desk.With(road), *desk.tracks,
                                               [](int, int) -> bool { throw std::runtime_error("voll"); });
    EXPECT_EQ(thrown.end, AnalysisEnd::failed);
    EXPECT_EQ(thrown.reason, "voll");
}

/// A picture that cannot be decoded shows no vehicle; tracks go on behind it.
TEST(VideoAnalysis, UnreadablePicturesAreCountedAndPassed)
{
    const test::TemporaryFolder folder;
    test::VideoPlan plan;
    plan.format = "avi";
    plan.codec = "mjpeg";
    plan.pixels = AV_PIX_FMT_YUVJ420P;
    plan.width = 640;
    plan.height = 360;
    plan.timeBase = {1, 25};
    plan.times = test::EvenTimes(12, 1);
    plan.draw = [](AVFrame& frame, int number) {
        test::DrawBoxes(frame, {{{100.0 + 8.0 * number, 150.0, 80.0, 50.0}, {1, 0, 0}}});
    };
    test::WriteVideo(folder.File("v.avi"), plan);
    std::string bytes = folder.Read("v.avi");
    std::size_t at = bytes.find("movi");
    for (int picture = 0; picture < 5; ++picture)
        at = bytes.find("\xFF\xD8\xFF", at + 3);
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, 400, 400, '\0');
    folder.Write("v.avi", bytes);
    Desk desk(folder.File("v.avi"));
    const AnalysisResult result = desk.Analyze({});
    EXPECT_EQ(result.end, AnalysisEnd::complete);
    EXPECT_EQ(result.frames, 12);
    EXPECT_EQ(result.unreadable, 1);
    ASSERT_EQ(desk.tracks->Tracks().size(), 1U);
    std::vector<int> frames;
    for (const VideoEntry& entry : desk.tracks->Tracks().at(1))
        frames.push_back(entry.frame);
    EXPECT_EQ(frames, (std::vector<int>{0, 1, 2, 3, 5, 6, 7, 8, 9, 10, 11}));
}

TEST(VideoAnalysis, TheCommandLineAnalysesAVideo)
{
    const test::TemporaryFolder folder;
    WriteRoad(folder, 20);
    const RoadInput input = test::InputOf({}, test::kLane);
    nlohmann::json job{{"video", "road.mp4"}, {"model", kModel}, {"distances", input.distances}, {"minArea", 100}};
    for (const VisionPoint p : input.points)
        job["points"].push_back({p.x, p.y});
    const auto run = [&](const std::string& program = test::CliPath()) {
        folder.Write("job.json", job.dump());
        return test::RunCli({"eval", "VideoSpeeds", folder.File("job.json")}, {}, program);
    };
    const auto output = run();
    ASSERT_EQ(output.exit, 0) << output.err;
    const auto results = nlohmann::json::parse(output.out);
    EXPECT_NEAR(results.at("factor").get<double>(), 1.0 - kBoxHeight / 6.0, 1e-6);
    ASSERT_EQ(results.at("tracks").size(), 3U);
    for (const auto& track : results["tracks"])
        EXPECT_EQ(track.at("v").size() + 2, track.at("t").size());
    // Between 40 and 52 m a box has 2,000 to 3,400 px², the near vehicle's begins with 29,000.
    const auto tracks = [&](int least, int most) {
        job["minArea"] = least;
        job["maxArea"] = most;
        return nlohmann::json::parse(run().out).at("tracks").size();
    };
    EXPECT_EQ(tracks(10000, 0), 1U);
    EXPECT_EQ(tracks(100, 5000), 2U);
    tracks(100, 0);
    // The model of the workstation lies beside its program.
    job.erase("model");
    EXPECT_EQ(run().exit, 3);
    const auto programs = std::filesystem::path(test::CliPath()).parent_path();
    std::filesystem::copy_file(test::CliPath(), folder.File("tavelin-cli"));
    for (const char* library : {"libClassKrn.so", "libRuvMod.so", "libRuvFunc.so", "libRuvVideo.so"})
        std::filesystem::create_symlink(programs / library, folder.File(library));
    folder.Folder("Dnn");
    std::filesystem::copy_file(kModel, folder.File("Dnn/detector.onnx"));
    const auto beside = run(folder.File("tavelin-cli"));
    EXPECT_EQ(beside.exit, 0) << beside.err;
    EXPECT_EQ(beside.out, output.out);
    job["width"] = 1920;
    EXPECT_EQ(run().exit, 3);
    job.erase("width");
    job["video"] = "none.mp4";
    EXPECT_NE(run().err.find("Die Datei gibt es nicht."), std::string::npos);
}

} // namespace
