// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseFile.h"
#include "casefile/CaseHistory.h"
#include "drawing/DrawingExport.h"
#include "host/CRuvData.h"
#include "krn/VehicleFields.h"
#include "scene/SceneDrawing.h"
#include "scene/SceneEditing.h"
#include "scene/SceneGround.h"
#include "scene/ScenePath.h"
#include "tests/support/DrawingFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <regex>

namespace
{

using namespace casefile;
using namespace krn;
using namespace scene;

constexpr double kPi = 3.141592653589793;

SceneCamera Camera()
{
    SceneCamera camera;
    camera.width = 800.0;
    camera.height = 600.0;
    return camera;
}

/// A rectangle 4 m wide and 2 m long with its corner at the place.
SceneItem Rectangle(CDPoint corner, double degrees, int number = 1)
{
    SceneItem item;
    item.id.object = number;
    item.pose.name = "Feld";
    item.pose.position = corner;
    item.pose.angle = degrees;
    item.pose.width = 400.0;
    item.pose.length = 200.0;
    item.canSize = true;
    return item;
}

void ExpectNear(CDPoint a, CDPoint b, double tolerance = 1e-9)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

TEST(SceneCamera, LeadsThereAndBackAndKeepsThePointUnderTheCursor)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> place(-1e5, 1e5);
    std::uniform_real_distribution<double> pixel(0.0, 800.0);
    SceneCamera camera = Camera();
    for (int i = 0; i < 1000; ++i) {
        const CDPoint scene{place(random), place(random)};
        ExpectNear(camera.ToScene(camera.ToPixel(scene)), scene, 1e-7);
        const CDPoint at{pixel(random), pixel(random)};
        const CDPoint before = camera.ToScene(at);
        camera.ZoomAbout(at, i % 2 == 0 ? 1.7 : 0.6);
        ExpectNear(camera.ToScene(at), before, 1e-6);
        const CDPoint under = camera.ToScene({100.0, 100.0});
        camera.Pan({30.0, -20.0});
        ExpectNear(camera.ToScene({130.0, 80.0}), under, 1e-6);
    }
    EXPECT_LT(camera.ToPixel({0.0, 100.0}).y, camera.ToPixel({0.0, 0.0}).y) << "y points up in the scene";
    for (int i = 0; i < 200; ++i)
        camera.ZoomAbout({0.0, 0.0}, 10.0);
    EXPECT_EQ(camera.pixelsPerMetre, SceneCamera::kLargestScale);
}

TEST(SceneCamera, FitsWhatThereIs)
{
    SceneCamera camera = Camera();
    SceneBounds bounds;
    bounds.Add({-3000.0, 100.0});
    bounds.Add({5000.0, 900.0});
    bounds.Add({std::numeric_limits<double>::quiet_NaN(), 0.0});
    camera.Fit(bounds, 50.0);
    ExpectNear(camera.ToPixel({-3000.0, 500.0}), {50.0, 300.0});
    ExpectNear(camera.ToPixel({5000.0, 500.0}), {750.0, 300.0});
    camera.Fit({}, 50.0);
    EXPECT_GT(camera.pixelsPerMetre, 1.0);
    // The grid is at round lengths and neither too fine nor too coarse at any scale.
    for (double scale = SceneCamera::kSmallestScale; scale < SceneCamera::kLargestScale; scale *= 1.37) {
        camera.pixelsPerMetre = scale;
        const double step = GridStep(camera);
        const double leading = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
        EXPECT_LT(std::min({std::abs(leading - 1.0), std::abs(leading - 2.0), std::abs(leading - 5.0)}), 1e-9);
        EXPECT_GE(camera.Pixels(step), 13.999);
        EXPECT_LE(camera.Pixels(step), 35.001);
    }
}

