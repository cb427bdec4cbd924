// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures that are straightened, seen from above, or drawn on: a spot must lie where its point does.
#include "host/vision/CPerspectiveRectifier.h"
#include "tests/vision/RoadCamera.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

namespace
{

/// Middle of what is bright, continuous.
VisionPoint Spot(const cv::Mat& image)
{
    double sum = 0.0;
    VisionPoint middle;
    for (int y = 0; y < image.rows; ++y)
        for (int x = 0; x < image.cols; ++x) {
            const double value = image.at<cv::Vec3b>(y, x)[0];
            sum += value;
            middle.x += value * (x + 0.5);
            middle.y += value * (y + 0.5);
        }
    return sum > 0.0 ? VisionPoint{middle.x / sum, middle.y / sum} : VisionPoint{-1.0, -1.0};
}

/// A white square of 4 px on black around the point, as near as pixels allow; returns its middle.
VisionPoint Mark(cv::Mat& image, VisionPoint at)
{
    const int x = static_cast<int>(std::lround(at.x)) - 2;
    const int y = static_cast<int>(std::lround(at.y)) - 2;
    cv::rectangle(image, cv::Rect(x, y, 4, 4), cv::Scalar::all(255), cv::FILLED);
    return {x + 2.0, y + 2.0};
}

TEST(RectifiedPicture, ALensMovesSpotsAsItMovesPoints)
{
    for (const double strength : {-40.0, 0.0, 40.0})
        for (const VisionPoint at : {VisionPoint{100.0, 80.0}, VisionPoint{620.0, 300.0}, VisionPoint{320.0, 180.0}}) {
            cv::Mat raw(360, 640, CV_8UC3, cv::Scalar::all(0));
            const VisionPoint middle = Mark(raw, at);
            CDistortionRectifier lens;
            ASSERT_NE(lens.EstimateCameraParam(raw, strength), 0);
            cv::Mat straight;
            ASSERT_NE(lens.RectifyFrame(raw, straight), 0);
            ASSERT_EQ(straight.size(), raw.size());
            const VisionPoint expected = lens.Straighten(middle);
            // Where a positive strength pushes a spot out of the picture there is none.
            if (expected.x < 4.0 || expected.y < 4.0 || expected.x > 636.0 || expected.y > 356.0)
                continue;
            EXPECT_LT(Distance(Spot(straight), expected), 0.3) << strength << ' ' << at.x;
        }
    CDistortionRectifier lens;
    cv::Mat straight;
    EXPECT_EQ(lens.EstimateCameraParam(cv::Mat(), 10.0), 0);
    EXPECT_EQ(lens.RectifyFrame(cv::Mat(), straight), 0);
}

TEST(RectifiedPicture, TheRoadIsSeenFromAbove)
{
    test::RoadCamera camera;
    camera.strength = 20.0;
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf(camera, test::kLane));
    for (const auto& [x, y] : {std::pair{0.0, 24.0}, std::pair{-2.5, 30.0}, std::pair{2.0, 40.0}}) {
        cv::Mat frame(camera.height, camera.width, CV_8UC3, cv::Scalar::all(0));
        const VisionPoint middle = Mark(frame, camera.See(x, y));
        cv::Mat seen;
        ASSERT_NE(road.RectifyFrame(frame, seen), 0);
        // A pixel per rectified one: 7 m by 25 m at 5 cm.
        EXPECT_NEAR(seen.cols, 140, 1);
        EXPECT_NEAR(seen.rows, 500, 1);
        EXPECT_LT(Distance(Spot(seen), road.RectifyPoint(middle).value()), 1.0) << y;
    }
    cv::Mat seen;
    EXPECT_EQ(road.RectifyFrame(cv::Mat(), seen), 0);
    EXPECT_EQ(CPerspectiveRectifier().RectifyFrame(cv::Mat(10, 10, CV_8UC3), seen), 0);
    EXPECT_TRUE(seen.empty());
}

/// The four points in their order around the road, so that no line crosses another.
TEST(RectifiedPicture, ThePointsAreDrawnWhereTheyAre)
{
    const std::array<VisionPoint, 4> points{{{100.5, 50.5}, {200.5, 50.5}, {60.5, 150.5}, {240.5, 150.5}}};
    CPerspectiveRectifier road;
    for (int i = 0; i < 4; ++i)
        road.UpdatePoint(i, points[static_cast<std::size_t>(i)]);
    cv::Mat frame(200, 300, CV_8UC3, cv::Scalar::all(0));
    ASSERT_NE(road.DrawPoints(frame), 0);
    const cv::Vec3b red(0, 0, 240);
    const auto at = [&](double x, double y) { return frame.at<cv::Vec3b>(static_cast<int>(y), static_cast<int>(x)); };
    for (const VisionPoint p : points)
        EXPECT_EQ(at(p.x, p.y), red);
    // In the middle of each side, and nothing in the middle of the diagonals.
    for (const auto& [a, b] : {std::pair{0, 1}, std::pair{1, 3}, std::pair{3, 2}, std::pair{2, 0}}) {
        const VisionPoint p = points[static_cast<std::size_t>(a)];
        const VisionPoint q = points[static_cast<std::size_t>(b)];
        EXPECT_GT(at((p.x + q.x) / 2.0, (p.y + q.y) / 2.0)[2], 100) << a << b;
    }
    EXPECT_EQ(at(150.5, 83.8), cv::Vec3b(0, 0, 0));
    EXPECT_EQ(at(150.5, 100.5), cv::Vec3b(0, 0, 0));
    cv::Mat none;
    EXPECT_EQ(road.DrawPoints(none), 0);
}

} // namespace
