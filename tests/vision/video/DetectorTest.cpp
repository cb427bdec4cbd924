// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A network whose answers are known: six colours on a grey road, one of them no vehicle.
#include "host/vision/CObjDetector.h"
#include "tests/cli/CliProgram.h"
#include "tests/support/TemporaryFolder.h"
#include "vision/ProgramPath.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <random>
#include <set>

namespace
{

const std::string kFolder = std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/";
const std::string kModel = kFolder + "detector.onnx";

/// Another network of the same kind.
std::string Made(const test::TemporaryFolder& folder, const std::string& name, const std::string& options)
{
    const std::string command = "python3 -I '" + kFolder + "detector.py' " + options + " '" + folder.File(name) + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return folder.File(name);
}

TEST(Detector, TheNetworkIsWhatItsScriptWrites)
{
    const test::TemporaryFolder folder;
    EXPECT_EQ(test::Content(Made(folder, "d.onnx", "")), test::Content(kModel));
}

const cv::Scalar kGrey(102, 102, 102);
const cv::Scalar kRed(0, 0, 255);
const cv::Scalar kMagenta(255, 0, 255);
constexpr int kCar = 2;
constexpr int kBus = 5;

cv::Mat Picture(int width, int height, const std::vector<std::pair<cv::Rect, cv::Scalar>>& boxes)
{
    cv::Mat image(height, width, CV_8UC3, kGrey);
    for (const auto& [box, colour] : boxes)
        cv::rectangle(image, box, colour, cv::FILLED);
    return image;
}

struct Values {
    int swapRB = 1;
    float score = 0.4F;
    float overlap = 0.4F;
    double minArea = 0.0;
    double maxArea = 0.0;
    std::string model = kModel;
};

std::vector<VideoBox> Found(const cv::Mat& image, const Values& values = {})
{
    CYoloV5ORTDetector detector(values.swapRB, values.score, values.overlap, 0.0, 1.0 / 255.0, {512, 512}, 0, -1);
    EXPECT_NE(detector.ReadModel(values.model, ""), 0) << detector.Reason();
    detector.SetMinArea(values.minArea);
    detector.SetMaxArea(values.maxArea);
    std::vector<VideoBox> boxes{VideoBox{}};
    EXPECT_NE(detector.Detect(image, boxes), 0) << detector.Reason();
    return boxes;
}

/// The bars of the fitted picture lie above and below, or left and right; edges on whole pixels of the network's input
/// are exact, others within one of them.
TEST(Detector, BoxesAreWhereTheyAreDrawn)
{
    struct Case {
        int width, height;
        cv::Rect box;
        double tolerance;
    };
    for (const Case& c : {Case{1280, 720, {200, 300, 120, 60}, 0.02}, Case{720, 1280, {100, 20, 50, 125}, 0.02},
                          Case{512, 512, {7, 9, 31, 17}, 0.02}, Case{1920, 1080, {1003, 501, 77, 43}, 2.0},
                          Case{200, 101, {31, 41, 20, 30}, 0.4},
                          // 40 rows become 14 and not 13.7.
                          Case{1500, 40, {0, 20, 750, 20}, 0.1}}) {
        const auto boxes = Found(Picture(c.width, c.height, {{c.box, kRed}}));
        ASSERT_EQ(boxes.size(), 1U) << c.width;
        EXPECT_NEAR(boxes[0].x, c.box.x, c.tolerance) << c.width;
        EXPECT_NEAR(boxes[0].y, c.box.y, c.tolerance) << c.width;
        EXPECT_NEAR(boxes[0].w, c.box.width, c.tolerance) << c.width;
        EXPECT_NEAR(boxes[0].h, c.box.height, c.tolerance) << c.width;
        EXPECT_EQ(boxes[0].classId, kCar);
        EXPECT_NEAR(boxes[0].score, 1.0, 1e-6);
    }
    EXPECT_TRUE(Found(Picture(1280, 720, {})).empty());
}

TEST(Detector, RedIsFirstWhenSwappedOnly)
{
    const cv::Mat image = Picture(512, 512, {{{100, 100, 60, 40}, kRed}});
    EXPECT_EQ(Found(image).at(0).classId, kCar);
    Values asStored;
    asStored.swapRB = 0;
    EXPECT_EQ(Found(image, asStored).at(0).classId, kBus);
}

/// The network gives a second box around each, 1.25 times as wide and high and with the score 0.9: common area over the
/// area of both is 1 / 1.25².
TEST(Detector, OfOverlappingBoxesTheSurestCounts)
{
    const cv::Mat image = Picture(512, 512, {{{100, 200, 80, 40}, kRed}});
    Values values;
    values.overlap = 0.65F;
    const auto both = Found(image, values);
    ASSERT_EQ(both.size(), 2U);
    EXPECT_NEAR(both[1].score, 0.9, 1e-6);
    EXPECT_NEAR(both[1].x, 90.0, 0.02);
    EXPECT_NEAR(both[1].y, 195.0, 0.02);
    EXPECT_NEAR(both[1].w, 100.0, 0.02);
    EXPECT_NEAR(both[1].h, 50.0, 0.02);
    values.score = 0.91F;
    EXPECT_EQ(Found(image, values).size(), 1U);
    values.score = 0.89F;
    EXPECT_EQ(Found(image, values).size(), 2U);
    values.overlap = 0.63F;
    EXPECT_EQ(Found(image, values).size(), 1U);
    // At the picture's edge a box ends.
    values.score = 0.4F;
    values.overlap = 0.8F;
    const auto atEdge = Found(Picture(512, 512, {{{0, 0, 80, 40}, kRed}}), values);
    ASSERT_EQ(atEdge.size(), 2U);
    EXPECT_NEAR(atEdge[1].x, 0.0, 1e-9);
    EXPECT_NEAR(atEdge[1].w, 90.0, 0.02);
}

TEST(Detector, TheAreaHasLimits)
{
    const cv::Mat image = Picture(1280, 720, {{{200, 300, 120, 60}, kRed}, {{800, 300, 40, 30}, {0, 255, 0}}});
    const auto widths = [&](double low, double high) {
        Values values;
        values.minArea = low;
        values.maxArea = high;
        std::vector<double> result;
        for (const VideoBox& box : Found(image, values))
            result.push_back(std::round(box.w));
        std::sort(result.begin(), result.end());
        return result;
    };
    using Widths = std::vector<double>;
    EXPECT_EQ(widths(0.0, 0.0), (Widths{40.0, 120.0}));
    EXPECT_EQ(widths(1190.0, 7220.0), (Widths{40.0, 120.0}));
    // The less sure box around the small one would be large enough: it does not count in its place.
    EXPECT_EQ(widths(1220.0, 0.0), Widths{120.0});
    EXPECT_EQ(widths(0.0, 7180.0), Widths{40.0});
}

/// With 80 classes a person is no vehicle; with any other number whatever is found counts.
TEST(Detector, OfEightyClassesThoseOfVehiclesCount)
{
    std::vector<std::pair<cv::Rect, cv::Scalar>> boxes;
    const std::vector<cv::Scalar> colours{kRed, {0, 255, 0}, {255, 0, 0}, {0, 255, 255}, {255, 255, 0}, kMagenta};
    for (std::size_t i = 0; i < colours.size(); ++i)
        boxes.emplace_back(cv::Rect(10 + 80 * static_cast<int>(i), 100 + 50 * static_cast<int>(i), 40, 20), colours[i]);
    const cv::Mat image = Picture(512, 512, boxes);
    std::set<int> classes;
    for (const VideoBox& box : Found(image))
        classes.insert(box.classId);
    EXPECT_EQ(classes, (std::set<int>{1, 2, 3, 5, 7}));
    const test::TemporaryFolder folder;
    Values other;
    other.model = Made(folder, "d.onnx", "--classes 8");
    EXPECT_EQ(Found(image, other).size(), 6U);
}

std::string Refusal(const std::string& path, int crop = 0, int device = -1)
{
    CYoloV5ORTDetector detector(1, 0.4F, 0.4F, 0.0, 1.0 / 255.0, {512, 512}, crop, device);
    EXPECT_NE(detector.ReadModel(kModel, "") != 0, crop != 0 || device != -1);
    EXPECT_EQ(detector.ReadModel(path, ""), 0) << path;
    const std::string reason = detector.Reason();
    // What was loaded before is not used in its place.
    std::vector<VideoBox> boxes;
    EXPECT_EQ(detector.Detect(Picture(512, 512, {{{100, 100, 60, 40}, kRed}}), boxes), 0);
    EXPECT_EQ(detector.Reason(), "Für die Objekterkennung ist kein Modell geladen.");
    return reason;
}

TEST(Detector, WhatIsNoUsableNetworkIsRefusedWithAReason)
{
    const test::TemporaryFolder folder;
    const std::string good = test::Content(kModel);
    folder.Write("empty.onnx", "");
    folder.Write("text.onnx", "Das ist kein Netz.\n");
    folder.Write("cut.onnx", good.substr(0, good.size() / 2));
    folder.Folder("folder.onnx");
    // Weights that are fewer than their dimensions say.
    std::string few = good;
    const auto weights = few.find(std::string("\x08\x06\x08\x03\x08\x01\x08\x01", 8));
    ASSERT_NE(weights, std::string::npos);
    few[weights + 1] = '\x7F';
    folder.Write("few.onnx", few);
    const std::string damaged = "Die Datei ist kein ONNX-Modell, oder sie ist beschädigt.";
    EXPECT_EQ(Refusal(folder.File("missing.onnx")),
              "Das Modell kann nicht gelesen werden: Datei oder Ordner nicht vorhanden.");
    EXPECT_FALSE(Refusal(folder.File("folder.onnx")).empty());
    EXPECT_FALSE(Refusal("/dev/zero").empty());
    for (const char* name : {"empty.onnx", "text.onnx", "cut.onnx", "few.onnx"})
        EXPECT_EQ(Refusal(folder.File(name)), damaged) << name;
    EXPECT_EQ(Refusal(Made(folder, "half.onnx", "--half")),
              "Das Modell rechnet mit 16-Bit-Zahlen; gebraucht wird eines mit 32-Bit-Zahlen.");
    EXPECT_EQ(Refusal(Made(folder, "large.onnx", "--size 640")),
              "Das Modell erwartet Bilder von 640 × 640 Pixeln, nicht von 512 × 512.");
    EXPECT_EQ(Refusal(Made(folder, "none.onnx", "--classes 0")), "Die Ausgabe des Modells ist nicht die von YOLOv5.");
    EXPECT_EQ(Refusal(kModel, 1), "Diese Einstellung der Objekterkennung gibt es nicht.");
    EXPECT_EQ(Refusal(kModel, 0, 0), "Diese Einstellung der Objekterkennung gibt es nicht.");
}

/// Whatever is overwritten, the network is refused or gives numbers.
TEST(Detector, OverwrittenNetworksAreRefusedOrCompute)
{
    const test::TemporaryFolder folder;
    const std::string good = test::Content(kModel);
    const cv::Mat image = Picture(512, 512, {{{100, 100, 60, 40}, kRed}});
    std::mt19937 random(9);
    int refused = 0;
    for (int round = 0; round < 60; ++round) {
        std::string bytes = good;
        for (int i = 0; i < 3; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        folder.Write("d.onnx", bytes);
        CYoloV5ORTDetector detector = StandardDetector();
        std::vector<VideoBox> boxes;
        if (detector.ReadModel(folder.File("d.onnx"), "") == 0) {
            EXPECT_FALSE(detector.Reason().empty());
            ++refused;
        } else {
            detector.Detect(image, boxes);
        }
        for (const VideoBox& box : boxes)
            EXPECT_TRUE(box.x >= 0.0 && box.y >= 0.0 && box.x + box.w <= 512.0 && box.y + box.h <= 512.0);
    }
    EXPECT_GT(refused, 5);
    EXPECT_LT(refused, 60);
}

TEST(Detector, APictureThatIsNoneIsRefused)
{
    CYoloV5ORTDetector detector = StandardDetector();
    ASSERT_NE(detector.ReadModel(kModel, ""), 0);
    std::vector<VideoBox> boxes;
    for (const cv::Mat& image : {cv::Mat(), cv::Mat(10, 10, CV_8UC1), cv::Mat(10, 10, CV_32FC3)}) {
        EXPECT_EQ(detector.Detect(image, boxes), 0);
        EXPECT_EQ(detector.Reason(), "Das Bild ist leer oder kein Farbbild.");
    }
    // One pixel, and one that is all bars, are pictures.
    EXPECT_NE(detector.Detect(cv::Mat(1, 1, CV_8UC3, kRed), boxes), 0);
    EXPECT_NE(detector.Detect(cv::Mat(1, 4000, CV_8UC3, kGrey), boxes), 0);
}

TEST(Detector, ItsNetworkLiesBesideTheProgram)
{
    EXPECT_EQ(DetectorModelPath("/opt/tavelin/bin/tavelin"), "/opt/tavelin/bin/Dnn/detector.onnx");
    EXPECT_EQ(DetectorModelPath("/tavelin"), "/Dnn/detector.onnx");
    EXPECT_FALSE(DetectorModelPath("tavelin"));
    EXPECT_EQ(std::filesystem::path(HostProgramPath()).filename(), "ruvmod-tests");
}

} // namespace
