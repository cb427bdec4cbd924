// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/CSpurVorDat.h"

#include "frame/Kinematics.h"
#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "masks/manoeuvre/SpurwechselPhasen.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Lengths of a vehicle that has none, m.
constexpr double kUeblicheLaenge = 4.0;
constexpr double kUeblicherRadstand = 2.3;
constexpr double kUeblichesVorne = 0.9;
/// A length above this is no vehicle's, m.
constexpr double kLaengstesFahrzeug = 100.0;
/// Offset of the front that the mask opens with, m.
constexpr double kZwischenFront = 0.5;

/// Magnitudes below this are zero.
constexpr double kNull = 1e-9;

constexpr int kMeisteNaeherungen = 1000;
/// From this one on a change of the length that grows ends the search soon.
constexpr int kErstePruefung = 5;
constexpr int kLetzteNaeherungen = 995;
/// A change of the length below this ends the search; above the second one at its end it has not converged, m.
constexpr double kGenau = 0.001;
constexpr double kUngenau = 0.01;
/// A lane change longer or wider than this is none, m.
constexpr double kLaengster = 1e6;

/// The decisive quarter point lies where the speed is higher: after three quarters of the path of a motion that gets
/// faster, after one quarter of one that does not. Twice that share stands in v² = v0² + 2·a·s.
constexpr double kSchneller = 1.5;
constexpr double kLangsamer = 0.5;
/// Share of the lateral acceleration the road's bend may take.
constexpr double kKurvenreserve = 1.1;

double Genullt(double value)
{
    return std::abs(value) < kNull ? 0.0 : value;
}

/// The motion as it is followed away from the end whose speed is known. SI units.
struct Vorgabe {
    double v;
    double beschl; // away from the known end
    double grenze; // 0 = none
    double verzug; // s
    double verzugsweg;
    double radius; // of the road, 0 = straight
    double versatz;
    double querbeschl;

    bool IstBegrenzt(double speed) const
    {
        return grenze != 0.0 && ((beschl > 0.0 && speed > grenze) || (beschl < 0.0 && speed < grenze));
    }
    /// What is left of the path for a change of speed. A delay longer than the lane change leaves nothing.
    double BeschleunigterWeg(double weg) const { return std::max(weg - verzugsweg, 0.0); }
    /// A vehicle that slows down to a limit does not stop.
    bool HaeltVor(double beschleunigterWeg) const
    {
        return grenze == 0.0 && v * v + 2.0 * beschl * beschleunigterWeg < 0.0;
    }
    /// The speed that the length is found with: that at the decisive quarter point. A vehicle that stops is followed
    /// from its stop instead.
    double MassgebendeGeschw(double beschleunigterWeg) const
    {
        if (HaeltVor(beschleunigterWeg))
            return std::sqrt(-kSchneller * beschl * beschleunigterWeg);
        const double anteil = beschl > 0.0 ? kSchneller : kLangsamer;
        const double speed = std::sqrt(std::max(v * v + anteil * beschl * beschleunigterWeg, 0.0));
        return IstBegrenzt(speed) ? grenze : speed;
    }
};

struct Naeherung {
    double laenge = 0.0; // 0: there is none
    double weg = 0.0;    // of the curve before the last step
    double v = 0.0;
    bool haelt = false;
    bool konvergiert = true;
};

