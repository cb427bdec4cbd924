// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/InputDialog.h"
#include "tests/support/MaskFixture.h"

namespace
{

using framework::InputResult;
using What = CMouseEvent::Kind;
using test::InputDialog;

class FieldInputTest : public test::MaskTest
{
  protected:
    InputResult Mouse(What kind, CDPoint at, MouseButton button = MouseButton::left, UINT modifiers = 0)
    {
        return framework::Mouse(field, {kind, button, modifiers, at, 200.0, 100.0});
    }
    std::vector<What> Kinds() const
    {
        std::vector<What> kinds;
        for (const CMouseEvent& event : dialog.mouse)
            kinds.push_back(event.kind);
        return kinds;
    }

    InputDialog dialog{thread};
    framework::Window& field = dialog.Control(InputDialog::kField);
    framework::Window& edit = dialog.Control(InputDialog::kEdit);
};

TEST_F(FieldInputTest, AUsedPressHoldsTheMouseUntilItsRelease)
{
    EXPECT_EQ(Mouse(What::move, {1, 2}), InputResult::done);
    EXPECT_EQ(Mouse(What::press, {10, 20}, MouseButton::left, MK_SHIFT | MK_CONTROL), InputResult::done);
    EXPECT_EQ(Mouse(What::press, {10, 20}, MouseButton::right), InputResult::unused) << "one button at a time";
    EXPECT_EQ(Mouse(What::release, {10, 20}, MouseButton::right), InputResult::unused);
    field.object->EnableWindow(FALSE); // the mask must still learn that its drag has ended
    EXPECT_EQ(Mouse(What::move, {-50, 300}), InputResult::done);
    EXPECT_EQ(Mouse(What::release, {-50, 300}), InputResult::done);
    EXPECT_EQ(Mouse(What::release, {-50, 300}), InputResult::unused);
    EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::disabled);
    ASSERT_EQ(Kinds(), (std::vector<What>{What::move, What::press, What::move, What::release}));
    EXPECT_EQ(dialog.mouse[0].button, MouseButton::none);
    EXPECT_EQ(dialog.mouse[1].modifiers, MK_SHIFT | MK_CONTROL);
    EXPECT_EQ(dialog.mouse[2].button, MouseButton::left);
    EXPECT_EQ(dialog.mouse[2].position.y, 300.0);
    EXPECT_EQ(dialog.mouse[2].width, 200.0);
}

TEST_F(FieldInputTest, APressWhoseReleaseWasLostDoesNotBlockTheNext)
{
    EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::done);
    EXPECT_EQ(Mouse(What::press, {2, 2}), InputResult::done);
    EXPECT_EQ(Mouse(What::release, {2, 2}), InputResult::done);
    EXPECT_EQ(Mouse(What::release, {2, 2}), InputResult::unused);
}

TEST_F(FieldInputTest, AnUnusedPressHoldsNothing)
{
    dialog.usesMouse = false;
    EXPECT_EQ(Mouse(What::press, {1, 1}, MouseButton::right), InputResult::unused);
    EXPECT_EQ(Mouse(What::release, {1, 1}, MouseButton::right), InputResult::unused);
    EXPECT_EQ(Kinds(), std::vector<What>{What::press});
    static_cast<CStatic*>(field.object)->SetMouse(nullptr);
    EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::wrongKind);
    EXPECT_EQ(framework::Mouse(edit, {}), InputResult::wrongKind);
}

TEST_F(FieldInputTest, APressFinishesThePendingEntryFirst)
{
    framework::TypeText(edit, "5");
    EXPECT_EQ(Mouse(What::move, {1, 1}), InputResult::done);
    EXPECT_TRUE(dialog.entries.empty()) << "passing over the field ends nothing";
    EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::done);
    EXPECT_EQ(dialog.entries.size(), 1U);
    EXPECT_EQ(thread.Focus(), &field);
}

TEST_F(FieldInputTest, AHandlerMayCloseItsDialog)
{
    static_cast<CStatic*>(field.object)->SetMouse([this](const CMouseEvent&) {
        dialog.DestroyWindow();
        return true;
    });
    const framework::UiThread::Scope scope(thread);
    EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::done);
    EXPECT_EQ(dialog.m_hWnd, nullptr);
}

