// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Options.h"

#include "base/NumberText.h"
#include "casefile/Settings.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <charconv>

namespace cli
{
namespace
{

constexpr unsigned kMostJobs = 1024;
constexpr double kShortestTimeout = 0.1;    // s
constexpr double kLongestTimeout = 86400.0; // s

/// Options without a value.
struct Flag {
    std::string_view name;
    bool Options::*member;
};
constexpr Flag kFlags[] = {
    {"--json", &Options::json},
    {"--worker", &Options::worker},
    {"--progress", &Options::progress},
    {"--force", &Options::force},
    {"--save-refused", &Options::saveRefused},
};

std::optional<unsigned> ParseJobs(const std::string& text)
{
    unsigned jobs = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    const bool whole = failure == std::errc{} && end == text.data() + text.size();
    return whole && jobs >= 1 && jobs <= kMostJobs ? std::optional(jobs) : std::nullopt;
}

/// Takes the value of an option; what is expected of it when it is none.
std::string TakeValue(Options& options, std::string_view name, const std::string& value)
{
    if (name == "--units") {
        if (value != "metric" && value != "imperial")
            return "metric oder imperial";
        options.units = value == "metric" ? UnitsSystem::metric : UnitsSystem::imperial;
    } else if (name == "--transfer") {
        if (value != "on" && value != "off")
            return "on oder off";
        options.transfer = value == "on";
    } else if (name == "--jobs") {
        options.jobs = ParseJobs(value);
        if (!options.jobs)
            return "eine Zahl von 1 bis " + std::to_string(kMostJobs);
    } else if (name == "--line-timeout") {
        options.lineTimeout = base::ParseNumber(value);
        if (!options.lineTimeout ||
            !(*options.lineTimeout >= kShortestTimeout && *options.lineTimeout <= kLongestTimeout))
            return "eine Zahl von 0,1 bis 86400 (Sekunden)";
    } else {
        if (value.empty())
            return "ein Dateiname";
        (name == "--case" ? options.caseFile : name == "--save" ? options.saveFile : options.configFile) = value;
    }
    return {};
}

} // namespace

Options ParseOptions(const std::vector<std::string>& arguments, std::initializer_list<std::string_view> known)
{
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!argument.starts_with("--")) {
            options.rest.push_back(argument);
            continue;
        }
        if (argument == "--") {
            options.rest.insert(options.rest.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                                arguments.end());
            break;
        }
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            options.error = "Option " + name + " gibt es hier nicht";
            return options;
        }
        if (const auto flag = std::find_if(std::begin(kFlags), std::end(kFlags),
                                           [&](const Flag& entry) { return entry.name == name; });
            flag != std::end(kFlags)) {
            options.*flag->member = true;
            continue;
        }
        if (equals == std::string::npos && i + 1 == arguments.size()) {
            options.error = "Option " + name + ": der Wert fehlt";
            return options;
        }
        const std::string value = equals == std::string::npos ? arguments[++i] : argument.substr(equals + 1);
        const std::string expected = TakeValue(options, name, value);
        if (!expected.empty()) {
            options.error = "Option " + name + ": „" + value + "“ geht nicht, erwartet wird " + expected;
            return options;
        }
    }
    return options;
}

std::optional<std::string> ApplySettings(const Options& options)
{
    if (!options.configFile.empty()) {
        if (!base::FileExists(options.configFile))
            return options.configFile + ": die Datei gibt es nicht";
        if (std::string warning = casefile::LoadSettings(options.configFile, casefile::SettingsUse::onlyWhole);
            !warning.empty())
            return warning;
    }
    if (options.transfer)
        RuvCfg.transferData = *options.transfer;
    if (options.units)
        UnitsSystemConfiguration::GetInstance().SetSystem(*options.units);
    return std::nullopt;
}

} // namespace cli