TEST(SceneHit, NearestPointThenSmallestBodyThenTheTopmost)
{
    const SceneCamera camera = Camera(); // 20 pixels per metre
    Scene scene;
    scene.items.push_back(Rectangle({-200.0, -100.0}, 0.0, 1));
    SceneItem small = Rectangle({-50.0, -50.0}, 0.0, 2);
    small.pose.width = small.pose.length = 100.0;
    scene.items.push_back(small);
    small.id.object = 3;
    scene.items.push_back(small);
    const auto hit = [&](CDPoint cm) { return HitTest(scene, camera, camera.ToPixel(cm), std::nullopt); };
    EXPECT_EQ(hit({150.0, 50.0})->id.object, 1);
    EXPECT_EQ(hit({0.0, 0.0})->id.object, 3);
    EXPECT_FALSE(hit({260.0, 0.0}));
    SceneItem point;
    point.id.kind = SceneKind::waypoint;
    point.pose.centred = true;
    point.pose.position = {30.0, 0.0};
    scene.items.insert(scene.items.begin(), point);
    EXPECT_EQ(hit({10.0, 0.0})->id.kind, SceneKind::waypoint) << "4 pixels away";
    scene.items[1].locked = true;
    EXPECT_FALSE(hit({150.0, 50.0}));
    scene.items[1].locked = false;

    // Handles are there for the selected item only.
    const SceneItem& field = scene.items[1];
    const CDPoint corner = camera.ToPixel(CornersOf(field.pose)[2]);
    EXPECT_EQ(HitTest(scene, camera, corner, std::nullopt)->grip, SceneGrip::body);
    const auto handle = HitTest(scene, camera, corner, field.id);
    EXPECT_EQ(handle->grip, SceneGrip::corner);
    EXPECT_EQ(handle->corner, 2U);
    const CDPoint turn = TurnHandle(camera, field.pose);
    EXPECT_EQ(HitTest(scene, camera, turn, field.id)->grip, SceneGrip::turn);
    EXPECT_FALSE(HitTest(scene, camera, turn, std::nullopt));
}

TEST(SceneDrag, MovesTurnsAndSizes)
{
    const SceneItem item = Rectangle({100.0, 200.0}, 30.0);
    const SceneDrag body(item, {item.id, SceneGrip::body}, {150.0, 250.0});
    ExpectNear(body.At({180.0, 210.0}, false).pose.position, {130.0, 160.0});
    // Straight: along the width, which points to 30 degrees.
    const CDPoint along{std::cos(kPi / 6.0), std::sin(kPi / 6.0)};
    const CDPoint straight =
        body.At(CDPoint{150.0, 250.0} + along * 80.0 + CDPoint{-along.y, along.x} * 20.0, true).pose.position;
    ExpectNear(straight, item.pose.position + along * 80.0);

    // A quarter turn about the centre takes the right side of it to the top.
    const CDPoint centre = CentreOf(item.pose);
    const SceneDrag turn(item, {item.id, SceneGrip::turn}, centre + CDPoint{100.0, 0.0});
    const CPlacedObject turned = turn.At(centre + CDPoint{0.0, 70.0}, false).pose;
    EXPECT_NEAR(turned.angle, 120.0, 1e-9);
    ExpectNear(CentreOf(turned), centre);
    CDPoint corner = item.pose.position;
    corner.Rotate(kPi / 2.0, centre);
    ExpectNear(turned.position, corner);
    const CDPoint slightly{std::cos(0.9), std::sin(0.9)}; // 51.6 degrees
    EXPECT_NEAR(turn.At(centre + slightly * 50.0, true).pose.angle, 80.0, 1e-9) << "81.6 snaps to a multiple of 5";

    for (std::size_t i = 0; i < 4; ++i) {
        const auto corners = CornersOf(item.pose);
        const CDPoint fixed = corners[(i + 2) % 4];
        const SceneDrag size(item, {item.id, SceneGrip::corner, i}, corners[i]);
        const CDPoint to = corners[i] + (corners[i] - fixed) * 0.5;
        const CPlacedObject sized = size.At(to, false).pose;
        EXPECT_NEAR(sized.width, 600.0, 1e-9);
        EXPECT_NEAR(sized.length, 300.0, 1e-9);
        ExpectNear(CornersOf(sized)[i], to, 1e-9);
        ExpectNear(CornersOf(sized)[(i + 2) % 4], fixed, 1e-9);
        const CPlacedObject crossed = size.At(fixed + (fixed - corners[i]), false).pose;
        EXPECT_GT(crossed.width, 0.0);
        EXPECT_GT(crossed.length, 0.0);
        ExpectNear(CornersOf(crossed)[(i + 2) % 4], fixed, 1e-9);
    }
    const SceneItem spanned = Spanned(item, {500.0, 100.0}, {300.0, 400.0});
    ExpectNear(CentreOf(spanned.pose), {400.0, 250.0});
}

