// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/Planzeichner.h"

#include "chart/Diagrammfarben.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kRand = 8.0;       // px
constexpr double kKleinster = 20.0; // px, a smaller field stays empty
constexpr double kFensterAnteil = 0.3;

CFont Schrift(const CDC& dc)
{
    return {std::clamp(dc.Height() / 14.0, 10.0, 16.0), false};
}

void FuelleGrund(CDC& dc, COLORREF color)
{
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, color});
    dc.Rectangle(0.0, 0.0, dc.Width(), dc.Height());
}

} // namespace

Planfarben Planfarben::AusEinstellungen()
{
    const COLORREF grund = RuvCfg.diagramPlot;
    const bool dunkel = chart::IstDunkel(grund);
    return {grund, dunkel ? RGB(230, 230, 230) : RGB(20, 20, 20), dunkel ? RGB(130, 130, 130) : RGB(140, 140, 140),
            dunkel ? RGB(110, 170, 255) : RGB(20, 84, 196)};
}

Planzeichner::Planzeichner(CDC& dc, CDPoint linksUnten, CDPoint rechtsOben, double zeilenOben, double zeilenUnten)
    : m_dc(dc), m_farben(Planfarben::AusEinstellungen())
{
    FuelleGrund(dc, m_farben.grund);
    dc.SelectFont(Schrift(dc));
    m_zeile = dc.TextHeight();
    const double breite = dc.Width() - 2.0 * kRand;
    const double oben = kRand + zeilenOben * m_zeile;
    const double hoehe = dc.Height() - oben - kRand - zeilenUnten * m_zeile;
    const CDPoint meter = rechtsOben - linksUnten;
    if (!(breite >= kKleinster && hoehe >= kKleinster && meter.x > 0.0 && meter.y > 0.0))
        return;
    m_massstab = std::min(breite / meter.x, hoehe / meter.y);
    m_ursprung = {kRand + (breite - m_massstab * meter.x) / 2.0 - m_massstab * linksUnten.x,
                  oben + (hoehe + m_massstab * meter.y) / 2.0 + m_massstab * linksUnten.y};
}

CDPoint Planzeichner::Ort(CDPoint meter) const
{
    return {m_ursprung.x + m_massstab * meter.x, m_ursprung.y - m_massstab * meter.y};
}

void Planzeichner::Linie(const std::vector<CDPoint>& meter, PenStyle style, double width, COLORREF color)
{
    std::vector<CDPoint> pixels;
    std::transform(meter.begin(), meter.end(), std::back_inserter(pixels), [this](CDPoint p) { return Ort(p); });
    m_dc.SelectPen({style, width, color});
    m_dc.Polyline(std::move(pixels));
}

void Planzeichner::Flaeche(const std::vector<CDPoint>& meter, COLORREF line, COLORREF fill)
{
    std::vector<CDPoint> pixels;
    std::transform(meter.begin(), meter.end(), std::back_inserter(pixels), [this](CDPoint p) { return Ort(p); });
    m_dc.SelectPen({PenStyle::solid, 1.0, line});
    m_dc.SelectBrush({true, fill});
    m_dc.Polygon(std::move(pixels));
}

void Planzeichner::Fahrzeug(CDPoint mitte, double winkel, double laenge, double breite, COLORREF color)
{
    const auto corner = [&](double ahead, double left) {
        CDPoint p{mitte.x + ahead * laenge / 2.0, mitte.y + left * breite / 2.0};
        p.Rotate(winkel, mitte);
        return p;
    };
    Flaeche({corner(1, 1), corner(1, -1), corner(-1, -1), corner(-1, 1)}, color,
            chart::Mische(color, m_farben.grund, 0.75));
    const double scheibe = 1.0 - 2.0 * kFensterAnteil;
    Linie({corner(scheibe, 0.8), corner(scheibe, -0.8)}, PenStyle::solid, 1.5, color);
}

void Planzeichner::Text(CDPoint pixel, const std::string& utf8, TextAlign align, COLORREF color)
{
    const double width = m_dc.TextWidth(utf8);
    const double left = align == TextAlign::left    ? pixel.x
                        : align == TextAlign::right ? pixel.x - width
                                                    : pixel.x - width / 2.0;
    const double kept = std::max(std::min(left, m_dc.Width() - 2.0 - width), 2.0);
    m_dc.SetTextColor(color);
    m_dc.TextOut({kept, pixel.y}, utf8);
}

void Planzeichner::ZeichneLeer(CDC& dc, const std::string& utf8)
{
    const Planfarben farben = Planfarben::AusEinstellungen();
    FuelleGrund(dc, farben.grund);
    dc.SelectFont(Schrift(dc));
    dc.SetTextColor(farben.linie);
    dc.TextOut({dc.Width() / 2.0, dc.Height() / 2.0}, utf8, TextAlign::center);
}
