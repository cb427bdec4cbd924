// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/Settings.h"

#include "casefile/JsonFields.h"
#include "host/RuvCfg.h"
#include "host/Units.h"
#include "krn/Tiles.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

CRuvCfg RuvCfg;

namespace casefile
{
namespace
{

constexpr const char* kFormat = "tavelin-settings";
constexpr std::size_t kMostBytes = std::size_t{1} << 20U;
constexpr double kLongestTime = 100.0; // s, as in the masks

struct Settings {
    CRuvCfg cfg{};
    bool imperial = false;
};

struct Switch {
    std::string_view name;
    bool CRuvCfg::*field;
};
constexpr Switch kSwitches[] = {
    {"transferData", &CRuvCfg::transferData},
    {"useVehicleColors", &CRuvCfg::useVehicleColors},
    {"decimalPoint", &CRuvCfg::decimalPoint},
};

struct Time {
    std::string_view name;
    double CRuvCfg::*field;
};
constexpr Time kTimes[] = {
    {"defaultReactionTime", &CRuvCfg::defaultReactionTime},
    {"defaultThresholdTime", &CRuvCfg::defaultThresholdTime},
};

bool IsTime(double seconds)
{
    return seconds >= 0.0 && seconds <= kLongestTime;
}

struct Color {
    std::string_view name;
    COLORREF& (*field)(CRuvCfg&);
};
constexpr Color kColors[] = {
    {"editText", [](CRuvCfg& cfg) -> COLORREF& { return cfg.editColors.text; }},
    {"editBackground", [](CRuvCfg& cfg) -> COLORREF& { return cfg.editColors.background; }},
    {"resultText", [](CRuvCfg& cfg) -> COLORREF& { return cfg.resultColors.text; }},
    {"resultBackground", [](CRuvCfg& cfg) -> COLORREF& { return cfg.resultColors.background; }},
    {"diagramBackground", [](CRuvCfg& cfg) -> COLORREF& { return cfg.diagramBackground; }},
    {"diagramPlot", [](CRuvCfg& cfg) -> COLORREF& { return cfg.diagramPlot; }},
    {"barrierBremsungDettinger", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.bremsungDettinger; }},
    {"barrierGlobalRau", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.globalRau; }},
    {"barrierKuehnelVerzoegerung", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.kuehnelVerzoegerung; }},
    {"barrierRitterKrieg", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.ritterKrieg; }},
    {"barrierFrontscheibe", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.frontscheibe; }},
    {"barrierScheinwerferHaupt", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.scheinwerferHaupt; }},
    {"barrierScheinwerferGesamt", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.scheinwerferGesamt; }},
    {"barrierAbwicklung", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.abwicklung; }},
    {"barrierGeschwindigkeit", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.geschwindigkeit; }},
};

constexpr std::pair<std::string_view, CKartenCfg::Quelle> kMapSources[] = {
    {"none", CKartenCfg::Quelle::keine},
    {"file", CKartenCfg::Quelle::datei},
    {"server", CKartenCfg::Quelle::server},
};
constexpr std::pair<std::string_view, std::string CKartenCfg::*> kMapTexts[] = {
    {"file", &CKartenCfg::datei},
    {"server", &CKartenCfg::server},
    {"attribution", &CKartenCfg::herkunft},
};

constexpr std::string_view kKnown[] = {"format",
                                       "transferData",
                                       "useVehicleColors",
                                       "decimalPoint",
                                       "defaultReactionTime",
                                       "defaultThresholdTime",
                                       "units",
                                       "colors",
                                       "map"};

/// What a settings file says.
struct FileContent {
    Settings settings;
    base::JsonValue::Object unknown;
    base::JsonValue::Object unknownColors;
    base::JsonValue::Object unknownMap;
    std::vector<std::string> refused; ///< members that are not what they should be
    std::string damage;               ///< why the file as a whole cannot be used
};

