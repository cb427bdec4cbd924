// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/StateJson.h"

#include "cli/ScriptedFrontEnd.h"
#include "framework/UiThread.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/Charts.h"
#include "krn/ControlMeaning.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace cli
{
namespace
{

using framework::Kind;
using framework::Window;

constexpr std::size_t kMostRows = 1000; // of a grid; `count` says how many there are

void WriteTexts(JsonText& json, const std::vector<std::string>& texts)
{
    json.BeginArray();
    for (const std::string& text : texts)
        json.Text(text);
    json.EndArray();
}

void WriteGrid(JsonText& json, const framework::Grid& grid)
{
    json.Key("columns").BeginArray();
    for (const CGridCtrl::Column& column : grid.columns) {
        json.BeginObject().Key("heading").Text(column.heading);
        json.Key("editable").Bool(column.editable).EndObject();
    }
    json.EndArray();
    json.Key("count").Integer(static_cast<std::int64_t>(grid.rows.size()));
    json.Key("rows").BeginArray();
    for (std::size_t i = 0; i < std::min(grid.rows.size(), kMostRows); ++i)
        WriteTexts(json, grid.rows[i]);
    json.EndArray();
    json.Key("selection").BeginArray();
    if (grid.firstSelected >= 0)
        json.Integer(grid.firstSelected).Integer(grid.lastSelected);
    json.EndArray();
}

void WriteChart(JsonText& json, const CChartState& chart)
{
    json.Key("rows").Integer(static_cast<std::int64_t>(chart.rows));
    json.Key("range").BeginArray();
    if (chart.first && chart.last)
        json.Integer(static_cast<std::int64_t>(*chart.first)).Integer(static_cast<std::int64_t>(*chart.last));
    json.EndArray();
    json.Key("rangeTimes").BeginArray();
    if (chart.first && chart.last)
        json.Number(chart.rangeTimes.first).Number(chart.rangeTimes.second);
    json.EndArray();
    json.Key("view").BeginArray().Number(chart.view.first).Number(chart.view.second).EndArray();
    json.Key("series");
    WriteTexts(json, chart.series);
    json.Key("statistics").BeginObject();
    for (const auto& [name, value] : chart.statistics)
        json.Key(name).Text(value);
    json.EndObject();
    json.Key("note").Text(chart.note);
}

void WriteValue(JsonText& json, const Window& control, const CBinding* binding)
{
    if (const auto* real = dynamic_cast<const CEditDouble*>(binding)) {
        json.Key("value").Number(real->Value());
        return;
    }
    if (const auto* whole = dynamic_cast<const CEditInt*>(binding)) {
        json.Key("value").Integer(whole->Value());
        return;
    }
    switch (control.kind) {
    case Kind::check:
    case Kind::radio:
        json.Key("value").Integer(control.check);
        break;
    case Kind::combo:
    case Kind::list:
        if (const auto* choice = dynamic_cast<const CChoiceCombo*>(binding))
            json.Key("value").Integer(choice->Value());
        else
            json.Key("value").Integer(control.selection);
        json.Key("selection").Integer(control.selection);
        json.Key("items");
        WriteTexts(json, control.items);
        break;
    case Kind::grid:
        WriteGrid(json, *control.grid);
        break;
    case Kind::chart:
        if (const CChartClient* client = static_cast<const CChartCtrl*>(control.object)->Client())
            WriteChart(json, client->State());
        break;
    case Kind::trackbar:
        json.Key("value").Integer(control.trackPosition);
        break;
    default:
        break;
    }
}

std::string ShownText(const Window& control)
{
    switch (control.kind) {
    case Kind::edit:
        return control.text;
    case Kind::combo:
    case Kind::list:
        return control.selection < 0 || static_cast<std::size_t>(control.selection) >= control.items.size()
                   ? std::string{}
                   : control.items[static_cast<std::size_t>(control.selection)];
    default:
        return framework::WithoutMnemonic(control.text);
    }
}

void WriteControl(JsonText& json, const Window& control)
{
    const CBinding* binding = krn::BindingOf(control);
    json.Key(std::to_string(control.id)).BeginObject();
    json.Key("kind").Text(framework::KindName(control.kind));
    json.Key("label").Text(krn::LabelOf(control));
    json.Key("text").Text(ShownText(control));
    WriteValue(json, control, binding);
    json.Key("unit").Text(krn::UnitOf(control));
    json.Key("enabled").Bool(control.enabled);
    json.Key("protected").Bool(control.readOnly);
    if (control.outdated)
        json.Key("outdated").Bool(true);
    if (!framework::IsShown(control))
        json.Key("visible").Bool(false);
    json.EndObject();
}

/// The controls of the dialogs by ID; of several with one ID the first, which is the one that actions reach.
void WriteControls(JsonText& json, const std::vector<Window*>& dialogs)
{
    std::unordered_set<UINT> written;
    json.BeginObject();
    for (const Window* dialog : dialogs)
        for (const auto& control : dialog->children)
            if (control->HasId() && written.insert(control->id).second)
                WriteControl(json, *control);
    json.EndObject();
}

void WriteFieldValue(JsonText& json, const RecordField& field, std::size_t index)
{
    if (const auto* real = std::get_if<double*>(&field.value))
        json.Number((*real)[index]);
    else
        std::visit([&](const auto* values) { json.Integer(static_cast<std::int64_t>(values[index])); }, field.value);
}

void WriteField(JsonText& json, const RecordField& field)
{
    json.Key(field.name);
    if (field.count == 1 && !field.list) {
        WriteFieldValue(json, field, 0);
        return;
    }
    json.BeginArray();
    for (std::size_t i = 0; i < field.count; ++i)
        WriteFieldValue(json, field, i);
    json.EndArray();
}

RecordFields FieldsOf(const Window& mask)
{
    auto* object = dynamic_cast<CMDIRechDialog*>(mask.object);
    return object == nullptr ? RecordFields{} : object->DescribeRecord();
}

const RecordField* FindField(const RecordFields& fields, std::string_view name)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const auto& f) { return f.name == name; });
    return found == fields.end() ? nullptr : &*found;
}

