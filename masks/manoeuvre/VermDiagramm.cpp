// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/VermDiagramm.h"

#include "chart/Diagrammfarben.h"
#include "host/CRuvData.h"
#include "host/CWnd.h"
#include "host/RuvCfg.h"
#include "host/Units.h"
#include "masks/manoeuvre/CVermDat.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

constexpr double kLuft = 6.0;       // px around labels
constexpr double kTickAbstand = 55; // px between ticks, at least
constexpr double kMuster = 22.0;    // px of a line in the legend
constexpr double kKleinster = 20.0; // px, a smaller plot stays empty
constexpr int kPunkte = 160;        // per line
constexpr double kUeberstand = 1.08;

/// The smallest of 1, 2, 5 times a power of ten that is not below.
double RunderSchritt(double mindestens)
{
    const double zehner = std::pow(10.0, std::floor(std::log10(mindestens)));
    for (const double faktor : {1.0, 2.0, 5.0})
        if (faktor * zehner >= mindestens)
            return faktor * zehner;
    return 10.0 * zehner;
}

/// A tick's number with as many decimals as its step needs.
std::string Zahl(long tick, double schritt)
{
    const int stellen = std::max(0, static_cast<int>(std::ceil(-std::log10(schritt) - 1e-9)));
    const long teiler = std::lround(std::pow(10.0, stellen));
    const long gesamt = std::lround(static_cast<double>(tick) * schritt * static_cast<double>(teiler));
    const long betrag = std::labs(gesamt);
    std::string zahl = gesamt < 0 ? "−" : "";
    zahl.append(std::to_string(betrag / teiler));
    if (stellen > 0)
        zahl.append(RuvCfg.decimalPoint ? "." : ",").append(std::to_string(teiler + betrag % teiler).substr(1));
    return zahl;
}

class Zeichner
{
  public:
    Zeichner(CDC& dc, const CVermDat& dat) : m_dc(dc), m_dat(dat), m_farben(chart::Diagrammfarben::Aus(RuvCfg)) {}

