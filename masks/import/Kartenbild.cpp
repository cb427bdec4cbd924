// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Kartenbild.h"

#include "host/Charts.h"
#include "host/RuvCfg.h"
#include "host/Units.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace
{

constexpr double kRand = 14.0;          // px about the track
constexpr double kKleinsteSeite = 10.0; // m: a track that stands still is shown with so much about it
constexpr double kGitterweite = 55.0;   // px between grid lines at least
constexpr double kGrobheit = 0.7;       // px: points nearer than this are drawn as one
constexpr double kTreffer = 12.0;       // px about the track in which the mouse finds it
constexpr double kZugBeginn = 4.0;      // px that a click may move
constexpr double kMeisteVergroesserung = 1e5;
constexpr double kJeRaste = 1.25; // zoom per notch of the wheel
constexpr double kSchrift = 11.0;
constexpr double kKleineSchrift = 9.0;     // of whose the map is
constexpr double kDeckkraft = 0.75;        // of the map: the track stands out
constexpr double kFeinheitImBericht = 2.0; // pixels of the map per pixel of the drawing, each way
constexpr double kMeisteFeinheit = 4.0;    // of a screen
constexpr double kGroesstesBild = 4000.0;  // pixels of the map

/// From slow to fast, told apart by colour-blind readers too (viridis of matplotlib, S. van der Walt and N. Smith).
constexpr std::array<COLORREF, 7> kFarben{RGB(68, 1, 84),    RGB(68, 57, 131),  RGB(49, 104, 142), RGB(33, 145, 140),
                                          RGB(53, 183, 121), RGB(144, 215, 67), RGB(233, 210, 30)};
constexpr COLORREF kUnbekannt = RGB(128, 128, 128);
constexpr COLORREF kAuswahl = RGB(213, 94, 0);
constexpr double kStrich = 3.0;
constexpr double kRandbreite = 2.0; // px on each side of the track over a map, half of it dark, half bright
/// The step across a gap between two segments.
constexpr CPen kNaht{PenStyle::dot, 1.5, kUnbekannt};
constexpr COLORREF kSchwarz = RGB(0, 0, 0);

/// Black or white, whichever shows on the ground.
COLORREF Schriftfarbe()
{
    return drawing::Legible(kSchwarz, RuvCfg.diagramPlot, 7.0);
}

/// Ground for what must be read although the track runs there.
void Unterlage(CDC& dc, double links, double oben, double rechts, double unten)
{
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, RuvCfg.diagramPlot});
    dc.Rectangle(links, oben, rechts, unten, 3.0, 3.0);
    dc.SelectBrush({});
}

/// The smallest of 1, 2, 5 times a power of ten that is not below it.
double RundeAuf(double wert)
{
    const double potenz = std::pow(10.0, std::floor(std::log10(wert)));
    for (const double faktor : {1.0, 2.0, 5.0})
        if (faktor * potenz >= wert * (1.0 - 1e-9))
            return faktor * potenz;
    return 10.0 * potenz;
}

std::string Laenge(double meter)
{
    const bool km = meter >= 1000.0;
    const double wert = km ? meter / 1000.0 : meter;
    const int stellen = wert >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(wert) - 1e-9));
    return RuvNumberText(wert, stellen) + (km ? " km" : " m");
}

/// The part of a line that lies in the box 0..w, 0..h (Liang and Barsky, 1984); false when none does.
bool Beschneide(CDPoint& a, CDPoint& b, double w, double h)
{
    double von = 0.0;
    double bis = 1.0;
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const auto kante = [&](double p, double q) {
        if (p == 0.0)
            return q >= 0.0;
        const double t = q / p;
        if (p < 0.0)
            von = std::max(von, t);
        else
            bis = std::min(bis, t);
        return von <= bis;
    };
    if (!kante(-dx, a.x) || !kante(dx, w - a.x) || !kante(-dy, a.y) || !kante(dy, h - a.y))
        return false;
    const CDPoint anfang = a;
    a = {anfang.x + von * dx, anfang.y + von * dy};
    b = {anfang.x + bis * dx, anfang.y + bis * dy};
    return true;
}

/// Draws a line point by point, cut at the edge of the drawing, without points that lie on one another.
class Linienzug
{
  public:
    Linienzug(CDC& dc, double breite, double hoehe) : m_dc(dc), m_breite(breite), m_hoehe(hoehe) {}
    ~Linienzug() { Schluss(); }
    Linienzug(const Linienzug&) = delete;
    Linienzug& operator=(const Linienzug&) = delete;

