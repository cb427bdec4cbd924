// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Videos that are cut off, too large, change while they are read, or whose reading is given up.
#include "framework/UiThread.h"
#include "host/vision/CVideoReader.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/video/VideoMaker.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

using test::EvenTimes;
using test::NumberIn;
using test::VideoPlan;

VideoPlan Plan(int count, const std::string& codec = "libx264")
{
    VideoPlan plan;
    plan.codec = codec;
    plan.times = EvenTimes(count, 512);
    if (codec == "mjpeg")
        plan.pixels = AV_PIX_FMT_YUVJ420P;
    return plan;
}

/// How many pictures can be read whole; others are marked, and what cannot be read at all has its reason.
int Readable(CVideoReader& reader)
{
    int readable = 0;
    reader.SetFramePos(0);
    for (int i = 0; i < reader.GetFrameCount(); ++i) {
        cv::Mat image;
        double time = 0.0;
        const bool read = reader.ReadFrame(image, time) != 0;
        EXPECT_EQ(read, reader.Reason().empty()) << i;
        EXPECT_TRUE(read || reader.IsDamaged(i)) << i;
        if (reader.IsDamaged(i))
            continue;
        EXPECT_EQ(NumberIn(image), i);
        ++readable;
    }
    return readable;
}

TEST(VideoFaults, AnIndexThatPromisesMoreThanIsThereSaysHowMuch)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(60, "mjpeg");
    plan.format = "mov";
    plan.indexFirst = true;
    test::WriteVideo(folder.File("v.mov"), plan);
    const auto size = std::filesystem::file_size(folder.File("v.mov"));
    std::filesystem::resize_file(folder.File("v.mov"), size - size / 3);
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mov")), 0) << reader.Reason();
    EXPECT_GT(reader.MissingFrames(), 10);
    EXPECT_LT(reader.MissingFrames(), 30);
    EXPECT_EQ(reader.GetFrameCount() + reader.MissingFrames(), 60);
    EXPECT_GE(Readable(reader), reader.GetFrameCount() - 1); // the last one may be cut in itself
}

/// A file that shrinks or goes away after it was opened: what cannot be read has its reason, and nothing ends.
TEST(VideoFaults, AFileThatChangesWhileItIsReadCostsThePicturesItLost)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(60, "mpeg4");
    plan.width = 1280;
    plan.height = 640;
    plan.keyDistance = 1; // large enough that it is not read at once
    test::WriteVideo(folder.File("v.mp4"), plan);
    const auto size = std::filesystem::file_size(folder.File("v.mp4"));
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mp4")), 0) << reader.Reason();
    std::filesystem::resize_file(folder.File("v.mp4"), size / 4);
    const int left = Readable(reader);
    EXPECT_GT(left, 0);
    EXPECT_LT(left, 40);
    EXPECT_EQ(reader.GetFrameCount(), 60);
    std::filesystem::remove(folder.File("v.mp4"));
    EXPECT_EQ(Readable(reader), left);
    EXPECT_EQ(reader.OpenVideo(folder.File("v.mp4")), 0);
    EXPECT_EQ(reader.Reason(), "Die Datei gibt es nicht.");
}

TEST(VideoFaults, PicturesOf8KAreReadAndLargerOnesRefused)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(2, "mjpeg");
    plan.format = "mov";
    plan.width = 7680;
    plan.height = 4320;
    plan.draw = [](AVFrame& frame, int number) {
        for (int plane = 0; plane < 3; ++plane)
            for (int y = 0; y < (plane == 0 ? frame.height : frame.height / 2); ++y)
                std::memset(frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane],
                            plane == 0 ? 60 + 100 * number : 128,
                            static_cast<std::size_t>(frame.width / (plane == 0 ? 1 : 2)));
    };
    test::WriteVideo(folder.File("v.mov"), plan);
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mov")), 0) << reader.Reason();
    EXPECT_EQ(reader.GetWidth(), 7680);
    EXPECT_EQ(reader.GetHeight(), 4320);
    cv::Mat image;
    double time = 0.0;
    for (const int grey : {60, 160}) {
        ASSERT_NE(reader.ReadFrame(image, time), 0) << reader.Reason();
        for (const cv::Point corner : {cv::Point(0, 0), cv::Point(7679, 4319)})
            EXPECT_NEAR(image.at<cv::Vec3b>(corner)[1], grey, 3);
    }
    // Twice as wide, says its description.
    std::string bytes = folder.Read("v.mov");
    const auto entry = bytes.find("stsd") + 16;
    ASSERT_EQ(bytes.substr(entry, 4), "jpeg");
    bytes.replace(entry + 28, 2, std::string("\x3C\x00", 2));
    folder.Write("large.mov", bytes);
    EXPECT_EQ(reader.OpenVideo(folder.File("large.mov")), 0);
    EXPECT_EQ(reader.Reason(), "Die Bilder des Videos sind zu groß.");
}

/// Two pictures at one time are two pictures; a time goes to the later one.
TEST(VideoFaults, PicturesAtTheSameTimeAreAllThere)
{
    const test::TemporaryFolder folder;
    VideoPlan plan = Plan(6, "mjpeg");
    plan.format = "mov";
    plan.times = {0, 512, 513, 1024, 1536, 2048};
    test::WriteVideo(folder.File("v.mov"), plan);
    std::string bytes = folder.Read("v.mov");
    const auto lengths = bytes.find("stts");
    const auto one = bytes.find(std::string("\0\0\0\1\0\0\0\1", 8), lengths + 12);
    ASSERT_LT(one, lengths + 48);
    bytes[one + 7] = '\0';
    folder.Write("v.mov", bytes);
    CVideoReader reader;
    ASSERT_NE(reader.OpenVideo(folder.File("v.mov")), 0) << reader.Reason();
    ASSERT_EQ(reader.GetFrameCount(), 6);
    EXPECT_EQ(reader.FrameTimes()[1], reader.FrameTimes()[2]);
    EXPECT_EQ(reader.FrameAt(reader.FrameTimes()[1]), 2);
    EXPECT_EQ(Readable(reader), 6);
}

/// A long reading asks now and then; given up, no video is open.
TEST(VideoFaults, OpeningCanBeGivenUp)
{
    const test::TemporaryFolder folder;
    test::WriteVideo(folder.File("v.mp4"), Plan(60, "mpeg4"));
    test::RecordingFrontEnd front;
    framework::UiThread thread(front);
    std::vector<double> parts;
    front.progress = [&](const std::string& what, double done) {
        EXPECT_EQ(what, "Video lesen");
        parts.push_back(done);
        return parts.size() < 5;
    };
    CVideoReader reader;
    EXPECT_EQ(reader.OpenVideo(folder.File("v.mp4")), 0);
    EXPECT_EQ(reader.Reason(), "Das Lesen des Videos wurde abgebrochen.");
    EXPECT_EQ(reader.IsOpened(), 0);
    EXPECT_EQ(parts.size(), 5U);
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end()));
    front.progress = nullptr;
    EXPECT_NE(reader.OpenVideo(folder.File("v.mp4")), 0);
}

} // namespace
