// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CAbDaten.h"

#include "host/CKfzDaten.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <array>
#include <cmath>

using abbiegen::Ende;
using abbiegen::Fahrt;
using abbiegen::kGerade;
using abbiegen::kZeitschritt;
using abbiegen::Vorgabe;

namespace
{

/// Magnitudes below this are 0.
constexpr double kNull = 1e-9;
/// Speeds that differ by less (km/h) are one.
constexpr double kGleicheGeschw = 0.005;
constexpr double kGradProRad = 180.0 / kPi;

/// Lengths that stand for missing ones, m.
constexpr double kStandardlaenge = 4.0;
constexpr double kStandardradstand = 2.3;
constexpr double kStandardueberhang = 0.9;
constexpr double kStandardbreite = 1.8;
constexpr double kGroessteLaenge = 1000.0;

/// Stored points: one path in this many metres; as many as this are too many.
constexpr double kPunktweg = 200.0;
constexpr std::size_t kMaxPunkte = 500;

// The search for the moment when braking or steering begins.
constexpr int kMaxLaeufe = 200;
/// Steps of all runs of one search together.
constexpr std::size_t kMaxSuchschritte = 20'000'000;
constexpr double kSteht = 0.02;        ///< m/s
constexpr double kMindestfahrt = 0.01; ///< s, a shorter one is no drive that stopped
/// Yaw (rad) that a run which is to end straight at its aim leaves; more than the tolerance of the aim, so that it
/// does not end before the wheels are straight.
constexpr double kRestgier = 0.00075;
constexpr double kMaxRestgier = 0.001;
constexpr double kUnsichtbareZeit = 1e-4; ///< s
constexpr double kUnsichtbareGier = 1e-5; ///< rad
constexpr double kUnsichtbarerWeg = 1e-4; ///< m
// What is taken as the aim met.
constexpr double kZielGier = 0.2 / kGradProRad;
constexpr double kZielWeg = 0.05;
constexpr double kZielGeschw = 0.5 / kKmhProMs;
/// Speeds below this (m/s) at the end of a braking are its last moment before the standstill.
constexpr double kAusrollen = 0.1;
/// An end radius entered as straight is straight from here on, m.
constexpr double kFastGerade = 500.0;

double Genullt(double x)
{
    return std::abs(x) < kNull ? 0.0 : x;
}

/// A length that a vehicle can have, or what stands for it.
double Laenge(double length, double instead)
{
    return length > 0.0 && length <= kGroessteLaenge ? length : instead;
}

/// What is missing of the aim; as yaw (rad) or path (m).
double Fehlt(const Vorgabe& g, const Fahrt& f)
{
    return g.ziel - (g.bisWeg ? f.lage.s : f.lage.psi);
}

bool StehtVorDemZiel(const Fahrt& f)
{
    return f.ende == Ende::stillstand && f.lage.t > kMindestfahrt;
}

bool GeradeVorDemZiel(const Vorgabe& g, const Fahrt& f)
{
    return f.ende == Ende::gerade && !g.bisWeg && Fehlt(g, f) > kMaxRestgier;
}

/// Takes off what the last step is beyond the moment when the limit (also a standstill) is reached, and adds what a
/// braking lacks of its standstill.
void Vollende(const Vorgabe& g, Fahrt& f)
{
    const double tGrenze = g.verzug + g.ZeitBisGrenze();
    if (f.grenzeErreicht && f.lage.t - tGrenze < 2.0 * kZeitschritt) {
        abbiegen::FahreWeiter(g, f, tGrenze - f.lage.t, g.anfangsgeschw * g.verzug + g.WegBisGrenze() - f.lage.s);
        f.v = g.grenze;
    } else if (g.beschleunigung < 0.0 && g.grenze == 0.0 && f.v < kAusrollen && f.lage.t > g.verzug) {
        abbiegen::FahreWeiter(g, f, 0.0 - f.v / g.beschleunigung, 0.0 - f.v * f.v / (2.0 * g.beschleunigung));
        f.v = 0.0;
    }
}

/// Drives with the spacing of points that fits; at most three times.
Fahrt FahreMitPunkten(Vorgabe& g)
{
    g.punktteiler = std::ceil((g.bisWeg ? g.ziel : g.endradius * g.ziel) / kPunktweg);
    Fahrt f = abbiegen::Fahre(g);
    if (f.gespeichert < 2 && g.punktteiler >= 2.0) {
        g.punktteiler = 1.0;
        f = abbiegen::Fahre(g);
    }
    if (f.gespeichert >= kMaxPunkte) {
        g.punktteiler = std::ceil(g.punktteiler * static_cast<double>(f.gespeichert) * 500.0);
        f = abbiegen::Fahre(g);
    }
    return f;
}

} // namespace