TEST(SceneCase, DrivingLinesAreThoseOfTheCollisionColumn)
{
    CWegZeitRechDat way;
    EXPECT_FALSE(ReadDrivingLine(way));
    DrivingLine line;
    line.points = {{-3000.0, 40.0}, {-1200.0, 0.0}};
    line.position = {100.0, 50.0};
    line.heading = 0.4;
    WriteDrivingLine(way, line);
    const auto read = ReadDrivingLine(way);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->points, line.points);
    EXPECT_EQ(read->position, line.position);
    EXPECT_NEAR(read->heading, 0.4, 1e-12);
    WriteDrivingLine(way, *read);
    EXPECT_EQ(way.spalten[2].bahn.size(), 6U) << "written again it does not grow";
    EXPECT_TRUE(way.spalten[2].IsUsed());

    // One point says where, not whither; two far apart are a point of the line and the place.
    way.spalten[2].bahn = {{10.0, 20.0}};
    EXPECT_EQ(ReadDrivingLine(way)->position, (CDPoint{10.0, 20.0}));
    way.spalten[2].bahn = {{0.0, 0.0}, {0.0, 500.0}};
    EXPECT_EQ(ReadDrivingLine(way)->points.size(), 1U);
    EXPECT_NEAR(ReadDrivingLine(way)->heading, kPi / 2.0, 1e-12);
    ClearDrivingLine(way);
    EXPECT_FALSE(ReadDrivingLine(way));
    EXPECT_FALSE(way.spalten[2].IsUsed());

    SetRestPose(way, {}, 0.0);
    EXPECT_TRUE(HasRestPose(way)) << "the origin is a place like any other";
    ClearRestPose(way);
    EXPECT_FALSE(HasRestPose(way));
}

TEST(SceneCase, PhasesBeginAtTheirDistanceOnTheLine)
{
    CRuvData data;
    data.KfzDat(0) = TypicalCar("Pkw", RGB(200, 0, 0));
    CWegZeitDat& way = data.WZDat(0);
    DrivingLine line;
    line.points = {{0.0, -1000.0}}; // 10 m along y, then 10 m along x to the collision
    line.points.push_back({0.0, 0.0});
    line.position = {1000.0, 0.0};
    WriteDrivingLine(way, line);
    const double paths[] = {4.0, 12.0, 25.0};
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        way.spalten[3 + i].art = PhasenArt::constantSpeed;
        way.spalten[3 + i].sumWeg = sum += paths[i];
        way.spalten[3 + i].sumZeit = static_cast<double>(i) + 1.0;
    }
    const Scene scene = ReadScene(data);
    const SceneTrack& track = scene.tracks.at(0);
    ASSERT_EQ(track.phases.size(), 3U);
    ExpectNear(track.phases[0].at, {600.0, 0.0}, 1e-6);
    ExpectNear(track.phases[1].at, {0.0, -600.0}, 1e-6);
    ExpectNear(track.phases[2].at, {0.0, -3100.0}, 1e-6);
    ASSERT_EQ(track.extension.size(), 2U) << "the line drawn is 21 m too short";
    EXPECT_EQ(LineAt(scene, {500.0, 4.0}, 5.0), 0U);
    EXPECT_FALSE(LineAt(scene, {500.0, 6.0}, 5.0));
    EXPECT_EQ(InsertWaypoint(data, 0, {500.0, 0.0}), 2U);
}

