// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/SchrankenDiagramm.h"

#include "host/CRuvData.h"
#include "host/RuvCfg.h"
#include "host/Units.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace
{

using Dat = CSchrankenverfahrenDat;
using schranken::Farben;

constexpr COLORREF kGrid = RGB(230, 230, 230);
constexpr COLORREF kGreen = RGB(45, 175, 20);

template <class T> std::vector<T> Of(const CDC& dc)
{
    std::vector<T> found;
    for (const auto& primitive : dc.Primitives())
        if (const T* one = std::get_if<T>(&primitive))
            found.push_back(*one);
    return found;
}

class SchrankenDiagrammTest : public ::testing::Test
{
  protected:
    SchrankenDiagrammTest()
    {
        UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
        data.KfzDat(0) = TypicalCar("Pkw", RGB(200, 0, 0));
        data.KfzDat(0).length = 4.4;
        data.KfzDat(1) = TypicalCar("Person", RGB(0, 0, 180));
        data.KfzDat(1).type = CKfzDaten::Type::pedestrian;
    }
    ~SchrankenDiagrammTest() override { UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric); }

    /// The vehicle drives along x and ends with its front at 0; the person lies 4 m before it, the collision was 14 to
    /// 18 m behind it.
    void Place()
    {
        dat.fahrzeugNr = 0;
        dat.personNr = 1;
        dat.objekte[Dat::fahrzeug] = {{-2.2, 0.0}, 0.0, 0.0, 0.0, 1};
        dat.objekte[Dat::person] = {{3.75, -0.9}, 0.0, 0.5, 1.8, 1};
        dat.objekte[Dat::kollisionsort] = {{-18.0, -1.0}, 0.0, 4.0, 2.0, 1};
        dat.verzoegerung = 7.0;
        dat.verzoegerungToleranz = 0.7;
    }
    /// Every barrier is switched on and has its curves.
    void ComputeAllBarriers()
    {
        Place();
        dat.theorien.fill(1);
        dat.objekte[Dat::hauptfeld] = {{-10.0, -1.0}, 0.0, 3.0, 1.0, 1};
        dat.objekte[Dat::gesamtfeld] = {{-12.0, -1.0}, 0.0, 8.0, 1.0, 1};
        dat.abwicklungWeg = 210.0;
        dat.geschwindigkeitVon = 15.0;
        dat.Berechnen();
    }
    CDC Draw(bool large = false, double width = 700.0, double height = 400.0) const
    {
        CDC dc(width, height);
        schranken::ZeichneDiagramm(dc, dat, Farben::Aus(CRuvCfg{}), large);
        return dc;
    }
    /// The plot; its frame is drawn through the middle of pixels.
    static drawing::Rectangle Plot(const CDC& dc)
    {
        auto plot = Of<drawing::Rectangle>(dc).at(1);
        for (double* edge : {&plot.left, &plot.top, &plot.right, &plot.bottom})
            *edge -= 0.5;
        return plot;
    }
    /// A point of the drawing as distance (m) and speed (km/h).
    CDPoint Value(const CDC& dc, const CDPoint& p) const
    {
        const auto plot = Plot(dc);
        const auto axes = schranken::AchsenVon(dat);
        return {axes.wegVon + (p.x - plot.left) / (plot.right - plot.left) * (axes.wegBis - axes.wegVon),
                (plot.bottom - p.y) / (plot.bottom - plot.top) * axes.tempoBis};
    }
    double Scale(const CDC& dc) const
    {
        const auto axes = schranken::AchsenVon(dat);
        const auto plot = Plot(dc);
        return (plot.right - plot.left) / (axes.wegBis - axes.wegVon);
    }
    std::vector<drawing::Polyline> Strokes(const CDC& dc, Dat::Schranke curve) const
    {
        const COLORREF color = Farben::Aus(CRuvCfg{}).kurven[curve];
        auto strokes = Of<drawing::Polyline>(dc);
        std::erase_if(strokes, [&](const auto& stroke) { return stroke.pen.color != color; });
        return strokes;
    }
    static std::set<std::string> Texts(const CDC& dc)
    {
        std::set<std::string> texts;
        for (const auto& text : Of<drawing::Text>(dc))
            texts.insert(text.utf8);
        return texts;
    }
    static std::vector<drawing::Polygon> Green(const CDC& dc)
    {
        auto polygons = Of<drawing::Polygon>(dc);
        std::erase_if(polygons, [](const auto& p) { return !p.brush.filled || p.brush.color != kGreen; });
        return polygons;
    }

    CRuvData data;
    Dat dat{data};
};

