// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CESOImportDat.h"

#include "host/CRuvData.h"
#include "host/CWnd.h"
#include "host/Files.h"
#include "host/Progress.h"
#include "res/import.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

using Dat = CESOImportDat;

constexpr double kKmhProMs = 3.6;
constexpr double kAnteilLesen = 0.5; // of the progress; the first search ends at 0.9
constexpr double kAnteilSuche = 0.4;
constexpr std::uint64_t kMeldungen = 200; // while reading
constexpr NumberRange kAbstand{0.001, 100};
constexpr NumberRange kAbtastzeit{1e-6, 1};
constexpr NumberRange kTempo{-1e6, 1e6};
constexpr NumberRange kMesswerte{-1e7, 1e7};
constexpr NumberRange kZeit{0, 1e6};
constexpr NumberExtra kSchritte{.spinner = {0, 1e6, 0.1}};
constexpr auto kErgebnis = FieldRole::result;

constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_ESO_ABSTAND_12, "abstand12", At<&Dat::abstand12>, units::m, kAbstand, 3, FieldRole::input},
    {IDC_ESO_VERSCHIEBUNG_12,
     "verschiebung12",
     Element<&Dat::verschiebung, 0>,
     units::none,
     kMesswerte,
     0,
     kErgebnis,
     {"Verschiebung 1–2"}},
    {IDC_ESO_R_12, "r12", Element<&Dat::r, 0>, units::none, {-1, 1}, 4, kErgebnis},
    {IDC_ESO_V_12, "v12", Element<&Dat::v, 0>, units::kmh, kTempo, 2, kErgebnis},
    {IDC_ESO_V_VON_12, "v12Von", Element<&Dat::vVon, 0>, units::kmh, kTempo, 2, kErgebnis, {"v12 bei ± ½ Messwert"}},
    {IDC_ESO_V_BIS_12, "v12Bis", Element<&Dat::vBis, 0>, units::kmh, kTempo, 2, kErgebnis, {"bis", Joint::upTo}},
    {IDC_ESO_V_PARABEL_12, "v12Parabel", Element<&Dat::vParabel, 0>, units::kmh, kTempo, 2, kErgebnis, {"v12 Parabel"}},
    {IDC_ESO_ABSTAND_23, "abstand23", At<&Dat::abstand23>, units::m, kAbstand, 3, FieldRole::input},
    {IDC_ESO_VERSCHIEBUNG_23,
     "verschiebung23",
     Element<&Dat::verschiebung, 1>,
     units::none,
     kMesswerte,
     0,
     kErgebnis,
     {"Verschiebung 2–3"}},
    {IDC_ESO_R_23, "r23", Element<&Dat::r, 1>, units::none, {-1, 1}, 4, kErgebnis},
    {IDC_ESO_V_23, "v23", Element<&Dat::v, 1>, units::kmh, kTempo, 2, kErgebnis},
    {IDC_ESO_V_VON_23, "v23Von", Element<&Dat::vVon, 1>, units::kmh, kTempo, 2, kErgebnis, {"v23 bei ± ½ Messwert"}},
    {IDC_ESO_V_BIS_23, "v23Bis", Element<&Dat::vBis, 1>, units::kmh, kTempo, 2, kErgebnis, {"bis", Joint::upTo}},
    {IDC_ESO_V_PARABEL_23, "v23Parabel", Element<&Dat::vParabel, 1>, units::kmh, kTempo, 2, kErgebnis, {"v23 Parabel"}},
    {IDC_ESO_ABSTAND_13, "abstand13", At<&Dat::abstand13>, units::m, kAbstand, 3, kErgebnis},
    {IDC_ESO_VERSCHIEBUNG_13,
     "verschiebung13",
     Element<&Dat::verschiebung, 2>,
     units::none,
     kMesswerte,
     0,
     kErgebnis,
     {"Verschiebung 1–3"}},
    {IDC_ESO_R_13, "r13", Element<&Dat::r, 2>, units::none, {-1, 1}, 4, kErgebnis},
    {IDC_ESO_V_13, "v13", Element<&Dat::v, 2>, units::kmh, kTempo, 2, kErgebnis},
    {IDC_ESO_V_VON_13, "v13Von", Element<&Dat::vVon, 2>, units::kmh, kTempo, 2, kErgebnis, {"v13 bei ± ½ Messwert"}},
    {IDC_ESO_V_BIS_13, "v13Bis", Element<&Dat::vBis, 2>, units::kmh, kTempo, 2, kErgebnis, {"bis", Joint::upTo}},
    {IDC_ESO_V_PARABEL_13, "v13Parabel", Element<&Dat::vParabel, 2>, units::kmh, kTempo, 2, kErgebnis, {"v13 Parabel"}},
    {IDC_ESO_ABTASTZEIT, "abtastzeit", At<&Dat::abtastzeit>, units::s, kAbtastzeit, 6, FieldRole::input},
    {IDC_ESO_KORRELIEREN, "korrelieren", At<&Dat::korrelieren>},
    {IDC_ESO_RESIDUEN, "residuen", At<&Dat::residuen>},
    {IDC_ESO_VON, "bereichVon", At<&Dat::bereichVon>, units::s, kZeit, 3, FieldRole::state, kSchritte},
    {IDC_ESO_BIS, "bereichBis", At<&Dat::bereichBis>, units::s, kZeit, 3, FieldRole::state, kSchritte},
    {"skalierung", At<&Dat::skalierung>, units::percent},
    {"linienstaerke", At<&Dat::linienstaerke>},
    {"zeilen", At<&Dat::zeilen>},
    {"aufbau", At<&Dat::aufbau>},
    {"verschiebungen", At<&Dat::verschiebungen>},
};

} // namespace

