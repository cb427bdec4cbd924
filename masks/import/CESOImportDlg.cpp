// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CESOImportDlg.h"

#include "host/CRuvData.h"
#include "host/CRuvFileDialog.h"
#include "host/Charts.h"
#include "host/Controls.h"
#include "host/Pictures.h"
#include "masks/manoeuvre/Texte.h"
#include "res/import.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace
{

using Dat = CESOImportDat;

constexpr const char* kNichtGeoeffnet = "Couldn't open file";
constexpr const char* kFalschesFormat = "Unsuported csv format";
constexpr const char* kKeinBild = "Couldn't load image";
constexpr const char* kErstDatenKurve = "Load csv data in order to display correlated graph";
constexpr const char* kErstDatenBild = "Load csv data in order to display image";
constexpr const char* kBildFilter = "*.bmp;*.gif;*.jpg;*.jpeg;*.emf;*wmf;*.png;*.dxf|"
                                    "*.bmp;*.gif;*.jpg;*.jpeg;*.emf;*wmf;*.png;*.dxf";

constexpr std::size_t kJederZehnte = 10; // samples of the whole view
constexpr int kKleinsteSkalierung = 10;  // %
constexpr int kGroessteSkalierung = 400;
constexpr int kDickste = 10;           // px
constexpr double kFeinerStrich = 0.5;  // of the width, for residuals
constexpr double kHoeheZuBreite = 0.5; // of the chart in reports

constexpr UINT kVFelder[] = {IDC_ESO_V_12,     IDC_ESO_V_23,         IDC_ESO_V_13,         IDC_ESO_V_VON_12,
                             IDC_ESO_V_VON_23, IDC_ESO_V_VON_13,     IDC_ESO_V_BIS_12,     IDC_ESO_V_BIS_23,
                             IDC_ESO_V_BIS_13, IDC_ESO_V_PARABEL_12, IDC_ESO_V_PARABEL_23, IDC_ESO_V_PARABEL_13};
constexpr UINT kSonstige[] = {
    IDC_ESO_R_12, IDC_ESO_R_23, IDC_ESO_R_13, IDC_ESO_VERSCHIEBUNG_12, IDC_ESO_VERSCHIEBUNG_23, IDC_ESO_VERSCHIEBUNG_13,
    IDC_ESO_VON,  IDC_ESO_BIS};
constexpr const char* kPaarNamen[Dat::kPaare] = {"1–2", "2–3", "1–3"};

chart::Values AlsDouble(const ESOKurve& kurve)
{
    return std::make_shared<const std::vector<double>>(kurve.begin(), kurve.end());
}

std::string Text(UINT id, std::initializer_list<std::string> args)
{
    return Eingesetzt(LoadRuvString(id), args);
}

std::string Menge(std::int64_t zahl)
{
    std::string text = std::to_string(zahl);
    for (std::size_t at = text.size(); at > 3;)
        text.insert(at -= 3, 1, '.');
    return text;
}

} // namespace

CESOImportDlg::CESOImportDlg(CRuvData& data, CWnd* parent)
    : CMDIRechDialog(IDD_ESO_DATENANALYSE, parent, data, nullptr, nullptr), m_dat(data)
{
    m_dat.SetParent(this);
    m_isCalculationMask = 1;
}

const CMessageMap* CESOImportDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnMessage<&CESOImportDlg::EntryAsStep>(WM_RUV_EDITCHANGED),
        OnMessage<&CESOImportDlg::OnHScroll>(WM_HSCROLL),
        OnControl<&CESOImportDlg::WaehleDatei>(IDC_ESO_WAEHLEN),
        OnControl<&CESOImportDlg::LadeBild>(IDC_ESO_BILD_LADEN),
        OnControl<&CESOImportDlg::EntferneBild>(IDC_ESO_BILD_WEG),
    };
    static constexpr CMessageMap kMap{nullptr, kEntries};
    return &kMap;
}

