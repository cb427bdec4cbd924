// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The module's entry. C linkage, so that the exported names are the same for every compiler.
#pragma once

#include "frame/Export.h"
#include "host/CWnd.h"

class CAbDaten;
class CRuvData;

extern "C" {

/// Opens the calculation mask with the number for the case. An open minimised one is restored instead; an open visible
/// one gets a second instance beside it. A number that no mask has does nothing.
RUVMOD_API void ExecuteRuvModRechnungsMaske(UINT maskId, CRuvData& data);

/// Called at attach (reason 1) and detach (reason 0) of the module. 0 fails the load.
RUVMOD_API BOOL DllMain(HINSTANCE instance, DWORD reason, void* reserved);

/// Data of the open turning mask (450), null while none is open.
extern RUVMOD_API CAbDaten* AbDat;
}
