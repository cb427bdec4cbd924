// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// masks and describe: which masks there are, and what is on one.
#include "cli/Verbs.h"

#include "cli/CaseInput.h"
#include "cli/Options.h"
#include "cli/Session.h"
#include "frame/MaskTable.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "krn/ControlMeaning.h"

#include <algorithm>
#include <cmath>

namespace cli
{
namespace
{

using framework::Kind;
using framework::Window;

/// One control with all that does not change while the mask is used.
struct Description {
    UINT id = 0;
    UINT dialog = 0; ///< the mask or the page it lies on
    std::string kind;
    std::string label;
    std::string unit;
    std::string role;
    std::string field;   ///< name in the record, empty when the control is not bound
    double factor = 1.0; ///< the unit shown in the record's
    const CEditDouble* real = nullptr;
    const CEditInt* whole = nullptr;
};

std::string RoleOf(const Window& control)
{
    switch (control.kind) {
    case Kind::button:
        return "button";
    case Kind::edit:
    case Kind::grid:
        return krn::IsResult(control) ? "result" : "input";
    case Kind::check:
    case Kind::radio:
    case Kind::combo:
    case Kind::list:
    case Kind::trackbar:
        return "input";
    case Kind::field:
    case Kind::chart:
        return "result";
    default:
        return "label";
    }
}

/// Name of the record's field at the address; elements of an array count from 0.
std::string FieldName(const RecordFields& fields, const void* address)
{
    for (const RecordField& field : fields) {
        const auto index = std::visit(
            [&](auto* values) -> std::optional<std::size_t> {
                for (std::size_t i = 0; i < field.count; ++i)
                    if (static_cast<const void*>(values + i) == address)
                        return i;
                return std::nullopt;
            },
            field.value);
        if (index)
            return std::string(field.name) + (field.count > 1 ? "[" + std::to_string(*index) + "]" : "");
    }
    return {};
}

std::vector<Description> Describe(Window& mask, const RecordFields& fields)
{
    std::vector<Description> descriptions;
    for (const Window* dialog : MaskFamily(mask)) {
        for (const auto& control : dialog->children) {
            if (!control->HasId())
                continue;
            const CBinding* binding = krn::BindingOf(*control);
            Description d;
            d.id = control->id;
            d.dialog = dialog->id;
            d.kind = framework::KindName(control->kind);
            d.label = krn::LabelOf(*control);
            d.unit = krn::UnitOf(*control);
            d.role = RoleOf(*control);
            d.field = binding == nullptr ? std::string{} : FieldName(fields, binding->Field());
            d.real = dynamic_cast<const CEditDouble*>(binding);
            if (d.real != nullptr && d.real->Unit())
                d.factor = UnitsSystemConfiguration::GetInstance().Factor(*d.real->Unit());
            d.whole = dynamic_cast<const CEditInt*>(binding);
            descriptions.push_back(std::move(d));
        }
    }
    return descriptions;
}

/// A bound of the range in the unit shown, to the field's decimals where the unit is not the record's.
std::string ShownBound(const Description& d, double bound)
{
    if (d.factor == 1.0)
        return NumberText(bound);
    const double grid = std::pow(10.0, d.real->Decimals());
    return NumberText(std::round(bound / d.factor * grid) / grid);
}

const char* TypeName(const RecordField& field)
{
    struct Visitor {
        const char* operator()(const double*) const { return "double"; }
        const char* operator()(const std::int64_t*) const { return "int64"; }
        const char* operator()(const std::int32_t*) const { return "int32"; }
        const char* operator()(const std::uint8_t*) const { return "uint8"; }
    };
    return std::visit(Visitor{}, field.value);
}

std::string DescriptionJson(const MaskEntry& entry, const Window& mask, const std::vector<Description>& controls,
                            const RecordFields& fields)
{
    JsonText json;
    json.BeginObject();
    json.Key("mask").Integer(entry.number);
    json.Key("title").Text(mask.text);
    json.Key("class").Text(entry.className);
    json.Key("controls").BeginArray();
    for (const Description& d : controls) {
        json.BeginObject();
        json.Key("id").Integer(d.id);
        json.Key("dialog").Integer(d.dialog);
        json.Key("kind").Text(d.kind);
        json.Key("label").Text(d.label);
        json.Key("unit").Text(d.unit);
        if (d.real != nullptr) {
            json.Key("minimum").Number(d.real->Minimum());
            json.Key("maximum").Number(d.real->Maximum());
            if (d.factor != 1.0) {
                json.Key("shownMinimum").Number(d.real->Minimum() / d.factor);
                json.Key("shownMaximum").Number(d.real->Maximum() / d.factor);
            }
            json.Key("decimals").Integer(d.real->Decimals());
            json.Key("step").Number(d.real->Step());
        } else if (d.whole != nullptr) {
            json.Key("minimum").Integer(d.whole->Minimum());
            json.Key("maximum").Integer(d.whole->Maximum());
            json.Key("decimals").Integer(0);
            json.Key("step").Integer(d.whole->Step());
        }
        json.Key("role").Text(d.role);
        json.Key("field");
        if (d.field.empty())
            json.Null();
        else
            json.Text(d.field);
        json.EndObject();
    }
    json.EndArray();
    json.Key("record").BeginArray();
    for (const RecordField& field : fields) {
        json.BeginObject();
        json.Key("name").Text(field.name);
        json.Key("unit").Text(field.unit);
        json.Key("type").Text(TypeName(field));
        json.Key("count").Integer(static_cast<std::int64_t>(field.count));
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    return json.Take();
}

std::string DescriptionTables(const MaskEntry& entry, const Window& mask, const std::vector<Description>& controls,
                              const RecordFields& fields)
{
    std::vector<std::vector<std::string>> rows{
        {"ID", "Art", "Bezeichnung", "Einheit", "Bereich", "Stellen", "Schritt", "Rolle", "Feld im Datensatz"}};
    for (const Description& d : controls) {
        std::string range;
        std::string decimals;
        std::string step;
        if (d.real != nullptr) {
            range = ShownBound(d, d.real->Minimum()) + " … " + ShownBound(d, d.real->Maximum());
            decimals = std::to_string(d.real->Decimals());
            step = NumberText(d.real->Step());
        } else if (d.whole != nullptr) {
            range = std::to_string(d.whole->Minimum()) + " … " + std::to_string(d.whole->Maximum());
            decimals = "0";
            step = std::to_string(d.whole->Step());
        }
        rows.push_back({std::to_string(d.id), d.kind, d.label, d.unit, range, decimals, step, d.role, d.field});
    }
    std::string text = std::to_string(entry.number) + "  " + mask.text + " (" + entry.className + ")\n\n";
    text += TableText(rows);
    rows = {{"Feld im Datensatz", "Einheit", "Art", "Anzahl"}};
    for (const RecordField& field : fields)
        rows.push_back(
            {std::string(field.name), std::string(field.unit), TypeName(field), std::to_string(field.count)});
    return text + "\n" + TableText(rows);
}

} // namespace

int MasksVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(arguments, {"--json"});
    if (!options.error.empty() || !options.rest.empty())
        return Complain(exitUsage, options.error.empty() ? "masks erwartet nichts weiter" : options.error);
    if (!options.json) {
        std::vector<std::vector<std::string>> rows{{"Nummer", "Titel", "Klasse", "Bereich", "enthalten"}};
        for (const MaskEntry& entry : MaskTable())
            rows.push_back({std::to_string(entry.number), entry.title, entry.className, std::to_string(entry.subsystem),
                            entry.create == nullptr ? "nein" : "ja"});
        Print(TableText(rows));
        return exitDone;
    }
    JsonText json;
    json.BeginArray();
    for (const MaskEntry& entry : MaskTable()) {
        json.BeginObject();
        json.Key("number").Integer(entry.number);
        json.Key("title").Text(entry.title);
        json.Key("class").Text(entry.className);
        json.Key("subsystem").Integer(entry.subsystem);
        json.Key("built").Bool(entry.create != nullptr);
        json.EndObject();
    }
    json.EndArray();
    Print(json.Str() + "\n");
    return exitDone;
}

int DescribeVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(arguments, {"--json", "--case", "--transfer", "--units", "--config"});
    if (!options.error.empty())
        return Complain(exitUsage, options.error);
    const auto number = options.rest.size() == 1 ? MaskNumber(options.rest.front()) : std::nullopt;
    if (!number)
        return Complain(exitUsage, "describe erwartet die Nummer einer Maske");
    if (const auto error = ApplySettings(options))
        return Complain(exitFile, *error);
    CaseInput loaded = options.caseFile.empty() ? CaseInput{ExampleCase(), {}} : CaseFromFile(options.caseFile);
    if (!loaded.data)
        return Complain(exitFile, loaded.error);
    Session session(std::move(loaded.data));
    if (const auto failure = session.Run(*number, {}))
        return Complain(failure->exit, failure->text);
    Window* mask = session.Mask();
    if (mask == nullptr)
        return Complain(exitUsage, "Maske " + options.rest.front() + " hat sich beim Öffnen wieder geschlossen");
    const auto entry =
        std::find_if(MaskTable().begin(), MaskTable().end(), [&](const MaskEntry& e) { return e.number == *number; });
    const RecordFields fields = static_cast<CMDIRechDialog*>(mask->object)->DescribeRecord();
    const std::vector<Description> controls = Describe(*mask, fields);
    Print(options.json ? DescriptionJson(*entry, *mask, controls, fields) + "\n"
                       : DescriptionTables(*entry, *mask, controls, fields));
    return exitDone;
}

} // namespace cli
