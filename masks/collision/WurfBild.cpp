// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/WurfBild.h"

#include "masks/collision/CWurfWeiteDat.h"
#include "masks/collision/Skizze.h"

#include <cmath>

using skizze::MitEinheit;

void ZeichneWurf(CDC& dc, const CWurfWeiteDat& dat)
{
    skizze::Grundieren(dc);
    skizze::Ausschnitt ausschnitt{0.0, 0.0, 1.0, 0.4};
    CDPoint scheitel{};
    if (dat.bahn.size() > 1) {
        ausschnitt = {};
        for (const CDPoint& punkt : dat.bahn) {
            ausschnitt.Nimm(punkt);
            if (punkt.y > scheitel.y)
                scheitel = punkt;
        }
        ausschnitt.Nimm({dat.wurfRutschweite, dat.aufprallhoehe});
        scheitel.y = dat.wurfhoehe;
    }
    skizze::Blatt blatt(dc, ausschnitt);
    blatt.Stift(blatt.Rahmen());
    blatt.Waagrechte(0.0);
    if (dat.bahn.size() < 2)
        return;

    const CDPoint aufprall{dat.wurfweite, dat.aufprallhoehe};
    // A flight that stays below the impact height has none; without a flight there is the slide alone.
    const bool erreicht = dat.wurfweite != 0.0 || (dat.wurfhoehe == 0.0 && dat.aufprallhoehe == 0.0);
    if (dat.aufprallhoehe != 0.0) {
        blatt.Stift(blatt.Rahmen(), 1.0, PenStyle::dash);
        blatt.Waagrechte(dat.aufprallhoehe);
    }
    // Height of the apex above the start, distance of the impact.
    blatt.Stift(blatt.Rahmen(), 1.0, PenStyle::dot);
    blatt.Linie({scheitel.x, 0.0}, scheitel);
    blatt.Stift(skizze::kBlau, 2.0);
    blatt.Zug(dat.bahn);
    if (erreicht && dat.wurfRutschweite > dat.wurfweite) {
        blatt.Stift(skizze::kOrange, 2.0);
        blatt.Pfeil(aufprall, {dat.wurfRutschweite, dat.aufprallhoehe});
        blatt.Text({dat.wurfRutschweite, dat.aufprallhoehe}, 0.0, 1.9 * blatt.Zeile(),
                   "Wurf + Rutschen " + MitEinheit(dat.wurfRutschweite, unitType::length, 2), TextAlign::right);
    }
    blatt.Stift(skizze::kGruen);
    blatt.Punkt(scheitel);
    blatt.Text(scheitel, 0.0, -0.5 * blatt.Zeile(), "Höhe " + MitEinheit(dat.wurfhoehe, unitType::length, 2),
               TextAlign::center);
    if (!erreicht)
        return;
    blatt.Stift(skizze::kRot);
    blatt.Punkt(aufprall);
    blatt.Text(aufprall, 0.0, 0.95 * blatt.Zeile(), "Wurfweite " + MitEinheit(dat.wurfweite, unitType::length, 2),
               TextAlign::center);
}
