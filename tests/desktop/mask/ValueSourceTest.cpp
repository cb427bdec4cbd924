// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A field that another mask can fill: the mask runs modally, its result is typed into the field.
#include "tests/desktop/DesktopFixture.h"

#include "host/Bindings.h"
#include "host/CDialog.h"
#include "res/resource.h"

#include <QAction>
#include <QLineEdit>

#include <algorithm>

namespace
{

constexpr UINT kDeceleration = 4810;

class ValueSourceTest : public test::DesktopTest
{
  protected:
    desktop::MaskWindow& mask = Open(459);
    QLineEdit& edit = static_cast<QLineEdit&>(Widget(mask, kDeceleration));

    double Value() const
    {
        auto& binding = *static_cast<CMDIDialog*>(mask.Dialog()->object)->FindBinding(kDeceleration);
        return dynamic_cast<CEditDouble&>(binding).Value();
    }
};

TEST_F(ValueSourceTest, DecelerationComesFromTheAccelerationMaskWithEveryDigit)
{
    ASSERT_EQ(edit.actions().size(), 1) << "a button before the field";
    edit.setFocus();
    InModal([](QWidget&) {
        Type("0,77");
        Press(Qt::Key_O, Qt::AltModifier);
    });
    Press(Qt::Key_F4);
    EXPECT_DOUBLE_EQ(Value(), 0.77 * 9.81);
    EXPECT_EQ(edit.text(), "7,55");

    InModal([](QWidget&) {
        Type("0,5");
        Press(Qt::Key_Escape);
    });
    edit.actions().first()->trigger();
    EXPECT_DOUBLE_EQ(Value(), 0.77 * 9.81) << "cancelled: nothing is taken";
}

TEST_F(ValueSourceTest, AFieldOnAPageHasItToo)
{
    desktop::MaskWindow& barriers = Open(487);
    ClickOn(Widget(barriers, IDC_SCHR_BU2));
    const auto edits = barriers.findChildren<QLineEdit*>();
    const auto field = std::find_if(edits.begin(), edits.end(),
                                    [](const QLineEdit* e) { return e->isVisible() && !e->actions().isEmpty(); });
    ASSERT_NE(field, edits.end());
    (*field)->setFocus();
    InModal([](QWidget&) {
        Type("0,7");
        Press(Qt::Key_O, Qt::AltModifier);
    });
    Press(Qt::Key_F4);
    EXPECT_EQ((*field)->text(), "6,87");
}

TEST_F(ValueSourceTest, OtherFieldsOfferNone)
{
    for (const UINT field : {4804U, 4806U, 4809U})
        EXPECT_TRUE(Widget(mask, field).actions().isEmpty()) << field;
    EXPECT_TRUE(Widget(Open(400), 4662).actions().isEmpty());
}

} // namespace
