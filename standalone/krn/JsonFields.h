// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the files of the case and of the settings share.
#pragma once

#include "host/HostTypes.h"
#include "krn/JsonValue.h"

#include <optional>
#include <span>
#include <string_view>

namespace krn
{

/// "#rrggbb". Only the three colour bytes are written.
JsonValue ColorToJson(COLORREF color);
std::optional<COLORREF> ColorFromJson(const JsonValue& value);

/// The members whose names are not among `known`.
JsonValue::Object OtherMembers(const JsonValue::Object& object, std::span<const std::string_view> known);

/// Appends `more` behind the members of `object`.
void Append(JsonValue::Object& object, const JsonValue::Object& more);

} // namespace krn
