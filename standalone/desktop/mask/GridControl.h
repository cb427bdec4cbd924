// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/mask/ControlWidgets.h"

#include <QPointer>
#include <QTableView>

class QLineEdit;

namespace desktop
{

/// A table of a mask. Its rows are read from the control, so that a table of any length costs what is seen of it.
class GridControl : public QTableView, public ControlView
{
  public:
    GridControl(framework::Window& control, MaskWindow& mask);
    QWidget* Widget() override { return this; }
    void Sync() override;
    void Detach() override;

  protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    class Model;
    class Delegate;
    void SyncSelection();
    void Typed(const QModelIndex& cell, const QString& text);
    void Finish();

    Model* m_model;
    QPointer<QLineEdit> m_editor;
    bool m_syncing = false;
};

} // namespace desktop
