// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CWurfWeiteDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/collision.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using Dat = CWurfWeiteDat;

constexpr NumberRange kStrecke{-1000, 1000};
constexpr NumberRange kZeit{0, 1000};
constexpr NumberRange kTempo{-200, 200};
constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_WURF_V0_KMH,
     "anfangsgeschwindigkeit",
     At<&Dat::anfangsgeschwindigkeit>,
     units::kmh,
     {0, 500},
     2,
     FieldRole::input},
    {IDC_WURF_V0_MS,
     "anfangsgeschwindigkeitMs",
     At<&Dat::anfangsgeschwindigkeitMs>,
     units::ms,
     {0, 500 / kKmhProMs},
     2,
     FieldRole::input,
     {.label = "Anfangsgeschwindigkeit"}},
    {IDC_WURF_AUFPRALLHOEHE, "aufprallhoehe", At<&Dat::aufprallhoehe>, units::m, {-100, 100}, 2, FieldRole::input},
    {IDC_WURF_WURFWEITE, "wurfweite", At<&Dat::wurfweite>, units::m, kStrecke, 2, FieldRole::result},
    {IDC_WURF_WURFWEITE_ZEIT,
     "wurfweiteZeit",
     At<&Dat::wurfweiteZeit>,
     units::s,
     kZeit,
     2,
     FieldRole::result,
     {.label = "Zeit der Wurfweite"}},
    {IDC_WURF_FLUGWINKEL, "flugwinkel", At<&Dat::flugwinkel>, units::degree, {-90, 90}, 2, FieldRole::input},
    {IDC_WURF_MAX_WEITE, "maxWurfweite", At<&Dat::maxWurfweite>, units::m, kStrecke, 2, FieldRole::result},
    {IDC_WURF_MAX_WEITE_ZEIT,
     "maxWurfweiteZeit",
     At<&Dat::maxWurfweiteZeit>,
     units::s,
     kZeit,
     2,
     FieldRole::result,
     {.label = "Zeit der max. horizontalen Wurfweite"}},
    {IDC_WURF_HOEHE, "wurfhoehe", At<&Dat::wurfhoehe>, units::m, kStrecke, 2, FieldRole::result},
    {IDC_WURF_HOEHE_ZEIT,
     "wurfhoeheZeit",
     At<&Dat::wurfhoeheZeit>,
     units::s,
     kZeit,
     2,
     FieldRole::result,
     {.label = "Zeit der erreichten Wurfhöhe"}},
    {IDC_WURF_AUFPRALL_X,
     "aufprallX",
     At<&Dat::aufprallX>,
     units::ms,
     kTempo,
     2,
     FieldRole::result,
     {.label = "Aufprallgeschwindigkeit x"}},
    {IDC_WURF_AUFPRALL_Z,
     "aufprallZ",
     At<&Dat::aufprallZ>,
     units::ms,
     kTempo,
     2,
     FieldRole::result,
     {.label = "Aufprallgeschwindigkeit z"}},
    {"luftverlust", At<&Dat::luftverlust>, units::ms, FieldRole::internal},
    {IDC_WURF_MASSE, "masse", At<&Dat::masse>, units::g, {0, 1e6}, 2, FieldRole::input},
    {IDC_WURF_CW, "luftwiderstand", At<&Dat::luftwiderstand>, units::none, {0, 5}, 2, FieldRole::input},
    {IDC_WURF_QUERSCHNITT, "querschnitt", At<&Dat::querschnitt>, units::cm2, {0, 1e5}, 2, FieldRole::input},
    {IDC_WURF_LUFTDICHTE, "luftdichte", At<&Dat::luftdichte>, units::kgm3, {0, 5}, 3, FieldRole::input},
    {IDC_WURF_GEGENWIND, "gegenwind", At<&Dat::gegenwind>, units::kmh, {-200, 200}, 2, FieldRole::input},
    {IDC_WURF_RUTSCHVERZOEGERUNG,
     "rutschverzoegerung",
     At<&Dat::rutschverzoegerung>,
     units::ms2,
     {0, 20},
     2,
     FieldRole::input},
    {IDC_WURF_WURF_RUTSCHWEITE, "wurfRutschweite", At<&Dat::wurfRutschweite>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_WURF_AUFPRALLWINKEL,
     "aufprallwinkel",
     At<&Dat::aufprallwinkel>,
     units::degree,
     {-180, 180},
     2,
     FieldRole::result,
     {.label = "Aufprallwinkel"}},
    {IDC_WURF_ANFANG_X,
     "anfangX",
     At<&Dat::anfangX>,
     units::ms,
     kTempo,
     2,
     FieldRole::result,
     {.label = "Anfangsgeschwindigkeit x"}},
    {IDC_WURF_ANFANG_Z,
     "anfangZ",
     At<&Dat::anfangZ>,
     units::ms,
     kTempo,
     2,
     FieldRole::result,
     {.label = "Anfangsgeschwindigkeit z"}},
    {"ergebnisSteht", At<&Dat::ergebnisSteht>},
    {"rueckwaerts", At<&Dat::rueckwaerts>},
};

