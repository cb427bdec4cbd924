// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <string>

namespace framework
{

/// The host's own string, which stands at the end of the resource chain; empty when there is none. Units in it are
/// metric; UnitsSystemConfiguration::WithUnit exchanges them.
std::string HostString(UINT id);

} // namespace framework
