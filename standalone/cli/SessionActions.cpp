// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What each action does.
#include "cli/Session.h"

#include "base/AtomicFile.h"
#include "base/NumberText.h"
#include "base/Sha256.h"
#include "casefile/CaseFile.h"
#include "drawing/DrawingExport.h"
#include "framework/DialogPicture.h"
#include "framework/UserInput.h"
#include "host/CDialog.h"
#include "krn/Placing.h"
#include "report/HelpPages.h"
#include "report/ProtocolHtml.h"
#include "report/ProtocolOdt.h"

#include <algorithm>
#include <filesystem>

namespace cli
{

using framework::InputResult;
using framework::Kind;
using framework::Window;

namespace
{

/// Pixels per dialog unit of exported pictures.
constexpr double kPictureScale = 2.0;

const char* KindText(Kind kind)
{
    switch (kind) {
    case Kind::edit:
        return "ein Eingabefeld";
    case Kind::button:
        return "ein Knopf";
    case Kind::check:
        return "ein Ankreuzfeld";
    case Kind::radio:
        return "ein Auswahlknopf";
    case Kind::group:
        return "ein Rahmen";
    case Kind::combo:
        return "eine Auswahlliste";
    case Kind::list:
        return "ein Listenfeld";
    case Kind::trackbar:
        return "ein Schieber";
    case Kind::field:
        return "ein Zeichenfeld";
    case Kind::grid:
        return "eine Tabelle";
    case Kind::chart:
        return "ein Diagramm";
    default:
        return "ein Text";
    }
}

/// Why the control did not do what the action wanted, empty when it did.
std::string Complaint(const Window& control, InputResult result, const char* wanted)
{
    switch (result) {
    case InputResult::done:
    case InputResult::refused: // the front end was told
    case InputResult::unused:
        return {};
    case InputResult::disabled:
        if (control.visible && !framework::IsShown(control))
            return NameOf(control) + " ist ausgeblendet: Seite " + std::to_string(control.parent->id) +
                   " wird gerade nicht gezeigt";
        return NameOf(control) + (control.visible ? " ist gesperrt" : " ist ausgeblendet");
    case InputResult::readOnly:
        return NameOf(control) + (control.grid ? ": die Spalte ist schreibgeschützt" : " ist schreibgeschützt");
    case InputResult::wrongKind:
        return NameOf(control) + " ist " + KindText(control.kind) + " und nicht " + wanted;
    case InputResult::noSuchItem:
        break;
    }
    if (control.grid)
        return NameOf(control) + " hat " + std::to_string(control.grid->rows.size()) + " Zeilen und " +
               std::to_string(control.grid->columns.size()) + " Spalten, beide ab 0 gezählt";
    const std::size_t count = control.items.size();
    return NameOf(control) + (count == 0 ? " ist leer" : " hat nur die Einträge 0 bis " + std::to_string(count - 1));
}

/// What a drawing field draws on, in pixels: for its picture and for the mouse in it.
CRect PictureArea(const Window& field)
{
    return {0, 0, static_cast<int>(field.rect.Width() * kPictureScale),
            static_cast<int>(field.rect.Height() * kPictureScale)};
}

bool SameFile(const std::string& a, const std::string& b)
{
    const auto first = base::NativePath(a);
    const auto second = base::NativePath(b);
    std::error_code ignored;
    return first && second && std::filesystem::equivalent(*first, *second, ignored);
}

/// Titles and rows as lines of a comma separated file, numbers with a point in their shortest digits.
std::string TableText(const ReadRows& rows)
{
    std::string text;
    for (const std::string_view title : rows.titles)
        (text += text.empty() ? "" : ",") += title;
    text += '\n';
    std::vector<double> values(rows.titles.size());
    for (std::size_t i = 0; i < rows.count; ++i) {
        rows.get(i, values);
        for (const double& value : values)
            (text += &value == values.data() ? "" : ",") += base::ShortestDigits(value);
        text += '\n';
    }
    return text;
}

/// Equal but for the case of the letters A to Z.
bool SameLetters(const std::string& a, const std::string& b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

} // namespace

/// Runs an input on the control with the ID and says why when the control does not take it.
template <class Input> void Session::Use(UINT id, const char* wanted, Input input)
{
    Window* control = Control(id);
    if (control == nullptr)
        return;
    const HWND handle = control->handle;
    const InputResult result = input(*control);
    if (const Window* still = m_thread.Find(handle))
        if (std::string complaint = Complaint(*still, result, wanted); !complaint.empty())
            Fail(std::move(complaint));
}

/// The open dialog with the number, the newest of several; null when there is none.
Window* Session::OpenDialog(UINT number) const
{
    Window* found = nullptr;
    for (Window* dialog : m_thread.Dialogs())
        if (dialog->id == number)
            found = dialog;
    return found;
}

void Session::Do(const EnterAction& action)
{
    Window* control = Control(action.id);
    if (control == nullptr)
        return;
    if (control->kind != Kind::trackbar) {
        Use(action.id, "ein Eingabefeld", [&](Window& edit) { return framework::EnterText(edit, action.text); });
        return;
    }
    const auto position = base::ParseInteger(action.text);
    if (!position || *position < control->trackMinimum || *position > control->trackMaximum)
        Fail(NameOf(*control) + " steht nur auf ganzen Zahlen von " + std::to_string(control->trackMinimum) + " bis " +
             std::to_string(control->trackMaximum));
    else
        MoveTrackbar(action.id, static_cast<int>(*position));
}

void Session::MoveTrackbar(UINT id, int position)
{
    Use(
        id, "ein Schieber", [&](Window& trackbar) { return framework::MoveTrackbar(trackbar, position); });
}

void Session::Do(const StepAction& action)
{
    const Window* control = Control(action.id);
    if (control == nullptr)
        return;
    if (control->kind == Kind::trackbar)
        MoveTrackbar(action.id, control->trackPosition + action.direction);
    else
        Use(action.id, "eines mit Drehknopf", [&](Window& edit) { return framework::Step(edit, action.direction); });
}

void Session::Do(const PressAction& action)
{
    Use(
        action.id, "ein Knopf", [](Window& button) { return framework::Click(button); });
}

void Session::Do(const SelectAction& action)
{
    const Window* control = Control(action.id);
    if (control != nullptr && (control->kind == Kind::grid || action.rows))
        Use(action.id, "eine Tabelle",
            [&](Window& grid) { return framework::SelectRows(grid, action.index, action.last); });
    else if (control != nullptr)
        Use(action.id, "eine Liste", [&](Window& list) { return framework::Select(list, action.index); });
}

void Session::Do(const CellAction& action)
{
    Use(
        action.id, "eine Tabelle",
        [&](Window& grid) { return framework::EnterCell(grid, action.row, action.column, action.text); });
}

void Session::UseMouse(UINT id, std::vector<CMouseEvent> events)
{
    const Window* field = Control(id);
    if (field == nullptr)
        return;
    const HWND handle = field->handle;
    const CRect size = PictureArea(*field);
    const CDPoint& start = events.front().position;
    if (framework::IsDrawn(field->kind) &&
        !(start.x >= 0 && start.y >= 0 && start.x < size.right && start.y < size.bottom)) {
        Fail(NameOf(*field) + " ist " + std::to_string(size.right) + " × " + std::to_string(size.bottom) +
             " Bildpunkte groß; der Punkt liegt nicht darin");
        return;
    }
    InputResult result = InputResult::done;
    for (CMouseEvent& event : events) {
        event.width = size.right;
        event.height = size.bottom;
        if (m_thread.Find(handle) == nullptr || m_failure || result == InputResult::refused)
            return;
        Use(id, "eines, das auf die Maus achtet",
            [&](Window& control) { return result = framework::Mouse(control, event); });
        m_thread.DispatchPending();
    }
}

void Session::Do(const ClickAction& action)
{
    using What = CMouseEvent::Kind;
    const auto event = [&](What kind) {
        return CMouseEvent{kind, action.manner.button, action.manner.modifiers, action.point};
    };
    std::vector<CMouseEvent> events{event(What::press), event(What::release)};
    if (action.manner.twice)
        events.insert(events.end(), {event(What::doubleClick), event(What::release)});
    UseMouse(action.id, std::move(events));
}

void Session::Do(const DragAction& action)
{
    constexpr int kMoves = 8;
    using What = CMouseEvent::Kind;
    const auto event = [&](What kind, CDPoint at) {
        return CMouseEvent{kind, action.manner.button, action.manner.modifiers, at};
    };
    std::vector<CMouseEvent> events{event(What::press, action.from)};
    for (int i = 1; i < kMoves; ++i) {
        const double part = static_cast<double>(i) / kMoves;
        events.push_back(event(What::move, {action.from.x + part * (action.to.x - action.from.x),
                                            action.from.y + part * (action.to.y - action.from.y)}));
    }
    events.push_back(event(What::move, action.to));
    events.push_back(event(What::release, action.to));
    UseMouse(action.id, std::move(events));
}

void Session::Do(const WheelAction& action)
{
    CMouseEvent event{CMouseEvent::Kind::wheel, MouseButton::none, action.manner.modifiers, action.point};
    event.wheel = action.notches;
    UseMouse(action.id, {event});
}

void Session::Do(const KeyAction& action)
{
    const framework::KeyPress press{action.key, action.character, action.modifiers};
    Window* dialog = OpenDialog(action.id);
    if (dialog == nullptr)
        Use(action.id, "eines, das Tasten annimmt", [&](Window& field) { return framework::Key(field, press); });
    else if (dialog != DialogAtWork() && m_front.TopModal() != nullptr)
        Fail("key: Dialog " + std::to_string(action.id) + " wartet, bis der Dialog über ihm geschlossen ist");
    else
        framework::Key(*dialog, press);
}

void Session::Do(const AnswerAction& action)
{
    m_front.QueueAnswer(action.message, action.answer);
}

void Session::Do(const FileAction& action)
{
    m_front.QueueFile(action.path);
}

void Session::Do(const SendAction& action)
{
    if (const Window* dialog = DialogAtWork())
        m_thread.Send(dialog->handle, action.message, action.wParam, action.lParam);
    else
        Fail("send: " + NameOfMask() + " ist geschlossen");
}

void Session::Do(const HostAction& action)
{
    if (action.vehicle >= CRuvData::kFahrzeuge) {
        Fail("host: Fahrzeug " + std::to_string(action.vehicle) + " gibt es nicht, nur 0 bis " +
             std::to_string(CRuvData::kFahrzeuge - 1));
        return;
    }
    const Window* window = Mask();
    auto* mask = window == nullptr ? nullptr : dynamic_cast<CMDIRechDialog*>(window->object);
    if (mask == nullptr) {
        Fail("host: " + NameOfMask() + " ist geschlossen");
        return;
    }
    const framework::UiThread::Scope scope(m_thread);
    switch (action.change) {
    case HostAction::Change::geometry:
        mask->GlobalGeoDatChanged(action.vehicle);
        break;
    case HostAction::Change::phases:
        mask->GlobalWZDatChanged(action.vehicle);
        break;
    case HostAction::Change::parameters:
        mask->GlobalUPaChanged(action.vehicle);
        break;
    }
}

void Session::Do(const RangeAction& action)
{
    std::string why;
    Use(action.id, "ein Diagramm, in dem ein Bereich gewählt werden kann", [&](Window& chart) {
        const InputResult result = framework::TakeRange(chart, action.from, action.to, why);
        return why.empty() ? result : InputResult::done;
    });
    if (const Window* chart = why.empty() ? nullptr : Control(action.id))
        Fail("range: " + NameOf(*chart) + ": " + why);
}

/// Answers the open request, or moves an object that a mask keeps in the scene.
void Session::Do(const PlaceAction& action)
{
    const auto number = base::ParseInteger(action.kind);
    const auto isMeant = [&](const CPlacedObject& object) {
        return number ? object.kind == *number : SameLetters(object.name, action.kind);
    };
    const auto answered = [&](CPlacedObject object) {
        object.position = {action.x, action.y};
        object.angle = action.angle;
        object.width = action.width;
        object.length = action.height;
        return object;
    };
    const framework::UiThread::Scope scope(m_thread);
    if (const krn::PlacingRequest* request = krn::OpenPlacingRequest(*m_data); request != nullptr) {
        if (isMeant(request->wish))
            krn::AnswerPlacing(*m_data, answered(request->wish));
        else
            Fail("place:" + action.kind + ": gefragt ist „" + request->wish.name + "“ (" +
                 std::to_string(request->wish.kind) + "): " + request->prompt);
        return;
    }
    for (const krn::SceneObject& standing : krn::SceneObjects(*m_data)) {
        if (isMeant(standing.object)) {
            standing.client->ObjectPlaced(answered(standing.object)); // moved, as with the mouse
            return;
        }
    }
    Fail("place:" + action.kind + ": kein Dialog fragt nach einer Position, und in der Szene steht nichts dieser Art");
}

void Session::Do(const DrawAction& action)
{
    const auto draw = [&](const Window& window) -> CDC {
        if (!window.painter)
            return framework::DrawDialog(window, kPictureScale);
        const CRect area = PictureArea(window);
        CDC context(area.Width(), area.Height());
        window.painter(context, area);
        return context;
    };
    const Window* shown = OpenDialog(action.id);
    if (shown == nullptr)
        shown = Control(action.id);
    if (shown == nullptr)
        return;
    if (shown->kind != Kind::dialog && !shown->painter) {
        Fail("draw: " + NameOf(*shown) + " ist " + KindText(shown->kind) + " und zeigt keine Zeichnung");
        return;
    }
    const std::string bytes = drawing::ExportByEnding(draw(*shown), action.file);
    if (bytes.empty())
        FailToWrite("draw: das Bild für „" + action.file + "“ wäre zu groß");
    else if (const auto written = base::WriteFileAtomically(action.file, bytes); !written)
        FailToWrite("draw: " + written.Text());
}

void Session::Do(const ProtocolAction& action)
{
    const Window* mask = Mask();
    if (mask == nullptr) {
        Fail("protocol: " + NameOfMask() + " ist geschlossen");
        return;
    }
    report::ProtocolContext context;
    context.number = m_number;
    context.helpPage = report::HelpPage(m_number);
    NoteMessages();
    context.messages = m_log.Of(mask->handle);
    context.caseTitle = m_data->Title();
    context.caseDetails = m_data->Angaben();
    std::string text;
    if (casefile::CaseToJson(*m_data, text))
        context.caseSha256 = base::Sha256(text);
    context.date = report::ProtocolDate();
    const report::Protocol protocol = report::MakeProtocol(*mask, context);
    const bool odt = action.file.ends_with('t') || action.file.ends_with('T');
    const std::string bytes =
        odt ? report::ProtocolOdt(protocol) : report::ProtocolHtml(protocol, report::HtmlPictures::inlineSvg);
    if (const auto written = base::WriteFileAtomically(action.file, bytes); !written)
        FailToWrite("protocol: " + written.Text());
}

void Session::Do(const RowsAction& action)
{
    const Window* window = OpenDialog(action.id);
    auto* mask = window == nullptr ? nullptr : dynamic_cast<CMDIRechDialog*>(window->object);
    const auto rows = mask == nullptr ? std::nullopt : mask->RowsRead();
    if (!rows) {
        const std::string number = std::to_string(action.id);
        Fail(mask == nullptr ? "rows: Maske " + number + " ist nicht geöffnet"
                             : "rows: Maske " + number + " liest keine Zeilen aus einer Datei");
        return;
    }
    if (SameFile(action.file, rows->file))
        FailToWrite("rows: „" + action.file + "“ ist die Datei, aus der die Zeilen stammen");
    else if (const auto written = base::WriteFileAtomically(action.file, TableText(*rows)); !written)
        FailToWrite("rows: " + written.Text());
}

void Session::Do(const StateAction&)
{
    if (m_onState)
        m_onState(State());
}

} // namespace cli
