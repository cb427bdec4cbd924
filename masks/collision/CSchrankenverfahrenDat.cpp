// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"
#include "masks/collision/SchrankenKurve.h"

#include <algorithm>
#include <cmath>

namespace
{

using schranken::Kurve;
using Dat = CSchrankenverfahrenDat;

constexpr double kMindestKarosserie = 0.5;
constexpr double kSchwerpunkthoehe = 0.7; // share of the body height

/// Distance behind a reference point at `vorn` metres along the axis.
double Laengs(const Dat::Rechteck& wagen, const CDPoint& p, double vorn)
{
    const CDPoint offset = p - wagen.position;
    return vorn - (offset.x * std::cos(wagen.winkel) + offset.y * std::sin(wagen.winkel));
}

double Quer(const Dat::Rechteck& wagen, const CDPoint& p)
{
    return (wagen.position.y - p.y) * std::cos(wagen.winkel) + (p.x - wagen.position.x) * std::sin(wagen.winkel);
}

/// Near end: the corner with the smallest square, far end: the one with the largest; the first wins ties.
Dat::Bereich Enden(const Dat::Rechteck& wagen, const Dat::Rechteck& feld, double halbeLaenge)
{
    std::array<double, 4> d{};
    const auto ecken = feld.Ecken();
    std::transform(
        ecken.begin(), ecken.end(), d.begin(),
        [&](const CDPoint& p) {
            const CDPoint offset = p - wagen.position;
            return -(offset.x * std::cos(wagen.winkel) + offset.y * std::sin(wagen.winkel) - halbeLaenge);
        });
    const auto kleiner = [](double a, double b) { return a * a < b * b; };
    return {*std::min_element(d.begin(), d.end(), kleiner), *std::max_element(d.begin(), d.end(), kleiner)};
}

/// Fills a barrier's array: the lower curve at all distances, then the upper one.
void Fuelle(Dat::Kurvenfeld& feld, const Kurve& unten, const Kurve& oben)
{
    std::array<double, Dat::kProben> s{};
    std::array<double, Dat::kProben> v{};
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        s[i] = feld[i].x;
    schranken::SucheGeschwindigkeiten(unten, s, v);
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        feld[i].y = v[i];
    schranken::SucheGeschwindigkeiten(oben, s, v);
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        feld[i + Dat::kProben].y = v[i];
}

/// The same pair of speeds at every distance.
void Fuelle(Dat::Kurvenfeld& feld, double unten, double oben)
{
    for (std::size_t i = 0; i < Dat::kProben; ++i) {
        feld[i].y = unten;
        feld[i + Dat::kProben].y = oben;
    }
}

} // namespace

CDPoint Dat::Rechteck::Mitte() const
{
    CDPoint offset{breite / 2.0, laenge / 2.0};
    offset.Rotate(winkel, {});
    return position + offset;
}

std::array<CDPoint, 4> Dat::Rechteck::Ecken() const
{
    std::array<CDPoint, 4> ecken{CDPoint{0.0, 0.0}, {breite, 0.0}, {breite, laenge}, {0.0, laenge}};
    for (CDPoint& ecke : ecken) {
        ecke.Rotate(winkel, {});
        ecke += position;
    }
    return ecken;
}

CSchrankenverfahrenDat::CSchrankenverfahrenDat(CRuvData& data) : CDlgData(data) {}

bool CSchrankenverfahrenDat::FahrzeugGueltig() const
{
    return m_data.IsFzgValid(fahrzeugNr);
}

bool CSchrankenverfahrenDat::IstPlatziert() const
{
    const Mangel mangel = Pruefen();
    return mangel != Mangel::fahrzeug && mangel != Mangel::person && mangel != Mangel::kollisionsort;
}

bool CSchrankenverfahrenDat::HatPlatz(std::size_t objekt) const
{
    const Rechteck& rechteck = objekte[objekt];
    return rechteck.gesetzt != 0 || !(rechteck.position == CDPoint{}) || rechteck.breite != 0.0 ||
           rechteck.laenge != 0.0;
}

