// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Recorded moments as phases and driving line of a vehicle.
#include "masks/import/Fahrphasen.h"
#include "host/CRuvData.h"
#include "tests/support/MaskFixture.h"

#include <cmath>
#include <random>

namespace
{

constexpr std::int64_t kErste = 3;

class FahrphasenTest : public test::MaskTest
{
  protected:
    const CWegZeitRechDat& Fall(std::size_t fahrzeug = 0) { return data.WZRechDat(fahrzeug); }
    Fahrtbefund Uebertrage(const std::vector<Fahrzeile>& zeilen, std::int64_t phase = kErste, std::int64_t fahrzeug = 0)
    {
        return UebertrageFahrphasen(data, fahrzeug, phase, zeilen, nullptr);
    }
};

TEST_F(FahrphasenTest, EachStepIsThePhaseItsDecelerationMakesIt)
{
    // By hand: 3.6 km/h in 1 s are 1 m/s².
    const struct {
        double von, bis, zeit;
        PhasenArt art;
        int unterArt;
        double verz, weg;
    } faelle[] = {
        {36.0, 28.0, 1.0, PhasenArt::braking, 2, 8.0 / 3.6, 64.0 / 7.2},
        {36.0, 28.8, 1.0, PhasenArt::rolling, 2, 2.0, 9.0},
        {36.0, 28.79, 1.0, PhasenArt::braking, 2, 7.21 / 3.6, 64.79 / 7.2},
        {36.0, 35.9, 1.0, PhasenArt::rolling, 2, 0.1 / 3.6, 71.9 / 7.2},
        {36.0, 36.0, 0.5, PhasenArt::constantSpeed, 1, 0.0, 5.0},
        {36.0, 37.0, 1.0, PhasenArt::accelerating, 2, -1.0 / 3.6, 73.0 / 7.2},
        {36.0, 30.0, 0.0, PhasenArt::noTime, 4, 0.0, 0.0},
        {36.0, 30.0, 9.9e-6, PhasenArt::noTime, 4, 0.0, 0.0},
        {36.0, 36.0, 1e-5, PhasenArt::constantSpeed, 1, 0.0, 1e-4},
        {36.0, 30.0, -2.0, PhasenArt::noTime, 4, 0.0, 0.0},
    };
    for (const auto& fall : faelle) {
        // The last step lasts, so that there is something to transfer.
        const std::vector<Fahrzeile> zeilen{{0.0, fall.von}, {fall.zeit, fall.bis}, {1.0, fall.bis}};
        const auto phasen = Fahrphasen(zeilen, kErste);
        ASSERT_EQ(phasen.size(), 2U);
        EXPECT_EQ(phasen[1].art, fall.art);
        EXPECT_EQ(phasen[1].vAnf, fall.von);
        EXPECT_EQ(phasen[1].vEnd, fall.bis);
        EXPECT_NEAR(phasen[1].verz, fall.verz, 1e-9);
        EXPECT_NEAR(phasen[1].weg, fall.weg, 1e-9);
        EXPECT_EQ(Uebertrage(zeilen).ausgang, Fahrtausgang::uebertragen);
        EXPECT_EQ(Fall().spalten[4].art, fall.art);
        EXPECT_EQ(Fall().spalten[4].unterArt, fall.unterArt);
        EXPECT_NEAR(Fall().spalten[4].weg, fall.weg, 1e-9);
        EXPECT_EQ(Fall().spalten[4].vAnf, fall.von);
        EXPECT_FALSE(Fall().spalten[5].IsUsed());
    }
}

TEST_F(FahrphasenTest, TheCaseDrivesWhatWasRecorded)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> schritt(0.05, 0.5);
    for (int lauf = 0; lauf < 100; ++lauf) {
        std::vector<Fahrzeile> zeilen;
        double v = 20.0 + static_cast<double>(random() % 80);
        for (std::size_t i = 0; i < 2 + random() % 60; ++i) {
            zeilen.push_back({i == 0 ? 0.0 : schritt(random), v});
            v = std::max(0.0, v + (random() % 4 == 0 ? 0.0 : schritt(random) * 20.0 - 5.0));
        }
        const std::int64_t phase = kErste + static_cast<std::int64_t>(random() % 40);
        data.WZRechDat(0).Loeschen(kErste);
        const Fahrtbefund befund = Uebertrage(zeilen, phase);
        ASSERT_EQ(befund.ausgang, Fahrtausgang::uebertragen) << befund.text;
        const std::size_t anzahl = std::min(zeilen.size() - 1, 48 - static_cast<std::size_t>(phase));
        double zeit = 0.0;
        double weg = 0.0;
        for (std::size_t k = 0; k < anzahl; ++k) {
            const Fahrzeile& hier = zeilen[zeilen.size() - 1 - k];
            const Fahrzeile& vor = zeilen[zeilen.size() - 2 - k];
            zeit += hier.zeitschritt;
            weg += (hier.kmh + vor.kmh) / 7.2 * hier.zeitschritt;
            const CWegZeitSpalte& spalte = Fall().spalten[static_cast<std::size_t>(phase) + k];
            EXPECT_NEAR(spalte.sumZeit, zeit, 1e-9);
            EXPECT_NEAR(spalte.sumWeg, weg, 1e-6);
            EXPECT_EQ(spalte.vAnf, vor.kmh);
            EXPECT_EQ(spalte.vEnd, hier.kmh);
        }
        EXPECT_EQ(befund.zahlen[0].value, static_cast<double>(anzahl));
        EXPECT_NEAR(befund.zahlen[4].value, weg, 1e-6);
        EXPECT_NEAR(befund.zahlen[6].value, zeit, 1e-9);
    }
}

