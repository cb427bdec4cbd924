// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The recorded tracks under the scene in the case file.
#pragma once

#include "casefile/CasePictures.h"
#include "host/CSzenenSpur.h"

#include <string>
#include <vector>

namespace casefile::case_file
{

Fault ReadTracks(const base::JsonValue& value, const std::string& at, std::vector<CSzenenSpur>& tracks);
base::JsonValue::Array TracksToJson(const std::vector<CSzenenSpur>& tracks, const std::string& at, Fault& fault);

} // namespace casefile::case_file
