// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CHalbeSichtDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/HalbeSichtZeichnung.h"
#include "masks/manoeuvre/Texte.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <functional>

namespace
{

using Ausgang = CHalbeSichtDat::Ausgang;

constexpr WPARAM kKeinFahrzeug = static_cast<WPARAM>(-1);
constexpr COLORREF kOhneFahrzeug = RGB(90, 90, 90);

std::string Hinweis(Ausgang ausgang, const CHalbeSichtDat::Vorbehalt& vorbehalt)
{
    if (ausgang != Ausgang::berechnet)
        return LoadRuvString(ausgang == Ausgang::keineLoesung ? IDS_HALBESICHT_KEINE_LOESUNG
                                                              : IDS_HALBESICHT_UNMOEGLICH);
    const auto welche = [](const std::array<bool, 2>& betroffen) {
        return std::string(betroffen[0] && betroffen[1] ? "A und B" : betroffen[0] ? "A" : betroffen[1] ? "B" : "");
    };
    std::string text;
    const auto add = [&](UINT id, const std::array<bool, 2>& betroffen) {
        if (text.empty() && !welche(betroffen).empty())
            text = Eingesetzt(LoadRuvString(id), {welche(betroffen)});
    };
    add(IDS_HALBESICHT_NEGATIV, vorbehalt.negativeGeschwindigkeit);
    add(IDS_HALBESICHT_VOR_VOLLBREMSUNG, vorbehalt.vorVollbremsung);
    add(IDS_HALBESICHT_BREMST_NICHT, vorbehalt.bremstNicht);
    return text;
}

std::string Phasennummer(std::int64_t spalte)
{
    return std::to_string(spalte - static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) + 1);
}

} // namespace

CHalbeSichtDlg::CHalbeSichtDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_HALBE_SICHT, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CHalbeSichtDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CHalbeSichtDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnMessage<&CHalbeSichtDlg::OnTransferNow>(WM_RUV_TRANSFERNOW),
        OnControl<&CHalbeSichtDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CHalbeSichtDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CHalbeSichtDlg::OnButtonTransfer>(IDC_UEBERTRAGEN),
        OnControl<&CHalbeSichtDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CHalbeSichtDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    struct Wahl {
        UINT fahrzeug, phase;
        CHalbeSichtDat::Teilnehmer* seite;
        CHalbeSichtDat::Teilnehmer* andere;
    };
    for (const Wahl& wahl : {Wahl{IDC_HALBESICHT_A_FAHRZEUG, IDC_HALBESICHT_A_PHASE, &m_dat.a, &m_dat.b},
                             Wahl{IDC_HALBESICHT_B_FAHRZEUG, IDC_HALBESICHT_B_PHASE, &m_dat.b, &m_dat.a}}) {
        new CFzgCombo(this, wahl.fahrzeug, 0, &wahl.seite->fahrzeug, &wahl.andere->fahrzeug, m_editColors,
                      m_editColors);
        auto* phase = new CAbsCombo(this, wahl.phase, &wahl.seite->phase, m_editColors, m_editColors);
        phase->SetVehicle(&wahl.seite->fahrzeug);
    }
}

void CHalbeSichtDlg::SetupWindow()
{
    m_dat.Oeffne();
    m_geaendert = false;
    SetDrawing(IDC_HALBESICHT_ZEICHENFELD,
               [this](CDC& dc) { ZeichneHalbeSicht(dc, m_dat, Farbe(m_dat.a), Farbe(m_dat.b), m_geaendert); });
    CMDIRechDialog::SetupWindow();
}

std::int64_t CHalbeSichtDlg::ColorVehicleOf(const void* field) const
{
    for (const CHalbeSichtDat::Teilnehmer* seite : {&m_dat.a, &m_dat.b})
        if (std::greater_equal<const void*>()(field, seite) && std::less<const void*>()(field, seite + 1))
            return seite->fahrzeug;
    return -1; // of both
}

COLORREF CHalbeSichtDlg::Farbe(const CHalbeSichtDat::Teilnehmer& seite) const
{
    return m_data.IsFzgValid(seite.fahrzeug) ? KfzDat(static_cast<std::size_t>(seite.fahrzeug)).color : kOhneFahrzeug;
}

void CHalbeSichtDlg::FolgeEingabe(UINT controlId)
{
    m_geaendert = true;
    switch (controlId) {
    case IDC_HALBESICHT_A_KOLLGESCHW:
        m_dat.KollGeschwGeaendert(m_dat.a);
        break;
    case IDC_HALBESICHT_B_KOLLGESCHW:
        m_dat.KollGeschwGeaendert(m_dat.b);
        break;
    case IDC_HALBESICHT_SUMME:
        m_dat.SummeGeaendert();
        break;
    case IDC_HALBESICHT_A_FAHRZEUG:
        m_dat.FahrzeugGewechselt(m_dat.a);
        break;
    case IDC_HALBESICHT_B_FAHRZEUG:
        m_dat.FahrzeugGewechselt(m_dat.b);
        break;
    case IDC_HALBESICHT_A_PHASE:
        m_dat.LeseSpalte(m_dat.a);
        break;
    case IDC_HALBESICHT_B_PHASE:
        m_dat.LeseSpalte(m_dat.b);
        break;
    default:
        break;
    }
}

