// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CGPXImportDlg.h"

#include "host/FehlerMeldung.h"
#include "res/import.h"

#include <algorithm>
#include <memory>

namespace
{

constexpr UINT kBeschaedigt = 1420;
constexpr UINT kZielVorhanden = 1421;

constexpr const char* kNichtZuOeffnen = "Error opening input.fit file \n";
constexpr const char* kNichtUnversehrt = "FIT file integrity failed.\nAttempting to decode...\n";
constexpr const char* kUmgewandelt = "output file generated successfully.\n";

/// Titles of the rows, in the order of their values.
constexpr std::string_view kTitel[] = {"latitude [°]",
                                       "longitude [°]",
                                       "elevation [m]",
                                       "year",
                                       "month",
                                       "day",
                                       "hour",
                                       "minute",
                                       "second",
                                       "millisecond",
                                       "heartRate [1/min]",
                                       "cadence [1/min]",
                                       "temperature [°C]",
                                       "x [m]",
                                       "y [m]",
                                       "z [m]",
                                       "distance [m]",
                                       "timeStep [s]",
                                       "speed [m/s]",
                                       "speedKmh [km/h]"};

std::shared_ptr<const std::vector<double>> Geteilt(std::vector<double> werte)
{
    return std::make_shared<const std::vector<double>>(std::move(werte));
}

} // namespace

CGPXImportDlg::CGPXImportDlg(CRuvData& data, CWnd*)
    : CImportDlg(IDD_GPX, data, {"*.gpx", "GPX (*.gpx); FIT (*.fit)|*.gpx;*.fit||"}), m_dat(data)
{
    m_dat.SetParent(this);
}

const CMessageMap* CGPXImportDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CGPXImportDlg::OnFahrlinie>(IDC_GPX_FAHRLINIE),
        OnControl<&CGPXImportDlg::OnSzene>(IDC_GPX_SZENE),
    };
    static const CMessageMap kMap{CImportDlg::GetMessageMap(), kEntries};
    return &kMap;
}

void CGPXImportDlg::SetupWindow()
{
    if (auto* feld = static_cast<CStatic*>(GetDlgItem(IDC_GPX_KARTE))) {
        feld->SetPainter([this](CDC& dc, const CRect&) { m_karte.Zeichne(dc, false); });
        feld->SetReportPainter([this](CDC& dc, const CRect&) { m_karte.Zeichne(dc, true); }, 0.6);
        feld->SetMouse([this, feld](const CMouseEvent& ereignis) {
            const bool benutzt = m_karte.Maus(ereignis);
            feld->Invalidate();
            return benutzt;
        });
    }
    m_karte.OnKlick([this](std::size_t punkt) { OnKartenklick(punkt); });
    m_karte.OnZeige([this](std::optional<std::size_t> punkt) { OnKartenzeiger(punkt); });
    Diagramm().OnPointer([this](double zeit) { OnDiagrammzeiger(zeit); });
    m_kacheln.emplace([this] {
        m_karte.NeuerGrund();
        GetDlgItem(IDC_GPX_KARTE)->Invalidate();
    });
    CImportDlg::SetupWindow();
}

void CGPXImportDlg::ShutDownWindow()
{
    m_kacheln.reset();
    Diagramm().OnPointer({});
    CImportDlg::ShutDownWindow();
}

std::optional<ReadRows> CGPXImportDlg::RowsRead()
{
    ReadRows rows;
    rows.titles.assign(std::begin(kTitel), std::end(kTitel));
    rows.count = m_dat.punkte.size();
    rows.get = [this](std::size_t zeile, std::span<double> werte) {
        const GPXTrackPoint& p = m_dat.punkte[zeile];
        const double alle[] = {p.latitude,
                               p.longitude,
                               p.elevation,
                               static_cast<double>(p.year),
                               static_cast<double>(p.month),
                               static_cast<double>(p.day),
                               static_cast<double>(p.hour),
                               static_cast<double>(p.minute),
                               static_cast<double>(p.second),
                               static_cast<double>(p.millisecond),
                               p.heartRate,
                               p.cadence,
                               p.temperature,
                               p.x,
                               p.y,
                               p.z,
                               p.distance,
                               p.timeStep,
                               p.speed,
                               p.speedKmh};
        static_assert(std::size(alle) == std::size(kTitel));
        std::copy(std::begin(alle), std::end(alle), werte.begin());
    };
    rows.file = m_dat.Quelle();
    return rows;
}