void TakeColors(const base::JsonValue& value, FileContent& content)
{
    const auto* colors = value.As<base::JsonValue::Object>();
    if (!colors) {
        content.refused.emplace_back("colors");
        return;
    }
    std::vector<std::string_view> known;
    for (const Color& color : kColors) {
        known.push_back(color.name);
        if (const base::JsonValue* text = Find(*colors, color.name)) {
            if (const auto parsed = ColorFromJson(*text))
                color.field(content.settings.cfg) = *parsed;
            else
                content.refused.push_back("colors/" + std::string(color.name));
        }
    }
    content.unknownColors = OtherMembers(*colors, known);
}

/// A server whose address is none is not used, whatever the source.
void TakeMap(const base::JsonValue& value, FileContent& content)
{
    const auto* map = value.As<base::JsonValue::Object>();
    if (!map) {
        content.refused.emplace_back("map");
        return;
    }
    CKartenCfg& karte = content.settings.cfg.karte;
    std::vector<std::string_view> known{"source"};
    for (const auto& [name, field] : kMapTexts) {
        known.push_back(name);
        const base::JsonValue* text = Find(*map, name);
        const auto* words = text ? text->As<std::string>() : nullptr;
        if (words && (field != &CKartenCfg::server || words->empty() || krn::TileAddressProblem(*words).empty()))
            karte.*field = *words;
        else if (text)
            content.refused.push_back("map/" + std::string(name));
    }
    if (const base::JsonValue* source = Find(*map, "source")) {
        const auto* name = source->As<std::string>();
        const auto* const entry = std::find_if(std::begin(kMapSources), std::end(kMapSources),
                                               [&](const auto& one) { return name && *name == one.first; });
        if (entry != std::end(kMapSources))
            karte.quelle = entry->second;
        else
            content.refused.emplace_back("map/source");
    }
    if (karte.quelle == CKartenCfg::Quelle::server && karte.server.empty())
        karte.quelle = CKartenCfg::Quelle::keine;
    content.unknownMap = OtherMembers(*map, known);
}

FileContent Interpret(const std::string& bytes)
{
    FileContent content;
    const base::JsonParsed parsed = base::ParseJson(bytes);
    const auto* root = parsed.value ? parsed.value->As<base::JsonValue::Object>() : nullptr;
    if (!root) {
        content.damage = parsed.value ? "ist keine Sammlung von Einstellungen" : parsed.error;
        return content;
    }
    const base::JsonValue* format = Find(*root, "format");
    const auto* formatName = format ? format->As<std::string>() : nullptr;
    if (format && (!formatName || *formatName != kFormat)) {
        content.damage = "ist keine Datei mit Einstellungen";
        return content;
    }
    content.unknown = OtherMembers(*root, kKnown);
    for (const Switch& entry : kSwitches) {
        if (const base::JsonValue* value = Find(*root, entry.name)) {
            if (const auto* on = value->As<bool>())
                content.settings.cfg.*entry.field = *on;
            else
                content.refused.emplace_back(entry.name);
        }
    }
    for (const Time& entry : kTimes) {
        if (const base::JsonValue* value = Find(*root, entry.name)) {
            const auto seconds = value->Number();
            if (seconds && IsTime(*seconds))
                content.settings.cfg.*entry.field = *seconds;
            else
                content.refused.emplace_back(entry.name);
        }
    }
    if (const base::JsonValue* value = Find(*root, "units")) {
        const auto* name = value->As<std::string>();
        if (name && (*name == "metric" || *name == "imperial"))
            content.settings.imperial = *name == "imperial";
        else
            content.refused.emplace_back("units");
    }
    if (const base::JsonValue* value = Find(*root, "colors"))
        TakeColors(*value, content);
    if (const base::JsonValue* value = Find(*root, "map"))
        TakeMap(*value, content);
    return content;
}

bool IsSound(const FileContent& content)
{
    return content.damage.empty() && content.refused.empty();
}

