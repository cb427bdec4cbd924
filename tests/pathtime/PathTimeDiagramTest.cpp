// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PathTimeDiagram.h"
#include "drawing/DiagramColor.h"
#include "drawing/DiagramLabels.h"
#include "host/Charts.h"
#include "tests/support/Primitives.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

namespace
{

using namespace drawing;
using namespace pathtime;

/// Text primitive with its extent.
struct ShownText {
    const drawing::Text* text;
    double left;
    double right;
};

std::vector<ShownText> Texts(const CDC& dc)
{
    std::vector<ShownText> texts;
    for (const auto& primitive : dc.Primitives()) {
        const auto* text = std::get_if<drawing::Text>(&primitive);
        if (text == nullptr)
            continue;
        CDC measure(1.0, 1.0);
        measure.SelectFont(text->font);
        const double width = measure.TextWidth(text->utf8);
        const double left = text->position.x - (text->align == TextAlign::right    ? width
                                                : text->align == TextAlign::center ? width / 2.0
                                                                                   : 0.0);
        texts.push_back({text, left, left + width});
    }
    return texts;
}

CWegZeitRechDat Drive(double speedKmh, double deceleration, double brakingTime, double before)
{
    CWegZeitRechDat data;
    data.spalten[3].art = PhasenArt::braking;
    data.spalten[3].vEnd = speedKmh;
    data.spalten[3].verz = deceleration;
    data.spalten[3].zeit = brakingTime;
    data.spalten[4].art = PhasenArt::threshold;
    data.spalten[4].verz = deceleration;
    data.spalten[4].zeit = 0.2;
    data.spalten[5].art = PhasenArt::constantSpeed;
    data.spalten[5].zeit = before;
    data.Berechnung();
    return data;
}

TEST(PathTimeDiagram, NothingLeavesTheSheetAndNoTickLabelsTouch)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int run = 0; run < 150; ++run) {
        std::vector<DiagramVehicle> vehicles;
        const auto count = static_cast<std::size_t>(1.0 + 15.0 * unit(random));
        const double scale = std::pow(10.0, 4.0 * unit(random) - 2.0);
        for (std::size_t i = 0; i < count; ++i)
            vehicles.push_back({std::string(1 + i * 7, 'M') + " ü", static_cast<COLORREF>(random() & 0xFFFFFFU),
                                PathTimeCurve(Drive(90.0 * unit(random), 9.0 * unit(random) - 1.0, scale * unit(random),
                                                    scale * unit(random)))});
        CDC dc(300.0 + 900.0 * unit(random), 260.0 + 700.0 * unit(random));
        PathTimeDiagramOptions options;
        options.title = "Weg-Zeit-Diagramm";
        options.palette = run % 2 == 0 ? DiagramPalette::Light() : DiagramPalette::Dark();
        DrawPathTimeDiagram(dc, vehicles, options);

        std::map<double, std::vector<ShownText>> rows;
        for (const ShownText& shown : Texts(dc)) {
            ASSERT_GE(shown.left, -0.01) << shown.text->utf8;
            ASSERT_LE(shown.right, dc.Width() + 0.01) << shown.text->utf8;
            ASSERT_GE(shown.text->position.y, shown.text->font.size * 0.7);
            ASSERT_LE(shown.text->position.y, dc.Height() - 2.0);
            if (shown.text->align != TextAlign::center)
                ASSERT_GE(Contrast(shown.text->color, options.palette.background), 4.5) << shown.text->utf8;
            else
                rows[shown.text->position.y].push_back(shown);
        }
        for (auto& [y, row] : rows) {
            std::sort(row.begin(), row.end(), [](const auto& a, const auto& b) { return a.left < b.left; });
            for (std::size_t i = 1; i < row.size(); ++i)
                ASSERT_GT(row[i].left, row[i - 1].right) << row[i].text->utf8;
        }
        for (const auto& line : test::All<drawing::Polyline>(dc))
            for (const CDPoint& point : line.points) {
                ASSERT_TRUE(point.x >= 0.0 && point.x <= dc.Width());
                ASSERT_TRUE(point.y >= 0.0 && point.y <= dc.Height());
            }
    }
}

