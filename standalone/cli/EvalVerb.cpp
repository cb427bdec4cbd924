// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The functions that module and host offer to others: one line each in the tables below.
#include "cli/Verbs.h"

#include "base/NumberText.h"
#include "cli/CaseInput.h"
#include "cli/ExitCode.h"
#include "cli/JsonText.h"
#include "cli/Options.h"
#include "cli/Session.h"
#include "cli/VideoEval.h"
#include "frame/Kinematics.h"
#include "frame/MaskResults.h"
#include "host/Quadratgl.h"

#include <algorithm>
#include <limits>
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

/// A function that runs a mask for its result. Its arguments are what the user does with the mask.
struct ModalFunction {
    std::string_view name;
    UINT mask;
    std::vector<Quantity> results;
    void (*call)(CRuvData& data, CWnd* parent, double* result, int* okFlag);
};

const std::vector<ModalFunction>& ModalFunctions()
{
    static const std::vector<ModalFunction> functions{
        {"AMax", 400, {{"okFlag", ""}, {"result", "m/s²"}}, AMax},
        {"VGrenz", 401, {{"okFlag", ""}, {"result", "km/h"}}, VGrenz},
    };
    return functions;
}

const std::vector<FileFunction>& FileFunctions()
{
    static const std::vector<FileFunction> functions{
        {"VideoIndex", "Videodatei", "times [s], width, height, rotation [°], counted", EvalVideoIndex},
        {"VideoSpeeds", "JSON-Datei",
         "why, rate [m], residuals [m], focal, cameraHeight [m], factor, mean, meanU, tracks", EvalVideoSpeeds},
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
        for (const ModalFunction& function : ModalFunctions())
            rows.push_back({std::string(function.name), "Aktionen in Maske " + std::to_string(function.mask),
                            Listed(function.results)});
        for (const FileFunction& function : FileFunctions())
            rows.push_back({std::string(function.name), std::string(function.takes), std::string(function.results)});
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
    for (const ModalFunction& function : ModalFunctions()) {
        json.BeginObject();
        json.Key("name").Text(function.name);
        json.Key("mask").Integer(function.mask);
        WriteQuantities(json, "results", function.results);
        json.EndObject();
    }
    for (const FileFunction& function : FileFunctions()) {
        json.BeginObject();
        json.Key("name").Text(function.name);
        json.Key("file").Text(function.takes);
        json.EndObject();
    }
    json.EndArray();
    Print(json.Str() + "\n");
    return exitDone;
}

/// `arguments` is a JSON value.
void PrintResults(std::string_view name, const std::string& arguments, const std::vector<Quantity>& quantities,
                  const Results& results, bool asJson)
{
    if (!asJson) {
        std::vector<std::vector<std::string>> rows;
        for (std::size_t i = 0; i < results.size(); ++i)
            rows.push_back({std::string(quantities[i].name), results[i] ? NumberText(*results[i]) : "–",
                            std::string(quantities[i].unit)});
        Print(TableText(rows));
        return;
    }
    JsonText json;
    json.BeginObject();
    json.Key("function").Text(name);
    json.Key("arguments").Raw(arguments);
    json.Key("results").BeginObject();
    for (std::size_t i = 0; i < results.size(); ++i) {
        json.Key(quantities[i].name);
        if (results[i])
            json.Number(*results[i]);
        else
            json.Null();
    }
    json.EndObject();
    json.EndObject();
    Print(json.Str() + "\n");
}

using Texts = std::vector<std::string>;

/// A number, or one of the words that results have for what is none.
std::optional<double> ParseArgument(const std::string& text)
{
    using Limits = std::numeric_limits<double>;
    for (const double special : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()})
        if (text == NumberText(special))
            return special;
    return base::ParseNumber(text);
}

