// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PhaseTable.h"

#include "host/Assert.h"
#include "host/CRuvData.h"
#include "krn/MessageTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace pathtime
{
namespace
{

using Spalte = CWegZeitSpalte;

constexpr UnitType kSpeed(unitType::speedKmh);
constexpr UnitType kAcceleration(unitType::acceleration);
constexpr UnitType kLength(unitType::length);
constexpr UnitType kNone(unitType::none);

constexpr double kFastest = 1000.0;  // km/h
constexpr double kHardest = 100.0;   // m/s²
constexpr double kLongestTime = 1e5; // s
constexpr double kLongestPath = 1e6; // m
constexpr double kLargestRadius = 1e5;

std::vector<PhaseRow> MakeRows()
{
    return {
        {PhaseQuantity::startSpeed, &Spalte::vAnf, {"Geschwindigkeit am Anfang", 0.0, kFastest, 2, kSpeed, {}}, false},
        {PhaseQuantity::endSpeed, &Spalte::vEnd, {"Geschwindigkeit am Ende", 0.0, kFastest, 2, kSpeed, {}}, false},
        {PhaseQuantity::deceleration, &Spalte::verz, {"Verzögerung", -kHardest, kHardest, 2, kAcceleration, {}}, false},
        {PhaseQuantity::time, &Spalte::zeit, {"Zeit", 0.0, kLongestTime, 3, kNone, "s"}, false},
        {PhaseQuantity::path, &Spalte::weg, {"Weg", 0.0, kLongestPath, 2, kLength, {}}, false},
        {PhaseQuantity::sumTime, &Spalte::sumZeit, {"Zeit bis Kollision", 0.0, 0.0, 3, kNone, "s"}, false},
        {PhaseQuantity::sumPath, &Spalte::sumWeg, {"Weg bis Kollision", 0.0, 0.0, 2, kLength, {}}, false},
        {PhaseQuantity::startRadius,
         &Spalte::radiusAnf,
         {"Radius am Anfang", 0.0, kLargestRadius, 2, kLength, {}},
         true},
        {PhaseQuantity::endRadius, &Spalte::radiusEnd, {"Radius am Ende", 0.0, kLargestRadius, 2, kLength, {}}, true},
        {PhaseQuantity::steeringTime, &Spalte::lenkZeit, {"Lenkzeit", 0.0, kLongestTime, 2, kNone, "s"}, true},
    };
}

const PhaseRow& RowOf(PhaseQuantity quantity)
{
    const auto rows = PhaseRows();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [quantity](const PhaseRow& row) { return row.quantity == quantity; });
    RUV_ASSERT(found != rows.end());
    return *found;
}

bool IsChained(const CWegZeitDat& phases, std::size_t column)
{
    return column > CWegZeitDat::kErsteSpalte && phases.spalten[column - 1].IsUsed();
}

/// The quantities that are given up so that Berechnung completes them anew, one list after the other until one works.
using Alternatives = std::vector<std::vector<double Spalte::*>>;

Alternatives GivenUpFor(PhaseQuantity quantity)
{
    switch (quantity) {
    case PhaseQuantity::deceleration:
        return {{&Spalte::weg}, {&Spalte::zeit}, {&Spalte::zeit, &Spalte::weg}};
    case PhaseQuantity::time:
        return {{&Spalte::weg}, {&Spalte::verz}};
    case PhaseQuantity::path:
        return {{&Spalte::zeit}, {&Spalte::verz}};
    case PhaseQuantity::startSpeed:
        return {{&Spalte::zeit, &Spalte::weg}, {&Spalte::verz, &Spalte::weg}, {&Spalte::verz, &Spalte::zeit}};
    case PhaseQuantity::endSpeed:
        return {{&Spalte::weg}, {}};
    default:
        return {{}};
    }
}

/// The phase is complete and holds what was entered.
bool Worked(const Spalte& phase, double Spalte::*entered, double value)
{
    constexpr double kSame = 1e-9;
    return !IsIncomplete(phase) && std::abs(phase.*entered - value) <= kSame * std::max(1.0, std::abs(value));
}

bool IsDriven(PhasenArt kind)
{
    return kind != PhasenArt::unused && kind != PhasenArt::noTime;
}

} // namespace

std::span<const PhaseRow> PhaseRows()
{
    static const std::vector<PhaseRow> rows = MakeRows();
    return rows;
}

std::span<const PhasenArt> OfferedKinds()
{
    static constexpr std::array kKinds{
        PhasenArt::unused,          PhasenArt::reaction, PhasenArt::threshold, PhasenArt::braking,
        PhasenArt::accelerating,    PhasenArt::rolling,  PhasenArt::turning,   PhasenArt::constantSpeed,
        PhasenArt::halfSightMarker, PhasenArt::noTime,
    };
    return kKinds;
}

bool IsIncomplete(const CWegZeitSpalte& phase)
{
    return IsDriven(phase.art) && !(phase.zeit > 0.0);
}

