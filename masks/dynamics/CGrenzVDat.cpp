// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CGrenzVDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/dynamics.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace
{

/// Name of the six values in the case.
constexpr const char* kKurvenwerte = "kurve";

constexpr double kGradProRad = 57.29577951308232;

// Search for the central angle.
constexpr double kErsterSchritt = 1.0;       // rad
constexpr double kKleinsterSchritt = 1e-14;  // rad
constexpr double kRadiusgleichheit = 0.0001; // m
constexpr std::int64_t kHoechstensSchritte = 20'000'000;

/// Half the chord lies inside the circle.
bool Passt(double sehneZuDurchmesser)
{
    return sehneZuDurchmesser >= -1.0 && sehneZuDurchmesser <= 1.0;
}

/// Radius by the chord less radius by the arc, for a central angle.
double Radienunterschied(double sehne, double bogen, double winkel)
{
    return (sehne / 2.0) / std::sin(winkel / 2.0) - bogen / winkel;
}

/// An angle k (rad, whole) at which the search turns round or ends.
bool Entscheidet(double sehne, double bogen, std::int64_t k)
{
    const double unterschied = Radienunterschied(sehne, bogen, static_cast<double>(k));
    return unterschied > 0.0 || std::abs(unterschied) <= kRadiusgleichheit;
}

// Whole angles turn round the circle of sin(k/2), which is 4π long, in equal steps: in whole parts of it, k lies at
// k·kTeileProSchritt modulo kTeile. Products with a k up to kHoechstensSchritte fit into 64 bits.
constexpr std::int64_t kTeile = std::int64_t{1} << 41;
constexpr std::int64_t kTeileProSchritt = 174992710548; // kTeile / 4π, rounded
constexpr std::int64_t kNie = std::numeric_limits<std::int64_t>::max();

/// The smallest x >= 0 with low <= a·x modulo m <= high, where 0 <= low <= high < m and 0 <= a < m; kNie without one up
/// to `hoechstens`. Euclid's algorithm on the steps and what is left of the circle after them.
std::int64_t ErstesVielfaches(std::int64_t a, std::int64_t m, std::int64_t low, std::int64_t high,
                              std::int64_t hoechstens)
{
    if (low == 0)
        return 0;
    if (a == 0)
        return kNie;
    const std::int64_t ohneUmlauf = (low + a - 1) / a;
    if (a * ohneUmlauf <= high)
        return ohneUmlauf;
    // No multiple of a within the first turn: y turns must leave a·x - m·y in the range.
    const std::int64_t umlaeufe = hoechstens / (m / a) + 1;
    const std::int64_t y = ErstesVielfaches((a - m % a) % a, a, low % a, high % a, umlaeufe);
    if (y > umlaeufe)
        return kNie;
    return (low + m * y + a - 1) / a;
}

/// The first whole angle from k on that lies in the part of the circle from `start`, `laenge` long.
std::int64_t ErsterIm(std::int64_t k, std::int64_t start, std::int64_t laenge)
{
    const std::int64_t hier = k * kTeileProSchritt % kTeile;
    const std::int64_t bis = ((start - hier) % kTeile + kTeile) % kTeile; // way from here to its start
    if (bis == 0 || bis + laenge >= kTeile)
        return k;
    const std::int64_t x = ErstesVielfaches(kTeileProSchritt, kTeile, bis, bis + laenge, kHoechstensSchritte);
    return x > kHoechstensSchritte ? kNie : k + x;
}

/// The first whole angle k >= 1 at which the search turns round or ends, or the one after the last that it may visit.
/// It does so where sin(k/2) is positive and so small that the chord's radius comes up to that of the arc; only these
/// parts of the circle are looked at, widened by more than rounding and the whole parts take away.
std::int64_t ErsteEntscheidung(double sehne, double bogen)
{
    constexpr double kWeit = 0.25;                    // of sin(k/2): from here on one of the next angles soon hits
    constexpr double kRand = 1e-6;                    // rad
    constexpr double kRandProSchritt = 5e-12;         // rad, more than kTeileProSchritt is rounded by
    const double alleNah = bogen / kRadiusgleichheit; // from here on the arc's radius is as good as none
    std::int64_t k = 1;
    while (k <= kHoechstensSchritte) {
        // Up to `bis` the sine is smaller than `sinus` where the search turns round.
        std::int64_t bis = std::min(2 * k, kHoechstensSchritte);
        double sinus = kWeit;
        if (static_cast<double>(bis) >= alleNah)
            bis = k +
                  static_cast<std::int64_t>((std::max(alleNah, static_cast<double>(k)) - static_cast<double>(k)) / 2.0);
        if (static_cast<double>(bis) < alleNah)
            sinus = (sehne / 2.0) / (bogen / static_cast<double>(bis) - kRadiusgleichheit);
        if (!(sinus < kWeit)) {
            if (Entscheidet(sehne, bogen, k))
                return k;
            ++k;
            continue;
        }
        const double proTeil = 4.0 * kPi / static_cast<double>(kTeile);
        const auto rand = static_cast<std::int64_t>((kRand + kRandProSchritt * static_cast<double>(bis)) / proTeil);
        const auto breite = static_cast<std::int64_t>(2.0 * std::asin(sinus) / proTeil);
        const std::int64_t naechster = std::min(ErsterIm(k, kTeile - rand, breite + 2 * rand),
                                                ErsterIm(k, kTeile / 2 - breite - rand, breite + 2 * rand));
        if (naechster > bis) {
            k = bis + 1;
        } else {
            if (Entscheidet(sehne, bogen, naechster))
                return naechster;
            k = naechster + 1;
        }
    }
    return k;
}

using Dat = CGrenzVDat;

constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_GRENZV_REIBUNG, "reibungsbeiwert", At<&Dat::reibungsbeiwert>, units::none, {0, 10}, 2, FieldRole::input},
    {IDC_GRENZV_QUERGEFAELLE_GRAD,
     "quergefaelleGrad",
     At<&Dat::quergefaelleGrad>,
     units::degree,
     {-90, 90},
     1,
     FieldRole::input},
    {IDC_GRENZV_QUERGEFAELLE_PROZENT,
     "quergefaelleProzent",
     At<&Dat::quergefaelleProzent>,
     units::percent,
     {-90, 90},
     1,
     FieldRole::input,
     {.label = "Quergefälle nach Innen"}},
    {"reserve", At<&Dat::reserve>, units::none, FieldRole::internal},
    {"quergefaelle", At<&Dat::quergefaelle>, units::radian, FieldRole::internal},
    {IDC_GRENZV_RADIUS, "kurvenradius", At<&Dat::kurvenradius>, units::m, {0, 1000}, 1, FieldRole::input},
    {IDC_GRENZV_GESCHWINDIGKEIT,
     "grenzgeschwindigkeit",
     At<&Dat::grenzgeschwindigkeit>,
     units::kmh,
     {-100, 100},
     2,
     FieldRole::result},
    {IDC_GRENZV_QUERBESCHL_FUEHLBAR,
     "fuehlbareQuerbeschleunigung",
     At<&Dat::fuehlbareQuerbeschleunigung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::result,
     {.copyable = true}},
    {IDC_GRENZV_QUERBESCHL,
     "querbeschleunigung",
     At<&Dat::querbeschleunigung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::result,
     {.copyable = true}},
    {IDC_GRENZV_SEHNE, "sehne", At<&Dat::sehne>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_GRENZV_HOEHE, "hoehe", At<&Dat::hoehe>, units::m, {0, 100}, 2, FieldRole::input},
    {IDC_GRENZV_SCHRAEGLAGE, "schraeglage", At<&Dat::schraeglage>, units::degree, {0, 100}, 2, FieldRole::result},
    {IDC_GRENZV_BOGEN, "bogenlaenge", At<&Dat::bogenlaenge>, units::m, {0, 1000}, 2, FieldRole::input},
    {"berechnet", At<&Dat::berechnet>},
    {"radiusAusBogen", At<&Dat::radiusAusBogen>},
};

} // namespace

