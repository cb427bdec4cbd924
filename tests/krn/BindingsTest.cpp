// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/NumberText.h"
#include "tests/support/MaskFixture.h"

#include <cmath>
#include <limits>

namespace
{

using framework::InputResult;

constexpr UINT kFriction = 4662;
constexpr UINT kDegrees = 4664;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// Counts the messages that finished entries send.
class CountingMask : public CMDIRechDialog
{
  public:
    CountingMask(CRuvData& data, CWnd* parent) : CMDIRechDialog(400, parent, data, nullptr, nullptr)
    {
        m_isCalculationMask = 1;
    }
    const CMessageMap* GetMessageMap() const override
    {
        static constexpr CMessageEntry kEntries[] = {OnMessage<&CountingMask::OnEditChanged>(WM_RUV_EDITCHANGED)};
        static constexpr CMessageMap kMap{nullptr, kEntries};
        return &kMap;
    }
    void BuildObjects() override
    {
        calls.push_back("BuildObjects");
        EXPECT_NE(GetDlgItem(kFriction), nullptr) << "controls stand before the bindings";
        const UnitType speed(unitType::speedKmh);
        new CEditDouble(this, kFriction, &value, -50.0, 300.0, 2, 0.0, nullptr, nullptr, &speed);
        new CEditInt(this, kDegrees, &count, 0, 10, 4, nullptr, nullptr);
    }
    void SetupWindow() override
    {
        calls.push_back("SetupWindow");
        value = 12.345;
        CMDIRechDialog::SetupWindow();
    }
    void UpdateDialog() override
    {
        calls.push_back("UpdateDialog");
        CMDIRechDialog::UpdateDialog();
    }
    void ShutDownWindow() override
    {
        calls.push_back("ShutDownWindow");
        CMDIRechDialog::ShutDownWindow();
    }
    void IncValue(int id) override { stepped.push_back(id); }
    LRESULT OnEditChanged(WPARAM id, LPARAM)
    {
        changed.push_back(static_cast<int>(id));
        return 0;
    }