    void Stift(const CPen& stift)
    {
        if (stift == m_stift)
            return;
        Schluss();
        m_stift = stift;
    }
    /// The next point begins a line of its own.
    void SetzeAb()
    {
        Schluss();
        m_vorher.reset();
    }
    void Zu(CDPoint punkt, bool muss)
    {
        if (!m_vorher) {
            m_vorher = punkt;
            return;
        }
        if (!muss && std::hypot(punkt.x - m_vorher->x, punkt.y - m_vorher->y) < kGrobheit)
            return;
        CDPoint a = *m_vorher;
        CDPoint b = punkt;
        m_vorher = punkt;
        if (!Beschneide(a, b, m_breite, m_hoehe)) {
            Schluss();
            return;
        }
        if (m_zug.empty() || m_zug.back().x != a.x || m_zug.back().y != a.y) {
            Schluss();
            m_zug.push_back(a);
        }
        m_zug.push_back(b);
    }

  private:
    void Schluss()
    {
        if (m_zug.size() > 1) {
            m_dc.SelectPen(m_stift);
            m_dc.Polyline(std::move(m_zug));
        }
        m_zug.clear();
    }

    CDC& m_dc;
    double m_breite;
    double m_hoehe;
    CPen m_stift{};
    std::optional<CDPoint> m_vorher;
    std::vector<CDPoint> m_zug;
};

} // namespace

CDPoint Kartenbild::Abbildung::Bild(CDPoint lage) const
{
    return {breite / 2.0 + (lage.x - mitte.x) * massstab, hoehe / 2.0 - (lage.y - mitte.y) * massstab};
}

CDPoint Kartenbild::Abbildung::Lage(CDPoint bild) const
{
    return {mitte.x + (bild.x - breite / 2.0) / massstab, mitte.y - (bild.y - hoehe / 2.0) / massstab};
}

void Kartenbild::SetPunkte(std::vector<Punkt> punkte)
{
    m_punkte = std::move(punkte);
    m_grund = {};
    m_bereich.reset();
    m_marke.reset();
    m_vergroesserung = 1.0;
    m_mitte.reset();
    m_gegriffen.reset();
    constexpr double kUnendlich = std::numeric_limits<double>::infinity();
    m_unten = {kUnendlich, kUnendlich};
    m_oben = {-kUnendlich, -kUnendlich};
    std::vector<double> kmh;
    for (const Punkt& p : m_punkte) {
        m_unten = {std::min(m_unten.x, p.lage.x), std::min(m_unten.y, p.lage.y)};
        m_oben = {std::max(m_oben.x, p.lage.x), std::max(m_oben.y, p.lage.y)};
        kmh.push_back(p.kmh);
    }
    SetTempo(kmh);
}

void Kartenbild::SetTempo(const std::vector<double>& kmh)
{
    m_langsamste = std::numeric_limits<double>::infinity();
    m_schnellste = -m_langsamste;
    for (std::size_t i = 0; i < m_punkte.size() && i < kmh.size(); ++i) {
        m_punkte[i].kmh = kmh[i];
        if (std::isfinite(kmh[i])) {
            m_langsamste = std::min(m_langsamste, kmh[i]);
            m_schnellste = std::max(m_schnellste, kmh[i]);
        }
    }
}

Kartenbild::Abbildung Kartenbild::Ganze(double breite, double hoehe) const
{
    const double ost = std::max(m_oben.x - m_unten.x, kKleinsteSeite);
    const double nord = std::max(m_oben.y - m_unten.y, kKleinsteSeite);
    const double massstab =
        std::min(std::max(breite - 2.0 * kRand, 1.0) / ost, std::max(hoehe - 2.0 * kRand, 1.0) / nord);
    return {{(m_unten.x + m_oben.x) / 2.0, (m_unten.y + m_oben.y) / 2.0}, massstab, breite, hoehe};
}

Kartenbild::Abbildung Kartenbild::Sicht(double breite, double hoehe) const
{
    Abbildung sicht = Ganze(breite, hoehe);
    sicht.massstab *= m_vergroesserung;
    if (m_mitte)
        sicht.mitte = *m_mitte;
    return sicht;
}

