// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/StateJson.h"
#include "framework/DialogPicture.h"
#include "framework/Resources.h"
#include "krn/ControlMeaning.h"
#include "report/Protocol.h"
#include "report/ProtocolHtml.h"
#include "tests/support/InputDialog.h"
#include "tests/support/MaskFixture.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <span>

namespace
{

using framework::InputResult;
using test::InputDialog;
using Cells = std::vector<InputDialog::Cell>;

class GridTest : public test::MaskTest
{
  protected:
    nlohmann::json State()
    {
        const std::string controls = cli::ImageOf(*thread.Find(dialog.m_hWnd)).controls;
        return nlohmann::json::parse(controls).at(std::to_string(InputDialog::kGrid));
    }
    InputResult EnterCell(int row, int column, const std::string& text)
    {
        return framework::EnterCell(grid, row, column, text);
    }

    InputDialog dialog{thread};
    framework::Window& grid = dialog.Control(InputDialog::kGrid);
};

TEST_F(GridTest, TheClassNameInATemplateMakesIt)
{
    std::vector<char16_t> words{0, 0, 0, 0, 1, 0, 0, 100, 100, 0, 0, 0}; // style, one control, place, no texts
    words.insert(words.end(), {0, 0x5000, 0, 0, 5, 5, 90, 90, 30});      // style, place, ID
    for (const char letter : {'R', 'u', 'v', 'G', 'r', 'i', 'd', '\0'})
        words.push_back(static_cast<char16_t>(letter));
    words.insert(words.end(), {0, 0}); // no text, no more
    const auto read = framework::ReadDialogTemplate(std::as_bytes(std::span(words)));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->controls.size(), 1U);
    EXPECT_EQ(read->controls[0].kind, framework::Kind::grid);
    EXPECT_EQ(read->controls[0].id, 30U);
    EXPECT_NE(dynamic_cast<CGridCtrl*>(grid.object), nullptr);
}

TEST_F(GridTest, AFinishedEntryIsAskedForAndMayBeRewritten)
{
    framework::TypeCell(grid, 0, 1, "0,0");
    framework::TypeCell(grid, 0, 1, "0,05");
    EXPECT_TRUE(dialog.cells.empty());
    EXPECT_EQ(framework::FinishEntry(grid), InputResult::done);
    EXPECT_EQ(framework::FinishEntry(grid), InputResult::done);
    EXPECT_EQ(dialog.cells, (Cells{{0, 1, "0,05"}})) << "once";
    EXPECT_EQ(dialog.Grid().GetItemText(0, 1), "0,05");
    EXPECT_EQ(EnterCell(2, 1, "1"), InputResult::done);
    EXPECT_EQ(dialog.Grid().GetItemText(2, 1), "1,00") << "what the mask writes stands";
}

TEST_F(GridTest, ARefusedEntryKeepsTheOldTextAndStopsTheClickThatWouldUseIt)
{
    EXPECT_EQ(EnterCell(0, 1, "kurz"), InputResult::refused);
    EXPECT_EQ(dialog.Grid().GetItemText(0, 1), "0,04");
    ASSERT_EQ(front.refusals.size(), 1U);
    EXPECT_NE(front.refusals[0].text.find("kurz"), std::string::npos);

    framework::Window& button = dialog.Control(InputDialog::kButton);
    framework::TypeCell(grid, 1, 1, "lang");
    EXPECT_EQ(framework::Click(button), InputResult::refused);
    EXPECT_EQ(dialog.pressed, 0);
    framework::TypeCell(grid, 1, 1, "0,2");
    EXPECT_EQ(framework::Click(button), InputResult::done);
    EXPECT_EQ(dialog.Grid().GetItemText(1, 1), "0,2");
    framework::TypeCell(grid, 1, 1, "0,3");
    framework::DiscardCell(grid);
    EXPECT_EQ(framework::Click(button), InputResult::done);
    EXPECT_EQ(dialog.Grid().GetItemText(1, 1), "0,2");
    EXPECT_EQ(dialog.pressed, 2);
}

TEST_F(GridTest, GoingToAnotherCellFinishesTheEntry)
{
    framework::TypeCell(grid, 0, 2, "unscharf");
    framework::TypeCell(grid, 1, 2, "x");
    EXPECT_EQ(dialog.cells, (Cells{{0, 2, "unscharf"}}));
    framework::DiscardCell(grid);
    framework::TypeCell(grid, 0, 1, "kurz");
    EXPECT_EQ(framework::TypeCell(grid, 1, 2, "y"), InputResult::refused);
    EXPECT_EQ(framework::SelectRows(grid, 0, 1), InputResult::done);
}