Naeherung SucheLaenge(const Vorgabe& g)
{
    Naeherung n;
    n.laenge = g.versatz;
    double vorige = std::numeric_limits<double>::infinity();
    double aenderung = 0.0;
    for (int zaehler = 0; zaehler < kMeisteNaeherungen;) {
        double ueberschuss = 0.0;
        Wegintegral(g.versatz, n.laenge, n.weg, ueberschuss);
        const double beschleunigt = g.BeschleunigterWeg(n.weg);
        n.haelt = g.HaeltVor(beschleunigt);
        n.v = g.MassgebendeGeschw(beschleunigt);
        double laenge = 0.0;
        AusEinScheren(g.radius, g.versatz, n.v, g.querbeschl, laenge);
        if (!(laenge > 0.0 && laenge <= kLaengster)) {
            n.laenge = 0.0;
            return n;
        }
        aenderung = std::abs(laenge - n.laenge);
        n.laenge = laenge;
        // Shorter than its offset it goes on to the last step, which repeats itself once nothing changes.
        if (aenderung == 0.0 || (aenderung < kGenau && laenge > g.versatz))
            return n;
        const bool waechst = zaehler >= kErstePruefung && aenderung > vorige;
        zaehler = (waechst ? std::max(kLetzteNaeherungen, zaehler) : zaehler) + 1;
        vorige = aenderung;
    }
    n.konvergiert = aenderung <= kUngenau;
    return n;
}

/// The part in which the speed changes from v to vEnd: at a constant acceleration the mean speed counts.
Fahrabschnitt Beschleunigt(double v, double vEnd, double weg)
{
    return {weg > 0.0 ? weg / ((v + vEnd) / 2.0) : 0.0, weg, v, vEnd};
}

Fahrabschnitt Konstant(double v, double weg)
{
    return {weg > 0.0 ? weg / v : 0.0, weg, v, v};
}

/// From the known end on: delay, change of speed, the rest at the limit.
SpurwechselFahrt FahreAb(const Vorgabe& g, double weg)
{
    const Fahrabschnitt verzug =
        g.verzugsweg > weg ? Konstant(g.v, weg) : Fahrabschnitt{g.verzug, g.verzugsweg, g.v, g.v};
    const double rest = weg - verzug.weg;
    if (g.beschl == 0.0)
        return {{verzug, Konstant(g.v, 0.0), Konstant(g.v, rest)}};
    const double v = std::sqrt(std::max(g.v * g.v + 2.0 * g.beschl * rest, 0.0));
    if (!g.IstBegrenzt(v))
        return {{verzug, Beschleunigt(g.v, v, rest), Konstant(v, 0.0)}};
    const double bisGrenze = (g.grenze * g.grenze - g.v * g.v) / (2.0 * g.beschl);
    return {{verzug, Beschleunigt(g.v, g.grenze, bisGrenze), Konstant(g.grenze, rest - bisGrenze)}};
}

/// The same for a vehicle that would stop: from its stop on up to the known speed, at which it drives the rest and the
/// delay.
SpurwechselFahrt FahreAbHalt(const Vorgabe& g, double weg)
{
    const double bremsweg = g.grenze * g.grenze / (2.0 * g.beschl);
    return {{Beschleunigt(0.0, g.grenze, bremsweg), Konstant(g.grenze, weg - g.verzugsweg - bremsweg),
             Fahrabschnitt{g.verzug, g.verzugsweg, g.grenze, g.grenze}}};
}

bool IstFahrbar(const SpurwechselFahrt& fahrt)
{
    return std::all_of(
        fahrt.abschnitte.begin(), fahrt.abschnitte.end(),
        [](const Fahrabschnitt& a) {
            return std::isfinite(a.zeit) && std::isfinite(a.weg) && a.zeit >= 0.0 && a.weg >= 0.0 && a.vAnf >= 0.0 &&
                   a.vEnd >= 0.0;
        });
}

double InGrad(double angle)
{
    return angle * 180.0 / kPi;
}

/// As far as an entry goes that has no bound of its own.
constexpr double kUnbegrenzt = 1e6;

constexpr UINT kRichtung[] = {IDC_SPURVOR_VORWAERTS, IDC_SPURVOR_RUECKWAERTS};
constexpr UINT kBekannt[] = {IDC_SPURVOR_ANFANG, IDC_SPURVOR_ENDE};

using Dat = CSpurVorDat;

