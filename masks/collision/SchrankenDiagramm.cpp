// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/SchrankenDiagramm.h"

#include "host/CRuvData.h"
#include "host/CWnd.h"
#include "host/RuvCfg.h"
#include "host/Units.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace schranken
{
namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr UINT kTextWeg = 8078;            // of the host
constexpr UINT kTextTempo = 9770;          // of the host
constexpr double kTickWeg = 5.0;           // m
constexpr double kTickUnits = 10.0;        // of the user's unit
constexpr double kGrenzVerzoegerung = 3.0; // m/s², "Verzögerung (Kühnel)" is drawn only above
constexpr double kWeitester = 1e5;         // m, what lies farther away is not shown
constexpr double kRand = 8.0;              // px around the labels
constexpr double kLuft = 4.0;              // px between tick and label
constexpr double kEngsteTicks = 4.0;       // px
constexpr double kKleinster = 1.0;         // px, a smaller plot stays empty

constexpr COLORREF kGruen = RGB(45, 175, 20);

struct Kurvenbild {
    Dat::Schranke schranke;
    PenStyle stil; ///< tells barriers that share a colour apart
    const char* name;
};

constexpr std::array<Kurvenbild, Dat::kSchranken> kKurvenbilder{{
    {Dat::kurveBremsung, PenStyle::solid, "Bremsverzögerung"},
    {Dat::kurveKuehnelGlobal, PenStyle::solid, "Global (Kühnel)"},
    {Dat::kurveKuehnelVerzoegerung, PenStyle::solid, "Verzögerung (Kühnel)"},
    {Dat::kurveRau, PenStyle::dash, "Rau / Otte / Schulz"},
    {Dat::kurveDettinger, PenStyle::dash, "Dettinger"},
    {Dat::kurveRitter, PenStyle::solid, "Ritter, Krieg, et. al."},
    {Dat::kurveFrontscheibe, PenStyle::solid, "Frontscheibe"},
    {Dat::kurveHauptfeld, PenStyle::solid, "Scheinwerfer - Hauptfeld"},
    {Dat::kurveGesamtfeld, PenStyle::solid, "Scheinwerfer - Gesamtfeld"},
    {Dat::kurveAbwicklung, PenStyle::solid, "Abwicklung"},
    {Dat::kurveGeschwindigkeit, PenStyle::solid, "Geschwindigkeitsschranke"},
}};

bool IstSichtbar(const Dat& dat, Dat::Schranke schranke)
{
    if (schranke == Dat::kurveBremsung)
        return dat.verzoegerung != 0.0 && dat.verzoegerungToleranz != 0.0;
    if (schranke == Dat::kurveKuehnelVerzoegerung && !ZeigtVerzoegerung(dat))
        return false;
    for (std::size_t i = 0; i < Dat::kTheorien; ++i)
        if (Dat::KurveVon(static_cast<Dat::Theorie>(i)) == schranke)
            return dat.IstWirksam(static_cast<Dat::Theorie>(i));
    return false;
}

/// A line of one pixel is sharp when it runs through the middle of pixels.
double Scharf(double koordinate)
{
    return std::floor(koordinate) + 0.5;
}

std::string Ganzzahl(double wert)
{
    const long zahl = std::lround(wert);
    return zahl < 0 ? "−" + std::to_string(-zahl) : std::to_string(zahl);
}

class Zeichner
{
  public:
    Zeichner(CDC& dc, const Dat& dat, const Farben& farben, bool gross)
        : m_dc(dc), m_dat(dat), m_farben(farben), m_gross(gross), m_achsen(AchsenVon(dat))
    {
        m_schrift.size = std::clamp(dc.Height() / (gross ? 44.0 : 20.0), 9.0, gross ? 18.0 : 14.0);
        m_dc.SelectFont(m_schrift);
        m_zeile = m_dc.TextHeight();
        const double einzug = std::ceil(m_zeile + kRand);
        m_links = einzug;
        m_oben = einzug;
        m_rechts = dc.Width() - einzug;
        m_unten = dc.Height() - einzug;
    }

    void Zeichne()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, m_farben.hintergrund});
        m_dc.Rectangle(0.0, 0.0, m_dc.Width(), m_dc.Height());
        if (!(m_rechts - m_links >= kKleinster && m_unten - m_oben >= kKleinster))
            return;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.rahmen});
        m_dc.SelectBrush({true, m_farben.zeichenflaeche});
        m_dc.Rectangle(Scharf(m_links), Scharf(m_oben), Scharf(m_rechts), Scharf(m_unten));
        m_dc.SetTextColor(m_farben.schrift);
        Wegachse();
        Tempoachse();
        // Over the grid lines at its edges.
        m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.rahmen});
        const double links = Scharf(m_links), rechts = Scharf(m_rechts), oben = Scharf(m_oben), unten = Scharf(m_unten);
        m_dc.Polyline({{links, oben}, {rechts, oben}, {rechts, unten}, {links, unten}, {links, oben}});
        if (m_gross)
            Legende(); // under everything else, so that it hides nothing
        Fahrzeug();
        Person();
        for (const Kurvenbild& bild : kKurvenbilder)
            if (IstSichtbar(m_dat, bild.schranke))
                Kurve(bild);
        Bereich();
    }

  private:
    double X(double weg) const
    {
        return m_links + (weg - m_achsen.wegVon) / (m_achsen.wegBis - m_achsen.wegVon) * (m_rechts - m_links);
    }
    double Y(double tempo) const { return m_unten - tempo / m_achsen.tempoBis * (m_unten - m_oben); }
    double ProMeter() const { return (m_rechts - m_links) / (m_achsen.wegBis - m_achsen.wegVon); }
    double Breite() const { return m_gross ? 2.0 : 1.0; }

    void Wegachse()
    {
        const auto& units = UnitsSystemConfiguration::GetInstance();
        const UnitType meter(unitType::length);
        const bool metrisch = units.System() == UnitsSystem::metric;
        double schritt = metrisch ? kTickWeg : units.ToMetric(kTickUnits, meter);
        while (schritt * ProMeter() < kEngsteTicks)
            schritt *= 2.0;
        const auto erster = static_cast<int>(std::ceil(m_achsen.wegVon / schritt - 1e-9));
        const auto letzter = static_cast<int>(std::floor(m_achsen.wegBis / schritt + 1e-9));
        const std::string einheit = metrisch || m_gross ? " " + units.UnitString(meter) : "";
        const auto text = [&](int tick) { return Ganzzahl(units.ToShown(tick * schritt, meter)) + einheit; };
        const double breiteste = std::max(m_dc.TextWidth(text(erster)), m_dc.TextWidth(text(letzter)));
        const int jeder = std::max(1, static_cast<int>(std::ceil((breiteste + kRand) / (schritt * ProMeter()))));

        const std::string titel = units.WithUnit(LoadRuvString(kTextWeg), meter);
        const double grundlinie = m_unten + kLuft + m_dc.TextAscent();
        // Inside, at the end of the axis: under it the ticks need the room.
        m_dc.TextOut({m_rechts - kLuft, m_unten - kLuft - 2.0}, titel, TextAlign::right);
        for (int tick = erster; tick <= letzter; ++tick) {
            const double x = Scharf(X(tick * schritt));
            m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.raster});
            m_dc.Line({x, m_oben + 1.0}, {x, m_unten});
            m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.rahmen});
            m_dc.Line({x, m_unten}, {x, m_unten + kLuft});
            const std::string zahl = text(tick);
            const double halb = m_dc.TextWidth(zahl) / 2.0;
            if (tick % jeder == 0)
                m_dc.TextOut({std::clamp(x, halb, m_dc.Width() - halb), grundlinie}, zahl, TextAlign::center);
        }
    }

    void Tempoachse()
    {
        const auto& units = UnitsSystemConfiguration::GetInstance();
        const UnitType kmh(unitType::speedKmh);
        const double schritt = units.ToMetric(kTickUnits, kmh);
        const double hoehe = schritt / m_achsen.tempoBis * (m_unten - m_oben);
        const int jeder = std::max(1, static_cast<int>(std::ceil(m_zeile / hoehe)));
        const auto letzter = static_cast<int>(std::floor(m_achsen.tempoBis / schritt + 1e-9));
        const auto text = [&](int tick) { return Ganzzahl(units.ToShown(tick * schritt, kmh)); };
        // The longest number still fits beside the plot.
        CFont schmal = m_schrift;
        schmal.size *= std::min(1.0, (m_links - kLuft - 1.0) / std::max(m_dc.TextWidth(text(letzter)), 1.0));
        m_dc.SelectFont(schmal);
        for (int tick = 0; tick <= letzter; ++tick) {
            const double y = Scharf(Y(tick * schritt));
            if (tick > 0 && y > m_oben + 1.0) {
                m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.raster});
                m_dc.Line({m_links + 1.0, y}, {m_rechts, y});
            }
            m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.rahmen});
            m_dc.Line({m_links - kLuft + 1.0, y}, {m_links, y});
            if (tick % jeder == 0)
                m_dc.TextOut({m_links - kLuft, y + 0.36 * schmal.size}, text(tick), TextAlign::right);
        }
        m_dc.SelectFont(m_schrift);
        m_dc.TextOut({m_links, m_oben - kLuft - 2.0}, units.WithUnit(LoadRuvString(kTextTempo), kmh));
    }

    /// Seen from above, its front at 0: the axis runs backwards, so the vehicle points to the left.
    void Fahrzeug()
    {
        if (m_dat.fahrzeugLaenge <= 0.0)
            return;
        const CKfzDaten& kfz = m_dat.KfzDat(static_cast<std::size_t>(m_dat.fahrzeugNr));
        const double laenge = m_dat.fahrzeugLaenge * ProMeter();
        const double hoehe = kfz.width * ProMeter();
        const double links = X(0.0);
        const double oben = (m_oben + m_unten - hoehe) / 2.0;
        m_dc.SelectPen({PenStyle::dashDotDot, Breite(), chart::AufGrund(kfz.color, m_farben.zeichenflaeche)});
        m_dc.SelectBrush({});
        m_dc.Rectangle(links, oben, links + laenge, oben + hoehe, 0.2 * laenge, 0.2 * hoehe);
        m_dc.Polygon({{links + 0.07 * laenge, oben + 0.5 * hoehe},
                      {links + 0.17 * laenge, oben + 0.25 * hoehe},
                      {links + 0.17 * laenge, oben + 0.75 * hoehe}});
    }

    void Person()
    {
        const Dat::Rechteck& person = m_dat.objekte[Dat::person];
        if (person.gesetzt == 0 || !m_dat.RuvData().IsFzgValid(m_dat.personNr))
            return;
        const CKfzDaten& kfz = m_dat.KfzDat(static_cast<std::size_t>(m_dat.personNr));
        const double winkel = person.winkel - m_dat.objekte[Dat::fahrzeug].winkel;
        m_dc.SelectPen({PenStyle::solid, Breite(), chart::AufGrund(kfz.color, m_farben.zeichenflaeche)});
        m_dc.SelectBrush({});
        m_dc.Ellipse({X(m_dat.personLaengs), (m_oben + m_unten) / 2.0}, person.breite / 2.0 * ProMeter(),
                     person.laenge / 2.0 * ProMeter(), winkel);
    }

    CPen Stift(const Kurvenbild& bild) const
    {
        return {bild.stil, m_gross ? 2.2 : 1.2, m_farben.kurven[bild.schranke]};
    }

    void Kurve(const Kurvenbild& bild)
    {
        m_dc.SelectPen(Stift(bild));
        if (bild.schranke == Dat::kurveGeschwindigkeit) {
            for (const double tempo : {m_dat.geschwindigkeitVon, m_dat.geschwindigkeitBis})
                if (tempo > 0.0 && tempo <= m_achsen.tempoBis)
                    m_dc.Line({m_links, Y(tempo)}, {m_rechts, Y(tempo)});
            return;
        }
        const Dat::Kurvenfeld& feld = m_dat.kurven[bild.schranke];
        for (const std::size_t erster : {std::size_t{0}, Dat::kProben}) {
            std::vector<CDPoint> strich;
            for (std::size_t i = erster; i < erster + Dat::kProben; ++i) {
                const CDPoint punkt{X(feld[i].x), Y(feld[i].y)};
                if (feld[i].y > 0.0 && Innen(punkt)) {
                    strich.push_back(punkt);
                    continue;
                }
                m_dc.Polyline(std::exchange(strich, {}));
            }
            m_dc.Polyline(std::move(strich));
        }
    }

    bool Innen(const CDPoint& p) const { return p.x >= m_links && p.x <= m_rechts && p.y >= m_oben && p.y <= m_unten; }

    void Bereich()
    {
        std::vector<CDPoint> rand;
        const auto nimm = [&](const CDPoint& p) {
            if (p.y > 0.0)
                rand.push_back({std::clamp(X(p.x), m_links, m_rechts), std::clamp(Y(p.y), m_oben, m_unten)});
        };
        for (std::size_t i = 0; i < Dat::kProben; ++i)
            nimm(m_dat.flaeche[i]);
        for (std::size_t i = Dat::kProben; i-- > 0;)
            nimm(m_dat.flaeche[i + Dat::kProben]);
        m_dc.SelectPen({PenStyle::solid, Breite(), m_farben.bereichRand});
        m_dc.SelectBrush({true, m_farben.bereich});
        m_dc.Polygon(std::move(rand));
    }

    /// What stands in the plot, as points close together.
    std::vector<CDPoint> Gezeichnetes() const
    {
        std::vector<CDPoint> punkte;
        const auto nimm = [&](const CDPoint& p) {
            if (Innen(p))
                punkte.push_back(p);
        };
        for (const Kurvenbild& bild : kKurvenbilder) {
            if (!IstSichtbar(m_dat, bild.schranke))
                continue;
            if (bild.schranke == Dat::kurveGeschwindigkeit) {
                for (const double tempo : {m_dat.geschwindigkeitVon, m_dat.geschwindigkeitBis})
                    for (double x = m_links; tempo > 0.0 && x <= m_rechts; x += kRand)
                        nimm({x, Y(tempo)});
                continue;
            }
            for (const CDPoint& p : m_dat.kurven[bild.schranke])
                if (p.y > 0.0)
                    nimm({X(p.x), Y(p.y)});
        }
        // Vehicle and person stand on the middle line.
        const double vorn = std::min(0.0, m_dat.personLaengs - 1.0);
        for (double x = X(vorn); x <= X(m_dat.fahrzeugLaenge); x += kRand)
            for (const double seite : {-1.0, 0.0, 1.0})
                nimm({x, (m_oben + m_unten) / 2.0 + seite * ProMeter()});
        return punkte;
    }

    /// The upper left corner of a box where it covers the least of what is drawn; of equal places the uppermost, and
    /// of those the leftmost.
    CDPoint FreierPlatz(double breite, double hoehe) const
    {
        constexpr int kPlaetze = 12; // in each direction
        const auto punkte = Gezeichnetes();
        const double weite = std::max(0.0, m_rechts - m_links - breite - 2.0 * kRand);
        const double tiefe = std::max(0.0, m_unten - m_oben - hoehe - 2.0 * kRand - m_zeile);
        CDPoint bester{m_links + kRand, m_oben + kRand};
        auto wenigste = punkte.size() + 1;
        for (int j = 0; j < kPlaetze; ++j) {
            for (int i = 0; i < kPlaetze; ++i) {
                const CDPoint ecke{m_links + kRand + weite * i / (kPlaetze - 1),
                                   m_oben + kRand + tiefe * j / (kPlaetze - 1)};
                const auto verdeckt =
                    static_cast<std::size_t>(std::count_if(punkte.begin(), punkte.end(), [&](const CDPoint& p) {
                        return p.x >= ecke.x - kLuft && p.x <= ecke.x + breite + kLuft && p.y >= ecke.y - kLuft &&
                               p.y <= ecke.y + hoehe + kLuft;
                    }));
                if (verdeckt < wenigste) {
                    wenigste = verdeckt;
                    bester = ecke;
                }
            }
        }
        return bester;
    }

    void Legende()
    {
        std::vector<const Kurvenbild*> bilder;
        for (const Kurvenbild& bild : kKurvenbilder)
            if (m_dat.ergebnisSteht != 0 && IstSichtbar(m_dat, bild.schranke))
                bilder.push_back(&bild);
        const bool bereich = m_dat.HatFlaeche();
        if (bilder.empty())
            return;
        constexpr double kMuster = 30.0;
        const std::string gemeinsam = "gemeinsamer Bereich";
        double breite = bereich ? m_dc.TextWidth(gemeinsam) : 0.0;
        for (const Kurvenbild* bild : bilder)
            breite = std::max(breite, m_dc.TextWidth(bild->name));
        const double zeile = m_zeile + 2.0;
        const double zeilen = static_cast<double>(bilder.size()) + (bereich ? 1.0 : 0.0);
        const CDPoint ecke = FreierPlatz(kMuster + breite + 3.0 * kRand, zeilen * zeile + kRand);
        const double links = ecke.x;
        double y = ecke.y;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.raster});
        m_dc.SelectBrush({true, m_farben.zeichenflaeche});
        m_dc.Rectangle(links, y, links + kMuster + breite + 3.0 * kRand, y + zeilen * zeile + kRand);
        y += kRand / 2.0;
        const auto schreibe = [&](const std::string& name) {
            m_dc.TextOut({links + kMuster + 2.0 * kRand, y + zeile / 2.0 + 0.36 * m_schrift.size}, name);
            y += zeile;
        };
        for (const Kurvenbild* bild : bilder) {
            m_dc.SelectPen(Stift(*bild));
            m_dc.Line({links + kRand, y + zeile / 2.0}, {links + kRand + kMuster, y + zeile / 2.0});
            schreibe(bild->name);
        }
        if (bereich) {
            m_dc.SelectPen({PenStyle::solid, 1.0, m_farben.bereichRand});
            m_dc.SelectBrush({true, m_farben.bereich});
            m_dc.Rectangle(links + kRand, y + 0.2 * zeile, links + kRand + kMuster, y + 0.8 * zeile);
            schreibe(gemeinsam);
        }
    }

    CDC& m_dc;
    const Dat& m_dat;
    const Farben& m_farben;
    bool m_gross;
    Achsen m_achsen;
    CFont m_schrift{};
    double m_zeile = 0.0;
    double m_links = 0.0;
    double m_oben = 0.0;
    double m_rechts = 0.0;
    double m_unten = 0.0;
};

} // namespace

