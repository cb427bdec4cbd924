// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/RuvMod.h"
#include "masks/dynamics/CTeilanhDlg.h"
#include "report/Protocol.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <algorithm>
#include <cmath>

namespace
{

using framework::InputResult;
using framework::Window;
using test::FieldValue;
using test::FieldValues;

constexpr UINT kVehicle = 4801, kPhase = 4802, kVA = 4804, kTR = 4805, kAR = 4806, kTS = 4809, kAB = 4810, kVE = 4811,
               kSG = 4812, kTG = 4813, kSB = 4814, kSBS = 4815, kTB = 4816, kVR = 4817;
constexpr UINT kInit = 124, kHint = 24802;

class TeilanhTest : public test::MaskTest
{
  protected:
    Window& Open() { return OpenMask(459); }
    void EnterExample(Window& mask)
    {
        Enter(mask, kVA, "50");
        Enter(mask, kTR, "1");
        Enter(mask, kTS, "0,2");
        Enter(mask, kAB, "7,5");
    }
    std::string Hint(Window& mask) { return Control(mask, kHint).text; }
};

TEST_F(TeilanhTest, FiftyKmhToAStop)
{
    Window& mask = Open();
    EXPECT_EQ(Value(mask, kTR), 1.0) << "the default of the settings";
    EXPECT_EQ(Value(mask, kTS), 0.2);
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_TRUE(front.messages.empty());
    EXPECT_EQ(Text(mask, kVR), "50,00");
    EXPECT_NEAR(FieldValue(mask, "vS"), (50.0 / 3.6 - 0.75) * 3.6, 1e-9);
    EXPECT_NEAR(Value(mask, kTB), (50.0 / 3.6 - 0.75) / 7.5, 1e-12);
    EXPECT_EQ(Text(mask, kTB), "1,75");
    EXPECT_NEAR(FieldValue(mask, "sR"), 13.889, 5e-4);
    EXPECT_NEAR(FieldValue(mask, "sS"), 2.728, 5e-4);
    EXPECT_NEAR(Value(mask, kSB), 11.509, 5e-4);
    EXPECT_NEAR(Value(mask, kSG), 28.125, 1e-3);
    EXPECT_EQ(Text(mask, kTG), "2,95");
    EXPECT_NEAR(Value(mask, kSBS), 14.236, 1e-3);
    EXPECT_EQ(FieldValue(mask, "modus"), 3);
    EXPECT_EQ(FieldValue(mask, "berechnet"), 1);
    EXPECT_EQ(FieldValue(mask, "status"), 0);
    // Given stay both speeds.
    EXPECT_TRUE(Control(mask, kSG).readOnly);
    EXPECT_TRUE(Control(mask, kSB).readOnly);
    EXPECT_FALSE(Control(mask, kVA).readOnly);
    EXPECT_FALSE(Control(mask, kVE).readOnly);
    for (const UINT result : {kVR, kTG, kTB, kSBS})
        EXPECT_EQ(Enter(mask, result, "1"), InputResult::disabled);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main -1"});
    EXPECT_EQ(Phases(), CWegZeitRechDat{}) << "the transfer option is off";
}

TEST_F(TeilanhTest, InitFreesTheFieldsAndChoosesAfresh)
{
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_EQ(Enter(mask, kSG, "20"), InputResult::readOnly);
    Press(mask, kInit);
    for (const UINT field : {kVA, kVE, kSG, kSB})
        EXPECT_FALSE(Control(mask, field).readOnly);

    // 20 m in all: of the 28.1 m to the stop 8.1 m are left, so v² = 2·7.5·8.125 less rounding.
    const double rest = Value(mask, kSG) - 20.0;
    Enter(mask, kSG, "20");
    Press(mask, kCalculate);
    EXPECT_EQ(FieldValue(mask, "modus"), 2);
    EXPECT_NEAR(Value(mask, kVE), std::sqrt(2.0 * 7.5 * rest) * 3.6, 1e-9);
    EXPECT_TRUE(Control(mask, kVE).readOnly);
    EXPECT_TRUE(Control(mask, kSB).readOnly);
    EXPECT_FALSE(Control(mask, kSG).readOnly);

    // The same stop from its end: with 0 km/h and 28.1 m the initial speed comes out.
    Press(mask, kInit);
    Enter(mask, kVA, "0");
    Enter(mask, kVE, "0");
    Enter(mask, kSG, "28,125");
    Press(mask, kCalculate);
    EXPECT_EQ(FieldValue(mask, "modus"), 1);
    EXPECT_NEAR(Value(mask, kVA), 50.0, 1e-3);
}

TEST_F(TeilanhTest, ChecksSpeakAndLetNothingThroughButTheEmptyMask)
{
    Window& mask = Open();
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1201, 1202}));
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 1);
    EXPECT_EQ(FieldValue(mask, "modus"), 3);
    Press(mask, kInit);
    front.messages.clear();

    Enter(mask, kAB, "7");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1202}));
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 1);

    EXPECT_EQ(TransferNews(), (std::vector<std::string>{"main -1", "main -1"}));

    for (int mode = 0; mode <= 5; ++mode) {
        Window& other = Open();
        data.WZDat(0).mode = mode;
        Press(other, 2);
        Window& again = Open();
        EXPECT_EQ(FieldValue(again, "modus"), mode);
        if (!Control(again, kVA).readOnly)
            Enter(again, kVA, "50");
        if (!Control(again, kVE).readOnly)
            Enter(again, kVE, "20");
        const double tG = Value(again, kTG);
        front.messages.clear();
        Press(again, kCalculate);
        EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1201}));
        EXPECT_EQ(Value(again, kTG), tG);
        EXPECT_EQ(FieldValue(again, "berechnet"), 0);
        EXPECT_EQ(TransferNews(), std::vector<std::string>{});
        Press(again, 2);
    }
    data.WZDat(0).mode = 77; // from a damaged case
    EXPECT_EQ(FieldValue(Open(), "modus"), 0);
}