// The speed at the end that is not known is an input that the dialog write-protects.
constexpr NumberRow<Dat> kZahlen[] = {
    {"fahrzeug", At<&Dat::fahrzeug>},
    {"phase", At<&Dat::phase>},
    {kRichtung, "richtung", At<&Dat::richtung>, "Fahrtrichtung"},
    {kBekannt, "bekannt", At<&Dat::bekannt>, "konst. Geschw. am"},
    {IDC_SPURVOR_KURVENRADIUS,
     "kurvenradius",
     At<&Dat::kurvenradius>,
     units::m,
     {-1e6, 1e6},
     2,
     FieldRole::input,
     {.spinner = {-1e6, 1e6, 10.0}}},
    {IDC_SPURVOR_SEITENVERSATZ, "seitenversatz", At<&Dat::seitenversatz>, units::m, {0, 20}, 2, FieldRole::input},
    {IDC_SPURVOR_QUERBESCHL,
     "querbeschleunigung",
     At<&Dat::querbeschleunigung>,
     units::ms2,
     {-20, 90},
     2,
     FieldRole::input},
    {IDC_SPURVOR_ANFANGSGESCHW, "anfangsgeschw", At<&Dat::anfangsgeschw>, units::kmh, {0, 300}, 2, FieldRole::input},
    {IDC_SPURVOR_ENDGESCHW, "endgeschw", At<&Dat::endgeschw>, units::kmh, {0, 300}, 2, FieldRole::input},
    {IDC_SPURVOR_BESCHLEUNIGUNG,
     "beschleunigung",
     At<&Dat::beschleunigung>,
     units::ms2,
     {-20, 90},
     2,
     FieldRole::input},
    {IDC_SPURVOR_GRENZE, "geschwGrenze", At<&Dat::geschwGrenze>, units::kmh, {0, 300}, 2, FieldRole::input},
    {IDC_SPURVOR_ZEITVERZUG,
     "zeitverzug",
     At<&Dat::zeitverzug>,
     units::s,
     {0, kUnbegrenzt},
     2,
     FieldRole::input,
     {.spinner = {0, kUnbegrenzt, 0.1}}},
    {IDC_SPURVOR_ZWISCHEN_FRONT, "zwischenFront", At<&Dat::zwischenFront>, units::m, {-20, 20}, 2, FieldRole::input},
    {IDC_SPURVOR_GIERWINKEL, "gierwinkel", At<&Dat::gierwinkel>, units::degree, {0, 360}, 2, FieldRole::result},
    {IDC_SPURVOR_WEG, "weg", At<&Dat::weg>, units::m, {0, kUnbegrenzt}, 2, FieldRole::result},
    {IDC_SPURVOR_ZEIT, "zeit", At<&Dat::zeit>, units::s, {0, kUnbegrenzt}, 2, FieldRole::result},
    {IDC_SPURVOR_LAENGE, "laenge", At<&Dat::laenge>, units::m, {0, kUnbegrenzt}, 2, FieldRole::result},
    {IDC_SPURVOR_DIFFERENZ, "differenz", At<&Dat::differenz>, units::m, {0, kUnbegrenzt}, 2, FieldRole::result},
    {IDC_SPURVOR_ZWISCHEN_WEG, "zwischenWeg", At<&Dat::zwischenWeg>, units::m, {0, kUnbegrenzt}, 2, FieldRole::result},
    {IDC_SPURVOR_ZWISCHEN_ZEIT,
     "zwischenZeit",
     At<&Dat::zwischenZeit>,
     units::s,
     {0, kUnbegrenzt},
     2,
     FieldRole::result},
    {IDC_SPURVOR_ZWISCHEN_HECK, "zwischenHeck", At<&Dat::zwischenHeck>, units::m, {-20, 20}, 2, FieldRole::result},
    {IDC_SPURVOR_ZWISCHEN_GIER, "zwischenGier", At<&Dat::zwischenGier>, units::degree, {0, 360}, 2, FieldRole::result},
    {"berechnet", At<&Dat::berechnet>},
};

} // namespace

RecordFields CSpurVorDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CSpurVorDat::Loeschen()
{
    ClearNumbers(Felder());
    m_ergebnis.reset();
}

