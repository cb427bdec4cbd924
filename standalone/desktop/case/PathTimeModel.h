// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pathtime/PhaseTable.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace desktop
{

class CaseDocument;

/// A vehicle's phases for a table view. Row 0 is the kind (an int of PhasenArt under Qt::EditRole), then quantities.
class PathTimeModel : public QAbstractTableModel
{
    Q_OBJECT

  public:
    static constexpr int kKindRow = 0;

    explicit PathTimeModel(CaseDocument& document, QObject* parent = nullptr);

    void SetVehicle(int vehicle);
    int Vehicle() const { return m_vehicle; }
    std::optional<pathtime::PhaseTable> Table() const;
    /// Reads the case afresh.
    void Refresh();
    /// The same, where the phases of the vehicle are no longer those shown.
    void Follow();

    static std::size_t PhaseColumn(int column);
    static int ViewColumn(std::size_t phaseColumn);
    /// The quantity of a row below the kind.
    const pathtime::PhaseRow& Quantity(int row) const;
    std::optional<int> RowOf(pathtime::PhaseQuantity quantity) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  signals:
    /// The entry was not taken.
    void refused(const QModelIndex& index, const QString& why);

  private:
    QVariant KindData(const CWegZeitSpalte& phase, int role) const;
    QVariant NumberData(int row, std::size_t column, int role) const;
    void Reread();

    CaseDocument& m_document;
    int m_vehicle = -1;
    std::vector<const pathtime::PhaseRow*> m_rows;
    int m_columns = 0;
    std::optional<CWegZeitDat> m_shown;
};

} // namespace desktop