TEST(SceneCase, WildCasesAreDrawnWithoutHarm)
{
    CRuvData data;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        data.KfzDat(i) = TypicalVehicle(static_cast<CKfzDaten::Type>(1 + i % 5));
        data.KfzDat(i).length = i % 3 == 0 ? nan : i % 3 == 1 ? 0.0 : 1e6;
        CWegZeitDat& way = data.WZDat(i);
        way.endPunkt = {i % 2 == 0 ? 1e12 : nan, 5.0};
        way.endRichtung = i % 4 == 0 ? nan : 1e9;
        way.spalten[2].art = PhasenArt::noTime;
        way.spalten[2].bahn = {{0.0, 0.0}, {0.0, 0.0}, {1e12, -1e12}, {i % 5 == 0 ? nan : 3.0, 0.0}};
        way.spalten[3].art = PhasenArt::braking;
        way.spalten[3].sumWeg = i % 2 == 0 ? nan : 1e9;
        way.spalten[5].bahn = {{nan, nan}, {1.0, 1.0}};
    }
    data.Bilder().push_back({"bild.png", std::string(64, '0'), 100, 100, {1e12, nan}, 1e9, nan, nan});
    const Scene scene = ReadScene(data);
    for (const double scale : {SceneCamera::kSmallestScale, 20.0, SceneCamera::kLargestScale}) {
        SceneCamera camera = Camera();
        camera.Fit(scene.Bounds(true), 50.0);
        camera.pixelsPerMetre = scale;
        CDC dc(camera.width, camera.height);
        DrawScene(dc, camera, scene, {});
        EXPECT_GT(dc.Primitives().size(), 5U);
        EXPECT_LT(dc.Primitives().size(), 20000U);
    }
}

TEST(SceneDrawing, ShowsVehiclesToScaleWithTheirNames)
{
    CRuvData data;
    data.KfzDat(0) = TypicalCar("Roter Pkw", RGB(200, 0, 0));
    SceneItem item = NewSceneItem(data, SceneKind::restPose, 0, {500.0, 300.0});
    item.pose.angle = 90.0;
    ASSERT_TRUE(PlaceItem(data, item));
    const Scene scene = ReadScene(data);
    SceneCamera camera = Camera();
    camera.centre = {500.0, 300.0};
    CDC dc(camera.width, camera.height);
    SceneDrawingOptions options;
    options.grid = false;
    DrawScene(dc, camera, scene, options);
    // The first polygon is the body: 4.5 m of it along y, 20 pixels each.
    SceneBounds body;
    bool named = false;
    for (const drawing::Primitive& primitive : dc.Primitives()) {
        if (const auto* polygon = std::get_if<drawing::Polygon>(&primitive); polygon != nullptr && body.empty)
            for (const CDPoint& point : polygon->points)
                body.Add(point);
        if (const auto* text = std::get_if<drawing::Text>(&primitive))
            named = named || text->utf8 == "Roter Pkw";
    }
    EXPECT_NEAR(body.high.y - body.low.y, 20.0 * data.KfzDat(0).length, 1e-6);
    EXPECT_NEAR(body.high.x - body.low.x, 20.0 * data.KfzDat(0).width, 1e-6);
    ExpectNear((body.low + body.high) * 0.5, {400.0, 300.0}, 1e-6);
    EXPECT_TRUE(named);
}

