// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The host's message table: German texts by number.
#pragma once

#include "framework/FrontEnd.h"
#include "host/FehlerMeldung.h"

#include <span>
#include <string>

namespace krn
{

struct MessageText {
    UINT number;
    framework::MessageKind kind;
    const char* text; ///< {0}, {1}, ... stand for the arguments
};

std::span<const MessageText> MessageTable();

/// The message with its arguments in place. A number the table does not hold is shown with its number.
framework::ShownMessage FormatMessage(UINT number, std::span<const MessageArg> args);

} // namespace krn