void Kartenbild::Zeichne(CDC& dc, bool bericht) const
{
    const COLORREF schrift = Schriftfarbe();
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, RuvCfg.diagramPlot});
    dc.Rectangle(0.0, 0.0, dc.Width(), dc.Height());
    dc.SelectBrush({});
    dc.SelectFont({kSchrift});
    dc.SetTextColor(schrift);
    if (m_punkte.size() < 2) {
        dc.TextOut({dc.Width() / 2.0, dc.Height() / 2.0}, "Es ist keine Spur geladen.", TextAlign::center);
        return;
    }
    const Abbildung sicht = bericht ? Ganze(dc.Width(), dc.Height()) : Sicht(dc.Width(), dc.Height());
    const double schritt = RundeAuf(kGitterweite / sicht.massstab);
    const bool karte = ZeichneGrund(dc, sicht, bericht);
    if (!karte)
        ZeichneGitter(dc, sicht, schritt);
    ZeichneBereich(dc, sicht, karte);
    if (karte)
        ZeichneSpurrand(dc, sicht);
    ZeichneSpur(dc, sicht);
    if (const CTileSource* const quelle = RuvTiles(); quelle != nullptr && karte)
        ZeichneHerkunft(dc, quelle->Attribution());
    else if (!bericht)
        ZeichneHerkunft(dc, RuvTilesTrouble());
    if (m_marke && !bericht && *m_marke < m_punkte.size()) {
        dc.SelectPen({PenStyle::solid, 2.0, schrift});
        dc.SelectBrush({true, kAuswahl});
        dc.Ellipse(sicht.Bild(m_punkte[*m_marke].lage), 5.0, 5.0);
        dc.SelectBrush({});
    }
    ZeichneLegende(dc, sicht, schritt);
}

void Kartenbild::ZeichneGitter(CDC& dc, const Abbildung& sicht, double schritt) const
{
    dc.SelectPen({PenStyle::solid, 0.6, drawing::Blend(RuvCfg.diagramPlot, Schriftfarbe(), 0.18)});
    const CDPoint links = sicht.Lage({0.0, sicht.hoehe});
    const CDPoint rechts = sicht.Lage({sicht.breite, 0.0});
    for (double x = std::ceil(links.x / schritt) * schritt; x <= rechts.x; x += schritt) {
        const double px = sicht.Bild({x, 0.0}).x;
        dc.Line({px, 0.0}, {px, sicht.hoehe});
    }
    for (double y = std::ceil(links.y / schritt) * schritt; y <= rechts.y; y += schritt) {
        const double py = sicht.Bild({0.0, y}).y;
        dc.Line({0.0, py}, {sicht.breite, py});
    }
}

bool Kartenbild::ZeichneGrund(CDC& dc, const Abbildung& sicht, bool bericht) const
{
    CTileSource* const quelle = RuvTiles();
    if (quelle == nullptr)
        return false;
    // The point nearest to the middle ties the plane to the earth: there the map lies true.
    const Punkt* anker = nullptr;
    double bester = std::numeric_limits<double>::infinity();
    for (const Punkt& p : m_punkte) {
        const double dx = p.lage.x - sicht.mitte.x;
        const double dy = p.lage.y - sicht.mitte.y;
        if (dx * dx + dy * dy < bester && std::isfinite(p.breite) && std::isfinite(p.laenge)) {
            bester = dx * dx + dy * dy;
            anker = &p;
        }
    }
    if (anker == nullptr)
        return false;
    const double fein = bericht ? kFeinheitImBericht : std::clamp(dc.Sharpness(), 1.0, kMeisteFeinheit);
    const auto pixel = [fein](double laenge) {
        return static_cast<int>(std::clamp(laenge * fein, 1.0, kGroesstesBild));
    };
    const Kartenausschnitt ausschnitt{sicht.mitte, sicht.massstab * fein, pixel(sicht.breite), pixel(sicht.hoehe)};
    const COLORREF leer = RuvCfg.diagramPlot;
    if (!m_grund.gezeichnet || !(m_grund.ausschnitt == ausschnitt) || m_grund.leer != leer) {
        const auto kanal = [leer](unsigned bit) { return static_cast<std::uint32_t>(leer >> bit & 0xFFU); };
        const std::uint32_t farbe = 0xFF000000U | kanal(0) << 16U | kanal(8) << 8U | kanal(16);
        m_grund = {ausschnitt, leer, true,
                   ZeichneKartengrund(*quelle, {anker->lage, anker->breite, anker->laenge}, ausschnitt, farbe)};
    }
    if (m_grund.bild == nullptr)
        return false;
    const double breite = ausschnitt.breite / fein;
    const double hoehe = ausschnitt.hoehe / fein;
    const CDPoint ecke{(sicht.breite - breite) / 2.0, (sicht.hoehe - hoehe) / 2.0};
    dc.Picture(ecke, {breite, 0.0}, {0.0, hoehe}, kDeckkraft, m_grund.bild);
    return true;
}

