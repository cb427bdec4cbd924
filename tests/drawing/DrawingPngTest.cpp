// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DrawingExport.h"
#include "tests/support/DrawingFiles.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using namespace drawing;
using namespace drawing_test;
using drawing_test::Picture;

TEST(DrawingPng, FillsExactly)
{
    CDC dc(40, 30);
    dc.SelectPen(kNoPen);
    dc.SelectBrush({true, kRed});
    dc.Rectangle(10, 10, 20.5, 20);
    const Picture picture(dc);
    EXPECT_EQ(picture.Width(), 40);
    EXPECT_EQ(picture.Height(), 30);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x) {
            const double share = y < 10 || y >= 20 || x < 10 || x > 20 ? 0.0 : x == 20 ? 0.5 : 1.0;
            EXPECT_NEAR(picture.Ink(x, y), share, 1.0 / 255.0) << x << ' ' << y;
        }
    }
    EXPECT_EQ(picture.At(15, 15), kRed);
    EXPECT_EQ(Picture(dc, 2.5).Width(), 100);
    EXPECT_NEAR(Picture(dc, 2.5).Area(), 105 * 2.5 * 2.5, 1.0);
}

TEST(DrawingPng, AreasAreThoseOfGeometry)
{
    struct Case {
        const char* name;
        void (*draw)(CDC&);
        double area;
    };
    const Case cases[] = {
        {"sloping line",
         [](CDC& dc) {
             dc.Line({20, 30}, {140, 80});
         },
         130 * 4},
        {"closed triangle, mitred",
         [](CDC& dc) {
             dc.Polygon({{30, 20}, {130, 20}, {30, 120}});
         },
         // Perimeter · width: what the mitres add outside is what the corners lack inside.
         (200 + 100 * std::numbers::sqrt2) * 4},
        {"rectangle", [](CDC& dc) { dc.Rectangle(20, 20, 120, 70); }, 104 * 54 - 96 * 46},
        {"circle",
         [](CDC& dc) {
             dc.Ellipse({80, 80}, 50, 50);
         },
         2 * kPi * 50 * 4},
        {"round joins",
         [](CDC& dc) {
             dc.Polyline({{20, 20}, {120, 20}, {120, 120}});
         },
         // Two pieces that overlap in a 2 by 2 square, and a quarter disc of radius 2.
         2 * 400 - 4 + kPi},
        {"a bend wider than the piece after it",
         [](CDC& dc) {
             dc.SelectPen({PenStyle::solid, 40, 0});
             dc.Polyline({{60, 80}, {100, 80}, {100, 84}});
         },
         // A 40 by 40 square, what the second piece adds to it, and a quarter disc of radius 20.
         40 * 40 + 20 * 4 + kPi * 400 / 4},
        {"many short pieces",
         [](CDC& dc) {
             std::vector<CDPoint> points;
             for (int i = 0; i <= 3000; ++i)
                 points.push_back({80 + 50 * std::cos(i * kPi / 3000), 80 + 50 * std::sin(i * kPi / 3000)});
             dc.Polyline(points);
         },
         kPi * 50 * 4},
        {"turned ellipse, filled",
         [](CDC& dc) {
             dc.SelectPen(kNoPen);
             dc.SelectBrush({true, 0});
             dc.Ellipse({80, 80}, 60, 20, 1.0);
         },
         kPi * 60 * 20},
        {"rounded corners, filled",
         [](CDC& dc) {
             dc.SelectPen(kNoPen);
             dc.SelectBrush({true, 0});
             dc.Rectangle(20, 20, 120, 80, 20, 10);
         },
         100 * 60 - (4 - kPi) * 20 * 10},
        {"star, filled by the non-zero rule",
         [](CDC& dc) {
             dc.SelectPen(kNoPen);
             dc.SelectBrush({true, 0});
             std::vector<CDPoint> points;
             for (int i = 0; i < 5; ++i)
                 points.push_back({80 + 70 * std::sin(i * 0.8 * kPi), 80 - 70 * std::cos(i * 0.8 * kPi)});
             dc.Polygon(points);
         },
         // Ten triangles from the centre; the inner corners lie cos 72° / cos 36° as far out as the points.
         5 * 70 * 70 * std::cos(0.4 * kPi) / std::cos(0.2 * kPi) * std::sin(0.2 * kPi)},
    };
    for (const Case& c : cases) {
        CDC dc(160, 160);
        dc.SelectPen({PenStyle::solid, 4, 0});
        c.draw(dc);
        EXPECT_NEAR(Picture(dc).Area(), c.area, 0.004 * c.area + 0.5) << c.name;
        EXPECT_NEAR(Picture(dc, 2.0).Area() / 4.0, c.area, 0.003 * c.area + 0.5) << c.name;
    }
}