namespace
{

using Dat = CAbDaten;

constexpr UINT kSeiten[] = {IDC_ABVOR_LINKS, IDC_ABVOR_RECHTS};
constexpr UINT kRichtungen[] = {IDC_ABVOR_VORWAERTS, IDC_ABVOR_RUECKWAERTS};

constexpr SpinnerRange kRadiusschritt{0, 100000, 0.5};

constexpr NumberRow<Dat> kZahlen[] = {
    {"fahrzeug", At<&Dat::fahrzeug>},
    {"phase", At<&Dat::phase>},
    {kSeiten, "lenkseite", At<&Dat::lenkseite>, "Seite"},
    {kRichtungen, "rueckwaerts", At<&Dat::rueckwaerts>, "Richtung"},
    {"seite", At<&Dat::seite>},
    {IDC_ABVOR_ANFANGSRADIUS,
     "anfangsradius",
     At<&Dat::anfangsradius>,
     units::m,
     {0, 100000},
     2,
     FieldRole::input,
     {.spinner = kRadiusschritt}},
    {IDC_ABVOR_MINDESTRADIUS,
     "mindestradius",
     At<&Dat::mindestradius>,
     units::m,
     {0, 100000},
     2,
     FieldRole::input,
     {.label = "kleinster Endradius", .spinner = kRadiusschritt}},
    {IDC_ABVOR_ENDRADIUS,
     "endradius",
     At<&Dat::endradius>,
     units::m,
     {0, 100000},
     2,
     FieldRole::input,
     {.spinner = kRadiusschritt}},
    {IDC_ABVOR_LENKZEIT, "lenkzeit", At<&Dat::lenkzeit>, units::s, {0, 100}, 2, FieldRole::input},
    {IDC_ABVOR_LENKRADWINKEL,
     "lenkradwinkel",
     At<&Dat::lenkradwinkel>,
     units::degree,
     {-5000, 5000},
     0,
     FieldRole::result,
     {.label = "Lenkrad-Winkel"}},
    {IDC_ABVOR_GIERZIEL, "gierziel", At<&Dat::gierziel>, units::degree, {-500, 500}, 1, FieldRole::input},
    {IDC_ABVOR_ANFANGSGESCHW, "anfangsgeschw", At<&Dat::anfangsgeschw>, units::kmh, {-50, 300}, 2, FieldRole::input},
    {IDC_ABVOR_BESCHLEUNIGUNG, "beschleunigung", At<&Dat::beschleunigung>, units::ms2, {-20, 90}, 2, FieldRole::input},
    {IDC_ABVOR_GRENZGESCHW, "grenzgeschw", At<&Dat::grenzgeschw>, units::kmh, {-50, 300}, 2, FieldRole::input},
    {IDC_ABVOR_WEG, "weg", At<&Dat::weg>, units::m, {-1000, 1000}, 2, FieldRole::input},
    {"wegGegeben", At<&Dat::wegGegeben>},
    {IDC_ABVOR_ZEIT, "zeit", At<&Dat::zeit>, units::s, {0, 1000}, 2, FieldRole::result},
    {IDC_ABVOR_ENDGESCHW, "endgeschw", At<&Dat::endgeschw>, units::kmh, {-300, 300}, 2, FieldRole::result},
    {IDC_ABVOR_GIERWINKEL, "gierwinkel", At<&Dat::gierwinkel>, units::degree, {0, 500}, 1, FieldRole::result},
    {IDC_ABVOR_ERREICHTER_RADIUS,
     "erreichterRadius",
     At<&Dat::erreichterRadius>,
     units::m,
     {0, 100000},
     2,
     FieldRole::result},
    {IDC_ABVOR_QUERBESCHL,
     "querbeschleunigung",
     At<&Dat::querbeschleunigung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_ABVOR_SCHWIMMWINKEL,
     "schwimmwinkel",
     At<&Dat::schwimmwinkel>,
     units::degree,
     {-180, 180},
     1,
     FieldRole::result},
    {IDC_ABVOR_VERSATZ_FRONT, "versatzFront", At<&Dat::versatzFront>, units::m, {-1000, 1000}, 2, FieldRole::result},
    {IDC_ABVOR_VERSATZ_HECK,
     "versatzHeck",
     At<&Dat::versatzHeck>,
     units::m,
     {-1000, 1000},
     2,
     FieldRole::result,
     {.label = "Seitenversatz Heck"}},
    {IDC_ABVOR_ZWISCHENVERSATZ,
     "zwischenversatz",
     At<&Dat::zwischenversatz>,
     units::m,
     {0, 100},
     2,
     FieldRole::input,
     {.label = "Zwischenposition: Seitenversatz Front"}},
    {IDC_ABVOR_ZWISCHEN_HECK,
     "versatzHeckZwischen",
     At<&Dat::versatzHeckZwischen>,
     units::m,
     {-1000, 1000},
     2,
     FieldRole::result,
     {.label = "Zwischenposition: Seitenversatz Heck"}},
    {IDC_ABVOR_ZWISCHEN_GIER,
     "gierZwischen",
     At<&Dat::gierZwischen>,
     units::degree,
     {0, 500},
     1,
     FieldRole::result,
     {.label = "Zwischenposition: Gierwinkel"}},
    {IDC_ABVOR_ZWISCHEN_WEG,
     "wegZwischen",
     At<&Dat::wegZwischen>,
     units::m,
     {-1000, 1000},
     2,
     FieldRole::result,
     {.label = "Zwischenposition: Weg"}},
    {IDC_ABVOR_ZWISCHEN_ZEIT,
     "zeitZwischen",
     At<&Dat::zeitZwischen>,
     units::s,
     {0, 1000},
     2,
     FieldRole::result,
     {.label = "Zwischenposition: Zeit"}},
    {IDC_ABVOR_WEG_BIS_ENDE,
     "wegBisEnde",
     At<&Dat::wegBisEnde>,
     units::m,
     {-1000, 1000},
     2,
     FieldRole::result,
     {.label = "Weg bis Ende"}},
    {IDC_ABVOR_ZEIT_BIS_ENDE,
     "zeitBisEnde",
     At<&Dat::zeitBisEnde>,
     units::s,
     {0, 1000},
     2,
     FieldRole::result,
     {.label = "Zeit bis Ende"}},
    {"berechnet", At<&Dat::berechnet>},
};

} // namespace

