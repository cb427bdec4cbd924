// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/ControlMeaning.h"

#include "host/Bindings.h"
#include "host/CDialog.h"

#include <algorithm>

namespace krn
{

using framework::Kind;
using framework::Window;

CBinding* BindingOf(const Window& control)
{
    if (control.parent == nullptr || !control.HasId())
        return nullptr;
    const auto* dialog = dynamic_cast<const CMDIDialog*>(control.parent->object);
    return dialog == nullptr ? nullptr : dialog->FindBinding(control.id);
}

std::string LabelOf(const Window& control)
{
    const CBinding* binding = control.kind == Kind::radio || control.kind == Kind::check ? nullptr : BindingOf(control);
    std::string label = binding == nullptr ? framework::LabelOf(control) : binding->Label();
    while (!label.empty() && (label.back() == ':' || label.back() == ' '))
        label.pop_back();
    return label;
}

std::string UnitOf(const Window& control)
{
    const CBinding* binding = BindingOf(control);
    return binding == nullptr ? std::string{} : binding->UnitText();
}

bool IsResult(const Window& control)
{
    if (const CBinding* binding = BindingOf(control); binding != nullptr && binding->Spec() != nullptr)
        return binding->Role() == FieldRole::result;
    if (control.grid) {
        const auto& columns = control.grid->columns;
        return std::none_of(columns.begin(), columns.end(), [](const auto& column) { return column.editable; });
    }
    return framework::IsDrawn(control.kind) || (control.kind == Kind::edit && (control.readOnly || !control.enabled));
}

bool BelongsToField(const Window& label)
{
    const auto& siblings = label.parent->children;
    const auto at = std::find_if(siblings.begin(), siblings.end(), [&](const auto& s) { return s.get() == &label; });
    // What stands before a drawing says something of its own.
    const Window* next = at == siblings.end() || at + 1 == siblings.end() ? nullptr : (at + 1)->get();
    const bool named = next != nullptr && framework::NeedsLabel(next->kind) && !framework::IsDrawn(next->kind);
    return named || std::any_of(siblings.begin(), siblings.end(), [&](const auto& sibling) {
               return sibling->kind == Kind::edit && UnitLabelId(sibling->id) == label.id;
           });
}

} // namespace krn
