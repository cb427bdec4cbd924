// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a script does with a mask: one action per argument.
#pragma once

#include "host/HostTypes.h"

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
/// select:ID=INDEX
struct SelectAction {
    UINT id;
    int index;
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
/// state
struct StateAction {
};

using Action = std::variant<EnterAction, StepAction, PressAction, SelectAction, AnswerAction, FileAction, SendAction,
                            HostAction, RangeAction, PlaceAction, DrawAction, ProtocolAction, StateAction>;

struct ParsedAction {
    std::optional<Action> action; ///< nothing when the text is malformed
    std::string error;            ///< then: why
};

ParsedAction ParseAction(std::string_view text);

} // namespace cli
