// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The acceleration mask as a user meets it: keys and clicks in, what is on the screen out.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/look/RefusalBubble.h"
#include "desktop/look/Style.h"
#include "desktop/mask/HelpPane.h"
#include "host/FehlerMeldung.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace
{

using desktop::FieldLook;
using desktop::MaskWindow;

constexpr UINT kFriction = 4662;
constexpr UINT kResult = 4663;
constexpr UINT kDegrees = 4664;
constexpr UINT kPercent = 4665;
constexpr UINT kCalculate = 105;
constexpr UINT kClear = 107;

class Mask400Test : public test::DesktopTest
{
  protected:
    QLineEdit& Edit(UINT id) { return static_cast<QLineEdit&>(Widget(mask, id)); }
    bool HasFocus(UINT id) { return QApplication::focusWidget() == &Widget(mask, id); }
    bool IsMarked(UINT id) { return mask.Refusal() != nullptr && mask.Refusal()->Field() == &Widget(mask, id); }

    MaskWindow& mask = Open(400);
};

TEST_F(Mask400Test, EnterFinishesTheEntryAndCalculates)
{
    ASSERT_TRUE(HasFocus(kFriction));
    Type("0,8");
    EXPECT_EQ(Edit(kFriction).text(), "0,8") << "what was there before is replaced";
    Press(Qt::Key_Return);
    EXPECT_EQ(Edit(kFriction).text(), "0,80");
    EXPECT_EQ(Edit(kResult).text(), "7,85");
    EXPECT_TRUE(HasFocus(kFriction)) << "one goes on typing where one was";
    EXPECT_EQ(Edit(kFriction).selectedText(), "0,80");

    Press(Qt::Key_Tab);
    ASSERT_TRUE(HasFocus(kDegrees));
    Press(Qt::Key_Tab);
    Type("-5");
    Press(Qt::Key_Tab); // finishes the entry, calculates nothing
    EXPECT_EQ(Edit(kDegrees).text(), "-2,86");
    EXPECT_EQ(Edit(kResult).text(), "7,85");
    Press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(Edit(kResult).text(), "7,35");
}

TEST_F(Mask400Test, ARefusedEntryIsExplainedAtTheFieldUntilTheNextKey)
{
    Type("11");
    Press(Qt::Key_Tab);
    EXPECT_TRUE(HasFocus(kFriction)) << "the focus stays";
    EXPECT_TRUE(IsMarked(kFriction));
    ASSERT_NE(mask.Refusal(), nullptr);
    EXPECT_TRUE(mask.Refusal()->isVisible());
    EXPECT_EQ(mask.Refusal()->Text(),
              "Reibungsbeiwert: Der Wert 11 liegt außerhalb des zulässigen Bereichs von 0,00 bis 10,00.");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(Edit(kFriction).text(), "0,00");
    const QRect field(Edit(kFriction).mapToGlobal(QPoint(0, 0)), Edit(kFriction).size());
    const QRect bubble(mask.Refusal()->mapToGlobal(QPoint(0, 0)), mask.Refusal()->size());
    EXPECT_FALSE(bubble.intersects(field));
    EXPECT_TRUE(bubble.adjusted(-2, -2, 2, 2).intersects(field)) << "beside the field";
    EXPECT_TRUE(window.rect().contains(QRect(window.mapFromGlobal(bubble.topLeft()), bubble.size())));

    Type("0");
    EXPECT_EQ(mask.Refusal(), nullptr);
    EXPECT_FALSE(IsMarked(kFriction));
    Type(",6");
    Press(Qt::Key_Return);
    EXPECT_EQ(Edit(kResult).text(), "5,89");
}

TEST_F(Mask400Test, AClickDoesNotWorkWithARefusedEntry)
{
    Type("0,8");
    ClickOn(Widget(mask, kCalculate));
    ASSERT_EQ(Edit(kResult).text(), "7,85");
    Edit(kFriction).setFocus();
    Edit(kFriction).selectAll();
    Type("abc");
    ClickOn(Widget(mask, kCalculate));
    EXPECT_TRUE(IsMarked(kFriction));
    EXPECT_TRUE(HasFocus(kFriction));
    EXPECT_EQ(Edit(kResult).text(), "7,85");

    Edit(kFriction).selectAll();
    Type("99");
    ClickOn(Edit(kPercent)); // another field: the user is sent back
    QTRY_VERIFY_WITH_TIMEOUT(HasFocus(kFriction), 1000);
    EXPECT_TRUE(IsMarked(kFriction));
    EXPECT_EQ(Edit(kFriction).text(), "0,80");

    // With what is in order again, the click works.
    ClickOn(Widget(mask, kCalculate));
    EXPECT_FALSE(IsMarked(kFriction));
    EXPECT_EQ(Edit(kResult).text(), "7,85");
}

TEST_F(Mask400Test, AClickBesideTheControlsOnlyActivatesTheMask)
{
    MaskWindow& second = Open(400);
    Type("0,9");
    QTest::mouseClick(&second, Qt::LeftButton, {}, QPoint(3, 3));
    EXPECT_TRUE(Control(second, kFriction).modified) << "still being typed";
    EXPECT_EQ(QApplication::focusWidget(), &Widget(second, kFriction));
    QTest::mouseClick(&mask, Qt::LeftButton, {}, QPoint(3, 3));
    QApplication::processEvents();
    EXPECT_EQ(window.Masks().Active(), &mask);
    EXPECT_EQ(Text(second, kFriction), "0,90") << "leaving a mask finishes the entry";
}

TEST_F(Mask400Test, TheSpinnerStepsByKeysWheelAndButtons)
{
    Press(Qt::Key_Up);
    EXPECT_EQ(Edit(kFriction).text(), "0,01");
    Press(Qt::Key_PageUp);
    EXPECT_EQ(Edit(kFriction).text(), "0,11");
    Press(Qt::Key_Down);
    EXPECT_EQ(Edit(kFriction).text(), "0,10");

    QLineEdit& edit = Edit(kFriction);
    const QPoint up(edit.width() - 8, edit.height() / 4);
    QWidget* button = edit.childAt(up);
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton, {}, button->mapFrom(&edit, up));
    EXPECT_EQ(edit.text(), "0,11");
    QTest::mousePress(button, Qt::LeftButton, {}, button->mapFrom(&edit, up));
    QTest::qWait(700);
    QTest::mouseRelease(button, Qt::LeftButton, {}, button->mapFrom(&edit, up));
    const std::string held = Text(mask, kFriction);
    EXPECT_GT(held, "0,13") << "a held button repeats";
    QTest::qWait(200);
    EXPECT_EQ(Text(mask, kFriction), held) << "and stops when it is let go";

    Type("9,995");
    Press(Qt::Key_Up);
    EXPECT_EQ(edit.text(), "10,00") << "stops at the bound";
}