void CESOImportDlg::SetupWindow()
{
    m_dat.Laden();
    m_diagramm.Attach(GetDlgItem(IDC_ESO_DIAGRAMM), kHoeheZuBreite);
    m_diagramm.SetLeftAxis({LoadRuvString(IDS_ESO_MESSWERT), units::none, chart::AxisFormat::number, 1});
    m_diagramm.SetStatistics(0, 0.0);
    m_diagramm.SetHint(LoadRuvString(IDS_ESO_KLICK));
    m_diagramm.OnRangeChanged([this] { BereichGeaendert(); });
    if (auto* feld = static_cast<CStatic*>(GetDlgItem(IDC_ESO_BILD)))
        feld->SetPainter([this](CDC& dc, const CRect&) { ZeichneBild(dc); });
    if (auto* schieber = static_cast<CSliderCtrl*>(GetDlgItem(IDC_ESO_SKALIEREN))) {
        schieber->SetRange(kKleinsteSkalierung, kGroessteSkalierung);
        schieber->SetPos(static_cast<int>(m_dat.skalierung));
    }
    if (auto* schieber = static_cast<CSliderCtrl*>(GetDlgItem(IDC_ESO_LINIENSTAERKE))) {
        schieber->SetRange(1, kDickste);
        schieber->SetPos(static_cast<int>(m_dat.linienstaerke));
    }
    CMDIRechDialog::SetupWindow();
    ZeigeKurven();
}

void CESOImportDlg::UpdateDialog()
{
    CMDIRechDialog::UpdateDialog();
    // Not-a-number is no result: a dash for a speed, nothing elsewhere.
    for (const RecordField& feld : m_dat.Felder()) {
        const auto* zahl = std::get_if<double*>(&feld.value);
        if (zahl == nullptr || feld.spec->single == 0 || !std::isnan(**zahl))
            continue;
        const UINT id = feld.spec->single;
        const bool tempo = std::find(std::begin(kVFelder), std::end(kVFelder), id) != std::end(kVFelder);
        if (tempo || std::find(std::begin(kSonstige), std::end(kSonstige), id) != std::end(kSonstige))
            GetDlgItem(id)->SetWindowText(tempo && !m_dat.IstLeer() ? "–" : "");
    }
    ZeigeBefund();
}

void CESOImportDlg::ZeigeBefund()
{
    const auto text = [this]() -> std::string {
        switch (m_lesung) {
        case Dat::Lesung::gelesen:
        case Dat::Lesung::abgebrochen:
            return m_dat.IstLeer()
                       ? ""
                       : Text(IDS_ESO_GELESEN, {Menge(m_dat.zeilen), std::string(1, m_dat.Trennzeichen()),
                                                LoadRuvString(IDS_ESO_AUFBAU + static_cast<UINT>(m_dat.aufbau))});
        case Dat::Lesung::nichtGeoeffnet:
            return LoadRuvString(IDS_ESO_NICHT_GEOEFFNET);
        case Dat::Lesung::falschesFormat:
            return m_dat.FehlerZeile() == 0
                       ? LoadRuvString(IDS_ESO_FALSCHE_WERTE)
                       : Text(IDS_ESO_FALSCHE_ZEILE, {Menge(static_cast<std::int64_t>(m_dat.FehlerZeile()))});
        case Dat::Lesung::zuLang:
            return LoadRuvString(IDS_ESO_ZU_LANG);
        case Dat::Lesung::ohneWerte:
            return LoadRuvString(IDS_ESO_OHNE_WERTE);
        }
        return {};
    };
    ShowText(IDC_ESO_BEFUND, text());
    std::string unsicher;
    for (std::size_t i = 0; i < Dat::kPaare; ++i)
        if (!m_dat.IstLeer() && !m_dat.IstVerlaesslich(i))
            (unsicher += unsicher.empty() ? "" : ", ") += kPaarNamen[i];
    ShowText(IDC_ESO_URTEIL,
             unsicher.empty() ? "" : Text(IDS_ESO_UNSICHER, {RuvNumberText(Dat::kVerlaesslich, 1), unsicher}));
    // In the report the picture shows both.
    ShowPrompt(IDC_ESO_SKALIEREN_WERT, std::to_string(m_dat.skalierung).append(" %"));
    ShowPrompt(IDC_ESO_LINIENSTAERKE_WERT, std::to_string(m_dat.linienstaerke));
    if (CWnd* datei = GetDlgItem(IDC_ESO_DATEI))
        datei->SetWindowText(m_dat.Pfad());
}

void CESOImportDlg::WaehleDatei()
{
    CRuvFileDialog dialog(true, "*.csv", m_dat.Pfad(), OFN_HIDEREADONLY, "CSV(*.csv)|*.csv||", this);
    if (dialog.DoModal() == IDOK)
        Lade(dialog.GetPathName());
}

