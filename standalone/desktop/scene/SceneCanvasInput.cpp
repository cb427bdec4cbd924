// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mouse and keys of the scene.
#include "desktop/case/CaseDocument.h"
#include "desktop/scene/SceneCanvas.h"
#include "scene/SceneGeometry.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace desktop
{
namespace
{

constexpr double kZoomStep = 1.25;
constexpr double kWheelNotch = 120.0;
constexpr double kDragStart = 3.0; // pixels
constexpr double kLineReach = 7.0; // pixels

CDPoint ToPoint(QPointF point)
{
    return {point.x(), point.y()};
}

/// Usual, small with Ctrl, large with Shift.
double StepFor(Qt::KeyboardModifiers modifiers, double usual, double small, double large)
{
    return modifiers.testFlag(Qt::ControlModifier) ? small : modifiers.testFlag(Qt::ShiftModifier) ? large : usual;
}

bool IsBareRectangle(const scene::SceneItem& item)
{
    return item.canSize && item.pose.participant < 0;
}

} // namespace

void SceneCanvas::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_camera.width = width();
    m_camera.height = height();
    ShowPrompt();
}

void SceneCanvas::wheelEvent(QWheelEvent* event)
{
    m_camera.ZoomAbout(ToPoint(event->position()), std::pow(kZoomStep, event->angleDelta().y() / kWheelNotch));
    m_fits = false;
    update();
    event->accept();
}

void SceneCanvas::mousePressEvent(QMouseEvent* event)
{
    const CDPoint pixel = ToPoint(event->position());
    m_pressed = m_cursor = pixel;
    m_panned = false;
    if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && m_spaceDown)) {
        m_panning = true;
        setCursor(Qt::ClosedHandCursor);
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    if (m_hanging) {
        PressWithHanging(pixel);
        return;
    }
    const CDPoint at = m_camera.ToScene(pixel);
    if (m_measuring) {
        if (std::exchange(m_measureOpen, !m_measureOpen)) {
            m_measured->second = at;
            EndMeasure();
        } else {
            m_measured = {at, at};
        }
        update();
        return;
    }
    const auto hit = scene::HitTest(Scene(), m_camera, pixel, m_selected);
    if (!hit) {
        m_panning = true;
        return;
    }
    Select(hit->id);
    m_drag.emplace(*Scene().Find(hit->id), *hit, at);
    m_dragging = false;
}

void SceneCanvas::PressWithHanging(CDPoint pixel)
{
    scene::SceneItem item = *m_hanging;
    item.pose = scene::CentredAt(std::move(item.pose), m_camera.ToScene(pixel));
    if (IsBareRectangle(item)) {
        m_spanFrom = m_camera.ToScene(pixel); // the release places it
        return;
    }
    BeginStep();
    PlaceHanging(item);
    if (m_hanging)
        return; // the next point
    if (const scene::SceneItem* placed = Selected()) {
        m_drag.emplace(*placed, scene::SceneHit{placed->id}, m_camera.ToScene(pixel));
        m_dragging = true;
    } else {
        EndStep(item);
    }
}

void SceneCanvas::PlaceHanging(const scene::SceneItem& item)
{
    const bool repeat = m_repeat;
    const QString prompt = m_hangingPrompt;
    BeginStep();
    m_hanging.reset();
    m_spanFrom.reset();
    setCursor(Qt::ArrowCursor);
    const bool placed = Apply(item);
    if (placed && item.id.point != scene::kNewPoint)
        Select(item.id);
    emit toolChanged();
    if (!repeat)
        return;
    EndStep(item);
    if (placed)
        Hang(item, prompt, true);
}

void SceneCanvas::DragTo(CDPoint pixel, Qt::KeyboardModifiers modifiers)
{
    if (!m_dragging && scene::Distance(m_pressed, pixel) < kDragStart)
        return;
    if (m_stepOpen && !m_document.IsStepOpen()) {
        m_stepOpen = false; // it was taken back meanwhile
        m_drag.reset();
        return;
    }
    m_dragging = true;
    BeginStep();
    if (!Apply(m_drag->At(m_camera.ToScene(pixel), modifiers.testFlag(Qt::ShiftModifier))))
        Drop();
}

