// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/Skizze.h"

#include "host/CWnd.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace skizze
{
namespace
{

constexpr double kSpitze = 7.0;    // px, length of an arrow's head
constexpr double kRand = 6.0;      // px
constexpr double kKleinste = 1e-9; // extent of a section

/// Rows of text that a sketch leaves free above, below and at the sides.
constexpr double kZeilenOben = 1.5;
constexpr double kZeilenUnten = 2.0;
constexpr double kZeilenSeitlich = 1.5;

} // namespace

std::string Zahl(double wert, int stellen)
{
    if (!std::isfinite(wert))
        return "–";
    std::array<char, 400> zeichen{};
    const auto ende = std::to_chars(zeichen.data(), zeichen.data() + zeichen.size(), std::abs(wert),
                                    std::chars_format::fixed, stellen)
                          .ptr;
    std::string text(zeichen.data(), ende);
    const bool null = text.find_first_not_of("0.") == std::string::npos;
    if (!RuvCfg.decimalPoint)
        std::replace(text.begin(), text.end(), '.', ',');
    return wert < 0.0 && !null ? "−" + text : text;
}

std::string MitEinheit(double metrisch, unitType einheit, int stellen)
{
    const auto& einheiten = UnitsSystemConfiguration::GetInstance();
    const UnitType art(einheit);
    return Zahl(einheiten.ToShown(metrisch, art), stellen) + " " + einheiten.UnitString(art);
}

std::string MitZahl(UINT text, const std::string& zahl)
{
    std::string satz = LoadRuvString(text);
    const std::size_t stelle = satz.find('#');
    return stelle == std::string::npos ? satz : satz.replace(stelle, 1, zahl);
}

void Ausschnitt::Nimm(CDPoint punkt)
{
    links = std::min(links, punkt.x);
    rechts = std::max(rechts, punkt.x);
    unten = std::min(unten, punkt.y);
    oben = std::max(oben, punkt.y);
}

void Grundieren(CDC& dc)
{
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, RuvCfg.diagramPlot});
    dc.Rectangle(0.0, 0.0, dc.Width(), dc.Height());
}

Blatt::Blatt(CDC& dc, const Ausschnitt& ausschnitt, const Spalte& spalte)
    : m_dc(dc), m_farben(chart::Diagrammfarben::Aus(RuvCfg)), m_von(dc.Width() * spalte.von + kRand),
      m_bis(dc.Width() * spalte.bis - kRand)
{
    CFont schrift;
    schrift.size = std::clamp(dc.Height() / 15.0, 9.0, 14.0);
    m_dc.SelectFont(schrift);
    m_dc.SetTextColor(chart::AufGrund(m_farben.schrift, m_farben.zeichenflaeche));
    m_zeile = m_dc.TextHeight();
    m_dc.SelectBrush({});

    const double oben = kRand + kZeilenOben * m_zeile;
    const double platzX = m_bis - m_von - 2.0 * kZeilenSeitlich * m_zeile;
    const double platzY = dc.Height() - kRand - oben - kZeilenUnten * m_zeile;
    const double breite = std::max(ausschnitt.rechts - ausschnitt.links, kKleinste);
    const double hoehe = std::max(ausschnitt.oben - ausschnitt.unten, kKleinste);
    m_massstab = std::max(std::min(platzX / breite, platzY / hoehe), 0.0);
    // In the middle of what is left.
    m_ursprung.x = (m_von + m_bis - breite * m_massstab) / 2.0 - ausschnitt.links * m_massstab;
    m_ursprung.y = oben + (platzY + hoehe * m_massstab) / 2.0 + ausschnitt.unten * m_massstab;
}

CDPoint Blatt::Pixel(CDPoint welt) const
{
    return {m_ursprung.x + welt.x * m_massstab, m_ursprung.y - welt.y * m_massstab};
}

void Blatt::Stift(COLORREF farbe, double breite, PenStyle stil)
{
    m_stift = {stil, breite, chart::AufGrund(farbe, m_farben.zeichenflaeche)};
    m_dc.SelectPen(m_stift);
}

void Blatt::Fuellung(COLORREF farbe)
{
    m_dc.SelectBrush({true, farbe});
}

void Blatt::OhneFuellung()
{
    m_dc.SelectBrush({});
}

void Blatt::Linie(CDPoint von, CDPoint nach)
{
    m_dc.Line(Pixel(von), Pixel(nach));
}

void Blatt::Zug(const std::vector<CDPoint>& punkte)
{
    std::vector<CDPoint> pixel;
    pixel.reserve(punkte.size());
    for (const CDPoint& punkt : punkte)
        pixel.push_back(Pixel(punkt));
    m_dc.Polyline(std::move(pixel));
}

void Blatt::Vieleck(const std::vector<CDPoint>& punkte)
{
    std::vector<CDPoint> pixel;
    pixel.reserve(punkte.size());
    for (const CDPoint& punkt : punkte)
        pixel.push_back(Pixel(punkt));
    m_dc.Polygon(std::move(pixel));
}

void Blatt::Ellipse(CDPoint mitte, double rx, double ry, double winkel)
{
    m_dc.Ellipse(Pixel(mitte), rx * m_massstab, ry * m_massstab, winkel);
}

void Blatt::Waagrechte(double y)
{
    const double hoehe = Pixel({0.0, y}).y;
    m_dc.Line({m_von, hoehe}, {m_bis, hoehe});
}

void Blatt::Spitze(CDPoint von, CDPoint nach)
{
    const double laenge = std::hypot(nach.x - von.x, nach.y - von.y);
    if (!(laenge > 0.0))
        return;
    const double spitze = std::min(kSpitze, laenge / 2.0);
    const CDPoint richtung{(nach.x - von.x) / laenge * spitze, (nach.y - von.y) / laenge * spitze};
    m_dc.SelectPen({PenStyle::none});
    m_dc.SelectBrush({true, m_stift.color});
    m_dc.Polygon({nach,
                  {nach.x - richtung.x + 0.4 * richtung.y, nach.y - richtung.y - 0.4 * richtung.x},
                  {nach.x - richtung.x - 0.4 * richtung.y, nach.y - richtung.y + 0.4 * richtung.x}});
    m_dc.SelectPen(m_stift);
    m_dc.SelectBrush({});
}

void Blatt::Pfeil(CDPoint von, CDPoint nach)
{
    Linie(von, nach);
    Spitze(Pixel(von), Pixel(nach));
}

void Blatt::Mass(CDPoint von, CDPoint nach)
{
    Linie(von, nach);
    Spitze(Pixel(von), Pixel(nach));
    Spitze(Pixel(nach), Pixel(von));
}

void Blatt::Punkt(CDPoint ort)
{
    m_dc.SelectBrush({true, m_stift.color});
    m_dc.Ellipse(Pixel(ort), 3.0, 3.0);
    m_dc.SelectBrush({});
}

void Blatt::Text(CDPoint ort, double dx, double dy, const std::string& text, TextAlign align)
{
    const double breite = m_dc.TextWidth(text);
    const CDPoint pixel = Pixel(ort);
    double links = pixel.x + dx;
    if (align == TextAlign::center)
        links -= breite / 2.0;
    else if (align == TextAlign::right)
        links -= breite;
    links = std::max(std::min(links, m_bis - breite), m_von);
    const double grundlinie =
        std::clamp(pixel.y + dy, m_dc.TextAscent(), std::max(m_dc.TextAscent(), m_dc.Height() - 3.0));
    m_dc.TextOut({links, grundlinie}, text);
}

} // namespace skizze