constexpr double kUeblicherWiderstand = 0.5;
/// A velocity component below counts as zero in the impact angle, m/s.
constexpr double kNullgeschwindigkeit = 1e-10;

// Search for the initial speed.
constexpr double kGroberSchritt = 1.0;     // km/h
constexpr double kFeinsterSchritt = 0.001; // km/h
constexpr double kGenau = 0.001;           // m, a trial this near to the target is the answer
constexpr double kGleichDemZiel = 0.002;   // m, a distance this near is shown as the target
constexpr double kVerfehlt = 0.05;         // m, farther off the difference is named
constexpr int kVersucheOhneWeite = 11;
/// Flight time after which the search gives up, s. Without drag none takes half of it.
constexpr double kLaengsteSuche = 10000.0;

/// Share of the speed that the drag may take in one time step before the numbers are called inexact.
constexpr double kGenaueDaempfung = 0.01;

double Grad(double bogen)
{
    return bogen * 180.0 / kPi;
}

/// Angle of the impact below the horizontal, rad.
double Aufprallwinkel(double x, double z)
{
    const bool ohneX = std::abs(x) < kNullgeschwindigkeit;
    const bool ohneZ = std::abs(z) < kNullgeschwindigkeit;
    if (ohneX)
        return ohneZ ? 0.0 : std::copysign(kPi / 2.0, z);
    if (ohneZ)
        return x > 0.0 ? 0.0 : -kPi;
    return std::atan2(z, x);
}

/// Flights of a search. It asks for speeds that rise by a step, so the next ones are flown along with each.
class Versuche
{
  public:
    explicit Versuche(const flug::Bedingung& bedingung) : m_bedingung(bedingung) {}

    const flug::Landung& Bei(double kmh, double schritt)
    {
        if (m_naechster < m_kmh.size() && m_kmh[m_naechster] == kmh)
            return m_landungen[m_naechster++];
        flug::Geschwindigkeiten v0{};
        for (std::size_t i = 0; i < v0.size(); ++i) {
            m_kmh[i] = i == 0 ? kmh : m_kmh[i - 1] + schritt;
            v0[i] = m_kmh[i] / kKmhProMs;
        }
        m_landungen = flug::Lande(m_bedingung, v0, m_dauer);
        m_naechster = 1;
        return m_landungen[0];
    }
    double Dauer() const { return m_dauer; }

  private:
    flug::Bedingung m_bedingung;
    flug::Geschwindigkeiten m_kmh{};
    std::array<flug::Landung, flug::kNebeneinander> m_landungen{};
    std::size_t m_naechster = flug::kNebeneinander;
    double m_dauer = 0.0;
};

} // namespace

CWurfWeiteDat::CWurfWeiteDat(CRuvData& data) : CDlgData(data)
{
    Loeschen();
}