TEST_F(TeilanhTest, TooShortAndTooLongPaths)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    EnterExample(mask);
    Enter(mask, kSG, "16"); // reaction and threshold phase take 16.6 m
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1204}));
    EXPECT_EQ(Value(mask, kTB), 0.0);
    EXPECT_NE(Hint(mask), "");
    Enter(mask, kSG, "29"); // it stops after 28.1 m
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1203}));
    EXPECT_EQ(TransferNews(), std::vector<std::string>{});
    EXPECT_EQ(Phases(), CWegZeitRechDat{});
    Enter(mask, kSG, "28");
    Press(mask, kCalculate);
    EXPECT_EQ(Hint(mask), "");
    EXPECT_TRUE(Phases().spalten[kFirst].IsUsed());
}

TEST_F(TeilanhTest, SpinnerOnlyCalculates)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    EnterExample(mask);
    StepOnce(mask, kVA, +1);
    EXPECT_EQ(Value(mask, kSG), 0.0) << "nothing was computed yet";
    Press(mask, kCalculate);
    const CWegZeitRechDat before = Phases();
    const double path = Value(mask, kSG);
    front.posted.clear();
    StepOnce(mask, kVA, +1);
    EXPECT_GT(Value(mask, kSG), path);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{});
    EXPECT_EQ(Phases(), before);
    Enter(mask, kAB, "0,05");
    StepOnce(mask, kAB, -1);
    ASSERT_EQ(Value(mask, kAB), -0.05);
    EXPECT_NE(Hint(mask), "") << "accelerating to a stop takes negative time";
    StepOnce(mask, kAB, +1);
    EXPECT_EQ(Hint(mask), "");
    Enter(mask, kAB, "0,1");
    StepOnce(mask, kAB, -1);
    ASSERT_EQ(Value(mask, kAB), 0.0);
    EXPECT_NE(Hint(mask), "") << "the results are those of another deceleration";
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 0);
    StepOnce(mask, kAB, +1);
    EXPECT_EQ(Hint(mask), "");
    EXPECT_TRUE(front.messages.empty());

    // A step into what has no solution says so beside the fields, and the next one leaves it again.
    Press(mask, kInit);
    Enter(mask, kAB, "7,5");
    Enter(mask, kVA, "50");
    Enter(mask, kVE, "0");
    Enter(mask, kSG, "28");
    Press(mask, kCalculate);
    StepOnce(mask, kSG, +1);
    EXPECT_NE(Hint(mask), "");
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 0);
    StepOnce(mask, kSG, -1);
    EXPECT_EQ(Hint(mask), "");
    EXPECT_EQ(FieldValue(mask, "ergebnis"), 1);
    EXPECT_TRUE(front.messages.empty());
}

