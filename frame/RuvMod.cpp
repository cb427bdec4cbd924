// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/RuvMod.h"

#include "frame/MaskTable.h"
#include "host/CDialog.h"

#include <algorithm>

CAbDaten* AbDat = nullptr;

void ExecuteRuvModRechnungsMaske(UINT maskId, CRuvData& data)
{
    constexpr UINT kFirst = 400;
    constexpr UINT kLast = 494;
    if (maskId < kFirst || maskId > kLast)
        return;
    const auto masks = MaskTable();
    const auto entry =
        std::find_if(masks.begin(), masks.end(), [maskId](const MaskEntry& mask) { return mask.number == maskId; });
    if (entry == masks.end() || entry->create == nullptr)
        return;

    // The framework takes the number in a pointer-sized argument.
    char* const number = reinterpret_cast<char*>(static_cast<UINT_PTR>(maskId));
    CMDIRechDialog* const open = CMDIRechDialog::FindMDIRechDialogByDlgId(data, number);
    if (open != nullptr && IsWindow(open->m_hWnd) && IsIconic(open->m_hWnd)) {
        open->ShowWindow(SW_RESTORE);
        return;
    }
    CMDIRechDialog* const mask = entry->create(data);
    if (mask == nullptr)
        return;
    const CWinThread* const thread = AfxGetThread();
    mask->DoModeless(thread == nullptr ? nullptr : thread->GetMainWnd());
}
