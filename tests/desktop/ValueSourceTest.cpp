// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A field that another mask can fill: the mask runs modally, its result is typed into the field.
#include "DesktopFixture.h"

#include "host/Bindings.h"
#include "host/CDialog.h"

#include <QAction>
#include <QLineEdit>

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
    ASSERT_EQ(edit.actions().size(), 1) << "a button in the field";
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

TEST_F(ValueSourceTest, OtherFieldsOfferNone)
{
    for (const UINT field : {4804U, 4806U, 4809U})
        EXPECT_TRUE(Widget(mask, field).actions().isEmpty()) << field;
    EXPECT_TRUE(Widget(Open(400), 4662).actions().isEmpty());
}

} // namespace