TEST(PathTimeDiagram, PanelsShareTheTimeAxisAndShowTheMotion)
{
    const CWegZeitRechDat drive = Drive(18.0, 8.0, 1.0, 2.0);
    const std::vector<DiagramVehicle> vehicles{{"Pkw", RGB(200, 0, 0), PathTimeCurve(drive)}};
    CDC dc(800.0, 600.0);
    DrawPathTimeDiagram(dc, vehicles, {});
    std::vector<const drawing::Polyline*> curves;
    std::map<std::string, const drawing::Text*> labels;
    for (const auto& primitive : dc.Primitives()) {
        const auto* line = std::get_if<drawing::Polyline>(&primitive);
        if (line != nullptr && line->points.size() > 2)
            curves.push_back(line);
        if (const auto* text = std::get_if<drawing::Text>(&primitive))
            labels[text->utf8] = text;
    }
    ASSERT_EQ(curves.size(), 2U);
    EXPECT_EQ(curves[0]->points.front().x, curves[1]->points.front().x);
    EXPECT_EQ(curves[0]->points.back().x, curves[1]->points.back().x);
    // Two seconds before the collision lie where the axis says so, and the curve passes there at its start speed.
    ASSERT_TRUE(labels.contains("−2,0") && labels.contains("−1,0") && labels.contains("18 km/h"));
    const double second = labels["−1,0"]->position.x - labels["−2,0"]->position.x;
    const auto& path = curves[0]->points;
    EXPECT_NEAR(path.back().x - path.front().x, second * 3.2, 1e-6);
    const double metre = (path.front().y - path.back().y) / drive.spalten[5].sumWeg;
    const double slope = (path[0].y - path[1].y) / (path[1].x - path[0].x);
    EXPECT_NEAR(slope / metre * second, drive.spalten[5].vAnf / 3.6, 0.01) << "but for what nobody can see";
}

std::size_t CurvesIn(const CDC& dc)
{
    const auto lines = test::All<drawing::Polyline>(dc);
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(), [](const auto& line) { return line.points.size() > 2; }));
}

class LeastHeightTest : public ::testing::TestWithParam<int>
{
};

TEST_P(LeastHeightTest, LetsEveryCurveBeSeenAndNoLabelCoverAnother)
{
    std::vector<DiagramVehicle> vehicles;
    const auto count = static_cast<std::size_t>(GetParam());
    for (int i = 0; i < GetParam(); ++i)
        vehicles.push_back({"Fahrzeug " + std::to_string(i + 1), RGB(200, 10U * static_cast<unsigned>(i), 0),
                            PathTimeCurve(Drive(30.0 + i % 3, 7.0, 1.0, 2.0))});
    for (const double width : {420.0, 900.0, 1600.0}) {
        const double least = LeastDiagramHeight(width, vehicles, {});
        CDC dc(width, least);
        const DiagramArea area = DrawPathTimeDiagram(dc, vehicles, {});
        EXPECT_EQ(CurvesIn(dc), 2 * count) << width << " x " << least;
        EXPECT_NEAR(area.start, -3.2 * 1.02, 1e-9);
        EXPECT_NEAR(area.TimeAt(area.right), 0.0, 1e-12);
        std::vector<double> speeds;
        for (const ShownText& shown : Texts(dc))
            if (shown.text->utf8.ends_with(" km/h") && shown.left > area.right)
                speeds.push_back(shown.text->position.y);
        ASSERT_EQ(speeds.size(), count);
        std::sort(speeds.begin(), speeds.end());
        for (std::size_t i = 1; i < speeds.size(); ++i)
            EXPECT_GE(speeds[i] - speeds[i - 1], 12.0);
        CDC low(width, 150.0);
        EXPECT_TRUE(DrawPathTimeDiagram(low, vehicles, {}).IsEmpty());
        EXPECT_EQ(CurvesIn(low), 0U);
        EXPECT_EQ(Texts(low).back().text->utf8, "Zu wenig Platz für das Diagramm");
    }
}

INSTANTIATE_TEST_SUITE_P(Vehicles, LeastHeightTest, ::testing::Values(1, 2, 5, 6, 16));

TEST(PathTimeDiagram, WithoutTimeThereIsNoAxis)
{
    CWegZeitRechDat still;
    still.spalten[3].art = PhasenArt::braking;
    CDC dc(600.0, 400.0);
    EXPECT_TRUE(DrawPathTimeDiagram(dc, std::vector<DiagramVehicle>{{"Pkw", 0, PathTimeCurve(still)}}, {}).IsEmpty());
    EXPECT_EQ(Texts(dc).back().text->utf8, "Die Phasen haben noch keine Zeit");
}