int Evaluate(const Function& function, const Texts& texts, bool asJson)
{
    if (texts.size() != function.arguments.size())
        return Complain(exitUsage, std::string(function.name) + " erwartet " +
                                       std::to_string(function.arguments.size()) +
                                       " Werte: " + Listed(function.arguments));
    std::vector<double> values;
    JsonText arguments;
    arguments.BeginObject();
    for (const std::string& text : texts) {
        const auto value = ParseArgument(text);
        if (!value)
            return Complain(exitUsage, std::string(function.name) + ": „" + text + "“ ist keine Zahl");
        arguments.Key(function.arguments[values.size()].name).Number(*value);
        values.push_back(*value);
    }
    arguments.EndObject();
    PrintResults(function.name, arguments.Str(), function.results, function.call(values), asJson);
    return exitDone;
}

/// Why a mask that was run for its result gave none.
std::string ReasonWithout(const Session& session, const std::vector<Action>& actions)
{
    constexpr UINT kMaskOk = 100;
    if (session.Refused())
        return "eine Eingabe wurde nicht angenommen";
    const bool closed = std::any_of(actions.begin(), actions.end(), [](const Action& action) {
        const auto* press = std::get_if<PressAction>(&action);
        return press != nullptr && press->id == kMaskOk;
    });
    return closed ? "die Maske fand zu den letzten Eingaben keines"
                  : "die Maske wurde nicht mit OK (press:100) geschlossen";
}

int Evaluate(const ModalFunction& function, const Texts& texts, bool asJson)
{
    std::vector<Action> actions;
    JsonText arguments;
    arguments.BeginArray();
    for (const std::string& text : texts) {
        ParsedAction parsed = ParseAction(text);
        if (!parsed.action)
            return Complain(exitUsage, parsed.error);
        arguments.Text(text);
        actions.push_back(std::move(*parsed.action));
    }
    arguments.EndArray();
    double result = 0.0;
    int okFlag = 0;
    Session session(ExampleCase());
    const auto failure = session.RunModally(
        function.mask, actions, [&](CRuvData& data, CWnd* parent) { function.call(data, parent, &result, &okFlag); });
    if (failure)
        return Complain(failure->exit, failure->text);
    if (session.FileFailure())
        return Complain(session.FileFailure()->exit, session.FileFailure()->text);
    const auto given = okFlag != 0 ? std::optional(result) : std::nullopt;
    if (!given)
        Complain(exitDone, std::string(function.name) + ": kein Ergebnis, " + ReasonWithout(session, actions));
    PrintResults(function.name, arguments.Str(), function.results, {okFlag, given}, asJson);
    return session.Refused() ? exitRefused : exitDone;
}

/// The results are one JSON object, with --json beside the function's name as elsewhere.
int Evaluate(const FileFunction& function, const Texts& texts, bool asJson)
{
    if (texts.size() != 1)
        return Complain(exitUsage, std::string(function.name) + " erwartet eine Datei");
    const FileResult result = function.call(texts.front());
    if (result.failure.exit != exitDone)
        return Complain(result.failure.exit, texts.front() + ": " + result.failure.text);
    if (!result.failure.text.empty())
        Complain(exitDone, texts.front() + ": " + result.failure.text);
    JsonText json;
    json.BeginObject();
    json.Key("function").Text(function.name);
    json.Key("arguments").BeginObject();
    json.Key("file").Text(texts.front());
    json.EndObject();
    json.Key("results").Raw(result.json);
    json.EndObject();
    Print((asJson ? json.Str() : result.json) + "\n");
    return exitDone;
}

template <class F> const F* Named(const std::vector<F>& functions, const std::string& name)
{
    const auto found = std::find_if(functions.begin(), functions.end(), [&](const F& f) { return f.name == name; });
    return found == functions.end() ? nullptr : &*found;
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
    const Texts rest(options.rest.begin() + 1, options.rest.end());
    if (const Function* function = Named(Functions(), name))
        return Evaluate(*function, rest, options.json);
    if (const ModalFunction* function = Named(ModalFunctions(), name))
        return Evaluate(*function, rest, options.json);
    if (const FileFunction* function = Named(FileFunctions(), name))
        return Evaluate(*function, rest, options.json);
    return Complain(exitUsage, "Funktion „" + name + "“ gibt es nicht; „tavelin-cli eval“ nennt alle");
}

} // namespace cli
