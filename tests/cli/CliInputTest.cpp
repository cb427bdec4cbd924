// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mouse, keys, tables and files by script, on a dialog made by hand.
#include "cli/Options.h"
#include "cli/Session.h"
#include "framework/UserInput.h"
#include "tests/support/InputDialog.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

using cli::Action;
using test::InputDialog;
using What = CMouseEvent::Kind;

/// What a script did to the dialog, and why it stopped.
struct Worked {
    std::vector<CMouseEvent> mouse;
    std::vector<std::pair<WPARAM, LPARAM>> keys;
    std::u32string characters;
    std::vector<InputDialog::Cell> cells;
    std::vector<std::pair<int, int>> selections;
    bool refused = false;
    std::string failure;
};

Worked Script(const std::vector<std::string>& texts)
{
    std::vector<Action> actions;
    for (const std::string& text : texts) {
        cli::ParsedAction parsed = cli::ParseAction(text);
        if (!parsed.action)
            throw std::invalid_argument(parsed.error);
        actions.push_back(std::move(*parsed.action));
    }
    Worked worked;
    cli::Session session(std::make_unique<CRuvData>());
    const auto failure = session.RunModally(InputDialog::kNumber, actions, [&](CRuvData&, CWnd*) {
        framework::UiThread& thread = *framework::UiThread::Current();
        InputDialog dialog(thread);
        thread.Front().RunModal(*thread.Find(dialog.m_hWnd), [&] { return dialog.m_hWnd != nullptr; });
        worked = {dialog.mouse, dialog.keys, dialog.characters, dialog.cells, dialog.selections, session.Refused(), {}};
    });
    if (failure)
        worked.failure = failure->text;
    return worked;
}

TEST(CliInput, ClicksAndDragsInTheFieldsOwnPixels)
{
    // The field is 100 by 50 dialog units, its picture twice that.
    const Worked worked = Script({"click:20=10.5,99", "drag:20=0,0,80,-40,Shift", "click:20=1,2,Double+Ctrl+Middle"});
    EXPECT_EQ(worked.failure, "");
    ASSERT_EQ(worked.mouse.size(), 2U + 10U + 4U);
    const CMouseEvent& press = worked.mouse[0];
    EXPECT_EQ(press.kind, What::press);
    EXPECT_EQ(press.button, MouseButton::left);
    EXPECT_EQ(press.position.x, 10.5);
    EXPECT_EQ(press.position.y, 99.0);
    EXPECT_EQ(press.width, 200.0);
    EXPECT_EQ(press.height, 100.0);
    EXPECT_EQ(worked.mouse[1].kind, What::release);
    EXPECT_EQ(worked.mouse[2].modifiers, MK_SHIFT);
    EXPECT_EQ(worked.mouse[6].position.x, 40.0) << "half way";
    EXPECT_EQ(worked.mouse[6].button, MouseButton::left);
    EXPECT_EQ(worked.mouse[11].kind, What::release);
    EXPECT_EQ(worked.mouse[11].position.y, -40.0) << "a drag may end outside";
    EXPECT_EQ(worked.mouse[14].kind, What::doubleClick);
    EXPECT_EQ(worked.mouse[14].button, MouseButton::middle);
    EXPECT_EQ(worked.mouse[14].modifiers, MK_CONTROL);

    const Worked wheel = Script({"wheel:20=5,6,-2,Ctrl"});
    ASSERT_EQ(wheel.mouse.size(), 1U);
    EXPECT_EQ(wheel.mouse[0].wheel, -2.0);
    EXPECT_EQ(wheel.mouse[0].modifiers, MK_CONTROL);
}

TEST(CliInput, WhatTheMouseCannotReachIsSaid)
{
    EXPECT_NE(Script({"click:20=200,5"}).failure.find("200 × 100"), std::string::npos);
    EXPECT_NE(Script({"click:20=-1,5"}).failure.find("200 × 100"), std::string::npos);
    EXPECT_NE(Script({"click:40=1,1"}).failure.find("ein Knopf"), std::string::npos);
    EXPECT_NE(Script({"click:99=1,1"}).failure.find("99"), std::string::npos);
    EXPECT_NE(Script({"key:10=a"}).failure.find("ein Eingabefeld"), std::string::npos);
}

