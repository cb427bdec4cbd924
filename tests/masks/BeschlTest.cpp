// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CBeschlDlg.h"
#include "tests/support/MaskFixture.h"

#include <cmath>

namespace
{

using framework::InputResult;

constexpr UINT kFriction = 4662, kResult = 4663, kDegrees = 4664, kPercent = 4665;

class BeschlTest : public test::MaskTest
{
  protected:
    framework::Window& mask = OpenMask(400);
};

TEST_F(BeschlTest, LevelRoadGivesFrictionTimesGravity)
{
    EXPECT_EQ(Enter(mask, kFriction, "0,8"), InputResult::done);
    EXPECT_EQ(Value(mask, kResult), 0.0);
    Press(mask, kCalculate);
    EXPECT_DOUBLE_EQ(Value(mask, kResult), 7.848);
    EXPECT_EQ(Text(mask, kResult), "7,85");
}

TEST_F(BeschlTest, GradientInEitherFieldIsOneQuantity)
{
    Enter(mask, kFriction, "0.8");
    Enter(mask, kPercent, "-5");
    EXPECT_NEAR(Value(mask, kDegrees), std::atan(-0.05) * 180.0 / M_PI, 1e-12);
    EXPECT_EQ(Text(mask, kDegrees), "-2,86");
    Press(mask, kCalculate);
    const double angle = std::atan(-0.05);
    EXPECT_NEAR(Value(mask, kResult), (0.8 * std::cos(angle) + std::sin(angle)) * 9.81, 1e-12);
    EXPECT_EQ(Text(mask, kResult), "7,35");

    // Steeper than the percent field can take, and shown there all the same.
    Enter(mask, kDegrees, "45");
    EXPECT_EQ(Text(mask, kPercent), "100,00");
    Press(mask, kCalculate);
    EXPECT_NEAR(Value(mask, kResult), 1.8 * std::sqrt(0.5) * 9.81, 1e-12);
    EXPECT_EQ(Enter(mask, kPercent, "95"), InputResult::refused);
    EXPECT_EQ(Text(mask, kPercent), "100,00");
}

TEST_F(BeschlTest, SpinnerRecalculatesOnceComputedAndTypingDoesNot)
{
    Enter(mask, kFriction, "0,8");
    StepOnce(mask, kFriction, +1);
    EXPECT_EQ(Value(mask, kResult), 0.0) << "nothing was computed yet";
    Press(mask, kCalculate);
    EXPECT_NEAR(Value(mask, kResult), 0.81 * 9.81, 1e-12);
    Enter(mask, kFriction, "0,5");
    EXPECT_NEAR(Value(mask, kResult), 0.81 * 9.81, 1e-12);
    StepOnce(mask, kFriction, -1);
    EXPECT_NEAR(Value(mask, kResult), 0.49 * 9.81, 1e-12);
    StepOnce(mask, kDegrees, +1);
    const double angle = 0.1 * M_PI / 180.0;
    EXPECT_NEAR(Value(mask, kResult), (0.49 * std::cos(angle) + std::sin(angle)) * 9.81, 1e-12);
    EXPECT_NEAR(Value(mask, kPercent), std::tan(angle) * 100.0, 1e-12);
}

TEST_F(BeschlTest, ClearingAsksAndLeavesTheAngleBehind)
{
    Enter(mask, kFriction, "0,8");
    Enter(mask, kPercent, "-5");
    Press(mask, kCalculate);
    Press(mask, kClear); // answered with no
    EXPECT_EQ(Text(mask, kFriction), "0,80");
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    ASSERT_EQ(front.messages.size(), 2U);
    EXPECT_EQ(front.messages[1].number, 1052U);
    for (const UINT field : {kFriction, kDegrees, kPercent, kResult})
        EXPECT_EQ(Text(mask, field), "0,00");

    Enter(mask, kFriction, "0,8");
    Press(mask, kCalculate);
    const double angle = std::atan(-0.05);
    EXPECT_NEAR(Value(mask, kResult), (0.8 * std::cos(angle) + std::sin(angle)) * 9.81, 1e-12);
    Enter(mask, kDegrees, "0");
    StepOnce(mask, kFriction, +1); // still computed
    EXPECT_NEAR(Value(mask, kResult), 0.81 * 9.81, 1e-12);
}

TEST_F(BeschlTest, OkComputesWithoutCalculateAndHandsTheResultToAModalCaller)
{
    double result = 0.0;
    front.duringModal = [&](framework::Window& dialog) {
        Enter(dialog, kFriction, "0,6");
        Press(dialog, kOk);
    };
    CBeschlDlg modal(data, &mainWindow);
    EXPECT_EQ(modal.DoModal(), IDOK);
    result = modal.Ergebnis();
    EXPECT_NEAR(result, 0.6 * 9.81, 1e-12);

    front.duringModal = [&](framework::Window& dialog) { Enter(dialog, kFriction, "0,6"); };
    EXPECT_EQ(CBeschlDlg(data, &mainWindow).DoModal(), IDCANCEL);

    Enter(mask, kFriction, "0,7");
    Press(mask, kOk);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(BeschlTest, ResultCannotBeTypedAndButtonsNameTheirStyles)
{
    EXPECT_EQ(Enter(mask, kResult, "5"), InputResult::disabled);
    UINT styles[4] = {};
    EXPECT_EQ(static_cast<CBeschlDlg*>(mask.object)->GetCloneCropStyle(styles), 2U);
    EXPECT_EQ(styles[0], 100U);
    EXPECT_EQ(styles[1], 8U);
    EXPECT_EQ(styles[2], 105U);
    EXPECT_EQ(styles[3], 2U);
}

} // namespace
