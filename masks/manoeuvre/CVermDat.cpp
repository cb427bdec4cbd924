// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CVermDat.h"

#include "host/NumberTable.h"
#include "host/Physics.h"
#include "masks/manoeuvre/VermSuche.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Inputs beyond this, and paths (m) and times (s) beyond the other, are none of a drive.
constexpr double kGrenze = 1e9;
constexpr double kGrenzeDerFahrt = 1e12;

using Dat = CVermDat;
using Meldung = Dat::Meldung;
using Meldungen = std::vector<Meldung>;

/// Inputs that are zero but for rounding are zero.
double OhneRest(double value)
{
    return std::abs(value) < kVermNull ? 0.0 : value;
}

/// G during a calculation.
struct Gegnerdaten {
    double v; ///< m/s
    double a; ///< m/s²
    double sFB;
    double sFR;
    double t = 0.0;                                            ///< to its stop or until it has cleared, s
    double tRaeumen = std::numeric_limits<double>::infinity(); ///< infinite when it does not clear
    bool aErrechnet = false;
    bool vErrechnet = false;
};

/// G drives along V's way: its missing braking distance, or what of speed and deceleration is missing.
std::optional<Meldung> ErgaenzeLaengs(Gegnerdaten& g, VermRichtung richtung)
{
    if (g.a == 0.0) {
        if (richtung == VermRichtung::entgegen) {
            if (g.sFB == 0.0)
                return Meldung::keineFehlbremsstrecke;
            if (g.v != 0.0) {
                g.a = g.v * g.v / (2.0 * g.sFB);
                g.aErrechnet = true;
            }
        }
    } else if (g.v == 0.0) {
        const double radikand = 2.0 * g.sFB * g.a;
        if (radikand < 0.0)
            return Meldung::keineGegnergeschw;
        g.v = std::sqrt(radikand);
        g.vErrechnet = true;
    } else {
        g.sFB = (g.v > 0.0) == (g.a > 0.0) && std::abs(g.a) > kVermNull ? g.v * g.v / (2.0 * g.a) : 0.0;
    }
    g.t = g.a == 0.0 || g.sFB == 0.0 ? 0.0 : g.v / g.a;
    return std::nullopt;
}

/// G crosses V's way: how long it takes to clear it.
std::optional<Meldung> ErgaenzeQuer(Gegnerdaten& g, VermKenngroesse art)
{
    if (g.a == 0.0) {
        g.t = g.v == 0.0 ? 0.0 : g.sFR / g.v;
        if (g.v > 0.0 && g.sFR > 0.0)
            g.tRaeumen = g.t;
        return std::nullopt;
    }
    const double radikand = g.v * g.v - 2.0 * g.a * g.sFR;
    const double ende = radikand < 0.0 ? 0.0 : std::copysign(std::sqrt(radikand), g.v);
    g.t = (g.v - ende) / g.a;
    if (g.v >= 0.0 && ende > 0.0 && g.sFR > 0.0) {
        // (vG - vEnde)/aG without the difference of two almost equal speeds
        g.t = 2.0 * g.sFR / (g.v + ende);
        g.tRaeumen = g.t;
    }
    if (radikand >= 0.0)
        return std::nullopt;
    return art == VermKenngroesse::zeitlich ? Meldung::gegnerHaeltVorher : Meldung::gegnerHaeltImKonflikt;
}

constexpr UINT kVersionen[] = {IDC_VERM_VERSION_0, IDC_VERM_VERSION_1, IDC_VERM_VERSION_2, IDC_VERM_VERSION_3};

