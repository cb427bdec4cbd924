// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What stands around a mask in the main window.
#pragma once

#include <QMdiSubWindow>

class QScrollArea;

namespace desktop
{

class MaskWindow;
class TornOffMask;

/// The frame of a mask: as large as the mask where there is room, otherwise the mask is scrolled in it. Can be
/// minimised. While the mask is torn off it is hidden and stands for the window of its own.
class MaskFrame : public QMdiSubWindow
{
    Q_OBJECT

  public:
    explicit MaskFrame(MaskWindow& mask);

    MaskWindow* Mask() const { return m_mask; }
    void Follow();
    /// With all of the mask.
    QSize FullSize() const;
    /// As large as it may be in the area, and inside of it.
    void FitInto(const QSize& room);

    /// Gives the mask a window of its own; `mainWindow` is its parent. The frame must not be in the area any more.
    TornOffMask& TearOff(QWidget* mainWindow);
    /// Takes the mask back into the frame.
    void TakeBack();
    /// The window of its own, null while there is none.
    TornOffMask* Own() const { return m_own; }
    bool IsMinimised() const;
    /// Out of its minimised state.
    void Restore();
    void Minimise();
    /// The mask follows when the user minimises or restores its window.
    void TellState();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void ShowTitle();

    MaskWindow* m_mask;
    QScrollArea* m_scroll;
    TornOffMask* m_own = nullptr; ///< belongs to the main window
    QSize m_full;                 ///< that the frame was fitted to
    bool m_following = false;
};

} // namespace desktop
