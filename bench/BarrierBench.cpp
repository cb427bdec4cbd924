// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The barrier method with all barriers on: recomputation against the plain search, and what a dragged object costs.
#include "drawing/DrawingExport.h"
#include "framework/UiThread.h"
#include "host/CRuvData.h"
#include "host/Placing.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "masks/collision/SchrankenKurve.h"
#include "res/resource.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

namespace
{

using Dat = CSchrankenverfahrenDat;

void AllBarriers(CRuvData& data, Dat& dat)
{
    data.KfzDat(0) = TypicalCar("Pkw", RGB(200, 0, 0));
    dat.fahrzeugNr = 0;
    dat.objekte[Dat::fahrzeug] = {{-2.2, 0.0}, 0.0, 0.0, 0.0, 1};
    dat.objekte[Dat::person] = {{3.75, -0.9}, 0.0, 0.5, 1.8, 1};
    dat.objekte[Dat::kollisionsort] = {{-18.0, -1.0}, 0.0, 4.0, 2.0, 1};
    dat.objekte[Dat::hauptfeld] = {{-10.0, -1.0}, 0.0, 3.0, 1.0, 1};
    dat.objekte[Dat::gesamtfeld] = {{-12.0, -1.0}, 0.0, 8.0, 1.0, 1};
    dat.theorien.fill(1);
    dat.verzoegerung = 7.0;
    dat.verzoegerungToleranz = 0.5;
    dat.kuehnelToleranz = dat.rauToleranz = dat.dettingerToleranz = 5.0;
    dat.abwicklungWeg = 205.0;
    dat.abwicklungToleranz = 15.0;
    dat.karosserie = 1.7;
    dat.karosserieToleranz = 0.3;
    dat.geschwindigkeitVon = 20.0;
    dat.geschwindigkeitBis = 90.0;
    dat.Projizieren();
}

/// The nine barriers that are searched for, lower and upper curve each.
std::vector<schranken::Kurve> SearchedCurves(const Dat& dat)
{
    using schranken::Kurve;
    const double d = dat.personLaengs;
    return {
        Kurve::Bremsung(6.5),
        Kurve::Bremsung(7.5),
        Kurve::Polynom(0.0, 0.00375, 0.175, 0.0, d),
        Kurve::Polynom(6.81818e-6, 0.00255682, 0.1525, -0.827273, d),
        Kurve::Verzoegerung(7.0, d, 5.0),
        Kurve::Verzoegerung(7.0, d, -5.0),
        Kurve::Polynom(0.0, 0.0052, 0.0783, 0.0, d, 5.0),
        Kurve::Polynom(0.0, 0.0052, 0.0783, 0.0, d, -5.0),
        Kurve::Polynom(1.64e-5, 0.00452, 0.071, 2.5, d, 5.0),
        Kurve::Polynom(1.64e-5, 0.00452, 0.071, 2.5, d, -5.0),
        Kurve::Polynom(0.0, 0.0028313, 0.3, 0.0, d),
        Kurve::Polynom(0.0, 0.0028313, 0.0271596, 0.0, d),
        Kurve::Polynom(0.00027203013, -0.01724212509, 0.66913310304, 0.0, dat.haupt.von),
        Kurve::Polynom(0.00010088077, -0.00395580247, 0.127407966296, 0.0, dat.haupt.bis),
        Kurve::Polynom(0.0, 0.0, 0.388571, 0.0, dat.haupt.von),
        Kurve::Polynom(0.0, 0.0, 0.223286, 0.0, dat.haupt.bis),
        Kurve::Polynom(0.0, 0.0, 0.5, 0.0, dat.gesamt.von),
        Kurve::Polynom(0.0, 0.0018, -0.00544, 0.0, dat.gesamt.bis),
    };
}

/// Processor time, which does not depend on what else the machine does.
double SecondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// One plain search of everything, and how often the full recomputation fits into it (counter "times_plain").
void RecomputeAllBarriers(benchmark::State& state)
{
    CRuvData data;
    Dat dat(data);
    AllBarriers(data, dat);
    const auto curves = SearchedCurves(dat);
    const auto begin = std::clock();
    for (const auto& curve : curves)
        for (std::size_t i = 0; i < Dat::kProben; ++i)
            benchmark::DoNotOptimize(schranken::SucheGeschwindigkeit(curve, static_cast<double>(i) * dat.groessterWeg /
                                                                                static_cast<double>(Dat::kProben - 1)));
    const double plain = SecondsSince(begin);
    std::vector<double> times;
    for (int i = 0; i < 101; ++i) {
        const auto start = std::clock();
        dat.Berechnen();
        times.push_back(SecondsSince(start));
    }
    std::nth_element(times.begin(), times.begin() + 50, times.end());
    const double median = times[50];
    for (auto _ : state) {
        dat.Berechnen();
        benchmark::DoNotOptimize(dat.flaeche);
    }
    state.counters["plain_ms"] = plain * 1e3;
    state.counters["median_ms"] = median * 1e3;
    state.counters["times_plain"] = plain / median;
    if (median > 1e-3 || plain < 300.0 * median)
        state.SkipWithError(("median " + std::to_string(median * 1e3) + " ms, plain search " +
                             std::to_string(plain * 1e3) + " ms: not 1 ms or 300 times faster")
                                .c_str());
}
BENCHMARK(RecomputeAllBarriers)->Unit(benchmark::kMicrosecond);

/// One step of a drag: the mask recomputes and both its diagrams are drawn; with an argument of 1 they are turned into
/// PNG files too, which is more than a screen asks for.
void DragAnObject(benchmark::State& state)
{
    framework::NullFrontEnd front;
    framework::UiThread thread(front);
    CRuvData data;
    {
        Dat dat(data);
        AllBarriers(data, dat);
        dat.ergebnisSteht = 1;
        dat.Merken();
    }
    auto* mask = new CSchrankenverfahrenDlg(data, nullptr);
    mask->DoModeless(nullptr);
    mask->OnBnClickedSchrZeichenfeld();
    const framework::Window* small = nullptr;
    const framework::Window* large = nullptr;
    for (const framework::Window* dialog : thread.Dialogs()) {
        small = small != nullptr ? small : dialog->Child(IDC_SCHR_ZEICHENFELD);
        large = large != nullptr ? large : dialog->Child(IDC_SCHR_GROSSES_ZEICHENFELD);
    }
    const auto objects = mask->PlacedObjects();
    CPlacedObject area = objects[Dat::kollisionsort];
    double shift = 0.0;
    std::size_t primitives = 0;
    for (auto _ : state) {
        shift = shift > 200.0 ? 0.0 : shift + 1.0; // cm
        area.position.x = objects[Dat::kollisionsort].position.x - shift;
        mask->ObjectPlaced(area);
        thread.DispatchPending();
        CDC pictures[]{{420, 210}, {1120, 730}};
        small->painter(pictures[0], {0, 0, 420, 210});
        large->painter(pictures[1], {0, 0, 1120, 730});
        primitives = pictures[0].Primitives().size() + pictures[1].Primitives().size();
        for (const CDC& picture : pictures)
            if (state.range(0) != 0)
                benchmark::DoNotOptimize(drawing::ToPng(picture, 1.0));
    }
    state.counters["primitives"] = static_cast<double>(primitives);
    state.counters["per_second"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(DragAnObject)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