TEST_F(FahrphasenTest, ClearsWhatFollowsSetsTheSwitchesAndTells)
{
    auto& spalten = data.WZRechDat(1).spalten;
    spalten[4].art = spalten[40].art = PhasenArt::braking;
    spalten[4].radiusAnf = 77.0;
    spalten[2].vAnf = 12.0;
    data.UPa(1).SetUpdateFlag(29);
    data.UPa(1).SetUpdateFlag(5);
    front.broadcast.clear();
    ASSERT_EQ(Uebertrage({{0.0, 50.0}, {1.0, 40.0}, {1.0, 30.0}}, kErste, 1).ausgang, Fahrtausgang::uebertragen);
    EXPECT_EQ(Fall(1).spalten[4].radiusAnf, 0.0);
    EXPECT_FALSE(Fall(1).spalten[40].IsUsed());
    EXPECT_EQ(Fall(1).spalten[2].vAnf, 12.0);
    EXPECT_EQ(Fall(1).selected, 3U);
    EXPECT_EQ(data.UPa(1).updateFlags, 1ULL << 5 | 1ULL << 28 | 1ULL << 33 | 1ULL << 34);
    ASSERT_FALSE(front.broadcast.empty());
    EXPECT_EQ(front.broadcast.front().message, 1341U);
    EXPECT_EQ(front.broadcast.front().wParam, 1U);

    // Behind a phase that is used the end speed is that phase's: the case drives something else, and it is said.
    const Fahrtbefund hinten = Uebertrage({{0.0, 70.0}, {1.0, 60.0}}, 4, 1);
    EXPECT_EQ(hinten.ausgang, Fahrtausgang::abweichend);
    EXPECT_NEAR(hinten.zahlen[2].value, 50.0, 1e-9); // 40 km/h, where phase 3 begins, and 10 more
    EXPECT_EQ(Fall(1).spalten[3].vAnf, 40.0);
}

