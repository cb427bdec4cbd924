// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a control of a mask means to its user: label, unit and role, as its binding says.
#pragma once

#include "framework/Window.h"
#include "host/NumberTable.h"

#include <string>

class CBinding;
class CMDIDialog;
struct CEditColors;

namespace krn
{

/// Number of the static that names the unit of an edit.
constexpr UINT UnitLabelId(UINT edit)
{
    constexpr UINT kUnitLabel = 10000;
    return kUnitLabel + edit;
}

/// Creates the bindings of the numbers whose controls lie on the dialog.
void BindNumbers(CMDIDialog& dialog, const RecordFields& fields, const CEditColors* colors);

/// The binding of a control, or null.
CBinding* BindingOf(const framework::Window& control);
/// What names the control, without colon.
std::string LabelOf(const framework::Window& control);
/// The unit the user reads beside it, or "".
std::string UnitOf(const framework::Window& control);
/// The mask computes what the control shows.
bool IsResult(const framework::Window& control);
/// A static that only names a field or its unit and says nothing of its own.
bool BelongsToField(const framework::Window& label);

} // namespace krn