RecordFields CESOImportDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CESOImportDat::Laden()
{
    RecordFields felder = Felder();
    std::erase_if(felder, [](const RecordField& f) { return f.spec->role != FieldRole::input; });
    TakeFromCase(m_data, IDD_ESO_DATENANALYSE, felder);
    // A case from elsewhere may hold anything.
    const auto pruefe = [](double& wert, const NumberRange& bereich, double vorgabe) {
        if (!(wert >= bereich.minimum && wert <= bereich.maximum))
            wert = vorgabe;
    };
    const CESOImportDat vorgabe(m_data);
    pruefe(abstand12, kAbstand, vorgabe.abstand12);
    pruefe(abstand23, kAbstand, vorgabe.abstand23);
    pruefe(abtastzeit, kAbtastzeit, vorgabe.abtastzeit);
    Auswerten();
}

void CESOImportDat::Merken()
{
    RecordFields felder = Felder();
    std::erase_if(felder, [](const RecordField& f) { return f.spec->role != FieldRole::input; });
    KeepWithCase(m_data, IDD_ESO_DATENANALYSE, felder);
    m_data.NotifyMaskenWerte();
}

void CESOImportDat::Leere()
{
    roh = {};
    ausgerichtet = {};
    verschiebungen = {};
    verschiebung.fill(kKeine);
    r.fill(kKeine);
    m_spitze.fill(kKeine);
    zeilen = 0;
    aufbau = 0;
    m_fehlerZeile = 0;
    Auswerten();
}

