// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/FahrradBild.h"

#include "masks/collision/CFahrradDat.h"
#include "masks/collision/Skizze.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kRadbreite = 2.5; // cm, half the width of a tyre

std::string InCm(double wert)
{
    return skizze::Zahl(wert, 1) + " cm";
}

/// Wheel, frame and the scraping part, turned about the point where the wheel stands.
void Rad(skizze::Blatt& blatt, const CFahrradDat& dat, double neigung)
{
    const auto gedreht = [neigung](double x, double y) {
        CDPoint punkt{x, y};
        punkt.Rotate(neigung, {});
        return punkt;
    };
    blatt.Ellipse(gedreht(0.0, dat.durchmesser / 2.0), kRadbreite, dat.durchmesser / 2.0, neigung);
    blatt.Linie(gedreht(0.0, dat.durchmesser), gedreht(0.0, dat.bauteilHoehe));
    blatt.Linie(gedreht(-dat.bauteilAbstand, dat.bauteilHoehe), gedreht(dat.bauteilAbstand, dat.bauteilHoehe));
    blatt.Linie(gedreht(-dat.pedalAbstand, dat.durchmesser / 2.0), gedreht(dat.pedalAbstand, dat.durchmesser / 2.0));
}

} // namespace

void ZeichneFahrrad(CDC& dc, const CFahrradDat& dat)
{
    skizze::Grundieren(dc);
    const double neigung = dat.bauteilHoehe > 0.0 ? std::atan(dat.bauteilAbstand / dat.bauteilHoehe) : 0.0;
    const double hoechstes = std::hypot(dat.bauteilHoehe, dat.bauteilAbstand);
    skizze::Ausschnitt ausschnitt{-30.0, 0.0, 30.0, 50.0};
    // The end opposite to the part goes farthest to the side.
    ausschnitt.Nimm({-dat.bauteilHoehe * std::sin(neigung) - dat.bauteilAbstand * std::cos(neigung),
                     std::max(dat.hoeheMax, hoechstes)});
    ausschnitt.Nimm({std::max(dat.bauteilAbstand, dat.pedalAbstand), 0.0});
    skizze::Blatt blatt(dc, ausschnitt);

    // The band of the mark over the whole width, the bicycle before it.
    if (dat.hoeheMax > dat.hoeheMin) {
        const double rechts = ausschnitt.rechts;
        const double links = ausschnitt.links;
        blatt.Stift(skizze::kOrange);
        blatt.Fuellung(skizze::kOrange);
        blatt.Vieleck({{links, dat.hoeheMin}, {rechts, dat.hoeheMin}, {rechts, dat.hoeheMax}, {links, dat.hoeheMax}});
        blatt.OhneFuellung();
        blatt.Text({rechts, dat.hoeheMax}, 0.0, -0.3 * blatt.Zeile(), InCm(dat.hoeheMax), TextAlign::right);
        blatt.Text({rechts, dat.hoeheMin}, 0.0, 0.9 * blatt.Zeile(), InCm(dat.hoeheMin), TextAlign::right);
    }
    blatt.Stift(blatt.Rahmen());
    blatt.Waagrechte(0.0);
    if (!(dat.bauteilHoehe > 0.0))
        return;
    blatt.Stift(blatt.Rahmen(), 1.0, PenStyle::dash);
    Rad(blatt, dat, 0.0);
    if (dat.ergebnisSteht == 0)
        return;
    blatt.Stift(skizze::kBlau, 2.0);
    Rad(blatt, dat, neigung);
    const CDPoint bauteil{0.0, dat.beschaedigungshoehe};
    blatt.Stift(skizze::kRot);
    blatt.Punkt(bauteil);
    blatt.Text(bauteil, -4.0, -0.5 * blatt.Zeile(), "max. " + InCm(dat.beschaedigungshoehe), TextAlign::right);
    blatt.Text({0.0, 0.0}, 0.0, 1.1 * blatt.Zeile(), "Neigung " + skizze::Zahl(dat.neigungBeschaedigung, 1) + "°",
               TextAlign::center);
}
