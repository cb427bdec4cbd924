// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the files of the case and of the settings share.
#pragma once

#include "base/JsonValue.h"
#include "host/HostTypes.h"

#include <optional>
#include <span>
#include <string_view>

namespace casefile
{

/// "#rrggbb". Only the three colour bytes are written.
base::JsonValue ColorToJson(COLORREF color);
std::optional<COLORREF> ColorFromJson(const base::JsonValue& value);

/// The members whose names are not among `known`.
base::JsonValue::Object OtherMembers(const base::JsonValue::Object& object, std::span<const std::string_view> known);

/// Appends `more` behind the members of `object`.
void Append(base::JsonValue::Object& object, const base::JsonValue::Object& more);

} // namespace casefile