void Kartenbild::ZeichneHerkunft(CDC& dc, const std::string& text) const
{
    if (text.empty())
        return;
    dc.SelectFont({kKleineSchrift});
    Unterlage(dc, 4.0, 4.0, 12.0 + dc.TextWidth(text), 8.0 + dc.TextHeight());
    dc.SetTextColor(Schriftfarbe());
    dc.TextOut({8.0, 6.0 + dc.TextAscent()}, text);
    dc.SelectFont({kSchrift});
}

void Kartenbild::ZeichneBereich(CDC& dc, const Abbildung& sicht, bool karte) const
{
    if (!m_bereich)
        return;
    Linienzug zug(dc, sicht.breite, sicht.hoehe);
    zug.Stift({PenStyle::solid, (karte ? kStrich + 2.0 * kRandbreite : kStrich) + 5.0, kAuswahl});
    for (std::size_t i = m_bereich->first; i <= m_bereich->second && i < m_punkte.size(); ++i)
        zug.Zu(sicht.Bild(m_punkte[i].lage), i == m_bereich->second);
}

void Kartenbild::ZeichneSpurrand(CDC& dc, const Abbildung& sicht) const
{
    const CPen stifte[] = {{PenStyle::solid, kStrich + 2.0 * kRandbreite, Schriftfarbe()},
                           {PenStyle::solid, kStrich + kRandbreite, RuvCfg.diagramPlot}};
    for (const CPen& stift : stifte) {
        Linienzug zug(dc, sicht.breite, sicht.hoehe);
        zug.Stift(stift);
        for (std::size_t i = 0; i < m_punkte.size(); ++i) {
            if (m_punkte[i].naht)
                zug.SetzeAb();
            const bool letzter = i + 1 == m_punkte.size() || m_punkte[i + 1].naht;
            zug.Zu(sicht.Bild(m_punkte[i].lage), letzter);
        }
    }
}

void Kartenbild::ZeichneSpur(CDC& dc, const Abbildung& sicht) const
{
    Linienzug zug(dc, sicht.breite, sicht.hoehe);
    const double spanne = m_schnellste - m_langsamste;
    for (std::size_t i = 0; i < m_punkte.size(); ++i) {
        const Punkt& p = m_punkte[i];
        // A point's speed is that of the way to it.
        COLORREF farbe = kUnbekannt;
        if (std::isfinite(p.kmh)) {
            const double stufe = spanne > 0.0 ? (p.kmh - m_langsamste) / spanne * kFarben.size() : 0.0;
            farbe = kFarben[std::min(static_cast<std::size_t>(stufe), kFarben.size() - 1)];
        }
        zug.Stift(p.naht ? kNaht : CPen{PenStyle::solid, kStrich, farbe});
        zug.Zu(sicht.Bild(p.lage), p.naht || i + 1 == m_punkte.size());
    }
}

