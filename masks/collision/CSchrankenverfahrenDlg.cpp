// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankenverfahrenDlg.h"

#include "host/CRuvData.h"
#include "host/Controls.h"
#include "host/Physics.h"
#include "host/RuvCfg.h"
#include "masks/collision/CSchrankDiagrammGrossDlg.h"
#include "masks/collision/CSchrankSetzDlg.h"
#include "masks/collision/CTAB1.h"
#include "masks/collision/CTAB2.h"
#include "masks/collision/CTAB3.h"
#include "masks/collision/CTAB4.h"
#include "masks/collision/CTAB5.h"
#include "masks/collision/SchrankenDiagramm.h"
#include "res/collision.h"

#include <algorithm>
#include <cmath>

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr double kHoeheZuBreite = 0.65;        // of the diagram in reports, about that of the large one
constexpr CRect kSeitenplatz{5, 23, 241, 180}; // dialog units

struct Objektart {
    const char* name;
    UINT text; ///< what the user is asked
};

constexpr std::array<Objektart, Dat::kObjekte> kObjektarten{{
    {"Fahrzeug", IDS_SCHRANKEN_SETZE_FAHRZEUG},
    {"Kollisionsort", IDS_SCHRANKEN_SETZE_KOLLISIONSORT},
    {"Person", IDS_SCHRANKEN_SETZE_PERSON},
    {"Fahrrad", IDS_SCHRANKEN_SETZE_FAHRRAD},
    {"Gesamtsplitterfeld", IDS_SCHRANKEN_SETZE_GESAMTFELD},
    {"Hauptsplitterfeld", IDS_SCHRANKEN_SETZE_HAUPTFELD},
}};

UINT MangelText(Dat::Mangel mangel)
{
    switch (mangel) {
    case Dat::Mangel::fahrzeug:
        return IDS_SCHRANKEN_KEIN_FAHRZEUG;
    case Dat::Mangel::person:
        return IDS_SCHRANKEN_KEINE_PERSON;
    case Dat::Mangel::kollisionsort:
        return IDS_SCHRANKEN_KEIN_KOLLISIONSORT;
    case Dat::Mangel::verzoegerung:
        return IDS_SCHRANKEN_KEINE_VERZOEGERUNG;
    case Dat::Mangel::toleranz:
        return IDS_SCHRANKEN_KEINE_TOLERANZ;
    case Dat::Mangel::keiner:
        break;
    }
    return 0;
}

} // namespace

CSchrankenverfahrenDlg::CSchrankenverfahrenDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_SCHRANKENVERFAHREN, parent, data, nullptr, nullptr), CPlacingClient(data), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

CSchrankenverfahrenDlg::~CSchrankenverfahrenDlg() = default;

