// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Chart.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/CDialog.h"
#include "host/RuvCfg.h"
#include "report/Protocol.h"
#include "tests/support/Primitives.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using namespace chart;
using framework::InputResult;
using framework::Kind;
using framework::Window;
using What = CMouseEvent::Kind;

constexpr UINT kChart = 20;
constexpr double kWidth = 600.0;
constexpr double kHeight = 300.0;

/// A chart in a dialog: 101 rows, one each tenth of a second, 36 to 72 km/h.
class ChartTest : public ::testing::Test
{
  protected:
    class Dialog : public CMDIDialog
    {
      public:
        explicit Dialog(framework::UiThread& thread) : CMDIDialog(9997, nullptr)
        {
            thread.CreateTopWindow(*this, Kind::dialog, 9997, nullptr).rect = {0, 0, 320, 170};
        }
        ~Dialog() override
        {
            if (m_hWnd != nullptr)
                DestroyWindow();
        }
    };

    ChartTest()
    {
        RuvCfg = CRuvCfg{};
        control.rect = {5, 5, 305, 155};
        control.tabStop = true;
        std::vector<double> x, y;
        for (int i = 0; i <= 100; ++i) {
            x.push_back((x.empty() ? 0.0 : x.back()) + (i == 0 ? 0.0 : 0.1)); // summed up: 5 s is 4.999999999999998
            y.push_back(36.0 + 0.36 * i);
        }
        times = std::make_shared<const std::vector<double>>(x);
        values = std::make_shared<const std::vector<double>>(y);
        chart.Attach(dialog.GetDlgItem(kChart));
        chart.SetSeries({{"v", times, values}});
        chart.OnRangeChanged([this] { ++changes; });
    }

    void Mouse(What kind, CDPoint at, MouseButton button = MouseButton::left, UINT held = 0, double wheel = 0.0)
    {
        CMouseEvent event{kind, button, held, at, kWidth, kHeight};
        event.wheel = wheel;
        last = framework::Mouse(control, event);
    }
    void Click(CDPoint at)
    {
        Mouse(What::press, at);
        Mouse(What::release, at);
    }
    void Drag(CDPoint from, CDPoint to, UINT held = 0)
    {
        Mouse(What::press, from, MouseButton::left, held);
        Mouse(What::move, {(from.x + to.x) / 2.0, (from.y + to.y) / 2.0}, MouseButton::none, held);
        Mouse(What::move, to, MouseButton::none, held);
        Mouse(What::release, to, MouseButton::left, held);
    }
    void Key(UINT key, UINT held = 0, char32_t character = 0)
    {
        last = framework::Key(control, {key, character, held});
    }
    /// Where the row's time lies now; read off the frame of the plot that is drawn.
    CDPoint At(double time)
    {
        CDC dc(kWidth, kHeight);
        control.painter(dc, {0, 0, static_cast<int>(kWidth), static_cast<int>(kHeight)});
        double left = 0.0, right = 0.0, top = 0.0, bottom = 0.0;
        for (const auto& line : test::All<drawing::Polyline>(dc))
            if (line.points.size() == 5 && line.points.front() == line.points.back()) {
                left = line.points[0].x, right = line.points[1].x;
                top = line.points[0].y, bottom = line.points[2].y;
            }
        const View view = chart.CurrentView();
        return {left + (time - view.from) / (view.to - view.from) * (right - left), (top + bottom) / 2.0};
    }
    std::vector<std::string> Texts(bool report = false)
    {
        CDC dc(kWidth, kHeight);
        chart.Paint(dc, report);
        return test::Words(dc);
    }
    bool Says(const std::string& what, bool report = false)
    {
        for (const std::string& text : Texts(report))
            if (text.find(what) != std::string::npos)
                return true;
        return false;
    }

    framework::NullFrontEnd front;
    framework::UiThread thread{front};
    Dialog dialog{thread};
    Window& control = thread.CreateControl(*thread.Find(dialog.m_hWnd), Kind::chart, kChart);
    Values times, values;
    Chart chart;
    int changes = 0;
    InputResult last = InputResult::done;
};

