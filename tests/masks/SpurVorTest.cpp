// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDC.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/Primitives.h"
#include "tests/support/RandomInput.h"

#include <algorithm>
#include <cmath>

namespace
{

using framework::InputResult;
using framework::Window;
using test::FieldValue;

constexpr UINT kVehicle = 3601, kEnd = 115, kRadius = 3636, kOffset = 3611, kAq = 3616, kVA = 3612, kA = 3617,
               kLimit = 3613, kDelay = 3637, kFront = 3631, kVE = 3618, kYaw = 3619, kPath = 3614, kTime = 3615,
               kLength = 3621, kDifference = 3622, kRear = 3632, kMidPath = 3633, kGraphic = 3638, kHint = 23601,
               kCase = 23602, kDrawing = 23603, kLargeDialog = 23604;

class SpurVorTest : public test::MaskTest
{
  protected:
    Window& OpenWithExample()
    {
        Window& mask = OpenMask(458);
        Enter(mask, kOffset, "3");
        Enter(mask, kAq, "3");
        Enter(mask, kVA, "50");
        return mask;
    }
    static CDC Draw(Window& field, double width, double height)
    {
        CDC dc(width, height);
        field.painter(dc, CRect{0, 0, static_cast<int>(width), static_cast<int>(height)});
        return dc;
    }
};

TEST_F(SpurVorTest, FiftyKmhAndThreeMetres)
{
    Window& mask = OpenMask(458);
    EXPECT_EQ(Text(mask, kFront), "0,50");
    EXPECT_EQ(FieldValue(mask, "bekannt"), 0);
    EXPECT_TRUE(Control(mask, kVE).readOnly);
    Enter(mask, kOffset, "3");
    Enter(mask, kAq, "3");
    Enter(mask, kVA, "50");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{});
    EXPECT_EQ(Text(mask, kLength), "34,75");
    EXPECT_EQ(Text(mask, kPath), "34,94");
    EXPECT_EQ(Text(mask, kDifference), "0,19");
    EXPECT_EQ(Text(mask, kTime), "2,52");
    EXPECT_EQ(Text(mask, kYaw), "9,87");
    EXPECT_EQ(Text(mask, kVE), "50,00");
    EXPECT_EQ(Control(mask, kHint).text, "");
    for (const UINT result : {kLength, kPath, kDifference, kTime, kYaw, kMidPath, kRear})
        EXPECT_EQ(Enter(mask, result, "1"), InputResult::disabled) << result;
    EXPECT_EQ(Enter(mask, kVE, "1"), InputResult::readOnly);
    EXPECT_TRUE(Phases() == CWegZeitRechDat{}) << "the transfer option is off";
    // Each step of a spinner calculates.
    const double before = Value(mask, kLength);
    StepOnce(mask, kVA, +1);
    EXPECT_GT(Value(mask, kLength), before);
}

TEST_F(SpurVorTest, KnownAtTheEndTheOtherSpeedIsTheResult)
{
    Window& mask = OpenWithExample();
    Press(mask, kEnd);
    EXPECT_EQ(FieldValue(mask, "bekannt"), 1);
    EXPECT_EQ(Enter(mask, kVA, "40"), InputResult::readOnly);
    Enter(mask, kVE, "50");
    Enter(mask, kA, "2");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{});
    const double v = 50.0 / 3.6;
    EXPECT_NEAR(Value(mask, kVA), 3.6 * std::sqrt(v * v - 4.0 * Value(mask, kPath)), 1e-6);
}

TEST_F(SpurVorTest, MessagesInTheirOrder)
{
    data.KfzDat(0).length = 0.0;
    Window& mask = OpenMask(458);
    Enter(mask, kVA, "50");
    Enter(mask, kA, "-1");
    Enter(mask, kLimit, "60");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1331, 1345, 1334}));
    EXPECT_EQ(data.KfzDat(0).length, 4.0);
    Enter(mask, kAq, "3");
    Enter(mask, kA, "1");
    Enter(mask, kLimit, "40");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1346, 1333}));
    Enter(mask, kOffset, "3");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1346}));
    EXPECT_NE(Control(mask, kHint).text, "");
    EXPECT_EQ(Text(mask, kLimit), "40,00");
    Enter(mask, kLimit, "0");
    Enter(mask, kA, "-6");
    Press(mask, kCalculate);
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(front.messages[0].number, 1347U);
    EXPECT_EQ(front.messages[0].args, std::vector<std::string>{"1"});
    EXPECT_EQ(Text(mask, kVE), "0,00");
    EXPECT_EQ(Text(mask, kVA), "50,00");
    TakeMessages();
    Enter(mask, kA, "0");
    Enter(mask, kRadius, "-68");
    Press(mask, kCalculate);
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(front.messages[0].number, 1348U);
    EXPECT_EQ(front.messages[0].args[0], Text(mask, kPath)) << "as the field shows it";
    TakeMessages();
    Enter(mask, kRadius, "60");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1348, 1341}));
    EXPECT_EQ(FieldValue(mask, "berechnet"), 0);
    Enter(mask, kRadius, "0");
    Enter(mask, kVA, "0");
    Enter(mask, kA, "-1");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1332}));
}

