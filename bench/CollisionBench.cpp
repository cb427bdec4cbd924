// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The throw distance: a flight of five seconds and the search for its speed.
#include "host/CRuvData.h"
#include "masks/collision/CWurfWeiteDat.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

namespace
{

constexpr double kForwardLimit = 2.0;  // ms
constexpr double kInverseLimit = 60.0; // ms

/// Median processor time of a calculation, ms.
double Median(CWurfWeiteDat& dat)
{
    std::vector<double> times;
    for (int i = 0; i < 11; ++i) {
        const std::clock_t start = std::clock();
        benchmark::DoNotOptimize(dat.Rechnen());
        times.push_back(1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::nth_element(times.begin(), times.begin() + 5, times.end());
    return times[5];
}

/// 125 km/h at 45°, with 1: the speed is looked for. 250 g and 50 cm² slow it down with the second argument 1.
void Throw(benchmark::State& state)
{
    CRuvData data;
    CWurfWeiteDat dat(data);
    dat.flugwinkel = 45.0;
    if (state.range(1) != 0) {
        dat.masse = 250.0;
        dat.querschnitt = 50.0;
    }
    dat.anfangsgeschwindigkeit = 125.0;
    dat.KmhGeaendert();
    dat.Rechnen();
    const double seconds = dat.wurfweiteZeit;
    const bool inverse = state.range(0) != 0;
    if (inverse)
        dat.ZielGeaendert();
    const double median = Median(dat);
    for (auto _ : state)
        benchmark::DoNotOptimize(dat.Rechnen());
    state.counters["seconds"] = seconds;
    state.counters["median_ms"] = median;
    if (median > (inverse ? kInverseLimit : kForwardLimit))
        state.SkipWithError(("median " + std::to_string(median) + " ms").c_str());
}
BENCHMARK(Throw)->ArgNames({"inverse", "drag"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMillisecond);

} // namespace
