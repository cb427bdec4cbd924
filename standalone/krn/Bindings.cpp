// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Bindings.h"

#include "base/NumberText.h"
#include "framework/WndAccess.h"
#include "host/Assert.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace
{

using Outcome = EntryResult::Outcome;

/// The powers of ten from a step of nine decimals to the largest value that is stepped more finely than by 10.
constexpr std::array kPowers{1e-9, 1e-8, 1e-7, 1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3};
constexpr std::size_t kOne = 9; ///< where 1 stands in it
constexpr double kCoarsestStep = 10.0;
/// A stepped value so near to a decimal number of so few digits differs from it by rounding only.
constexpr int kStepDigits = 12;
constexpr double kStepRounding = 1e-15;

/// A thousandth of the decade that holds the range, not finer than the decimals shown and not coarser than 10.
double DefaultStep(double minimum, double maximum, int decimals)
{
    const double largest = std::max(std::abs(minimum), std::abs(maximum));
    std::size_t step = kOne - static_cast<std::size_t>(std::clamp(decimals, 0, int{kOne}));
    if (!std::isfinite(largest) || largest <= 0.0)
        return kPowers[step];
    for (; step <= kOne; ++step)
        if (largest <= kPowers[step + 3])
            return kPowers[step];
    return kCoarsestStep;
}

/// The short decimal number that the value is but for rounding, so that eighty steps of 0.01 give 0.8; another value
/// as it is. `size` is the largest number in the sum.
double OnDecimalGrid(double value, double size)
{
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, value, std::chars_format::general, kStepDigits);
    double rounded = value;
    std::from_chars(text, written.ptr, rounded);
    return std::abs(rounded - value) <= kStepRounding * size ? rounded : value;
}

/// Sets the field behind the reference.
void SetNumber(const FieldValue& field, int number)
{
    std::visit([number](auto* value) { *value = static_cast<std::remove_pointer_t<decltype(value)>>(number); }, field);
}

/// The field's number, -1 when it is none of 0, 1, ...
int NumberOf(const FieldValue& field)
{
    const double number = std::visit([](const auto* value) { return static_cast<double>(*value); }, field);
    return number >= 0.0 && number <= 1000.0 && number == std::floor(number) ? static_cast<int>(number) : -1;
}

/// The i-th of the words with "|" between them; the last one when there are fewer.
std::string_view WordAt(std::string_view words, std::size_t i)
{
    std::size_t bar = words.find('|');
    for (; i > 0 && bar != std::string_view::npos; --i) {
        words.remove_prefix(bar + 1);
        bar = words.find('|');
    }
    return words.substr(0, bar);
}

const void* AddressOf(const FieldValue& field)
{
    return std::visit([](const auto* value) { return static_cast<const void*>(value); }, field);
}

bool IsBlank(const std::string& text)
{
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

} // namespace

CBinding::CBinding(CMDIDialog* parent, UINT controlId, const CEditColors* normal, const CEditColors* highlighted)
    : m_dialog(parent), m_controlId(controlId), m_control(parent->GetDlgItem(controlId)), m_normal(normal),
      m_highlighted(highlighted)
{
    parent->AddBinding(*this);
}

CWnd* CBinding::Control() const
{
    return m_dialog->m_hWnd == nullptr ? nullptr : m_control;
}

std::string CBinding::Label() const
{
    if (m_spec != nullptr && !m_spec->extra.label.empty())
        return std::string(WordAt(m_spec->extra.label, m_element));
    const UINT named = m_spec != nullptr && m_spec->extra.onlyWith != 0 ? m_spec->extra.onlyWith : m_controlId;
    const CWnd* control = m_dialog->GetDlgItem(named);
    const framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control);
    std::string label = window == nullptr ? std::string{} : framework::LabelOf(*window);
    while (!label.empty() && (label.back() == ':' || label.back() == ' '))
        label.pop_back();
    return label;
}

