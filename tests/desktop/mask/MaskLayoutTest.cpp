// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Every mask that is built, at two sizes of its font: what a user can reach, read and tell apart.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/look/Theme.h"
#include "frame/MaskTable.h"

#include <QFontMetrics>
#include <QStyle>

#include <functional>
#include <map>
#include <set>
#include <tuple>

namespace
{

using desktop::ControlView;
using desktop::MaskWindow;
using framework::Kind;
using framework::Window;

std::vector<UINT> BuiltMasks()
{
    std::vector<UINT> numbers;
    for (const MaskEntry& mask : MaskTable())
        if (mask.create != nullptr)
            numbers.push_back(mask.number);
    return numbers;
}

class MaskLayoutTest : public test::DesktopTest, public ::testing::WithParamInterface<std::tuple<UINT, double>>
{
  protected:
    MaskLayoutTest()
    {
        desktop::ApplyTheme(desktop::Scheme::light, std::get<1>(GetParam()));
        window.resize(2400, 1600);
    }
    ~MaskLayoutTest() override
    {
        window.CloseMasks();
        desktop::ApplyTheme(desktop::Scheme::light);
    }
    /// Opens the mask and looks at it once, or once for each of its pages.
    void LookAt(const std::function<void(MaskWindow&)>& look)
    {
        MaskWindow& mask = Open(std::get<0>(GetParam()));
        const auto pages = thread.Pages(*mask.Dialog());
        for (const Window* shown : pages) {
            SCOPED_TRACE("page " + std::to_string(shown->id));
            for (Window* page : pages)
                page->object->ShowWindow(page == shown ? SW_SHOW : SW_HIDE);
            mask.GoToFirstControl();
            QApplication::processEvents();
            look(mask);
        }
        if (pages.empty())
            look(mask);
    }
};

std::string NameOf(const Window& control)
{
    return std::string(framework::KindName(control.kind)) + " " + std::to_string(control.id) + " \"" +
           framework::LabelOf(control) + "\"";
}

/// The dialogs a user sees together: the mask and its visible pages.
std::vector<const MaskWindow*> Together(const MaskWindow& mask)
{
    std::vector<const MaskWindow*> all{&mask};
    for (const MaskWindow* page : mask.findChildren<MaskWindow*>())
        if (page->isVisible())
            all.push_back(page);
    return all;
}

bool IsInput(const Window& control)
{
    switch (control.kind) {
    case Kind::edit:
    case Kind::button:
    case Kind::check:
    case Kind::radio:
    case Kind::combo:
    case Kind::list:
    case Kind::trackbar:
        return control.visible && control.enabled;
    default:
        return false;
    }
}

/// Tab and Shift+Tab from control to control; what they visit, and in which order.
void WalkByTab(MaskWindow& mask, const std::function<void(Qt::Key, Qt::KeyboardModifiers)>& press)
{
    const std::vector<ControlView*> chain = mask.TabChain();
    ASSERT_FALSE(chain.empty());

    std::vector<QWidget*> visited;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        visited.push_back(QApplication::focusWidget());
        press(Qt::Key_Tab, Qt::NoModifier);
    }
    EXPECT_EQ(QApplication::focusWidget(), visited.front()) << "the walk does not end where it began";
    std::vector<QWidget*> back;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        back.insert(back.begin(), QApplication::focusWidget());
    }
    EXPECT_EQ(back, visited);

    const std::set<QWidget*> reached(visited.begin(), visited.end());
    EXPECT_EQ(reached.size(), chain.size());
    for (const MaskWindow* dialog : Together(mask))
        for (const ControlView* view : dialog->Views()) {
            const Window& control = *view->Control();
            bool ok = !IsInput(control);
            if (control.kind == Kind::radio)
                for (const Window* radio : framework::RadioGroup(control))
                    ok = ok || reached.count(dialog->ViewOf(*radio)->Widget()) > 0;
            EXPECT_TRUE(ok || reached.count(dialog->ViewOf(control)->Widget()) > 0) << NameOf(control);
        }

    for (std::size_t i = 1; i < chain.size(); ++i) {
        if (chain[i]->Control()->parent != chain[i - 1]->Control()->parent)
            continue;
        const QRect from = chain[i - 1]->Widget()->geometry();
        const QRect to = chain[i]->Widget()->geometry();
        // On the same line to the right, or further down, or at the top of a column further right.
        EXPECT_FALSE(to.bottom() < from.top() && to.left() < from.right())
            << NameOf(*chain[i - 1]->Control()) << " -> " << NameOf(*chain[i]->Control());
        const bool sameLine = to.top() < from.bottom() && from.top() < to.bottom();
        EXPECT_FALSE(sameLine && to.left() < from.left())
            << NameOf(*chain[i - 1]->Control()) << " -> " << NameOf(*chain[i]->Control());
    }
}

