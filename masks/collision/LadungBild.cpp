// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/LadungBild.h"

#include "host/Physics.h"
#include "masks/collision/CLadungDat.h"
#include "masks/collision/Skizze.h"

#include <algorithm>
#include <cmath>

namespace
{

// A load of this size stands for every load; lengths are shares of its own.
constexpr double kHalb = 1.0;
constexpr double kHoehe = 1.2;
constexpr double kRand = 2.2;   // half the loading area
constexpr double kBoden = 0.12; // its thickness
constexpr double kLaengsterPfeil = 0.95;
// From above.
constexpr double kHalbeBreite = 0.5;
constexpr double kZug = 0.6; // length of a lashing
constexpr skizze::Ausschnitt kVonOben{-1.7, -1.1, 1.7, 1.1};

double Bogen(double grad)
{
    return grad * kPi / 180.0;
}

std::string InKn(double newton)
{
    return skizze::Zahl(newton / 1000.0, 1) + " kN";
}

class Ansicht
{
  public:
    Ansicht(skizze::Blatt& blatt, double groesste) : m_blatt(blatt), m_groesste(groesste) {}

    void Ladung(double unten, double oben)
    {
        m_blatt.Stift(m_blatt.Rahmen());
        m_blatt.Fuellung(m_blatt.Blass());
        m_blatt.Vieleck({{-kHalb, unten}, {kHalb, unten}, {kHalb, oben}, {-kHalb, oben}});
        m_blatt.OhneFuellung();
    }
    void Ladeflaeche()
    {
        m_blatt.Stift(m_blatt.Rahmen());
        m_blatt.Fuellung(m_blatt.Rahmen());
        m_blatt.Vieleck({{-kRand, -kBoden}, {kRand, -kBoden}, {kRand, 0.0}, {-kRand, 0.0}});
        m_blatt.OhneFuellung();
    }
    void Wand(double x)
    {
        m_blatt.Stift(m_blatt.Rahmen(), 3.0);
        m_blatt.Linie({x, 0.0}, {x, kHoehe});
    }
    /// A lashing from the load down to the loading area, at most to its rim.
    void Zurrung(CDPoint von, double richtung, double winkel)
    {
        const double hinaus = std::min(von.y / std::max(std::tan(winkel), 1e-6), kRand - kHalb);
        m_blatt.Stift(skizze::kBlau, 2.0);
        m_blatt.Linie(von, {von.x + richtung * hinaus, von.y - hinaus * std::tan(winkel)});
    }
    /// A force from a point in a direction, to scale with the largest one.
    void Kraft(CDPoint von, CDPoint richtung, double newton, COLORREF farbe)
    {
        if (!(newton > 0.0) || !(m_groesste > 0.0))
            return;
        const double laenge = kLaengsterPfeil * newton / m_groesste;
        m_blatt.Stift(farbe, 2.0);
        m_blatt.Pfeil(von, {von.x + richtung.x * laenge, von.y + richtung.y * laenge});
    }
    /// What pushes the load to a side, with its size, and what of it nothing holds.
    void Richtung(double richtung, double hoehe, double traegheit, double fehlt)
    {
        const CDPoint seite{richtung * kHalb, hoehe};
        Kraft(seite, {richtung, 0.0}, traegheit, skizze::kOrange);
        Kraft({seite.x, hoehe - 0.25}, {richtung, 0.0}, fehlt, skizze::kRot);
        if (traegheit > 0.0)
            m_blatt.Text(seite, 4.0 * richtung, -0.35 * m_blatt.Zeile(), InKn(traegheit),
                         richtung > 0.0 ? TextAlign::left : TextAlign::right);
    }
    void Bezeichne(CDPoint ort, double dy, const std::string& text)
    {
        m_blatt.Text(ort, 0.0, dy, text, TextAlign::center);
    }

  private:
    skizze::Blatt& m_blatt;
    double m_groesste;
};

std::string Fehlend(const std::string& richtung, double newton)
{
    return richtung + (newton > 0.0 ? " fehlen " + InKn(newton) : " gesichert");
}

} // namespace

