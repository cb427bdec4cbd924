// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// One Qt widget per control of a mask. A view shows the control's state (Sync) and hands what the user does to the
// mask window, which passes it on to the framework.
#pragma once

#include "framework/Window.h"

#include <QString>

class QWidget;

namespace desktop
{

class MaskWindow;

class ControlView
{
  public:
    ControlView(framework::Window& control, MaskWindow& mask) : m_control(&control), m_mask(mask) {}
    virtual ~ControlView() = default;
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;

    virtual QWidget* Widget() = 0;
    /// Shows the control's state; never causes input.
    virtual void Sync() = 0;
    /// Shows the colours of the vehicles afresh.
    virtual void SyncColors() {}
    /// The entry was refused: marks the field until the next keystroke.

    /// The control, or null when its dialog is gone.
    framework::Window* Control() const { return m_control; }
    virtual void Detach() { m_control = nullptr; }

  protected:
    void SyncVisibility();

    framework::Window* m_control;
    MaskWindow& m_mask;
};

/// Makes the view of a control on `mask`; the widget belongs to `mask`.
ControlView* MakeControlView(framework::Window& control, MaskWindow& mask);

/// A control's text as Qt writes mnemonics: the same mark, "&&" for the sign itself.
QString QtText(const std::string& text);

} // namespace desktop
