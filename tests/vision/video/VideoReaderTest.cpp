// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Videos made here: every picture shows its number, so a wrong picture at a time is seen.
#include "host/CDC.h"
#include "host/vision/CVideoReader.h"
#include "tests/cli/CliProgram.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/video/VideoMaker.h"

#include <gtest/gtest.h>

#include <opencv2/core.hpp>

#include <chrono>
#include <filesystem>
#include <random>

namespace
{

using test::EvenTimes;
using test::NumberIn;
using test::VideoPlan;

constexpr AVRational kTicks{1, 12800};

/// 30 to 50 ms apart and no pattern.
std::vector<std::int64_t> UnevenTimes(int count)
{
    std::mt19937 random(7);
    std::vector<std::int64_t> times{0};
    while (static_cast<int>(times.size()) < count)
        times.push_back(times.back() + 384 + static_cast<std::int64_t>(random() % 256U));
    return times;
}

std::vector<std::int64_t> Shifted(std::vector<std::int64_t> times, std::int64_t by)
{
    for (std::int64_t& time : times)
        time += by;
    return times;
}

struct Case {
    std::string name;
    VideoPlan plan;
    int hidden = 0; ///< pictures before the first one shown
    bool counted = false;
    std::vector<std::int64_t> shownTimes{}; ///< in the time base; empty: those of the plan
};

VideoPlan Plan(std::vector<std::int64_t> times, int bFrames = 0)
{
    VideoPlan plan;
    plan.times = std::move(times);
    plan.bFrames = bFrames;
    return plan;
}

VideoPlan Avi(const std::string& codec, int count, int bFrames = 0)
{
    VideoPlan plan = Plan(EvenTimes(count, 1), bFrames);
    plan.format = "avi";
    plan.codec = codec;
    plan.timeBase = {1, 25};
    if (codec == "mjpeg")
        plan.pixels = AV_PIX_FMT_YUVJ420P;
    return plan;
}

std::vector<Case> Cases()
{
    std::vector<Case> cases;
    cases.push_back({"Even", Plan(EvenTimes(60, 512))});
    cases.push_back({"BPictures", Plan(EvenTimes(90, 512), 3)});
    cases.push_back({"VariableRate", Plan(UnevenTimes(150), 2)});
    cases.push_back({"LateStart", Plan(Shifted(EvenTimes(60, 512), 12800 * 3), 2)});
    cases.push_back({"EditList", Plan(Shifted(EvenTimes(60, 512), -512 * 17), 2), 17});
    cases.push_back({"LongGap", Plan({0, 512, 1024, 12800 * 60, 12800 * 60 + 512}, 2)});
    cases.push_back({"OnePicture", Plan({0})});
    Case deep{"TenBits", Plan(EvenTimes(40, 512), 2)};
    deep.plan.pixels = AV_PIX_FMT_YUV420P10LE;
    cases.push_back(deep);
    Case mov{"Mov", Plan(UnevenTimes(50))};
    mov.plan.format = "mov";
    mov.plan.codec = "mpeg4";
    cases.push_back(mov);
    cases.push_back({"AviMjpeg", Avi("mjpeg", 50)});
    cases.push_back({"AviMpeg4", Avi("mpeg4", 80)});
    cases.push_back({"AviWithoutTimes", Avi("libx264", 90, 3), 0, true});
    cases.push_back({"AviMpeg4BPictures", Avi("mpeg4", 60, 2), 0, true});
    Case gaps{"AviGaps", Avi("mpeg4", 40)};
    gaps.plan.emptyAfter = {4, 5, 20};
    for (int i = 0; i < 40; ++i)
        gaps.shownTimes.push_back(i + (i > 4) + (i > 5) + (i > 20));
    cases.push_back(gaps);
    return cases;
}

class VideoReaderCase : public testing::TestWithParam<Case>
{
};

/// Each picture has its own time and shows its own number: in order, wherever one jumps, and stepping back.
TEST_P(VideoReaderCase, TimesAndPicturesAreExact)
{
    const Case& c = GetParam();
    const test::TemporaryFolder folder;
    const std::string path = folder.File("video." + c.plan.format);
    test::WriteVideo(path, c.plan);
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(path), 0) << reader.Reason();
    EXPECT_EQ(reader.IsCounted(), c.counted);
    EXPECT_EQ(reader.MissingFrames(), 0);
    EXPECT_EQ(reader.GetWidth(), 128);
    EXPECT_EQ(reader.GetHeight(), 64);
    const auto& ticks = c.shownTimes.empty() ? c.plan.times : c.shownTimes;
    const int count = static_cast<int>(ticks.size()) - c.hidden;
    ASSERT_EQ(reader.GetFrameCount(), count);
    const auto at = [&](int frame) { return static_cast<std::size_t>(frame + c.hidden); };
    for (int i = 0; i < count; ++i)
        EXPECT_DOUBLE_EQ(reader.FrameTimes()[static_cast<std::size_t>(i)],
                         static_cast<double>(ticks[at(i)] - ticks[at(0)]) * c.plan.timeBase.num / c.plan.timeBase.den);

