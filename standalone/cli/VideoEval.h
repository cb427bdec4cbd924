// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Functions of the vision library for scripts: they take a file and give a JSON object.
#pragma once

#include "cli/ExitCode.h"

#include <string>
#include <string_view>
#include <vector>

namespace cli
{

struct FileResult {
    Failure failure{exitDone, {}}; ///< exitDone with results
    std::string json;              ///< an object
};

struct FileFunction {
    std::string_view name;
    std::string_view takes;   ///< German, for the list
    std::string_view results; ///< names, for the list
    FileResult (*call)(const std::string& path);
};

/// Times, size and rotation of the pictures of a video.
FileResult EvalVideoIndex(const std::string& path);
/// Calibration, tracks and speeds of what a JSON file says was seen in a video.
FileResult EvalVideoSpeeds(const std::string& path);

} // namespace cli