CImportDlg::Lesung CGPXImportDlg::Lies()
{
    switch (m_dat.Lies()) {
    case CGPXImportDat::Ausgang::gpx:
        break;
    case CGPXImportDat::Ausgang::fit:
        if (!NimmFit())
            return Lesung::keine;
        break;
    case CGPXImportDat::Ausgang::nichtLesbar:
        AfxMessageBox(CGPXImportDat::IstFitPfad(m_dat.auswahl.pfad) ? kNichtZuOeffnen : m_dat.Hindernis());
        return Lesung::keine;
    case CGPXImportDat::Ausgang::keineSpur:
        AfxMessageBox(m_dat.Hindernis());
        return Lesung::keine;
    case CGPXImportDat::Ausgang::abgebrochen:
        return Lesung::abgebrochen;
    }
    if (!m_dat.Pruefe())
        return Lesung::abgelehnt;
    m_dat.Rechne();
    return Lesung::gelesen;
}

bool CGPXImportDlg::NimmFit()
{
    const FitBefund& befund = m_dat.Fitbefund();
    if (!befund.unversehrt)
        AfxMessageBox(kNichtUnversehrt);
    if (befund.fehler.empty()) {
        WandleUm();
    } else {
        AfxMessageBox(befund.fehler);
        const auto punkte = static_cast<std::int64_t>(m_dat.FitPunkte());
        if (punkte == 0 || FehlerMeldung(this, kBeschaedigt, punkte) != fehlerJa) {
            m_dat.VerwirfFit();
            return false;
        }
    }
    m_dat.NimmFit();
    return true;
}

void CGPXImportDlg::WandleUm()
{
    const std::string ziel = CGPXImportDat::GpxPfad(m_dat.auswahl.pfad);
    const CGPXImportDat::Ziel dort = m_dat.VergleicheZiel();
    if (dort == CGPXImportDat::Ziel::anders && FehlerMeldung(this, kZielVorhanden, ziel) != fehlerJa)
        return;
    const std::string fehler = m_dat.SchreibeGpx(dort);
    AfxMessageBox(fehler.empty() ? kUmgewandelt : fehler + "\n" + LoadRuvString(IDS_GPX_AUS_SPEICHER));
}

CImportDlg::Kurve CGPXImportDlg::MacheKurve() const
{
    return {m_dat.Zeiten(), m_dat.Geschwindigkeiten(m_dat.tempoquelle)};
}

void CGPXImportDlg::ZeigeDaten()
{
    m_zeiten = m_dat.Zeiten();
    m_kartenanfang.reset();
    m_gezeigteQuelle = m_dat.tempoquelle;
    std::vector<Kartenbild::Punkt> punkte;
    punkte.reserve(m_dat.punkte.size());
    for (std::size_t i = 0; i < m_dat.punkte.size(); ++i) {
        const GPXTrackPoint& p = m_dat.punkte[i];
        punkte.push_back({{p.x, p.y}, m_dat.Tempo(i, m_dat.tempoquelle), p.latitude, p.longitude});
    }
    for (const std::size_t naht : m_dat.Nahtstellen())
        punkte[naht].naht = true;
    m_karte.SetPunkte(std::move(punkte));
    Enable(IDC_GPX_BERECHNET, m_dat.HatAufgezeichnete());
    Enable(IDC_GPX_AUFGEZEICHNET, m_dat.HatAufgezeichnete());
    if (m_dat.HatAufgezeichnete())
        ZeigeKurven();
    ZeigeNahtstellen();
}

void CGPXImportDlg::ZeigeNahtstellen()
{
    std::vector<chart::Gap> luecken;
    for (const std::size_t naht : m_dat.Nahtstellen())
        luecken.push_back({m_zeiten[naht - 1], m_zeiten[naht]});
    Diagramm().SetGaps(LoadRuvString(IDS_GPX_NAHTSTELLE), std::move(luecken));
}