    const auto expect = [&](int frame) {
        cv::Mat image;
        double time = -1.0;
        ASSERT_NE(reader.SetFramePos(frame), 0);
        ASSERT_NE(reader.ReadFrame(image, time), 0) << frame << ": " << reader.Reason();
        ASSERT_EQ(NumberIn(image), frame + c.hidden);
        EXPECT_EQ(time, reader.FrameTimes()[static_cast<std::size_t>(frame)]);
        EXPECT_FALSE(reader.IsDamaged(frame));
    };
    for (int i = 0; i < count; ++i)
        expect(i);
    // A new reader for each jump, so that no kept picture answers.
    std::mt19937 random(3);
    for (int i = 0; i < 100; ++i) {
        if (i % 10 == 0) {
            ASSERT_NE(reader.OpenVideo(path), 0);
        }
        expect(static_cast<int>(random() % static_cast<unsigned>(count)));
    }
    ASSERT_NE(reader.OpenVideo(path), 0);
    for (int i = count - 1; i >= 0; --i)
        expect(i);
    EXPECT_EQ(reader.SetFramePos(count), 0);
    EXPECT_EQ(reader.SetFramePos(-1), 0);
}

INSTANTIATE_TEST_SUITE_P(Videos, VideoReaderCase, testing::ValuesIn(Cases()),
                         [](const auto& each) { return each.param.name; });

/// Eight ways to hold a camera, mirrored ones among them, and pixels that are no squares.
TEST(VideoReader, TheDisplayMatrixAndAspectMakeThePictureAsItIsShown)
{
    const test::TemporaryFolder folder;
    for (const int rotation : {0, 90, 180, 270})
        for (const bool upsideDown : {false, true}) {
            VideoPlan plan = Plan(EvenTimes(12, 512));
            plan.rotation = rotation;
            plan.upsideDown = upsideDown;
            plan.aspect = {3, 2};
            const std::string path = folder.File(std::to_string(rotation) + (upsideDown ? "m.mp4" : ".mp4"));
            test::WriteVideo(path, plan);
            CVideoReader reader;
            ASSERT_NE(reader.OpenVideo(path), 0) << reader.Reason();
            EXPECT_EQ(reader.Rotation(), rotation);
            EXPECT_EQ(reader.GetWidth(), rotation % 180 == 0 ? 192 : 64);
            EXPECT_EQ(reader.GetHeight(), rotation % 180 == 0 ? 64 : 192);
            // Out of order, so that pictures are decoded before they are asked for.
            for (const int frame : {11, 0, 5}) {
                cv::Mat image;
                double time = 0.0;
                reader.SetFramePos(frame);
                ASSERT_NE(reader.ReadFrame(image, time), 0);
                ASSERT_EQ(image.cols, reader.GetWidth());
                cv::Mat back = image;
                for (int turned = rotation; turned != 0; turned -= 90) {
                    const cv::Mat before = back.clone();
                    cv::rotate(before, back, cv::ROTATE_90_COUNTERCLOCKWISE);
                }
                if (upsideDown)
                    cv::flip(back.clone(), back, 0);
                EXPECT_EQ(NumberIn(back), frame) << rotation << upsideDown;
            }
        }
}

TEST(VideoReader, ATimeGoesToTheLastPictureNotLater)
{
    const test::TemporaryFolder folder;
    test::WriteVideo(folder.File("v.mp4"), Plan(EvenTimes(10, 512)));
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mp4")), 0);
    EXPECT_EQ(reader.FrameAt(-1.0), 0);
    EXPECT_EQ(reader.FrameAt(0.0799), 1);
    EXPECT_EQ(reader.FrameAt(0.08), 2);
    EXPECT_EQ(reader.FrameAt(100.0), 9);
    EXPECT_NEAR(reader.GetFPS(), 25.0, 1e-12);
}

TEST(VideoReader, SteppingBackReadsKeptPictures)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(EvenTimes(80, 512), 2);
    plan.width = 1280;
    plan.height = 720;
    plan.keyDistance = 80;
    test::WriteVideo(folder.File("v.mp4"), plan);
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mp4")), 0);
    cv::Mat image;
    double time = 0.0;
    reader.SetFramePos(79);
    ASSERT_NE(reader.ReadFrame(image, time), 0);
    for (int i = 78; i > 40; --i) {
        reader.SetFramePos(i);
        const auto start = std::clock();
        ASSERT_NE(reader.ReadFrame(image, time), 0);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0.03) << i;
        ASSERT_EQ(NumberIn(image), i);
    }
}