bool IsEditable(const CWegZeitDat& phases, std::size_t column, PhaseQuantity quantity)
{
    if (column < CWegZeitDat::kErsteSpalte || column >= CWegZeitDat::kSpalten || !phases.spalten[column].IsUsed())
        return false;
    const PhasenArt kind = phases.spalten[column].art;
    switch (quantity) {
    case PhaseQuantity::sumTime:
    case PhaseQuantity::sumPath:
        return false;
    case PhaseQuantity::endSpeed:
        return !IsChained(phases, column);
    case PhaseQuantity::startSpeed:
        return kind != PhasenArt::constantSpeed;
    case PhaseQuantity::deceleration:
        return kind != PhasenArt::constantSpeed && kind != PhasenArt::noTime;
    case PhaseQuantity::time:
    case PhaseQuantity::path:
        return kind != PhasenArt::noTime;
    default:
        return kind == PhasenArt::turning;
    }
}

const CWegZeitRechDat& PhaseTable::Phases() const
{
    return std::as_const(m_data).WZRechDat(m_vehicle);
}

std::size_t PhaseTable::EndColumn() const
{
    const auto& columns = Phases().spalten;
    std::size_t end = CWegZeitDat::kSpalten;
    while (end > CWegZeitDat::kErsteSpalte && !columns[end - 1].IsUsed())
        --end;
    return std::min(end + 1, CWegZeitDat::kSpalten);
}

void PhaseTable::Store(CWegZeitRechDat phases, std::size_t column)
{
    phases.Berechnung();
    if (phases == Phases())
        return;
    phases.selected = column;
    if (CUBEParameter& parameters = m_data.UPa(m_vehicle); !parameters.modified) {
        parameters.modified = true;
        m_data.NotifyUPa(m_vehicle);
    }
    phases.Uebertragen(m_data, m_vehicle, nullptr, 0);
}

std::string PhaseTable::Enter(std::size_t column, PhaseQuantity quantity, const std::string& text)
{
    if (!IsEditable(Phases(), column, quantity))
        return {};
    const PhaseRow& row = RowOf(quantity);
    const krn::NumberEntry entry = krn::ReadNumber(text, row.format);
    if (!entry.value)
        return entry.refusal;
    const double value = *entry.value;
    // A cell that was opened and left shows the value rounded; that is no change.
    if (krn::ShowNumber(Phases().spalten[column].*row.value, row.format) == krn::ShowNumber(value, row.format))
        return {};

    CWegZeitRechDat entered = Phases();
    Spalte& phase = entered.spalten[column];
    phase.*row.value = value;
    if (phase.art == PhasenArt::constantSpeed) {
        if (quantity == PhaseQuantity::time)
            phase.weg = 0.0;
        else if (quantity == PhaseQuantity::path)
            phase.zeit = 0.0;
        else if (quantity == PhaseQuantity::endSpeed)
            phase.weg = phase.zeit > 0.0 ? 0.0 : phase.weg;
        Store(std::move(entered), column);
        return {};
    }
    // A deceleration of 0 would follow from the two speeds again.
    if (quantity == PhaseQuantity::deceleration && value == 0.0)
        phase.vAnf = phase.vEnd;
    if (quantity == PhaseQuantity::endSpeed && phase.verz == 0.0 && phase.zeit > 0.0)
        phase.vAnf = phase.vEnd;
    for (const auto& givenUp : GivenUpFor(quantity)) {
        CWegZeitRechDat attempt = entered;
        for (double Spalte::*field : givenUp)
            attempt.spalten[column].*field = 0.0;
        attempt.Berechnung();
        if (Worked(attempt.spalten[column], row.value, value)) {
            Store(std::move(attempt), column);
            return {};
        }
    }
    entered.Berechnung();
    if (value != 0.0 && !IsIncomplete(entered.spalten[column]) && !Worked(entered.spalten[column], row.value, value))
        return row.format.label + ": " + krn::ShowNumber(value, row.format) + " " + krn::UnitOf(row.format) +
               " lässt sich mit den übrigen Größen der Phasen nicht erreichen.";
    Store(std::move(entered), column);
    return {};
}

void PhaseTable::SetKind(std::size_t column, PhasenArt kind)
{
    CWegZeitRechDat phases = Phases();
    if (column < CWegZeitDat::kErsteSpalte || column >= CWegZeitDat::kSpalten || phases.spalten[column].art == kind)
        return;
    if (kind == PhasenArt::unused)
        phases.spalten[column] = {};
    else
        phases.spalten[column].art = kind;
    Store(std::move(phases), column);
}

bool PhaseTable::Insert(std::size_t column)
{
    CWegZeitRechDat phases = Phases();
    if (!phases.Einfuegen(column))
        return false;
    Store(std::move(phases), column);
    return true;
}

bool PhaseTable::Remove(std::size_t column)
{
    CWegZeitRechDat phases = Phases();
    if (!phases.Entfernen(column))
        return false;
    Store(std::move(phases), column);
    return true;
}

} // namespace pathtime
