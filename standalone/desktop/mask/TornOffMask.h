// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

namespace desktop
{

class MaskFrame;

/// The window of a mask that was torn off the mask area, on any screen. Closing it is up to the mask.
class TornOffMask : public QWidget
{
    Q_OBJECT

  public:
    TornOffMask(MaskFrame& frame, QWidget& content, QWidget* mainWindow);

  signals:
    void backWanted();

  protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    MaskFrame& m_frame;
};

} // namespace desktop