void SceneCanvas::mouseMoveEvent(QMouseEvent* event)
{
    const CDPoint pixel = ToPoint(event->position());
    const CDPoint moved = pixel - std::exchange(m_cursor, pixel);
    const CDPoint at = m_camera.ToScene(pixel);
    m_cursorInside = true;
    update();
    if (m_panning) {
        if (!m_panned && scene::Distance(m_pressed, pixel) < kDragStart)
            return;
        m_camera.Pan(std::exchange(m_panned, true) ? moved : pixel - m_pressed);
        m_fits = false;
        setCursor(Qt::ClosedHandCursor);
        update();
    } else if (m_hanging) {
        m_hanging->pose = scene::CentredAt(std::move(m_hanging->pose), at);
        if (m_spanFrom && scene::Distance(m_pressed, pixel) >= kDragStart)
            *m_hanging = scene::Spanned(std::move(*m_hanging), *m_spanFrom, at);
        update();
        emit selectionChanged();
    } else if (m_measuring) {
        if (m_measureOpen)
            m_measured->second = at;
        update();
    } else if (m_drag) {
        DragTo(pixel, event->modifiers());
    } else {
        ChooseCursor(pixel);
    }
}

void SceneCanvas::ChooseCursor(CDPoint pixel)
{
    const auto hit = scene::HitTest(Scene(), m_camera, pixel, m_selected);
    if (!hit)
        setCursor(m_spaceDown ? Qt::OpenHandCursor : Qt::ArrowCursor);
    else if (hit->grip == scene::SceneGrip::turn)
        setCursor(Qt::PointingHandCursor);
    else
        setCursor(hit->grip == scene::SceneGrip::corner ? Qt::CrossCursor : Qt::SizeAllCursor);
}

void SceneCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    const CDPoint pixel = ToPoint(event->position());
    if (std::exchange(m_panning, false)) {
        ChooseCursor(pixel);
        if (m_panned || event->button() != Qt::LeftButton)
            return;
        const scene::SceneItem* placed = m_request ? Selected() : nullptr;
        if (placed != nullptr && placed->id.client == m_request->client && placed->id.object == m_request->object) {
            scene::SceneItem item = *placed; // a click elsewhere corrects the place
            item.pose = scene::CentredAt(std::move(item.pose), m_camera.ToScene(pixel));
            Place(item);
        } else {
            Select(std::nullopt);
        }
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    if (m_hanging && m_spanFrom) {
        const scene::SceneItem item = *m_hanging;
        PlaceHanging(item);
        EndStep(item);
    } else if (m_measuring && m_measureOpen && scene::Distance(m_pressed, pixel) >= kDragStart) {
        EndMeasure();
    } else if (m_drag) {
        Drop();
    }
}

void SceneCanvas::Drop()
{
    const scene::SceneItem item = m_drag->Begin();
    m_drag.reset();
    m_dragging = false;
    EndStep(item);
    update();
}

void SceneCanvas::CancelDrag()
{
    const scene::SceneItem item = m_drag->Begin();
    if (m_dragging && item.id.kind == scene::SceneKind::maskObject) {
        Apply(item); // the mask knows more than the case: what was typed and not computed with yet
    } else if (m_dragging) {
        m_drag.reset();
        m_stepOpen = false;
        m_dragging = false;
        m_document.CancelStep();
        return;
    }
    Drop();
}

void SceneCanvas::mouseDoubleClickEvent(QMouseEvent* event)
{
    const CDPoint pixel = ToPoint(event->position());
    if (event->button() != Qt::LeftButton || m_hanging || m_measuring ||
        scene::HitTest(Scene(), m_camera, pixel, m_selected)) {
        mousePressEvent(event);
        return;
    }
    const CDPoint at = m_camera.ToScene(pixel);
    if (const auto vehicle = scene::LineAt(Scene(), at, m_camera.Length(kLineReach)))
        AddWaypoint(*vehicle, at);
}

