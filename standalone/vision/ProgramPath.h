// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The path of the running program.
std::string HostProgramPath();
