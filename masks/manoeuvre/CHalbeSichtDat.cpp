// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CHalbeSichtDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "host/Quadratgl.h"
#include "host/RuvCfg.h"
#include "masks/dynamics/Phasenfolge.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <vector>

namespace
{

/// Magnitudes below this are zero.
constexpr double kNull = 1e-9;
/// Speeds (m/s) and times (s) down to this below zero are rounding.
constexpr double kRundung = 1e-9;

/// One vehicle in SI units. Its deceleration rises linearly to `verz` within the threshold time.
struct Bewegung {
    double vK;
    double verz;
    double tS;
    double tR;
    double v = 0.0;
    double weg = 0.0;

    explicit Bewegung(const CHalbeSichtDat::Teilnehmer& t)
        : vK(t.kollGeschw / kKmhProMs), verz(t.verzoegerung), tS(t.schwelldauer), tR(t.reaktionsdauer)
    {
    }

    /// The reaction lasts so much longer when the deceleration comes at once, after half the threshold time.
    double Verlust() const { return tR + tS / 2.0; }
    double Schwellkorrektur() const { return verz * tS * tS / 24.0; }
    // t = tr + ts/2 + (v - vk)/a
    double Zeit() const { return Verlust() + (v - vK) / verz; }
    // S = v·(tr + ts/2) - a·ts²/24 + (v² - vk²)/(2a)
    double Weg() const { return v * Verlust() - Schwellkorrektur() + (v * v - vK * vK) / (2.0 * verz); }
    double Fehlbremsstrecke() const { return verz > 0.0 ? vK * vK / (2.0 * verz) : 0.0; }
};

/// The initial speed from a·v² + b·v + c = 0; nothing when there is no positive one.
std::optional<double> LoeseAnfangsgeschw(double a, double b, double c)
{
    if (std::abs(a) < kNull) {
        if (std::abs(b) < kNull)
            return std::nullopt;
        const double v = -c / b;
        return v < 0.0 ? std::nullopt : std::optional(v);
    }
    const double sign = a > 0.0 ? 1.0 : -1.0;
    double first = 0.0;
    double second = 0.0;
    int count = 0;
    Quadratgl(sign * a, sign * b, sign * c, first, second, count);
    if (count == 0)
        return std::nullopt;
    if (first > 0.0)
        return first;
    return second > 0.0 ? std::optional(second) : std::nullopt;
}

/// Both brake: S_A + S_B = SW with v_B = m·v_A + n, which makes the times equal.
bool BeideBremsen(Bewegung& a, Bewegung& b, double sicht, double& zeit)
{
    const double m = b.verz / a.verz;
    const double n = (a.Verlust() - b.Verlust()) * b.verz + b.vK - a.vK * m;
    const double quadrat = 1.0 / (2.0 * a.verz) + m * m / (2.0 * b.verz);
    const double linear = a.Verlust() + m * b.Verlust() + m * n / b.verz;
    const double konstant = n * b.Verlust() + n * n / (2.0 * b.verz) - a.Fehlbremsstrecke() - b.Fehlbremsstrecke() -
                            a.Schwellkorrektur() - b.Schwellkorrektur() - sicht;
    const std::optional<double> v = LoeseAnfangsgeschw(quadrat, linear, konstant);
    if (!v)
        return false;
    a.v = *v;
    b.v = m * a.v + n;
    a.weg = a.Weg();
    b.weg = b.Weg();
    zeit = a.Zeit();
    return true;
}

/// Only one brakes; the other drives on at its collision speed.
bool EinerBremst(Bewegung& bremst, Bewegung& faehrt, double sicht, double& zeit)
{
    const double quadrat = 1.0 / (2.0 * bremst.verz);
    const double linear = bremst.Verlust() + faehrt.vK / bremst.verz;
    const double konstant = faehrt.vK * (bremst.Verlust() - bremst.vK / bremst.verz) - bremst.Fehlbremsstrecke() -
                            bremst.Schwellkorrektur() - sicht;
    const std::optional<double> v = LoeseAnfangsgeschw(quadrat, linear, konstant);
    if (!v)
        return false;
    bremst.v = *v;
    faehrt.v = faehrt.vK;
    bremst.weg = bremst.Weg();
    zeit = bremst.Zeit();
    faehrt.weg = zeit * faehrt.vK;
    return true;
}

bool KeinerBremst(Bewegung& a, Bewegung& b, double sicht, double& zeit)
{
    const double summe = a.vK + b.vK;
    if (std::abs(summe) < kNull)
        return false;
    zeit = sicht / summe;
    a.v = a.vK;
    b.v = b.vK;
    a.weg = zeit * a.vK;
    b.weg = zeit * b.vK;
    return zeit >= 0.0;
}

// (a/2)·T² = (ts²/3 + tr·ts + tr²)·(a/2) + SW/2 with v = a·(T - tr - ts/2).
double Grenzgeschwindigkeit(const Bewegung& m, double sicht)
{
    const double halb = m.verz / 2.0;
    double first = 0.0;
    double second = 0.0;
    int count = 0;
    Quadratgl(halb, 0.0, -((m.tS * m.tS / 3.0 + m.tR * m.tS + m.tR * m.tR) * halb + sicht / 2.0), first, second, count);
    if (count == 0)
        return 0.0;
    const double bremsdauer = (first > 0.0 ? first : second) - m.tR - m.tS;
    return bremsdauer > 0.0 ? m.verz * (bremsdauer + m.tS / 2.0) : 0.0;
}

bool IstEingabeMoeglich(const CHalbeSichtDat::Teilnehmer& t)
{
    return t.verzoegerung >= 0.0 && t.schwelldauer >= 0.0 && t.reaktionsdauer >= 0.0;
}

void Zeige(CHalbeSichtDat::Teilnehmer& t, const Bewegung& m, double sicht, double zeit)
{
    t.anfangsgeschw = m.v == m.vK ? t.kollGeschw : m.v * kKmhProMs;
    t.gesamtweg = m.weg;
    t.fehlbremsstrecke = m.Fehlbremsstrecke();
    t.distanz = sicht / 2.0 - t.gesamtweg;
    t.anhalteweg = t.gesamtweg + t.fehlbremsstrecke;
    t.anhalteDifferenz = sicht / 2.0 - t.anhalteweg;
    t.grenzgeschw = Grenzgeschwindigkeit(m, sicht) * kKmhProMs;

    const bool bremst = t.Bremst();
    // Reaction tr·v, threshold v·ts - a·ts²/6 down to v - a·ts/2, and what is left of path and time.
    const double schwellEnd = bremst ? m.v - m.verz * m.tS / 2.0 : m.v;
    t.reaktionsweg = bremst ? m.tR * m.v : 0.0;
    t.schwellweg = bremst ? m.v * m.tS - m.verz * m.tS * m.tS / 6.0 : 0.0;
    t.schwellEndgeschw = schwellEnd * kKmhProMs;
    t.bremsweg = bremst ? (schwellEnd * schwellEnd - m.vK * m.vK) / (2.0 * m.verz) : 0.0;
    t.bremsdauer = bremst ? zeit - m.tR - m.tS : 0.0;
}

std::vector<Folgephase> Phasen(const CHalbeSichtDat::Teilnehmer& t, double zeit)
{
    std::vector<Folgephase> phasen;
    const auto add = [&](PhasenArt art, double vEnd, double vAnf, double dauer, double weg, double verz) {
        if (dauer > 0.0)
            phasen.push_back({art, vEnd, vAnf, dauer, weg, verz});
    };
    if (t.Bremst()) {
        add(PhasenArt::braking, t.kollGeschw, t.schwellEndgeschw, t.bremsdauer, t.bremsweg, t.verzoegerung);
        add(PhasenArt::threshold, t.schwellEndgeschw, t.anfangsgeschw, t.schwelldauer, t.schwellweg, t.verzoegerung);
        add(PhasenArt::reaction, t.anfangsgeschw, t.anfangsgeschw, t.reaktionsdauer, t.reaktionsweg, 0.0);
    } else {
        add(PhasenArt::constantSpeed, t.kollGeschw, t.anfangsgeschw, zeit, t.gesamtweg, 0.0);
    }
    return phasen;
}

/// As far as an entry goes that has no bound of its own.
constexpr double kUnbegrenzt = 1e6;

using Dat = CHalbeSichtDat;
using Teilnehmer = CHalbeSichtDat::Teilnehmer;

constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_HALBESICHT_SICHTWEITE,
     "sichtweite",
     At<&Dat::sichtweite>,
     units::m,
     {0, kUnbegrenzt},
     1,
     FieldRole::input,
     {.spinner = {0, 10000, 1.0}}},
    {IDC_HALBESICHT_SUMME,
     "summeKollGeschw",
     At<&Dat::summeKollGeschw>,
     units::kmh,
     {0, kUnbegrenzt},
     2,
     FieldRole::input,
     {.spinner = {0, 600, 1.0}}},
    {"fahrzeugA", At<&Dat::a, &Teilnehmer::fahrzeug>},
    {"phaseA", At<&Dat::a, &Teilnehmer::phase>},
    {IDC_HALBESICHT_A_KOLLGESCHW,
     "kollGeschwA",
     At<&Dat::a, &Teilnehmer::kollGeschw>,
     units::kmh,
     {0, kUnbegrenzt},
     2,
     FieldRole::input,
     {.spinner = {0, 300, 1.0}}},
    {IDC_HALBESICHT_A_VERZOEGERUNG,
     "verzoegerungA",
     At<&Dat::a, &Teilnehmer::verzoegerung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::input},
    {IDC_HALBESICHT_A_SCHWELLDAUER,
     "schwelldauerA",
     At<&Dat::a, &Teilnehmer::schwelldauer>,
     units::s,
     {0, 10},
     2,
     FieldRole::input},
    {IDC_HALBESICHT_A_REAKTIONSDAUER,
     "reaktionsdauerA",
     At<&Dat::a, &Teilnehmer::reaktionsdauer>,
     units::s,
     {0, 100},
     2,
     FieldRole::input},
    {IDC_HALBESICHT_A_ANFANGSGESCHW,
     "anfangsgeschwA",
     At<&Dat::a, &Teilnehmer::anfangsgeschw>,
     units::kmh,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_GESAMTWEG,
     "gesamtwegA",
     At<&Dat::a, &Teilnehmer::gesamtweg>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_DISTANZ,
     "distanzA",
     At<&Dat::a, &Teilnehmer::distanz>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_FEHLBREMSSTRECKE,
     "fehlbremsstreckeA",
     At<&Dat::a, &Teilnehmer::fehlbremsstrecke>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_ANHALTEWEG,
     "anhaltewegA",
     At<&Dat::a, &Teilnehmer::anhalteweg>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_DIFFERENZ,
     "anhalteDifferenzA",
     At<&Dat::a, &Teilnehmer::anhalteDifferenz>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_A_GRENZGESCHW,
     "grenzgeschwA",
     At<&Dat::a, &Teilnehmer::grenzgeschw>,
     units::kmh,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {"reaktionswegA", At<&Dat::a, &Teilnehmer::reaktionsweg>, units::m, FieldRole::internal},
    {"schwellwegA", At<&Dat::a, &Teilnehmer::schwellweg>, units::m, FieldRole::internal},
    {"schwellEndgeschwA", At<&Dat::a, &Teilnehmer::schwellEndgeschw>, units::kmh, FieldRole::internal},
    {"bremswegA", At<&Dat::a, &Teilnehmer::bremsweg>, units::m, FieldRole::internal},
    {"bremsdauerA", At<&Dat::a, &Teilnehmer::bremsdauer>, units::s, FieldRole::internal},
    {"fahrzeugB", At<&Dat::b, &Teilnehmer::fahrzeug>},
    {"phaseB", At<&Dat::b, &Teilnehmer::phase>},
    {IDC_HALBESICHT_B_KOLLGESCHW,
     "kollGeschwB",
     At<&Dat::b, &Teilnehmer::kollGeschw>,
     units::kmh,
     {0, kUnbegrenzt},
     2,
     FieldRole::input,
     {.spinner = {0, 300, 1.0}}},
    {IDC_HALBESICHT_B_VERZOEGERUNG,
     "verzoegerungB",
     At<&Dat::b, &Teilnehmer::verzoegerung>,
     units::ms2,
     {0, kUnbegrenzt},
     2,
     FieldRole::input,
     {.spinner = {0, 100, 0.1}}},
    {IDC_HALBESICHT_B_SCHWELLDAUER,
     "schwelldauerB",
     At<&Dat::b, &Teilnehmer::schwelldauer>,
     units::s,
     {0, 10},
     2,
     FieldRole::input},
    {IDC_HALBESICHT_B_REAKTIONSDAUER,
     "reaktionsdauerB",
     At<&Dat::b, &Teilnehmer::reaktionsdauer>,
     units::s,
     {0, 100},
     2,
     FieldRole::input},
    {IDC_HALBESICHT_B_ANFANGSGESCHW,
     "anfangsgeschwB",
     At<&Dat::b, &Teilnehmer::anfangsgeschw>,
     units::kmh,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_GESAMTWEG,
     "gesamtwegB",
     At<&Dat::b, &Teilnehmer::gesamtweg>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_DISTANZ,
     "distanzB",
     At<&Dat::b, &Teilnehmer::distanz>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_FEHLBREMSSTRECKE,
     "fehlbremsstreckeB",
     At<&Dat::b, &Teilnehmer::fehlbremsstrecke>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_ANHALTEWEG,
     "anhaltewegB",
     At<&Dat::b, &Teilnehmer::anhalteweg>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_DIFFERENZ,
     "anhalteDifferenzB",
     At<&Dat::b, &Teilnehmer::anhalteDifferenz>,
     units::m,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_HALBESICHT_B_GRENZGESCHW,
     "grenzgeschwB",
     At<&Dat::b, &Teilnehmer::grenzgeschw>,
     units::kmh,
     {-kUnbegrenzt, kUnbegrenzt},
     2,
     FieldRole::result},
    {"reaktionswegB", At<&Dat::b, &Teilnehmer::reaktionsweg>, units::m, FieldRole::internal},
    {"schwellwegB", At<&Dat::b, &Teilnehmer::schwellweg>, units::m, FieldRole::internal},
    {"schwellEndgeschwB", At<&Dat::b, &Teilnehmer::schwellEndgeschw>, units::kmh, FieldRole::internal},
    {"bremswegB", At<&Dat::b, &Teilnehmer::bremsweg>, units::m, FieldRole::internal},
    {"bremsdauerB", At<&Dat::b, &Teilnehmer::bremsdauer>, units::s, FieldRole::internal},
    {IDC_HALBESICHT_GESAMTZEIT, "gesamtzeit", At<&Dat::gesamtzeit>, units::s, {0, kUnbegrenzt}, 2, FieldRole::result},
    {"berechnet", At<&Dat::berechnet>},
    {"ergebnis", At<&Dat::ergebnis>},
};

} // namespace