std::string Refusal(const std::string& path)
{
    CVideoReader reader;
    EXPECT_EQ(reader.OpenVideo(path), 0) << path;
    EXPECT_EQ(reader.IsOpened(), 0);
    EXPECT_EQ(reader.GetFrameCount(), 0);
    cv::Mat image;
    double time = 0.0;
    EXPECT_EQ(reader.ReadFrame(image, time), 0);
    return reader.OpenVideo(path) == 0 ? reader.Reason() : "opened";
}

/// The bytes of the first box of this name are handed to `change`, from its name on.
template <class F>
void ChangeBox(const test::TemporaryFolder& folder, const std::string& from, const std::string& to,
               const std::string& box, F change)
{
    std::string bytes = folder.Read(from);
    const auto at = bytes.find(box);
    ASSERT_NE(at, std::string::npos) << box;
    change(bytes, at);
    folder.Write(to, bytes);
}

TEST(VideoReader, WhatIsNoVideoIsRefusedWithAReason)
{
    const test::TemporaryFolder folder;
    test::WriteVideo(folder.File("good.mp4"), Plan(EvenTimes(30, 512), 2));
    test::WriteVideo(folder.File("good.avi"), Avi("mjpeg", 30));
    const std::string good = folder.Read("good.mp4");
    folder.Write("empty.mp4", "");
    folder.Write("text.mp4", "Das ist kein Video.\n");
    folder.Write("list.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\ngood.mp4\n#EXT-X-ENDLIST\n");
    folder.Write("concat.mp4", "ffconcat version 1.0\nfile good.mp4\n");
    folder.Write("cut.mp4", good.substr(0, good.find("moov")));
    folder.Folder("folder.mp4");
    // All pictures take no time; in the AVI a picture's length is not said at all.
    ChangeBox(folder, "good.mp4", "still.mp4", "stts",
              [](std::string& b, std::size_t at) { b.replace(at + 16, 4, 4, '\0'); });
    for (const char* box : {"ctts", "edts"})
        ChangeBox(folder, "still.mp4", "still.mp4", box,
                  [](std::string& b, std::size_t at) { b.replace(at, 4, "free"); });
    ChangeBox(folder, "good.avi", "length.avi", "vids", [](std::string& b, std::size_t at) {
        b.replace(at + 20, 8, 8, '\0');
        b.replace(b.find("avih") + 8, 4, 4, '\0');
    });
    test::WriteSound(folder.File("sound.mp4"));

    EXPECT_EQ(Refusal(folder.File("missing.mp4")), "Die Datei gibt es nicht.");
    EXPECT_EQ(Refusal(folder.File("empty.mp4")), "Die Datei ist leer.");
    EXPECT_EQ(Refusal(folder.File("folder.mp4")), "Das ist keine gewöhnliche Datei.");
    EXPECT_EQ(Refusal("/dev/zero"), "Das ist keine gewöhnliche Datei.");
    EXPECT_EQ(Refusal("http://localhost/good.mp4"), "Die Datei gibt es nicht.");
    for (const char* name : {"text.mp4", "list.mp4", "concat.mp4", "cut.mp4"})
        EXPECT_EQ(Refusal(folder.File(name)), "Die Datei ist kein MP4-, MOV- oder AVI-Video, oder sie ist beschädigt.")
            << name;
    EXPECT_EQ(Refusal(folder.File("still.mp4")), "Alle Bilder des Videos haben dieselbe Zeit.");
    EXPECT_EQ(Refusal(folder.File("length.avi")), "Die Datei sagt nicht, wie lange ein Bild dauert.");
    EXPECT_EQ(Refusal(folder.File("sound.mp4")), "Die Datei enthält kein Video.");
}

TEST(VideoReader, WhatIsLeftOfACutFileIsReadAndTheRestIsSaid)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(EvenTimes(60, 512));
    plan.format = "avi";
    plan.codec = "mjpeg";
    plan.pixels = AV_PIX_FMT_YUVJ420P;
    plan.timeBase = {1, 25};
    plan.times = EvenTimes(60, 1);
    test::WriteVideo(folder.File("good.avi"), plan);
    folder.Write("cut.avi", folder.Read("good.avi").substr(0, std::filesystem::file_size(folder.File("good.avi")) / 2));
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("cut.avi")), 0) << reader.Reason();
    EXPECT_GT(reader.GetFrameCount(), 20);
    EXPECT_LT(reader.GetFrameCount(), 40);
    EXPECT_EQ(reader.MissingFrames(), 60 - reader.GetFrameCount());
    cv::Mat image;
    double time = 0.0;
    for (int i = 0; i + 1 < reader.GetFrameCount(); ++i) {
        ASSERT_NE(reader.ReadFrame(image, time), 0) << i;
        EXPECT_EQ(NumberIn(image), i);
    }
}