    double value = 0.0;
    std::int64_t count = 0;
    std::vector<int> changed;
    std::vector<int> stepped;
    static inline std::vector<std::string> calls;
};

class BindingsTest : public test::MaskTest
{
  protected:
    static CountingMask* Open(CRuvData& data, CWnd& parent)
    {
        CountingMask::calls.clear();
        auto* opened = new CountingMask(data, &parent);
        opened->DoModeless(&parent);
        return opened;
    }
    CountingMask* dialog = Open(data, mainWindow);
    framework::Window& mask = *thread.Dialogs().at(0);
};

TEST_F(BindingsTest, LifeOfAMaskRunsInOrder)
{
    EXPECT_EQ(Text(mask, kFriction), "12,35");
    Press(mask, IDCANCEL);
    EXPECT_EQ(CountingMask::calls,
              (std::vector<std::string>{"BuildObjects", "SetupWindow", "UpdateDialog", "ShutDownWindow"}));
}

TEST_F(BindingsTest, AFinishedEntryIsOneChange)
{
    framework::Window& edit = Control(mask, kFriction);
    framework::TypeText(edit, "5");
    framework::TypeText(edit, "50");
    framework::TypeText(edit, "50,5");
    EXPECT_TRUE(dialog->changed.empty());
    EXPECT_EQ(dialog->value, 12.345);
    EXPECT_EQ(framework::FinishEntry(edit), InputResult::done);
    EXPECT_EQ(framework::FinishEntry(edit), InputResult::done);
    EXPECT_EQ(dialog->changed, std::vector<int>{kFriction});
    EXPECT_EQ(dialog->value, 50.5);

    // Going elsewhere finishes it as well.
    framework::TypeText(edit, "60.25");
    framework::TypeText(Control(mask, kDegrees), "3");
    EXPECT_EQ(dialog->value, 60.25);
    EXPECT_EQ(dialog->changed.size(), 2U);
}

TEST_F(BindingsTest, RefusedEntriesNameFieldValueAndRangeAndChangeNothing)
{
    for (const char* text : {"abc", "301", "-50,01", "1.234,5", "nan", "inf", "1e999", "0x10", "5 5", "--5", "∞"}) {
        front.refusals.clear();
        EXPECT_EQ(Enter(mask, kFriction, text), InputResult::refused) << text;
        ASSERT_EQ(front.refusals.size(), 1U) << text;
        const std::string& why = front.refusals[0].text;
        EXPECT_NE(why.find("Reibungsbeiwert"), std::string::npos) << why;
        EXPECT_NE(why.find(text), std::string::npos) << why;
        EXPECT_NE(why.find("-50,00 bis 300,00"), std::string::npos) << why;
        EXPECT_EQ(dialog->value, 12.345);
        EXPECT_EQ(Text(mask, kFriction), "12,35");
    }
    EXPECT_TRUE(dialog->changed.empty());
    EXPECT_EQ(Enter(mask, kDegrees, "2,5"), InputResult::refused);
    EXPECT_EQ(Enter(mask, kDegrees, "11"), InputResult::refused);
    EXPECT_EQ(Enter(mask, kDegrees, "10"), InputResult::done);
    EXPECT_EQ(dialog->count, 10);
}

TEST_F(BindingsTest, ARefusedEntryStopsTheClickThatWouldUseIt)
{
    framework::TypeText(Control(mask, kFriction), "999");
    EXPECT_EQ(Press(mask, 105), InputResult::refused);
    framework::TypeText(Control(mask, kFriction), "999");
    EXPECT_EQ(Press(mask, IDCANCEL), InputResult::done);
    EXPECT_EQ(front.refusals.size(), 1U) << "cancelling asks for no valid entry";
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(BindingsTest, EmptyEntryLeavesTheOldValueAndRedrawingNeverRoundsIt)
{
    EXPECT_EQ(Enter(mask, kFriction, ""), InputResult::done);
    EXPECT_EQ(Enter(mask, kFriction, "   "), InputResult::done);
    EXPECT_EQ(Text(mask, kFriction), "12,35");
    dialog->UpdateDialog();
    dialog->ReadData();
    EXPECT_EQ(dialog->value, 12.345);
    EXPECT_TRUE(dialog->changed.empty());
}

TEST_F(BindingsTest, SpinnerStopsAtTheBounds)
{
    dialog->value = 299.5; // default step 1 for a range up to 300
    StepOnce(mask, kFriction, +1);
    EXPECT_EQ(dialog->value, 300.0);
    StepOnce(mask, kFriction, +1);
    EXPECT_EQ(dialog->stepped.size(), 1U) << "nothing changed at the bound";
    dialog->value = 400.0; // a value beyond the range is typed away, no step jumps to the bound
    StepOnce(mask, kFriction, +1);
    EXPECT_EQ(dialog->value, 400.0);
    StepOnce(mask, kFriction, -1);
    EXPECT_EQ(dialog->value, 400.0);
    dialog->value = kNan;
    StepOnce(mask, kFriction, -1);
    EXPECT_TRUE(std::isnan(dialog->value));

    dialog->count = 8;
    StepOnce(mask, kDegrees, +1);
    EXPECT_EQ(dialog->count, 10);
    EXPECT_TRUE(dialog->changed.empty()) << "steps report through IncValue alone";
}

TEST_F(BindingsTest, ImperialUnitsConvertWhatIsShownOnly)
{
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    dialog->value = 160.9344;
    dialog->UpdateDialog();
    EXPECT_EQ(Text(mask, kFriction), "100,00");
    Enter(mask, kFriction, "50");
    EXPECT_NEAR(dialog->value, 80.4672, 1e-12);
    EXPECT_EQ(Enter(mask, kFriction, "200"), InputResult::refused); // 321.9 km/h
    EXPECT_NE(front.refusals.back().text.find("186,41"), std::string::npos) << front.refusals.back().text;
    StepOnce(mask, kFriction, +1);
    EXPECT_NEAR(dialog->value, 51.0 * 1.609344, 1e-12);
}

TEST_F(BindingsTest, BoundsNamedInARefusalAreTaken)
{
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    framework::Window& curve = OpenMask(401);
    constexpr UINT kChord = 4658; // to 1000 m = 3280.8399 ft
    ASSERT_EQ(Enter(curve, kChord, "9999"), InputResult::refused);
    const std::string why = front.refusals.back().text;
    ASSERT_NE(why.find("0,00 bis 3280,83."), std::string::npos) << why;
    EXPECT_EQ(Enter(curve, kChord, "3280,83"), InputResult::done);
    EXPECT_EQ(Enter(curve, kChord, "3280,84"), InputResult::refused);
}

/// Choices and whole numbers over fields of both widths, in the layout of mask 459.
class ChoosingMask : public CMDIRechDialog
{
  public:
    static constexpr UINT kVehicle = 4801;
    static constexpr UINT kPhase = 4802;
    static constexpr UINT kCount = 4806;
    ChoosingMask(CRuvData& data, CWnd* parent) : CMDIRechDialog(459, parent, data, nullptr, nullptr) {}
    void BuildObjects() override
    {
        vehicles = new CFzgCombo(this, kVehicle, -1, &vehicle, &partner, nullptr, nullptr);
        phases = new CAbsCombo(this, kPhase, &phase, nullptr, nullptr);
        phases->SetVehicle(&vehicle);
        new CEditInt(this, kCount, &count, -3'000'000'000, 3'000'000'000, 1, nullptr, nullptr);
    }

    CFzgCombo* vehicles = nullptr;
    CAbsCombo* phases = nullptr;
    std::int32_t vehicle = 0;
    std::int64_t partner = 1;
    std::int32_t third = 3;
    std::int32_t phase = 3;
    std::int32_t count = 2'147'483'646;
};

class ChoicesTest : public test::MaskTest
{
  protected:
    ChoicesTest()
    {
        for (const std::size_t i : {2U, 3U, 4U})
            data.KfzDat(i) = TypicalCar("Pkw " + std::to_string(i + 1), RGB(0, 0, 0));
        auto& columns = data.WZRechDat(0).spalten;
        columns[2].art = PhasenArt::noTime;
        for (const std::size_t i : {3U, 4U, 5U})
            columns[i].art = PhasenArt::braking;
        dialog = new ChoosingMask(data, &mainWindow);
        dialog->DoModeless(&mainWindow);
    }
    std::vector<std::string> Items(UINT id)
    {
        dialog->UpdateDialog();
        return Control(*thread.Dialogs().back(), id).items;
    }
    ChoosingMask* dialog = nullptr;
};

TEST_F(ChoicesTest, VehiclesThatOtherChoicesHoldAreNotOffered)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(Items(ChoosingMask::kVehicle), (Names{"(keines)", "1  Pkw 1", "3  Pkw 3", "4  Pkw 4", "5  Pkw 5"}));
    dialog->vehicles->Ausser({&dialog->partner, &dialog->third});
    EXPECT_EQ(Items(ChoosingMask::kVehicle), (Names{"(keines)", "1  Pkw 1", "3  Pkw 3", "5  Pkw 5"}));
    dialog->partner = -1; // "(keines)" excludes nothing, and the choice follows the other field
    dialog->third = 0;
    EXPECT_EQ(Items(ChoosingMask::kVehicle), (Names{"(keines)", "2  Pkw 2", "3  Pkw 3", "4  Pkw 4", "5  Pkw 5"}));
    EXPECT_EQ(Choose(*thread.Dialogs().back(), ChoosingMask::kVehicle, 3), InputResult::done);
    EXPECT_EQ(dialog->vehicle, 3);
}

TEST_F(ChoicesTest, PhasesAreOfferedInTheRangeOfTheMask)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(Items(ChoosingMask::kPhase), (Names{"1  Bremsen", "2  Bremsen", "3  Bremsen", "4  (frei)"}));
    dialog->phases->SetBereich(0, 4);
    EXPECT_EQ(Items(ChoosingMask::kPhase),
              (Names{"-2  (frei)", "-1  (frei)", "0  ohne Zeit", "1  Bremsen", "2  Bremsen"}));
    EXPECT_EQ(Choose(*thread.Dialogs().back(), ChoosingMask::kPhase, 0), InputResult::done);
    EXPECT_EQ(dialog->phase, 0);
    for (CWegZeitSpalte& column : data.WZRechDat(0).spalten)
        column.art = PhasenArt::braking;
    dialog->phases->SetBereich(0, 46);
    EXPECT_EQ(Items(ChoosingMask::kPhase).size(), 47U);
    dialog->phases->SetBereich(0);
    EXPECT_EQ(Items(ChoosingMask::kPhase).size(), 48U) << "a full case has no free column to offer";
}

