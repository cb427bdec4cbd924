// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The calculations of masks 458 and 472, without their dialogs.
#include "host/CRuvData.h"
#include "masks/manoeuvre/CHalbeSichtDat.h"
#include "masks/manoeuvre/CSpurVorDat.h"

#include <benchmark/benchmark.h>

namespace
{

/// That offset in decimetres at an initial speed in km/h; the vehicle slows down on a bend.
void LaneChange(benchmark::State& state)
{
    CRuvData data;
    data.KfzDat(0) = TypicalCar("Pkw", 0);
    CSpurVorDat dat(data);
    dat.Oeffne();
    dat.seitenversatz = static_cast<double>(state.range(0)) / 10.0;
    dat.anfangsgeschw = static_cast<double>(state.range(1));
    dat.querbeschleunigung = 2.0;
    dat.beschleunigung = -1.0;
    dat.kurvenradius = 5000.0;
    dat.zwischenFront = dat.seitenversatz;
    for (auto _ : state)
        benchmark::DoNotOptimize(dat.Rechnen().ausgang);
    if (dat.berechnet == 0)
        state.SkipWithError("the lane change has no solution");
}
BENCHMARK(LaneChange)
    ->ArgNames({"dm", "kmh"})
    ->Args({30, 50})
    ->Args({35, 130})
    ->Args({200, 300})
    ->Unit(benchmark::kMicrosecond);

void HalfSight(benchmark::State& state)
{
    CRuvData data;
    CHalbeSichtDat dat(data);
    dat.sichtweite = 80.0;
    dat.a = {0, 3, 20.0, 7.0, 0.2, 1.0};
    dat.b = {1, 3, 30.0, 6.0, 0.3, 0.8};
    for (auto _ : state) {
        benchmark::DoNotOptimize(dat.sichtweite);
        benchmark::DoNotOptimize(dat.Rechnen());
        benchmark::ClobberMemory();
    }
    if (dat.ergebnis == 0)
        state.SkipWithError("the example has no solution");
}
BENCHMARK(HalfSight);

} // namespace