RecordFields CHalbeSichtDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CHalbeSichtDat::Loeschen()
{
    ClearNumbers(Felder());
    for (Teilnehmer* seite : {&a, &b}) {
        seite->phase = 0;
        seite->schwelldauer = RuvCfg.defaultThresholdTime;
        seite->reaktionsdauer = RuvCfg.defaultReactionTime;
    }
    ergebnis = 0;
}

void CHalbeSichtDat::Oeffne()
{
    berechnet = 0;
    Loeschen();
    constexpr auto kAnzahl = static_cast<std::int64_t>(CRuvData::kFahrzeuge);
    std::vector<std::int64_t> markiert;
    for (std::int64_t i = 0; i < kAnzahl; ++i)
        if (WZDat(static_cast<std::size_t>(i)).marke == CWegZeitDat::kMarkeHalbeSicht)
            markiert.push_back(i);
    a.fahrzeug = markiert.empty() ? 0 : markiert[0];
    b.fahrzeug = markiert.size() > 1 ? markiert[1] : a.fahrzeug == 0 ? 1 : 0;
    // The other one is a vehicle of the case if there is one.
    if (markiert.size() == 1)
        for (std::int64_t i = kAnzahl; i-- > 0;)
            if (i != a.fahrzeug && m_data.IsFzgValid(i))
                b.fahrzeug = i;
    FahrzeugGewechselt(a);
    FahrzeugGewechselt(b);
}

