// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/PauseBench.h"

#include "desktop/MainWindow.h"
#include "desktop/MaskReport.h"
#include "desktop/check/SceneBench.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace desktop
{
namespace
{

constexpr double kLongestPause = 50.0; // ms
constexpr int kBeat = 2;               // ms
constexpr QSize kAerialPicture(6000, 4000);

/// Processor time of the calling thread, ms: the load of other programs does not count.
double ThreadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

/// What the interface thread computes at a stretch at most while `act` runs.
bool Report(const char* what, const std::function<bool()>& act)
{
    double last = ThreadTime();
    double longest = 0.0;
    QTimer beat;
    const auto look = [&] {
        const double now = ThreadTime();
        longest = std::max(longest, now - last);
        last = now;
    };
    QObject::connect(&beat, &QTimer::timeout, look);
    beat.start(kBeat);
    QElapsedTimer clock;
    clock.start();
    last = ThreadTime();
    const bool good = act();
    look();
    const auto all = static_cast<double>(clock.elapsed());
    QApplication::processEvents();
    look();
    std::printf("%s: %s %.0f ms, die Oberfläche rechnet am Stück bis %.1f ms (Grenze %.0f ms)\n", what,
                good ? "dauert" : "misslingt nach", all, longest, kLongestPause);
    return good && longest <= kLongestPause;
}

/// As little to be compressed as an aerial picture.
QImage AerialPicture()
{
    QImage image(kAerialPicture, QImage::Format_RGB32);
    unsigned random = 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            random = 1664525U * random + 1013904223U;
            line[x] = 0xFF000000U | (random >> 8);
        }
    }
    return image;
}

} // namespace

bool RunPauseBench(MainWindow& window)
{
    auto* report = window.findChild<MaskReport*>();
    auto* scene = window.findChild<SceneView*>();
    MaskWindow* mask = OpenBarriers(window);
    const QTemporaryDir folder;
    if (report == nullptr || scene == nullptr || mask == nullptr || !folder.isValid()) {
        std::printf("Protokoll und Bild: etwas fehlt\n");
        return false;
    }
    bool good = true;
    for (const char* name : {"p.pdf", "p.odt", "p.html"})
        good &= Report((std::string("Protokoll ") + name).c_str(), [&] {
            const auto why = report->Save(*mask, folder.filePath(QString::fromLatin1(name)));
            return why && why->isEmpty();
        });
    window.CloseMasks();
    const QString picture = folder.filePath(QStringLiteral("luftbild.jpg"));
    if (!AerialPicture().save(picture))
        return false;
    good &= Report(
        "Luftbild mit 24 Millionen Bildpunkten", [&] { return scene->AddPicture(picture).isEmpty(); });
    good &=
        Report("Szene mit Luftbild für ein Blatt", [&] { return !scene->Canvas().ForPaper().Primitives().empty(); });
    return good;
}

} // namespace desktop