void CSpurVorDat::Oeffne()
{
    Loeschen();
    berechnet = 0;
    richtung = vorwaerts;
    bekannt = amAnfang;
    zwischenFront = kZwischenFront;
    fahrzeug = 0;
    FahrzeugGewechselt();
}

bool CSpurVorDat::IstVorhanden() const
{
    return m_data.IsFzgValid(fahrzeug);
}

void CSpurVorDat::FahrzeugGewechselt()
{
    phase = IstVorhanden() ? static_cast<std::int64_t>(WZDat(static_cast<std::size_t>(fahrzeug)).selected) : 0;
}

CSpurVorDat::Masse CSpurVorDat::LiesMasse(bool& ersetzt)
{
    CKfzDaten kfz = IstVorhanden() ? KfzDat(static_cast<std::size_t>(fahrzeug)) : CKfzDaten{};
    const auto fehlt = [](double length) { return !(length > 0.0 && length <= kLaengstesFahrzeug); };
    ersetzt = fehlt(kfz.length);
    if (ersetzt) {
        kfz.length = kUeblicheLaenge;
        if (fehlt(kfz.wheelbase))
            kfz.wheelbase = kUeblicherRadstand;
        if (fehlt(kfz.frontOverhang))
            kfz.frontOverhang = kUeblichesVorne;
        if (IstVorhanden())
            kfz.Uebertragen(m_data, static_cast<std::size_t>(fahrzeug), m_parent, 0);
    }
    const auto gueltig = [&](double length) { return fehlt(length) ? 0.0 : length; };
    return {kfz.length, gueltig(kfz.wheelbase), gueltig(kfz.frontOverhang)};
}

