// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CVermDlg.h"

#include "host/Bindings.h"
#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/FehlerMeldung.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/VermDiagramm.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>

namespace
{

constexpr UINT kKeinText = 0;
constexpr UINT kErsteMeldung = 1400;
constexpr UINT kNichtBerechenbar = 1000;

// The radio buttons of direction and kind, from 1 on.
constexpr UINT kRichtungen[] = {IDC_VERM_ENTGEGEN, IDC_VERM_QUER, IDC_VERM_GLEICH};
constexpr UINT kArten[] = {IDC_VERM_RAEUMLICH, IDC_VERM_ZEITLICH};

UINT Text(CVermDat::Befund befund)
{
    switch (befund) {
    case CVermDat::Befund::keiner:
        break;
    case CVermDat::Befund::vermieden:
        return IDS_VERM_VERMIEDEN;
    case CVermDat::Befund::geraeumt:
        return IDS_VERM_GERAEUMT;
    case CVermDat::Befund::nurGeraeumt:
        return IDS_VERM_NUR_GERAEUMT;
    case CVermDat::Befund::kollision:
        return IDS_VERM_KOLLISION;
    case CVermDat::Befund::ohneAnhalten:
        return IDS_VERM_KEIN_ANHALTEN;
    case CVermDat::Befund::stehtBeiKontakt:
        return IDS_VERM_STEHT;
    }
    return kKeinText;
}

/// A string of the module with a vehicle's number, counted from 1, in the place of #.
std::string MitFahrzeug(UINT text, std::int64_t fahrzeug)
{
    std::string satz = LoadRuvString(text);
    const std::size_t stelle = satz.find('#');
    return stelle == std::string::npos ? satz : satz.replace(stelle, 1, std::to_string(fahrzeug + 1));
}

std::string Satz(Uebertragung ausgang, std::int64_t fahrzeug, UINT was)
{
    return ausgang == Uebertragung::erfolgt ? MitFahrzeug(IDS_VERM_UEBERTRAGEN, fahrzeug) + LoadRuvString(was)
                                            : MitFahrzeug(IDS_VERM_KEIN_FAHRZEUG, fahrzeug);
}

/// All that the user has entered and chosen.
std::vector<double> Eingaben(CVermDat& dat)
{
    std::vector<double> eingaben;
    for (const RecordField& feld : dat.Felder())
        if (feld.spec->role == FieldRole::input)
            eingaben.push_back(*std::get<double*>(feld.value));
    for (const std::int64_t wahl :
         {dat.fahrzeug, dat.phase, dat.ziel, dat.gegner, dat.zielGegner, dat.art, dat.richtung, dat.version})
        eingaben.push_back(static_cast<double>(wahl));
    return eingaben;
}

} // namespace

CVermDlg::CVermDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_VERMEIDBARKEIT, parent, data, nullptr, nullptr), m_dat(data),
      m_graphik(IDD_VERM_GRAPHIK, IDC_VERM_GROSSES_ZEICHENFELD, *this, [this](CDC& dc) { Zeichne(dc); })
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
    m_editColors = &RuvCfg.editColors;
}

const CMessageMap* CVermDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CVermDlg::OnEditChanged>(WM_RUV_EDITCHANGED),
        OnControl<&CVermDlg::Loeschen>(IDC_LOESCHEN),
        OnControl<&CVermDlg::Rechnen>(IDC_RECHNEN),
        OnControl<&CVermDlg::OnTransferOption>(IDC_UEBERTRAGEN),
        OnControl<&CVermDlg::Graphik>(IDC_VERM_GRAPHIK),
        OnControl<&CVermDlg::OnButtonOk>(IDC_MASKE_OK),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CVermDlg::BuildObjects()
{
    CMDIRechDialog::BuildObjects();
    const auto combo = [this](UINT id, std::int64_t& field, std::vector<CIntField> ausser) {
        auto* created = new CFzgCombo(this, id, 0, &field, nullptr, m_editColors, m_editColors);
        created->Ausser(std::move(ausser));
    };
    combo(IDC_VERM_FAHRZEUG, m_dat.fahrzeug, {});
    combo(IDC_VERM_ZIEL, m_dat.ziel, {&m_dat.fahrzeug});
    combo(IDC_VERM_GEGNER, m_dat.gegner, {&m_dat.fahrzeug, &m_dat.ziel});
    combo(IDC_VERM_ZIEL_GEGNER, m_dat.zielGegner, {&m_dat.fahrzeug, &m_dat.ziel, &m_dat.gegner});
    auto* phasen = new CAbsCombo(this, IDC_VERM_PHASEN, &m_dat.phase, m_editColors, m_editColors);
    phasen->SetVehicle(&m_dat.fahrzeug);
}

