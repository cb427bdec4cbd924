// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Actions.h"

#include "base/Utf.h"
#include "drawing/DrawingExport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace cli
{
namespace
{

template <class T> std::optional<T> Whole(std::string_view text)
{
    T value{};
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// A finite number with a decimal point: the comma separates here.
std::optional<double> Finite(std::string_view text)
{
    const auto value = Whole<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

/// A whole number, also with the prefix 0x; negative ones wrap around as the machine's words do.
std::optional<std::uintptr_t> Word(std::string_view text)
{
    if (text.starts_with("0x") || text.starts_with("0X")) {
        std::uintptr_t value = 0;
        const char* last = text.data() + text.size();
        const auto [end, failure] = std::from_chars(text.data() + 2, last, value, 16);
        return failure == std::errc{} && end == last ? std::optional(value) : std::nullopt;
    }
    if (text.starts_with('-')) {
        const auto value = Whole<std::intptr_t>(text);
        return value ? std::optional(static_cast<std::uintptr_t>(*value)) : std::nullopt;
    }
    return Whole<std::uintptr_t>(text);
}

struct Pair {
    std::string_view left;
    std::string_view right;
};

std::optional<Pair> SplitAtEquals(std::string_view text)
{
    const std::size_t at = text.find('=');
    if (at == std::string_view::npos)
        return std::nullopt;
    return Pair{text.substr(0, at), text.substr(at + 1)};
}

std::vector<std::string_view> SplitAtCommas(std::string_view text)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t at = text.find(',');
        parts.push_back(text.substr(0, at));
        if (at == std::string_view::npos)
            return parts;
        text.remove_prefix(at + 1);
    }
}

std::vector<double> Numbers(std::string_view text, std::size_t count)
{
    std::vector<double> numbers;
    for (const std::string_view part : SplitAtCommas(text)) {
        const auto number = Finite(part);
        if (!number)
            return {};
        numbers.push_back(*number);
    }
    return numbers.size() == count ? numbers : std::vector<double>{};
}

using MaybeAction = std::optional<Action>;

MaybeAction ParsePress(std::string_view rest)
{
    const auto id = Whole<UINT>(rest);
    return id ? MaybeAction(PressAction{*id}) : std::nullopt;
}

MaybeAction ParseSelect(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    if (!id)
        return std::nullopt;
    const auto parts = SplitAtCommas(pair->right);
    const auto first = Whole<int>(parts.front());
    const auto last = Whole<int>(parts.back());
    return first && last && parts.size() <= 2 ? MaybeAction(SelectAction{*id, *first, *last, parts.size() == 2})
                                              : std::nullopt;
}

/// The text takes all that follows, commas too.
MaybeAction ParseCell(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    const std::size_t first = pair ? pair->right.find(',') : std::string_view::npos;
    const std::size_t second = first == std::string_view::npos ? first : pair->right.find(',', first + 1);
    if (!id || second == std::string_view::npos)
        return std::nullopt;
    const auto row = Whole<int>(pair->right.substr(0, first));
    const auto column = Whole<int>(pair->right.substr(first + 1, second - first - 1));
    return row && column ? MaybeAction(CellAction{*id, *row, *column, std::string(pair->right.substr(second + 1))})
                         : std::nullopt;
}

/// Takes the word and a + behind it off the front.
bool TakeWord(std::string_view& text, std::string_view word)
{
    if (!text.starts_with(word) || (text.size() > word.size() && text[word.size()] != '+'))
        return false;
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    return true;
}

std::optional<MouseManner> ParseManner(std::string_view text)
{
    MouseManner manner;
    while (!text.empty())
        if (TakeWord(text, "Shift"))
            manner.modifiers |= MK_SHIFT;
        else if (TakeWord(text, "Ctrl"))
            manner.modifiers |= MK_CONTROL;
        else if (TakeWord(text, "Right"))
            manner.button = MouseButton::right;
        else if (TakeWord(text, "Middle"))
            manner.button = MouseButton::middle;
        else if (TakeWord(text, "Double"))
            manner.twice = true;
        else
            return std::nullopt;
    return manner;
}

/// ID=NUMBERS, and the manner behind them when one is given.
struct MouseText {
    UINT id;
    std::vector<double> numbers;
    MouseManner manner;
};

std::optional<MouseText> ParseMouse(std::string_view rest, std::size_t count)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    if (!id)
        return std::nullopt;
    const auto parts = SplitAtCommas(pair->right);
    std::optional<MouseManner> manner = MouseManner{};
    std::string_view numbers = pair->right;
    if (parts.size() == count + 1) {
        manner = parts.back().empty() ? std::nullopt : ParseManner(parts.back());
        numbers.remove_suffix(parts.back().size() + 1);
    }
    auto values = Numbers(numbers, count);
    return manner && !values.empty() ? std::optional(MouseText{*id, std::move(values), *manner}) : std::nullopt;
}

MaybeAction ParseClick(std::string_view rest)
{
    const auto mouse = ParseMouse(rest, 2);
    if (!mouse)
        return std::nullopt;
    return ClickAction{mouse->id, {mouse->numbers[0], mouse->numbers[1]}, mouse->manner};
}

MaybeAction ParseDrag(std::string_view rest)
{
    const auto mouse = ParseMouse(rest, 4);
    if (!mouse || mouse->manner.twice)
        return std::nullopt;
    const auto& n = mouse->numbers;
    return DragAction{mouse->id, {n[0], n[1]}, {n[2], n[3]}, mouse->manner};
}

MaybeAction ParseWheel(std::string_view rest)
{
    const auto mouse = ParseMouse(rest, 3);
    if (!mouse || mouse->manner.twice || mouse->manner.button != MouseButton::left)
        return std::nullopt;
    return WheelAction{mouse->id, {mouse->numbers[0], mouse->numbers[1]}, mouse->numbers[2], mouse->manner};
}

/// The code point of a text that is one character; 0 for any other.
char32_t OneCharacter(std::string_view utf8)
{
    const std::u32string points = base::IsUtf8(utf8) ? base::Codepoints(utf8) : std::u32string{};
    return points.size() == 1 && points[0] >= U' ' ? points[0] : 0;
}

MaybeAction ParseKey(std::string_view rest)
{
    constexpr struct {
        std::string_view name;
        UINT key;
    } kKeys[] = {{"Left", VK_LEFT},     {"Right", VK_RIGHT},   {"Up", VK_UP},         {"Down", VK_DOWN},
                 {"Home", VK_HOME},     {"End", VK_END},       {"PageUp", VK_PRIOR},  {"PageDown", VK_NEXT},
                 {"Insert", VK_INSERT}, {"Delete", VK_DELETE}, {"Backspace", VK_BACK}};
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    if (!id)
        return std::nullopt;
    std::string_view name = pair->right;
    KeyAction action{*id, 0, 0, 0};
    for (bool more = true; more;) {
        more = false;
        for (const auto& [word, modifier] : {std::pair{"Shift+", MK_SHIFT}, std::pair{"Ctrl+", MK_CONTROL}})
            if (name.starts_with(word)) {
                name.remove_prefix(std::string_view(word).size());
                action.modifiers |= modifier;
                more = true;
            }
    }
    for (const auto& key : kKeys)
        if (key.name == name)
            action.key = key.key;
    if (name.size() > 1 && name[0] == 'F') { // F1 is the help
        const auto number = Whole<UINT>(name.substr(1));
        action.key = number && *number >= 2 && *number <= 12 ? VK_F1 + *number - 1 : 0;
    }
    if (name == "Space")
        name = " ";
    if (action.key != 0)
        return action;
    char32_t character = OneCharacter(name);
    if (character == 0)
        return std::nullopt;
    if (character >= 'a' && character <= 'z') {
        action.key = static_cast<UINT>(character - 'a' + 'A');
        if ((action.modifiers & MK_SHIFT) != 0)
            character = action.key;
    } else if ((character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9') || character == ' ') {
        action.key = static_cast<UINT>(character);
        if (character >= 'A')
            action.modifiers |= MK_SHIFT;
    }
    if ((action.modifiers & MK_CONTROL) == 0)
        action.character = character;
    return action;
}

MaybeAction ParseAnswer(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto number = pair ? Whole<UINT>(pair->left) : std::nullopt;
    const auto answer = pair ? Whole<int>(pair->right) : std::nullopt;
    const bool button = answer && (*answer == IDOK || *answer == IDCANCEL || *answer == IDYES || *answer == IDNO);
    return number && button ? MaybeAction(AnswerAction{*number, *answer}) : std::nullopt;
}

MaybeAction ParseFile(std::string_view rest)
{
    return rest.empty() ? std::nullopt : MaybeAction(FileAction{std::string(rest)});
}

MaybeAction ParseSend(std::string_view rest)
{
    const auto parts = SplitAtCommas(rest);
    if (parts.size() != 3)
        return std::nullopt;
    const auto message = Word(parts[0]);
    const auto wParam = Word(parts[1]);
    const auto lParam = Word(parts[2]);
    if (!message || *message > 0xFFFF || !wParam || !lParam)
        return std::nullopt;
    return SendAction{static_cast<UINT>(*message), *wParam, static_cast<LPARAM>(*lParam)};
}

MaybeAction ParseHost(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto vehicle = pair ? Whole<UINT_PTR>(pair->right) : std::nullopt;
    if (!vehicle)
        return std::nullopt;
    if (pair->left == "geo")
        return HostAction{HostAction::Change::geometry, *vehicle};
    if (pair->left == "wz")
        return HostAction{HostAction::Change::phases, *vehicle};
    if (pair->left == "upa")
        return HostAction{HostAction::Change::parameters, *vehicle};
    return std::nullopt;
}

MaybeAction ParseRange(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    const auto ends = pair ? Numbers(pair->right, 2) : std::vector<double>{};
    return id && !ends.empty() ? MaybeAction(RangeAction{*id, ends[0], ends[1]}) : std::nullopt;
}

MaybeAction ParsePlace(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto n = pair ? Numbers(pair->right, 5) : std::vector<double>{};
    if (n.empty() || pair->left.empty())
        return std::nullopt;
    return PlaceAction{std::string(pair->left), n[0], n[1], n[2], n[3], n[4]};
}

MaybeAction ParseDraw(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    if (!id || !drawing::IsDrawingFile(std::string(pair->right)))
        return std::nullopt;
    return DrawAction{*id, std::string(pair->right)};
}

MaybeAction ParseProtocol(std::string_view rest)
{
    std::string ending(rest.substr(std::min(rest.size(), rest.rfind('.'))));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return ending == ".html" || ending == ".odt" ? MaybeAction(ProtocolAction{std::string(rest)}) : std::nullopt;
}

MaybeAction ParseRows(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto id = pair ? Whole<UINT>(pair->left) : std::nullopt;
    return id && !pair->right.empty() ? MaybeAction(RowsAction{*id, std::string(pair->right)}) : std::nullopt;
}

/// The actions that begin with a word.
struct Form {
    std::string_view word;
    std::string_view usage;
    MaybeAction (*parse)(std::string_view rest);
};

constexpr Form kForms[] = {
    {"press:", "press:ID", ParsePress},
    {"select:", "select:ID=INDEX oder select:ID=VON,BIS", ParseSelect},
    {"cell:", "cell:ID=ZEILE,SPALTE,TEXT", ParseCell},
    {"click:", "click:ID=X,Y", ParseClick},
    {"drag:", "drag:ID=X1,Y1,X2,Y2", ParseDrag},
    {"wheel:", "wheel:ID=X,Y,RASTEN", ParseWheel},
    {"key:", "key:ID=TASTE", ParseKey},
    {"answer:", "answer:MELDUNG=KNOPF mit 1 (OK), 2 (Abbrechen), 6 (Ja) oder 7 (Nein)", ParseAnswer},
    {"file:", "file:PFAD", ParseFile},
    {"send:", "send:NACHRICHT,WPARAM,LPARAM", ParseSend},
    {"host:", "host:geo=FAHRZEUG, host:wz=FAHRZEUG oder host:upa=FAHRZEUG", ParseHost},
    {"range:", "range:ID=VON,BIS", ParseRange},
    {"place:", "place:ART=X,Y,WINKEL,B,H", ParsePlace},
    {"draw:", "draw:ID=DATEI mit der Endung .svg, .png oder .pdf", ParseDraw},
    {"protocol:", "protocol:DATEI mit der Endung .html oder .odt", ParseProtocol},
    {"rows:", "rows:NUMMER=DATEI", ParseRows},
};

/// ID=TEXT, ID+ and ID-.
MaybeAction ParseControlAction(std::string_view text)
{
    if (const auto pair = SplitAtEquals(text)) {
        const auto id = Whole<UINT>(pair->left);
        return id ? MaybeAction(EnterAction{*id, std::string(pair->right)}) : std::nullopt;
    }
    if (text.ends_with('+') || text.ends_with('-')) {
        const auto id = Whole<UINT>(text.substr(0, text.size() - 1));
        return id ? MaybeAction(StepAction{*id, text.back() == '+' ? 1 : -1}) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

ParsedAction ParseAction(std::string_view text)
{
    if (text == "state")
        return {StateAction{}, {}};
    const std::string quoted = "Aktion „" + std::string(text) + "“";
    for (const Form& form : kForms) {
        if (!text.starts_with(form.word))
            continue;
        if (auto action = form.parse(text.substr(form.word.size())))
            return {std::move(action), {}};
        return {std::nullopt, quoted + " ist fehlerhaft; erwartet wird " + std::string(form.usage)};
    }
    if (auto action = ParseControlAction(text))
        return {std::move(action), {}};
    return {std::nullopt, quoted + " gibt es nicht; erwartet wird ID=TEXT, ID+, ID-, state oder eine mit press:, "
                                   "select:, cell:, click:, drag:, wheel:, key:, answer:, file:, send:, host:, range:, "
                                   "place:, draw:, protocol: oder rows:"};
}

} // namespace cli