FieldRole CBinding::Role() const
{
    const CWnd* control = Control();
    const framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control);
    if (window != nullptr && window->readOnly)
        return FieldRole::result;
    return m_spec == nullptr ? FieldRole::input : m_spec->role;
}

std::string CBinding::FieldLabel() const
{
    std::string label = Label();
    const std::string unit = UnitText();
    if (!unit.empty())
        label += " (" + unit + ")";
    return label.empty() ? "Feld " + std::to_string(m_controlId) : label;
}

CEditDouble::CEditDouble(CMDIDialog* parent, UINT controlId, double* field, double minimum, double maximum,
                         BYTE decimals, double step, const CEditColors* normal, const CEditColors* highlighted,
                         const UnitType* unit)
    : CBinding(parent, controlId, normal, highlighted), m_field(field), m_minimum(minimum), m_maximum(maximum),
      m_step(step > 0.0 ? step : DefaultStep(minimum, maximum, decimals)), m_spinnerMinimum(minimum),
      m_spinnerMaximum(maximum), m_decimals(decimals)
{
    if (unit != nullptr)
        m_unit = *unit;
    const CWnd* control = Control();
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
    CWnd* control = Control();
    if (control == nullptr)
        return;
    // Most fields of a dialog are as they were when one of them changes.
    const Shown now{std::bit_cast<std::uint64_t>(*m_field), Factor(), RuvCfg.decimalPoint};
    if (m_shownText.empty() || now != m_shown) {
        m_shown = now;
        m_shownText = Format(*m_field);
    }
    control->SetWindowText(m_shownText);
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
    // A value outside the range is typed away, not jumped away from.
    if (!(old >= m_spinnerMinimum && old <= m_spinnerMaximum))
        return false;
    if (direction > 0 ? old >= m_spinnerMaximum : old <= m_spinnerMinimum)
        return false;
    const double factor = Factor();
    const double stepped = OnDecimalGrid(old / factor + direction * m_step, std::abs(old / factor) + m_step) * factor;
    *m_field = std::clamp(stepped, m_spinnerMinimum, m_spinnerMaximum) + 0.0; // + 0.0: no negative zero
    return true;
}

void CEditDouble::SetSpinner(const SpinnerRange& spinner)
{
    if (spinner.IsGiven()) {
        m_spinnerMinimum = std::max(spinner.minimum, m_minimum);
        m_spinnerMaximum = std::min(spinner.maximum, m_maximum);
    }
    m_step = spinner.step > 0.0 ? spinner.step : DefaultStep(m_spinnerMinimum, m_spinnerMaximum, m_decimals);
}

std::string CEditDouble::UnitText() const
{
    if (m_unit)
        return UnitsSystemConfiguration::GetInstance().UnitString(*m_unit);
    return Spec() == nullptr ? std::string{} : std::string(Spec()->unit.text);
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
    const CWnd* control = Control();
    if (framework::Window* window = control == nullptr ? nullptr : framework::WindowOf(*control))
        window->spinner = true;
}

void CEditInt::Show()
{
    if (CWnd* control = Control())
        control->SetWindowText(std::to_string(m_field.Value()));
}

