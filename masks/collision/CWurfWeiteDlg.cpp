// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CWurfWeiteDlg.h"

#include "host/Controls.h"
#include "masks/collision/Skizze.h"
#include "masks/collision/WurfBild.h"
#include "res/collision.h"

namespace
{

using Befund = CWurfWeiteDat::Befund;

UINT Hinweis(Befund befund)
{
    switch (befund) {
    case Befund::keiner:
        break;
    case Befund::hoeheNichtErreicht:
        return IDS_WURF_HOEHE_NICHT_ERREICHT;
    case Befund::ungenau:
        return IDS_WURF_UNGENAU;
    case Befund::zielVerfehlt:
        return IDS_WURF_ZIEL_VERFEHLT;
    case Befund::unerreichbar:
        return IDS_WURF_UNERREICHBAR;
    case Befund::flugZuLang:
        return IDS_WURF_ZU_LANG;
    case Befund::nichtBerechenbar:
        return IDS_WURF_NICHT_BERECHENBAR;
    }
    return 0;
}

bool IstGescheitert(Befund befund)
{
    return befund == Befund::unerreichbar || befund == Befund::flugZuLang || befund == Befund::nichtBerechenbar;
}

} // namespace

CWurfWeiteDlg::CWurfWeiteDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_WURFWEITE, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CWurfWeiteDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CWurfWeiteDlg::EntryAsStep>(WM_RUV_EDITCHANGED),
        OnControl<&CWurfWeiteDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CWurfWeiteDlg::Rechnen>(IDC_RECHNEN),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CWurfWeiteDlg::SetupWindow()
{
    CMDIRechDialog::SetupWindow();
    SetDrawing(IDC_WURF_ZEICHENFELD, [this](CDC& dc) { ZeichneWurf(dc, m_dat); });
}

void CWurfWeiteDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    ZeigeHinweis();
}

void CWurfWeiteDlg::ZeigeHinweis()
{
    // Speed and distance both stand among the inputs: which one was computed must be said.
    const bool steht = m_dat.ergebnisSteht != 0 && !IstGescheitert(m_befund);
    ShowText(IDC_WURF_RECHENART, !steht ? 0 : m_dat.rueckwaerts != 0 ? IDS_WURF_GESUCHT : IDS_WURF_GERECHNET);
    const UINT text = Hinweis(m_befund);
    ShowText(IDC_WURF_HINWEIS, text);
    CWnd* hinweis = GetDlgItem(IDC_WURF_HINWEIS);
    if (m_befund == Befund::zielVerfehlt && hinweis != nullptr)
        hinweis->SetWindowText(skizze::MitZahl(text, skizze::MitEinheit(m_dat.zielabweichung, unitType::length, 2)));
}

void CWurfWeiteDlg::IncValue(int controlId)
{
    switch (controlId) {
    case IDC_WURF_V0_KMH:
        m_dat.KmhGeaendert();
        break;
    case IDC_WURF_V0_MS:
        m_dat.MsGeaendert();
        break;
    case IDC_WURF_QUERSCHNITT:
        m_dat.QuerschnittGeaendert();
        break;
    case IDC_WURF_WURF_RUTSCHWEITE:
        m_dat.ZielGeaendert();
        break;
    default:
        break;
    }
    if (m_dat.ergebnisSteht != 0)
        Rechnen();
    else
        UpdateDialog();
}

void CWurfWeiteDlg::Rechnen()
{
    const CWaitCursor wait;
    m_befund = m_dat.Rechnen();
    ResultsComputed();
    UpdateDialog();
}

void CWurfWeiteDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    m_befund = Befund::keiner;
    ResultsCleared();
    UpdateDialog();
}
