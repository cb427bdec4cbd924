// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What follows from the common area: ranges, the throw-and-slide check, and the record's life in the case.
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace
{

using Dat = CSchrankenverfahrenDat;

/// Calls visit(s, lower, upper) for every position that carries speeds.
template <class Visit> void FuerJedePosition(const Dat::Kurvenfeld& flaeche, Visit visit)
{
    for (std::size_t i = 0; i < Dat::kProben; ++i)
        if (flaeche[i + Dat::kProben].y > 0.0)
            visit(flaeche[i].x, flaeche[i].y, flaeche[i + Dat::kProben].y);
}

struct Wurf {
    double geschwindigkeit; ///< m/s
    double weite;           ///< m
    double hoehe;           ///< m
};

/// Take-off speed of a body that flies from `drop` metres above the ground at the angle (rad) and slides with the
/// deceleration (m/s², 0 = no slide) until it has come `weg` metres far. All zero when nothing carries it so far.
Wurf WurfAusWeg(double weg, double winkel, double drop, double rutsch)
{
    const double g = kErdbeschleunigung;
    const double cosA = std::cos(winkel);
    const double sinA = std::sin(winkel);
    if (!(weg > 0.0) || !(cosA > 1e-12))
        return {0.0, 0.0, 0.0};
    // weg = x_w + slide with u = v²:
    //   x_w   = v·cosα·(v·sinα + √(v²·sin²α + 2·g·H))/g
    //   slide = (v·cosα)²/(2·a_R)
    // gives (A² - B²)·u² - 2·M·u + weg² = 0 with A = B + C; its smaller root in the form without cancellation.
    const double b = cosA * sinA / g;
    const double c = rutsch > 0.0 ? cosA * cosA / (2.0 * rutsch) : 0.0;
    const double m = (b + c) * weg + drop * cosA * cosA / g;
    const double root = m * m - c * (2.0 * b + c) * weg * weg;
    const double denominator = m + std::sqrt(std::max(root, 0.0));
    if (!(denominator > 0.0))
        return {0.0, 0.0, 0.0};
    const double v = weg / std::sqrt(denominator);
    const double weite = v * cosA * (v * sinA + std::sqrt(v * v * sinA * sinA + 2.0 * g * drop)) / g;
    return {v, weite, v * v * sinA * sinA / (2.0 * g)};
}

} // namespace

bool CSchrankenverfahrenDat::HatFlaeche() const
{
    bool any = false;
    FuerJedePosition(flaeche, [&](double, double, double) { any = true; });
    return any;
}

Dat::Bereich CSchrankenverfahrenDat::FlaecheWeg() const
{
    Bereich bereich;
    bool first = true;
    FuerJedePosition(flaeche, [&](double s, double, double) {
        bereich.von = first ? s : std::min(bereich.von, s);
        bereich.bis = first ? s : std::max(bereich.bis, s);
        first = false;
    });
    return bereich;
}

Dat::Bereich CSchrankenverfahrenDat::FlaecheGeschwindigkeit() const
{
    Bereich bereich;
    bool first = true;
    FuerJedePosition(flaeche, [&](double, double unten, double oben) {
        if (unten <= 0.0)
            return; // open below: no smallest speed to name
        bereich.von = first ? unten : std::min(bereich.von, unten);
        bereich.bis = first ? oben : std::max(bereich.bis, oben);
        first = false;
    });
    return bereich;
}

double CSchrankenverfahrenDat::FlaecheWegZu(std::int64_t wahl) const
{
    if (wahl < 0 || wahl > 2)
        return 0.0;
    const double v = exportGeschwindigkeit[static_cast<std::size_t>(wahl)];
    // The middle of the positions whose band holds the speed; without one, the position that comes nearest.
    double sum = 0.0;
    int count = 0;
    double nearest = 0.0;
    double gap = INFINITY;
    FuerJedePosition(flaeche, [&](double s, double unten, double oben) {
        if (unten <= v && v <= oben) {
            sum += s;
            ++count;
        }
        const double distance = std::max({unten - v, v - oben, 0.0});
        if (distance < gap) {
            gap = distance;
            nearest = s;
        }
    });
    return count > 0 ? sum / count : nearest;
}

