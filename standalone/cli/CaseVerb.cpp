// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// case new, set, show and check.
#include "cli/Verbs.h"

#include "base/AtomicFile.h"
#include "base/Utf.h"
#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/ExitCode.h"
#include "cli/JsonText.h"
#include "cli/Options.h"
#include "host/CRuvData.h"
#include "krn/VehicleFields.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

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

/// What stands at the head of the case's reports.
struct Detail {
    std::string_view name;
    const char* label;
    std::string CFallAngaben::*member; ///< null: the title
    const std::string& Of(const CRuvData& data) const
    {
        return member == nullptr ? data.Title() : data.Angaben().*member;
    }
};
constexpr Detail kDetails[] = {
    {"title", "Fall", nullptr},
    {"date", "Unfalldatum", &CFallAngaben::datum},
    {"place", "Unfallort", &CFallAngaben::ort},
    {"author", "Bearbeiter", &CFallAngaben::bearbeiter},
};

/// NAME=TEXT for each detail that is to be another; no text takes it away.
int Set(const std::string& path, std::span<const std::string> words)
{
    CaseInput loaded = CaseFromFile(path);
    if (!loaded.data)
        return Complain(exitFile, loaded.error);
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const auto known = std::find_if(std::begin(kDetails), std::end(kDetails),
                                        [&](const Detail& detail) { return detail.name == name; });
        if (known == std::end(kDetails) || equals == std::string::npos)
            return Complain(exitUsage, "„" + word + "“: erwartet wird title=, date=, place= oder author= und ein Text");
        const std::string text = word.substr(equals + 1);
        if (!base::IsUtf8(text))
            return Complain(exitUsage, name + ": der Text ist kein UTF-8");
        (known->member == nullptr ? loaded.data->Title() : loaded.data->Angaben().*known->member) = text;
    }
    const auto saved =
        casefile::SaveCase(path, *loaded.data, casefile::Overwrite::onlyCases, base::SystemFileCalls(), loaded.digest);
    return saved ? exitDone : Complain(exitFile, saved.Text());
}

std::string ShowText(const CRuvData& data)
{
    std::string text;
    for (const Detail& detail : kDetails)
        if (const std::string value = detail.Of(data); !value.empty())
            text += std::string(detail.label) + ": " + value + "\n";
    text += text.empty() ? "" : "\n";
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
    if (options.rest.size() > 2 && options.rest[0] == "set" && !options.json)
        return Set(options.rest[1], std::span(options.rest).subspan(2));
    if (options.rest.size() == 2) {
        const std::string& path = options.rest[1];
        if (options.rest[0] == "new")
            return New(path, options.json);
        if (options.rest[0] == "show")
            return Show(path, options.json);
        if (options.rest[0] == "check")
            return Check(path, options.json);
    }
    return Complain(exitUsage, "case erwartet new, show oder check und eine Datei, oder set, eine Datei und NAME=TEXT");
}

} // namespace cli
