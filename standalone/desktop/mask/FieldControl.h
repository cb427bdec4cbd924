// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/mask/ControlWidgets.h"
#include "host/CDC.h"

#include <QWidget>

#include <optional>

namespace framework
{
struct KeyPress;
}

namespace desktop
{

/// The key as masks get it.
framework::KeyPress KeyPressOf(const QKeyEvent& event);

/// A static that the mask draws in. What the user does in it with the mouse goes to the mask when it wants that, and
/// keys when it is a tab stop.
class FieldControl : public QWidget, public ControlView
{
  public:
    FieldControl(framework::Window& control, MaskWindow& mask);
    QWidget* Widget() override { return this; }
    void Sync() override;

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    /// True when the mask used it.
    bool Tell(CMouseEvent event, QPointF position, Qt::KeyboardModifiers modifiers);
    void Press(QMouseEvent& event, CMouseEvent::Kind kind);

    std::optional<CDC> m_drawing; // until the control changes
    bool m_rightUsed = false;
};

} // namespace desktop
