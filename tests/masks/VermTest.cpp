// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseHistory.h"
#include "framework/UiThread.h"
#include "host/CDC.h"
#include "masks/manoeuvre/CVermDlg.h"
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

constexpr UINT kV = 4201, kPhases = 4202, kOncoming = 4203, kCrossing = 4204, kSame = 4205, kTarget = 4206, kVT = 4211,
               kTR = 4212, kTS = 4213, kVColl = 4214, kAB = 4215, kSRK = 4216, kTRK = 4217, kVZ = 4218, kVE = 4219,
               kAR = 4220, kG = 4221, kTargetG = 4222, kSpatial = 4223, kTemporal = 4224, kVG = 4231, kSFB = 4232,
               kSFR = 4233, kAG = 4236, kXV = 4237, kHighest = 4241, kPoint = 4242, kPointTime = 4243, kHarder = 4244;
constexpr UINT kField = 4261, kGraphic = 4260;
constexpr UINT kVerdict = 24219, kHint = 24241, kTransferHint = 24206, kTransferHintG = 24222;

class VermTest : public test::MaskTest
{
  protected:
    VermTest()
    {
        data.KfzDat(2) = TypicalCar("Variante 1", RGB(200, 100, 0));
        data.KfzDat(3) = TypicalCar("Variante 2", RGB(0, 100, 200));
        // 60 km/h: 1 s reaction, 0.2 s threshold, braking at 7.5 m/s² down to 20 km/h; the opponent brakes from 36
        // km/h.
        CWegZeitRechDat& own = data.WZRechDat(0);
        Put(own.spalten[kFirst], PhasenArt::braking, 20.0, 57.3, 7.5, 0.0);
        Put(own.spalten[kFirst + 1], PhasenArt::threshold, 57.3, 60.0, 7.5, 0.2);
        Put(own.spalten[kFirst + 2], PhasenArt::reaction, 60.0, 60.0, 0.0, 1.0);
        Put(own.spalten[kFirst + 3], PhasenArt::constantSpeed, 60.0, 60.0, 0.0, 2.0);
        own.Berechnung();
        CWegZeitRechDat& other = data.WZRechDat(1);
        Put(other.spalten[kFirst], PhasenArt::braking, 36.0, 45.0, 5.0, 0.0);
        other.Berechnung();
    }
    Window& Open() { return OpenMask(462); }
    void EnterExample(Window& mask)
    {
        Press(mask, kCrossing);
        Enter(mask, kVZ, "50");
        Enter(mask, kAB, "7,5");
        Enter(mask, kSRK, "20");
        Enter(mask, kTRK, "1,2");
        Enter(mask, kAG, "0");
    }
    const CWegZeitSpalte& Column(std::size_t vehicle, std::size_t after) const
    {
        return data.WZRechDat(vehicle).spalten[kFirst + after];
    }
};