const CMessageMap* CSchrankenverfahrenDlg::GetMessageMap() const
{
    using Dlg = CSchrankenverfahrenDlg;
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&Dlg::OnUpdateDialog>(WM_RUV_UPDATEDIALOG),
        OnMessage<&Dlg::OnPaint>(WM_PAINT),
        OnControl<&Dlg::OK>(IDC_MASKE_OK),
        OnControl<&Dlg::OnBnClickedSchrBu1>(IDC_SCHR_BU1),
        OnControl<&Dlg::OnBnClickedSchrBu2>(IDC_SCHR_BU2),
        OnControl<&Dlg::OnBnClickedSchrBu3>(IDC_SCHR_BU3),
        OnControl<&Dlg::OnBnClickedSchrBu4>(IDC_SCHR_BU4),
        OnControl<&Dlg::OnBnClickedSchrBu5>(IDC_SCHR_BU5),
        OnControl<&Dlg::OnBnClickedSchrZeichenfeld>(IDC_SCHR_GROSSES_DIAGRAMM),
        OnControl<&Dlg::OnBnClickedSchrRechnen>(IDC_RECHNEN),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CSchrankenverfahrenDlg::DoDataExchange(CDataExchange*) {}

BOOL CSchrankenverfahrenDlg::OnInitDialog()
{
    CMDIRechDialog::OnInitDialog();
    ZeigeSeite(0);
    return TRUE;
}

void CSchrankenverfahrenDlg::SetupWindow()
{
    CMDIRechDialog::SetupWindow();
    m_dat.Laden();
    Nachrechnen(); // curves are computed, not kept

    m_seiten = {std::make_unique<CTAB1>(*this, m_dat), std::make_unique<CTAB2>(*this, m_dat),
                std::make_unique<CTAB3>(*this, m_dat), std::make_unique<CTAB4>(*this, m_dat),
                std::make_unique<CTAB5>(*this, m_dat)};
    for (const auto& seite : m_seiten)
        seite->CreatePage(*this, kSeitenplatz);
    m_setzen = std::make_unique<CSchrankSetzDlg>(*this);
    m_gross =
        std::make_unique<CSchrankDiagrammGrossDlg>(*this, [this](CWnd* feld) { VerbindeZeichenfeld(feld, true); });
    VerbindeZeichenfeld(GetDlgItem(IDC_SCHR_ZEICHENFELD), false);
    LadeEllipsen();
}

void CSchrankenverfahrenDlg::ShutDownWindow()
{
    CancelPlacing();
    CMDIRechDialog::ShutDownWindow();
}

UINT CSchrankenverfahrenDlg::GetDlgResIDForAssistant()
{
    return IDD_SCHRANKENVERFAHREN;
}

void CSchrankenverfahrenDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    for (const auto& seite : m_seiten)
        if (seite != nullptr)
            seite->UpdateDialog();
    ZeigeBefund();
}

void CSchrankenverfahrenDlg::ZeigeBefund()
{
    UINT text = 0;
    if (m_veraltet) {
        ShowPrompt(IDC_SCHR_HINWEIS, IDS_SCHRANKEN_VERALTET);
        return;
    }
    if (m_dat.ergebnisSteht != 0) {
        switch (m_dat.WarumOhneFlaeche()) {
        case Dat::OhneFlaeche::keine:
            text = m_dat.IstNachUntenOffen() ? IDS_SCHRANKEN_NACH_UNTEN_OFFEN : 0;
            break;
        case Dat::OhneFlaeche::vorn:
            text = IDS_SCHRANKEN_KOLLISIONSORT_VORN;
            break;
        case Dat::OhneFlaeche::zuSchmal:
            text = IDS_SCHRANKEN_KOLLISIONSORT_SCHMAL;
            break;
        case Dat::OhneFlaeche::schranken:
            text = IDS_SCHRANKEN_KEINE_FLAECHE;
            break;
        }
    }
    ShowText(IDC_SCHR_HINWEIS, text, std::array{ShownNumber{m_dat.Stellenabstand(), units::m}});
}

LRESULT CSchrankenverfahrenDlg::OnUpdateDialog(WPARAM, LPARAM)
{
    if (m_dat.FallHatAnderes())
        GlobalGeoDatChanged(0);
    else
        UpdateDialog();
    return 0;
}

void CSchrankenverfahrenDlg::GlobalGeoDatChanged(UINT_PTR)
{
    const bool anderes = m_dat.FallHatAnderes();
    const bool eingaben = m_veraltet;
    if (anderes)
        m_dat.Laden();
    Nachrechnen();
    if (!anderes && eingaben)
        m_dat.Merken(); // what was entered counts now
    LadeEllipsen();
}

bool CSchrankenverfahrenDlg::CheckeRechnung()
{
    const UINT grund = MangelText(m_dat.Pruefen());
    if (grund == 0)
        return true;
    // On purpose only the first reason, although the text speaks of several.
    AfxMessageBox(LoadRuvString(IDS_SCHRANKEN_FEHLER) + LoadRuvString(grund));
    return false;
}

void CSchrankenverfahrenDlg::OnRechnen()
{
    for (const auto& seite : m_seiten)
        seite->ReadData();
    if (!CheckeRechnung())
        return;
    const CWaitCursor wait;
    m_dat.Berechnen();
    m_veraltet = false;
    m_exportiert = false;
    m_dat.Merken();
    UpdateDialog();
    OnPaint();
}