CSpurVorDat::Befund CSpurVorDat::Rechnen()
{
    Befund befund;
    berechnet = 0;
    m_ergebnis.reset();
    const auto scheitert = [&](Ausgang ausgang) {
        befund.ausgang = ausgang;
        return befund;
    };
    const Masse masse = LiesMasse(befund.ersatzmasse);

    const bool amEndeBekannt = bekannt == amEnde;
    Vorgabe g{};
    g.v = Genullt(amEndeBekannt ? endgeschw : anfangsgeschw) / kKmhProMs;
    g.beschl = Genullt(amEndeBekannt ? -beschleunigung : beschleunigung);
    g.grenze = Genullt(geschwGrenze) / kKmhProMs;
    g.verzug = Genullt(zeitverzug);
    g.radius = std::abs(Genullt(kurvenradius));
    g.versatz = std::abs(Genullt(seitenversatz));
    g.querbeschl = std::abs(Genullt(querbeschleunigung));

    befund.grenzeDarueber = g.grenze > g.v && g.beschl < 0.0;
    befund.grenzeDarunter = g.grenze > 0.0 && g.grenze < g.v && g.beschl > 0.0;
    if (befund.grenzeDarueber || befund.grenzeDarunter)
        g.grenze = 0.0;

    if (g.querbeschl == 0.0)
        return scheitert(Ausgang::querbeschlFehlt);
    if (g.versatz == 0.0)
        return scheitert(Ausgang::versatzFehlt);
    const bool keineGeschw = Genullt(anfangsgeschw) == 0.0 && Genullt(endgeschw) == 0.0;
    if (keineGeschw || (g.v == 0.0 && g.beschl <= 0.0)) // what stands and does not get faster never arrives
        return scheitert(Ausgang::geschwFehlt);
    if (!(g.v >= 0.0 && g.grenze >= 0.0 && g.verzug >= 0.0 && g.versatz <= kLaengster))
        return scheitert(Ausgang::unmoeglich);
    g.verzugsweg = g.verzug * g.v;

    Naeherung n = SucheLaenge(g);
    befund.haelt = n.haelt;
    if (n.haelt) {
        g.grenze = g.v;
        g.v = 0.0;
        g.beschl = -g.beschl;
        n = SucheLaenge(g);
    }
    befund.weg = n.weg;
    befund.differenz = n.weg - n.laenge;
    befund.kurvenradius = g.radius != 0.0 && kKurvenreserve * n.v * n.v / g.querbeschl > g.radius;
    befund.nichtKonvergiert = !n.konvergiert;
    if (n.laenge == 0.0) {
        befund.differenz = 0.0;
        return scheitert(befund.kurvenradius ? Ausgang::zuEngeKurve : Ausgang::unmoeglich);
    }

    double kurvenweg = 0.0;
    double ueberschuss = 0.0;
    Wegintegral(g.versatz, n.laenge, kurvenweg, ueberschuss);
    befund.weg = kurvenweg;
    befund.differenz = ueberschuss;
    const SpurwechselKurve kurve(n.laenge, g.versatz);
    const SpurwechselFahrt vomBekannten = befund.haelt ? FahreAbHalt(g, kurvenweg) : FahreAb(g, kurvenweg);
    // The stop lies at the other end than the known speed.
    const SpurwechselFahrt fahrt = amEndeBekannt != befund.haelt ? vomBekannten.Umgekehrt() : vomBekannten;
    if (!std::isfinite(kurvenweg) || !IstFahrbar(fahrt))
        return scheitert(Ausgang::unmoeglich);
    if (!(kurve.RadiusAmViertelpunkt() > masse.radstand / 2.0))
        return scheitert(Ausgang::zuEngeKurve);

    weg = kurvenweg;
    differenz = ueberschuss;
    laenge = n.laenge;
    zeit = fahrt.Zeit();
    gierwinkel = InGrad(kurve.GroessterGierwinkel());
    if (amEndeBekannt)
        anfangsgeschw = fahrt.Anfangsgeschw() * kKmhProMs;
    else
        endgeschw = fahrt.Endgeschw() * kKmhProMs;

    const double vorDerAchse = masse.radstand + masse.vorne;
    const std::optional<double> u = kurve.ErsteStelle(std::abs(zwischenFront), vorDerAchse);
    zwischenWeg = u ? std::min(kurve.Bogenlaenge(*u), weg) : 0.0;
    zwischenZeit = u ? fahrt.ZeitBei(zwischenWeg) : 0.0;
    zwischenGier = u ? InGrad(kurve.Gierwinkel(*u)) : 0.0;
    zwischenHeck = u ? kurve.VersatzVor(*u, vorDerAchse - masse.laenge) : 0.0;

    // v²·(1/ρ + 1/R) where the bends of curve and road add up.
    const double kruemmung = 1.0 / kurve.RadiusAmViertelpunkt() + (g.radius != 0.0 ? 1.0 / g.radius : 0.0);
    const double v = std::max(fahrt.GeschwindigkeitBei(weg / 4.0), fahrt.GeschwindigkeitBei(3.0 * weg / 4.0));
    const double breite = IstVorhanden() ? KfzDat(static_cast<std::size_t>(fahrzeug)).width : 0.0;
    m_ergebnis = Ergebnis{kurve, fahrt, masse, breite, seitenversatz < 0.0 ? -1.0 : 1.0, u, v * v * kruemmung};
    berechnet = 1;
    return befund;
}

CSpurVorDat::Uebertragung CSpurVorDat::Uebertragen()
{
    if (!m_ergebnis)
        return Uebertragung::nichtBerechnet;
    if (!IstVorhanden())
        return Uebertragung::keinFahrzeug;
    const std::vector<CWegZeitSpalte> spalten =
        SpurwechselSpalten(m_ergebnis->kurve, m_ergebnis->fahrt, m_ergebnis->masse.radstand / 2.0, m_ergebnis->seite,
                           richtung == rueckwaerts ? -1.0 : 1.0);
    const std::optional<bool> geschrieben = SchreibeSpurwechsel(m_data, fahrzeug, phase, spalten, m_parent);
    if (!geschrieben)
        return Uebertragung::keinPlatz;
    phase = ErsteSpalteDerFolge(phase);
    return *geschrieben ? Uebertragung::erfolgt : Uebertragung::geaendert;
}