void CVermDlg::SetupWindow()
{
    m_dat.Oeffne();
    m_geaendert = m_uebertragen = false;
    m_stand.reset();
    const auto fahrzeuge = Fahrzeuge();
    std::transform(
        fahrzeuge.begin(), fahrzeuge.end(), m_gewaehlt.begin(), [](const std::int64_t* f) { return *f; });
    SetDrawing(IDC_VERM_ZEICHENFELD, [this](CDC& dc) { Zeichne(dc); });
    CMDIRechDialog::SetupWindow();
}

void CVermDlg::UpdateDialog()
{
    for (std::size_t i = 0; i < std::size(kRichtungen); ++i)
        Check(kRichtungen[i], m_dat.richtung == static_cast<std::int64_t>(i) + 1);
    for (std::size_t i = 0; i < std::size(kArten); ++i)
        Check(kArten[i], m_dat.art == static_cast<std::int64_t>(i) + 1);
    Check(IDC_UEBERTRAGEN, RuvCfg.transferData);
    ZeigeBefund();
    CMDIRechDialog::UpdateDialog();
    m_graphik.Redraw();
}

void CVermDlg::GlobalWZDatChanged(UINT_PTR hint)
{
    const auto changed = static_cast<std::int64_t>(hint);
    if (changed == m_dat.gegner)
        m_dat.LeseGegner();
    if (changed == m_dat.fahrzeug)
        m_dat.FahrzeugGeaendert();
    VerwirfErgebnis();
    UpdateDialog();
}

std::int64_t CVermDlg::ColorVehicleOf(const void* field) const
{
    const void* const desGegners[] = {&m_dat.vG, &m_dat.aG, &m_dat.sFB, &m_dat.sFR, &m_dat.xV};
    const bool seine = std::find(std::begin(desGegners), std::end(desGegners), field) != std::end(desGegners);
    return seine ? m_dat.gegner : m_dat.fahrzeug;
}

bool CVermDlg::FallGilt()
{
    return m_stand && !m_geaendert && m_stand->eingaben == Eingaben(m_dat) && m_stand->ziel == Phasen(m_dat.ziel) &&
           m_stand->gegner == Phasen(m_dat.zielGegner);
}

std::optional<CWegZeitDat> CVermDlg::Phasen(std::int64_t fahrzeug) const
{
    return m_data.IsFzgValid(fahrzeug) ? std::optional(WZDat(static_cast<std::size_t>(fahrzeug))) : std::nullopt;
}

std::array<std::int64_t*, 4> CVermDlg::Fahrzeuge()
{
    return {&m_dat.fahrzeug, &m_dat.ziel, &m_dat.gegner, &m_dat.zielGegner};
}

/// What was read afresh is not what the results belong to.
void CVermDlg::VerwirfErgebnis()
{
    if (!m_dat.Berechnet() && std::exchange(m_ergebnis, false))
        ResultsFailed();
}

