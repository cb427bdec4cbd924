// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/scene/SceneView.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/look/Icons.h"
#include "desktop/scene/SceneBar.h"
#include "desktop/scene/SceneCanvas.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace desktop
{
namespace
{

constexpr double kZoomStep = 1.25;
constexpr double kLineReach = 7.0; // pixels

/// A name as menus need it: no letter of it is a mnemonic.
QString Literal(const std::string& text)
{
    return QString::fromStdString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

SceneView::SceneView(CaseDocument& document, QWidget* parent)
    : QWidget(parent), m_document(document), m_canvas(new SceneCanvas(document)), m_bar(new SceneBar)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(BuildTools());
    column->addWidget(m_canvas, 1);
    column->addWidget(m_bar);
    setFocusProxy(m_canvas);

    connect(m_canvas, &SceneCanvas::selectionChanged, this, &SceneView::ShowSelection);
    connect(m_canvas, &SceneCanvas::toolChanged, this, &SceneView::ShowTool);
    connect(m_canvas, &SceneCanvas::menuWanted, this, &SceneView::ShowMenu);
    connect(m_canvas, &SceneCanvas::placingWanted, this, &SceneView::wanted);
    connect(m_canvas, &SceneCanvas::pictureMeasured, this, &SceneView::AskForDistance);
    connect(m_bar, &SceneBar::entered, this, &SceneView::TakeNumbers);
}

// What the parts still say while QWidget ends has nowhere to go.
SceneView::~SceneView()
{
    m_bar->disconnect(this);
    m_canvas->disconnect(this);
}

QToolBar* SceneView::BuildTools()
{
    auto* tools = new QToolBar;
    tools->setIconSize({18, 18});
    tools->setContextMenuPolicy(Qt::PreventContextMenu);
    const auto add = [&](const char* icon, const QString& text, auto act) {
        QAction* action = tools->addAction(Icon(icon), text);
        action->setToolTip(text);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    add(
        "fit", QStringLiteral("Alles zeigen (Pos1)"), [this] { m_canvas->Fit(); });
    add(
        "zoomIn", QStringLiteral("Größer (+)"), [this] { m_canvas->Zoom(kZoomStep); });
    add("zoomOut", QStringLiteral("Kleiner (−)"), [this] { m_canvas->Zoom(1.0 / kZoomStep); });
    tools->addSeparator();
    m_grid = add("grid", QStringLiteral("Gitter"), [this](bool on) { m_canvas->SetGrid(on); });
    m_grid->setCheckable(true);
    m_grid->setChecked(true);
    m_measure = add("measure", QStringLiteral("Strecke messen"), [this](bool on) { m_canvas->SetMeasuring(on); });
    m_measure->setCheckable(true);
    tools->addSeparator();
    auto* vehicles = new QToolButton;
    vehicles->setIcon(Icon("car"));
    vehicles->setText(QStringLiteral("Fahrzeug"));
    vehicles->setToolTip(QStringLiteral("Ein Fahrzeug in die Szene setzen"));
    auto* pictures = new QToolButton;
    pictures->setIcon(Icon("picture"));
    pictures->setText(QStringLiteral("Unterlage"));
    pictures->setToolTip(QStringLiteral("Luftbild oder Skizze unter die Szene legen"));
    const auto opens = [this, tools](QToolButton* button, void (SceneView::*fill)(QMenu&)) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        connect(button, &QToolButton::clicked, this, [this, button, fill] {
            QMenu menu(button);
            (this->*fill)(menu);
            menu.exec(button->mapToGlobal(QPoint(0, button->height())));
        });
        tools->addWidget(button);
    };
    opens(vehicles, &SceneView::FillVehicleMenu);
    opens(pictures, &SceneView::FillPictureMenu);
    return tools;
}

void SceneView::FillVehicleMenu(QMenu& menu)
{
    const CRuvData& content = m_document.Data();
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        if (!content.IsFzgValid(static_cast<std::int64_t>(i)))
            continue;
        const std::string& name = content.KfzDat(i).name;
        QMenu* own = menu.addMenu(name.empty() ? QStringLiteral("Fahrzeug %1").arg(i + 1) : Literal(name));
        const auto add = [&](const QString& text, scene::SceneKind kind) {
            return own->addAction(text, this, [this, i, kind] { HangVehicle(i, kind); });
        };
        add(QStringLiteral("&Endlage setzen"), scene::SceneKind::restPose);
        add(QStringLiteral("&Kollisionsstellung setzen"), scene::SceneKind::collision);
        QAction* line = add(QStringLiteral("&Fahrlinie zeichnen"), scene::SceneKind::waypoint);
        scene::SceneId stands;
        stands.kind = scene::SceneKind::collision;
        stands.vehicle = i;
        line->setEnabled(m_canvas->Scene().Find(stands) != nullptr);
    }
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("Der Fall hat keine Fahrzeuge"))->setEnabled(false);
}

