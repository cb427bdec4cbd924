// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankenSeite.h"

#include "host/Bindings.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

CSchrankenSeite::CSchrankenSeite(UINT dialogId, CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CMDIRechDialog(dialogId, &maske, dat.RuvData(), nullptr, nullptr), m_maske(maske), m_dat(&dat)
{
}

const CMessageMap* CSchrankenSeite::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CSchrankenSeite::OnEditChanged>(WM_RUV_EDITCHANGED),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

bool CSchrankenSeite::ResultsAreOutdated()
{
    return m_maske.ResultsAreOutdated();
}

UINT CSchrankenSeite::GetDlgResIDForAssistant()
{
    return IDD_SCHRANKENVERFAHREN;
}

LRESULT CSchrankenSeite::OnEditChanged(WPARAM controlId, LPARAM)
{
    WertGeaendert(static_cast<UINT>(controlId), false);
    return 0;
}

void CSchrankenSeite::IncValue(int controlId)
{
    WertGeaendert(static_cast<UINT>(controlId), true);
    PostMessage(WM_RUV_UPDATEDIALOG);
}

bool CSchrankenSeite::IstSchalter(UINT controlId) const
{
    const CBinding* binding = FindBinding(controlId);
    return binding != nullptr && binding->Spec() != nullptr && binding->Spec()->choice;
}
