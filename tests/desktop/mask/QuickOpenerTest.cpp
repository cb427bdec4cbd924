// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/QuickOpener.h"

#include "frame/MaskTable.h"
#include "tests/desktop/DesktopFixture.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace
{

class QuickOpenerTest : public test::DesktopTest
{
};

/// Position of a mask among those that fit, -1 when it does not.
std::ptrdiff_t Rank(const QString& typed, UINT number)
{
    const auto found = desktop::FindMasks(typed);
    const auto at = std::find_if(found.begin(), found.end(), [&](const MaskEntry* m) { return m->number == number; });
    return at == found.end() ? -1 : at - found.begin();
}

/// Rank among the masks that are as much built as this one: those that are come first.
std::ptrdiff_t RankAmongLikes(const QString& typed, UINT number)
{
    const auto found = desktop::FindMasks(typed);
    const auto at = std::find_if(found.begin(), found.end(), [&](const MaskEntry* m) { return m->number == number; });
    if (at == found.end())
        return -1;
    return std::count_if(found.begin(), at,
                         [&](const MaskEntry* m) { return (m->create == nullptr) == ((*at)->create == nullptr); });
}

TEST_F(QuickOpenerTest, FindsByNumberTitleAndScatteredLetters)
{
    EXPECT_EQ(RankAmongLikes("487", 487), 0);
    EXPECT_EQ(desktop::FindMasks("487").size(), 1U);
    EXPECT_EQ(desktop::FindMasks("49").size(), 4U) << "491 to 494";
    EXPECT_EQ(RankAmongLikes("schranken", 487), 0);
    EXPECT_EQ(RankAmongLikes("SCHR", 487), 0);
    for (const char* typed : {"Überhol", "uberhol", "ueberhol", "ÜBERHOL-VORG", "überholvorgang"})
        EXPECT_EQ(RankAmongLikes(typed, 461), 0) << typed;
    EXPECT_EQ(RankAmongLikes("schrverf", 487), 0) << "letters left out";
    EXPECT_EQ(Rank("schnarken", 487), -1) << "letters exchanged";
    EXPECT_EQ(desktop::FindMasks("").size(), MaskTable().size());
    EXPECT_TRUE(desktop::FindMasks("qqq").empty());
    // A title that begins with it, then one in which a word does.
    EXPECT_LT(Rank("berech", 400), Rank("berech", 471) < 0 ? 99 : Rank("berech", 471));
    const auto found = desktop::FindMasks("");
    EXPECT_TRUE(std::is_partitioned(found.begin(), found.end(), [](const MaskEntry* m) { return m->create; }));
}

TEST_F(QuickOpenerTest, OpensAMaskByKeyboardAlone)
{
    Press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(window.Opener().isVisible());
    Type("berechnung der");
    Press(Qt::Key_Down);
    Press(Qt::Key_Up);
    Press(Qt::Key_Return);
    EXPECT_FALSE(window.Opener().isVisible());
    ASSERT_NE(window.Masks().Active(), nullptr);
    EXPECT_EQ(window.Masks().Active()->Number(), 400U);

    QWidget* before = QApplication::focusWidget();
    Press(Qt::Key_K, Qt::ControlModifier);
    Press(Qt::Key_Escape);
    EXPECT_FALSE(window.Opener().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), before);
    EXPECT_EQ(window.Masks().Frames().size(), 1U) << "Escape closed the opener, not the mask";
}

TEST_F(QuickOpenerTest, AMaskThatIsNotBuiltIsListedButDoesNotOpen)
{
    const auto masks = MaskTable();
    const auto missing = std::find_if(masks.begin(), masks.end(), [](const MaskEntry& m) { return !m.create; });
    if (missing == masks.end())
        GTEST_SKIP() << "every mask is built";
    Press(Qt::Key_K, Qt::ControlModifier);
    Type(QString::number(missing->number));
    Press(Qt::Key_Return);
    EXPECT_TRUE(window.Opener().isVisible());
    EXPECT_TRUE(window.Masks().Frames().empty());
}

TEST_F(QuickOpenerTest, TheMenuHoldsEveryMaskInItsSubsystem)
{
    std::vector<UINT> listed;
    for (const QMenu* submenu : window.menuBar()->findChildren<QMenu*>() + window.findChildren<QMenu*>())
        for (const QAction* action : submenu->actions()) {
            const UINT number = action->data().toUInt();
            const auto masks = MaskTable();
            const auto mask =
                std::find_if(masks.begin(), masks.end(), [&](const MaskEntry& m) { return m.number == number; });
            if (mask == masks.end() || std::count(listed.begin(), listed.end(), number) > 0)
                continue;
            listed.push_back(number);
            EXPECT_EQ(submenu->title(), desktop::SubsystemName(mask->subsystem));
            EXPECT_EQ(action->isEnabled(), mask->create != nullptr) << number;
            EXPECT_TRUE(action->text().startsWith(QString::number(number)));
        }
    EXPECT_EQ(listed.size(), MaskTable().size());
}

} // namespace
