// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CFahrradDat.h"

#include "host/Physics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// Usual measures of a type, cm.
struct Masse {
    double bauteilHoehe;
    double bauteilAbstand;
    double radstand;
    double durchmesser;
    double pedalAbstand;
};

constexpr std::array<Masse, 5> kTypen{{
    {70.0, 20.0, 65.0, 35.0, 16.0},  // infant's
    {75.0, 26.0, 95.0, 45.0, 19.0},  // child's
    {98.0, 29.0, 105.0, 57.0, 20.0}, // city
    {95.0, 28.0, 105.0, 65.0, 16.0}, // mountain bike
    {90.0, 22.0, 110.0, 68.0, 16.0}, // racing
}};

double Grad(double bogen)
{
    return bogen * 180.0 / kPi;
}

} // namespace

RecordFields CFahrradDat::Felder()
{
    return {
        {"hoeheMax", "cm", &hoeheMax},
        {"hoeheMin", "cm", &hoeheMin},
        {"laenge", "cm", &laenge},
        {"bauteilHoehe", "cm", &bauteilHoehe},
        {"bauteilAbstand", "cm", &bauteilAbstand},
        {"radstand", "cm", &radstand},
        {"durchmesser", "cm", &durchmesser},
        {"pedalAbstand", "cm", &pedalAbstand},
        {"geschwindigkeit", "km/h", &geschwindigkeit},
        {"reibwert", "", &reibwert},
        {"bandbreite", "cm", &bandbreite},
        {"beschaedigungshoehe", "cm", &beschaedigungshoehe},
        {"hoehenzunahme", "cm", &hoehenzunahme},
        {"neigungBeschaedigung", "°", &neigungBeschaedigung},
        {"neigungKratzspur", "°", &neigungKratzspur},
        {"kurvenradius", "cm", &kurvenradius},
        {"maxNeigungswinkel", "°", &maxNeigungswinkel},
        {"radausstellhoehe", "cm", &radausstellhoehe},
        {"beruehrzeit", "s", &beruehrzeit},
        {"lenkeinschlag", "°", &lenkeinschlag},
        {"ergebnisSteht", "", &ergebnisSteht},
        {"fahrradtyp", "", &fahrradtyp},
    };
}

void CFahrradDat::Loeschen()
{
    for (const RecordField& feld : Felder())
        if (double* const* wert = std::get_if<double*>(&feld.value))
            **wert = 0.0;
    ergebnisSteht = 0;
    fahrradtyp = 0;
}

void CFahrradDat::TypGewaehlt()
{
    if (fahrradtyp < 1 || fahrradtyp > static_cast<std::int64_t>(kTypen.size()))
        return;
    const Masse& masse = kTypen[static_cast<std::size_t>(fahrradtyp - 1)];
    bauteilHoehe = masse.bauteilHoehe;
    bauteilAbstand = masse.bauteilAbstand;
    radstand = masse.radstand;
    durchmesser = masse.durchmesser;
    pedalAbstand = masse.pedalAbstand;
}

CFahrradDat::Befund CFahrradDat::Rechnen()
{
    for (double* eingabe : {&hoeheMax, &hoeheMin, &laenge, &bauteilHoehe, &bauteilAbstand, &radstand, &durchmesser,
                            &pedalAbstand, &geschwindigkeit, &reibwert})
        *eingabe = std::max(*eingabe, 0.0);
    ergebnisSteht = 1;

    bandbreite = hoeheMax - hoeheMin;
    // The part is highest when it stands above the point where the wheels touch the ground.
    beschaedigungshoehe = std::sqrt(bauteilHoehe * bauteilHoehe + bauteilAbstand * bauteilAbstand);
    hoehenzunahme = beschaedigungshoehe - bauteilHoehe;
    neigungBeschaedigung = Grad(std::atan(bauteilAbstand / bauteilHoehe));
    neigungKratzspur = Grad(std::asin(bandbreite / bauteilAbstand));

    // Curve at the limit of friction: r = v²/(µ·g)
    const double v = geschwindigkeit / kKmhProMs;
    kurvenradius = v * v / (reibwert * kErdbeschleunigung) * 100.0;
    beruehrzeit = laenge * 0.01 / v;
    maxNeigungswinkel = Grad(std::atan(reibwert));
    const double einschlag = std::atan(radstand / kurvenradius);
    lenkeinschlag = Grad(einschlag);
    radausstellhoehe = std::sin(einschlag) * durchmesser * 0.5;

    if (bandbreite < 0.0)
        return Befund::bandNegativ;
    if (bandbreite > bauteilAbstand)
        return Befund::ohneNeigung;
    if (bandbreite > hoehenzunahme)
        return Befund::ueberZunahme;
    const bool zahlen = std::isfinite(neigungBeschaedigung) && std::isfinite(neigungKratzspur) &&
                        std::isfinite(kurvenradius) && std::isfinite(beruehrzeit) && std::isfinite(radausstellhoehe);
    return zahlen ? Befund::keiner : Befund::unvollstaendig;
}