TEST(DrawingPng, EllipsesAndTextTurnCounterClockwise)
{
    CDC ellipse(160, 160);
    ellipse.SelectPen(kNoPen);
    ellipse.SelectBrush({true, 0});
    ellipse.Ellipse({80, 80}, 60, 10, kPi / 4);
    const Picture turned(ellipse);
    EXPECT_EQ(turned.Ink(80 + 35, 80 - 35), 1.0);
    EXPECT_EQ(turned.Ink(80 + 35, 80 + 35), 0.0);

    CDC text(160, 160);
    text.SelectFont({20, false});
    text.TextOut({80, 80}, "HHHHH", TextAlign::left, kPi / 2);
    const Picture upright(text);
    EXPECT_GT(upright.Area(65, 5, 80, 80), 50.0); // above the anchor, letters to its left
    EXPECT_NEAR(upright.Area(), upright.Area(65, 5, 80, 80), 1e-9);
}

TEST(DrawingPng, DashesFollowThePattern)
{
    const auto dashed = [](PenStyle style, double from) {
        CDC dc(180, 10);
        dc.SelectPen({style, 2, 0});
        dc.Line({from, 5}, {1e6, 5});
        return ToPng(dc, 1.0);
    };
    for (const PenStyle style : {PenStyle::dash, PenStyle::dot, PenStyle::dashDot, PenStyle::dashDotDot}) {
        const std::vector<double> lengths = DashLengths({style, 2, 0});
        const Picture picture(dashed(style, 0.0));
        double at = 0.0;
        for (std::size_t i = 0; at < 180; at += lengths[i++ % lengths.size()])
            EXPECT_EQ(picture.Ink(static_cast<int>(at), 4), i % 2 == 0 ? 1.0 : 0.0) << at;
        EXPECT_EQ(picture.Ink(0, 3), 0.0);
        // A start far outside, whole periods away (of 18, 8, 28 and 38 px), leaves the same picture.
        const Picture far(dashed(style, -718200.0));
        for (int x = 0; x < 180; ++x)
            EXPECT_NEAR(far.Ink(x, 4), picture.Ink(x, 4), 1.0 / 255.0);
    }
    EXPECT_TRUE(DashLengths({PenStyle::solid, 2, 0}).empty());

    // Dashes of 18 and gaps of 9 on 40 + 40 px: the second dash bends, 13 px before the corner and 5 px after it.
    CDC dc(100, 100);
    dc.SelectPen({PenStyle::dash, 3, 0});
    dc.Polyline({{10, 10}, {50, 10}, {50, 50}});
    const double corner = 1.5 * 1.5 * (kPi / 4.0 - 1.0);
    EXPECT_NEAR(Picture(dc).Area(), 3 * 18 * 3 + corner, 0.5);
    EXPECT_EQ(Picture(dc).Ink(49, 14), 1.0);
    EXPECT_EQ(Picture(dc).Ink(49, 16), 0.0);
}

TEST(DrawingPng, TextStaysInItsBox)
{
    const std::string text = "Mögliche Größe: 7,85 m/s² ≤ √2";
    for (const TextAlign align : {TextAlign::left, TextAlign::center, TextAlign::right}) {
        for (const bool bold : {false, true}) {
            CDC dc(600, 60);
            dc.SelectFont({16, bold});
            dc.TextOut({300, 30}, text, align);
            const double width = dc.TextWidth(text);
            const double left = 300 - (align == TextAlign::left ? 0.0 : align == TextAlign::center ? 0.5 : 1.0) * width;
            const int x0 = static_cast<int>(std::floor(left));
            const int x1 = static_cast<int>(std::ceil(left + width));
            const int y0 = static_cast<int>(std::floor(30 - dc.TextAscent()));
            const int y1 = static_cast<int>(std::ceil(30 - dc.TextAscent() + dc.TextHeight()));
            const Picture picture(dc);
            EXPECT_GT(picture.Area(x0, y0, x1, y1), 200.0);
            EXPECT_EQ(picture.Area(), picture.Area(x0, y0, x1, y1));
            EXPECT_GT(picture.Area(x0, y0, x0 + 6, y1), 1.0);  // begins at the left edge
            EXPECT_GT(picture.Area(x1 - 10, y0, x1, y1), 1.0); // and ends at the right one
        }
    }
}

TEST(DrawingPng, PrimitivesReachOverTheBorder)
{
    CDC dc(50, 40);
    dc.SelectPen({PenStyle::solid, 10, 0});
    dc.SelectBrush({true, kRed});
    dc.Rectangle(-1e9, -1e9, 1e9, 1e9);
    EXPECT_NEAR(Picture(dc).Area(), 50 * 40, 1e-9);
    CDC line(50, 40);
    line.SelectPen({PenStyle::solid, 2, 0});
    line.Line({-1e5, 20}, {1e5, 20});
    line.TextOut({45, 20}, "abgeschnitten");
    line.TextOut({-30, 2}, "abgeschnitten");
    const Picture picture(line);
    EXPECT_NEAR(picture.Area(0, 18, 40, 22), 40 * 2, 0.5);
}
} // namespace