TEST(CliInput, KeysByNameAndByCharacter)
{
    const Worked worked = Script({"key:20=Left", "key:20=Shift+PageUp", "key:20=a", "key:20=Q", "key:9998=Ctrl+c",
                                  "key:20=+", "key:20=Shift+ä", "key:20=F12", "key:20=Space"});
    EXPECT_EQ(worked.failure, "");
    ASSERT_EQ(worked.keys.size(), 9U);
    const auto is = [&](std::size_t i, UINT key, UINT modifiers, UINT control) {
        EXPECT_EQ(worked.keys[i].first, key) << i;
        EXPECT_EQ(KeyModifiers(worked.keys[i].second), modifiers) << i;
        EXPECT_EQ(KeyControl(worked.keys[i].second), control) << i;
    };
    is(0, VK_LEFT, 0, 20);
    is(1, VK_PRIOR, MK_SHIFT, 20);
    is(2, 'A', 0, 20);
    is(3, 'Q', MK_SHIFT, 20);
    is(4, 'C', MK_CONTROL, 0);
    is(5, 0, 0, 20);
    is(7, VK_F1 + 11, 0, 20);
    is(8, VK_SPACE, 0, 20);
    EXPECT_EQ(worked.characters, U"aQ+ä ");
}

TEST(CliInput, CellsAndRowsOfATable)
{
    const Worked worked = Script({"cell:30=0,2,a,b=c", "select:30=1,2", "select:30=0", "cell:30=1,1,x"});
    EXPECT_EQ(worked.failure, "");
    EXPECT_TRUE(worked.refused);
    EXPECT_EQ(worked.cells, (std::vector<InputDialog::Cell>{{0, 2, "a,b=c"}, {1, 1, "x"}}));
    EXPECT_EQ(worked.selections, (std::vector<std::pair<int, int>>{{1, 2}, {0, 0}}));
    EXPECT_NE(Script({"cell:30=3,1,x"}).failure.find("3 Zeilen und 3 Spalten"), std::string::npos);
    EXPECT_NE(Script({"cell:30=0,0,x"}).failure.find("schreibgeschützt"), std::string::npos);
    EXPECT_NE(Script({"select:10=0,1"}).failure.find("nicht eine Tabelle"), std::string::npos);
}

TEST(CliInput, MalformedOnesAreRefused)
{
    for (const char* text :
         {"click:20", "click:20=1", "click:20=1,2,", "click:20=1,2,Left", "click:20=1,nan", "click:20=1,2,ShiftCtrl",
          "drag:20=1,2,3", "drag:20=1,2,3,4,Double", "wheel:20=1,2", "wheel:20=1,2,3,Right", "key:20=", "key:20=Enter",
          "key:20=F1", "key:20=F13", "key:20=ab", "key:20=\xC3", "cell:30=1,2", "cell:30=a,1,x", "select:30=1,2,3"})
        EXPECT_FALSE(cli::ParseAction(text).action) << text;
}

TEST(CliInput, FilesAnswerTheChooserInOrder)
{
    std::vector<std::string> chosen;
    const std::vector<Action> actions{cli::FileAction{"/tmp/a b.gpx"}, cli::FileAction{"c"}};
    cli::Session session(std::make_unique<CRuvData>());
    session.RunModally(InputDialog::kNumber, actions, [&](CRuvData&, CWnd* window) {
        for (INT_PTR result = IDOK; result == IDOK;) {
            CRuvFileDialog dialog(true, "gpx", "", 0, "GPX (*.gpx)|*.gpx||", window);
            result = dialog.DoModal();
            chosen.push_back(dialog.GetPathName());
        }
    });
    EXPECT_EQ(chosen, (std::vector<std::string>{"/tmp/a b.gpx", "c", ""})) << "then it is cancelled";
}

TEST(CliInput, ProgressIsReportedAndCanStopTheWork)
{
    int steps = 0;
    const auto work = [&](CRuvData&, CWnd*) {
        for (steps = 0; steps < 10 && RuvProgress("Suchen", steps / 10.0) == Work::goOn;)
            ++steps;
    };
    cli::Session session(std::make_unique<CRuvData>());
    session.RunModally(InputDialog::kNumber, {}, work);
    EXPECT_EQ(steps, 10) << "nobody listens";
    session.OnProgress([](const std::string&, double done) { return done < 0.3; });
    session.RunModally(InputDialog::kNumber, {}, work);
    EXPECT_EQ(steps, 3);
    EXPECT_TRUE(cli::ParseOptions({"400", "--progress"}, {"--progress"}).progress);
}

} // namespace