void ZeichneLadung(CDC& dc, const CLadungDat& dat)
{
    skizze::Grundieren(dc);
    const bool gerechnet = dat.ergebnisSteht != 0;
    const double vorne = gerechnet ? dat.ladung * dat.beschleunigungVorne : 0.0;
    const double hinten = gerechnet ? dat.ladung * dat.beschleunigungHinten : 0.0;
    const double quer = gerechnet ? dat.ladung * dat.beschleunigungQuer : 0.0;
    const double groesste = std::max({vorne, hinten, quer});
    const skizze::Ausschnitt ausschnitt{-kRand, -kBoden, kRand, kHoehe};
    const bool nieder = dat.zurrart == CLadungDat::niederzurren;

    skizze::Blatt seite(dc, ausschnitt, {0.0, 0.5});
    Ansicht laengs(seite, groesste);
    laengs.Ladeflaeche();
    laengs.Ladung(0.0, kHoehe);
    if (dat.formschlussVorne != 0)
        laengs.Wand(kHalb + 0.05);
    if (dat.formschlussHinten != 0)
        laengs.Wand(-kHalb - 0.05);
    if (nieder) {
        seite.Stift(skizze::kBlau, 2.0);
        const auto n = std::min<std::int64_t>(dat.zurrungen, 12);
        for (std::int64_t i = 0; i < n; ++i) {
            const double x =
                kHalb * (2.0 * static_cast<double>(i) + 1.0 - static_cast<double>(n)) / static_cast<double>(n);
            seite.Linie({x, 0.0}, {x, kHoehe});
        }
    } else {
        laengs.Zurrung({kHalb, kHoehe}, 1.0, Bogen(dat.diagonalAlpha));
        laengs.Zurrung({-kHalb, kHoehe}, -1.0, Bogen(dat.diagonalAlpha));
    }
    laengs.Richtung(1.0, 0.7 * kHoehe, vorne, gerechnet ? dat.normKraftVorne : 0.0);
    laengs.Richtung(-1.0, 0.7 * kHoehe, hinten, gerechnet ? dat.normKraftHinten : 0.0);
    laengs.Bezeichne({0.0, kHoehe}, -0.5 * seite.Zeile(), "Seite (vorne rechts)");
    if (gerechnet) {
        seite.Text({kRand, 0.0}, 0.0, 1.9 * seite.Zeile(), Fehlend("vorne", dat.normKraftVorne), TextAlign::right);
        seite.Text({-kRand, 0.0}, 0.0, 1.9 * seite.Zeile(), Fehlend("hinten", dat.normKraftHinten));
    }

    skizze::Blatt zweite(dc, nieder ? ausschnitt : kVonOben, {0.5, 1.0});
    Ansicht andere(zweite, groesste);
    const double fehlt = gerechnet ? dat.normKraftSeitlich : 0.0;
    if (nieder) {
        andere.Ladeflaeche();
        andere.Ladung(0.0, kHoehe);
        if (dat.formschlussSeitlich != 0)
            for (const double x : {-kHalb - 0.05, kHalb + 0.05})
                andere.Wand(x);
        zweite.Stift(skizze::kBlau, 2.0);
        zweite.Linie({-kHalb, kHoehe}, {kHalb, kHoehe});
        for (const double richtung : {-1.0, 1.0})
            andere.Zurrung({richtung * kHalb, kHoehe}, richtung, Bogen(dat.zurrwinkel));
        andere.Richtung(1.0, 0.7 * kHoehe, quer, fehlt);
        andere.Bezeichne({0.0, kHoehe}, -0.5 * zweite.Zeile(), "von hinten");
    } else {
        // The driving direction runs to the right; the lashings leave the corners at beta to it.
        andere.Ladung(-kHalbeBreite, kHalbeBreite);
        zweite.Stift(skizze::kBlau, 2.0);
        const CDPoint zug{kZug * std::cos(Bogen(dat.diagonalBeta)), kZug * std::sin(Bogen(dat.diagonalBeta))};
        for (const double x : {-1.0, 1.0})
            for (const double y : {-1.0, 1.0}) {
                const CDPoint ecke{x * kHalb, y * kHalbeBreite};
                zweite.Linie(ecke, {ecke.x + x * zug.x, ecke.y + y * zug.y});
            }
        andere.Kraft({0.0, -kHalbeBreite}, {0.0, -1.0}, quer, skizze::kOrange);
        andere.Kraft({0.2, -kHalbeBreite}, {0.0, -1.0}, fehlt, skizze::kRot);
        andere.Bezeichne({0.0, kVonOben.oben}, -0.5 * zweite.Zeile(), "von oben");
    }
    if (gerechnet)
        zweite.Text({0.0, nieder ? 0.0 : kVonOben.unten}, 0.0, 1.9 * zweite.Zeile(), Fehlend("seitlich", fehlt),
                    TextAlign::center);
}