RecordFields CAbDaten::Felder()
{
    return Describe(*this, kZahlen);
}

void CAbDaten::Loeschen()
{
    LoescheEingaben();
    zwischenversatz = 0.0;
    FrageErneut();
}

void CAbDaten::LoescheEingaben()
{
    // What the vehicle and the user's idea of the intermediate position give outlives the choice of a phase.
    const double kleinster = mindestradius;
    const double versatz = zwischenversatz;
    ClearNumbers(Felder());
    mindestradius = kleinster;
    zwischenversatz = versatz;
    rueckwaerts = 0;
    wegGegeben = 0;
    m_lauf.reset();
    ZeigeSeite();
}

void CAbDaten::LoescheErgebnisse()
{
    const double winkel = lenkradwinkel; // follows the radii alone
    for (const RecordField& field : Felder())
        if (field.spec->role == FieldRole::result)
            *std::get<double*>(field.value) = 0.0;
    lenkradwinkel = winkel;
    m_lauf.reset();
}

void CAbDaten::LeseFahrzeug()
{
    const CKfzDaten leer;
    const CKfzDaten& kfz = IstFahrzeug() ? KfzDat(static_cast<std::size_t>(fahrzeug)) : leer;
    masse.laenge = Laenge(kfz.length, kStandardlaenge);
    masse.radstand = Laenge(kfz.wheelbase, kStandardradstand);
    masse.spurweite = Laenge(kfz.track, 0.0);
    masse.bisFront = masse.radstand + Laenge(kfz.frontOverhang, kStandardueberhang);
    masse.breite = Laenge(kfz.width, std::max(masse.spurweite, kStandardbreite));
    lenkuebersetzung = std::abs(kfz.steeringRatio) <= kGroessteLaenge ? kfz.steeringRatio : 0.0;
    const double wendekreis = Laenge(2.0 * kfz.turningCircleExtra + kfz.turningCircle, 0.0);

    // Rmin = √((D/2)² − (e_f + e_0)²) − b, by the outer front corner on the turning circle
    const double radikand = wendekreis / 2.0 * (wendekreis / 2.0) - masse.bisFront * masse.bisFront;
    mindestradius = radikand > 0.0 ? std::max(0.0, std::sqrt(radikand) - masse.spurweite) : 0.0;
}