TEST_F(VermTest, ReadsBothVehiclesAndFollowsThem)
{
    Window& mask = Open();
    EXPECT_EQ(FieldValue(mask, "phase"), kFirst + 2) << "up to the reaction";
    EXPECT_EQ(Control(mask, kPhases).items.at(2), "3  Reaktion");
    EXPECT_EQ(Control(mask, kPhases).selection, 2);
    EXPECT_EQ(Value(mask, kVT), 60.0);
    EXPECT_EQ(Value(mask, kVColl), 20.0);
    // 57.3 to 20 km/h at 7.5 m/s²: 1.3815 s; then 0.2 s and 1 s.
    EXPECT_NEAR(Value(mask, kTRK), 2.5815, 1e-3);
    EXPECT_NEAR(Value(mask, kSRK), Column(0, 2).sumWeg, 1e-12);
    EXPECT_EQ(Value(mask, kVG), 36.0);
    EXPECT_EQ(Value(mask, kAG), 5.0);
    EXPECT_EQ(Value(mask, kTR), RuvCfg.defaultReactionTime);
    EXPECT_EQ(Value(mask, kTS), RuvCfg.defaultThresholdTime);

    // Counting one more phase leaves the reaction; counting two the threshold phase is the earliest.
    Choose(mask, kPhases, 3);
    EXPECT_NEAR(Value(mask, kTRK), 2.5815, 1e-3);
    Choose(mask, kPhases, 1);
    EXPECT_NEAR(Value(mask, kTRK), 1.5815, 1e-3);

    // Other phases of V or G are read, those of a third vehicle are not.
    Enter(mask, kVZ, "50");
    Enter(mask, kAB, "7,5");
    Press(mask, kCalculate);
    ASSERT_EQ(FieldValue(mask, "berechnet"), 1);
    data.NotifyWZ(2);
    EXPECT_EQ(FieldValue(mask, "berechnet"), 1);
    data.WZRechDat(1).spalten[kFirst].vEnd = 30.0;
    data.NotifyWZ(1);
    EXPECT_EQ(Value(mask, kVG), 30.0);
    EXPECT_EQ(FieldValue(mask, "berechnet"), 0);
    data.WZRechDat(0).spalten[kFirst].vEnd = 25.0;
    data.NotifyWZ(0);
    EXPECT_EQ(Value(mask, kVColl), 25.0);
    EXPECT_NEAR(Value(mask, kTRK), 1.5815, 1e-3) << "the user's count stays";

    // Without a reaction all phases count.
    data.WZRechDat(0).spalten[kFirst + 2].art = PhasenArt::rolling;
    Window& second = Open();
    EXPECT_EQ(FieldValue(second, "phase"), kFirst + 3);
    EXPECT_NEAR(Value(second, kTRK), Column(0, 3).sumZeit, 1e-12);
}

TEST_F(VermTest, FourVehiclesExcludeOneAnotherAndAreRemembered)
{
    Window& mask = Open();
    const auto chosen = [](Window& of) {
        std::vector<double> numbers;
        for (const char* name : {"fahrzeug", "gegner", "ziel", "zielGegner"})
            numbers.push_back(FieldValue(of, name));
        return numbers;
    };
    EXPECT_EQ(chosen(mask), (std::vector<double>{0, 1, 2, 3}));
    EXPECT_EQ(Control(mask, kV).items.size(), 4U);
    EXPECT_EQ(Control(mask, kTarget).items.size(), 3U);
    EXPECT_EQ(Control(mask, kG).items.size(), 2U);
    EXPECT_EQ(Control(mask, kTargetG).items.size(), 1U);

    // What is taken from another place gives it the former one; both are read afresh.
    Choose(mask, kV, 1);
    EXPECT_EQ(chosen(mask), (std::vector<double>{1, 0, 2, 3}));
    EXPECT_EQ(Value(mask, kVT), 45.0);
    EXPECT_EQ(Value(mask, kVG), 20.0);
    Choose(mask, kTarget, 2);
    EXPECT_EQ(chosen(mask), (std::vector<double>{1, 0, 3, 2}));

    Window& again = Open();
    EXPECT_EQ(chosen(again), (std::vector<double>{1, 0, 3, 2}));
    // Only V remembered: the others follow it.
    data.MaskenWerte(462).clear();
    data.MaskenWerte(462)["fahrzeug"] = {1.0};
    EXPECT_EQ(chosen(Open()), (std::vector<double>{1, 0, 3, 2}));
    data.MaskenWerte(462)["fahrzeug"] = {99.0};
    EXPECT_EQ(chosen(Open()), (std::vector<double>{0, 1, 2, 3}));
}

