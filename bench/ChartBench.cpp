// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The chart: one frame of ten million samples, as it is drawn while the user zooms and pans.
#include "chart/Chart.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>

namespace
{

constexpr double kFrameLimit = 10.0; // ms
constexpr double kWidth = 1200.0;
constexpr double kHeight = 400.0;

chart::Values Samples(std::size_t count, double (*value)(double))
{
    auto samples = std::make_shared<std::vector<double>>(count);
    for (std::size_t i = 0; i < count; ++i)
        (*samples)[i] = value(static_cast<double>(i));
    return samples;
}

/// Argument: notches of the wheel from the whole view.
void Frame(benchmark::State& state)
{
    static const chart::Values x = Samples(
        10'000'000, [](double i) { return 0.01 * i; });
    static const chart::Values y =
        Samples(10'000'000, [](double i) { return 50 * std::sin(1e-5 * i) + 5 * std::sin(0.3 * i); });
    chart::Chart shown;
    shown.SetSeries({{"v", x, y}});
    CMouseEvent wheel{CMouseEvent::Kind::wheel, MouseButton::none, 0, {500, 120}, kWidth, kHeight};
    wheel.wheel = static_cast<double>(state.range(0));
    shown.OnMouse(wheel);
    CMouseEvent pan{CMouseEvent::Kind::wheel, MouseButton::none, MK_SHIFT, {500, 120}, kWidth, kHeight};
    pan.wheel = 1.0;
    double best = 1e9;
    for (auto unused : state) {
        static_cast<void>(unused);
        const auto start = std::chrono::steady_clock::now();
        pan.wheel = -pan.wheel;
        shown.OnMouse(pan);
        CDC dc(kWidth, kHeight);
        shown.Paint(dc, false);
        benchmark::DoNotOptimize(dc.Primitives().data());
        best =
            std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["best_ms"] = best;
    if (best > kFrameLimit)
        state.SkipWithError("over the limit");
}
BENCHMARK(Frame)->Arg(0)->Arg(3)->Arg(10)->Arg(25)->Arg(50)->Unit(benchmark::kMillisecond);

} // namespace
