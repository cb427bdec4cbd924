// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/SceneBench.h"

#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/check/PaintCounter.h"
#include "desktop/mask/ControlWidgets.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/scene/SceneCanvas.h"
#include "framework/UserInput.h"
#include "res/resource.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFile>
#include <QMouseEvent>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace desktop
{
namespace
{

constexpr double kFrames = 60.0; // per second
constexpr int kSteps = 300;
constexpr UINT kBarriers = 487;
constexpr double kNanosPerMilli = 1e6;

} // namespace

MaskWindow* OpenBarriers(MainWindow& window)
{
    QFile example(QStringLiteral(":/examples/fussgaenger.json"));
    if (!example.open(QIODevice::ReadOnly) || !window.Document().NewFrom(example.readAll().toStdString()))
        return nullptr;
    CMaskenWerte& values = window.Document().Data().MaskenWerte(kBarriers);
    for (const char* theory :
         {"kuehnelGlobal", "kuehnelVerzoegerung", "rauOtteSchulz", "dettinger", "ritterKrieg", "frontscheibe",
          "scheinwerferHaupt", "scheinwerferGesamt", "abwicklung", "geschwindigkeit"})
        values[std::string("theorie.") + theory] = {1.0};
    const std::pair<const char*, double> mainField[] = {{"x", 4.0},      {"y", 0.0},      {"winkel", 0.2},
                                                        {"breite", 4.0}, {"laenge", 2.0}, {"gesetzt", 1.0}};
    for (const auto& [name, value] : mainField)
        values[std::string("objekt.hauptfeld.") + name] = {value};
    window.OpenMask(kBarriers);
    MaskWindow* mask = window.Masks().Active();
    if (mask != nullptr)
        mask->Act([&] { framework::Click(*mask->Dialog()->Child(IDC_RECHNEN)); });
    return mask;
}

namespace
{

bool Say(const char* trouble)
{
    std::printf("Ziehen in der Szene: %s\n", trouble);
    return false;
}

} // namespace

bool RunSceneBench(MainWindow& window)
{
    MaskWindow* mask = OpenBarriers(window);
    auto* scene = window.findChild<SceneCanvas*>();
    ControlView* diagram = mask == nullptr ? nullptr : mask->ViewOf(IDC_SCHR_ZEICHENFELD);
    if (scene == nullptr || diagram == nullptr)
        return Say("die Maske oder die Szene fehlt");
    for (QDockWidget* panel : window.CasePanels())
        panel->raise();
    QApplication::processEvents();
    window.repaint();
    QApplication::processEvents();
    const auto& items = scene->Scene().items;
    const auto vehicle = std::find_if(items.begin(), items.end(), [](const scene::SceneItem& item) {
        return item.id.kind == scene::SceneKind::maskObject && item.pose.centred;
    });
    if (vehicle == items.end())
        return Say("das Fahrzeug der Maske fehlt");

    const CDPoint begin = scene->Camera().ToPixel(vehicle->pose.position);
    const auto send = [&](QEvent::Type type, QPointF at) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons down = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, scene->mapToGlobal(at), button, down, Qt::NoModifier);
        QApplication::sendEvent(scene, &event);
        QApplication::processEvents();
    };
    const PaintCounter scenePaints(*scene);
    const PaintCounter diagramPaints(*diagram->Widget());
    send(QEvent::MouseButtonPress, {begin.x, begin.y});
    const int sceneBefore = scenePaints.Count();
    const int diagramBefore = diagramPaints.Count();
    std::vector<double> times;
    double sum = 0.0;
    for (int i = 1; i <= kSteps; ++i) {
        QElapsedTimer timer;
        timer.start();
        send(QEvent::MouseMove, {begin.x + 4.0 + i % 40, begin.y + i % 7});
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / kNanosPerMilli);
        sum += times.back();
    }
    const bool painted = scenePaints.Count() - sceneBefore >= kSteps && diagramPaints.Count() - diagramBefore >= kSteps;
    send(QEvent::MouseButtonRelease, {begin.x, begin.y});
    std::sort(times.begin(), times.end());
    const double rate = 1000.0 * kSteps / sum;
    std::printf("Ziehen in der Szene, Maske %u mit allen Schranken: %.0f Bilder/s (Grenze %.0f), Median %.1f ms, "
                "99 von 100 bis %.1f ms%s\n",
                kBarriers, rate, kFrames, times[kSteps / 2], times[kSteps * 99 / 100],
                painted ? "" : "; nicht jeder Schritt wurde gezeichnet");
    window.CloseMasks();
    return painted && rate >= kFrames;
}

} // namespace desktop
