// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CLadungDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/collision.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{

using Ein = LadungEingaben;
using Dat = CLadungDat;

constexpr NumberRange kMasse{0, 1e6};
constexpr NumberRange kKraft{0, 1e7};
constexpr NumberRange kBeschleunigung{0, 100};
constexpr NumberRange kReibung{0, 2};
constexpr NumberRange kAnteil{0, 100};
constexpr NumberRange kWinkel{0, 90};
constexpr NumberRange kFahrreibung{-2, 2}; // negative: the force acts backwards, or to the other side
constexpr NumberRange kGefaelle{-100, 100};
constexpr UINT kZurrarten[]{IDC_LADUNG_NIEDERZURREN, IDC_LADUNG_DIAGONALZURREN};

constexpr NumberRow<Ein> kEingaben[] = {
    {"fahrzeug", At<&Ein::fahrzeug>, units::none, FieldRole::state, {-1, 15}},
    {IDC_LADUNG_NUTZLAST, "nutzlast", At<&Ein::nutzlast>, units::kg, kMasse, 0, FieldRole::input},
    {IDC_LADUNG_LADUNG, "ladung", At<&Ein::ladung>, units::kg, kMasse, 0, FieldRole::input},
    {"reibungWahl", At<&Ein::reibungWahl>, units::none, FieldRole::state, {0, 10}},
    {IDC_LADUNG_REIBUNG, "reibungsbeiwert", At<&Ein::reibungsbeiwert>, units::none, kReibung, 2, FieldRole::input},
    {IDC_LADUNG_ZURRPUNKT, "zurrpunktbelastbarkeit", At<&Ein::zurrpunktbelastbarkeit>, units::N, kKraft, 0,
     FieldRole::input},
    {IDC_LADUNG_FORM_VORNE, "formschlussVorne", At<&Ein::formschlussVorne>},
    {IDC_LADUNG_FORM_HINTEN, "formschlussHinten", At<&Ein::formschlussHinten>},
    {IDC_LADUNG_FORM_SEITLICH, "formschlussSeitlich", At<&Ein::formschlussSeitlich>},
    {IDC_LADUNG_FORM_VORNE_PROZENT,
     "formschlussVorneProzent",
     At<&Ein::formschlussVorneProzent>,
     units::percent,
     kAnteil,
     0,
     FieldRole::input,
     {.label = "Formschluss vorne (% der Nutzlast)"}},
    {IDC_LADUNG_FORM_VORNE_GRENZE,
     "formschlussVorneGrenze",
     At<&Ein::formschlussVorneGrenze>,
     units::N,
     kKraft,
     0,
     FieldRole::input,
     {.label = "Belastbarkeitsgrenze vorne"}},
    {IDC_LADUNG_FORM_HINTEN_PROZENT,
     "formschlussHintenProzent",
     At<&Ein::formschlussHintenProzent>,
     units::percent,
     kAnteil,
     0,
     FieldRole::input,
     {.label = "Formschluss hinten (% der Nutzlast)"}},
    {IDC_LADUNG_FORM_HINTEN_GRENZE,
     "formschlussHintenGrenze",
     At<&Ein::formschlussHintenGrenze>,
     units::N,
     kKraft,
     0,
     FieldRole::input,
     {.label = "Belastbarkeitsgrenze hinten"}},
    {IDC_LADUNG_FORM_SEITLICH_PROZENT,
     "formschlussSeitlichProzent",
     At<&Ein::formschlussSeitlichProzent>,
     units::percent,
     kAnteil,
     0,
     FieldRole::input,
     {.label = "Formschluss seitlich (% der Nutzlast)"}},
    {IDC_LADUNG_FORM_SEITLICH_GRENZE,
     "formschlussSeitlichGrenze",
     At<&Ein::formschlussSeitlichGrenze>,
     units::N,
     kKraft,
     0,
     FieldRole::input,
     {.label = "Belastbarkeitsgrenze seitlich"}},
    {IDC_LADUNG_A_VORNE,
     "beschleunigungVorne",
     At<&Ein::beschleunigungVorne>,
     units::ms2,
     kBeschleunigung,
     1,
     FieldRole::input,
     {.label = "Beschleunigung nach vorne"}},
    {IDC_LADUNG_A_HINTEN,
     "beschleunigungHinten",
     At<&Ein::beschleunigungHinten>,
     units::ms2,
     kBeschleunigung,
     1,
     FieldRole::input,
     {.label = "Beschleunigung nach hinten"}},
    {IDC_LADUNG_A_QUER,
     "beschleunigungQuer",
     At<&Ein::beschleunigungQuer>,
     units::ms2,
     kBeschleunigung,
     1,
     FieldRole::input,
     {.label = "Beschleunigung quer"}},
    {IDC_LADUNG_A_VERTIKAL,
     "beschleunigungVertikal",
     At<&Ein::beschleunigungVertikal>,
     units::ms2,
     kBeschleunigung,
     1,
     FieldRole::input,
     {.label = "Beschleunigung vertikal"}},
    {IDC_LADUNG_LC, "zurrkraftLC", At<&Ein::zurrkraftLC>, units::N, kKraft, 0, FieldRole::input},
    {IDC_LADUNG_STF, "zurrkraftSTF", At<&Ein::zurrkraftSTF>, units::N, kKraft, 0, FieldRole::input},
    {kZurrarten, "zurrart", At<&Ein::zurrart>, "Zurrart"},
    {IDC_LADUNG_ZURRUNGEN, "zurrungen", At<&Ein::zurrungen>, units::none, {0, 100}, 0, FieldRole::input},
    {IDC_LADUNG_ZURRWINKEL,
     "zurrwinkel",
     At<&Ein::zurrwinkel>,
     units::degree,
     kWinkel,
     1,
     FieldRole::input,
     {.label = "Zurrwinkel (alpha)", .onlyWith = IDC_LADUNG_NIEDERZURREN}},
    {"uebertragungWahl", At<&Ein::uebertragungWahl>, units::none, FieldRole::state, {0, 2}},
    {IDC_LADUNG_UEBERTRAGUNG,
     "uebertragungsbeiwert",
     At<&Ein::uebertragungsbeiwert>,
     units::none,
     {0, 10},
     2,
     FieldRole::input},
    {IDC_LADUNG_REIBUNG_GURT,
     "reibungGurt",
     At<&Ein::reibungGurt>,
     units::none,
     kReibung,
     2,
     FieldRole::input,
     {.label = "Reibung im Gurt", .onlyWith = IDC_LADUNG_NIEDERZURREN}},
    {IDC_LADUNG_ALPHA,
     "diagonalAlpha",
     At<&Ein::diagonalAlpha>,
     units::degree,
     kWinkel,
     1,
     FieldRole::input,
     {.label = "Diagonalzurren alpha", .onlyWith = IDC_LADUNG_DIAGONALZURREN}},
    {IDC_LADUNG_BETA,
     "diagonalBeta",
     At<&Ein::diagonalBeta>,
     units::degree,
     kWinkel,
     1,
     FieldRole::input,
     {.label = "Diagonalzurren beta", .onlyWith = IDC_LADUNG_DIAGONALZURREN}},
    {IDC_LADUNG_REIBUNG_LAENGS, "reibungLaengs", At<&Ein::reibungLaengs>, units::none, kFahrreibung, 2,
     FieldRole::input},
    {IDC_LADUNG_REIBUNG_QUER, "reibungQuer", At<&Ein::reibungQuer>, units::none, kFahrreibung, 2, FieldRole::input},
    {IDC_LADUNG_GEFAELLE_LAENGS, "gefaelleLaengs", At<&Ein::gefaelleLaengs>, units::percent, kGefaelle, 1,
     FieldRole::input},
    {IDC_LADUNG_GEFAELLE_QUER, "gefaelleQuer", At<&Ein::gefaelleQuer>, units::percent, kGefaelle, 1, FieldRole::input},
};

