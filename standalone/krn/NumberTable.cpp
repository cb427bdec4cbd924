// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/NumberTable.h"

#include "framework/WndAccess.h"
#include "host/Assert.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "krn/ControlMeaning.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <type_traits>

namespace krn
{
namespace
{

using framework::Kind;

/// Ties the i-th element of a field to its edit.
void BindEdit(CMDIDialog& dialog, const RecordField& field, std::size_t i, UINT control, const CEditColors* colors)
{
    i = std::min(i, field.count - 1);
    const NumberSpec& spec = *field.spec;
    const UnitType unit(spec.unit.type);
    const UnitType* shown = spec.unit.type == unitType::none ? nullptr : &unit;
    const NumberRange& range = spec.range;
    if (double* const* real = std::get_if<double*>(&field.value)) {
        auto* edit = new CEditDouble(&dialog, control, *real + i, range.minimum, range.maximum,
                                     static_cast<BYTE>(spec.decimals), 1.0, colors, colors, shown);
        edit->SetSpec(&spec, i);
        edit->SetSpinner(spec.extra.spinner);
        edit->SetSource(spec.extra.source);
        return;
    }
    const auto* wide = std::get_if<std::int64_t*>(&field.value);
    const auto* narrow = std::get_if<std::int32_t*>(&field.value);
    RUV_ASSERT(wide != nullptr || narrow != nullptr);
    auto* edit = new CEditInt(&dialog, control, wide != nullptr ? CIntField(*wide + i) : CIntField(*narrow + i),
                              static_cast<std::int64_t>(range.minimum), static_cast<std::int64_t>(range.maximum),
                              static_cast<std::int64_t>(spec.extra.spinner.step), colors, colors);
    edit->SetSpec(&spec, i);
}

/// Ties the field to those of its controls that lie on the dialog.
void BindNumber(CMDIDialog& dialog, const RecordField& field, const CEditColors* colors)
{
    const NumberSpec& spec = *field.spec;
    const auto controls = spec.Controls();
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const CWnd* control = dialog.GetDlgItem(controls[i]);
        if (control == nullptr)
            continue;
        if (framework::WindowOf(*control)->kind == Kind::edit) {
            BindEdit(dialog, field, i, controls[i], colors);
        } else if (spec.choice && controls.size() > 1) {
            (new CRadio(&dialog, controls, field.value))->SetSpec(&spec, 0);
            return;
        } else if (spec.choice) {
            (new CCheck(&dialog, controls[i], field.value))->SetSpec(&spec, 0);
        }
    }
}

} // namespace

void BindNumbers(CMDIDialog& dialog, const RecordFields& fields, const CEditColors* colors)
{
    for (const RecordField& field : fields)
        if (field.spec != nullptr)
            BindNumber(dialog, field, colors);
}

} // namespace krn

void ClearNumbers(const RecordFields& fields)
{
    for (const RecordField& field : fields) {
        if (field.spec == nullptr || field.spec->role == FieldRole::state)
            continue;
        std::visit([&](auto* values) { std::fill_n(values, field.count, std::remove_pointer_t<decltype(values)>{}); },
                   field.value);
    }
}

void KeepWithCase(CRuvData& data, UINT mask, const RecordFields& fields)
{
    CMaskenWerte& kept = data.MaskenWerte(mask);
    for (const RecordField& field : fields)
        std::visit([&](const auto* values) { kept[std::string(field.name)].assign(values, values + field.count); },
                   field.value);
}

namespace
{

void Take(double& value, double kept, const NumberSpec*)
{
    value = kept;
}

void Take(std::uint8_t& value, double kept, const NumberSpec*)
{
    value = kept != 0.0 ? 1 : 0;
}

template <class Whole> void Take(Whole& value, double kept, const NumberSpec* spec)
{
    constexpr double kLargest = 1e9;
    const NumberRange range =
        spec != nullptr && spec->range.minimum < spec->range.maximum ? spec->range : NumberRange{-kLargest, kLargest};
    if (kept >= range.minimum && kept <= range.maximum)
        value = static_cast<Whole>(kept);
}

} // namespace

void TakeFromCase(const CRuvData& data, UINT mask, const RecordFields& fields)
{
    for (const RecordField& field : fields) {
        const std::vector<double> kept = data.GemerkteWerte(mask, std::string(field.name));
        if (field.count == 1 && kept.size() != 1)
            continue; // nothing, or a list where one number belongs
        std::visit(
            [&](auto* values) {
                for (std::size_t i = 0; i < std::min(field.count, kept.size()); ++i)
                    if (std::isfinite(kept[i]))
                        Take(values[i], kept[i], field.spec);
            },
            field.value);
    }
}