void SceneCanvas::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_hanging || m_request || m_measuring) {
        EndTools();
        return;
    }
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const CDPoint pixel = byMouse ? ToPoint(event->pos()) : CDPoint{m_camera.width / 2.0, m_camera.height / 2.0};
    if (byMouse)
        if (const auto hit = scene::HitTest(Scene(), m_camera, pixel, m_selected))
            Select(hit->id);
    emit menuWanted(event->globalPos(), m_camera.ToScene(pixel));
}

void SceneCanvas::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    m_cursorInside = false;
    update();
}

void SceneCanvas::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    m_spaceDown = false;
    if (!m_drag && m_stepOpen)
        if (const scene::SceneItem* item = Selected())
            EndStep(scene::SceneItem(*item));
}

bool SceneCanvas::MoveByKey(const QKeyEvent& event)
{
    const scene::SceneItem* selected = Selected();
    if (selected == nullptr || selected->locked)
        return false;
    const double step = StepFor(event.modifiers(), 10.0, 1.0, 100.0); // cm
    const double turn = StepFor(event.modifiers(), 1.0, 0.1, 5.0);    // degrees
    scene::SceneItem item = *selected;
    switch (event.key()) {
    case Qt::Key_Left:
        item.pose.position.x -= step;
        break;
    case Qt::Key_Right:
        item.pose.position.x += step;
        break;
    case Qt::Key_Up:
        item.pose.position.y += step;
        break;
    case Qt::Key_Down:
        item.pose.position.y -= step;
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (!item.canTurn)
            return false;
        item.pose = scene::TurnedTo(item.pose, item.pose.angle + (event.key() == Qt::Key_PageUp ? turn : -turn));
        break;
    default:
        return false;
    }
    BeginStep(); // ends with the key's release, so that a held key is one step
    Apply(item);
    return true;
}

void SceneCanvas::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        if (m_drag)
            CancelDrag();
        else if (m_hanging || m_request || m_measuring || m_measured)
            EndTools();
        else if (m_selected)
            Select(std::nullopt);
        else
            QWidget::keyPressEvent(event);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_hanging || m_request || m_measuring)
            EndTools();
        return;
    case Qt::Key_Home:
    case Qt::Key_F:
        Fit();
        return;
    case Qt::Key_Plus:
        Zoom(kZoomStep);
        return;
    case Qt::Key_Minus:
        Zoom(1.0 / kZoomStep);
        return;
    case Qt::Key_Space:
        m_spaceDown = true;
        setCursor(Qt::OpenHandCursor);
        return;
    case Qt::Key_Delete:
        if (const scene::SceneItem* item = Selected())
            Remove(scene::SceneId(item->id));
        return;
    default:
        break;
    }
    if (m_drag || !MoveByKey(*event))
        QWidget::keyPressEvent(event);
}

void SceneCanvas::keyReleaseEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat())
        return;
    if (event->key() == Qt::Key_Space) {
        m_spaceDown = false;
        ChooseCursor(m_cursor);
    }
    if (!m_drag && m_stepOpen)
        if (const scene::SceneItem* item = Selected())
            EndStep(scene::SceneItem(*item));
    QWidget::keyReleaseEvent(event);
}

/// Tab walks the items and then leaves.
bool SceneCanvas::focusNextPrevChild(bool next)
{
    const scene::Scene& scene = Scene();
    const auto count = static_cast<std::ptrdiff_t>(scene.items.size());
    std::ptrdiff_t at = next ? -1 : count;
    if (m_selected)
        at = std::find_if(scene.items.begin(), scene.items.end(),
                          [this](const scene::SceneItem& item) { return item.id == *m_selected; }) -
             scene.items.begin();
    at += next ? 1 : -1;
    if (at < 0 || at >= count) {
        Select(std::nullopt);
        return QWidget::focusNextPrevChild(next);
    }
    Select(scene.items[static_cast<std::size_t>(at)].id);
    return true;
}

} // namespace desktop