void WriteMessages(JsonText& json, const std::vector<RecordedMessage>& messages)
{
    json.BeginArray();
    for (const RecordedMessage& message : messages) {
        json.BeginObject();
        json.Key("number").Integer(message.shown.number);
        json.Key("text").Text(message.shown.text);
        json.Key("args").BeginArray();
        for (const std::string& arg : message.shown.args)
            json.Text(arg);
        json.EndArray();
        json.Key("answer").Integer(message.answer);
        json.EndObject();
    }
    json.EndArray();
}

/// Opens the object of a message; the caller closes it.
void BeginMsg(JsonText& json, const MSG& msg)
{
    json.BeginObject();
    json.Key("message").Integer(msg.message);
    json.Key("wParam").Integer(static_cast<std::int64_t>(msg.wParam));
    json.Key("lParam").Integer(static_cast<std::int64_t>(msg.lParam));
}

} // namespace

bool IsModal(const Window& dialog)
{
    const auto* object = dynamic_cast<const CDialog*>(dialog.object);
    return object != nullptr && object->IsModal();
}

std::vector<Window*> MaskFamily(Window& mask)
{
    std::vector<Window*> family{&mask};
    // Dialogs stand in the order of their creation, so that an owner comes before what it opened.
    for (Window* dialog : framework::UiThread::Current()->Dialogs())
        if (dialog != &mask && !IsModal(*dialog) &&
            std::find(family.begin(), family.end(), dialog->parent) != family.end())
            family.push_back(dialog);
    return family;
}

MaskImage ImageOf(Window& mask)
{
    JsonText controls;
    WriteControls(controls, MaskFamily(mask));
    JsonText record;
    record.BeginObject();
    for (const RecordField& field : FieldsOf(mask))
        WriteField(record, field);
    record.EndObject();
    return {mask.text, controls.Take(), record.Take(), mask.outdated};
}

std::string RecordText(Window& mask, const std::vector<std::string>& fields)
{
    const RecordFields all = FieldsOf(mask);
    JsonText json;
    json.BeginObject();
    for (const std::string& name : fields)
        if (const RecordField* field = FindField(all, name))
            WriteField(json, *field);
    json.EndObject();
    return json.Take();
}

std::vector<std::string> NoRecordFields(const Window& mask, const std::vector<std::string>& names)
{
    const RecordFields all = FieldsOf(mask);
    std::vector<std::string> none;
    std::copy_if(names.begin(), names.end(), std::back_inserter(none),
                 [&](const std::string& name) { return FindField(all, name) == nullptr; });
    return none;
}

std::string FieldsText(const MaskImage& image, const ScriptedFrontEnd& front)
{
    JsonText json;
    json.BeginObject();
    if (image.outdated)
        json.Key("outdated").Bool(true);
    json.Key("record").Raw(image.record);
    json.Key("messages");
    WriteMessages(json, front.Messages());
    json.EndObject();
    return json.Take();
}

std::string StateText(UINT mask, bool open, const MaskImage& image, const ScriptedFrontEnd& front,
                      const std::vector<Window*>& others)
{
    JsonText json;
    json.BeginObject();
    json.Key("mask").Integer(mask);
    json.Key("title").Text(image.title);
    json.Key("open").Bool(open);
    if (image.outdated)
        json.Key("outdated").Bool(true);
    json.Key("controls").Raw(image.controls);
    json.Key("record").Raw(image.record);
    json.Key("messages");
    WriteMessages(json, front.Messages());
    json.Key("posted").BeginArray();
    for (const RecordedPost& post : front.Posted()) {
        BeginMsg(json, post.msg);
        json.Key("to").Text(post.to).EndObject();
    }
    json.EndArray();
    json.Key("broadcast").BeginArray();
    for (const MSG& msg : front.Broadcast()) {
        BeginMsg(json, msg);
        json.EndObject();
    }
    json.EndArray();
    if (!others.empty()) {
        json.Key("dialogs").BeginArray();
        for (Window* dialog : others) {
            json.BeginObject();
            json.Key("dialog").Integer(dialog->id);
            json.Key("title").Text(dialog->text);
            json.Key("modal").Bool(IsModal(*dialog));
            json.Key("controls");
            WriteControls(json, {dialog});
            json.EndObject();
        }
        json.EndArray();
    }
    json.EndObject();
    return json.Take();
}

} // namespace cli