std::int64_t CSchrankenverfahrenDat::Beteiligter(std::size_t objekt) const
{
    const std::int64_t number = objekt == fahrzeug  ? fahrzeugNr
                                : objekt == person  ? personNr
                                : objekt == fahrrad ? fahrradNr
                                                    : -1;
    return m_data.IsFzgValid(number) ? number : -1;
}

std::pair<double, double> CSchrankenverfahrenDat::Groesse(std::size_t objekt) const
{
    constexpr std::array<std::pair<double, double>, kObjekte> kUeblich{{
        {1.8, 4.5},  // vehicle
        {4.0, 2.0},  // collision area
        {0.5, 1.75}, // person, lying
        {0.6, 1.8},  // bicycle
        {8.0, 3.0},  // splinters altogether
        {4.0, 2.0},  // most of the splinters
    }};
    const Rechteck& rechteck = objekte[objekt];
    if (objekt != fahrzeug && (rechteck.breite != 0.0 || rechteck.laenge != 0.0))
        return {rechteck.breite, rechteck.laenge};
    const std::int64_t beteiligter = Beteiligter(objekt);
    if (beteiligter < 0)
        return kUeblich[objekt];
    const CKfzDaten& kfz = KfzDat(static_cast<std::size_t>(beteiligter));
    if (objekt != person)
        return {kfz.width, kfz.length};
    // Lying down, a person is as long as tall.
    return kfz.type == CKfzDaten::Type::pedestrian ? std::pair{kfz.width, kfz.height} : kUeblich[objekt];
}

double CSchrankenverfahrenDat::Ueberhang() const
{
    if (!FahrzeugGueltig())
        return 0.0;
    double lh = 0.0;
    double lv = 0.0;
    double hb = 0.0;
    KfzDat(static_cast<std::size_t>(fahrzeugNr)).Calc_Lv_Lh_HB(lh, lv, hb);
    return lv;
}

void CSchrankenverfahrenDat::Projizieren()
{
    const Rechteck& wagen = objekte[fahrzeug];
    // What is no longer placed has no projection.
    fahrzeugLaenge = fahrradLaengs = fahrradQuer = personLaengs = personQuer = 0.0;
    kollision = gesamt = haupt = {};
    kleinsterWeg = groessterWeg = 0.0;
    if (!wagen.gesetzt || !FahrzeugGueltig())
        return;
    fahrzeugLaenge = KfzDat(static_cast<std::size_t>(fahrzeugNr)).length;
    const double lv = Ueberhang();
    const double halbeLaenge = fahrzeugLaenge / 2.0;
    if (const Rechteck& objekt = objekte[person]; objekt.gesetzt) {
        personLaengs = Laengs(wagen, objekt.Mitte(), lv);
        personQuer = Quer(wagen, objekt.Mitte());
    }
    if (const Rechteck& objekt = objekte[fahrrad]; objekt.gesetzt) {
        fahrradLaengs = Laengs(wagen, objekt.Mitte(), lv);
        fahrradQuer = Quer(wagen, objekt.Mitte());
    }
    if (objekte[kollisionsort].gesetzt)
        kollision = Enden(wagen, objekte[kollisionsort], halbeLaenge);
    if (objekte[gesamtfeld].gesetzt)
        gesamt = Enden(wagen, objekte[gesamtfeld], halbeLaenge);
    if (objekte[hauptfeld].gesetzt)
        haupt = Enden(wagen, objekte[hauptfeld], halbeLaenge);
    if (objekte[person].gesetzt && objekte[kollisionsort].gesetzt) {
        kleinsterWeg = personLaengs < 0.0 ? personLaengs - 5.0 : -5.0;
        groessterWeg = kollision.bis + 10.0;
    }
}