constexpr NumberRange kErgebnis{-1e9, 1e9};
constexpr NumberRow<Dat> kErgebnisse[] = {
    {IDC_LADUNG_SICHERUNGSKRAFT, "sicherungskraft", At<&Dat::sicherungskraft>, units::N, kErgebnis, 0,
     FieldRole::result},
    {IDC_LADUNG_REIBUNGSKRAFT_OHNE, "reibungskraftOhne", At<&Dat::reibungskraftOhne>, units::N, kErgebnis, 0,
     FieldRole::result},
    {IDC_LADUNG_REIBUNGSKRAFT_ZURRUNG, "reibungskraftZurrung", At<&Dat::reibungskraftZurrung>, units::N, kErgebnis, 0,
     FieldRole::result},
    {IDC_LADUNG_REIBUNGSKRAFT_GESAMT, "reibungskraftGesamt", At<&Dat::reibungskraftGesamt>, units::N, kErgebnis, 0,
     FieldRole::result},
    {IDC_LADUNG_KRAFT_LAENGS, "beschleunigungskraftLaengs", At<&Dat::beschleunigungskraftLaengs>, units::N, kErgebnis,
     0, FieldRole::result},
    {IDC_LADUNG_KRAFT_QUER, "beschleunigungskraftQuer", At<&Dat::beschleunigungskraftQuer>, units::N, kErgebnis, 0,
     FieldRole::result},
    {IDC_LADUNG_NORM_VORNE,
     "normKraftVorne",
     At<&Dat::normKraftVorne>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft nach vorne (NORM)"}},
    {IDC_LADUNG_NORM_ZURR_VORNE,
     "normZurrkraftVorne",
     At<&Dat::normZurrkraftVorne>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft nach vorne (NORM)"}},
    {IDC_LADUNG_NORM_HINTEN,
     "normKraftHinten",
     At<&Dat::normKraftHinten>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft nach hinten (NORM)"}},
    {IDC_LADUNG_NORM_ZURR_HINTEN,
     "normZurrkraftHinten",
     At<&Dat::normZurrkraftHinten>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft nach hinten (NORM)"}},
    {IDC_LADUNG_NORM_SEITLICH,
     "normKraftSeitlich",
     At<&Dat::normKraftSeitlich>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft seitlich (NORM)"}},
    {IDC_LADUNG_NORM_ZURR_SEITLICH,
     "normZurrkraftSeitlich",
     At<&Dat::normZurrkraftSeitlich>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft seitlich (NORM)"}},
    {IDC_LADUNG_NORM_ZURRUNGEN,
     "normZurrungen",
     At<&Dat::normZurrungen>,
     units::none,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "notwendige Anzahl der Zurrungen (NORM)"}},
    {IDC_LADUNG_KIN_VORNE,
     "kinKraftVorne",
     At<&Dat::kinKraftVorne>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft nach vorne (kinematisch)"}},
    {IDC_LADUNG_KIN_ZURR_VORNE,
     "kinZurrkraftVorne",
     At<&Dat::kinZurrkraftVorne>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft nach vorne (kinematisch)"}},
    {IDC_LADUNG_KIN_HINTEN,
     "kinKraftHinten",
     At<&Dat::kinKraftHinten>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft nach hinten (kinematisch)"}},
    {IDC_LADUNG_KIN_ZURR_HINTEN,
     "kinZurrkraftHinten",
     At<&Dat::kinZurrkraftHinten>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft nach hinten (kinematisch)"}},
    {IDC_LADUNG_KIN_SEITLICH,
     "kinKraftSeitlich",
     At<&Dat::kinKraftSeitlich>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Kraft seitlich (kinematisch)"}},
    {IDC_LADUNG_KIN_ZURR_SEITLICH,
     "kinZurrkraftSeitlich",
     At<&Dat::kinZurrkraftSeitlich>,
     units::N,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "fehlende Zurrkraft seitlich (kinematisch)"}},
    {IDC_LADUNG_KIN_ZURRUNGEN,
     "kinZurrungen",
     At<&Dat::kinZurrungen>,
     units::none,
     kErgebnis,
     0,
     FieldRole::result,
     {.label = "notwendige Anzahl der Zurrungen (kinematisch)"}},
    {"ergebnisSteht", At<&Dat::ergebnisSteht>},
};

/// Lower end of the range of each pair of materials.
constexpr std::array kReibungsbeiwerte{0.2, 0.2, 0.2, 0.2, 0.1, 0.1, 0.3, 0.3, 0.4, 0.6, 0.3};
/// EN 12195-1 and VDI 2700 with the ratchet on one side, tension on both sides.
constexpr std::array kUebertragungsbeiwerte{1.25, 1.5, 2.0};
/// Part of the weight below which an acceleration force counts as zero.
constexpr double kNullkraft = 1e-9;

double Bogen(double grad)
{
    return grad * kPi / 180.0;
}

/// Angle of a slope in percent, falling.
double Gefaelle(double prozent)
{
    return std::atan(-prozent * 0.01);
}

/// The larger one, not a number when either is none.
double Groesstes(double a, double b)
{
    if (std::isnan(a) || std::isnan(b))
        return std::numeric_limits<double>::quiet_NaN();
    return std::max(a, b);
}

double Anlagekraft(bool besteht, std::int64_t prozent, double nutzlast, double grenze)
{
    if (!besteht)
        return 0.0;
    const double kraft = static_cast<double>(prozent) * 0.01 * nutzlast * kErdbeschleunigung;
    return grenze > 0.0 ? std::min(kraft, grenze) : kraft;
}

/// Force on the load from friction against the road and the slope. The slope's own part cancels out.
double Beschleunigungskraft(double reibung, double neigung, double masse)
{
    // K = (µ·g·cosθ + g·sinθ)·m - m·g·sinθ
    const double hang = kErdbeschleunigung * std::sin(neigung);
    const double kraft = (reibung * kErdbeschleunigung * std::cos(neigung) + hang) * masse - masse * hang;
    return std::abs(kraft) < kNullkraft * masse * kErdbeschleunigung ? 0.0 : kraft;
}

template <std::size_t N> void Waehle(double& ziel, const std::array<double, N>& werte, std::int64_t wahl)
{
    if (wahl >= 0 && wahl < static_cast<std::int64_t>(N))
        ziel = werte[static_cast<std::size_t>(wahl)];
}

} // namespace

RecordFields CLadungDat::Felder()
{
    RecordFields felder = Describe(Eingaben(), kEingaben);
    const RecordFields ergebnisse = Describe(*this, kErgebnisse);
    felder.insert(felder.end(), ergebnisse.begin(), ergebnisse.end());
    return felder;
}

void CLadungDat::FahrzeugGewaehlt()
{
    if (!m_data.IsFzgValid(fahrzeug))
        return;
    const double bekannt = m_data.KfzDat(static_cast<std::size_t>(fahrzeug)).payload;
    if (bekannt > 0.0)
        nutzlast = bekannt;
}

void CLadungDat::ReibungGewaehlt()
{
    Waehle(reibungsbeiwert, kReibungsbeiwerte, reibungWahl);
}

void CLadungDat::UebertragungGewaehlt()
{
    Waehle(uebertragungsbeiwert, kUebertragungsbeiwerte, uebertragungWahl);
}

void CLadungDat::Rechnen()
{
    ergebnisSteht = 1;
    const double gewicht = ladung * kErdbeschleunigung;
    const double reibungskraft = reibungsbeiwert * gewicht;
    const Kraefte formschluss = Formschluss();
    // S = m·a - F_R - F_F
    const Kraefte norm{ladung * beschleunigungVorne - reibungskraft - formschluss.vorne,
                       ladung * beschleunigungHinten - reibungskraft - formschluss.hinten,
                       ladung * beschleunigungQuer - reibungskraft - formschluss.seitlich};
    sicherungskraft = norm.vorne;

    const double laengs = Gefaelle(gefaelleLaengs);
    const double quer = Gefaelle(gefaelleQuer);
    beschleunigungskraftLaengs = Beschleunigungskraft(reibungLaengs, laengs, ladung);
    beschleunigungskraftQuer = Beschleunigungskraft(reibungQuer, quer, ladung);
    reibungskraftOhne = reibungsbeiwert * gewicht * std::cos(laengs) * std::cos(quer);
    if (zurrart == niederzurren)
        RechneNiederzurren(norm, formschluss);
    else
        RechneDiagonal(norm, formschluss);
    reibungskraftGesamt = reibungskraftZurrung + reibungskraftOhne;
}

CLadungDat::Kraefte CLadungDat::Formschluss() const
{
    return {Anlagekraft(formschlussVorne != 0, formschlussVorneProzent, nutzlast, formschlussVorneGrenze),
            Anlagekraft(formschlussHinten != 0, formschlussHintenProzent, nutzlast, formschlussHintenGrenze),
            Anlagekraft(formschlussSeitlich != 0, formschlussSeitlichProzent, nutzlast, formschlussSeitlichGrenze)};
}

double CLadungDat::Anzahl(double vorne, double hinten, double seitlich, double faktor) const
{
    const double jeZurrung = std::min(zurrkraftSTF, zurrkraftLC);
    return Groesstes(std::ceil(Groesstes(vorne, hinten) * faktor / jeZurrung),
                     std::ceil(seitlich * faktor / jeZurrung));
}

void CLadungDat::RechneNiederzurren(const Kraefte& norm, const Kraefte& formschluss)
{
    const auto n = static_cast<double>(zurrungen);
    const double reibung = reibungsbeiwert + reibungGurt;
    const double sinus = std::sin(Bogen(zurrwinkel));
    // F_RZ = n·STF·k·sinα·µ; each lashing of the force T holds T·D.
    const double gehalten = n * zurrkraftSTF * uebertragungsbeiwert * sinus * reibung;
    const double divisor = reibung * sinus * n * uebertragungsbeiwert;
    reibungskraftZurrung = gehalten;

    Kraefte zurrkraft{norm.vorne / divisor, norm.hinten / divisor, norm.seitlich / divisor};
    normKraftVorne = norm.vorne - gehalten;
    normKraftHinten = norm.hinten - gehalten;
    normKraftSeitlich = norm.seitlich - gehalten;
    normZurrkraftVorne = zurrkraft.vorne - zurrkraftSTF;
    normZurrkraftHinten = zurrkraft.hinten - zurrkraftSTF;
    normZurrkraftSeitlich = zurrkraft.seitlich - zurrkraftSTF;
    normZurrungen = Anzahl(zurrkraft.vorne, zurrkraft.hinten, zurrkraft.seitlich, n);

    // A direction without a force of its own keeps the lashing force of the standard in the count.
    kinKraftVorne = kinKraftHinten = kinKraftSeitlich = 0.0;
    kinZurrkraftVorne = kinZurrkraftHinten = kinZurrkraftSeitlich = 0.0;
    const auto halte = [&](double rest, double& kraft, double& fehlend, double& gebraucht) {
        kraft = rest - gehalten;
        gebraucht = rest / divisor;
        fehlend = gebraucht - zurrkraftSTF;
    };
    const double laengs = beschleunigungskraftLaengs - reibungskraftOhne;
    if (beschleunigungskraftLaengs >= 0.0)
        halte(laengs - formschluss.vorne, kinKraftVorne, kinZurrkraftVorne, zurrkraft.vorne);
    else
        halte(laengs - formschluss.hinten, kinKraftHinten, kinZurrkraftHinten, zurrkraft.hinten);
    if (beschleunigungskraftQuer != 0.0)
        halte(beschleunigungskraftQuer - reibungskraftOhne - formschluss.seitlich, kinKraftSeitlich,
              kinZurrkraftSeitlich, zurrkraft.seitlich);
    kinZurrungen = Anzahl(zurrkraft.vorne, zurrkraft.hinten, zurrkraft.seitlich, n);

    NenneFehlbetrag(formschluss, gehalten, gehalten);
}

void CLadungDat::RechneDiagonal(const Kraefte& norm, const Kraefte& formschluss)
{
    const double sinus = std::sin(Bogen(diagonalAlpha));
    const double zugLaengs = std::cos(Bogen(diagonalBeta)) * std::cos(Bogen(diagonalAlpha));
    const double zugQuer = std::sin(Bogen(diagonalBeta)) * std::cos(Bogen(diagonalAlpha));
    // Two of the four lashings pull against each direction, all four press the load down.
    const double jeLaengs = zugLaengs + 2.0 * reibungsbeiwert * sinus;
    const double jeQuer = zugQuer + 2.0 * reibungsbeiwert * sinus;
    reibungskraftZurrung = reibungsbeiwert * 4.0 * zurrkraftSTF * sinus;
    const double gehaltenLaengs = 2.0 * zurrkraftSTF * zugLaengs + reibungskraftZurrung;
    const double gehaltenQuer = 2.0 * zurrkraftSTF * zugQuer + reibungskraftZurrung;

    normKraftVorne = norm.vorne - gehaltenLaengs;
    normKraftHinten = norm.hinten - gehaltenLaengs;
    normKraftSeitlich = norm.seitlich - gehaltenQuer;
    const Kraefte normZug{norm.vorne / jeLaengs, norm.hinten / jeLaengs, norm.seitlich / jeQuer};
    normZurrkraftVorne = normZug.vorne / 2.0 - zurrkraftSTF;
    normZurrkraftHinten = normZug.hinten / 2.0 - zurrkraftSTF;
    normZurrkraftSeitlich = normZug.seitlich / 2.0 - zurrkraftSTF;
    normZurrungen = Anzahl(normZug.vorne, normZug.hinten, normZug.seitlich, 2.0);

    const double laengs = beschleunigungskraftLaengs - reibungskraftOhne;
    const Kraefte rest{laengs - formschluss.vorne, laengs - formschluss.hinten,
                       beschleunigungskraftQuer - reibungskraftOhne - formschluss.seitlich};
    const Kraefte zug{rest.vorne / jeLaengs, rest.hinten / jeLaengs, rest.seitlich / jeQuer};
    const bool nachVorne = beschleunigungskraftLaengs >= 0.0;
    kinKraftVorne = nachVorne ? rest.vorne - gehaltenLaengs : 0.0;
    kinKraftHinten = nachVorne ? 0.0 : rest.hinten - gehaltenLaengs;
    kinKraftSeitlich = rest.seitlich - gehaltenQuer;
    kinZurrkraftVorne = nachVorne ? zug.vorne / 2.0 - zurrkraftSTF : 0.0;
    kinZurrkraftHinten = nachVorne ? 0.0 : zug.hinten / 2.0 - zurrkraftSTF;
    kinZurrkraftSeitlich = zug.seitlich / 2.0 - zurrkraftSTF;
    kinZurrungen = Anzahl(zug.vorne, zug.hinten, zug.seitlich, 2.0);

    NenneFehlbetrag(formschluss, gehaltenLaengs, gehaltenQuer);
}

void CLadungDat::NenneFehlbetrag(const Kraefte& formschluss, double gehaltenLaengs, double gehaltenQuer)
{
    fehltLaengs.reset();
    fehltQuer.reset();
    if (beschleunigungskraftLaengs < 0.0)
        fehltLaengs = -beschleunigungskraftLaengs - reibungskraftOhne - formschluss.hinten - gehaltenLaengs;
    if (beschleunigungskraftQuer < 0.0)
        fehltQuer = -beschleunigungskraftQuer - reibungskraftOhne - formschluss.seitlich - gehaltenQuer;
}
