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

constexpr UINT kSight = 4700, kSum = 4728, kVehicleB = 4718, kPhaseB = 4720, kTime = 4721, kHint = 24700, kCase = 24701,
               kDrawing = 24702;
constexpr UINT kVkA = 4701, kDecA = 4702, kTsA = 4703, kTrA = 4704, kPathA = 4705, kMissingA = 4706, kVA = 4707,
               kDistA = 4708, kStopA = 4722, kDiffA = 4724, kLimitA = 4726;
constexpr UINT kVkB = 4709, kDecB = 4710, kTsB = 4711, kTrB = 4712, kPathB = 4713, kMissingB = 4714, kVB = 4715,
               kDistB = 4716, kStopB = 4723, kDiffB = 4725, kLimitB = 4727;

class HalbeSichtTest : public test::MaskTest
{
  protected:
    Window& OpenWithExample()
    {
        Window& mask = OpenMask(472);
        for (const auto& [id, text] : {std::pair<UINT, const char*>{kSight, "80"},
                                       {kVkA, "20"},
                                       {kDecA, "7"},
                                       {kTsA, "0,2"},
                                       {kTrA, "1"},
                                       {kVkB, "30"},
                                       {kDecB, "6"},
                                       {kTsB, "0,3"},
                                       {kTrB, "0,8"}})
            EXPECT_NE(Enter(mask, id, text), InputResult::refused) << id;
        return mask;
    }
};

TEST_F(HalbeSichtTest, EightyMetresOfSight)
{
    Window& mask = OpenWithExample();
    EXPECT_EQ(Text(mask, kSum), "50,00") << "follows both collision speeds";
    Press(mask, kCalculate);
    EXPECT_TRUE(front.messages.empty());
    // Solved by hand; the help page has the steps.
    const std::pair<UINT, const char*> expected[] = {
        {kVA, "61,39"},    {kVB, "68,72"},    {kPathA, "37,31"},   {kPathB, "42,69"},   {kTime, "2,74"},
        {kDistA, "2,69"},  {kDistB, "-2,69"}, {kMissingA, "2,20"}, {kMissingB, "5,79"}, {kStopA, "39,52"},
        {kStopB, "48,47"}, {kDiffA, "0,48"},  {kDiffB, "-8,47"},   {kLimitA, "61,88"},  {kLimitB, "61,00"}};
    for (const auto& [id, text] : expected) {
        EXPECT_EQ(Text(mask, id), text) << id;
        EXPECT_EQ(Enter(mask, id, "1"), InputResult::disabled) << id;
    }
    EXPECT_EQ(Control(mask, kHint).text, "");
    // A step of one collision speed moves the other against it and calculates.
    StepOnce(mask, kVkA, +1);
    EXPECT_EQ(Text(mask, kVkA), "21,00");
    EXPECT_EQ(Text(mask, kVkB), "29,00");
    EXPECT_NE(Text(mask, kVA), "61,39");
    Enter(mask, kSum, "60");
    EXPECT_EQ(Text(mask, kVkB), "39,00");
    EXPECT_NEAR(Value(mask, kPathA) + Value(mask, kPathB), 80.0, 1e-9);
}

TEST_F(HalbeSichtTest, SaysWhereTheResultsDescribeNothing)
{
    Window& mask = OpenWithExample();
    Enter(mask, kTrB, "3");
    Press(mask, kCalculate);
    EXPECT_NE(Control(mask, kHint).text.find("Vollbremsung von Fahrzeug B"), std::string::npos);
    Press(mask, kTransfer);
    EXPECT_NE(Control(mask, kCase).text.find("Nicht übertragen"), std::string::npos);
    EXPECT_TRUE(Phases(0) == CWegZeitRechDat{});
    Enter(mask, kTrB, "0,8");
    Enter(mask, kDecA, "0");
    Press(mask, kCalculate);
    EXPECT_NE(Control(mask, kHint).text.find("A bremst nicht"), std::string::npos);
    const std::string former = Text(mask, kVB);
    Enter(mask, kDecB, "0");
    Enter(mask, kSum, "0");
    Enter(mask, kVkA, "0");
    Enter(mask, kVkB, "0");
    Press(mask, kCalculate);
    EXPECT_NE(Control(mask, kHint).text, "");
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 0);
    EXPECT_EQ(Text(mask, kVB), former);
    EXPECT_TRUE(front.messages.empty()) << "no message box";
}