    void Zeichne(bool veraltet)
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_farben.hintergrund});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        m_dc.SelectFont({std::clamp(m_dc.Height() / 22.0, 9.0, 15.0)});
        m_dc.SetTextColor(m_farben.schrift);
        if (!m_dat.Berechnet()) {
            m_dc.TextOut({m_dc.Width() / 2.0, m_dc.Height() / 2.0}, LoadRuvString(IDS_VERM_BILD_LEER),
                         TextAlign::center);
            return;
        }
        Bereiche();
        const double zeile = m_dc.TextHeight();
        m_links = m_dc.TextWidth("−1000") + 2.0 * kLuft;
        m_oben = 2.0 * zeile + 2.0 * kLuft;
        m_rechts = m_dc.Width() - kLuft;
        m_unten = m_dc.Height() - 2.0 * zeile - kLuft;
        if (m_rechts - m_links < kKleinster || m_unten - m_oben < kKleinster)
            return;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.rahmen});
        m_dc.SelectBrush({true, m_farben.zeichenflaeche});
        m_dc.Rectangle(m_links, m_oben, m_rechts, m_unten);
        Achsen();
        Konflikt();
        Linien();
        if (veraltet)
            m_dc.TextOut({(m_links + m_rechts) / 2.0, (m_oben + m_unten) / 2.0}, LoadRuvString(IDS_VERM_BILD_VERALTET),
                         TextAlign::center);
    }

  private:
    const VermKonflikt& K() const { return m_dat.Berechnet()->konflikt; }
    double X(double t) const { return m_links + (t - m_tVon) / (m_tBis - m_tVon) * (m_rechts - m_links); }
    double Y(double s) const { return m_unten - (s - m_sVon) / (m_sBis - m_sVon) * (m_unten - m_oben); }
    COLORREF Farbe(std::int64_t fahrzeug, COLORREF sonst) const
    {
        const CRuvData& data = m_dat.RuvData();
        const bool gibt = data.IsFzgValid(fahrzeug);
        return chart::AufGrund(gibt ? data.KfzDat(static_cast<std::size_t>(fahrzeug)).color : sonst,
                               m_farben.zeichenflaeche);
    }

    void Bereiche()
    {
        const CVermDat::Variante zulaessig = m_dat.GibVariante(CVermDat::mitZulaessiger);
        const VermFahrt fahrt(zulaessig.vorgabe);
        const double laengste = 4.0 * std::max({K().tRK, fahrt.Haltezeit(), 1.0});
        double ende = std::max(K().tRK, m_dat.Fahrtende(zulaessig));
        m_sBis = std::max({K().sRK, fahrt.Weg(ende), K().Sperrweg(), 1.0});
        for (const std::int64_t nummer : Grenzfaelle()) {
            const CVermDat::Variante v = m_dat.GibVariante(nummer);
            const VermFahrt grenze(v.vorgabe);
            const double bis = std::min(m_dat.Fahrtende(v) - v.vorverlegung, laengste);
            ende = std::max(ende, bis);
            m_tVon = std::min(m_tVon, -v.vorverlegung);
            m_sVon = std::min(m_sVon, -v.vorverlegung * v.vorgabe.v);
            m_sBis = std::max(m_sBis, grenze.Weg(bis + v.vorverlegung) - v.vorverlegung * v.vorgabe.v);
        }
        const double gegnerEnde = K().richtung == VermRichtung::quer ? K().tRaeumen : K().gegner.Haltezeit();
        if (!std::isinf(gegnerEnde))
            ende = std::max(ende, std::min(K().tRK + gegnerEnde, laengste));
        m_tBis = std::max(ende * kUeberstand, 0.1);
        m_sBis *= kUeberstand;
    }

    /// The limits that were found.
    std::vector<std::int64_t> Grenzfaelle() const
    {
        std::vector<std::int64_t> nummern;
        if (m_dat.hoechstBestimmt != 0)
            nummern.push_back(CVermDat::mitHoechster);
        if (m_dat.reaktBestimmt != 0)
            nummern.push_back(CVermDat::mitReaktionspunkt);
        if (m_dat.grenzBestimmt != 0)
            nummern.push_back(CVermDat::mitVerzoegerung);
        return nummern;
    }

    void Achsen()
    {
        const auto& units = UnitsSystemConfiguration::GetInstance();
        const UnitType meter(unitType::length);
        const double zeile = m_dc.TextHeight();
        const double zeitSchritt =
            RunderSchritt((m_tBis - m_tVon) / std::max((m_rechts - m_links) / kTickAbstand, 1.0));
        for (long tick = std::lround(std::ceil(m_tVon / zeitSchritt));
             static_cast<double>(tick) * zeitSchritt <= m_tBis; ++tick) {
            const double x = X(static_cast<double>(tick) * zeitSchritt);
            Rasterlinie({x, m_oben}, {x, m_unten}, tick == 0);
            m_dc.TextOut({x, m_unten + m_dc.TextAscent() + 2.0}, Zahl(tick, zeitSchritt), TextAlign::center);
        }
        const double fuss = units.ToMetric(1.0, meter);
        const double wegSchritt =
            RunderSchritt((m_sBis - m_sVon) / fuss / std::max((m_unten - m_oben) / (1.6 * zeile), 1.0));
        for (long tick = std::lround(std::ceil(m_sVon / fuss / wegSchritt));
             static_cast<double>(tick) * wegSchritt * fuss <= m_sBis; ++tick) {
            const double y = Y(static_cast<double>(tick) * wegSchritt * fuss);
            Rasterlinie({m_links, y}, {m_rechts, y}, tick == 0);
            m_dc.TextOut({m_links - kLuft / 2.0, y + 0.36 * zeile}, Zahl(tick, wegSchritt), TextAlign::right);
        }
        m_dc.TextOut({m_rechts, m_dc.Height() - kLuft / 2.0}, LoadRuvString(IDS_VERM_BILD_ZEIT), TextAlign::right);
        m_dc.TextOut({kLuft, m_oben - kLuft}, units.WithUnit(LoadRuvString(IDS_VERM_BILD_WEG), meter));
    }

    void Rasterlinie(CDPoint von, CDPoint bis, bool null)
    {
        m_dc.SelectPen({PenStyle::solid, 1.0, null ? m_farben.rahmen : m_farben.raster});
        m_dc.Line(von, bis);
    }

    /// Where and when V must not be: G across its way, or the place it must stop before.
    void Konflikt()
    {
        const double weg = std::clamp(K().Sperrweg(), m_sVon, m_sBis);
        const COLORREF farbe = Farbe(m_dat.gegner, RGB(0, 0, 200));
        if (K().richtung == VermRichtung::quer) {
            const double bis = std::isinf(K().tRaeumen) ? m_tBis : std::min(K().tRK + K().tRaeumen, m_tBis);
            m_dc.SelectPen({PenStyle::solid, 1.0, farbe});
            m_dc.SelectBrush({true, m_farben.raster});
            m_dc.Rectangle(X(K().tRK), m_oben, X(bis), Y(weg));
        }
        m_dc.SelectPen({PenStyle::dash, 1.0, farbe});
        m_dc.Line({m_links, Y(weg)}, {m_rechts, Y(weg)});
        m_dc.SelectPen({PenStyle::dot, 1.0, m_farben.rahmen});
        m_dc.Line({X(K().tRK), m_oben}, {X(K().tRK), m_unten});
        Legende({PenStyle::dash, 1.0, farbe}, IDS_VERM_BILD_KONFLIKT);
    }

    void Linien()
    {
        const COLORREF eigen = Farbe(m_dat.fahrzeug, RGB(200, 0, 0));
        const COLORREF gegner = Farbe(m_dat.gegner, RGB(0, 0, 200));
        const auto grenzfaelle = Grenzfaelle();
        const CPen grenzstift{PenStyle::dot, 1.0, eigen};
        for (const std::int64_t nummer : grenzfaelle)
            Variante(nummer, grenzstift);
        if (!grenzfaelle.empty())
            Legende(grenzstift, IDS_VERM_BILD_GRENZEN);
        if (K().richtung != VermRichtung::quer) {
            const double sign = K().richtung == VermRichtung::gleich ? 1.0 : -1.0;
            const CPen stift{PenStyle::solid, 2.0, gegner};
            Linie(stift, K().tRK, m_tBis, [&](double t) { return K().sRK + sign * K().gegner.Weg(t - K().tRK); });
            Legende(stift, IDS_VERM_BILD_GEGNER);
        }
        const CVermDat::Tatsaechlich actual = m_dat.GibTatsaechlich();
        if (actual.punkte.size() > 1) {
            const CPen stift{actual.nurEnden ? PenStyle::dash : PenStyle::solid, 1.5, m_farben.schrift};
            std::vector<CDPoint> punkte;
            for (const CDPoint& p : actual.punkte)
                punkte.push_back({X(p.x), Y(p.y)});
            m_dc.SelectPen(stift);
            m_dc.Polyline(std::move(punkte));
            Legende(stift, IDS_VERM_BILD_TATSAECHLICH);
        }
        const CPen zulaessig{PenStyle::solid, 2.5, eigen};
        Variante(CVermDat::mitZulaessiger, zulaessig);
        Legende(zulaessig, IDS_VERM_BILD_ZULAESSIG);
    }

    /// V's variant to its stop, which stays, or to the contact.
    void Variante(std::int64_t nummer, const CPen& stift)
    {
        const CVermDat::Variante v = m_dat.GibVariante(nummer);
        const VermFahrt fahrt(v.vorgabe);
        const double ende = m_dat.Fahrtende(v);
        const double bis = ende >= fahrt.Haltezeit() ? m_tBis : ende - v.vorverlegung;
        Linie(stift, -v.vorverlegung, std::min(bis, m_tBis),
              [&](double t) { return fahrt.Weg(t + v.vorverlegung) - v.vorverlegung * v.vorgabe.v; });
    }

    /// A line over time, as far as it lies in the plot.
    template <class Weg> void Linie(const CPen& stift, double von, double bis, Weg weg)
    {
        std::vector<CDPoint> punkte;
        for (int i = 0; i <= kPunkte; ++i) {
            const double t = von + (bis - von) * i / kPunkte;
            const double s = weg(t);
            if (s >= m_sVon && s <= m_sBis)
                punkte.push_back({X(t), Y(s)});
        }
        if (punkte.size() < 2)
            return;
        m_dc.SelectPen(stift);
        m_dc.Polyline(std::move(punkte));
    }

    void Legende(const CPen& stift, UINT text)
    {
        const std::string name = LoadRuvString(text);
        const double breite = kMuster + kLuft + m_dc.TextWidth(name) + 2.0 * kLuft;
        const double y = kLuft + m_dc.TextHeight() / 2.0;
        if (m_legende + breite > m_dc.Width())
            return;
        m_dc.SelectPen(stift);
        m_dc.Line({m_legende + kLuft, y}, {m_legende + kLuft + kMuster, y});
        m_dc.TextOut({m_legende + 2.0 * kLuft + kMuster, y + 0.33 * m_dc.TextHeight()}, name);
        m_legende += breite;
    }

    CDC& m_dc;
    const CVermDat& m_dat;
    chart::Diagrammfarben m_farben;
    double m_tVon = 0.0;
    double m_tBis = 1.0;
    double m_sVon = 0.0;
    double m_sBis = 1.0;
    double m_links = 0.0;
    double m_oben = 0.0;
    double m_rechts = 0.0;
    double m_unten = 0.0;
    double m_legende = 0.0;
};

} // namespace

void ZeichneVermeidbarkeit(CDC& dc, const CVermDat& dat, bool veraltet)
{
    Zeichner(dc, dat).Zeichne(veraltet);
}
