// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Assignments against trying all of them; the tracker's gate, memory and numbers; vehicles of a simulated road.
#include "host/vision/VideoTracks.h"
#include "tests/vision/RoadCamera.h"
#include "vision/Assignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace
{

using Costs = std::vector<std::vector<std::optional<double>>>;

/// Most pairs first, then the least cost: all ways are tried.
std::pair<int, double> BestOfAll(const Costs& costs)
{
    std::vector<std::size_t> columns(costs.front().size() + costs.size());
    std::iota(columns.begin(), columns.end(), 0U);
    std::pair<int, double> best{0, 0.0};
    do {
        std::pair<int, double> sum{0, 0.0};
        for (std::size_t row = 0; row < costs.size(); ++row)
            if (columns[row] < costs[row].size() && costs[row][columns[row]]) {
                ++sum.first;
                sum.second += *costs[row][columns[row]];
            }
        if (sum.first > best.first || (sum.first == best.first && sum.second < best.second))
            best = sum;
    } while (std::next_permutation(columns.begin(), columns.end()));
    return best;
}

TEST(Assignment, IsTheBestOfAllWays)
{
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        const std::size_t rows = 1 + random() % 3U;
        const std::size_t columns = 1 + random() % 4U;
        Costs costs(rows, std::vector<std::optional<double>>(columns));
        for (auto& row : costs)
            for (auto& cost : row)
                if (random() % 4U != 0)
                    cost = static_cast<double>(random() % 100U);
        const auto assigned = vision::Assign(costs);
        std::pair<int, double> sum{0, 0.0};
        std::vector<bool> taken(columns, false);
        for (std::size_t row = 0; row < rows; ++row)
            if (assigned[row]) {
                ASSERT_TRUE(costs[row][*assigned[row]]);
                ASSERT_FALSE(taken[*assigned[row]]);
                taken[*assigned[row]] = true;
                ++sum.first;
                sum.second += *costs[row][*assigned[row]];
            }
        EXPECT_EQ(sum, BestOfAll(costs)) << round;
    }
    EXPECT_TRUE(vision::Assign({}).empty());
    EXPECT_FALSE(vision::Assign(Costs(1)).front());
}

using Points = std::vector<VisionPoint>;

TEST(CentroidTSTracker, ATrackEndsAfterMoreThanTwentyFrames)
{
    CCentroidTSTracker tracker(20, 60);
    tracker.Update(Points{{0.0, 0.0}}, 0.0);
    tracker.Update(Points{{10.0, 0.0}}, 0.04);
    for (int i = 1; i <= 20; ++i) {
        const auto& tracks = tracker.Update({}, 0.04 + 0.04 * i);
        ASSERT_EQ(tracks.size(), 1U);
        EXPECT_EQ(tracks[0].GetLostCounter(), i);
    }
    EXPECT_TRUE(tracker.Update({}, 0.04 * 22).empty());
    // Numbers are not used again.
    EXPECT_EQ(tracker.Update(Points{{220.0, 0.0}}, 0.04 * 23).at(0).GetTrackID(), 1);
    tracker.Reset();
    EXPECT_EQ(tracker.Update(Points{{0.0, 0.0}}, 0.0).at(0).GetTrackID(), 0);
}

