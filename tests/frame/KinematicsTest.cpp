// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/Kinematics.h"
#include "frame/MaskResults.h"

#include "tests/support/MaskFixture.h"

#include <cmath>
#include <random>

namespace
{

double Swerve(double curveRadius, double offset, double speed, double acceleration)
{
    double length = -1.0;
    AusEinScheren(curveRadius, offset, speed, acceleration, length);
    return length;
}

/// The swerve as a curve in the road's frame: a sine wave along the diagonal of length and offset.
struct SineSwerve {
    double length;
    double offset;

    double Diagonal() const { return std::hypot(length, offset); }
    CDPoint At(double alongDiagonal) const
    {
        const double k = 2.0 * M_PI / Diagonal();
        CDPoint point{alongDiagonal, -offset / (k * length) * std::sin(k * alongDiagonal)};
        point.Rotate(std::atan2(offset, length), {});
        return point;
    }
};

double Distance(CDPoint a, CDPoint b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

/// Curvature of the circle through three points.
double Curvature(CDPoint a, CDPoint b, CDPoint c)
{
    const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    return 2.0 * area / (Distance(a, b) * Distance(b, c) * Distance(c, a));
}

TEST(KinematicsTest, SwerveStartsAlongTheRoadEndsAtTheOffsetAndJustUsesTheAcceleration)
{
    std::mt19937_64 random(1301);
    std::uniform_real_distribution<double> offsets(0.3, 6.0);
    std::uniform_real_distribution<double> speeds(3.0, 60.0);
    std::uniform_real_distribution<double> accelerations(0.5, 9.0);
    for (int i = 0; i < 200; ++i) {
        const double offset = offsets(random);
        const double speed = speeds(random);
        const double acceleration = accelerations(random);
        const SineSwerve swerve{Swerve(0.0, offset, speed, acceleration), offset};
        ASSERT_GT(swerve.length, 0.0);

        constexpr int kPoints = 4000;
        const double step = swerve.Diagonal() / kPoints;
        double sharpest = 0.0;
        for (int n = 1; n < kPoints; ++n) {
            const double curvature =
                Curvature(swerve.At((n - 1) * step), swerve.At(n * step), swerve.At((n + 1) * step));
            sharpest = std::max(sharpest, std::abs(curvature));
        }
        EXPECT_NEAR(speed * speed * sharpest / acceleration, 1.0, 1e-5);
        const CDPoint end = swerve.At(swerve.Diagonal());
        EXPECT_NEAR(end.x, swerve.length, 1e-9 * swerve.length);
        EXPECT_NEAR(end.y, offset, 1e-9 * swerve.length);
        const CDPoint first = swerve.At(1e-6 * swerve.length);
        EXPECT_NEAR(first.y / first.x, 0.0, 1e-6);
    }
}

TEST(KinematicsTest, RoadBendLeavesTheRestOfTheAccelerationForTheSwerve)
{
    std::mt19937_64 random(1302);
    std::uniform_real_distribution<double> tightness(1.05, 50.0);
    std::uniform_real_distribution<double> speeds(3.0, 60.0);
    for (int i = 0; i < 2000; ++i) {
        const double speed = speeds(random);
        const double acceleration = 4.0;
        const double bend = tightness(random) * speed * speed / acceleration;
        const double rest = acceleration - speed * speed / bend;
        const double straight = Swerve(0.0, 3.0, speed, rest);
        EXPECT_NEAR(Swerve(bend, 3.0, speed, acceleration), straight, 1e-10 * straight);
    }
}

TEST(KinematicsTest, SwerveWithoutSolution)
{
    EXPECT_EQ(Swerve(0.0, 0.0, 20.0, 4.0), 0.0);
    EXPECT_EQ(Swerve(100.0, 3.0, 20.0, 4.0), 0.0) << "the road's bend is exactly as tight as possible";
    EXPECT_EQ(Swerve(99.0, 3.0, 20.0, 4.0), 0.0);
    EXPECT_EQ(Swerve(-500.0, 3.0, 20.0, 4.0), 0.0);
    EXPECT_EQ(Swerve(0.0, 3.0, 20.0, 0.0), 0.0) << "no acceleration, no swerve";
    EXPECT_TRUE(std::isnan(Swerve(99.0, 1000.0, 20.0, 4.0))) << "two negative roots";
}

TEST(KinematicsTest, WavePathAgreesWithIntegrationWithinItsSampling)
{
    std::mt19937_64 random(1303);
    std::uniform_real_distribution<double> offsets(-8.0, 8.0);
    std::uniform_real_distribution<double> lengths(2.0, 150.0);
    for (int i = 0; i < 300; ++i) {
        const double offset = offsets(random);
        const double length = lengths(random);
        double path = 0.0;
        double surplus = 0.0;
        Wegintegral(offset, length, path, surplus);
        EXPECT_EQ(surplus, path - length);

        // Simpson's rule over a quarter of the wave.
        const double wave = std::hypot(offset, length);
        const double k = 2.0 * M_PI / wave;
        const double slope = offset / length;
        constexpr int kIntervals = 4000;
        const double h = wave / 4.0 / kIntervals;
        double sum = 0.0;
        for (int n = 0; n <= kIntervals; ++n) {
            const int weight = n == 0 || n == kIntervals ? 1 : n % 2 == 1 ? 4 : 2;
            sum += weight * std::hypot(1.0, slope * std::cos(k * n * h));
        }
        const double exact = 4.0 * sum * h / 3.0;
        // Chords are shorter than their arcs, and the last piece at the crest counts as flat.
        const double stepAngle = 2.0 * M_PI / 800.0;
        const double bound = wave * stepAngle * stepAngle * slope * slope * (1.0 / 24.0 + 1.0 / 400.0);
        EXPECT_GE(exact - path, -1e-12 * wave);
        EXPECT_LE(exact - path, bound * 1.001 + 1e-12 * wave);

        // 199 chords from the zero crossing on, and one flat piece.
        double chords = wave / 800.0;
        const SineSwerve curve{length, std::abs(offset)};
        for (int n = 1; n < 200; ++n)
            chords += Distance(curve.At((n - 1) * wave / 800.0), curve.At(n * wave / 800.0));
        EXPECT_NEAR(path, 4.0 * chords, 1e-11 * wave);
    }
}

TEST(KinematicsTest, WavePathAtItsLimits)
{
    double path = 0.0;
    double surplus = 0.0;
    Wegintegral(0.0, 60.0, path, surplus);
    EXPECT_NEAR(path, 60.0, 1e-12 * 60.0);
    EXPECT_NEAR(surplus, 0.0, 1e-12 * 60.0);
    Wegintegral(3.0, 0.0, path, surplus);
    EXPECT_FALSE(std::isfinite(path));
    Wegintegral(0.0, 0.0, path, surplus);
    EXPECT_FALSE(std::isfinite(path));
}

class ModalMaskTest : public test::MaskTest
{
  protected:
    double result = -7.0;
    int ok = -7;
};

TEST_F(ModalMaskTest, OkHandsTheResultOver)
{
    front.duringModal = [&](framework::Window& dialog) {
        EXPECT_EQ(dialog.id, 400U);
        Enter(dialog, 4662, "0,8");
        Press(dialog, 100);
    };
    AMax(data, &mainWindow, &result, &ok);
    EXPECT_EQ(ok, 1);
    EXPECT_NEAR(result, 7.848, 1e-12);

    front.duringModal = [&](framework::Window& dialog) {
        EXPECT_EQ(dialog.id, 401U);
        Enter(dialog, 4651, "0,8");
        Enter(dialog, 4652, "50");
        Press(dialog, 100);
    };
    ok = -7;
    VGrenz(data, &mainWindow, &result, &ok);
    EXPECT_EQ(ok, 1);
    EXPECT_NEAR(result, 3.6 * std::sqrt(50.0 * 7.848), 1e-9);

    result = -7.0;
    VGrenz(data, nullptr, &result, nullptr);
    EXPECT_NEAR(result, 3.6 * std::sqrt(50.0 * 7.848), 1e-9);
    ok = -7;
    VGrenz(data, &mainWindow, nullptr, &ok);
    EXPECT_EQ(ok, -7) << "without a place for the result nothing is written";
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(ModalMaskTest, CancelWritesNothing)
{
    front.duringModal = [&](framework::Window& dialog) {
        Enter(dialog, dialog.id == 400 ? 4662 : 4651, "0,8");
        Press(dialog, 105);
    };
    AMax(data, &mainWindow, &result, &ok);
    VGrenz(data, &mainWindow, &result, &ok);
    EXPECT_EQ(result, -7.0);
    EXPECT_EQ(ok, -7);
    EXPECT_TRUE(data.AlleMaskenWerte().empty());
}

} // namespace