void CHalbeSichtDat::FahrzeugGewechselt(Teilnehmer& seite)
{
    const bool vorhanden = m_data.IsFzgValid(seite.fahrzeug);
    seite.phase = vorhanden ? static_cast<std::int64_t>(WZDat(static_cast<std::size_t>(seite.fahrzeug)).selected) : 0;
    LeseSpalte(seite);
}

void CHalbeSichtDat::LeseSpalte(Teilnehmer& seite)
{
    berechnet = 0;
    if (!m_data.IsFzgValid(seite.fahrzeug) || seite.phase < 0)
        return;
    const CWegZeitDat& data = WZDat(static_cast<std::size_t>(seite.fahrzeug));
    const CWegZeitSpalte leer;
    const auto spalte = [&](std::size_t index) -> const CWegZeitSpalte& {
        return index < CWegZeitDat::kSpalten ? data.spalten[index] : leer;
    };
    const auto c = static_cast<std::size_t>(seite.phase);
    const CWegZeitSpalte& bremsen = spalte(c);
    const bool ersteSpalte = c <= CWegZeitDat::kErsteSpalte || !spalte(c - 1).IsUsed();
    // What this calculation cannot mean, driving in reverse and getting faster, counts as nothing.
    seite.kollGeschw = std::max(ersteSpalte ? bremsen.vEnd : spalte(c - 1).vAnf, 0.0);
    seite.verzoegerung = std::max(bremsen.verz, 0.0);

    const bool schwellt = spalte(c + 1).art == PhasenArt::threshold;
    seite.schwelldauer = schwellt ? spalte(c + 1).zeit : bremsen.vAnf == 0.0 ? RuvCfg.defaultThresholdTime : 0.0;
    const CWegZeitSpalte& reaktion = spalte(schwellt ? c + 2 : c + 1);
    seite.reaktionsdauer = reaktion.art == PhasenArt::reaction ? reaktion.zeit : RuvCfg.defaultReactionTime;
}

