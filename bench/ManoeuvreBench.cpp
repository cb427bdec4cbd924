// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The calculations of the manoeuvre masks, without their dialogs.
#include "host/CRuvData.h"
#include "masks/manoeuvre/CAbDaten.h"

#include <benchmark/benchmark.h>

namespace
{

/// A turn of about 10 s, that is 20,000 steps; with range 1 the car brakes and is to stand at the end.
void Turn(benchmark::State& state)
{
    CRuvData data;
    data.KfzDat(0) = TypicalCar("Pkw", 0);
    CAbDaten dat(data);
    dat.Oeffne();
    dat.endradius = 20.0;
    dat.lenkzeit = 8.0;
    dat.weg = 50.0;
    dat.anfangsgeschw = 18.0;
    if (state.range(0) != 0) {
        dat.beschleunigung = -1.0;
        dat.weg = 0.0;
        dat.gierziel = 90.0;
    }
    bool solved = true;
    for (auto _ : state) {
        dat.FrageErneut();
        solved &= dat.Rechnen([](CAbDaten::Frage) { return true; }) == CAbDaten::Ausgang::berechnet;
        benchmark::ClobberMemory();
    }
    if (!solved || dat.zeit < 9.0)
        state.SkipWithError("the turn is not the one meant");
}
BENCHMARK(Turn)->ArgName("stopAtAim")->DenseRange(0, 1)->Unit(benchmark::kMillisecond);

} // namespace
