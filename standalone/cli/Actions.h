// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a script does with a mask: one action per argument.
#pragma once

#include "host/Controls.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace cli
{

/// ID=TEXT: types and finishes the entry.
struct EnterAction {
    UINT id;
    std::string text;
};
/// ID+ or ID-: one spinner step.
struct StepAction {
    UINT id;
    int direction;
};
/// press:ID
struct PressAction {
    UINT id;
};
/// select:ID=INDEX, or select:ID=FROM,TO for the rows of a grid
struct SelectAction {
    UINT id;
    int index;
    int last; ///< the same as `index` when only one is given
    bool rows = false;
};
/// cell:ID=ROW,COLUMN,TEXT: types into a cell of a grid and finishes the entry
struct CellAction {
    UINT id;
    int row;
    int column;
    std::string text;
};
/// What is held and how it is clicked: words joined by +, behind a point.
struct MouseManner {
    MouseButton button = MouseButton::left;
    UINT modifiers = 0;
    bool twice = false;
};
/// click:ID=X,Y in the field's own pixels
struct ClickAction {
    UINT id;
    CDPoint point;
    MouseManner manner{};
};
/// drag:ID=X1,Y1,X2,Y2
struct DragAction {
    UINT id;
    CDPoint from;
    CDPoint to;
    MouseManner manner{};
};
/// wheel:ID=X,Y,NOTCHES
struct WheelAction {
    UINT id;
    CDPoint point;
    double notches;
    MouseManner manner{};
};
/// key:ID=NAME
struct KeyAction {
    UINT id;
    UINT key;
    char32_t character;
    UINT modifiers;
};
/// answer:N=B
struct AnswerAction {
    UINT message;
    int answer;
};
/// file:PATH
struct FileAction {
    std::string path;
};
/// send:MSG,WPARAM,LPARAM
struct SendAction {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};
/// host:geo=V, host:wz=V, host:upa=V
struct HostAction {
    enum class Change { geometry, phases, parameters };
    Change change;
    UINT_PTR vehicle;
};
/// range:ID=FROM,TO in axis values
struct RangeAction {
    UINT id;
    double from;
    double to;
};
/// place:KIND=X,Y,ANGLE,W,H in cm and degrees
struct PlaceAction {
    std::string kind;
    double x, y, angle, width, height;
};
/// draw:ID=FILE
struct DrawAction {
    UINT id;
    std::string file;
};
/// protocol:FILE
struct ProtocolAction {
    std::string file;
};
/// rows:NUMBER=FILE
struct RowsAction {
    UINT id;
    std::string file;
};
/// state
struct StateAction {
};

using Action = std::variant<EnterAction, StepAction, PressAction, SelectAction, CellAction, ClickAction, DragAction,
                            WheelAction, KeyAction, AnswerAction, FileAction, SendAction, HostAction, RangeAction,
                            PlaceAction, DrawAction, ProtocolAction, RowsAction, StateAction>;

struct ParsedAction {
    std::optional<Action> action; ///< nothing when the text is malformed
    std::string error;            ///< then: why
};

ParsedAction ParseAction(std::string_view text);

} // namespace cli
