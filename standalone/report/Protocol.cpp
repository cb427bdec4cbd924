// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/Protocol.h"

#include "base/NumberText.h"
#include "base/ProgramVersion.h"
#include "framework/UiThread.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/Physics.h"
#include "host/Placing.h"
#include "krn/ControlMeaning.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

namespace report
{
namespace
{

using framework::Kind;
using framework::Window;

// A diagram is drawn for the width of a page, but not enlarged without measure.
constexpr double kPictureWidth = 640.0;       // px: 17 cm
constexpr double kReportPictureWidth = 800.0; // px, of one that is drawn for reports
constexpr double kLeastPixelsPerUnit = 1.5;
constexpr double kMostPixelsPerUnit = 3.5;
constexpr double kHeightToWidth = 13.0 / 12.0;

std::string Trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string WithoutColon(const std::string& text)
{
    std::string label = Trimmed(text);
    while (!label.empty() && (label.back() == ':' || label.back() == ' '))
        label.pop_back();
    return label;
}

bool Contains(const CRect& outer, const CRect& inner)
{
    return outer.left <= inner.left && outer.right >= inner.right && outer.top <= inner.top &&
           outer.bottom >= inner.bottom;
}

/// What the record's table says of the control's number, or null.
const NumberSpec* SpecOf(const Window& control)
{
    const CBinding* binding = krn::BindingOf(control);
    return binding == nullptr ? nullptr : binding->Spec();
}

/// The switch that the control's number counts with is off.
bool IsSwitchedOff(const Window& control)
{
    const NumberSpec* spec = SpecOf(control);
    const Window* with = spec == nullptr ? nullptr : control.parent->Child(spec->extra.onlyWith);
    return with != nullptr && with->check == 0;
}

std::vector<Window*> PagesOf(const Window& dialog)
{
    const framework::UiThread* thread = framework::UiThread::Current();
    return thread == nullptr ? std::vector<Window*>() : thread->Pages(dialog);
}

class Collector
{
  public:
    explicit Collector(Protocol& protocol) : m_protocol(protocol) {}

    /// Pages count whether or not they are the one in front.
    void Dialog(const Window& dialog)
    {
        for (const auto& child : dialog.children)
            if (child->visible)
                Control(*child);
        for (const Window* page : PagesOf(dialog))
            Dialog(*page);
    }

    /// Statics of their own that name no field: they say something, unless they only ask for it.
    void Notes(const Window& dialog)
    {
        for (const auto& child : dialog.children) {
            if (!child->visible)
                continue;
            const std::string text = Trimmed(framework::WithoutMnemonic(child->text));
            if (child->kind == Kind::label && !child->prompt && child->HasId() && !text.empty() &&
                !krn::BelongsToField(*child))
                m_protocol.notes.push_back(text);
        }
        for (const Window* page : PagesOf(dialog))
            Notes(*page);
    }

  private:
    void Control(const Window& control)
    {
        switch (control.kind) {
        case Kind::edit:
            if (!Trimmed(control.text).empty() && !IsSwitchedOff(control))
                Add(control, control.text);
            break;
        case Kind::combo:
        case Kind::list:
            if (control.selection >= 0 && static_cast<std::size_t>(control.selection) < control.items.size())
                Add(control, control.items[static_cast<std::size_t>(control.selection)]);
            break;
        case Kind::check:
            Add(control, control.check != 0 ? "ja" : "nein");
            break;
        case Kind::radio:
            if (control.check != 0)
                Radio(control);
            break;
        case Kind::field:
        case Kind::chart:
            if (control.painter)
                Picture(control);
            break;
        case Kind::grid:
            Table(control);
            break;
        default:
            break;
        }
    }

