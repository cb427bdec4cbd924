// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Driving data: a million rows of eight columns, by the reader alone and from the click to the curve.
#include "cli/CaseInput.h"
#include "cli/Session.h"
#include "masks/import/FahrdatenLeser.h"
#include "res/import.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

constexpr int kRows = 1'000'000;

/// Written once per run; where the environment says, so that other programs read the same one.
const std::string& DrivingDataFile()
{
    static const std::string path = [] {
        const char* folder = std::getenv("RUV_DRIVING_DATA_FILES");
        std::string file = (folder != nullptr ? std::string(folder) : std::filesystem::temp_directory_path().string()) +
                           "/driving-data.csv";
        std::ofstream out(file, std::ios::binary);
        out << "Time (s),Speed (km/h),Heading (°),Latitude (°),Longitude (°),Altitude (m),Accel X (g),Accel Y (g)\n";
        char line[160];
        for (int i = 0; i < kRows; ++i) {
            const double t = 0.01 * i;
            std::snprintf(line, sizeof line, "%.2f,%.3f,%.3f,%.7f,%.7f,%.2f,%.4f,%.4f\n", 1000.0 + t,
                          60.0 + 50.0 * std::sin(t), std::fmod(t, 360.0), 52.5 + 1e-6 * t, 13.4 + 2e-6 * t,
                          40.0 + 3.0 * std::cos(t / 60.0), std::cos(t), 0.3 * std::sin(t / 7.0));
            out << line;
        }
        return file;
    }();
    return path;
}

void DrivingDataReader(benchmark::State& state)
{
    std::string bytes(std::filesystem::file_size(DrivingDataFile()), '\0');
    std::ifstream(DrivingDataFile(), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    constexpr std::size_t kBlock = std::size_t{1} << 16U;
    for (auto _ : state) {
        const Zuordnungen none;
        FahrdatenLeser reader(none);
        for (std::size_t at = 0; at < bytes.size();) {
            const std::string_view block = std::string_view(bytes).substr(at, kBlock);
            at += reader.Lies(block, at + block.size() == bytes.size());
        }
        const Fahrdaten data = reader.Fertig();
        if (data.zeilen.Anzahl() != kRows)
            state.SkipWithError("rows are missing");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(DrivingDataReader)->Unit(benchmark::kMillisecond);

void DrivingDataFileToChart(benchmark::State& state)
{
    const std::vector<cli::Action> actions{cli::FileAction{DrivingDataFile()}, cli::PressAction{IDC_IMPORT_WAEHLEN}};
    for (auto _ : state) {
        cli::Session session(cli::ExampleCase());
        if (session.Run(IDD_FAHRDATEN, actions))
            state.SkipWithError("the file was not read");
        benchmark::DoNotOptimize(session.Mask());
    }
}
BENCHMARK(DrivingDataFileToChart)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