bool CAbDaten::FehlenMasse() const
{
    return IstFahrzeug() && (Laenge(KfzDat(static_cast<std::size_t>(fahrzeug)).length, 0.0) == 0.0 ||
                             Laenge(KfzDat(static_cast<std::size_t>(fahrzeug)).wheelbase, 0.0) == 0.0);
}

void CAbDaten::ErgaenzeMasse()
{
    const auto index = static_cast<std::size_t>(fahrzeug);
    CKfzDaten kfz = KfzDat(index);
    kfz.length = Laenge(kfz.length, kStandardlaenge);
    kfz.wheelbase = Laenge(kfz.wheelbase, kStandardradstand);
    kfz.frontOverhang = Laenge(kfz.frontOverhang, kStandardueberhang);
    kfz.Uebertragen(m_data, index, m_parent, 0);
    LeseFahrzeug();
}

void CAbDaten::BerechneLenkradwinkel()
{
    // i·(δ1 − δ0), each by Ackermann's condition on the bicycle model
    const double delta0 = anfangsradius > 0.0 ? abbiegen::Lenkwinkel(masse, anfangsradius) : 0.0;
    const double delta1 = endradius > 0.0 ? abbiegen::Lenkwinkel(masse, endradius) : 0.0;
    lenkradwinkel = lenkuebersetzung * (delta1 - delta0) * kGradProRad;
}

void CAbDaten::ZeigeSeite()
{
    lenkseite = (seite == 0) != (rueckwaerts != 0) ? 0 : 1;
}

void CAbDaten::RadiusGeaendert()
{
    BerechneLenkradwinkel();
    if (endradius > 0.0)
        antwort1344 = 7;
}

void CAbDaten::GierzielGeaendert()
{
    wegGegeben = gierziel == 0.0 && weg != 0.0 ? 1 : 0;
}

void CAbDaten::WegGeaendert()
{
    wegGegeben = weg != 0.0 ? 1 : 0;
}

void CAbDaten::FrageErneut()
{
    frage1342 = frage1344 = 1;
    antwort1342 = antwort1344 = 7;
}

CAbDaten::Richtung CAbDaten::FahrtRichtung() const
{
    const double gewaehlt = rueckwaerts != 0 ? -1.0 : 1.0;
    const bool gegen = anfangsgeschw < 0.0 || (anfangsgeschw == 0.0 && beschleunigung < 0.0);
    return {gegen ? -gewaehlt : gewaehlt, gegen ? -1.0 : 1.0};
}

/// Speeds and acceleration along the travel.
std::optional<CAbDaten::Ausgang> CAbDaten::Pruefe(double vA, double a, double vG) const
{
    if (anfangsradius <= 0.0 && endradius <= 0.0)
        return Ausgang::keinRadius;
    if (vA == 0.0 && a == 0.0)
        return Ausgang::keineBewegung;
    if (lenkzeit <= 0.0 && endradius <= 0.0)
        return Ausgang::keinEndradius;
    if (a < 0.0 && vG > vA)
        return Ausgang::grenzeZuHoch;
    if (a > 0.0 && vG != 0.0 && vG < vA)
        return Ausgang::grenzeZuNiedrig;
    if (gierziel == 0.0 && weg == 0.0)
        return Ausgang::keinZiel;
    return std::nullopt;
}

