// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The area of the main window in which masks stand side by side.
#pragma once

#include "host/HostTypes.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <vector>

class QScrollArea;

namespace desktop
{

class MaskWindow;

/// The frame of a mask: as large as the mask where there is room, otherwise the mask is scrolled in it. Can be
/// minimised.
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

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void ShowTitle();

    MaskWindow* m_mask;
    QScrollArea* m_scroll;
    QSize m_full; ///< that the frame was fitted to
    bool m_following = false;
};

class MaskArea : public QMdiArea
{
    Q_OBJECT

  public:
    explicit MaskArea(QWidget* parent = nullptr);

    void Add(MaskWindow& mask);
    /// Closes the frame of a mask whose dialog is gone; false when it has none here.
    bool Remove(MaskWindow& mask);
    /// The active mask, or null.
    MaskWindow* Active() const;
    std::vector<MaskFrame*> Frames() const;
    /// The frame of a mask, or null.
    MaskFrame* FrameOf(const MaskWindow& mask) const;

    /// Arranges the frames that are not minimised side by side, each in its own size.
    void Tile();
    void Cascade();
    void MinimiseAll();
    void RestoreAll();
    void GoToNext();
    void GoToPrevious();
    void MinimiseActive();
    void CloseActive();
    /// Brings the frame to the front, out of its minimised state.
    void GoTo(MaskFrame& frame);

  signals:
    void masksChanged();
    /// A mask is to be shown that needs a frame of this size.
    void roomWanted(const QSize& frame);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QPoint FreePlace(const QSize& size) const;
};

} // namespace desktop