void CESOImportDlg::Lade(const std::string& pfad)
{
    m_data.BroadcastMessage(WM_RUV_BEFOREIMPORT, 0, 0, this);
    ReadData();
    Dat::Lesung lesung;
    {
        const CWaitCursor wait;
        lesung = m_dat.Lies(pfad);
    }
    if (lesung == Dat::Lesung::abgebrochen)
        return;
    m_lesung = lesung;
    m_dat.korrelieren = 0; // at first the raw curves
    ZeigeKurven();
    if (lesung == Dat::Lesung::nichtGeoeffnet)
        AfxMessageBox(kNichtGeoeffnet);
    else if (lesung == Dat::Lesung::falschesFormat || lesung == Dat::Lesung::zuLang)
        AfxMessageBox(kFalschesFormat);
}

void CESOImportDlg::ZeigeKurven()
{
    std::vector<chart::Series> reihen;
    if (!m_dat.IstLeer()) {
        std::vector<double> zeiten(m_dat.roh[0].size());
        for (std::size_t k = 0; k < zeiten.size(); ++k)
            zeiten[k] = static_cast<double>(k) * m_dat.abtastzeit;
        const auto x = std::make_shared<const std::vector<double>>(std::move(zeiten));
        const ESOKurven& kurven = m_dat.korrelieren != 0 ? m_dat.ausgerichtet : m_dat.roh;
        const auto dicke = static_cast<double>(m_dat.linienstaerke);
        for (std::size_t q = 0; q < kESOKurven; ++q)
            reihen.push_back({.name = Text(IDS_ESO_KURVE, {std::to_string(q + 1)}),
                              .x = x,
                              .y = AlsDouble(kurven[q]),
                              .color = chart::kCurveColors[q],
                              .width = dicke,
                              .overviewStride = kJederZehnte});
        for (std::size_t q = 1; q < kESOKurven && m_dat.residuen != 0; ++q) {
            std::vector<double> rest(x->size());
            for (std::size_t k = 0; k < rest.size(); ++k)
                rest[k] = static_cast<double>(m_dat.ausgerichtet[q][k]) - static_cast<double>(m_dat.ausgerichtet[0][k]);
            reihen.push_back({.name = Text(IDS_ESO_RESIDUUM, {std::to_string(q + 1)}),
                              .x = x,
                              .y = std::make_shared<const std::vector<double>>(std::move(rest)),
                              .color = chart::kCurveColors[q],
                              .width = std::max(1.0, dicke * kFeinerStrich),
                              .overviewStride = kJederZehnte});
        }
    }
    // The range is one of times: it stays when other curves of the same file are shown.
    const auto bereich = m_diagramm.Range();
    const bool derselbe = m_gezeigt == m_dat.zeilen && m_gezeigteDatei == m_dat.Pfad();
    m_gezeigt = m_dat.zeilen;
    m_gezeigteDatei = m_dat.Pfad();
    m_diagramm.SetSeries(std::move(reihen));
    if (derselbe && bereich)
        m_diagramm.SetRange(*bereich);
    BereichGeaendert();
}

void CESOImportDlg::OnKorrelieren()
{
    if (m_dat.IstLeer() && m_dat.korrelieren != 0) {
        m_dat.korrelieren = 0;
        UpdateDialog();
        AfxMessageBox(kErstDatenKurve);
        return;
    }
    ZeigeKurven();
}

void CESOImportDlg::IncValue(int controlId)
{
    bool genommen = true;
    switch (controlId) {
    case IDC_ESO_KORRELIEREN:
        OnKorrelieren();
        return;
    case IDC_ESO_RESIDUEN:
        ZeigeKurven();
        return;
    case IDC_ESO_VON:
    case IDC_ESO_BIS:
        genommen = m_diagramm.TakeTyped(m_dat.bereichVon, m_dat.bereichBis);
        BereichGeaendert();
        if (!genommen)
            ShowText(IDC_ESO_BEFUND, LoadRuvString(IDS_ESO_KEINE_ZEILE));
        return;
    default:
        break;
    }
    m_dat.Auswerten();
    m_dat.Merken();
    if (controlId == IDC_ESO_ABTASTZEIT)
        ZeigeKurven();
    UpdateDialog();
}

void CESOImportDlg::BereichGeaendert()
{
    m_dat.bereichVon = m_diagramm.RangeFrom();
    m_dat.bereichBis = m_diagramm.RangeTo();
    UpdateDialog();
}

