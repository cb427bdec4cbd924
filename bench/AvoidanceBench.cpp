// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// One full avoidability calculation. Every spinner step does one: at most 5 ms as a rule and 20 ms at worst.
#include "host/CRuvData.h"
#include "masks/manoeuvre/CVermDat.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

namespace
{

/// Random inputs around the stopping distance, in a direction and kind.
void GiveRandom(CVermDat& dat, std::mt19937_64& random, std::int64_t direction, std::int64_t kind)
{
    const auto between = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    dat.Loeschen();
    dat.richtung = direction;
    dat.art = kind;
    dat.vZ = between(20.0, 150.0);
    dat.aR = between(-2.5, 2.5);
    dat.tR = between(0.0, 2.0);
    dat.tS = between(0.0, 0.8);
    dat.aB = between(1.0, 10.0);
    const double v = dat.vZ / 3.6;
    dat.sRK = between(0.2, 1.6) * (v * dat.tR + v * v / (2.0 * dat.aB));
    dat.tRK = between(0.1, 1.3) * dat.sRK / v;
    dat.vG = between(0.0, 150.0);
    dat.aG = direction == 1 ? between(0.2, 9.0) : between(-3.0, 9.0);
    dat.sFR = between(0.0, 12.0);
    dat.xV = between(-5.0, 5.0);
}

void Avoidability(benchmark::State& state)
{
    constexpr int kCases = 1000;
    CRuvData data;
    CVermDat dat(data);
    std::mt19937_64 random(462);
    std::vector<double> times;
    for (auto _ : state) {
        state.PauseTiming();
        GiveRandom(dat, random, state.range(0), state.range(1));
        state.ResumeTiming();
        const auto begin = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(dat.Rechnen());
        times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
    }
    std::sort(times.begin(), times.end());
    state.counters["median_ms"] = times[times.size() / 2];
    state.counters["worst_ms"] = times.back();
    if (times.size() >= kCases && (times[times.size() / 2] > 5.0 || times.back() > 20.0))
        state.SkipWithError("too slow for a spinner");
}
BENCHMARK(Avoidability)->ArgNames({"direction", "kind"})->ArgsProduct({{1, 2, 3}, {1, 2}})->Iterations(2000);

} // namespace