/// Any bytes of the pictures may be wrong: a picture that was read is the right one or marked as damaged.
TEST(VideoReader, OverwrittenBytesAreMarked)
{
    const test::TemporaryFolder folder;
    test::WriteVideo(folder.File("good.mp4"), Plan(EvenTimes(60, 512), 2));
    const std::string good = folder.Read("good.mp4");
    std::mt19937 random(5);
    int marked = 0;
    for (int round = 0; round < 20; ++round) {
        std::string bytes = good;
        const std::size_t begin = bytes.find("mdat") + 800;
        const std::size_t end = bytes.find("moov") - 8;
        for (std::size_t i = 0, at = begin + random() % (end - begin - 24); i < 24; ++i)
            bytes[at + i] = static_cast<char>(random());
        folder.Write("bad.mp4", bytes);
        CVideoReader reader;
        ASSERT_NE(reader.OpenVideo(folder.File("bad.mp4")), 0) << reader.Reason();
        ASSERT_EQ(reader.GetFrameCount(), 60);
        cv::Mat image;
        double time = 0.0;
        for (int i = 0; i < 60; ++i) {
            const int read = reader.ReadFrame(image, time);
            EXPECT_NE(read != 0, !reader.Reason().empty());
            marked += reader.IsDamaged(i) ? 1 : 0;
            EXPECT_TRUE(read != 0 || reader.IsDamaged(i));
            if (!reader.IsDamaged(i)) {
                EXPECT_EQ(NumberIn(image), i) << round;
            }
        }
    }
    EXPECT_GT(marked, 20);
    EXPECT_LT(marked, 600); // and not simply all
}

TEST(VideoReader, TheCommandLineListsTheIndex)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(UnevenTimes(20), 2);
    plan.rotation = 90;
    test::WriteVideo(folder.File("v.mp4"), plan);
    const auto output = test::RunCli({"eval", "VideoIndex", folder.File("v.mp4"), "--json"});
    ASSERT_EQ(output.exit, 0) << output.err;
    const auto results = nlohmann::json::parse(output.out).at("results");
    ASSERT_EQ(results.at("times").size(), 20U);
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_DOUBLE_EQ(results["times"][i].get<double>(), static_cast<double>(plan.times[i]) / kTicks.den);
    EXPECT_EQ(results["width"], 64);
    EXPECT_EQ(results["height"], 128);
    EXPECT_EQ(results["rotation"], 90);
    EXPECT_EQ(results["counted"], false);
    const auto refused = test::RunCli({"eval", "VideoIndex", folder.File("none.mp4")});
    EXPECT_EQ(refused.exit, 3);
    EXPECT_NE(refused.err.find("Die Datei gibt es nicht."), std::string::npos);
}

/// The pictures for the screen show the same as those that are analysed, however they are turned.
TEST(VideoReader, PicturesForTheScreenAreThoseOfTheAnalysis)
{
    const test::TemporaryFolder folder;
    for (const int rotation : {0, 90, 180, 270}) {
        SCOPED_TRACE(rotation);
        VideoPlan plan = Plan(EvenTimes(30, 512), 2);
        plan.rotation = rotation;
        plan.width = 136; // no multiple of what a scaler likes
        const std::string path = folder.File("v" + std::to_string(rotation) + ".mp4");
        test::WriteVideo(path, plan);
        CVideoReader reader;
        ASSERT_NE(reader.OpenVideo(path), 0) << reader.Reason();
        cv::Mat image;
        drawing::Bitmap shown;
        double time = 0.0;
        double again = 0.0;
        for (const int frame : {0, 21, 5}) {
            reader.SetFramePos(frame);
            ASSERT_NE(reader.ReadFrame(image, time), 0);
            reader.SetFramePos(frame);
            ASSERT_NE(reader.ReadFrame(shown, again), 0);
            EXPECT_EQ(again, time);
            ASSERT_EQ(shown.width, image.cols);
            ASSERT_EQ(shown.height, image.rows);
            int others = 0;
            for (int y = 0; y < image.rows; ++y)
                for (int x = 0; x < image.cols; ++x) {
                    const std::uint32_t pixel = shown.pixels[static_cast<std::size_t>(y * image.cols + x)];
                    EXPECT_EQ(pixel >> 24U, 0xFFU);
                    const cv::Vec3b bgr = image.at<cv::Vec3b>(y, x);
                    for (int i = 0; i < 3; ++i)
                        others += std::abs(static_cast<int>(pixel >> (8 * i) & 0xFFU) - bgr[i]) > 8 ? 1 : 0;
                }
            EXPECT_EQ(others, 0) << "frame " << frame;
        }
    }
}

} // namespace