TEST(ScenePictures, AreReadBackAndBadOnesRefusedByName)
{
    CRuvData data;
    CSzenenBild picture{"luftbild.jpg", std::string(64, 'a'), 4000, 3000, {120.5, -7.0}, 0.035, 0.3, 0.5, true, true};
    data.Bilder() = {picture, picture};
    data.Bilder()[1].datei = "Skizze ä.png";
    std::string text;
    ASSERT_TRUE(CaseToJson(data, text));
    EXPECT_NE(text.find("\"version\": \"1.1\""), std::string::npos);
    CRuvData read;
    ASSERT_TRUE(CaseFromJson(text, read));
    EXPECT_EQ(read.Bilder(), data.Bilder());
    std::string again;
    ASSERT_TRUE(CaseToJson(read, again));
    EXPECT_EQ(again, text);

    // What a newer program says of a picture or of the scene stays.
    std::string newer = text;
    newer.replace(newer.find("\"file\""), 6, "\"contrast\": 2.0, \"file\"");
    newer.replace(newer.find("\"pictures\""), 10, "\"north\": 1.0, \"pictures\"");
    newer.replace(newer.find("\"1.1\""), 5, "\"1.7\"");
    ASSERT_TRUE(CaseFromJson(newer, read));
    ASSERT_TRUE(CaseToJson(read, again));
    for (const char* kept : {"\"contrast\": 2.0", "\"north\": 1.0", "\"1.7\""})
        EXPECT_NE(again.find(kept), std::string::npos) << kept;

    const struct {
        const char* from;
        const char* to;
        const char* pointer;
    } refusals[] = {
        {"[4000, 3000]", "[0, 3000]", "/scene/pictures/0/size"},
        {"[4000, 3000]", "[1e300, 3000]", "/scene/pictures/0/size"},
        {"\"luftbild.jpg\"", "\"\"", "/scene/pictures/0/file"},
        {"\"luftbild.jpg\"", "7", "/scene/pictures/0/file"},
        {"aaaaaaaa", "AAAAAAAA", "/scene/pictures/0/sha256"},
        {"0.035", "0.0", "/scene/pictures/0/metresPerPixel"},
        {"0.035", "\"x\"", "/scene/pictures/0/metresPerPixel"},
        {"[120.5, -7.0]", "[120.5]", "/scene/pictures/0/centre"},
        {"\"opacity\": 0.5", "\"opacity\": 1.5", "/scene/pictures/0/opacity"},
        {"\"locked\": true", "\"locked\": 1", "/scene/pictures/0/locked"},
        {"\"pictures\": [", "\"pictures\": [3, ", "/scene/pictures/0"},
    };
    for (const auto& refusal : refusals) {
        std::string wrong = text;
        const std::size_t at = wrong.find(refusal.from);
        ASSERT_NE(at, std::string::npos) << refusal.from;
        wrong.replace(at, std::string(refusal.from).size(), refusal.to);
        const CaseResult result = CaseFromJson(wrong, read);
        EXPECT_FALSE(result) << refusal.to;
        EXPECT_EQ(result.pointer, refusal.pointer) << refusal.to;
    }
    data.Bilder()[1].meterProPixel = std::numeric_limits<double>::infinity();
    EXPECT_EQ(CaseToJson(data, text).pointer, "/scene/pictures/1/metresPerPixel");
}

CSzenenSpur Track()
{
    return {"fahrt.gpx", {{-300.0, -100.0}, {0.0, 0.0}, {300.0, 100.0}}, {50.0, 20.0}, kPi / 2.0, true, false, {}};
}