/// Both speeds, the chosen one first: range, statistics and transfer are of it.
void CGPXImportDlg::ZeigeKurven()
{
    const auto zeiten = Geteilt(m_zeiten);
    std::vector<chart::Series> kurven;
    for (const std::int64_t quelle : {CGPXImportDat::berechnet, CGPXImportDat::aufgezeichnet})
        kurven.push_back({.name = LoadRuvString(quelle == CGPXImportDat::berechnet ? IDS_GPX_KURVE_BERECHNET
                                                                                   : IDS_GPX_KURVE_AUFGEZEICHNET),
                          .x = zeiten,
                          .y = Geteilt(m_dat.Geschwindigkeiten(quelle)),
                          .color = chart::kCurveColors[static_cast<std::size_t>(quelle)]});
    if (m_dat.tempoquelle == CGPXImportDat::aufgezeichnet)
        std::swap(kurven[0], kurven[1]);
    Diagramm().SetSeries(std::move(kurven));
}

void CGPXImportDlg::WechsleTempoquelle()
{
    m_gezeigteQuelle = m_dat.tempoquelle;
    const auto bereich = Diagramm().Range();
    ZeigeKurven();
    ZeigeNahtstellen();
    if (bereich)
        Diagramm().SetRange(*bereich);
    m_karte.SetTempo(m_dat.Geschwindigkeiten(m_dat.tempoquelle));
    ZeigeBericht();
}

void CGPXImportDlg::ZeigeWeiteres()
{
    if (m_gezeigteQuelle != m_dat.tempoquelle)
        WechsleTempoquelle();
    const auto bereich = Diagramm().Range();
    Enable(IDC_GPX_FAHRLINIE, Bereich() ? TRUE : FALSE);
    Enable(IDC_GPX_SZENE, m_dat.punkte.size() > 1 ? TRUE : FALSE);
    if (const auto gewaehlt = Bereich(); gewaehlt && m_dat.HatNaht(gewaehlt->first, gewaehlt->last))
        ShowPrompt(IDC_IMPORT_HINWEIS, IDS_GPX_NAHT_IM_ZEITRAUM);
    m_karte.SetBereich(bereich ? std::optional(Kartenbild::Bereich{bereich->first, bereich->last}) : std::nullopt);
    GetDlgItem(IDC_GPX_KARTE)->Invalidate();
}

void CGPXImportDlg::OnFahrlinie()
{
    if (const auto bereich = Bereich())
        ZeigeUebertragung(m_dat.UebertrageKoordinaten(bereich->first, bereich->last));
}

/// The chosen range, or else all of the track: a range has no more points than phases.
void CGPXImportDlg::OnSzene()
{
    if (m_dat.punkte.size() < 2)
        return;
    const chart::Rows zeilen = Bereich().value_or(chart::Rows{0, m_dat.punkte.size() - 1});
    ShowPrompt(IDC_IMPORT_HINWEIS, m_dat.LegeInSzene(zeilen.first, zeilen.last));
}

void CGPXImportDlg::OnKartenklick(std::size_t punkt)
{
    const std::size_t anfang = m_kartenanfang.value_or(punkt);
    m_kartenanfang = m_kartenanfang ? std::nullopt : std::optional(punkt);
    Diagramm().SetRange({std::min(anfang, punkt), std::max(anfang, punkt)});
}

void CGPXImportDlg::OnDiagrammzeiger(double zeit)
{
    if (m_zeiten.empty())
        return;
    auto naechster = std::lower_bound(m_zeiten.begin(), m_zeiten.end(), zeit);
    if (naechster == m_zeiten.end() || (naechster != m_zeiten.begin() && zeit - naechster[-1] < *naechster - zeit))
        --naechster;
    m_karte.SetMarke(static_cast<std::size_t>(naechster - m_zeiten.begin()));
    GetDlgItem(IDC_GPX_KARTE)->Invalidate();
}

void CGPXImportDlg::OnKartenzeiger(std::optional<std::size_t> punkt)
{
    m_karte.SetMarke(punkt);
    Diagramm().PointAt(punkt ? std::optional(m_zeiten[*punkt]) : std::nullopt);
}
