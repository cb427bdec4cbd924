// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The record's fields by name, and how it is kept with the case.
#include "masks/collision/CSchrankenverfahrenDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "res/collision.h"

#include <algorithm>

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr UINT kWurfwahl[] = {IDC_SCHR_WURF_MINIMUM, IDC_SCHR_WURF_MITTEL, IDC_SCHR_WURF_MAXIMUM};
constexpr UINT kWurfwege[] = {IDC_SCHR_WURFWEG_MINIMUM, IDC_SCHR_WURFWEG_MITTEL, IDC_SCHR_WURFWEG_MAXIMUM};
constexpr UINT kExportwahl[] = {IDC_SCHR_EXPORT_MINIMUM, IDC_SCHR_EXPORT_MITTEL, IDC_SCHR_EXPORT_MAXIMUM};
constexpr UINT kExporttempi[] = {IDC_SCHR_EXPORTTEMPO_MINIMUM, IDC_SCHR_EXPORTTEMPO_MITTEL,
                                 IDC_SCHR_EXPORTTEMPO_MAXIMUM};
constexpr UINT kSeiten[] = {IDC_SCHR_VON_LINKS, IDC_SCHR_VON_RECHTS};
constexpr UINT kAnstoss[] = {IDC_SCHR_KONTROLLE_ANSTOSS, IDC_SCHR_EXPORT_ANSTOSS}; // on two pages
constexpr std::string_view kSpanne = "Minimum|Mittelwert|Maximum";
constexpr std::int64_t kKeiner = -2;
constexpr NumberRange kBeteiligte{kKeiner, 15};

/// Where an object stands: position, direction, size, and whether it stands.
template <std::size_t Objekt, auto Wert> FieldRef Lage(Dat& dat)
{
    return {&(dat.objekte[Objekt].*Wert), 1};
}
template <std::size_t Objekt, auto Wert> FieldRef Ort(Dat& dat)
{
    return {&(dat.objekte[Objekt].position.*Wert), 1};
}