TEST_F(SchrankenDiagrammTest, EmptySceneHasItsAxesAndGrid)
{
    const CDC dc = Draw(true);
    for (const char* text : {"−5 m", "0 m", "0", "10", "50", "100", "Weg in m", "Geschwindigkeit in km/h"})
        EXPECT_TRUE(Texts(dc).contains(text)) << text;
    std::vector<double> vertical;
    std::vector<double> horizontal;
    for (const auto& line : Of<drawing::Polyline>(dc)) {
        if (line.pen.color != kGrid)
            continue;
        EXPECT_EQ(line.pen.style, PenStyle::solid);
        const bool upright = line.points[0].x == line.points[1].x;
        (upright ? vertical : horizontal)
            .push_back(upright ? Value(dc, line.points[0]).x : Value(dc, line.points[0]).y);
    }
    ASSERT_EQ(vertical.size(), 3U);
    const double pixel = 1.0 / Scale(dc);
    EXPECT_NEAR(vertical[0], -5.0, pixel);
    EXPECT_NEAR(vertical[1], 0.0, pixel);
    EXPECT_NEAR(vertical[2], 5.0, pixel);
    ASSERT_GE(horizontal.size(), 9U);
    EXPECT_NEAR(horizontal[0], 10.0, 0.3);
    EXPECT_NEAR(horizontal[8], 90.0, 0.3);
    EXPECT_TRUE(Green(dc).empty());
    EXPECT_TRUE(Of<drawing::Ellipse>(dc).empty());
}

TEST_F(SchrankenDiagrammTest, AxesFollowSceneAndArea)
{
    Place();
    dat.Berechnen();
    const auto axes = schranken::AchsenVon(dat);
    EXPECT_NEAR(axes.wegVon, -4.0 - 0.5 - 5.0, 1e-9);
    EXPECT_NEAR(axes.wegBis, 18.0 + 5.0, 1e-9);
    EXPECT_EQ(axes.tempoBis, dat.tempo.bis + 10.0);
    dat.objekte[Dat::kollisionsort].position.x = 40.0; // before the vehicle: nothing in common
    dat.Berechnen();
    EXPECT_EQ(schranken::AchsenVon(dat).tempoBis, 100.0);
    EXPECT_NEAR(schranken::AchsenVon(dat).wegBis, 4.4 + 5.0, 1e-9) << "the vehicle's length";
}

TEST_F(SchrankenDiagrammTest, FeetAreTickedInTensFromZero)
{
    Place();
    dat.Berechnen();
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    const CDC large = Draw(true, 1200.0, 800.0);
    for (const char* text : {"0 ft", "10 ft", "−10 ft", "50 ft", "Weg in ft", "Geschwindigkeit in mph", "30"})
        EXPECT_TRUE(Texts(large).contains(text)) << text;
    EXPECT_FALSE(Texts(large).contains("5 ft"));
    const CDC small = Draw(false, 1200.0, 800.0);
    EXPECT_TRUE(Texts(small).contains("−10"));
    EXPECT_FALSE(Texts(small).contains("10 ft"));
    for (const auto& line : Of<drawing::Polyline>(small)) {
        if (line.pen.color != kGrid || line.points[0].x != line.points[1].x)
            continue;
        const double feet = Value(small, line.points[0]).x / 3.048;
        EXPECT_NEAR(feet, std::round(feet), 0.05);
    }
}