TEST_F(VermTest, CalculatesLiveAndSaysWhatItFound)
{
    Window& mask = Open();
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1405});
    EXPECT_EQ(front.messages.size(), 0U);
    EnterExample(mask);
    EXPECT_EQ(Text(mask, kVE), "0,00") << "typed entries wait for the button";
    Press(mask, kCalculate);
    EXPECT_TRUE(TakeMessages().empty());
    EXPECT_EQ(Text(mask, kVE), "39,74");
    EXPECT_EQ(Text(mask, kPoint), "28,13");
    EXPECT_NE(Text(mask, kVerdict).find("nicht vermieden"), std::string::npos);
    EXPECT_EQ(Text(mask, kHint), "");
    for (const UINT result : {kVE, kHighest, kPoint, kPointTime, kHarder})
        EXPECT_EQ(Enter(mask, result, "1"), InputResult::disabled);

    // A step on a field and another kind calculate at once, without message boxes.
    const double before = Value(mask, kHighest);
    StepOnce(mask, kSRK, 1);
    EXPECT_GT(Value(mask, kHighest), before);
    // Braking later or less, V covers the 20 m in 1.44 s at the least; G has cleared 2.6 m after 1.46 s.
    Enter(mask, kSRK, "20");
    Enter(mask, kSFR, "2,6");
    EXPECT_EQ(Text(mask, kVerdict), "") << "no verdict on inputs that have changed";
    Press(mask, kTemporal);
    EXPECT_EQ(Text(mask, kVE), "0,00");
    EXPECT_NE(Text(mask, kVerdict).find("Zeitlich vermieden"), std::string::npos);
    EXPECT_TRUE(TakeMessages().empty());
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1419});
    // What stops the calculation is told in any case.
    Enter(mask, kVG, "0");
    StepOnce(mask, kXV, 1);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1410});
    EXPECT_EQ(Control(mask, kOncoming).check, 1);
    EXPECT_EQ(FieldValue(mask, "berechnet"), 0);
    EXPECT_EQ(Text(mask, kVerdict), "");

    // A limit that there is not is named below the fields and told once.
    Press(mask, kSame);
    Enter(mask, kVG, "90");
    Enter(mask, kTRK, "1");
    Enter(mask, kSRK, "30");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1408});
    EXPECT_NE(Text(mask, kHint).find("Reaktionspunkt, Bremsverzögerung"), std::string::npos) << Text(mask, kHint);
}

TEST_F(VermTest, RangesAreTheFieldsOwn)
{
    struct Row {
        UINT id;
        const char *lowest, *belowIt, *highest, *aboveIt;
    };
    Window& mask = Open();
    for (const Row& row :
         {Row{kVT, "-150", "-151", "1000", "1001"}, Row{kVZ, "-150", "-151", "1000", "1001"},
          Row{kVColl, "0", "-1", "1000", "1001"}, Row{kTR, "0", "-1", "10", "11"}, Row{kTS, "0", "-1", "10", "11"},
          Row{kAB, "0", "-1", "100", "101"}, Row{kAR, "-10", "-11", "10", "11"}, Row{kSRK, "0", "-1", "1000", "1001"},
          Row{kTRK, "0", "-1", "100", "101"}, Row{kVG, "0", "-1", "1000", "1001"}, Row{kSFB, "0", "-1", "1000", "1001"},
          Row{kSFR, "0", "-1", "1000", "1001"}, Row{kAG, "-100", "-101", "100", "101"},
          Row{kXV, "-100", "-101", "100", "101"}}) {
        EXPECT_EQ(Enter(mask, row.id, row.belowIt), InputResult::refused) << row.id;
        EXPECT_EQ(Enter(mask, row.id, row.aboveIt), InputResult::refused) << row.id;
        EXPECT_EQ(Enter(mask, row.id, row.lowest), InputResult::done) << row.id;
        EXPECT_EQ(Enter(mask, row.id, row.highest), InputResult::done) << row.id;
    }
}