std::string ToText(const Settings& settings, const FileContent& before)
{
    base::JsonValue::Object root{{"format", std::string(kFormat)}};
    for (const Switch& entry : kSwitches)
        root.push_back({std::string(entry.name), settings.cfg.*entry.field});
    for (const Time& entry : kTimes) {
        const double seconds = settings.cfg.*entry.field;
        root.push_back({std::string(entry.name), IsTime(seconds) ? seconds : CRuvCfg().*entry.field});
    }
    root.push_back({"units", std::string(settings.imperial ? "imperial" : "metric")});
    base::JsonValue::Object colors;
    CRuvCfg cfg = settings.cfg;
    for (const Color& color : kColors)
        colors.push_back({std::string(color.name), ColorToJson(color.field(cfg))});
    Append(colors, before.unknownColors);
    root.push_back({"colors", std::move(colors)});
    base::JsonValue::Object map;
    for (const auto& [name, source] : kMapSources)
        if (source == settings.cfg.karte.quelle)
            map.push_back({"source", std::string(name)});
    for (const auto& [name, field] : kMapTexts)
        map.push_back({std::string(name), settings.cfg.karte.*field});
    Append(map, before.unknownMap);
    root.push_back({"map", std::move(map)});
    Append(root, before.unknown);
    return base::WriteJson(std::move(root), base::JsonLayout::readable);
}

} // namespace

std::string DefaultSettingsPath()
{
    const std::string folder = base::UserConfigFolder();
    return folder.empty() ? folder : folder + "/settings.json";
}

std::string LoadSettings(const std::string& path, SettingsUse use)
{
    const bool whole = use == SettingsUse::onlyWhole;
    FileContent content;
    std::string warning;
    if (base::FileExists(path)) {
        std::string bytes;
        if (const base::FileResult read = base::ReadWholeFile(path, bytes, kMostBytes))
            content = Interpret(bytes);
        else
            warning = read.Text() + (whole ? "" : " Es gelten die Voreinstellungen.");
    }
    if (!content.damage.empty()) {
        warning = "Die Datei „" + path + "“ " + content.damage + (whole ? "." : ". Es gelten die Voreinstellungen.");
    } else if (!content.refused.empty()) {
        warning = "In den Einstellungen „" + path + "“ ist ungültig:";
        for (const std::string& name : content.refused)
            warning += (&name == &content.refused.front() ? " " : ", ") + name;
        warning += whole ? "." : ". Dort gelten die Voreinstellungen.";
    } else if (whole && !(content.unknown.empty() && content.unknownColors.empty() && content.unknownMap.empty())) {
        warning = "In den Einstellungen „" + path + "“ ist unbekannt:";
        const char* joint = " ";
        for (const base::JsonValue::Member& member : content.unknown)
            warning += std::exchange(joint, ", ") + member.name;
        for (const base::JsonValue::Member& member : content.unknownColors)
            warning += std::exchange(joint, ", ") + ("colors/" + member.name);
        for (const base::JsonValue::Member& member : content.unknownMap)
            warning += std::exchange(joint, ", ") + ("map/" + member.name);
        warning += ".";
    }
    if (use == SettingsUse::onlyWhole && !warning.empty())
        return warning;
    RuvCfg = content.settings.cfg;
    UnitsSystemConfiguration::GetInstance().SetSystem(content.settings.imperial ? UnitsSystem::imperial
                                                                                : UnitsSystem::metric);
    return warning;
}

base::FileResult SaveSettings(const std::string& path, const base::FileCalls& calls)
{
    FileContent before;
    if (base::FileExists(path)) {
        std::string bytes;
        if (const base::FileResult read = base::ReadWholeFile(path, bytes, kMostBytes); !read)
            return read;
        before = Interpret(bytes);
        if (!IsSound(before)) {
            if (const base::FileResult kept = base::WriteFileAtomically(path + ".bak", bytes, calls); !kept)
                return kept;
        }
    } else if (const auto native = base::NativePath(path)) {
        std::error_code ignored; // the write that follows says what is wrong
        std::filesystem::create_directories(native->parent_path(), ignored);
    }
    Settings settings{RuvCfg};
    settings.imperial = UnitsSystemConfiguration::GetInstance().System() == UnitsSystem::imperial;
    return base::WriteFileAtomically(path, ToText(settings, before), calls);
}

} // namespace casefile
