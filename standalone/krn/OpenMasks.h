// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The registry of open calculation masks by case and dialog ID.
#pragma once

#include "host/CDialog.h"

#include <vector>

namespace krn
{

/// Open masks of a case, oldest first.
std::vector<CMDIRechDialog*> OpenMasks(const CRuvData& data);

void RegisterMask(CMDIRechDialog& mask);
void UnregisterMask(CMDIRechDialog& mask);

} // namespace krn
