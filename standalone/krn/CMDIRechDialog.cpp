// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/NumberText.h"
#include "framework/UiThread.h"
#include "framework/WndAccess.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "krn/CaseWindows.h"
#include "krn/ControlMeaning.h"
#include "krn/OpenMasks.h"

#include <algorithm>

namespace krn
{
namespace
{

std::vector<CMDIRechDialog*>& Registry()
{
    static std::vector<CMDIRechDialog*> registry;
    return registry;
}

} // namespace

std::vector<CMDIRechDialog*> OpenMasks(const CRuvData& data)
{
    std::vector<CMDIRechDialog*> masks;
    std::copy_if(Registry().begin(), Registry().end(), std::back_inserter(masks),
                 [&](const CMDIRechDialog* mask) { return &mask->RuvData() == &data; });
    return masks;
}

void RegisterMask(CMDIRechDialog& mask)
{
    Registry().push_back(&mask);
}

void UnregisterMask(CMDIRechDialog& mask)
{
    std::erase(Registry(), &mask);
}

} // namespace krn

namespace
{

bool Contains(const CRect& outer, const CRect& inner)
{
    return outer.left <= inner.left && outer.right >= inner.right && outer.top <= inner.top &&
           outer.bottom >= inner.bottom;
}

/// All inputs and choices, one after the other.
std::vector<double> InputsOf(const RecordFields& fields)
{
    std::vector<double> inputs;
    for (const RecordField& field : fields) {
        if (field.spec == nullptr || (field.spec->role != FieldRole::input && !field.spec->choice))
            continue;
        std::visit(
            [&](const auto* values) {
                for (std::size_t i = 0; i < field.count; ++i)
                    inputs.push_back(static_cast<double>(values[i]));
            },
            field.value);
    }
    return inputs;
}

bool HasResult(const RecordFields& fields)
{
    return std::any_of(
        fields.begin(), fields.end(),
        [](const RecordField& field) {
            return field.spec != nullptr && field.spec->role == FieldRole::result &&
                   std::visit(
                       [&](const auto* values) {
                           return std::any_of(
                               values, values + field.count, [](auto value) { return value != 0; });
                       },
                       field.value);
        });
}

std::string WithUnit(const ShownNumber& number)
{
    const auto& units = UnitsSystemConfiguration::GetInstance();
    const UnitType unit(number.unit.type);
    const bool converted = number.unit.type != unitType::none;
    const std::string text =
        base::FormatNumber(converted ? units.ToShown(number.value, unit) : number.value, number.decimals);
    const std::string shown = converted ? units.UnitString(unit) : std::string(number.unit.text);
    return shown.empty() ? text : text + " " + shown;
}

} // namespace

CMDIRechDialog::CMDIRechDialog(UINT dialogId, CWnd* parent, CRuvData& data, int*, int*)
    : CMDIDialog(dialogId, parent), m_data(data)
{
}

CMDIRechDialog::~CMDIRechDialog()
{
    krn::UnregisterMask(*this);
}

BOOL CMDIRechDialog::DoModeless(CWnd* parent)
{
    if (m_isCalculationMask != 0)
        krn::RegisterMask(*this);
    return CMDIDialog::DoModeless(parent); // a mask that does not open is deleted, and leaves the list with that
}

void CMDIRechDialog::BuildObjects()
{
    krn::BindNumbers(*this, DescribeRecord(), m_editColors);
}

void CMDIRechDialog::SetupWindow()
{
    CMDIDialog::SetupWindow();
    for (const auto& binding : Bindings()) {
        const NumberSpec* spec = binding->Spec();
        if (spec == nullptr)
            continue;
        const UINT id = binding->ControlId();
        if (spec->unit.type != unitType::none)
            ReplaceChildWindowSubstringWithUnitString(krn::UnitLabelId(id), UnitType(spec->unit.type));
        if (spec->role == FieldRole::result && spec->extra.copyable)
            ChangeProtection(id, 1);
        else if (spec->role == FieldRole::result)
            Enable(id, FALSE);
    }
}

UINT CMDIRechDialog::GetCloneCropStyle(UINT* out)
{
    constexpr UINT kStyles[][2] = {{100, 8}, {105, 2}}; // OK, "Rechnen"
    UINT pairs = 0;
    for (const auto& [button, style] : kStyles) {
        if (GetDlgItem(button) == nullptr)
            continue;
        out[2 * pairs] = button;
        out[2 * pairs + 1] = style;
        ++pairs;
    }
    return pairs;
}