RecordFields CWurfWeiteDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CWurfWeiteDat::Loeschen()
{
    NulleErgebnisse();
    SetzeGeschwindigkeit(0.0);
    for (double* feld :
         {&aufprallhoehe, &flugwinkel, &masse, &querschnitt, &gegenwind, &rutschverzoegerung, &wurfRutschweite, &ziel})
        *feld = 0.0;
    luftwiderstand = kUeblicherWiderstand;
    luftdichte = m_data.FallParameter().luftdichte;
    ergebnisSteht = 0;
    rueckwaerts = 0;
}

void CWurfWeiteDat::NulleErgebnisse()
{
    for (double* feld : {&wurfweite, &wurfweiteZeit, &maxWurfweite, &maxWurfweiteZeit, &wurfhoehe, &wurfhoeheZeit,
                         &aufprallX, &aufprallZ, &luftverlust, &aufprallwinkel, &anfangX, &anfangZ, &zielabweichung})
        *feld = 0.0;
    bahn.clear();
}

void CWurfWeiteDat::KmhGeaendert()
{
    anfangsgeschwindigkeitMs = anfangsgeschwindigkeit / kKmhProMs;
    rueckwaerts = 0;
}

void CWurfWeiteDat::MsGeaendert()
{
    anfangsgeschwindigkeit = anfangsgeschwindigkeitMs * kKmhProMs;
    rueckwaerts = 0;
}

void CWurfWeiteDat::ZielGeaendert()
{
    ziel = wurfRutschweite;
    rueckwaerts = 1;
}

void CWurfWeiteDat::QuerschnittGeaendert()
{
    querschnitt = std::max(querschnitt, 0.0);
    // A cube of that face, 1 g/cm³.
    const double kante = std::sqrt(querschnitt);
    masse = kante * kante * kante;
}

CWurfWeiteDat::Befund CWurfWeiteDat::Rechnen()
{
    querschnitt = std::max(querschnitt, 0.0);
    masse = std::max(masse, 0.0);
    ergebnisSteht = 1;
    NulleErgebnisse();
    return rueckwaerts != 0 ? Rueckwaerts() : Vorwaerts();
}

flug::Bedingung CWurfWeiteDat::Bedingung() const
{
    flug::Bedingung b;
    b.winkel = flugwinkel * kPi / 180.0;
    // k = ½·cW·ρ·A/m, with A in cm² and m in g
    b.luftwiderstand = masse > 0.0 ? luftwiderstand / 2.0 * (querschnitt / 10.0) * luftdichte / masse : 0.0;
    b.gegenwind = gegenwind / kKmhProMs;
    b.hoehe = aufprallhoehe;
    return b;
}

void CWurfWeiteDat::SetzeGeschwindigkeit(double kmh)
{
    anfangsgeschwindigkeit = kmh;
    anfangsgeschwindigkeitMs = kmh / kKmhProMs;
}

double CWurfWeiteDat::WurfUndRutschen(double vx, double weite) const
{
    // s = vx²/(2·a_r) + x_w
    return rutschverzoegerung > 0.0 ? vx * vx / (2.0 * rutschverzoegerung) + weite : weite;
}

CWurfWeiteDat::Befund CWurfWeiteDat::Vorwaerts()
{
    wurfRutschweite = 0.0;
    const Befund befund = Fliege();
    // What stays below the impact height falls from where it came to.
    if (befund == Befund::hoeheNichtErreicht)
        aufprallhoehe = wurfhoehe;
    return befund;
}

