// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/DeskOutput.h"

#include "desktop/MainWindow.h"
#include "desktop/MaskReport.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/mask/ControlWidgets.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "framework/UiThread.h"
#include "report/Protocol.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace desktop
{

DeskOutput::DeskOutput(MainWindow& window, const CasePanels& panels, MaskReport& report)
    : QObject(&window), m_window(window), m_panels(panels), m_report(report)
{
    connect(&window.PrintCommand(), &QAction::triggered, this, &DeskOutput::Print);
    connect(&window.ExportMenu(), &QMenu::aboutToShow, this, &DeskOutput::FillExport);
    FillExport();
}

std::vector<DeskOutput::Source> DeskOutput::Sources() const
{
    DiagramView* diagram = m_panels.diagram;
    SceneView* scene = m_panels.scene;
    std::vector<Source> sources{{diagram->Name(), [diagram] { return diagram->ForPaper(); }},
                                {QStringLiteral("Szene"), [scene] { return scene->Canvas().ForPaper(); }}};
    const MaskWindow* mask = m_window.Masks().Active();
    if (mask == nullptr)
        return sources;
    int number = 0;
    for (const auto& control : mask->Dialog()->children) {
        if (control->kind != framework::Kind::field || !control->visible ||
            !(control->painter || control->reportPainter))
            continue;
        const QString count = ++number == 1 ? QString() : QStringLiteral(" %1").arg(number);
        sources.push_back({QStringLiteral("Maske %1, Diagramm%2").arg(mask->Number()).arg(count),
                           [field = control.get()] { return report::DrawField(*field); }});
    }
    return sources;
}

void DeskOutput::FillExport()
{
    QMenu& menu = m_window.ExportMenu();
    menu.clear();
    for (const Source& source : Sources())
        menu.addAction(source.name + QStringLiteral("…"), this,
                       [this, source] { AskAndSaveDrawing(source.draw(), source.name, &m_window); });
    menu.addSeparator();
    const MaskWindow* mask = m_window.Masks().Active();
    QAction* protocol = menu.addAction(mask == nullptr ? QStringLiteral("Protokoll der Maske…")
                                                       : QStringLiteral("Protokoll der Maske %1…").arg(mask->Number()),
                                       &m_report, &MaskReport::AskAndSave);
    protocol->setEnabled(mask != nullptr);
}

void DeskOutput::Print()
{
    QWidget* focus = QApplication::focusWidget();
    const auto in = [focus](const QWidget* panel) {
        return focus != nullptr && (focus == panel || panel->isAncestorOf(focus));
    };
    const std::vector<Source> sources = Sources();
    const MaskWindow* mask = m_window.Masks().Active();
    const auto print = [focus, this](const Source& source) {
        AskAndPrintDrawing(source.draw(), source.name, focus == nullptr ? &m_window : focus->window());
    };
    if (in(m_panels.scene))
        print(sources[1]);
    else if (mask == nullptr || in(m_panels.diagram))
        print(sources[0]);
    else if (mask->IsDrawing() && sources.size() > 2)
        print(sources[2]);
    else
        m_report.AskAndPrint();
}

} // namespace desktop