TEST_F(VermTest, TransferWritesWhatIsShownAndCanBeUndone)
{
    casefile::CaseHistory history(data);
    history.Reset();
    Window& mask = Open();
    EnterExample(mask);
    Enter(mask, kSFR, "8");
    Press(mask, kTransfer);
    ASSERT_TRUE(RuvCfg.transferData);
    history.Commit("Eingaben");
    const CWegZeitRechDat untouched = data.WZRechDat(2);
    TransferNews();
    Press(mask, kCalculate);
    EXPECT_EQ(TransferNews(), (std::vector<std::string>{"main 2", "main 3"}));
    EXPECT_NE(Text(mask, kTransferHint).find("In Fahrzeug 3 übertragen"), std::string::npos);
    EXPECT_NE(Text(mask, kTransferHintG).find("In Fahrzeug 4 übertragen"), std::string::npos);

    // Down to the 39.74 km/h at the conflict point, 20 m in all.
    EXPECT_EQ(Column(2, 0).art, PhasenArt::braking);
    EXPECT_NEAR(Column(2, 0).vEnd, Value(mask, kVE), 1e-9);
    EXPECT_EQ(Column(2, 1).art, PhasenArt::threshold);
    EXPECT_EQ(Column(2, 2).art, PhasenArt::reaction);
    EXPECT_NEAR(Column(2, 2).vAnf, 50.0, 1e-9);
    EXPECT_NEAR(Column(2, 2).sumWeg, 20.0, 1e-9);
    EXPECT_FALSE(Column(2, 3).IsUsed());
    // 8 m at 36 km/h.
    EXPECT_EQ(Column(3, 0).art, PhasenArt::constantSpeed);
    EXPECT_NEAR(Column(3, 0).zeit, 0.8, 1e-12);
    EXPECT_NEAR(Column(3, 0).weg, 8.0, 1e-12);

    const CWegZeitRechDat written = data.WZRechDat(2);
    ASSERT_TRUE(history.Commit("Übertragen"));
    ASSERT_TRUE(history.Undo());
    EXPECT_EQ(data.WZRechDat(2), untouched);
    EXPECT_NE(Text(mask, kTransferHint).find("etwas anderes"), std::string::npos) << "the case holds something else";
    ASSERT_TRUE(history.Redo());
    EXPECT_EQ(data.WZRechDat(2), written);
    EXPECT_NE(Text(mask, kTransferHint).find("In Fahrzeug 3 übertragen"), std::string::npos) << "as it was";
    EXPECT_NE(Text(mask, kTransferHintG).find("In Fahrzeug 4 übertragen"), std::string::npos);
    data.WZRechDat(3).spalten[CWegZeitDat::kErsteSpalte].zeit = 0.9;
    data.NotifyWZ(3);
    EXPECT_NE(Text(mask, kTransferHint).find("etwas anderes"), std::string::npos);
    ASSERT_TRUE(history.Undo());
    EXPECT_NE(Text(mask, kTransferHintG).find("In Fahrzeug 4 übertragen"), std::string::npos);

    // The limits stop, each from its own values; choosing one writes at once.
    const double stop = 28.125; // m at 50 km/h
    Press(mask, kCalculate);
    Press(mask, 4252);
    EXPECT_EQ(Column(2, 0).vEnd, 0.0);
    EXPECT_NEAR(Column(2, 2).vAnf, Value(mask, kHighest), 1e-9);
    EXPECT_NEAR(Column(2, 2).sumWeg, 20.0, 1e-3);
    Press(mask, 4253);
    EXPECT_EQ(Column(2, 0).vEnd, 0.0);
    EXPECT_EQ(Column(2, 3).art, PhasenArt::constantSpeed);
    EXPECT_NEAR(Column(2, 3).zeit, Value(mask, kPointTime) - 1.2, 1e-9);
    EXPECT_NEAR(Column(2, 2).sumWeg, stop, 2e-3);
    EXPECT_NEAR(Column(2, 2).vAnf, 50.0, 1e-9);
    Press(mask, 4254);
    EXPECT_NEAR(Column(2, 0).verz, Value(mask, kHarder), 1e-9);
    EXPECT_NEAR(Column(2, 2).sumWeg, 20.0, 2e-3);
    EXPECT_FALSE(Column(2, 3).IsUsed());

    // An entry makes the transfer out of date; vehicles that are not there get nothing.
    Enter(mask, kXV, "1");
    EXPECT_NE(Text(mask, kTransferHint).find("etwas anderes"), std::string::npos);
    data.KfzDat(2) = {};
    Press(mask, kCalculate);
    EXPECT_NE(Text(mask, kTransferHint).find("Fahrzeug 3 gibt es im Fall nicht"), std::string::npos);
    TakeMessages();
}

