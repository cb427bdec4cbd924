// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The numbers of a mask, each said once: a record has one constexpr table of rows. Binding, unit label, write
// protection, the record's description, clearing and the report follow from it.
//
//     constexpr NumberRow<CBeschlDat> kZahlen[] = {
//         {IDC_BESCHL_REIBUNG, "reibungsbeiwert", At<&CBeschlDat::reibungsbeiwert>, units::none, {0, 10}, 2,
//          FieldRole::input},
//     };
//     RecordFields CBeschlDat::Felder() { return Describe(*this, kZahlen); }
#pragma once

#include "host/HostTypes.h"
#include "host/RecordField.h"
#include "host/Units.h"

#include <array>
#include <span>
#include <string_view>
#include <vector>

class CRuvData;

/// What a number is in its mask.
enum class FieldRole : BYTE {
    input,    ///< the user enters it
    result,   ///< the mask computes it; its control takes no entries
    internal, ///< a quantity without a control; cleared with the others
    state,    ///< a flag or choice that clearing leaves alone
};

/// Unit of a number in the record, and how the unit system converts it for the user.
struct NumberUnit {
    std::string_view text;
    unitType type = unitType::none;
};

namespace units
{
inline constexpr NumberUnit none{""};
inline constexpr NumberUnit kmh{"km/h", unitType::speedKmh};
inline constexpr NumberUnit ms{"m/s", unitType::speedMs};
inline constexpr NumberUnit ms2{"m/s²", unitType::acceleration};
inline constexpr NumberUnit m{"m", unitType::length};
inline constexpr NumberUnit s{"s"};
inline constexpr NumberUnit degree{"°"};
inline constexpr NumberUnit radian{"rad"};
inline constexpr NumberUnit percent{"%"};
inline constexpr NumberUnit cm{"cm"};
inline constexpr NumberUnit mm{"mm"};
inline constexpr NumberUnit cm2{"cm²"};
inline constexpr NumberUnit kg{"kg"};
inline constexpr NumberUnit g{"g"};
inline constexpr NumberUnit kgm3{"kg/m³"};
inline constexpr NumberUnit N{"N"};
inline constexpr NumberUnit daN{"daN"};
} // namespace units

/// A number that a text names: shown with its unit, both in the user's unit system.
struct ShownNumber {
    double value = 0.0; ///< in `unit`
    NumberUnit unit{};
    int decimals = 2;
};

/// What an entry may hold, in the record's unit; anything else is refused.
struct NumberRange {
    double minimum = 0.0;
    double maximum = 0.0;
};

/// How far and in which steps the spinner goes. Zeros: as far as an entry may, in the default step of that range.
struct SpinnerRange {
    double minimum = 0.0;
    double maximum = 0.0;
    double step = 0.0; ///< in the unit shown
    constexpr bool IsGiven() const { return minimum < maximum; }
};

/// The mask that can find the value of a field when it is run modally for it.
enum class ValueSource : BYTE { none, maximumDeceleration, curveLimitSpeed };

/// How a number stands beside the one in the row before, in a report: "12,00 bis 14,00 km/h", "7,00 ± 0,50 m/s²".
enum class Joint : BYTE { none, upTo, tolerance };

/// What few numbers have.
struct NumberExtra {
    /// Names the field in the user's words where no label of its own stands directly before it; of a choice the
    /// group's name; of an array a word for each element, with "|" between them, or one for all.
    std::string_view label{};
    Joint joint = Joint::none;
    /// The check box or radio button that switches the field on; off, its value does not count.
    UINT onlyWith = 0;
    SpinnerRange spinner{};
    ValueSource source = ValueSource::none;
    /// A result whose text can be marked and copied: write-protected, not disabled.
    bool copyable = false;
};

/// All of a row but where its value lies.
struct NumberSpec {
    /// One control, or as many as the field has elements, or several of one number; of a choice one radio button per
    /// value from 0 on.
    std::span<const UINT> Controls() const { return many.empty() ? std::span(&single, single == 0 ? 0U : 1U) : many; }