Farben Farben::Aus(const CRuvCfg& cfg)
{
    Farben farben{Diagrammfarben::Aus(cfg), kGruen, {}, {}};
    farben.bereichRand = chart::IstDunkel(cfg.diagramPlot) ? chart::Mische(kGruen, RGB(255, 255, 255), 0.5)
                                                           : chart::Mische(kGruen, RGB(0, 0, 0), 0.4);
    const CSchrankenFarben& c = cfg.schranken;
    farben.kurven = {c.bremsungDettinger, c.globalRau,         c.kuehnelVerzoegerung, c.globalRau,
                     c.frontscheibe,      c.scheinwerferHaupt, c.scheinwerferGesamt,  c.bremsungDettinger,
                     c.ritterKrieg,       c.abwicklung,        c.geschwindigkeit};
    for (COLORREF& farbe : farben.kurven)
        farbe = chart::AufGrund(farbe, cfg.diagramPlot);
    return farben;
}

bool ZeigtVerzoegerung(const Dat& dat)
{
    return dat.verzoegerung > kGrenzVerzoegerung;
}

Achsen AchsenVon(const Dat& dat)
{
    const double breite = dat.objekte[Dat::person].gesetzt != 0 ? dat.objekte[Dat::person].breite : 0.0;
    const double von = std::min(-5.0, dat.personLaengs - breite - 5.0);
    const double bis = std::max({dat.personLaengs + 5.0, dat.kollision.bis + 5.0, dat.fahrzeugLaenge + 5.0});
    const double tempo = dat.tempo.bis > 0.0 ? dat.tempo.bis + 10.0 : 100.0;
    // What is not a number or out of this world shows the axes of an empty scene.
    const bool sinnvoll = von >= -kWeitester && bis <= kWeitester;
    return {sinnvoll ? von : -5.0, sinnvoll ? bis : 5.0, tempo};
}

void ZeichneDiagramm(CDC& dc, const Dat& dat, const Farben& farben, bool gross)
{
    Zeichner(dc, dat, farben, gross).Zeichne();
}

} // namespace schranken