void SceneView::HangVehicle(std::size_t vehicle, scene::SceneKind kind)
{
    m_canvas->EndTools();
    const scene::SceneItem item = scene::NewSceneItem(m_document.Data(), kind, vehicle, {});
    const bool line = kind == scene::SceneKind::waypoint;
    const QString name = QString::fromStdString(item.FullName());
    m_canvas->Hang(item,
                   line ? name + QStringLiteral(": vom Kollisionsort aus rückwärts anklicken; Esc beendet.")
                        : name + QStringLiteral(": Platz anklicken, Esc bricht ab."),
                   line);
    m_canvas->setFocus();
}

void SceneView::AddItemActions(QMenu& menu, CDPoint at)
{
    if (const scene::SceneItem* item = m_canvas->Selected(); item != nullptr && scene::CanRemove(item->id)) {
        menu.addAction(QStringLiteral("%1 &entfernen").arg(Literal(item->FullName())), this,
                       [this, id = item->id] { m_canvas->Remove(id); });
        menu.addSeparator();
    }
    const double reach = m_canvas->Camera().Length(kLineReach);
    if (const auto vehicle = scene::LineAt(m_canvas->Scene(), at, reach)) {
        menu.addAction(QStringLiteral("&Punkt der Fahrlinie einfügen"), this,
                       [this, v = *vehicle, at] { m_canvas->AddWaypoint(v, at); });
        menu.addSeparator();
    }
}

void SceneView::ShowMenu(QPoint global, CDPoint at)
{
    const QString name = QStringLiteral("Szene");
    QMenu menu(this);
    AddItemActions(menu, at);
    FillVehicleMenu(*menu.addMenu(Icon("car"), QStringLiteral("&Fahrzeug in die Szene")));
    FillPictureMenu(*menu.addMenu(Icon("picture"), QStringLiteral("&Unterlage")));
    menu.addActions({m_measure, m_grid});
    menu.addAction(Icon("fit"), QStringLiteral("&Alles zeigen"), m_canvas, &SceneCanvas::Fit);
    menu.addSeparator();
    menu.addAction(
        Icon("copy"), QStringLiteral("&Kopieren"), this, [this] { CopyDrawing(m_canvas->ForPaper()); });
    menu.addAction(
        Icon("save"), QStringLiteral("&Speichern als SVG, PDF oder PNG …"), this,
        [this, name] { AskAndSaveDrawing(m_canvas->ForPaper(), name, this); });
    menu.addAction(Icon("print"), QStringLiteral("&Drucken …"), this,
                   [this, name] { AskAndPrintDrawing(m_canvas->ForPaper(), name, this); });
    menu.exec(global);
}

void SceneView::ShowSelection()
{
    m_bar->Show(m_canvas->Shown());
}

void SceneView::ShowTool()
{
    m_measure->setChecked(m_canvas->IsMeasuring());
    ShowSelection();
}

void SceneView::TakeNumbers(const scene::SceneItem& item)
{
    m_canvas->Place(item);
    ShowSelection();
}

void SceneView::ShowSettings()
{
    m_bar->ShowUnits();
    ShowSelection();
    m_canvas->update();
}

} // namespace desktop