TEST_F(ChartTest, EveryWayToPickARangeGivesTheSameRows)
{
    const Rows wanted{20, 50}; // 2.0 s .. 5.0 s
    const auto holds = [&](const char* how) {
        EXPECT_EQ(chart.Range(), wanted) << how;
        EXPECT_EQ(chart.RangeFrom(), (*times)[20]) << how;
        EXPECT_EQ(chart.RangeTo(), (*times)[50]) << how;
        chart.DropRange();
        EXPECT_FALSE(chart.Range()) << how;
    };
    Click(At(1.98));
    EXPECT_FALSE(chart.Range()) << "the end is not picked yet";
    Click(At(5.03));
    holds("two clicks");
    Click(At(5.03));
    Click(At(1.98));
    holds("two clicks, the later first");
    std::string why;
    EXPECT_EQ(framework::TakeRange(control, 2.0, 5.0, why), InputResult::done);
    holds("action");
    EXPECT_TRUE(chart.TakeTyped(1.95, 5.05));
    holds("typed");
    EXPECT_TRUE(chart.TakeTyped(2.0, std::nan("")));
    EXPECT_TRUE(chart.TakeTyped(chart.RangeFrom(), 5.0));
    holds("typed one after the other");
    chart.SetRange({30, 40});
    Drag(At((*times)[30]), At(2.0));
    Drag(At((*times)[40]), At(5.0));
    holds("dragged cursors");
    chart.SetRange({20, 41});
    Key(VK_LEFT);
    Key(VK_RIGHT, MK_CONTROL);
    holds("keys at the end");
    chart.SetRange({33, 50});
    Key(VK_SPACE);
    for (int i = 0; i < 13; ++i)
        Key(VK_LEFT);
    holds("keys at the start");
    Click(At(2.0));
    Key(VK_SPACE);
    for (int i = 0; i < 3; ++i)
        Key(VK_RIGHT, MK_CONTROL);
    holds("click and keys");
}

TEST_F(ChartTest, AThirdClickBeginsAnewAndTellsThatThereIsNoRange)
{
    Click(At(2.0));
    Click(At(5.0));
    changes = 0;
    Click(At(7.0));
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(chart.Range());
    EXPECT_EQ(chart.RangeFrom(), (*times)[70]);
    Mouse(What::press, At(3.0));
    Mouse(What::release, At(3.0));
    EXPECT_EQ(chart.Range(), (Rows{30, 70}));
    // Two quick clicks are two clicks.
    Mouse(What::press, At(1.0));
    Mouse(What::release, At(1.0));
    Mouse(What::doubleClick, At(1.0));
    Mouse(What::release, At(1.0));
    EXPECT_EQ(chart.Range(), (Rows{10, 10}));
}

TEST_F(ChartTest, ARangeThatMayHoldFewerRowsEndsSoonerAndSaysSo)
{
    chart.SetMostRows(10);
    EXPECT_FALSE(chart.TakeTimes(2.0, 5.0));
    EXPECT_EQ(chart.Range(), (Rows{20, 29}));
    EXPECT_NE(chart.State().note.find("höchstens 10 Zeilen"), std::string::npos);
    EXPECT_FALSE(chart.TakeTimes(2.0, 2.9));
    EXPECT_EQ(chart.State().note, "");
    Click(At(8.0));
    Click(At(1.0));
    EXPECT_EQ(chart.Range(), (Rows{71, 80})) << "from the first click on";
    changes = 0;
    chart.SetMostRows(4);
    EXPECT_EQ(chart.Range(), (Rows{71, 74}));
    EXPECT_EQ(changes, 1);
    chart.SetMostRows(0);
    EXPECT_FALSE(chart.Range());
    EXPECT_TRUE(chart.TakeTimes(1.0, 2.0));
    EXPECT_FALSE(chart.SetRange({0, 1}));
}

TEST_F(ChartTest, TimesWithoutARowPickNothingAndKeepTheRange)
{
    chart.SetRange({3, 7});
    for (const auto& [from, to] : {std::pair{1.01, 1.09}, {11.0, 12.0}, {-5.0, -1.0}, {5.0, 2.0}}) {
        std::string why;
        EXPECT_EQ(framework::TakeRange(control, from, to, why), InputResult::noSuchItem);
        EXPECT_NE(why.find("keine Zeile"), std::string::npos) << why;
        EXPECT_FALSE(chart.TakeTyped(from, to));
    }
    EXPECT_EQ(chart.Range(), (Rows{3, 7}));
}

/// 2 s to 5 s: 43.2 to 54 km/h, uniformly: 48.6 km/h = 13.5 m/s on the mean, 40.5 m, 1 m/s².
TEST_F(ChartTest, StatisticsStandInPictureStateAndReport)
{
    chart.TakeTimes(2.0, 5.0);
    const RangeStatistics s = chart.Statistics().value();
    EXPECT_NEAR(s.path.value(), 40.5, 1e-9);
    EXPECT_NEAR(s.mean.value(), 48.6, 1e-9);
    EXPECT_NEAR(s.acceleration.value(), 1.0, 1e-9);
    for (const bool report : {false, true})
        for (const char* text : {"Bereich 2,000 bis 5,000 s, 31 Zeilen", "Δt 3,000 s", "Δs 40,50 m",
                                 "(Δs/Δt) 48,60 km/h", "Minimum 43,20 km/h", "Maximum 54,00 km/h", "(Δv/Δt) 1,00 m/s²"})
            EXPECT_TRUE(Says(text, report)) << text;
    EXPECT_EQ(chart.State().statistics.at(1), (std::pair<std::string, std::string>{"Δs", "40,50 m"}));
    const CDC picture = report::DrawField(control);
    EXPECT_EQ(picture.Width(), 2.0 * picture.Height());
    chart.SetSeries({{"v", times, values}});
    EXPECT_FALSE(chart.Statistics()) << "of data that are gone";
}