    void Radio(const Window& radio)
    {
        // The binding names the choice, of buttons without one the frame around them.
        const CBinding* binding = krn::BindingOf(radio);
        const Window* frame = FrameOf(radio);
        const std::string name = binding != nullptr ? binding->Label()
                                 : frame != nullptr ? WithoutColon(framework::WithoutMnemonic(frame->text))
                                                    : std::string();
        const std::string title = FrameTitle(radio);
        GroupFor(m_protocol.inputs, title == name ? std::string() : title)
            .entries.push_back({name.empty() ? "Auswahl" : name, Trimmed(framework::WithoutMnemonic(radio.text)), {}});
    }

    void Picture(const Window& field)
    {
        if (field.outdated) {
            m_protocol.outdated = true;
            return;
        }
        CDC drawing = DrawField(field);
        if (!drawing.Primitives().empty())
            m_protocol.pictures.push_back({FrameTitle(field), std::move(drawing)});
    }

    /// A long table would hide the rest: it is named with its number of rows.
    void Table(const Window& control)
    {
        constexpr std::size_t kMostRows = 50;
        if (control.outdated) {
            m_protocol.outdated = true;
            return;
        }
        const framework::Grid& grid = *control.grid;
        if (grid.rows.empty())
            return;
        std::string name = krn::LabelOf(control);
        if (name.empty())
            name = FrameTitle(control);
        TextBlock heading{.kind = TextBlock::Kind::heading};
        heading.text.push_back(TextRun{name.empty() ? "Tabelle" : name});
        m_protocol.tables.push_back(std::move(heading));
        if (grid.rows.size() > kMostRows) {
            TextBlock note;
            note.text.push_back(
                TextRun{"Die Tabelle hat " + std::to_string(grid.rows.size()) + " Zeilen und ist hier ausgelassen."});
            m_protocol.tables.push_back(std::move(note));
            return;
        }
        TextBlock table{.kind = TextBlock::Kind::table};
        for (const CGridCtrl::Column& column : grid.columns)
            table.rightAligned.push_back(column.rightAligned);
        const auto add = [&table](const auto& cells, const auto& textOf) {
            auto& row = table.rows.emplace_back();
            for (const auto& cell : cells)
                row.push_back(TextLine{TextRun{textOf(cell)}});
        };
        add(grid.columns, [](const CGridCtrl::Column& column) { return column.heading; });
        for (const CGridCtrl::Row& row : grid.rows)
            add(row, [](const std::string& text) { return text; });
        m_protocol.tables.push_back(std::move(table));
    }

    void Add(const Window& control, const std::string& value)
    {
        if (control.outdated) {
            m_protocol.outdated = true;
            return;
        }
        ProtocolEntry entry{krn::LabelOf(control), Trimmed(value), krn::UnitOf(control)};
        if (entry.label.empty())
            entry.label = "(ohne Bezeichnung)";
        auto& groups = krn::IsResult(control) ? m_protocol.results : m_protocol.inputs;
        auto& entries = GroupFor(groups, FrameTitle(control)).entries;
        if (const std::string joint = JointOf(control, entries, entry.label); !joint.empty()) {
            entries.back().value += joint + entry.value;
            entries.back().unit = entry.unit;
        } else {
            entries.push_back(std::move(entry));
        }
        m_last = &control;
    }

    /// What joins the control's value to the entry before it, as in "12,00 bis 14,00 km/h", "7,00 ± 0,50 m/s²" and
    /// "ja, ± 5,00 km/h"; nothing when it is an entry of its own.
    std::string JointOf(const Window& control, const std::vector<ProtocolEntry>& entries,
                        const std::string& label) const
    {
        const NumberSpec* spec = SpecOf(control);
        if (spec == nullptr || entries.empty() || entries.back().label != label)
            return {};
        switch (spec->extra.joint) {
        case Joint::upTo:
            return " bis ";
        case Joint::tolerance:
            return m_last != nullptr && m_last->kind == Kind::check ? ", ± " : " ± ";
        case Joint::none:
            break;
        }
        return {};
    }

    /// The smallest frame around the control.
    static const Window* FrameOf(const Window& control)
    {
        const Window* frame = nullptr;
        for (const auto& sibling : control.parent->children)
            if (sibling->kind == Kind::group && sibling->visible && Contains(sibling->rect, control.rect) &&
                (frame == nullptr || Contains(frame->rect, sibling->rect)))
                frame = sibling.get();
        return frame;
    }

