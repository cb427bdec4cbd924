// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/AbbiegePlan.h"

#include "chart/Diagrammfarben.h"
#include "host/CWnd.h"
#include "host/RuvCfg.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace abbiegen
{
namespace
{

constexpr double kRand = 12.0;          // px around everything
constexpr double kMassstabHoehe = 24.0; // px for the scale below
constexpr double kSchrift = 11.0;       // px
constexpr double kZeile = 14.0;         // px between the lines of two names
constexpr std::size_t kUmrisse = 60;    // bodies that make up the ground passed over

/// The longest of 1, 2, 5, 10, ... m that does not exceed this length.
double Massstab(double laenge)
{
    const double dekade = std::pow(10.0, std::floor(std::log10(laenge)));
    return laenge >= 5.0 * dekade ? 5.0 * dekade : laenge >= 2.0 * dekade ? 2.0 * dekade : dekade;
}

class Zeichner
{
  public:
    Zeichner(CDC& dc, const CAbDaten::Lauf& lauf, bool rechts, COLORREF farbe)
        : m_dc(dc), m_lauf(lauf), m_spiegel(rechts ? -1.0 : 1.0), m_grund(RuvCfg.diagramPlot),
          m_schrift(chart::IstDunkel(m_grund) ? RGB(235, 235, 235) : RGB(40, 40, 40)),
          m_farbe(chart::IstDunkel(m_grund) == chart::IstDunkel(farbe) ? chart::Mische(farbe, m_schrift, 0.4) : farbe)
    {
        PasseEin();
    }

    void Zeichne()
    {
        if (!(m_massstab > 0.0))
            return;
        ZeichneFlaeche();
        m_dc.SelectPen({PenStyle::dashDot, 1.0, m_schrift});
        std::vector<CDPoint> mitte;
        for (const Lage& lage : m_lauf.fahrt.verlauf)
            mitte.push_back(Auf(Mitte(m_lauf.vorgabe, lage)));
        m_dc.Polyline(mitte);
        ZeichneFahrzeug(m_lauf.fahrt.verlauf.front(), PenStyle::solid, "Beginn");
        if (!m_lauf.fahrt.zwischenIstEnde)
            ZeichneFahrzeug(m_lauf.fahrt.zwischen, PenStyle::dash, "Zwischenposition");
        ZeichneFahrzeug(m_lauf.fahrt.lage, PenStyle::solid, "Ende");
        ZeichneMassstab();
    }

  private:
    /// Every k-th moment of the course, so that at most kUmrisse and the last one remain.
    template <class Tun> void FuerUmrisse(Tun tun) const
    {
        const auto& verlauf = m_lauf.fahrt.verlauf;
        const std::size_t schritt = verlauf.size() / kUmrisse + 1;
        for (std::size_t i = 0; i < verlauf.size(); i += schritt)
            tun(Umriss(m_lauf.vorgabe, verlauf[i]));
        tun(Umriss(m_lauf.vorgabe, verlauf.back()));
    }

    void PasseEin()
    {
        double links = 1e30, rechts = -1e30, unten = 1e30, oben = -1e30;
        FuerUmrisse([&](const std::array<CDPoint, 4>& umriss) {
            for (const CDPoint& p : umriss) {
                links = std::min(links, p.x);
                rechts = std::max(rechts, p.x);
                unten = std::min(unten, m_spiegel * p.y);
                oben = std::max(oben, m_spiegel * p.y);
            }
        });
        const double breite = m_dc.Width() - 2.0 * kRand;
        const double hoehe = m_dc.Height() - 2.0 * kRand - kMassstabHoehe;
        if (!(breite > 0.0 && hoehe > 0.0))
            return;
        m_massstab = std::min(breite / (rechts - links), hoehe / (oben - unten));
        m_ursprung = {m_dc.Width() / 2.0 - m_massstab * (links + rechts) / 2.0,
                      kRand + hoehe / 2.0 + m_massstab * (unten + oben) / 2.0};
    }

    CDPoint Auf(CDPoint p) const
    {
        return {m_ursprung.x + m_massstab * p.x, m_ursprung.y - m_massstab * m_spiegel * p.y};
    }

    std::vector<CDPoint> Auf(const std::array<CDPoint, 4>& umriss) const
    {
        std::vector<CDPoint> ecken;
        for (const CDPoint& p : umriss)
            ecken.push_back(Auf(p));
        return ecken;
    }

    void ZeichneFlaeche()
    {
        m_dc.SelectPen({PenStyle::none});
        m_dc.SelectBrush({true, chart::Mische(m_grund, m_farbe, 0.18)});
        // Each body, and what its front and its outer side pass over until the next one.
        std::array<CDPoint, 4> vorher = Umriss(m_lauf.vorgabe, m_lauf.fahrt.verlauf.front());
        FuerUmrisse([&](const std::array<CDPoint, 4>& u) {
            m_dc.Polygon(Auf(u));
            m_dc.Polygon(Auf({vorher[0], u[0], u[1], vorher[1]}));
            m_dc.Polygon(Auf({vorher[1], u[1], u[2], vorher[2]}));
            vorher = u;
        });
    }

    /// The outline, and a line across the bonnet that tells the front.
    void ZeichneFahrzeug(const Lage& lage, PenStyle stil, const std::string& name)
    {
        const std::array<CDPoint, 4> u = Umriss(m_lauf.vorgabe, lage);
        m_dc.SelectPen({stil, 1.6, m_farbe});
        m_dc.SelectBrush({});
        m_dc.Polygon(Auf(u));
        const CDPoint zurueck = (u[3] - u[0]) * 0.2;
        m_dc.Line(Auf(u[0] + zurueck), Auf(u[1] + zurueck));

        // The name lies beside the body, to the inside of the turn, and farther off where another one lies already.
        m_dc.SelectFont({kSchrift, false});
        m_dc.SetTextColor(m_schrift);
        const CDPoint mitte = Auf((u[0] + u[2]) * 0.5);
        const CDPoint rand = Auf((u[0] + u[3]) * 0.5);
        const double breite = std::hypot(rand.x - mitte.x, rand.y - mitte.y);
        const CDPoint nach = breite > 0.0 ? (rand - mitte) * (1.0 / breite) : CDPoint{0.0, -1.0};
        const double halb = m_dc.TextWidth(name) / 2.0;
        const double abstand = 6.0 + std::abs(nach.x) * halb + std::abs(nach.y) * kSchrift / 2.0;
        const CDPoint at = rand + nach * abstand;
        const double x = std::clamp(at.x, halb + 2.0, std::max(halb + 2.0, m_dc.Width() - halb - 2.0));
        double y = at.y;
        const auto verdeckt = [&](const Name& anderer) {
            return std::abs(x - anderer.mitte.x) < halb + anderer.halb && std::abs(y - anderer.mitte.y) < kZeile;
        };
        for (std::size_t i = 0; i < m_namen.size(); ++i)
            if (std::any_of(m_namen.begin(), m_namen.end(), verdeckt))
                y += nach.y > 0.0 ? kZeile : -kZeile;
        m_namen.push_back({{x, y}, halb});
        m_dc.TextOut({x, y + kSchrift / 3.0}, name, TextAlign::center);
    }

    void ZeichneMassstab()
    {
        const double laenge = Massstab(m_dc.Width() / 3.0 / m_massstab);
        const double x = kRand;
        const double y = m_dc.Height() - kRand;
        m_dc.SelectPen({PenStyle::solid, 1.0, m_schrift});
        m_dc.Polyline({{x, y - 4.0}, {x, y}, {x + laenge * m_massstab, y}, {x + laenge * m_massstab, y - 4.0}});
        std::string text =
            laenge < 1.0 ? "0," + std::to_string(std::lround(laenge * 10.0)) : std::to_string(std::lround(laenge));
        m_dc.TextOut({x + laenge * m_massstab + 6.0, y}, text + " m");
    }

    CDC& m_dc;
    const CAbDaten::Lauf& m_lauf;
    double m_spiegel;
    COLORREF m_grund;
    COLORREF m_schrift;
    COLORREF m_farbe;
    double m_massstab = 0.0; // px per m
    CDPoint m_ursprung{};
    struct Name {
        CDPoint mitte;
        double halb; // half its width
    };
    std::vector<Name> m_namen;
};

} // namespace

std::array<CDPoint, 4> Umriss(const Vorgabe& g, const Lage& lage)
{
    // The rear axle's middle lies half the track outside of the inner rear wheel. In reverse the rear leads.
    const CDPoint fahrt{std::cos(lage.psi), std::sin(lage.psi)};
    const CDPoint innen{-fahrt.y, fahrt.x};
    const CDPoint achse = lage.rad - innen * g.fahrzeug.HalbeSpur();
    const CDPoint vorn = fahrt * (g.vorwaerts ? 1.0 : -1.0);
    const CDPoint front = achse + vorn * g.fahrzeug.bisFront;
    const CDPoint heck = front - vorn * g.fahrzeug.laenge;
    const CDPoint seite = innen * (g.fahrzeug.breite / 2.0);
    return {front + seite, front - seite, heck - seite, heck + seite};
}

void ZeichnePlan(CDC& dc, const CAbDaten::Lauf* lauf, bool rechts, COLORREF fahrzeugfarbe)
{
    const COLORREF grund = RuvCfg.diagramPlot;
    dc.SelectPen({PenStyle::solid, 1.0,
                  chart::Mische(grund, chart::IstDunkel(grund) ? RGB(255, 255, 255) : RGB(0, 0, 0), 0.25)});
    dc.SelectBrush({true, grund});
    dc.Rectangle(0.5, 0.5, dc.Width() - 0.5, dc.Height() - 0.5);
    if (lauf != nullptr) {
        Zeichner(dc, *lauf, rechts, fahrzeugfarbe).Zeichne();
        return;
    }
    dc.SelectFont({kSchrift, false});
    dc.SetTextColor(chart::IstDunkel(grund) ? RGB(200, 200, 200) : RGB(110, 110, 110));
    dc.TextOut({dc.Width() / 2.0, dc.Height() / 2.0}, LoadRuvString(IDS_ABVOR_LEERE_ZEICHNUNG), TextAlign::center);
}

} // namespace abbiegen
