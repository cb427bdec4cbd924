// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/Bench.h"

#include "desktop/MainWindow.h"
#include "desktop/MaskArea.h"
#include "frame/MaskTable.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace desktop
{
namespace
{

constexpr double kStartLimit = 400.0; // ms
constexpr double kOpenLimit = 50.0;   // ms, 99 of 100
constexpr int kOpenings = 100;
constexpr double kNanosPerMilli = 1e6;

double Milliseconds(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / kNanosPerMilli;
}

/// Everything posted is handled and everything visible painted.
void PaintAll(QWidget& window)
{
    QApplication::processEvents();
    window.repaint();
    QApplication::processEvents();
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
    std::printf("Start bis zum Fenster: %.0f ms (Grenze %.0f ms)\n", start, kStartLimit);
    bool good = start <= kStartLimit;
    for (const MaskEntry& mask : MaskTable()) {
        if (mask.create == nullptr)
            continue;
        std::vector<double> times;
        for (int i = 0; i < kOpenings; ++i)
            times.push_back(OpeningTime(window, mask.number));
        const double first = times.front();
        std::sort(times.begin(), times.end());
        const double p99 = times[kOpenings - 2];
        std::printf("Maske %u: zuerst %.1f ms, Median %.1f ms, 99 von 100 bis %.1f ms (Grenze %.0f ms)\n", mask.number,
                    first, times[kOpenings / 2], p99, kOpenLimit);
        good = good && p99 <= kOpenLimit;
    }
    return good;
}

} // namespace desktop
