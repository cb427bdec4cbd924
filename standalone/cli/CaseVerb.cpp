// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// case new, show and check.
#include "cli/Verbs.h"

#include "base/AtomicFile.h"
#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/ExitCode.h"
#include "cli/JsonText.h"
#include "cli/Options.h"
#include "host/CRuvData.h"
#include "krn/VehicleFields.h"

namespace cli
{
namespace
{

int New(const std::string& path, bool asJson)
{
    if (base::FileExists(path))
        return Complain(exitFile, "„" + path + "“ gibt es schon und wird nicht überschrieben");
    if (const auto saved = casefile::SaveCase(path, *ExampleCase()); !saved)
        return Complain(exitFile, saved.Text());
    if (asJson)
        Print(JsonText().BeginObject().Key("file").Text(path).EndObject().Str() + "\n");
    else
        Print(path + ": angelegt\n");
    return exitDone;
}

std::string ShowText(const CRuvData& data)
{
    std::string text = data.Title().empty() ? "" : data.Title() + "\n\n";
    std::vector<std::vector<std::string>> vehicles{
        {"Fahrzeug", "Name", "Art", "Länge [m]", "Breite [m]", "Radstand [m]", "Masse [kg]"}};
    std::vector<std::vector<std::string>> phases{
        {"Fahrzeug", "Spalte", "Phase", "vEnd [km/h]", "vAnf [km/h]", "Verz [m/s²]", "Zeit [s]", "Weg [m]"}};
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        if (!data.IsFzgValid(static_cast<std::int64_t>(i)))
            continue;
        const CKfzDaten& v = data.KfzDat(i);
        const std::string number = std::to_string(i);
        vehicles.push_back({number, v.name, krn::TypeName(v.type), NumberText(v.length), NumberText(v.width),
                            NumberText(v.wheelbase), NumberText(v.mass)});
        const auto& columns = data.WZRechDat(i).spalten;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const CWegZeitSpalte& p = columns[c];
            if (p.IsUsed())
                phases.push_back({number, std::to_string(c), PhasenArtName(p.art), NumberText(p.vEnd),
                                  NumberText(p.vAnf), NumberText(p.verz), NumberText(p.zeit), NumberText(p.weg)});
        }
    }
    text += TableText(vehicles);
    return phases.size() > 1 ? text + "\n" + TableText(phases) : text;
}

int Show(const std::string& path, bool asJson)
{
    const CaseInput loaded = CaseFromFile(path);
    if (!loaded.data)
        return Complain(exitFile, loaded.error);
    std::string text = ShowText(*loaded.data);
    if (asJson)
        if (const auto written = casefile::CaseToJson(*loaded.data, text); !written)
            return Complain(exitFile, written.Text());
    Print(text);
    return exitDone;
}

int Check(const std::string& path, bool asJson)
{
    const CaseInput loaded = CaseFromFile(path);
    const bool good = loaded.data != nullptr;
    if (asJson) {
        JsonText json;
        json.BeginObject();
        json.Key("file").Text(path);
        json.Key("ok").Bool(good);
        if (!good)
            json.Key("error").Text(loaded.error);
        json.EndObject();
        Print(json.Str() + "\n");
    } else if (good) {
        Print(path + ": in Ordnung\n");
    }
    return good ? exitDone : Complain(exitFile, loaded.error);
}

} // namespace

int CaseVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(arguments, {"--json"});
    if (!options.error.empty())
        return Complain(exitUsage, options.error);
    if (options.rest.size() == 2) {
        const std::string& path = options.rest[1];
        if (options.rest[0] == "new")
            return New(path, options.json);
        if (options.rest[0] == "show")
            return Show(path, options.json);
        if (options.rest[0] == "check")
            return Check(path, options.json);
    }
    return Complain(exitUsage, "case erwartet new, show oder check und eine Datei");
}

} // namespace cli