void CHalbeSichtDat::KollGeschwGeaendert(const Teilnehmer& seite)
{
    Teilnehmer& andere = &seite == &a ? b : a;
    if (summeKollGeschw > 0.0)
        andere.kollGeschw = summeKollGeschw - seite.kollGeschw;
    else if (summeKollGeschw == 0.0 && a.kollGeschw != 0.0 && b.kollGeschw != 0.0)
        summeKollGeschw = a.kollGeschw + b.kollGeschw;
}

void CHalbeSichtDat::SummeGeaendert()
{
    if (!(summeKollGeschw > 0.0))
        return; // they are free of each other
    if (a.kollGeschw != 0.0)
        KollGeschwGeaendert(a);
    else if (b.kollGeschw != 0.0)
        KollGeschwGeaendert(b);
}

CHalbeSichtDat::Ausgang CHalbeSichtDat::Rechnen()
{
    ergebnis = 0;
    if (!(sichtweite >= 0.0 && IstEingabeMoeglich(a) && IstEingabeMoeglich(b)))
        return Ausgang::unmoeglich;
    Bewegung mA(a);
    Bewegung mB(b);
    double zeit = 0.0;
    const bool geloest =
        a.Bremst()   ? (b.Bremst() ? BeideBremsen(mA, mB, sichtweite, zeit) : EinerBremst(mA, mB, sichtweite, zeit))
        : b.Bremst() ? EinerBremst(mB, mA, sichtweite, zeit)
                     : KeinerBremst(mA, mB, sichtweite, zeit);
    if (!geloest)
        return Ausgang::keineLoesung;

    Teilnehmer neuA = a;
    Teilnehmer neuB = b;
    Zeige(neuA, mA, sichtweite, zeit);
    Zeige(neuB, mB, sichtweite, zeit);
    for (const Teilnehmer* t : {&neuA, &neuB})
        for (const double quantity : {t->anfangsgeschw, t->gesamtweg, t->anhalteweg, t->grenzgeschw, t->bremsweg,
                                      t->bremsdauer, t->schwellweg, t->reaktionsweg, t->schwellEndgeschw, zeit})
            if (!std::isfinite(quantity))
                return Ausgang::unmoeglich;
    a = neuA;
    b = neuB;
    gesamtzeit = zeit;
    ergebnis = 1;
    berechnet = 1;
    return Ausgang::berechnet;
}