Dat::Mangel CSchrankenverfahrenDat::Pruefen() const
{
    // The place of a vehicle that the case no longer has is none.
    if (!objekte[fahrzeug].gesetzt || !FahrzeugGueltig())
        return Mangel::fahrzeug;
    if (!objekte[person].gesetzt)
        return Mangel::person;
    if (!objekte[kollisionsort].gesetzt)
        return Mangel::kollisionsort;
    if (verzoegerung == 0.0)
        return Mangel::verzoegerung;
    if (verzoegerungToleranz == 0.0)
        return Mangel::toleranz;
    return Mangel::keiner;
}

bool CSchrankenverfahrenDat::IstWirksam(Theorie theorie) const
{
    if (theorien[theorie] == 0)
        return false;
    switch (theorie) {
    case frontscheibe:
    case scheinwerferHaupt:
        return objekte[hauptfeld].gesetzt != 0;
    case scheinwerferGesamt:
        return objekte[gesamtfeld].gesetzt != 0;
    case abwicklung:
        return abwicklungWeg != 0.0;
    default:
        return true;
    }
}

Dat::Schranke CSchrankenverfahrenDat::KurveVon(Theorie theorie)
{
    switch (theorie) {
    case kuehnelGlobal:
        return kurveKuehnelGlobal;
    case kuehnelVerzoegerung:
        return kurveKuehnelVerzoegerung;
    case rauOtteSchulz:
        return kurveRau;
    case dettinger:
        return kurveDettinger;
    case ritterKrieg:
        return kurveRitter;
    case frontscheibe:
        return kurveFrontscheibe;
    case scheinwerferHaupt:
        return kurveHauptfeld;
    case scheinwerferGesamt:
        return kurveGesamtfeld;
    case abwicklung:
        return kurveAbwicklung;
    case geschwindigkeit:
    case kTheorien:
        break;
    }
    return kurveGeschwindigkeit;
}

void CSchrankenverfahrenDat::Berechnen()
{
    Projizieren();
    Kurven();
    BildeFlaeche();
    Kontrolle();
    ergebnisSteht = 1;
    gerechnet = 1;
}

void CSchrankenverfahrenDat::Verwerfen()
{
    for (Kurvenfeld& feld : kurven)
        feld = {};
    flaeche = {};
    Kontrolle();
    ergebnisSteht = 0;
}

