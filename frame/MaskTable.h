// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frame/Export.h"
#include "host/HostTypes.h"

#include <span>

class CMDIRechDialog;
class CRuvData;

/// One calculation mask. The number is also the dialog resource of its main window.
struct MaskEntry {
    UINT number;
    const char* className;
    const char* title;
    /// 2 driving dynamics, 3 manoeuvres, 4 collision and traces, 5 import, 6 video, 7 calculator.
    int subsystem;
    /// Creates the mask for a case; null for a mask that is not built.
    CMDIRechDialog* (*create)(CRuvData&);
};

/// All masks, ascending by number.
RUVMOD_API std::span<const MaskEntry> MaskTable();
