// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CLadungDlg.h"

#include "host/Bindings.h"
#include "host/Controls.h"
#include "masks/collision/CTextCombo.h"
#include "masks/collision/LadungBild.h"
#include "masks/collision/Skizze.h"
#include "res/collision.h"

#include <cmath>
#include <string>

namespace
{

constexpr int kMaterialien = 11;
constexpr int kUebertragungen = 3;

} // namespace

CLadungDlg::CLadungDlg(CRuvData& data, UINT dialogId)
    : CMDIRechDialog(dialogId, MainWindow(), data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CLadungDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CLadungDlg::EntryAsStep>(WM_RUV_EDITCHANGED),
        OnControl<&CLadungDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CLadungDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CLadungDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CFzgCombo(this, IDC_LADUNG_FAHRZEUG, -1, &m_dat.fahrzeug, nullptr, nullptr, nullptr);
    new CTextCombo(this, IDC_LADUNG_REIBUNG_WAHL, &m_dat.reibungWahl, IDS_LADUNG_REIBUNG_0, kMaterialien);
    new CTextCombo(this, IDC_LADUNG_UEBERTRAGUNG_WAHL, &m_dat.uebertragungWahl, IDS_LADUNG_UEBERTRAGUNG_0,
                   kUebertragungen);
}

void CLadungDlg::SetupWindow()
{
    m_anfang = m_dat.Eingaben();
    CMDIRechDialog::SetupWindow();
    SetDrawing(IDC_LADUNG_ZEICHENFELD, [this](CDC& dc) { ZeichneLadung(dc, m_dat); });
}

void CLadungDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    for (const auto& [control, anzahl] :
         {std::pair{IDC_LADUNG_NORM_ZURRUNGEN, m_dat.normZurrungen}, {IDC_LADUNG_KIN_ZURRUNGEN, m_dat.kinZurrungen}})
        if (CWnd* edit = std::isfinite(anzahl) ? nullptr : GetDlgItem(static_cast<UINT>(control)))
            edit->SetWindowText("–");
    ZeigeHinweis();
}

void CLadungDlg::ZeigeHinweis()
{
    std::string hinweis;
    const auto nimm = [&](UINT text, double newton) {
        hinweis += (hinweis.empty() ? "" : "\n") + skizze::MitZahl(text, skizze::Zahl(newton, 0));
    };
    if (m_dat.fehltLaengs)
        nimm(IDS_LADUNG_FEHLT_LAENGS, *m_dat.fehltLaengs);
    if (m_dat.fehltQuer)
        nimm(IDS_LADUNG_FEHLT_QUER, *m_dat.fehltQuer);
    if (hinweis.empty() && !(std::isfinite(m_dat.normZurrungen) && std::isfinite(m_dat.kinZurrungen)))
        hinweis = LoadRuvString(IDS_LADUNG_OHNE_ANZAHL);
    ShowText(IDC_LADUNG_HINWEIS, hinweis);
}

void CLadungDlg::IncValue(int controlId)
{
    switch (controlId) {
    case IDC_LADUNG_FAHRZEUG:
        m_dat.FahrzeugGewaehlt();
        break;
    case IDC_LADUNG_REIBUNG_WAHL:
        m_dat.ReibungGewaehlt();
        break;
    case IDC_LADUNG_UEBERTRAGUNG_WAHL:
        m_dat.UebertragungGewaehlt();
        break;
    default:
        break;
    }
    if (m_dat.ergebnisSteht != 0)
        Rechnen();
    else
        UpdateDialog();
}

void CLadungDlg::Rechnen()
{
    m_dat.Rechnen();
    ResultsComputed();
    UpdateDialog();
}

void CLadungDlg::OnButtonOk()
{
    Rechnen();
    OnOK();
}

void CLadungDlg::OnCancel()
{
    m_dat.Eingaben() = m_anfang;
    if (m_dat.ergebnisSteht != 0)
        Rechnen();
    else
        UpdateDialog();
    CMDIRechDialog::OnCancel();
}
