// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "krn/Placing.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/resource.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/Primitives.h"

#include <numbers>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

/// Mask 487 with a car, a pedestrian and a bicycle.
class SchrankenMaske : public test::MaskTest
{
  protected:
    SchrankenMaske()
    {
        data.KfzDat(0).length = 4.4;
        CKfzDaten& person = data.KfzDat(1);
        person = {};
        person.type = CKfzDaten::Type::pedestrian;
        person.name = "Fußgänger";
        person.width = 0.5;
        person.height = 1.8;
        person.length = 0.3;
        data.KfzDat(2) = TypicalCar("Rad", RGB(0, 90, 0));
        data.KfzDat(2).type = CKfzDaten::Type::bicycle;
        data.KfzDat(2).width = 0.6;
        data.KfzDat(2).length = 1.8;
    }

    void Open()
    {
        ExecuteRuvModRechnungsMaske(487, data);
        mask = Dialog(487);
        ASSERT_NE(mask, nullptr);
        pages = thread.Pages(*mask);
        ASSERT_EQ(pages.size(), 5U);
    }
    framework::Window* Dialog(UINT id) const
    {
        for (framework::Window* dialog : thread.Dialogs())
            if (dialog->id == id)
                return dialog;
        return nullptr;
    }
    /// Page by its number, shown.
    framework::Window& Page(std::size_t number)
    {
        Press(*mask, IDC_SCHR_BU1 + static_cast<UINT>(number) - 1);
        return *pages[number - 1];
    }
    void Place(std::size_t kind, CDPoint cm, double degrees, double width = 0.0, double length = 0.0)
    {
        ASSERT_EQ(Press(Page(1), IDC_SCHR_SETZEN_FAHRZEUG + static_cast<UINT>(kind)), framework::InputResult::done);
        CPlacedObject object = krn::OpenPlacingRequest(data)->wish;
        ASSERT_EQ(object.kind, static_cast<int>(kind));
        object.position = cm;
        object.angle = degrees;
        object.width = width;
        object.length = length;
        ASSERT_TRUE(krn::AnswerPlacing(data, object));
        krn::EndPlacing(data);
    }
    /// The vehicle along x with its front at 0, the person 4 m before it, the collision 14 to 18 m behind it.
    void PlaceAll(double turnDegrees = 0.0)
    {
        const auto turned = [&](CDPoint p) {
            p.Rotate(turnDegrees * std::numbers::pi / 180.0, {});
            return p;
        };
        Choose(Page(1), IDC_SCHR_FAHRZEUG, 1);
        Choose(Page(1), IDC_SCHR_PERSON, 1);
        Place(0, turned({-220, 0}), turnDegrees);
        Place(2, turned({375, -90}), turnDegrees, 50, 180);
        Place(1, turned({-1800, -100}), turnDegrees, 400, 200);
    }
    void Compute()
    {
        Enter(Page(2), IDC_SCHR_VERZOEGERUNG, "7");
        Enter(Page(2), IDC_SCHR_VERZOEGERUNG_TOLERANZ, "0,7");
        Press(*mask, IDC_RECHNEN);
    }
    std::string Hint(UINT id)
    {
        for (framework::Window* page : pages)
            if (const framework::Window* hint = page->Child(id))
                return hint->text;
        return Text(*mask, id);
    }
    double Field(std::string_view name)
    {
        for (const RecordField& field : static_cast<CMDIRechDialog*>(mask->object)->DescribeRecord())
            if (field.name == name)
                return *std::get<double*>(field.value);
        throw std::out_of_range(std::string(name));
    }
    double High() { return Value(*mask, IDC_SCHR_TEMPO_BIS); }

    framework::Window* mask = nullptr;
    std::vector<framework::Window*> pages;
};

} // namespace test
