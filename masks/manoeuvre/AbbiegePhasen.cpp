// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The turn as phases of a vehicle: where it is looked for, read from and written to.
#include "host/CRuvData.h"
#include "host/Physics.h"
#include "masks/manoeuvre/CAbDaten.h"

#include <algorithm>
#include <cmath>

using abbiegen::Fahrt;
using abbiegen::Vorgabe;

namespace
{

constexpr double kNull = 1e-9;
/// Offset of the front that defines the intermediate position at opening, m.
constexpr double kZwischenversatz = 0.5;
/// Numbers of a phase that differ by less than this part of the larger one, or of 1, are the same.
constexpr double kGleich = 1e-6;

bool IstAbbiegen(const CWegZeitSpalte& phase)
{
    return phase.art == PhasenArt::turning;
}

/// Column of the first turn, kSpalten without one.
std::size_t ErstesAbbiegen(const CWegZeitDat& way)
{
    const auto first = way.spalten.begin() + CWegZeitDat::kErsteSpalte;
    return static_cast<std::size_t>(std::find_if(first, way.spalten.end(), IstAbbiegen) - way.spalten.begin());
}

/// Whether `frueher` is the earlier part of the turn whose later one is `spaeter`. Only the later part has the way.
bool GehoertDazu(const CWegZeitSpalte& frueher, const CWegZeitSpalte& spaeter)
{
    return IstAbbiegen(frueher) && frueher.bahn.empty() && frueher.seite == spaeter.seite &&
           (frueher.richtung < 0.0) == (spaeter.richtung < 0.0);
}

/// The value, or 0 when the field could not take it.
double ImBereich(double value, double minimum, double maximum)
{
    return value >= minimum && value <= maximum ? value : 0.0;
}

void Spiegle(CWegZeitSpalte& phase)
{
    for (CDPoint& point : phase.bahn)
        point.y = -point.y;
    phase.endGier = 0.0 - phase.endGier;
}

bool Gleich(double x, double y)
{
    return std::abs(x - y) <= kGleich * std::max({1.0, std::abs(x), std::abs(y)});
}

bool GleicheBewegung(const CWegZeitSpalte& x, const CWegZeitSpalte& y)
{
    return Gleich(x.vAnf, y.vAnf) && Gleich(x.vEnd, y.vEnd) && Gleich(x.zeit, y.zeit) && Gleich(x.weg, y.weg) &&
           Gleich(x.verz, y.verz);
}

/// A part of the turn in m/s, s and m, along the travel.
struct Teil {
    double vAnf;
    double vEnd;
    double zeit;
    double weg;
    double a;
};

/// Nearest the collision first. Two when a limit was reached, or the speed changes only after a while.
std::vector<Teil> Teile(const Vorgabe& g, const Fahrt& f)
{
    const double vA = g.anfangsgeschw;
    const double t = f.lage.t;
    const double s = f.lage.s;
    const double tGrenze = g.ZeitBisGrenze();
    if (f.grenzeErreicht && tGrenze > 0.0 && t > g.verzug + tGrenze)
        return {{g.grenze, g.grenze, t - tGrenze, s - g.WegBisGrenze(), 0.0},
                {vA, g.grenze, tGrenze, g.WegBisGrenze(), g.beschleunigung}};
    if (g.verzug > 0.0 && t > g.verzug)
        return {{vA, f.v, t - g.verzug, s - vA * g.verzug, g.beschleunigung}, {vA, vA, g.verzug, vA * g.verzug, 0.0}};
    const bool konstant = g.verzug > 0.0 || (f.grenzeErreicht && tGrenze <= 0.0);
    return {{vA, f.v, t, s, konstant ? 0.0 : g.beschleunigung}};
}

} // namespace

bool CAbDaten::IstFahrzeug() const
{
    return fahrzeug >= 0 && fahrzeug < static_cast<std::int64_t>(CRuvData::kFahrzeuge);
}

void CAbDaten::Oeffne()
{
    berechnet = 0;
    fahrzeug = 0;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        if (ErstesAbbiegen(WZDat(i)) < CWegZeitDat::kSpalten) {
            fahrzeug = static_cast<std::int64_t>(i);
            break;
        }
    }
    Loeschen();
    zwischenversatz = kZwischenversatz;
    FahrzeugGewechselt();
}

void CAbDaten::FahrzeugGewechselt()
{
    berechnet = 0;
    phase = 0;
    FrageErneut();
    LeseFahrzeug();
    if (IstFahrzeug()) {
        const CWegZeitDat& way = WZDat(static_cast<std::size_t>(fahrzeug));
        const std::size_t turn = ErstesAbbiegen(way);
        const std::size_t column = turn < CWegZeitDat::kSpalten ? turn : way.FirstFree();
        phase = column < CWegZeitDat::kSpalten ? static_cast<std::int64_t>(column) : 0;
    }
    LeseSpalte();
    BerechneLenkradwinkel();
}