CWurfWeiteDat::Befund CWurfWeiteDat::Fliege()
{
    const flug::Bedingung bedingung = Bedingung();
    flug::Flug flug = flug::Fliege(bedingung, anfangsgeschwindigkeitMs);
    if (!(flug.daempfung < 1.0))
        return Befund::nichtBerechenbar;
    if (!flug.gelandet)
        return Befund::flugZuLang;
    wurfweite = flug.weite;
    wurfweiteZeit = flug.weiteZeit;
    maxWurfweite = flug.groessteWeite;
    maxWurfweiteZeit = flug.groessteWeiteZeit;
    wurfhoehe = flug.wurfhoehe;
    wurfhoeheZeit = flug.wurfhoeheZeit;
    luftverlust = flug.verlust;
    bahn = std::move(flug.bahn);

    aufprallX = flug.vx;
    // v_z = √(2·g·Δh), less what the air took
    aufprallZ = std::sqrt(2.0 * kErdbeschleunigung * std::max(wurfhoehe - aufprallhoehe, 0.0)) - luftverlust;
    aufprallwinkel = Grad(Aufprallwinkel(aufprallX, aufprallZ));
    anfangX = anfangsgeschwindigkeitMs * std::cos(bedingung.winkel);
    anfangZ = anfangsgeschwindigkeitMs * std::sin(bedingung.winkel);
    wurfRutschweite = WurfUndRutschen(aufprallX, wurfweite);
    if (wurfhoehe < aufprallhoehe)
        return Befund::hoeheNichtErreicht;
    return flug.daempfung > kGenaueDaempfung ? Befund::ungenau : Befund::keiner;
}

CWurfWeiteDat::Befund CWurfWeiteDat::Rueckwaerts()
{
    double kmh = 0.0;
    const Suche suche = std::abs(ziel) <= kGenau ? Suche::gefunden : SucheGeschwindigkeit(kmh);
    SetzeGeschwindigkeit(suche == Suche::gefunden ? kmh : 0.0);
    wurfRutschweite = ziel;
    if (suche != Suche::gefunden)
        return suche == Suche::zuLang ? Befund::flugZuLang : Befund::unerreichbar;
    if (kmh == 0.0)
        return Befund::keiner;
    const Befund befund = Fliege();
    if (befund == Befund::flugZuLang || befund == Befund::nichtBerechenbar) {
        SetzeGeschwindigkeit(0.0);
        return befund;
    }
    zielabweichung = wurfRutschweite - ziel;
    if (std::abs(zielabweichung) <= kGleichDemZiel)
        wurfRutschweite = ziel;
    return std::abs(zielabweichung) > kVerfehlt ? Befund::zielVerfehlt : befund;
}

CWurfWeiteDat::Suche CWurfWeiteDat::SucheGeschwindigkeit(double& kmh) const
{
    Versuche versuche(Bedingung());
    double schritt = kGroberSchritt;
    double davor = std::numeric_limits<double>::quiet_NaN();
    kmh = 0.0;
    for (int versuch = 1;; ++versuch) {
        flug::Landung landung;
        const auto weite = [&] {
            landung = versuche.Bei(kmh, schritt);
            return WurfUndRutschen(landung.vx, landung.weite);
        };
        kmh += schritt;
        if (kmh > kGroessteGeschwindigkeit)
            return Suche::unerreichbar;
        double ergebnis = weite();
        if (ergebnis > ziel) {
            kmh -= schritt;
            schritt /= 10.0;
            kmh += schritt;
            ergebnis = weite();
            // A trial that hits the target is the answer even when it lies a little behind it.
            if (ergebnis > ziel && ergebnis - ziel > kGenau)
                kmh -= schritt;
        }
        if (!landung.gelandet || versuche.Dauer() > kLaengsteSuche)
            return Suche::zuLang;
        if (schritt <= kFeinsterSchritt || std::abs(ergebnis - ziel) <= kGenau)
            return Suche::gefunden;
        // Below the impact height there is no distance yet; more speed may still reach it.
        const bool darunter = !landung.erreicht && ergebnis == 0.0;
        if (!darunter && ((versuch > kVersucheOhneWeite && ergebnis == 0.0) || ergebnis == davor))
            return Suche::unerreichbar;
        davor = ergebnis;
    }
}