TEST(SceneTracks, AreReadBackAndBadOnesRefusedByName)
{
    CRuvData data;
    data.Spuren() = {Track(), Track()};
    data.Spuren()[1].gesperrt = true;
    data.Spuren()[1].sichtbar = false;
    std::string text;
    ASSERT_TRUE(CaseToJson(data, text));
    EXPECT_NE(text.find("\"version\": \"1.4\""), std::string::npos);
    CRuvData read;
    ASSERT_TRUE(CaseFromJson(text, read));
    EXPECT_EQ(read.Spuren(), data.Spuren());
    std::string newer = text;
    newer.replace(newer.find("\"points\""), 8, "\"device\": 2.0, \"points\"");
    ASSERT_TRUE(CaseFromJson(newer, read));
    std::string again;
    ASSERT_TRUE(CaseToJson(read, again));
    EXPECT_NE(again.find("\"device\": 2.0"), std::string::npos);
    CRuvData taken;
    ReplaceCase(taken, std::move(read));
    EXPECT_EQ(taken.Spuren().size(), 2U);

    const struct {
        const char* from;
        const char* to;
        const char* pointer;
    } refusals[] = {
        {"\"fahrt.gpx\"", "7", "/scene/tracks/0/name"},
        {"[0.0, 0.0]", "[0.0]", "/scene/tracks/0/points/1"},
        {"[0.0, 0.0]", "[0.0, 2e12]", "/scene/tracks/0/points/1"},
        {"[50.0, 20.0]", "7", "/scene/tracks/0/centre"},
        {"1.5707963267948966", "\"x\"", "/scene/tracks/0/angle"},
        {"\"points\"", "\"dots\"", "/scene/tracks/0/points"},
        {"\"locked\": true", "\"locked\": 1", "/scene/tracks/1/locked"},
        {"\"tracks\": [", "\"tracks\": [3, ", "/scene/tracks/0"},
    };
    for (const auto& refusal : refusals) {
        std::string wrong = text;
        const std::size_t at = wrong.find(refusal.from);
        ASSERT_NE(at, std::string::npos) << refusal.from;
        wrong.replace(at, std::string(refusal.from).size(), refusal.to);
        const CaseResult result = CaseFromJson(wrong, taken);
        EXPECT_FALSE(result) << refusal.to;
        EXPECT_EQ(result.pointer, refusal.pointer) << refusal.to;
    }
    data.Spuren()[0].punkte.resize(CSzenenSpur::kMeistePunkte + 1);
    EXPECT_EQ(CaseToJson(data, text).pointer, "/scene/tracks/0/points");
}