bool CSchrankenverfahrenDlg::BringeAufStand()
{
    if (m_veraltet)
        OnRechnen();
    return !m_veraltet && m_dat.KannExportieren();
}

void CSchrankenverfahrenDlg::Nachrechnen()
{
    if (m_dat.gerechnet != 0 && m_dat.IstPlatziert()) {
        m_dat.Berechnen();
    } else {
        m_dat.Projizieren();
        m_dat.Verwerfen();
    }
    m_veraltet = false;
    m_exportiert = false;
    UpdateDialog();
    OnPaint();
}

void CSchrankenverfahrenDlg::EingabeGeaendert(bool sofort)
{
    if (sofort) {
        Nachrechnen();
        m_dat.Merken();
        return;
    }
    m_veraltet = m_dat.ergebnisSteht != 0;
    UpdateDialog();
}

void CSchrankenverfahrenDlg::KontrolleGeaendert()
{
    m_dat.Kontrolle();
    m_exportiert = false;
    m_dat.Merken();
    UpdateDialog();
}

void CSchrankenverfahrenDlg::FlaechenRechner(const Dat::Kurvenfeld& schranke, std::size_t n)
{
    Dat::FlaechenRechner(m_dat.flaeche, schranke, n);
}

void CSchrankenverfahrenDlg::VerbindeZeichenfeld(CWnd* feld, bool gross)
{
    if (feld == nullptr)
        return;
    static_cast<CStatic*>(feld)->SetPainter([this, gross](CDC& dc, const CRect&) {
        schranken::ZeichneDiagramm(dc, m_dat, schranken::Farben::Aus(RuvCfg), gross);
    });
    static_cast<CStatic*>(feld)->SetReportPainter(
        [this](CDC& dc, const CRect&) { schranken::ZeichneDiagramm(dc, m_dat, schranken::Farben::Aus(RuvCfg), true); },
        kHoeheZuBreite);
}

void CSchrankenverfahrenDlg::PaintDiagramm(bool gross)
{
    if (gross && m_gross != nullptr)
        m_gross->Zeichne();
    else if (CWnd* feld = gross ? nullptr : GetDlgItem(IDC_SCHR_ZEICHENFELD))
        feld->Invalidate();
}