TEST_F(TeilanhTest, ClearingKeepsTheVehicleAndFreesTheFields)
{
    Window& mask = Open();
    Choose(mask, kVehicle, 1);
    EnterExample(mask);
    Press(mask, kCalculate);
    Press(mask, kClear); // answered with no
    EXPECT_EQ(Text(mask, kVA), "50,00");
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask.object)->DescribeRecord()) {
        const bool kept = field.name == "fahrzeug" || field.name == "berechnet" || field.name == "status";
        EXPECT_EQ(FieldValues(field).at(0), kept ? 1.0 : 0.0) << field.name;
    }
    EXPECT_EQ(Enter(mask, kSG, "30"), InputResult::done);
    EXPECT_EQ(Enter(mask, kAB, "8"), InputResult::done);
    RuvCfg.transferData = true;
    EXPECT_EQ(Control(mask, kPhase).selection, -1);
    Press(mask, kCalculate);
    EXPECT_EQ(Phases(1).spalten[kFirst].art, PhasenArt::braking) << "without a chosen phase from the first column on";
    EXPECT_EQ(FieldValue(mask, "phase"), 3);
    EXPECT_EQ(Control(mask, kPhase).selection, 0);
}

TEST_F(TeilanhTest, TransferWritesThreePhasesAndClearsTheRest)
{
    for (std::size_t column = kFirst; column < CWegZeitDat::kSpalten; ++column) {
        Phases(1).spalten[column].art = PhasenArt::turning;
        Phases(1).spalten[column].vAnf = Phases(1).spalten[column].vEnd = 20.0;
        Phases(1).spalten[column].seite = kSeiteLinks;
    }
    Phases(1).selected = 5;
    Window& mask = Open();
    EXPECT_EQ(Control(mask, kVehicle).parent->vehicle, 0);
    Choose(mask, kVehicle, 1);
    EXPECT_EQ(Control(mask, kVehicle).parent->vehicle, 1) << "the colour follows the vehicle";
    EXPECT_EQ(FieldValue(mask, "phase"), 5);
    EXPECT_EQ(Value(mask, kVE), 20.0) << "the start speed of the column before";
    EnterExample(mask);
    Enter(mask, kAR, "0,5");
    Press(mask, kInit);
    Enter(mask, kSG, "0");
    Press(mask, kCalculate);
    EXPECT_TRUE(front.broadcast.empty());

    Press(mask, kTransfer);
    EXPECT_TRUE(std::any_of(front.posted.begin(), front.posted.end(), [](const MSG& m) { return m.message == 1353; }));
    const CWegZeitRechDat& phases = Phases(1);
    EXPECT_EQ(phases.selected, 5U);
    EXPECT_EQ(phases.mode, 3);
    EXPECT_EQ(phases.spalten[4].art, PhasenArt::turning);
    const CWegZeitSpalte& braking = phases.spalten[5];
    EXPECT_EQ(braking.art, PhasenArt::braking);
    EXPECT_EQ(braking.seite, kSeiteUnbestimmt);
    EXPECT_NEAR(braking.vEnd, 20.0, 1e-9);
    EXPECT_EQ(braking.vAnf, FieldValue(mask, "vS"));
    EXPECT_EQ(braking.zeit, FieldValue(mask, "tB"));
    EXPECT_EQ(braking.weg, FieldValue(mask, "sB"));
    EXPECT_EQ(braking.verz, 7.5);
    const CWegZeitSpalte& threshold = phases.spalten[6];
    EXPECT_EQ(threshold.art, PhasenArt::threshold);
    EXPECT_EQ(threshold.vAnf, FieldValue(mask, "vR"));
    EXPECT_EQ(threshold.zeit, 0.2);
    EXPECT_EQ(threshold.weg, FieldValue(mask, "sS"));
    EXPECT_EQ(threshold.verz, 7.5);
    const CWegZeitSpalte& reaction = phases.spalten[7];
    EXPECT_EQ(reaction.art, PhasenArt::reaction);
    EXPECT_EQ(reaction.vAnf, FieldValue(mask, "vA"));
    EXPECT_EQ(reaction.zeit, 1.0);
    EXPECT_EQ(reaction.verz, -0.5);
    for (std::size_t column = 8; column < CWegZeitDat::kSpalten; ++column)
        EXPECT_EQ(phases.spalten[column], CWegZeitSpalte{});
    EXPECT_TRUE(front.broadcast.empty());
    EXPECT_TRUE(data.UPa(1).modified);
    EXPECT_EQ(FieldValue(mask, "status"), 1);

    // Again: now the parameter record is modified, which is announced. Without threshold time two phases are left.
    Enter(mask, kTS, "0");
    Press(mask, kOk);
    ASSERT_EQ(front.broadcast.size(), 1U);
    EXPECT_EQ(front.broadcast[0].message, 1342U);
    EXPECT_EQ(front.broadcast[0].wParam, 1U);
    EXPECT_EQ(phases.spalten[6].art, PhasenArt::reaction);
    EXPECT_FALSE(phases.spalten[7].IsUsed());
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(Phases(0), CWegZeitRechDat{});
}