// Turned to the left by a quarter, the point that was to the right of the middle lies above it.
TEST(SceneTracks, AreDrawnMovedTurnedAndRemoved)
{
    CRuvData data;
    data.Spuren() = {Track()};
    const auto lineOf = [&data](const SceneCamera& camera) {
        CDC dc(camera.width, camera.height);
        DrawScene(dc, camera, ReadScene(data), {});
        for (const drawing::Primitive& primitive : dc.Primitives())
            if (const auto* line = std::get_if<drawing::Polyline>(&primitive);
                line != nullptr && line->points.size() == 3)
                return line->points;
        return std::vector<CDPoint>{};
    };
    const SceneCamera camera = Camera();
    std::vector<CDPoint> line = lineOf(camera);
    ASSERT_EQ(line.size(), 3U);
    ExpectNear(line[0], camera.ToPixel({50.0 + 100.0, 20.0 - 300.0}), 1e-6);
    ExpectNear(line[2], camera.ToPixel({50.0 - 100.0, 20.0 + 300.0}), 1e-6);

    Scene scene = ReadScene(data);
    ASSERT_EQ(scene.items.size(), 1U);
    SceneItem item = scene.items[0];
    EXPECT_FALSE(item.canSize);
    EXPECT_TRUE(HitTest(scene, camera, camera.ToPixel({50.0, 20.0 + 290.0}), std::nullopt).has_value());
    item.pose = TurnedTo(CentredAt(item.pose, {0.0, 0.0}), 0.0);
    EXPECT_TRUE(PlaceItem(data, item));
    line = lineOf(camera);
    ExpectNear(line[2], camera.ToPixel({300.0, 100.0}), 1e-6);
    // A point that stands twice ends a line.
    data.Spuren()[0].punkte = {{0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {2.0, 0.0}, {50.0, 9.0}, {60.0, 9.0}, {61.0, 9.0}};
    line = lineOf(camera);
    ASSERT_EQ(line.size(), 3U);
    ExpectNear(line[2], camera.ToPixel({2.0, 0.0}), 1e-6);
    data.Spuren()[0] = {"", {{-300.0, -100.0}, {300.0, 100.0}}, {}, 0.0, true, false, {}};
    data.Spuren()[0].gesperrt = true;
    item = ReadScene(data).items.at(0);
    item.pose.position = {9.0, 9.0};
    EXPECT_FALSE(PlaceItem(data, item));
    EXPECT_EQ(data.Spuren()[0].mitte, CDPoint{});
    data.Spuren()[0].sichtbar = false;
    EXPECT_TRUE(ReadScene(data).items.empty());
    RemoveItem(data, item.id);
    EXPECT_TRUE(data.Spuren().empty());
}

/// Whether two numbers one after the other are those of the point.
bool HoldsPoint(const std::string& text, CDPoint point)
{
    static const std::regex pair("(-?[0-9.]+)[ ,](-?[0-9.]+)");
    return std::any_of(std::sregex_iterator(text.begin(), text.end(), pair), {}, [&](const std::smatch& match) {
        const auto number = [](const std::string& digits) {
            double value = 0.0;
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
            return value;
        };
        return std::hypot(number(match[1]) - point.x, number(match[2]) - point.y) < 0.01;
    });
}

TEST(SceneTracks, AreInTheFilesOfTheScene)
{
    CRuvData data;
    data.Spuren() = {Track()};
    const SceneCamera camera = Camera();
    for (const bool visible : {true, false}) {
        data.Spuren()[0].sichtbar = visible;
        CDC dc(camera.width, camera.height);
        DrawScene(dc, camera, ReadScene(data), {});
        const drawing_test::PdfReader pdf(drawing::ToPdf(dc));
        std::string page;
        for (std::size_t i = 1; i < pdf.Count(); ++i)
            if (pdf.Object(i).find("/Contents ") != std::string::npos)
                page = pdf.Stream(drawing_test::PdfReader::Reference(pdf.Object(i), "Contents"));
        for (const CDPoint at : {CDPoint{150.0, -280.0}, CDPoint{50.0, 20.0}, CDPoint{-50.0, 320.0}}) {
            EXPECT_EQ(HoldsPoint(drawing::ToSvg(dc), camera.ToPixel(at)), visible);
            EXPECT_EQ(HoldsPoint(page, camera.ToPixel(at)), visible);
        }
    }
}

// Put, moved, turned and removed: each is a step that is taken back and repeated to the letter.
TEST(SceneTracks, AreStepsOfTheCase)
{
    CRuvData data;
    CaseHistory history(data);
    std::vector<std::string> texts{history.Text()};
    const auto step = [&](const char* label) {
        EXPECT_TRUE(history.Commit(label)) << label;
        texts.push_back(history.Text());
    };
    const auto place = [&data](const auto& change) {
        SceneItem item = ReadScene(data).items.at(0);
        item.pose = change(item.pose);
        EXPECT_TRUE(PlaceItem(data, item));
    };
    data.Spuren().push_back(Track());
    step("gelegt");
    place([](const CPlacedObject& pose) { return CentredAt(pose, {1234.5, -678.9}); });
    step("verschoben");
    place([](const CPlacedObject& pose) { return TurnedTo(pose, 33.3); });
    step("gedreht");
    RemoveItem(data, ReadScene(data).items.at(0).id);
    step("entfernt");
    EXPECT_EQ(texts.back(), texts.front());
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = texts.size() - 1; i > 0; --i) {
            EXPECT_EQ(history.Text(), texts[i]);
            ASSERT_TRUE(history.Undo());
            EXPECT_EQ(data.Spuren().size(), i == 1 ? 0U : 1U) << i;
        }
        EXPECT_FALSE(history.CanUndo());
        for (std::size_t i = 0; i + 1 < texts.size(); ++i) {
            EXPECT_EQ(history.Text(), texts[i]);
            ASSERT_TRUE(history.Redo());
        }
    }
    std::string text;
    ASSERT_TRUE(CaseToJson(data, text));
    EXPECT_EQ(text, texts.back());
}

} // namespace
