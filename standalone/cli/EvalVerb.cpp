// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Functions without a mask: the quadratic solver and the kinematics the masks share.
#include "cli/Verbs.h"

#include "cli/ExitCode.h"
#include "cli/JsonText.h"
#include "cli/Options.h"
#include "frame/Kinematics.h"
#include "host/Quadratgl.h"
#include "krn/NumberText.h"

#include <algorithm>
#include <array>
#include <span>

namespace cli
{
namespace
{

struct Quantity {
    std::string_view name;
    std::string_view unit;
};

using Arguments = std::span<const double>;
/// In the order of the function's results; a result that does not exist is empty.
using Results = std::vector<std::optional<double>>;

struct Function {
    std::string_view name;
    std::vector<Quantity> arguments;
    std::vector<Quantity> results;
    Results (*call)(Arguments);
};

Results CallQuadratgl(Arguments a)
{
    double x1 = 0.0;
    double x2 = 0.0;
    int count = 0;
    Quadratgl(a[0], a[1], a[2], x1, x2, count);
    const auto root = [&](int number, double x) { return count >= number ? std::optional(x) : std::nullopt; };
    return {count, root(1, x1), root(2, x2)};
}

Results CallAusEinScheren(Arguments a)
{
    double length = 0.0;
    AusEinScheren(a[0], a[1], a[2], a[3], length);
    return {length};
}

Results CallWegintegral(Arguments a)
{
    double pathLength = 0.0;
    double surplus = 0.0;
    Wegintegral(a[0], a[1], pathLength, surplus);
    return {pathLength, surplus};
}

const std::vector<Function>& Functions()
{
    static const std::vector<Function> functions{
        {"AusEinScheren",
         {{"curveRadius", "m"}, {"lateralOffset", "m"}, {"speed", "m/s"}, {"lateralAcceleration", "m/s²"}},
         {{"length", "m"}},
         CallAusEinScheren},
        {"Quadratgl", {{"a", ""}, {"b", ""}, {"c", ""}}, {{"count", ""}, {"x1", ""}, {"x2", ""}}, CallQuadratgl},
        {"Wegintegral",
         {{"amplitudeParameter", "m"}, {"baseLength", "m"}},
         {{"pathLength", "m"}, {"surplus", "m"}},
         CallWegintegral},
    };
    return functions;
}

std::string Listed(const std::vector<Quantity>& quantities)
{
    std::string text;
    for (const Quantity& quantity : quantities) {
        text += text.empty() ? "" : ", ";
        text += quantity.name;
        if (!quantity.unit.empty())
            text += " [" + std::string(quantity.unit) + "]";
    }
    return text;
}

void WriteQuantities(JsonText& json, std::string_view key, const std::vector<Quantity>& quantities)
{
    json.Key(key).BeginArray();
    for (const Quantity& quantity : quantities) {
        json.BeginObject();
        json.Key("name").Text(quantity.name);
        json.Key("unit").Text(quantity.unit);
        json.EndObject();
    }
    json.EndArray();
}

int List(bool asJson)
{
    if (!asJson) {
        std::vector<std::vector<std::string>> rows{{"Funktion", "Werte", "Ergebnisse"}};
        for (const Function& function : Functions())
            rows.push_back({std::string(function.name), Listed(function.arguments), Listed(function.results)});
        Print(TableText(rows));
        return exitDone;
    }
    JsonText json;
    json.BeginArray();
    for (const Function& function : Functions()) {
        json.BeginObject();
        json.Key("name").Text(function.name);
        WriteQuantities(json, "arguments", function.arguments);
        WriteQuantities(json, "results", function.results);
        json.EndObject();
    }
    json.EndArray();
    Print(json.Str() + "\n");
    return exitDone;
}

void PrintResults(const Function& function, Arguments arguments, const Results& results, bool asJson)
{
    if (!asJson) {
        std::vector<std::vector<std::string>> rows;
        for (std::size_t i = 0; i < results.size(); ++i)
            rows.push_back({std::string(function.results[i].name), results[i] ? NumberText(*results[i]) : "–",
                            std::string(function.results[i].unit)});
        Print(TableText(rows));
        return;
    }
    JsonText json;
    json.BeginObject();
    json.Key("function").Text(function.name);
    json.Key("arguments").BeginObject();
    for (std::size_t i = 0; i < arguments.size(); ++i)
        json.Key(function.arguments[i].name).Number(arguments[i]);
    json.EndObject();
    json.Key("results").BeginObject();
    for (std::size_t i = 0; i < results.size(); ++i) {
        json.Key(function.results[i].name);
        if (results[i])
            json.Number(*results[i]);
        else
            json.Null();
    }
    json.EndObject();
    json.EndObject();
    Print(json.Str() + "\n");
}

} // namespace

int EvalVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(arguments, {"--json"});
    if (!options.error.empty())
        return Complain(exitUsage, options.error);
    if (options.rest.empty())
        return List(options.json);
    const std::string& name = options.rest.front();
    const auto function =
        std::find_if(Functions().begin(), Functions().end(), [&](const auto& f) { return f.name == name; });
    if (function == Functions().end())
        return Complain(exitUsage, "Funktion „" + name + "“ gibt es nicht; „tavelin-cli eval“ nennt alle");
    if (options.rest.size() - 1 != function->arguments.size())
        return Complain(exitUsage, name + " erwartet " + std::to_string(function->arguments.size()) +
                                       " Werte: " + Listed(function->arguments));
    std::vector<double> values;
    for (std::size_t i = 1; i < options.rest.size(); ++i) {
        const auto value = krn::ParseNumber(options.rest[i]);
        if (!value)
            return Complain(exitUsage, name + ": „" + options.rest[i] + "“ ist keine Zahl");
        values.push_back(*value);
    }
    PrintResults(*function, values, function->call(values), options.json);
    return exitDone;
}

} // namespace cli