CESOImportDat::Lesung CESOImportDat::Lies(const std::string& utf8Pfad)
{
    std::optional<ESOLeser> leser;
    std::uint64_t gelesen = 0;
    std::uint64_t gemeldet = 0;
    bool abgebrochen = false;
    const std::string liest = LoadRuvString(IDS_ESO_LIEST);
    const CFileRead datei = ReadFileBlocks(utf8Pfad, [&](std::string_view stueck, std::uint64_t groesse) {
        if (!leser)
            leser.emplace(groesse);
        gelesen += stueck.size();
        if (gelesen - gemeldet > groesse / kMeldungen) {
            gemeldet = gelesen;
            const double anteil = groesse == 0 ? 1.0 : static_cast<double>(gelesen) / static_cast<double>(groesse);
            abgebrochen = RuvProgress(liest, kAnteilLesen * std::min(anteil, 1.0)) == Work::cancel;
        }
        return !abgebrochen && leser->Nimm(stueck);
    });
    if (abgebrochen)
        return Lesung::abgebrochen;
    if (datei.outcome != FileOutcome::read && datei.outcome != FileOutcome::stopped) {
        Leere();
        m_pfad = utf8Pfad;
        return Lesung::nichtGeoeffnet;
    }
    if (!leser)
        leser.emplace();
    const ESOBefund befund = leser->Ende();
    if (befund != ESOBefund::gelesen) {
        Leere();
        m_pfad = utf8Pfad;
        m_fehlerZeile = leser->Zeile();
        if (befund == ESOBefund::ohneWerte)
            return Lesung::ohneWerte;
        return befund == ESOBefund::zuLang ? Lesung::zuLang : Lesung::falschesFormat;
    }

    ESOKurven kurven = leser->NimmKurven();
    const std::string vergleicht = LoadRuvString(IDS_ESO_VERGLEICHT);
    const auto melde = [&vergleicht](double von, double bis) {
        return [&vergleicht, von, bis](double anteil) {
            return RuvProgress(vergleicht, von + anteil * (bis - von)) == Work::goOn;
        };
    };
    const auto gegenEins = SucheVerschiebungen(kurven[0], {&kurven[1], &kurven[2], &kurven[3], &kurven[4]},
                                               melde(kAnteilLesen, kAnteilLesen + kAnteilSuche));
    const auto zweiDrei = gegenEins
                              ? SucheVerschiebungen(kurven[1], {&kurven[2]}, melde(kAnteilLesen + kAnteilSuche, 1.0))
                              : std::nullopt;
    if (!zweiDrei)
        return Lesung::abgebrochen;

    Leere();
    m_pfad = utf8Pfad;
    aufbau = static_cast<std::int64_t>(leser->Aufbau());
    m_trennzeichen = leser->Trennzeichen();
    roh = std::move(kurven);
    const std::size_t laenge = roh[0].size();
    zeilen = static_cast<std::int64_t>(laenge);
    const ESOFenster fenster = FensterVon(laenge);
    ausgerichtet[0] = roh[0];
    for (std::size_t q = 1; q < kESOKurven; ++q) {
        verschiebungen[q] = static_cast<std::int64_t>((*gegenEins)[q - 1].d) - static_cast<std::int64_t>(fenster.s);
        ausgerichtet[q] = Verschoben(roh[q], verschiebungen[q], laenge);
    }
    const auto paar = [&](Paar nummer, const ESOKurve& a, const ESOKurve& b, const ESOTreffer& treffer) {
        const double versatz = static_cast<double>(treffer.d) - static_cast<double>(fenster.s);
        verschiebung[nummer] = versatz;
        r[nummer] = treffer.r;
        if (treffer.r <= 0.0 || treffer.d == 0 || treffer.d + 1 >= fenster.m)
            return;
        // Peak of the parabola through r(d − 1), r(d), r(d + 1).
        const double links = Korrelation(a, b, fenster.s, fenster.e, treffer.d - 1);
        const double rechts = Korrelation(a, b, fenster.s, fenster.e, treffer.d + 1);
        const double kruemmung = links - 2.0 * treffer.r + rechts;
        if (kruemmung < 0.0)
            m_spitze[nummer] = versatz + (links - rechts) / (2.0 * kruemmung);
    };
    paar(paar12, roh[0], roh[1], (*gegenEins)[0]);
    paar(paar23, roh[1], roh[2], (*zweiDrei)[0]);
    paar(paar13, roh[0], roh[2], (*gegenEins)[1]);
    Auswerten();
    return Lesung::gelesen;
}

void CESOImportDat::Auswerten()
{
    abstand13 = abstand12 + abstand23;
    const std::array<double, kPaare> abstand{abstand12, abstand23, abstand13};
    for (std::size_t i = 0; i < kPaare; ++i) {
        // v = distance / (shift · sample interval); none without a shift, and none where the curves are not alike at
        // all
        const auto tempo = [&](double versatz) {
            const bool bekannt = versatz != 0.0 && r[i] > 0.0;
            return bekannt ? abstand[i] / (versatz * abtastzeit) * kKmhProMs : kKeine;
        };
        v[i] = tempo(verschiebung[i]);
        vVon[i] = vBis[i] = vParabel[i] = kKeine;
        if (std::isnan(v[i]))
            continue;
        const auto [kleiner, groesser] = std::minmax({tempo(verschiebung[i] - 0.5), tempo(verschiebung[i] + 0.5)});
        vVon[i] = kleiner;
        vBis[i] = groesser;
        vParabel[i] = tempo(m_spitze[i]);
    }
}
