// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CVkonstDlg.h"

#include "host/Bindings.h"
#include "host/FehlerMeldung.h"
#include "res/resource.h"

#include <array>
#include <initializer_list>
#include <string>

namespace
{

struct Zeile {
    UINT kmh;
    UINT ms;
    UINT weg;
    UINT zeit;
};

constexpr std::array<Zeile, CVkonstDat::kZeilen> kZeilen{{
    {IDC_VKONST_KMH_1, IDC_VKONST_MS_1, IDC_VKONST_WEG_1, IDC_VKONST_ZEIT_1},
    {IDC_VKONST_KMH_2, IDC_VKONST_MS_2, IDC_VKONST_WEG_2, IDC_VKONST_ZEIT_2},
    {IDC_VKONST_KMH_3, IDC_VKONST_MS_3, IDC_VKONST_WEG_3, IDC_VKONST_ZEIT_3},
    {IDC_VKONST_KMH_4, IDC_VKONST_MS_4, IDC_VKONST_WEG_4, IDC_VKONST_ZEIT_4},
    {IDC_VKONST_KMH_5, IDC_VKONST_MS_5, IDC_VKONST_WEG_5, IDC_VKONST_ZEIT_5},
    {IDC_VKONST_KMH_6, IDC_VKONST_MS_6, IDC_VKONST_WEG_6, IDC_VKONST_ZEIT_6},
}};

/// The static beside an edit that names its unit.
constexpr UINT Einheit(UINT edit)
{
    return 10000 + edit;
}
static_assert(Einheit(IDC_VKONST_KMH_1) == IDC_VKONST_KMH_1_EINHEIT);
static_assert(Einheit(IDC_VKONST_WEG_6) == IDC_VKONST_WEG_6_EINHEIT);

} // namespace

CVkonstDlg::CVkonstDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_KONSTANTE_GESCHWINDIGKEIT, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CVkonstDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CVkonstDlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&CVkonstDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CVkonstDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CVkonstDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CVkonstDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

BOOL CVkonstDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    return CMDIDialog::OnCommand(wParam, lParam);
}

void CVkonstDlg::BuildObjects()
{
    const UnitType kmh(unitType::speedKmh);
    const UnitType ms(unitType::speedMs);
    const UnitType length(unitType::length);
    const auto bind = [this](UINT id, double& field, const UnitType* unit) {
        new CEditDouble(this, id, &field, 0.0, 1000.0, 2, 0.0, nullptr, nullptr, unit);
    };
    for (std::size_t i = 0; i < kZeilen.size(); ++i) {
        bind(kZeilen[i].kmh, m_dat.geschwindigkeitKmh[i], &kmh);
        bind(kZeilen[i].ms, m_dat.geschwindigkeitMs[i], &ms);
        bind(kZeilen[i].weg, m_dat.weg[i], &length);
        bind(kZeilen[i].zeit, m_dat.zeit[i], nullptr);
    }
}

void CVkonstDlg::SetupWindow()
{
    for (const UINT id : std::initializer_list<UINT>{IDC_VKONST_MS_1, IDC_VKONST_KMH_1})
        if (CWnd* edit = GetDlgItem(id))
            edit->SetFocus();
    for (const Zeile& zeile : kZeilen) {
        ReplaceChildWindowSubstringWithUnitString(Einheit(zeile.kmh), UnitType(unitType::speedKmh));
        ReplaceChildWindowSubstringWithUnitString(Einheit(zeile.ms), UnitType(unitType::speedMs));
        ReplaceChildWindowSubstringWithUnitString(Einheit(zeile.weg), UnitType(unitType::length));
    }
    CMDIRechDialog::SetupWindow();
    m_dat.Lade();
}

void CVkonstDlg::ShutDownWindow()
{
    CMDIRechDialog::ShutDownWindow();
}

UINT CVkonstDlg::GetCloneCropStyle(UINT* out)
{
    out[0] = IDC_RECHNEN;
    out[1] = 2;
    return 1;
}

void CVkonstDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    std::string hinweis;
    if (const auto zeile = m_dat.UneinigeZeile()) {
        // The text holds the row's number as "#".
        hinweis = LoadRuvString(IDS_VKONST_UNEINIG);
        const std::size_t at = hinweis.find('#');
        if (at != std::string::npos)
            hinweis.replace(at, 1, std::to_string(*zeile + 1));
    }
    if (CWnd* control = GetDlgItem(IDC_VKONST_HINWEIS))
        control->SetWindowText(hinweis);
}

void CVkonstDlg::UebernehmeEingabe(UINT controlId)
{
    for (std::size_t i = 0; i < kZeilen.size(); ++i) {
        if (controlId == kZeilen[i].kmh)
            m_dat.KmhGeaendert(i);
        else if (controlId == kZeilen[i].ms)
            m_dat.MsGeaendert(i);
        else if (controlId == kZeilen[i].weg)
            m_dat.WegGeaendert(i);
        else if (controlId == kZeilen[i].zeit)
            m_dat.ZeitGeaendert(i);
    }
}

LRESULT CVkonstDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    UpdateDialog();
    return 0;
}

LRESULT CVkonstDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    UebernehmeEingabe(static_cast<UINT>(controlId));
    UpdateDialog();
    return 0;
}

void CVkonstDlg::IncValue(int controlId)
{
    UebernehmeEingabe(static_cast<UINT>(controlId));
    UpdateDialog();
}

void CVkonstDlg::Rechnen()
{
    m_dat.Rechnen();
    m_dat.Merke();
    UpdateDialog();
}

void CVkonstDlg::OnButtonOk()
{
    Rechnen();
    OnOK();
}

void CVkonstDlg::Loeschen()
{
    if (FehlerMeldung(this, 1052) != fehlerJa)
        return;
    m_dat.Loeschen();
    SendMessage(WM_RUV_UPDATEDIALOG);
}