constexpr NumberRow<Dat> kZahlen[] = {
    {"fahrzeug", At<&Dat::fahrzeug>, units::none, FieldRole::state, {0, 15}},
    {"phase", At<&Dat::phase>},
    {"ziel", At<&Dat::ziel>, units::none, FieldRole::state, {0, 15}},
    {"gegner", At<&Dat::gegner>, units::none, FieldRole::state, {0, 15}},
    {"zielGegner", At<&Dat::zielGegner>, units::none, FieldRole::state, {0, 15}},
    {"art", At<&Dat::art>},
    {"richtung", At<&Dat::richtung>},
    {kVersionen, "version", At<&Dat::version>, "Übertragungsversion"},
    {IDC_VERM_VT, "vT", At<&Dat::vT>, units::kmh, {-150, 1000}, 2, FieldRole::input},
    {IDC_VERM_VKOLL, "vKoll", At<&Dat::vKoll>, units::kmh, {0, 1000}, 2, FieldRole::input},
    {IDC_VERM_VZ, "vZ", At<&Dat::vZ>, units::kmh, {-150, 1000}, 2, FieldRole::input},
    {IDC_VERM_TR, "tR", At<&Dat::tR>, units::s, {0, 10}, 2, FieldRole::input},
    {IDC_VERM_TS, "tS", At<&Dat::tS>, units::s, {0, 10}, 2, FieldRole::input},
    {IDC_VERM_AB,
     "aB",
     At<&Dat::aB>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::input,
     {.source = ValueSource::maximumDeceleration}},
    {IDC_VERM_AR, "aR", At<&Dat::aR>, units::ms2, {-10, 10}, 2, FieldRole::input},
    {IDC_VERM_SRK,
     "sRK",
     At<&Dat::sRK>,
     units::m,
     {0, 1000},
     2,
     FieldRole::input,
     {.label = "Reaktion - Kollision, Weg"}},
    {IDC_VERM_TRK,
     "tRK",
     At<&Dat::tRK>,
     units::s,
     {0, 100},
     2,
     FieldRole::input,
     {.label = "Reaktion - Kollision, Zeit"}},
    {IDC_VERM_VG, "vG", At<&Dat::vG>, units::kmh, {0, 1000}, 2, FieldRole::input},
    {IDC_VERM_SFB, "sFB", At<&Dat::sFB>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_VERM_SFR, "sFR", At<&Dat::sFR>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_VERM_AG, "aG", At<&Dat::aG>, units::ms2, {-100, 100}, 2, FieldRole::input},
    {IDC_VERM_XV, "xV", At<&Dat::xV>, units::m, {-100, 100}, 2, FieldRole::input},
    {IDC_VERM_VE, "vE", At<&Dat::vE>, units::kmh, {0, 1000}, 2, FieldRole::result},
    {IDC_VERM_VHOECHST, "vHoechst", At<&Dat::vHoechst>, units::kmh, {0, 1000}, 2, FieldRole::result},
    {IDC_VERM_SREAKT,
     "sReakt",
     At<&Dat::sReakt>,
     units::m,
     {0, 1000},
     2,
     FieldRole::result,
     {.label = "Reaktionspunkt, Weg"}},
    {IDC_VERM_TREAKT,
     "tReakt",
     At<&Dat::tReakt>,
     units::s,
     {0, 100},
     2,
     FieldRole::result,
     {.label = "Reaktionspunkt, Zeit"}},
    {IDC_VERM_AGRENZ, "aGrenz", At<&Dat::aGrenz>, units::ms2, {0, 1000}, 2, FieldRole::result},
    {"sR", At<&Dat::sR>, units::m, FieldRole::internal},
    {"vR", At<&Dat::vR>, units::kmh, FieldRole::internal},
    {"vRt", At<&Dat::vRt>, units::kmh, FieldRole::internal},
    {"sS", At<&Dat::sS>, units::m, FieldRole::internal},
    {"vS", At<&Dat::vS>, units::kmh, FieldRole::internal},
    {"tG", At<&Dat::tG>, units::s, FieldRole::internal},
    {"vorzeichen", At<&Dat::vorzeichen>},
    {"berechnet", At<&Dat::berechnet>},
    {"aGErrechnet", At<&Dat::aGErrechnet>},
    {"vGErrechnet", At<&Dat::vGErrechnet>},
    {"hoechstBestimmt", At<&Dat::hoechstBestimmt>},
    {"reaktBestimmt", At<&Dat::reaktBestimmt>},
    {"grenzBestimmt", At<&Dat::grenzBestimmt>},
    {"zeitlichGeraeumt", At<&Dat::zeitlichGeraeumt>},
    {"ohneBeruehrung", At<&Dat::ohneBeruehrung>},
};

} // namespace

RecordFields CVermDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CVermDat::Loeschen()
{
    ClearNumbers(Felder());
    aGErrechnet = vGErrechnet = 0;
    hoechstBestimmt = reaktBestimmt = grenzBestimmt = zeitlichGeraeumt = ohneBeruehrung = 0;
    vorzeichen = 1;
    m_stand.reset();
}

bool CVermDat::IstFatal(Meldung meldung)
{
    switch (meldung) {
    case Meldung::keineBremsverzoegerung:
    case Meldung::keineGeschwindigkeit:
    case Meldung::keineGegnergeschw:
    case Meldung::gegnerSteht:
    case Meldung::keineFehlbremsstrecke:
    case Meldung::gegnerBeschleunigt:
    case Meldung::unendlich:
        return true;
    case Meldung::gegnerHaeltVorher:
    case Meldung::keinGrenzwert:
    case Meldung::gegnerHaeltImKonflikt:
    case Meldung::gegnerHatGeraeumt:
        break;
    }
    return false;
}

