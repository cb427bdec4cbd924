// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Curves driven at a known speed come back as they were driven.
#include "masks/import/CGPStoXYZ.h"
#include "host/CRuvData.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

constexpr double kPi = 3.141592653589793;
constexpr double kMeterProGrad = 111320.0;
constexpr double kBreite = 52.5;
constexpr double kLaenge = 13.4;

struct Ort {
    double x, y, richtung; // m, m, rad counter-clockwise from east
};

/// A circle of 50 m, and a figure eight of two of 30 m, by the path driven.
Ort Kreis(double s)
{
    const double w = s / 50.0;
    return {50.0 * std::sin(w), 50.0 * (1.0 - std::cos(w)), w};
}
Ort Acht(double s)
{
    const double umfang = 2.0 * kPi * 30.0;
    const bool erster = s < umfang;
    const double w = (erster ? s : s - umfang) / 30.0;
    const double seite = erster ? 1.0 : -1.0;
    return {30.0 * std::sin(w), seite * 30.0 * (1.0 - std::cos(w)), seite * w};
}

TEST(CGPStoXYZ, CurvesComeBackAtEveryRate)
{
    CRuvData data;
    const CGPStoXYZ konverter(data);
    constexpr double kTempo = 12.0; // m/s
    const struct {
        Ort (*ort)(double);
        double laenge;
        double radius;
    } bahnen[] = {{Kreis, 2.0 * kPi * 50.0, 50.0}, {Acht, 4.0 * kPi * 30.0, 30.0}};
    for (const auto& bahn : bahnen) {
        for (const double takt : {1.0, 0.1, 0.01}) {
            std::vector<GPSPunkt> gps;
            std::vector<Koppelschritt> schritte;
            std::vector<Ort> soll;
            for (double t = 0.0; t * kTempo <= bahn.laenge; t += takt) {
                const Ort ort = bahn.ort(t * kTempo);
                soll.push_back(ort);
                gps.push_back({kBreite + ort.y / kMeterProGrad,
                               kLaenge + ort.x / (kMeterProGrad * std::cos(kBreite * kPi / 180.0)), 100.0 + t});
                schritte.push_back({90.0 - ort.richtung * 180.0 / kPi, kTempo, t == 0.0 ? 0.0 : takt});
            }
            std::vector<LocalPoint> lokal;
            konverter.KonvertiereGPS(gps, lokal);
            ASSERT_EQ(lokal.size(), soll.size());
            double weg = 0.0;
            for (std::size_t i = 0; i < soll.size(); ++i) {
                // cos φ of each pair instead of one for all: tan 52.5° · 100 m / 6378 km = 2e-5 of up to 100 m across.
                EXPECT_NEAR(lokal[i].x, soll[i].x, 3e-3);
                EXPECT_NEAR(lokal[i].y, soll[i].y, 1e-6);
                EXPECT_NEAR(lokal[i].z, static_cast<double>(i) * takt, 1e-9);
                EXPECT_NEAR(lokal[i].abstand, std::hypot(lokal[i].abstandHorizontal, i == 0 ? 0.0 : takt), 1e-9);
                weg += lokal[i].abstandHorizontal;
            }
            // Chords are shorter than the arc by the angle's square / 24.
            const double gefahren = static_cast<double>(soll.size() - 1) * takt * kTempo;
            const double winkel = takt * kTempo / bahn.radius;
            EXPECT_NEAR(weg / gefahren, 1.0 - winkel * winkel / 24.0, 2e-4);

            konverter.KonvertiereKopplung(schritte, lokal);
            for (std::size_t i = 0; i < soll.size(); ++i) {
                // Each step goes in the direction of its end: off by half a step, where the curve changes side by one
                // more.
                EXPECT_NEAR(lokal[i].x, soll[i].x, 1.5 * takt * kTempo);
                EXPECT_NEAR(lokal[i].y, soll[i].y, 1.5 * takt * kTempo);
                EXPECT_NEAR(lokal[i].abstand, i == 0 ? 0.0 : takt * kTempo, 1e-9);
                EXPECT_EQ(lokal[i].abstandHorizontal, 0.0);
                EXPECT_EQ(lokal[i].z, 0.0);
            }
        }
    }
}

TEST(CGPStoXYZ, ByHand)
{
    CRuvData data;
    const CGPStoXYZ konverter(data);
    std::vector<LocalPoint> lokal(7);
    const GPSPunkt punkte[] = {{60.0, 10.0, 5.0}, {60.0, 10.001, 8.0}, {60.002, 10.001, -1.0}};
    konverter.KonvertiereGPS(std::span(punkte).first(1), lokal);
    EXPECT_TRUE(lokal.empty());
    konverter.KonvertiereGPS(std::span(punkte).first(2), lokal);
    EXPECT_NEAR(lokal[1].x, 55.66, 1e-6); // 0.001° · cos 60° · 111320 m/°
    EXPECT_EQ(lokal[1].y, 0.0);
    EXPECT_EQ(lokal[1].z, 3.0);
    EXPECT_NEAR(lokal[1].abstand, std::sqrt(55.66 * 55.66 + 9.0), 1e-6);
    konverter.KonvertiereGPS(punkte, lokal); // one height is missing: none counts
    EXPECT_EQ(lokal[1].z, 0.0);
    EXPECT_NEAR(lokal[2].y, 222.64, 1e-6);
    EXPECT_NEAR(lokal[2].x, 55.66, 1e-6);

    const Koppelschritt schritte[] = {{45, 99, 99}, {90, 10, 0.5}, {0, 0, 1}, {180, 4, 0.5}};
    konverter.KonvertiereKopplung(std::span(schritte).first(1), lokal);
    EXPECT_TRUE(lokal.empty());
    konverter.KonvertiereKopplung(schritte, lokal);
    EXPECT_NEAR(lokal[1].x, 5.0, 1e-12);
    EXPECT_NEAR(lokal[1].y, 0.0, 1e-12);
    EXPECT_EQ(lokal[2].x, lokal[1].x);
    EXPECT_EQ(lokal[2].y, lokal[1].y);
    EXPECT_NEAR(lokal[3].y, -2.0, 1e-12);
}

} // namespace
