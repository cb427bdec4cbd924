// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <string>

namespace report
{

/// The help page of a mask (Markdown, docs/masks), compiled into the program; empty when there is none.
std::string HelpPage(UINT mask);

} // namespace report
