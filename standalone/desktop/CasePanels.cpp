// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/CasePanels.h"

#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "pathtime/PathTimeDiagram.h"

#include <QAction>
#include <QDockWidget>
#include <QTimer>

#include <memory>

namespace desktop
{
namespace
{

/// What of the diagram is shown, as checkable entries of its menu.
struct DiagramParts {
    QAction* path;
    QAction* speed;
    QAction* phases;
};

DiagramView* MakeDiagram(CaseDocument& document)
{
    const auto parts = std::make_shared<DiagramParts>();
    auto* view = new DiagramView(
        [&document, parts](CDC& drawing, Ground ground) {
            pathtime::PathTimeDiagramOptions options;
            if (ground == Ground::paper)
                options.title = document.Data().Title();
            options.path = parts->path->isChecked();
            options.speed = parts->speed->isChecked();
            options.phases = parts->phases->isChecked();
            options.palette = PaletteFor(ground);
            pathtime::DrawPathTimeDiagram(drawing, pathtime::DiagramVehicles(document.Data()), options);
        },
        QStringLiteral("Weg-Zeit-Diagramm"));
    const auto part = [view](const QString& text) {
        auto* action = new QAction(text, view);
        action->setCheckable(true);
        action->setChecked(true);
        QObject::connect(action, &QAction::toggled, view, &DiagramView::Refresh);
        view->AddMenuAction(action);
        return action;
    };
    *parts = {part(QStringLiteral("&Weg über der Zeit")), part(QStringLiteral("&Geschwindigkeit über der Zeit")),
              part(QStringLiteral("&Phasen der Fahrzeuge"))};
    QObject::connect(&document, &CaseDocument::changed, view, &DiagramView::Refresh);
    return view;
}

/// Beside the masks, as high as the window: they ask for places there while they are open.
void AddScene(MainWindow& window, SceneView& scene)
{
    QDockWidget* dock = window.AddCasePanel(&scene, QStringLiteral("Szene"), Qt::RightDockWidgetArea);
    QObject::connect(&window, &MainWindow::sceneChanged, &scene.Canvas(), &SceneCanvas::FollowMasks);
    QObject::connect(&scene, &SceneView::wanted, dock, [dock, &scene] {
        dock->show();
        dock->raise();
        // The mask opens its prompt first and gives it the focus.
        QTimer::singleShot(0, &scene, [&scene] { scene.Canvas().setFocus(); });
    });
}

} // namespace

CasePanels AddCasePanels(MainWindow& window, CaseDocument& document)
{
    const CasePanels panels{new VehicleEditor(document), new PathTimeTable(document), MakeDiagram(document),
                            new SceneView(document)};
    window.AddCasePanel(panels.vehicles, QStringLiteral("Fahrzeuge"), Qt::LeftDockWidgetArea);
    window.AddCasePanel(panels.phases, QStringLiteral("Weg-Zeit-Tabelle"), Qt::BottomDockWidgetArea);
    window.AddCasePanel(panels.diagram, QStringLiteral("Weg-Zeit-Diagramm"), Qt::BottomDockWidgetArea);
    AddScene(window, *panels.scene);
    QObject::connect(&window, &MainWindow::settingsChanged, &window, [panels] {
        panels.vehicles->Show();
        panels.phases->Show();
        panels.diagram->Refresh();
        panels.scene->ShowSettings();
    });
    return panels;
}

} // namespace desktop
