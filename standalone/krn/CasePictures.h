// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The pictures under the scene in the case file.
#pragma once

#include "host/CSzenenBild.h"
#include "krn/JsonValue.h"

#include <string>
#include <vector>

namespace krn::case_file
{

inline constexpr std::string_view kSceneNames[] = {"pictures"};

/// What is wrong with a value, and where; no reason when nothing is.
struct Fault {
    std::string pointer;
    std::string reason;
};

Fault ReadPictures(const JsonValue& value, const std::string& at, std::vector<CSzenenBild>& pictures);
JsonValue::Array PicturesToJson(const std::vector<CSzenenBild>& pictures, const std::string& at, Fault& fault);

} // namespace krn::case_file