/// The four vehicles differ: one that is chosen anew elsewhere gives its place for the former one.
void CVermDlg::TauscheFahrzeug(UINT controlId)
{
    const auto fahrzeuge = Fahrzeuge();
    const void* const feld = FindBinding(controlId)->Field();
    for (std::size_t i = 0; i < fahrzeuge.size(); ++i)
        for (std::size_t j = 0; j < fahrzeuge.size(); ++j)
            if (fahrzeuge[i] == feld && i != j && *fahrzeuge[j] == *fahrzeuge[i])
                *fahrzeuge[j] = m_gewaehlt[i];
    if (m_dat.fahrzeug != m_gewaehlt[0])
        m_dat.FahrzeugGewechselt();
    if (m_dat.gegner != m_gewaehlt[2])
        m_dat.LeseGegner();
    for (std::size_t i = 0; i < fahrzeuge.size(); ++i)
        m_gewaehlt[i] = *fahrzeuge[i];
    VerwirfErgebnis();
    m_dat.Merken();
}

BOOL CVermDlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const auto* const richtung = std::find(std::begin(kRichtungen), std::end(kRichtungen), id);
    const auto* const art = std::find(std::begin(kArten), std::end(kArten), id);
    if (HIWORD(wParam) != BN_CLICKED || (richtung == std::end(kRichtungen) && art == std::end(kArten)))
        return CMDIRechDialog::OnCommand(wParam, lParam);
    if (richtung != std::end(kRichtungen))
        m_dat.richtung = 1 + (richtung - std::begin(kRichtungen));
    else
        m_dat.art = 1 + (art - std::begin(kArten));
    AendereEingabe();
    if (m_dat.berechnet != 0 && RechneUndMelde(false) && RuvCfg.transferData)
        Uebertrage();
    UpdateDialog();
    return TRUE;
}

void CVermDlg::AendereEingabe()
{
    m_geaendert = true;
}

LRESULT CVermDlg::OnEditChanged(WPARAM wParam, LPARAM)
{
    const auto controlId = static_cast<UINT>(wParam);
    switch (controlId) {
    case IDC_VERM_FAHRZEUG:
    case IDC_VERM_ZIEL:
    case IDC_VERM_GEGNER:
    case IDC_VERM_ZIEL_GEGNER:
        TauscheFahrzeug(controlId);
        break;
    case IDC_VERM_PHASEN:
        m_dat.LeseFahrzeug();
        VerwirfErgebnis();
        break;
    case IDC_VERM_VERSION_0:
    case IDC_VERM_VERSION_1:
    case IDC_VERM_VERSION_2:
    case IDC_VERM_VERSION_3:
        if (m_dat.berechnet != 0 && RuvCfg.transferData && BringeAufStand())
            Uebertrage();
        break;
    default:
        m_dat.Eingegeben(FindBinding(controlId)->Field());
        AendereEingabe();
        break;
    }
    UpdateDialog();
    return 0;
}

void CVermDlg::IncValue(int controlId)
{
    if (const CBinding* binding = FindBinding(static_cast<UINT>(controlId)))
        m_dat.Eingegeben(binding->Field());
    AendereEingabe();
    if (m_dat.berechnet != 0)
        RechneUndMelde(false);
    PostMessage(WM_RUV_UPDATEDIALOG);
}

bool CVermDlg::RechneUndMelde(bool alles)
{
    const std::vector<CVermDat::Meldung> meldungen = m_dat.Rechnen();
    m_geaendert = m_dat.berechnet == 0;
    const std::string phaseV = std::to_string(m_dat.Phasenzahl());
    const std::string phaseG = "1";
    for (const CVermDat::Meldung meldung : meldungen) {
        if (!alles && !CVermDat::IstFatal(meldung))
            continue;
        if (meldung == CVermDat::Meldung::unendlich)
            FehlerMeldung(this, kNichtBerechenbar);
        else
            FehlerMeldung(this, kErsteMeldung + static_cast<UINT>(meldung), phaseV, phaseG);
    }
    m_ergebnis = m_dat.berechnet != 0;
    if (m_ergebnis)
        ResultsComputed();
    else
        ResultsFailed();
    return m_dat.berechnet != 0;
}

bool CVermDlg::BringeAufStand()
{
    return (m_dat.berechnet != 0 && !m_geaendert) || RechneUndMelde(true);
}