TEST_F(Mask400Test, ClearingAsksAndNoIsTheSafeAnswer)
{
    Type("0,8");
    Press(Qt::Key_Return);
    std::string question;
    InModal([&](QWidget& box) {
        auto& message = dynamic_cast<QMessageBox&>(box);
        question = message.text().toStdString();
        EXPECT_EQ(message.defaultButton()->text(), "&Nein");
        QTest::keyClick(&box, Qt::Key_Return);
    });
    Press(Qt::Key_L, Qt::AltModifier);
    EXPECT_EQ(question, "Sollen alle Eingaben gelöscht werden?");
    EXPECT_EQ(Edit(kFriction).text(), "0,80");
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    ClickOn(Widget(mask, kClear));
    EXPECT_EQ(Edit(kResult).text(), "7,85");
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_J); });
    ClickOn(Widget(mask, kClear));
    EXPECT_EQ(Edit(kFriction).text(), "0,00");
    EXPECT_EQ(Edit(kResult).text(), "0,00");
}

TEST_F(Mask400Test, ResultsLookLikeResultsAndCanBeCopied)
{
    const auto look = [&](UINT id) { return static_cast<FieldLook>(Widget(mask, id).property("fieldLook").toInt()); };
    EXPECT_EQ(look(kFriction), FieldLook::input);
    EXPECT_EQ(look(kResult), FieldLook::result);
    EXPECT_TRUE(Edit(kResult).isReadOnly());
    ClickOn(Edit(kResult));
    Edit(kResult).selectAll();
    EXPECT_EQ(Edit(kResult).selectedText(), "0,00");
    QTest::keyClicks(&Edit(kResult), "5");
    EXPECT_EQ(Edit(kResult).text(), "0,00");
}