    /// Of the frame around the control, or of the page it lies on.
    static std::string FrameTitle(const Window& control)
    {
        const Window* frame = FrameOf(control);
        if (frame != nullptr && !frame->text.empty())
            return WithoutColon(framework::WithoutMnemonic(frame->text));
        return control.parent->page ? WithoutColon(framework::WithoutMnemonic(control.parent->text)) : std::string();
    }

    static ProtocolGroup& GroupFor(std::vector<ProtocolGroup>& groups, const std::string& title)
    {
        const auto found = std::find_if(groups.begin(), groups.end(),
                                        [&](const ProtocolGroup& group) { return group.title == title; });
        return found != groups.end() ? *found : groups.emplace_back(ProtocolGroup{title, {}});
    }

    Protocol& m_protocol;
    const Window* m_last = nullptr; // control of the last entry
};

/// A frame that holds only inputs and says so need not be named in the list of inputs.
void DropTitle(std::vector<ProtocolGroup>& groups, std::string_view title)
{
    for (ProtocolGroup& group : groups)
        if (group.title == title)
            group.title.clear();
}

/// Where the mask's objects lie: position and size in m, angle in degrees.
void AddScene(Protocol& protocol, const CPlacingClient& client)
{
    ProtocolGroup group{"In der Szene", {}};
    for (const CPlacedObject& object : client.PlacedObjects()) {
        struct {
            const char* name;
            double number;
            const char* unit;
        } const numbers[] = {{"x", object.position.x / kCmProM, "m"},
                             {"y", object.position.y / kCmProM, "m"},
                             {"Winkel", object.angle, "°"},
                             {"Breite", object.width / kCmProM, "m"},
                             {"Länge", object.length / kCmProM, "m"}};
        std::string text;
        for (const auto& [name, number, unit] : numbers)
            text += (text.empty() ? "" : ", ") + std::string(name) + " " + base::FormatNumber(number, 2) + " " + unit;
        group.entries.push_back({object.name + (object.centred ? " (Mitte)" : " (Ecke)"), text, {}});
    }
    if (!group.entries.empty())
        protocol.inputs.push_back(std::move(group));
}

void AddOrigin(Protocol& protocol, const char* label, const std::string& value)
{
    if (!value.empty())
        protocol.origin.push_back({label, value, {}});
}

void AppendText(std::string& out, const std::vector<ProtocolGroup>& groups)
{
    for (const ProtocolGroup& group : groups) {
        if (!group.title.empty())
            out += group.title + "\n";
        for (const ProtocolEntry& entry : group.entries)
            out += entry.label + "\t" + entry.value + "\t" + entry.unit + "\n";
    }
}

} // namespace

Protocol MakeProtocol(const Window& dialog, const ProtocolContext& context)
{
    Protocol protocol;
    const std::string name = Trimmed(framework::WithoutMnemonic(dialog.text));
    protocol.title = context.number == 0 ? name : std::to_string(context.number) + " " + name;
    AddOrigin(protocol, "Fall", context.caseTitle);
    AddOrigin(protocol, "Unfalldatum", context.caseDetails.datum);
    AddOrigin(protocol, "Unfallort", context.caseDetails.ort);
    AddOrigin(protocol, "Bearbeiter", context.caseDetails.bearbeiter);
    AddOrigin(protocol, "Falldatei", context.caseFile);
    AddOrigin(protocol, "Datum des Protokolls", context.date);
    AddOrigin(protocol, "Programm", std::string(base::kProgramName) + " " + base::kProgramVersion);
    AddOrigin(protocol, kSha256Label, context.caseSha256);

    Collector collector(protocol);
    collector.Dialog(dialog);
    collector.Notes(dialog);
    for (const char* title : {"Eingaben", "Eingabe"})
        DropTitle(protocol.inputs, title);
    for (const char* title : {"Ergebnisse", "Ergebnis"})
        DropTitle(protocol.results, title);
    if (protocol.outdated)
        protocol.notes.insert(protocol.notes.begin(), kOutdatedText);
    protocol.messages = context.messages;
    protocol.formulas = ReadHelpText(HelpSection(context.helpPage, "Formeln"));
    if (const auto* client = dynamic_cast<const CPlacingClient*>(dialog.object))
        AddScene(protocol, *client);
    return protocol;
}

std::string MessageWithAnswer(const framework::ShownMessage& message, int answer)
{
    constexpr UINT kClearAll = 1052;
    if (message.number == kClearAll)
        return {};
    if (!framework::AsksSomething(message.kind))
        return message.text;
    const char* word = answer == IDYES ? "Ja" : answer == IDNO ? "Nein" : answer == IDOK ? "OK" : "Abbrechen";
    return message.text + " – Antwort: " + word;
}

CDC DrawField(const Window& field)
{
    if (field.reportPainter) {
        CDC drawing(kReportPictureWidth, kReportPictureWidth * field.reportHeightToWidth);
        field.reportPainter(drawing, {0, 0, static_cast<int>(drawing.Width()), static_cast<int>(drawing.Height())});
        return drawing;
    }
    const double scale =
        std::clamp(kPictureWidth / std::max(field.rect.Width(), 1), kLeastPixelsPerUnit, kMostPixelsPerUnit);
    CDC drawing(field.rect.Width() * scale, field.rect.Height() * scale * kHeightToWidth);
    if (field.painter)
        field.painter(drawing, {0, 0, static_cast<int>(drawing.Width()), static_cast<int>(drawing.Height())});
    return drawing;
}

namespace
{

std::string TwoDigits(int value)
{
    return (value < 10 ? "0" : "") + std::to_string(value);
}

std::string DayText(const std::tm& time)
{
    static constexpr const char* kMonths[] = {"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                                              "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
    return std::to_string(time.tm_mday) + ". " + kMonths[time.tm_mon] + " " + std::to_string(time.tm_year + 1900);
}

/// "UTC+01:00"
std::string ZoneText(std::time_t time)
{
    std::tm local = *std::localtime(&time);
    std::tm universal = *std::gmtime(&time);
    universal.tm_isdst = local.tm_isdst; // both taken as local times, their difference is the zone's
    const int minutes =
        static_cast<int>(std::lround(std::difftime(std::mktime(&local), std::mktime(&universal)) / 60.0));
    return std::string("UTC") + (minutes < 0 ? "-" : "+") + TwoDigits(std::abs(minutes) / 60) + ":" +
           TwoDigits(std::abs(minutes) % 60);
}

} // namespace

std::string ProtocolDate(const char* sourceDateEpoch, std::time_t now)
{
    constexpr std::int64_t kLatest = 253'402'300'799; // the year 9999
    const auto given = sourceDateEpoch == nullptr ? std::nullopt : base::ParseInteger(sourceDateEpoch);
    if (given && *given >= 0 && *given <= kLatest) {
        const auto time = static_cast<std::time_t>(*given);
        const std::tm universal = *std::gmtime(&time);
        return DayText(universal) + ", " + TwoDigits(universal.tm_hour) + ":" + TwoDigits(universal.tm_min) +
               " Uhr (UTC)";
    }
    return DayText(*std::localtime(&now)) + " (" + ZoneText(now) + ")";
}

std::string ProtocolDate()
{
    return ProtocolDate(std::getenv("SOURCE_DATE_EPOCH"), std::time(nullptr));
}

std::string ProtocolText(const Protocol& protocol)
{
    std::string out = protocol.title + "\n";
    if (!protocol.inputs.empty()) {
        out += "\nEingaben\n";
        AppendText(out, protocol.inputs);
    }
    if (!protocol.results.empty()) {
        out += "\nErgebnisse\n";
        AppendText(out, protocol.results);
    }
    for (const std::string& note : protocol.notes)
        out += "\n" + note + "\n";
    return out;
}

} // namespace report