constexpr NumberRow<Dat> kZahlen[] = {
    {"fahrzeug", At<&Dat::fahrzeugNr>, units::none, FieldRole::state, kBeteiligte},
    {"person", At<&Dat::personNr>, units::none, FieldRole::state, kBeteiligte},
    {"fahrrad", At<&Dat::fahrradNr>, units::none, FieldRole::state, kBeteiligte},
    {IDC_SCHR_VERZOEGERUNG,
     "verzoegerung",
     At<&Dat::verzoegerung>,
     units::ms2,
     {0, 20},
     2,
     FieldRole::input,
     {.source = ValueSource::maximumDeceleration}},
    {IDC_SCHR_VERZOEGERUNG_TOLERANZ,
     "verzoegerungToleranz",
     At<&Dat::verzoegerungToleranz>,
     units::ms2,
     {0, 20},
     2,
     FieldRole::input,
     {.label = "Verzögerung", .joint = Joint::tolerance}},
    {IDC_SCHR_KUEHNEL_TOLERANZ,
     "kuehnelToleranz",
     At<&Dat::kuehnelToleranz>,
     units::kmh,
     {0, 100},
     2,
     FieldRole::input,
     {.joint = Joint::tolerance, .onlyWith = IDC_SCHR_KUEHNEL_VERZOEGERUNG}},
    {IDC_SCHR_RAU_TOLERANZ,
     "rauToleranz",
     At<&Dat::rauToleranz>,
     units::kmh,
     {0, 100},
     2,
     FieldRole::input,
     {.joint = Joint::tolerance, .onlyWith = IDC_SCHR_RAU}},
    {IDC_SCHR_DETTINGER_TOLERANZ,
     "dettingerToleranz",
     At<&Dat::dettingerToleranz>,
     units::kmh,
     {0, 100},
     2,
     FieldRole::input,
     {.joint = Joint::tolerance, .onlyWith = IDC_SCHR_DETTINGER}},
    {IDC_SCHR_ABWICKLUNG_WEG,
     "abwicklungWeg",
     At<&Dat::abwicklungWeg>,
     units::cm,
     {0, 1000},
     2,
     FieldRole::input,
     {.onlyWith = IDC_SCHR_ABWICKLUNG}},
    {IDC_SCHR_ABWICKLUNG_TOLERANZ,
     "abwicklungToleranz",
     At<&Dat::abwicklungToleranz>,
     units::cm,
     {0, 1000},
     2,
     FieldRole::input,
     {.joint = Joint::tolerance, .onlyWith = IDC_SCHR_ABWICKLUNG}},
    {IDC_SCHR_KAROSSERIE,
     "karosserie",
     At<&Dat::karosserie>,
     units::none,
     {0, 100},
     2,
     FieldRole::input,
     {.label = "Karosseriekonstante", .onlyWith = IDC_SCHR_ABWICKLUNG}},
    {IDC_SCHR_KAROSSERIE_TOLERANZ,
     "karosserieToleranz",
     At<&Dat::karosserieToleranz>,
     units::none,
     {0, 100},
     2,
     FieldRole::input,
     {.label = "Karosseriekonstante", .joint = Joint::tolerance, .onlyWith = IDC_SCHR_ABWICKLUNG}},
    {IDC_SCHR_TEMPOSCHRANKE_VON,
     "geschwindigkeitVon",
     At<&Dat::geschwindigkeitVon>,
     units::kmh,
     {0, 200},
     2,
     FieldRole::input,
     {.onlyWith = IDC_SCHR_TEMPOSCHRANKE}},
    {IDC_SCHR_TEMPOSCHRANKE_BIS,
     "geschwindigkeitBis",
     At<&Dat::geschwindigkeitBis>,
     units::kmh,
     {0, 200},
     2,
     FieldRole::input,
     {.joint = Joint::upTo, .onlyWith = IDC_SCHR_TEMPOSCHRANKE}},
    {"fahrzeugLaenge", At<&Dat::fahrzeugLaenge>, units::m, FieldRole::internal},
    {"fahrradLaengs", At<&Dat::fahrradLaengs>, units::m, FieldRole::internal},
    {"fahrradQuer", At<&Dat::fahrradQuer>, units::m, FieldRole::internal},
    {"personLaengs", At<&Dat::personLaengs>, units::m, FieldRole::internal},
    {"personQuer", At<&Dat::personQuer>, units::m, FieldRole::internal},
    {"kollisionVon", At<&Dat::kollision, &Dat::Bereich::von>, units::m, FieldRole::internal},
    {"kollisionBis", At<&Dat::kollision, &Dat::Bereich::bis>, units::m, FieldRole::internal},
    {"gesamtVon", At<&Dat::gesamt, &Dat::Bereich::von>, units::m, FieldRole::internal},
    {"gesamtBis", At<&Dat::gesamt, &Dat::Bereich::bis>, units::m, FieldRole::internal},
    {"hauptVon", At<&Dat::haupt, &Dat::Bereich::von>, units::m, FieldRole::internal},
    {"hauptBis", At<&Dat::haupt, &Dat::Bereich::bis>, units::m, FieldRole::internal},
    {"kleinsterWeg", At<&Dat::kleinsterWeg>, units::m, FieldRole::internal},
    {"groessterWeg", At<&Dat::groessterWeg>, units::m, FieldRole::internal},
    {"ergebnisSteht", At<&Dat::ergebnisSteht>},
    {"gerechnet", At<&Dat::gerechnet>},
    {IDC_SCHR_WEG_VON, "wegVon", At<&Dat::weg, &Dat::Bereich::von>, units::m, {-2000, 2000}, 2, FieldRole::result},
    {IDC_SCHR_WEG_BIS,
     "wegBis",
     At<&Dat::weg, &Dat::Bereich::bis>,
     units::m,
     {-2000, 2000},
     2,
     FieldRole::result,
     {.label = "Weg", .joint = Joint::upTo}},
    {IDC_SCHR_TEMPO_VON,
     "tempoVon",
     At<&Dat::tempo, &Dat::Bereich::von>,
     units::kmh,
     {-2000, 2000},
     2,
     FieldRole::result},
    {IDC_SCHR_TEMPO_BIS,
     "tempoBis",
     At<&Dat::tempo, &Dat::Bereich::bis>,
     units::kmh,
     {-2000, 2000},
     2,
     FieldRole::result,
     {.label = "Geschwindigkeit", .joint = Joint::upTo}},
    {kWurfwahl, "wegWahl", At<&Dat::wegWahl>, "Wurf- und Rutschweite"},
    {kWurfwege,
     "wurfRutschWeg",
     At<&Dat::wurfRutschWeg>,
     units::m,
     {-2000, 2000},
     2,
     FieldRole::result,
     {.label = kSpanne}},
    {IDC_SCHR_ABFLUGWINKEL, "abflugwinkel", At<&Dat::abflugwinkel>, units::degree, {0, 90}, 2, FieldRole::input},
    {IDC_SCHR_HOEHENUNTERSCHIED,
     "hoehenunterschied",
     At<&Dat::hoehenunterschied>,
     units::m,
     {-10, 0},
     2,
     FieldRole::input},
    {IDC_SCHR_RUTSCHVERZOEGERUNG,
     "rutschverzoegerung",
     At<&Dat::rutschverzoegerung>,
     units::ms2,
     {0, 20},
     2,
     FieldRole::input},
    {IDC_SCHR_ABFLUGTEMPO,
     "abfluggeschwindigkeit",
     At<&Dat::abfluggeschwindigkeit>,
     units::kmh,
     {0, 2000},
     2,
     FieldRole::result},
    {IDC_SCHR_WURFWEITE, "wurfweite", At<&Dat::wurfweite>, units::m, {0, 2000}, 2, FieldRole::result},
    {IDC_SCHR_WURFHOEHE, "wurfhoehe", At<&Dat::wurfhoehe>, units::m, {0, 2000}, 2, FieldRole::result},
    {kAnstoss, "anstossfaktor", At<&Dat::anstossfaktor>, units::none, {0, 1}, 2, FieldRole::input},
    {IDC_SCHR_KOLLISIONSTEMPO,
     "kollisionsgeschwindigkeit",
     At<&Dat::kollisionsgeschwindigkeit>,
     units::kmh,
     {0, 2000},
     2,
     FieldRole::result},
    {kExportwahl, "exportWahl", At<&Dat::exportWahl>, "Kollisionsgeschwindigkeit"},
    {kExporttempi,
     "exportGeschwindigkeit",
     At<&Dat::exportGeschwindigkeit>,
     units::kmh,
     {-2000, 2000},
     2,
     FieldRole::result,
     {.label = kSpanne}},
    {kSeiten, "vonRechts", At<&Dat::vonRechts>, "Aus Sicht des Fahrzeuges kommt der Fußgänger von"},
    {IDC_SCHR_KUEHNEL_GLOBAL, "theorie.kuehnelGlobal", Element<&Dat::theorien, Dat::kuehnelGlobal>},
    {IDC_SCHR_KUEHNEL_VERZOEGERUNG, "theorie.kuehnelVerzoegerung", Element<&Dat::theorien, Dat::kuehnelVerzoegerung>},
    {IDC_SCHR_RAU, "theorie.rauOtteSchulz", Element<&Dat::theorien, Dat::rauOtteSchulz>},
    {IDC_SCHR_DETTINGER, "theorie.dettinger", Element<&Dat::theorien, Dat::dettinger>},
    {IDC_SCHR_RITTER, "theorie.ritterKrieg", Element<&Dat::theorien, Dat::ritterKrieg>},
    {IDC_SCHR_FRONTSCHEIBE, "theorie.frontscheibe", Element<&Dat::theorien, Dat::frontscheibe>},
    {IDC_SCHR_HAUPTFELD, "theorie.scheinwerferHaupt", Element<&Dat::theorien, Dat::scheinwerferHaupt>},
    {IDC_SCHR_GESAMTFELD, "theorie.scheinwerferGesamt", Element<&Dat::theorien, Dat::scheinwerferGesamt>},
    {IDC_SCHR_ABWICKLUNG, "theorie.abwicklung", Element<&Dat::theorien, Dat::abwicklung>},
    {IDC_SCHR_TEMPOSCHRANKE, "theorie.geschwindigkeit", Element<&Dat::theorien, Dat::geschwindigkeit>},
    {"objekt.fahrzeug.x", Ort<Dat::fahrzeug, &CDPoint::x>, units::m},
    {"objekt.fahrzeug.y", Ort<Dat::fahrzeug, &CDPoint::y>, units::m},
    {"objekt.fahrzeug.winkel", Lage<Dat::fahrzeug, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.fahrzeug.breite", Lage<Dat::fahrzeug, &Dat::Rechteck::breite>, units::m},
    {"objekt.fahrzeug.laenge", Lage<Dat::fahrzeug, &Dat::Rechteck::laenge>, units::m},
    {"objekt.fahrzeug.gesetzt", Lage<Dat::fahrzeug, &Dat::Rechteck::gesetzt>},
    {"objekt.kollisionsort.x", Ort<Dat::kollisionsort, &CDPoint::x>, units::m},
    {"objekt.kollisionsort.y", Ort<Dat::kollisionsort, &CDPoint::y>, units::m},
    {"objekt.kollisionsort.winkel", Lage<Dat::kollisionsort, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.kollisionsort.breite", Lage<Dat::kollisionsort, &Dat::Rechteck::breite>, units::m},
    {"objekt.kollisionsort.laenge", Lage<Dat::kollisionsort, &Dat::Rechteck::laenge>, units::m},
    {"objekt.kollisionsort.gesetzt", Lage<Dat::kollisionsort, &Dat::Rechteck::gesetzt>},
    {"objekt.person.x", Ort<Dat::person, &CDPoint::x>, units::m},
    {"objekt.person.y", Ort<Dat::person, &CDPoint::y>, units::m},
    {"objekt.person.winkel", Lage<Dat::person, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.person.breite", Lage<Dat::person, &Dat::Rechteck::breite>, units::m},
    {"objekt.person.laenge", Lage<Dat::person, &Dat::Rechteck::laenge>, units::m},
    {"objekt.person.gesetzt", Lage<Dat::person, &Dat::Rechteck::gesetzt>},
    {"objekt.fahrrad.x", Ort<Dat::fahrrad, &CDPoint::x>, units::m},
    {"objekt.fahrrad.y", Ort<Dat::fahrrad, &CDPoint::y>, units::m},
    {"objekt.fahrrad.winkel", Lage<Dat::fahrrad, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.fahrrad.breite", Lage<Dat::fahrrad, &Dat::Rechteck::breite>, units::m},
    {"objekt.fahrrad.laenge", Lage<Dat::fahrrad, &Dat::Rechteck::laenge>, units::m},
    {"objekt.fahrrad.gesetzt", Lage<Dat::fahrrad, &Dat::Rechteck::gesetzt>},
    {"objekt.gesamtfeld.x", Ort<Dat::gesamtfeld, &CDPoint::x>, units::m},
    {"objekt.gesamtfeld.y", Ort<Dat::gesamtfeld, &CDPoint::y>, units::m},
    {"objekt.gesamtfeld.winkel", Lage<Dat::gesamtfeld, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.gesamtfeld.breite", Lage<Dat::gesamtfeld, &Dat::Rechteck::breite>, units::m},
    {"objekt.gesamtfeld.laenge", Lage<Dat::gesamtfeld, &Dat::Rechteck::laenge>, units::m},
    {"objekt.gesamtfeld.gesetzt", Lage<Dat::gesamtfeld, &Dat::Rechteck::gesetzt>},
    {"objekt.hauptfeld.x", Ort<Dat::hauptfeld, &CDPoint::x>, units::m},
    {"objekt.hauptfeld.y", Ort<Dat::hauptfeld, &CDPoint::y>, units::m},
    {"objekt.hauptfeld.winkel", Lage<Dat::hauptfeld, &Dat::Rechteck::winkel>, units::radian},
    {"objekt.hauptfeld.breite", Lage<Dat::hauptfeld, &Dat::Rechteck::breite>, units::m},
    {"objekt.hauptfeld.laenge", Lage<Dat::hauptfeld, &Dat::Rechteck::laenge>, units::m},
    {"objekt.hauptfeld.gesetzt", Lage<Dat::hauptfeld, &Dat::Rechteck::gesetzt>},
};

} // namespace

RecordFields CSchrankenverfahrenDat::Felder()
{
    return Describe(*this, kZahlen);
}

RecordFields CSchrankenverfahrenDat::Behaltene()
{
    RecordFields felder = Felder();
    std::erase_if(felder, [](const RecordField& feld) {
        return feld.spec->role != FieldRole::input && feld.spec->role != FieldRole::state;
    });
    return felder;
}

void CSchrankenverfahrenDat::Merken()
{
    KeepWithCase(m_data, IDD_SCHRANKENVERFAHREN, Behaltene());
    m_abgelegt = WerteDesFalls();
    m_data.NotifyMaskenWerte();
}

void CSchrankenverfahrenDat::Laden()
{
    Dat voreinstellung(m_data);
    const RecordFields behalten = Behaltene();
    const RecordFields anfang = voreinstellung.Behaltene();
    for (std::size_t i = 0; i < behalten.size(); ++i)
        std::visit(
            [&](auto* ziel) {
                const auto* quelle = std::get<decltype(ziel)>(anfang[i].value);
                std::copy_n(quelle, behalten[i].count, ziel);
            },
            behalten[i].value);
    TakeFromCase(m_data, IDD_SCHRANKENVERFAHREN, behalten);
    if (ergebnisSteht != 0)
        gerechnet = 1;
    // A participant is one thing only.
    if (fahrradNr >= 0 && (fahrradNr == fahrzeugNr || fahrradNr == personNr))
        fahrradNr = kKeiner;
    if (personNr >= 0 && personNr == fahrzeugNr)
        personNr = kKeiner;
    m_abgelegt = WerteDesFalls();
}

bool CSchrankenverfahrenDat::FallHatAnderes() const
{
    return WerteDesFalls() != m_abgelegt;
}

CMaskenWerte CSchrankenverfahrenDat::WerteDesFalls() const
{
    const auto& alle = m_data.AlleMaskenWerte();
    const auto gefunden = alle.find(IDD_SCHRANKENVERFAHREN);
    return gefunden == alle.end() ? CMaskenWerte{} : gefunden->second;
}
