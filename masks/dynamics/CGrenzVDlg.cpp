// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CGrenzVDlg.h"

#include "res/dynamics.h"

#include <array>
#include <initializer_list>

namespace
{

constexpr UINT kKeinText = 0;

UINT Grund(CGrenzVDat::Grenze grenze)
{
    switch (grenze) {
    case CGrenzVDat::Grenze::gefunden:
        break;
    case CGrenzVDat::Grenze::ohneRadius:
        return IDS_GRENZV_OHNE_RADIUS;
    case CGrenzVDat::Grenze::ohneHaftung:
        return IDS_GRENZV_OHNE_HAFTUNG;
    case CGrenzVDat::Grenze::unbegrenzt:
        return IDS_GRENZV_UNBEGRENZT;
    case CGrenzVDat::Grenze::unbestimmt:
        return IDS_GRENZV_UNBESTIMMT;
    }
    return kKeinText;
}

UINT Hinweis(CGrenzVDat::Kurve kurve)
{
    switch (kurve) {
    case CGrenzVDat::Kurve::stimmig:
        break;
    case CGrenzVDat::Kurve::kurzerBogen:
        return IDS_GRENZV_KURZER_BOGEN;
    case CGrenzVDat::Kurve::ueberKreis:
        return IDS_GRENZV_UEBER_KREIS;
    case CGrenzVDat::Kurve::sehneZuLang:
        return IDS_GRENZV_SEHNE_ZU_LANG;
    case CGrenzVDat::Kurve::bogenZuKurz:
        return IDS_GRENZV_BOGEN_ZU_KURZ;
    case CGrenzVDat::Kurve::ohneErgebnis:
        return IDS_GRENZV_KEIN_RADIUS;
    }
    return kKeinText;
}

} // namespace

CGrenzVDlg::CGrenzVDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_KURVENGRENZGESCHWINDIGKEIT, parent, data, nullptr, nullptr), m_dat(data)
{
    m_isCalculationMask = 1;
}

const CMessageMap* CGrenzVDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CGrenzVDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CGrenzVDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CGrenzVDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CGrenzVDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CGrenzVDlg::SetupWindow()
{
    // The stored cross-fall is shown; the road counts as level until one of its fields is changed.
    m_dat.Laden();
    m_dat.berechnet = 0;
    ZeigeQuergefaelle();
    CMDIRechDialog::SetupWindow();
}

void CGrenzVDlg::UebernehmeEingabe(UINT controlId)
{
    switch (controlId) {
    case IDC_GRENZV_QUERGEFAELLE_GRAD:
        m_dat.QuergefaelleAusGrad();
        Update(IDC_GRENZV_QUERGEFAELLE_PROZENT);
        ZeigeQuergefaelle();
        break;
    case IDC_GRENZV_QUERGEFAELLE_PROZENT:
        m_dat.QuergefaelleAusProzent();
        Update(IDC_GRENZV_QUERGEFAELLE_GRAD);
        ZeigeQuergefaelle();
        break;
    case IDC_GRENZV_RADIUS:
        ZeigeKurve(m_dat.RadiusGeaendert());
        break;
    case IDC_GRENZV_SEHNE:
        ZeigeKurve(m_dat.SehneGeaendert());
        break;
    case IDC_GRENZV_HOEHE:
        ZeigeKurve(m_dat.HoeheGeaendert());
        break;
    case IDC_GRENZV_BOGEN:
        ZeigeKurve(m_dat.BogenGeaendert());
        break;
    default:
        break;
    }
}

LRESULT CGrenzVDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    UebernehmeEingabe(static_cast<UINT>(controlId));
    PostMessage(WM_RUV_UPDATEDIALOG);
    return 0;
}

void CGrenzVDlg::IncValue(int controlId)
{
    UebernehmeEingabe(static_cast<UINT>(controlId));
    if (m_dat.berechnet != 0)
        RechneUndZeige();
    PostMessage(WM_RUV_UPDATEDIALOG);
}

CGrenzVDat::Grenze CGrenzVDlg::RechneUndZeige()
{
    const CWaitCursor wait;
    const CGrenzVDat::Grenze grenze = m_dat.Rechnen();
    m_gefunden = grenze == CGrenzVDat::Grenze::gefunden;
    if (m_gefunden)
        ResultsComputed();
    else
        ResultsFailed();
    ZeigeGrenze(grenze);
    return grenze;
}

void CGrenzVDlg::Rechnen()
{
    m_dat.berechnet = RechneUndZeige() == CGrenzVDat::Grenze::gefunden ? 1 : 0;
    UpdateDialog();
}

void CGrenzVDlg::OnButtonOk()
{
    RechneUndZeige();
    m_dat.Merken();
    OnOK();
}

void CGrenzVDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    ZeigeGrenze(CGrenzVDat::Grenze::gefunden);
    ZeigeKurve(CGrenzVDat::Kurve::stimmig);
    ZeigeQuergefaelle();
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CGrenzVDlg::ZeigeGrenze(CGrenzVDat::Grenze grenze)
{
    // Results of an earlier calculation stay, but must not look like those of this one.
    const bool gefunden = grenze == CGrenzVDat::Grenze::gefunden;
    const bool alt = !gefunden && m_dat.grenzgeschwindigkeit != 0.0;
    const UINT befund = alt ? IDS_GRENZV_KEINE_NEUE_GRENZE : IDS_GRENZV_KEINE_GRENZE;
    ShowText(IDC_GRENZV_BEFUND, gefunden ? kKeinText : befund);
    // On a cross-fall that friction does not hold, there is a lower limit too.
    const double innen = m_dat.RutschgrenzeInnen();
    const bool bestimmt = gefunden || grenze == CGrenzVDat::Grenze::unbegrenzt;
    if (bestimmt && innen > 0.0)
        ShowText(IDC_GRENZV_GRUND, gefunden ? IDS_GRENZV_RUTSCHT_NACH_INNEN : IDS_GRENZV_UNBEGRENZT_ABER_INNEN,
                 std::array{ShownNumber{innen, units::kmh}});
    else
        ShowText(IDC_GRENZV_GRUND, Grund(grenze));
    for (const UINT id : std::initializer_list<UINT>{IDC_GRENZV_QUERBESCHL_FUEHLBAR_BEFUND,
                                                     IDC_GRENZV_QUERBESCHL_BEFUND, IDC_GRENZV_SCHRAEGLAGE_BEFUND})
        ShowText(id, alt ? IDS_GRENZV_ALTER_WERT : kKeinText);
}

void CGrenzVDlg::ZeigeKurve(CGrenzVDat::Kurve kurve)
{
    ShowText(IDC_GRENZV_KURVE_HINWEIS, Hinweis(kurve));
}

void CGrenzVDlg::ZeigeQuergefaelle()
{
    const bool unbenutzt = m_dat.quergefaelleGrad != 0.0 && m_dat.quergefaelle == 0.0;
    ShowText(IDC_GRENZV_QUERGEFAELLE_HINWEIS, unbenutzt ? IDS_GRENZV_QUERGEFAELLE_UNBENUTZT : kKeinText);
}
