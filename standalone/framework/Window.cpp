// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/Window.h"

#include "base/Utf.h"
#include "host/Assert.h"

#include <algorithm>

namespace framework
{
namespace
{

/// Bytes of the UTF-8 character that starts at `at`.
std::size_t CharacterLength(const std::string& text, std::size_t at)
{
    std::size_t end = at + 1;
    while (end < text.size() && base::ContinuesCharacter(text[end]))
        ++end;
    return end - at;
}

std::size_t IndexInParent(const Window& control)
{
    const auto& siblings = control.parent->children;
    const auto found =
        std::find_if(siblings.begin(), siblings.end(), [&](const auto& sibling) { return sibling.get() == &control; });
    RUV_ASSERT(found != siblings.end());
    return static_cast<std::size_t>(found - siblings.begin());
}

} // namespace

const char* KindName(Kind kind)
{
    switch (kind) {
    case Kind::frame:
        return "frame";
    case Kind::dialog:
        return "dialog";
    case Kind::edit:
        return "edit";
    case Kind::button:
        return "button";
    case Kind::check:
        return "check";
    case Kind::radio:
        return "radio";
    case Kind::group:
        return "group";
    case Kind::combo:
        return "combo";
    case Kind::list:
        return "list";
    case Kind::trackbar:
        return "trackbar";
    case Kind::label:
        return "static";
    case Kind::field:
        return "field";
    case Kind::grid:
        return "grid";
    case Kind::chart:
        return "chart";
    }
    return "";
}

bool IsDrawn(Kind kind)
{
    return kind == Kind::field || kind == Kind::chart;
}

bool Grid::Holds(int row, int column) const
{
    return row >= 0 && static_cast<std::size_t>(row) < rows.size() && column >= 0 &&
           static_cast<std::size_t>(column) < columns.size();
}

Window* Window::Child(UINT childId) const
{
    const auto found = std::find(childIds.begin(), childIds.end(), childId);
    if (found == childIds.end() || !IsOwnId(childId))
        return nullptr;
    return children[static_cast<std::size_t>(found - childIds.begin())].get();
}

bool IsShown(const Window& control)
{
    if (!control.visible)
        return false;
    const Window* above = control.parent;
    return above == nullptr || !above->page || IsShown(*above);
}

Window& DialogOf(Window& control)
{
    const bool within = control.parent != nullptr && (control.page || control.kind != Kind::dialog);
    return within ? DialogOf(*control.parent) : control;
}

std::string WithoutMnemonic(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '&' && i + 1 < text.size())
            ++i;
        out.push_back(text[i]);
    }
    return out;
}

std::string MnemonicOf(const std::string& text)
{
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '&')
            continue;
        if (text[i + 1] == '&') {
            ++i;
            continue;
        }
        std::string letter = text.substr(i + 1, CharacterLength(text, i + 1));
        if (letter.size() == 1 && letter[0] >= 'A' && letter[0] <= 'Z')
            letter[0] = static_cast<char>(letter[0] - 'A' + 'a');
        return letter;
    }
    return {};
}

bool NeedsLabel(Kind kind)
{
    return kind == Kind::edit || kind == Kind::combo || kind == Kind::list || kind == Kind::trackbar || IsDrawn(kind) ||
           kind == Kind::grid;
}

std::string LabelOf(const Window& control)
{
    if (control.parent == nullptr || !NeedsLabel(control.kind))
        return WithoutMnemonic(control.text);
    if ((control.kind == Kind::chart || control.kind == Kind::grid) && !control.text.empty())
        return WithoutMnemonic(control.text); // it shows none, so that the template may name it there
    const std::size_t place = IndexInParent(control);
    if (place == 0 || control.parent->children[place - 1]->kind != Kind::label)
        return {};
    return WithoutMnemonic(control.parent->children[place - 1]->text);
}

std::vector<Window*> RadioGroup(const Window& radio)
{
    const auto& siblings = radio.parent->children;
    std::size_t first = IndexInParent(radio);
    while (first > 0 && !siblings[first]->groupStart)
        --first;
    std::vector<Window*> group;
    for (std::size_t i = first; i < siblings.size() && (i == first || !siblings[i]->groupStart); ++i)
        if (siblings[i]->kind == Kind::radio)
            group.push_back(siblings[i].get());
    return group;
}

std::vector<Window*> TabOrder(const Window& dialog)
{
    std::vector<Window*> order;
    for (const auto& child : dialog.children) {
        if (!child->visible || !child->enabled)
            continue;
        if (child->kind == Kind::radio) {
            const auto group = RadioGroup(*child);
            const auto chosen = std::find_if(group.begin(), group.end(), [](const Window* w) { return w->check != 0; });
            const Window* stop = chosen != group.end() ? *chosen : group.front();
            if (stop == child.get())
                order.push_back(child.get());
        } else if (child->tabStop) {
            order.push_back(child.get());
        }
    }
    return order;
}

} // namespace framework