std::optional<ReadRows> CESOImportDlg::RowsRead()
{
    ReadRows rows;
    rows.titles = {"time [s]", "raw1",     "raw2",     "raw3",     "raw4",    "raw5",
                   "aligned1", "aligned2", "aligned3", "aligned4", "aligned5"};
    rows.count = m_dat.roh[0].size();
    rows.get = [this](std::size_t row, std::span<double> values) {
        values[0] = static_cast<double>(row) * m_dat.abtastzeit;
        for (std::size_t q = 0; q < kESOKurven; ++q) {
            values[1 + q] = static_cast<double>(m_dat.roh[q][row]);
            values[1 + kESOKurven + q] = static_cast<double>(m_dat.ausgerichtet[q][row]);
        }
    };
    rows.file = m_dat.Pfad();
    return rows;
}

void CESOImportDlg::LadeBild()
{
    if (m_dat.IstLeer()) {
        AfxMessageBox(kErstDatenBild);
        return;
    }
    CRuvFileDialog dialog(true, "*.jpg", "", OFN_HIDEREADONLY, kBildFilter, this);
    if (dialog.DoModal() != IDOK)
        return;
    CPictureFile bild = ReadPicture(dialog.GetPathName());
    if (bild.outcome != PictureOutcome::read) {
        AfxMessageBox(kKeinBild);
        return;
    }
    m_bild = std::move(bild.bitmap);
    ZeigeBild();
}

void CESOImportDlg::EntferneBild()
{
    m_bild.reset();
    ZeigeBild();
}

void CESOImportDlg::ZeigeBild()
{
    m_ausschnitt.reset();
    if (CWnd* feld = GetDlgItem(IDC_ESO_BILD))
        feld->Invalidate();
    UpdateDialog();
}

/// At 100 % the whole picture fills its field; what a larger one would cover beside the field is cut off.
void CESOImportDlg::ZeichneBild(CDC& dc)
{
    if (m_bild == nullptr || m_bild->width < 1 || m_bild->height < 1)
        return;
    const double breite = m_bild->width;
    const double hoehe = m_bild->height;
    const double mass =
        std::min(dc.Width() / breite, dc.Height() / hoehe) * static_cast<double>(m_dat.skalierung) / 100.0;
    const int sichtbarX = std::clamp(static_cast<int>(std::lround(dc.Width() / mass)), 1, m_bild->width);
    const int sichtbarY = std::clamp(static_cast<int>(std::lround(dc.Height() / mass)), 1, m_bild->height);
    if (m_ausschnitt == nullptr || m_ausschnitt->width != sichtbarX || m_ausschnitt->height != sichtbarY) {
        if (sichtbarX == m_bild->width && sichtbarY == m_bild->height) {
            m_ausschnitt = m_bild;
        } else {
            auto teil = std::make_shared<drawing::Bitmap>();
            teil->width = sichtbarX;
            teil->height = sichtbarY;
            const int links = (m_bild->width - sichtbarX) / 2;
            const int oben = (m_bild->height - sichtbarY) / 2;
            for (int y = 0; y < sichtbarY; ++y) {
                const auto zeile =
                    m_bild->pixels.begin() + static_cast<std::ptrdiff_t>(oben + y) * m_bild->width + links;
                teil->pixels.insert(teil->pixels.end(), zeile, zeile + sichtbarX);
            }
            m_ausschnitt = std::move(teil);
        }
    }
    const double w = std::min(sichtbarX * mass, dc.Width());
    const double h = std::min(sichtbarY * mass, dc.Height());
    const CDPoint ecke{(dc.Width() - w) / 2.0, (dc.Height() - h) / 2.0};
    dc.Picture(ecke, {w, 0.0}, {0.0, h}, 1.0, m_ausschnitt);
}

LRESULT CESOImportDlg::OnHScroll(WPARAM position, LPARAM controlId)
{
    const auto wert = static_cast<std::int64_t>(position);
    if (controlId == IDC_ESO_SKALIEREN) {
        m_dat.skalierung = std::clamp<std::int64_t>(wert, kKleinsteSkalierung, kGroessteSkalierung);
        ZeigeBild();
    } else if (controlId == IDC_ESO_LINIENSTAERKE) {
        m_dat.linienstaerke = std::clamp<std::int64_t>(wert, 1, kDickste);
        m_diagramm.SetWidth(static_cast<double>(m_dat.linienstaerke));
        UpdateDialog();
    }
    return 0;
}
