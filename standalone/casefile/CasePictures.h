// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Files that a case names: the pictures under the scene and the video.
#pragma once

#include "base/JsonValue.h"
#include "host/CSzenenBild.h"
#include "host/CVideoQuelle.h"

#include <string>
#include <vector>

namespace casefile::case_file
{

inline constexpr std::string_view kSceneNames[] = {"pictures", "tracks"};

/// What is wrong with a value, and where; no reason when nothing is.
struct Fault {
    std::string pointer;
    std::string reason;
};

Fault ReadPictures(const base::JsonValue& value, const std::string& at, std::vector<CSzenenBild>& pictures);
/// What is wrong with the video of a case.
Fault CheckVideo(const CVideoQuelle& video);
base::JsonValue::Array PicturesToJson(const std::vector<CSzenenBild>& pictures, const std::string& at, Fault& fault);

} // namespace casefile::case_file
