// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/TextField.h"
#include "desktop/mask/ControlWidgets.h"

class QToolButton;

namespace desktop
{

class SpinButtons;

/// An edit with its spinner. Leaving it by mouse or Tab finishes the entry; Enter is the mask window's.
class EditControl : public TextField, public ControlView
{
  public:
    EditControl(framework::Window& control, MaskWindow& mask);

    QWidget* Widget() override { return this; }
    void Sync() override;
    void SyncColors() override;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

  private:
    bool Step(int direction);
    void OfferSource();
    void PlaceSource();
    void TakeFromSource();
    void FinishOnLeaving();
    void SyncLook();
    /// What the field takes, in the units in force.
    QString Tip() const;

    SpinButtons* m_spin;
    QAction* m_source = nullptr; // runs the mask that can find the value
    QToolButton* m_sourceButton = nullptr;
    bool m_wasInput = false; // could be typed into at some time since the mask opened
    bool m_ownedByCheck;     // the control before it in the template is a check box
};

} // namespace desktop
