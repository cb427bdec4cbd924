// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The messages that masks have shown, for their protocols. One that a later calculation has made untrue is forgotten.
#pragma once

#include "host/HostTypes.h"

#include <string>
#include <vector>

namespace report
{

class MessageLog
{
  public:
    /// A message of the dialog, shown by what the user is doing.
    void Note(HWND dialog, std::string text);
    /// What the user did has been handled. A calculation in it is the one that its messages speak of; one in a later
    /// action cures them.
    void EndAction();
    /// What still holds, in the order it was shown, each text once.
    std::vector<std::string> Of(HWND dialog) const;

  private:
    struct Entry {
        HWND dialog;
        std::string text;
        bool open;        ///< the action still runs
        int calculations; ///< of the dialog when the action had ended
    };
    std::vector<Entry> m_entries;
};

} // namespace report
