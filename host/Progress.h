// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How far long work has come, and whether the user still wants it.
#pragma once

#include <string>

enum class Work { goOn, cancel };

/// A calculation that may take longer than a moment calls this now and then, some hundred times in all, on the
/// user-interface thread. `what` says in German what is being done, `done` is its part from 0 to 1. Once the answer is
/// Work::cancel, it stays that until the work has returned: it stops and leaves everything as it was before.
/// Meanwhile timers, posted messages and all input wait, so that nothing changes under the calculation; but the button
/// whose click began it can be clicked again, which cancels.
Work RuvProgress(const std::string& what, double done);
