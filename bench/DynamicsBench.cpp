// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The calculations of the braking masks, without their dialogs.
#include "host/CRuvData.h"
#include "masks/dynamics/CMRBremsDat.h"
#include "masks/dynamics/CTeilanhDat.h"

#include <benchmark/benchmark.h>

namespace
{

/// 50 km/h to a stop, asked for in each of the five ways.
void ReactAndBrake(benchmark::State& state)
{
    CRuvData data;
    CTeilanhDat dat(data);
    dat.vA = 50.0;
    dat.tR = 1.0;
    dat.tS = 0.2;
    dat.aB = 7.5;
    dat.modus = CTeilanhDat::beideGeschw;
    if (dat.Rechnen() != CTeilanhDat::Ausgang::berechnet)
        state.SkipWithError("the example has no solution");
    dat.modus = state.range(0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(dat.Rechnen());
        benchmark::ClobberMemory();
    }
    if (dat.ergebnis == 0)
        state.SkipWithError("the mode has no solution");
}
BENCHMARK(ReactAndBrake)->ArgName("mode")->DenseRange(1, 5);

/// A trace of that many tenths of a metre at 9 m/s², rising with that time constant in ms.
void MotorcycleBraking(benchmark::State& state)
{
    CRuvData data;
    CMRBremsDat dat(data);
    dat.vollverzoegerung = 9.0;
    dat.VollverzoegerungEingegeben();
    dat.spurlaenge = static_cast<double>(state.range(0)) / 10.0;
    dat.anstieg = static_cast<double>(state.range(1)) / 1000.0;
    dat.reaktionsdauer = 1.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(dat.Rechnen());
        benchmark::ClobberMemory();
    }
    if (!(dat.bremszeit > 0.0))
        state.SkipWithError("no braking time was found");
}
BENCHMARK(MotorcycleBraking)->ArgNames({"dm", "ms"})->Args({200, 250})->Args({5, 250})->Args({10000, 1});

} // namespace