TEST(PathTimeDiagram, WithoutPhasesItSaysSo)
{
    CDC dc(400.0, 300.0);
    DrawPathTimeDiagram(dc, {}, {});
    ASSERT_EQ(Texts(dc).size(), 1U);
    EXPECT_EQ(Texts(dc)[0].text->utf8, "Keine Phasen vor der Kollision");
}

TEST(AxisTicks, HoldTheRangeInRoundSteps)
{
    const AxisTicks time = TicksFor(-4.3, 0.0, 10);
    EXPECT_DOUBLE_EQ(time.step, 0.5);
    EXPECT_EQ(time.Label(0), "−4,5");
    EXPECT_EQ(time.Label(time.count - 1), "0,0");
    EXPECT_EQ(TicksFor(0.0, 0.0, 5).maximum, 1.0);

    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int run = 0; run < 5000; ++run) {
        const double scale = std::pow(10.0, 1.0 + 4.0 * unit(random));
        const double a = scale * unit(random);
        const double b = a + scale * (1.001 + unit(random));
        const int intervals = 2 + run % 12;
        const AxisTicks ticks = TicksFor(a, b, intervals);
        ASSERT_LE(ticks.count - 1, intervals);
        ASSERT_LE(ticks.minimum, std::min(a, b) + 1e-8 * ticks.step);
        ASSERT_GE(ticks.maximum, std::max(a, b) - 1e-8 * ticks.step);
        ASSERT_NEAR(ticks.At(ticks.count - 1), ticks.maximum, 1e-9 * ticks.step);
        // The next finer step of 1, 2, 5, 10 would need too many.
        const double digit = ticks.step / std::pow(10.0, std::floor(std::log10(ticks.step) + 1e-9));
        const double finer = ticks.step / (std::abs(digit - 5.0) < 0.1 ? 2.5 : 2.0);
        const double needed = std::ceil(std::max(a, b) / finer - 1e-7) - std::floor(std::min(a, b) / finer + 1e-7);
        ASSERT_GT(needed, intervals) << a << " to " << b;
    }
}

TEST(DiagramColor, ContrastAndShift)
{
    EXPECT_NEAR(Contrast(RGB(0, 0, 0), RGB(255, 255, 255)), 21.0, 1e-9);
    EXPECT_NEAR(Contrast(RGB(119, 119, 119), RGB(255, 255, 255)), 4.48, 0.01); // the known borderline grey
    EXPECT_EQ(Legible(RGB(200, 0, 0), RGB(255, 255, 255), 3.0), RGB(200, 0, 0));
    std::mt19937 random(9);
    for (int run = 0; run < 500; ++run) {
        const COLORREF color = random() & 0xFFFFFFU;
        for (const COLORREF background : {DiagramPalette::Light().plot, DiagramPalette::Dark().plot})
            ASSERT_GE(Contrast(Legible(color, background, 4.5), background), 4.5);
    }
    EXPECT_TRUE(LookAlike(RGB(200, 30, 30), RGB(200, 30, 60)));
    EXPECT_FALSE(LookAlike(RGB(200, 0, 0), RGB(0, 0, 200)));
}

TEST(DiagramLabels, SpreadingIsTheLeastMoveAndShorteningCutsWholeLetters)
{
    std::vector<double> positions{10.0, 11.0, 50.0};
    SpreadApart(positions, 6.0);
    EXPECT_EQ(positions, (std::vector<double>{7.5, 13.5, 50.0}));
    positions = {0.0, 5.0, 10.0, 11.0};
    SpreadApart(positions, 5.0);
    // All four become one group about the mean of 0, 0, 0 and -4.
    EXPECT_EQ(positions, (std::vector<double>{-1.0, 4.0, 9.0, 14.0}));

    CDC dc(10.0, 10.0);
    const std::string name = "Größe";
    for (double width = 0.0; width < dc.TextWidth(name) + 1.0; width += 0.5) {
        const std::string shown = ShortenedToFit(dc, name, width);
        ASSERT_LE(dc.TextWidth(shown), width);
        EXPECT_TRUE(std::set<std::string>({"Größe", "Größ…", "Grö…", "Gr…", "G…", ""}).contains(shown)) << shown;
    }
    EXPECT_EQ(ShortenedToFit(dc, name, 1000.0), name);
}

} // namespace
