// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CVkonstDlg.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <array>
#include <cmath>
#include <random>

namespace
{

using framework::InputResult;

struct Row {
    UINT kmh, ms, path, time;
};
constexpr std::array<Row, 6> kRows{{{4666, 4667, 4668, 4669},
                                    {30177, 30178, 30179, 30180},
                                    {30181, 30182, 30183, 30184},
                                    {30185, 30186, 30187, 30188},
                                    {30189, 30190, 30191, 30192},
                                    {30193, 30194, 30162, 30163}}};
constexpr UINT kHint = 24666;

class VkonstTest : public test::MaskTest
{
  protected:
    void SetUp() override { Open(); }
    void Open()
    {
        ASSERT_TRUE(thread.Dialogs().empty());
        mask = &OpenMask(468);
    }
    double Field(const char* name, std::size_t row) { return test::FieldValue(*mask, name, row); }
    double In(UINT id) { return Value(*mask, id); }
    void Type(UINT id, const std::string& text) { EXPECT_EQ(Enter(*mask, id, text), InputResult::done) << id; }
    void Type(UINT id, double value) { Type(id, std::to_string(value)); }
    /// Speed computed, path computed, time computed.
    std::array<double, 3> Flags(std::size_t row)
    {
        return {Field("geschwindigkeitBerechnet", row), Field("wegBerechnet", row), Field("zeitBerechnet", row)};
    }

