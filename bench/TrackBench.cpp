// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Tracks of a million points: GPX from bytes to points (124 MB); FIT with its
// checksum (21 MB). With RUV_TRACK_FILES=FOLDER the two files are left there for bench/track-peers.sh.
#include "masks/import/FitSpur.h"
#include "masks/import/GpxLeser.h"
#include "tests/support/FitSchreiber.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

constexpr int kPunkte = 1000000;

void Hinterlege(const char* name, const std::string& bytes)
{
    if (const char* ordner = std::getenv("RUV_TRACK_FILES"))
        std::ofstream(std::string(ordner) + "/" + name, std::ios::binary) << bytes;
}

const std::string& Gpx()
{
    static const std::string text = [] {
        std::string gpx = "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"bench\">\n<trk><trkseg>\n";
        char punkt[200];
        for (int i = 0; i < kPunkte; ++i) {
            std::snprintf(punkt, sizeof punkt,
                          "   <trkpt lat=\"%.7f\" lon=\"%.7f\">\n    <ele>%.1f</ele>\n"
                          "    <time>2024-05-%02dT%02d:%02d:%02d.%d00Z</time>\n   </trkpt>\n",
                          48.1 + i * 1e-6, 11.5 + i % 1000 * 1e-6, 500 + i % 100 * 0.1, 1 + i / 864000, i / 36000 % 24,
                          i / 600 % 60, i / 10 % 60, i % 10);
            gpx += punkt;
        }
        gpx += "</trkseg></trk>\n</gpx>\n";
        Hinterlege("track.gpx", gpx);
        return gpx;
    }();
    return text;
}

const std::string& Fit()
{
    static const std::string bytes = [] {
        const int u8 = test::FitSchreiber::kUint8;
        test::FitSchreiber fit;
        fit.Definiere(0, test::FitSchreiber::kRecord,
                      {{253, 4, test::FitSchreiber::kUint32},
                       {0, 4, test::FitSchreiber::kSint32},
                       {1, 4, test::FitSchreiber::kSint32},
                       {2, 2, test::FitSchreiber::kUint16},
                       {6, 2, test::FitSchreiber::kUint16},
                       {3, 1, u8},
                       {4, 1, u8},
                       {13, 1, test::FitSchreiber::kSint8},
                       {9, 1, u8}});
        for (int i = 0; i < kPunkte; ++i)
            fit.Byte(0)
                .Zahl(1000000000 + i, 4)
                .Zahl(570000000 + 7 * i, 4)
                .Zahl(137000000 + i % 1000, 4)
                .Zahl(3000 + i % 100, 2)
                .Zahl(5000, 2)
                .Byte(120)
                .Byte(80)
                .Byte(20)
                .Byte(1);
        Hinterlege("track.fit", fit.Datei());
        return fit.Datei();
    }();
    return bytes;
}

void GpxTrack(benchmark::State& state)
{
    const std::string& text = Gpx();
    for ([[maybe_unused]] auto _ : state) {
        const GpxInhalt inhalt = LiesGpx(text);
        if (inhalt.punkte.size() != kPunkte)
            state.SkipWithError("points are missing");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(GpxTrack)->Unit(benchmark::kMillisecond);

void FitTrack(benchmark::State& state)
{
    const std::string& bytes = Fit();
    for ([[maybe_unused]] auto _ : state) {
        const FitSpur spur = LiesFit(bytes);
        if (spur.punkte.size() != kPunkte || !spur.befund.unversehrt)
            state.SkipWithError("points are missing");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(FitTrack)->Unit(benchmark::kMillisecond);

} // namespace