TEST_F(TeilanhTest, OkCalculatesWhatChangedAndTransfersWhateverTheOptionSays)
{
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kOk);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main -1"});
    EXPECT_NEAR(Phases().spalten[kFirst + 2].vAnf, 50.0, 1e-9);

    Window& again = Open();
    Press(again, kCalculate);
    Enter(again, kVA, "60");
    Press(again, kOk);
    EXPECT_NEAR(Phases().spalten[kFirst + 2].vAnf, 60.0, 1e-9);

    Window& failing = Open();
    Press(failing, kCalculate);
    const CWegZeitRechDat before = Phases();
    Enter(failing, kAB, "0");
    Press(failing, kOk);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1201}));
    EXPECT_EQ(Phases(), before);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(TeilanhTest, WithoutAVehicleItCalculatesAndTransfersNothing)
{
    data.KfzDat(0) = {};
    data.KfzDat(1) = {};
    RuvCfg.transferData = true;
    Window& mask = Open();
    EXPECT_EQ(mask.vehicle, -1);
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_EQ(Text(mask, kSG), "28,13");
    EXPECT_EQ(FieldValue(mask, "status"), 1);
    Press(mask, kTransfer);
    Press(mask, kOk);
    for (std::size_t vehicle = 0; vehicle < CRuvData::kFahrzeuge; ++vehicle) {
        EXPECT_EQ(Phases(vehicle), CWegZeitRechDat{});
        EXPECT_FALSE(data.UPa(vehicle).modified);
    }
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(TeilanhTest, SequenceBeyondTheLastColumnIsRefused)
{
    for (std::size_t column = kFirst; column < 46; ++column)
        Phases().spalten[column].art = PhasenArt::rolling;
    Phases().selected = 46;
    const CWegZeitRechDat before = Phases();
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kOk);
    EXPECT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(Phases(), before);
    EXPECT_EQ(thread.Dialogs().size(), 1U);
    Enter(mask, kTS, "0");
    Press(mask, kOk);
    EXPECT_EQ(Phases().spalten[47].art, PhasenArt::reaction);
}