void CAbDaten::LeseSpalte()
{
    LoescheEingaben();
    berechnet = 0;
    seite = kSeiteLinks;
    ZeigeSeite();
    if (!IstFahrzeug() || phase < static_cast<std::int64_t>(CWegZeitDat::kErsteSpalte) ||
        phase >= static_cast<std::int64_t>(CWegZeitDat::kSpalten))
        return;
    const CWegZeitDat& way = WZDat(static_cast<std::size_t>(fahrzeug));
    const CWegZeitSpalte leer;
    const auto c = static_cast<std::size_t>(phase);
    const CWegZeitSpalte& column = way.spalten[c];
    const CWegZeitSpalte& frueher = c + 1 < CWegZeitDat::kSpalten ? way.spalten[c + 1] : leer;
    const CWegZeitSpalte& spaeter = c > CWegZeitDat::kErsteSpalte ? way.spalten[c - 1] : leer;
    // A turn that this mask wrote in two parts is read as the one it is.
    const bool zweiteilig = IstAbbiegen(column) && !column.bahn.empty() && GehoertDazu(frueher, column);

    const auto radius = [](double value) { return ImBereich(value, 0.0, 100000.0); };
    anfangsradius = radius(column.radiusAnf);
    endradius = radius(column.radiusEnd);
    lenkzeit = ImBereich(column.lenkZeit, 0.0, 100.0);

    const double vEnd = ImBereich(column.vEnd, -300.0, 300.0);
    anfangsgeschw = ImBereich(zweiteilig ? frueher.vAnf : column.vAnf, -300.0, 300.0);
    grenzgeschw = std::abs(vEnd);
    weg = ImBereich(zweiteilig ? column.weg + frueher.weg : column.weg, -1000.0, 1000.0);
    const double verz = column.verz != 0.0 ? column.verz : IstAbbiegen(frueher) ? frueher.verz : 0.0;
    beschleunigung = ImBereich(0.0 - verz, -90.0, 90.0);
    if (anfangsgeschw < 0.0 || vEnd < 0.0) {
        anfangsgeschw = 0.0 - anfangsgeschw;
        weg = 0.0 - weg;
        rueckwaerts = 1;
        // Along the travel the greater of the speeds is the later one when the vehicle speeds up.
        const double zuwachs = grenzgeschw - anfangsgeschw;
        beschleunigung = zuwachs != 0.0 ? std::copysign(beschleunigung, zuwachs) : 0.0 - beschleunigung;
    }
    if (std::abs(grenzgeschw - anfangsgeschw) < kNull)
        grenzgeschw = anfangsgeschw;
    wegGegeben = weg != 0.0 ? 1 : 0;

    seite = column.seite;
    for (const CWegZeitSpalte* nachbar : {&spaeter, &frueher})
        if (seite == kSeiteUnbestimmt && IstAbbiegen(*nachbar))
            seite = nachbar->seite;
    if (seite != kSeiteRechts)
        seite = kSeiteLinks;
    ZeigeSeite();
    BerechneLenkradwinkel();
}

void CAbDaten::PhaseUmnummeriert(int alt, int neu)
{
    const bool istSpalte =
        neu >= static_cast<int>(CWegZeitDat::kErsteSpalte) && neu < static_cast<int>(CWegZeitDat::kSpalten);
    if (phase == alt && istSpalte)
        phase = neu;
}

void CAbDaten::GeschwindigkeitGeaendert()
{
    if (beschleunigung < 0.0)
        frage1342 = 1;
    if (anfangsgeschw != 0.0 || beschleunigung != 0.0 || !IstFahrzeug() || phase <= 0 ||
        phase >= static_cast<std::int64_t>(CWegZeitDat::kSpalten))
        return;
    const CWegZeitSpalte& column = WZDat(static_cast<std::size_t>(fahrzeug)).spalten[static_cast<std::size_t>(phase)];
    anfangsgeschw = ImBereich(std::abs(column.vAnf), 0.0, 300.0);
    endgeschw = anfangsgeschw;
}

void CAbDaten::SeiteGewaehlt()
{
    const std::int64_t gewaehlt = (lenkseite == 0) != (rueckwaerts != 0) ? kSeiteLinks : kSeiteRechts;
    if (seite == gewaehlt)
        return;
    seite = gewaehlt;
    SchreibeSeite();
}

