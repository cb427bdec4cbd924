// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Keys of the dialog as a whole that a drawing field is offered first: what it does not use, the dialog does.
#pragma once

#include "host/HostTypes.h"

inline constexpr UINT VK_RETURN = 0x0D; ///< otherwise the default button
