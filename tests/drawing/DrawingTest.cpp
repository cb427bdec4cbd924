// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DrawingExport.h"
#include "tests/support/DrawingFiles.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>

namespace
{
using namespace drawing;
using namespace drawing_test;
using drawing_test::Picture;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(DrawingRecorder, KeepsOnlyWhatCanBeShown)
{
    CDC dc(100, 100);
    dc.Polyline({{0, 0}, {1, 1}, {kNan, 2}, {3, 3}, {4, kInf}, {5, 5}, {6, 6}, {7, 7}});
    dc.Line({1, 1}, {2, kNan});
    dc.Polygon({{0, 0}, {1, kNan}, {1, 0}, {1, 1}});
    dc.Polygon({{0, 0}, {1, kNan}, {1, 1}});
    dc.Rectangle(0, 0, kInf, 1);
    dc.Rectangle(0, 0, 0, 1);
    dc.Rectangle(9, 8, 1, 2, 100, 100);
    dc.Ellipse({1, 1}, kNan, 1);
    dc.Ellipse({1, 1}, 1, 1, kNan);
    dc.TextOut({kNan, 1}, "x");
    dc.SelectFont({kNan, false});
    dc.TextOut({1, 1}, "x");

    const auto& list = dc.Primitives();
    ASSERT_EQ(list.size(), 4U);
    EXPECT_EQ(std::get<drawing::Polyline>(list[0]).points, (std::vector<CDPoint>{{0, 0}, {1, 1}}));
    EXPECT_EQ(std::get<drawing::Polyline>(list[1]).points, (std::vector<CDPoint>{{5, 5}, {6, 6}, {7, 7}}));
    EXPECT_EQ(std::get<drawing::Polygon>(list[2]).points, (std::vector<CDPoint>{{0, 0}, {1, 0}, {1, 1}}));
    const auto& rectangle = std::get<drawing::Rectangle>(list[3]);
    EXPECT_EQ(rectangle.left, 1);
    EXPECT_EQ(rectangle.bottom, 8);
    EXPECT_EQ(rectangle.radiusX, 4); // no more than half a side
    EXPECT_EQ(rectangle.radiusY, 3);
}

TEST(DrawingRecorder, CutsFarCoordinatesWithoutBendingTheLine)
{
    CDC dc(100, 100);
    dc.Polyline({{0, 0}, {4e9, 1e9}, {50, 50}, {4e9, 1e9}, {4e9, 2e9}, {50, 50}});
    dc.Polygon({{-1e12, -1e12}, {1e12, -1e12}, {1e12, 1e12}, {-1e12, 1e12}});
    const auto& list = dc.Primitives();
    ASSERT_EQ(list.size(), 4U);
    const CDPoint cut = std::get<drawing::Polyline>(list[0]).points.back();
    EXPECT_DOUBLE_EQ(cut.x, 4.0 * cut.y);
    EXPECT_LE(cut.x, 1e6 * (1 + 1e-12));
    ASSERT_EQ(std::get<drawing::Polyline>(list[1]).points.size(), 3U);
    EXPECT_EQ(std::get<drawing::Polyline>(list[1]).points[1], (CDPoint{50, 50}));
    EXPECT_EQ(std::get<drawing::Polyline>(list[2]).points.back(), (CDPoint{50, 50}));
    for (const CDPoint& p : std::get<drawing::Polygon>(list[3]).points)
        EXPECT_EQ(std::abs(p.x) + std::abs(p.y), 2e6); // the corners of the guard box
}

TEST(DrawingSvg, HoldsEveryPrimitive)
{
    const std::string svg = ToSvg(SampleDrawing());
    const auto elements = Elements(svg);
    EXPECT_EQ(elements, (std::map<std::string, int>{{"?xml", 1},
                                                    {"svg", 1},
                                                    {"rect", 2}, // one is the background
                                                    {"polyline", 1},
                                                    {"polygon", 1},
                                                    {"ellipse", 1},
                                                    {"text", 2}}));
    for (const char* part :
         {" viewBox=\"0 0 400 300\"", "points=\"10,20 100.125,30.063 200,0\"", "stroke=\"#0080ff\"",
          "stroke-dasharray=\"9 4.5\"", "<rect x=\"100\" y=\"100\" width=\"100\" height=\"50\" rx=\"5\" ry=\"8\"",
          "rotate(-30 300 100)", ">v² &lt; 2·a &amp; s &gt; \"√x\"</text>", "rotate(-90 200 250)",
          "text-anchor=\"middle\"", "font-weight=\"bold\""})
        EXPECT_NE(svg.find(part), std::string::npos) << part;
    EXPECT_NE(svg.find(">" + kSigns + "</text>"), std::string::npos);
}

/// Decimal comma and grouping, as a German locale has them.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(DrawingExport, DoesNotDependOnTheLocale)
{
    const CDC dc = SampleDrawing();
    const std::string svg = ToSvg(dc);
    const std::string pdf = ToPdf(dc);
    const std::string png = ToPng(dc, 1.5);
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed; the facet below works everywhere
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaNumbers));
    EXPECT_EQ(ToSvg(dc), svg);
    EXPECT_EQ(ToPdf(dc), pdf);
    EXPECT_EQ(ToPng(dc, 1.5), png);
    std::locale::global(before);
    std::setlocale(LC_ALL, locale.c_str());
}

