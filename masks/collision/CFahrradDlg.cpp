// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CFahrradDlg.h"

#include "host/Controls.h"
#include "masks/collision/CTextCombo.h"
#include "masks/collision/FahrradBild.h"
#include "res/collision.h"

namespace
{

using Befund = CFahrradDat::Befund;

constexpr int kTypen = 6; // with "none"

UINT Hinweis(Befund befund)
{
    switch (befund) {
    case Befund::keiner:
        break;
    case Befund::bandNegativ:
        return IDS_FAHRRAD_BAND_NEGATIV;
    case Befund::ohneNeigung:
        return IDS_FAHRRAD_OHNE_NEIGUNG;
    case Befund::ueberZunahme:
        return IDS_FAHRRAD_UEBER_ZUNAHME;
    case Befund::unvollstaendig:
        return IDS_FAHRRAD_UNVOLLSTAENDIG;
    }
    return 0;
}

} // namespace

CFahrradDlg::CFahrradDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_ANSTREIFSPUREN_FAHRRAD, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CFahrradDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CFahrradDlg::EntryAsStep>(WM_RUV_EDITCHANGED),
        OnControl<&CFahrradDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CFahrradDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CFahrradDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CFahrradDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    new CTextCombo(this, IDC_FAHRRAD_TYP, &m_dat.fahrradtyp, IDS_FAHRRAD_TYP_0, kTypen);
}

void CFahrradDlg::SetupWindow()
{
    CMDIRechDialog::SetupWindow();
    SetDrawing(IDC_FAHRRAD_ZEICHENFELD, [this](CDC& dc) { ZeichneFahrrad(dc, m_dat); });
}

void CFahrradDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    const bool steht = m_dat.ergebnisSteht != 0;
    const auto befund = [&](UINT control, bool trifftZu, UINT ja, UINT nein) {
        ShowText(control, !steht ? 0 : trifftZu ? ja : nein);
    };
    befund(IDC_FAHRRAD_BEFUND_HOEHE, m_dat.IstHoeheErreicht(), IDS_FAHRRAD_ERREICHT, IDS_FAHRRAD_NICHT_ERREICHT);
    befund(IDC_FAHRRAD_BEFUND_NEIGUNG, m_dat.IstNeigungUeberschritten(), IDS_FAHRRAD_UEBERSCHRITTEN,
           IDS_FAHRRAD_UNTERSCHRITTEN);
    befund(IDC_FAHRRAD_BEFUND_BERUEHRUNG, m_dat.IstBeruehrungUnmoeglich(), IDS_FAHRRAD_UNMOEGLICH,
           IDS_FAHRRAD_MOEGLICH);
    ShowText(IDC_FAHRRAD_HINWEIS, Hinweis(m_befund));
}

void CFahrradDlg::IncValue(int controlId)
{
    if (controlId == IDC_FAHRRAD_TYP)
        m_dat.TypGewaehlt();
    if (m_dat.ergebnisSteht != 0)
        Rechnen();
    else
        UpdateDialog();
}

void CFahrradDlg::Rechnen()
{
    m_befund = m_dat.Rechnen();
    ResultsComputed();
    UpdateDialog();
    // Other views of the result refresh.
    if (CWnd* host = MainWindow())
        host->PostMessage(WM_RUV_UPDATEDIALOG);
}

void CFahrradDlg::OnButtonOk()
{
    Rechnen();
    OnOK();
}

void CFahrradDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    m_befund = Befund::keiner;
    ResultsCleared();
    UpdateDialog();
}
