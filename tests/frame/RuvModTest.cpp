// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/RuvMod.h"
#include "frame/MaskTable.h"
#include "tests/support/MaskFixture.h"

#include <set>

namespace
{

class RuvModTest : public test::MaskTest
{
};

TEST_F(RuvModTest, TableHoldsTheThirtyOneMasksInOrder)
{
    const auto masks = MaskTable();
    ASSERT_EQ(masks.size(), 31U);
    std::set<UINT> numbers;
    UINT last = 0;
    for (const MaskEntry& mask : masks) {
        EXPECT_LT(last, mask.number);
        last = mask.number;
        numbers.insert(mask.number);
    }
    for (const UINT subDialog : {418U, 453U, 454U, 457U, 460U, 465U, 467U, 495U})
        EXPECT_EQ(numbers.count(subDialog), 0U) << subDialog;
}

TEST_F(RuvModTest, EveryBuiltMaskOpensWithItsTitleAndEveryOtherNumberDoesNothing)
{
    for (UINT number = 0; number < 600; ++number) {
        const auto before = thread.Dialogs().size();
        ExecuteRuvModRechnungsMaske(number, data);
        const auto masks = MaskTable();
        const auto entry =
            std::find_if(masks.begin(), masks.end(), [&](const MaskEntry& mask) { return mask.number == number; });
        if (entry == masks.end() || entry->create == nullptr) {
            EXPECT_EQ(thread.Dialogs().size(), before) << number;
        } else {
            ASSERT_GT(thread.Dialogs().size(), before) << number;
            EXPECT_EQ(thread.Dialogs()[before]->text, entry->title);
            EXPECT_EQ(thread.Dialogs()[before]->id, number);
        }
    }
    EXPECT_FALSE(thread.Dialogs().empty());
}

TEST_F(RuvModTest, RestoresAMinimisedMaskAndOpensASecondBesideAVisibleOne)
{
    ExecuteRuvModRechnungsMaske(400, data);
    ASSERT_EQ(thread.Dialogs().size(), 1U);
    CWnd* first = thread.Dialogs()[0]->object;
    first->ShowWindow(SW_MINIMIZE);
    ASSERT_TRUE(first->IsIconic());
    ExecuteRuvModRechnungsMaske(400, data);
    EXPECT_EQ(thread.Dialogs().size(), 1U);
    EXPECT_FALSE(first->IsIconic());

    ExecuteRuvModRechnungsMaske(400, data);
    EXPECT_EQ(thread.Dialogs().size(), 2U);

    // A minimised mask of another case is not this case's.
    CRuvData other;
    first->ShowWindow(SW_MINIMIZE);
    ExecuteRuvModRechnungsMaske(400, other);
    EXPECT_EQ(thread.Dialogs().size(), 3U);
    EXPECT_TRUE(first->IsIconic());
}

TEST_F(RuvModTest, ClosedMaskLeavesTheRegistry)
{
    ExecuteRuvModRechnungsMaske(400, data);
    char* const number = reinterpret_cast<char*>(UINT_PTR{400});
    EXPECT_NE(CMDIRechDialog::FindMDIRechDialogByDlgId(data, number), nullptr);
    Press(*thread.Dialogs()[0], IDCANCEL);
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(CMDIRechDialog::FindMDIRechDialogByDlgId(data, number), nullptr);
    EXPECT_EQ(front.events, (std::vector<std::string>{"appeared 400", "vanished 400"}));
}

TEST(RuvModWithoutThreadTest, EntryEndsQuietlyWithoutAProgram)
{
    CRuvData data;
    ASSERT_EQ(AfxGetThread(), nullptr);
    ExecuteRuvModRechnungsMaske(400, data);
    EXPECT_EQ(CMDIRechDialog::FindMDIRechDialogByDlgId(data, reinterpret_cast<char*>(UINT_PTR{400})), nullptr);
}

} // namespace
