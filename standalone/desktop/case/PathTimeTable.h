// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/RefusalBubble.h"

#include <QPointer>
#include <QWidget>

class QComboBox;
class QLabel;
class QTableView;
class QToolButton;

namespace desktop
{

class CaseDocument;
class PathTimeModel;

/// The phases of one vehicle: columns are phases from the collision backwards, rows their kind and quantities. An entry
/// recomputes all phases.
class PathTimeTable : public QWidget
{
    Q_OBJECT

  public:
    explicit PathTimeTable(CaseDocument& document, QWidget* parent = nullptr);

    /// Index of the vehicle shown, -1 when the case has none.
    int Vehicle() const;
    void ChooseVehicle(int vehicle);
    QTableView& View() const { return *m_view; }
    const RefusalBubble* Refusal() const { return m_bubble; }

    /// Inserts a free column before the current one, or removes the current one.
    void InsertPhase();
    void RemovePhase();
    /// Shows everything afresh, in the units in force.
    void Show();

  private:
    void ShowButtons();
    void ShowRefusal(const QModelIndex& cell, const QString& why);

    CaseDocument& m_document;
    PathTimeModel* m_model;
    QTableView* m_view;
    QComboBox* m_vehicles;
    QToolButton* m_insert;
    QToolButton* m_remove;
    QWidget* m_cell; ///< lies over the cell that a refusal points to
    QPointer<RefusalBubble> m_bubble;
};

} // namespace desktop