TEST(DrawingExport, ChoosesByEnding)
{
    const CDC dc = SampleDrawing();
    EXPECT_EQ(ExportByEnding(dc, "a.SVG"), ToSvg(dc));
    EXPECT_EQ(ExportByEnding(dc, "/x.y/ä.pdf"), ToPdf(dc));
    EXPECT_EQ(ExportByEnding(dc, "a.Png").substr(0, 4), "\x89PNG");
    for (const char* path : {"", "svg", "a.jpg", "a.svgz", "a.pdf.txt"}) {
        EXPECT_FALSE(IsDrawingFile(path)) << path;
        EXPECT_EQ(ExportByEnding(dc, path), "") << path;
    }
}

TEST(DrawingExport, WritesEmptyAndSenselessDrawings)
{
    CDC senseless(kNan, -5);
    senseless.SelectPen({PenStyle::dashDot, kNan, 0});
    senseless.Polyline({{kNan, kNan}, {1e300, -1e300}, {-kInf, 0}, {0, 0}, {0, 0}, {1e14, 1e14}});
    senseless.SelectPen({PenStyle::dot, kInf, 0});
    senseless.Polyline({{0, 0}, {0, 0}, {-1e14, 3}});
    senseless.Rectangle(-1e308, 0, 1e308, 5, kNan, kInf);
    senseless.SelectPen({PenStyle::solid, -3, 0});
    senseless.Ellipse({0, 0}, 1e6, 1e-300, 1e14);
    senseless.TextOut({0, 0}, std::string("\xFF\0<\x01", 4), TextAlign::right, -1e14);
    senseless.SelectFont({kInf, true});
    senseless.TextOut({0, 0}, "x");
    EXPECT_FALSE(senseless.Primitives().empty());
    for (const CDC& dc : {CDC(0, 0), CDC(300, 200), senseless}) {
        const std::string svg = ToSvg(dc);
        EXPECT_EQ(Elements(svg).at("svg"), 1);
        const PdfReader pdf(ToPdf(dc));
        const std::string content = pdf.Stream(4);
        for (const char* word : {"nan", "inf"}) {
            EXPECT_EQ(svg.find(word), std::string::npos);
            EXPECT_EQ(content.find(word), std::string::npos);
        }
        EXPECT_GE(Picture(dc).Width(), 1);
    }
    EXPECT_EQ(Picture(CDC(300, 200)).Area(), 0.0);
    EXPECT_EQ(Picture(CDC(300, 200), 0.001).Height(), 1);
    EXPECT_EQ(ToPng(CDC(10000, 10000), 1.0), "");
}
} // namespace
