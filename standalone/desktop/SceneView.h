// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The panel "Szene": the plan view with its tools above and its numbers below.
#pragma once

#include "host/CDPoint.h"
#include "krn/SceneModel.h"

#include <QWidget>

class QMenu;
class QToolBar;

namespace desktop
{

class CaseDocument;
class SceneBar;
class SceneCanvas;

class SceneView : public QWidget
{
    Q_OBJECT

  public:
    explicit SceneView(CaseDocument& document, QWidget* parent = nullptr);
    ~SceneView() override;

    SceneCanvas& Canvas() const { return *m_canvas; }
    SceneBar& Bar() const { return *m_bar; }

    /// Lets a vehicle, or the next point of its driving line, hang at the cursor.
    void HangVehicle(std::size_t vehicle, krn::SceneKind kind);

  public slots:
    /// Units, decimal sign or colours changed.
    void ShowSettings();

  signals:
    /// A mask asks for a place: bring the scene to the front.
    void wanted();

  private:
    QToolBar* BuildTools();
    void FillVehicleMenu(QMenu& menu);
    void ShowMenu(QPoint global, CDPoint at);
    void AddItemActions(QMenu& menu, CDPoint at);
    void ShowSelection();
    void ShowTool();
    void TakeNumbers(const krn::SceneItem& item);

    CaseDocument& m_document;
    SceneCanvas* m_canvas;
    SceneBar* m_bar;
    QAction* m_measure = nullptr;
    QAction* m_grid = nullptr;
};

} // namespace desktop