TEST_F(ChartTest, TheCrossHairReadsOffAndIsNotInTheReport)
{
    Mouse(What::move, At(1.05), MouseButton::none);
    // 36 + 0.36 · 10.5 = 39.78; the picture is 0.02 s a pixel
    EXPECT_TRUE(Says("v: 39,7") || Says("v: 39,8"));
    EXPECT_TRUE(Says("interpoliert, Messwert 39,60 bei 1,000") || Says("interpoliert, Messwert 39,96 bei 1,100"));
    EXPECT_FALSE(Says("interpoliert", true));
}

TEST_F(ChartTest, ZoomsAndPansWithinTheData)
{
    const View all = chart.CurrentView();
    EXPECT_EQ(all.from, 0.0);
    EXPECT_EQ(all.to, (*times)[100]);
    EXPECT_DOUBLE_EQ(all.low, 36.0 - 3.0) << "a tenth of 36, cut to a whole number";
    EXPECT_DOUBLE_EQ(all.high, 72.0 + 3.0);
    Mouse(What::wheel, At(4.0), MouseButton::none, 0, 3.0);
    View near = chart.CurrentView();
    EXPECT_NEAR(near.to - near.from, 10.0 / std::pow(1.25, 3.0), 1e-9);
    EXPECT_NEAR(At(4.0).x,
                At(near.from).x + (4.0 - near.from) / (near.to - near.from) * (At(near.to).x - At(near.from).x), 1e-6);
    EXPECT_NEAR((4.0 - near.from) / (near.to - near.from), 0.4, 0.01) << "about the pointer";
    const double held = near.from;
    Drag(At(near.from + 1.0), At(near.from + 2.0), MK_SHIFT);
    EXPECT_NEAR(chart.CurrentView().from, held - 1.0, 0.05);
    Drag(At(chart.CurrentView().from + 0.1), At(chart.CurrentView().to - 0.1), MK_SHIFT);
    EXPECT_EQ(chart.CurrentView().from, 0.0) << "no farther than the data";
    EXPECT_FALSE(chart.Range()) << "nothing of it is a click";
    Key(VK_HOME);
    Drag({At(2.0).x, 100.0}, {At(6.0).x, 150.0});
    near = chart.CurrentView();
    EXPECT_NEAR(near.from, 2.0, 0.03);
    EXPECT_NEAR(near.to, 6.0, 0.03);
    EXPECT_LT(near.high - near.low, 20.0);
    Key(VK_HOME);
    EXPECT_EQ(chart.CurrentView().to, all.to);
    EXPECT_EQ(chart.CurrentView().low, all.low);
    for (int i = 0; i < 300; ++i)
        Key(0, 0, U'+');
    EXPECT_GT(chart.CurrentView().to, chart.CurrentView().from);
    EXPECT_TRUE(Says("Zeit [s]"));
}

TEST_F(ChartTest, AMovedCursorIsKeptInSight)
{
    chart.SetRange({10, 50});
    Mouse(What::wheel, At(5.0), MouseButton::none, 0, 10.0);
    for (int i = 0; i < 4; ++i)
        Key(VK_RIGHT, MK_CONTROL);
    EXPECT_EQ(chart.Range(), (Rows{10, 90}));
    EXPECT_GE(chart.CurrentView().to, (*times)[90]);
    EXPECT_LE(chart.CurrentView().from, (*times)[90]);
}

TEST_F(ChartTest, SaysWhenThereIsNothingToSee)
{
    EXPECT_TRUE(Says("Zeit [s]"));
    chart.Clear();
    EXPECT_TRUE(Says("Es sind keine Daten geladen."));
    EXPECT_EQ(chart.State().note, "Es sind keine Daten geladen.");
    EXPECT_EQ(chart.State().rows, 0U);
    Click({300, 100});
    Key(VK_RIGHT);
    EXPECT_EQ(last, InputResult::unused);
    std::string why;
    framework::TakeRange(control, 0.0, 1.0, why);
    EXPECT_NE(why, "");
    const auto back = std::make_shared<const std::vector<double>>(std::vector<double>{1.0, 0.5});
    chart.SetSeries({{"v", back, back}});
    EXPECT_TRUE(chart.Problem());
    EXPECT_TRUE(Says("laufen nicht vorwärts"));
}

