// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CVkonstDlg.h"

#include "res/dynamics.h"

#include <initializer_list>
#include <string>

namespace
{

using Dat = CVkonstDat;

/// A quantity's edits, row by row, and what an entry in one of them does.
struct Spalte {
    const CVkonstDat::Edits& edits;
    void (Dat::*geaendert)(std::size_t zeile);
};

constexpr Spalte kSpalten[] = {
    {Dat::kKmh, &Dat::KmhGeaendert},
    {Dat::kMs, &Dat::MsGeaendert},
    {Dat::kWeg, &Dat::WegGeaendert},
    {Dat::kZeit, &Dat::ZeitGeaendert},
};

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
        OnMessage<&CVkonstDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CVkonstDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CVkonstDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CVkonstDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CVkonstDlg::SetupWindow()
{
    for (const UINT id : std::initializer_list<UINT>{IDC_VKONST_MS_1, IDC_VKONST_KMH_1})
        if (CWnd* edit = GetDlgItem(id))
            edit->SetFocus();
    CMDIRechDialog::SetupWindow();
    m_dat.Laden();
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
    ShowText(IDC_VKONST_HINWEIS, hinweis);
}

void CVkonstDlg::UebernehmeEingabe(UINT controlId)
{
    for (const auto& [edits, geaendert] : kSpalten)
        for (std::size_t i = 0; i < edits.size(); ++i)
            if (edits[i] == controlId)
                (m_dat.*geaendert)(i);
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
    m_dat.Merken();
    UpdateDialog();
}

void CVkonstDlg::OnButtonOk()
{
    Rechnen();
    OnOK();
}

void CVkonstDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    SendMessage(WM_RUV_UPDATEDIALOG);
}
