// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Message boxes by number. The texts lie in the host's message table; arguments replace {0}, {1}, ... in them.
#pragma once

#include "host/HostTypes.h"

#include <initializer_list>
#include <span>
#include <string>
#include <variant>

class CWnd;

using MessageArg = std::variant<double, std::int64_t, std::string>;

/// The button that ended a message box.
enum FehlerRet : int {
    fehlerOk = 1,
    fehlerAbbrechen = 2,
    fehlerJa = 6,
    fehlerNein = 7,
};

FehlerRet FehlerMeldungArgs(CWnd* owner, UINT messageId, std::span<const MessageArg> args);

/// Shows message `messageId` and returns the answer. Numbers are shown with the user's decimal sign.
template <class... Args> FehlerRet FehlerMeldung(CWnd* owner, UINT messageId, const Args&... args)
{
    const std::initializer_list<MessageArg> list{MessageArg(args)...};
    return FehlerMeldungArgs(owner, messageId, {list.begin(), list.size()});
}
