// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/Bench.h"

#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/check/SceneBench.h"
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
#include <vector>

namespace desktop
{
namespace
{

constexpr double kStartLimit = 400.0;  // ms
constexpr double kOpenLimit = 50.0;    // ms, 99 of 100
constexpr double kChangeLimit = 100.0; // ms, 99 of 100: a finished entry in a full case is on all panels
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
        for (std::size_t column = CWegZeitDat::kErsteSpalte; column < phases.spalten.size(); ++column) {
            CWegZeitSpalte& phase = phases.spalten[column];
            phase.art = PhasenArt::constantSpeed;
            phase.vAnf = phase.vEnd = 30.0 + static_cast<double>(i);
            phase.zeit = 0.2;
        }
        phases.Berechnung();
    }
    document.Commit(QStringLiteral("Voller Fall"));
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

bool RunBench(MainWindow& window, const QElapsedTimer& sinceStart)
{
    window.show();
    PaintAll(window);
    const double start = Milliseconds(sinceStart);
    std::printf("Start bis zum Fenster: %.0f ms (Grenze %.0f ms), Rechenzeit mit dem Laden des Programms %.0f ms\n",
                start, kStartLimit, ProcessorTime());
    bool good = start <= kStartLimit;
    for (const MaskEntry& mask : MaskTable())
        if (mask.create != nullptr)
            good &= Report(("Maske " + std::to_string(mask.number)).c_str(),
                           [&] { return OpeningTime(window, mask.number); }, kOpenLimit);

    CaseDocument& document = window.Document();
    FillCase(document);
    for (QDockWidget* panel : window.CasePanels())
        panel->show();
    std::printf("Ein Fall mit %zu Fahrzeugen und %zu Phasen:\n", CRuvData::kFahrzeuge,
                document.Data().WZRechDat(0).spalten.size() - CWegZeitDat::kErsteSpalte);
    for (QDockWidget* panel : window.CasePanels()) {
        panel->raise();
        PaintAll(window);
        double mass = 1000.0;
        good &= Report(
            panel->windowTitle().toUtf8().constData(),
            [&] {
                QElapsedTimer timer;
                timer.start();
                CRuvData& content = document.Data();
                content.KfzDat(0).mass = mass += 1.0;
                CWegZeitRechDat& phases = content.WZRechDat(0);
                phases.spalten[CWegZeitDat::kErsteSpalte].zeit = 1e-4 * mass;
                phases.Berechnung();
                document.Commit(QStringLiteral("Masse und Zeit"));
                PaintAll(*panel);
                return Milliseconds(timer);
            },
            kChangeLimit);
    }
    return RunSceneBench(window) && good;
}

} // namespace desktop