void CSchrankenverfahrenDat::Kurven()
{
    for (Kurvenfeld& feld : kurven) {
        for (std::size_t i = 0; i < kProben; ++i) {
            const double s = static_cast<double>(i) * groessterWeg / static_cast<double>(kProben - 1);
            feld[i] = {s, 0.0};
            feld[i + kProben] = {s, 0.0};
        }
    }
    const double d = personLaengs;
    // f(w) = s with w = v + Δv puts the lower curve Δv below the nominal one, w = v - Δv the upper one above it.
    if (verzoegerung != 0.0 && verzoegerungToleranz != 0.0)
        Fuelle(kurven[kurveBremsung], Kurve::Bremsung(verzoegerung - verzoegerungToleranz),
               Kurve::Bremsung(verzoegerung + verzoegerungToleranz));
    if (IstWirksam(kuehnelGlobal))
        Fuelle(kurven[kurveKuehnelGlobal], Kurve::Polynom(0.0, 0.00375, 0.175, 0.0, d),
               Kurve::Polynom(6.81818e-6, 0.00255682, 0.1525, -0.827273, d));
    if (IstWirksam(kuehnelVerzoegerung))
        Fuelle(kurven[kurveKuehnelVerzoegerung], Kurve::Verzoegerung(verzoegerung, d, kuehnelToleranz),
               Kurve::Verzoegerung(verzoegerung, d, -kuehnelToleranz));
    if (IstWirksam(rauOtteSchulz))
        Fuelle(kurven[kurveRau], Kurve::Polynom(0.0, 0.0052, 0.0783, 0.0, d, rauToleranz),
               Kurve::Polynom(0.0, 0.0052, 0.0783, 0.0, d, -rauToleranz));
    if (IstWirksam(dettinger))
        Fuelle(kurven[kurveDettinger], Kurve::Polynom(1.64e-5, 0.00452, 0.071, 2.5, d, dettingerToleranz),
               Kurve::Polynom(1.64e-5, 0.00452, 0.071, 2.5, d, -dettingerToleranz));
    if (IstWirksam(ritterKrieg))
        Fuelle(kurven[kurveRitter], Kurve::Polynom(0.0, 0.0028313, 0.3, 0.0, d),
               Kurve::Polynom(0.0, 0.0028313, 0.0271596, 0.0, d));
    if (IstWirksam(frontscheibe))
        Fuelle(kurven[kurveFrontscheibe], Kurve::Polynom(0.00027203013, -0.01724212509, 0.66913310304, 0.0, haupt.von),
               Kurve::Polynom(0.00010088077, -0.00395580247, 0.127407966296, 0.0, haupt.bis));
    if (IstWirksam(scheinwerferHaupt))
        Fuelle(kurven[kurveHauptfeld], Kurve::Polynom(0.0, 0.0, 0.388571, 0.0, haupt.von),
               Kurve::Polynom(0.0, 0.0, 0.223286, 0.0, haupt.bis));
    if (IstWirksam(scheinwerferGesamt))
        Fuelle(kurven[kurveGesamtfeld], Kurve::Polynom(0.0, 0.0, 0.5, 0.0, gesamt.von),
               Kurve::Polynom(0.0, 0.0018, -0.00544, 0.0, gesamt.bis));
    if (IstWirksam(abwicklung)) {
        if (karosserie < kMindestKarosserie)
            karosserie = 1.0;
        const double koerper = objekte[person].laenge * kSchwerpunkthoehe * kCmProM;
        const double unten = (abwicklungWeg - abwicklungToleranz - koerper) / (karosserie + karosserieToleranz);
        const double oben = karosserie > karosserieToleranz
                                ? (abwicklungWeg + abwicklungToleranz - koerper) / (karosserie - karosserieToleranz)
                                : 0.0;
        Fuelle(kurven[kurveAbwicklung], unten, oben);
    }
    if (IstWirksam(geschwindigkeit))
        Fuelle(kurven[kurveGeschwindigkeit], geschwindigkeitVon,
               geschwindigkeitBis == 0.0 ? schranken::kHoechstgeschwindigkeit : geschwindigkeitBis);
}

void CSchrankenverfahrenDat::FlaechenRechner(Kurvenfeld& band, const Kurvenfeld& schranke, std::size_t n)
{
    constexpr double kKleinsteObergrenze = 1.0; // km/h
    for (std::size_t i = 0; i < std::min(n, kProben); ++i) {
        double& unten = band[i].y;
        double& oben = band[i + kProben].y;
        const double grenzeUnten = schranke[i].y; // 0 leaves the band open below
        const double grenzeOben = schranke[i + kProben].y;
        const double neuUnten = std::max(unten, grenzeUnten);
        const double neuOben = std::min(oben, grenzeOben);
        // An upper speed of 0 is no solution; bounds that touch stay.
        const bool leer = oben < kKleinsteObergrenze || grenzeOben == 0.0 || !(neuUnten <= neuOben);
        unten = leer ? 0.0 : neuUnten;
        oben = leer ? 0.0 : neuOben;
    }
}

void CSchrankenverfahrenDat::BildeFlaeche()
{
    flaeche = kurven[kurveBremsung];
    for (const Theorie theorie : {kuehnelGlobal, kuehnelVerzoegerung, rauOtteSchulz, frontscheibe, scheinwerferGesamt,
                                  dettinger, ritterKrieg, scheinwerferHaupt, abwicklung, geschwindigkeit})
        if (IstWirksam(theorie))
            FlaechenRechner(flaeche, kurven[KurveVon(theorie)], kProben);
    for (std::size_t i = 0; i < kProben; ++i) {
        if (flaeche[i].x < kollision.von || flaeche[i].x > kollision.bis) {
            flaeche[i].y = 0.0;
            flaeche[i + kProben].y = 0.0;
        }
    }
}