TEST_F(VermTest, WhatTheCaseHoldsIsComparedWithWhatWasTransferred)
{
    RuvCfg.transferData = true;
    casefile::CaseHistory history(data);
    history.Reset();
    Window& mask = Open();
    EnterExample(mask);
    Enter(mask, kSFR, "8");
    // V as its phases give it: what is read afresh is the same again.
    Choose(mask, kPhases, 3);
    Press(mask, kCalculate);
    const std::string said = Text(mask, kTransferHint);
    ASSERT_NE(said.find("In Fahrzeug 3 übertragen"), std::string::npos) << said;
    history.Commit("Übertragen");
    const auto otherwise = [&] { return Text(mask, kTransferHint).find("etwas anderes") != std::string::npos; };

    // Another mask writes phases of V, and that is taken back.
    data.WZRechDat(0).spalten[kFirst].vEnd += 5.0;
    data.NotifyWZ(0);
    EXPECT_TRUE(otherwise());
    history.Commit("Andere Maske");
    ASSERT_TRUE(history.Undo());
    EXPECT_EQ(Text(mask, kTransferHint), said);
    ASSERT_TRUE(history.Redo());
    EXPECT_TRUE(otherwise());
    ASSERT_TRUE(history.Undo());
    // The transfer itself, all of it or half.
    ASSERT_TRUE(history.Undo());
    EXPECT_TRUE(otherwise());
    ASSERT_TRUE(history.Redo());
    EXPECT_EQ(Text(mask, kTransferHint), said);
    data.WZRechDat(3).spalten[kFirst].zeit += 0.1;
    data.NotifyWZ(3);
    EXPECT_TRUE(otherwise());
    ASSERT_TRUE(history.Undo());
    EXPECT_EQ(Text(mask, kTransferHint), said);
    // Entered anew, the same number is the transferred one only after a calculation.
    Enter(mask, kXV, "1");
    EXPECT_TRUE(otherwise());
    RuvCfg.transferData = false;
    Enter(mask, kXV, "0");
    EXPECT_TRUE(otherwise());
    Press(mask, kCalculate);
    EXPECT_EQ(Text(mask, kTransferHint), said);
    TakeMessages();
}

TEST_F(VermTest, EveryTransferIsADriveThatTheCaseKeeps)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    test::RandomInput random(4623);
    int transfers = 0, different = 0;
    for (int round = 0; round < 300; ++round) {
        Press(mask, random.Pick<UINT>({kOncoming, kCrossing, kSame}));
        Press(mask, random.Pick<UINT>({kSpatial, kTemporal}));
        const auto number = [&](int below, double factor) { return std::to_string(factor * random.Number(below)); };
        Enter(mask, kVZ, number(150, 1.0));
        Enter(mask, kTR, number(20, 0.1));
        Enter(mask, kTS, number(8, 0.1));
        Enter(mask, kAR, random.Number(2) == 0 ? "0" : std::to_string(0.1 * (random.Number(40) - 15)));
        Enter(mask, kAB, number(100, 0.1));
        Enter(mask, kSRK, number(100, 1.0));
        Enter(mask, kTRK, number(50, 0.1));
        Enter(mask, kVG, number(150, 1.0));
        Enter(mask, kAG, number(80, 0.1));
        Enter(mask, kSFR, number(20, 1.0));
        Press(mask, random.Pick<UINT>({4251, 4252, 4253, 4254}));
        data.WZRechDat(2) = {};
        data.WZRechDat(3) = {};
        Press(mask, kCalculate);
        TakeMessages();
        if (FieldValue(mask, "berechnet") == 0)
            continue;
        for (const std::size_t vehicle : {2U, 3U}) {
            double time = 0.0, path = 0.0;
            for (std::size_t c = 0; Column(vehicle, c).IsUsed(); ++c) {
                ++transfers;
                const CWegZeitSpalte& phase = Column(vehicle, c);
                ASSERT_TRUE(std::isfinite(phase.vAnf) && std::isfinite(phase.vEnd) && std::isfinite(phase.verz));
                ASSERT_GT(phase.zeit, 0.0) << round;
                ASSERT_GE(phase.weg, 0.0) << round;
                ASSERT_GE(std::min(phase.vAnf, phase.vEnd), 0.0) << round;
                ASSERT_EQ(phase.vEnd, c == 0 ? phase.vEnd : Column(vehicle, c - 1).vAnf) << round;
                time += phase.zeit;
                path += phase.weg;
                ASSERT_NEAR(phase.sumZeit, time, 1e-9);
                ASSERT_NEAR(phase.sumWeg, path, 1e-7);
            }
            // The case's own calculation finds nothing to change.
            CWegZeitRechDat again = data.WZRechDat(vehicle);
            again.Berechnung();
            ASSERT_EQ(again, data.WZRechDat(vehicle)) << round;
        }
        std::size_t used = 0;
        while (Column(2, used).IsUsed())
            ++used;
        if (used == 0)
            continue;
        const double start = Value(mask, FieldValue(mask, "version") == 1.0 ? kHighest : kVZ);
        if (Text(mask, kTransferHint).find("anderen Werten") != std::string::npos) {
            ++different;
            ASSERT_EQ(Value(mask, kTR), 0.0) << round;
            ASSERT_NE(Value(mask, kAR), 0.0) << round;
        } else {
            ASSERT_NEAR(Column(2, used - 1).vAnf, start, 1e-6) << round;
        }
    }
    EXPECT_GT(transfers, 500);
    EXPECT_GT(different, 0);
}

