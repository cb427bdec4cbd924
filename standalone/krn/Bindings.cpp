// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Bindings.h"

#include "base/NumberText.h"
#include "framework/WndAccess.h"
#include "host/Assert.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace
{

using Outcome = EntryResult::Outcome;

/// A thousandth of the decade that holds the range, not finer than the decimals shown.
double DefaultStep(double minimum, double maximum, int decimals)
{
    const double largest = std::max(std::abs(minimum), std::abs(maximum));
    const double finest = std::pow(10.0, -decimals);
    if (!std::isfinite(largest) || largest <= 0.0)
        return finest;
    return std::max(finest, std::pow(10.0, std::ceil(std::log10(largest)) - 3.0));
}

bool IsBlank(const std::string& text)
{
    return text.find_first_not_of(" \t") == std::string::npos;
}

} // namespace

CBinding::CBinding(CMDIDialog* parent, UINT controlId, const CEditColors* normal, const CEditColors* highlighted)
    : m_dialog(parent), m_controlId(controlId), m_normal(normal), m_highlighted(highlighted)
{
    RUV_ASSERT(parent != nullptr);
    parent->AddBinding(*this);
}

std::string CBinding::FieldLabel() const
{
    const CWnd* control = m_dialog->GetDlgItem(m_controlId);
    const framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control);
    std::string label = window == nullptr ? std::string{} : framework::LabelOf(*window);
    while (!label.empty() && (label.back() == ':' || label.back() == ' '))
        label.pop_back();
    const std::string unit = window == nullptr ? std::string{} : framework::UnitTextOf(*window);
    if (!unit.empty())
        label += " (" + unit + ")";
    return label.empty() ? "Feld " + std::to_string(m_controlId) : label;
}

CEditDouble::CEditDouble(CMDIDialog* parent, UINT controlId, double* field, double minimum, double maximum,
                         BYTE decimals, double step, const CEditColors* normal, const CEditColors* highlighted,
                         const UnitType* unit)
    : CBinding(parent, controlId, normal, highlighted), m_field(field), m_minimum(minimum), m_maximum(maximum),
      m_step(step > 0.0 ? step : DefaultStep(minimum, maximum, decimals)), m_decimals(decimals)
{
    if (unit != nullptr)
        m_unit = *unit;
    const CWnd* control = parent->GetDlgItem(controlId);
    if (framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control))
        window->spinner = true;
}

double CEditDouble::Factor() const
{
    return m_unit ? UnitsSystemConfiguration::GetInstance().Factor(*m_unit) : 1.0;
}

std::string CEditDouble::Format(double value) const
{
    return base::FormatNumber(value / Factor(), m_decimals);
}

std::string CEditDouble::FormatBound(double bound, int inward) const
{
    const std::string text = Format(bound);
    const std::optional<double> shown = base::ParseNumber(text);
    if (!shown || InRange(*shown * Factor()))
        return text;
    return base::FormatNumber(*shown + inward * std::pow(10.0, -m_decimals), m_decimals);
}

std::string CEditDouble::EntryText(double value) const
{
    return base::FormatNumber(value / Factor());
}

void CEditDouble::Show()
{
    if (CWnd* control = Dialog().GetDlgItem(ControlId()))
        control->SetWindowText(Format(*m_field));
}

EntryResult CEditDouble::Take(const std::string& text)
{
    if (IsBlank(text))
        return {Outcome::unchanged};
    const std::optional<double> shown = base::ParseNumber(text);
    if (shown && InRange(*shown * Factor())) {
        *m_field = *shown * Factor();
        return {Outcome::taken};
    }
    const std::string low = FormatBound(m_minimum, +1);
    const std::string high = FormatBound(m_maximum, -1);
    return {Outcome::refused, shown ? 1002U : 1001U, {FieldLabel(), text, low, high}};
}

bool CEditDouble::OnIncValue(int direction)
{
    const double old = *m_field;
    if (std::isnan(old) || (direction > 0 ? old >= m_maximum : old <= m_minimum))
        return false;
    const double factor = Factor();
    *m_field = std::clamp((old / factor + direction * m_step) * factor, m_minimum, m_maximum);
    return true;
}

std::int64_t CIntField::Value() const
{
    return std::visit([](const auto* field) { return std::int64_t{*field}; }, m_field);
}

void CIntField::Set(std::int64_t value)
{
    value = std::clamp(value, Smallest(), Largest());
    std::visit([value](auto* field) { *field = static_cast<std::remove_pointer_t<decltype(field)>>(value); }, m_field);
}

const void* CIntField::Address() const
{
    return std::visit([](const auto* field) { return static_cast<const void*>(field); }, m_field);
}

std::int64_t CIntField::Smallest() const
{
    return std::holds_alternative<std::int32_t*>(m_field) ? std::numeric_limits<std::int32_t>::min()
                                                          : std::numeric_limits<std::int64_t>::min();
}

std::int64_t CIntField::Largest() const
{
    return std::holds_alternative<std::int32_t*>(m_field) ? std::numeric_limits<std::int32_t>::max()
                                                          : std::numeric_limits<std::int64_t>::max();
}

CEditInt::CEditInt(CMDIDialog* parent, UINT controlId, CIntField field, std::int64_t minimum, std::int64_t maximum,
                   std::int64_t step, const CEditColors* normal, const CEditColors* highlighted)
    : CBinding(parent, controlId, normal, highlighted), m_field(field), m_minimum(std::max(minimum, field.Smallest())),
      m_maximum(std::min(maximum, field.Largest())), m_step(step > 0 ? step : 1)
{
    const CWnd* control = parent->GetDlgItem(controlId);
    if (framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control))
        window->spinner = true;
}

