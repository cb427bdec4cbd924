// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The user's settings: RuvCfg and the unit system, kept in a JSON file.
#pragma once

#include "base/AtomicFile.h"

#include <string>

namespace casefile
{

/// settings.json in the user's configuration folder ($XDG_CONFIG_HOME/tavelin, ~/.config/tavelin, %APPDATA%\Tavelin).
/// Empty when the environment names no such folder.
std::string DefaultSettingsPath();

enum class SettingsUse {
    asFarAsGood, ///< defaults stand in for what cannot be used
    onlyWhole,   ///< a file with anything that cannot be used, or that nobody knows, changes nothing
};

/// Takes the file's settings into use; a setting that the file does not hold gets its default. Returns a German
/// warning when the file, or a setting in it, cannot be used; a missing file gives none.
std::string LoadSettings(const std::string& path, SettingsUse use = SettingsUse::asFarAsGood);

/// Writes the settings in use, creating the folder when missing. What a newer program keeps in the file stays. A file
/// that LoadSettings warns of is kept beside it as PATH.bak.
base::FileResult SaveSettings(const std::string& path, const base::FileCalls& calls = base::SystemFileCalls());

} // namespace casefile