/// Primitives of a kind in what the mask's field shows.
template <class T> std::size_t Count(Window& mask)
{
    CDC dc(800.0, 300.0);
    mask.Child(kField)->painter(dc, {0, 0, 800, 300});
    const auto& list = dc.Primitives();
    return static_cast<std::size_t>(
        std::count_if(list.begin(), list.end(), [](const auto& p) { return std::holds_alternative<T>(p); }));
}

TEST_F(VermTest, DrawsTheLinesInsideTheField)
{
    Window& mask = Open();
    EXPECT_EQ(Count<drawing::Polyline>(mask), 0U);
    Press(mask, kOncoming);
    Enter(mask, kVZ, "50");
    Enter(mask, kAB, "7,5");
    Press(mask, kCalculate);
    ASSERT_EQ(FieldValue(mask, "berechnet"), 1);
    const std::size_t oncoming = Count<drawing::Polyline>(mask);
    EXPECT_GT(oncoming, 5U);
    CDC dc(800.0, 300.0);
    mask.Child(kField)->painter(dc, {0, 0, 800, 300});
    for (const auto& line : test::All<drawing::Polyline>(dc))
        for (const CDPoint& p : line.points)
            ASSERT_TRUE(p.x >= 0.0 && p.x <= 800.0 && p.y >= 0.0 && p.y <= 300.0) << p.x << ", " << p.y;
    Press(mask, kCrossing);
    Enter(mask, kSFR, "3");
    Press(mask, kCalculate);
    EXPECT_EQ(Count<drawing::Rectangle>(mask), 3U) << "ground, plot, conflict area";
    // No size is too small, and the large window shows the same.
    for (const double size : {1.0, 10.0, 40.0}) {
        CDC small(size, size);
        mask.Child(kField)->painter(small, {0, 0, static_cast<int>(size), static_cast<int>(size)});
        EXPECT_FALSE(small.Primitives().empty());
    }
    Press(mask, kGraphic);
    Window& large = *thread.Dialogs().back();
    EXPECT_NE(&large, &mask);
    EXPECT_NE(large.Child(4262), nullptr);
    TakeMessages();
}

TEST_F(VermTest, ClearingKeepsTheChoicesAndOkTransfersOnce)
{
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kTemporal);
    Press(mask, kCalculate);
    Press(mask, kClear);
    EXPECT_EQ(Value(mask, kVZ), 50.0) << "answered no";
    front.answers[1052] = 6;
    Press(mask, kClear);
    EXPECT_EQ(Value(mask, kVZ), 0.0);
    EXPECT_EQ(Value(mask, kHighest), 0.0);
    EXPECT_EQ(FieldValue(mask, "richtung"), 2);
    EXPECT_EQ(FieldValue(mask, "art"), 2);
    EXPECT_EQ(FieldValue(mask, "gegner"), 1);
    EXPECT_EQ(Text(mask, kVerdict), "");
    EnterExample(mask);
    Enter(mask, kTR, "1");
    Enter(mask, kVG, "36");
    RuvCfg.transferData = true;
    Press(mask, kOk);
    EXPECT_TRUE(Column(2, 0).IsUsed());
    EXPECT_TRUE(thread.Dialogs().empty());
}

} // namespace