std::vector<CVermDat::Meldung> CVermDat::Rechnen()
{
    berechnet = 0;
    m_stand.reset();
    const VermVorgabe vorgabe{OhneRest(vZ / kKmhProMs), OhneRest(aR), OhneRest(tR), OhneRest(tS), OhneRest(aB)};
    const double actual = OhneRest(vT / kKmhProMs);
    const std::array inputs{vorgabe.v, vorgabe.aR, vorgabe.tR, vorgabe.tS, vorgabe.aB, actual, sRK,
                            tRK,       vG,         sFB,        sFR,        aG,         xV};
    if (!std::all_of(inputs.begin(), inputs.end(), [](double q) { return std::abs(q) <= kGrenze; }))
        return {Meldung::unendlich};
    if (std::min({tR, tS, sRK, tRK, sFB, sFR}) < 0.0)
        return {Meldung::unendlich};
    if (vorgabe.v <= 0.0)
        return {Meldung::keineGeschwindigkeit};
    if (vorgabe.aB <= 0.0)
        return {Meldung::keineBremsverzoegerung};

    Gegnerdaten g{vGErrechnet != 0 ? 0.0 : OhneRest(vG / kKmhProMs), aGErrechnet != 0 ? 0.0 : OhneRest(aG),
                  OhneRest(sFB), OhneRest(sFR)};
    VermKonflikt k;
    k.richtung = static_cast<VermRichtung>(richtung);
    k.art = static_cast<VermKenngroesse>(art);
    Meldungen meldungen;
    std::optional<Meldung> vonGegner;
    if (k.richtung == VermRichtung::entgegen && g.a < 0.0)
        return {Meldung::gegnerBeschleunigt};
    if (k.richtung == VermRichtung::quer) {
        if (k.art == VermKenngroesse::zeitlich && g.a == 0.0 && g.v == 0.0) {
            richtung = static_cast<std::int64_t>(VermRichtung::entgegen);
            return {Meldung::gegnerSteht};
        }
        vonGegner = ErgaenzeQuer(g, k.art);
    } else {
        vonGegner = ErgaenzeLaengs(g, k.richtung);
    }
    if (vonGegner) {
        meldungen.push_back(*vonGegner);
        if (IstFatal(*vonGegner))
            return meldungen;
    }
    k.sRK = OhneRest(sRK);
    k.tRK = OhneRest(tRK);
    k.sFB = g.sFB;
    k.xV = OhneRest(xV);
    k.gegner = {g.v, g.a};
    k.tRaeumen = g.tRaeumen;

    const VermFahrt fahrt(vorgabe);
    const double gegnerHalt = k.gegner.Haltezeit();
    const std::array derived{
        fahrt.Haltezeit(), fahrt.Halteweg(), g.sFB, std::abs(g.a), g.v, std::isinf(gegnerHalt) ? 0.0 : gegnerHalt};
    if (!std::all_of(derived.begin(), derived.end(), [](double q) { return q <= kGrenzeDerFahrt; }))
        return {Meldung::unendlich};

    const bool vermieden = VermBedingungen(k, fahrt, vorgabe.v).Vermieden(fahrt, k);
    bool geraeumt = false;
    bool beruehrt = true;
    double ende = 0.0;
    if (k.richtung == VermRichtung::quer) {
        if (fahrt.Halteweg() - k.Sperrweg() > kVermNull) {
            geraeumt = !std::isinf(k.tRaeumen) && fahrt.Weg(k.Freizeit()) - k.Sperrweg() < -kVermNull;
            ende = geraeumt ? 0.0 : VermErreicht(fahrt, k.Sperrweg()).geschw;
        }
        if (geraeumt)
            meldungen.push_back(Meldung::gegnerHatGeraeumt);
    } else if (!vermieden) {
        const std::optional<VermAnkunft> treffen = VermTrifft(fahrt, k);
        beruehrt = treffen.has_value() || k.richtung == VermRichtung::entgegen;
        ende = (treffen ? *treffen : VermErreicht(fahrt, k.Sperrweg())).geschw;
    }

    const VermSchritte geschw(VermGroesse::hoechstgeschw, vorgabe, k);
    const VermSchritte punkt(VermGroesse::reaktionspunkt, vorgabe, k);
    const VermSchritte verz(VermGroesse::verzoegerung, vorgabe, k);
    const VermSchritte::Ende beiGeschw = geschw.Suche();
    const VermSchritte::Ende beiPunkt = punkt.Suche();
    const VermSchritte::Ende beiVerz = verz.Suche();
    if (!beiGeschw.bestimmt || !beiPunkt.bestimmt || !beiVerz.bestimmt)
        meldungen.push_back(Meldung::keinGrenzwert);

    vE = ende * kKmhProMs;
    vHoechst = beiGeschw.schritt == 0 ? vZ : geschw.Wert(beiGeschw.schritt) * kKmhProMs;
    const VermKonflikt amPunkt = k.Frueher(punkt.Vorverlegung(beiPunkt.schritt), vorgabe.v);
    sReakt = amPunkt.sRK;
    tReakt = amPunkt.tRK;
    aGrenz = verz.Wert(beiVerz.schritt);
    hoechstBestimmt = beiGeschw.bestimmt ? 1 : 0;
    reaktBestimmt = beiPunkt.bestimmt ? 1 : 0;
    grenzBestimmt = beiVerz.bestimmt ? 1 : 0;
    zeitlichGeraeumt = geraeumt ? 1 : 0;
    ohneBeruehrung = beruehrt ? 0 : 1;
    vorzeichen = vermieden ? -1 : 1;

    const double bisSchwelle = vorgabe.tR + vorgabe.tS;
    sR = fahrt.Weg(vorgabe.tR);
    vR = fahrt.Geschw(vorgabe.tR) * kKmhProMs;
    vRt = std::max(actual + vorgabe.tR * vorgabe.aR, 0.0) * kKmhProMs;
    sS = fahrt.Weg(bisSchwelle) - sR;
    vS = fahrt.Geschw(bisSchwelle) * kKmhProMs;
    if (g.aErrechnet || aGErrechnet != 0)
        aG = g.a;
    if (g.vErrechnet || vGErrechnet != 0)
        vG = g.v * kKmhProMs;
    aGErrechnet = g.aErrechnet ? 1 : 0;
    vGErrechnet = g.vErrechnet ? 1 : 0;
    sFB = g.sFB;
    tG = g.t;
    m_stand = Stand{vorgabe, k};
    berechnet = 1;
    return meldungen;
}

