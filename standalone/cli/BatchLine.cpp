// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/BatchLine.h"

#include "base/JsonValue.h"
#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/JsonText.h"
#include "cli/Session.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <array>

namespace cli
{
namespace
{

using base::JsonValue;

/// A mask can switch the transfer option; the lines after it must not see that.
class SettingsOfTheCall
{
  public:
    SettingsOfTheCall() = default;
    ~SettingsOfTheCall() { RuvCfg = m_settings; }
    SettingsOfTheCall(const SettingsOfTheCall&) = delete;
    SettingsOfTheCall& operator=(const SettingsOfTheCall&) = delete;

  private:
    const CRuvCfg m_settings = RuvCfg;
};

struct Line {
    std::string id = "null"; ///< JSON
    UINT mask = 0;
    std::shared_ptr<CRuvData> data;
    std::vector<Action> actions;
    std::optional<std::vector<std::string>> fields; ///< the record fields that the answer is to hold; nothing for all
};

/// The names, each once.
std::optional<Failure> ReadFields(const JsonValue* value, std::optional<std::vector<std::string>>& fields)
{
    if (value == nullptr)
        return std::nullopt;
    const auto* list = value->As<JsonValue::Array>();
    if (list == nullptr)
        return Failure{exitUsage, "„fields“ ist keine Liste"};
    fields.emplace();
    for (const JsonValue& item : *list) {
        const auto* name = item.As<std::string>();
        if (name == nullptr)
            return Failure{exitUsage, "„fields“ enthält etwas anderes als Texte"};
        if (std::find(fields->begin(), fields->end(), *name) != fields->end())
            return Failure{exitUsage, "„fields“ nennt „" + *name + "“ zweimal"};
        fields->push_back(*name);
    }
    return std::nullopt;
}

std::optional<Failure> ReadActions(const JsonValue* value, std::vector<Action>& actions)
{
    if (value == nullptr)
        return std::nullopt;
    const auto* list = value->As<JsonValue::Array>();
    if (list == nullptr)
        return Failure{exitUsage, "„actions“ ist keine Liste"};
    for (const JsonValue& item : *list) {
        const auto* text = item.As<std::string>();
        if (text == nullptr)
            return Failure{exitUsage, "„actions“ enthält etwas anderes als Texte"};
        ParsedAction parsed = ParseAction(*text);
        if (!parsed.action)
            return Failure{exitUsage, std::move(parsed.error)};
        actions.push_back(std::move(*parsed.action));
    }
    return std::nullopt;
}

/// The case of lines that name none. Making one anew takes longer than most lines compute, so it is emptied instead.
std::shared_ptr<CRuvData> ExampleAgain()
{
    static const auto data = std::make_shared<CRuvData>();
    data->Clear(); // the line before it has ended, and its mask with it
    casefile::AddExampleCars(*data);
    return data;
}

std::optional<Failure> ReadCase(const JsonValue* value, std::shared_ptr<CRuvData>& data)
{
    if (value == nullptr) {
        data = ExampleAgain();
        return std::nullopt;
    }
    const auto* path = value->As<std::string>();
    CaseInput input = path != nullptr ? CaseFromFile(*path) : CaseFromJson(*value);
    data = std::move(input.data);
    return data ? std::nullopt : std::optional(Failure{exitFile, "„case“: " + input.error});
}

/// The text of the value that starts at `at` in a well-formed JSON text, up to what follows it.
std::string_view ValueText(std::string_view json, std::size_t at)
{
    const std::size_t start = at;
    int depth = 0;
    for (bool quoted = false; at < json.size(); ++at) {
        const char c = json[at];
        if (quoted) {
            at += c == '\\' ? 1 : 0;
            quoted = c != '"';
        } else if (c == '"') {
            quoted = true;
        } else if (c == '{' || c == '[') {
            ++depth;
        } else if (depth == 0 && (c == ',' || c == '}' || c == ']')) {
            break;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    std::string_view value = json.substr(start, at - start);
    value.remove_suffix(value.size() - 1 - value.find_last_not_of(" \t\r\n"));
    return value;
}

/// The very text that the line gives as its id, digits, blanks and escapes included; "null" without one. `object` is
/// what the line was read as.
std::string IdText(std::string_view line, const JsonValue::Object& object)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    std::size_t at = line.find('{') + 1;
    for (const JsonValue::Member& member : object) {
        std::size_t end = line.find('"', at) + 1;
        while (line[end] != '"')
            end += line[end] == '\\' ? 2 : 1;
        const std::size_t value = line.find_first_not_of(kBlanks, line.find(':', end) + 1);
        const std::string_view text = ValueText(line, value);
        if (member.name == "id")
            return std::string(text);
        at = line.find(',', value + text.size()) + 1;
    }
    return "null";
}

std::optional<Failure> ReadLine(std::string_view text, Line& line)
{
    constexpr std::array<std::string_view, 5> kMembers{"id", "mask", "case", "actions", "fields"};
    const base::JsonParsed parsed = base::ParseJson(text);
    const auto* object = parsed.value ? parsed.value->As<JsonValue::Object>() : nullptr;
    if (object == nullptr)
        return Failure{exitUsage, "die Zeile " + (parsed.value ? "ist kein JSON-Objekt" : parsed.error)};
    line.id = IdText(text, *object);
    for (const auto& member : *object)
        if (std::find(kMembers.begin(), kMembers.end(), member.name) == kMembers.end())
            return Failure{exitUsage,
                           "„" + member.name + "“ ist unbekannt; möglich sind id, mask, case, actions und fields"};
    const JsonValue* mask = base::Find(*object, "mask");
    const auto number = mask == nullptr ? std::nullopt : mask->Integer();
    if (!number || *number < 0 || *number > 0xFFFF)
        return Failure{exitUsage, mask == nullptr ? "„mask“ fehlt" : "„mask“ ist keine Maskennummer"};
    line.mask = static_cast<UINT>(*number);
    if (auto failure = ReadActions(base::Find(*object, "actions"), line.actions))
        return failure;
    if (auto failure = ReadFields(base::Find(*object, "fields"), line.fields))
        return failure;
    return ReadCase(base::Find(*object, "case"), line.data);
}

std::string Failed(const std::string& id, const Failure& failure)
{
    JsonText json;
    json.BeginObject();
    json.Key("id").Raw(id);
    json.Key("exit").Integer(failure.exit);
    json.Key("error").Text(failure.text);
    json.EndObject();
    return json.Take();
}

} // namespace

std::string ComputeBatchLine(std::string_view text)
{
    Line line;
    if (const auto failure = ReadLine(text, line))
        return Failed(line.id, *failure);
    const SettingsOfTheCall settings;
    Session session(std::move(line.data));
    if (line.fields)
        session.ShowOnly(std::move(*line.fields));
    std::vector<std::string> states;
    const auto failure =
        session.Run(line.mask, line.actions, [&](const std::string& state) { states.push_back(state); });
    if (failure)
        return Failed(line.id, *failure);
    if (session.FileFailure())
        return Failed(line.id, *session.FileFailure());
    JsonText json;
    json.BeginObject();
    json.Key("id").Raw(line.id);
    json.Key("exit").Integer(session.Refused() ? exitRefused : exitDone);
    if (!states.empty()) {
        json.Key("states").BeginArray();
        for (const std::string& state : states)
            json.Raw(state);
        json.EndArray();
    }
    json.Key("result").Raw(session.State());
    json.EndObject();
    return json.Take();
}

std::string FailedBatchLine(std::string_view text, int exit, const std::string& error)
{
    const base::JsonParsed parsed = base::ParseJson(text);
    const auto* object = parsed.value ? parsed.value->As<JsonValue::Object>() : nullptr;
    return Failed(object == nullptr ? "null" : IdText(text, *object), {exit, error});
}

} // namespace cli