TEST_F(FahrphasenTest, WhatCannotBeTransferredChangesNothing)
{
    data.WZRechDat(0).spalten[3].art = PhasenArt::braking;
    data.WZRechDat(0).spalten[3].vAnf = 30.0;
    const CWegZeitRechDat vorher = Fall();
    const double nan = std::nan("");
    const struct {
        std::vector<Fahrzeile> zeilen;
        std::int64_t phase, fahrzeug;
        Fahrtausgang ausgang;
    } faelle[] = {
        {{}, 3, 0, Fahrtausgang::zuWenigZeilen},
        {{{0, 50}}, 3, 0, Fahrtausgang::zuWenigZeilen},
        {{{0, 50}, {1, 40}}, 3, 9, Fahrtausgang::keinFahrzeug},
        {{{0, 50}, {1, 40}}, 3, -1, Fahrtausgang::keinFahrzeug},
        {{{0, 50}, {1, 40}}, 48, 0, Fahrtausgang::keinPlatz},
        {{{0, 50}, {1, -1}, {1, 40}}, 3, 0, Fahrtausgang::ohneGeschwindigkeit},
        {{{0, 50}, {0, 40}}, 3, 0, Fahrtausgang::keineDauer},
        {{{0, 50}, {-1, 40}}, 3, 0, Fahrtausgang::keineDauer},
        {{{0, nan}, {1, 40}}, 3, 0, Fahrtausgang::keineZahl},
    };
    for (const auto& fall : faelle) {
        const Fahrtbefund befund = Uebertrage(fall.zeilen, fall.phase, fall.fahrzeug);
        EXPECT_EQ(befund.ausgang, fall.ausgang);
        EXPECT_FALSE(befund.IstGeschrieben());
        EXPECT_NE(LoadRuvString(befund.text), "");
        EXPECT_EQ(Fall(), vorher);
        EXPECT_EQ(data.UPa(0).updateFlags, 0U);
    }
}

TEST_F(FahrphasenTest, TheDrivingLineBeginsAtItsFirstPoint)
{
    std::vector<CDPoint> punkte;
    for (int i = 0; i < 60; ++i)
        punkte.push_back({1000.0 + i, 2000.0 - 2.0 * i});
    front.broadcast.clear();
    const Fahrtbefund befund = UebertrageFahrlinie(data, 0, 10, punkte, nullptr);
    EXPECT_EQ(befund.ausgang, Fahrtausgang::uebertragen);
    EXPECT_EQ(Fall().bahnModus, 20);
    ASSERT_EQ(Fall().fahrlinie.size(), 37U); // 47 - 10, the last ones
    EXPECT_EQ(Fall().fahrlinie.front(), (CDPoint{0.0, 0.0}));
    EXPECT_EQ(Fall().fahrlinie.back(), (CDPoint{3600.0, -7200.0}));
    EXPECT_EQ(befund.zahlen[0].value, 37.0);
    EXPECT_NEAR(befund.zahlen[1].value, std::hypot(36.0, 72.0), 1e-9);
    ASSERT_FALSE(front.broadcast.empty());
    EXPECT_EQ(front.broadcast.back().message, 1440U);

    const CWegZeitRechDat vorher = Fall();
    EXPECT_EQ(UebertrageFahrlinie(data, 0, 3, std::span(punkte).first(1), nullptr).ausgang,
              Fahrtausgang::zuWenigPunkte);
    EXPECT_EQ(UebertrageFahrlinie(data, 0, 46, punkte, nullptr).ausgang, Fahrtausgang::keinPlatz);
    EXPECT_EQ(UebertrageFahrlinie(data, 5, 3, punkte, nullptr).ausgang, Fahrtausgang::keinFahrzeug);
    EXPECT_EQ(Fall(), vorher);
    EXPECT_EQ(UebertrageFahrlinie(data, 0, 45, punkte, nullptr).ausgang, Fahrtausgang::uebertragen);
    EXPECT_EQ(Fall().fahrlinie.size(), 2U);
}

} // namespace
