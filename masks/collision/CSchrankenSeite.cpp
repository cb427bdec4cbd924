// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankenSeite.h"

#include "host/Bindings.h"
#include "host/Controls.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/resource.h"

namespace
{

constexpr UINT kEinheit = 10000; // number of the unit beside an edit, above the edit's own

} // namespace

CSchrankenSeite::CSchrankenSeite(UINT dialogId, CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CMDIRechDialog(dialogId, &maske, dat.RuvData(), nullptr, nullptr), m_maske(maske), m_dat(&dat)
{
}

const CMessageMap* CSchrankenSeite::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CSchrankenSeite::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CSchrankenSeite::OnEditChanged>(WM_RUV_EDITCHANGED),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

UINT CSchrankenSeite::GetDlgResIDForAssistant()
{
    return IDD_SCHRANKENVERFAHREN;
}

LRESULT CSchrankenSeite::OnUpdateDialog(WPARAM, LPARAM)
{
    UpdateDialog();
    return 0;
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

CEditDouble* CSchrankenSeite::Binde(UINT controlId, double& feld, double minimum, double maximum, unitType einheit)
{
    const UnitType unit(einheit);
    return new CEditDouble(this, controlId, &feld, minimum, maximum, 2, 0.0, nullptr, nullptr,
                           einheit == unitType::none ? nullptr : &unit);
}

void CSchrankenSeite::ZeigeEinheit(UINT controlId, unitType einheit)
{
    ReplaceChildWindowSubstringWithUnitString(kEinheit + controlId, UnitType(einheit));
}

bool CSchrankenSeite::Angekreuzt(UINT controlId) const
{
    const CWnd* control = GetDlgItem(controlId);
    return control != nullptr && static_cast<const CButton*>(control)->GetCheck() != 0;
}

void CSchrankenSeite::Kreuze(UINT controlId, bool an)
{
    if (CWnd* control = GetDlgItem(controlId))
        static_cast<CButton*>(control)->SetCheck(an ? 1 : 0);
}

void CSchrankenSeite::Hinweis(UINT controlId, UINT text)
{
    if (CWnd* control = GetDlgItem(controlId))
        control->SetWindowText(text == 0 ? std::string{} : LoadRuvString(text));
}