void CVermDlg::Rechnen()
{
    if (RechneUndMelde(true) && RuvCfg.transferData)
        Uebertrage();
    UpdateDialog();
}

void CVermDlg::OnButtonOk()
{
    if (BringeAufStand() && RuvCfg.transferData && !FallGilt())
        Uebertrage();
    OnOK();
}

void CVermDlg::OnTransferOption()
{
    RuvCfg.transferData = IsChecked(IDC_UEBERTRAGEN);
    UpdateDialog();
}

void CVermDlg::Uebertrage()
{
    const CVermDat::Ergebnis ergebnis = m_dat.Uebertragen();
    constexpr UINT kVersionen[] = {IDS_VERM_VERSION_0, IDS_VERM_VERSION_1, IDS_VERM_VERSION_2, IDS_VERM_VERSION_3};
    std::string eigen = ergebnis.ohneWeg ? LoadRuvString(IDS_VERM_OHNE_PHASE)
                                         : Satz(ergebnis.fahrzeug, m_dat.ziel, kVersionen[m_dat.version]);
    if (ergebnis.geaendert)
        eigen = MitFahrzeug(IDS_VERM_GEAENDERT, m_dat.ziel);
    const std::string gegner = ergebnis.ohneWegDesGegners
                                   ? LoadRuvString(IDS_VERM_GEGNER_STEHT)
                                   : Satz(ergebnis.gegner, m_dat.zielGegner, IDS_VERM_WEG_DES_GEGNERS);
    m_stand = Stand{Eingaben(m_dat), Phasen(m_dat.ziel), Phasen(m_dat.zielGegner), eigen, gegner};
    const auto melde = [this](Uebertragung ausgang, std::int64_t fahrzeug) {
        if (ausgang != Uebertragung::erfolgt)
            return;
        m_uebertragen = true;
        if (CWnd* main = MainWindow())
            main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(fahrzeug));
    };
    melde(ergebnis.fahrzeug, m_dat.ziel);
    melde(ergebnis.gegner, m_dat.zielGegner);
}

void CVermDlg::Graphik()
{
    m_graphik.Show();
}

void CVermDlg::Loeschen()
{
    if (!ConfirmClear())
        return;
    m_dat.Loeschen();
    AendereEingabe();
    ResultsCleared();
    SendMessage(WM_RUV_UPDATEDIALOG);
}

void CVermDlg::ZeigeBefund()
{
    ShowText(IDC_VERM_BEFUND, Text(m_geaendert ? CVermDat::Befund::keiner : m_dat.Beurteile()));
    std::string fehlend;
    const auto fehlt = [&](std::uint8_t bestimmt, UINT text) {
        if (bestimmt == 0)
            fehlend += (fehlend.empty() ? "" : ", ") + LoadRuvString(text);
    };
    if (m_dat.Berechnet() && !m_geaendert) {
        fehlt(m_dat.hoechstBestimmt, IDS_VERM_GRENZE_GESCHW);
        fehlt(m_dat.reaktBestimmt, IDS_VERM_GRENZE_PUNKT);
        fehlt(m_dat.grenzBestimmt, IDS_VERM_GRENZE_VERZ);
    }
    ShowText(IDC_VERM_HINWEIS, fehlend.empty() ? fehlend : LoadRuvString(IDS_VERM_OHNE_GRENZE) + fehlend + ".");
    if (FallGilt()) {
        ShowText(IDC_VERM_UEBERTRAGUNG, m_stand->satz);
        ShowText(IDC_VERM_UEBERTRAGUNG_GEGNER, m_stand->satzGegner);
        return;
    }
    ShowText(IDC_VERM_UEBERTRAGUNG, m_uebertragen ? IDS_VERM_FALL_ANDERS : kKeinText);
    ShowText(IDC_VERM_UEBERTRAGUNG_GEGNER, kKeinText);
}

void CVermDlg::Zeichne(CDC& dc)
{
    ZeichneVermeidbarkeit(dc, m_dat, m_geaendert);
}
