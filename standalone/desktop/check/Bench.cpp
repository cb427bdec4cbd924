// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/Bench.h"

#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/check/PaintCounter.h"
#include "desktop/check/PauseBench.h"
#include "desktop/check/SceneBench.h"
#include "desktop/look/DiagramView.h"
#include "desktop/mask/MaskArea.h"
#include "frame/MaskTable.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace desktop
{
namespace
{

constexpr double kStartLimit = 400.0; // ms
constexpr double kOpenLimit = 50.0;   // ms, 99 of 100
constexpr double kChangeLimit = 16.0; // ms of processor time, median: a finished entry in a full case is on all panels
constexpr int kTimes = 100;
constexpr double kNanosPerMilli = 1e6;

double Milliseconds(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / kNanosPerMilli;
}

/// What this process has computed since its start, system calls included. Another program's load does not count.
double ProcessorTime()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Everything posted is handled and everything visible painted.
void PaintAll(QWidget& window)
{
    QApplication::processEvents();
    window.repaint();
    QApplication::processEvents();
}

/// Clock and processor time of something done kTimes times. True when 99 of 100 were within the limit.
bool Report(const char* what, const std::function<double()>& once, double limit)
{
    std::vector<double> times;
    const double before = ProcessorTime();
    for (int i = 0; i < kTimes; ++i)
        times.push_back(once());
    const double processor = (ProcessorTime() - before) / kTimes;
    const double first = times.front();
    std::sort(times.begin(), times.end());
    const double p99 = times[kTimes - 2];
    std::printf("%s: zuerst %.1f ms, Median %.1f ms, 99 von 100 bis %.1f ms (Grenze %.0f ms), Rechenzeit %.1f ms\n",
                what, first, times[kTimes / 2], p99, limit, processor);
    return p99 <= limit;
}

/// Every vehicle with every phase.
void FillCase(CaseDocument& document)
{
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        document.Data().KfzDat(i) =
            TypicalCar("Pkw " + std::to_string(i + 1), RGB(200, static_cast<unsigned>(12 * i), 0));
        CWegZeitRechDat& phases = document.Data().WZRechDat(i);
        phases.spalten[CWegZeitDat::kErsteSpalte].vEnd = 30.0 + static_cast<double>(i);
        for (std::size_t column = CWegZeitDat::kErsteSpalte; column < phases.spalten.size(); ++column) {
            CWegZeitSpalte& phase = phases.spalten[column];
            phase.art = column % 3 == 0 ? PhasenArt::braking : PhasenArt::accelerating;
            phase.verz = column % 3 == 0 ? 4.0 : -2.0;
            phase.zeit = 0.2;
        }
        phases.Berechnung();
    }
    document.Commit(QStringLiteral("Voller Fall"));
}

/// A finished entry that changes a vehicle and its phases, until everything is painted.
void Enter(CaseDocument& document)
{
    CRuvData& content = document.Data();
    content.KfzDat(0).mass += 1.0;
    CWegZeitRechDat& phases = content.WZRechDat(0);
    phases.spalten[CWegZeitDat::kErsteSpalte].zeit += 1e-4;
    phases.Berechnung();
    document.Commit(QStringLiteral("Masse und Zeit"));
    QApplication::processEvents();
}

/// Curves of the diagram on the screen that are wide enough to be looked at.
std::size_t CurvesIn(const CDC& drawing)
{
    return static_cast<std::size_t>(std::count_if(
        drawing.Primitives().begin(), drawing.Primitives().end(),
        [&](const auto& primitive) {
            const auto* line = std::get_if<drawing::Polyline>(&primitive);
            if (line == nullptr || line->points.size() < 3)
                return false;
            const auto [low, high] = std::minmax_element(
                line->points.begin(), line->points.end(), [](CDPoint a, CDPoint b) { return a.x < b.x; });
            return high->x - low->x > drawing.Width() / 4.0;
        }));
}

/// Every visible panel shows the entry, and the diagram the curves of all vehicles.
bool IsShown(const QList<QWidget*>& panels, CaseDocument& document)
{
    constexpr std::size_t kPlots = 2; // path and speed
    bool good = true;
    for (const QWidget* panel : panels) {
        const PaintCounter paints(*panel);
        Enter(document);
        if (paints.Count() == 0)
            std::printf("%s: nicht neu gezeichnet\n", panel->objectName().toUtf8().constData());
        good &= paints.Count() > 0;
        const auto* diagram = qobject_cast<const DiagramView*>(panel);
        if (diagram == nullptr)
            continue;
        const std::size_t curves = diagram->Shown() == nullptr ? 0 : CurvesIn(*diagram->Shown());
        if (curves != kPlots * CRuvData::kFahrzeuge)
            std::printf("%s: %zu Kurven\n", diagram->Name().toUtf8().constData(), curves);
        good &= curves == kPlots * CRuvData::kFahrzeuge;
    }
    return good;
}

/// A finished entry with a panel in front of the others of its place.
bool BenchEntry(MainWindow& window, QDockWidget& front)
{
    CaseDocument& document = window.Document();
    front.raise();
    PaintAll(window);
    QList<QWidget*> visible;
    for (const QDockWidget* panel : window.CasePanels())
        if (!panel->visibleRegion().isEmpty())
            visible.append(panel->widget());
    bool good = visible.contains(front.widget()) && IsShown(visible, document);
    std::vector<double> clock;
    std::vector<double> processor;
    for (int i = 0; i < kTimes; ++i) {
        QElapsedTimer timer;
        timer.start();
        const double before = ProcessorTime();
        Enter(document);
        processor.push_back(ProcessorTime() - before);
        clock.push_back(Milliseconds(timer));
    }
    std::sort(clock.begin(), clock.end());
    std::sort(processor.begin(), processor.end());
    const double median = processor[kTimes / 2];
    std::printf("%s vorn, %d Bereiche zu sehen: Rechenzeit Median %.1f ms (Grenze %.0f ms), 99 von 100 bis %.1f ms; "
                "Uhr Median %.1f ms, 99 von 100 bis %.1f ms\n",
                front.windowTitle().toUtf8().constData(), static_cast<int>(visible.size()), median, kChangeLimit,
                processor[kTimes - 2], clock[kTimes / 2], clock[kTimes - 2]);
    return good && median <= kChangeLimit;
}

double OpeningTime(MainWindow& window, UINT number)
{
    QElapsedTimer timer;
    timer.start();
    window.OpenMask(number);
    PaintAll(window);
    const double time = Milliseconds(timer);
    window.CloseMasks();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return time;
}

} // namespace

