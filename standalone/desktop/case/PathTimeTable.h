// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/RefusalBubble.h"
#include "desktop/look/VehicleIcon.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QPushButton;
class QTableView;
class QToolButton;

namespace desktop
{

class CaseDocument;
class PathTimeModel;
class PhaseView;

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
    QTableView& View() const;
    const RefusalBubble* Refusal() const { return m_bubble; }

    /// Inserts a free column before the current one, or removes the current one.
    void InsertPhase();
    void RemovePhase();
    /// Shows everything afresh, in the units in force.
    void Show();
    /// Shows what the case has changed of it.
    void Follow();

  signals:
    void vehicleChosen(int vehicle);

  private:
    void ShowButtons();
    /// Opens the list of kinds for the first phase.
    void BeginPhases();
    void ShowRefusal(const QModelIndex& cell, const QString& why);

    CaseDocument& m_document;
    PathTimeModel* m_model;
    PhaseView* m_view;
    QComboBox* m_vehicles;
    QToolButton* m_insert;
    QToolButton* m_remove;
    QWidget* m_begin = nullptr; ///< says how to begin while there is no phase
    QLabel* m_beginHint = nullptr;
    QPushButton* m_beginButton = nullptr;
    std::vector<VehicleMark> m_shown; ///< the vehicles offered
    int m_row = -1;                   ///< of the current cell while the model is reset
    int m_column = -1;
    QWidget* m_cell; ///< lies over the cell that a refusal points to
    QPointer<RefusalBubble> m_bubble;
};

} // namespace desktop