TEST_F(TeilanhTest, ReadsWhatAColumnAndItsPredecessorsSay)
{
    CWegZeitRechDat& phases = Phases();
    Put(phases.spalten[3], PhasenArt::rolling, 9.0, 18.0, 2.5, 1.0);
    Put(phases.spalten[4], PhasenArt::braking, 18.0, 54.0, 5.0, 2.0);
    Put(phases.spalten[5], PhasenArt::reaction, 54.0, 57.6, 1.25, 0.8);
    Put(phases.spalten[6], PhasenArt::constantSpeed, 57.6, 57.6, 0.0, 3.0);
    phases.Berechnung();
    RuvCfg.defaultReactionTime = 1.5;
    RuvCfg.defaultThresholdTime = 0.3;

    Window& mask = Open(); // at column 3
    EXPECT_EQ(Value(mask, kVE), 9.0);
    EXPECT_EQ(Value(mask, kVA), 54.0) << "from the column after, whatever its kind";
    EXPECT_EQ(Value(mask, kAR), -5.0);
    EXPECT_EQ(Value(mask, kTR), 1.5);

    Choose(mask, kPhase, 1);
    EXPECT_EQ(FieldValue(mask, "phase"), 4);
    EXPECT_EQ(Value(mask, kVE), 18.0);
    EXPECT_EQ(Value(mask, kAB), 5.0);
    EXPECT_NEAR(Value(mask, kSB), 20.0, 1e-9);
    EXPECT_EQ(Value(mask, kTS), 0.0);
    EXPECT_EQ(Value(mask, kVR), 54.0);
    EXPECT_EQ(Value(mask, kTR), 0.8) << "from the column the reaction data come from";
    EXPECT_EQ(Value(mask, kAR), -1.25);
    EXPECT_NEAR(Value(mask, kVA), 57.6, 1e-9);
    EXPECT_NEAR(Value(mask, kTG), 2.8, 1e-9) << "without what lies behind the braking";
    EXPECT_NEAR(Value(mask, kSG), 20.0 + 0.8 * 15.5, 1e-9);

    Choose(mask, kPhase, 4); // the first free column
    EXPECT_EQ(Value(mask, kVE), 57.6);
    EXPECT_EQ(Value(mask, kTS), 0.3);
    EXPECT_EQ(Value(mask, kTR), 1.5);
    EXPECT_EQ(Value(mask, kVA), 0.0);
    EXPECT_EQ(FieldValue(mask, "berechnet"), 0);

    // After a gap a column counts as a first one.
    Put(phases.spalten[9], PhasenArt::braking, 12.0, 30.0, 5.0, 1.0);
    phases.selected = 9;
    Choose(mask, kVehicle, 1);
    Choose(mask, kVehicle, 0);
    EXPECT_EQ(FieldValue(mask, "phase"), 9);
    EXPECT_EQ(Value(mask, kVE), 12.0);
}

TEST_F(TeilanhTest, WhatTheCaseChainsOtherwiseIsSaid)
{
    CWegZeitSpalte& first = Phases().spalten[kFirst];
    first.art = PhasenArt::braking;
    first.vAnf = 30.0;
    first.verz = 5.0;
    Phases().Berechnung();
    Window& mask = Open();
    Choose(mask, kPhase, 1);
    ASSERT_EQ(Value(mask, kVE), 30.0);
    EnterExample(mask);
    Enter(mask, kVA, "80");
    Press(mask, kTransfer);
    EXPECT_EQ(Hint(mask), "") << "what was transferred is in the case";
    EXPECT_NEAR(Phases().spalten[kFirst + 3].vAnf, 80.0, 1e-9);

    // 58,08 km/h at the end of the braking: the phase before it starts at 30, so all speeds are 28,08 lower.
    Enter(mask, kVE, "58,08");
    Press(mask, kTransfer);
    const CWegZeitSpalte& reaction = Phases().spalten[kFirst + 3];
    ASSERT_NEAR(reaction.vAnf, 51.92, 1e-6);
    const std::string hint = Hint(mask);
    EXPECT_NE(hint.find("Anfangsgeschwindigkeit 51,92 km/h statt 80,00 km/h"), std::string::npos) << hint;
    double path = 0.0;
    for (std::size_t i = 1; i <= 3; ++i)
        path += Phases().spalten[kFirst + i].weg;
    EXPECT_NEAR(path, Value(mask, kSG) - 28.08 / 3.6 * Value(mask, kTG), 1e-6);
    EXPECT_NE(hint.find(" m statt " + Text(mask, kSG) + " m"), std::string::npos) << hint;
    EXPECT_NE(hint.find("Zeit " + Text(mask, kTG) + " s statt " + Text(mask, kTG) + " s"), std::string::npos) << hint;
    const auto notes = report::MakeProtocol(mask, {}).notes;
    EXPECT_EQ(std::count(notes.begin(), notes.end(), hint), 1);
    // OK takes the mask away, so it says it in a message.
    Press(mask, kOk);
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(front.messages[0].text, hint);
}