TEST_F(SchrankenDiagrammTest, VehicleStandsToScaleAndPointsForward)
{
    Place();
    for (const bool large : {false, true}) {
        dat.Projizieren();
        const CDC dc = Draw(large);
        const auto vehicle = Of<drawing::Rectangle>(dc).at(2);
        EXPECT_EQ(vehicle.pen.style, PenStyle::dashDotDot);
        EXPECT_EQ(vehicle.pen.width, large ? 2.0 : 1.0);
        EXPECT_EQ(vehicle.pen.color, RGB(200, 0, 0));
        EXPECT_NEAR(Value(dc, {vehicle.left, 0}).x, 0.0, 1e-9);
        EXPECT_NEAR(Value(dc, {vehicle.right, 0}).x, 4.4, 1e-9);
        EXPECT_NEAR(vehicle.bottom - vehicle.top, 1.8 * Scale(dc), 1e-9);
        EXPECT_NEAR(vehicle.radiusX, 0.2 * 4.4 * Scale(dc), 1e-9);
        const auto plot = Plot(dc);
        EXPECT_NEAR((vehicle.top + vehicle.bottom) / 2.0, (plot.top + plot.bottom) / 2.0, 1.0);
        // The axis runs backwards: the tip lies nearest to 0.
        const auto tip = Of<drawing::Polygon>(dc).at(0).points;
        ASSERT_EQ(tip.size(), 3U);
        EXPECT_NEAR(Value(dc, tip[0]).x, 0.07 * 4.4, 1e-9);
        EXPECT_NEAR(Value(dc, tip[1]).x, 0.17 * 4.4, 1e-9);
        EXPECT_NEAR(tip[0].y, (vehicle.top + vehicle.bottom) / 2.0, 1e-9);
        EXPECT_NEAR(tip[2].y - tip[1].y, 0.5 * 1.8 * Scale(dc), 1e-9);
    }
    dat.fahrzeugNr = 9; // no longer in the case
    dat.Projizieren();
    EXPECT_EQ(Of<drawing::Rectangle>(Draw()).size(), 2U);
}

TEST_F(SchrankenDiagrammTest, PersonIsTurnedAsInThePlan)
{
    // In the plan both objects are turned by the same angle: the picture stays.
    for (const double turn : {0.0, 1.1, -2.7}) {
        Place();
        dat.objekte[Dat::person].winkel = 0.4; // width axis 0.4 rad to the left of the vehicle's heading
        for (auto& object : dat.objekte) {
            object.position.Rotate(turn, {});
            object.winkel += turn;
        }
        dat.Projizieren();
        const CDC dc = Draw();
        const auto ellipses = Of<drawing::Ellipse>(dc);
        ASSERT_EQ(ellipses.size(), 1U);
        EXPECT_NEAR(ellipses[0].rx, 0.25 * Scale(dc), 1e-9);
        EXPECT_NEAR(ellipses[0].ry, 0.9 * Scale(dc), 1e-9);
        EXPECT_NEAR(ellipses[0].angle, 0.4, 1e-9) << "the picture is the plan turned by π: angles stay";
        EXPECT_NEAR(Value(dc, ellipses[0].centre).x, dat.personLaengs, 1e-9);
        EXPECT_EQ(ellipses[0].pen.style, PenStyle::solid);
    }
    dat.personNr = -2;
    EXPECT_TRUE(Of<drawing::Ellipse>(Draw()).empty());
}

TEST_F(SchrankenDiagrammTest, CurvesShowTheRecordAndBreakWhereThereIsNone)
{
    Place();
    dat.theorien[Dat::kuehnelGlobal] = 1;
    dat.Berechnen();
    // A gap in the middle, one point beyond the axes.
    dat.kurven[Dat::kurveKuehnelGlobal][60].y = 0.0;
    dat.kurven[Dat::kurveKuehnelGlobal][100].y = 500.0;
    const CDC dc = Draw();
    const auto strokes = Strokes(dc, Dat::kurveKuehnelGlobal);
    ASSERT_EQ(strokes.size(), 4U) << "the lower curve in three pieces, the upper one";
    std::size_t sample = 0;
    for (std::size_t stroke = 0; stroke < 3; ++stroke) {
        for (const CDPoint& point : strokes[stroke].points) {
            while (dat.kurven[Dat::kurveKuehnelGlobal][sample].y == 0.0 || sample == 100)
                ++sample;
            const CDPoint value = Value(dc, point);
            EXPECT_NEAR(value.x, dat.kurven[Dat::kurveKuehnelGlobal][sample].x, 1e-9);
            EXPECT_NEAR(value.y, dat.kurven[Dat::kurveKuehnelGlobal][sample].y, 1e-9);
            ++sample;
        }
    }
    EXPECT_GT(sample, 101U);
    const auto plot = Plot(dc);
    for (const auto& stroke : Strokes(dc, Dat::kurveBremsung))
        for (const CDPoint& p : stroke.points) {
            EXPECT_GE(p.y, plot.top - 1.0);
            EXPECT_LE(p.x, plot.right + 1.0);
        }
    dat.verzoegerungToleranz = 0.0;
    EXPECT_TRUE(Strokes(Draw(), Dat::kurveBremsung).empty());
}

