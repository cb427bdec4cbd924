// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CWurfWeiteDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Density of the air when the case names none, kg/m³.
constexpr double kUeblicheLuftdichte = 1.2;
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
    return {
        {"anfangsgeschwindigkeit", "km/h", &anfangsgeschwindigkeit},
        {"anfangsgeschwindigkeitMs", "m/s", &anfangsgeschwindigkeitMs},
        {"aufprallhoehe", "m", &aufprallhoehe},
        {"wurfweite", "m", &wurfweite},
        {"wurfweiteZeit", "s", &wurfweiteZeit},
        {"flugwinkel", "°", &flugwinkel},
        {"maxWurfweite", "m", &maxWurfweite},
        {"maxWurfweiteZeit", "s", &maxWurfweiteZeit},
        {"wurfhoehe", "m", &wurfhoehe},
        {"wurfhoeheZeit", "s", &wurfhoeheZeit},
        {"aufprallX", "m/s", &aufprallX},
        {"aufprallZ", "m/s", &aufprallZ},
        {"luftverlust", "m/s", &luftverlust},
        {"masse", "g", &masse},
        {"luftwiderstand", "", &luftwiderstand},
        {"querschnitt", "cm²", &querschnitt},
        {"luftdichte", "kg/m³", &luftdichte},
        {"gegenwind", "km/h", &gegenwind},
        {"rutschverzoegerung", "m/s²", &rutschverzoegerung},
        {"wurfRutschweite", "m", &wurfRutschweite},
        {"aufprallwinkel", "°", &aufprallwinkel},
        {"anfangX", "m/s", &anfangX},
        {"anfangZ", "m/s", &anfangZ},
        {"ergebnisSteht", "", &ergebnisSteht},
        {"rueckwaerts", "", &rueckwaerts},
    };
}

void CWurfWeiteDat::Loeschen()
{
    NulleErgebnisse();
    SetzeGeschwindigkeit(0.0);
    for (double* feld :
         {&aufprallhoehe, &flugwinkel, &masse, &querschnitt, &gegenwind, &rutschverzoegerung, &wurfRutschweite, &ziel})
        *feld = 0.0;
    luftwiderstand = kUeblicherWiderstand;
    luftdichte = kUeblicheLuftdichte;
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
