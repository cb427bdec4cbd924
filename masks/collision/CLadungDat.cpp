// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CLadungDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{

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
    return {
        {"fahrzeug", "", &fahrzeug},
        {"nutzlast", "kg", &nutzlast},
        {"ladung", "kg", &ladung},
        {"reibungWahl", "", &reibungWahl},
        {"reibungsbeiwert", "", &reibungsbeiwert},
        {"zurrpunktbelastbarkeit", "N", &zurrpunktbelastbarkeit},
        {"formschlussVorne", "", &formschlussVorne},
        {"formschlussHinten", "", &formschlussHinten},
        {"formschlussSeitlich", "", &formschlussSeitlich},
        {"formschlussVorneProzent", "%", &formschlussVorneProzent},
        {"formschlussHintenProzent", "%", &formschlussHintenProzent},
        {"formschlussSeitlichProzent", "%", &formschlussSeitlichProzent},
        {"formschlussVorneGrenze", "N", &formschlussVorneGrenze},
        {"formschlussHintenGrenze", "N", &formschlussHintenGrenze},
        {"formschlussSeitlichGrenze", "N", &formschlussSeitlichGrenze},
        {"beschleunigungVorne", "m/s²", &beschleunigungVorne},
        {"beschleunigungHinten", "m/s²", &beschleunigungHinten},
        {"beschleunigungQuer", "m/s²", &beschleunigungQuer},
        {"beschleunigungVertikal", "m/s²", &beschleunigungVertikal},
        {"zurrkraftLC", "N", &zurrkraftLC},
        {"zurrkraftSTF", "N", &zurrkraftSTF},
        {"niederzurren", "", &niederzurren},
        {"zurrungen", "", &zurrungen},
        {"zurrwinkel", "°", &zurrwinkel},
        {"uebertragungWahl", "", &uebertragungWahl},
        {"uebertragungsbeiwert", "", &uebertragungsbeiwert},
        {"reibungGurt", "", &reibungGurt},
        {"diagonalAlpha", "°", &diagonalAlpha},
        {"diagonalBeta", "°", &diagonalBeta},
        {"reibungLaengs", "", &reibungLaengs},
        {"reibungQuer", "", &reibungQuer},
        {"gefaelleLaengs", "%", &gefaelleLaengs},
        {"gefaelleQuer", "%", &gefaelleQuer},
        {"sicherungskraft", "N", &sicherungskraft},
        {"reibungskraftOhne", "N", &reibungskraftOhne},
        {"reibungskraftZurrung", "N", &reibungskraftZurrung},
        {"reibungskraftGesamt", "N", &reibungskraftGesamt},
        {"beschleunigungskraftLaengs", "N", &beschleunigungskraftLaengs},
        {"beschleunigungskraftQuer", "N", &beschleunigungskraftQuer},
        {"normKraftVorne", "N", &normKraftVorne},
        {"normKraftHinten", "N", &normKraftHinten},
        {"normKraftSeitlich", "N", &normKraftSeitlich},
        {"normZurrkraftVorne", "N", &normZurrkraftVorne},
        {"normZurrkraftHinten", "N", &normZurrkraftHinten},
        {"normZurrkraftSeitlich", "N", &normZurrkraftSeitlich},
        {"normZurrungen", "", &normZurrungen},
        {"kinKraftVorne", "N", &kinKraftVorne},
        {"kinKraftHinten", "N", &kinKraftHinten},
        {"kinKraftSeitlich", "N", &kinKraftSeitlich},
        {"kinZurrkraftVorne", "N", &kinZurrkraftVorne},
        {"kinZurrkraftHinten", "N", &kinZurrkraftHinten},
        {"kinZurrkraftSeitlich", "N", &kinZurrkraftSeitlich},
        {"kinZurrungen", "", &kinZurrungen},
        {"ergebnisSteht", "", &ergebnisSteht},
    };
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
    if (niederzurren != 0)
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
