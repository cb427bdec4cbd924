// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/CaseWindows.h"

#include "framework/UiThread.h"
#include "host/CRuvData.h"
#include "krn/OpenMasks.h"

#include <algorithm>

using framework::UiThread;

namespace krn
{

void BroadcastToWindows(CRuvData& data, UINT message, WPARAM wParam, LPARAM lParam, const CWnd* except)
{
    framework::UiThread* thread = framework::UiThread::Current();
    if (thread == nullptr)
        return;
    const framework::UiThread::Scope scope(*thread);
    thread->Front().MessageBroadcast({nullptr, message, wParam, lParam});
    for (CMDIRechDialog* mask : OpenMasks(data))
        if (mask != except && IsWindow(mask->m_hWnd))
            mask->SendMessage(message, wParam, lParam);
    if (CWnd* main = thread->GetMainWnd(); main != nullptr && main != except)
        main->SendMessage(message, wParam, lParam);
}

void NotifyOpenMasks(CRuvData& data, CaseChange kind, UINT_PTR vehicle)
{
    framework::UiThread* thread = framework::UiThread::Current();
    if (thread == nullptr)
        return;
    const framework::UiThread::Scope scope(*thread);
    for (CMDIRechDialog* mask : OpenMasks(data)) {
        if (!IsWindow(mask->m_hWnd))
            continue; // closed by the mask before it
        switch (kind) {
        case CaseChange::geometry:
            mask->GlobalGeoDatChanged(vehicle);
            break;
        case CaseChange::phases:
            mask->GlobalWZDatChanged(vehicle);
            break;
        case CaseChange::parameters:
            mask->GlobalUPaChanged(vehicle);
            break;
        }
    }
    thread->Front().CaseChanged(data);
}

} // namespace krn