    UINT single = 0;
    std::span<const UINT> many{};
    std::string_view name; ///< in the record, for scripts and reports
    NumberUnit unit{};
    NumberRange range{};
    int decimals = 0;
    FieldRole role = FieldRole::state;
    NumberExtra extra{};
    bool choice = false; ///< a check box or radio buttons
};

namespace number_detail
{
template <class> struct MemberOf;
template <class C, class T> struct MemberOf<T C::*> {
    using Class = C;
};

template <class T> FieldRef RefTo(T& value)
{
    return {&value, 1};
}
template <class T, std::size_t N> FieldRef RefTo(std::array<T, N>& values)
{
    return {values.data(), N};
}
template <class T> FieldRef RefTo(std::vector<T>& values)
{
    return {values.data(), values.size(), true};
}
} // namespace number_detail

/// Where a row's value lies: a member, or a member of a member. An array or list gives all its elements.
template <auto Member> FieldRef At(typename number_detail::MemberOf<decltype(Member)>::Class& record)
{
    return number_detail::RefTo(record.*Member);
}
template <auto Outer, auto Inner> FieldRef At(typename number_detail::MemberOf<decltype(Outer)>::Class& record)
{
    return number_detail::RefTo(record.*Outer.*Inner);
}
/// One element of an array member.
template <auto Member, std::size_t Index>
FieldRef Element(typename number_detail::MemberOf<decltype(Member)>::Class& record)
{
    return number_detail::RefTo((record.*Member)[Index]);
}

template <class Dat> struct NumberRow {
    using Access = FieldRef (*)(Dat&);

    /// A number with a control.
    constexpr NumberRow(UINT control, std::string_view name, Access where, NumberUnit unit, NumberRange range,
                        int decimals, FieldRole role, NumberExtra extra = {})
        : spec{control, {}, name, unit, range, decimals, role, extra, false}, at(where)
    {
    }
    /// An array with a control for each element, or one number that stands in several controls.
    constexpr NumberRow(std::span<const UINT> controls, std::string_view name, Access where, NumberUnit unit,
                        NumberRange range, int decimals, FieldRole role, NumberExtra extra = {})
        : spec{0, controls, name, unit, range, decimals, role, extra, false}, at(where)
    {
    }
    /// A check box: 0 or 1.
    constexpr NumberRow(UINT control, std::string_view name, Access where, FieldRole role = FieldRole::state,
                        NumberExtra extra = {})
        : spec{control, {}, name, {}, {0, 1}, 0, role, extra, true}, at(where)
    {
    }
    /// Radio buttons that stand for 0, 1, ...; `group` names the choice.
    constexpr NumberRow(std::span<const UINT> controls, std::string_view name, Access where, std::string_view group,
                        FieldRole role = FieldRole::state)
        : spec{0, controls, name, {}, {}, 0, role, {group}, true}, at(where)
    {
    }
    /// A quantity without a control, or one whose control the dialog binds itself (a choice of vehicle or phase).
    /// A whole number kept in the case is taken back only within `range`, if one is given.
    constexpr NumberRow(std::string_view name, Access where, NumberUnit unit = units::none,
                        FieldRole role = FieldRole::state, NumberRange range = {})
        : spec{0, {}, name, unit, range, 0, role, {}, false}, at(where)
    {
    }

    NumberSpec spec;
    Access at;
};

/// The fields of a record by name, in the table's order. The table must outlive them.
template <class Dat, std::size_t N> RecordFields Describe(Dat& record, const NumberRow<Dat> (&table)[N])
{
    RecordFields fields;
    fields.reserve(N);
    for (const NumberRow<Dat>& row : table) {
        const FieldRef ref = row.at(record);
        fields.push_back({row.spec.name, row.spec.unit.text, ref.value, ref.count, &row.spec, ref.list});
    }
    return fields;
}

/// Sets every input, result and internal quantity to zero; what has the role `state` stays.
void ClearNumbers(const RecordFields& fields);

/// Lets the case keep the fields under the mask's number; the caller tells it (CRuvData::NotifyMaskenWerte).
void KeepWithCase(CRuvData& data, UINT mask, const RecordFields& fields);
/// Takes back what the case keeps of the fields. What it does not keep, and what is no number or out of a whole
/// number's range, stays as it is.
void TakeFromCase(const CRuvData& data, UINT mask, const RecordFields& fields);
