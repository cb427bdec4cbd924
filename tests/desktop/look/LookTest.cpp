// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Colours that can be read, drawings that come out as they were recorded, settings that are checked.
#include "tests/desktop/DesktopFixture.h"

#include "chart/Chart.h"
#include "desktop/SettingsDialog.h"
#include "desktop/look/CdcPainter.h"
#include "desktop/look/Preferences.h"
#include "desktop/look/Style.h"
#include "desktop/look/Theme.h"
#include "drawing/DrawingExport.h"
#include "host/CDC.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QTemporaryDir>

#include <cmath>
#include <numbers>

namespace
{

using desktop::Scheme;

/// Contrast ratio of two colours by their relative luminance, 1 to 21.
double Contrast(const QColor& a, const QColor& b)
{
    const auto linear = [](float c) {
        return c <= 0.04045F ? static_cast<double>(c) / 12.92 : std::pow((static_cast<double>(c) + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&](const QColor& c) {
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

TEST(ThemeTest, EveryTextCanBeReadInBothSchemes)
{
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
        desktop::ApplyTheme(scheme);
        const auto& c = desktop::Colors();
        for (const QColor& ground : {c.window, c.surface, c.field, c.selection, c.hover, c.dangerSoft, c.result})
            EXPECT_GE(Contrast(c.text, ground), 7.0) << ground.name().toStdString();
        EXPECT_GE(Contrast(c.resultText, c.result), 7.0);
        for (const QColor& ground : {c.window, c.surface, c.field, c.desk})
            EXPECT_GE(Contrast(c.muted, ground), 4.3) << ground.name().toStdString();
        EXPECT_GE(Contrast(c.onAccent, c.accent), 4.5);
        EXPECT_GE(Contrast(c.danger, c.surface), 4.5);
        EXPECT_GE(Contrast(c.accent, c.surface), 3.0);
    }
    desktop::ApplyTheme(Scheme::light);
}

TEST(ThemeTest, DarkDrawingsExchangeLightAndDarkAndKeepTheirColours)
{
    EXPECT_EQ(desktop::OnScreen(RGB(45, 175, 20)), QColor(45, 175, 20));
    desktop::ApplyTheme(Scheme::dark);
    EXPECT_GT(desktop::OnScreen(RGB(0, 0, 0)).lightness(), 200);
    EXPECT_LT(desktop::OnScreen(RGB(255, 255, 255)).lightness(), 50);
    EXPECT_GE(Contrast(desktop::OnScreen(RGB(0, 0, 0)), desktop::OnScreen(RGB(255, 255, 255))), 10.0);
    EXPECT_EQ(desktop::OnScreen(RGB(45, 175, 20)), QColor(45, 175, 20)) << "bright enough as it is";
    const QColor blue = desktop::OnScreen(RGB(30, 60, 200));
    EXPECT_NEAR(blue.hue(), QColor(30, 60, 200).hue(), 2);
    EXPECT_GE(Contrast(blue, desktop::OnScreen(RGB(255, 255, 255))), 3.0);
    desktop::ApplyTheme(Scheme::light);
}

TEST(ThemeTest, EverySeriesStandsOutFromItsGroundInBothSchemes)
{
    constexpr COLORREF kPaper = RGB(255, 255, 255);
    std::vector<COLORREF> series;
    for (const COLORREF color : chart::kCurveColors) // charts see to it on paper
        series.push_back(drawing::Legible(color, kPaper, desktop::kLeastContrast));
    for (unsigned red = 0; red < 256; red += 51) // a user's own
        for (unsigned green = 0; green < 256; green += 51)
            for (unsigned blue = 0; blue < 256; blue += 51)
                if (Contrast(QColor(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue)),
                             Qt::white) >= desktop::kLeastContrast)
                    series.push_back(RGB(red, green, blue));
    ASSERT_GT(series.size(), 100U);
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
        desktop::ApplyTheme(scheme);
        for (const COLORREF color : series)
            EXPECT_GE(Contrast(desktop::OnScreen(color), desktop::OnScreen(kPaper)), 3.0)
                << desktop::FromColorRef(color).name().toStdString();
        // And from each other.
        for (std::size_t i = 0; i < chart::kCurveColors.size(); ++i)
            for (std::size_t k = i + 1; k < chart::kCurveColors.size(); ++k) {
                const QColor a = desktop::OnScreen(series[i]);
                const QColor b = desktop::OnScreen(series[k]);
                EXPECT_GT(std::hypot(a.red() - b.red(), a.green() - b.green(), a.blue() - b.blue()), 60.0)
                    << i << " and " << k;
            }
    }
    desktop::ApplyTheme(Scheme::light);
}

TEST(ThemeTest, AFieldOfARedVehicleIsNotTakenForARefusedOne)
{
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
        desktop::ApplyTheme(scheme);
        const auto& c = desktop::Colors();
        const auto apart = [](const QColor& a, const QColor& b) {
            return std::hypot(a.red() - b.red(), a.green() - b.green(), a.blue() - b.blue());
        };
        const QColor red = desktop::Tinted(c.field, QColor(200, 30, 30));
        EXPECT_LT(2.0 * apart(red, c.field), apart(red, c.dangerSoft)) << "nearer to any other field by far";
    }
    desktop::ApplyTheme(Scheme::light);
}

QImage Replayed(const CDC& drawing)
{
    QImage image(static_cast<int>(drawing.Width()), static_cast<int>(drawing.Height()), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    desktop::Replay(drawing, painter);
    return image;
}

TEST(CdcPainterTest, AgreesWithTheExportedPicture)
{
    CDC drawing(240, 160);
    drawing.SelectPen({PenStyle::solid, 3.0, RGB(200, 0, 0)});
    drawing.Polyline({{10, 10}, {100, 40}, {60, 70}});
    drawing.SelectPen({PenStyle::dash, 2.0, RGB(0, 0, 0)});
    drawing.Line({10, 150}, {230, 150});
    drawing.SelectPen({PenStyle::dashDot, 1.0, RGB(0, 0, 255)});
    drawing.Line({10, 140}, {230, 130});
    drawing.SelectBrush({true, RGB(45, 175, 20)});
    drawing.SelectPen({PenStyle::solid, 1.0, RGB(0, 0, 0)});
    drawing.Polygon({{120, 20}, {220, 20}, {170, 70}});
    drawing.Ellipse({60, 105}, 40, 12, std::numbers::pi / 6.0);
    drawing.Rectangle(130, 80, 220, 120, 8, 8);
    drawing.SelectFont({14.0, true});
    drawing.SetTextColor(RGB(20, 20, 120));
    drawing.TextOut({175, 105}, "Schranke µ ≥ 0", TextAlign::center);
    drawing.TextOut({230, 60}, "hoch", TextAlign::right, std::numbers::pi / 2.0);

    const std::string png = drawing::ToPng(drawing, 1.0);
    QImage exported;
    ASSERT_TRUE(exported.loadFromData(reinterpret_cast<const uchar*>(png.data()), static_cast<int>(png.size())));
    const QImage image = Replayed(drawing);
    ASSERT_EQ(exported.size(), image.size());
    // Two rasterisers differ at edges only: blurred pictures must agree closely everywhere.
    const auto blurred = [](const QImage& sharp) {
        return sharp.convertToFormat(QImage::Format_RGB32)
            .scaled(sharp.size() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage a = blurred(exported);
    const QImage b = blurred(image);
    int worst = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QColor p = a.pixelColor(x, y);
            const QColor q = b.pixelColor(x, y);
            worst = std::max(
                {worst, std::abs(p.red() - q.red()), std::abs(p.green() - q.green()), std::abs(p.blue() - q.blue())});
        }
    EXPECT_LE(worst, 40) << "of 255";
    EXPECT_NE(image, Replayed(CDC(240, 160)));
}

TEST(CdcPainterTest, TurnsCounterClockwiseAndLeavesThePainterAlone)
{
    CDC drawing(100, 100);
    drawing.SelectBrush({true, RGB(0, 0, 0)});
    drawing.Ellipse({50, 50}, 45, 5, std::numbers::pi / 4.0); // up to the right as seen
    const QImage image = Replayed(drawing);
    EXPECT_LT(image.pixelColor(75, 25).lightness(), 60);
    EXPECT_LT(image.pixelColor(25, 75).lightness(), 60);
    EXPECT_GT(image.pixelColor(25, 25).lightness(), 200);

    QImage canvas(10, 10, QImage::Format_RGB32);
    QPainter painter(&canvas);
    painter.setPen(QPen(Qt::red, 4.0));
    desktop::Replay(drawing, painter);
    EXPECT_EQ(painter.pen(), QPen(Qt::red, 4.0));
}

class SettingsDialogTest : public test::DesktopTest
{
};

TEST_F(SettingsDialogTest, ChecksTimesAtTheFieldAndAppliesWhatWasChosen)
{
    desktop::Preferences preferences;
    desktop::SettingsDialog dialog(preferences, false, &window);
    dialog.show();
    const auto fields = dialog.findChildren<QLineEdit*>();
    ASSERT_GE(fields.size(), 2); // those of the times come first
    const auto ok = [&] {
        for (auto* button : dialog.findChildren<QAbstractButton*>())
            if (button->text() == "&OK")
                button->click();
    };
    fields[0]->clear();
    QTest::keyClicks(fields[0], "1,5 s");
    ok();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(fields[0]->property(desktop::kRefusedProperty).toBool());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(RuvCfg.defaultReactionTime, 1.0);
    fields[0]->clear();
    QTest::keyClicks(fields[0], "0.8");
    EXPECT_FALSE(fields[0]->property(desktop::kRefusedProperty).toBool());
    fields[1]->clear();
    QTest::keyClicks(fields[1], "0,15");
    dialog.findChildren<QCheckBox*>()[0]->click();
    for (auto* combo : dialog.findChildren<QComboBox*>())
        if (combo->findText("dunkel") >= 0 || combo->findText("englisch (1.5)") >= 0)
            combo->setCurrentIndex(1);
    ok();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    dialog.Apply(preferences);
    EXPECT_EQ(RuvCfg.defaultReactionTime, 0.8);
    EXPECT_EQ(RuvCfg.defaultThresholdTime, 0.15);
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_TRUE(RuvCfg.decimalPoint);
    EXPECT_EQ(preferences.scheme, Scheme::dark);
    EXPECT_EQ(UnitsSystemConfiguration::GetInstance().System(), UnitsSystem::metric);
}

TEST_F(SettingsDialogTest, PreferencesComeBackAndBadOnesAreReplaced)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("desktop.ini");
    desktop::Preferences kept;
    kept.scheme = Scheme::dark;
    kept.fontScale = 1.3;
    kept.layout.geometry = QByteArray("\0\x7f geo", 6);
    kept.ofScreen["1366x768"] = {{}, QByteArray("d\0", 2), {{487, QByteArray("\0p", 2)}, {400, "q"}}};
    ASSERT_TRUE(kept.Save(path));
    const auto back = desktop::Preferences::Load(path);
    EXPECT_EQ(back.scheme, Scheme::dark);
    EXPECT_EQ(back.fontScale, 1.3);
    EXPECT_EQ(back.layout.geometry, kept.layout.geometry);
    EXPECT_EQ(back.ofScreen.value("1366x768").docks, QByteArray("d\0", 2));
    EXPECT_EQ(back.ofScreen.value("1366x768").tornOff, kept.ofScreen.value("1366x768").tornOff);
    EXPECT_TRUE(back.ofScreen.value("1440x900").docks.isEmpty());
    EXPECT_TRUE(back.layout.tornOff.isEmpty());
    kept.ofScreen["1366x768"].tornOff.remove(487);
    ASSERT_TRUE(kept.Save(path));
    EXPECT_EQ(desktop::Preferences::Load(path).ofScreen.value("1366x768").tornOff.keys(), QList<UINT>{400});
    kept.fontScale = 50.0;
    ASSERT_TRUE(kept.Save(path));
    EXPECT_EQ(desktop::Preferences::Load(path).fontScale, 1.0);
    EXPECT_EQ(desktop::Preferences::Load(folder.filePath("none.ini")).scheme, Scheme::light);
}

TEST_F(SettingsDialogTest, SchemeAndFontChangeUnderOpenMasks)
{
    auto& mask = Open(400);
    const QSize before = mask.size();
    const QColor light = Widget(mask, 4663).palette().color(QPalette::Text);
    desktop::ApplyTheme(Scheme::dark, 1.5);
    QApplication::processEvents();
    EXPECT_NEAR(mask.width(), 1.5 * before.width(), 0.03 * mask.width()) << "letters are whole pixels high";
    EXPECT_NE(Widget(mask, 4663).palette().color(QPalette::Text), light);
    EXPECT_EQ(mask.grab().toImage().pixelColor(2, 2), desktop::Colors().surface);
    EXPECT_GE(window.Masks().Frames().at(0)->width(), mask.width());
    desktop::ApplyTheme(Scheme::light);
}

} // namespace
