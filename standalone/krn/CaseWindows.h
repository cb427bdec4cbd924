// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How the case reaches the windows that show it. The case data know no window beyond these two calls.
#pragma once

#include "host/HostTypes.h"

class CRuvData;
class CWnd;

namespace krn
{

/// What of a vehicle changed.
enum class CaseChange { geometry, phases, parameters };

/// Sends a message to every open mask of the case and to the main window, except `except`.
void BroadcastToWindows(CRuvData& data, UINT message, WPARAM wParam, LPARAM lParam, const CWnd* except);

/// Calls the open masks' GlobalGeoDatChanged, GlobalWZDatChanged or GlobalUPaChanged with the vehicle's index.
void NotifyOpenMasks(CRuvData& data, CaseChange kind, UINT_PTR vehicle);

} // namespace krn
