// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Actions.h"

#include "drawing/DrawingExport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
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
    const auto index = pair ? Whole<int>(pair->right) : std::nullopt;
    return id && index ? MaybeAction(SelectAction{*id, *index}) : std::nullopt;
}

MaybeAction ParseAnswer(std::string_view rest)
{
    const auto pair = SplitAtEquals(rest);
    const auto number = pair ? Whole<UINT>(pair->left) : std::nullopt;
    const auto answer = pair ? Whole<int>(pair->right) : std::nullopt;
    return number && answer ? MaybeAction(AnswerAction{*number, *answer}) : std::nullopt;
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

/// The actions that begin with a word.
struct Form {
    std::string_view word;
    std::string_view usage;
    MaybeAction (*parse)(std::string_view rest);
};

constexpr Form kForms[] = {
    {"press:", "press:ID", ParsePress},
    {"select:", "select:ID=INDEX", ParseSelect},
    {"answer:", "answer:MELDUNG=KNOPF", ParseAnswer},
    {"file:", "file:PFAD", ParseFile},
    {"send:", "send:NACHRICHT,WPARAM,LPARAM", ParseSend},
    {"host:", "host:geo=FAHRZEUG, host:wz=FAHRZEUG oder host:upa=FAHRZEUG", ParseHost},
    {"range:", "range:ID=VON,BIS", ParseRange},
    {"place:", "place:ART=X,Y,WINKEL,B,H", ParsePlace},
    {"draw:", "draw:ID=DATEI mit der Endung .svg, .png oder .pdf", ParseDraw},
    {"protocol:", "protocol:DATEI mit der Endung .html oder .odt", ParseProtocol},
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
                                   "select:, answer:, file:, send:, host:, range:, place:, draw: oder protocol:"};
}

} // namespace cli
