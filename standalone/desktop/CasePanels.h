// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The views of the case beside the masks.
#pragma once

namespace desktop
{

class CaseDocument;
class DiagramView;
class MainWindow;
class PathTimeTable;
class SceneView;
class VehicleEditor;

/// They belong to the window.
struct CasePanels {
    VehicleEditor* vehicles;
    PathTimeTable* phases;
    DiagramView* diagram;
    SceneView* scene;
};
CasePanels AddCasePanels(MainWindow& window, CaseDocument& document);

} // namespace desktop