RecordFields CGrenzVDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CGrenzVDat::Laden()
{
    const std::vector<double> werte = m_data.GemerkteWerte(IDD_KURVENGRENZGESCHWINDIGKEIT, kKurvenwerte);
    double* const felder[] = {&reibungsbeiwert, &quergefaelleGrad, &kurvenradius, &sehne, &hoehe, &schraeglage};
    for (std::size_t i = 0; i < std::size(felder); ++i)
        *felder[i] = i < werte.size() && std::isfinite(werte[i]) ? werte[i] : 0.0;
    quergefaelleProzent = std::tan(quergefaelleGrad * kRadProGrad) * 100.0;
}

void CGrenzVDat::Merken()
{
    m_data.MaskenWerte(IDD_KURVENGRENZGESCHWINDIGKEIT)[kKurvenwerte] = {
        reibungsbeiwert, quergefaelleGrad, kurvenradius, sehne, hoehe, schraeglage};
    m_data.NotifyMaskenWerte();
}

void CGrenzVDat::Loeschen()
{
    ClearNumbers(Felder());
}

void CGrenzVDat::QuergefaelleAusGrad()
{
    quergefaelle = quergefaelleGrad * kPi / 180.0;
    quergefaelleProzent = std::tan(quergefaelle) * 100.0;
}

void CGrenzVDat::QuergefaelleAusProzent()
{
    quergefaelle = std::atan(quergefaelleProzent / 100.0);
    quergefaelleGrad = quergefaelle * 180.0 / kPi;
}

CGrenzVDat::Kurve CGrenzVDat::RadiusGeaendert()
{
    if (!(sehne > 0.0 && kurvenradius > 0.0))
        return Kurve::stimmig;
    const double verhaeltnis = sehne / (2.0 * kurvenradius);
    if (!Passt(verhaeltnis))
        return Kurve::sehneZuLang;
    const double winkel = 2.0 * std::asin(verhaeltnis);
    bogenlaenge = kurvenradius * winkel;
    hoehe = (1.0 - std::cos(winkel / 2.0)) * kurvenradius;
    radiusAusBogen = 0;
    return Kurve::stimmig;
}