void CSchrankenverfahrenDlg::OnPaint()
{
    PaintDiagramm(false);
    PaintDiagramm(true);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrZeichenfeld()
{
    m_dat.Projizieren();
    m_gross->Zeige();
    OnPaint();
}

CPlacedObject CSchrankenverfahrenDlg::Objekt(std::size_t objekt) const
{
    const Dat::Rechteck& rechteck = m_dat.objekte[objekt];
    CPlacedObject placed;
    placed.kind = static_cast<int>(objekt);
    placed.name = kObjektarten[objekt].name;
    placed.position = rechteck.position * kCmProM;
    placed.angle = rechteck.winkel * 180.0 / kPi;
    placed.width = rechteck.breite * kCmProM;
    placed.length = rechteck.laenge * kCmProM;
    placed.participant = m_dat.Beteiligter(objekt);
    placed.centred = objekt == Dat::fahrzeug;
    return placed;
}

CPlacedObject CSchrankenverfahrenDlg::Vorschlag(std::size_t objekt) const
{
    CPlacedObject wish = Objekt(objekt);
    const auto [breite, laenge] = m_dat.Groesse(objekt);
    wish.width = breite * kCmProM;
    wish.length = laenge * kCmProM;
    return wish;
}

std::vector<CPlacedObject> CSchrankenverfahrenDlg::PlacedObjects() const
{
    std::vector<CPlacedObject> objects;
    for (std::size_t i = 0; i < Dat::kObjekte; ++i)
        if (m_dat.objekte[i].gesetzt != 0)
            objects.push_back(i == Dat::fahrzeug ? Vorschlag(i) : Objekt(i));
    return objects;
}

void CSchrankenverfahrenDlg::Setzen(std::size_t objekt)
{
    const Objektart& art = kObjektarten.at(objekt);
    m_setzen->Zeige(art.text);
    RequestPlacing(Vorschlag(objekt), LoadRuvString(art.text));
}

void CSchrankenverfahrenDlg::Umschalten(std::size_t objekt)
{
    Dat::Rechteck& rechteck = m_dat.objekte.at(objekt);
    if (rechteck.gesetzt == 0 && !m_dat.HatPlatz(objekt)) {
        UpdateDialog(); // the button stays up until the object stands
        Setzen(objekt);
        return;
    }
    rechteck.gesetzt = rechteck.gesetzt != 0 ? 0 : 1;
    LageGeaendert();
}

void CSchrankenverfahrenDlg::ObjectPlaced(const CPlacedObject& object)
{
    for (const double zahl : {object.position.x, object.position.y, object.angle, object.width, object.length})
        if (!std::isfinite(zahl))
            return;
    if (object.kind < 0 || object.kind >= static_cast<int>(Dat::kObjekte))
        return;
    Dat::Rechteck& rechteck = m_dat.objekte[static_cast<std::size_t>(object.kind)];
    rechteck.position = object.position * kMProCm;
    rechteck.breite = object.width * kMProCm;
    rechteck.laenge = object.length * kMProCm;
    rechteck.winkel = object.angle * kPi / 180.0;
    rechteck.gesetzt = 1;
    LageGeaendert();
    if (CWnd* main = MainWindow())
        main->SendMessage(WM_RUV_UPDATEDIALOG);
}

void CSchrankenverfahrenDlg::LageGeaendert()
{
    Nachrechnen();
    m_dat.Merken();
    LadeEllipsen();
}

void CSchrankenverfahrenDlg::PlacingEnded()
{
    m_setzen->Schliesse();
}

void CSchrankenverfahrenDlg::SetMovieView(CMvView* view)
{
    m_view = view;
    LadeEllipsen();
}

void CSchrankenverfahrenDlg::LadeEllipsen()
{
    PlacedObjectsChanged();
    if (m_view != nullptr)
        m_view->ShowObjects(PlacedObjects());
}

void CSchrankenverfahrenDlg::TempoUebergeben()
{
    m_exportiert = false;
    m_dat.Merken();
    if (BringeAufStand()) {
        m_dat.UebergibTempo();
        if (CWnd* main = MainWindow())
            main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(m_dat.fahrzeugNr));
    }
    UpdateDialog();
}

void CSchrankenverfahrenDlg::Exportieren()
{
    if (!BringeAufStand())
        return;
    if (std::all_of(m_dat.theorien.begin(), m_dat.theorien.end(), [](std::uint8_t an) { return an == 0; }))
        AfxMessageBox(LoadRuvString(IDS_SCHRANKEN_KEINE_THEORIE)); // a hint: the braking barrier alone stands
    m_dat.Merken();
    m_dat.Exportieren();
    if (CWnd* main = MainWindow())
        main->PostMessage(WM_RUV_MASKTRANSFERRED, static_cast<WPARAM>(m_dat.fahrzeugNr));
    m_exportiert = true;
    UpdateDialog();
}

void CSchrankenverfahrenDlg::ZeigeSeite(std::size_t seite)
{
    for (std::size_t i = 0; i < kSeiten; ++i) {
        m_seiten[i]->ShowWindow(i == seite ? SW_SHOW : SW_HIDE);
        if (CWnd* knopf = GetDlgItem(IDC_SCHR_BU1 + static_cast<UINT>(i)))
            static_cast<CButton*>(knopf)->SetCheck(i == seite ? 1 : 0);
    }
}

void CSchrankenverfahrenDlg::OnBnClickedSchrBu1()
{
    ZeigeSeite(0);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrBu2()
{
    ZeigeSeite(1);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrBu3()
{
    ZeigeSeite(2);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrBu4()
{
    ZeigeSeite(3);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrBu5()
{
    ZeigeSeite(4);
}

void CSchrankenverfahrenDlg::OnBnClickedSchrRechnen()
{
    OnRechnen();
}

void CSchrankenverfahrenDlg::OK()
{
    for (const auto& seite : m_seiten)
        seite->ReadData();
    m_dat.Merken();
    OnOK();
}