TEST_F(SchrankenDiagrammTest, KuehnelsDecelerationIsDrawnOnlyAboveThreeButCountsAlways)
{
    Place();
    dat.kuehnelToleranz = 3.0;
    dat.verzoegerung = 3.0;
    dat.Berechnen();
    const auto without = dat.tempo;
    dat.theorien[Dat::kuehnelVerzoegerung] = 1;
    dat.Berechnen();
    EXPECT_TRUE(Strokes(Draw(), Dat::kurveKuehnelVerzoegerung).empty());
    EXPECT_NE(dat.tempo.von, without.von);
    dat.verzoegerung = 3.01;
    dat.Berechnen();
    EXPECT_EQ(Strokes(Draw(), Dat::kurveKuehnelVerzoegerung).size(), 2U);
}

TEST_F(SchrankenDiagrammTest, SpeedBarrierCrossesThePlotWhereItIsGiven)
{
    Place();
    dat.theorien[Dat::geschwindigkeit] = 1;
    dat.geschwindigkeitVon = 20.0;
    dat.Berechnen();
    const CDC dc = Draw();
    const auto lines = Strokes(dc, Dat::kurveGeschwindigkeit);
    ASSERT_EQ(lines.size(), 1U) << "no upper bound";
    EXPECT_NEAR(Value(dc, lines[0].points[0]).y, 20.0, 0.1);
    EXPECT_NEAR(lines[0].points[0].x, Plot(dc).left, 1.0);
    EXPECT_NEAR(lines[0].points[1].x, Plot(dc).right, 1.0);
}

TEST_F(SchrankenDiagrammTest, AreaIsOneGreenPolygonWithinThePlot)
{
    Place();
    dat.theorien[Dat::rauOtteSchulz] = 1;
    dat.rauToleranz = 5.0;
    dat.Berechnen();
    ASSERT_TRUE(dat.HatFlaeche());
    const CDC dc = Draw(true);
    const auto areas = Green(dc);
    ASSERT_EQ(areas.size(), 1U);
    std::size_t lower = 0;
    while (lower + 1 < areas[0].points.size() && areas[0].points[lower + 1].x > areas[0].points[lower].x)
        ++lower;
    EXPECT_EQ((lower + 1) * 2, areas[0].points.size()) << "there along the lower bound, back along the upper one";
    for (const CDPoint& point : areas[0].points) {
        const CDPoint value = Value(dc, point);
        EXPECT_GE(value.x, dat.weg.von - 1e-9);
        EXPECT_LE(value.x, dat.weg.bis + 1e-9);
        EXPECT_GE(value.y, dat.tempo.von - 1e-9);
        EXPECT_LE(value.y, dat.tempo.bis + 1e-9);
    }
    dat.objekte[Dat::kollisionsort].position.x = -1.0; // the bands meet elsewhere
    dat.objekte[Dat::kollisionsort].breite = 0.5;
    dat.Berechnen();
    EXPECT_FALSE(dat.HatFlaeche());
    EXPECT_TRUE(Green(Draw()).empty());
}

TEST_F(SchrankenDiagrammTest, SmallAndLargeShowTheSameAndPairsShareAColour)
{
    ComputeAllBarriers();
    const Farben colors = Farben::Aus(CRuvCfg{});
    EXPECT_EQ(colors.kurven[Dat::kurveBremsung], colors.kurven[Dat::kurveDettinger]);
    EXPECT_EQ(colors.kurven[Dat::kurveKuehnelGlobal], colors.kurven[Dat::kurveRau]);
    EXPECT_EQ(std::set<COLORREF>(colors.kurven.begin(), colors.kurven.end()).size(), Dat::kSchranken - 2);
    const CDC small = Draw(false);
    const CDC large = Draw(true, 700.0, 400.0);
    for (std::size_t curve = 0; curve < Dat::kSchranken; ++curve) {
        const auto a = Strokes(small, static_cast<Dat::Schranke>(curve));
        auto b = Strokes(large, static_cast<Dat::Schranke>(curve));
        std::erase_if(b, [](const auto& stroke) { return stroke.points.size() == 2 && stroke.points[1].x < 200.0; });
        EXPECT_GE(b.size(), a.size()) << curve << " (the legend has lines of its own)";
        EXPECT_FALSE(a.empty()) << curve;
    }
}