/// 10 px per frame of 0.04 s; then a point so far from where the line leads.
TEST(CentroidTSTracker, TheGateStandsAroundTheStraightLine)
{
    const auto continues = [](int frames, double off, double sigma) {
        CCentroidTSTracker tracker(20, 60);
        for (int i = 0; i < 8; ++i)
            tracker.Update(Points{{10.0 * i, 5.0}}, 0.04 * i);
        const std::vector<double> sigmas{sigma};
        return tracker.Update(Points{{70.0 + 10.0 * frames, 5.0 + off}}, 0.28 + 0.04 * frames, sigmas).size() == 1;
    };
    EXPECT_TRUE(continues(1, 59.9, 0.0));
    EXPECT_FALSE(continues(1, 60.1, 0.0));
    EXPECT_TRUE(continues(1, 65.9, 2.0)); // three sigmas more
    EXPECT_FALSE(continues(1, 66.1, 2.0));
    EXPECT_TRUE(continues(5, 119.9, 0.0)); // a quarter more per further frame length
    EXPECT_FALSE(continues(5, 120.1, 0.0));
    // Only the last five entries count: what came before, from elsewhere, does not bend the line.
    const auto turned = [](double off) {
        CCentroidTSTracker tracker(20, 60);
        for (int i = 0; i < 5; ++i)
            tracker.Update(Points{{10.0 * i, 0.0}}, 0.04 * i);
        for (int i = 0; i < 5; ++i)
            tracker.Update(Points{{40.0, 10.0 + 10.0 * i}}, 0.04 * (i + 5));
        return tracker.Update(Points{{40.0 + off, 60.0}}, 0.4).size() == 1;
    };
    EXPECT_TRUE(turned(59.9) && turned(-59.9));
    EXPECT_FALSE(turned(60.1) || turned(-60.1));
    // A track of one entry: 60 px per frame length around where it was.
    const auto second = [](double seconds, double off) {
        CCentroidTSTracker tracker(20, 60);
        tracker.Update(Points{{0.0, 0.0}}, 0.0);
        return tracker.Update(Points{{off, 0.0}}, seconds).size() == 1;
    };
    EXPECT_TRUE(second(0.02, 29.9));
    EXPECT_FALSE(second(0.02, 30.1));
    EXPECT_TRUE(second(0.08, 119.9));
    EXPECT_FALSE(second(0.08, 120.1));
}

TEST(CentroidTSTracker, ThePathCountsFromBothEnds)
{
    CCentroidTSTracker tracker(20, 60);
    for (int i = 0; i < 7; ++i)
        tracker.Update(Points{{10.0 * i, 0.0}}, 0.04 * i);
    CTrackObj track = tracker.Update(Points{{70.0, 0.0}}, 0.28).at(0);
    EXPECT_EQ(track.GetAnchorTrackPath(-1)->x, 70.0);
    EXPECT_EQ(track.GetAnchorTrackPath(-8)->x, 0.0);
    EXPECT_EQ(track.GetAnchorTrackPath(0)->x, 0.0);
    EXPECT_FALSE(track.GetAnchorTrackPath(-9));
    EXPECT_FALSE(track.GetTrackPathInfo(8));
    EXPECT_DOUBLE_EQ(track.GetTrackPathInfo(-2)->time, 0.24);
    track.CorrectLastTrackPathInfo({71.0, 1.0});
    EXPECT_EQ(track.GetAnchorTrackPath(-1)->y, 1.0);
    EXPECT_DOUBLE_EQ(track.GetTrackPathInfo(-1)->time, 0.28);
}

struct Vehicle {
    double x, y, vx, vy; // m, m/s
};

/// Boxes of vehicles with 1 px noise, 10 frames per second, 10 % misses, one hidden for 0.6 s behind the other while
/// they pass each other: how many IDs the tracks have, and how many vehicles are mixed up in one.
std::pair<std::size_t, int> Follow(std::uint32_t seed, const CPerspectiveRectifier& road)
{
    const test::RoadCamera camera;
    const std::vector<Vehicle> vehicles{{-1.7, 70.0, 0.0, -14.0}, {1.7, 12.0, 0.0, 12.0}, {-20.0, 30.0, 8.0, 0.0}};
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.0, 1.0);
    VideoTracks tracks(camera.width, camera.height);
    std::vector<std::vector<VisionPoint>> seen(vehicles.size());
    for (int frame = 0; frame < 40; ++frame) {
        const double time = 0.1 * frame;
        std::vector<VideoBox> boxes;
        for (std::size_t i = 0; i < vehicles.size(); ++i) {
            const Vehicle& v = vehicles[i];
            const VisionPoint p = camera.See(v.x + v.vx * time, v.y + v.vy * time, 0.72);
            const bool hidden = i == 0 && time > 1.95 && time < 2.55;
            if (hidden || random() % 10U == 0 || p.x < 0 || p.x > 1920 || p.y < 0 || p.y > 1080)
                continue;
            const VisionPoint q{p.x + noise(random), p.y + noise(random)};
            seen[i].push_back(q);
            boxes.push_back({q.x - 30.0, q.y - 25.0, 60.0, 50.0});
        }
        tracks.Add(road, time, frame, boxes);
    }
    int mixed = 0;
    for (const auto& [id, entries] : tracks.Tracks()) {
        std::vector<bool> of(vehicles.size(), false);
        for (const VideoEntry& entry : entries)
            for (std::size_t i = 0; i < vehicles.size(); ++i)
                for (const VisionPoint p : seen[i])
                    if (Distance(p, entry.point) < 1e-9)
                        of[i] = true;
        mixed += std::count(of.begin(), of.end(), true) > 1 ? 1 : 0;
    }
    return {tracks.Tracks().size(), mixed};
}