void CVermDat::Eingegeben(const void* feld)
{
    if (feld == &aG)
        aGErrechnet = 0;
    if (feld == &vG)
        vGErrechnet = 0;
}

CVermDat::Befund CVermDat::Beurteile() const
{
    if (!m_stand)
        return Befund::keiner;
    if (vorzeichen < 0)
        return zeitlichGeraeumt != 0 ? Befund::geraeumt : Befund::vermieden;
    if (zeitlichGeraeumt != 0)
        return Befund::nurGeraeumt;
    if (ohneBeruehrung != 0)
        return Befund::ohneAnhalten;
    return vE > 0.0 ? Befund::kollision : Befund::stehtBeiKontakt;
}

CVermDat::Variante CVermDat::GibVariante(std::int64_t nummer) const
{
    Variante variante{m_stand ? m_stand->vorgabe : VermVorgabe{}, 0.0};
    if (nummer == mitHoechster)
        variante.vorgabe.v = vHoechst / kKmhProMs;
    else if (nummer == mitReaktionspunkt)
        variante.vorverlegung = m_stand ? tReakt - m_stand->konflikt.tRK : 0.0;
    else if (nummer == mitVerzoegerung)
        variante.vorgabe.aB = aGrenz;
    return variante;
}

double CVermDat::Fahrtende(const Variante& variante) const
{
    const VermFahrt fahrt(variante.vorgabe);
    if (!m_stand)
        return 0.0;
    const VermKonflikt k = m_stand->konflikt.Frueher(variante.vorverlegung, variante.vorgabe.v);
    const bool geraeumt = k.richtung == VermRichtung::quer && !std::isinf(k.tRaeumen) &&
                          fahrt.Weg(k.Freizeit()) - k.Sperrweg() < -kVermNull;
    if (geraeumt || VermBedingungen(k, fahrt, variante.vorgabe.v).Vermieden(fahrt, k))
        return fahrt.Haltezeit();
    const std::optional<VermAnkunft> treffen = k.richtung == VermRichtung::quer ? std::nullopt : VermTrifft(fahrt, k);
    return (treffen ? *treffen : VermErreicht(fahrt, k.Sperrweg())).zeit;
}