void CAbDaten::SchreibeSeite()
{
    if (!m_data.IsFzgValid(fahrzeug))
        return;
    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    UPa(vehicle).modified = true;
    CWegZeitRechDat way = WZRechDat(vehicle);
    const std::size_t first = static_cast<std::size_t>(std::max<std::int64_t>(phase, 0));
    const std::size_t count = BelegteSpalten(first);
    if (count == 0)
        return;
    for (std::size_t c = first; c < first + count; ++c) {
        CWegZeitSpalte& column = way.spalten[c];
        if (column.seite != kSeiteUnbestimmt && column.seite != seite)
            Spiegle(column);
        column.seite = static_cast<int>(seite);
    }
    way.Uebertragen(m_data, vehicle, m_parent, 0);
}

/// How many columns a turn takes from this one on: 0, 1 or 2.
std::size_t CAbDaten::BelegteSpalten(std::size_t spalte) const
{
    const CWegZeitDat& way = WZDat(static_cast<std::size_t>(fahrzeug));
    if (spalte < CWegZeitDat::kErsteSpalte || spalte >= CWegZeitDat::kSpalten || !IstAbbiegen(way.spalten[spalte]))
        return 0;
    const bool zweiteilig =
        spalte + 1 < CWegZeitDat::kSpalten && GehoertDazu(way.spalten[spalte + 1], way.spalten[spalte]);
    return zweiteilig ? 2 : 1;
}

/// The phases of the last run, nearest the collision first.
std::vector<CWegZeitSpalte> CAbDaten::Phasen() const
{
    const Lauf& lauf = *m_lauf;
    std::vector<CWegZeitSpalte> phasen;
    for (const Teil& teil : Teile(lauf.vorgabe, lauf.fahrt)) {
        CWegZeitSpalte& to = phasen.emplace_back();
        to.art = PhasenArt::turning;
        // + 0.0: no negative zero
        to.vAnf = lauf.richtung * teil.vAnf * kKmhProMs + 0.0;
        to.vEnd = lauf.richtung * teil.vEnd * kKmhProMs + 0.0;
        to.verz = 0.0 - lauf.richtung * teil.a;
        to.zeit = teil.zeit;
        to.weg = lauf.richtung * teil.weg + 0.0;
        to.seite = static_cast<int>(seite);
        to.radiusAnf = anfangsradius;
        to.radiusEnd = endradius;
        to.lenkZeit = lenkzeit;
        to.richtung = lauf.richtung;
    }
    CWegZeitSpalte& letzte = phasen.front();
    letzte.bahn = lauf.fahrt.punkte;
    letzte.endWeg = lauf.fahrt.lage.s * kCmProM;
    letzte.endGier = lauf.fahrt.lage.psi;
    if (seite == kSeiteRechts)
        Spiegle(letzte);
    return phasen;
}

CAbDaten::Uebertragung CAbDaten::Uebertragen(Geschrieben& geschrieben)
{
    if (!m_lauf || !(zeit > 0.0))
        return Uebertragung::keinErgebnis;
    if (!m_data.IsFzgValid(fahrzeug))
        return Uebertragung::keinFahrzeug;
    const auto vehicle = static_cast<std::size_t>(fahrzeug);
    const auto column = static_cast<std::size_t>(std::max<std::int64_t>(phase, 0));
    if (column < CWegZeitDat::kErsteSpalte || column >= CWegZeitDat::kSpalten)
        return Uebertragung::keinPlatz;

    std::vector<CWegZeitSpalte> phasen = Phasen();
    CWegZeitRechDat way = WZRechDat(vehicle);
    std::size_t occupied = BelegteSpalten(column);
    for (; occupied > phasen.size(); --occupied)
        way.Entfernen(column + occupied - 1);
    for (; occupied < phasen.size(); ++occupied) {
        const std::size_t next = column + occupied;
        if (next >= CWegZeitDat::kSpalten || (way.spalten[next].IsUsed() && !way.Einfuegen(next)))
            return Uebertragung::keinPlatz;
    }
    for (std::size_t i = 0; i < phasen.size(); ++i) {
        CWegZeitSpalte& to = way.spalten[column + i];
        phasen[i].weiteres = to.weiteres;
        to = phasen[i];
    }
    way.selected = column;

    if (UPa(vehicle).modified)
        m_data.BroadcastMessage(WM_RUV_BEFORETRANSFER, vehicle, 0, m_parent);
    UPa(vehicle).modified = true;
    way.Berechnung();
    way.Uebertragen(m_data, vehicle, m_parent, 0);

    geschrieben = {column, phasen.size()};
    const CWegZeitDat& kept = WZDat(vehicle);
    for (std::size_t i = 0; i < phasen.size(); ++i)
        if (!GleicheBewegung(kept.spalten[column + i], phasen[i]))
            return Uebertragung::angepasst;
    return Uebertragung::erfolgt;
}