void CSchrankenverfahrenDat::Kontrolle()
{
    double smallest = INFINITY;
    double largest = -INFINITY;
    double sum = 0.0;
    int count = 0;
    FuerJedePosition(flaeche, [&](double s, double, double) {
        smallest = std::min(smallest, s);
        largest = std::max(largest, s);
        sum += s;
        ++count;
    });
    if (count == 0)
        wurfRutschWeg = {};
    else
        wurfRutschWeg = {smallest - personLaengs, sum / count - personLaengs, largest - personLaengs};

    const auto speeds = FlaecheGeschwindigkeit();
    exportGeschwindigkeit = {speeds.von, (speeds.von + speeds.bis) / 2.0, speeds.bis};

    const auto wahl = static_cast<std::size_t>(std::clamp<std::int64_t>(wegWahl, 0, 2));
    const Wurf wurf = WurfAusWeg(wurfRutschWeg[wahl], abflugwinkel * kPi / 180.0, std::max(0.0, -hoehenunterschied),
                                 rutschverzoegerung);
    abfluggeschwindigkeit = wurf.geschwindigkeit * kKmhProMs;
    wurfweite = wurf.weite;
    wurfhoehe = wurf.hoehe;
    kollisionsgeschwindigkeit = anstossfaktor == 0.0 ? 0.0 : abfluggeschwindigkeit / anstossfaktor;
}

RecordFields CSchrankenverfahrenDat::Felder()
{
    RecordFields felder{
        {"fahrzeug", "", &fahrzeugNr},
        {"person", "", &personNr},
        {"fahrrad", "", &fahrradNr},
        {"verzoegerung", "m/s²", &verzoegerung},
        {"verzoegerungToleranz", "m/s²", &verzoegerungToleranz},
        {"kuehnelToleranz", "km/h", &kuehnelToleranz},
        {"rauToleranz", "km/h", &rauToleranz},
        {"dettingerToleranz", "km/h", &dettingerToleranz},
        {"abwicklungWeg", "cm", &abwicklungWeg},
        {"abwicklungToleranz", "cm", &abwicklungToleranz},
        {"karosserie", "", &karosserie},
        {"karosserieToleranz", "", &karosserieToleranz},
        {"geschwindigkeitVon", "km/h", &geschwindigkeitVon},
        {"geschwindigkeitBis", "km/h", &geschwindigkeitBis},
        {"fahrradLaengs", "m", &fahrradLaengs},
        {"fahrradQuer", "m", &fahrradQuer},
        {"personLaengs", "m", &personLaengs},
        {"personQuer", "m", &personQuer},
        {"kollisionVon", "m", &kollision.von},
        {"kollisionBis", "m", &kollision.bis},
        {"gesamtVon", "m", &gesamt.von},
        {"gesamtBis", "m", &gesamt.bis},
        {"hauptVon", "m", &haupt.von},
        {"hauptBis", "m", &haupt.bis},
        {"kleinsterWeg", "m", &kleinsterWeg},
        {"groessterWeg", "m", &groessterWeg},
        {"wegWahl", "", &wegWahl},
        {"wurfRutschWeg", "m", wurfRutschWeg.data(), wurfRutschWeg.size()},
        {"abflugwinkel", "°", &abflugwinkel},
        {"hoehenunterschied", "m", &hoehenunterschied},
        {"rutschverzoegerung", "m/s²", &rutschverzoegerung},
        {"abfluggeschwindigkeit", "km/h", &abfluggeschwindigkeit},
        {"wurfweite", "m", &wurfweite},
        {"wurfhoehe", "m", &wurfhoehe},
        {"anstossfaktor", "", &anstossfaktor},
        {"kollisionsgeschwindigkeit", "km/h", &kollisionsgeschwindigkeit},
        {"exportWahl", "", &exportWahl},
        {"exportGeschwindigkeit", "km/h", exportGeschwindigkeit.data(), exportGeschwindigkeit.size()},
    };
    return felder;
}

namespace
{

constexpr UINT kMaske = 487;

/// Writes record and case alike: `value` in one direction, the stored number in the other.
class Ablage
{
  public:
    Ablage(CMaskenWerte& werte, bool laden) : m_werte(werte), m_laden(laden) {}

