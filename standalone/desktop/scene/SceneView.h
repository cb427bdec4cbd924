// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The panel "Szene": the plan view with its tools above and its numbers below.
#pragma once

#include "host/CDPoint.h"
#include "scene/SceneModel.h"

#include <QWidget>

#include <functional>

struct CSzenenBild;
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
    void HangVehicle(std::size_t vehicle, scene::SceneKind kind);

    /// Lays a PNG or JPEG file under the scene; returns why it cannot, in German, or nothing.
    QString AddPicture(const QString& path);
    /// Scales a picture so that two of its points are `metres` apart; the first one stays, and the picture is locked.
    void ScalePicture(std::size_t picture, CDPoint from, CDPoint to, double metres);

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
    void FillPictureMenu(QMenu& menu);
    void FillTrackMenu(QMenu& menu);
    void Remove(scene::SceneKind kind, std::size_t number, const QString& step);
    void ChoosePicture();
    void AskForDistance(std::size_t picture, CDPoint from, CDPoint to);
    /// Changes a picture: one step that can be undone.
    void ChangePicture(std::size_t picture, const QString& what, const std::function<void(CSzenenBild&)>& change);
    void ShowSelection();
    void ShowTool();
    void TakeNumbers(const scene::SceneItem& item);

    CaseDocument& m_document;
    SceneCanvas* m_canvas;
    SceneBar* m_bar;
    QAction* m_measure = nullptr;
    QAction* m_grid = nullptr;
};

} // namespace desktop
