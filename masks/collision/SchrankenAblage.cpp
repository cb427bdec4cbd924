// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The record's fields by name, and how it is kept with the case.
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/CRuvData.h"

#include <cmath>
#include <string>

namespace
{

using Dat = CSchrankenverfahrenDat;

struct ObjektName {
    explicit ObjektName(const std::string& objekt)
        : x("objekt." + objekt + ".x"), y("objekt." + objekt + ".y"), winkel("objekt." + objekt + ".winkel"),
          breite("objekt." + objekt + ".breite"), laenge("objekt." + objekt + ".laenge"),
          gesetzt("objekt." + objekt + ".gesetzt")
    {
    }
    std::string x, y, winkel, breite, laenge, gesetzt;
};

/// Names of switches and placed objects, in the record and in the case.
struct Feldnamen {
    std::array<std::string, Dat::kTheorien> theorien{"theorie.kuehnelGlobal",     "theorie.kuehnelVerzoegerung",
                                                     "theorie.rauOtteSchulz",     "theorie.dettinger",
                                                     "theorie.ritterKrieg",       "theorie.frontscheibe",
                                                     "theorie.scheinwerferHaupt", "theorie.scheinwerferGesamt",
                                                     "theorie.abwicklung",        "theorie.geschwindigkeit"};
    std::array<ObjektName, Dat::kObjekte> objekte{ObjektName("fahrzeug"),   ObjektName("kollisionsort"),
                                                  ObjektName("person"),     ObjektName("fahrrad"),
                                                  ObjektName("gesamtfeld"), ObjektName("hauptfeld")};
};

const Feldnamen& Namen()
{
    static const Feldnamen namen;
    return namen;
}

} // namespace

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
        {"fahrzeugLaenge", "m", &fahrzeugLaenge},
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
        {"ergebnisSteht", "", &ergebnisSteht},
        {"wegVon", "m", &weg.von},
        {"wegBis", "m", &weg.bis},
        {"tempoVon", "km/h", &tempo.von},
        {"tempoBis", "km/h", &tempo.bis},
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
        {"vonRechts", "", &vonRechts},
    };
    const auto& namen = Namen();
    for (std::size_t i = 0; i < kTheorien; ++i)
        felder.push_back({namen.theorien[i], "", &theorien[i]});
    for (std::size_t i = 0; i < kObjekte; ++i) {
        const auto& name = namen.objekte[i];
        Rechteck& objekt = objekte[i];
        felder.push_back({name.x, "m", &objekt.position.x});
        felder.push_back({name.y, "m", &objekt.position.y});
        felder.push_back({name.winkel, "rad", &objekt.winkel});
        felder.push_back({name.breite, "m", &objekt.breite});
        felder.push_back({name.laenge, "m", &objekt.laenge});
        felder.push_back({name.gesetzt, "", &objekt.gesetzt});
    }
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
    void Wert(const std::string& name, std::uint8_t& value)
    {
        double number = value;
        Wert(name, number);
        value = number != 0.0 ? 1 : 0;
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
    const auto& namen = Namen();
    for (std::size_t i = 0; i < Dat::kTheorien; ++i)
        ablage.Wert(namen.theorien[i], dat.theorien[i]);
    for (std::size_t i = 0; i < Dat::kObjekte; ++i) {
        const auto& name = namen.objekte[i];
        Dat::Rechteck& objekt = dat.objekte[i];
        ablage.Wert(name.x, objekt.position.x);
        ablage.Wert(name.y, objekt.position.y);
        ablage.Wert(name.winkel, objekt.winkel);
        ablage.Wert(name.breite, objekt.breite);
        ablage.Wert(name.laenge, objekt.laenge);
        ablage.Wert(name.gesetzt, objekt.gesetzt);
    }
}

} // namespace

void CSchrankenverfahrenDat::Speichern()
{
    CMaskenWerte& werte = m_data.MaskenWerte(kMaske);
    Uebertrage(*this, Ablage(werte, false));
    m_abgelegt = werte;
    m_data.NotifyMaskenWerte();
}

void CSchrankenverfahrenDat::Laden()
{
    CMaskenWerte werte;
    Dat voreinstellung(m_data);
    Uebertrage(voreinstellung, Ablage(werte, false));
    Uebertrage(*this, Ablage(werte, true));
    m_abgelegt = WerteDesFalls();
    werte = m_abgelegt;
    Uebertrage(*this, Ablage(werte, true));
}

bool CSchrankenverfahrenDat::FallHatAnderes() const
{
    return WerteDesFalls() != m_abgelegt;
}

CMaskenWerte CSchrankenverfahrenDat::WerteDesFalls() const
{
    const auto& alle = m_data.AlleMaskenWerte();
    const auto gefunden = alle.find(kMaske);
    return gefunden == alle.end() ? CMaskenWerte{} : gefunden->second;
}