CGrenzVDat::Kurve CGrenzVDat::SehneGeaendert()
{
    Kurve kurve = Kurve::stimmig;
    if (bogenlaenge > 0.0 && (radiusAusBogen != 0 || !(hoehe > 0.0)))
        kurve = BogenGeaendert();
    return hoehe > 0.0 ? HoeheGeaendert() : kurve;
}

CGrenzVDat::Kurve CGrenzVDat::HoeheGeaendert()
{
    if (!(hoehe > 0.0))
        return Kurve::stimmig;
    // R = (4h² + c²) / 8h
    const double radius = (4.0 * (hoehe * hoehe) + sehne * sehne) / (8.0 * hoehe);
    if (!std::isfinite(2.0 * radius) || radius == 0.0)
        return Kurve::ohneErgebnis;
    kurvenradius = radius;
    // The chord is not longer than the diameter of this radius; that of a half circle may be, by rounding.
    const double verhaeltnis = std::min(sehne / (2.0 * kurvenradius), 1.0);
    bogenlaenge = 2.0 * kurvenradius * std::asin(verhaeltnis);
    radiusAusBogen = 0;
    return hoehe > sehne / 2.0 ? Kurve::kurzerBogen : Kurve::stimmig;
}

CGrenzVDat::Kurve CGrenzVDat::BogenGeaendert()
{
    if (!(bogenlaenge > 0.0 && sehne > 0.0))
        return Kurve::stimmig;
    if (!(sehne < bogenlaenge))
        return Kurve::bogenZuKurz;
    const std::optional<double> winkel = Zentriwinkel(sehne, bogenlaenge);
    if (!winkel)
        return Kurve::ohneErgebnis;
    kurvenradius = bogenlaenge / *winkel;
    hoehe = (1.0 - std::cos(*winkel / 2.0)) * kurvenradius;
    radiusAusBogen = 1;
    return *winkel > 2.0 * kPi ? Kurve::ueberKreis : Kurve::stimmig;
}

std::optional<double> CGrenzVDat::Zentriwinkel(double sehne, double bogen)
{
    // The steps of 1 rad up to the one that ends them, all at once.
    std::int64_t i = ErsteEntscheidung(sehne, bogen) - 1;
    double winkel = static_cast<double>(i);
    double schritt = kErsterSchritt;
    for (; i < kHoechstensSchritte; ++i) {
        const double vorher = winkel;
        winkel += schritt;
        if (winkel == vorher)
            return std::nullopt; // far beyond the full circle a small step no longer moves the angle
        const double unterschied = Radienunterschied(sehne, bogen, winkel);
        if (unterschied > 0.0) {
            winkel -= schritt;
            schritt /= 10.0;
            if (schritt < kKleinsterSchritt)
                return std::nullopt;
        } else if (std::abs(unterschied) <= kRadiusgleichheit) {
            return winkel;
        }
    }
    return std::nullopt;
}

CGrenzVDat::Grenze CGrenzVDat::Rechnen()
{
    Grenze grenze = Grenze::unbestimmt;
    const double t = std::tan(quergefaelle);
    // The guard is on the angle, not on d: at d = 0 the limit speed is infinite.
    if (1.0 - quergefaelle != 0.0) {
        const double d = 1.0 - reibungsbeiwert * t;
        // v² = R·g·(μ + tan α) / (1 − μ·tan α)
        const double x = kurvenradius * kErdbeschleunigung * (reibungsbeiwert + t) / d;
        if (x > 0.0) {
            grenzgeschwindigkeit = std::sqrt(x) * kKmhProMs;
            querbeschleunigung = (reibungsbeiwert + t) * kErdbeschleunigung / d;
            fuehlbareQuerbeschleunigung =
                (std::sin(quergefaelle) * t + std::cos(quergefaelle)) * reibungsbeiwert * kErdbeschleunigung / d;
            grenze = Grenze::gefunden;
        } else if (!(kurvenradius > 0.0)) {
            grenze = Grenze::ohneRadius;
        } else {
            grenze = d < 0.0 ? Grenze::unbegrenzt : Grenze::ohneHaftung;
        }
    }
    schraeglage = std::atan(querbeschleunigung / kErdbeschleunigung) * kGradProRad;
    return grenze;
}

double CGrenzVDat::RutschgrenzeInnen() const
{
    const double t = std::tan(quergefaelle);
    // v² = R·g·(tan α − μ) / (1 + μ·tan α)
    const double x = kurvenradius * kErdbeschleunigung * (t - reibungsbeiwert) / (1.0 + reibungsbeiwert * t);
    return t > reibungsbeiwert && x > 0.0 ? std::sqrt(x) * kKmhProMs : 0.0;
}
