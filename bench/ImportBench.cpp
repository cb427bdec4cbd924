// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Five measured curves: reading a million rows (processor time), and the search of four shifts, on two threads, beside
// the plain search (both by the clock: it wants a machine that does nothing else).
#include "masks/import/ESOKorrelation.h"
#include "masks/import/ESOLeser.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <random>
#include <string>

namespace
{

constexpr double kReadLimit = 60.0;  // ms
constexpr double kSearchLimit = 8.0; // ms
constexpr double kFaster = 300.0;    // times the plain search

/// Two pulses and noise, each curve 137 samples later than the one before.
ESOKurven Curves(std::size_t length)
{
    std::mt19937_64 random(1);
    ESOKurven curves;
    for (std::size_t q = 0; q < kESOKurven; ++q)
        for (std::size_t i = 0; i < length; ++i) {
            const double t = static_cast<double>(i) - 137.0 * static_cast<double>(q);
            const double n = static_cast<double>(length);
            const double value = 3000.0 * std::exp(-std::pow((t - 0.45 * n) / (0.06 * n), 2)) +
                                 1200.0 * std::sin(t * 0.01) * std::exp(-std::pow((t - 0.5 * n) / (0.14 * n), 2));
            curves[q].push_back(static_cast<std::int64_t>(value) + static_cast<std::int64_t>(random() % 41) - 20);
        }
    return curves;
}

double Milliseconds(std::chrono::steady_clock::time_point since)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since).count();
}

void ReadCurves(benchmark::State& state)
{
    const ESOKurven curves = Curves(1'000'000);
    std::string text = "Messkurve 1;Messkurve 2;Messkurve 3;Messkurve 4;Messkurve 5\n";
    for (std::size_t i = 0; i < curves[0].size(); ++i)
        for (std::size_t q = 0; q < kESOKurven; ++q)
            text += std::to_string(curves[q][i]) + (q + 1 < kESOKurven ? ";" : "\n");
    double best = 1e9;
    for (auto unused : state) {
        static_cast<void>(unused);
        const std::clock_t start = std::clock();
        ESOLeser reader(text.size());
        for (std::size_t at = 0; at < text.size(); at += 16384)
            reader.Nimm(std::string_view(text).substr(at, 16384));
        if (reader.Ende() != ESOBefund::gelesen)
            state.SkipWithError("not read");
        best = std::min(best, 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    state.counters["best_ms"] = best;
    state.counters["MB/s"] = static_cast<double>(text.size()) / best / 1e3;
    if (best > kReadLimit)
        state.SkipWithError("over the limit");
}
BENCHMARK(ReadCurves)->Unit(benchmark::kMillisecond);

/// What the search is measured against: r by the definition, shift for shift, in the integers that suffice here.
ESOTreffer PlainSearch(const ESOKurve& a, const ESOKurve& b)
{
    const auto [s, e, m] = FensterVon(a.size());
    const auto n = static_cast<std::int64_t>(e - s);
    ESOTreffer best;
    for (std::size_t d = 0; d < m; ++d) {
        std::int64_t x = 0, y = 0, xx = 0, yy = 0, xy = 0;
        for (std::size_t j = 0; j < e - s; ++j) {
            const std::int64_t u = a[s + j];
            const std::int64_t v = d + j < b.size() ? b[d + j] : 0;
            x += u;
            y += v;
            xx += u * u;
            yy += v * v;
            xy += u * v;
        }
        const double root = std::sqrt(static_cast<double>(n * yy - y * y) * static_cast<double>(n * xx - x * x));
        const double r = root == 0.0 ? 0.0 : static_cast<double>(n * xy - x * y) / root;
        if (r > best.r)
            best = {d, r};
    }
    return best;
}

/// Argument 1: with the plain search of one curve, four times which is compared.
void SearchShifts(benchmark::State& state)
{
    const ESOKurven curves = Curves(65536);
    double best = 1e9;
    std::vector<ESOTreffer> found;
    for (auto unused : state) {
        static_cast<void>(unused);
        const auto start = std::chrono::steady_clock::now();
        found = SucheVerschiebungen(curves[0], {&curves[1], &curves[2], &curves[3], &curves[4]}).value();
        best = std::min(best, Milliseconds(start));
    }
    state.counters["best_ms"] = best;
    if (best > kSearchLimit)
        state.SkipWithError("over the limit");
    if (state.range(0) == 0)
        return;
    const auto start = std::chrono::steady_clock::now();
    const ESOTreffer plain = PlainSearch(curves[0], curves[1]);
    const double faster = 4.0 * Milliseconds(start) / best;
    state.counters["faster"] = faster;
    if (plain.d != found[0].d || plain.r != found[0].r)
        state.SkipWithError("another result than the plain search");
    if (faster < kFaster)
        state.SkipWithError("less than 300 times as fast as the plain search");
}
BENCHMARK(SearchShifts)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->MinTime(0.5);

} // namespace
