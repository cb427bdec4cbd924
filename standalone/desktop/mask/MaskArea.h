// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The area of the main window in which masks stand side by side, or as tabs. A mask can leave it for a window of its
// own.
#pragma once

#include "desktop/mask/MaskFrame.h"
#include "host/HostTypes.h"

#include <QMap>
#include <QMdiArea>
#include <QPointer>

#include <utility>
#include <vector>

namespace desktop
{

class MaskWindow;

class MaskArea : public QMdiArea
{
    Q_OBJECT

  public:
    explicit MaskArea(QWidget* parent = nullptr);

    void Add(MaskWindow& mask);
    /// Closes the frame of a mask whose dialog is gone; false when it has none here.
    bool Remove(MaskWindow& mask);
    /// The mask that has or had the focus, torn off or not; or null.
    MaskWindow* Active() const;
    std::vector<MaskFrame*> Frames() const;
    /// The frame of a mask, or null.
    MaskFrame* FrameOf(const MaskWindow& mask) const;

    /// Masks as tabs, one of them seen, or as windows.
    void SetTabs(bool tabs);
    bool HasTabs() const { return viewMode() == QMdiArea::TabbedView; }
    void TearOff(MaskFrame& frame);
    void TakeBack(MaskFrame& frame);
    /// Tears the active mask off, or takes it back.
    void TearOffActive();
    void TakeAllBack();
    /// Geometries of the windows of masks, torn off now or before, by the number of the dialog.
    QMap<UINT, QByteArray> OwnPlaces() const;
    /// Where a mask is put when it is torn off next.
    void SetOwnPlaces(const QMap<UINT, QByteArray>& places) { m_ownPlaces = places; }

    /// Arranges the frames that are not minimised side by side: each in its own size, or in equal parts of the area
    /// when there is no room for that. When those would be too small to work in, the last ones are minimised.
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
    /// Active() is another.
    void activeChanged();
    /// A mask has got a window of its own.
    void tornOff(QWidget* window);
    /// Frames were minimised because there is no room for them.
    void minimisedForRoom(int count);
    /// A mask is to be shown that needs a frame of this size.
    void roomWanted(const QSize& frame);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    QPoint FreePlace(const QSize& size) const;
    std::vector<MaskFrame*> Arranged() const;
    /// Of the area, what minimised frames at its foot leave.
    QSize Room() const;
    bool TileInRows(const std::vector<MaskFrame*>& frames);
    bool TileInCells(const std::vector<MaskFrame*>& frames);
    void SetActive(MaskFrame* frame);

    std::vector<MaskFrame*> m_frames; ///< in the order they came
    QPointer<MaskFrame> m_active;
    std::vector<std::pair<QPointer<MaskFrame>, QRect>> m_tiles; ///< as Tile left them
    QMap<UINT, QByteArray> m_ownPlaces;
};

} // namespace desktop