    void Wert(const std::string& name, double& value)
    {
        if (!m_laden) {
            m_werte[name] = {value};
            return;
        }
        const auto found = m_werte.find(name);
        if (found != m_werte.end() && found->second.size() == 1 && std::isfinite(found->second[0]))
            value = found->second[0];
    }
    void Wert(const std::string& name, std::int64_t& value, std::int64_t lowest, std::int64_t highest)
    {
        auto number = static_cast<double>(value);
        Wert(name, number);
        if (number >= static_cast<double>(lowest) && number <= static_cast<double>(highest))
            value = static_cast<std::int64_t>(number);
    }
    void Wert(const std::string& name, bool& value)
    {
        double number = value ? 1.0 : 0.0;
        Wert(name, number);
        value = number != 0.0;
    }

  private:
    CMaskenWerte& m_werte;
    bool m_laden;
};

void Uebertrage(Dat& dat, Ablage ablage)
{
    ablage.Wert("fahrzeug", dat.fahrzeugNr, -2, 15);
    ablage.Wert("person", dat.personNr, -2, 15);
    ablage.Wert("fahrrad", dat.fahrradNr, -2, 15);
    ablage.Wert("wegWahl", dat.wegWahl, 0, 2);
    ablage.Wert("exportWahl", dat.exportWahl, 0, 3);
    ablage.Wert("vonRechts", dat.vonRechts);
    ablage.Wert("ergebnisSteht", dat.ergebnisSteht);
    for (auto [name, value] : {std::pair{"verzoegerung", &dat.verzoegerung},
                               {"verzoegerungToleranz", &dat.verzoegerungToleranz},
                               {"kuehnelToleranz", &dat.kuehnelToleranz},
                               {"rauToleranz", &dat.rauToleranz},
                               {"dettingerToleranz", &dat.dettingerToleranz},
                               {"abwicklungWeg", &dat.abwicklungWeg},
                               {"abwicklungToleranz", &dat.abwicklungToleranz},
                               {"karosserie", &dat.karosserie},
                               {"karosserieToleranz", &dat.karosserieToleranz},
                               {"geschwindigkeitVon", &dat.geschwindigkeitVon},
                               {"geschwindigkeitBis", &dat.geschwindigkeitBis},
                               {"abflugwinkel", &dat.abflugwinkel},
                               {"hoehenunterschied", &dat.hoehenunterschied},
                               {"rutschverzoegerung", &dat.rutschverzoegerung},
                               {"anstossfaktor", &dat.anstossfaktor}})
        ablage.Wert(name, *value);
    constexpr std::array kTheorieNamen{
        "kuehnelGlobal", "kuehnelVerzoegerung", "rauOtteSchulz",      "dettinger",  "ritterKrieg",
        "frontscheibe",  "scheinwerferHaupt",   "scheinwerferGesamt", "abwicklung", "geschwindigkeit"};
    static_assert(kTheorieNamen.size() == Dat::kTheorien);
    for (std::size_t i = 0; i < Dat::kTheorien; ++i)
        ablage.Wert(std::string("theorie.") + kTheorieNamen[i], dat.theorien[i]);
    constexpr std::array kObjektNamen{"fahrzeug", "kollisionsort", "person", "fahrrad", "gesamtfeld", "hauptfeld"};
    static_assert(kObjektNamen.size() == Dat::kObjekte);
    for (std::size_t i = 0; i < Dat::kObjekte; ++i) {
        const std::string name = std::string("objekt.") + kObjektNamen[i] + ".";
        Dat::Rechteck& objekt = dat.objekte[i];
        ablage.Wert(name + "x", objekt.position.x);
        ablage.Wert(name + "y", objekt.position.y);
        ablage.Wert(name + "winkel", objekt.winkel);
        ablage.Wert(name + "breite", objekt.breite);
        ablage.Wert(name + "laenge", objekt.laenge);
        ablage.Wert(name + "gesetzt", objekt.gesetzt);
    }
}

} // namespace

void CSchrankenverfahrenDat::Speichern()
{
    Uebertrage(*this, Ablage(m_data.MaskenWerte(kMaske), false));
}

void CSchrankenverfahrenDat::Laden()
{
    Uebertrage(*this, Ablage(m_data.MaskenWerte(kMaske), true));
}