TEST_F(ChoicesTest, AWholeNumberStaysInTheWidthOfItsField)
{
    framework::Window& mask = *thread.Dialogs().back();
    StepOnce(mask, ChoosingMask::kCount, +1);
    StepOnce(mask, ChoosingMask::kCount, +1);
    EXPECT_EQ(dialog->count, 2'147'483'647);
    EXPECT_EQ(Enter(mask, ChoosingMask::kCount, "2147483648"), InputResult::refused);
    EXPECT_NE(front.refusals.back().text.find("-2147483648 bis 2147483647"), std::string::npos);
    EXPECT_EQ(Enter(mask, ChoosingMask::kCount, "-2147483648"), InputResult::done);
    EXPECT_EQ(dialog->count, std::numeric_limits<std::int32_t>::min());
}

TEST_F(ChoicesTest, FieldsTakeTheColourOfTheVehicleThatIndexOrKeyNames)
{
    const framework::Window& mask = *thread.Dialogs().back();
    dialog->SetUseFzgColors(2);
    EXPECT_EQ(mask.vehicle, 2);
    dialog->SetUseFzgColors(17270 + 4);
    EXPECT_EQ(mask.vehicle, 4);
    dialog->SetUseFzgColors(FzgFarbSchluessel(15));
    EXPECT_EQ(mask.vehicle, 15);
    for (const std::int64_t none : {-1, 16}) {
        dialog->SetUseFzgColors(FzgFarbSchluessel(none));
        EXPECT_EQ(mask.vehicle, -1);
    }
    for (const std::int64_t beside : {17269, 17286})
        EXPECT_EQ(FzgZuFarbSchluessel(beside), -1);
}

TEST(NumberTextTest, ShowsRoundedValuesWithoutNegativeZero)
{
    EXPECT_EQ(base::FormatNumber(7.848, 2), "7,85");
    EXPECT_EQ(base::FormatNumber(-0.004, 2), "0,00");
    EXPECT_EQ(base::FormatNumber(-0.0, 0), "0");
    EXPECT_EQ(base::FormatNumber(-0.006, 2), "-0,01");
    EXPECT_EQ(base::FormatNumber(0.5, 0), "0");
    EXPECT_EQ(base::FormatNumber(123456789.125, 3), "123456789,125");
    EXPECT_EQ(base::FormatNumber(1e20, 2), "1,00e+20");
    EXPECT_EQ(base::FormatNumber(kNan, 2), "—");
    EXPECT_EQ(base::FormatNumber(-INFINITY, 2), "-∞");
}

TEST(NumberTextTest, FollowsTheUsersDecimalSign)
{
    RuvCfg.decimalPoint = true;
    EXPECT_EQ(base::FormatNumber(-2.862, 2), "-2.86");
    EXPECT_EQ(base::FormatNumber(0.1), "0.1");
    RuvCfg.decimalPoint = false;
    EXPECT_EQ(base::FormatNumber(0.1), "0,1");
}

TEST(NumberTextTest, ReadsCommaAndPoint)
{
    EXPECT_EQ(base::ParseNumber("0,8"), 0.8);
    EXPECT_EQ(base::ParseNumber(" +0.8 "), 0.8);
    EXPECT_EQ(base::ParseNumber("-,5"), -0.5);
    EXPECT_EQ(base::ParseNumber("1e-3"), 0.001);
    for (const char* text : {"", " ", "+", "-", ",", "1,2,3", "1 000", "+-1", "1e", "infinity", "NaN", "1m"})
        EXPECT_EQ(base::ParseNumber(text), std::nullopt) << text;
    EXPECT_EQ(base::ParseInteger("+12"), 12);
    EXPECT_EQ(base::ParseInteger("12,0"), std::nullopt);
    EXPECT_EQ(base::ParseInteger("99999999999999999999"), std::nullopt);
}

} // namespace
