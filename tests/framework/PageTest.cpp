// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/DialogPicture.h"
#include "tests/support/MaskFixture.h"

#include <algorithm>

namespace
{

using framework::InputResult;
using framework::Window;

constexpr UINT kParent = 400;
constexpr UINT kParentEdit = 4662;
constexpr UINT kPage = 401;
constexpr UINT kPageEdit = 4651;

class Page : public CMDIRechDialog
{
  public:
    explicit Page(CRuvData& data) : CMDIRechDialog(kPage, nullptr, data, nullptr, nullptr) {}
    void BuildObjects() override
    {
        new CEditDouble(this, kPageEdit, &value, 0.0, 10.0, 2, 0.0, nullptr, nullptr, nullptr);
    }
    void ShutDownWindow() override
    {
        ++shutDown;
        CMDIRechDialog::ShutDownWindow();
    }
    double value = 1.0;
    int shutDown = 0;
};

class Mask : public CMDIRechDialog
{
  public:
    explicit Mask(CRuvData& data) : CMDIRechDialog(kParent, nullptr, data, nullptr, nullptr), page(data) {}
    void BuildObjects() override
    {
        new CEditDouble(this, kParentEdit, &value, 0.0, 10.0, 2, 0.0, nullptr, nullptr, nullptr);
    }
    void SetupWindow() override { EXPECT_TRUE(page.CreatePage(*this, {5, 6, 105, 66})); }
    void OnOK() override { ++closed; }
    void OnCancel() override { ++closed; }
    bool Open() { return CreateFromTemplate(nullptr); }
    double value = 1.0;
    int closed = 0;
    Page page;
};

class PageTest : public test::MaskTest
{
  protected:
    PageTest()
    {
        EXPECT_TRUE(mask.Open());
        page = thread.Find(mask.page.m_hWnd);
        parent = thread.Find(mask.m_hWnd);
    }
    Mask mask{data};
    Window* page = nullptr;
    Window* parent = nullptr;
};

TEST_F(PageTest, LiesOnItsDialogAndAppearsAfterIt)
{
    EXPECT_TRUE(page->page);
    EXPECT_FALSE(parent->page);
    EXPECT_EQ(page->parent, parent);
    EXPECT_EQ(page->rect.left, 5);
    EXPECT_EQ(page->rect.bottom, 66);
    EXPECT_EQ(front.events, (std::vector<std::string>{"appeared 400", "appeared 401"}));
    EXPECT_EQ(thread.Pages(*parent), std::vector<Window*>{page});
    EXPECT_EQ(&framework::DialogOf(Control(*page, kPageEdit)), parent);
}

TEST_F(PageTest, HiddenPageTakesNoInputAndIsNotDrawn)
{
    const std::size_t shown = framework::DrawDialog(*parent, 2.0).Primitives().size();
    mask.page.ShowWindow(SW_HIDE);
    EXPECT_FALSE(framework::IsShown(Control(*page, kPageEdit)));
    EXPECT_EQ(Enter(*page, kPageEdit, "5"), InputResult::disabled);
    EXPECT_EQ(mask.page.value, 1.0);
    EXPECT_LT(framework::DrawDialog(*parent, 2.0).Primitives().size(), shown);
    mask.page.ShowWindow(SW_SHOW);
    EXPECT_EQ(Enter(*page, kPageEdit, "5"), InputResult::done);
    EXPECT_EQ(mask.page.value, 5.0);
}

TEST_F(PageTest, FocusMovesAcrossPageAndDialog)
{
    // What is typed on one side counts before a control of the other side is used, and a refusal holds it back.
    framework::TypeText(Control(*page, kPageEdit), "7");
    EXPECT_EQ(Enter(*parent, kParentEdit, "3"), InputResult::done);
    EXPECT_EQ(mask.page.value, 7.0);
    framework::TypeText(Control(*page, kPageEdit), "70");
    EXPECT_EQ(Enter(*parent, kParentEdit, "4"), InputResult::refused);
    EXPECT_EQ(mask.value, 3.0);
    EXPECT_EQ(front.refusals.size(), 1U);
    framework::TypeText(Control(*parent, kParentEdit), "6");
    EXPECT_EQ(Enter(*page, kPageEdit, "8"), InputResult::done);
    EXPECT_EQ(mask.value, 6.0);
}

TEST_F(PageTest, ClosingIsTheDialogs)
{
    thread.Send(page->handle, WM_COMMAND, IDOK, 0);
    thread.Send(page->handle, WM_COMMAND, IDCANCEL, 0);
    framework::CloseDialog(*page);
    EXPECT_EQ(mask.closed, 3);
    EXPECT_EQ(mask.page.shutDown, 0);
    mask.DestroyWindow();
    EXPECT_EQ(mask.page.shutDown, 1);
    EXPECT_EQ(mask.page.m_hWnd, nullptr);
    EXPECT_EQ(std::count(front.events.begin(), front.events.end(), "vanished 401"), 1);
}

} // namespace