bool RunBench(MainWindow& window, const QElapsedTimer& sinceStart, const std::vector<UINT>& numbers)
{
    window.show();
    PaintAll(window);
    const double start = Milliseconds(sinceStart);
    std::printf("Start bis zum Fenster: %.0f ms (Grenze %.0f ms), Rechenzeit mit dem Laden des Programms %.0f ms\n",
                start, kStartLimit, ProcessorTime());
    bool good = start <= kStartLimit;
    for (const MaskEntry& mask : MaskTable())
        if (mask.create != nullptr &&
            (numbers.empty() || std::find(numbers.begin(), numbers.end(), mask.number) != numbers.end()))
            good &= Report(("Maske " + std::to_string(mask.number)).c_str(),
                           [&] { return OpeningTime(window, mask.number); }, kOpenLimit);

    CaseDocument& document = window.Document();
    FillCase(document);
    for (QDockWidget* panel : window.CasePanels())
        panel->show();
    std::printf("Ein Fall mit %zu Fahrzeugen und %zu Phasen:\n", CRuvData::kFahrzeuge,
                document.Data().WZRechDat(0).spalten.size() - CWegZeitDat::kErsteSpalte);
    for (QDockWidget* panel : window.CasePanels())
        good &= BenchEntry(window, *panel);
    good &= RunSceneBench(window);
    return RunPauseBench(window) && good;
}

} // namespace desktop