TEST_F(SpurVorTest, SwitchedOnEveryCalculationIsInTheCase)
{
    Window& mask = OpenWithExample();
    Choose(mask, kVehicle, 1);
    Enter(mask, kA, "-2");
    Press(mask, kTransfer);
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_TRUE(Phases(1) == CWegZeitRechDat{});
    Press(mask, kCalculate);
    EXPECT_EQ(Phases(1).spalten[kFirst].art, PhasenArt::braking);
    EXPECT_EQ(Phases(1).spalten[kFirst].zeit, Value(mask, kTime));
    EXPECT_EQ(Phases(1).spalten[kFirst].weg, Value(mask, kPath));
    EXPECT_EQ(Control(mask, kCase).text, "Übertragen: Pkw 2, Phasen 1 bis 1.");
    EXPECT_EQ(FieldValue(mask, "phase"), 3);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main 1"});
    Enter(mask, kDelay, "0,5");
    EXPECT_EQ(Phases(1).FirstFree(), kFirst + 1) << "an entry alone transfers nothing";
    StepOnce(mask, kVA, +1);
    EXPECT_EQ(Phases(1).FirstFree(), kFirst + 2);
    EXPECT_EQ(Control(mask, kCase).text, "Übertragen: Pkw 2, Phasen 1 bis 2.");
    EXPECT_NEAR(Phases(1).spalten[kFirst + 1].sumZeit, Value(mask, kTime), 1e-9);
    // A failure transfers nothing and no longer says that something was.
    const CWegZeitRechDat before = Phases(1);
    Enter(mask, kOffset, "0");
    Press(mask, kCalculate);
    EXPECT_TRUE(Phases(1) == before);
    EXPECT_EQ(Control(mask, kCase).text, "");
    TakeMessages();

    // Switched on with a result shown, this one is in the case; undone meanwhile, it is no longer said to be there.
    Press(mask, kTransfer);
    Enter(mask, kOffset, "3,5");
    Press(mask, kCalculate);
    EXPECT_TRUE(Phases(1) == before);
    Press(mask, kTransfer);
    EXPECT_EQ(Phases(1).spalten[kFirst].weg + Phases(1).spalten[kFirst + 1].weg, Value(mask, kPath));
    EXPECT_NE(Control(mask, kCase).text, "");
    Phases(1) = before;
    data.NotifyWZ(1);
    EXPECT_EQ(Control(mask, kCase).text, "");

    // Without room the mask stays open and says so.
    Enter(mask, kOffset, "3");
    for (CWegZeitSpalte& s : Phases(1).spalten)
        s.art = PhasenArt::rolling;
    Phases(1).spalten[kFirst].unterArt = 0;
    Press(mask, kOk);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1343}));
    ASSERT_EQ(thread.Dialogs().size(), 1U);
    Press(mask, kTransfer);
    Press(mask, kOk);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(SpurVorTest, ThePlanShowsWayAndVehicle)
{
    Window& mask = OpenWithExample();
    EXPECT_LT(Draw(Control(mask, kDrawing), 800, 140).Primitives().size(), 4U) << "one line of text";
    Press(mask, kCalculate);
    const CDC dc = Draw(Control(mask, kDrawing), 800, 140);
    const auto bodies = test::All<drawing::Polygon>(dc);
    auto ways = test::All<drawing::Polyline>(dc);
    std::erase_if(ways, [](const auto& line) { return line.points.size() <= 50; });
    ASSERT_EQ(bodies.size(), 3U) << "start, end, intermediate position";
    ASSERT_EQ(ways.size(), 2U) << "of the front and of the rear axle";
    // To scale: 34.75 m along and 3 m up between the rear axle's ends; a body is 4.5 m long.
    const CDPoint way = ways[1].points.back() - ways[1].points.front();
    EXPECT_NEAR(-way.y / way.x, 3.0 / 34.75, 1e-3);
    const CDPoint side = bodies[0].points[0] - bodies[0].points[3];
    EXPECT_NEAR(std::hypot(side.x, side.y) / way.x, 4.5 / 34.75, 1e-3);
    EXPECT_NEAR(bodies[0].points[0].x - ways[1].points.front().x, way.x / 34.75 * 3.55, 0.1) << "front from rear axle";
    // A field too small for it is left empty.
    for (const double size : {1.0, 20.0, 60.0})
        Draw(Control(mask, kDrawing), size, size);

    Press(mask, kGraphic);
    ASSERT_EQ(thread.Dialogs().size(), 2U);
    EXPECT_EQ(thread.Dialogs().back()->id, kLargeDialog);
    Press(mask, kGraphic);
    EXPECT_EQ(thread.Dialogs().size(), 2U);
    Press(mask, 2);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(SpurVorTest, ClearingKeepsTheVehicle)
{
    Window& mask = OpenWithExample();
    Choose(mask, kVehicle, 1);
    Press(mask, kCalculate);
    Press(mask, kClear);
    EXPECT_EQ(Text(mask, kVA), "50,00") << "answered with no";
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    for (const UINT field : {kVA, kOffset, kAq, kFront, kLength, kPath, kTime})
        EXPECT_EQ(Value(mask, field), 0.0);
    EXPECT_EQ(FieldValue(mask, "fahrzeug"), 1);
}

} // namespace