CAbDaten::Ausgang CAbDaten::Rechnen(const Antwort& antwort)
{
    LoescheErgebnisse();
    for (double* input :
         {&anfangsradius, &endradius, &lenkzeit, &gierziel, &anfangsgeschw, &beschleunigung, &grenzgeschw, &weg})
        *input = Genullt(*input);
    zwischenversatz = std::max(0.0, zwischenversatz);

    const Richtung richtung = FahrtRichtung();
    const double a = richtung.anzeige * beschleunigung + 0.0; // + 0.0: no negative zero
    double vA = richtung.anzeige * anfangsgeschw + 0.0;
    const double vG = richtung.anzeige * grenzgeschw + 0.0;
    if (vG != 0.0 && std::abs(vA - vG) < kGleicheGeschw)
        vA = vG;
    if (const auto fehler = Pruefe(vA, a, vG))
        return *fehler;

    Lauf lauf;
    lauf.richtung = richtung.fahrt;
    Vorgabe& g = lauf.vorgabe;
    g.fahrzeug = masse;
    g.vorwaerts = richtung.fahrt > 0.0;
    g.anfangsradius = anfangsradius > 0.0 ? anfangsradius : kGerade;
    g.endradius = endradius > 0.0 ? endradius : kGerade;
    g.stellzeit = std::max(0.0, lenkzeit);
    g.anfangsgeschw = vA / kKmhProMs;
    g.beschleunigung = a;
    if (a < 0.0)
        g.grenze = std::max(0.0, vG) / kKmhProMs;
    else if (vG > 0.0)
        g.grenze = vG / kKmhProMs;
    g.bisWeg = BisWeg();
    g.ziel = g.bisWeg ? std::abs(weg) : std::abs(gierziel) / kGradProRad;
    g.zwischenversatz = zwischenversatz;

    const Ausgang ausgang = FindeLauf(lauf, antwort);
    if (ausgang != Ausgang::berechnet)
        return ausgang;
    if (lauf.fahrt.ende == Ende::stillstand && !StehtVorDemZiel(lauf.fahrt))
        return Ausgang::keineBewegung;
    if (g.zwischenversatz > std::abs(lauf.fahrt.frontversatz)) {
        zwischenversatz = g.zwischenversatz = std::abs(lauf.fahrt.frontversatz);
        lauf.fahrt = abbiegen::Fahre(g);
    }
    Vollende(g, lauf.fahrt);
    Zeige(lauf, richtung.anzeige);

    const std::array results{gierwinkel, erreichterRadius, querbeschleunigung, schwimmwinkel, zeit,
                             endgeschw,  versatzFront,     versatzHeck,        wegZwischen,   wegBisEnde};
    if (!std::all_of(results.begin(), results.end(), [](double x) { return std::isfinite(x); })) {
        LoescheErgebnisse();
        return Ausgang::unendlich;
    }
    m_lauf = std::move(lauf);
    berechnet = 1;
    return Ausgang::berechnet;
}