void CEditInt::Show()
{
    if (CWnd* control = Dialog().GetDlgItem(ControlId()))
        control->SetWindowText(std::to_string(m_field.Value()));
}

EntryResult CEditInt::Take(const std::string& text)
{
    if (IsBlank(text))
        return {Outcome::unchanged};
    const auto value = base::ParseInteger(text);
    if (value && InRange(*value)) {
        m_field.Set(*value);
        return {Outcome::taken};
    }
    return {Outcome::refused, value ? 1002U : 1001U, {FieldLabel(), text, m_minimum, m_maximum}};
}

bool CEditInt::OnIncValue(int direction)
{
    const std::int64_t old = m_field.Value();
    if (direction > 0 ? old >= m_maximum : old <= m_minimum)
        return false;
    const std::int64_t room =
        direction > 0 ? m_maximum - std::max(old, m_minimum) : std::min(old, m_maximum) - m_minimum;
    m_field.Set(std::clamp(old, m_minimum, m_maximum) + (direction > 0 ? 1 : -1) * std::min(m_step, room));
    return true;
}

CChoiceCombo::CChoiceCombo(CMDIDialog* parent, UINT controlId, CIntField field, const CEditColors* normal,
                           const CEditColors* highlighted)
    : CBinding(parent, controlId, normal, highlighted), m_field(field)
{
}

void CChoiceCombo::Show()
{
    auto* combo = static_cast<CComboBox*>(Dialog().GetDlgItem(ControlId()));
    if (combo == nullptr)
        return;
    auto entries = Entries();
    if (entries != m_shown || combo->GetCount() != static_cast<int>(entries.size())) {
        combo->ResetContent();
        for (const Entry& entry : entries)
            combo->AddString(entry.text);
        m_shown = std::move(entries);
    }
    const auto chosen = std::find_if(m_shown.begin(), m_shown.end(),
                                     [number = m_field.Value()](const Entry& entry) { return entry.number == number; });
    combo->SetCurSel(chosen == m_shown.end() ? -1 : static_cast<int>(chosen - m_shown.begin()));
}

EntryResult CChoiceCombo::Take(const std::string& text)
{
    return {Outcome::refused, 1003, {FieldLabel(), text}};
}

void CChoiceCombo::TakeSelection(int index)
{
    if (index >= 0 && index < static_cast<int>(m_shown.size()))
        m_field.Set(m_shown[static_cast<std::size_t>(index)].number);
}

CFzgCombo::CFzgCombo(CMDIDialog* parent, UINT controlId, int first, CIntField field, std::int64_t* excluded,
                     const CEditColors* normal, const CEditColors* highlighted)
    : CChoiceCombo(parent, controlId, field, normal, highlighted), m_first(first)
{
    if (excluded != nullptr)
        Ausser({excluded});
}

std::vector<CChoiceCombo::Entry> CFzgCombo::Entries() const
{
    const CRuvData& data = static_cast<CMDIRechDialog&>(Dialog()).RuvData();
    std::vector<Entry> entries;
    if (m_first < 0)
        entries.push_back({m_first, "(keines)"});
    for (std::size_t i = static_cast<std::size_t>(std::max(m_first, 0)); i < CRuvData::kFahrzeuge; ++i) {
        const auto number = static_cast<std::int64_t>(i);
        const bool excluded = std::any_of(m_excluded.begin(), m_excluded.end(),
                                          [number](const CIntField& other) { return other.Value() == number; });
        if (excluded || !data.IsFzgValid(number))
            continue;
        entries.push_back({number, std::to_string(i + 1) + "  " + data.KfzDat(i).name});
    }
    return entries;
}

CAbsCombo::CAbsCombo(CMDIDialog* parent, UINT controlId, CIntField field, const CEditColors* normal,
                     const CEditColors* highlighted)
    : CChoiceCombo(parent, controlId, field, normal, highlighted)
{
}

void CAbsCombo::SetBereich(std::size_t first, std::size_t last)
{
    m_first = first;
    m_last = last;
}

std::vector<CChoiceCombo::Entry> CAbsCombo::Entries() const
{
    std::vector<Entry> entries;
    const CRuvData& data = static_cast<CMDIRechDialog&>(Dialog()).RuvData();
    if (!m_vehicle || !data.IsFzgValid(m_vehicle->Value()))
        return entries;
    const CWegZeitDat& phases = data.WZRechDat(static_cast<std::size_t>(m_vehicle->Value()));
    const std::size_t last = std::min(m_last, phases.FirstFree());
    for (std::size_t column = m_first; column < CWegZeitDat::kSpalten && column <= last; ++column) {
        const auto number = static_cast<std::int64_t>(column);
        const std::int64_t phase = number - static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) + 1;
        entries.push_back({number, std::to_string(phase) + "  " + PhasenArtName(phases.spalten[column].art)});
    }
    return entries;
}

const char* PhasenArtName(PhasenArt art)
{
    switch (art) {
    case PhasenArt::unused:
        return "(frei)";
    case PhasenArt::braking:
        return "Bremsen";
    case PhasenArt::accelerating:
        return "Beschleunigen";
    case PhasenArt::threshold:
        return "Schwellen";
    case PhasenArt::reaction:
        return "Reaktion";
    case PhasenArt::constantSpeed:
        return "konstante Geschw.";
    case PhasenArt::noTime:
        return "ohne Zeit";
    case PhasenArt::turning:
        return "Abbiegen";
    case PhasenArt::rolling:
        return "Rollen";
    case PhasenArt::halfSightMarker:
        return "halbe Sicht";
    }
    return "?";
}
