// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The shared kinematics and the calculations of masks 401 and 468.
#include "frame/Kinematics.h"
#include "host/CRuvData.h"
#include "masks/dynamics/CGrenzVDat.h"
#include "masks/dynamics/CVkonstDat.h"

#include <benchmark/benchmark.h>

namespace
{

void WegintegralOfALaneChange(benchmark::State& state)
{
    double path = 0.0;
    double surplus = 0.0;
    double offset = 3.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(offset);
        Wegintegral(offset, 60.0, path, surplus);
        benchmark::DoNotOptimize(surplus);
    }
}
BENCHMARK(WegintegralOfALaneChange);

void AusEinScherenInABend(benchmark::State& state)
{
    double length = 0.0;
    double offset = 3.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(offset);
        AusEinScheren(500.0, offset, 25.0, 4.0, length);
        benchmark::DoNotOptimize(length);
    }
}
BENCHMARK(AusEinScherenInABend);

void CurveLimitSpeed(benchmark::State& state)
{
    CRuvData data;
    CGrenzVDat dat(data);
    dat.reibungsbeiwert = 0.8;
    dat.quergefaelle = 0.05;
    dat.kurvenradius = 50.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(dat.kurvenradius);
        benchmark::DoNotOptimize(dat.Rechnen());
        benchmark::DoNotOptimize(dat.grenzgeschwindigkeit);
    }
}
BENCHMARK(CurveLimitSpeed);

void CentralAngleOfAnArc(benchmark::State& state)
{
    double chord = 30.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(chord);
        benchmark::DoNotOptimize(CGrenzVDat::Zentriwinkel(chord, 31.0));
    }
}
BENCHMARK(CentralAngleOfAnArc);

// A chord of nothing beside a long arc: the longest the search can take.
void CentralAngleAtItsWorst(benchmark::State& state)
{
    double chord = 1e-300;
    for (auto _ : state) {
        benchmark::DoNotOptimize(chord);
        benchmark::DoNotOptimize(CGrenzVDat::Zentriwinkel(chord, 1000.0));
    }
}
BENCHMARK(CentralAngleAtItsWorst)->Unit(benchmark::kMillisecond);

void SixRowsAtConstantSpeed(benchmark::State& state)
{
    CRuvData data;
    CVkonstDat dat(data);
    for (std::size_t i = 0; i < CVkonstDat::kZeilen; ++i) {
        dat.geschwindigkeitMs[i] = 10.0 + static_cast<double>(i);
        dat.weg[i] = 100.0;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(dat.weg);
        dat.Rechnen();
        benchmark::DoNotOptimize(dat.zeit);
    }
}
BENCHMARK(SixRowsAtConstantSpeed);

} // namespace