CAbDaten::Ausgang CAbDaten::FindeLauf(Lauf& lauf, const Antwort& antwort)
{
    const auto frage = [&](Frage welche, std::int32_t& offen, std::int32_t& gegeben) {
        if (offen != 0) {
            offen = 0;
            gegeben = antwort && antwort(welche) ? 6 : 7;
        }
        return gegeben == 6;
    };
    Vorgabe& g = lauf.vorgabe;
    Fahrt& f = lauf.fahrt;
    std::size_t schritte = 0;
    bool spaeterBremsen = false;
    bool spaeterLenken = false;
    f = FahreMitPunkten(g);
    for (int n = 1; n < kMaxLaeufe; ++n) {
        if (f.ende == Ende::zuLang)
            return Ausgang::zuLang;
        if (f.schritte == 0)
            return Ausgang::keinZiel;
        const double zaehler = static_cast<double>(n);
        bool geaendert = false;
        if (StehtVorDemZiel(f) && frage(Frage::anhaltenAmZiel, frage1342, antwort1342)) {
            // Start braking later by the time that the missing path takes.
            spaeterBremsen = true;
            const double radius = std::min(g.endradius < kGerade ? g.endradius : g.anfangsradius, f.radius);
            const double fehlt = Fehlt(g, f) * (g.bisWeg ? 1.0 : abbiegen::Mittenradius(g.fahrzeug, radius));
            g.verzug += (n <= 10 ? 1.0 / zaehler : 0.1) * fehlt / (f.v + g.anfangsgeschw);
            geaendert = true;
        } else if (GeradeVorDemZiel(g, f) && frage(Frage::lenkenBisZumZiel, frage1344, antwort1344)) {
            // Start steering later by the time that the missing yaw takes on the initial radius.
            spaeterLenken = true;
            const double fehlt = (Fehlt(g, f) - kRestgier) * abbiegen::Mittenradius(g.fahrzeug, g.anfangsradius);
            g.lenkbeginn += fehlt / (f.v + g.anfangsgeschw);
            geaendert = true;
        } else if (spaeterBremsen && f.ende != Ende::stillstand && f.v >= kSteht) {
            // Brake earlier again: the speed that is left tells by how much.
            const double q = -2.0 / zaehler * f.v * f.v / (g.beschleunigung * g.anfangsgeschw);
            g.verzug = std::min(g.verzug, f.lage.t);
            if (g.verzug <= q)
                continue; // as the count of runs grows, q becomes smaller
            g.verzug -= q;
            geaendert = true;
        }
        if (!geaendert)
            break;
        if (!std::isfinite(g.verzug) || !std::isfinite(g.lenkbeginn))
            return Ausgang::unendlich;
        const Fahrt vorher = std::move(f);
        f = abbiegen::FahreSuchend(g);
        schritte += f.schritte;
        if (schritte > kMaxSuchschritte)
            return Ausgang::nichtKonvergiert;
        if (std::abs(f.lage.t - vorher.lage.t) < kUnsichtbareZeit &&
            std::abs(f.lage.psi - vorher.lage.psi) < kUnsichtbareGier &&
            std::abs(f.lage.s - vorher.lage.s) < kUnsichtbarerWeg)
            break;
    }
    if (spaeterBremsen || spaeterLenken) {
        const bool amZiel = Fehlt(g, f) <= (g.bisWeg ? kZielWeg : kZielGier);
        if (!amZiel || (spaeterBremsen && f.v > kZielGeschw))
            return Ausgang::nichtKonvergiert;
    }
    if (spaeterBremsen || spaeterLenken)
        f = FahreMitPunkten(g);
    return Ausgang::berechnet;
}

/// Angle between the vehicle and the motion of its centre, °; positive to the left.
double CAbDaten::Schwimmwinkel(double radius) const
{
    const double hinterachse = radius + masse.HalbeSpur();
    double winkel = radius >= kGerade ? 0.0 : std::atan2(masse.radstand / 2.0, hinterachse) * kGradProRad;
    if (FahrtRichtung().fahrt < 0.0)
        winkel = 180.0 - winkel;
    return seite == 1 ? 0.0 - winkel : winkel;
}

void CAbDaten::Zeige(const Lauf& lauf, double anzeige)
{
    const Fahrt& f = lauf.fahrt;
    const Vorgabe& g = lauf.vorgabe;
    const bool nachGeradeaus =
        g.endradius >= kGerade && (f.radius >= kGerade || (g.lenkbeginn > 0.0 && f.radius > kFastGerade));
    const double radius = nachGeradeaus ? kGerade : f.radius;
    erreichterRadius = radius >= kGerade ? 0.0 : radius;
    gierwinkel = f.lage.psi * kGradProRad;
    querbeschleunigung = f.querMax;
    schwimmwinkel = Schwimmwinkel(radius);
    zeit = f.lage.t;
    endgeschw = anzeige * f.v * kKmhProMs + 0.0;
    versatzFront = f.frontversatz;
    versatzHeck = f.frontversatz - std::sin(f.lage.psi) * masse.laenge;
    wegZwischen = anzeige * f.zwischen.s + 0.0;
    zeitZwischen = f.zwischen.t;
    wegBisEnde = anzeige * (f.lage.s - f.zwischen.s) + 0.0;
    zeitBisEnde = f.lage.t - f.zwischen.t;
    gierZwischen = f.zwischen.psi * kGradProRad;
    versatzHeckZwischen = f.frontversatzZwischen - std::sin(f.zwischen.psi) * masse.laenge;
}

bool CAbDaten::IstZuEng() const
{
    const auto zuEng = [&](double radius) { return radius > 0.0 && radius < mindestradius; };
    return zuEng(endradius) || (lenkzeit > 0.0 && zuEng(anfangsradius));
}

bool CAbDaten::ZielVerfehlt() const
{
    if (!m_lauf)
        return false;
    const Vorgabe& g = m_lauf->vorgabe;
    return Fehlt(g, m_lauf->fahrt) > (g.bisWeg ? kZielWeg : kZielGier);
}