TEST_F(GridTest, OnlyCellsThatExistAndAreEditableTakeText)
{
    EXPECT_EQ(EnterCell(0, 0, "7"), InputResult::readOnly);
    for (const auto& [row, column] : {std::pair{3, 1}, std::pair{-1, 1}, std::pair{0, 3}, std::pair{0, -1}})
        EXPECT_EQ(EnterCell(row, column, "7"), InputResult::noSuchItem);
    grid.object->EnableWindow(FALSE);
    EXPECT_EQ(EnterCell(0, 1, "7"), InputResult::disabled);
    EXPECT_TRUE(dialog.cells.empty());
    EXPECT_EQ(framework::EnterCell(dialog.Control(InputDialog::kEdit), 0, 0, "7"), InputResult::wrongKind);
}

TEST_F(GridTest, TheUsersSelectionIsToldTheMasksOwnIsNot)
{
    EXPECT_EQ(framework::SelectRows(grid, 1, 2), InputResult::done);
    EXPECT_EQ(framework::SelectRows(grid, 2, 1), InputResult::noSuchItem);
    EXPECT_EQ(framework::SelectRows(grid, 0, 3), InputResult::noSuchItem);
    using Rows = std::vector<std::pair<int, int>>;
    EXPECT_EQ(dialog.selections, (Rows{{1, 2}}));
    dialog.Grid().SetSelection(0, 0);
    EXPECT_EQ(dialog.Grid().GetLastSelected(), 0);
    dialog.Grid().SetSelection(0, 3);
    EXPECT_EQ(dialog.Grid().GetFirstSelected(), -1);
    EXPECT_EQ(dialog.selections.size(), 1U);
}

TEST_F(GridTest, StateShowsItWithABoundedNumberOfRows)
{
    framework::SelectRows(grid, 0, 1);
    nlohmann::json state = State();
    EXPECT_EQ(state.at("kind"), "grid");
    EXPECT_EQ(state.at("columns")[1], (nlohmann::json{{"heading", "Zeit [s]"}, {"editable", true}}));
    EXPECT_EQ(state.at("count"), 3);
    EXPECT_EQ(state.at("rows")[1], (nlohmann::json{"2", "0,04", ""})) << "a missing cell is empty";
    EXPECT_EQ(state.at("selection"), (nlohmann::json{0, 1}));

    dialog.Grid().SetRows(std::vector<CGridCtrl::Row>(1001, CGridCtrl::Row{"1"}));
    state = State();
    EXPECT_EQ(state.at("count"), 1001);
    EXPECT_EQ(state.at("rows").size(), 1000U);
    EXPECT_EQ(state.at("selection"), nlohmann::json::array());
    EXPECT_FALSE(krn::IsResult(grid)) << "it has cells to be filled in";
    dialog.Grid().SetColumns({{"Ergebnis"}});
    EXPECT_TRUE(krn::IsResult(grid));
}

TEST_F(GridTest, TheProtocolShowsAShortTableAndNamesALongOne)
{
    const auto html = [this] {
        return report::ProtocolHtml(report::MakeProtocol(*thread.Find(dialog.m_hWnd), {}),
                                    report::HtmlPictures::inlineSvg);
    };
    EXPECT_NE(html().find(">Zeit [s]</th>"), std::string::npos);
    EXPECT_NE(html().find("<td>verwackelt</td>"), std::string::npos);
    dialog.Grid().SetRows(std::vector<CGridCtrl::Row>(50, CGridCtrl::Row{"fünfzig"}));
    EXPECT_NE(html().find(">fünfzig</td>"), std::string::npos);
    dialog.Grid().SetRows(std::vector<CGridCtrl::Row>(51, CGridCtrl::Row{"mehr"}));
    EXPECT_EQ(html().find(">mehr</td>"), std::string::npos);
    EXPECT_NE(html().find("51 Zeilen"), std::string::npos);
    grid.outdated = true;
    EXPECT_EQ(html().find("51 Zeilen"), std::string::npos) << "results of other inputs are left out";
    EXPECT_NE(html().find("veraltet"), std::string::npos);
}

TEST_F(GridTest, ThePictureOfTheDialogShowsItsCells)
{
    const CDC picture = framework::DrawDialog(*thread.Find(dialog.m_hWnd), 2.0);
    const auto shows = [&](const char* text) {
        return std::any_of(picture.Primitives().begin(), picture.Primitives().end(), [&](const auto& primitive) {
            const auto* shown = std::get_if<drawing::Text>(&primitive);
            return shown != nullptr && shown->utf8 == text;
        });
    };
    EXPECT_TRUE(shows("Bemerkung"));
    EXPECT_TRUE(shows("scharf"));
    EXPECT_FALSE(shows("unscharf"));
}

} // namespace