    framework::Window* mask = nullptr;
};

using Flags3 = std::array<double, 3>;

TEST_F(VkonstTest, PathThenSpeedGivesTheTimeAndANewSpeedANewTime)
{
    EXPECT_EQ(thread.Focus(), &Control(*mask, 4666));
    Type(4668, "100");
    EXPECT_EQ(Flags(0), (Flags3{1, 0, 0}));
    Type(4666, "50");
    EXPECT_NEAR(In(4667), 50.0 / 3.6, 1e-12);
    EXPECT_NEAR(In(4669), 7.2, 1e-12);
    EXPECT_EQ(Text(*mask, 4669), "7,20");
    Type(4666, "60");
    EXPECT_NEAR(In(4669), 6.0, 1e-12);
    StepOnce(*mask, 4667, +1);
    EXPECT_NEAR(In(4667), 60.0 / 3.6 + 1.0, 1e-12);
    EXPECT_NEAR(In(4666), 63.6, 1e-12);
    EXPECT_NEAR(In(4669), 100.0 / (60.0 / 3.6 + 1.0), 1e-12);
    EXPECT_EQ(Flags(0), (Flags3{0, 0, 0}));

    Type(30179, "100");
    for (const double speed : {10.0, 20.0}) {
        Type(30178, speed);
        EXPECT_NEAR(In(30180), 100.0 / speed, 1e-12);
    }
}

TEST_F(VkonstTest, PathAndTimeGiveTheSpeedAndCorrectionsFollow)
{
    Type(4669, "5");
    EXPECT_EQ(In(4668), 0.0);
    Type(4668, "100");
    EXPECT_NEAR(In(4666), 72.0, 1e-12);
    EXPECT_EQ(Flags(0), (Flags3{1, 0, 0}));
    Type(4669, "10"); // with a speed the time changes the path
    EXPECT_NEAR(In(4668), 200.0, 1e-12);
    EXPECT_EQ(Flags(0), (Flags3{0, 1, 0}));
    Type(4668, "50"); // and the path the time
    EXPECT_NEAR(In(4669), 2.5, 1e-12);
    EXPECT_EQ(Flags(0), (Flags3{0, 0, 1}));
}

TEST_F(VkonstTest, ComputedPathFollowsTheSpeed)
{
    Type(4667, "10");
    EXPECT_EQ(Flags(0), (Flags3{0, 1, 0}));
    Type(4669, "3");
    EXPECT_NEAR(In(4668), 30.0, 1e-12);
    Type(4667, "20");
    EXPECT_NEAR(In(4668), 60.0, 1e-12);
    EXPECT_EQ(In(4669), 3.0);
}

// Two quantities typed in any order and any row describe one motion, run through here in small steps.
TEST_F(VkonstTest, AnyTwoQuantitiesOfARowDescribeOneMotion)
{
    std::mt19937_64 random(2301);
    std::uniform_real_distribution<double> kmhs(1.0, 250.0);
    std::uniform_real_distribution<double> times(0.2, 60.0);
    front.answers[1052] = fehlerJa;
    for (int i = 0; i < 2000; ++i) {
        const std::size_t at = static_cast<std::size_t>(i) % kRows.size();
        const Row& row = kRows[at];
        const double kmh = std::round(kmhs(random) * 100.0) / 100.0;
        const double time = std::round(times(random) * 100.0) / 100.0;
        const double path = std::round(kmh / 3.6 * time * 100.0) / 100.0;
        if (path > 1000.0)
            continue;
        Press(*mask, kClear);
        switch (i / 6 % 6) {
        case 0:
            Type(row.kmh, kmh);
            Type(row.path, path);
            break;
        case 1:
            Type(row.path, path);
            Type(row.kmh, kmh);
            break;
        case 2:
            Type(row.ms, kmh / 3.6);
            Type(row.time, time);
            break;
        case 3:
            Type(row.time, time);
            Type(row.ms, kmh / 3.6);
            break;
        case 4:
            Type(row.path, path);
            Type(row.time, time);
            break;
        default:
            Type(row.time, time);
            Type(row.path, path);
        }
        Press(*mask, kCalculate);
        EXPECT_NEAR(In(row.ms) * 3.6, kmh, 0.01 + 0.01 * kmh / std::min(time, path)) << i;
        EXPECT_NEAR(In(row.kmh), In(row.ms) * 3.6, 1e-9);
        double run = 0.0;
        for (int n = 0; n < 100; ++n)
            run += In(row.ms) * In(row.time) / 100;
        EXPECT_NEAR(run, In(row.path), 1e-9 * In(row.path));
        EXPECT_EQ(Text(*mask, kHint), "");
        for (std::size_t other = 0; other < kRows.size(); ++other)
            for (const UINT id : {kRows[other].kmh, kRows[other].ms, kRows[other].path, kRows[other].time})
                EXPECT_EQ(In(id) != 0.0, other == at) << id;
    }
}

TEST_F(VkonstTest, TimeOfARowWithoutSpeedShowsTheFirstRowsAndSaysSo)
{
    Type(4667, "10");
    Type(30187, "100");
    EXPECT_EQ(Text(*mask, kHint), "");
    Type(30188, "5");
    EXPECT_NEAR(In(30186), 20.0, 1e-12);
    EXPECT_NEAR(In(30185), 36.0, 1e-12);
    EXPECT_EQ(Flags(3), (Flags3{1, 0, 0}));
    EXPECT_EQ(Text(*mask, kHint), "Zeile 4: Die km/h stammen aus Zeile 1 und passen nicht zu den m/s dieser Zeile.");
    Press(*mask, kCalculate);
    EXPECT_NEAR(In(30185), 72.0, 1e-12);
    EXPECT_EQ(Text(*mask, kHint), "");
}

TEST_F(VkonstTest, CalculatingCompletesEveryRowAndTheCaseKeepsThem)
{
    EXPECT_TRUE(data.AlleMaskenWerte().empty()) << "opening keeps nothing";
    Type(4668, "100");
    Type(4666, "50");
    Type(30194, "8");
    Type(30163, "4");
    Press(*mask, kCalculate);
    for (std::size_t row = 1; row < 5; ++row) {
        EXPECT_EQ(In(kRows[row].kmh) + In(kRows[row].ms) + In(kRows[row].path) + In(kRows[row].time), 0.0);
        EXPECT_EQ(Flags(row), (Flags3{0, 1, 0}));
    }
    Type(30179, "77"); // not calculated any more
    Press(*mask, IDCANCEL);

    Open();
    EXPECT_NEAR(In(4666), 50.0, 1e-12);
    EXPECT_NEAR(In(4669), 7.2, 1e-12);
    EXPECT_NEAR(In(30162), 32.0, 1e-12);
    EXPECT_EQ(In(30179), 0.0);
    EXPECT_EQ(Flags(5), (Flags3{0, 1, 0}));
    Type(30179, "77");
    thread.Send(mask->handle, WM_COMMAND, MAKEWPARAM(kOk, BN_CLICKED), 0);
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(data.GemerkteWerte(468, "weg"), (std::vector<double>{100.0, 77.0, 0.0, 0.0, 0.0, 32.0}));
}

TEST_F(VkonstTest, DamagedValuesOfACaseCountAsZero)
{
    Press(*mask, IDCANCEL);
    data.MaskenWerte(468)["weg"] = {NAN, 5.0};
    data.MaskenWerte(468)["zeit"] = {INFINITY, 0.5, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0};
    data.MaskenWerte(468)["wegBerechnet"] = {-3.0};
    Open();
    EXPECT_EQ(In(4668), 0.0);
    EXPECT_EQ(In(30179), 5.0);
    EXPECT_EQ(In(4669), 0.0);
    EXPECT_EQ(In(30163), 1.0);
    EXPECT_EQ(Flags(0), (Flags3{0, 1, 0}));
}

TEST_F(VkonstTest, KeptSpeedThatWasComputedStillGivesAMissingTime)
{
    Press(*mask, IDCANCEL);
    data.MaskenWerte(468) = {{"geschwindigkeitKmh", {72.0}},
                             {"geschwindigkeitMs", {20.0}},
                             {"weg", {100.0}},
                             {"geschwindigkeitBerechnet", {1.0}}};
    Open();
    Press(*mask, kCalculate);
    EXPECT_EQ(In(4669), 5.0);
    EXPECT_EQ(Flags(0), (Flags3{1, 0, 1}));
}

TEST_F(VkonstTest, ClearingAsks)
{
    Type(4668, "100");
    Type(4666, "50");
    Press(*mask, kClear); // answered with no
    EXPECT_EQ(In(4668), 100.0);
    front.answers[1052] = fehlerJa;
    Press(*mask, kClear);
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask->object)->DescribeRecord())
        EXPECT_EQ(test::FieldValues(field), std::vector<double>(6, 0.0)) << field.name;
    UINT styles[2] = {};
    EXPECT_EQ(static_cast<CVkonstDlg*>(mask->object)->GetCloneCropStyle(styles), 1U);
    EXPECT_EQ(styles[0], kCalculate);
    EXPECT_EQ(styles[1], 2U);
}

} // namespace