std::string CEditInt::UnitText() const
{
    return Spec() == nullptr ? std::string{} : std::string(Spec()->unit.text);
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

CCheck::CCheck(CMDIDialog* parent, UINT controlId, const FieldValue& field)
    : CBinding(parent, controlId, nullptr, nullptr), m_field(field)
{
}

void CCheck::Show()
{
    if (CWnd* control = Control())
        static_cast<CButton*>(control)->SetCheck(NumberOf(m_field) == 0 ? 0 : 1);
}

EntryResult CCheck::Take(const std::string& text)
{
    return {Outcome::refused, 1003, {FieldLabel(), text}};
}

void CCheck::TakeSelection(int checked)
{
    SetNumber(m_field, checked != 0 ? 1 : 0);
}

const void* CCheck::Field() const
{
    return AddressOf(m_field);
}

CRadio::CRadio(CMDIDialog* parent, std::span<const UINT> buttons, const FieldValue& field)
    : CBinding(parent, buttons.front(), nullptr, nullptr), m_buttons(buttons.begin(), buttons.end()), m_field(field)
{
}

bool CRadio::Owns(UINT controlId) const
{
    return std::find(m_buttons.begin(), m_buttons.end(), controlId) != m_buttons.end();
}

void CRadio::Show()
{
    const int chosen = NumberOf(m_field);
    for (std::size_t i = 0; i < m_buttons.size(); ++i)
        if (CWnd* control = Dialog().GetDlgItem(m_buttons[i]))
            static_cast<CButton*>(control)->SetCheck(chosen == static_cast<int>(i) ? 1 : 0);
}

EntryResult CRadio::Take(const std::string& text)
{
    return {Outcome::refused, 1003, {FieldLabel(), text}};
}

void CRadio::TakeSelection(int button)
{
    if (button >= 0 && button < static_cast<int>(m_buttons.size()))
        SetNumber(m_field, button);
}

const void* CRadio::Field() const
{
    return AddressOf(m_field);
}

CChoiceCombo::CChoiceCombo(CMDIDialog* parent, UINT controlId, CIntField field, const CEditColors* normal,
                           const CEditColors* highlighted)
    : CBinding(parent, controlId, normal, highlighted), m_field(field)
{
}

void CChoiceCombo::Show()
{
    auto* combo = static_cast<CComboBox*>(Control());
    if (combo == nullptr)
        return;
    if (combo->GetCount() != static_cast<int>(m_shown.size()) || !ShowsEntries()) {
        combo->ResetContent();
        m_shown.clear();
        Entries([&](std::int64_t number, std::optional<std::int64_t> count, std::string_view name) {
            m_shown.push_back({number, count, std::string(name)});
            combo->AddString((count ? std::to_string(*count) + "  " : std::string()).append(name));
        });
    }
    const auto chosen = std::find_if(m_shown.begin(), m_shown.end(),
                                     [number = m_field.Value()](const Entry& entry) { return entry.number == number; });
    combo->SetCurSel(chosen == m_shown.end() ? -1 : static_cast<int>(chosen - m_shown.begin()));
}

bool CChoiceCombo::ShowsEntries() const
{
    std::size_t entries = 0;
    bool same = true;
    Entries([&](std::int64_t number, std::optional<std::int64_t> count, std::string_view name) {
        same = same && entries < m_shown.size() && m_shown[entries].number == number &&
               m_shown[entries].count == count && m_shown[entries].name == name;
        ++entries;
    });
    return same && entries == m_shown.size();
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

void CFzgCombo::Entries(const TakeEntry& take) const
{
    const CRuvData& data = static_cast<CMDIRechDialog&>(Dialog()).RuvData();
    if (m_first < 0)
        take(m_first, std::nullopt, "(keines)");
    for (std::size_t i = static_cast<std::size_t>(std::max(m_first, 0)); i < CRuvData::kFahrzeuge; ++i) {
        const auto number = static_cast<std::int64_t>(i);
        const bool excluded = std::any_of(m_excluded.begin(), m_excluded.end(),
                                          [number](const CIntField& other) { return other.Value() == number; });
        if (!excluded && data.IsFzgValid(number))
            take(number, number + 1, data.KfzDat(i).name);
    }
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

void CAbsCombo::Entries(const TakeEntry& take) const
{
    const CRuvData& data = static_cast<CMDIRechDialog&>(Dialog()).RuvData();
    if (!m_vehicle || !data.IsFzgValid(m_vehicle->Value()))
        return;
    const CWegZeitDat& phases = data.WZRechDat(static_cast<std::size_t>(m_vehicle->Value()));
    const std::size_t last = std::min(m_last, phases.FirstFree());
    for (std::size_t column = m_first; column < CWegZeitDat::kSpalten && column <= last; ++column) {
        const auto number = static_cast<std::int64_t>(column);
        const std::int64_t phase = number - static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) + 1;
        take(number, phase, PhasenArtName(phases.spalten[column].art));
    }
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
