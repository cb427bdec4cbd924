// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CFahrradDat.h"

#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/collision.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using Dat = CFahrradDat;

// Negative entries are taken: the calculation makes them zero.
constexpr NumberRange kEingabe{-1000, 1000};
constexpr NumberRange kErgebnis{-1e6, 1e6};
constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_FAHRRAD_HOEHE_MAX, "hoeheMax", At<&Dat::hoeheMax>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_HOEHE_MIN, "hoeheMin", At<&Dat::hoeheMin>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_LAENGE, "laenge", At<&Dat::laenge>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_BAUTEIL_HOEHE, "bauteilHoehe", At<&Dat::bauteilHoehe>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_BAUTEIL_ABSTAND, "bauteilAbstand", At<&Dat::bauteilAbstand>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_RADSTAND, "radstand", At<&Dat::radstand>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_DURCHMESSER, "durchmesser", At<&Dat::durchmesser>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_PEDAL, "pedalAbstand", At<&Dat::pedalAbstand>, units::cm, kEingabe, 1, FieldRole::input},
    {IDC_FAHRRAD_GESCHWINDIGKEIT,
     "geschwindigkeit",
     At<&Dat::geschwindigkeit>,
     units::kmh,
     {-200, 200},
     1,
     FieldRole::input},
    {IDC_FAHRRAD_REIBWERT, "reibwert", At<&Dat::reibwert>, units::none, {-10, 10}, 2, FieldRole::input},
    {IDC_FAHRRAD_BANDBREITE, "bandbreite", At<&Dat::bandbreite>, units::cm, kErgebnis, 2, FieldRole::result},
    {IDC_FAHRRAD_BESCHAEDIGUNGSHOEHE, "beschaedigungshoehe", At<&Dat::beschaedigungshoehe>, units::cm, kErgebnis, 2,
     FieldRole::result},
    {IDC_FAHRRAD_HOEHENZUNAHME, "hoehenzunahme", At<&Dat::hoehenzunahme>, units::cm, kErgebnis, 2, FieldRole::result},
    {IDC_FAHRRAD_NEIGUNG_BESCHAEDIGUNG, "neigungBeschaedigung", At<&Dat::neigungBeschaedigung>, units::degree,
     kErgebnis, 2, FieldRole::result},
    {IDC_FAHRRAD_NEIGUNG_KRATZSPUR, "neigungKratzspur", At<&Dat::neigungKratzspur>, units::degree, kErgebnis, 2,
     FieldRole::result},
    {IDC_FAHRRAD_KURVENRADIUS, "kurvenradius", At<&Dat::kurvenradius>, units::cm, kErgebnis, 1, FieldRole::result},
    {IDC_FAHRRAD_MAX_NEIGUNG, "maxNeigungswinkel", At<&Dat::maxNeigungswinkel>, units::degree, kErgebnis, 2,
     FieldRole::result},
    {IDC_FAHRRAD_RADAUSSTELLHOEHE, "radausstellhoehe", At<&Dat::radausstellhoehe>, units::cm, kErgebnis, 2,
     FieldRole::result},
    {IDC_FAHRRAD_BERUEHRZEIT, "beruehrzeit", At<&Dat::beruehrzeit>, units::s, kErgebnis, 3, FieldRole::result},
    {IDC_FAHRRAD_LENKEINSCHLAG, "lenkeinschlag", At<&Dat::lenkeinschlag>, units::degree, kErgebnis, 2,
     FieldRole::result},
    {"ergebnisSteht", At<&Dat::ergebnisSteht>},
    {"fahrradtyp", At<&Dat::fahrradtyp>, units::none, FieldRole::state, {0, 5}},
};

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
    return Describe(*this, kZahlen);
}

void CFahrradDat::Loeschen()
{
    ClearNumbers(Felder());
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