TEST_F(TeilanhTest, NothingEmptyOrImpossibleIsTransferred)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kCalculate);
    const CWegZeitRechDat good = Phases();
    ASSERT_TRUE(good.spalten[kFirst + 2].IsUsed());
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    Press(mask, kCalculate);
    EXPECT_EQ(Phases(), good);
    EXPECT_EQ(Hint(mask), "Nichts übertragen: Keine der Phasen hat eine Dauer.");
    Press(mask, kOk);
    EXPECT_EQ(Phases(), good);
    EXPECT_EQ(thread.Dialogs().size(), 1U) << "it stays open, for what it says";
    EXPECT_EQ(front.messages.back().text, Hint(mask));

    Press(mask, kInit);
    Enter(mask, kVA, "50");
    Enter(mask, kAB, "-2"); // faster and faster to a stop
    Press(mask, kCalculate);
    ASSERT_LT(Value(mask, kTB), 0.0);
    EXPECT_EQ(Phases(), good);
    EXPECT_EQ(Hint(mask), "Nichts übertragen: Eine Dauer, ein Weg oder eine Geschwindigkeit ist negativ.");

    // Accelerating, it is a phase of its own kind.
    Enter(mask, kVE, "60");
    Press(mask, kCalculate);
    EXPECT_EQ(Hint(mask), "");
    EXPECT_EQ(Phases().spalten[kFirst].art, PhasenArt::accelerating);
    EXPECT_NEAR(Phases().spalten[kFirst].vEnd, 60.0, 1e-9);
    EXPECT_EQ(Phases().spalten[kFirst].verz, -2.0);

    data.KfzDat(0) = {};
    Press(mask, kTransfer);
    EXPECT_EQ(Hint(mask), "Nichts übertragen: Das Fahrzeug ist nicht mehr im Fall.");
}

TEST_F(TeilanhTest, TheModeThatHoldsIsTold)
{
    const auto given = [](Window& mask) { return Text(mask, 24801); };
    data.WZRechDat(1).mode = 4;
    Window& mask = Open();
    EXPECT_EQ(given(mask), "Gegeben: noch offen, beim Rechnen nach den Eingaben gewählt");
    Choose(mask, kVehicle, 1);
    EXPECT_EQ(FieldValue(mask, "modus"), 4);
    EXPECT_EQ(given(mask), "Gegeben: Bremsweg und Endgeschwindigkeit");
    EXPECT_TRUE(Control(mask, kVA).readOnly);
    Choose(mask, kVehicle, 0);
    EXPECT_EQ(FieldValue(mask, "modus"), 0);
    EXPECT_FALSE(Control(mask, kVA).readOnly);

    // A run that fails chooses nothing.
    EnterExample(mask);
    Enter(mask, kSG, "16");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1204}));
    EXPECT_EQ(FieldValue(mask, "modus"), 0);
    EXPECT_EQ(given(mask), "Gegeben: noch offen, beim Rechnen nach den Eingaben gewählt");
    Enter(mask, kSG, "0");
    Press(mask, kCalculate);
    EXPECT_EQ(FieldValue(mask, "modus"), 3);
    EXPECT_EQ(given(mask), "Gegeben: Anfangs- und Endgeschwindigkeit");
    // A spinner step after "Init" chooses too.
    Press(mask, kInit);
    Enter(mask, kSG, "20");
    StepOnce(mask, kSG, +1);
    EXPECT_EQ(FieldValue(mask, "modus"), 2);
    EXPECT_EQ(given(mask), "Gegeben: Gesamtweg und Anfangsgeschwindigkeit");
    EXPECT_TRUE(Control(mask, kVE).readOnly);
}

TEST_F(TeilanhTest, AStepCountsAsAChangeAndAColumnAsNoCalculation)
{
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kCalculate);
    Enter(mask, kAB, "0,1");
    Press(mask, kCalculate);
    StepOnce(mask, kAB, -1);
    ASSERT_EQ(Value(mask, kAB), 0.0);
    Press(mask, kOk);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1201}));
    EXPECT_EQ(Phases(), CWegZeitRechDat{});

    Window& other = Open();
    EnterExample(other);
    Press(other, kCalculate);
    EXPECT_EQ(FieldValue(other, "berechnet"), 1);
    Choose(other, kPhase, 0);
    EXPECT_EQ(FieldValue(other, "berechnet"), 0);
    EnterExample(other);
    Press(other, kCalculate);
    Choose(other, kVehicle, 1);
    EXPECT_EQ(FieldValue(other, "berechnet"), 0);
}

} // namespace