void Kartenbild::ZeichneLegende(CDC& dc, const Abbildung& sicht, double schritt) const
{
    const COLORREF schrift = Schriftfarbe();
    // Scale bar: one width of the grid.
    const double laenge = schritt * sicht.massstab;
    const double unten = sicht.hoehe - 9.0;
    Unterlage(dc, 4.0, unten - 17.0, 16.0 + laenge, sicht.hoehe - 4.0);
    dc.SelectPen({PenStyle::solid, 1.5, schrift});
    dc.Polyline({{10.0, unten - 5.0}, {10.0, unten}, {10.0 + laenge, unten}, {10.0 + laenge, unten - 5.0}});
    dc.TextOut({10.0 + laenge / 2.0, unten - 4.0}, Laenge(schritt), TextAlign::center);
    // North is up.
    const double x = sicht.breite - 16.0;
    Unterlage(dc, x - 9.0, 4.0, sicht.breite - 4.0, 39.0);
    dc.SelectPen({PenStyle::solid, 1.5, schrift});
    dc.SelectBrush({true, schrift});
    dc.Polygon({{x, 8.0}, {x + 5.0, 24.0}, {x, 20.0}, {x - 5.0, 24.0}});
    dc.TextOut({x, 36.0}, "N", TextAlign::center);
    if (m_schnellste < m_langsamste)
        return;
    // The colours of the speeds.
    constexpr double kKasten = 14.0;
    const double breite = kKasten * static_cast<double>(kFarben.size());
    const double rechts = sicht.breite - 8.0;
    const double oben = sicht.hoehe - 14.0;
    Unterlage(dc, rechts - breite - 5.0, oben - 13.0, rechts + 5.0, sicht.hoehe - 4.0);
    for (std::size_t i = 0; i < kFarben.size(); ++i) {
        const double links = rechts - breite + kKasten * static_cast<double>(i);
        dc.SelectBrush({true, kFarben[i]});
        dc.Rectangle(links, oben, links + kKasten, oben + 7.0);
    }
    dc.SelectBrush({});
    const UnitsSystemConfiguration& einheiten = UnitsSystemConfiguration::GetInstance();
    const auto tempo = [&](double kmh) { return RuvNumberText(einheiten.ConvertSpeedMetricToUnit(kmh), 0); };
    dc.TextOut({rechts - breite, oben - 3.0}, tempo(m_langsamste));
    dc.TextOut({rechts, oben - 3.0}, tempo(m_schnellste) + " " + einheiten.GetSpeedUnit(), TextAlign::right);
}

std::optional<std::size_t> Kartenbild::Naechster(const Abbildung& sicht, CDPoint bild) const
{
    const CDPoint lage = sicht.Lage(bild);
    const double weite = kTreffer / sicht.massstab;
    double bester = weite * weite;
    std::optional<std::size_t> naechster;
    for (std::size_t i = 0; i < m_punkte.size(); ++i) {
        const double dx = m_punkte[i].lage.x - lage.x;
        const double dy = m_punkte[i].lage.y - lage.y;
        if (dx * dx + dy * dy < bester) {
            bester = dx * dx + dy * dy;
            naechster = i;
        }
    }
    return naechster;
}

bool Kartenbild::Maus(const CMouseEvent& ereignis)
{
    if (m_punkte.size() < 2)
        return false;
    const Abbildung sicht = Sicht(ereignis.width, ereignis.height);
    switch (ereignis.kind) {
    case CMouseEvent::Kind::wheel: {
        // What lies under the pointer stays there.
        const CDPoint lage = sicht.Lage(ereignis.position);
        const double vorher = m_vergroesserung;
        m_vergroesserung =
            std::clamp(vorher * std::pow(kJeRaste, ereignis.wheel), 1.0 / kJeRaste, kMeisteVergroesserung);
        const double faktor = vorher / m_vergroesserung;
        m_mitte = CDPoint{lage.x + (sicht.mitte.x - lage.x) * faktor, lage.y + (sicht.mitte.y - lage.y) * faktor};
        return true;
    }
    case CMouseEvent::Kind::doubleClick:
        m_vergroesserung = 1.0;
        m_mitte.reset();
        return true;
    case CMouseEvent::Kind::press:
        if (ereignis.button != MouseButton::left && ereignis.button != MouseButton::middle)
            return false;
        m_gegriffen = ereignis.position;
        m_mitteBeimGreifen = sicht.mitte;
        m_gezogen = false;
        return true;
    case CMouseEvent::Kind::move:
        if (m_gegriffen) {
            const double dx = ereignis.position.x - m_gegriffen->x;
            const double dy = ereignis.position.y - m_gegriffen->y;
            m_gezogen = m_gezogen || std::hypot(dx, dy) > kZugBeginn;
            if (m_gezogen)
                m_mitte =
                    CDPoint{m_mitteBeimGreifen.x - dx / sicht.massstab, m_mitteBeimGreifen.y + dy / sicht.massstab};
        } else if (m_zeige) {
            m_zeige(Naechster(sicht, ereignis.position));
        }
        return true;
    case CMouseEvent::Kind::release:
        if (m_gegriffen && !m_gezogen && ereignis.button == MouseButton::left && m_klick)
            if (const auto punkt = Naechster(sicht, ereignis.position))
                m_klick(*punkt);
        m_gegriffen.reset();
        return true;
    }
    return false;
}
