// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Units.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli
{

/// What a verb was called with. Everything that begins with two dashes is an option, so that -5 is a number and
/// 4665=-5 an action; after a bare -- nothing is.
struct Options {
    bool json = false;
    std::string caseFile;
    std::string saveFile;
    std::string configFile;
    std::optional<bool> transfer;
    std::optional<UnitsSystem> units;
    std::optional<unsigned> jobs;
    std::optional<double> lineTimeout; ///< s
    bool worker = false;
    bool progress = false;
    bool saveRefused = false;
    bool force = false;
    std::vector<std::string> rest;
    std::string error; ///< what is wrong with the call, empty when nothing is
};

/// `known` are the options the verb has, with their dashes. Values follow as the next argument or after '='.
Options ParseOptions(const std::vector<std::string>& arguments, std::initializer_list<std::string_view> known);

/// Takes the settings of the options into use: the given settings file, or the program's defaults, not those of the
/// user: the same call gives the same result on every machine. Returns what is wrong with the file.
std::optional<std::string> ApplySettings(const Options& options);

} // namespace cli