TEST(VideoTracks, OneNumberPerVehicle)
{
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf({}, test::kLane));
    for (std::uint32_t seed = 1; seed <= 30; ++seed)
        EXPECT_EQ(Follow(seed, road), (std::pair<std::size_t, int>{3, 0})) << seed;
}

TEST(VideoTracks, BoxesAtTheEdgeAreCutAndThoseBeyondTheHorizonDoNotCount)
{
    const CPerspectiveRectifier road = test::Calibrated(test::InputOf({}, test::kLane));
    VideoTracks tracks(1920, 1080);
    EXPECT_TRUE(tracks.IsCut({2.0, 500.0, 50.0, 50.0}));
    EXPECT_TRUE(tracks.IsCut({500.0, 1028.0, 50.0, 50.0}));
    EXPECT_TRUE(tracks.IsCut({1868.0, 500.0, 50.0, 50.0}));
    EXPECT_TRUE(tracks.IsCut({500.0, 1.0, 50.0, 50.0}));
    EXPECT_FALSE(tracks.IsCut({2.1, 2.1, 1915.8, 1075.8}));
    const std::vector<VideoBox> boxes{{900.0, 50.0, 40.0, 40.0}, {1860.0, 700.0, 60.0, 60.0}};
    tracks.Add(road, 0.0, 3, boxes);
    ASSERT_EQ(tracks.Tracks().size(), 1U);
    const VideoEntry& entry = tracks.Tracks().at(1).front();
    EXPECT_TRUE(entry.cut);
    EXPECT_EQ(entry.frame, 3);
    EXPECT_EQ(entry.point.x, 1890.0);
    // How far a pixel reaches on the road widens the gate, along the longer axis of its ellipse: 3 m a frame, and that.
    const VisionPoint first{960.0, 300.0};
    const auto spread = road.PointSpread(first).value();
    const double trace = spread.xx + spread.yy;
    const double root = std::sqrt(trace * trace / 4.0 - (spread.xx * spread.yy - spread.xy * spread.xy));
    ASSERT_GT(3.0 * std::sqrt(trace / 2.0 + root), 10.0);
    const VisionPoint from = road.RectifyPoint(first).value();
    for (const double beyond : {-0.5, 0.5}) {
        // The second point's own pixel counts, a little smaller so much nearer.
        double reach = 60.0;
        VisionPoint second;
        for (int i = 0; i < 50; ++i) {
            second = road.PicturePoint({from.x, from.y + reach + beyond});
            const auto there = road.PointSpread(second).value();
            const double sum = there.xx + there.yy;
            reach = 60.0 + 3.0 * std::sqrt(sum / 2.0 +
                                           std::sqrt(sum * sum / 4.0 - (there.xx * there.yy - there.xy * there.xy)));
        }
        VideoTracks far(1920, 1080);
        far.Add(road, 0.0, 0, std::vector<VideoBox>{{first.x - 5.0, first.y - 5.0, 10.0, 10.0}});
        far.Add(road, 0.04, 1, std::vector<VideoBox>{{second.x - 5.0, second.y - 5.0, 10.0, 10.0}});
        EXPECT_EQ(far.Tracks().size(), beyond < 0.0 ? 1U : 2U);
    }
    // Not calibrated, there is no horizon; 60 px are those of a picture 1280 px wide: 90 here.
    for (const double step : {89.0, 95.5}) {
        VideoTracks raw(1920, 1080);
        raw.Add({}, 0.0, 0, boxes);
        raw.Add({}, 0.04, 1, std::vector<VideoBox>{{900.0 + step, 50.0, 40.0, 40.0}});
        EXPECT_EQ(raw.Tracks().size(), step < 90.0 ? 2U : 3U);
    }
}

} // namespace
