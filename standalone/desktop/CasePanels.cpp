// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/CasePanels.h"

#include "base/NumberText.h"
#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/VehicleIcon.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "host/Physics.h"
#include "host/Units.h"
#include "pathtime/PathTimeDiagram.h"

#include <QAction>
#include <QDockWidget>
#include <QTimer>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace desktop
{
namespace
{

/// What the diagram shows.
struct DiagramContent {
    // Checkable entries of its menu.
    QAction* path = nullptr;
    QAction* speed = nullptr;
    QAction* phases = nullptr;
    std::vector<VehicleMark> marks;
    std::optional<std::vector<pathtime::DiagramVehicle>> vehicles; ///< nothing after a change of the case
    pathtime::DiagramArea area;                                    ///< of what the screen shows

    const std::vector<pathtime::DiagramVehicle>& Vehicles(const CRuvData& data)
    {
        if (!vehicles)
            vehicles = pathtime::DiagramVehicles(data);
        return *vehicles;
    }
    pathtime::PathTimeDiagramOptions Options(const CRuvData& data, Ground ground, int chosen) const
    {
        pathtime::PathTimeDiagramOptions options;
        if (ground == Ground::paper)
            options.title = data.Title();
        else if (chosen >= 0)
            options.chosen = static_cast<std::size_t>(chosen);
        options.path = path->isChecked();
        options.speed = speed->isChecked();
        options.phases = phases->isChecked();
        options.palette = PaletteFor(ground);
        return options;
    }
};

/// What the diagram says of each vehicle at a moment.
std::optional<DiagramReading> ReadDiagram(const std::vector<pathtime::DiagramVehicle>& vehicles,
                                          const pathtime::DiagramArea& area, QPointF at)
{
    if (area.IsEmpty() || at.x() < area.left || at.x() > area.right || at.y() < area.top || at.y() > area.bottom)
        return std::nullopt;
    const double time = area.TimeAt(at.x());
    const auto& units = UnitsSystemConfiguration::GetInstance();
    const auto number = [&units](double value, const UnitType& unit, int decimals) {
        return QString::fromStdString(base::FormatNumber(units.ToShown(value, unit), decimals) + " " +
                                      units.UnitString(unit));
    };
    DiagramReading reading;
    reading.line = {at.x(), area.top, at.x(), area.bottom};
    const auto seconds = [](double t) { return QString::fromStdString(base::FormatNumber(t, 2) + " s"); };
    reading.texts.append({QStringLiteral("t = ") + seconds(time), QColor()});
    for (const pathtime::DiagramVehicle& vehicle : vehicles)
        if (const auto state = vehicle.curve.At(time))
            reading.texts.append(
                {QStringLiteral("%1: s = %2, v = %3, a = %4")
                     .arg(QString::fromStdString(vehicle.name), number(state->position, UnitType(unitType::length), 2),
                          number(state->speed * kKmhProMs, UnitType(unitType::speedKmh), 1),
                          number(-state->deceleration, UnitType(unitType::acceleration), 2)),
                 QColor()});
    return reading;
}

DiagramView* MakeDiagram(CaseDocument& document, const VehicleEditor& editor)
{
    const auto content = std::make_shared<DiagramContent>();
    auto* view = new DiagramView(
        [&document, &editor, content](CDC& drawing, Ground ground) {
            const auto area =
                pathtime::DrawPathTimeDiagram(drawing, content->Vehicles(document.Data()),
                                              content->Options(document.Data(), ground, editor.Vehicle()));
            if (ground == Ground::screen)
                content->area = area;
        },
        QStringLiteral("Weg-Zeit-Diagramm"));
    view->SetReading([&document, content](QPointF at) {
        return ReadDiagram(content->Vehicles(document.Data()), content->area, at);
    });
    const auto part = [view](const QString& text) {
        auto* action = new QAction(text, view);
        action->setCheckable(true);
        action->setChecked(true);
        QObject::connect(action, &QAction::toggled, view, &DiagramView::Refresh);
        view->AddMenuAction(action);
        return action;
    };
    content->path = part(QStringLiteral("&Weg über der Zeit"));
    content->speed = part(QStringLiteral("&Geschwindigkeit über der Zeit"));
    content->phases = part(QStringLiteral("&Phasen der Fahrzeuge"));
    view->SetLeastHeight([&document, content](double width) {
        // The one on paper is the higher one: it has a title.
        return pathtime::LeastDiagramHeight(width, content->Vehicles(document.Data()),
                                            content->Options(document.Data(), Ground::paper, -1));
    });
    const auto refresh = [view, content] {
        content->vehicles.reset();
        view->Refresh();
    };
    QObject::connect(&document, &CaseDocument::phasesChanged, view, refresh);
    QObject::connect(&document, &CaseDocument::changed, view, [&document, content, refresh] {
        if (auto marks = VehicleMarks(document.Data()); marks != content->marks) {
            content->marks = std::move(marks);
            refresh();
        }
    });
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

/// A vehicle chosen in one panel is the chosen one in all.
void FollowVehicle(const CasePanels& panels)
{
    const auto choose = [panels](int vehicle) {
        if (vehicle < 0)
            return;
        panels.vehicles->ChooseVehicle(vehicle);
        panels.phases->ChooseVehicle(vehicle);
        panels.scene->Canvas().SelectVehicle(static_cast<std::size_t>(vehicle));
        panels.diagram->Refresh();
    };
    QObject::connect(panels.vehicles, &VehicleEditor::vehicleChosen, panels.diagram, choose);
    QObject::connect(panels.phases, &PathTimeTable::vehicleChosen, panels.diagram, choose);
    QObject::connect(&panels.scene->Canvas(), &SceneCanvas::selectionChanged, panels.diagram, [panels, choose] {
        const scene::SceneItem* item = panels.scene->Canvas().Selected();
        if (item != nullptr && scene::BelongsToVehicle(item->id))
            choose(static_cast<int>(item->id.vehicle));
    });
}

} // namespace

CasePanels AddCasePanels(MainWindow& window, CaseDocument& document)
{
    auto* vehicles = new VehicleEditor(document);
    const CasePanels panels{vehicles, new PathTimeTable(document), MakeDiagram(document, *vehicles),
                            new SceneView(document)};
    window.AddCasePanel(panels.vehicles, QStringLiteral("Fahrzeuge"), Qt::LeftDockWidgetArea);
    window.AddCasePanel(panels.phases, QStringLiteral("Weg-Zeit-Tabelle"), Qt::BottomDockWidgetArea);
    window.AddCasePanel(panels.diagram, QStringLiteral("Weg-Zeit-Diagramm"), Qt::BottomDockWidgetArea);
    AddScene(window, *panels.scene);
    FollowVehicle(panels);
    QObject::connect(&window, &MainWindow::settingsChanged, &window, [panels] {
        panels.vehicles->Show();
        panels.phases->Show();
        panels.diagram->Refresh();
        panels.scene->ShowSettings();
    });
    return panels;
}

} // namespace desktop