TEST_P(MaskLayoutTest, TabReachesEveryControlInTheOrderOfTheLayout)
{
    LookAt([](MaskWindow& mask) {
        WalkByTab(mask, [](Qt::Key key, Qt::KeyboardModifiers modifiers) { Press(key, modifiers); });
    });
}

void CompareMnemonics(const MaskWindow& mask)
{
    std::map<QString, std::string> owners;
    for (const MaskWindow* dialog : Together(mask))
        for (const ControlView* view : dialog->Views()) {
            const Window& control = *view->Control();
            const QString letter = QString::fromStdString(framework::MnemonicOf(control.text)).toLower();
            if (letter.isEmpty() || control.kind == Kind::edit || !control.visible)
                continue;
            EXPECT_EQ(owners.count(letter), 0U)
                << NameOf(control) << " and " << owners[letter] << " share " << letter.toStdString();
            owners[letter] = NameOf(control);
        }
}

TEST_P(MaskLayoutTest, MnemonicsAreUnique)
{
    LookAt(&CompareMnemonics);
}

/// Room a control has for its text: its rectangle less what the style needs.
QSize RoomFor(const Window& control, const QWidget& widget)
{
    const int indicator = widget.style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                          widget.style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    switch (control.kind) {
    case Kind::button:
        return widget.size() - QSize(desktop::Spacing(), 2);
    case Kind::check:
    case Kind::radio:
        return widget.size() - QSize(indicator, 0);
    case Kind::group:
        return widget.size() - QSize(3 * desktop::Spacing(), 0);
    default:
        return widget.size();
    }
}

void MeasureTexts(const MaskWindow& mask)
{
    const QFontMetrics title(desktop::TextFont(1.0, true));
    EXPECT_LE(title.horizontalAdvance(mask.windowTitle()),
              mask.width() - desktop::Spacing() - 2 * mask.style()->pixelMetric(QStyle::PM_TitleBarHeight));
    for (const MaskWindow* dialog : Together(mask))
        for (const ControlView* view : dialog->Views()) {
            const Window& control = *view->Control();
            const QString text = QString::fromStdString(framework::WithoutMnemonic(control.text));
            if (control.kind == Kind::edit || control.kind == Kind::field || text.isEmpty() || !control.visible)
                continue;
            const QWidget& widget = *dialog->ViewOf(control)->Widget();
            const QFontMetrics metrics(control.kind == Kind::group ? desktop::TextFont(1.0, true) : widget.font());
            const QSize room = RoomFor(control, widget);
            const bool wraps = room.height() >= 2 * metrics.height();
            const QRect needed = metrics.boundingRect(QRect(0, 0, wraps ? room.width() : 10000, 10000),
                                                      wraps ? Qt::TextWordWrap : Qt::TextSingleLine, text);
            EXPECT_LE(needed.width(), room.width()) << NameOf(control);
            EXPECT_LE(needed.height(), room.height() + 1) << NameOf(control); // a line's leading may be lost
        }
}

TEST_P(MaskLayoutTest, NoTextIsCutOff)
{
    LookAt(&MeasureTexts);
}

void CompareAreas(const MaskWindow& mask)
{
    for (const MaskWindow* dialog : Together(mask)) {
        const auto& views = dialog->Views();
        for (std::size_t i = 0; i < views.size(); ++i) {
            const Window& control = *views[i]->Control();
            const auto shown = [](const Window& w) { return w.visible && w.kind != Kind::group; };
            if (!control.visible)
                continue;
            const QRect area = dialog->ViewOf(control)->Widget()->geometry();
            EXPECT_TRUE(dialog->rect().contains(area)) << NameOf(control);
            for (std::size_t j = 0; j < i; ++j) {
                const Window& other = *views[j]->Control();
                const QRect inner = dialog->ViewOf(other)->Widget()->geometry().adjusted(1, 1, -1, -1);
                EXPECT_FALSE(shown(control) && shown(other) && area.intersects(inner))
                    << NameOf(control) << " over " << NameOf(other);
            }
        }
    }
}

TEST_P(MaskLayoutTest, NothingLiesOverSomethingElseOrBeyondTheEdge)
{
    LookAt(&CompareAreas);
}

INSTANTIATE_TEST_SUITE_P(AllMasks, MaskLayoutTest,
                         ::testing::Combine(::testing::ValuesIn(BuiltMasks()), ::testing::Values(1.0, 2.0)),
                         [](const auto& mask) {
                             return "Mask" + std::to_string(std::get<0>(mask.param)) +
                                    (std::get<1>(mask.param) > 1.0 ? "Large" : "Plain");
                         });

} // namespace