void CMDIRechDialog::UpdateDialog()
{
    const std::int64_t vehicle = ColorVehicle();
    SetUseFzgColors(RuvCfg.useVehicleColors && m_data.IsFzgValid(vehicle) ? vehicle : -1);
    ShowOwnVehicles();
    CMDIDialog::UpdateDialog();
    for (const auto& binding : Bindings())
        if (binding->Spec() != nullptr && binding->Spec()->extra.onlyWith != 0)
            Enable(binding->ControlId(), IsChecked(binding->Spec()->extra.onlyWith));
    ShowOutdated();
}

/// Numbers of another vehicle than the mask's take its colour.
void CMDIRechDialog::ShowOwnVehicles()
{
    framework::Window* window = m_hWnd == nullptr ? nullptr : framework::WindowOf(*this);
    if (window == nullptr)
        return;
    const std::int64_t ofMask = ColorVehicle();
    const bool had = std::any_of(window->children.begin(), window->children.end(),
                                 [](const auto& control) { return control->ownVehicle.has_value(); });
    for (const auto& binding : Bindings()) {
        const std::int64_t vehicle = ColorVehicleOf(binding->Field());
        if (vehicle == ofMask && !had) // as in most masks
            continue;
        framework::Window* control = window->Child(binding->ControlId());
        if (control == nullptr || control->kind != framework::Kind::edit)
            continue;
        const std::int64_t shown = m_data.IsFzgValid(vehicle) ? vehicle : -1;
        const auto own = vehicle == ofMask ? std::nullopt : std::optional(shown);
        if (control->ownVehicle == own)
            continue;
        control->ownVehicle = own;
        framework::Changed(*control);
    }
}

void CMDIRechDialog::ResultsComputed(std::initializer_list<UINT> exceptOf)
{
    const RecordFields fields = DescribeRecord();
    // Nothing but zeros is no result.
    m_results = HasResult(fields) ? Results::ofInputs : Results::none;
    m_resultInputs = InputsOf(fields);
    m_olderResults = exceptOf;
    ++m_calculations;
}

void CMDIRechDialog::ResultsFailed()
{
    m_results = HasResult(DescribeRecord()) ? Results::ofOthers : Results::none;
}

void CMDIRechDialog::ResultsCleared()
{
    m_results = Results::none;
    m_olderResults.clear();
    ++m_calculations;
}

bool CMDIRechDialog::ResultsAreOutdated()
{
    if (m_results != Results::ofInputs)
        return m_results == Results::ofOthers;
    return InputsOf(DescribeRecord()) != m_resultInputs;
}

bool CMDIRechDialog::IsOutdated(UINT controlId)
{
    const CBinding* binding = FindBinding(controlId);
    if (binding == nullptr || binding->Role() != FieldRole::result)
        return false;
    return std::find(m_olderResults.begin(), m_olderResults.end(), controlId) != m_olderResults.end() ||
           ResultsAreOutdated();
}

void CMDIRechDialog::ShowOutdated()
{
    framework::Window* window = m_hWnd == nullptr ? nullptr : framework::WindowOf(*this);
    if (window == nullptr)
        return;
    const bool all = ResultsAreOutdated();
    if (!all && m_olderResults.empty() && !m_marked)
        return;
    m_marked = all || !m_olderResults.empty();
    const auto mark = [](framework::Window& control, bool outdated) {
        if (control.outdated != outdated) {
            control.outdated = outdated;
            framework::Changed(control);
        }
    };
    for (const auto& control : window->children) {
        const CBinding* binding = FindBinding(control->id);
        const bool result = binding != nullptr && binding->Role() == FieldRole::result;
        const bool older = std::find(m_olderResults.begin(), m_olderResults.end(), control->id) != m_olderResults.end();
        const bool shows = control->kind == framework::Kind::field ||
                           (control->kind == framework::Kind::grid && krn::IsResult(*control));
        mark(*control, (result && (all || older)) || (shows && all));
    }
    for (const auto& frame : window->children)
        if (frame->kind == framework::Kind::group)
            mark(*frame, std::any_of(window->children.begin(), window->children.end(), [&](const auto& control) {
                return control->outdated && control->kind != framework::Kind::group &&
                       Contains(frame->rect, control->rect);
            }));
    mark(*window, all);
}