TEST_F(Mask400Test, EscapeAndTheFrameCloseIt)
{
    Press(Qt::Key_Escape);
    EXPECT_TRUE(window.Masks().Frames().empty());
    EXPECT_TRUE(thread.Dialogs().empty());
    Open(400);
    window.Masks().CloseActive();
    EXPECT_TRUE(thread.Dialogs().empty());
    Open(400);
    Press(Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(Mask400Test, AMinimisedMaskIsRestoredByItsEntry)
{
    desktop::MaskFrame* shown = window.Masks().Frames().at(0);
    const QSize size = shown->size();
    shown->showMinimized();
    QApplication::processEvents();
    EXPECT_TRUE(mask.Dialog()->iconic) << "the mask knows";
    window.OpenMask(400);
    QApplication::processEvents();
    EXPECT_EQ(window.Masks().Frames().size(), 1U);
    EXPECT_FALSE(shown->isMinimized());
    EXPECT_FALSE(mask.Dialog()->iconic);
    EXPECT_TRUE(mask.isVisible());
    EXPECT_EQ(shown->size(), size);
    window.OpenMask(400);
    EXPECT_EQ(window.Masks().Frames().size(), 2U) << "an open one gets a second beside it";
    const auto frames = window.Masks().Frames();
    EXPECT_FALSE(frames[0]->geometry().intersects(frames[1]->geometry()));

    window.Masks().MinimiseAll();
    EXPECT_TRUE(frames[0]->isMinimized() && frames[1]->isMinimized());
    window.Masks().RestoreAll();
    window.Masks().Cascade();
    EXPECT_TRUE(frames[0]->geometry().intersects(frames[1]->geometry()));
    window.Masks().Tile();
    EXPECT_FALSE(frames[0]->geometry().intersects(frames[1]->geometry()));
}

TEST_F(Mask400Test, TheKeyboardBelongsToTheActiveMask)
{
    MaskWindow& second = Open(400);
    ASSERT_NE(&second, &mask);
    Type("0,5");
    Press(Qt::Key_Return);
    EXPECT_EQ(Text(second, kResult), "4,91");
    EXPECT_EQ(Text(mask, kResult), "0,00");
    window.Masks().GoToNext();
    QApplication::processEvents();
    Type("0,7");
    Press(Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(Text(mask, kResult), "6,87");
    EXPECT_EQ(Text(second, kResult), "4,91");
}

TEST_F(Mask400Test, UndoTakesBackTypedTextFirstAndThenTheCase)
{
    const double mass = document.Data().KfzDat(0).mass;
    document.Commit("vorher");
    document.Data().KfzDat(0).mass = mass + 100.0;
    document.Commit("Masse");
    Type("5");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Edit(kFriction).text(), "0,00");
    EXPECT_EQ(document.Data().KfzDat(0).mass, mass + 100.0);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document.Data().KfzDat(0).mass, mass);
    EXPECT_EQ(Edit(kFriction).text(), "0,00");
}

TEST_F(Mask400Test, HelpOpensThePageBesideIt)
{
    Press(Qt::Key_F1);
    EXPECT_TRUE(window.Help().isVisible());
    EXPECT_EQ(window.Help().Page(), 400U);
    EXPECT_TRUE(window.Help().toPlainText().contains("Verzögerung"));
    EXPECT_FALSE(window.Help().toPlainText().contains("## ")) << "rendered, not shown as it is written";
}

TEST_F(Mask400Test, UnitsAndDecimalSignFollowTheSettings)
{
    window.CloseMasks();
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    RuvCfg.decimalPoint = true;
    MaskWindow& imperial = Open(400);
    Type("0,8"); // both signs are understood
    Press(Qt::Key_Return);
    EXPECT_EQ(Text(imperial, kFriction), "0.80");
    EXPECT_EQ(Text(imperial, kResult), "25.75") << "0.8 · 9.81 m/s² / 0.3048 m/ft";
}

TEST_F(Mask400Test, WhatAMaskKeepsIsAStepAtOnce)
{
    Open(468);
    EXPECT_FALSE(document.IsModified());
    Press(Qt::Key_Return); // "Rechnen"
    EXPECT_TRUE(document.IsModified());
    EXPECT_FALSE(document.Data().MaskenWerte(468).empty());
    document.Undo();
    EXPECT_TRUE(document.Data().MaskenWerte(468).empty());
}

} // namespace