LRESULT CHalbeSichtDlg::OnEditChanged(WPARAM controlId, LPARAM)
{
    FolgeEingabe(static_cast<UINT>(controlId));
    UpdateDialog();
    return 0;
}

void CHalbeSichtDlg::IncValue(int controlId)
{
    FolgeEingabe(static_cast<UINT>(controlId));
    if (m_dat.berechnet != 0)
        RechneUndZeige(false);
    PostMessage(WM_RUV_UPDATEDIALOG);
}

void CHalbeSichtDlg::GlobalWZDatChanged(UINT_PTR vehicle)
{
    // Somebody else changed the phases, or a step was taken back: what was said of the case may no longer be true.
    const auto changed = static_cast<std::int64_t>(vehicle);
    if (changed == m_dat.a.fahrzeug || changed == m_dat.b.fahrzeug)
        ShowText(IDC_HALBESICHT_FALL, 0);
    CMDIRechDialog::GlobalWZDatChanged(vehicle);
}

bool CHalbeSichtDlg::RechneUndZeige(bool mitMeldungen)
{
    const Ausgang ausgang = m_dat.Rechnen();
    m_geaendert = ausgang != Ausgang::berechnet;
    if (m_geaendert)
        ResultsFailed();
    else
        ResultsComputed();
    ShowText(IDC_HALBESICHT_HINWEIS, Hinweis(ausgang, m_dat.PruefeErgebnis()));
    ShowText(IDC_HALBESICHT_FALL, 0);
    const bool gelungen = ausgang == Ausgang::berechnet && (!RuvCfg.transferData || Uebertrage(mitMeldungen));
    UpdateDialog();
    return gelungen;
}

bool CHalbeSichtDlg::Uebertrage(bool mitMeldungen)
{
    using Uebertragung = CHalbeSichtDat::Uebertragung;
    switch (m_dat.Uebertragen()) {
    case Uebertragung::keinPlatz:
        if (mitMeldungen)
            AfxMessageBox(LoadRuvString(IDS_HALBESICHT_KEIN_PLATZ));
        return false;
    case Uebertragung::keinFahrzeug:
        ShowText(IDC_HALBESICHT_FALL, LoadRuvString(IDS_HALBESICHT_KEIN_FAHRZEUG));
        break;
    case Uebertragung::nichtBerechnet:
        ShowText(IDC_HALBESICHT_FALL, LoadRuvString(IDS_HALBESICHT_NICHT_UEBERTRAGBAR));
        break;
    case Uebertragung::geaendert:
        ShowText(IDC_HALBESICHT_FALL, LoadRuvString(IDS_HALBESICHT_GEAENDERT));
        break;
    case Uebertragung::erfolgt: {
        const auto name = [&](const CHalbeSichtDat::Teilnehmer& seite) {
            return KfzDat(static_cast<std::size_t>(seite.fahrzeug)).name;
        };
        ShowText(IDC_HALBESICHT_FALL,
                 Eingesetzt(LoadRuvString(IDS_HALBESICHT_UEBERTRAGEN),
                            {name(m_dat.a), Phasennummer(m_dat.a.phase), name(m_dat.b), Phasennummer(m_dat.b.phase)}));
        break;
    }
    }
    return true;
}

void CHalbeSichtDlg::Rechnen()
{
    RechneUndZeige(true);
}

void CHalbeSichtDlg::OnButtonTransfer()
{
    PostMessage(WM_RUV_TRANSFERNOW);
    PostMessage(WM_RUV_UPDATEDIALOG);
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, kKeinFahrzeug);
}

LRESULT CHalbeSichtDlg::OnTransferNow(WPARAM, LPARAM)
{
    const bool aufStand = m_dat.ergebnis != 0 && !m_geaendert;
    // A calculation transfers by itself when that is switched on.
    if (aufStand || (RechneUndZeige(true) && !RuvCfg.transferData))
        Uebertrage(true);
    UpdateDialog();
    return 0;
}

void CHalbeSichtDlg::OnButtonOk()
{
    const bool aufStand = m_dat.ergebnis != 0 && !m_geaendert;
    // Without room in the case the mask stays, so that other phases can be chosen.
    if (!aufStand && !RechneUndZeige(true) && m_dat.ergebnis != 0)
        return;
    OnOK();
}

void CHalbeSichtDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    ResultsCleared();
    m_geaendert = true;
    ShowText(IDC_HALBESICHT_HINWEIS, {});
    ShowText(IDC_HALBESICHT_FALL, 0);
    SendMessage(WM_RUV_UPDATEDIALOG);
}