LRESULT CMDIRechDialog::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_RUV_UPDATEDIALOG || message == WM_RUV_EDITCHANGED) {
        UpdateDialog();
        return 0;
    }
    return CMDIDialog::DefWindowProc(message, wParam, lParam);
}

LRESULT CMDIRechDialog::EntryAsStep(WPARAM controlId, LPARAM)
{
    IncValue(static_cast<int>(controlId));
    return 0;
}

bool CMDIRechDialog::ConfirmClear()
{
    constexpr UINT kClearAll = 1052;
    return FehlerMeldung(this, kClearAll) == fehlerJa;
}

void CMDIRechDialog::ShowText(UINT controlId, UINT textId, std::span<const ShownNumber> numbers)
{
    CWnd* control = GetDlgItem(controlId);
    if (control == nullptr)
        return;
    std::string text = textId == 0 ? std::string{} : LoadRuvString(textId);
    std::size_t index = 0;
    for (const ShownNumber& number : numbers) {
        const std::string place = "{" + std::to_string(index++) + "}";
        if (const auto at = text.find(place); at != std::string::npos)
            text.replace(at, place.size(), WithUnit(number));
    }
    ShowText(controlId, text);
}

void CMDIRechDialog::ShowText(UINT controlId, const std::string& utf8)
{
    CWnd* control = GetDlgItem(controlId);
    if (control == nullptr)
        return;
    control->SetWindowText(utf8);
    framework::WindowOf(*control)->prompt = false;
}

void CMDIRechDialog::ShowPrompt(UINT controlId, UINT textId)
{
    ShowPrompt(controlId, textId == 0 ? std::string() : LoadRuvString(textId));
}

void CMDIRechDialog::ShowPrompt(UINT controlId, const std::string& utf8)
{
    ShowText(controlId, utf8);
    if (CWnd* control = GetDlgItem(controlId))
        framework::WindowOf(*control)->prompt = true;
}

bool CMDIRechDialog::IsChecked(UINT controlId) const
{
    const CWnd* control = GetDlgItem(controlId);
    return control != nullptr && static_cast<const CButton*>(control)->GetCheck() != 0;
}

void CMDIRechDialog::Check(UINT controlId, bool checked)
{
    if (CWnd* control = GetDlgItem(controlId))
        static_cast<CButton*>(control)->SetCheck(checked ? 1 : 0);
}

CWnd* CMDIRechDialog::MainWindow()
{
    const CWinThread* thread = AfxGetThread();
    return thread == nullptr ? nullptr : thread->GetMainWnd();
}

void CMDIRechDialog::ShutDownWindow()
{
    krn::UnregisterMask(*this);
    CMDIDialog::ShutDownWindow();
}

UINT CMDIRechDialog::GetDlgResIDForAssistant()
{
    return GetDialogId();
}

void CMDIRechDialog::ShowHelp()
{
    framework::UiThread::Current()->Front().ShowHelp(GetDlgResIDForAssistant());
}

void CMDIRechDialog::GlobalGeoDatChanged(UINT_PTR)
{
    if (ColorVehicle() >= 0)
        UpdateDialog();
}

void CMDIRechDialog::GlobalWZDatChanged(UINT_PTR)
{
    if (ColorVehicle() >= 0)
        UpdateDialog();
}

void CMDIRechDialog::GlobalUPaChanged(UINT_PTR) {}

std::optional<ReadRows> CMDIRechDialog::RowsRead()
{
    return std::nullopt;
}

RecordFields CMDIRechDialog::DescribeRecord()
{
    return {};
}

CMDIRechDialog* CMDIRechDialog::FindMDIRechDialogByDlgId(CRuvData& data, char* dialogId)
{
    const auto wanted = reinterpret_cast<UINT_PTR>(dialogId);
    for (CMDIRechDialog* mask : krn::OpenMasks(data))
        if (mask->GetDialogId() == wanted)
            return mask;
    return nullptr;
}

CKfzDaten& CMDIRechDialog::KfzDat(std::size_t index) const
{
    return m_data.KfzDat(index);
}

CWegZeitDat& CMDIRechDialog::WZDat(std::size_t index) const
{
    return m_data.WZDat(index);
}

CUBEParameter& CMDIRechDialog::UPa(std::size_t index) const
{
    return m_data.UPa(index);
}