/// Each name of the legend stands beside a line that looks like the curves of that name, and no other name is there.
TEST_F(SchrankenDiagrammTest, LegendNamesEveryCurveBesideItsLine)
{
    const std::map<std::string, std::pair<Dat::Schranke, PenStyle>> names{
        {"Bremsverzögerung", {Dat::kurveBremsung, PenStyle::solid}},
        {"Global (Kühnel)", {Dat::kurveKuehnelGlobal, PenStyle::solid}},
        {"Verzögerung (Kühnel)", {Dat::kurveKuehnelVerzoegerung, PenStyle::solid}},
        {"Rau / Otte / Schulz", {Dat::kurveRau, PenStyle::dash}},
        {"Dettinger", {Dat::kurveDettinger, PenStyle::dash}},
        {"Ritter, Krieg, et. al.", {Dat::kurveRitter, PenStyle::solid}},
        {"Frontscheibe", {Dat::kurveFrontscheibe, PenStyle::solid}},
        {"Scheinwerfer - Hauptfeld", {Dat::kurveHauptfeld, PenStyle::solid}},
        {"Scheinwerfer - Gesamtfeld", {Dat::kurveGesamtfeld, PenStyle::solid}},
        {"Abwicklung", {Dat::kurveAbwicklung, PenStyle::solid}},
        {"Geschwindigkeitsschranke", {Dat::kurveGeschwindigkeit, PenStyle::solid}}};
    ComputeAllBarriers();
    const CDC large = Draw(true);
    const Farben colors = Farben::Aus(CRuvCfg{});
    std::set<std::string> found;
    for (const auto& text : Of<drawing::Text>(large)) {
        const auto name = names.find(text.utf8);
        if (name == names.end())
            continue;
        EXPECT_TRUE(found.insert(text.utf8).second);
        const auto lines = Of<drawing::Polyline>(large);
        const auto beside = std::find_if(lines.begin(), lines.end(), [&](const auto& line) {
            return line.points.size() == 2 && line.points[0].y == line.points[1].y &&
                   std::abs(line.points[0].y - text.position.y) < 8.0 && line.points[1].x < text.position.x &&
                   line.points[1].x > text.position.x - 20.0;
        });
        ASSERT_NE(beside, lines.end()) << text.utf8;
        EXPECT_EQ(beside->pen.color, colors.kurven[name->second.first]) << text.utf8;
        EXPECT_EQ(beside->pen.style, name->second.second) << text.utf8;
        // The curves themselves are drawn with that pen.
        EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const auto& line) {
            return &line != &*beside && line.pen.color == beside->pen.color && line.pen.style == beside->pen.style;
        })) << text.utf8;
    }
    EXPECT_EQ(found.size(), names.size());
}

TEST_F(SchrankenDiagrammTest, DarkGroundKeepsEverythingReadable)
{
    CRuvCfg cfg;
    cfg.diagramBackground = RGB(30, 32, 37);
    cfg.diagramPlot = RGB(35, 38, 44);
    const auto lightness = [](COLORREF c) {
        return 0.299 * (c & 255U) + 0.587 * (c >> 8U & 255U) + 0.114 * (c >> 16U & 255U);
    };
    for (const CRuvCfg& one : {CRuvCfg{}, cfg}) {
        const Farben colors = Farben::Aus(one);
        for (const COLORREF curve : colors.kurven)
            EXPECT_GT(std::abs(lightness(curve) - lightness(one.diagramPlot)), 70.0);
        EXPECT_GT(std::abs(lightness(colors.schrift) - lightness(one.diagramBackground)), 120.0);
        EXPECT_LT(std::abs(lightness(colors.raster) - lightness(one.diagramPlot)), 50.0) << "the grid stays quiet";
    }
}

TEST_F(SchrankenDiagrammTest, OddSizesAndNumbersDrawWithoutHarm)
{
    Place();
    dat.theorien.fill(1);
    dat.Berechnen();
    for (const auto& [width, height] : {std::pair{0.0, 0.0}, {10.0, 300.0}, {300.0, 40.0}, {60.0, 60.0}}) {
        CDC dc(width, height);
        schranken::ZeichneDiagramm(dc, dat, Farben::Aus(CRuvCfg{}), false);
        EXPECT_LT(dc.Primitives().size(), 300U);
    }
    for (const double odd : {1e4, 1e9, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        for (const auto object : {Dat::fahrzeug, Dat::person, Dat::kollisionsort}) {
            Place();
            dat.objekte[object].position = {odd, -odd};
            dat.Berechnen();
            const CDC dc = Draw();
            EXPECT_LT(dc.Primitives().size(), 600U) << odd;
            EXPECT_GT(dc.Primitives().size(), 10U);
        }
    }
}

} // namespace