TEST_F(ChartTest, TheWholeViewThinsOutAndCloserViewsShowAll)
{
    auto peak = std::vector<double>(101, 1.0);
    peak[55] = 1000.0;
    Series series{"", times, std::make_shared<const std::vector<double>>(peak)};
    series.overviewStride = 10;
    chart.SetSeries({series});
    const auto highest = [&] {
        CDC dc(kWidth, kHeight);
        chart.Paint(dc, false);
        double top = kHeight;
        for (const auto& line : test::All<drawing::Polyline>(dc))
            for (const CDPoint& point : line.pen.width == 1.5 ? line.points : std::vector<CDPoint>{})
                top = std::min(top, point.y);
        return top;
    };
    EXPECT_EQ(chart.CurrentView().high, 1099.0) << "all samples count";
    EXPECT_GT(highest(), 150.0);
    EXPECT_TRUE(Says("jeder 10. Messwert"));
    Mouse(What::wheel, At(5.0), MouseButton::none, 0, 1.0);
    EXPECT_LT(highest(), 100.0);
    EXPECT_FALSE(Says("jeder 10. Messwert"));
}

/// The picture of one series is the series: 36 km/h at the lower margin's end, 72 at the upper one's.
TEST_F(ChartTest, ShowsTheUsersUnits)
{
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    chart.TakeTimes(2.0, 5.0);
    EXPECT_TRUE(Says("Geschwindigkeit [mph]"));
    EXPECT_TRUE(Says("Maximum 33,55 mph")); // 54 / 1.609344
    EXPECT_TRUE(Says("Δs 132,87 ft"));      // 40.5 / 0.3048
    EXPECT_NEAR(chart.CurrentView().low, 36.0 / 1.609344 - 2.0, 1e-9);
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
}

TEST_F(ChartTest, RandomMouseAndKeysLeaveARangeThatIsThere)
{
    std::mt19937_64 random(5);
    constexpr UINT kKeys[] = {VK_LEFT,   VK_RIGHT, VK_UP,   VK_DOWN, VK_HOME, VK_SPACE,
                              VK_DELETE, VK_PRIOR, VK_NEXT, VK_END,  'A'};
    for (int i = 0; i < 4000; ++i) {
        const CDPoint at{static_cast<double>(random() % 700) - 50.0, static_cast<double>(random() % 400) - 50.0};
        const UINT held = static_cast<UINT>(random() % 4) * MK_SHIFT;
        const auto button = static_cast<MouseButton>(random() % 4);
        switch (random() % 9) {
        case 0:
            Key(kKeys[random() % std::size(kKeys)], held, random() % 3 == 0 ? U'-' : U'\0');
            break;
        case 1:
            Mouse(What::wheel, at, MouseButton::none, held, static_cast<double>(random() % 41) - 20.0);
            break;
        case 2:
            chart.SetMostRows(random() % 60);
            break;
        case 3:
            chart.TakeTyped(static_cast<double>(random() % 12), static_cast<double>(random() % 12));
            break;
        default:
            Mouse(static_cast<What>(random() % 4), at, button, held);
        }
        if (random() % 500 == 0)
            chart.SetSeries({{"v", times, values}});
        const View view = chart.CurrentView();
        ASSERT_LT(view.from, view.to);
        ASSERT_LT(view.low, view.high);
        ASSERT_GE(view.from, 0.0);
        ASSERT_LE(view.to, (*times)[100] + 1e-9);
        if (const auto rows = chart.Range()) {
            ASSERT_LE(rows->first, rows->last);
            ASSERT_LE(rows->last, 100U);
        }
        if (i % 20 == 0) {
            ASSERT_FALSE(Texts().empty());
        }
    }
}

/// Whoever goes first: no drawing of a chart that is gone.
TEST_F(ChartTest, ControlAndChartForgetEachOther)
{
    auto other = std::make_unique<Chart>();
    other->Attach(dialog.GetDlgItem(kChart));
    other->SetSeries({{"v", times, values}});
    other.reset();
    EXPECT_FALSE(control.painter);
    EXPECT_FALSE(control.mouse);
    chart.Attach(dialog.GetDlgItem(kChart));
    EXPECT_TRUE(control.painter);
    dialog.DestroyWindow();
    thread.DispatchPending();
    chart.SetRange({1, 2}); // draws nowhere
    EXPECT_EQ(chart.Range(), (Rows{1, 2}));
}

} // namespace