CHalbeSichtDat::Vorbehalt CHalbeSichtDat::PruefeErgebnis() const
{
    Vorbehalt vorbehalt;
    if (ergebnis == 0)
        return vorbehalt;
    const std::array<const Teilnehmer*, 2> seiten{&a, &b};
    for (std::size_t i = 0; i < seiten.size(); ++i) {
        const Teilnehmer& t = *seiten[i];
        vorbehalt.bremstNicht[i] = !t.Bremst();
        vorbehalt.vorVollbremsung[i] = t.Bremst() && t.bremsdauer < -kRundung;
        vorbehalt.negativeGeschwindigkeit[i] = std::min(t.anfangsgeschw, t.kollGeschw) < -kRundung;
    }
    return vorbehalt;
}

CHalbeSichtDat::Uebertragung CHalbeSichtDat::Uebertragen()
{
    if (ergebnis == 0 || !PruefeErgebnis().SindUebertragbar())
        return Uebertragung::nichtBerechnet;
    if (!m_data.IsFzgValid(a.fahrzeug) || !m_data.IsFzgValid(b.fahrzeug) || a.fahrzeug == b.fahrzeug)
        return Uebertragung::keinFahrzeug;
    struct Folge {
        Teilnehmer* seite;
        std::vector<Folgephase> phasen;
    };
    const std::array<Folge, 2> folgen{{{&a, Phasen(a, gesamtzeit)}, {&b, Phasen(b, gesamtzeit)}}};
    for (const Folge& folge : folgen) {
        if (folge.phasen.empty())
            return Uebertragung::nichtBerechnet;
        const auto erste = static_cast<std::size_t>(ErsteSpalteDerFolge(folge.seite->phase));
        if (erste + folge.phasen.size() > CWegZeitDat::kSpalten)
            return Uebertragung::keinPlatz;
    }

    // The mark stays with these two alone.
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        const auto index = static_cast<std::int64_t>(i);
        if (index == a.fahrzeug || index == b.fahrzeug) {
            WZDat(i).marke = CWegZeitDat::kMarkeHalbeSicht;
        } else if (WZDat(i).marke == CWegZeitDat::kMarkeHalbeSicht) {
            WZDat(i).marke = 0;
            m_data.NotifyWZ(i);
        }
    }
    bool unveraendert = true;
    for (const Folge& folge : folgen) {
        UebertrageFolge(m_data, folge.seite->fahrzeug, folge.seite->phase, folge.phasen, std::nullopt, m_parent);
        folge.seite->phase = ErsteSpalteDerFolge(folge.seite->phase);
        const CWegZeitDat& daten = m_data.WZRechDat(static_cast<std::size_t>(folge.seite->fahrzeug));
        const auto befund = VergleicheFolge(folge.phasen, daten, static_cast<std::size_t>(folge.seite->phase));
        unveraendert = unveraendert && befund.ausgang == ::Uebertragung::erfolgt;
    }
    return unveraendert ? Uebertragung::erfolgt : Uebertragung::geaendert;
}