TEST_F(HalbeSichtTest, TransferOnDemandAndWithTheOption)
{
    Window& mask = OpenWithExample();
    Press(mask, kTransfer);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main -1"});
    EXPECT_EQ(Phases(0).marke, 16);
    EXPECT_EQ(Phases(1).marke, 16);
    EXPECT_NEAR(Phases(0).spalten[kFirst + 2].sumWeg, Value(mask, kPathA), 1e-9);
    EXPECT_NEAR(Phases(1).spalten[kFirst + 2].sumZeit, Value(mask, kTime), 1e-9);
    EXPECT_EQ(Control(mask, kCase).text,
              "Übertragen: Pkw 1 ab Phase 1, Pkw 2 ab Phase 1; spätere Phasen sind gelöscht.");
    Enter(mask, kTrA, "1,2");
    Press(mask, kCalculate);
    EXPECT_EQ(Phases(0).spalten[kFirst + 2].zeit, 1.0) << "the option is off";
    EXPECT_EQ(Control(mask, kCase).text, "");
    RuvCfg.transferData = true;
    StepOnce(mask, kTrA, +1);
    EXPECT_EQ(Phases(0).spalten[kFirst + 2].zeit, Value(mask, kTrA));
    Press(mask, kOk);
    EXPECT_TRUE(thread.Dialogs().empty());

    Window& again = OpenMask(472);
    EXPECT_NEAR(Value(again, kVkA), 20.0, 1e-9);
    EXPECT_NEAR(Value(again, kDecB), 6.0, 1e-9);
    EXPECT_EQ(Value(again, kTsB), 0.3);
    EXPECT_EQ(Control(again, kVehicleB).items.size(), 1U) << "not the other one's vehicle";
}

TEST_F(HalbeSichtTest, ReadsThePhasesOfAChosenVehicle)
{
    data.KfzDat(4) = TypicalCar("Pkw 5", 0);
    auto& columns = Phases(4).spalten;
    Put(columns[3], PhasenArt::rolling, 9.0, 18.0, 2.5, 1.0);
    Put(columns[4], PhasenArt::braking, 18.0, 54.0, 5.0, 2.0);
    Put(columns[5], PhasenArt::threshold, 54.0, 56.0, 5.0, 0.25);
    Put(columns[6], PhasenArt::reaction, 56.0, 56.0, 0.0, 0.9);
    Phases(4).selected = 4;
    Window& mask = OpenMask(472);
    Choose(mask, kVehicleB, 1);
    EXPECT_EQ(FieldValue(mask, "fahrzeugB"), 4);
    EXPECT_EQ(FieldValue(mask, "phaseB"), 4);
    EXPECT_EQ(Value(mask, kVkB), 18.0);
    EXPECT_EQ(Value(mask, kDecB), 5.0);
    EXPECT_EQ(Value(mask, kTsB), 0.25);
    EXPECT_EQ(Value(mask, kTrB), 0.9);
    Choose(mask, kPhaseB, 0);
    EXPECT_EQ(Value(mask, kVkB), 9.0);
    EXPECT_EQ(Value(mask, kTrB), RuvCfg.defaultReactionTime);
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    EXPECT_EQ(Value(mask, kVkB), 0.0);
    EXPECT_EQ(Value(mask, kTsB), RuvCfg.defaultThresholdTime);
    EXPECT_EQ(FieldValue(mask, "fahrzeugB"), 4);
}

TEST_F(HalbeSichtTest, TheDrawingShowsThePartsOfBothWays)
{
    Window& mask = OpenWithExample();
    const auto draw = [&](double width, double height) {
        CDC dc(width, height);
        Control(mask, kDrawing).painter(dc, CRect{0, 0, static_cast<int>(width), static_cast<int>(height)});
        return dc;
    };
    EXPECT_LT(draw(700, 100).Primitives().size(), 4U) << "one line of text";
    Press(mask, kCalculate);
    const CDC dc = draw(700, 100);
    auto parts = test::All<drawing::Rectangle>(dc);
    std::erase_if(parts, [](const auto& r) { return r.radiusX != 0.0 || r.right - r.left >= 600.0; });
    ASSERT_EQ(parts.size(), 6U) << "reaction, threshold and braking of both";
    // They follow each other without gaps over the sight distance, A's from the left, B's from the right.
    const double scale = (parts[3].right - parts[0].left) / 80.0;
    EXPECT_NEAR(parts[0].right, parts[1].left, 1e-9);
    EXPECT_NEAR(parts[1].right, parts[2].left, 1e-9);
    EXPECT_NEAR(parts[2].right, parts[5].left, 1e-9) << "where they meet";
    EXPECT_NEAR(parts[0].right - parts[0].left, scale * 17.053, 0.01) << "1 s at 17.05 m/s";
    EXPECT_NEAR(parts[2].right - parts[0].left, scale * Value(mask, kPathA), 1e-6);
    for (const double size : {1.0, 40.0, 70.0})
        draw(size, size);
}

} // namespace
