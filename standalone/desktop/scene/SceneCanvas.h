// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The plan view of the scene: shows it, and moves what stands in it by mouse and keys.
#pragma once

#include "desktop/case/ScenePictures.h"
#include "desktop/look/DiagramView.h"
#include "scene/SceneDrawing.h"
#include "scene/SceneEditing.h"

#include <QWidget>

#include <optional>
#include <string>
#include <utility>

class QLabel;

namespace desktop
{

class CaseDocument;

class SceneCanvas : public QWidget
{
    Q_OBJECT

  public:
    explicit SceneCanvas(CaseDocument& document, QWidget* parent = nullptr);

    const scene::Scene& Scene();
    const scene::SceneCamera& Camera() const { return m_camera; }
    /// Shows all of the scene, or what stands in it without the ways there.
    void Fit(bool all = true);
    void Zoom(double factor);

    /// The selected item as it stands now, or null.
    const scene::SceneItem* Selected();
    /// What hangs at the cursor, or else the selected item; null for neither.
    const scene::SceneItem* Shown();
    void Select(const std::optional<scene::SceneId>& id);
    /// Something of the vehicle, if it stands in the scene and nothing of it is selected yet.
    void SelectVehicle(std::size_t vehicle);
    /// Moves an item to its pose: one step that can be undone.
    bool Place(const scene::SceneItem& item);
    void Remove(const scene::SceneId& id);
    /// Adds a point to the driving line that passes there.
    void AddWaypoint(std::size_t vehicle, CDPoint at);

    /// Lets an item hang at the cursor until a click places it; `repeat` then hangs the next one there.
    void Hang(scene::SceneItem item, const QString& prompt, bool repeat = false);
    bool IsHanging() const { return m_hanging.has_value(); }
    /// Whether a mask waits for a place.
    bool IsPlacing() const { return m_request.has_value(); }
    /// Ends placing, drawing and measuring.
    void EndTools();
    void SetMeasuring(bool on);
    bool IsMeasuring() const { return m_measuring; }
    /// Lets the user click two points of a picture; pictureMeasured tells them.
    void MeasurePicture(std::size_t picture);
    void SetGrid(bool on);
    bool HasGrid() const { return m_grid; }

    /// What the user is to do now, empty for nothing in particular.
    QString Prompt() const;
    /// The part of the scene that is shown, drawn for paper, its pictures read to the end.
    CDC ForPaper();
    ScenePictures& Pictures() { return m_pictures; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  public slots:
    /// The case changed.
    void Reload();
    /// What masks keep in the scene, or what they ask for, changed.
    void FollowMasks();

  signals:
    /// Another item is selected, or it stands elsewhere.
    void selectionChanged();
    void toolChanged();
    /// A mask asks for the place of an object.
    void placingWanted();
    /// Two points of a picture were clicked, cm.
    void pictureMeasured(std::size_t picture, CDPoint from, CDPoint to);
    void menuWanted(QPoint global, CDPoint at);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    struct Request {
        CPlacingClient* client;
        int object;
        QString prompt;
        friend bool operator==(const Request&, const Request&) = default;
    };

    /// Moves an item within an open step.
    bool Apply(const scene::SceneItem& item);
    void BeginStep();
    void EndStep(const scene::SceneItem& item);
    void CancelDrag();
    void DragTo(CDPoint pixel, Qt::KeyboardModifiers modifiers);
    void Drop();
    void PressWithHanging(CDPoint pixel);
    void PlaceHanging(const scene::SceneItem& item);
    bool MoveByKey(const QKeyEvent& event);
    void ChooseCursor(CDPoint pixel);
    void ShowPrompt();
    void PaintCursorPlace(QPainter& painter);
    void EndMeasure();
    scene::SceneDrawingOptions Options(Ground ground, const scene::SceneCamera& camera);

    CaseDocument& m_document;
    scene::Scene m_scene;
    bool m_stale = true; ///< of m_scene
    bool m_fits = true;  ///< nothing was shifted or zoomed yet: what stands in the scene is kept in view
    scene::SceneCamera m_camera;
    ScenePictures m_pictures{[this] { update(); }};
    std::optional<scene::SceneId> m_selected;
    bool m_grid = true;

    std::optional<scene::SceneDrag> m_drag;
    bool m_dragging = false; ///< m_drag has left its place
    bool m_stepOpen = false;
    bool m_panning = false;
    bool m_panned = false;
    bool m_spaceDown = false;
    CDPoint m_pressed{}; ///< pixels
    CDPoint m_cursor{};  ///< pixels
    bool m_cursorInside = false;
    QLabel* m_prompt;

    std::optional<scene::SceneItem> m_hanging;
    QString m_hangingPrompt;
    bool m_repeat = false;
    std::optional<CDPoint> m_spanFrom; ///< a rectangle is spanned from there, cm
    std::optional<Request> m_request;

    bool m_measuring = false;
    bool m_measureOpen = false; ///< the second point follows the cursor
    std::optional<std::pair<CDPoint, CDPoint>> m_measured;
    std::optional<std::size_t> m_measuredPicture; ///< that is to be scaled
};

} // namespace desktop