TEST_F(FieldInputTest, KeysGoUpFromTheFieldToItsDialog)
{
    EXPECT_EQ(framework::Key(field, {VK_LEFT, 0, MK_SHIFT}), InputResult::done);
    EXPECT_EQ(framework::Key(field, {'A', U'ä', 0}), InputResult::done);
    EXPECT_EQ(thread.Focus(), &field);
    ASSERT_EQ(dialog.keys.size(), 2U);
    EXPECT_EQ(dialog.keys[0].first, VK_LEFT);
    EXPECT_EQ(KeyModifiers(dialog.keys[0].second), MK_SHIFT);
    EXPECT_EQ(KeyControl(dialog.keys[0].second), InputDialog::kField);
    EXPECT_EQ(dialog.characters, U"ä") << "a key without a character sends none";

    framework::Window& window = *thread.Find(dialog.m_hWnd);
    EXPECT_EQ(framework::Key(window, {VK_F1 + 1, 0, 0}), InputResult::done);
    EXPECT_EQ(KeyControl(dialog.keys.back().second), 0U);
    dialog.keyAnswer = 1;
    EXPECT_EQ(framework::Key(window, {VK_F1 + 1, 0, 0}), InputResult::unused);
    EXPECT_EQ(framework::Key(edit, {VK_LEFT, 0, 0}), InputResult::wrongKind) << "an edit keeps its keys";
    field.tabStop = false;
    EXPECT_EQ(framework::Key(field, {VK_LEFT, 0, 0}), InputResult::wrongKind);
}

TEST_F(FieldInputTest, AnEditWithoutABindingReportsItsFinishedEntry)
{
    framework::TypeText(edit, "Ampel Nord");
    EXPECT_TRUE(dialog.entries.empty());
    EXPECT_EQ(framework::FinishEntry(edit), InputResult::done);
    EXPECT_EQ(framework::FinishEntry(edit), InputResult::done);
    using Entry = std::pair<UINT, std::string>;
    EXPECT_EQ(dialog.entries, (std::vector<Entry>{{InputDialog::kEdit, "Ampel Nord"}})) << "once";
    EXPECT_EQ(edit.text, "Ampel Nord");
}

TEST_F(FieldInputTest, LongWorkIsToldToStop)
{
    std::vector<double> seen;
    front.progress = [&](const std::string& what, double done) {
        EXPECT_EQ(what, "Bilder lesen");
        seen.push_back(done);
        return done < 0.5;
    };
    int steps = 0;
    while (steps < 10 && RuvProgress("Bilder lesen", steps / 10.0) == Work::goOn)
        ++steps;
    EXPECT_EQ(steps, 5);
    EXPECT_EQ(seen.size(), 6U);
}

TEST_F(FieldInputTest, LongWorkTakesNoInputButItsButtonAgain)
{
    framework::Window& button = dialog.Control(InputDialog::kButton);
    int steps = 0;
    int wanted = 4;
    dialog.work = [&] {
        for (steps = 0; steps < 10 && RuvProgress("Suchen", steps / 10.0) == Work::goOn;)
            ++steps;
        EXPECT_EQ(RuvProgress("Suchen", 1.0), steps < 10 ? Work::cancel : Work::goOn) << "for the rest of it";
    };
    front.progress = [&](const std::string&, double) {
        EXPECT_EQ(framework::EnterText(edit, "3"), InputResult::disabled);
        EXPECT_EQ(framework::Key(field, {VK_LEFT, 0, 0}), InputResult::disabled);
        EXPECT_EQ(Mouse(What::press, {1, 1}), InputResult::disabled);
        framework::CloseDialog(*thread.Find(dialog.m_hWnd));
        if (steps == wanted) {
            EXPECT_EQ(framework::Click(button), InputResult::done);
        }
        return true;
    };
    framework::Click(button);
    EXPECT_EQ(steps, 4);
    EXPECT_EQ(dialog.pressed, 1);
    EXPECT_TRUE(dialog.mouse.empty());
    EXPECT_TRUE(dialog.keys.empty());
    ASSERT_NE(dialog.m_hWnd, nullptr);
    wanted = 99;
    framework::Click(button);
    EXPECT_EQ(steps, 10) << "cancelled was the work before";
    EXPECT_EQ(dialog.pressed, 2);
}

} // namespace
